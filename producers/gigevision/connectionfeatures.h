// The features of a device module that show its control channel.
#pragma once

#include "producers/gigevision/base/devicelink.h"
#include "producers/gigevision/control/controlengine.h"
#include "producers/gigevision/description/cacheddescription.h"
#include "producers/server/registers/featuretable.h"

namespace ZelGev {

// What they show outlives the table.
void AddConnectionFeatures(ZelCti::FeatureTable& features, DeviceLink& link, ControlEngine& engine,
                           CachedDescription& description);

}  // namespace ZelGev
