// The grammar of descriptions: what may stand inside each kind of node and in which order, which
// attributes elements have, and which texts. Schemas 1.0 and 1.1 differ in none of it here: a
// description of either may use all of it.
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

// Why a text cannot be of that type; null when it can. An empty text becomes the default where its
// type has one, a boolean loses the blanks around it.
const char* Refusal(TextType type, std::string_view& text);

struct AttributeRule {
    std::string_view name;
    bool required;
    TextType type;
};
using AttributeRules = Slice<AttributeRule>;

// The most attributes that an element may have.
constexpr size_t kMostAttributes = 12;

// In the order of these rules, which are found by number. Versions are three in a row.
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

// Of an element inside a node that is no node itself: one name or index, or those of a pIndex.
enum StepAttribute : size_t { kOffset, kOffsetNode };
AttributeRules LeafAttributes(Element element, ModelId model);

// What the content of a node may be.
struct NodeModel {
    ContentModel content;
    std::array<TextType, kNoKey> texts{};  // by key
};

// Of a kind of node, or of StructReg.
const NodeModel& ModelFor(ModelId model);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
