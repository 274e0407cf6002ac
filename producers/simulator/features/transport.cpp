// How frames are sent.
#include "producers/server/base/error.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"

namespace ZelSim {

using ZelCti::Error;
using ZelCti::FeatureTable;

namespace {

constexpr uint64_t kMinPacket = 576;
constexpr uint64_t kMaxPacket = 9000;
constexpr uint64_t kPacketIncrement = 4;

void CheckPacketSize(uint64_t size) {
    if (size < kMinPacket || size > kMaxPacket || size % kPacketIncrement != 0) {
        throw Error(GenTL::GC_ERR_INVALID_VALUE, "no size of a packet");
    }
}

void CheckLock(uint64_t value) {
    if (value > 1) throw Error(GenTL::GC_ERR_INVALID_VALUE, "neither locked nor unlocked");
}

// What GigE cameras on no network are told about packets; it changes nothing here.
void AddPacketMemory(FeatureTable& features, Camera& camera) {
    features.Integer("GevSCPSPacketSize", "Size of the packets of the stream.")
        .Expert()
        .LockedBy("FrameSettingsLocked")
        .At(0x2620)
        .Limits(kMinPacket, kMaxPacket, kPacketIncrement)
        .Unit("B")
        .Representation("Linear")
        .Streamable()
        .Initial(1500)
        .Check([&control = camera.Control()](uint64_t size) {
            control.CheckUnlocked();
            CheckPacketSize(size);
        });
    features.Integer("GevSCPD", "Delay between packets, in ticks of the camera.")
        .Expert()
        .At(0x2624)
        .Limits(0, 1000000)
        .Representation("Linear")
        .Streamable();
    features
        .Integer("GevHeartbeatTimeout",
                 "After this time without a sign of life the camera is free for others.")
        .Guru()
        .At(0x2628)
        .Limits(500, 600000, 500)
        .Unit("ms")
        .Representation("Linear")
        .Initial(3000);
    features.IntReg("GevTimestampTickFrequency", "Ticks of the camera a second.")
        .Expert()
        .At(0x2610, 8)
        .Unit("Hz")
        .Representation("Linear")
        .Get([frequency = camera.Config().timestampFrequency] { return frequency; });
}

}  // namespace

void AddTransportLayerControl(FeatureTable& features, Camera& camera) {
    CameraControl& control = camera.Control();
    features.Category("TransportLayerControl", "How frames are sent.");
    features.IntReg("PayloadSize", "Bytes of a frame.")
        .Expert()
        .At(0x2600, 8)
        .Volatile()
        .Unit("B")
        .Representation("Linear")
        .Get([&control] { return control.Settings()->PayloadSize(); });
    features.Integer("TLParamsLocked", "Locks what must not change while frames flow: 1 locks.")
        .Invisible()
        .At(0x2608)
        .Volatile()
        .Limits(0, 1)
        .Representation("Linear")
        .Get([&control] { return control.IsLockedByClient() ? 1 : 0; })
        .Check(CheckLock)
        .Set([&control](uint64_t lock) { control.LockByClient(lock != 0); });
    features.IntReg("FrameSettingsLocked").At(0x260C).Volatile().Get([&control] {
        return control.IsLocked() ? 1 : 0;
    });
    if (camera.TlType() == TLTypeGEVName && !camera.Config().network)
        AddPacketMemory(features, camera);
}

}  // namespace ZelSim
