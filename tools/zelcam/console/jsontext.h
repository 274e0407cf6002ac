// JSON as the program prints it.
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace ZelTool {

// An `indent` of -1 puts everything on one line. Texts of producers and cameras should be UTF-8;
// each invalid byte becomes a replacement character.
std::string JsonText(const nlohmann::ordered_json& json, int indent = 2);

}  // namespace ZelTool
