// Puts a Description together. The reader mentions names and defines nodes; finish() checks that
// every name was defined, computes the typed data and the links, and hands out the result.
#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class DescriptionBuilder {
public:
    DescriptionBuilder();
    ~DescriptionBuilder();

    TextRef intern(std::string_view text);
    // The number of a name; the first mention of a name gives it the next number.
    NodeId mention(std::string_view name);
    bool isDefined(NodeId id) const;
    // Gives a mentioned node its kind and elements, in document order. Once per node.
    void define(NodeId id, NodeKind kind, ENameSpace nameSpace, bool exposeStatic,
                const std::vector<Property>& properties);
    DeviceInfo& info();

    // Throws RuntimeException for names that were mentioned but not defined, for references to
    // nodes of a wrong kind, for cycles; PropertyException for numbers that are none.
    std::shared_ptr<const Description> finish();

private:
    struct Interned;
    std::unique_ptr<Description> description_;
    std::unique_ptr<Interned> interned_;  // hash sets of the texts and names so far
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
