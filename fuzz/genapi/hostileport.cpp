#include "fuzz/genapi/hostileport.h"

#include <algorithm>
#include <iterator>

#include <Base/GCException.h>

using namespace GENAPI_NAMESPACE;

namespace Fuzz {

namespace {

constexpr size_t kRarities[] = {0, 64, 8, 2};

}  // namespace

HostilePort::HostilePort(Choices& choices)
    : choices_(choices), rarity_(kRarities[choices.Below(std::size(kRarities))]) {}

void HostilePort::MayFail() {
    if (!Misbehaves()) return;
    switch (choices_.Below(7)) {
        case 0:
            throw ACCESS_EXCEPTION("denied");
        case 1:
            throw TIMEOUT_EXCEPTION("late");
        case 2:
            throw INVALID_ARGUMENT_EXCEPTION("invalid");
        case 3:
            throw OUT_OF_RANGE_EXCEPTION("out of range");
        case 4:
            throw LOGICAL_ERROR_EXCEPTION("incomplete");
        case 5:
            throw GENERIC_EXCEPTION("anything");
        default:
            throw RUNTIME_EXCEPTION("failed");
    }
}

// Visits the pieces of the memory that a range of addresses covers: `visit(place, size)`.
template <typename Visit>
void HostilePort::ForEachPiece(int64_t address, int64_t length, Visit visit) {
    auto at = static_cast<uint64_t>(address);
    for (auto left = static_cast<uint64_t>(length); left > 0;) {
        const size_t place = at % memory_.size();
        const size_t size = std::min<uint64_t>(left, memory_.size() - place);
        visit(memory_.begin() + place, size);
        at += size;
        left -= size;
    }
}

void HostilePort::Read(void* buffer, int64_t address, int64_t length) {
    MayFail();
    auto* bytes = static_cast<uint8_t*>(buffer);
    if (Misbehaves()) {
        std::fill_n(bytes, length, choices_.Byte());
        return;
    }
    ForEachPiece(address, length,
                 [&](auto place, size_t size) { bytes = std::copy_n(place, size, bytes); });
}

void HostilePort::Write(const void* buffer, int64_t address, int64_t length) {
    MayFail();
    const auto* bytes = static_cast<const uint8_t*>(buffer);
    ForEachPiece(address, length, [&](auto place, size_t size) {
        std::copy_n(bytes, size, place);
        bytes += size;
    });
}

EAccessMode HostilePort::GetAccessMode() const {
    constexpr EAccessMode kModes[] = {NI, NA, WO, RO, RW};
    return Misbehaves() ? kModes[choices_.Below(std::size(kModes))] : RW;
}

}  // namespace Fuzz
