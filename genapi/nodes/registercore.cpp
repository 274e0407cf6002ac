#include "genapi/nodes/registercore.h"

#include "genapi/nodes/portnode.h"
#include "genapi/ports/byterange.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {
// No camera has a register of this size; a description that claims one must not exhaust memory.
constexpr std::int64_t kMaxRegisterLength = std::int64_t{1} << 28;
}  // namespace

PortNode* RegisterCore::port() {
    if (data_.port == kNoNode) return nullptr;
    Node& node = owner_.node(data_.port);
    return node.record().kind == NodeKind::Port ? static_cast<PortNode*>(&node) : nullptr;
}

EAccessMode RegisterCore::accessMode() {
    PortNode* device = port();
    if (!device) return NI;
    EAccessMode mode = Combine(static_cast<EAccessMode>(data_.accessMode), device->accessMode());
    const auto parts = NodeTables::slice(owner_.description().tables().addressParts, data_.address);
    for (const AddressPart& part : parts)
        for (const Setting<std::int64_t>* setting : {&part.base, &part.step})
            if (setting->isNode()) {
                const EAccessMode found = owner_.node(setting->node).accessMode();
                if (!IsReadable(found)) mode = Combine(mode, found == NI ? NI : NA);
            }
    return mode;
}

std::int64_t RegisterCore::step(const AddressPart& part) {
    if (!part.isIndex) return 1;
    if (part.step.isNode()) return owner_.node(part.step.node).getInt({});
    return part.step.given() ? part.step.constant : length();
}

std::int64_t RegisterCore::length() {
    return data_.length.isNode() ? owner_.node(data_.length.node).getInt({})
                                 : data_.length.constant;
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

// A negative address counts from the end of what the port holds: chunks have their trailers there.
std::int64_t RegisterCore::fromEnd(std::int64_t address) {
    std::uint8_t bytes[kPortSizeLength];
    port()->readDevice(bytes, kPortSizeAddress, kPortSizeLength);
    std::uint64_t size = 0;
    for (std::size_t i = sizeof bytes; i-- > 0;)
        size = size << 8 | bytes[i];
    return static_cast<std::int64_t>(size + static_cast<std::uint64_t>(address));
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
    address_ = address();
    if (address_ < 0) address_ = fromEnd(address_);
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
    port()->readDevice(bytes, address_, static_cast<std::int64_t>(count));
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
    port()->writeDevice(bytes, address_, static_cast<std::int64_t>(count));
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
