#include "producers/gigevision/control/registerport.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "producers/gigevision/control/commandfailure.h"
#include "producers/server/base/error.h"
#include "producers/wire/bootstrapbits.h"

namespace ZelGev {

namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteSpan;
using ZelCti::ByteView;
using ZelCti::Error;
namespace GvcpCapability = ZelCti::Gev::GvcpCapability;
using ZelCti::Gev::Status;

namespace {

constexpr size_t kWord = sizeof(uint32_t);

// A block of memory, with which every camera copes.
constexpr size_t kBlock = 512;

// Of one call of the channel: enough to keep a pipeline full, and little memory.
constexpr size_t kMaxBatch = 16;

// Blocks that are read one at a time at most, before several at once are tried again.
constexpr unsigned kLongestPenalty = 4096;

// Detours are kept for parts of this size, and for so many of them.
constexpr unsigned kPageShift = 12;
constexpr size_t kMaxPages = 1024;

constexpr uint64_t kEnd = uint64_t{1} << 32U;

// The words in which bytes lie.
struct Range {
    uint32_t address;
    size_t size;
    size_t offset;  // of the first byte
};

Range RangeOf(uint64_t address, size_t size) {
    if (address >= kEnd || size > kEnd - address)
        throw Error(GenTL::GC_ERR_INVALID_ADDRESS, "a GigE camera has addresses of 32 bits");
    const size_t offset = address % kWord;
    return {static_cast<uint32_t>(address - offset), (offset + size + kWord - 1) / kWord * kWord,
            offset};
}

// Whether the camera may have what it refuses, in another form.
bool IsRefusedForm(const Exchange& exchange) {
    return exchange.IsAcknowledged() &&
           (exchange.status == Status::InvalidAddress || exchange.status == Status::NotImplemented);
}

// The bytes that were asked for; null when the answer is about something else.
const uint8_t* AnswerOf(const Exchange& exchange, uint32_t address, size_t size) {
    if (exchange.code == Gvcp::Code::ReadRegCmd)
        return exchange.payloadSize == size ? exchange.payload.data() : nullptr;
    const auto memory = Gvcp::DecodeReadMemAck(exchange.Ack());
    return memory && memory->address == address && memory->data.size >= size ? memory->data.data
                                                                             : nullptr;
}

void CopyAnswer(const Exchange& exchange, uint32_t address, uint8_t* out, size_t size) {
    const uint8_t* const bytes = AnswerOf(exchange, address, size);
    if (bytes == nullptr) ThrowMalformed(exchange);
    std::memcpy(out, bytes, size);
}

// `run(offset)` returns an exchange; the result is the one that failed, or the last one.
template <typename RunWord>
Exchange ForEachWord(size_t size, const RunWord& run) {
    for (size_t at = 0; at + kWord < size; at += kWord) {
        const Exchange exchange = run(at);
        if (!exchange.Succeeded()) return exchange;
    }
    return run(size - kWord);
}

}  // namespace

bool RegisterPort::Detours::Has(uint32_t address) const {
    const std::lock_guard lock(mutex_);
    return pages_.count(address >> kPageShift) != 0;
}

void RegisterPort::Detours::Add(uint32_t address) {
    const std::lock_guard lock(mutex_);
    if (pages_.size() < kMaxPages) pages_.insert(address >> kPageShift);
}

void RegisterPort::Pipeline::OnBlock() {
    unsigned left = numToWait_;
    while (left != 0 && !numToWait_.compare_exchange_weak(left, left - 1)) {
    }
}

void RegisterPort::Pipeline::OnTrouble() {
    const unsigned penalty = penalty_;
    numToWait_ = penalty;
    penalty_ = std::min(2 * penalty, kLongestPenalty);
}

// `tryWay(way)` returns the exchange that failed, or one that succeeded. When both ways are
// refused, callers see what the usual one got: that fits their access.
template <typename Try>
void RegisterPort::Access(Way usual, uint32_t address, const Try& tryWay) {
    Detours& detours = usual == Way::Register ? registerDetours_ : memoryDetours_;
    const Way other = usual == Way::Register ? Way::Memory : Way::Register;
    const bool isDetour = detours.Has(address);
    const Exchange first = tryWay(isDetour ? other : usual);
    if (first.Succeeded()) return;
    if (!IsRefusedForm(first)) ThrowFailure(first);
    const Exchange second = tryWay(isDetour ? usual : other);
    if (!second.Succeeded()) ThrowFailure(isDetour || !IsRefusedForm(second) ? second : first);
    if (!isDetour) detours.Add(address);
}

void RegisterPort::Read(uint64_t address, void* buffer, size_t size) {
    const Range range = RangeOf(address, size);
    if (size == 0) return;
    auto* const out = static_cast<uint8_t*>(buffer);
    if (range.size == size) return ReadWords(range.address, out, size);
    std::vector<uint8_t> words(range.size);
    ReadWords(range.address, words.data(), words.size());
    std::memcpy(out, words.data() + range.offset, size);
}

void RegisterPort::Write(uint64_t address, const void* buffer, size_t size) {
    const Range range = RangeOf(address, size);
    if (size == 0) return;
    const auto* const bytes = static_cast<const uint8_t*>(buffer);
    const std::lock_guard lock(writing_);
    if (range.size == size) return WriteWords(range.address, bytes, size);
    std::vector<uint8_t> words(range.size);
    ReadWords(range.address, words.data(), words.size());
    std::memcpy(words.data() + range.offset, bytes, size);
    WriteWords(range.address, words.data(), words.size());
}

uint32_t RegisterPort::ReadRegister(uint32_t address) {
    uint8_t word[kWord];
    ReadWord(address, word);
    return ByteView{word, kWord}.U32(0);
}

void RegisterPort::WriteRegister(uint32_t address, uint32_t value) {
    uint8_t word[kWord];
    ByteSpan{word, kWord}.PutU32(0, value);
    const std::lock_guard lock(writing_);
    WriteWord(address, word);
}

void RegisterPort::ReadWords(uint32_t address, uint8_t* out, size_t size) {
    if (size == kWord) return ReadWord(address, out);
    for (size_t at = 0; at < size;) {
        const uint32_t place = address + static_cast<uint32_t>(at);
        const size_t rest = size - at;
        if (rest > kBlock && pipeline_.IsOpen()) {
            at += ReadBatch(place, out + at, rest);
        } else {
            ReadBlock(place, out + at, std::min(kBlock, rest));
            pipeline_.OnBlock();
            at += std::min(kBlock, rest);
        }
    }
}

void RegisterPort::ReadWord(uint32_t address, uint8_t* out) {
    Access(Way::Register, address, [&](Way way) {
        Exchange exchange =
            way == Way::Register ? Exchange::ReadReg(address) : Exchange::ReadMem(address, kWord);
        if (RunOne(exchange)) CopyAnswer(exchange, address, out, kWord);
        return exchange;
    });
}

void RegisterPort::ReadBlock(uint32_t address, uint8_t* out, size_t size) {
    Access(Way::Memory, address, [&](Way way) {
        if (way == Way::Register) {
            return ForEachWord(size, [&](size_t at) {
                const uint32_t word = address + static_cast<uint32_t>(at);
                Exchange exchange = Exchange::ReadReg(word);
                if (RunOne(exchange)) CopyAnswer(exchange, word, out + at, kWord);
                return exchange;
            });
        }
        Exchange exchange = Exchange::ReadMem(address, size);
        if (RunOne(exchange)) CopyAnswer(exchange, address, out, size);
        return exchange;
    });
}

// Returns how many bytes were read. What goes wrong is done again by itself, and fails there.
size_t RegisterPort::ReadBatch(uint32_t address, uint8_t* out, size_t size) {
    std::vector<Exchange> batch;
    for (size_t at = 0; at < size && batch.size() < kMaxBatch; at += kBlock) {
        batch.push_back(
            Exchange::ReadMem(address + static_cast<uint32_t>(at), std::min(kBlock, size - at)));
        batch.back().lane = Exchange::Lane::Pipelined;
    }
    channel_.Run(batch.data(), batch.size());
    size_t done = 0;
    bool isSmooth = true;
    for (const Exchange& exchange : batch) {
        isSmooth = isSmooth && exchange.tries == 1;
        const size_t count = std::min(kBlock, size - done);
        const uint32_t place = address + static_cast<uint32_t>(done);
        const uint8_t* const bytes =
            exchange.Succeeded() ? AnswerOf(exchange, place, count) : nullptr;
        if (bytes == nullptr) {
            pipeline_.OnTrouble();
            return done;
        }
        std::memcpy(out + done, bytes, count);
        done += count;
    }
    if (isSmooth) {
        pipeline_.OnSuccess();
    } else {
        pipeline_.OnTrouble();
    }
    return done;
}

void RegisterPort::WriteWords(uint32_t address, const uint8_t* bytes, size_t size) {
    if (size == kWord) return WriteWord(address, bytes);
    for (size_t at = 0; at < size; at += kBlock)
        WriteBlock(address + static_cast<uint32_t>(at), bytes + at, std::min(kBlock, size - at));
}

void RegisterPort::WriteWord(uint32_t address, const uint8_t* bytes) {
    Access(Way::Register, address, [&](Way way) {
        Exchange exchange = way == Way::Register
                                ? Exchange::WriteReg(address, ByteView{bytes, kWord}.U32(0))
                                : Exchange::WriteMem({address, {bytes, kWord}});
        RunOne(exchange);
        return exchange;
    });
}

void RegisterPort::WriteBlock(uint32_t address, const uint8_t* bytes, size_t size) {
    const auto writeWords = [&] {
        return ForEachWord(size, [&](size_t at) {
            Exchange exchange = Exchange::WriteReg(address + static_cast<uint32_t>(at),
                                                   ByteView{bytes + at, kWord}.U32(0));
            RunOne(exchange);
            return exchange;
        });
    };
    if ((capabilities_ & GvcpCapability::kWriteMem) == 0) {
        const Exchange last = writeWords();
        if (!last.Succeeded()) ThrowFailure(last);
        return;
    }
    Access(Way::Memory, address, [&](Way way) {
        if (way == Way::Register) return writeWords();
        Exchange exchange = Exchange::WriteMem({address, {bytes, size}});
        RunOne(exchange);
        return exchange;
    });
}

bool RegisterPort::RunOne(Exchange& exchange) {
    channel_.Run(&exchange, 1);
    return exchange.Succeeded();
}

}  // namespace ZelGev
