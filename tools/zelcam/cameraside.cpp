#include "tools/zelcam/cameraside.h"

#include <chrono>
#include <thread>
#include <utility>

#include <GenApi/GenApi.h>

#include "tools/zelcam/pause.h"

namespace {

constexpr const char* lockName = "TLParamsLocked";
constexpr const char* startName = "AcquisitionStart";
constexpr const char* stopName = "AcquisitionStop";
constexpr const char* abortName = "AcquisitionAbort";

// A stop may wait for the end of the exposure under way.
constexpr uint64_t longestStopMs = 2000;

// Null when the camera does not have it.
GenApi::INode* FindNode(ZelGenParam::Array* features, const char* name) {
    GenApi::INodeMap* const nodes = features != nullptr ? features->GetNodeMap(nullptr) : nullptr;
    return nodes != nullptr ? nodes->GetNode(name) : nullptr;
}

// Null also when it cannot be written now. Where the camera does not say (it may be lost), the
// access itself is tried and reports why.
GenApi::INode* FindWritable(ZelGenParam::Array* features, const char* name) {
    GenApi::INode* const node = FindNode(features, name);
    try {
        return GenApi::IsWritable(node) ? node : nullptr;
    } catch (const GenICam::GenericException&) {
        return node;
    }
}

// Whether the camera has it; what it does not say counts as yes, as above.
bool Has(ZelGenParam::Array* features, const char* name) {
    try {
        return GenApi::IsImplemented(FindNode(features, name));
    } catch (const GenICam::GenericException&) {
        return true;
    }
}

// What went wrong with the access to a feature; empty when nothing did.
template <typename Access>
std::string Attempt(const char* name, Access access) {
    try {
        access();
        return "";
    } catch (const GenICam::GenericException& error) {
        return std::string(name) + " failed: " + error.GetDescription();
    }
}

std::string WriteLock(GenApi::INode* node, const char* value) {
    return Attempt(lockName, [&] { GenApi::CValuePtr(node)->FromString(value); });
}

// Whether the command is done in time. Not with Pause, which does not wait after Ctrl-C.
bool IsDoneInTime(GenApi::ICommand& command) {
    const Deadline deadline(longestStopMs);
    while (!command.IsDone()) {
        if (deadline.Passed()) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

}  // namespace

std::string CameraSide::Lock() {
    GenApi::INode* const node = FindWritable(features_, lockName);
    if (node == nullptr) return "";
    locked_ = true;
    return WriteLock(node, "1");
}

std::string CameraSide::Unlock() {
    return std::exchange(locked_, false) ? WriteLock(FindNode(features_, lockName), "0") : "";
}

std::string CameraSide::Start() {
    started_ = Started::Missing;
    if (!Has(features_, startName)) return "";
    started_ = Started::NotWritable;
    const GenApi::CCommandPtr start(FindWritable(features_, startName));
    if (!start) return "";
    sending_ = true;
    std::string failure = Attempt(startName, [&] { start->Execute(); });
    if (failure.empty()) started_ = Started::Yes;
    return failure;
}

std::string CameraSide::Stop() {
    if (!std::exchange(sending_, false)) return "";
    const GenApi::CCommandPtr stop(FindWritable(features_, stopName));
    if (!stop) return "";
    bool done = false;
    std::string failure = Attempt(stopName, [&] {
        stop->Execute();
        done = IsDoneInTime(*stop);
    });
    if (done) return "";
    const bool late = failure.empty();
    if (late) {
        failure =
            std::string(stopName) + " is not done after " + std::to_string(longestStopMs) + " ms";
    }
    const GenApi::CCommandPtr abort(FindWritable(features_, abortName));
    if (!abort) return failure;
    const std::string abortFailure = Attempt(abortName, [&] { abort->Execute(); });
    if (!abortFailure.empty()) return failure + "; " + abortFailure;
    return late ? "" : failure;
}
