// The names of XML elements: what a tag inside a description stands for.
#pragma once

#include <cstdint>
#include <string_view>

#include "genapi/description/elements.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Which content model an element has, if it is a node: the kinds of nodes, and two that leave none.
using ModelId = uint8_t;
constexpr ModelId ModelOf(NodeKind kind) {
    return static_cast<ModelId>(kind);
}
constexpr ModelId kStructReg = ModelOf(NodeKind::SmartFeature) + 1;
constexpr ModelId kGroup = kStructReg + 1;
constexpr ModelId kNoModel = kGroup + 1;

// What an element is inside a node: one of Element, or one of those that are nodes themselves or
// leave nothing.
using Key = uint8_t;
constexpr Key KeyOf(Element element) {
    return static_cast<Key>(element);
}
constexpr Key kExtension = KeyOf(Element::IntKey) + 1;
constexpr Key kStructEntry = kExtension + 1;
constexpr Key kEnumEntry = kStructEntry + 1;
constexpr Key kInlineFormula = kEnumEntry + 1;
constexpr Key kNoKey = kInlineFormula + 1;

struct Tag {
    std::string_view name;
    ModelId model = kNoModel;
    Key key = kNoKey;
};

// Null for a name that no schema knows.
const Tag* FindTag(std::string_view name);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
