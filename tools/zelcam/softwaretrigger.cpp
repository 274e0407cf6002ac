#include "tools/zelcam/softwaretrigger.h"

#include <string>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/featurereading.h"
#include "tools/zelcam/words.h"

namespace {

constexpr const char* commandName = "TriggerSoftware";

// Failure unless the feature has the value, as far as the camera has it.
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
                      "; --set TriggerMode=On --set TriggerSource=Software sets it");
}

ZelGenParam::Param& FindCommand(ZelGenParam::Array& features) {
    ZelGenParam::Param* const command = features.GetParam(commandName, nullptr);
    if (command != nullptr && command->ToCommand() != nullptr) return *command;
    throw Failure(ExitCode::FeatureFailed,
                  std::string("the camera has no software trigger (") + commandName + ")");
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

// A rate is kept on average; after a long pause it goes on, without catching up.
void SoftwareTrigger::FireWhenDue() {
    const Clock::time_point now = Clock::now();
    if (now < due_) return;
    const ZelCamErr code = command_.ToCommand()->Execute();
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::FeatureFailed,
                      std::string(commandName) + " failed: " + ErrorWords(code));
    }
    ++sent_;
    due_ = hasRate_ && now - due_ < interval_ ? due_ + interval_ : Clock::now() + interval_;
}

uint64_t SoftwareTrigger::MsUntilDue() const {
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(due_ - Clock::now()).count();
    return left > 0 ? static_cast<uint64_t>(left) : 0;
}
