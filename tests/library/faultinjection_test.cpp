// A session with everything in it, run again and again with each call of the producer failing,
// blocking for a while or answering nonsense in turn, and with many of them at once: nothing
// crashes or hangs, and what was opened is closed.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <system_error>
#include <thread>

#include "tests/library/moduledescription.h"

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

    // The session with `count` calls from `site` on failing.
    void RunWithFault(const CallSite& site, size_t count, int32_t code);

    // The session with that reply to the call.
    void RunWithReply(const CallSite& site,
                      const std::function<Scripted::Reply(const Scripted::Call&)>& reply);
    void CheckOpenHandles(const std::string& failing);
    std::vector<CallSite> RecordCallSites();

    Subscriber subscriber;
};

// Closing calls do their work even when they report a failure: nobody can try again.
bool IsClosing(const std::string& function) {
    static const std::set<std::string> closing = {"GCCloseLib",       "TLClose", "IFClose",
                                                  "DevClose",         "DSClose", "DSRevokeBuffer",
                                                  "GCUnregisterEvent"};
    return closing.count(function) != 0;
}

void FaultInjection::RunSession() {
    producer.SetDescription(Description::Xml());
    const Holder<ZelCam::System> system(ZelCam_GetSystem());
    if (system == nullptr) return;
    system->GetDisplayName();
    system->GetVersion();
    system->GetInterfaceList(ZelCam::InterfaceType::GEV);
    ZelCam::List<ZelCam::Interface>* const list =
        system->GetInterfaceList(ZelCam::InterfaceType::Unknown);
    if (list == nullptr) return;
    for (auto* iface = list->GetFirst(); iface != nullptr; iface = list->GetNext())
        UseInterface(*iface);
    if (ZelCam::Device* const own =
            ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Control, nullptr)) {
        own->GetStreamByIndex(0);
        own->Release();
    }
}

void FaultInjection::UseInterface(ZelCam::Interface& iface) {
    iface.GetType();
    iface.GetDescription();
    iface.GetVersion();
    iface.RegisterEvent(5, Subscriber::Form1, &subscriber);
    ZelCam::DeviceInfo* const info = iface.GetFirstDeviceInfo();
    try {
        bool changed = false;
        iface.ReEnumerateDevices(&changed, 100);
    } catch (const std::system_error& e) {
        EXPECT_NE(e.code().value(), 0);
    }
    iface.GetDeviceInfoList();
    if (info == nullptr) return;
    info->GetVendor();
    info->GetAccessStatus();
    iface.GetDeviceInfoById("unlisted");
    ZelCamErr err = ZelCamErr_Success;
    const char* const address = info->GetIPAddress(&err);
    EXPECT_EQ(address == nullptr, err != ZelCamErr_Success);
    ZelCam::Device* const device = ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Exclusive, &err);
    EXPECT_EQ(device == nullptr, err != ZelCamErr_Success);
    if (device == nullptr) return;
    UseDevice(*device);
    device->Release();
    ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Exclusive, &err);  // left to the System
}

void FaultInjection::UseDevice(ZelCam::Device& device) {
    device.RegisterEvent2(3, Subscriber::Form2, &subscriber);
    device.GetNumStreams();
    device.GetEndianness();
    uint32_t value = 0;
    device.ReadMem(0, &value, sizeof value);
    device.WriteMem(0, &value, sizeof value, nullptr);
    ZelCamErr err = ZelCamErr_Success;
    ZelGenParam::Array* const parameters = device.GetCameraParameters(&err);
    EXPECT_EQ(parameters == nullptr, err != ZelCamErr_Success);
    const std::string file = TempPath("configuration.xml");
    if (device.SaveConfiguration(file.c_str()) == ZelCamErr_Success) {
        device.LoadConfiguration(file.c_str());
        std::filesystem::remove(file);
    }
    ZelCam::Stream* stream = device.GetStreamByIndex(0);
    if (stream == nullptr) return;
    UseStream(*stream);
    stream->Release();
    stream = device.GetStreamById("stream0");  // left to the device, grabbing
    if (stream == nullptr) return;
    stream->AllocBufferQueue(nullptr, 2);
    stream->StartAcquisition(ZelCam::Infinite, 0);
}

void FaultInjection::UseStream(ZelCam::Stream& stream) {
    stream.RegisterEvent(3, Subscriber::Form1, &subscriber);
    stream.GetMinNumBuffers();
    stream.GetParameters(nullptr);
    stream.AllocBufferQueue(nullptr, 2);
    uint64_t memory[16] = {};
    ZelCamErr err = ZelCamErr_Success;
    ZelCam::Buffer* const buffer = stream.SetBuffer(memory, sizeof memory, nullptr, &err);
    EXPECT_EQ(buffer == nullptr, err != ZelCamErr_Success);
    Acquire(stream);
    stream.RevokeBuffer(buffer);
    stream.UnRegisterEvent(3, Subscriber::Form1, &subscriber);
    stream.ReleaseBufferQueue();
}

void FaultInjection::Acquire(ZelCam::Stream& stream) {
    stream.StartAcquisition(ZelCam::Infinite, 0);
    for (int i = 0; i < 3; ++i) {
        producer.DeliverFrame(producer.FindHandle("stream stream0"));
        ZelCamErr err = ZelCamErr_Success;
        ZelCam::Buffer* const buffer = stream.GetBuffer(0, &err);
        EXPECT_EQ(buffer == nullptr, err != ZelCamErr_Success);
        if (buffer == nullptr) continue;
        EXPECT_NE(buffer->GetImage(), nullptr);
        stream.QueueBuffer(buffer);
    }
    stream.CancelBuffer();
    stream.FlushBuffers(ZelCam::FlushOperation::InputToOutput);
    stream.StopAcquisition(0);
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
    Scripted::Reply reply = Scripted::Fails(code);
    reply.actFirst = IsClosing(site.function);
    const auto fail = [reply](const Scripted::Call&) { return reply; };
    producer.AddRule({site.function, Scripted::AnyCommand, fail, site.n, count});
    RunSession();
    CheckOpenHandles(site.function);
    producer.Reset();
}

void FaultInjection::RunWithReply(
    const CallSite& site, const std::function<Scripted::Reply(const Scripted::Call&)>& reply) {
    producer.Reset();
    producer.AddRule({site.function, Scripted::AnyCommand, reply, site.n, 1});
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
    for (const CallSite& site : sites) {
        for (const int32_t code : {GenTL::GC_ERR_ERROR, GenTL::GC_ERR_INVALID_HANDLE}) {
            SCOPED_TRACE(site.function + ' ' + std::to_string(site.n) + ' ' + std::to_string(code));
            // An invalid handle is as good as no answer there.
            RunWithFault(site, 1, site.function == "EventGetInfo" ? GenTL::GC_ERR_IO : code);
            if (HasFailure()) return;
        }
    }
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
            producer.AddRule({function, Scripted::AnyCommand, reply, 0, SIZE_MAX});
        RunSession();
        producer.Reset();
    }
}
