// The vocabulary of descriptions: kinds of nodes, and the elements that stand inside them.
#pragma once

#include <cstdint>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// X(name): the kinds of nodes, by their names in a description. StructReg is not a kind: it is
// expanded into StructEntries, which are MaskedIntRegs. (clang-format would indent each line one
// step further.)
// clang-format off
#define GENAPI_NODE_KINDS(X)                                                                \
    X(Node) X(Category) X(Integer) X(IntReg) X(MaskedIntReg) X(StructEntry) X(Boolean)      \
    X(Command) X(Float) X(FloatReg) X(Enumeration) X(EnumEntry) X(String) X(StringReg)      \
    X(Register) X(SwissKnife) X(IntSwissKnife) X(Converter) X(IntConverter) X(Port)         \
    X(ConfRom) X(TextDesc) X(IntKey) X(AdvFeatureLock) X(SmartFeature)
// clang-format on

enum class NodeKind : uint8_t {
#define GENAPI_NODE_KIND(name) name,
    GENAPI_NODE_KINDS(GENAPI_NODE_KIND)
#undef GENAPI_NODE_KIND
};

// Every element with a text that a node may hold, by its name: X(name).
// clang-format off
#define GENAPI_TEXT_ELEMENTS(X)                                                                  \
    X(ToolTip) X(Description) X(DisplayName) X(Visibility) X(DocuURL) X(IsDeprecated) X(EventID) \
    X(ImposedAccessMode) X(Streamable) X(Value) X(ValueIndexed) X(ValueDefault) X(Min) X(Max)    \
    X(Inc) X(Unit) X(Representation) X(ValidValueSet) X(Address) X(Offset) X(Length)             \
    X(AccessMode) X(Cachable) X(PollingTime) X(Sign) X(Endianess) X(Bit) X(LSB) X(MSB)           \
    X(OnValue) X(OffValue) X(CommandValue) X(DisplayNotation) X(DisplayPrecision)                \
    X(NumericValue) X(Symbolic) X(IsSelfClearing) X(Constant) X(Expression) X(Formula)           \
    X(FormulaTo) X(FormulaFrom) X(Slope) X(IsLinear) X(ChunkID) X(SwapEndianess)                 \
    X(CacheChunkData) X(Key) X(FeatureID) X(Timeout)

// Elements that name another node. The loader itself makes the last ones: entries, expressions,
// halves of converters, keys.
#define GENAPI_LINK_ELEMENTS(X)                                                                  \
    X(pIsImplemented) X(pIsAvailable) X(pIsLocked) X(pBlockPolling) X(pError) X(pAlias)          \
    X(pCastAlias) X(pInvalidator) X(pFeature) X(pValue) X(pValueCopy) X(pIndex) X(pValueIndexed) \
    X(pValueDefault) X(pMin) X(pMax) X(pInc) X(pSelected) X(pAddress) X(pOffset) X(pLength)      \
    X(pPort) X(pCommandValue) X(pVariable) X(pChunkID) X(p1212Parser)                            \
    X(pEnumEntry) X(pExpression) X(pConvertTo) X(pConvertFrom) X(TextDesc) X(IntKey)
// clang-format on

enum class Element : uint8_t {
#define GENAPI_ELEMENT(name) name,
    GENAPI_TEXT_ELEMENTS(GENAPI_ELEMENT) GENAPI_LINK_ELEMENTS(GENAPI_ELEMENT)
#undef GENAPI_ELEMENT
};

// Links come after texts in the enumeration.
inline bool IsLink(Element element) {
    return element >= Element::pIsImplemented;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
