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

}  // namespace ZelSim
