#include "ZelCameraApi/firmwareupload.h"

#include <fstream>

#include "ZelCameraApi/deviceimpl.h"
#include "tests/library/fixture.h"

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
    void SetStatus(uint32_t status) {
        Answer("GCReadPort", Scripted::AnyCommand,
               Scripted::Gives(status, GenTL::INFO_DATATYPE_UNKNOWN));
    }

    ZelCamErr Upload(const std::string& file,
                     ZelCameraApi::Internal::UploadProgress progress = Report) {
        return dynamic_cast<DeviceImpl&>(*device).UploadRpd(file.c_str(), 0, progress);
    }
    ZelCamErr Program(const std::vector<uint8_t>& image) {
        return FirmwareUpload(*device, Report).Program(image);
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

    // A file of `size` bytes.
    static std::string File(size_t size) {
        const std::string path = testing::TempDir() + "firmware.rpd";
        std::ofstream(path) << std::string(size, '\xFF');
        return path;
    }

    static constexpr uint64_t Command = 0x20006050;
};

}  // namespace

TEST_F(FirmwareUploadTest, AnEmptyImageErasesTheFlash) {
    EXPECT_EQ(Upload(File(0)), ZelCamErr_Success);
    const auto writes = Writes();
    ASSERT_EQ(writes.size(), 128U);  // 64 sectors, each polled once; nothing is programmed
    EXPECT_THAT(writes[0], Pair(Command, 0x1400000U));
    EXPECT_THAT(writes[1], Pair(Command, 0x6000000U));
    EXPECT_THAT(writes[126], Pair(Command, 0x17F0000U));
    ASSERT_EQ(reports.size(), 64U);
    EXPECT_EQ(reports[0], "0: 400000 400000 800000 0");
    EXPECT_EQ(reports[63], "0: 400000 7f0000 800000 0");

    EXPECT_EQ(Upload(File(0), nullptr), ZelCamErr_Success);
}

TEST_F(FirmwareUploadTest, OtherImagesTouchNoRegister) {
    EXPECT_EQ(Upload(File(1)), ZelCamErr_InvalidFile);
    EXPECT_EQ(Upload("/no/such/file.rpd"), ZelCamErr_FileOpenFailed);
    EXPECT_THAT(Calls(), ElementsAre());
    EXPECT_THAT(reports, ElementsAre());
}

TEST_F(FirmwareUploadTest, ABusyFlashEndsItQuietly) {
    SetStatus(1);
    EXPECT_EQ(Upload(File(0)), ZelCamErr_Success);
    EXPECT_EQ(producer.GetCount("GCReadPort"), 10U);
    EXPECT_THAT(reports, ElementsAre("0: 400000 400000 800000 0"));

    // It may become ready in between.
    AcceptAll();
    producer.AddRule(
        {"GCReadPort", Scripted::AnyCommand,
         [](const Scripted::Call&) { return Scripted::Gives(0x80U, GenTL::INFO_DATATYPE_UNKNOWN); },
         0, 9});
    EXPECT_EQ(Upload(File(0)), ZelCamErr_Success);
    EXPECT_EQ(reports.size(), 64U);
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
        Fail(c.function, -1010, Scripted::AnyCommand, c.skip);
        EXPECT_EQ(Upload(File(0)), -1010);
        EXPECT_EQ(reports, c.reports);
        EXPECT_EQ(Upload(File(0), nullptr), -1010);
    }
}

TEST_F(FirmwareUploadTest, ProgramsAPageThatIsNotErased) {
    std::vector<uint8_t> image(300, 0xFF);
    image[256] = 0;  // behind the page
    EXPECT_EQ(Program(image), ZelCamErr_Success);
    EXPECT_THAT(Calls(), ElementsAre());

    image[3] = 0x12;
    EXPECT_EQ(Program(image), ZelCamErr_Success);
    EXPECT_THAT(Writes(), ElementsAre(Pair(0x10000300U, 0x12FFFFFFU), Pair(0x20006100U, 0x1000001U),
                                      Pair(Command, 0x3400000U), Pair(Command, 0x6000000U)));
    EXPECT_THAT(reports, ElementsAre("1: 400000 400000 400000 0"));

    AcceptAll();
    SetStatus(1);
    EXPECT_EQ(Program(image), ZelCamErr_Success);
    EXPECT_THAT(reports, ElementsAre("1: 400000 400000 400000 0"));
    for (const size_t step : {0U, 1U, 2U, 3U}) {  // only the poll is reported
        AcceptAll();
        Fail("GCWritePort", -1010, Scripted::AnyCommand, step);
        EXPECT_EQ(Program(image), -1010);
        EXPECT_EQ(reports.size(), step == 3 ? 1U : 0U);
    }
    EXPECT_THAT(reports, ElementsAre("1: 400000 400000 400000 -1010"));
}
