#include "genapi/description/description.h"

#include "genapi/description/links.h"
#include "genapi/description/nodedata.h"
#include "genapi/description/texthash.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Removes a leading "Std::" or "Cust::"; _UndefinedNameSpace without one.
ENameSpace TakeNameSpace(std::string_view& name) {
    static constexpr std::string_view kStandard = "Std::", kCustom = "Cust::";
    if (name.substr(0, kStandard.size()) == kStandard) {
        name.remove_prefix(kStandard.size());
        return Standard;
    }
    if (name.substr(0, kCustom.size()) == kCustom) {
        name.remove_prefix(kCustom.size());
        return Custom;
    }
    return _UndefinedNameSpace;
}

}  // namespace

Description::Description()
    : tables_(std::make_unique<NodeTables>()), links_(std::make_unique<LinkTables>()) {}

Description::~Description() = default;

Slice<Property> Description::Properties(NodeId id) const {
    const NodeRecord& record = records_[id];
    return {properties_.data() + record.firstProperty, record.propertyCount};
}

const Property* Description::Find(NodeId id, Element element) const {
    for (const Property& property : Properties(id))
        if (property.element == element) return &property;
    return nullptr;
}

NodeId Description::Find(std::string_view name) const {
    const ENameSpace wanted = TakeNameSpace(name);
    const size_t mask = names_.size() - 1;
    for (size_t i = HashOf(name) & mask; names_[i] != kNoNode; i = (i + 1) & mask) {
        const NodeId id = names_[i];
        if (this->Name(id) == name)
            return wanted == _UndefinedNameSpace || wanted == records_[id].nameSpace ? id : kNoNode;
    }
    return kNoNode;
}

std::string_view Description::Text(NodeId id, Element element) const {
    const Property* property = Find(id, element);
    return property ? Text(property->Text()) : std::string_view();
}

std::string_view Description::Text(TextRef ref) const {
    return pool_.data() + ref;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
