// Network configuration of GigE Vision cameras through the features of their interface.
#include <stdexcept>

#include "ZelCameraApi/ipaddress.h"
#include "ZelGenParam/Array.h"
#include "tests/library/support/moduledescription.h"

using Description::Peek;
using Description::Poke;
using testing::ElementsAre;

namespace {

class IPConfigurationTest : public SessionTest {
  protected:
    void SetUp() override {
        producer.SetDescription(Description::Xml());
        ASSERT_NO_FATAL_FAILURE(OpenInterface());
        info = iface->GetDeviceInfoById("cam1");
        Poke(producer, Description::Camera + 16, 0xC0A80102);
        Poke(producer, Description::Camera + 20, 0xFFFFFF00);
        Poke(producer, Description::Camera + 24, 0xC0A80101);
    }

    // The configuration that was forced last, and on which camera; then as if none had been.
    std::vector<uint32_t> TakeForced() {
        std::vector<uint32_t> forced;
        for (const uint64_t address : {0U, 4U, 8U, 12U}) {
            forced.push_back(Peek(producer, Description::Force + address));
            Poke(producer, Description::Force + address, 0);
        }
        return forced;
    }

    // What was written into the selector since the last Calls.
    std::vector<int> TakeSelections() {
        std::vector<int> selections;
        for (const Scripted::Call& call : producer.TakeCalls()) {
            if (call.function == "GCWritePort" && call.number == Description::Selector)
                selections.push_back(call.data.at(0));
        }
        return selections;
    }

    // The values of the selector for which the command was given since the last Calls.
    std::vector<int> TakeForcedCameras() {
        std::vector<int> cameras;
        int selected = -1;
        for (const Scripted::Call& call : producer.TakeCalls()) {
            if (call.function != "GCWritePort") continue;
            if (call.number == Description::Selector) selected = call.data.at(0);
            if (call.number == Description::ForceCommand) cameras.push_back(selected);
        }
        return cameras;
    }

    // An interface that lists `cameras`, and tells of each value of its selector which camera it
    // is.
    void OpenWith(const std::vector<std::string>& cameras,
                  const std::vector<std::string>& identifiers) {
        producer.SetDescription(Description::Xml("PayloadSize", Description::DeviceID()));
        producer.SetWorld({{"if0", "GEV", cameras}});
        uint8_t* at = producer.GetRegisters().data() + Description::Identifier;
        for (const std::string& identifier : identifiers) {
            std::copy(identifier.begin(), identifier.end(), at);
            at += 16;
        }
        system.reset();
        OpenInterface();
    }

    ZelCam::DeviceInfo* Unlisted() { return iface->GetDeviceInfoById("none"); }
};

}  // namespace

TEST(IPAddress, TextsHaveFourNumbers) {
    const std::pair<const char*, unsigned int> valid[] = {{"192.168.1.2", 0xC0A80102},
                                                          {"300.1.1.1", 0x2C010101},
                                                          {" 1.+2.3x. 4 ", 0x01020304},
                                                          {"-1.0.0.256", 0xFF000000}};
    for (const auto& [text, expected] : valid) {
        unsigned int value = 77;
        EXPECT_TRUE(ZelCameraApi::Internal::validateIpAddress(text, &value)) << text;
        EXPECT_EQ(value, expected) << text;
    }
    for (const char* text :
         {"", "1.2.3", "1.2.3.4.5", "1.2.3.4.", "1..3.4", "1.2.3.x", "xyz", "1.2.3.99999999999"}) {
        unsigned int value = 77;
        EXPECT_FALSE(ZelCameraApi::Internal::validateIpAddress(text, &value)) << text;
        EXPECT_EQ(value, 0U) << text;
    }
}

TEST_F(IPConfigurationTest, IsThatOfTheSelectedCamera) {
    uint32_t address = 0;
    uint32_t mask = 0;
    uint32_t gateway = 0;
    EXPECT_EQ(info->GetIP(&address, &mask, &gateway), ZelCamErr_Success);
    EXPECT_THAT((std::vector{address, mask, gateway}),
                ElementsAre(0xC0A80102, 0xFFFFFF00, 0xC0A80101));
    EXPECT_THAT(TakeSelections(), ElementsAre(1));

    auto err = static_cast<ZelCamErr>(77);  // left as it was
    EXPECT_STREQ(info->GetIPAddress(&err), "192.168.1.2");
    EXPECT_STREQ(info->GetIPMask(&err), "255.255.255.0");
    EXPECT_STREQ(info->GetIPGateway(nullptr), "192.168.1.1");
    EXPECT_EQ(err, 77);

    EXPECT_EQ(Unlisted()->GetIP(&address, &mask, &gateway), ZelCamErr_NotFound);
    Fail("GCWritePort", -1010);
    EXPECT_EQ(iface->GetFirstDeviceInfo()->GetIPMask(&err), nullptr);
    EXPECT_EQ(err, ZelCamErr_GenApiError);
    producer.ClearRules();
    Fail("GCReadPort", -1010);  // the second value
    EXPECT_EQ(info->GetIP(&address, &mask, &gateway), ZelCamErr_GenApiError);
    EXPECT_THAT((std::vector{address, mask, gateway}),
                ElementsAre(0xC0A80102, 0xFFFFFF00, 0xC0A80101));
}

TEST_F(IPConfigurationTest, IsForcedAndTheSelectorRestored) {
    EXPECT_EQ(info->ForceIP(1U, 2U, 3U), ZelCamErr_Success);
    EXPECT_THAT(TakeForced(), ElementsAre(1, 2, 3, 1));
    EXPECT_THAT(TakeSelections(), ElementsAre(1, 0));

    EXPECT_EQ(info->ForceIP("192.168.0.10", "255.255.255.0", "xyz"), ZelCamErr_Success);
    EXPECT_THAT(TakeForced(), ElementsAre(0xC0A8000A, 0xFFFFFF00, 0, 1));
    for (const auto& [address, mask] : {std::pair{"1.2.3", "255.0.0.0"},
                                        {"", "255.0.0.0"},
                                        {"10.0.0.1", ""},
                                        {"10.0.0.1", "255.x.0.0"}})
        EXPECT_EQ(info->ForceIP(address, mask, "0.0.0.0"), ZelCamErr_InvalidArgument);
    EXPECT_THROW(info->ForceIP(nullptr, "255.0.0.0", "0.0.0.0"), std::logic_error);
    EXPECT_THAT(TakeForced(), ElementsAre(0, 0, 0, 0));
    TakeSelections();

    // One past the last camera is what the selector refuses.
    EXPECT_EQ(Unlisted()->ForceIP(1U, 2U, 3U), ZelCamErr_OutOfRange);
    EXPECT_THAT(TakeSelections(), ElementsAre());
    EXPECT_THAT(TakeForced(), ElementsAre(0, 0, 0, 0));

    // Address, mask, gateway, command; what comes behind a failure is not done.
    for (const auto& [step, forced] :
         {std::pair{1U, std::vector{0U, 0U, 0U, 0U}}, {2U, {1, 0, 0, 0}}, {3U, {1, 2, 0, 0}}}) {
        producer.ClearRules();
        Fail("GCWritePort", -1010, Scripted::kAnyCommand, step, 1);
        EXPECT_EQ(info->ForceIP(1U, 2U, 3U), ZelCamErr_GenApiError);
        EXPECT_EQ(TakeForced(), forced);
        EXPECT_THAT(TakeSelections(), ElementsAre(1, 0));
    }
}

TEST_F(IPConfigurationTest, IsThatOfTheCameraWhateverTheOrderOfTheProducer) {
    OpenWith({"cam1", "cam0"}, {"cam1", "cam0"});  // the library sorts its list
    ZelGenParam::Array* const features = iface->GetParameters(nullptr);
    for (const auto& [id, place] : {std::pair{"cam1", 0}, {"cam0", 1}}) {
        const auto expected = static_cast<uint32_t>(70 + place);
        Poke(producer, Description::Camera + 16 * static_cast<uint64_t>(place), expected);
        info = iface->GetDeviceInfoById(id);
        uint32_t address = 0;
        uint32_t other = 0;
        EXPECT_EQ(info->GetIP(&address, &other, &other), ZelCamErr_Success);
        EXPECT_EQ(address, expected);

        EXPECT_EQ(features->SetIntegerValue("DeviceSelector", 1 - place), ZelCamErr_Success);
        TakeSelections();
        EXPECT_EQ(info->ForceIP(1U, 2U, 3U), ZelCamErr_Success);
        EXPECT_THAT(TakeForcedCameras(), ElementsAre(place));
        EXPECT_EQ(features->GetIntegerValue("DeviceSelector", nullptr), 1 - place);
    }
}

TEST_F(IPConfigurationTest, IsNotForcedOnAnotherCamera) {
    OpenWith({"cam0"}, {"cam7", "cam8"});
    const auto expectRefused = [&](ZelCam::DeviceInfo* camera, ZelCamErr code) {
        EXPECT_EQ(camera->ForceIP(1U, 2U, 3U), code);
        EXPECT_THAT(TakeForced(), ElementsAre(0, 0, 0, 0));
        EXPECT_EQ(iface->GetParameters(nullptr)->GetIntegerValue("DeviceSelector", nullptr), 0);
    };
    expectRefused(iface->GetFirstDeviceInfo(), ZelCamErr_NotFound);
    expectRefused(Unlisted(), ZelCamErr_NotFound);  // its place is one that the selector has
    uint32_t value = 0;
    EXPECT_EQ(iface->GetFirstDeviceInfo()->GetIP(&value, &value, &value), ZelCamErr_NotFound);

    producer.AddRule({"GCReadPort", Scripted::kAnyCommand, [](const Scripted::Call& call) {
                          const uint64_t at = call.number.value_or(0);
                          const bool identifier =
                              at >= Description::Identifier && at < Description::Width;
                          return identifier ? Scripted::Fails(-1010) : Scripted::Reply{};
                      }});
    iface->GetParameters(nullptr)->SetIntegerValue("DeviceSelector", 0);
    expectRefused(iface->GetFirstDeviceInfo(), ZelCamErr_GenApiError);
}

TEST_F(IPConfigurationTest, NeedsTheFeaturesOfAnInterfaceForGigECameras) {
    producer.SetDescription(test::Document("<Category Name='Root'/>" + test::kPort));
    system.reset();
    OpenInterface();
    info = iface->GetFirstDeviceInfo();
    uint32_t value = 0;
    EXPECT_EQ(info->GetIP(&value, &value, &value), ZelCamErr_ParamNotFound);
    EXPECT_EQ(info->ForceIP(1U, 2U, 3U), ZelCamErr_ParamNotFound);

    // Without the command nothing is selected or written in vain.
    std::string xml = Description::Xml();
    const std::string command = "'GevDeviceForceIP'";
    xml.replace(xml.find(command), command.size(), "'NoSuchCommand'");
    producer.SetDescription(xml);
    system.reset();
    OpenInterface();
    EXPECT_EQ(iface->GetDeviceInfoById("cam1")->ForceIP(1U, 2U, 3U), ZelCamErr_ParamNotFound);
    EXPECT_THAT(TakeSelections(), ElementsAre());
    EXPECT_THAT(TakeForced(), ElementsAre(0, 0, 0, 0));

    // A list of cameras that cannot be read selects none of them.
    producer.SetDescription(Description::Xml());
    producer.SetWorld({{"if0", "GEV", {}}});
    system.reset();
    OpenInterface();
    info = Unlisted();
    Fail("IFGetNumDevices", -1010);
    EXPECT_EQ(info->ForceIP(1U, 2U, 3U), ZelCamErr_NotFound);
    EXPECT_EQ(info->GetIP(&value, &value, &value), ZelCamErr_NotFound);
    EXPECT_THAT(TakeSelections(), ElementsAre());
}
