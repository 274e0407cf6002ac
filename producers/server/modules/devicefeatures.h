// Features that show a camera, as the modules on this side have them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "producers/server/base/answer.h"
#include "producers/server/registers/featuretable.h"

namespace ZelCti {

// The camera that features show, and what they have in common.
struct ShownCamera {
    std::function<void(Answer)> getInfo;  // device info commands
    std::function<void(Feature&)> trait = [](Feature&) {};
};

// Identifier, vendor, model, serial number, user-defined name and version: texts from an address
// on.
void AddDeviceIdentity(FeatureTable& features, const ShownCamera& shown, uint64_t address);

// How the camera can be opened, or is open.
void AddDeviceAccessStatus(FeatureTable& features, const ShownCamera& shown,
                           const std::string& toolTip, uint64_t address);

}  // namespace ZelCti
