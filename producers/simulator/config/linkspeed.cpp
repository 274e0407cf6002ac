#include "producers/simulator/config/linkspeed.h"

#include "gentl/GenTL.h"

namespace ZelSim {

uint64_t UsualLinkSpeed(std::string_view tlType) {
    if (tlType == TLTypeGEVName) return 125000000;
    if (tlType == TLTypeU3VName) return 500000000;
    if (tlType == TLTypeCLName) return 850000000;
    if (tlType == TLTypeCXPName) return 1250000000;
    return 371250000;
}

}  // namespace ZelSim
