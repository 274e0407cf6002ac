#include "producers/simulator/config/poweronsettings.h"

#include <algorithm>

namespace ZelSim {

namespace {

constexpr uint32_t kUsualExposureTime = 100000;  // 10 ms
constexpr double kFrameRateWhenFree = 30;

}  // namespace

FrameSettings PowerOnSettings(const CameraConfig& config) {
    FrameSettings settings;
    static_cast<ImageLayout&>(settings) = config;
    settings.sensorWidth = config.offsetX + config.width;
    settings.sensorHeight = config.offsetY + config.height;
    settings.keepsTime = config.frameRate > 0;
    settings.frameRateEnable = config.frameRate > 0;
    settings.link.speed = config.linkSpeed;
    settings.frameRate = config.frameRate > 0 ? config.frameRate : kFrameRateWhenFree;
    // At most half of the period, so that the rate can be raised a little.
    const double half = kExposureUnitsPerSecond / 2 / settings.frameRate;
    settings.exposureTime =
        std::clamp(half < kUsualExposureTime ? static_cast<uint32_t>(half) : kUsualExposureTime,
                   kMinExposureTime, kMaxExposureTime);
    settings.nominalExposureTime = settings.exposureTime;
    settings.Adapt();
    return settings;
}

}  // namespace ZelSim
