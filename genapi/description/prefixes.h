// The prefixes of XML name spaces. The parser could resolve them itself, but would copy the name
// space in front of every name: a description has one, and it matters in the root element only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

class Prefixes {
  public:
    // Takes the declarations among the attributes of an element; depth is the number of open
    // elements. Fault when there are too many.
    void Enter(const char** attributes, unsigned depth);
    // Forgets the declarations of the element of that depth.
    void Leave(unsigned depth) {
        while (!bound_.empty() && bound_.back().depth == depth)
            bound_.pop_back();
    }

    // The name without its prefix. Fault when the prefix is not bound.
    std::string_view LocalName(std::string_view name) const;
    // The name space that the prefix of an element stands for, empty when none.
    std::string_view NameSpaceOf(std::string_view element) const;
    // Whether an attribute means nothing to a description: a declaration, or one that tells schema
    // processors about the document. Fault when its prefix is not bound.
    bool IsForeign(std::string_view attribute) const;

  private:
    struct Binding {
        std::string prefix, nameSpace;
        unsigned depth;
    };
    const std::string* Find(std::string_view prefix) const;

    std::vector<Binding> bound_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
