// The names of XML elements, and what they stand for inside a description.
#pragma once

#include <cstdint>
#include <string_view>

#include "genapi/description/elements.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// The content model of an element that is a node: the kinds of nodes, and two that produce no node.
using ModelId = uint8_t;
constexpr ModelId ModelOf(NodeKind kind) {
    return static_cast<ModelId>(kind);
}
constexpr ModelId kStructReg = ModelOf(NodeKind::SmartFeature) + 1;
constexpr ModelId kGroup = kStructReg + 1;
constexpr ModelId kNoModel = kGroup + 1;

// What an element is inside a node: an Element, or a tag that is a node itself or is skipped.
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

// Null for a name that neither schema defines.
const Tag* FindTag(std::string_view name);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
