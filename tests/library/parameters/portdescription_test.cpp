// How an array finds its description: the URLs of the port and external files.
#include <filesystem>
#include <functional>
#include <sys/stat.h>

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "tests/genapi/description/archives.h"
#include "tests/genapi/support/description.h"
#include "tests/library/support/fakeport.h"
#include "tests/library/support/fixture.h"

using ZelCameraApi::Internal::ArrayImpl;
using ZelCameraApi::Internal::CreateArray;

namespace {

std::string DescriptionOf(const std::string& feature) {
    return test::Document("<Category Name='Root'><pFeature>" + feature +
                          "</pFeature></Category><Integer Name='" + feature +
                          "'><Value>1</Value></Integer><Port Name='Device'/>");
}

// The feature that the array's description has, or the code of the failure.
std::string Outcome(FakePort& port, const char* xmlFile = nullptr) {
    ZelCamErr err = ZelCamErr_Error;
    const std::unique_ptr<ArrayImpl> array = CreateArray(port.Module(), &err, xmlFile);
    if (array == nullptr) return std::to_string(err);
    EXPECT_EQ(err, ZelCamErr_Success);
    ZelGenParam::Category* const root = array->GetRootCategory(&err);
    return root != nullptr ? root->GetParamByIndex(0, &err)->GetName() : "no root";
}

}  // namespace

TEST(PortDescription, UrlsThatLeadNowhereArePassedOver) {
    const std::string xml = DescriptionOf("Chosen");
    const TemporaryFile text("description.txt", xml);
    const std::string folder = TempPath("folder.xml");
    std::filesystem::create_directory(folder);
    const std::string fifo = folder + "/fifo.xml";  // which nobody writes to
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    FakePort port;
    const std::string range = port.Store(xml).substr(std::string("Local:///camera.xml").size());
    const FakePort::Url useless[] = {{"", GenTL::GC_ERR_IO},
                                     {"Local:a.xml" + range, 0, GenTL::INFO_DATATYPE_INT32},
                                     {""},
                                     {"no colon"},
                                     {"Local:"},
                                     {"Local:////"},
                                     {":"},
                                     {"Local:a.xml"},
                                     {"Local:a.xml;1000"},
                                     {"Local:a.txt" + range},
                                     {"Local:a" + range},
                                     {"Local:a.zip" + range},
                                     {"Local:a.xml;;"},
                                     {"Local:a.xml;what;ever"},
                                     {"Local:a.xml;1000;0"},
                                     {"Local:a.xml;1000;20"},
                                     {"Local:a.xml;fff0;20"},
                                     {"Local:a.xml;0;ffffffffffffffff"},
                                     {"http://example.com/a.xml"},
                                     {"ftp:a.xml"},
                                     {"File:/no such file.xml"},
                                     {"File:" + text.Path()},
                                     {"File:" + folder},
                                     {"File:" + fifo},
                                     {"File:/dev/zero"},
                                     {"File:" + std::string(600, '/') + "a.xml"}};
    for (const FakePort::Url& url : useless) {
        port.urls = {url};
        EXPECT_EQ(Outcome(port), "-40201") << url.text;
        port.urls.push_back({port.Store(xml)});
        EXPECT_EQ(Outcome(port), "Chosen") << url.text;
    }
    port.urls.clear();
    EXPECT_EQ(Outcome(port), "-40201");
    std::filesystem::remove_all(folder);
}

TEST(PortDescription, TheFirstUsableUrlWins) {
    const TemporaryFile xml("description.XmL", DescriptionOf("InFile"));
    const TemporaryFile zip("description.zip",
                            test::Archive({{"a.xml", DescriptionOf("InZipFile")}}));
    const std::string packed = test::Archive({{"a.xml", DescriptionOf("InZip")}});
    FakePort port;
    const std::string second = "Local:b.xml;8000;" + [&] {
        const std::string other = DescriptionOf("Second");
        std::copy(other.begin(), other.end(), port.memory.begin() + 0x8000);
        char length[32];
        std::snprintf(length, sizeof length, "0x%zX", other.size());
        return std::string(length);
    }();
    const struct {
        std::string url;
        const char* feature;
    } cases[] = {
        {port.Store(packed, "camera.ZIP"), "InZip"},
        {second, "Second"},
        {"LOCAL" + second.substr(5) + "?SchemaVersion=1.1.0", "Second"},
        {"FILE://" + xml.Path(), "InFile"},
        {"file:" + zip.Path(), "InZipFile"},
        // Of a path 512 characters count.
        {"file:" + std::string(512 - xml.Path().size(), '/') + xml.Path() + "?", "InFile"}};
    for (const auto& each : cases) {
        port.urls = {{each.url}, {second}};
        EXPECT_EQ(Outcome(port), each.feature) << each.url;
    }
}

// The port is read in whole registers, the parser gets the description alone.
TEST(PortDescription, LengthsNeedNotFillRegisters) {
    for (size_t padding = 0; padding < 4; ++padding) {
        FakePort port;
        const std::string xml = DescriptionOf("Feature" + std::string(padding, 'x'));
        port.Announce(xml);
        std::fill_n(port.memory.begin() + FakePort::kDescription + std::ptrdiff_t(xml.size()), 8,
                    uint8_t{'<'});
        EXPECT_EQ(Outcome(port), "Feature" + std::string(padding, 'x'));
        EXPECT_EQ(port.lastSize, (xml.size() + 3) / 4 * 4);
    }
}

TEST(PortDescription, DescriptionsThatCannotBeReadArePassedOver) {
    FakePort port;
    port.urls = {{"Local:a.xml;0;4000001"}, {"Local:a.xml;0;-1"}};
    EXPECT_EQ(Outcome(port), "-40201");
    EXPECT_EQ(port.accesses, 0U);  // no memory for what no description needs
    port.Announce(DescriptionOf("Feature"));
    port.result = GenTL::GC_ERR_TIMEOUT;
    EXPECT_EQ(Outcome(port), "-40201");
    port.result = 0;
    port.actualSize = 100;
    EXPECT_EQ(Outcome(port), "-40201");
}

TEST(PortDescription, ExternalFilesReplaceWhatThePortAnnounces) {
    const std::string xml = DescriptionOf("External");
    const struct {
        const char* name;
        std::string content;
        const char* outcome;
    } cases[] = {{"a.xml", xml, "External"},
                 {"b.xMl", xml, "External"},
                 {"c.xmlx", xml, "External"},
                 {"d.zip", test::Archive({{"a.xml", xml}}), "External"},
                 {"e.txt", xml, "-40201"},
                 {"f", xml, "-40201"},
                 {"g.xml", "no description", "-40207"},
                 {"h.zip", xml, "-40207"}};
    FakePort port;
    port.Announce(DescriptionOf("Announced"));
    for (const auto& each : cases) {
        const TemporaryFile file(each.name, each.content);
        EXPECT_EQ(Outcome(port, file.Path().c_str()), each.outcome) << each.name;
    }
    EXPECT_EQ(Outcome(port, "/no such file.xml"), "-40002");
}

TEST(PortDescription, CreationReportsWhatFailed) {
    const struct {
        std::function<void(FakePort&)> change;
        const char* outcome;
    } cases[] = {
        {[](FakePort& port) { port.notImplemented = true; }, "-40200"},
        {[](FakePort& port) { port.notAvailable = true; }, "-40200"},
        {[](FakePort& port) { port.readable = false; }, "Feature"},
        {[](FakePort& port) { port.readable = port.writable = false; }, "Feature"},
        {[](FakePort& port) { port.failures[GenTL::PORT_INFO_ACCESS_NI] = GenTL::GC_ERR_IO; },
         "-40207"},
        {[](FakePort& port) {
             port.failures[GenTL::PORT_INFO_ACCESS_READ] = GenTL::GC_ERR_ACCESS_DENIED;
         },
         "-40200"},
        {[](FakePort& port) { port.urlsResult = GenTL::GC_ERR_NOT_IMPLEMENTED; }, "-1003"}};
    for (const auto& each : cases) {
        FakePort port;
        port.Announce(DescriptionOf("Feature"));
        each.change(port);
        EXPECT_EQ(Outcome(port), each.outcome) << &each - cases;
    }
}

// Both names have a fallback; the node map knows the one, the port node is found by the other.
TEST(PortDescription, ThePortNamesItsModuleAndItsNode) {
    for (const bool named : {false, true}) {
        FakePort port;
        if (named) {
            port.texts = {{GenTL::PORT_INFO_ID, "cam0"}, {GenTL::PORT_INFO_PORTNAME, "Wire"}};
        } else {
            port.failures[GenTL::PORT_INFO_ID] = GenTL::GC_ERR_IO;
            port.texts[GenTL::PORT_INFO_PORTNAME] = "";
        }
        port.Announce(test::Document(
            test::Named("IntReg", "I",
                        test::RegisterAt(0, 4, "RW", named ? "Wire" : "Device") + test::kLittle) +
            test::Named("Port", named ? "Wire" : "Device", "")));
        const std::unique_ptr<ArrayImpl> array = CreateArray(port.Module(), nullptr, nullptr);
        ASSERT_NE(array, nullptr);
        EXPECT_STREQ(array->GetNodeMap(nullptr)->GetDeviceName().c_str(),
                     named ? "cam0" : "Module");
        EXPECT_EQ(array->SetIntegerValue("I", 7), ZelCamErr_Success);
    }
}
