#include "producers/simulator/transporttype.h"

#include <algorithm>
#include <iterator>

#include "gentl/GenTL.h"

namespace ZelSim {

uint32_t TransportTypeNumber(std::string_view name) {
    // In the order of descriptions/transporttypes.xml.
    constexpr std::string_view names[] = {TLTypeMixedName, TLTypeCustomName, TLTypeGEVName,
                                          TLTypeU3VName,   TLTypeCLName,     TLTypeCXPName,
                                          "HDSDI"};
    return static_cast<uint32_t>(std::find(std::begin(names), std::end(names), name) -
                                 std::begin(names));
}

uint64_t LinkSpeed(std::string_view name) {
    // By number.
    constexpr uint64_t speeds[] = {0,         371250000,  125000000, 500000000,
                                   850000000, 1250000000, 371250000};
    return speeds[TransportTypeNumber(name)];
}

}  // namespace ZelSim
