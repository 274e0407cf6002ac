// JSON as the program prints it.
#ifndef ZELCAM_TOOLS_ZELCAM_JSONTEXT_H
#define ZELCAM_TOOLS_ZELCAM_JSONTEXT_H

#include <string>

#include <nlohmann/json_fwd.hpp>

// In one line for an `indent` of -1. Producers and cameras should speak UTF-8; what is not becomes
// a replacement character.
std::string JsonText(const nlohmann::ordered_json& json, int indent = 2);

#endif  // ZELCAM_TOOLS_ZELCAM_JSONTEXT_H
