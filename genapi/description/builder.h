// Puts a Description together. The reader mentions names and defines nodes; Finish() checks that
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

    TextRef Intern(std::string_view text);
    // The number of a name; the first mention of a name gives it the next number.
    NodeId Mention(std::string_view name);
    bool IsDefined(NodeId id) const;
    // Gives a mentioned node its kind and elements, in document order. Once per node.
    void Define(NodeId id, NodeKind kind, ENameSpace nameSpace, bool exposeStatic,
                Slice<Property> properties);
    std::string_view Name(NodeId id) const;
    TextRef NameOf(NodeId id) const;
    std::string_view Text(TextRef ref) const;
    DeviceInfo& Info();

    // Throws RuntimeException for names that are mentioned but not defined, for references to nodes
    // of a wrong kind, and for cycles; PropertyException for texts that are not numbers. Call it
    // once, as the last operation.
    std::shared_ptr<const Description> Finish();

  private:
    struct Interned;

    bool Stands(std::string_view text, TextRef place) const;
    size_t SlotOf(std::string_view text);
    void IndexNames();
    void CheckNames() const;

    std::unique_ptr<Description> description_;
    std::unique_ptr<Interned> interned_;  // the texts so far, and the nodes with these names
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
