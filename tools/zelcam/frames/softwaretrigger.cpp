#include "tools/zelcam/frames/softwaretrigger.h"

#include <string>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/features/featurereading.h"

namespace ZelTool {

namespace {

constexpr const char* kCommandName = "TriggerSoftware";

// Throws Failure when the feature has another value. A camera need not have the feature.
void RequireSetting(ZelGenParam::Array& features, const std::string& name,
                    const std::string& value) {
    ZelGenParam::Param* const feature = features.GetParam(name.c_str(), nullptr);
    const std::string is = feature != nullptr ? ReadFeature(*feature, true).value_or(value) : value;
    if (is == value) return;
    ZelGenParam::Param* const selector = features.GetParam("TriggerSelector", nullptr);
    const auto selected = selector != nullptr ? ReadFeature(*selector) : std::nullopt;
    throw Failure(ExitCode::FeatureFailed,
                  "the camera does not wait for software triggers: " + name + " is " + is +
                      (selected ? " for " + *selected : "") +
                      "; use --set TriggerMode=On --set TriggerSource=Software");
}

ZelGenParam::Param& FindCommand(ZelGenParam::Array& features) {
    ZelGenParam::Param* const command = features.GetParam(kCommandName, nullptr);
    if (command != nullptr && command->ToCommand() != nullptr) return *command;
    throw Failure(ExitCode::FeatureFailed,
                  std::string("the camera has no software trigger (") + kCommandName + ")");
}

}  // namespace

SoftwareTrigger::SoftwareTrigger(ZelGenParam::Array& features, double perSecond)
    : command_(FindCommand(features)), interval_(std::chrono::seconds(1)), hasRate_(perSecond > 0) {
    RequireSetting(features, "TriggerMode", "On");
    RequireSetting(features, "TriggerSource", "Software");
    if (hasRate_) {
        interval_ = std::chrono::duration_cast<Clock::duration>(
            std::chrono::duration<double>(1 / perSecond));
    }
}

void SoftwareTrigger::Start() {
    due_ = Clock::now();
}

void SoftwareTrigger::FrameCame() {
    if (!hasRate_) due_ = Clock::now();
}

// Keeps the rate on average. After a long pause it does not catch up.
void SoftwareTrigger::FireWhenDue() {
    const Clock::time_point now = Clock::now();
    if (now < due_) return;
    RequireSuccess(command_.ToCommand()->Execute(), std::string(kCommandName) + " failed");
    ++sent_;
    due_ = hasRate_ && now - due_ < interval_ ? due_ + interval_ : Clock::now() + interval_;
}

uint64_t SoftwareTrigger::MsUntilDue() const {
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(due_ - Clock::now()).count();
    return left > 0 ? static_cast<uint64_t>(left) : 0;
}

}  // namespace ZelTool
