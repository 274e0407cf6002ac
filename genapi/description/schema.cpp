#include "genapi/description/schema.h"

#include <algorithm>
#include <iterator>
#include <string>

#include <Base/GCException.h>

#include "genapi/description/numbers.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Parts that several kinds share. Registers have pInvalidator and Streamable, and a StructEntry has
// Streamable, in other places than all other kinds.
#define COMMON                                                                                   \
    "Extension? ToolTip? Description? DisplayName? Visibility? DocuURL? IsDeprecated? EventID? " \
    "pIsImplemented? pIsAvailable? pIsLocked? pBlockPolling? ImposedAccessMode? pError* "        \
    "pAlias? pCastAlias? "
#define NODE COMMON "pInvalidator* "
#define PLACE "(Address | IntSwissKnife | pAddress | pIndex)+ "
#define IN_PORT "AccessMode pPort Cachable? PollingTime? pInvalidator* "
#define REGISTER COMMON "Streamable? " PLACE "(Length | pLength) " IN_PORT
#define BITS "(Bit | LSB MSB) Sign? "
#define INDEXED "pIndex (ValueIndexed | pValueIndexed)+ (ValueDefault | pValueDefault)"
#define LIMITS "(Min | pMin)? (Max | pMax)? (Inc | pInc)? "
#define SHOWN "Unit? Representation? "
#define SHOWN_AS_FLOAT SHOWN "DisplayNotation? DisplayPrecision? "
#define FORMULA_NODE NODE "Streamable? pVariable* Constant* Expression* "

struct Grammar {
    ModelId model;
    const char* content;
};

constexpr Grammar kGrammars[] = {
    {ModelOf(NodeKind::Node), NODE},
    {ModelOf(NodeKind::Category), NODE "pFeature*"},
    {ModelOf(NodeKind::Integer),
     NODE "Streamable? (Value | pValueCopy* pValue pValueCopy* | " INDEXED ") " LIMITS SHOWN
          "ValidValueSet? pSelected*"},
    {ModelOf(NodeKind::IntReg), REGISTER "Sign? Endianess " SHOWN "pSelected*"},
    {ModelOf(NodeKind::MaskedIntReg),
     COMMON "Streamable? " PLACE "Length " IN_PORT BITS "Endianess " SHOWN "pSelected*"},
    {kStructReg, REGISTER "Endianess StructEntry+"},
    {ModelOf(NodeKind::StructEntry),
     NODE "AccessMode? Cachable? PollingTime? Streamable? " BITS SHOWN "pSelected*"},
    {ModelOf(NodeKind::Boolean), NODE "Streamable? (Value | pValue) OnValue? OffValue? pSelected*"},
    {ModelOf(NodeKind::Command),
     NODE "(Value | pValue) (CommandValue | pCommandValue) PollingTime?"},
    {ModelOf(NodeKind::Enumeration),
     NODE "Streamable? EnumEntry+ (Value | pValue) pSelected* PollingTime?"},
    {ModelOf(NodeKind::EnumEntry), NODE "Value NumericValue? Symbolic? IsSelfClearing?"},
    {ModelOf(NodeKind::Float),
     NODE "Streamable? (Value | pValue | " INDEXED ") " LIMITS SHOWN_AS_FLOAT},
    {ModelOf(NodeKind::FloatReg), REGISTER "Endianess " SHOWN_AS_FLOAT},
    {ModelOf(NodeKind::String), NODE "Streamable? (Value | pValue)"},
    {ModelOf(NodeKind::StringReg), REGISTER},
    {ModelOf(NodeKind::Register), REGISTER},
    {ModelOf(NodeKind::SwissKnife), FORMULA_NODE "Formula " SHOWN_AS_FLOAT},
    {ModelOf(NodeKind::IntSwissKnife), FORMULA_NODE "Formula " SHOWN},
    {ModelOf(NodeKind::Converter),
     FORMULA_NODE "FormulaTo FormulaFrom pValue " SHOWN_AS_FLOAT "Slope? IsLinear?"},
    {ModelOf(NodeKind::IntConverter), FORMULA_NODE "FormulaTo FormulaFrom pValue " SHOWN "Slope?"},
    {ModelOf(NodeKind::Port), NODE "(ChunkID | pChunkID)? SwapEndianess? CacheChunkData?"},
    {ModelOf(NodeKind::ConfRom),
     "(" NODE "Unit (Address | IntSwissKnife | pAddress)+ Length pPort (TextDesc | IntKey)*)+"},
    {ModelOf(NodeKind::TextDesc), "p1212Parser Key"},
    {ModelOf(NodeKind::IntKey), "p1212Parser Key"},
    {ModelOf(NodeKind::AdvFeatureLock), REGISTER "FeatureID Timeout?"},
    {ModelOf(NodeKind::SmartFeature),
     "FeatureID (Address | IntSwissKnife | pAddress)+ pPort pIsImplemented? pIsAvailable?"},
};
static_assert(std::size(kGrammars) == kGroup, "each kind of node and StructReg has a grammar");

#undef COMMON
#undef NODE
#undef PLACE
#undef IN_PORT
#undef REGISTER
#undef BITS
#undef INDEXED
#undef LIMITS
#undef SHOWN
#undef SHOWN_AS_FLOAT
#undef FORMULA_NODE

// Elements with restricted texts, in nodes of any kind.
struct ElementText {
    Element element;
    TextType type;
};

constexpr ElementText kElementTexts[] = {
    {Element::ToolTip, TextType::NotEmpty},
    {Element::Description, TextType::NotEmpty},
    {Element::DisplayName, TextType::NotEmpty},
    {Element::Visibility, TextType::Visibility},
    {Element::IsDeprecated, TextType::YesNo},
    {Element::ImposedAccessMode, TextType::ImposedAccess},
    {Element::Streamable, TextType::YesNo},
    {Element::Value, TextType::Integer},
    {Element::ValueIndexed, TextType::Integer},
    {Element::ValueDefault, TextType::Integer},
    {Element::Min, TextType::Integer},
    {Element::Max, TextType::Integer},
    {Element::Inc, TextType::Integer},
    {Element::Unit, TextType::NotEmpty},
    {Element::Representation, TextType::IntegerDisplay},
    {Element::ValidValueSet, TextType::NotEmpty},
    {Element::Address, TextType::Integer},
    {Element::Length, TextType::Integer},
    {Element::AccessMode, TextType::Access},
    {Element::Cachable, TextType::Caching},
    {Element::PollingTime, TextType::Integer},
    {Element::Sign, TextType::Sign},
    {Element::Endianess, TextType::ByteOrder},
    {Element::Bit, TextType::Integer},
    {Element::LSB, TextType::Integer},
    {Element::MSB, TextType::Integer},
    {Element::OnValue, TextType::Integer},
    {Element::OffValue, TextType::Integer},
    {Element::CommandValue, TextType::Integer},
    {Element::DisplayNotation, TextType::Notation},
    {Element::DisplayPrecision, TextType::Integer},
    {Element::NumericValue, TextType::Float},
    {Element::IsSelfClearing, TextType::YesNo},
    {Element::Constant, TextType::Integer},
    {Element::Slope, TextType::Slope},
    {Element::IsLinear, TextType::YesNo},
    {Element::SwapEndianess, TextType::YesNo},
    {Element::CacheChunkData, TextType::YesNo},
    {Element::TextDesc, TextType::Any},
    {Element::IntKey, TextType::Any},
};

// Elements whose texts are restricted differently in nodes of one kind.
struct NodeText {
    NodeKind kind;
    Element element;
    TextType type;
};

constexpr NodeText kNodeTexts[] = {
    {NodeKind::Boolean, Element::Value, TextType::Boolean},
    {NodeKind::String, Element::Value, TextType::Any},
    {NodeKind::Float, Element::Value, TextType::Float},
    {NodeKind::Float, Element::ValueIndexed, TextType::Float},
    {NodeKind::Float, Element::ValueDefault, TextType::Float},
    {NodeKind::Float, Element::Min, TextType::Float},
    {NodeKind::Float, Element::Max, TextType::Float},
    {NodeKind::Float, Element::Inc, TextType::Float},
    {NodeKind::Float, Element::Representation, TextType::FloatDisplay},
    {NodeKind::FloatReg, Element::Representation, TextType::FloatDisplay},
    {NodeKind::FloatReg, Element::Cachable, TextType::FloatCaching},
    {NodeKind::SwissKnife, Element::Constant, TextType::Float},
    {NodeKind::SwissKnife, Element::Representation, TextType::FloatDisplay},
    {NodeKind::Converter, Element::Constant, TextType::Float},
    {NodeKind::Converter, Element::Representation, TextType::FloatDisplay},
    {NodeKind::SmartFeature, Element::FeatureID, TextType::Guid},
};

// The words of a type. The first one is the default for an empty text, if the type has a default.
struct Words {
    TextType type;
    bool hasDefault;
    std::array<std::string_view, 7> words;
};

constexpr Words kWords[] = {
    {TextType::YesNo, true, {"No", "Yes"}},
    {TextType::ExposeStatic, false, {"No", "Yes"}},
    {TextType::Visibility, true, {"Beginner", "Expert", "Guru", "Invisible"}},
    {TextType::ImposedAccess, true, {"RW", "RO", "WO"}},
    {TextType::Access, true, {"RO", "RW", "WO"}},
    {TextType::Caching, true, {"WriteThrough", "NoCache", "WriteAround"}},
    {TextType::FloatCaching, true, {"WriteAround", "NoCache", "WriteThrough"}},
    {TextType::Sign, true, {"Unsigned", "Signed"}},
    {TextType::ByteOrder, true, {"LittleEndian", "BigEndian"}},
    {TextType::Slope, true, {"Automatic", "Increasing", "Decreasing", "Varying"}},
    {TextType::IntegerDisplay,
     false,
     {"Linear", "Logarithmic", "Boolean", "PureNumber", "HexNumber", "IPV4Address", "MACAddress"}},
    {TextType::FloatDisplay, false, {"Linear", "Logarithmic", "PureNumber"}},
    {TextType::Notation, false, {"Automatic", "Fixed", "Scientific"}},
    {TextType::NameSpace, true, {"Custom", "Standard"}},
    {TextType::StandardNameSpace, false, {"None", "IIDC", "GEV", "CL", "USB"}},
};

constexpr AttributeRule kRootAttributes[] = {
    {"ModelName", true, TextType::Any},
    {"VendorName", true, TextType::Any},
    {"StandardNameSpace", true, TextType::StandardNameSpace},
    {"SchemaMajorVersion", true, TextType::Any},
    {"SchemaMinorVersion", true, TextType::Any},
    {"SchemaSubMinorVersion", true, TextType::Any},
    {"MajorVersion", true, TextType::Any},
    {"MinorVersion", true, TextType::Any},
    {"SubMinorVersion", true, TextType::Any},
    {"ProductGuid", true, TextType::Any},
    {"VersionGuid", true, TextType::Any},
    {"ToolTip", false, TextType::Any},
};
constexpr AttributeRule kCommentAttributes[] = {{"Comment", true, TextType::Any}};
constexpr AttributeRule kNodeAttributes[] = {
    {"Name", true, TextType::Any},
    {"NameSpace", false, TextType::NameSpace},
    {"ExposeStatic", false, TextType::ExposeStatic},
    {"MergePriority", false, TextType::IntegerHere},
};
constexpr AttributeRule kNameAttributes[] = {{"Name", true, TextType::Any}};
constexpr AttributeRule kKeyAttributes[] = {{"Name", true, TextType::Any},
                                            {"NameSpace", false, TextType::NameSpace}};
constexpr AttributeRule kIndexAttributes[] = {{"Index", true, TextType::Any}};
constexpr AttributeRule kStepAttributes[] = {{"Offset", false, TextType::Any},
                                             {"pOffset", false, TextType::Any}};

template <size_t Count>
AttributeRules RulesOf(const AttributeRule (&rules)[Count]) {
    static_assert(Count <= kMostAttributes);
    return {rules, Count};
}

const char* WordRefusal(TextType type, std::string_view& text) {
    const Words& list = *std::find_if(std::begin(kWords), std::end(kWords),
                                      [type](const Words& words) { return words.type == type; });
    if (text.empty()) {
        if (list.hasDefault) text = list.words[0];
    } else if (std::find(list.words.begin(), list.words.end(), text) == list.words.end()) {
        text = {};
    }
    return text.empty() ? "value is not in enumeration" : nullptr;
}

const char* BooleanRefusal(std::string_view& text) {
    text = Trimmed(text);
    if (text == "true" || text == "false" || text == "1" || text == "0") return nullptr;
    return "invalid boolean value";
}

// Groups of 8, 4, 4, 4 and 12 hexadecimal digits.
bool IsGuid(std::string_view text) {
    constexpr std::string_view kForm = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
    constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
    return text.size() == kForm.size() &&
           std::equal(text.begin(), text.end(), kForm.begin(), [&](char sign, char form) {
               return form == 'X' ? kDigits.find(sign) != kDigits.npos : sign == form;
           });
}

NodeModel Built(const Grammar& grammar) {
    NodeModel model;
    model.content = ContentModel(grammar.content);
    for (Key key = 0; key <= KeyOf(Element::IntKey); ++key)
        if (IsLink(static_cast<Element>(key))) model.texts[key] = TextType::Link;
    for (const ElementText& text : kElementTexts)
        model.texts[KeyOf(text.element)] = text.type;
    for (const NodeText& text : kNodeTexts)
        if (ModelOf(text.kind) == grammar.model) model.texts[KeyOf(text.element)] = text.type;
    return model;
}

}  // namespace

const char* Refusal(TextType type, std::string_view& text) {
    switch (type) {
        case TextType::Any:
        case TextType::Link:
        case TextType::Integer:
            return nullptr;
        case TextType::NotEmpty:
            return text.empty() ? "length is less than minimum allowed" : nullptr;
        case TextType::Float: {
            double value = 0;
            return Parse(text, value) ? nullptr : "invalid double value";
        }
        case TextType::Boolean:
            return BooleanRefusal(text);
        case TextType::IntegerHere: {
            int64_t value = 0;
            return Parse(text, value) ? nullptr : "invalid integer value";
        }
        case TextType::Guid:
            if (!IsGuid(text))
                throw RUNTIME_EXCEPTION("Error while parsing XML file : %s is not a valid GUID ",
                                        std::string(text).c_str());
            return nullptr;
        default:
            return WordRefusal(type, text);
    }
}

AttributeRules RootAttributes() {
    return RulesOf(kRootAttributes);
}

AttributeRules CommentAttributes() {
    return RulesOf(kCommentAttributes);
}

AttributeRules NodeAttributes() {
    return RulesOf(kNodeAttributes);
}

AttributeRules LeafAttributes(Element element, ModelId model) {
    switch (element) {
        case Element::pVariable:
        case Element::Constant:
        case Element::Expression:
            return RulesOf(kNameAttributes);
        case Element::TextDesc:
        case Element::IntKey:
            return RulesOf(kKeyAttributes);
        case Element::ValueIndexed:
        case Element::pValueIndexed:
            return RulesOf(kIndexAttributes);
        case Element::pIndex:
            if (model == ModelOf(NodeKind::Integer) || model == ModelOf(NodeKind::Float)) return {};
            return RulesOf(kStepAttributes);
        default:
            return {};
    }
}

const NodeModel& ModelFor(ModelId model) {
    static const std::array<NodeModel, kGroup> kModels = [] {
        std::array<NodeModel, kGroup> made;
        for (const Grammar& grammar : kGrammars)
            made[grammar.model] = Built(grammar);
        return made;
    }();
    return kModels[model];
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
