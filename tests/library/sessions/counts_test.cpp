// A producer that reports more of something than there can be: the library does not count to 2^32.
#include "ZelCameraApi/base/gentl_error.h"
#include "tests/library/support/fixture.h"

namespace {

class CountsTest : public SessionTest {
  protected:
    void ReportTooMany(const char* countingFunction) {
        Answer(countingFunction, Scripted::kAnyCommand, Scripted::ReportsSize(UINT32_MAX));
    }
};

}  // namespace

TEST_F(CountsTest, OfInterfaces) {
    OpenSystem();
    ReportTooMany("TLGetNumInterfaces");
    Answer("TLGetInterfaceID", Scripted::kAnyCommand, Scripted::Gives("if0"));
    EXPECT_EQ(system->GetInterfaceList(ZelCam::InterfaceType::Unknown), nullptr);
    EXPECT_EQ(producer.GetCount("TLGetInterfaceID"), 0U);
    producer.ClearRules();
    EXPECT_NE(system->GetInterfaceById("if0"), nullptr);
}

TEST_F(CountsTest, OfCameras) {
    OpenInterface();
    ReportTooMany("IFGetNumDevices");
    Answer("IFGetDeviceID", Scripted::kAnyCommand, Scripted::Gives("cam"));
    EXPECT_EQ(iface->GetDeviceInfoList(), nullptr);
    EXPECT_EQ(iface->GetFirstDeviceInfo(), nullptr);
    EXPECT_EQ(iface->GetDeviceInfoById("cam0"), nullptr);
    Answer("IFUpdateDeviceList", Scripted::kAnyCommand,
           Scripted::Gives(GenTL::bool8_t{1}, GenTL::INFO_DATATYPE_BOOL8));
    EXPECT_THAT([this] { iface->ReEnumerateDevices(nullptr, 0); },
                testing::ThrowsMessage<ZelCameraApi::Internal::zelcam_exception>(
                    "Unspecified runtime error."));
    EXPECT_EQ(producer.GetCount("IFGetDeviceID"), 0U);
}

TEST_F(CountsTest, OfStreams) {
    OpenDevice();
    ReportTooMany("DevGetNumDataStreams");
    EXPECT_EQ(device->GetNumStreams(), 0U);
}

TEST_F(CountsTest, OfUrls) {
    OpenInterface();
    ReportTooMany("GCGetNumPortURLs");
    Answer("GCGetPortURLInfo", Scripted::kAnyCommand, Scripted::Gives("http://camera.xml"));
    ZelCamErr err = kUntouched;
    EXPECT_EQ(iface->GetParameters(&err), nullptr);
    EXPECT_EQ(err, ZelCamErr_NoNodeMap);
}
