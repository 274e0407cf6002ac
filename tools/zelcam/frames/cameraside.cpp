#include "tools/zelcam/frames/cameraside.h"

#include <chrono>
#include <thread>
#include <utility>

#include <GenApi/GenApi.h>

#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/features/featuresetting.h"

namespace ZelTool {

namespace {

constexpr const char* kLockName = "TLParamsLocked";
constexpr const char* kStartName = "AcquisitionStart";
constexpr const char* kStopName = "AcquisitionStop";
constexpr const char* kAbortName = "AcquisitionAbort";

// A stop may wait for the end of the current exposure.
constexpr uint64_t kLongestStopMs = 2000;

// Null when the camera does not have it.
GenApi::INode* FindNode(ZelGenParam::Array* features, const char* name) {
    GenApi::INodeMap* const nodes = features != nullptr ? features->GetNodeMap(nullptr) : nullptr;
    return nodes != nullptr ? nodes->GetNode(name) : nullptr;
}

// Also null when it is not writable now. If the camera does not answer (it may be lost), this
// returns the node: the access will then fail with a reason.
GenApi::INode* FindWritable(ZelGenParam::Array* features, const char* name) {
    GenApi::INode* const node = FindNode(features, name);
    try {
        return GenApi::IsWritable(node) ? node : nullptr;
    } catch (const GenICam::GenericException&) {
        return node;
    }
}

// Whether the camera has it; true if the camera does not answer, as above.
bool Has(ZelGenParam::Array* features, const char* name) {
    try {
        return GenApi::IsImplemented(FindNode(features, name));
    } catch (const GenICam::GenericException&) {
        return true;
    }
}

// Runs `access` and returns the failure; empty on success.
template <typename Access>
std::string Attempt(const char* name, Access access) {
    try {
        access();
        return "";
    } catch (const GenICam::GenericException& error) {
        return std::string(name) + " failed: " + error.GetDescription();
    }
}

std::string WriteLock(ZelGenParam::Array& features, const char* value) {
    const std::string reason = SetText(features, kLockName, value);
    return reason.empty() ? "" : std::string(kLockName) + " failed: " + reason;
}

// Whether the command is done in time. Does not use Pause, which would not wait after Ctrl-C.
bool IsDoneInTime(GenApi::ICommand& command) {
    const Deadline deadline(kLongestStopMs);
    while (!command.IsDone()) {
        if (deadline.Passed()) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

}  // namespace

std::string CameraSide::Lock() {
    if (FindWritable(features_, kLockName) == nullptr) return "";
    locked_ = true;
    return WriteLock(*features_, "1");
}

std::string CameraSide::Unlock() {
    return std::exchange(locked_, false) ? WriteLock(*features_, "0") : "";
}

std::string CameraSide::Start() {
    started_ = Started::Missing;
    if (!Has(features_, kStartName)) return "";
    started_ = Started::NotWritable;
    const GenApi::CCommandPtr start(FindWritable(features_, kStartName));
    if (!start) return "";
    sending_ = true;
    std::string failure = Attempt(kStartName, [&] { start->Execute(); });
    if (failure.empty()) started_ = Started::Yes;
    return failure;
}

std::string CameraSide::Stop() {
    if (!std::exchange(sending_, false)) return "";
    const GenApi::CCommandPtr stop(FindWritable(features_, kStopName));
    if (!stop) return "";
    bool done = false;
    std::string failure = Attempt(kStopName, [&] {
        stop->Execute();
        done = IsDoneInTime(*stop);
    });
    if (done) return "";
    const bool late = failure.empty();
    if (late) {
        failure =
            std::string(kStopName) + " is not done after " + std::to_string(kLongestStopMs) + " ms";
    }
    const GenApi::CCommandPtr abort(FindWritable(features_, kAbortName));
    if (!abort) return failure;
    const std::string abortFailure = Attempt(kAbortName, [&] { abort->Execute(); });
    if (!abortFailure.empty()) return failure + "; " + abortFailure;
    return late ? "" : failure;
}

}  // namespace ZelTool
