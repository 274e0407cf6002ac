#include "producers/server/modules/devicefeatures.h"

#include "gentl/GenTL.h"
#include "producers/server/modules/infosource.h"

namespace ZelCti {

void AddDeviceIdentity(FeatureTable& features, const ShownCamera& shown, uint64_t address) {
    const auto add = [&](const char* name, const char* toolTip, int32_t command) -> Feature& {
        Feature& feature = features.StringReg(name, toolTip)
                               .At(address, kTextSize)
                               .Bind(InfoSource(command, shown.getInfo))
                               .Apply(shown.trait);
        address += kTextSize;
        return feature;
    };
    using namespace GenTL;
    add("DeviceID", "Identifier of the camera.", DEVICE_INFO_ID);
    add("DeviceVendorName", "Who made the camera.", DEVICE_INFO_VENDOR);
    add("DeviceModelName", "Model of the camera.", DEVICE_INFO_MODEL);
    add("DeviceSerialNumber", "Serial number of the camera.", DEVICE_INFO_SERIAL_NUMBER).Expert();
    add("DeviceUserID", "Name that the user gave the camera.", DEVICE_INFO_USER_DEFINED_NAME);
    add("DeviceVersion", "Version of the camera.", DEVICE_INFO_VERSION).Expert();
}

void AddDeviceAccessStatus(FeatureTable& features, const ShownCamera& shown,
                           const std::string& toolTip, uint64_t address) {
    using namespace GenTL;
    features.Enumeration("DeviceAccessStatus", toolTip)
        .Expert()
        .At(address)
        .Entries({
            {"Unknown", DEVICE_ACCESS_STATUS_UNKNOWN, "The status is not known."},
            {"ReadWrite", DEVICE_ACCESS_STATUS_READWRITE, "Nobody controls the camera."},
            {"ReadOnly", DEVICE_ACCESS_STATUS_READONLY, "Another client controls the camera."},
            {"NoAccess", DEVICE_ACCESS_STATUS_NOACCESS, "The camera cannot be reached."},
            {"Busy", DEVICE_ACCESS_STATUS_BUSY, "Another client has the camera exclusively."},
            {"OpenReadWrite", DEVICE_ACCESS_STATUS_OPEN_READWRITE,
             "This client has the camera open."},
            {"OpenReadOnly", DEVICE_ACCESS_STATUS_OPEN_READONLY,
             "This client has the camera open for reading."},
        })
        .Bind(InfoSource(DEVICE_INFO_ACCESS_STATUS, shown.getInfo))
        .Apply(shown.trait);
}

}  // namespace ZelCti
