// How bright the picture of a camera is.
#ifndef ZELSIM_BRIGHTNESS_H
#define ZELSIM_BRIGHTNESS_H

#include <array>
#include <cstdint>

#include "producers/simulator/framesettings.h"
#include "producers/simulator/lineencoder.h"

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

#endif  // ZELSIM_BRIGHTNESS_H
