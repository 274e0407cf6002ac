#include "genapi/description/subtree.h"

#include <string>

#include <Base/GCException.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// For each node, whether the root leads to it.
std::vector<bool> Reached(const Description& description, NodeId root) {
    std::vector<bool> found(description.NodeCount());
    std::vector<NodeId> open = {root};
    found[root] = true;
    while (!open.empty()) {
        const NodeId id = open.back();
        open.pop_back();
        for (const Property& property : description.Properties(id))
            if (IsLink(property.element) && !found[property.Target()]) {
                found[property.Target()] = true;
                open.push_back(property.Target());
            }
    }
    return found;
}

class Copier {
  public:
    Copier(const Description& from, DescriptionBuilder& to)
        : from_(from), to_(to), numbers_(from.NodeCount(), kNoNode) {}

    void Mention(NodeId id, std::string_view name) {
        numbers_[id] = to_.Mention(name);
        if (to_.IsDefined(numbers_[id])) ThrowConflict(name);
    }

    void Define(NodeId id) {
        const NodeRecord& record = from_.Record(id);
        if (to_.IsDefined(numbers_[id])) ThrowConflict(to_.Name(numbers_[id]));
        std::vector<Property> properties;
        for (const Property& property : from_.Properties(id))
            properties.push_back({property.element,
                                  IsLink(property.element)
                                      ? numbers_[property.Target()]
                                      : to_.Intern(from_.Text(property.Text())),
                                  to_.Intern(from_.Text(property.attribute))});
        to_.Define(numbers_[id], record.kind, static_cast<ENameSpace>(record.nameSpace),
                   record.exposeStatic, {properties.data(), properties.size()});
    }

  private:
    [[noreturn]] static void ThrowConflict(std::string_view name) {
        throw RUNTIME_EXCEPTION("Merge conflict with node '%s'", std::string(name).c_str());
    }

    const Description& from_;
    DescriptionBuilder& to_;
    std::vector<NodeId> numbers_;
};

}  // namespace

std::shared_ptr<const Description> SubtreeOf(const Description& from, NodeId root,
                                             bool renameToRoot) {
    const std::vector<bool> wanted = Reached(from, root);
    DescriptionBuilder builder;
    builder.Info() = from.Info();
    Copier copier(from, builder);
    for (NodeId id = 0; id < wanted.size(); ++id)
        if (wanted[id]) copier.Mention(id, renameToRoot && id == root ? "Root" : from.Name(id));
    for (NodeId id = 0; id < wanted.size(); ++id)
        if (wanted[id]) copier.Define(id);
    return builder.Finish();
}

void AddNodes(const Description& from, DescriptionBuilder& to) {
    Copier copier(from, to);
    for (NodeId id = 0; id < from.NodeCount(); ++id)
        copier.Mention(id, from.Name(id));
    for (NodeId id = 0; id < from.NodeCount(); ++id)
        copier.Define(id);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
