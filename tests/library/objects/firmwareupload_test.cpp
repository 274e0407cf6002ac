// Firmware upload: the register accesses of each phase, and how failures end it.
#include "ZelCameraApi/firmwareupload.h"

#include <filesystem>
#include <numeric>
#include <sys/stat.h>

#include "ZelCameraApi/deviceimpl.h"
#include "tests/library/support/fixture.h"
#include "tests/support/simulator.h"

using testing::ElementsAre;
using testing::Pair;
using ZelCam::Device;
using ZelCameraApi::Internal::DeviceImpl;
using ZelCameraApi::Internal::FirmwareUpload;

namespace {

// The callback has no private pointer.
std::vector<std::string> reports;

void Report(Device::UploadEventType type, Device::UploadEventData data) {
    char text[100];
    std::snprintf(text, sizeof text, "%u: %lx %lx %lx %ld", unsigned{type}, data.firstAddress,
                  data.currentAddress, data.endAddress, static_cast<int64_t>(data.errorCode));
    reports.emplace_back(text);
}

class FirmwareUploadTest : public SessionTest {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(OpenDevice());
        AcceptAll();
    }

    // The flash takes every command and is never busy.
    void AcceptAll() {
        producer.ClearRules();
        Fail("GCWritePort", 0);
        SetStatus(0xFFFFFF00);  // only the low byte counts
        reports.clear();
        Calls();
    }

    // What `count` polls find, behind the first `skip`.
    void SetStatus(uint32_t status, size_t skip = 0, size_t count = SIZE_MAX) {
        const auto reply = [status](const Scripted::Call&) {
            return Scripted::Gives(status, GenTL::INFO_DATATYPE_UNKNOWN);
        };
        producer.AddRule({"GCReadPort", Scripted::kAnyCommand, reply, skip, count});
    }
    void BusyAfter(size_t polls) { SetStatus(1, polls); }

    ZelCamErr Upload(const std::string& file,
                     void (*progress)(Device::UploadEventType, Device::UploadEventData) = Report) {
        return dynamic_cast<DeviceImpl&>(*device).UploadRpd(file.c_str(), 0, progress);
    }
    ZelCamErr Run(const std::vector<uint8_t>& image) {
        AcceptAll();
        return FirmwareUpload(*device, Report).Run(image);
    }

    // Address and first four bytes of each write since the last Calls.
    std::vector<std::pair<uint64_t, uint32_t>> Writes() {
        std::vector<std::pair<uint64_t, uint32_t>> writes;
        for (const Scripted::Call& call : producer.TakeCalls()) {
            if (call.function != "GCWritePort") continue;
            uint32_t value = 0;
            std::memcpy(&value, call.data.data(), sizeof value);
            writes.emplace_back(*call.number, value);
        }
        return writes;
    }

    const TemporaryFile empty{"empty.rpd", ""};

    static constexpr uint64_t kCommand = 0x20006050;
    static constexpr size_t kSectors = 64;
    static constexpr size_t kErasingWrites = 2 * kSectors;  // each is polled once
};

}  // namespace

TEST_F(FirmwareUploadTest, AnEmptyImageErasesTheFlash) {
    EXPECT_EQ(Upload(empty.Path()), ZelCamErr_Success);
    const auto writes = Writes();
    ASSERT_EQ(writes.size(), kErasingWrites);  // nothing is programmed
    EXPECT_THAT(writes[0], Pair(kCommand, 0x1400000U));
    EXPECT_THAT(writes[1], Pair(kCommand, 0x6000000U));
    EXPECT_THAT(writes[126], Pair(kCommand, 0x17F0000U));
    ASSERT_EQ(reports.size(), kSectors);
    EXPECT_EQ(reports[0], "0: 400000 400000 800000 0");
    EXPECT_EQ(reports[63], "0: 400000 7f0000 800000 0");

    EXPECT_EQ(Upload(empty.Path(), nullptr), ZelCamErr_Success);
}

TEST_F(FirmwareUploadTest, OtherImagesTouchNoRegister) {
    const TemporaryFile image("firmware.rpd", "\xFF");
    EXPECT_EQ(Upload(image.Path()), ZelCamErr_InvalidFile);
    EXPECT_EQ(Upload("/no/such/file.rpd"), ZelCamErr_FileOpenFailed);
    std::filesystem::remove(image.Path());
    ASSERT_EQ(mkfifo(image.Path().c_str(), 0600), 0);
    const std::vector<std::string> files = {image.Path(), "/dev/null", "/dev/zero", "/proc/cpuinfo",
                                            "/proc"};
    for (const std::string& file : files)
        EXPECT_EQ(Upload(file), ZelCamErr_InvalidFile) << file;
    EXPECT_EQ(device->UploadFirmware(nullptr, nullptr, nullptr), ZelCamErr_FileOpenFailed);
    EXPECT_EQ(device->UploadFirmware("/dev/null", nullptr, nullptr), ZelCamErr_InvalidFile);
    EXPECT_THAT(Calls(), ElementsAre());
    EXPECT_THAT(reports, ElementsAre());
}

TEST_F(FirmwareUploadTest, ABusyFlashEndsItQuietly) {
    SetStatus(1);
    EXPECT_EQ(Upload(empty.Path()), ZelCamErr_Success);
    EXPECT_EQ(producer.GetCount("GCReadPort"), 10U);
    EXPECT_THAT(reports, ElementsAre("0: 400000 400000 800000 0"));

    // It may become ready in between.
    AcceptAll();
    SetStatus(0x80, 0, 9);
    EXPECT_EQ(Upload(empty.Path()), ZelCamErr_Success);
    EXPECT_EQ(reports.size(), kSectors);
}

TEST_F(FirmwareUploadTest, AFailingRegisterEndsItWithItsCode) {
    const struct {
        const char* function;
        size_t skip;
        std::vector<std::string> reports;
    } cases[] = {{"GCWritePort", 0, {}},
                 {"GCWritePort", 1, {"1: 400000 400000 800000 -1010"}},
                 {"GCReadPort", 1, {"0: 400000 400000 800000 0", "1: 400000 410000 800000 -1010"}}};
    for (const auto& c : cases) {
        AcceptAll();
        Fail(c.function, -1010, Scripted::kAnyCommand, c.skip);
        EXPECT_EQ(Upload(empty.Path()), -1010);
        EXPECT_EQ(reports, c.reports);
        EXPECT_EQ(Upload(empty.Path(), nullptr), -1010);
    }
}

TEST_F(FirmwareUploadTest, ProgramsAPageThatIsNotErased) {
    std::vector<uint8_t> image(300, 0xFF);
    image[256] = 0;  // behind the page
    EXPECT_EQ(Run(image), ZelCamErr_Success);
    EXPECT_EQ(Writes().size(), kErasingWrites);

    image[3] = 0x12;
    EXPECT_EQ(Run(image), ZelCamErr_Success);
    auto writes = Writes();
    writes.erase(writes.begin(), writes.begin() + kErasingWrites);
    EXPECT_THAT(writes, ElementsAre(Pair(0x10000300U, 0x12FFFFFFU), Pair(0x20006100U, 0x1000001U),
                                    Pair(kCommand, 0x3400000U), Pair(kCommand, 0x6000000U)));
    EXPECT_EQ(reports.size(), kSectors + 1);
    EXPECT_EQ(reports.back(), "1: 400000 400000 400000 0");
}

TEST_F(FirmwareUploadTest, ProgrammingEndsLikeErasing) {
    const std::vector<uint8_t> image(256, 0x12);
    const auto failAfterErasing = [&](const char* function, size_t skip, ZelCamErr code) {
        AcceptAll();
        Fail(function, code, Scripted::kAnyCommand, skip);
        return FirmwareUpload(*device, Report).Run(image);
    };
    for (const size_t step : {0U, 1U, 2U, 3U}) {  // only the poll is reported
        EXPECT_EQ(failAfterErasing("GCWritePort", kErasingWrites + step, ZelCamErr_GenTL_Io),
                  ZelCamErr_GenTL_Io);
        EXPECT_EQ(reports.size(), step == 3 ? kSectors + 1 : kSectors);
    }
    EXPECT_EQ(reports.back(), "1: 400000 400000 400000 -1010");

    AcceptAll();
    BusyAfter(kSectors);
    EXPECT_EQ(FirmwareUpload(*device, Report).Run(image), ZelCamErr_Success);
    EXPECT_EQ(reports.back(), "1: 400000 400000 400000 0");
    AcceptAll();
    BusyAfter(1 + kSectors);  // polled before the first sector
    EXPECT_EQ(FirmwareUpload(*device, Report).RunWhenReady(image), ZelCamErr_GenTL_Busy);
    EXPECT_EQ(reports.size(), kSectors + 1);
}

TEST_F(FirmwareUploadTest, ThePublicOperationWaitsForABusyFlash) {
    size_t events = 0;
    const auto upload = [&] {
        events = 0;
        return device->UploadFirmware(
            empty.Path().c_str(),
            [](Device::UploadEventType, Device::UploadEventData data, void* priv) {
                EXPECT_EQ(data.endAddress, 0x800000U);
                ++*static_cast<size_t*>(priv);
            },
            &events);
    };
    SetStatus(1, 0, 20);  // longer than the flash may take for a sector
    EXPECT_EQ(upload(), ZelCamErr_Success);
    EXPECT_EQ(events, kSectors);

    AcceptAll();
    BusyAfter(3);
    EXPECT_EQ(upload(), ZelCamErr_GenTL_Busy);
    EXPECT_EQ(events, 3U);  // the last is of the sector that was not finished

    AcceptAll();
    BusyAfter(0);
    EXPECT_EQ(upload(), ZelCamErr_GenTL_Busy);
    EXPECT_EQ(events, 0U);
    for (const auto& [address, value] : Writes())
        EXPECT_EQ(value, 0x6000000U);

    AcceptAll();
    Fail("GCReadPort", ZelCamErr_GenTL_InvalidAddress);  // a camera without such a flash
    EXPECT_EQ(upload(), ZelCamErr_GenTL_InvalidAddress);
    EXPECT_EQ(Writes().size(), 1U);
    EXPECT_EQ(device->UploadFirmware(empty.Path().c_str(), nullptr, nullptr),
              ZelCamErr_GenTL_InvalidAddress);
}

// The simulated flash is busy for a while after each step, and takes nothing but what a real one
// would.
TEST_F(FirmwareUploadTest, ASimulatedFlashHoldsTheImage) {
    const ZelTest::Simulator simulator;
    ASSERT_EQ(simulator.configure("<ZelSim><Interface id='sim' type='GEV'><Camera id='C'/>"
                                  "</Interface></ZelSim>"),
              0);
    const Holder<ZelCam::System> simulated(ZelCam_GetSystem());
    ASSERT_EQ(simulated->RegisterGenTLProvider(SIMULATOR_FILE), ZelCamErr_Success);
    ZelCam::Interface* const sim = simulated->GetInterfaceById("sim");
    ASSERT_NE(sim, nullptr);
    const Holder<Device> camera(
        ZelCam_CreateDevice(sim->GetFirstDeviceInfo(), ZelCam::DeviceAccess::Exclusive, nullptr));
    ASSERT_NE(camera, nullptr);
    std::vector<uint8_t> image(256);
    std::iota(image.begin(), image.end(), uint8_t{0});
    std::vector<uint8_t> flash(0x400000);
    for (int round = 0; round < 2; ++round) {  // again over what is there
        reports.clear();
        EXPECT_EQ(FirmwareUpload(*camera, Report).Run(image), ZelCamErr_Success);
        EXPECT_EQ(reports.size(), kSectors + 1);
        ASSERT_EQ(camera->ReadMem(0x30400000, flash.data(), flash.size()), ZelCamErr_Success);
        EXPECT_TRUE(std::equal(image.begin(), image.end(), flash.begin())) << round;
        EXPECT_EQ(std::count(flash.begin() + 256, flash.end(), 0xFF), flash.size() - 256);
        std::reverse(image.begin(), image.end());
    }
}
