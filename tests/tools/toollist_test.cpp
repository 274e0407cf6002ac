// `zelcam list`, run as a program.

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <sys/file.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

using nlohmann::json;
using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

constexpr const char* kTwoInterfaces = R"(
  <Interface id="eth7" type="GEV" displayName="Left gantry">
    <Camera id="cam-a" vendor="Acme" model="Line 4" serial="0815" userName="left"/>
    <Camera id="cam-b" serial="4711" userName="a &quot;b&quot;"/>
  </Interface>
  <Interface id="usb7" type="U3V"><Camera id="cam-c"/></Interface>)";

class ToolList : public ToolTest {
  protected:
    ToolList() : ToolTest(kTwoInterfaces) {}

    // The only entry for a producer file.
    static json ProducerEntry(const json& listing, const std::string& file) {
        for (const json& entry : listing.at("producers")) {
            if (entry.at("file") == file) return entry;
        }
        return nullptr;
    }
};

TEST_F(ToolList, ShowsEverythingAboutTheCameras) {
    const ToolResult text = Run({"list"});
    EXPECT_EQ(text.exitCode, 0) << text.err;
    EXPECT_THAT(text.out, AllOf(HasSubstr("libZelCTI.cti"), HasSubstr("GigE Vision"),
                                HasSubstr("Left gantry"), HasSubstr("USB3 Vision"),
                                HasSubstr("0815"), HasSubstr("free")));
    EXPECT_THAT(text.out, AllOf(HasSubstr("No real camera was found"),
                                HasSubstr("ZELGEV_INTERFACES=none restricts the search"),
                                HasSubstr("needs a producer")));

    const json listing = Run({"list", "--json"}).Json();
    ASSERT_EQ(listing.at("cameras").size(), 3U);
    const json& camera = listing.at("cameras").at(0);
    EXPECT_EQ(camera.at("id"), "cam-a");
    EXPECT_EQ(camera.at("vendor"), "Acme");
    EXPECT_EQ(camera.at("model"), "Line 4");
    EXPECT_EQ(camera.at("serial"), "0815");
    EXPECT_EQ(camera.at("userName"), "left");
    EXPECT_EQ(camera.at("access"), "free");
    EXPECT_EQ(camera.at("interface"), "eth7");
    EXPECT_EQ(camera.at("simulated"), true) << "whatever vendor and model it has";
    EXPECT_EQ(camera.at("producer"), ZELCAM_DEFAULT_PRODUCER);
    EXPECT_EQ(listing.at("cameras").at(1).at("userName"), "a \"b\"");
    EXPECT_EQ(listing.at("interfaces").at(1).at("type"), "U3V");
    EXPECT_EQ(listing.at("interfaces").at(0).at("cameras"), 2);
    EXPECT_EQ(listing.at("producers").at(0).at("origin"), "default");
    EXPECT_EQ(listing.at("producers").at(0).at("file"), ZELCAM_DEFAULT_PRODUCER);
    EXPECT_EQ(listing.at("interfaces").at(0).at("producer"), ZELCAM_DEFAULT_PRODUCER);
}

// Where cameras are, why they cannot be opened, and what helps.
TEST_F(ToolList, SaysWhyCamerasCannotBeOpened) {
    const std::vector<std::string> only = {"-p", ZELCAM_NETWORK, "--only", ZELCAM_NETWORK};
    const auto run = [&](std::vector<std::string> words) {
        words.insert(words.end(), only.begin(), only.end());
        return Run(words);
    };
    const std::string text = run({"list"}).out;
    EXPECT_THAT(text,
                AllOf(HasSubstr("10.0.0.101 "), HasSubstr("10.0.0.102 "), HasSubstr("192.168.5.5 "),
                      HasSubstr("\n  b-busy: controlled by 10.0.0.7:40000\n"),
                      HasSubstr("\n  c-foreign: 192.168.5.5 is in no network of eth0; `zelcam "
                                "ip force c-foreign auto` gives it an address")));
    EXPECT_THAT(text, Not(HasSubstr("unused")));
    const json cameras = run({"list", "--json"}).Json().at("cameras");
    EXPECT_EQ(cameras.at(1).at("address"), "10.0.0.102");
    EXPECT_EQ(cameras.at(1).at("accessReason"), "controlled by 10.0.0.7:40000");
    EXPECT_EQ(cameras.at(0).at("accessReason"), "");

    const ToolResult opened = run({"features", "c-foreign"});
    EXPECT_EQ(opened.exitCode, 4);
    EXPECT_THAT(opened.err, AllOf(HasSubstr("\"no access\": 192.168.5.5 is in no network"),
                                  HasSubstr("`zelcam ip force c-foreign auto`")));
    const json forced = run({"ip", "force", "c-foreign", "auto", "--json"}).Json();
    EXPECT_EQ(forced.at("address"), "10.0.0.2");
    EXPECT_EQ(forced.at("mask"), "255.255.255.252");
    EXPECT_EQ(run({"ip", "force", "b-busy", "auto"}).exitCode, 8);
    EXPECT_EQ(run({"ip", "force", "c-foreign", "10.0.0.9"}).exitCode, 1) << "without a mask";
}

// Lines wrap on terminals and stay whole in pipes.
TEST_F(ToolList, WrapsOnTerminals) {
    SetVariable("COLUMNS", "40");
    const std::string shown = RunOnTerminal({"list"}).out;
    EXPECT_THAT(shown, HasSubstr("\r\n  camera needs a producer"));
    std::istringstream lines(shown);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 41U) << line;  // with the carriage return
    EXPECT_THAT(Run({"list"}).out, HasSubstr(std::string(ZELCAM_DEFAULT_PRODUCER) + "\n"));
}

// Each broken file is listed with its reason, and the working producers with their cameras.
TEST_F(ToolList, BrokenProducersSinkNobodyElse) {
    Write("text.cti", "this is no library");
    std::filesystem::copy_file(ZELCAM_BROKEN "/foreign.cti", Path("damaged.cti"));
    std::filesystem::resize_file(Path("damaged.cti"), 300);
    const std::string missing = Path("missing.cti");
    const std::string lists = ZELCAM_BROKEN "/nolist.cti";
    SetVariable("GENICAM_GENTL64_PATH", folder_ + ":/no/such/folder");
    std::vector<std::string> words = {"list", "--json"};
    for (const std::string& file : {missing, folder_})
        words.insert(words.end(), {"-p", file});
    for (const char* name :
         {"refuses", "nolist", "foreign", "crashload", "crashinit", "crashopen", "quitinit"}) {
        words.insert(words.end(), {"-p", std::string(ZELCAM_BROKEN "/") + name + ".cti"});
    }
    const ToolResult result = Run(words);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const json listing = result.Json();
    EXPECT_EQ(listing.at("cameras").size(), 3U);
    const std::map<std::string, std::string> reasons = {
        {missing, "there is no such file"},
        {ZELCAM_BROKEN "/refuses.cti",
         "another program uses it (-1004): the licence is on holiday"},
        {lists, "cannot list its interfaces"},
        {ZELCAM_BROKEN "/foreign.cti", "not a GenTL producer"},
        {ZELCAM_BROKEN "/crashload.cti", "it crashes in the loader: Segmentation fault"},
        {ZELCAM_BROKEN "/quitinit.cti",
         "it ends the program in GCInitLib, with exit code 3; its last words: the driver is "
         "missing"},
        {ZELCAM_BROKEN "/crashinit.cti", "it crashes in GCInitLib"},
        {ZELCAM_BROKEN "/crashopen.cti", "it crashes in TLOpen"},
        {folder_, "it is a folder"},
        {Path("text.cti"), "not a shared library"},
        {Path("damaged.cti"), "damaged.cti"},
        {"/no/such/folder", "No such file or directory"}};
    for (const auto& [file, reason] : reasons) {
        const json entry = ProducerEntry(listing, file);
        ASSERT_FALSE(entry.is_null()) << file;
        EXPECT_EQ(entry.at("state"), "failed") << file;
        EXPECT_THAT(entry.at("reason").get<std::string>(), HasSubstr(reason)) << file;
    }
    const std::string text = Run({"list", "-p", lists, "-p", missing}).out;
    EXPECT_THAT(text, AllOf(HasSubstr(missing + ": there is no such file"), HasSubstr("cam-c")));
}

class ProducerTrialTest : public ToolList {
  protected:
    // Whether no producer hangs any more. With `wait` this waits until the last one has ended.
    bool AllEnded(bool wait) const {
        const int file = open(Path("hanging.lock").c_str(), O_RDONLY);
        const int locked = flock(file, wait ? LOCK_EX : LOCK_EX | LOCK_NB);
        close(file);
        return locked == 0;
    }
};

TEST_F(ProducerTrialTest, HangingProducersSinkNobodyElse) {
    const std::map<std::string, std::string> places = {
        {"load", "the loader"}, {"init", "GCInitLib"}, {"open", "TLOpen"}};
    std::vector<std::string> words = {"list", "--json", "--load-timeout", "3000"};
    for (const auto& [name, place] : places)
        words.insert(words.end(), {"-p", ZELCAM_BROKEN "/apart/hang" + name + ".cti"});
    const json listing = Run(words).Json();
    EXPECT_EQ(listing.at("cameras").size(), 3U);
    for (const auto& [name, place] : places) {
        const json entry = ProducerEntry(listing, ZELCAM_BROKEN "/apart/hang" + name + ".cti");
        EXPECT_EQ(entry.at("state"), "failed");
        EXPECT_THAT(entry.at("reason").get<std::string>(),
                    HasSubstr("it hangs: no return from " + place + " within 3000 ms"));
    }
    EXPECT_TRUE(AllEnded(false));
}

// A killed program cannot end the trial itself; the trial ends soon afterwards.
TEST_F(ProducerTrialTest, EndsWithTheProgram) {
    const std::string hanging = ZELCAM_BROKEN "/apart/hanginit.cti";
    for (const auto& [signal, exitCode] : std::map<int, int>{{SIGINT, 130}, {SIGKILL, -1}}) {
        std::filesystem::remove(Path("hanging"));
        const FileWatch watch(folder_);
        const int process = Start({"list", "-p", hanging, "--load-timeout", "600000"});
        ASSERT_TRUE(watch.Await("hanging")) << signal;
        kill(process, signal);
        EXPECT_EQ(Wait(process).exitCode, exitCode) << signal;
        EXPECT_TRUE(AllEnded(exitCode < 0)) << signal;
    }
}

// The program takes the recording camera for a real one.
TEST_F(ToolList, RealCamerasComeFirst) {
    const std::string recording = ZELCAM_RECORDING "/libZelCTI.cti";
    const ToolResult text = Run({"list", "-p", recording});
    EXPECT_THAT(text.out, Not(HasSubstr("What to check")));
    const json listed = Run({"list", "--json", "-p", recording}).Json().at("cameras");
    ASSERT_EQ(listed.size(), 4U);
    EXPECT_EQ(listed.at(0).at("simulated"), false);
    EXPECT_EQ(listed.at(0).at("producer"), recording);
    EXPECT_EQ(listed.at(1).at("id"), "cam-a");
    EXPECT_EQ(Run({"list", "--json", "-p", recording, "--no-simulated"}).Json()["cameras"].size(),
              1U);
    EXPECT_EQ(Run({"list", "--json", "-p", recording, "--simulated"}).Json()["cameras"].size(), 3U);
    const json only = Run({"list", "--json", "--only", recording}).Json();
    ASSERT_EQ(only.at("cameras").size(), 1U);
    EXPECT_EQ(only.at("cameras").at(0).at("producer"), recording);
    EXPECT_EQ(Run({"list", "--simulated", "--no-simulated"}).exitCode, 1);
}

TEST_F(ToolList, FirstCameraIsSimulatedOnlyWhereNoneCanBeReal) {
    const std::string real = ZELCAM_BROKEN "/apart/nocamera.cti";
    const ToolResult alone = Run({"grab", "-f", "none"});
    EXPECT_EQ(alone.exitCode, 0) << alone.err;
    EXPECT_THAT(alone.err, HasSubstr("note: camera cam-a is simulated"));
    const ToolResult refused = Run({"grab", "-f", "none", "-p", real});
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_THAT(refused.err, HasSubstr("no real camera was found"));
    for (const std::vector<std::string>& asked :
         {std::vector<std::string>{"--simulated"}, std::vector<std::string>{"cam-a"}}) {
        std::vector<std::string> words = {"grab", "-f", "none", "-p", real};
        words.insert(words.end(), asked.begin(), asked.end());
        const ToolResult grabbed = Run(words);
        EXPECT_EQ(grabbed.exitCode, 0);
        EXPECT_EQ(grabbed.err, "");
        EXPECT_THAT(grabbed.out, HasSubstr("simulated"));
    }
}

TEST_F(ToolList, FileOfAnotherMachine) {
    // The ELF header of an unsupported machine.
    std::string header(64, '\0');
    header.replace(0, 7,
                   "\x7f"
                   "ELF\x02\x01\x01");
    header[18] = '\x2a';
    Write("other.cti", header);
    const json listing = Run({"list", "--json", "-p", "other.cti"}).Json();
    const json entry = ProducerEntry(listing, Path("other.cti"));
    ASSERT_FALSE(entry.is_null()) << "relative names are taken from the working folder";
    EXPECT_THAT(entry.at("reason").get<std::string>(), HasSubstr("ELF machine 42"));
}

TEST_F(ToolList, NamesTheProducerOfAnInterface) {
    std::filesystem::create_directory(Path("more"));
    const std::string second = Path("more/second.cti");
    std::filesystem::copy_file(ZELCAM_DEFAULT_PRODUCER, second);
    std::filesystem::create_symlink(ZELCAM_DEFAULT_PRODUCER, Path("more/same.cti"));
    SetVariable("GENICAM_GENTL64_PATH", Path("more"));
    const json listing = Run({"list", "--json"}).Json();
    ASSERT_EQ(listing.at("interfaces").size(), 4U);
    EXPECT_EQ(listing.at("interfaces").at(1).at("producer"), ZELCAM_DEFAULT_PRODUCER);
    EXPECT_EQ(listing.at("interfaces").at(2).at("producer"), second);
    EXPECT_EQ(listing.at("cameras").size(), 6U);
    EXPECT_EQ(ProducerEntry(listing, Path("more/same.cti")).at("state"), "skipped");
    EXPECT_EQ(Run({"list", "--json", "--only", "second.cti"}).Json().at("cameras").size(), 3U);
    EXPECT_THAT(Run({"list", "--names"}).out, HasSubstr("second.cti/cam-a\n"));
    const ToolResult chosen = Run({"get", "second.cti/cam-a", "Width"});
    EXPECT_EQ(chosen.out, "Width=640\n") << chosen.err;
}

TEST_F(ToolList, NoCameraSaysWhatToCheck) {
    SetCameras(R"(<Interface id="usb0" type="U3V"/>)");
    const ToolResult result = Run({"list", "-p", ZELCAM_BROKEN "/apart/nocamera.cti"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.out, AllOf(HasSubstr("No camera was found"), HasSubstr("UDP port 3956"),
                                  Not(HasSubstr("lsusb"))));
    EXPECT_EQ(Run({"list", "--json"}).Json().at("cameras"), json::array());
}

// The trial gives a reason; the library only says that there is no System.
TEST_F(ToolList, DefaultProducerThatDoesNotStart) {
    SetCameras("<Nonsense/>");
    const ToolResult result = Run({"list", "--json", "-p", ZELCAM_BROKEN "/apart/nocamera.cti"});
    EXPECT_EQ(result.exitCode, 2);
    const json producers = result.Json().at("producers");
    EXPECT_EQ(producers.at(0).at("state"), "failed");
    EXPECT_THAT(producers.at(0).at("reason").get<std::string>(), HasSubstr("cameras.xml"));
    EXPECT_EQ(producers.at(1).at("state"), "skipped");
    EXPECT_THAT(Run({"list"}).out,
                AllOf(HasSubstr("unset ZELSIM_CONFIG"), Not(HasSubstr("LD_LIBRARY_PATH"))));
}

// A camera may have any name; JSON shows it unchanged.
TEST_F(ToolList, NamesOfCamerasGiveNoOrders) {
    SetCameras(R"(<Interface id="eth0" type="GEV">
        <Camera id="evil&#10;b" serial="1" width="64" height="48" frameRate="0"
                userName="a&#27;[2J&#10;b"/></Interface>)");
    for (const std::vector<std::string>& command : {std::vector<std::string>{"list"},
                                                    {"grab", "-f", "none"},
                                                    {"grab", "nobody"},
                                                    {"report"},
                                                    {"features", "1"},
                                                    {"get", "1", "DeviceUserID"},
                                                    {"list", "--names"}}) {
        const ToolResult result = Run(command);
        const std::string all = result.out + result.err;
        EXPECT_THAT(all, Not(AnyOf(HasSubstr("\x1b"), HasSubstr("\nb")))) << command.front();
        if (command.back() == "--names") continue;
        EXPECT_THAT(all, HasSubstr("a\\x1b[2J\\nb")) << command.front();
    }
    EXPECT_THAT(RunOnTerminal({"get", "1", "--simulated", "--plain", "DeviceUserID"}).out,
                StartsWith("a\\x1b[2J"));
    EXPECT_THAT(Run({"get", "1", "--plain", "DeviceUserID"}).out, StartsWith("a\x1b[2J"))
        << "a program gets it as it is";
    EXPECT_EQ(Run({"list", "--json"}).Json().at("cameras").at(0).at("userName"), "a\x1b[2J\nb");
}

TEST_F(ToolList, NamesForTheShell) {
    EXPECT_EQ(Run({"list", "--names"}).out, "cam-a\n0815\nleft\ncam-b\n4711\na \"b\"\ncam-c\n0\n");
    SetCameras(R"(<Interface id="usb0" type="U3V"><Camera id="same" serial="same"/></Interface>)");
    EXPECT_EQ(Run({"list", "--names"}).out, "same\n");
}

// The loader finds this default producer first; it loads and starts but does not work.
TEST_F(ToolList, DefaultProducerThatCannotListInterfaces) {
    std::filesystem::copy_file(ZELCAM_BROKEN "/nolist.cti", Path("libZelCTI.cti"));
    SetVariable("LD_LIBRARY_PATH", folder_);
    const ToolResult result = Run({"list", "--json"});
    EXPECT_EQ(result.exitCode, 2);
    const json producer = result.Json().at("producers").at(0);
    EXPECT_EQ(producer.at("file"), Path("libZelCTI.cti"));
    EXPECT_THAT(producer.at("reason").get<std::string>(), HasSubstr("cannot list its interfaces"));
    EXPECT_THAT(Run({"list"}).out, HasSubstr("LD_LIBRARY_PATH"));
}

// The words that bash offers for the last of `words`.
class Completion : public ToolList {
  protected:
    std::string Offers(const std::string& words) {
        const ToolResult result =
            Run({"-c", "source " ZELCAM_COMPLETION "; COMP_WORDS=(" ZELCAM_TOOL " " + words +
                           "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zelcam; "
                           "printf '%s\\n' \"${COMPREPLY[@]}\""},
                "/bin/bash");
        return result.out + result.err;
    }
};

TEST_F(Completion, CommandsOptionsCamerasAndFiles) {
    EXPECT_THAT(Offers("''"), AllOf(StartsWith("list\ngrab\n"), HasSubstr("\nreport\n")));
    EXPECT_EQ(Offers("config s"), "save\n");
    EXPECT_EQ(Offers("config load cam-a cam"), "cameras.xml\n");
    EXPECT_EQ(Offers("get cam-a Hei"), "HeightMax\nHeight\n");
    EXPECT_EQ(Offers("grab cam-"), "cam-a\ncam-b\ncam-c\n");
    EXPECT_EQ(Offers("grab a"), "a\\ \\\"b\\\"\n") << "names with blanks are quoted";
    EXPECT_EQ(Offers("grab --co"), "--count\n");
    EXPECT_EQ(Offers("grab -f r"), "raw\n");
    EXPECT_EQ(Offers("list --producer cam"), "cameras.xml\n");
    SetVariable("ZELSIM_CONFIG", "");
    EXPECT_EQ(Offers("grab U"), "\n") << "nobody asked for simulated cameras";
    EXPECT_EQ(Offers("grab --simulated U"), "U3V0-CAM0\n");
    EXPECT_EQ(Offers("get --simulated U3V0-CAM0 Hei"), "HeightMax\nHeight\n");
}

// Completion offers exactly the options of the program, and the help fits a terminal.
TEST_F(Completion, KnowsEveryOption) {
    for (const std::string command :
         {"list", "grab", "features", "get", "set", "exec", "watch", "events", "read", "write",
          "firmware", "xml", "report", "check", "config save", "config load", "ip show",
          "ip force"}) {
        const size_t blank = command.find(' ');
        std::vector<std::string> words = {command.substr(0, blank)};
        if (blank != std::string::npos) words.push_back(command.substr(blank + 1));
        words.emplace_back("--help");
        const std::string help = Run(words).out;
        const std::string offered = "\n" + Offers(command + " --");
        size_t options = 0;
        std::istringstream lines(help);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80U) << command << ": " << line;
            const size_t at = line.find("--");
            if (at != 2 && at != 5) continue;  // a line of examples
            const std::string option = line.substr(at, line.find_first_of(" =", at) - at);
            EXPECT_THAT(offered, HasSubstr("\n" + option + "\n")) << command;
            ++options;
        }
        EXPECT_GE(options, 4U);
    }
}

TEST_F(ToolList, HelpIsAWordToo) {
    EXPECT_EQ(Run({"help"}).out, Run({"--help"}).out);
    EXPECT_EQ(Run({"help", "ip", "force"}).out, Run({"ip", "force", "--help"}).out);
    EXPECT_EQ(Run({"help", "nonsense"}).exitCode, 1);
}

TEST_F(ToolList, WrongUse) {
    const ToolResult unknown = Run({"frobnicate"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_THAT(unknown.err, HasSubstr("no command \"frobnicate\"; see zelcam --help"));
    const ToolResult below = Run({"config", "compare", "1", "camera.xml"});
    EXPECT_EQ(below.exitCode, 1);
    EXPECT_THAT(below.err, HasSubstr("no command \"compare\"; see zelcam config --help"));
    EXPECT_EQ(Run({}).exitCode, 1);
    const ToolResult wrong = Run({"list", "--search", "soon"});
    EXPECT_EQ(wrong.exitCode, 1);
    EXPECT_THAT(wrong.err, StartsWith("zelcam: --search: "));
    EXPECT_EQ(Run({"list", "--help"}).exitCode, 0);
    EXPECT_THAT(Run({"--help"}).out, HasSubstr("Exit codes"));
    EXPECT_THAT(Run({"--version"}).out, StartsWith("zelcam " ZELCAM_VERSION));
}

}  // namespace
