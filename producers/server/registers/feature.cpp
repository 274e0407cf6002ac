#include "producers/server/registers/feature.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <stdexcept>

namespace ZelCti {

namespace {

constexpr const char* kPollingTime = "10";  // ms between two looks whether a command is done

// "GevSCPSPacketSize" as "Gev SCPS Packet Size": words begin with a capital, and acronyms end
// before the last one.
std::string InWords(const std::string& name) {
    const auto isUpper = [&](size_t i) {
        return std::isupper(static_cast<unsigned char>(name[i])) != 0;
    };
    std::string out;
    for (size_t i = 0; i < name.size(); ++i) {
        const bool begins =
            i > 0 && isUpper(i) && (!isUpper(i - 1) || (i + 1 < name.size() && !isUpper(i + 1)));
        if (begins) out += ' ';
        out += name[i];
    }
    return out;
}

const char* AccessModeOf(Access access) {
    switch (access) {
        case Access::ReadOnly:
            return "RO";
        case Access::WriteOnly:
            return "WO";
        default:
            return "RW";
    }
}

template <typename T>
Access AccessOf(const RegisterValue<T>& value) {
    const bool readOnly = value.get != nullptr && value.check == nullptr && value.set == nullptr;
    return readOnly ? Access::ReadOnly : Access::ReadWrite;
}

Access AccessOf(const BytesSource& /*source*/) {
    return Access::ReadOnly;
}

Access AccessOf(std::monostate /*memory*/) {
    return Access::ReadWrite;
}

void LoadValue(const uint8_t* bytes, size_t size, ByteOrder order, uint64_t& value) {
    value = LoadInteger(bytes, size, order);
}

void LoadValue(const uint8_t* bytes, size_t size, ByteOrder order, double& value) {
    value = LoadFloat(bytes, size, order);
}

void LoadValue(const uint8_t* bytes, size_t size, ByteOrder /*order*/, std::string& value) {
    value = LoadString(bytes, size);
}

void StoreValue(uint8_t* bytes, size_t size, ByteOrder order, uint64_t value) {
    StoreInteger(bytes, size, value, order);
}

void StoreValue(uint8_t* bytes, size_t size, ByteOrder order, double value) {
    StoreFloat(bytes, size, value, order);
}

void StoreValue(uint8_t* bytes, size_t size, ByteOrder /*order*/, const std::string& value) {
    StoreString(bytes, size, value);
}

// The register at a place that holds a value.
template <typename T>
Register RegisterFor(Register place, const RegisterValue<T>& value, ByteOrder order) {
    // Calls a function with the value of the bytes.
    const auto withValue = [size = place.size, order](const std::function<void(T)>& function) {
        return [=](const uint8_t* bytes) {
            T loaded{};
            LoadValue(bytes, size, order, loaded);
            function(loaded);
        };
    };
    if (value.get != nullptr) {
        place.source = [get = value.get, size = place.size, order](uint8_t* bytes) {
            StoreValue(bytes, size, order, get());
        };
    }
    if (value.check != nullptr) place.check = withValue(value.check);
    if (value.set != nullptr) place.action = withValue(value.set);
    return place;
}

Register RegisterFor(Register place, const BytesSource& source, ByteOrder /*order*/) {
    place.source = [source, size = place.size](uint8_t* bytes) { source(bytes, size); };
    return place;
}

Register RegisterFor(Register place, std::monostate /*memory*/, ByteOrder /*order*/) {
    return place;
}

}  // namespace

std::string HexOf(uint64_t value) {
    char text[17];
    std::snprintf(text, sizeof(text), "%" PRIX64, value);
    return text;
}

std::string Limit::TextOf(double value) {
    char text[32];
    constexpr int kDigits = 6;
    const auto end =
        std::to_chars(text, std::end(text), value, std::chars_format::general, kDigits);
    return {text, end.ptr};
}

IntegerValue CommandValue(std::function<void()> action) {
    IntegerValue value;
    value.set = [action = std::move(action)](uint64_t written) {
        if (written != 0) action();
    };
    return value;
}

Feature::Feature(std::string_view kind, std::string name, std::string toolTip)
    : node_(DescriptionNode::Named(kind, std::move(name))), isHelper_(toolTip.empty()) {
    if (!isHelper_) With("ToolTip", std::move(toolTip));
    if (kind == "StructReg") node_.attribute.first = "Comment";
    if (kind == "Boolean") {
        With("OnValue", "1").With("OffValue", "0");
        lowest_ = 0;
        highest_ = 1;
    }
    if (kind == "Command") Volatile();
}

Feature& Feature::Display(std::string name) {
    return With("DisplayName", std::move(name));
}

Feature& Feature::With(std::string_view element, std::string text) {
    node_.Add(element, std::move(text));
    return *this;
}

template <typename T>
RegisterValue<T>& Feature::Held() {
    if (std::holds_alternative<std::monostate>(value_)) value_ = RegisterValue<T>{};
    auto* const value = std::get_if<RegisterValue<T>>(&value_);
    if (value == nullptr) throw std::logic_error(Name() + " has values of two types");
    return *value;
}

template RegisterValue<uint64_t>& Feature::Held();
template RegisterValue<double>& Feature::Held();
template RegisterValue<std::string>& Feature::Held();

void Feature::AddLimit(std::string_view element, std::string_view link, const Limit& limit) {
    With(limit.IsNode() ? link : element, limit.Text());
}

Feature& Feature::Limits(const Limit& lowest, const Limit& highest) {
    AddLimit("Min", "pMin", lowest);
    AddLimit("Max", "pMax", highest);
    lowest_ = lowest.Integer();
    highest_ = highest.Integer();
    return *this;
}

Feature& Feature::Limits(const Limit& lowest, const Limit& highest, const Limit& increment) {
    AddLimit("Inc", "pInc", increment);
    return Limits(lowest, highest);
}

Feature& Feature::Entries(const std::vector<Entry>& entries) {
    for (const Entry& entry : entries) {
        DescriptionNode node = DescriptionNode::Named("EnumEntry", entry.name);
        node.Add("ToolTip", entry.toolTip);
        node.Add("Value", std::to_string(entry.value));
        if (entry.isSelfClearing) node.Add("IsSelfClearing", "Yes");
        node_.Add(std::move(node));
        lowest_ = std::min(lowest_.value_or(entry.value), entry.value);
        highest_ = std::max(highest_.value_or(entry.value), entry.value);
    }
    return *this;
}

std::pair<int64_t, int64_t> Feature::Range() const {
    if (!lowest_ || !highest_) throw std::logic_error("no constant limits of " + Name());
    return {*lowest_, *highest_};
}

Feature& Feature::In(std::string category) {
    category_ = std::move(category);
    return *this;
}

Feature& Feature::SelectedBy(std::string selector) {
    selector_ = std::move(selector);
    return *this;
}

Feature& Feature::Constant(const Limit& value) {
    return With("ImposedAccessMode", "RO").Value(value);
}

Feature& Feature::Local(int64_t initial) {
    local_ = initial;
    return Over(Name() + "Value");
}

Feature& Feature::Variables(std::initializer_list<std::pair<std::string, std::string>> nodes) {
    for (const auto& [variable, node] : nodes)
        node_.Add({"pVariable", {"Name", variable}, node});
    return *this;
}

Feature& Feature::Formulas(std::string to, std::string from) {
    return With("FormulaTo", std::move(to)).With("FormulaFrom", std::move(from));
}

Feature& Feature::At(uint64_t address, size_t size) {
    address_ = address;
    size_ = size;
    return *this;
}

Feature& Feature::AtExisting(uint64_t address, size_t size) {
    isExisting_ = true;
    return At(address, size);
}

Feature& Feature::AtOffset(std::string node) {
    registerElements_.push_back({"pAddress", {}, std::move(node)});
    return *this;
}

Feature& Feature::InRegister(std::string name) {
    registerName_ = std::move(name);
    return *this;
}

Feature& Feature::Port(std::string name) {
    port_ = std::move(name);
    return *this;
}

Feature& Feature::Bits(unsigned lowest, unsigned highest) {
    return With("LSB", std::to_string(lowest)).With("MSB", std::to_string(highest));
}

Feature& Feature::Signed() {
    isSigned_ = true;
    return *this;
}

Feature& Feature::Order(ByteOrder order) {
    order_ = order;
    return *this;
}

Feature& Feature::Cachable(std::string mode) {
    registerElements_.push_back({"Cachable", {}, std::move(mode)});
    return *this;
}

Feature& Feature::InvalidatedBy(std::initializer_list<std::string> nodes) {
    for (const std::string& node : nodes)
        registerElements_.push_back({"pInvalidator", {}, node});
    return *this;
}

Feature& Feature::Initial(uint64_t value) {
    initial_ = value;
    return *this;
}

Feature& Feature::Access(ZelCti::Access access) {
    access_ = access;
    return *this;
}

Feature& Feature::Does(std::function<void()> action) {
    return Bind(CommandValue(std::move(action))).Access(ZelCti::Access::WriteOnly);
}

Feature& Feature::BusyWhile(std::function<bool()> isBusy) {
    return With("PollingTime", kPollingTime)
        .Get([isBusy = std::move(isBusy)] { return isBusy() ? 1 : 0; })
        .Access(ZelCti::Access::ReadWrite);
}

Feature& Feature::DoneAtOnce() {
    return Get([] { return 0; }).Access(ZelCti::Access::ReadWrite);
}

Feature& Feature::IndexedBy(std::string node, size_t stride) {
    index_ = std::move(node);
    stride_ = stride;
    return *this;
}

Feature& Feature::Indexed(std::string node, size_t count,
                          std::function<IntegerValue(size_t)> value) {
    count_ = count;
    indexed_ = std::move(value);
    return IndexedBy(std::move(node));
}

std::string_view Feature::RegisterKind() const {
    if (IsRegisterKind(Kind())) return Kind();
    const bool isInteger = indexed_ != nullptr || std::holds_alternative<IntegerValue>(value_);
    return Kind() == "Float" && !isInteger ? "FloatReg" : "IntReg";
}

size_t Feature::Size() const {
    if (size_ != 0) return size_;
    return RegisterKind() == "FloatReg" ? sizeof(double) : sizeof(uint32_t);
}

// Addresses behind other ports do not move with the registers of the table.
uint64_t Feature::Address(uint64_t addressBase) const {
    return *address_ + (isExisting_ || !port_.empty() ? 0 : addressBase);
}

Access Feature::GetAccess() const {
    if (access_) return *access_;
    if (isExisting_ || !port_.empty()) return ZelCti::Access::ReadOnly;
    if (indexed_ != nullptr) return AccessOf(indexed_(0));
    return std::visit([](const auto& value) { return AccessOf(value); }, value_);
}

void Feature::AddRegisters(RegisterSpace& space, uint64_t addressBase) const {
    // A masked register is a view of memory that others may show as well.
    if (!address_ || isExisting_ || !port_.empty() || Kind() == "MaskedIntReg") return;
    const uint64_t address = Address(addressBase);
    Register place;
    place.size = Size();
    place.access = GetAccess();
    if (duration_ != 0) place.duration = [ms = duration_](const uint8_t* /*bytes*/) { return ms; };
    for (size_t i = 0; i < count_; ++i) {
        place.address = address + i * place.size;
        if (indexed_ != nullptr) {
            space.Add(RegisterFor(place, indexed_(i), space.Order()));
        } else {
            std::visit(
                [&](const auto& value) { space.Add(RegisterFor(place, value, space.Order())); },
                value_);
        }
    }
    if (!initial_) return;
    std::vector<uint8_t> bytes(place.size);
    StoreInteger(bytes.data(), bytes.size(), *initial_, space.Order());
    space.Load(address, bytes.data(), bytes.size());
}

std::vector<DescriptionNode> Feature::TakeNodes(const Defaults& defaults) {
    std::vector<DescriptionNode> nodes;
    nodes.reserve(2);
    CompleteNode();
    if (IsRegisterKind(Kind())) {
        CompleteRegister(node_, defaults);
    } else if (local_) {
        nodes.push_back(DescriptionNode::Named("Integer", Name() + "Value"));
        nodes.back().Add("Visibility", "Invisible");
        nodes.back().Add("Value", std::to_string(*local_));
    } else if (address_) {
        if (registerName_.empty()) registerName_ = Name() + "Reg";
        nodes.push_back(DescriptionNode::Named(RegisterKind(), registerName_));
        nodes.back().Add("Visibility", "Invisible");
        CompleteRegister(nodes.back(), defaults);
        Over(registerName_);
    }
    nodes.insert(nodes.begin(), std::move(node_));
    return nodes;
}

void Feature::CompleteNode() {
    if (Kind() == "Command" && !node_.Has("CommandValue")) With("CommandValue", "1");
    if (!node_.Has("Visibility")) With("Visibility", isHelper_ ? "Invisible" : "Beginner");
    if (!isHelper_ && !node_.Has("DisplayName")) Display(InWords(Name()));
}

void Feature::CompleteRegister(DescriptionNode& reg, const Defaults& defaults) {
    if (!address_) throw std::logic_error("no address of " + Name());
    reg.Add("Address", "0x" + HexOf(Address(defaults.addressBase)));
    const size_t stride = stride_ == 0 ? Size() : stride_;
    if (!index_.empty()) reg.Add({"pIndex", {"Offset", std::to_string(stride)}, index_});
    reg.Add("Length", std::to_string(Size()));
    reg.Add("AccessMode", AccessModeOf(GetAccess()));
    reg.Add("pPort", port_.empty() ? defaults.port : port_);
    for (DescriptionNode& element : registerElements_)
        reg.Add(std::move(element));
    if (defaults.isVolatile && !reg.Has("Cachable")) reg.Add("Cachable", "NoCache");
    if (reg.kind == "IntReg" || reg.kind == "MaskedIntReg") {
        reg.Add("Sign", isSigned_ ? "Signed" : "Unsigned");
    }
    if (reg.kind == "StringReg" || reg.kind == "Register") return;
    const bool isBig = order_.value_or(defaults.order) == ByteOrder::Big;
    reg.Add("Endianess", isBig ? "BigEndian" : "LittleEndian");
}

}  // namespace ZelCti
