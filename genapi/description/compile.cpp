#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <Base/GCException.h>

#include "genapi/description/compiler.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Which kinds a reference may point to, by the interface that it needs.
bool isInteger(NodeKind kind) {
    switch (kind) {
        case NodeKind::Integer:
        case NodeKind::IntReg:
        case NodeKind::MaskedIntReg:
        case NodeKind::StructEntry:
        case NodeKind::IntSwissKnife:
        case NodeKind::IntConverter:
        case NodeKind::IntKey:
        case NodeKind::AdvFeatureLock:
        case NodeKind::SmartFeature:
            return true;
        default:
            return false;
    }
}

bool isFloat(NodeKind kind) {
    return kind == NodeKind::Float || kind == NodeKind::FloatReg || kind == NodeKind::SwissKnife ||
           kind == NodeKind::Converter;
}

bool isString(NodeKind kind) {
    return kind == NodeKind::String || kind == NodeKind::StringReg || kind == NodeKind::TextDesc;
}

EVisibility visibilityOf(std::string_view text) {
    if (text == "Expert") return Expert;
    if (text == "Guru") return Guru;
    return text == "Invisible" ? Invisible : Beginner;
}

EAccessMode accessModeOf(std::string_view text) {
    if (text == "RO") return RO;
    return text == "WO" ? WO : RW;
}

ECachingMode cachingModeOf(std::string_view text) {
    if (text == "NoCache") return NoCache;
    return text == "WriteAround" ? WriteAround : WriteThrough;
}

// The numbers of bits count as unsigned, so that a negative one is too large.
std::uint8_t bitOf(std::int64_t number) {
    return static_cast<std::uint8_t>(
        std::min<std::uint64_t>(static_cast<std::uint64_t>(number), UINT8_MAX));
}

bool isTrue(std::string_view text) {
    return text == "true" || text == "1";
}

}  // namespace

NodeId Compiler::integerLike(NodeId node) const {
    const NodeKind kind = kindOf(node);
    if (records_[node].defined && !isInteger(kind) && !isFloat(kind) &&
        kind != NodeKind::Enumeration && kind != NodeKind::Boolean)
        throw RUNTIME_EXCEPTION(
            "CIntegerPolyRef::operator(IBase*) : pointer is neither "
            "IInteger*, nor IEnumeration*, nor IBoolean*, nor IFloat*");
    return node;
}

NodeId Compiler::conditionLike(NodeId node) const {
    const NodeKind kind = kindOf(node);
    if (records_[node].defined && !isInteger(kind) && kind != NodeKind::Enumeration &&
        kind != NodeKind::Boolean)
        throw RUNTIME_EXCEPTION(
            "CIntegerPolyRef::operator(IBase*) : pointer is neither "
            "IInteger*, IEnumeration*, nor IBoolean*");
    return node;
}

NodeId Compiler::floatLike(NodeId node) const {
    const NodeKind kind = kindOf(node);
    if (records_[node].defined && !isInteger(kind) && !isFloat(kind) &&
        kind != NodeKind::Enumeration)
        throw RUNTIME_EXCEPTION(
            "CFloatPolyRef::operator(IBase*) : pointer is neither "
            "IFloat*, IInteger*, nor IEnumeration*");
    return node;
}

NodeId Compiler::stringLike(NodeId node) const {
    if (records_[node].defined && !isString(kindOf(node)))
        throw RUNTIME_EXCEPTION("CStringPolyRef::operator(IBase*) : pointer is not IString*");
    return node;
}

void Compiler::common(NodeRecord& record) {
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::Visibility:
                record.visibility = visibilityOf(text(property));
                break;
            case Element::ImposedAccessMode:
                record.imposedAccess = accessModeOf(text(property));
                break;
            case Element::Streamable:
                record.streamable = is(property, "Yes");
                break;
            case Element::IsDeprecated:
                record.deprecated = is(property, "Yes");
                break;
            case Element::PollingTime:
                record.pollingTime = static_cast<std::int32_t>(
                    std::clamp<std::int64_t>(integer(property), -1, INT32_MAX));
                break;
            case Element::pIsImplemented:
                record.isImplemented = conditionLike(property.node());
                break;
            case Element::pIsAvailable:
                record.isAvailable = conditionLike(property.node());
                break;
            case Element::pIsLocked:
                record.isLocked = conditionLike(property.node());
                break;
            case Element::pBlockPolling:
                record.blockPolling = integerLike(property.node());
                break;
            default:
                break;
        }
    }
}

void Compiler::presentation(const Property& property, Presentation& result) const {
    static constexpr std::array<std::string_view, 7> kRepresentations = {
        "Linear", "Logarithmic", "Boolean", "PureNumber", "HexNumber", "IPV4Address", "MACAddress"};
    switch (property.element) {
        case Element::Unit:
            result.unit = property.text();
            break;
        case Element::Representation:
            for (std::size_t i = 0; i < kRepresentations.size(); ++i)
                if (is(property, kRepresentations[i]))
                    result.representation = static_cast<std::uint8_t>(i);
            break;
        case Element::DisplayNotation:
            result.notation = is(property, "Fixed")        ? fnFixed
                              : is(property, "Scientific") ? fnScientific
                                                           : fnAutomatic;
            break;
        case Element::DisplayPrecision:
            // More digits than a double has are zeros.
            result.precision =
                static_cast<std::int16_t>(std::clamp<std::int64_t>(integer(property), 0, 400));
            break;
        default:
            break;
    }
}

CategoryData Compiler::category() {
    return {links(Element::pFeature)};
}

// Whatever is no number is passed over.
template <typename T>
void Compiler::readValidValues(const Property& property, NumberData<T>& data) {
    std::vector<std::int64_t>& all = tables_.validValues;
    data.validValues.first = static_cast<std::uint32_t>(all.size());
    std::string_view list = text(property);
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(';'), list.size());
        std::int64_t value = 0;
        if (parseFront(list.substr(0, end), value)) all.push_back(value);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    data.validValues.count = static_cast<std::uint32_t>(all.size()) - data.validValues.first;
    std::sort(all.begin() + data.validValues.first, all.end());
}

template <typename T>
NumberData<T> Compiler::number() {
    NumberData<T> data;
    auto& pool = cases(static_cast<const T*>(nullptr));
    data.cases.first = static_cast<std::uint32_t>(pool.size());
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::Value:
            case Element::pValue:
                data.value = setting<T>(property);
                break;
            case Element::pIndex:
                data.index = integerLike(property.node());
                break;
            case Element::ValueIndexed:
            case Element::pValueIndexed:
                pool.push_back({integerOf(description_.text(property.attribute), property.element),
                                setting<T>(property)});
                ++data.cases.count;
                break;
            case Element::ValueDefault:
            case Element::pValueDefault:
                data.otherwise = setting<T>(property);
                break;
            case Element::Min:
            case Element::pMin:
                data.min = setting<T>(property);
                break;
            case Element::Max:
            case Element::pMax:
                data.max = setting<T>(property);
                break;
            case Element::Inc:
            case Element::pInc:
                data.inc = setting<T>(property);
                break;
            case Element::ValidValueSet:
                readValidValues(property, data);
                break;
            default:
                presentation(property, data.presentation);
                break;
        }
    }
    const auto byIndex = [](const auto& a, const auto& b) { return a.index < b.index; };
    std::stable_sort(pool.begin() + data.cases.first, pool.end(), byIndex);
    data.copies = links(Element::pValueCopy);
    for (const NodeId copy : NodeTables::slice(tables_.nodes, data.copies))
        like(static_cast<const T*>(nullptr), copy);
    for (Setting<T>* limit : {&data.min, &data.max})
        limit->constant = std::clamp(limit->constant, std::numeric_limits<T>::lowest(),
                                     std::numeric_limits<T>::max());
    return data;
}

void Compiler::readAddress(RegisterData& data) {
    data.address.first = static_cast<std::uint32_t>(tables_.addressParts.size());
    std::uint64_t sum = 0;
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::Address:
                sum += static_cast<std::uint64_t>(integer(property));
                break;
            case Element::pAddress:
                tables_.addressParts.push_back({setting<std::int64_t>(property), {}, false});
                break;
            case Element::pIndex:
                tables_.addressParts.push_back({setting<std::int64_t>(property), {}, true});
                break;
            case Element::Offset:
            case Element::pOffset:
                if (tables_.addressParts.size() > data.address.first)
                    tables_.addressParts.back().step = setting<std::int64_t>(property);
                break;
            default:
                break;
        }
    }
    data.constantAddress = static_cast<std::int64_t>(sum);
    data.address.count =
        static_cast<std::uint32_t>(tables_.addressParts.size()) - data.address.first;
    data.addressIsConstant = data.address.count == 0;
}

RegisterData Compiler::registerData(const NodeRecord& record) {
    RegisterData data;
    readAddress(data);
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::Length:
            case Element::pLength:
                data.length = setting<std::int64_t>(property);
                break;
            case Element::pPort:
                data.port = property.node();
                break;
            case Element::AccessMode:
                data.accessMode = accessModeOf(text(property));
                break;
            case Element::Cachable:
                data.cachable = cachingModeOf(text(property));
                break;
            case Element::Sign:
                data.isSigned = is(property, "Signed");
                break;
            case Element::Endianess:
                data.bigEndian = is(property, "BigEndian");
                break;
            case Element::Bit:
                data.lsb = data.msb = bitOf(integer(property));
                data.masked = true;
                break;
            case Element::LSB:
            case Element::MSB:
                (property.element == Element::LSB ? data.lsb : data.msb) = bitOf(integer(property));
                data.masked = true;
                break;
            default:
                presentation(property, data.presentation);
                break;
        }
    }
    if (record.kind == NodeKind::MaskedIntReg || record.kind == NodeKind::StructEntry)
        checkMask(data);
    return data;
}

// A length that another node says is not known here; the bits are compared with it on use.
void Compiler::checkMask(const RegisterData& data) const {
    const std::int64_t length = data.length.isNode() ? 8 : data.length.constant;
    if (length < 1)
        throw OUT_OF_RANGE_EXCEPTION("Value = %lld must be equal or greater than Min = 1",
                                     static_cast<long long>(length));
    if (length > 8)
        throw OUT_OF_RANGE_EXCEPTION("Value = %lld must be equal or smaller than Max = 8",
                                     static_cast<long long>(length));
    const std::int64_t bits = 8 * length;
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
    if (fault) throw RUNTIME_EXCEPTION("Node '%s' : %s", description_.name(id_).data(), fault);
}

BooleanData Compiler::boolean() {
    BooleanData data;
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::Value:
                data.value.source = Setting<std::int64_t>::Source::Constant;
                data.value.constant = isTrue(text(property)) ? 1 : 0;
                break;
            case Element::pValue:
                data.value = setting<std::int64_t>(property);
                break;
            case Element::OnValue:
                data.onValue = integer(property);
                break;
            case Element::OffValue:
                data.offValue = integer(property);
                break;
            default:
                break;
        }
    }
    if (data.onValue == data.offValue)
        throw RUNTIME_EXCEPTION("Boolean node '%s' has identical on and off value",
                                description_.name(id_).data());
    if (data.value.source == Setting<std::int64_t>::Source::Constant)
        data.value.constant = data.value.constant ? data.onValue : data.offValue;
    return data;
}

CommandData Compiler::command() {
    CommandData data;
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::Value:
            case Element::pValue:
                data.value = setting<std::int64_t>(property);
                break;
            case Element::CommandValue:
            case Element::pCommandValue:
                data.commandValue = setting<std::int64_t>(property);
                break;
            default:
                break;
        }
    }
    return data;
}

EnumerationData Compiler::enumeration() {
    EnumerationData data;
    for (const Property& property : properties())
        if (property.element == Element::Value || property.element == Element::pValue)
            data.value = setting<std::int64_t>(property);
    data.entries = links(Element::pEnumEntry);
    return data;
}

EnumEntryData Compiler::entry() {
    EnumEntryData data;
    data.numeric = std::nan("");
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::Value:
                data.value = integer(property);
                break;
            case Element::NumericValue:
                read(property, data.numeric);
                break;
            case Element::Symbolic:
                data.symbolic = property.text();
                break;
            case Element::IsSelfClearing:
                data.selfClearing = is(property, "Yes");
                break;
            default:
                break;
        }
    }
    if (std::isnan(data.numeric)) data.numeric = static_cast<double>(data.value);
    return data;
}

StringData Compiler::string() {
    StringData data;
    for (const Property& property : properties()) {
        if (property.element == Element::Value) {
            data.value.source = Setting<TextRef>::Source::Constant;
            data.value.constant = property.text();
        } else if (property.element == Element::pValue) {
            data.value.source = Setting<TextRef>::Source::Node;
            data.value.node = stringLike(property.node());
        }
    }
    return data;
}

PortData Compiler::port() {
    PortData data;
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::ChunkID:
                data.chunkId = property.text();
                break;
            case Element::pChunkID:
                data.chunkIdNode = stringLike(property.node());
                break;
            case Element::SwapEndianess:
                data.swapEndianess = is(property, "Yes");
                break;
            case Element::CacheChunkData:
                data.cacheChunkData = is(property, "Yes");
                break;
            default:
                break;
        }
    }
    return data;
}

void Compiler::compile(NodeId id) {
    id_ = id;
    NodeRecord& record = records_[id];
    common(record);
    switch (record.kind) {
        case NodeKind::Category:
            record.data = add(tables_.categories, category());
            break;
        case NodeKind::Integer:
            record.data = add(tables_.integers, number<std::int64_t>());
            break;
        case NodeKind::Float:
            record.data = add(tables_.floats, number<double>());
            break;
        case NodeKind::IntReg:
        case NodeKind::MaskedIntReg:
        case NodeKind::StructEntry:
        case NodeKind::FloatReg:
        case NodeKind::StringReg:
        case NodeKind::Register:
        case NodeKind::ConfRom:
        case NodeKind::AdvFeatureLock:
            record.data = add(tables_.registers, registerData(record));
            break;
        case NodeKind::Boolean:
            record.data = add(tables_.booleans, boolean());
            break;
        case NodeKind::Command:
            record.data = add(tables_.commands, command());
            break;
        case NodeKind::Enumeration:
            record.data = add(tables_.enumerations, enumeration());
            break;
        case NodeKind::EnumEntry:
            record.data = add(tables_.entries, entry());
            break;
        case NodeKind::String:
            record.data = add(tables_.strings, string());
            break;
        case NodeKind::SwissKnife:
        case NodeKind::IntSwissKnife:
            record.data = add(tables_.swissKnives, swissKnife());
            break;
        case NodeKind::Converter:
        case NodeKind::IntConverter:
            record.data = add(tables_.converters, converter());
            break;
        case NodeKind::Port:
            record.data = add(tables_.ports, port());
            break;
        case NodeKind::Node:
        case NodeKind::TextDesc:
        case NodeKind::IntKey:
        case NodeKind::SmartFeature:
            break;
    }
}

void compileNodes(Description& description, NodeTables& tables, std::vector<NodeRecord>& records) {
    Compiler compiler(description, tables, records);
    for (NodeId id = 0; id < records.size(); ++id)
        compiler.compile(id);
    tables.programs =
        std::make_unique<std::atomic<const CompiledFormula*>[]>(tables.formulas.size());
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
