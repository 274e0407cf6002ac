#include "genapi/nodes/registercore.h"

#include <cinttypes>

#include "genapi/nodes/portnode.h"
#include "genapi/ports/byterange.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {
// No camera has a register of this size; a description that claims one must not exhaust memory.
constexpr std::int64_t kMaxRegisterLength = std::int64_t{1} << 28;

// 0 for a register that holds no number.
std::int64_t minNumberLength(NodeKind kind) {
    switch (kind) {
        case NodeKind::IntReg:
        case NodeKind::MaskedIntReg:
        case NodeKind::StructEntry:
            return 1;
        case NodeKind::FloatReg:
            return 4;
        default:
            return 0;
    }
}
}  // namespace

PortNode* RegisterCore::port() const {
    if (data_.port == kNoNode) return nullptr;
    Node& node = owner_.node(data_.port);
    return node.record().kind == NodeKind::Port ? static_cast<PortNode*>(&node) : nullptr;
}

PortNode& RegisterCore::portFor(const char* operation) const {
    PortNode* const device = port();
    if (!device)
        throw NODE_ERROR(AccessException, owner_)("CRegisterImpl::%s : port not set", operation);
    return *device;
}

// Over a node that is no port a register shows its own mode, though no operation on it succeeds.
EAccessMode RegisterCore::accessMode() const {
    const auto own = static_cast<EAccessMode>(data_.accessMode);
    PortNode* const device = port();
    return device ? Combine(own, device->accessMode()) : own;
}

std::int64_t RegisterCore::step(const AddressPart& part) {
    if (!part.isIndex) return 1;
    if (part.step.isNode()) return owner_.node(part.step.node).getInt({});
    return part.step.given() ? part.step.constant : length();
}

std::int64_t RegisterCore::length() {
    const std::int64_t length =
        data_.length.isNode() ? owner_.node(data_.length.node).getInt({}) : data_.length.constant;
    const std::int64_t min = minNumberLength(owner_.record().kind);
    constexpr std::int64_t kMax = kMaxNumberLength;
    if (min > 0 && length < min)
        throw NODE_ERROR(OutOfRangeException, owner_)(
            "Value = %" PRId64 " must be equal or greater than Min = %" PRId64, length, min);
    if (min > 0 && length > kMax)
        throw NODE_ERROR(OutOfRangeException, owner_)(
            "Value = %" PRId64 " must be equal or smaller than Max = %" PRId64, length, kMax);
    return length;
}

std::int64_t RegisterCore::address() {
    // Unsigned, because sums may wrap.
    std::uint64_t sum = static_cast<std::uint64_t>(data_.constantAddress);
    const auto parts = NodeTables::slice(owner_.description().tables().addressParts, data_.address);
    for (const AddressPart& part : parts) {
        const std::int64_t base =
            part.base.isNode() ? owner_.node(part.base.node).getInt({}) : part.base.constant;
        sum += static_cast<std::uint64_t>(base) * static_cast<std::uint64_t>(step(part));
    }
    return static_cast<std::int64_t>(sum);
}

void RegisterCore::verifyAddress() {
    const auto parts = NodeTables::slice(owner_.description().tables().addressParts, data_.address);
    for (const AddressPart& part : parts)
        for (const Setting<std::int64_t>* setting : {&part.base, &part.step})
            if (setting->isNode()) owner_.node(setting->node).getInt({true, false});
}

// In chunk data a negative address counts from the end: there are the trailers.
std::int64_t RegisterCore::fromEnd(std::int64_t address) {
    PortNode* const device = port();
    if (address >= 0 || !device || !device->isChunkPort()) return address;
    std::uint8_t bytes[kPortSizeLength];
    device->readDevice(bytes, kPortSizeAddress, kPortSizeLength);
    std::uint64_t size = 0;
    for (std::size_t i = sizeof bytes; i-- > 0;)
        size = size << 8 | bytes[i];
    return static_cast<std::int64_t>(size + static_cast<std::uint64_t>(address));
}

std::int64_t RegisterCore::resolvedAddress() {
    const std::int64_t found = address();
    PortNode* const device = port();
    return device && IsReadable(device->accessMode()) ? fromEnd(found) : found;
}

bool RegisterCore::mayKeepAddress() const {
    const auto isKept = [this](const Setting<std::int64_t>& setting) {
        return !setting.isNode() || owner_.node(setting.node).record().caching != NoCache;
    };
    if (!isKept(data_.length)) return false;
    for (const AddressPart& part :
         NodeTables::slice(owner_.description().tables().addressParts, data_.address))
        if (!isKept(part.base) || !isKept(part.step)) return false;
    return true;
}

void RegisterCore::locate() {
    std::uint8_t& flags = owner_.map().flagsOf(owner_.id());
    if (flags & NodeMap::kAddressKnown) return;
    length_ = length();
    address_ = fromEnd(address());
    slot_ = owner_.map().registers().slotOf(data_.port, address_, length_);
    if (mayKeepAddress()) flags |= NodeMap::kAddressKnown;
}

std::size_t RegisterCore::byteCount() {
    locate();
    const std::int64_t bytes = length_;
    if (bytes < 0 || bytes > kMaxRegisterLength)
        throw NODE_ERROR(RuntimeException, owner_)("Register length is out of range");
    return static_cast<std::size_t>(bytes);
}

void RegisterCore::read(std::uint8_t* bytes, std::size_t count, ReadOptions options) {
    locate();
    RegisterCache& cache = owner_.map().registers();
    const bool cachable = owner_.record().caching != NoCache;
    if (!options.ignoreCache && cachable) {
        if (const std::uint8_t* known = cache.content(slot_)) {
            std::copy(known, known + count, bytes);
            return;
        }
    }
    const RegisterCache::Slot slot = slot_;
    portFor("InternalGet").readDevice(bytes, address_, static_cast<std::int64_t>(count));
    if (options.leavesNothing() || !cachable)
        cache.drop(slot);
    else if (static_cast<std::int64_t>(count) == length_)
        cache.store(slot, bytes, count);
}

std::vector<std::uint8_t> RegisterCore::read(ReadOptions options) {
    std::vector<std::uint8_t> bytes(byteCount());
    read(bytes.data(), bytes.size(), options);
    return bytes;
}

void RegisterCore::write(const std::uint8_t* bytes, std::size_t count) {
    locate();
    RegisterCache& cache = owner_.map().registers();
    const RegisterCache::Slot slot = slot_;
    owner_.map().beginWrite(owner_.id());
    portFor("InternalSet").writeDevice(bytes, address_, static_cast<std::int64_t>(count));
    if (owner_.record().caching == WriteThrough) {
        cache.store(slot, bytes, count);
        owner_.map().keep(owner_.id());
    } else {
        cache.drop(slot);
    }
}

void RegisterCore::dropCaches() {
    owner_.map().registers().drop(slot_);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
