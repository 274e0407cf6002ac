#include "producers/simulator/frame/brightness.h"

#include <algorithm>
#include <cmath>

namespace ZelSim {

namespace {

constexpr double kMax = 255;
constexpr double kGainUnitsPerDecade = 200;  // 0.1 dB of an amplitude

}  // namespace

Brightness::Brightness(const FrameSettings& settings)
    : red_(TableFor(settings, Channel::Red)),
      green_(TableFor(settings, Channel::Green)),
      blue_(TableFor(settings, Channel::Blue)) {}

Brightness::Table Brightness::TableFor(const FrameSettings& settings, Channel channel) {
    const auto own = static_cast<size_t>(channel);
    const auto all = static_cast<size_t>(Channel::All);
    const double exposure = static_cast<double>(settings.exposureTime) /
                            static_cast<double>(settings.nominalExposureTime);
    const double gain = settings.gain[own] + settings.gain[all];
    const double factor = exposure * std::pow(10, gain / kGainUnitsPerDecade);
    const double black = settings.blackLevel[own] + settings.blackLevel[all];
    Table table{};
    for (size_t level = 0; level < table.size(); ++level) {
        const double linear = std::clamp(static_cast<double>(level) * factor + black, 0.0, kMax);
        const double shaped = kMax * std::pow(linear / kMax, settings.gamma);
        table[level] = static_cast<uint8_t>(std::lround(shaped));
    }
    return table;
}

}  // namespace ZelSim
