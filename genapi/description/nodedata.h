// The data that a node of each kind computes with: its elements as numbers and node numbers. There
// is one table per kind; NodeRecord::data is the index into it.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// A number from a constant or from a node, or absent.
template <typename T>
struct Setting {
    enum class Source : uint8_t { None, Constant, Node };
    T constant{};
    NodeId node = kNoNode;
    Source source = Source::None;

    bool Given() const { return source != Source::None; }
    bool IsNode() const { return source == Source::Node; }
};

// A run of elements in one of the shared pools of NodeTables.
struct Range {
    uint32_t first = 0;
    uint32_t count = 0;
};

// How a number is displayed.
struct Presentation {
    TextRef unit = 0;
    uint8_t representation = _UndefinedRepresentation;
    uint8_t notation = _UndefinedEDisplayNotation;
    int16_t precision = -1;  // -1 if not given
};

// Integer and Float: one source of the value (a value, or an index with cases), and limits.
template <typename T>
struct NumberData {
    Setting<T> value;
    NodeId index = kNoNode;  // pIndex
    Range cases;             // of NodeTables::integerCases or floatCases, by index
    Setting<T> otherwise;    // ValueDefault or pValueDefault
    Setting<T> min, max, inc;
    Range copies;       // pValueCopy, in NodeTables::nodes
    Range validValues;  // in NodeTables::validValues
    Presentation presentation;
};
using IntegerData = NumberData<int64_t>;
using FloatData = NumberData<double>;

template <typename T>
struct IndexedCase {
    int64_t index;
    Setting<T> value;
};

// One summand of an address: a constant, a node, or an index times its step.
struct AddressPart {
    Setting<int64_t> base;  // Address, pAddress, IntSwissKnife; the index for an index
    Setting<int64_t> step;  // Offset, pOffset; only for an index
    bool isIndex = false;   // without a step, the length is the step
};

struct RegisterData {
    Range address;                // in NodeTables::addressParts
    int64_t constantAddress = 0;  // sum of the constant parts
    bool addressIsConstant = true;
    Setting<int64_t> length;
    NodeId port = kNoNode;
    uint8_t accessMode = RO;
    uint8_t cachable = WriteThrough;
    bool bigEndian = false;
    bool isSigned = false;
    bool masked = false;
    uint8_t lsb = 0, msb = 0;  // as written; bit 0 is the most significant in big endian
    Presentation presentation;
};

struct BooleanData {
    Setting<int64_t> value;
    int64_t onValue = 1, offValue = 0;
};

struct CommandData {
    Setting<int64_t> value, commandValue;
};

struct EnumerationData {
    Setting<int64_t> value;
    Range entries;  // in NodeTables::nodes, in document order
};

struct EnumEntryData {
    int64_t value = 0;
    double numeric = 0;
    TextRef symbolic = 0;
    bool selfClearing = false;
};

struct StringData {
    Setting<TextRef> value;
};

// The quantity of a node that a formula variable stands for.
enum class VariableForm : uint8_t {
    Value,
    Min,
    Max,
    Inc,
    AccessMode,
    Visibility,
    CachingMode,
    Entry,
    Unknown
};

struct FormulaVariable {
    TextRef name = 0;    // with its suffix, as in the formula
    TextRef suffix = 0;  // the symbolic of an entry, or the unknown suffix
    NodeId node = kNoNode;
    VariableForm form = VariableForm::Value;
};

// A formula and its names. formulas.h compiles it on first use, for all node maps.
struct FormulaData {
    TextRef text = 0;
    Range variables;        // in NodeTables::variables
    NodeId node = kNoNode;  // owner of the constants and expressions
    bool isInteger = true;
    const char* input = nullptr;  // "FROM" or "TO": one more variable, after the others
};
struct CompiledFormula;

// SwissKnife, IntSwissKnife.
struct SwissKnifeData {
    uint32_t formula = 0;  // in NodeTables::formulas
    Presentation presentation;
};

struct ConverterData {
    uint32_t formulaTo = 0, formulaFrom = 0;  // in NodeTables::formulas
    NodeId value = kNoNode;
    uint8_t slope = Automatic;
    bool isLinear = false;
    Presentation presentation;
};

struct PortData {
    TextRef chunkId = 0;
    NodeId chunkIdNode = kNoNode;
    bool swapEndianess = false;
    bool cacheChunkData = false;
};

struct CategoryData {
    Range features;  // in NodeTables::nodes
};

struct NodeTables {
    std::vector<IntegerData> integers;
    std::vector<FloatData> floats;
    std::vector<RegisterData> registers;
    std::vector<BooleanData> booleans;
    std::vector<CommandData> commands;
    std::vector<EnumerationData> enumerations;
    std::vector<EnumEntryData> entries;
    std::vector<StringData> strings;
    std::vector<SwissKnifeData> swissKnives;
    std::vector<ConverterData> converters;
    std::vector<PortData> ports;
    std::vector<CategoryData> categories;
    std::vector<FormulaData> formulas;

    // pools that the ranges point into
    std::vector<NodeId> nodes;
    std::vector<IndexedCase<int64_t>> integerCases;
    std::vector<IndexedCase<double>> floatCases;
    std::vector<int64_t> validValues;
    std::vector<AddressPart> addressParts;
    std::vector<FormulaVariable> variables;

    // programs of the formulas, by index; null until first used
    std::unique_ptr<std::atomic<const CompiledFormula*>[]> programs;

    NodeTables();
    ~NodeTables();

    template <typename T>
    static Slice<T> SliceOf(const std::vector<T>& pool, Range range) {
        return {pool.data() + range.first, range.count};
    }
};

// The cases of Integer or of Float nodes; the tables may be constant or not.
template <typename T, typename Tables>
auto& CasesOf(Tables& tables) {
    if constexpr (std::is_integral_v<T>)
        return tables.integerCases;
    else
        return tables.floatCases;
}

// Fills the tables from the properties of all nodes. Throws PropertyException for a text that is
// not a number, and RuntimeException for a reference to a node of a wrong kind or an impossible
// mask.
void CompileNodes(Description& description, NodeTables& tables, std::vector<NodeRecord>& records);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
