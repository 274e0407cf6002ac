#include "producers/simulator/registerspace.h"

#include <algorithm>
#include <cstring>

#include "gentl/GenTL.h"
#include "producers/simulator/error.h"

namespace ZelSim {

namespace {

// Calls visit(page number, offset in the page, offset in the range, length) for each page of a
// range.
template <typename Visit>
void ForEachPage(size_t pageSize, uint64_t address, size_t size, Visit&& visit) {
    for (size_t done = 0; done < size;) {
        const auto offset = static_cast<size_t>((address + done) % pageSize);
        const size_t length = std::min(pageSize - offset, size - done);
        visit((address + done) / pageSize, offset, done, length);
        done += length;
    }
}

}  // namespace

void RegisterSpace::Check(uint64_t address, size_t size) const {
    if (address > lastAddress_ || (size != 0 && size - 1 > lastAddress_ - address)) {
        throw Error(GenTL::GC_ERR_INVALID_ADDRESS, "beyond the end of the register space");
    }
}

void RegisterSpace::Read(uint64_t address, void* buffer, size_t size) const {
    Check(address, size);
    auto* const out = static_cast<uint8_t*>(buffer);
    const std::lock_guard lock(mutex_);
    ForEachPage(kPageSize, address, size,
                [&](uint64_t number, size_t offset, size_t done, size_t length) {
                    const auto page = pages_.find(number);
                    if (page == pages_.end()) {
                        std::memset(out + done, 0, length);
                    } else {
                        std::memcpy(out + done, page->second.data() + offset, length);
                    }
                });
}

void RegisterSpace::Write(uint64_t address, const void* buffer, size_t size) {
    Check(address, size);
    const auto* const in = static_cast<const uint8_t*>(buffer);
    const std::lock_guard lock(mutex_);
    ForEachPage(kPageSize, address, size,
                [&](uint64_t number, size_t offset, size_t done, size_t length) {
                    if (pages_.size() >= kMaxPages && pages_.count(number) == 0) {
                        throw Error(GenTL::GC_ERR_RESOURCE_EXHAUSTED, "too many registers written");
                    }
                    std::memcpy(pages_[number].data() + offset, in + done, length);
                });
}

}  // namespace ZelSim
