// The rows of a selector.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "producers/server/registers/featuretable.h"

namespace ZelCti {

// The feature "<item>Selector", which is the index at an address, and the register "<item>Count"
// behind it. Returns the selector itself.
Feature& AddSelector(FeatureTable& features, const std::string& item, const std::string& toolTip,
                     uint64_t address, IntegerValue index, std::function<uint64_t()> count);

}  // namespace ZelCti
