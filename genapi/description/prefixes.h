// The prefixes of XML name spaces. The parser could resolve them, but it would copy the name space
// in front of every name. A description has one name space, and it matters in the root element
// only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

class Prefixes {
  public:
    // Takes the declarations from the attributes of an element; depth is the number of open
    // elements. Fault when there are too many declarations.
    void Enter(const char** attributes, unsigned depth);
    // Forgets the declarations of the element at that depth.
    void Leave(unsigned depth) {
        while (!bound_.empty() && bound_.back().depth == depth)
            bound_.pop_back();
    }

    // The name without its prefix. Fault when the prefix is not bound.
    std::string_view LocalName(std::string_view name) const;
    // The name space that the prefix of an element stands for, empty without one.
    std::string_view NameSpaceOf(std::string_view element) const;
    // Whether an attribute has no meaning in a description: a declaration, or a hint to schema
    // processors. Fault when its prefix is not bound.
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
