// What the camera is and how it does.
#include <algorithm>
#include <memory>
#include <utility>

#include "producers/server/registers/transporttype.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"
#include "producers/simulator/features/usersets.h"

namespace ZelSim {

using ZelCti::Access;
using ZelCti::ByteOrder;
using ZelCti::FeatureTable;
using ZelCti::IntegerValue;
using ZelCti::StoreInteger;
using ZelCti::TransportTypeEntries;
using ZelCti::TransportTypeNumber;

namespace {

constexpr size_t kIdentitySize = 64;
constexpr const char* kFirmwareVersion = "2.4.1";
constexpr uint64_t kFactoryKey = 0x5A454C;

// Temperatures: 1/16 degree, from -40 degrees Celsius. The camera gets warm in the first minute.
constexpr uint64_t kCold[] = {(25ULL + 40) * 16, (30ULL + 40) * 16};  // sensor, main board
constexpr uint64_t kWarmUp = 15ULL * 16;
constexpr uint64_t kWarmUpNs = 60000000000;

// What the camera can do, by bits.
constexpr unsigned kBinning = 0;
constexpr unsigned kReverse = 1;
constexpr unsigned kSoftwareTrigger = 2;
constexpr unsigned kFirstBitOfUserSets = 8;
constexpr unsigned kLastBitOfUserSets = 15;

auto ConstantText(std::string text) {
    return [text = std::move(text)] { return text; };
}

void AddIdentity(FeatureTable& features, Camera& camera) {
    const CameraConfig& config = camera.Config();
    features.StringReg("DeviceVendorName", "Name of the manufacturer.")
        .At(0x0200, kIdentitySize)
        .Get(ConstantText(config.vendor));
    features.StringReg("DeviceModelName", "Model of the camera.")
        .At(0x0240, kIdentitySize)
        .Get(ConstantText(config.model));
    features.StringReg("DeviceVersion", "Version of the camera.")
        .At(0x0280, kIdentitySize)
        .Get(ConstantText(config.version));
    features.StringReg("DeviceFirmwareVersion", "Version of the firmware.")
        .At(0x02C0, kIdentitySize)
        .Get(ConstantText(kFirmwareVersion));
    features.StringReg("DeviceSerialNumber", "Serial number of the camera.")
        .Expert()
        .At(0x0300, kIdentitySize)
        .Get(ConstantText(config.serial));
    features.StringReg("DeviceUserID", "What the user calls the camera.")
        .At(0x0340, kIdentitySize)
        .Get([&camera] { return camera.UserName(); })
        .Set([&camera](const std::string& name) { camera.SetUserName(name); });
    features.Enumeration("DeviceTLType", "Transport type of the camera.")
        .Expert()
        .At(0x2000)
        .Entries(TransportTypeEntries())
        .Get([type = TransportTypeNumber(camera.TlType())] { return type; });
    features.IntReg("DeviceLinkSpeed", "Speed of the link.")
        .Expert()
        .At(0x2028, 8)
        .Unit("Bps")
        .Representation("Linear")
        .Get([speed = config.linkSpeed] { return speed; });
}

void AddTemperatures(FeatureTable& features, Camera& camera) {
    features.Enumeration("DeviceTemperatureSelector", "Where the temperature is taken.")
        .Expert()
        .Entries({{"Sensor", 0, "At the sensor."}, {"Mainboard", 1, "At the main board."}})
        .Local(0);
    features.SwissKnife("DeviceTemperature", "Temperature at the selected place.")
        .Expert()
        .SelectedBy("DeviceTemperatureSelector")
        .Variables({{"RAW", "DeviceTemperatureReg"}})
        .Formula("RAW / 16.0 - 40.0")
        .Unit("C")
        .Representation("PureNumber");
    features.IntReg("DeviceTemperatureReg")
        .At(0x2004)
        .Volatile()
        .Indexed("DeviceTemperatureSelectorValue", std::size(kCold), [&camera](size_t i) {
            IntegerValue value;
            value.get = [&camera, cold = kCold[i]] {
                return cold + std::min(camera.Uptime(), kWarmUpNs) * kWarmUp / kWarmUpNs;
            };
            return value;
        });
}

void AddClock(FeatureTable& features, Camera& camera) {
    const auto latchedTicks = std::make_shared<uint64_t>(0);
    features.Command("TimestampLatch", "Takes the present time for TimestampLatchValue.")
        .Expert()
        .At(0x2014)
        .Does([=, &camera] { *latchedTicks = camera.Ticks(camera.Nanoseconds()); });
    features.Command("TimestampReset", "Sets the clock of the time stamps to 0.")
        .Expert()
        .At(0x203C)
        .Does([&camera] { camera.SetClock(0); });
    features
        .IntReg("TimestampLatchValue", "Time at which it was latched last, in ticks of the camera.")
        .Expert()
        .At(0x2018, 8)
        .InvalidatedBy({"TimestampLatch"})
        .Representation("Linear")
        .Get([=] { return *latchedTicks; });
}

// Bits are counted from the other end in big-endian registers: little endian in every camera.
void AddCapabilities(FeatureTable& features) {
    features.StructReg("Capabilities")
        .At(0x2038)
        .Order(ByteOrder::Little)
        .Bind([](uint8_t* bytes, size_t size) {
            const uint64_t bits = 1U << kBinning | 1U << kReverse | 1U << kSoftwareTrigger |
                                  UserSets::kCount << kFirstBitOfUserSets;
            StoreInteger(bytes, size, bits, ByteOrder::Little);
        });
    features.StructEntry("CapabilityBinning", "Whether the camera can bin pixels.")
        .Expert()
        .Bit(kBinning);
    features.StructEntry("CapabilityReverseX", "Whether the camera can reverse lines.")
        .Expert()
        .Bit(kReverse);
    features.StructEntry("CapabilitySoftwareTrigger", "Whether a command can trigger frames.")
        .Expert()
        .Bit(kSoftwareTrigger);
    features.StructEntry("CapabilityUserSets", "How many user sets the camera has.")
        .Expert()
        .Bits(kFirstBitOfUserSets, kLastBitOfUserSets);
}

void AddFactory(FeatureTable& features) {
    features.Register("UserMemory", "Memory for the user.").Guru().At(0x4000, 64);
    const auto isUnlocked = std::make_shared<bool>(false);
    features.IntReg("FactoryKey", "Unlocks what the factory uses.")
        .Guru()
        .At(0x2030)
        .Volatile()
        .Representation("HexNumber")
        .Access(Access::WriteOnly)
        .Set([=](uint64_t key) { *isUnlocked = key == kFactoryKey; });
    features.Boolean("FactoryUnlocked", "Whether the key was right.")
        .Guru()
        .At(0x2034)
        .InvalidatedBy({"FactoryKey"})
        .Get([=] { return *isUnlocked ? 1 : 0; });
}

}  // namespace

void AddDeviceControl(FeatureTable& features, Camera& camera, std::function<void()> powerCycle) {
    features.Category("DeviceControl", "The camera as a device.");
    AddIdentity(features, camera);
    AddTemperatures(features, camera);
    AddClock(features, camera);
    features
        .Command(
            "DeviceReset",
            "Takes the power from the camera for a moment, as if it were unplugged and plugged "
            "in again.")
        .Guru()
        .At(0x2010)
        .Does(std::move(powerCycle));
    AddCapabilities(features);
    AddFactory(features);
}

}  // namespace ZelSim
