// Reading and writing features by name. A cached one is compared with its node; a feature past the
// cache, and one that is written, cost an access to the port, which is measured by itself as well.
#include <GenApi/GenApi.h>

#include "ZelGenParam/Array.h"
#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/session.h"

namespace Bench {

namespace {

constexpr int kRounds = 11;
constexpr int kCalls = 20000;

// Width is not read here: whether it is locked, the camera is asked each time.
constexpr const char* kCached = "SensorWidth";

// The registers of the features LineStatusAll, which is not cached, and Width.
constexpr uint64_t kLineStatusRegister = 0x2410;
constexpr uint64_t kWidthRegister = 0x2110;

int64_t WidthOf(int call) {
    return call % 2 == 0 ? 320 : 640;
}

void Read(ZelGenParam::Array& features, const char* name) {
    ZelCamErr err = ZelCamErr_Error;
    Keep(features.GetIntegerValue(name, &err));
    Require(err == ZelCamErr_Success, "the feature does not read");
}

}  // namespace

void MeasureFeatures(Report& report) {
    Simulator::Get().ConfigureCameras(1, "");
    const LibraryHost host;
    const LibraryCamera camera(host);
    ZelCam::Device& device = camera.Device();
    ZelGenParam::Array* const features = device.GetCameraParameters(nullptr);
    Require(features != nullptr, "no features");

    const GENAPI_NAMESPACE::CIntegerPtr node = features->GetNodeMap(nullptr)->GetNode(kCached);

    std::vector<double> cached;
    std::vector<double> nodes;
    std::vector<double> uncached;
    std::vector<double> port;
    std::vector<double> write;
    std::vector<double> portWrite;
    for (int round = 0; round < kRounds; ++round) {
        cached.push_back(TimeOfCall(kCalls, [&](int) { Read(*features, kCached); }));
        nodes.push_back(TimeOfCall(kCalls, [&](int) { Keep(node->GetValue()); }));
        uncached.push_back(TimeOfCall(kCalls, [&](int) { Read(*features, "LineStatusAll"); }));
        port.push_back(TimeOfCall(kCalls, [&](int) {
            uint32_t value = 0;
            Require(device.ReadMem(kLineStatusRegister, &value, sizeof value) == 0, "no read");
            Keep(value);
        }));
        write.push_back(TimeOfCall(kCalls, [&](int call) {
            Require(features->SetIntegerValue("Width", WidthOf(call)) == 0, "no write");
        }));
        portWrite.push_back(TimeOfCall(kCalls, [&](int call) {
            const auto value = static_cast<uint32_t>(WidthOf(call));
            Require(device.WriteMem(kWidthRegister, &value, sizeof value, nullptr) == 0,
                    "no write");
        }));
    }
    report.Add({"features", "GetIntegerValue, cached", "ns", cached, "the node alone", nodes});
    report.Add({"features", "GetIntegerValue, not cached", "ns", uncached, "the port alone", port});
    report.Add({"features", "SetIntegerValue", "ns", write, "the port alone", portWrite});
}

}  // namespace Bench
