#include "genapi/nodes/registercore.h"

#include <cinttypes>

#include "genapi/nodes/portnode.h"
#include "genapi/ports/byterange.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {
// No camera has a register of this size; a description that claims one must not exhaust memory.
constexpr int64_t kMaxRegisterLength = int64_t{1} << 28;

// 0 for a register that does not hold a number.
int64_t MinNumberLength(NodeKind kind) {
    switch (kind) {
        case NodeKind::IntReg:
        case NodeKind::MaskedIntReg:
        case NodeKind::StructEntry:
            return 1;
        case NodeKind::FloatReg:
            return 4;
        default:  // all others hold texts or bytes
            return 0;
    }
}
}  // namespace

PortNode* RegisterCore::Port() const {
    if (data_.port == kNoNode) return nullptr;
    Node& node = owner_.NodeAt(data_.port);
    return node.Record().kind == NodeKind::Port ? static_cast<PortNode*>(&node) : nullptr;
}

PortNode& RegisterCore::PortFor(const char* operation) const {
    PortNode* const device = Port();
    if (!device)
        throw NODE_ERROR(AccessException, owner_)("CRegisterImpl::%s : port not set", operation);
    return *device;
}

// A register whose pPort is not a port shows its own mode, though every operation on it fails.
EAccessMode RegisterCore::AccessMode() const {
    const auto own = static_cast<EAccessMode>(data_.accessMode);
    PortNode* const device = Port();
    return device ? Combine(own, device->AccessMode()) : own;
}

int64_t RegisterCore::Step(const AddressPart& part) {
    if (!part.isIndex) return 1;
    if (part.step.IsNode()) return owner_.NodeAt(part.step.node).GetInt({});
    return part.step.Given() ? part.step.constant : Length();
}

int64_t RegisterCore::Length() {
    const int64_t length =
        data_.length.IsNode() ? owner_.NodeAt(data_.length.node).GetInt({}) : data_.length.constant;
    const int64_t min = MinNumberLength(owner_.Record().kind);
    constexpr int64_t kMax = kMaxNumberLength;
    if (min > 0 && length < min)
        throw NODE_ERROR(OutOfRangeException, owner_)(
            "Value = %" PRId64 " must be equal or greater than Min = %" PRId64, length, min);
    if (min > 0 && length > kMax)
        throw NODE_ERROR(OutOfRangeException, owner_)(
            "Value = %" PRId64 " must be equal or smaller than Max = %" PRId64, length, kMax);
    return length;
}

int64_t RegisterCore::Address() {
    // Unsigned, because sums may wrap around.
    uint64_t sum = static_cast<uint64_t>(data_.constantAddress);
    const auto parts =
        NodeTables::SliceOf(owner_.CameraDescription().Tables().addressParts, data_.address);
    for (const AddressPart& part : parts) {
        const int64_t base =
            part.base.IsNode() ? owner_.NodeAt(part.base.node).GetInt({}) : part.base.constant;
        sum += static_cast<uint64_t>(base) * static_cast<uint64_t>(Step(part));
    }
    return static_cast<int64_t>(sum);
}

void RegisterCore::VerifyAddress() {
    const auto parts =
        NodeTables::SliceOf(owner_.CameraDescription().Tables().addressParts, data_.address);
    for (const AddressPart& part : parts)
        for (const Setting<int64_t>* setting : {&part.base, &part.step})
            if (setting->IsNode()) owner_.NodeAt(setting->node).GetInt({true, false});
}

// A negative address in chunk data counts from the end, where the trailers are.
int64_t RegisterCore::FromEnd(int64_t address) {
    PortNode* const device = Port();
    if (address >= 0 || !device || !device->IsChunkPort()) return address;
    uint8_t bytes[kPortSizeLength];
    device->ReadDevice(bytes, kPortSizeAddress, kPortSizeLength);
    uint64_t size = 0;
    for (size_t i = sizeof bytes; i-- > 0;)
        size = size << 8 | bytes[i];
    return static_cast<int64_t>(size + static_cast<uint64_t>(address));
}

int64_t RegisterCore::ResolvedAddress() {
    const int64_t found = Address();
    PortNode* const device = Port();
    return device && IsReadable(device->AccessMode()) ? FromEnd(found) : found;
}

bool RegisterCore::MayKeepAddress() const {
    const auto isKept = [this](const Setting<int64_t>& setting) {
        return !setting.IsNode() || owner_.NodeAt(setting.node).Record().caching != NoCache;
    };
    if (!isKept(data_.length)) return false;
    for (const AddressPart& part :
         NodeTables::SliceOf(owner_.CameraDescription().Tables().addressParts, data_.address))
        if (!isKept(part.base) || !isKept(part.step)) return false;
    return true;
}

void RegisterCore::Locate() {
    NodeMap& map = owner_.Map();
    if (map.Flags(owner_.Id()) & NodeMap::kAddressKnown) return;
    length_ = Length();
    address_ = FromEnd(Address());
    slot_ = map.Registers().SlotOf(data_.port, address_, length_);
    if (MayKeepAddress()) map.SetFlags(owner_.Id(), NodeMap::kAddressKnown);
}

size_t RegisterCore::ByteCount() {
    Locate();
    const int64_t bytes = length_;
    if (bytes < 0 || bytes > kMaxRegisterLength)
        throw NODE_ERROR(RuntimeException, owner_)("Register length is out of range");
    return static_cast<size_t>(bytes);
}

void RegisterCore::Read(uint8_t* bytes, size_t count, ReadOptions options) {
    Locate();
    RegisterCache& cache = owner_.Map().Registers();
    const bool cachable = owner_.Record().caching != NoCache;
    if (!options.ignoreCache && cachable) {
        if (const uint8_t* known = cache.Find(slot_)) {
            std::copy(known, known + count, bytes);
            return;
        }
    }
    const RegisterCache::Slot slot = slot_;
    PortFor("InternalGet").ReadDevice(bytes, address_, static_cast<int64_t>(count));
    if (options.LeavesNothing() || !cachable)
        cache.Drop(slot);
    else if (static_cast<int64_t>(count) == length_)
        cache.Store(slot, bytes, count);
}

std::vector<uint8_t> RegisterCore::Read(ReadOptions options) {
    std::vector<uint8_t> bytes(ByteCount());
    Read(bytes.data(), bytes.size(), options);
    return bytes;
}

void RegisterCore::Write(const uint8_t* bytes, size_t count) {
    Locate();
    RegisterCache& cache = owner_.Map().Registers();
    const RegisterCache::Slot slot = slot_;
    owner_.Map().BeginWrite(owner_.Id());
    PortFor("InternalSet").WriteDevice(bytes, address_, static_cast<int64_t>(count));
    if (owner_.Record().caching == WriteThrough) {
        cache.Store(slot, bytes, count);
        owner_.Map().Keep(owner_.Id());
    } else {
        cache.Drop(slot);
    }
}

void RegisterCore::DropCaches() {
    owner_.Map().Registers().Drop(slot_);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
