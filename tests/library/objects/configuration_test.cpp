// Configuration files: saved, loaded in every form, and opened as the camera that they name.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "ZelCameraApi/configurationfile.h"
#include "ZelGenParam/Array.h"
#include "tests/library/support/moduledescription.h"

using Description::Peek;
using Description::Poke;
using testing::HasSubstr;

namespace fs = std::filesystem;

namespace {

const std::string kMagic =
    "# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n"
    "# GenApi persistence file (version 3.0.2)\n";

std::string Features(const std::string& width) {
    return kMagic + "Width\t" + width + "\nHeight\t48\n";
}

std::string Camera(const std::string& attributes, const std::string& inside) {
    return "<Camera " + attributes + ">" + inside + "</Camera>";
}

std::string Config(const std::string& features) {
    return "<Config><![CDATA[" + features + "]]></Config>";
}

class ConfigurationTest : public SessionTest {
  protected:
    void SetUp() override {
        producer.SetDescription(Description::Xml());
        std::filesystem::create_directories(folder);
    }
    void TearDown() override {
        SessionTest::TearDown();
        std::filesystem::remove_all(folder);
    }

    // A file of its own.
    std::string File(const std::string& text) {
        std::string path = folder + "/file" + std::to_string(++files);
        std::ofstream(path) << text;
        return path;
    }

    std::string Read(const std::string& path) {
        std::stringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    size_t CountFiles() const {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder), {}));
    }

    int files = 0;
    const std::string folder = TempPath("configuration");
};

}  // namespace

TEST_F(ConfigurationTest, IsSavedAndLoadedAgain) {
    OpenDevice();
    Poke(producer, Description::Width, 640);
    Poke(producer, Description::Height, 480);
    Poke(producer, Description::PixelFormat, 0x010C0047);
    const std::string file = folder + "/camera.xml";
    EXPECT_EQ(device->SaveConfiguration(file.c_str()), ZelCamErr_Success);

    const std::string text = Read(file);
    EXPECT_THAT(text, HasSubstr("<Camera ifaceId=\"if0\" cameraId=\"cam0\">"));
    EXPECT_THAT(text, HasSubstr("<Config><![CDATA[" + kMagic + "# "));
    EXPECT_THAT(text, HasSubstr("\nWidth\t640\nHeight\t480\nPixelFormat\tMono12p\n]]></Config>"));

    ZelGenParam::Array* const parameters = device->GetCameraParameters(nullptr);
    EXPECT_EQ(parameters->SetIntegerValue("Width", 1), ZelCamErr_Success);
    EXPECT_EQ(parameters->SetEnumValueStr("PixelFormat", "Mono8"), ZelCamErr_Success);
    EXPECT_EQ(device->LoadConfiguration(file.c_str()), ZelCamErr_Success);
    EXPECT_EQ(Peek(producer, Description::Width), 640U);
    EXPECT_EQ(Peek(producer, Description::PixelFormat), 0x010C0047U);

    EXPECT_EQ(device->SaveConfiguration((folder + "/none/camera.xml").c_str()), ZelCamErr_Success);
}

TEST_F(ConfigurationTest, IsLoadedFromEveryForm) {
    OpenDevice();
    const std::string good = Features("32");
    const std::pair<std::string, ZelCamErr> forms[] = {
        {File(Camera("", Config(good))), ZelCamErr_Success},
        {File(good), ZelCamErr_Success},
        {good, ZelCamErr_Success},
        {good.substr(0, good.size() - 1), ZelCamErr_Success},
        {File(Camera("", Config(Features("wide")))), ZelCamErr_LoadConfigFailed},
        {File(Features("wide")), ZelCamErr_LoadConfigFailed},
        {Features("wide"), ZelCamErr_LoadConfigFailed},
        {File("<Kamera>" + Config(good) + "</Kamera>"), ZelCamErr_InvalidFile},
        {File(Camera("", "")), ZelCamErr_InvalidFile},
        {File(Camera("", "<Config/>")), ZelCamErr_InvalidFile},
        {File(Camera("", Config("Width\t32\n"))), ZelCamErr_InvalidFile},
        {File("Width\t32\n"), ZelCamErr_InvalidFile},
        {File(""), ZelCamErr_InvalidFile},
        {folder, ZelCamErr_InvalidFile},
        {"no such file", ZelCamErr_InvalidFile},
        {"", ZelCamErr_InvalidFile}};
    for (const auto& [argument, code] : forms) {
        SCOPED_TRACE(argument);
        Poke(producer, Description::Width, 7);
        Poke(producer, Description::Height, 7);
        EXPECT_EQ(device->LoadConfiguration(argument.c_str()), code);
        EXPECT_EQ(Peek(producer, Description::Width), code == ZelCamErr_Success ? 32U : 7U);
        // A feature that fails does not keep the others from being set.
        EXPECT_EQ(Peek(producer, Description::Height), code == ZelCamErr_InvalidFile ? 7U : 48U);
    }
    EXPECT_EQ(device->LoadConfiguration(nullptr), ZelCamErr_FileOpenFailed);
}

// The write succeeds, and yet the camera keeps its value.
TEST_F(ConfigurationTest, AValueThatTheCameraDoesNotTakeIsAFailure) {
    producer.SetDescription(test::Document(
        "<Category Name='Root'><pFeature>Width</pFeature><pFeature>Height</pFeature></Category>" +
        test::Named("IntReg", "Width",
                    test::RegisterAt(Description::Width, 4) + "<Cachable>NoCache</Cachable>" +
                        test::kLittle) +
        test::IntReg("Height", Description::Height) + test::kPort));
    OpenDevice();
    producer.AddRule({"GCWritePort", Scripted::kAnyCommand, [](const Scripted::Call& call) {
                          Scripted::Reply reply;
                          if (call.number == Description::Width) reply.code = GenTL::GC_ERR_SUCCESS;
                          return reply;
                      }});
    EXPECT_EQ(device->LoadConfiguration(Features("32").c_str()), ZelCamErr_LoadConfigFailed);
    EXPECT_EQ(Peek(producer, Description::Height), 48U);

    // What the engine refuses as a whole.
    std::istringstream text(Features("32"));
    EXPECT_EQ(ZelCameraApi::Internal::LoadFeatures(text, nullptr), ZelCamErr_LoadConfigFailed);
}

TEST_F(ConfigurationTest, LosesNothingBehindTheEndOfACDataSection) {
    const auto text = [](const std::string& name, int address) {
        return test::Named("StringReg", name,
                           test::Element("Streamable", "Yes") + test::RegisterAt(address, 32));
    };
    producer.SetDescription(
        test::Document("<Category Name='Root'><pFeature>A</pFeature><pFeature>Number</pFeature>"
                       "<pFeature>B</pFeature></Category>" +
                       text("A", 0x300) + text("B", 0x340) +
                       test::Named("IntReg", "Number",
                                   test::Element("Streamable", "Yes") + test::RegisterAt(0x380, 4) +
                                       test::kLittle) +
                       test::kPort));
    OpenDevice();
    ZelGenParam::Array* const parameters = device->GetCameraParameters(nullptr);
    ASSERT_NE(parameters, nullptr);
    for (const char* value : {"]]>", "a]]>b]]>", "]]]]>>", "]]", "<![CDATA[", "</Config>&amp;"}) {
        SCOPED_TRACE(value);
        const std::string file = folder + "/camera.xml";
        parameters->SetStringValue("A", value);
        parameters->SetStringValue("B", value);
        parameters->SetIntegerValue("Number", 7);
        EXPECT_EQ(device->SaveConfiguration(file.c_str()), ZelCamErr_Success);
        parameters->SetStringValue("A", "");
        parameters->SetStringValue("B", "");
        parameters->SetIntegerValue("Number", 0);
        EXPECT_EQ(device->LoadConfiguration(file.c_str()), ZelCamErr_Success);
        EXPECT_STREQ(parameters->GetStringValue("A", nullptr), value);
        EXPECT_STREQ(parameters->GetStringValue("B", nullptr), value);
        EXPECT_EQ(parameters->GetIntegerValue("Number", nullptr), 7);
    }
}

TEST_F(ConfigurationTest, IsReplacedAsAWholeOrNotAtAll) {
    OpenDevice();
    Poke(producer, Description::PixelFormat, 0x01080001);
    const std::string file = File("former");
    chmod(file.c_str(), 0640);
    const std::string link = folder + "/link";
    fs::create_symlink(fs::path(file).filename(), link);
    EXPECT_EQ(device->SaveConfiguration(link.c_str()), ZelCamErr_Success);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_THAT(Read(file), HasSubstr("Width\t"));
    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0640));

    const mode_t former = umask(027);
    EXPECT_EQ(device->SaveConfiguration((folder + "/new").c_str()), ZelCamErr_Success);
    umask(former);
    EXPECT_EQ(fs::status(folder + "/new").permissions(), static_cast<fs::perms>(0640));

    fs::create_symlink("nowhere", folder + "/dangling");
    for (const std::string& other : {folder, folder + "/dangling", folder + "/no/file"}) {
        EXPECT_EQ(device->SaveConfiguration(other.c_str()), ZelCamErr_Success);
    }
    EXPECT_EQ(device->SaveConfiguration("/dev/null"), ZelCamErr_Success);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(device->SaveConfiguration(nullptr), ZelCamErr_Success);
    EXPECT_EQ(CountFiles(), 4U) << "temporary files are left";
}

// A disk that is full looks like this, too.
TEST_F(ConfigurationTest, IsKeptWhenThereIsNoRoom) {
    OpenDevice();
    Poke(producer, Description::PixelFormat, 0x01080001);
    const std::string file = File("former");
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small = {100, limit.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const ZelCamErr result = device->SaveConfiguration(file.c_str());
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(result, ZelCamErr_Success);
    EXPECT_EQ(Read(file), "former");
    EXPECT_EQ(CountFiles(), 1U);
}

// A child saves one of two configurations after the other until it is killed.
TEST_F(ConfigurationTest, IsTheFormerOrTheNewOneWhenSavingIsKilled) {
    OpenDevice();
    Poke(producer, Description::PixelFormat, 0x01080001);
    ZelGenParam::Array* const parameters = device->GetCameraParameters(nullptr);
    const std::string file = folder + "/camera.xml";
    const auto save = [&](int64_t width) {
        parameters->SetIntegerValue("Width", width);
        device->SaveConfiguration(file.c_str());
        return Read(file);
    };
    const std::string one = save(1);
    const std::string two = save(1000);
    ASSERT_NE(one, two);
    const char* const more = std::getenv("ZELCAM_KILLS");
    const int rounds = more != nullptr ? std::atoi(more) : 100;
    for (int i = 0; i < rounds; ++i) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;) {
                save(1);
                save(1000);
            }
        }
        // somewhere in its work, at another place each time
        std::this_thread::sleep_for(std::chrono::microseconds(100 * (i % 40)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string found = Read(file);
        ASSERT_TRUE(found == one || found == two) << "round " << i << ": " << found;
    }
}

TEST_F(ConfigurationTest, OpensTheCameraThatItNames) {
    const std::string good = Config(Features("32"));
    const struct {
        std::string text;
        ZelCamErr ofSystem;
        ZelCamErr ofInterface;
        bool opened = false;
    } cases[] = {
        {Camera("ifaceId='if0' cameraId='cam1'", good), ZelCamErr_Success, ZelCamErr_Success, true},
        {Camera("ifaceId='if0' cameraId='cam1'", ""), ZelCamErr_InvalidFile, ZelCamErr_InvalidFile,
         true},
        {Camera("ifaceId='if9' cameraId='cam1'", Config(Features("wide"))), ZelCamErr_NotFound,
         ZelCamErr_LoadConfigFailed, true},
        {Camera("cameraId='cam1'", good), ZelCamErr_InvalidFile, ZelCamErr_Success, true},
        {Camera("ifaceId='if0' cameraId='none'", good), ZelCamErr_GenTL_InvalidId,
         ZelCamErr_GenTL_InvalidId},
        {Camera("ifaceId='if0'", good), ZelCamErr_InvalidFile, ZelCamErr_InvalidFile},
        {"<Kamera ifaceId='if0' cameraId='cam1'/>", ZelCamErr_InvalidFile, ZelCamErr_InvalidFile},
        {"no XML", ZelCamErr_InvalidFile, ZelCamErr_Success}};
    OpenInterface();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const std::string file = File(c.text);
        const auto check = [&](auto& opener, ZelCamErr code, bool expected) {
            ZelCamErr err = ZelCamErr_Error;
            for (ZelCamErr* const out : {&err, static_cast<ZelCamErr*>(nullptr)}) {
                const Holder<ZelCam::Device> opened(
                    opener.CreateDeviceFromConfig(file.c_str(), out));
                ASSERT_EQ(opened != nullptr, expected);
                if (opened != nullptr) {
                    EXPECT_STREQ(opened->GetInfo()->GetID(), "cam1");
                }
            }
            EXPECT_EQ(err, code);
        };
        check(*iface, c.ofInterface, c.opened);
        check(*system, c.ofSystem, c.opened && c.ofSystem == c.ofInterface);
    }
    EXPECT_EQ(producer.GetCount("IFOpenDevice"),
              producer.GetCount("IFOpenDevice", GenTL::DEVICE_ACCESS_EXCLUSIVE));
}

TEST_F(ConfigurationTest, OpensNothingThatCannotBeFound) {
    producer.SetWorld({{"if0", "GEV", {}}});
    OpenInterface();
    const std::string file = File(Camera("ifaceId='if0' cameraId='cam0'", ""));
    Fail("IFGetNumDevices", -1010);  // so the camera is not found
    ZelCamErr err = ZelCamErr_Error;
    EXPECT_EQ(iface->CreateDeviceFromConfig(file.c_str(), &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_NotFound);
    err = ZelCamErr_Error;
    EXPECT_EQ(system->CreateDeviceFromConfig(file.c_str(), &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_NotFound);

    for (const char* missing : {"/no/such/file.xml", static_cast<const char*>(nullptr)}) {
        err = ZelCamErr_Error;
        EXPECT_EQ(iface->CreateDeviceFromConfig(missing, &err), nullptr);
        EXPECT_EQ(err, ZelCamErr_Success);
        EXPECT_EQ(system->CreateDeviceFromConfig(missing, &err), nullptr);
        EXPECT_EQ(err, ZelCamErr_InvalidFile);
    }
}
