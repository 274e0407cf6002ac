#include "producers/server/registers/transporttype.h"

#include <algorithm>
#include <iterator>

#include "gentl/GenTL.h"

namespace ZelCti {

namespace {

struct TransportTypeRow {
    std::string_view name;  // of the standard
    const char* entry;
    const char* toolTip;
};

// By number.
constexpr TransportTypeRow kTransportTypes[] = {
    {TLTypeMixedName, "Mixed", "Several transport types."},
    {TLTypeCustomName, "Custom", "A transport type that no standard describes."},
    {TLTypeGEVName, "GigEVision", "GigE Vision."},
    {TLTypeU3VName, "USB3Vision", "USB3 Vision."},
    {TLTypeCLName, "CameraLink", "Camera Link."},
    {TLTypeCXPName, "CoaXPress", "CoaXPress."},
    {"HDSDI", "HDSDI", "HD-SDI."},
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

}  // namespace ZelCti
