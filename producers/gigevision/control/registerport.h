// The registers and the memory of a camera, as bytes.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <unordered_set>

#include "producers/gigevision/control/exchange.h"

namespace ZelGev {

// Where commands are sent.
class CommandChannel {
  public:
    // Returns when all of them are done. Throws GC_ERR_IO when the camera is lost or closed.
    virtual void Run(Exchange* exchanges, size_t count) = 0;

  protected:
    ~CommandChannel() = default;
};

// Makes commands of accesses, in the forms that a camera takes:
// - Words, which are aligned and 4 bytes long, are registers: READREG and WRITEREG, which all
//   cameras have for them. All else is memory: READMEM and WRITEMEM.
// - What a camera refuses as a register it may have as memory, and the other way round: the second
//   way is tried, and then comes first around that address.
// - Other addresses and sizes are parts of words, which are read, or read and written, as a whole.
// - Memory is read in blocks, several commands at once where that works: when a command of a row is
//   lost or refused, one at a time for a while.
// All throw ZelCti::Error, as ThrowFailure says. A write of more than one command may have changed
// a part when it throws. Thread-safe.
class RegisterPort {
  public:
    explicit RegisterPort(CommandChannel& channel) : channel_(channel) {}

    // The GVCP capability register: which commands there are.
    void SetCapabilities(uint32_t capabilities) { capabilities_ = capabilities; }

    void Read(uint64_t address, void* buffer, size_t size);
    void Write(uint64_t address, const void* buffer, size_t size);

    uint32_t ReadRegister(uint32_t address);
    void WriteRegister(uint32_t address, uint32_t value);

  private:
    enum class Way : uint8_t { Register, Memory };

    // The parts of the address space in which a way is refused that comes first otherwise. What is
    // forgotten costs one more command.
    class Detours {
      public:
        bool Has(uint32_t address) const;
        void Add(uint32_t address);

      private:
        mutable std::mutex mutex_;
        std::unordered_set<uint32_t> pages_;  // guarded by mutex_
    };

    // Closed by trouble for a number of blocks that doubles as long as nothing goes well.
    class Pipeline {
      public:
        bool IsOpen() const { return numToWait_ == 0; }
        void OnBlock();    // one was read by itself
        void OnTrouble();  // with several at once
        void OnSuccess() { penalty_ = kFirstPenalty; }

      private:
        static constexpr unsigned kFirstPenalty = 32;

        // Threads that meet here make the wait a bit longer or shorter, which is no harm.
        std::atomic<unsigned> numToWait_{0};
        std::atomic<unsigned> penalty_{kFirstPenalty};
    };

    template <typename Try>
    void Access(Way usual, uint32_t address, const Try& tryWay);

    bool RunOne(Exchange& exchange);
    void ReadWords(uint32_t address, uint8_t* out, size_t size);
    void ReadWord(uint32_t address, uint8_t* out);
    void ReadBlock(uint32_t address, uint8_t* out, size_t size);
    size_t ReadBatch(uint32_t address, uint8_t* out, size_t size);
    void WriteWords(uint32_t address, const uint8_t* bytes, size_t size);
    void WriteWord(uint32_t address, const uint8_t* bytes);
    void WriteBlock(uint32_t address, const uint8_t* bytes, size_t size);

    CommandChannel& channel_;
    std::atomic<uint32_t> capabilities_{UINT32_MAX};
    Pipeline pipeline_;
    Detours registerDetours_;  // words that are memory
    Detours memoryDetours_;    // blocks that are registers
    std::mutex writing_;       // parts of words are read before they are written
};

}  // namespace ZelGev
