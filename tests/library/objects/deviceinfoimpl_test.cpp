// What a DeviceInfo says of a camera that is not open.
#include "ZelCameraApi/deviceinfoimpl.h"

#include "tests/library/support/fixture.h"

using testing::ElementsAre;

namespace {

class DeviceInfoTest : public SessionTest {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(OpenInterface());
        info = iface->GetDeviceInfoById("cam1");
        ASSERT_NE(info, nullptr);
        Calls();
    }
};

const struct {
    const char* (ZelCam::DeviceInfo::*get)();
    int command;
    const char* text;
} kTextGetters[] = {{&ZelCam::DeviceInfo::GetVendor, 1, "Vendor of cam1"},
                    {&ZelCam::DeviceInfo::GetModel, 2, "Model of cam1"},
                    {&ZelCam::DeviceInfo::GetDisplayName, 4, "Display name of cam1"},
                    {&ZelCam::DeviceInfo::GetUserDefinedName, 6, "User name of cam1"},
                    {&ZelCam::DeviceInfo::GetSerialNumber, 7, "Serial number of cam1"},
                    {&ZelCam::DeviceInfo::GetVersion, 8, "Version of cam1"},
                    {&ZelCam::DeviceInfo::GetUSB3HostInfo, 1100, "Host of cam1"}};

}  // namespace

TEST_F(DeviceInfoTest, TextsAreAskedOnEveryCall) {
    for (const auto& getter : kTextGetters) {
        SCOPED_TRACE(getter.command);
        const std::string query = "IFGetDeviceInfo " + std::to_string(getter.command) + " cam1";
        const char* text = nullptr;
        for (int i = 0; i < 2; ++i) {
            text = (info->*getter.get)();
            EXPECT_THAT(Calls(), ElementsAre(query + '?', query));
        }
        Fail("IFGetDeviceInfo", -1014, getter.command, 1);  // the second call
        EXPECT_EQ((info->*getter.get)(), nullptr);
        EXPECT_STREQ(text, getter.text);  // the text of the last success is kept
        producer.ClearRules();
        Calls();
    }
    Answer("IFGetDeviceInfo", 1, Scripted::ReportsType(GenTL::INFO_DATATYPE_UINT64));
    EXPECT_EQ(info->GetVendor(), nullptr);
}

TEST_F(DeviceInfoTest, EachTextHasItsOwnBuffer) {
    std::vector<const char*> texts;
    for (const auto& getter : kTextGetters)
        texts.push_back((info->*getter.get)());
    for (size_t i = 0; i < texts.size(); ++i)
        EXPECT_STREQ(texts[i], kTextGetters[i].text);

    // A second text of the same length takes the place of the first, long or short.
    for (const size_t length : {14U, 200U}) {
        Answer("IFGetDeviceInfo", 1, Scripted::Gives(std::string(length, 'a')));
        const char* const first = info->GetVendor();
        const std::string second(length, 'b');
        Answer("IFGetDeviceInfo", 1, Scripted::Gives(second));
        ASSERT_EQ(info->GetVendor(), first);
        EXPECT_EQ(first, second);
    }
}

TEST_F(DeviceInfoTest, AccessStatusPassesThrough) {
    for (const int32_t status : {0, 5, 1000, -5}) {
        Answer("IFGetDeviceInfo", 5, Scripted::Gives(status, GenTL::INFO_DATATYPE_INT32));
        EXPECT_EQ(info->GetAccessStatus(), status);
        EXPECT_THAT(Calls(), ElementsAre("IFGetDeviceInfo 5 cam1?", "IFGetDeviceInfo 5 cam1"));
    }
    Answer("IFGetDeviceInfo", 5, Scripted::Gives(uint32_t{3}, GenTL::INFO_DATATYPE_UINT32));
    EXPECT_EQ(info->GetAccessStatus(), 0);
}

TEST_F(DeviceInfoTest, ExternalXmlIsKeptEvenWhenItCannotBeRead) {
    EXPECT_EQ(info->GetExternalXml(), nullptr);
    const TemporaryFile file("external.xml", "<xml/>");
    EXPECT_EQ(info->SetExternalXml(file.Path().c_str()), ZelCamErr_Success);
    EXPECT_EQ(info->GetExternalXml(), file.Path());
    EXPECT_EQ(info->SetExternalXml("/no/such/file.xml"), ZelCamErr_FileOpenFailed);
    EXPECT_STREQ(info->GetExternalXml(), "/no/such/file.xml");
    for (const char* nothing : {static_cast<const char*>(nullptr), ""}) {
        info->SetExternalXml(file.Path().c_str());
        EXPECT_EQ(info->SetExternalXml(nothing), ZelCamErr_Success);
        EXPECT_EQ(info->GetExternalXml(), nullptr);
    }
}
