// What a program does at a simulated camera beside starting its stream: by registers, so that it
// needs no node map. docs/simulator.md describes the features.
#pragma once

#include <array>
#include <cstdint>

namespace ZelTest {

// `write(address, bytes)` writes the 4 bytes of a register and says whether the camera took them.
template <typename Write>
class CameraAcquisition {
  public:
    CameraAcquisition(Write write, bool bigEndian) : write_(write), bigEndian_(bigEndian) {}

    // Once the stream is started: frames come from now on.
    bool Start() const { return Lock(true) && Set(kStart, 1); }

    // Before the stream is stopped: also when the camera has ended by itself.
    bool Stop() const {
        const bool stopped = Set(kStop, 1);
        return Lock(false) && stopped;
    }

    bool Lock(bool lock) const { return Set(kLocked, lock ? 1 : 0); }

  private:
    static constexpr uint64_t kStart = 0x2204;   // AcquisitionStart
    static constexpr uint64_t kStop = 0x2208;    // AcquisitionStop
    static constexpr uint64_t kLocked = 0x2608;  // TLParamsLocked

    bool Set(uint64_t address, uint8_t value) const {
        std::array<uint8_t, 4> bytes{};
        (bigEndian_ ? bytes.back() : bytes.front()) = value;
        return write_(address, bytes);
    }

    const Write write_;
    const bool bigEndian_;
};

}  // namespace ZelTest
