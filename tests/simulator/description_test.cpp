// Descriptions of simulated cameras, and what they add to the modules of this side.

#include <filesystem>
#include <set>

#include <gmock/gmock.h>

#include "tests/simulator/cameranodestest.h"
#include "tests/simulator/producer.h"

using namespace GenTL;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

// Reads each feature that can be read, and returns how many there were; those that throw fail the
// test.
size_t ReadAllFeatures(PortNodeMap& map) {
    GENAPI_NAMESPACE::NodeList_t nodes;
    map.Map().GetNodes(nodes);
    size_t numRead = 0;
    for (GENAPI_NAMESPACE::INode* const node : nodes) {
        auto* const value = dynamic_cast<GENAPI_NAMESPACE::IValue*>(node);
        const bool isCategory =
            node->GetPrincipalInterfaceType() == GENAPI_NAMESPACE::intfICategory;
        if (value == nullptr || isCategory || !node->IsFeature()) continue;
        if (!GENAPI_NAMESPACE::IsReadable(node)) continue;
        try {
            value->ToString(true);
            ++numRead;
        } catch (const GENICAM_NAMESPACE::GenericException& error) {
            ADD_FAILURE() << node->GetName().c_str() << ": " << error.GetDescription();
        } catch (const std::runtime_error& error) {  // of the port
            ADD_FAILURE() << node->GetName().c_str() << ": " << error.what();
        }
    }
    return numRead;
}

class DescriptionTest : public CameraTest {
  protected:
    Info UrlInfo(PORT_HANDLE port, uint32_t url, int32_t command) {
        return Ask(p.GCGetPortURLInfo, port, url, command);
    }
};

TEST_F(DescriptionTest, ACameraAnnouncesOtherUrlsFirst) {
    OpenCamera("descriptionUrl='nowhere' descriptionFile='camera.xml'");
    const PORT_HANDLE remote = Remote();
    uint32_t count = 0;
    ASSERT_EQ(p.GCGetNumPortURLs(remote, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 3U);
    EXPECT_EQ(UrlInfo(remote, 0, URL_INFO_URL).Text(), "nowhere");
    EXPECT_EQ(UrlInfo(remote, 0, URL_INFO_SCHEME).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(UrlInfo(remote, 1, URL_INFO_URL).Text(),
              "File://" + (std::filesystem::current_path() / "camera.xml").string());
    EXPECT_EQ(UrlInfo(remote, 1, URL_INFO_FILENAME).Text(), "camera.xml");
    EXPECT_EQ(UrlInfo(remote, 1, URL_INFO_SCHEME).Int32(), URL_SCHEME_FILE);
    EXPECT_EQ(UrlInfo(remote, 1, URL_INFO_FILE_SIZE).code, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(UrlInfo(remote, 2, URL_INFO_SCHEME).Int32(), URL_SCHEME_LOCAL);
}

// Consumers find an entry by its own name; some cannot take the longer name of its node.
TEST_F(DescriptionTest, NamesEntriesPlainly) {
    OpenCamera("");
    const PORT_HANDLE remote = Remote();
    size_t size = UrlInfo(remote, 0, URL_INFO_FILE_SIZE).Uint64();
    std::string text(size, '\0');
    const uint64_t address = UrlInfo(remote, 0, URL_INFO_FILE_REGISTER_ADDRESS).Uint64();
    ASSERT_EQ(p.GCReadPort(remote, address, text.data(), &size), GC_ERR_SUCCESS);
    EXPECT_THAT(text, HasSubstr("<EnumEntry Name=\"BayerRG12Packed\">"));
    EXPECT_THAT(text, Not(HasSubstr("Name=\"EnumEntry_")));
    EXPECT_THAT(text, Not(HasSubstr("<Symbolic>")));
}

// Settings, and selectors with settings under them, but neither the camera's name, which is no
// other camera's, nor the state of the acquisition.
TEST_F(DescriptionTest, MarksWhatAUserSaves) {
    OpenCamera("");
    PortNodeMap map(p, Remote());
    GENAPI_NAMESPACE::NodeList_t all;
    map.Map().GetNodes(all);
    std::set<std::string> saved;
    for (GENAPI_NAMESPACE::INode* const node : all) {
        if (node->IsStreamable()) saved.insert(node->GetName().c_str());
    }
    for (const char* name :
         {"Width", "PixelFormat", "ExposureTime", "GainSelector", "Gain", "TriggerSelector",
          "TriggerMode", "LineSelector", "LineInverter", "EventSelector", "EventNotification",
          "ChunkSelector", "ChunkEnable", "BlackLevelSelector", "GevSCPSPacketSize"})
        EXPECT_EQ(saved.count(name), 1U) << name;
    for (const char* name : {"DeviceUserID", "TLParamsLocked", "UserSetSelector", "UserSetDefault",
                             "DeviceTemperatureSelector", "GevHeartbeatTimeout", "WidthReg"})
        EXPECT_EQ(saved.count(name), 0U) << name;
}

// Of every transport type, since some features are there for one type only.
class AllModulesTest : public DescriptionTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(AllModulesTest, HaveFeaturesThatCanBeRead) {
    OpenCamera("vendor='A &amp; B' userName='&lt;Left&gt;'", GetParam());
    for (const PORT_HANDLE port : {system, interface, device, stream, Remote()}) {
        PortNodeMap map(p, port);
        if (port == device) {
            EXPECT_EQ(map.IsReadable("GevDeviceIPAddress"), GetParam() == std::string("GEV"));
        }
        GENICAM_NAMESPACE::gcstring_vector errors;
        EXPECT_TRUE(map.Map().ParseSwissKnifes(&errors));
        EXPECT_GT(ReadAllFeatures(map), 5U);
    }
}

INSTANTIATE_TEST_SUITE_P(TransportTypes, AllModulesTest,
                         ::testing::Values("GEV", "U3V", "CL", "CXP", "HDSDI", "Custom"));

class IpTest : public SimulatorTest {
  protected:
    // Opens the system with three cameras, one of them with all settings of its own.
    IF_HANDLE OpenNetwork() {
        UseConfig(
            "<ZelSim><Interface id='I' type='GEV'><Camera id='A'/>"
            "<Camera id='B' ip='10.1.2.3' mask='255.0.0.0' gateway='10.0.0.1'/>"
            "</Interface></ZelSim>");
        return OpenInterface("I");
    }
    static std::string Settings(PortNodeMap& map, int64_t device) {
        map.SetInteger("DeviceSelector", device);
        return map.Get("GevDeviceIPAddress") + " " + map.Get("GevDeviceSubnetMask") + " " +
               map.Get("GevDeviceGateway");
    }
    static void Force(PortNodeMap& map, int64_t device, int64_t address) {
        map.SetInteger("DeviceSelector", device);
        map.SetInteger("GevDeviceForceIPAddress", address);
        map.SetInteger("GevDeviceForceSubnetMask", 0xFFFF0000);
        map.SetInteger("GevDeviceForceGateway", 0xC0A80001);
        map.Execute("GevDeviceForceIP");
    }
};

TEST_F(IpTest, CamerasHaveSettingsOfTheirOwnOrOfTheNetwork) {
    PortNodeMap map(p, OpenNetwork());
    EXPECT_EQ(Settings(map, 0), "192.168.10.100 255.255.255.0 0.0.0.0");
    const int64_t first = map.Integer("GevDeviceMACAddress");
    EXPECT_EQ(Settings(map, 1), "10.1.2.3 255.0.0.0 10.0.0.1");
    EXPECT_NE(map.Integer("GevDeviceMACAddress"), first);
    EXPECT_EQ(map.Get("GevInterfaceSubnetIPAddress"), "192.168.10.1");
    EXPECT_EQ(p.Configure("<ZelSim><Interface id='I' type='GEV'><Camera id='A' ip='10.1.2.256'/>"
                          "</Interface></ZelSim>"),
              GC_ERR_INVALID_PARAMETER);
}

TEST_F(IpTest, CanBeForcedWhileTheCameraIsClosed) {
    interface = OpenNetwork();
    PortNodeMap map(p, interface);
    Force(map, 1, 0xC0A81234);
    EXPECT_EQ(Settings(map, 1), "192.168.18.52 255.255.0.0 192.168.0.1");
    EXPECT_EQ(Settings(map, 0), "192.168.10.100 255.255.255.0 0.0.0.0");

    ASSERT_EQ(p.IFOpenDevice(interface, "B", DEVICE_ACCESS_READONLY, &device), GC_ERR_SUCCESS);
    EXPECT_EQ(PortNodeMap(p, device).Get("GevDeviceIPAddress"), "192.168.18.52");
    EXPECT_THROW(Force(map, 1, 0xC0A80002), std::runtime_error);
    uint32_t run = 1;
    size_t size = sizeof(run);
    EXPECT_EQ(p.GCWritePort(interface, 0x420C, &run, &size), GC_ERR_ACCESS_DENIED);
    ASSERT_EQ(p.DevClose(device), GC_ERR_SUCCESS);

    EXPECT_EQ(map.Get("GevDeviceLastForceIPSuccess"), "0");
    Force(map, 1, 0);
    EXPECT_EQ(Settings(map, 1), "10.1.2.3 255.0.0.0 10.0.0.1");
    EXPECT_EQ(map.Get("GevDeviceLastForceIPSuccess"), "1");
}

}  // namespace
