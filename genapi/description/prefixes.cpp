#include "genapi/description/prefixes.h"

#include <algorithm>

#include "genapi/description/faults.h"
#include "genapi/description/limits.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr std::string_view kDeclaration = "xmlns";
constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";

bool isDeclaration(std::string_view attribute) {
    return attribute.substr(0, kDeclaration.size()) == kDeclaration &&
           (attribute.size() == kDeclaration.size() || attribute[kDeclaration.size()] == ':');
}

// Empty when the name has none.
std::string_view prefixOf(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

}  // namespace

void Prefixes::enter(const char** attributes, unsigned depth) {
    for (const char** at = attributes; *at; at += 2) {
        if (**at != 'x') continue;  // most names are known not to be one before they are measured
        const std::string_view name = *at;
        if (!isDeclaration(name)) continue;
        if (bound_.size() == kMaxPrefixes) throw Fault{"too many name spaces"};
        const std::string_view prefix = name.substr(std::min(name.size(), kDeclaration.size() + 1));
        bound_.push_back({std::string(prefix), at[1], depth});
    }
}

const std::string* Prefixes::find(std::string_view prefix) const {
    for (auto binding = bound_.rbegin(); binding != bound_.rend(); ++binding)
        if (binding->prefix == prefix) return &binding->nameSpace;
    return nullptr;
}

std::string_view Prefixes::localName(std::string_view name) const {
    const std::string_view prefix = prefixOf(name);
    if (prefix.empty()) return name;
    if (!find(prefix)) throw Fault{"unbound prefix", FaultPlace::Before};
    return name.substr(prefix.size() + 1);
}

std::string_view Prefixes::nameSpaceOf(std::string_view element) const {
    const std::string* nameSpace = find(prefixOf(element));
    return nameSpace ? *nameSpace : std::string_view();
}

bool Prefixes::isForeign(std::string_view attribute) const {
    if (isDeclaration(attribute)) return true;
    const std::string_view prefix = prefixOf(attribute);
    if (prefix.empty() || prefix == "xml") return false;
    const std::string_view local = localName(attribute);
    return *find(prefix) == kSchemaInstance &&
           (local == "type" || local == "nil" || local == "schemaLocation" ||
            local == "noNamespaceSchemaLocation");
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
