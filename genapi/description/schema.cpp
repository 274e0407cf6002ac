#include "genapi/description/schema.h"

#include <algorithm>
#include <vector>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// The content models, a place a word: alternatives behind '|'; '?' at most once, '*' any number,
// '+' at least once, nothing exactly once.
constexpr const char* kCommon =
    "Extension* ToolTip? Description? DisplayName? Visibility? DocuURL? IsDeprecated? EventID? "
    "pIsImplemented? pIsAvailable? pIsLocked? pBlockPolling? ImposedAccessMode? pError* pAlias? "
    "pCastAlias? pInvalidator* ";
constexpr const char* kRegister =
    "Streamable? Address|IntSwissKnife|pAddress|pIndex+ Length|pLength AccessMode pPort Cachable? "
    "PollingTime? ";
constexpr const char* kLimits = "Min|pMin? Max|pMax? Inc|pInc? Unit? Representation? ";
constexpr const char* kSources =
    "Streamable? Value|pValue|pIndex Value|pValue|ValueDefault|pValueDefault "
    "Value|pValue|ValueIndexed|pValueIndexed+ ";
constexpr const char* kNotation = "DisplayNotation? DisplayPrecision? ";
constexpr const char* kFormula = "Streamable? pVariable* Constant* Expression* ";
constexpr const char* kBits = "Bit|LSB Bit|MSB Sign? Unit? Representation? pSelected* ";

struct Grammar {
    ModelId model;
    std::array<const char*, 4> parts;
};

constexpr Grammar kGrammars[] = {
    {modelOf(NodeKind::Node), {kCommon}},
    {modelOf(NodeKind::Category), {kCommon, "pFeature*"}},
    {modelOf(NodeKind::Integer),
     {kCommon, kSources, kLimits, "pValueCopy* ValidValueSet? pSelected*"}},
    {modelOf(NodeKind::IntReg),
     {kCommon, kRegister, "Sign? Endianess Unit? Representation? pSelected*"}},
    {modelOf(NodeKind::MaskedIntReg), {kCommon, kRegister, kBits, "Endianess"}},
    {kStructReg, {kCommon, kRegister, "Endianess StructEntry+"}},
    {modelOf(NodeKind::StructEntry),
     {kCommon, kBits, "AccessMode? Cachable? PollingTime? Streamable?"}},
    {modelOf(NodeKind::Boolean),
     {kCommon, "Streamable? Value|pValue OnValue? OffValue? pSelected*"}},
    {modelOf(NodeKind::Command), {kCommon, "Value|pValue CommandValue|pCommandValue PollingTime?"}},
    {modelOf(NodeKind::Float), {kCommon, kSources, kLimits, kNotation}},
    {modelOf(NodeKind::FloatReg),
     {kCommon, kRegister, kNotation, "Endianess Unit? Representation?"}},
    {modelOf(NodeKind::Enumeration),
     {kCommon, "Streamable? pEnumEntry+ Value|pValue pSelected* PollingTime?"}},
    {modelOf(NodeKind::EnumEntry), {kCommon, "Value NumericValue? Symbolic? IsSelfClearing?"}},
    {modelOf(NodeKind::String), {kCommon, "Streamable? Value|pValue"}},
    {modelOf(NodeKind::StringReg), {kCommon, kRegister}},
    {modelOf(NodeKind::Register), {kCommon, kRegister}},
    {modelOf(NodeKind::SwissKnife),
     {kCommon, kFormula, kNotation, "Formula Unit? Representation?"}},
    {modelOf(NodeKind::IntSwissKnife), {kCommon, kFormula, "Formula Unit? Representation?"}},
    {modelOf(NodeKind::Converter),
     {kCommon, kFormula, kNotation,
      "FormulaTo FormulaFrom pValue Unit? Representation? Slope? IsLinear?"}},
    {modelOf(NodeKind::IntConverter),
     {kCommon, kFormula, "FormulaTo FormulaFrom pValue Unit? Representation? Slope?"}},
    {modelOf(NodeKind::Port), {kCommon, "ChunkID|pChunkID? SwapEndianess? CacheChunkData?"}},
    {modelOf(NodeKind::ConfRom),
     {kCommon, "Unit Address|IntSwissKnife|pAddress+ Length pPort TextDesc* IntKey*"}},
    {modelOf(NodeKind::TextDesc), {"Extension* p1212Parser Key"}},
    {modelOf(NodeKind::IntKey), {"Extension* p1212Parser Key"}},
    {modelOf(NodeKind::AdvFeatureLock), {kCommon, kRegister, "FeatureID Timeout?"}},
    {modelOf(NodeKind::SmartFeature),
     {"Extension* FeatureID Address|IntSwissKnife|pAddress+ pPort pIsImplemented? pIsAvailable?"}},
};

std::string_view takeUpTo(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view head = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return head;
}

void addPlace(ContentModel& model, std::string_view word, unsigned number) {
    const std::uint64_t place = std::uint64_t{1} << number;
    const char count = word.back();
    if (count == '?' || count == '*' || count == '+') word.remove_suffix(1);
    if (count != '*' && count != '+') model.once |= place;
    if (count != '*' && count != '?') model.required |= place;
    while (!word.empty())
        model.places[findTag(takeUpTo(word, '|'))->key] |= place;
}

ContentModel built(const Grammar& grammar) {
    ContentModel model;
    unsigned places = 0;
    for (const char* part : grammar.parts) {
        std::string_view words = part ? part : "";
        while (!words.empty())
            addPlace(model, takeUpTo(words, ' '), places++);
    }
    return model;
}

using Words = std::vector<std::string_view>;

const Words* wordsOf(Element element) {
    static const Words yesNo = {"Yes", "No"};
    static const Words visibilities = {"Beginner", "Expert", "Guru", "Invisible"};
    static const Words accessModes = {"RO", "RW", "WO"};
    static const Words cachings = {"NoCache", "WriteThrough", "WriteAround"};
    static const Words signs = {"Signed", "Unsigned"};
    static const Words byteOrders = {"LittleEndian", "BigEndian"};
    static const Words representations = {"Linear",    "Logarithmic", "PureNumber", "Boolean",
                                          "HexNumber", "IPV4Address", "MACAddress"};
    static const Words notations = {"Automatic", "Fixed", "Scientific"};
    static const Words slopes = {"Increasing", "Decreasing", "Varying", "Automatic"};
    switch (element) {
        case Element::Visibility:
            return &visibilities;
        case Element::ImposedAccessMode:
        case Element::AccessMode:
            return &accessModes;
        case Element::Cachable:
            return &cachings;
        case Element::Sign:
            return &signs;
        case Element::Endianess:
            return &byteOrders;
        case Element::Representation:
            return &representations;
        case Element::DisplayNotation:
            return &notations;
        case Element::Slope:
            return &slopes;
        case Element::Streamable:
        case Element::IsDeprecated:
        case Element::IsSelfClearing:
        case Element::IsLinear:
        case Element::SwapEndianess:
        case Element::CacheChunkData:
            return &yesNo;
        default:
            return nullptr;
    }
}

// How many of the words of Representation, from the front, the node may use.
std::size_t representationsOf(ModelId model, unsigned schemaMinor) {
    if (model == modelOf(NodeKind::Float) || model == modelOf(NodeKind::FloatReg) ||
        model == modelOf(NodeKind::SwissKnife) || model == modelOf(NodeKind::Converter))
        return 3;
    return schemaMinor == 0 ? 5 : 7;
}

}  // namespace

const ContentModel& contentModel(ModelId model) {
    static const std::array<ContentModel, kGroup> models = [] {
        std::array<ContentModel, kGroup> made;
        for (const Grammar& grammar : kGrammars)
            made[grammar.model] = built(grammar);
        return made;
    }();
    return models[model];
}

bool isInSchema10(Key key) {
    switch (key) {
        case keyOf(Element::DocuURL):
        case keyOf(Element::IsDeprecated):
        case keyOf(Element::pBlockPolling):
        case keyOf(Element::pError):
        case keyOf(Element::pCastAlias):
        case keyOf(Element::Constant):
        case keyOf(Element::Expression):
        case keyOf(Element::DisplayNotation):
        case keyOf(Element::DisplayPrecision):
        case keyOf(Element::ValueIndexed):
        case keyOf(Element::pValueIndexed):
        case keyOf(Element::ValueDefault):
        case keyOf(Element::pValueDefault):
        case keyOf(Element::pValueCopy):
        case keyOf(Element::ValidValueSet):
        case keyOf(Element::NumericValue):
        case keyOf(Element::IsSelfClearing):
        case keyOf(Element::CacheChunkData):
        case keyOf(Element::IsLinear):
            return false;
        default:
            return true;
    }
}

bool isInSchema10(NodeKind kind) {
    return kind != NodeKind::String;
}

bool isAllowedText(Element element, std::string_view text, ModelId model, unsigned schemaMinor) {
    const Words* words = wordsOf(element);
    if (!words) return true;
    const std::size_t count =
        element == Element::Representation ? representationsOf(model, schemaMinor) : words->size();
    const auto end = words->data() + count;
    return std::find(words->data(), end, text) != end;
}

const char* attributeNameOf(Element element) {
    switch (element) {
        case Element::pVariable:
        case Element::Constant:
        case Element::Expression:
        case Element::TextDesc:
        case Element::IntKey:
            return "Name";
        case Element::ValueIndexed:
        case Element::pValueIndexed:
            return "Index";
        default:
            return nullptr;
    }
}

bool isFreeText(Element element, ModelId model) {
    switch (element) {
        case Element::ToolTip:
        case Element::Description:
        case Element::DisplayName:
        case Element::DocuURL:
        case Element::Unit:
        case Element::Symbolic:
        case Element::Expression:
        case Element::Formula:
        case Element::FormulaTo:
        case Element::FormulaFrom:
        case Element::FeatureID:
            return true;
        case Element::Value:
            return model == modelOf(NodeKind::String);
        default:
            return false;
    }
}

bool isStandardNameSpace(std::string_view text) {
    static const Words words = {"None", "IIDC", "GEV", "CL", "USB"};
    return std::find(words.begin(), words.end(), text) != words.end();
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
