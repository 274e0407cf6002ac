// The scripted producer with one camera that is as strict as a real one and writes the steps of an
// acquisition to a file: it sends nothing before AcquisitionStart, and refuses AcquisitionStart
// while TLParamsLocked is 0. Tests run programs with it; environment variables control it:
//
//   RECORDING_FILE       where the steps are written, one a line: the names of producer functions,
//                        "TLParamsLocked=1", the names of other features, "frame"
//   RECORDING_FAIL       the step that fails, every time
//   RECORDING_FRAMES     the camera sends that many frames for each start
//   RECORDING_LOST       after that many frames the camera does not answer any more
//   RECORDING_SLOW_STOP  AcquisitionStop is never done
//   RECORDING_MARK       at this step a file "reached" appears in the folder of RECORDING_FILE
//   RECORDING_HANG       this step never returns
//   RECORDING_UNALIGNED  the producer reports no alignment of buffers

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <unistd.h>

#include "tests/library/scriptedproducer/scriptedproducer.h"
#include "tests/tools/recordingdescription.h"

extern "C" Scripted::Control* ScriptedProducer_GetControl();

namespace {

using namespace GenTL;
using Scripted::Call;
using Scripted::Fails;
using Scripted::Gives;
using Scripted::Reply;

const std::map<uint64_t, std::string> kFeatureNames = {
    {0x100, "TLParamsLocked"},   {0x104, "AcquisitionStart"}, {0x108, "AcquisitionStop"},
    {0x10C, "AcquisitionAbort"}, {0x110, "PayloadSize"},      {0x120, "TriggerSelector"}};
constexpr uint64_t kFirstTriggerMode = 0x200;
constexpr uint64_t kSecondTriggerMode = 0x210;

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

uint64_t NumberIn(const char* name) {
    const std::string value = Variable(name);
    return value.empty() ? UINT64_MAX : std::stoull(value);
}

Reply Register(uint32_t value) {
    return Gives(value, INFO_DATATYPE_UINT32);
}

class Camera {
  public:
    Camera() {
        producer_.SetWorld({{"if0", "GEV", {"cam0"}}});
        producer_.SetDescription(Recording::kDescription);
        SetRegister(0x110, 6000);   // as much as the producer's frames need
        SetRegister(0x118, 3);      // AcquisitionFrameCount
        SetRegister(0x124, 10000);  // ExposureTime
        SetRegister(0x300, 1);      // what AcquisitionStop depends on
        for (const char* step : {"DSAllocAndAnnounceBuffer", "DSRevokeBuffer"})
            On(step, [this, step](const Call&) { return Step(step); });
        On("DSStartAcquisition", [this](const Call& call) { return StartReceiving(call); });
        On("DSStopAcquisition", [this](const Call&) { return Step("DSStopAcquisition"); });
        On("DSQueueBuffer", [this](const Call&) { return Requeue(); });
        On("EventGetData", [this](const Call& call) { return WaitForFrame(call); });
        On("GCWritePort", [this](const Call& call) { return WriteFeature(call); });
        On("GCReadPort", [this](const Call& call) { return ReadFeature(call); });
        OnInfo("DSGetInfo", STREAM_INFO_DEFINES_PAYLOADSIZE,
               Gives(bool8_t{0}, INFO_DATATYPE_BOOL8));
        OnInfo("DSGetInfo", STREAM_INFO_BUF_ALIGNMENT,
               Variable("RECORDING_UNALIGNED").empty() ? Gives(size_t{1}, INFO_DATATYPE_SIZET)
                                                       : Fails(GC_ERR_NOT_AVAILABLE));
        OnInfo("DSGetInfo", STREAM_INFO_NUM_ANNOUNCED, Gives(size_t{8}, INFO_DATATYPE_SIZET));
        OnInfo("DSGetBufferInfo", BUFFER_INFO_IS_INCOMPLETE,
               Gives(bool8_t{0}, INFO_DATATYPE_BOOL8));
        producer_.AddRule({"DSGetBufferInfo", BUFFER_INFO_FRAMEID, [this](const Call&) {
                               return Gives(uint64_t{frames_}, INFO_DATATYPE_UINT64);
                           }});
    }
    ~Camera() {
        if (file_ != nullptr) std::fclose(file_);
    }
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

  private:
    void On(const char* function, std::function<Reply(const Call&)> reply) {
        producer_.AddRule({function, Scripted::kAnyCommand, std::move(reply)});
    }
    void OnInfo(const char* function, int64_t command, const Reply& reply) {
        producer_.AddRule({function, command, [reply](const Call&) { return reply; }});
    }
    void SetRegister(uint64_t address, uint32_t value) {
        std::memcpy(producer_.GetRegisters().data() + address, &value, sizeof value);
    }
    uint32_t RegisterAt(uint64_t address) {
        uint32_t value = 0;
        std::memcpy(&value, producer_.GetRegisters().data() + address, sizeof value);
        return value;
    }

    // A test reads the steps while the program runs.
    Reply Step(const std::string& step) {
        if (file_ != nullptr) {
            std::fprintf(file_, "%s\n", step.c_str());
            std::fflush(file_);
        }
        if (step == mark_) Mark();
        while (step == hang_)
            pause();
        return step == fail_ ? Fails(GC_ERR_IO) : Reply{};
    }

    // Created by a rename, which tests can wait for.
    static void Mark() {
        const std::string file = Variable("RECORDING_FILE");
        const std::string copy = file + "-copy";
        if (std::FILE* const opened = std::fopen(copy.c_str(), "w")) std::fclose(opened);
        (void)std::rename(copy.c_str(), (file.substr(0, file.rfind('/')) + "/reached").c_str());
    }

    Reply StartReceiving(const Call& call) {
        ordered_ = *call.number;
        return Step("DSStartAcquisition");
    }

    Reply Requeue() {
        if (!sending_) return {};
        return fail_ == "DSQueueBuffer" ? Step("DSQueueBuffer") : Reply{};
    }

    bool Lost() const { return frames_ >= lostAfter_; }

    // A frame arrives when a client waits for it.
    Reply WaitForFrame(const Call& call) {
        if (call.handle != producer_.FindHandle("event 1")) return {};
        if (fail_ == "EventGetData") return Step("EventGetData");
        if (Lost()) return Fails(GC_ERR_IO);
        const bool triggered = RegisterAt(kFirstTriggerMode) + RegisterAt(kSecondTriggerMode) > 0;
        if (!sending_ || triggered || left_ == 0 || ordered_ == 0) return {};
        if (!producer_.DeliverFrame(producer_.FindHandle("stream stream0"))) return {};
        --left_;
        if (ordered_ != GENTL_INFINITE) --ordered_;
        ++frames_;
        Step("frame");
        return {};
    }

    Reply WriteFeature(const Call& call) {
        const auto found = kFeatureNames.find(*call.number);
        if (found == kFeatureNames.end()) return {};
        const std::string& name = found->second;
        const int value = call.data.at(0);
        const bool valued = name == "TLParamsLocked" || name == "TriggerSelector";
        Reply reply = Step(valued ? name + "=" + std::to_string(value) : name);
        if (reply.code) return reply;
        if (Lost()) return Fails(GC_ERR_IO);
        if (name == "TLParamsLocked") locked_ = value == 1;
        if (name == "AcquisitionStart") {
            if (!locked_) return Fails(GC_ERR_ACCESS_DENIED);
            left_ = framesForStart_;
        }
        if (name.rfind("Acquisition", 0) == 0) sending_ = name == "AcquisitionStart";
        return reply;
    }

    Reply ReadFeature(const Call& call) {
        // The description lies behind the registers.
        if (*call.number < 0x10000 && Lost()) return Fails(GC_ERR_IO);
        const auto found = kFeatureNames.find(*call.number);
        if (found == kFeatureNames.end()) return {};
        if (found->second == "PayloadSize") return Step("PayloadSize");
        if (found->second == "AcquisitionStop") return Register(slowStop_ ? 1 : 0);
        return {};
    }

    Scripted::Control& producer_ = *ScriptedProducer_GetControl();
    std::FILE* file_ = std::fopen(Variable("RECORDING_FILE").c_str(), "a");
    const std::string fail_ = Variable("RECORDING_FAIL");
    const std::string mark_ = Variable("RECORDING_MARK");
    const std::string hang_ = Variable("RECORDING_HANG");
    const uint64_t framesForStart_ = NumberIn("RECORDING_FRAMES");
    const uint64_t lostAfter_ = NumberIn("RECORDING_LOST");
    const bool slowStop_ = !Variable("RECORDING_SLOW_STOP").empty();
    bool locked_ = false;
    bool sending_ = false;
    uint64_t left_ = 0;     // frames of this start
    uint64_t ordered_ = 0;  // frames that the producer is to deliver
    uint64_t frames_ = 0;
};

Camera camera;

}  // namespace
