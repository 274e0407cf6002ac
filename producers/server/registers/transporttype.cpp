#include "producers/server/registers/transporttype.h"

#include <algorithm>
#include <iterator>

#include "gentl/GenTL.h"

namespace ZelSim {

namespace {

struct TransportTypeRow {
    std::string_view name;  // of the standard
    const char* entry;
    const char* toolTip;
    uint64_t linkSpeed;
};

// By number.
constexpr TransportTypeRow kTransportTypes[] = {
    {TLTypeMixedName, "Mixed", "Several transport types.", 0},
    {TLTypeCustomName, "Custom", "A transport type that no standard describes.", 371250000},
    {TLTypeGEVName, "GigEVision", "GigE Vision.", 125000000},
    {TLTypeU3VName, "USB3Vision", "USB3 Vision.", 500000000},
    {TLTypeCLName, "CameraLink", "Camera Link.", 850000000},
    {TLTypeCXPName, "CoaXPress", "CoaXPress.", 1250000000},
    {"HDSDI", "HDSDI", "HD-SDI.", 371250000},
};

const TransportTypeRow* FindTransportType(std::string_view name) {
    return std::find_if(std::begin(kTransportTypes), std::end(kTransportTypes),
                        [&](const TransportTypeRow& type) { return type.name == name; });
}

}  // namespace

uint32_t TransportTypeNumber(std::string_view name) {
    return static_cast<uint32_t>(FindTransportType(name) - std::begin(kTransportTypes));
}

std::vector<Entry> TransportTypeEntries() {
    std::vector<Entry> entries;
    for (const TransportTypeRow& type : kTransportTypes)
        entries.push_back({type.entry, static_cast<int64_t>(entries.size()), type.toolTip});
    return entries;
}

uint64_t LinkSpeed(std::string_view name) {
    return FindTransportType(name)->linkSpeed;
}

}  // namespace ZelSim
