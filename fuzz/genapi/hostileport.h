// A device that answers as the input decides.
#pragma once

#include <array>
#include <cstdint>

#include <GenApi/IPort.h>

#include "fuzz/choices.h"

namespace Fuzz {

// Registers that keep what is written, unless an access fails, with any exception that a port may
// throw, or reads something else; and a port that is sometimes not there. How often, the input
// decides at the start: never, now and then, or often.
class HostilePort : public GENAPI_NAMESPACE::IPort {
  public:
    explicit HostilePort(Choices& choices);

    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;
    GENAPI_NAMESPACE::EAccessMode GetAccessMode() const override;

  private:
    bool Misbehaves() const { return rarity_ != 0 && choices_.OneIn(rarity_); }
    void MayFail();
    template <typename Visit>
    void ForEachPiece(int64_t address, int64_t length, Visit visit);

    Choices& choices_;
    size_t rarity_;
    std::array<uint8_t, 4096> memory_{};  // every address, again and again
};

}  // namespace Fuzz
