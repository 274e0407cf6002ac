#include "producers/simulator/frame/framesettings.h"

#include <algorithm>
#include <tuple>

namespace ZelSim {

namespace {

constexpr std::chrono::nanoseconds kExposureUnit(100);
constexpr uint64_t kNsPerSecond = 1000000000;

// What TestPicture depends on.
auto Shown(const FrameSettings& s) {
    return std::tie(s.sensorWidth, s.sensorHeight, s.width, s.height, s.offsetX, s.offsetY,
                    s.binningHorizontal, s.binningVertical, s.reverseX, s.pixelFormat, s.pattern,
                    s.xPadding, s.exposureTime, s.nominalExposureTime, s.gain, s.blackLevel,
                    s.gamma);
}

}  // namespace

uint32_t FrameSettings::WidthIncrement() const {
    uint32_t increment = 1;
    while (!pixelFormat->AcceptsWidth(increment))
        ++increment;
    return increment;
}

std::chrono::nanoseconds FrameSettings::Exposure() const {
    return IsTimed() ? exposureTime * kExposureUnit : std::chrono::nanoseconds(0);
}

// The size is below 2^30, and the product below 2^63.
std::chrono::nanoseconds FrameSettings::Readout() const {
    if (!IsTimed() || linkSpeed == 0) return std::chrono::nanoseconds(0);
    return std::chrono::nanoseconds(PayloadSize() * kNsPerSecond / linkSpeed);
}

double FrameSettings::MaxFrameRate() const {
    double rate = kExposureUnitsPerSecond / exposureTime;
    if (linkSpeed == 0) return rate;
    return std::min(rate, static_cast<double>(linkSpeed) / static_cast<double>(PayloadSize()));
}

double FrameSettings::ResultingFrameRate() const {
    return frameRateEnable ? frameRate : MaxFrameRate();
}

void FrameSettings::Adapt() {
    const uint32_t increment = WidthIncrement();
    width = std::max(std::min(width, WidthMax()) / increment * increment, increment);
    height = std::min(height, HeightMax());
    offsetX = std::min(offsetX, WidthMax() - std::min(width, WidthMax()));
    offsetY = std::min(offsetY, HeightMax() - height);
    frameRate = std::min(frameRate, MaxFrameRate());
}

bool FrameSettings::ShowsSameAs(const FrameSettings& other) const {
    return Shown(*this) == Shown(other);
}

}  // namespace ZelSim
