// Compiles all kinds except those that compute: numbers, registers, texts, enumerations, ports.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <Base/GCException.h>

#include "genapi/description/compiler.h"
#include "genapi/description/interfaces.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

EVisibility VisibilityOf(std::string_view text) {
    if (text == "Expert") return Expert;
    if (text == "Guru") return Guru;
    return text == "Invisible" ? Invisible : Beginner;
}

EAccessMode AccessModeOf(std::string_view text) {
    if (text == "RO") return RO;
    return text == "WO" ? WO : RW;
}

ECachingMode CachingModeOf(std::string_view text) {
    if (text == "NoCache") return NoCache;
    return text == "WriteAround" ? WriteAround : WriteThrough;
}

// Bit numbers are compared as unsigned, so that a negative one is too large.
uint8_t BitOf(int64_t number) {
    return static_cast<uint8_t>(std::min<uint64_t>(static_cast<uint64_t>(number), UINT8_MAX));
}

bool IsTrue(std::string_view text) {
    return text == "true" || text == "1";
}

}  // namespace

NodeId Compiler::OneOf(NodeId node, std::initializer_list<EInterfaceType> allowed,
                       const char* refusal) const {
    const EInterfaceType found = InterfaceOf(KindOf(node));
    if (records_[node].defined && std::find(allowed.begin(), allowed.end(), found) == allowed.end())
        throw RUNTIME_EXCEPTION("%s", refusal);
    return node;
}

NodeId Compiler::IntegerLike(NodeId node) const {
    return OneOf(node, {intfIInteger, intfIFloat, intfIEnumeration, intfIBoolean},
                 "CIntegerPolyRef::operator(IBase*) : pointer is neither "
                 "IInteger*, nor IEnumeration*, nor IBoolean*, nor IFloat*");
}

NodeId Compiler::ConditionLike(NodeId node) const {
    return OneOf(node, {intfIInteger, intfIEnumeration, intfIBoolean},
                 "CIntegerPolyRef::operator(IBase*) : pointer is neither "
                 "IInteger*, IEnumeration*, nor IBoolean*");
}

NodeId Compiler::FloatLike(NodeId node) const {
    return OneOf(node, {intfIInteger, intfIFloat, intfIEnumeration},
                 "CFloatPolyRef::operator(IBase*) : pointer is neither "
                 "IFloat*, IInteger*, nor IEnumeration*");
}

NodeId Compiler::StringLike(NodeId node) const {
    return OneOf(node, {intfIString}, "CStringPolyRef::operator(IBase*) : pointer is not IString*");
}

void Compiler::Common(NodeRecord& record) {
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::Visibility:
                record.visibility = VisibilityOf(Text(property));
                break;
            case Element::ImposedAccessMode:
                record.imposedAccess = AccessModeOf(Text(property));
                break;
            case Element::Streamable:
                record.streamable = Is(property, "Yes");
                break;
            case Element::IsDeprecated:
                record.deprecated = Is(property, "Yes");
                break;
            case Element::PollingTime:
                record.pollingTime =
                    static_cast<int32_t>(std::clamp<int64_t>(Integer(property), -1, INT32_MAX));
                break;
            case Element::pIsImplemented:
                record.isImplemented = ConditionLike(property.Target());
                break;
            case Element::pIsAvailable:
                record.isAvailable = ConditionLike(property.Target());
                break;
            case Element::pIsLocked:
                record.isLocked = ConditionLike(property.Target());
                break;
            case Element::pBlockPolling:
                record.blockPolling = IntegerLike(property.Target());
                break;
            default:
                break;
        }
    }
}

void Compiler::ReadPresentation(const Property& property, Presentation& result) const {
    static constexpr std::array<std::string_view, 7> kRepresentations = {
        "Linear", "Logarithmic", "Boolean", "PureNumber", "HexNumber", "IPV4Address", "MACAddress"};
    switch (property.element) {
        case Element::Unit:
            result.unit = property.Text();
            break;
        case Element::Representation:
            for (size_t i = 0; i < kRepresentations.size(); ++i)
                if (Is(property, kRepresentations[i]))
                    result.representation = static_cast<uint8_t>(i);
            break;
        case Element::DisplayNotation:
            result.notation = Is(property, "Fixed")        ? fnFixed
                              : Is(property, "Scientific") ? fnScientific
                                                           : fnAutomatic;
            break;
        case Element::DisplayPrecision:
            // A double has fewer digits than this; further ones would be zeros.
            result.precision = static_cast<int16_t>(std::clamp<int64_t>(Integer(property), 0, 400));
            break;
        default:
            break;
    }
}

CategoryData Compiler::Category() {
    return {Links(Element::pFeature)};
}

// Skips texts that are not numbers.
template <typename T>
void Compiler::ReadValidValues(const Property& property, NumberData<T>& data) {
    std::vector<int64_t>& all = tables_.validValues;
    data.validValues.first = static_cast<uint32_t>(all.size());
    std::string_view list = Text(property);
    while (!list.empty()) {
        const size_t end = std::min(list.find(';'), list.size());
        int64_t value = 0;
        if (ParseFront(list.substr(0, end), value)) all.push_back(value);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    data.validValues.count = static_cast<uint32_t>(all.size()) - data.validValues.first;
    std::sort(all.begin() + data.validValues.first, all.end());
}

template <typename T>
NumberData<T> Compiler::Number() {
    NumberData<T> data;
    auto& pool = CasesOf<T>(tables_);
    data.cases.first = static_cast<uint32_t>(pool.size());
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::Value:
            case Element::pValue:
                data.value = ReadSetting<T>(property);
                break;
            case Element::pIndex:
                data.index = IntegerLike(property.Target());
                break;
            case Element::ValueIndexed:
            case Element::pValueIndexed:
                pool.push_back({IntegerOf(description_.Text(property.attribute), property.element),
                                ReadSetting<T>(property)});
                ++data.cases.count;
                break;
            case Element::ValueDefault:
            case Element::pValueDefault:
                data.otherwise = ReadSetting<T>(property);
                break;
            case Element::Min:
            case Element::pMin:
                data.min = ReadSetting<T>(property);
                break;
            case Element::Max:
            case Element::pMax:
                data.max = ReadSetting<T>(property);
                break;
            case Element::Inc:
            case Element::pInc:
                data.inc = ReadSetting<T>(property);
                break;
            case Element::ValidValueSet:
                ReadValidValues(property, data);
                break;
            default:
                ReadPresentation(property, data.presentation);
                break;
        }
    }
    const auto byIndex = [](const auto& a, const auto& b) { return a.index < b.index; };
    std::stable_sort(pool.begin() + data.cases.first, pool.end(), byIndex);
    data.copies = Links(Element::pValueCopy);
    for (const NodeId copy : NodeTables::SliceOf(tables_.nodes, data.copies))
        NumberLike<T>(copy);
    for (Setting<T>* limit : {&data.min, &data.max})
        limit->constant = std::clamp(limit->constant, std::numeric_limits<T>::lowest(),
                                     std::numeric_limits<T>::max());
    return data;
}

void Compiler::ReadAddress(RegisterData& data) {
    data.address.first = static_cast<uint32_t>(tables_.addressParts.size());
    uint64_t sum = 0;
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::Address:
                sum += static_cast<uint64_t>(Integer(property));
                break;
            case Element::pAddress:
                tables_.addressParts.push_back({ReadSetting<int64_t>(property), {}, false});
                break;
            case Element::pIndex:
                tables_.addressParts.push_back({ReadSetting<int64_t>(property), {}, true});
                break;
            case Element::Offset:
            case Element::pOffset:
                if (tables_.addressParts.size() > data.address.first)
                    tables_.addressParts.back().step = ReadSetting<int64_t>(property);
                break;
            default:
                break;
        }
    }
    data.constantAddress = static_cast<int64_t>(sum);
    data.address.count = static_cast<uint32_t>(tables_.addressParts.size()) - data.address.first;
    data.addressIsConstant = data.address.count == 0;
}

RegisterData Compiler::ReadRegister(const NodeRecord& record) {
    RegisterData data;
    ReadAddress(data);
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::Length:
            case Element::pLength:
                data.length = ReadSetting<int64_t>(property);
                break;
            case Element::pPort:
                data.port = property.Target();
                break;
            case Element::AccessMode:
                data.accessMode = AccessModeOf(Text(property));
                break;
            case Element::Cachable:
                data.cachable = CachingModeOf(Text(property));
                break;
            case Element::Sign:
                data.isSigned = Is(property, "Signed");
                break;
            case Element::Endianess:
                data.bigEndian = Is(property, "BigEndian");
                break;
            case Element::Bit:
                data.lsb = data.msb = BitOf(Integer(property));
                data.masked = true;
                break;
            case Element::LSB:
            case Element::MSB:
                (property.element == Element::LSB ? data.lsb : data.msb) = BitOf(Integer(property));
                data.masked = true;
                break;
            default:
                ReadPresentation(property, data.presentation);
                break;
        }
    }
    if (record.kind == NodeKind::MaskedIntReg || record.kind == NodeKind::StructEntry)
        CheckMask(data);
    return data;
}

// A length that comes from another node is not known yet; BitField checks the bits against it.
void Compiler::CheckMask(const RegisterData& data) const {
    const int64_t length = data.length.IsNode() ? 8 : data.length.constant;
    if (length < 1)
        throw OUT_OF_RANGE_EXCEPTION("Value = %lld must be equal or greater than Min = 1",
                                     static_cast<long long>(length));
    if (length > 8)
        throw OUT_OF_RANGE_EXCEPTION("Value = %lld must be equal or smaller than Max = 8",
                                     static_cast<long long>(length));
    const int64_t bits = 8 * length;
    const char* fault = nullptr;
    if (data.bigEndian) {
        if (data.lsb < data.msb)
            fault = "For a big endian integer LSB must be greater or equal than MSB";
        else if (data.lsb >= bits)
            fault = "For a big endian integer LSB must be smaller than 8 * Length";
    } else {
        if (data.msb >= bits)
            fault = "For a little endian integer MSB must be smaller than 8 * Length";
        else if (data.msb < data.lsb)
            fault = "For a little endian integer MSB must be greater or equal than LSB";
    }
    if (fault) throw RUNTIME_EXCEPTION("Node '%s' : %s", description_.Name(id_).data(), fault);
}

BooleanData Compiler::Boolean() {
    BooleanData data;
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::Value:
                data.value.source = Setting<int64_t>::Source::Constant;
                data.value.constant = IsTrue(Text(property)) ? 1 : 0;
                break;
            case Element::pValue:
                data.value = ReadSetting<int64_t>(property);
                break;
            case Element::OnValue:
                data.onValue = Integer(property);
                break;
            case Element::OffValue:
                data.offValue = Integer(property);
                break;
            default:
                break;
        }
    }
    if (data.onValue == data.offValue)
        throw RUNTIME_EXCEPTION("Boolean node '%s' has identical on and off value",
                                description_.Name(id_).data());
    if (data.value.source == Setting<int64_t>::Source::Constant)
        data.value.constant = data.value.constant ? data.onValue : data.offValue;
    return data;
}

CommandData Compiler::Command() {
    CommandData data;
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::Value:
            case Element::pValue:
                data.value = ReadSetting<int64_t>(property);
                break;
            case Element::CommandValue:
            case Element::pCommandValue:
                data.commandValue = ReadSetting<int64_t>(property);
                break;
            default:
                break;
        }
    }
    return data;
}

EnumerationData Compiler::Enumeration() {
    EnumerationData data;
    for (const Property& property : Properties())
        if (property.element == Element::Value || property.element == Element::pValue)
            data.value = ReadSetting<int64_t>(property);
    data.entries = Links(Element::pEnumEntry);
    return data;
}

EnumEntryData Compiler::Entry() {
    EnumEntryData data;
    data.numeric = std::nan("");
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::Value:
                data.value = Integer(property);
                break;
            case Element::NumericValue:
                Read(property, data.numeric);
                break;
            case Element::Symbolic:
                data.symbolic = property.Text();
                break;
            case Element::IsSelfClearing:
                data.selfClearing = Is(property, "Yes");
                break;
            default:
                break;
        }
    }
    if (std::isnan(data.numeric)) data.numeric = static_cast<double>(data.value);
    return data;
}

StringData Compiler::String() {
    StringData data;
    for (const Property& property : Properties()) {
        if (property.element == Element::Value) {
            data.value.source = Setting<TextRef>::Source::Constant;
            data.value.constant = property.Text();
        } else if (property.element == Element::pValue) {
            data.value.source = Setting<TextRef>::Source::Node;
            data.value.node = StringLike(property.Target());
        }
    }
    return data;
}

PortData Compiler::Port() {
    PortData data;
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::ChunkID:
                data.chunkId = property.Text();
                break;
            case Element::pChunkID:
                data.chunkIdNode = StringLike(property.Target());
                break;
            case Element::SwapEndianess:
                data.swapEndianess = Is(property, "Yes");
                break;
            case Element::CacheChunkData:
                data.cacheChunkData = Is(property, "Yes");
                break;
            default:
                break;
        }
    }
    return data;
}

void Compiler::Compile(NodeId id) {
    id_ = id;
    NodeRecord& record = records_[id];
    Common(record);
    switch (record.kind) {
        case NodeKind::Category:
            record.data = Add(tables_.categories, Category());
            break;
        case NodeKind::Integer:
            record.data = Add(tables_.integers, Number<int64_t>());
            break;
        case NodeKind::Float:
            record.data = Add(tables_.floats, Number<double>());
            break;
        case NodeKind::IntReg:
        case NodeKind::MaskedIntReg:
        case NodeKind::StructEntry:
        case NodeKind::FloatReg:
        case NodeKind::StringReg:
        case NodeKind::Register:
        case NodeKind::ConfRom:
        case NodeKind::AdvFeatureLock:
            record.data = Add(tables_.registers, ReadRegister(record));
            break;
        case NodeKind::Boolean:
            record.data = Add(tables_.booleans, Boolean());
            break;
        case NodeKind::Command:
            record.data = Add(tables_.commands, Command());
            break;
        case NodeKind::Enumeration:
            record.data = Add(tables_.enumerations, Enumeration());
            break;
        case NodeKind::EnumEntry:
            record.data = Add(tables_.entries, Entry());
            break;
        case NodeKind::String:
            record.data = Add(tables_.strings, String());
            break;
        case NodeKind::SwissKnife:
        case NodeKind::IntSwissKnife:
            record.data = Add(tables_.swissKnives, SwissKnife());
            break;
        case NodeKind::Converter:
        case NodeKind::IntConverter:
            record.data = Add(tables_.converters, Converter());
            break;
        case NodeKind::Port:
            record.data = Add(tables_.ports, Port());
            break;
        case NodeKind::Node:
        case NodeKind::TextDesc:
        case NodeKind::IntKey:
        case NodeKind::SmartFeature:
            break;
    }
}

void CompileNodes(Description& description, NodeTables& tables, std::vector<NodeRecord>& records) {
    Compiler compiler(description, tables, records);
    for (NodeId id = 0; id < records.size(); ++id)
        compiler.Compile(id);
    tables.programs =
        std::make_unique<std::atomic<const CompiledFormula*>[]>(tables.formulas.size());
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
