#include "genapi/description/prefixes.h"

#include <algorithm>

#include "genapi/description/faults.h"
#include "genapi/description/limits.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr std::string_view kDeclaration = "xmlns";
constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";

bool IsDeclaration(std::string_view attribute) {
    return attribute.substr(0, kDeclaration.size()) == kDeclaration &&
           (attribute.size() == kDeclaration.size() || attribute[kDeclaration.size()] == ':');
}

// Empty when the name has none.
std::string_view PrefixOf(std::string_view name) {
    const size_t colon = name.find(':');
    return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

}  // namespace

void Prefixes::Enter(const char** attributes, unsigned depth) {
    for (const char** at = attributes; *at; at += 2) {
        if (**at != 'x') continue;  // rules most names out before strlen
        const std::string_view name = *at;
        if (!IsDeclaration(name)) continue;
        if (bound_.size() == kMaxPrefixes) throw Fault{"too many name spaces"};
        const std::string_view prefix = name.substr(std::min(name.size(), kDeclaration.size() + 1));
        bound_.push_back({std::string(prefix), at[1], depth});
    }
}

const std::string* Prefixes::Find(std::string_view prefix) const {
    for (auto binding = bound_.rbegin(); binding != bound_.rend(); ++binding)
        if (binding->prefix == prefix) return &binding->nameSpace;
    return nullptr;
}

std::string_view Prefixes::LocalName(std::string_view name) const {
    const std::string_view prefix = PrefixOf(name);
    if (prefix.empty()) return name;
    if (!Find(prefix)) throw Fault{"unbound prefix", FaultPlace::Before};
    return name.substr(prefix.size() + 1);
}

std::string_view Prefixes::NameSpaceOf(std::string_view element) const {
    const std::string* nameSpace = Find(PrefixOf(element));
    return nameSpace ? *nameSpace : std::string_view();
}

bool Prefixes::IsForeign(std::string_view attribute) const {
    if (IsDeclaration(attribute)) return true;
    const std::string_view prefix = PrefixOf(attribute);
    if (prefix.empty() || prefix == "xml") return false;
    const std::string_view local = LocalName(attribute);
    return *Find(prefix) == kSchemaInstance &&
           (local == "type" || local == "nil" || local == "schemaLocation" ||
            local == "noNamespaceSchemaLocation");
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
