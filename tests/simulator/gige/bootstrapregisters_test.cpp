// What the bootstrap registers of a served camera say.
#include "producers/simulator/gige/control/bootstrapregisters.h"

#include <gmock/gmock.h>

#include "producers/server/base/error.h"
#include "producers/simulator/features/usersets.h"
#include "tests/simulator/gige/controlledcamera.h"

using GigeTest::Bytes;
using GigeTest::ControlledCamera;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using ZelSim::UrlForm;

namespace {

struct BootstrapTest : testing::Test, ControlledCamera {
    using ControlledCamera::ControlledCamera;

    std::string Bytes(uint64_t address, size_t size = 4) {
        GigeTest::Bytes bytes(size);
        camera->Registers().Read(address, bytes.data(), bytes.size());
        return Digits(bytes);
    }
    std::string Text(uint64_t address, size_t size) {
        std::string text(size, '?');
        camera->Registers().Read(address, text.data(), text.size());
        return text.substr(0, text.find('\0'));
    }
    void Write(uint64_t address, std::string_view digits) {
        const GigeTest::Bytes bytes = WireTest::Hex(digits);
        camera->Registers().Write(address, bytes.data(), bytes.size());
    }
    void ExpectRefused(uint64_t address, std::string_view digits) {
        EXPECT_THROW(Write(address, digits), ZelCti::Error) << std::hex << address << ' ' << digits;
    }
};

// 992 bytes, which are two packets of 548 with 500 bytes of data each.
struct SmallFramesTest : BootstrapTest {
    SmallFramesTest()
        : BootstrapTest([](ZelSim::CameraConfig& config) {
              config.timestampFrequency = 1000000;
              config.linkSpeed = 0;
              config.width = 32;
              config.height = 31;
          }) {}
};

TEST_F(BootstrapTest, SaysWhatTheDeviceHas) {
    EXPECT_EQ(Bytes(0x600), "00000001");
    EXPECT_EQ(Bytes(0x670), "000003e8") << "1 Gbit/s";
    EXPECT_EQ(Bytes(0x900, 12), "000000010000000200000004");
    EXPECT_EQ(Bytes(0x910), "00000001");
    EXPECT_EQ(Bytes(0x92C, 12), "c000000080000000fdfe007f");
    EXPECT_EQ(Bytes(0x964, 16), "00000001000000010000000300000008");
    EXPECT_EQ(Bytes(0xB1C), "0000beef");
    EXPECT_EQ(Bytes(0xD1C, 8), "0000c00080000066");
    EXPECT_EQ(Bytes(0xD5C), "0000c001");
    EXPECT_EQ(Bytes(0xD04), "000005dc");
    EXPECT_EQ(Bytes(0x9000, 16), "04000000000000000400010400000200");
}

TEST_F(BootstrapTest, OldDevicesCanLess) {
    hardware.settings.version = 0x00010002;
    EXPECT_EQ(Bytes(0x934), "fdf0007f");
    EXPECT_EQ(Bytes(0xD20), "80000002");
    ExpectRefused(0x960, "40000000");
    ExpectRefused(0x954, "00080000");
    hardware.settings.version = 0x00020000;
    EXPECT_EQ(Bytes(0x934), "fdfe007f");
    EXPECT_EQ(Bytes(0xD20), "80000006");
    Write(0x960, "40000000");
    EXPECT_EQ(hardware.TakeNotes().back(), "extended ids 1");
}

TEST_F(BootstrapTest, SwitchesTakeCapabilitiesAway) {
    hardware.settings.gvcpCapabilitiesOff = 0x20;
    hardware.settings.gvspCapabilitiesOff = 0x80000000;
    hardware.settings.messageCapabilitiesOff = 0x80000000;
    hardware.settings.streamCapabilitiesOff = 0x2;
    EXPECT_EQ(Bytes(0x92C, 12), "4000000000000000fdfe005f");
    EXPECT_EQ(Bytes(0xD20), "80000064");
    ExpectRefused(0x954, "00000002");
    ExpectRefused(0xD24, "00000002");
    Write(0xD24, "00000044");
    EXPECT_EQ(Bytes(0xD24), "00000044");
}

TEST_F(BootstrapTest, UrlsHaveTheFormThatIsAskedFor) {
    const auto url = [&](UrlForm form) {
        hardware.settings.urlForm = form;
        return Text(0x200, 512);
    };
    EXPECT_THAT(url(UrlForm::Plain), MatchesRegex("Local:Device.xml;80000000;[0-9A-F]+"));
    EXPECT_THAT(url(UrlForm::Slashes), MatchesRegex("Local:///Device.xml;80000000;[0-9A-F]+"));
    EXPECT_THAT(url(UrlForm::Spaces), MatchesRegex("Local:Device.xml; 80000000; [0-9A-F]+"));
    EXPECT_THAT(url(UrlForm::HexPrefix), MatchesRegex("Local:Device.xml;0x80000000;0x[0-9A-F]+"));
    EXPECT_THAT(url(UrlForm::SchemaVersion),
                MatchesRegex("Local:Device.xml;80000000;[0-9A-F]+.SchemaVersion=1.1.0"));
    EXPECT_THAT(url(UrlForm::LowerCase), MatchesRegex("local:Device.xml;80000000;[0-9A-F]+"));
    EXPECT_EQ(url(UrlForm::Http), "http://localhost/Device.xml");
    EXPECT_EQ(url(UrlForm::File), "File:///Device.xml");
    EXPECT_EQ(Text(0x400, 512), "");
    hardware.settings.secondUrlOnly = true;
    EXPECT_EQ(url(UrlForm::Plain), "");
    EXPECT_THAT(Text(0x400, 512), MatchesRegex("Local:Device.xml;80000000;[0-9A-F]+"));
}

TEST(ConfiguredBootstrapTest, AnnouncedUrlsAndArchivesComeFromTheConfiguration) {
    ControlledCamera camera([](ZelSim::CameraConfig& config) {
        config.descriptionUrl = "http://somewhere/a.xml";
        config.network->urlForm = UrlForm::UpperCaseZip;
    });
    camera.hardware.settings.urlForm = UrlForm::UpperCaseZip;
    char urls[1024];
    camera.camera->Registers().Read(0x200, urls, sizeof urls);
    EXPECT_STREQ(urls, "http://somewhere/a.xml");
    EXPECT_THAT(urls + 512, MatchesRegex("Local:Device.ZIP;80000000;[0-9A-F]+"));
    char magic[2];
    camera.camera->Registers().Read(0x80000000, magic, sizeof magic);
    EXPECT_EQ(std::string(magic, 2), "PK");
}

TEST_F(BootstrapTest, TextsCanBeOddOrEmpty) {
    hardware.settings.oddStrings = true;
    EXPECT_EQ(Bytes(0x48, 12), "56657269667901ff003f3f3f");
    EXPECT_EQ(Bytes(0x64), "3f3f3f3f");
    hardware.settings.oddStrings = false;
    EXPECT_EQ(Bytes(0xD8), "30383135");
    hardware.settings.emptySerial = true;
    EXPECT_EQ(Bytes(0xD8, 16), std::string(32, '0'));
}

TEST(LittleEndianBootstrapTest, StaysBigEndian) {
    ControlledCamera camera([](ZelSim::CameraConfig& config) { config.bigEndian = false; });
    camera.Handle("42010080000800010000000400000938");
    EXPECT_EQ(camera.TakeSent(), "00000081000800010000000100000bb8");
}

TEST_F(BootstrapTest, TimestampsAreLatchedAndReset) {
    EXPECT_EQ(Bytes(0x93C, 8), "000000003b9aca00");
    EXPECT_EQ(Bytes(0x948, 8), "0000000000000000");
    Write(0x944, "00000003");
    const std::string latched = Bytes(0x948, 8);
    EXPECT_NE(latched, "0000000000000000");
    EXPECT_EQ(hardware.TakeNotes().back(), "timestamp 0");
    EXPECT_EQ(Bytes(0x948, 8), latched);
    ExpectRefused(0x944, "00000004");
    Write(0x954, "00080000");
    EXPECT_EQ(Bytes(0x96C), "00000006") << "master";
    ExpectRefused(0x944, "00000001");
    Write(0x944, "00000002");
    constexpr uint64_t kInTheYear2020 = 1577836800000000000;
    EXPECT_GT(std::stoull(Bytes(0x948, 8), nullptr, 16), kInTheYear2020) << "the time of day";
    hardware.settings.tickFrequencyHighOnly = true;
    EXPECT_EQ(Bytes(0x93C, 8), "3b9aca0000000000");
    hardware.settings.tickFrequencyZero = true;
    EXPECT_EQ(Bytes(0x93C, 8), "0000000000000000");
}

TEST_F(BootstrapTest, ChannelsFollowTheirRegisters) {
    camera->Registers().Urls();  // makes the registers
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("sccfg 0 0", "sccfg 1 0", "extended ids 0"));
    Write(0xB10, "7f00000100000064");
    Write(0xB18, "00000003");
    Write(0xB00, "00001234");
    EXPECT_THAT(hardware.TakeNotes(),
                ElementsAre("message to 2130706433", "mctt 100", "mcrc 3", "message port 4660"));
    Write(0xD58, "ef000001");
    Write(0xD48, "00000010");
    Write(0xD64, "00000006");
    Write(0xD40, "80001235");
    EXPECT_EQ(Bytes(0xD40), "00001235") << "the direction cannot be written";
    EXPECT_THAT(hardware.TakeNotes(),
                ElementsAre("destination 1 4009754625", "delay 1 16", "sccfg 1 6", "port 1 4661"));
    ExpectRefused(0xD00, "00011234");  // there is no second interface
    ExpectRefused(0xB00, "00011234");
    ExpectRefused(0xD04, "00000000");
    ExpectRefused(0xD04, "100005dc");
    ExpectRefused(0xD24, "00000001");
    hardware.settings.refuseUnalignedPacketSize = true;
    ExpectRefused(0xD04, "00000243");
    EXPECT_EQ(Bytes(0xD04), "000005dc");
    EXPECT_THAT(hardware.TakeNotes(), IsEmpty());
    hardware.settings.scspZero = true;
    EXPECT_EQ(Bytes(0xD1C), "00000000");
}

TEST_F(SmallFramesTest, TheSlowestChannelLimitsTheFrameRate) {
    const auto settings = [this] { return camera->Hardware().Settings(); };
    Write(0xD04, "00000224");
    EXPECT_DOUBLE_EQ(settings()->MaxFrameRate(), 100) << "which is the exposure time's";
    Write(0xD08, "00002710");  // 10 ms
    EXPECT_DOUBLE_EQ(settings()->MaxFrameRate(), 50);
    Write(0xD48, "00004e20");  // 20 ms, with one packet a frame
    EXPECT_DOUBLE_EQ(settings()->MaxFrameRate(), 50);
    Write(0xD44, "00000224");
    EXPECT_DOUBLE_EQ(settings()->MaxFrameRate(), 25);
    EXPECT_DOUBLE_EQ(settings()->frameRate, 25);
    ZelSim::UserSets(camera->Hardware().Control(), camera->Hardware().Memory()).Load(0);
    EXPECT_DOUBLE_EQ(settings()->frameRate, 25) << "no user set has a faster link";
    Write(0xD08, "00000000");
    Write(0xD48, "00000000");
    EXPECT_DOUBLE_EQ(settings()->MaxFrameRate(), 100);
}

TEST_F(BootstrapTest, DeviceRemembersItsAddress) {
    Write(0x64C, "0a4d0005");
    Write(0x65C, "ffffff00");
    Write(0x66C, "0a4d0001");
    Write(0x14, "00000005");
    EXPECT_EQ(hardware.memory.persistent.address, 0x0A4D0005U);
    EXPECT_EQ(hardware.memory.persistent.mask, 0xFFFFFF00U);
    EXPECT_EQ(hardware.memory.persistent.gateway, 0x0A4D0001U);
    Write(0x14, "00000002");
    EXPECT_EQ(Bytes(0x14), "00000006") << "link-local is always on";
    ExpectRefused(0x14, "00000008");
    EXPECT_EQ(Bytes(0x24), "7f000002") << "until the device starts again";
}

}  // namespace
