// What the schemas 1.0 and 1.1 allow inside each kind of node. The order of the elements is not
// checked; which of them may, must and must not stand together is.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "genapi/description/tags.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Places of a content model are bits. An element takes one place, or two where it stands for what
// two other elements say together.
struct ContentModel {
    std::array<std::uint64_t, kNoKey> places{};  // by key; 0: not allowed
    std::uint64_t once = 0;                      // places that one element at most may take
    std::uint64_t required = 0;                  // places that must be taken
};

const ContentModel& contentModel(ModelId model);

// Whether schema 1.0 knows the element, or the kind of node.
bool isInSchema10(Key key);
bool isInSchema10(NodeKind kind);

// Whether the text is one of the words that the element may say; true for any text where the
// element is no enumeration.
bool isAllowedText(Element element, std::string_view text, ModelId model, unsigned schemaMinor);

// The attribute that belongs to the element and must stand there; null where there is none.
const char* attributeNameOf(Element element);

// Whether the white space around the element's text belongs to it.
bool isFreeText(Element element, ModelId model);

// The words of an attribute.
bool isStandardNameSpace(std::string_view text);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
