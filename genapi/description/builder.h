// Puts a Description together. The reader mentions names and defines nodes; finish() checks that
// every name was defined, computes the typed data and the links, and hands out the result.
#pragma once

#include <memory>
#include <string_view>

#include "genapi/description/description.h"
#include "genapi/description/slice.h"

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
                Slice<Property> properties);
    std::string_view name(NodeId id) const;
    TextRef nameOf(NodeId id) const;
    std::string_view text(TextRef ref) const;
    DeviceInfo& info();

    // Throws RuntimeException for names that were mentioned but not defined, for references to
    // nodes of a wrong kind, for cycles; PropertyException for numbers that are none. The builder
    // is used up.
    std::shared_ptr<const Description> finish();

  private:
    struct Interned;

    bool stands(std::string_view text, TextRef place) const;
    std::size_t slotOf(std::string_view text);
    void indexNames();
    void checkNames() const;

    std::unique_ptr<Description> description_;
    std::unique_ptr<Interned> interned_;  // the texts so far, and the nodes that are called so
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
