#include "tools/zelcam/console/jsontext.h"

#include <nlohmann/json.hpp>

namespace ZelTool {

std::string JsonText(const nlohmann::ordered_json& json, int indent) {
    return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace ZelTool
