// Enumeration of an interface with many cameras: the time for each of them should grow no faster
// than the logarithm of their number, where a walk over the others would make it grow a
// hundredfold.
#include "bench/groups.h"
#include "bench/growth.h"
#include "bench/measure.h"
#include "bench/session.h"

namespace Bench {

namespace {

constexpr int kRounds = 5;

// The logarithm of 10,000 is twice that of 100; and what belongs to 10,000 cameras is larger than a
// processor's caches.
constexpr double kLimit = 3;

using InfoList = Holder<ZelCam::List<ZelCam::DeviceInfo>>;

void ReadTexts(ZelCam::List<ZelCam::DeviceInfo>& infos) {
    for (ZelCam::DeviceInfo* info = infos.GetFirst(); info != nullptr; info = infos.GetNext()) {
        Require(info->GetID() != nullptr && info->GetModel() != nullptr &&
                    info->GetSerialNumber() != nullptr,
                "no texts");
    }
}

void ReEnumerate(ZelCam::Interface& interface, bool expectChange) {
    bool changed = !expectChange;
    Require(interface.ReEnumerateDevices(&changed, kTimeoutMs) == ZelCamErr_Success &&
                changed == expectChange,
            "the search for cameras failed");
}

std::vector<double> Measure(size_t count) {
    Simulator::Get().ConfigureCameras(count, "");
    Holder<ZelCam::System> system;
    const double interfaces = TimeOf([&] {
        system.reset(ZelCam_GetSystem());
        Require(system != nullptr, "no System");
        system->GetInterfaceList(ZelCam::InterfaceType::Unknown)->Release();
    });
    ZelCam::Interface& interface = *system->GetInterfaceById(kInterface);
    InfoList infos;
    const double first = TimeOf([&] { infos.reset(interface.GetDeviceInfoList()); });
    Require(infos != nullptr && infos->GetCount() == count, "cameras are missing");
    const double again = TimeOf([&] { InfoList(interface.GetDeviceInfoList()); });
    const double texts = TimeOf([&] { ReadTexts(*infos); });
    ReEnumerate(interface, true);  // the first update reports what is there as new
    const double unchanged = TimeOf([&] { ReEnumerate(interface, false); });
    Simulator::Get().PlugCamera("ANOTHER");
    const double changed = TimeOf([&] { ReEnumerate(interface, true); });
    infos.reset();
    const double release = TimeOf([&] { system.reset(); });
    const double each = 1e3 * static_cast<double>(count);
    return {interfaces / each, first / each,   again / each,  texts / each,
            unchanged / each,  changed / each, release / each};
}

}  // namespace

void MeasureDevices(Report& report) {
    AddGrowth(report, "devices", "camera", {100, 1000, 10000}, kRounds,
              {{"System and interfaces, each camera", "us", kLimit},
               {"first GetDeviceInfoList, each", "us", kLimit},
               {"GetDeviceInfoList again, each", "us", kLimit},
               {"texts of the infos, each", "us", kLimit},
               {"ReEnumerateDevices, no change, each", "us", kLimit},
               {"ReEnumerateDevices, one more, each", "us", kLimit},
               {"Release of the System, each", "us", kLimit}},
              Measure);
}

}  // namespace Bench
