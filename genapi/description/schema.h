// The grammar of descriptions: what may stand inside each kind of node and in which order, which
// attributes elements have, and which texts. It is the same for schemas 1.0 and 1.1: a description
// of either may use all of it.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "genapi/description/contentmodel.h"
#include "genapi/description/slice.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// What the text of an element or an attribute may be.
enum class TextType : uint8_t {
    Any,
    NotEmpty,
    Link,     // the name of a node
    Integer,  // checked when the description is complete
    Float,
    Boolean,
    IntegerHere,  // checked at once
    Guid,
    // one of a few words each
    YesNo,
    ExposeStatic,
    Visibility,
    ImposedAccess,
    Access,
    Caching,
    FloatCaching,
    Sign,
    ByteOrder,
    Slope,
    IntegerDisplay,
    FloatDisplay,
    Notation,
    NameSpace,
    StandardNameSpace,
};

// The reason why the type forbids the text; null when it is allowed. Replaces an empty text by the
// type's default, if it has one, and removes blanks around a boolean.
const char* Refusal(TextType type, std::string_view& text);

struct AttributeRule {
    std::string_view name;
    bool required;
    TextType type;
};
using AttributeRules = Slice<AttributeRule>;

// The most attributes that an element may have.
constexpr size_t kMostAttributes = 12;

// In the order of these rules; a rule is found by its number. The three parts of a version stand in
// a row.
enum RootAttribute : size_t {
    kModelName,
    kVendorName,
    kStandardNameSpace,
    kSchemaMajorVersion,
    kMajorVersion = kSchemaMajorVersion + 3,
    kProductGuid = kMajorVersion + 3,
    kVersionGuid,
    kToolTip
};
AttributeRules RootAttributes();

enum NodeAttribute : size_t { kName, kNameSpace, kExposeStatic };
AttributeRules NodeAttributes();     // of nodes of all kinds, also inside other nodes
AttributeRules CommentAttributes();  // of Group and StructReg

// For an element inside a node that is not a node itself: one name or index, or those of a pIndex.
enum StepAttribute : size_t { kOffset, kOffsetNode };
AttributeRules LeafAttributes(Element element, ModelId model);

// The allowed content of a node.
struct NodeModel {
    ContentModel content;
    std::array<TextType, kNoKey> texts{};  // by key
};

// For a kind of node, or for StructReg.
const NodeModel& ModelFor(ModelId model);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
