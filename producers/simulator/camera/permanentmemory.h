// What a camera keeps without power.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "producers/simulator/config/poweronsettings.h"
#include "producers/simulator/frame/framesettings.h"

namespace ZelSim {

// The memory that the next power-on finds as it was. A camera works with its own copy; the one that
// it becomes when its power returns gets it.
struct PermanentMemory {
    static constexpr size_t kNumUserSets = 3;

    // As the factory leaves it.
    explicit PermanentMemory(const CameraConfig& config) : userName(config.userName) {
        userSets.fill(PowerOnSettings(config));
    }

    // The first set is that of the factory.
    std::array<FrameSettings, kNumUserSets> userSets;
    size_t defaultUserSet = 0;  // with which the camera starts
    std::string userName;
    std::map<uint32_t, std::vector<uint8_t>> flash;  // the sectors that were used, by address
    std::vector<uint8_t> userFile;
};

}  // namespace ZelSim
