#include "producers/simulator/camerafeatures.h"

#include <algorithm>
#include <string>
#include <utility>

#include "producers/simulator/acquisitionregisters.h"
#include "producers/simulator/camera.h"
#include "producers/simulator/error.h"
#include "producers/simulator/frameregisters.h"
#include "producers/simulator/localregisters.h"
#include "producers/simulator/settingregisters.h"
#include "producers/simulator/transporttype.h"

namespace ZelSim {

namespace {

constexpr uint64_t kIdentification = 0x0200;
constexpr uint64_t kNameSize = 64;
constexpr uint64_t kDevice = 0x2000;
constexpr uint64_t kCalibration = 0x2328;
constexpr uint64_t kLines = 0x2400;
constexpr uint64_t kUserSets = 0x2500;
constexpr uint64_t kTransport = 0x2600;

constexpr const char* kFirmwareVersion = "2.4.1";
constexpr uint64_t kNsPerMs = 1000000;
constexpr uint64_t kCalibrationNs = 30 * kNsPerMs;
constexpr uint64_t kFactoryKey = 0x5A454C;
constexpr uint64_t kWarmUpNs = 60000000000;

// Temperatures: 1/16 degree, from -40 degrees Celsius.
constexpr uint64_t kColdSensor = (25ULL + 40) * 16;
constexpr uint64_t kColdMainboard = (30ULL + 40) * 16;
constexpr uint64_t kWarmUp = 15ULL * 16;

constexpr size_t kNumLines = 2;
constexpr uint64_t kLineInverter = 1U << 1;

// What the camera can do, as the features Capability... take it apart.
constexpr uint32_t kBinning = 1U << 0;
constexpr uint32_t kReverse = 1U << 1;
constexpr uint32_t kSoftwareTrigger = 1U << 2;
constexpr unsigned kUserSetsShift = 8;

constexpr uint64_t kMinPacket = 576;
constexpr uint64_t kMaxPacket = 9000;

void CheckLock(uint64_t value) {
    if (value > 1) throw Error(GenTL::GC_ERR_INVALID_VALUE, "neither locked nor unlocked");
}

}  // namespace

CameraFeatures::CameraFeatures(Camera& camera)
    : camera_(camera),
      flash_(
          *camera.Registers(), [&camera] { return camera.Nanoseconds(); },
          camera.Config().flashBusyTime * kNsPerMs) {
    userSets_.fill(*camera.Settings());
    AddIdentification();
    AddDeviceControl();
    AddSensor();
    AddFrameRegisters(*camera.Registers(), camera.Control());
    AddAcquisitionRegisters(camera);
    AddCalibration();
    AddLines();
    AddUserSets();
    AddTransport();
}

void CameraFeatures::AddIdentification() {
    RegisterSpace& space = *camera_.Registers();
    const CameraConfig& config = camera_.Config();
    uint64_t address = kIdentification;
    for (const std::string& text : {config.vendor, config.model, config.version,
                                    std::string(kFirmwareVersion), config.serial}) {
        space.Add(RegisterSpace::String{address, kNameSize, Access::ReadOnly,
                                        [text] { return text; }, nullptr, nullptr});
        address += kNameSize;
    }
    space.Add(RegisterSpace::String{
        address, kNameSize, Access::ReadWrite, [this] { return camera_.UserName(); }, nullptr,
        [this](const std::string& name) { camera_.SetUserName(name); }});
}

void CameraFeatures::AddDeviceControl() {
    RegisterSpace& space = *camera_.Registers();
    SettingRegisters registers(space, camera_.Control());
    const uint32_t transport = TransportTypeNumber(camera_.TlType());
    AddNumber(space, kDevice, 4, [=] { return transport; });
    registers.Command(kDevice + 0x10, [this] {
        LoadUserSet(static_cast<size_t>(defaultUserSet_));  // refused while frames flow
        camera_.Events().Reset();
    });
    registers.Command(kDevice + 0x14,
                      [this] { latchedTicks_ = camera_.Ticks(camera_.Nanoseconds()); });
    AddNumber(space, kDevice + 0x18, 8, [this] { return latchedTicks_; });
    const uint64_t linkSpeed = camera_.Config().linkSpeed;
    AddNumber(space, kDevice + 0x28, 8, [=] { return linkSpeed; });
    space.Add(RegisterSpace::Integer{kDevice + 0x30, 4, Access::WriteOnly, nullptr, nullptr,
                                     [this](uint64_t key) { unlocked_ = key == kFactoryKey; }});
    AddNumber(space, kDevice + 0x34, 4, [this] { return unlocked_ ? 1 : 0; });

    // Bits are counted from the other end in big-endian registers: little endian in every camera.
    Register capabilities;
    capabilities.address = kDevice + 0x38;
    capabilities.size = 4;
    capabilities.access = Access::ReadOnly;
    capabilities.source = [](uint8_t* bytes) {
        const uint32_t bits =
            kBinning | kReverse | kSoftwareTrigger | kNumUserSets << kUserSetsShift;
        StoreInteger(bytes, 4, bits, ByteOrder::Little);
    };
    space.Add(std::move(capabilities));
}

// What the sensor tells of itself: it gets warm in the first minute.
void CameraFeatures::AddSensor() {
    RegisterSpace& space = *camera_.Registers();
    const auto warmedUp = [this](uint64_t cold) {
        return cold + std::min(camera_.Nanoseconds(), kWarmUpNs) * kWarmUp / kWarmUpNs;
    };
    AddNumber(space, kDevice + 0x04, 4, [=] { return warmedUp(kColdSensor); });
    AddNumber(space, kDevice + 0x08, 4, [=] { return warmedUp(kColdMainboard); });
}

// A command that takes its time: its register reads as 1 until it is done.
void CameraFeatures::AddCalibration() {
    const auto isBusy = [this] { return camera_.Nanoseconds() < calibratedNs_; };
    camera_.Registers()->Add(RegisterSpace::Integer{
        kCalibration, 4, Access::ReadWrite, [=] { return isBusy() ? 1 : 0; }, nullptr,
        [=](uint64_t value) {
            if (value == 0) return;
            if (isBusy()) throw Error(GenTL::GC_ERR_BUSY, "the calibration runs already");
            calibratedNs_ = camera_.Nanoseconds() + kCalibrationNs;
            ++numCalibrations_;
        }});
    AddNumber(*camera_.Registers(), kCalibration + 4, 4, [this] { return numCalibrations_; });
}

// A line without a signal is low, and high for the camera when it is inverted. The configuration
// of a line is memory, little endian in every camera.
void CameraFeatures::AddLines() {
    RegisterSpace& space = *camera_.Registers();
    AddNumber(space, kLines + 0x10, 4, [&space] {
        uint64_t status = 0;
        for (size_t line = 0; line < kNumLines; ++line) {
            uint8_t bytes[4];
            space.Read(kLines + line * sizeof(bytes), bytes, sizeof(bytes));
            const uint64_t config = LoadInteger(bytes, sizeof(bytes), ByteOrder::Little);
            if ((config & kLineInverter) != 0) status |= uint64_t{1} << line;
        }
        return status;
    });
}

void CameraFeatures::AddUserSets() {
    RegisterSpace& space = *camera_.Registers();
    SettingRegisters registers(space, camera_.Control());
    for (size_t i = 0; i < kNumUserSets; ++i) {
        registers.Command(kUserSets + 0x10 + 4 * i, [=] { LoadUserSet(i); });
        registers.Command(kUserSets + 0x20 + 4 * i, [=] { SaveUserSet(i); });
    }
    space.Add(RegisterSpace::Integer{
        kUserSets + 0x04, 4, Access::ReadWrite, [this] { return defaultUserSet_; },
        [](uint64_t index) {
            if (index < kNumUserSets) return;
            throw Error(GenTL::GC_ERR_INVALID_VALUE, "not that many user sets");
        },
        [this](uint64_t index) { defaultUserSet_ = index; }});
}

void CameraFeatures::LoadUserSet(size_t index) {
    camera_.Control().ChangeFixed([&](FrameSettings& settings) { settings = userSets_.at(index); });
}

void CameraFeatures::SaveUserSet(size_t index) {
    if (index == 0) throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the factory's settings stay");
    userSets_.at(index) = *camera_.Settings();
}

void CameraFeatures::AddTransport() {
    RegisterSpace& space = *camera_.Registers();
    CameraControl& control = camera_.Control();
    AddNumber(space, kTransport, 8, [&control] { return control.Settings()->PayloadSize(); });
    space.Add(
        RegisterSpace::Integer{kTransport + 0x08, 4, Access::ReadWrite,
                               [&control] { return control.IsLockedByClient() ? 1 : 0; }, CheckLock,
                               [&control](uint64_t lock) { control.LockByClient(lock != 0); }});
    AddNumber(space, kTransport + 0x0C, 4, [&control] { return control.IsLocked() ? 1 : 0; });
    const uint64_t frequency = camera_.Config().timestampFrequency;
    AddNumber(space, kTransport + 0x10, 8, [=] { return frequency; });

    if (camera_.TlType() == TLTypeGEVName) AddPackets();
}

// What GigE cameras are told about packets; it changes nothing here.
void CameraFeatures::AddPackets() {
    RegisterSpace& space = *camera_.Registers();
    const auto add = [&](uint64_t offset, uint64_t initial, std::function<void(uint64_t)> check) {
        uint8_t bytes[4];
        StoreInteger(bytes, sizeof(bytes), initial, space.Order());
        space.Load(kTransport + offset, bytes, sizeof(bytes));
        space.Add(RegisterSpace::Integer{kTransport + offset, 4, Access::ReadWrite, nullptr,
                                         std::move(check), nullptr});
    };
    add(0x20, 1500, [&control = camera_.Control()](uint64_t size) {
        control.CheckUnlocked();
        if (size < kMinPacket || size > kMaxPacket || size % 4 != 0) {
            throw Error(GenTL::GC_ERR_INVALID_VALUE, "no size of a packet");
        }
    });
    add(0x24, 0, nullptr);
    add(0x28, 3000, nullptr);
}

}  // namespace ZelSim
