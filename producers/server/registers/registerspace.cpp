#include "producers/server/registers/registerspace.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"

namespace ZelCti {

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

void RegisterSpace::Add(Register reg) {
    CheckRange(reg.address, reg.size);
    const auto lock = Lock();
    ForEachRegister(reg.address, reg.size, [](const Register& other) {
        std::ostringstream text;
        text << "a register overlaps with that at 0x" << std::hex << std::uppercase
             << other.address;
        throw std::logic_error(text.str());
    });
    const uint64_t address = reg.address;
    registers_[address] = std::move(reg);
}

void RegisterSpace::CheckRange(uint64_t address, size_t size) const {
    if (address > lastAddress_ || (size != 0 && size - 1 > lastAddress_ - address)) {
        throw Error(GenTL::GC_ERR_INVALID_ADDRESS, "beyond the end of the register space");
    }
}

void RegisterSpace::CheckWhole(const Register& reg, uint64_t address, size_t size) {
    if (reg.whole && (address != reg.address || size != reg.size)) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "the register is accessed as a whole only");
    }
}

template <typename Visit>
void RegisterSpace::ForEachRegister(uint64_t address, size_t size, Visit&& visit) const {
    if (size == 0) return;
    auto next = registers_.upper_bound(address);
    if (next != registers_.begin()) {
        const Register& before = std::prev(next)->second;
        if (address - before.address < before.size) --next;
    }
    const uint64_t last = address + (size - 1);
    for (; next != registers_.end() && next->first <= last; ++next)
        visit(next->second);
}

const Register* RegisterSpace::Find(uint64_t address, size_t size) const {
    const Register* first = nullptr;
    const auto lock = Lock();
    ForEachRegister(address, size, [&](const Register& reg) {
        if (first == nullptr) first = &reg;
    });
    return first;
}

void RegisterSpace::Read(uint64_t address, void* buffer, size_t size) {
    CheckRange(address, size);
    const auto lock = Lock();
    ForEachRegister(address, size, [=](const Register& reg) {
        if (reg.access == Access::WriteOnly) {
            throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the register is write-only");
        }
        CheckWhole(reg, address, size);
    });
    ForEachRegister(address, size, [this](const Register& reg) {
        if (reg.source != nullptr) WriteMemory(reg.address, Content(reg).data(), reg.size);
    });
    ReadMemory(address, static_cast<uint8_t*>(buffer), size);
}

// A source sees what was written last, so that it may compute parts only.
std::vector<uint8_t> RegisterSpace::Content(const Register& reg) {
    std::vector<uint8_t> content(reg.size);
    ReadMemory(reg.address, content.data(), reg.size);
    if (reg.source != nullptr) reg.source(content.data());
    return content;
}

void RegisterSpace::Write(uint64_t address, const void* buffer, size_t size) {
    CheckRange(address, size);
    const auto* const in = static_cast<const uint8_t*>(buffer);
    const auto lock = Lock();
    std::vector<std::pair<const Register*, std::vector<uint8_t>>> touched;
    ForEachRegister(address, size, [&](const Register& reg) {
        if (reg.access == Access::ReadOnly) {
            throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the register is read-only");
        }
        CheckWhole(reg, address, size);
        std::vector<uint8_t> content = Content(reg);
        const uint64_t begin = std::max(address, reg.address);
        const uint64_t last = std::min(address + (size - 1), reg.address + (reg.size - 1));
        std::memcpy(content.data() + (begin - reg.address), in + (begin - address),
                    static_cast<size_t>(last - begin) + 1);
        if (reg.check != nullptr) reg.check(content.data());
        touched.emplace_back(&reg, std::move(content));
    });
    WriteMemory(address, in, size);
    for (const auto& [reg, content] : touched) {
        WriteMemory(reg->address, content.data(), reg->size);
        if (reg->action != nullptr) reg->action(content.data());
    }
}

void RegisterSpace::Load(uint64_t address, const void* content, size_t size) {
    CheckRange(address, size);
    const auto lock = Lock();
    WriteMemory(address, static_cast<const uint8_t*>(content), size);
}

void RegisterSpace::ReadMemory(uint64_t address, uint8_t* out, size_t size) const {
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

void RegisterSpace::WriteMemory(uint64_t address, const uint8_t* in, size_t size) {
    ForEachPage(kPageSize, address, size,
                [&](uint64_t number, size_t offset, size_t done, size_t length) {
                    if (pages_.size() >= kMaxPages && pages_.count(number) == 0) {
                        throw Error(GenTL::GC_ERR_RESOURCE_EXHAUSTED, "too many registers written");
                    }
                    std::memcpy(pages_[number].data() + offset, in + done, length);
                });
}

}  // namespace ZelCti
