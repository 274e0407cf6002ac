// A session with everything in it, run again and again with each call of the producer failing,
// blocking for a while or answering nonsense in turn, and with many of them at once: nothing
// crashes or hangs, what was opened is closed, and the operation that met a failure reports it.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <system_error>
#include <thread>

#include "tests/library/support/moduledescription.h"

namespace {

// The n-th call of a function.
struct CallSite {
    std::string function;
    size_t n;
};

class FaultInjection : public ScriptedTest {
  protected:
    // Goes as far as it can, whatever fails on the way.
    void RunSession();
    void UseInterface(ZelCam::Interface& iface);
    void UseDevice(ZelCam::Device& device);
    void UseStream(ZelCam::Stream& stream);
    void Acquire(ZelCam::Stream& stream);

    // One operation of the session. One that takes an error pointer gets one, and has a result or
    // an error.
    template <typename Operation>
    auto Do(const char* name, Operation operation);

    // The session with `count` calls from `site` on failing.
    void RunWithFault(const CallSite& site, size_t count, int32_t code);

    // The session with that reply to the call.
    void RunWithReply(const CallSite& site,
                      const std::function<Scripted::Reply(const Scripted::Call&)>& reply);
    void CheckOpenHandles(const std::string& failing);
    std::vector<CallSite> RecordCallSites();

    const std::thread::id thread = std::this_thread::get_id();
    const char* current = nullptr;  // the operation under way
    const char* failed = nullptr;   // the one that met the fault
    std::string answer;             // what that one answered
};

template <typename Result>
std::string TextOf(Result result) {
    if constexpr (std::is_pointer_v<Result>)
        return result == nullptr ? "null" : "an object";
    else
        return std::to_string(static_cast<int64_t>(result));
}

template <typename Operation>
auto FaultInjection::Do(const char* name, Operation operation) {
    current = name;
    const auto end = [this](const std::string& text) {
        if (failed == current && answer.empty()) answer = text;
        current = nullptr;
    };
    if constexpr (std::is_invocable_v<Operation, ZelCamErr*>) {
        ZelCamErr err = ZelCamErr_Success;
        const auto result = operation(&err);
        EXPECT_EQ(result == nullptr, err != ZelCamErr_Success) << name;
        end(TextOf(err));
        return result;
    } else if constexpr (std::is_void_v<std::invoke_result_t<Operation>>) {
        operation();
        end("");
    } else {
        const auto result = operation();
        end(TextOf(result));
        return result;
    }
}

// Closing calls do their work even when they report a failure: nobody can try again.
bool IsClosing(const std::string& function) {
    static const std::set<std::string> kClosing = {"GCCloseLib",       "TLClose", "IFClose",
                                                   "DevClose",         "DSClose", "DSRevokeBuffer",
                                                   "GCUnregisterEvent"};
    return kClosing.count(function) != 0;
}

void FaultInjection::RunSession() {
    producer.SetDescription(Description::Xml());
    ZelCam::System* const system = Do("GetSystem", [] { return ZelCam_GetSystem(); });
    if (system == nullptr) return;
    Do("System::GetDisplayName", [&] { return system->GetDisplayName(); });
    Do("System::GetVersion", [&] { return system->GetVersion(); });
    const auto list = [&](ZelCam::InterfaceType type) { return system->GetInterfaceList(type); };
    Do("System::GetInterfaceList", [&] { return list(ZelCam::InterfaceType::GEV); });
    if (auto* const interfaces =
            Do("System::GetInterfaceList", [&] { return list(ZelCam::InterfaceType::Unknown); })) {
        for (auto* iface = interfaces->GetFirst(); iface != nullptr; iface = interfaces->GetNext())
            UseInterface(*iface);
        if (ZelCam::Device* const own = Do("CreateDevice", [](ZelCamErr* err) {
                return ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Control, err);
            })) {
            Do("Device::GetStreamByIndex", [&] { return own->GetStreamByIndex(0); });
            Do("Device::Release", [&] { own->Release(); });
        }
    }
    Do("System::Release", [&] { system->Release(); });
}

void FaultInjection::UseInterface(ZelCam::Interface& iface) {
    Do("Interface::GetType", [&] { return iface.GetType(); });
    Do("Interface::GetDescription", [&] { return iface.GetDescription(); });
    Do("Interface::GetVersion", [&] { return iface.GetVersion(); });
    Do("Interface::RegisterEvent",
       [&] { return iface.RegisterEvent(5, Subscriber::Form1, &subscriber); });
    ZelCam::DeviceInfo* const info =
        Do("Interface::GetFirstDeviceInfo", [&] { return iface.GetFirstDeviceInfo(); });
    Do("Interface::ReEnumerateDevices", [&] {
        try {
            bool changed = false;
            return iface.ReEnumerateDevices(&changed, 100);
        } catch (const std::system_error& e) {
            return static_cast<ZelCamErr>(e.code().value());
        }
    });
    Do("Interface::GetDeviceInfoList", [&] { return iface.GetDeviceInfoList(); });
    if (info == nullptr) return;
    Do("DeviceInfo::GetVendor", [&] { return info->GetVendor(); });
    Do("DeviceInfo::GetAccessStatus", [&] { return info->GetAccessStatus(); });
    Do("Interface::GetDeviceInfoById", [&] { return iface.GetDeviceInfoById("unlisted"); });
    Do("DeviceInfo::GetIPAddress", [&](ZelCamErr* err) { return info->GetIPAddress(err); });
    const auto create = [&](ZelCamErr* err) {
        return ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Exclusive, err);
    };
    ZelCam::Device* const device = Do("CreateDevice", create);
    if (device == nullptr) return;
    UseDevice(*device);
    Do("Device::Release", [&] { device->Release(); });
    Do("CreateDevice", create);  // left to the System
}

void FaultInjection::UseDevice(ZelCam::Device& device) {
    Do("Device::RegisterEvent",
       [&] { return device.RegisterEvent2(3, Subscriber::Form2, &subscriber); });
    Do("Device::GetNumStreams", [&] { return device.GetNumStreams(); });
    Do("Device::GetEndianness", [&] { return device.GetEndianness(); });
    uint32_t value = 0;
    Do("Device::ReadMem", [&] { return device.ReadMem(0, &value, sizeof value); });
    Do("Device::WriteMem", [&] { return device.WriteMem(0, &value, sizeof value, nullptr); });
    Do("Device::GetCameraParameters",
       [&](ZelCamErr* err) { return device.GetCameraParameters(err); });
    const std::string file = TempPath("configuration.xml");
    if (Do("Device::SaveConfiguration", [&] { return device.SaveConfiguration(file.c_str()); }) ==
        ZelCamErr_Success) {
        Do("Device::LoadConfiguration", [&] { return device.LoadConfiguration(file.c_str()); });
        std::filesystem::remove(file);
    }
    ZelCam::Stream* stream =
        Do("Device::GetStreamByIndex", [&] { return device.GetStreamByIndex(0); });
    if (stream == nullptr) return;
    UseStream(*stream);
    Do("Stream::Release", [&] { stream->Release(); });
    // The next one is left to the device, grabbing.
    stream = Do("Device::GetStreamById", [&] { return device.GetStreamById("stream0"); });
    if (stream == nullptr) return;
    Do("Stream::AllocBufferQueue", [&] { return stream->AllocBufferQueue(nullptr, 2); });
    Do("Stream::StartAcquisition", [&] { return stream->StartAcquisition(ZelCam::Infinite, 0); });
}

void FaultInjection::UseStream(ZelCam::Stream& stream) {
    Do("Stream::RegisterEvent",
       [&] { return stream.RegisterEvent(3, Subscriber::Form1, &subscriber); });
    Do("Stream::GetMinNumBuffers", [&] { return stream.GetMinNumBuffers(); });
    Do("Stream::GetParameters", [&](ZelCamErr* err) { return stream.GetParameters(err); });
    Do("Stream::AllocBufferQueue", [&] { return stream.AllocBufferQueue(nullptr, 2); });
    uint64_t memory[16] = {};
    ZelCam::Buffer* const buffer = Do("Stream::SetBuffer", [&](ZelCamErr* err) {
        return stream.SetBuffer(memory, sizeof memory, nullptr, err);
    });
    Acquire(stream);
    Do("Stream::RevokeBuffer", [&] { return stream.RevokeBuffer(buffer); });
    Do("Stream::UnRegisterEvent",
       [&] { return stream.UnRegisterEvent(3, Subscriber::Form1, &subscriber); });
    Do("Stream::ReleaseBufferQueue", [&] { return stream.ReleaseBufferQueue(); });
}

void FaultInjection::Acquire(ZelCam::Stream& stream) {
    Do("Stream::StartAcquisition", [&] { return stream.StartAcquisition(ZelCam::Infinite, 0); });
    for (int i = 0; i < 3; ++i) {
        producer.DeliverFrame(producer.FindHandle("stream stream0"));
        ZelCam::Buffer* const buffer =
            Do("Stream::GetBuffer", [&](ZelCamErr* err) { return stream.GetBuffer(0, err); });
        if (buffer == nullptr) continue;
        EXPECT_NE(Do("Buffer::GetImage", [&] { return buffer->GetImage(); }), nullptr);
        Do("Stream::QueueBuffer", [&] { return stream.QueueBuffer(buffer); });
    }
    Do("Stream::CancelBuffer", [&] { return stream.CancelBuffer(); });
    Do("Stream::FlushBuffers",
       [&] { return stream.FlushBuffers(ZelCam::FlushOperation::InputToOutput); });
    Do("Stream::StopAcquisition", [&] { return stream.StopAcquisition(0); });
}

std::vector<CallSite> FaultInjection::RecordCallSites() {
    RunSession();
    std::map<std::string, size_t> counts;
    std::vector<CallSite> sites;
    for (const Scripted::Call& call : producer.TakeCalls())
        sites.push_back({call.function, counts[call.function]++});
    return sites;
}

void FaultInjection::RunWithFault(const CallSite& site, size_t count, int32_t code) {
    producer.Reset();
    failed = nullptr;
    answer.clear();
    Scripted::Reply reply = Scripted::Fails(code);
    reply.actFirst = IsClosing(site.function);
    const auto fail = [this, reply](const Scripted::Call&) {
        // Other threads are in no operation.
        if (std::this_thread::get_id() == thread && failed == nullptr) failed = current;
        return reply;
    };
    producer.AddRule({site.function, Scripted::kAnyCommand, fail, site.n, count});
    RunSession();
    CheckOpenHandles(site.function);
    producer.Reset();
}

void FaultInjection::RunWithReply(
    const CallSite& site, const std::function<Scripted::Reply(const Scripted::Call&)>& reply) {
    producer.Reset();
    producer.AddRule({site.function, Scripted::kAnyCommand, reply, site.n, 1});
    RunSession();
    EXPECT_THAT(producer.GetOpenHandles(), testing::IsEmpty());
    EXPECT_THAT(producer.GetMisuses(), testing::IsEmpty());
    producer.Reset();
}

void FaultInjection::CheckOpenHandles(const std::string& failing) {
    // What a failing step of opening leaves to the unloading of the producer, or to its module.
    const std::vector<std::string> open = producer.GetOpenHandles();
    const std::set<std::string> kinds(open.begin(), open.end());
    if (failing == "TLOpen") {
        EXPECT_THAT(kinds, testing::ElementsAre("library"));
    } else if (failing == "TLUpdateInterfaceList") {
        EXPECT_THAT(kinds, testing::ElementsAre("library", "system scripted"));
    } else if (failing == "EventGetInfo") {
        EXPECT_THAT(open, testing::Not(testing::IsEmpty()));
        EXPECT_THAT(open, testing::Each(testing::StartsWith("event ")));
    } else {
        EXPECT_THAT(open, testing::IsEmpty());
    }
    // An event that cannot be killed is taken away from its thread.
    if (failing == "EventKill") {
        EXPECT_THAT(producer.GetMisuses(), testing::Each("EventGetData"));
    } else {
        EXPECT_THAT(producer.GetMisuses(), testing::IsEmpty());
    }
}

// An answer that no producer should give: the type, the size or the value is not what was asked
// for.
Scripted::Reply Nonsense(size_t kind) {
    Scripted::Reply reply;
    switch (kind) {
        case 0:
            return Scripted::ReportsType(GenTL::INFO_DATATYPE_PTR);
        case 1:
            return Scripted::ReportsSize(0);
        case 2:
            return Scripted::ReportsSize(SIZE_MAX / 2);
        case 3:  // a text without its end
            reply.bytes.emplace(64, uint8_t{'A'});
            return reply;
        case 4:  // the largest number, or a text that is none
            reply.bytes.emplace(8, uint8_t{0xFF});
            return reply;
        default:  // an empty text, or too small for anything else
            reply.bytes.emplace(1, uint8_t{0});
            return reply;
    }
}
constexpr size_t kKindsOfNonsense = 6;

// How many calls of a function go wrong in every way; with the variable ZELCAM_EVERY_CALL set, all,
// which takes minutes.
size_t CallsInTurn() {
    return std::getenv("ZELCAM_EVERY_CALL") != nullptr ? SIZE_MAX : 1;
}

using Answers = std::set<std::string>;

// What an operation answers when a function fails under it.
Answers AnswersTo(const std::string& operation, const std::string& function) {
    static const Answers kTheCode = {"the code"};
    static const std::map<std::string, std::map<std::string, Answers>> kOthers = {
        // Without an error to report: nothing, zero, or what is left.
        {"GetSystem", {{"", {"null"}}}},
        {"System::GetDisplayName", {{"", {"null"}}}},
        {"System::GetVersion", {{"", {"null"}}}},
        {"System::GetInterfaceList",
         {{"", {"null"}}, {"IFGetInfo", {"an object"}}, {"TLOpenInterface", {"an object"}}}},
        {"Interface::GetDescription", {{"", {"null"}}}},
        {"Interface::GetVersion", {{"", {"null"}}}},
        {"Interface::GetFirstDeviceInfo", {{"", {"null"}}}},
        {"DeviceInfo::GetVendor", {{"", {"null"}}}},
        {"DeviceInfo::GetAccessStatus", {{"", {"0"}}}},
        {"Device::GetNumStreams", {{"", {"0"}}}},
        {"Device::GetEndianness", {{"", {"0"}}}},
        {"Device::GetStreamByIndex", {{"", {"null"}}, {"GCRegisterEvent", {"an object"}}}},
        {"Device::GetStreamById", {{"", {"null"}}, {"GCRegisterEvent", {"an object"}}}},
        {"Stream::GetMinNumBuffers", {{"", {"0"}}}},
        {"Buffer::GetImage", {{"", {"an object"}}}},
        // Buffers go whatever the producer says, and one of unknown size is for it to refuse.
        {"Stream::RevokeBuffer", {{"", {"0"}}}},
        {"Stream::ReleaseBufferQueue", {{"", {"0"}}}},
        {"Stream::AllocBufferQueue", {{"", kTheCode}, {"DSGetInfo", {"0"}}}},
        // Of a System that does not come up there is only the code for that; without the first
        // interface, or its cameras, there is that of the second.
        {"CreateDevice",
         {{"", {"-1001", "the code"}},
          {"IFOpenDevice", kTheCode},
          {"DevGetPort", kTheCode},
          {"TLOpenInterface", {"0"}},
          {"IFGetNumDevices", {"0"}},
          {"IFGetDeviceID", {"0"}}}},
        // Node maps: without a description there is none, the module's name is not needed, and
        // what the port says goes through the engine's exceptions.
        {"Device::GetCameraParameters",
         {{"", {"-40201"}},
          {"GCGetNumPortURLs", kTheCode},
          {"GCGetPortInfo", {"-40200", "-40207", "0"}}}},
        {"Stream::GetParameters",
         {{"", {"-40201"}},
          {"GCGetNumPortURLs", kTheCode},
          {"GCGetPortInfo", {"-40200", "-40207", "0"}}}},
        {"Device::SaveConfiguration", {{"", {"-40200"}}}},
        {"DeviceInfo::GetIPAddress",
         {{"", {"-40006"}},
          {"GCGetPortInfo", {"-40006", "-40200", "-40206", "0"}},
          {"GCReadPort", {"-40006", "-40200", "-40206"}},
          {"GCWritePort", {"-40200", "-40206"}}}},
    };
    const auto row = kOthers.find(operation);
    if (row == kOthers.end()) return kTheCode;
    const auto entry = row->second.find(function);
    return entry == row->second.end() ? row->second.at("") : entry->second;
}

Scripted::Reply Blocks(const Scripted::Call& /*call*/) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return {};
}

}  // namespace

TEST_F(FaultInjection, EachCallFailingInTurn) {
    const std::vector<CallSite> sites = RecordCallSites();
    EXPECT_THAT(producer.GetOpenHandles(), testing::IsEmpty());
    // The session would prove little if it did not get everywhere.
    for (const char* function :
         {"DSGetBufferInfo", "DSRevokeBuffer", "EventKill", "IFGetDeviceInfo", "GCWritePort",
          "DSStopAcquisition", "IFUpdateDeviceList"})
        EXPECT_GT(producer.GetCount(function), 0U) << function;
    std::map<std::pair<std::string, std::string>, Answers> answers;
    for (const CallSite& site : sites) {
        for (const int32_t code : {GenTL::GC_ERR_ERROR, GenTL::GC_ERR_INVALID_HANDLE}) {
            SCOPED_TRACE(site.function + ' ' + std::to_string(site.n) + ' ' + std::to_string(code));
            // An invalid handle is as good as no answer there.
            RunWithFault(site, 1, site.function == "EventGetInfo" ? GenTL::GC_ERR_IO : code);
            if (HasFailure()) return;
            if (answer.empty()) continue;
            const bool passedOn = answer == std::to_string(code);
            answers[{failed, site.function}].insert(passedOn ? "the code" : answer);
        }
    }
    EXPECT_GE(answers.size(), 60U);
    for (const auto& [where, given] : answers)
        EXPECT_EQ(given, AnswersTo(where.first, where.second))
            << where.first << ", " << where.second << " failing";
}

// The same with every call of a function failing.
TEST_F(FaultInjection, EachFunctionFailingForGood) {
    for (const CallSite& site : RecordCallSites()) {
        if (site.n > 0) continue;
        SCOPED_TRACE(site.function);
        RunWithFault(site, SIZE_MAX, GenTL::GC_ERR_NOT_IMPLEMENTED);
    }
}

TEST_F(FaultInjection, EachCallBlockingOrAnsweringNonsenseInTurn) {
    size_t sessions = 0;
    std::set<std::string> functions;
    for (const CallSite& site : RecordCallSites()) {
        functions.insert(site.function);
        if (site.n >= CallsInTurn()) continue;
        SCOPED_TRACE(site.function + ' ' + std::to_string(site.n));
        RunWithReply(site, Blocks);
        for (size_t kind = 0; kind < kKindsOfNonsense && !HasFailure(); ++kind) {
            SCOPED_TRACE("nonsense " + std::to_string(kind));
            RunWithReply(site, [kind](const Scripted::Call&) { return Nonsense(kind); });
        }
        if (HasFailure()) return;
        sessions += 1 + kKindsOfNonsense;
    }
    std::printf("%zu sessions, %zu functions\n", sessions, functions.size());
}

// Every call may go wrong, in any way, with one chance in twenty.
TEST_F(FaultInjection, CallsGoWrongAtRandom) {
    constexpr unsigned kSessions = 100;
    std::set<std::string> functions;
    for (const CallSite& site : RecordCallSites())
        if (!IsClosing(site.function)) functions.insert(site.function);
    for (unsigned seed = 0; seed < kSessions && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        producer.Reset();
        // The calls come from several threads.
        auto random = std::make_shared<std::pair<std::mutex, std::minstd_rand>>();
        random->second.seed(seed + 1);
        const auto reply = [random](const Scripted::Call&) {
            const std::lock_guard lock(random->first);
            std::minstd_rand& next = random->second;
            if (next() % 20 != 0) return Scripted::Reply();
            return next() % 2 == 0 ? Scripted::Fails(GenTL::GC_ERR_IO)
                                   : Nonsense(next() % kKindsOfNonsense);
        };
        for (const std::string& function : functions)
            producer.AddRule({function, Scripted::kAnyCommand, reply, 0, SIZE_MAX});
        RunSession();
        producer.Reset();
    }
}
