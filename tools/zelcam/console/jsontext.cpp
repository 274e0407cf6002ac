#include "tools/zelcam/console/jsontext.h"

#include <iostream>

namespace ZelTool {

std::string JsonText(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

std::string JsonLine(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void PrintJson(const Json& json) {
    std::cout << JsonText(json) << '\n';
}

// At once: another program may wait for the line.
void PrintJsonLine(const Json& json) {
    std::cout << JsonLine(json) << std::endl;
}

}  // namespace ZelTool
