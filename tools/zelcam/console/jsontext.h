// JSON as the program prints it.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace ZelTool {

using Json = nlohmann::ordered_json;

// Texts of producers and cameras should be UTF-8; each invalid byte becomes a replacement
// character. JsonLine puts everything on one line.
std::string JsonText(const Json& json);
std::string JsonLine(const Json& json);

// Prints to standard output.
void PrintJson(const Json& json);
void PrintJsonLine(const Json& json);

}  // namespace ZelTool
