// The clock of a camera on a network as one of several that agree.
#include <memory>

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/bootstraprows.h"
#include "producers/simulator/features/categories.h"

namespace ZelSim {

using ZelCti::Feature;
using ZelCti::FeatureTable;
namespace Gev = ZelCti::Gev;

namespace {

constexpr int64_t kUnknownAccuracy = 0xFE;  // the number of IEEE 1588

// Every camera is its own master, and takes the time from this computer.
void AddClocks(FeatureTable& features) {
    const auto add = [&](const char* name, const char* toolTip) {
        features.IntSwissKnife(name, toolTip)
            .Expert()
            .Variables({{"MAC", "GevMACAddress"}})
            .Formula("((MAC >> 24) << 40) | 0xFFFE000000 | (MAC & 0xFFFFFF)")
            .Representation("HexNumber");
    };
    add("PtpClockID", "The clock of the camera.");
    add("PtpParentClockID", "The clock that it follows.");
    add("PtpGrandmasterClockID", "The clock that all follow.");
}

}  // namespace

void AddPtpControl(FeatureTable& features, BootstrapRows& rows, Camera& camera) {
    features.Category("PtpControl", "Clocks that agree (IEEE 1588).")
        .Expert()
        .In("TransportLayerControl");
    Feature& enable = rows.Boolean("PtpEnable", "Whether the camera's clock follows the others.",
                                   Gev::kGvcpConfiguration, Gev::GvcpConfiguration::kIeee1588)
                          .Expert();
    rows.ImplementedIf(enable, Gev::kGvcpCapability, Gev::GvcpCapability::kIeee1588);
    rows.Enumeration("PtpStatus", "State of the camera's clock.", Gev::kIeee1588Status,
                     Gev::Ieee1588Status::kClockState)
        .Expert()
        .Entries({{"Initializing", 1, "It starts."},
                  {"Faulty", 2, "It does not work."},
                  {"Disabled", 3, "It is on its own."},
                  {"Listening", 4, "It looks for others."},
                  {"PreMaster", 5, "It is about to lead the others."},
                  {"Master", 6, "It leads the others."},
                  {"Passive", 7, "It neither leads nor follows."},
                  {"Uncalibrated", 8, "It begins to follow another."},
                  {"Slave", 9, "It follows another."}});
    features.Enumeration("PtpClockAccuracy", "How accurate the camera's clock is.")
        .Expert()
        .Entries({{"Unknown", kUnknownAccuracy, "It does not say."}})
        .Constant(kUnknownAccuracy);
    const auto offset = std::make_shared<int64_t>(0);
    features.Command("PtpDataSetLatch", "Takes the present state for PtpOffsetFromMaster.")
        .Expert()
        .At(0x2680)
        .Does([=, &camera] {
            *offset = static_cast<int64_t>(camera.Nanoseconds() - Camera::SystemNanoseconds());
        });
    features
        .IntReg("PtpOffsetFromMaster",
                "How far the camera's clock was ahead of the computer's when it was latched.")
        .Expert()
        .At(0x2688, 8)
        .Signed()
        .InvalidatedBy({"PtpDataSetLatch"})
        .Unit("ns")
        .Representation("Linear")
        .Get([=] { return *offset; });
    AddClocks(features);
}

}  // namespace ZelSim
