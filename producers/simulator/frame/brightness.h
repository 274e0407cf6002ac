// How bright the picture of a camera is.
#pragma once

#include <array>
#include <cstdint>

#include "producers/simulator/frame/framesettings.h"
#include "producers/simulator/frame/lineencoder.h"

namespace ZelSim {

// What exposure time, gain, black level and gamma make of the levels of a picture. Immutable.
class Brightness {
  public:
    explicit Brightness(const FrameSettings& settings);

    Rgb Apply(const Rgb& pixel) const { return {red_[pixel.r], green_[pixel.g], blue_[pixel.b]}; }

  private:
    using Table = std::array<uint8_t, 256>;
    static Table TableFor(const FrameSettings& settings, Channel channel);

    const Table red_;
    const Table green_;
    const Table blue_;
};

}  // namespace ZelSim
