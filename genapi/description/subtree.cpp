#include "genapi/description/subtree.h"

#include <string>

#include <Base/GCException.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Whether each node is reached from the root.
std::vector<bool> reached(const Description& description, NodeId root) {
    std::vector<bool> found(description.nodeCount());
    std::vector<NodeId> open = {root};
    found[root] = true;
    while (!open.empty()) {
        const NodeId id = open.back();
        open.pop_back();
        for (const Property& property : description.properties(id))
            if (isLink(property.element) && !found[property.node()]) {
                found[property.node()] = true;
                open.push_back(property.node());
            }
    }
    return found;
}

class Copier {
  public:
    Copier(const Description& from, DescriptionBuilder& to)
        : from_(from), to_(to), numbers_(from.nodeCount(), kNoNode) {}

    void mention(NodeId id, std::string_view name) {
        numbers_[id] = to_.mention(name);
        if (to_.isDefined(numbers_[id])) throwConflict(name);
    }

    void define(NodeId id) {
        const NodeRecord& record = from_.record(id);
        if (to_.isDefined(numbers_[id])) throwConflict(to_.name(numbers_[id]));
        std::vector<Property> properties;
        for (const Property& property : from_.properties(id))
            properties.push_back({property.element,
                                  isLink(property.element)
                                      ? numbers_[property.node()]
                                      : to_.intern(from_.text(property.text())),
                                  to_.intern(from_.text(property.attribute))});
        to_.define(numbers_[id], record.kind, static_cast<ENameSpace>(record.nameSpace),
                   record.exposeStatic, {properties.data(), properties.size()});
    }

  private:
    [[noreturn]] static void throwConflict(std::string_view name) {
        throw RUNTIME_EXCEPTION("Merge conflict with node '%s'", std::string(name).c_str());
    }

    const Description& from_;
    DescriptionBuilder& to_;
    std::vector<NodeId> numbers_;
};

}  // namespace

std::shared_ptr<const Description> extractSubtree(const Description& from, NodeId root,
                                                  bool renameToRoot) {
    const std::vector<bool> wanted = reached(from, root);
    DescriptionBuilder builder;
    builder.info() = from.info();
    Copier copier(from, builder);
    for (NodeId id = 0; id < wanted.size(); ++id)
        if (wanted[id]) copier.mention(id, renameToRoot && id == root ? "Root" : from.name(id));
    for (NodeId id = 0; id < wanted.size(); ++id)
        if (wanted[id]) copier.define(id);
    return builder.finish();
}

void addNodes(const Description& from, DescriptionBuilder& to) {
    Copier copier(from, to);
    for (NodeId id = 0; id < from.nodeCount(); ++id)
        copier.mention(id, from.name(id));
    for (NodeId id = 0; id < from.nodeCount(); ++id)
        copier.define(id);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
