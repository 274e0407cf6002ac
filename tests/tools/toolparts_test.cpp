// Parts of the tool that need no camera.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/support/temporaryfolder.h"
#include "tools/zelcam/camera/camerachoice.h"
#include "tools/zelcam/camera/description.h"
#include "tools/zelcam/camera/hostaddress.h"
#include "tools/zelcam/camera/producerlist.h"
#include "tools/zelcam/commands/masking.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/frames/framename.h"
#include "tools/zelcam/frames/framestatistics.h"

using namespace ZelTool;
using std::chrono::milliseconds;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

// The message of the failure of `action`, after "<exit code>: "; empty when it does not fail.
template <typename Action>
std::string FailureOf(Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        return std::to_string(static_cast<int>(failure.Code())) + ": " + failure.what();
    }
    return "";
}

struct Arrived {
    uint64_t frameId;
    bool incomplete = false;
};

uint64_t LostAmong(const std::vector<Arrived>& frames) {
    FrameStatistics statistics;
    for (const Arrived& frame : frames)
        statistics.Add(frame.frameId, frame.incomplete, {});
    return statistics.Lost();
}

TEST(FrameStatistics, GapsInTheFrameNumbersAreLostFrames) {
    EXPECT_EQ(LostAmong({{7}, {8}, {9}}), 0U);
    EXPECT_EQ(LostAmong({{7}, {9}, {13}}), 4U);
    // 16-bit numbers wrap from 65535 to 1; 64-bit numbers wrap likewise.
    EXPECT_EQ(LostAmong({{65534}, {65535}, {1}, {2}}), 0U);
    EXPECT_EQ(LostAmong({{65534}, {2}}), 2U);
    EXPECT_EQ(LostAmong({{UINT64_MAX}, {1}}), 0U);
    EXPECT_EQ(LostAmong({{UINT64_MAX - 1}, {3}}), 3U);
    // Longer counters pass the same numbers without a wrap.
    EXPECT_EQ(LostAmong({{65535}, {65536}, {65538}}), 1U);
    // The camera starts to count again, even from a high number.
    EXPECT_EQ(LostAmong({{500}, {0}, {1}}), 0U);
    EXPECT_EQ(LostAmong({{500}, {500}}), 0U);
    EXPECT_EQ(LostAmong({{60000}, {1}, {2}}), 0U);
    EXPECT_EQ(LostAmong({{65534}, {0}}), 0U);
}

// An incomplete frame uses up one number in a gap, whatever number it has.
TEST(FrameStatistics, NumbersOfIncompleteFramesMakeNoGaps) {
    EXPECT_EQ(LostAmong({{5}, {65402, true}, {7}}), 0U);
    EXPECT_EQ(LostAmong({{0, true}, {65403}}), 0U);
    EXPECT_EQ(LostAmong({{5}, {6}, {65402, true}}), 0U);
    EXPECT_EQ(LostAmong({{5}, {0, true}, {6}}), 0U);
    EXPECT_EQ(LostAmong({{5}, {7, true}, {9}}), 2U);
    EXPECT_EQ(LostAmong({{5}, {6, true}, {7}, {9}}), 1U);
    EXPECT_EQ(LostAmong({{65535}, {9, true}, {3}}), 1U);
}

TEST(FrameStatistics, RateIsThatOfTheIntervals) {
    FrameStatistics statistics;
    const FrameStatistics::Clock::time_point start{};
    statistics.Add(1, false, start);
    EXPECT_EQ(statistics.FramesPerSecond(), 0);
    statistics.Add(2, true, start + milliseconds(100));
    statistics.Add(3, true, start + milliseconds(200));
    EXPECT_DOUBLE_EQ(statistics.FramesPerSecond(), 10);
    EXPECT_EQ(statistics.Incomplete(), 2U);
}

TEST(FileNamePattern, FillsInThePlaces) {
    EXPECT_EQ(FileNamePattern("frame-{n}.png").Expand(7, 99, "cam"), "frame-0007.png");
    EXPECT_EQ(FileNamePattern("{n}").Expand(12345, 0, ""), "12345");
    EXPECT_EQ(FileNamePattern("out/{camera}_{frame}").Expand(1, 42, "a/b:c d"), "out/a_b_c_d_42");
    EXPECT_EQ(FileNamePattern("plain.png").Expand(1, 2, "cam"), "plain.png");
}

// All names differ, whatever the camera's numbers are.
TEST(FrameNamer, NamesOfARunDiffer) {
    FrameNamer byFrame(FileNamePattern("out.d/{frame}.raw"), "cam");
    EXPECT_EQ(byFrame.NameOf(1, 7, false), "out.d/7.raw");
    EXPECT_EQ(byFrame.NameOf(2, 8, true), "out.d/8-incomplete-0002.raw");
    EXPECT_EQ(byFrame.NameOf(3, 8, false), "out.d/8.raw");
    EXPECT_EQ(byFrame.NameOf(4, 8, false), "out.d/8-0004.raw") << "a number that repeats";
    EXPECT_EQ(byFrame.NameOf(5, 0, false), "out.d/0-0005.raw") << "a count that starts anew";
    EXPECT_EQ(byFrame.NameOf(6, UINT64_MAX, false), "out.d/18446744073709551615-0006.raw");
    EXPECT_EQ(byFrame.NameOf(7, 9, false), "out.d/9.raw");
    FrameNamer byNumber(FileNamePattern("a.b/.shot{n}"), "cam");
    EXPECT_EQ(byNumber.NameOf(1, 5, true), "a.b/.shot0001-incomplete");
    EXPECT_EQ(byNumber.NameOf(2, 5, false), "a.b/.shot0002");
}

// Whatever the name of a camera is, its files are visible and stay in the folder.
TEST(FileNamePattern, TextsOfCamerasAreHarmless) {
    const auto name = [](const std::string& camera) {
        return FileNamePattern("{camera}").Expand(1, 1, camera);
    };
    EXPECT_EQ(name("../../etc/passwd"), "_._.._etc_passwd");
    EXPECT_EQ(name(".hidden"), "_hidden");
    EXPECT_EQ(name(".."), "_.");
    EXPECT_EQ(name(""), "_");
    EXPECT_EQ(name("Größe.2"), "Größe.2");
    EXPECT_EQ(name("a\x1b[2J\n\xc2\x9b\xe2\x80\xae\xff*"), "a__2J________");
    EXPECT_EQ(name(std::string(99, 'x') + "ö"), std::string(99, 'x')) << "no half characters";
}

TEST(FileNamePattern, RefusesWhatItDoesNotKnow) {
    EXPECT_THAT(FailureOf([] { FileNamePattern("a{count}b"); }), HasSubstr("1: --output"));
    EXPECT_THAT(FailureOf([] { FileNamePattern("a{n"); }), HasSubstr("without }"));
    EXPECT_TRUE(FileNamePattern("{frame}").DistinguishesFrames());
    EXPECT_FALSE(FileNamePattern("{camera}.png").DistinguishesFrames());
}

Camera MakeCamera(size_t number, const char* id, const char* serial, const char* userName) {
    Camera camera{};
    camera.number = number;
    camera.id = id;
    camera.serial = serial;
    camera.userName = userName;
    camera.interfaceId = "eth" + std::to_string(number);
    return camera;
}

class ChooseCameraTest : public ::testing::Test {
  protected:
    size_t NumberOf(const std::string& wanted) { return ChooseCamera(cameras_, wanted).number; }

    std::vector<Camera> cameras_ = {MakeCamera(1, "cam-a", "3", "left"),
                                    MakeCamera(2, "cam-b", "22", "left"),
                                    MakeCamera(3, "cam-c", "33", "")};
};

TEST_F(ChooseCameraTest, ByEveryName) {
    EXPECT_EQ(NumberOf(""), 1U);
    EXPECT_EQ(NumberOf("cam-b"), 2U);
    EXPECT_EQ(NumberOf("33"), 3U);
    EXPECT_EQ(NumberOf("2"), 2U);
    EXPECT_EQ(NumberOf("3"), 1U) << "a serial number goes before the place in the list";
}

TEST_F(ChooseCameraTest, InOneOfTheProducersThatListIt) {
    cameras_.push_back(MakeCamera(4, "cam-a", "3", "left"));
    cameras_[0].producerName = "a.cti";
    cameras_[3].producerName = "b.cti";
    cameras_[3].producer = "/opt/b.cti";
    cameras_[3].simulated = true;
    EXPECT_EQ(NumberOf("b.cti/cam-a"), 4U);
    EXPECT_EQ(NumberOf("/opt/b.cti/left"), 4U);
    EXPECT_EQ(NumberOf("a.cti/3"), 1U);
    EXPECT_THAT(FailureOf([&] { NumberOf("cam-a"); }),
                AllOf(HasSubstr("1  cam-a (serial number 3, \"left\") on eth1 of a.cti\n"),
                      HasSubstr("simulated) on eth4 of b.cti")));
    EXPECT_THAT(FailureOf([&] { NumberOf("b.cti/"); }), HasSubstr("there is no camera"));
    EXPECT_THAT(FailureOf([&] { NumberOf("c.cti/cam-a"); }), HasSubstr("there is no camera"));
}

TEST_F(ChooseCameraTest, FailuresListTheCandidates) {
    EXPECT_THAT(FailureOf([&] { NumberOf("left"); }),
                AllOf(HasSubstr("3: \"left\" matches several"), HasSubstr("cam-a"),
                      HasSubstr("2  cam-b"), HasSubstr("eth2"), Not(HasSubstr("cam-c"))));
    EXPECT_THAT(FailureOf([&] { NumberOf("4"); }), AllOf(HasSubstr("cam-a"), HasSubstr("cam-c")));
}

TEST(TextTable, AlignsCharactersNotBytes) {
    TextTable table({"NAME", "X"});
    table.AddRow({"Größe", "1"});
    table.AddRow({"", "2"});
    std::ostringstream out;
    table.Print(out);
    EXPECT_EQ(out.str(), "  NAME   X\n  Größe  1\n  -      2\n");
}

TEST(TextTable, WrapsWhereItIsTooWide) {
    TextTable table({"NAME", "VALUE", "RANGE"});
    table.AddHeading("a heading stays whole, however long it is");
    table.AddRow({"    Größe", "one two", "aaa|bbb|ccc|ddd|eee"});
    table.AddNote(4, "a note that has more than a line");
    std::ostringstream out;
    table.Print(out, 34);
    EXPECT_EQ(out.str(),
              "  NAME       VALUE    RANGE\n"
              "a heading stays whole, however\nlong it is\n"
              "      Größe  one two  aaa|bbb|ccc|\n"
              "                      ddd|eee\n"
              "    a note that has more than a\n"
              "    line\n");
    std::ostringstream whole;
    table.Print(whole);
    EXPECT_THAT(whole.str(),
                HasSubstr("aaa|bbb|ccc|ddd|eee\n    a note that has more than a line\n"));
    std::ostringstream tiny;
    table.Print(tiny, 1);
    EXPECT_THAT(tiny.str(), HasSubstr("Größe"));
}

TEST(TextTable, ColumnsThatAreTooManyGoOnBelow) {
    TextTable table({"#", "NAME", "MODEL", "KIND"});
    table.AddRow({"1", "camera", "one two", std::string(24, 'k')});
    std::ostringstream out;
    table.Print(out, 24);
    EXPECT_EQ(out.str(), "  #  NAME    MODEL\n      KIND\n  1  camera  one two\n      " +
                             std::string(18, 'k') + "\n      " + std::string(6, 'k') + "\n");
}

TEST(WrapText, LosesNothingButBlanks) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(WrapText("", 5), Lines({""}));
    EXPECT_EQ(WrapText("one two", 7), Lines({"one two"}));
    EXPECT_EQ(WrapText("one  two", 4), Lines({"one", "two"}));
    EXPECT_EQ(WrapText("abcdefgh", 3), Lines({"abc", "def", "gh"}));
    EXPECT_EQ(WrapText("äöüß", 2), Lines({"äö", "üß"}));
    EXPECT_EQ(WrapText("  indented", 6), Lines({"  inde", "nted"}));
    EXPECT_EQ(WrapText("a,b,c", 4), Lines({"a,b,", "c"}));
}

TEST(CollectProducers, FoldersAndDuplicates) {
    const ZelTest::TemporaryFolder temporary;
    const std::string folder = temporary.Path().string();
    for (const char* name : {"/b.cti", "/a.cti", "/c.so"})
        std::ofstream(folder + name) << "x";
    std::filesystem::create_symlink(folder + "/a.cti", folder + "/z.cti");

    const auto producers =
        CollectProducers({folder + "/b.cti"}, "", "::" + folder + ":" + folder + "/none");

    std::vector<std::string> seen;
    for (size_t i = 1; i < producers.size(); ++i) {
        const std::string file = producers[i].file.substr(folder.size());
        seen.push_back(file + " " + producers[i].OriginWords() + " " + producers[i].StateWords());
    }
    EXPECT_THAT(
        seen, testing::ElementsAre("/b.cti --producer loaded", "/a.cti GENICAM_GENTL64_PATH loaded",
                                   "/b.cti GENICAM_GENTL64_PATH skipped",
                                   "/z.cti GENICAM_GENTL64_PATH skipped",
                                   "/none GENICAM_GENTL64_PATH failed"));
    EXPECT_THAT(producers.back().reason, HasSubstr("No such file"));
    EXPECT_EQ(CollectProducers({}, "nosuch.cti", "").back().OriginWords(), "--only");
}

TEST(Description, PlacesInRegistersAndFiles) {
    const auto local = ParseDescriptionUrl("Local:///Cam_1.zip;F0F00000;3bf?SchemaVersion=1.1.0");
    ASSERT_TRUE(local.has_value());
    EXPECT_TRUE(local->local);
    EXPECT_EQ(local->file, "Cam_1.zip");
    EXPECT_EQ(local->address, 0xF0F00000U);
    EXPECT_EQ(local->size, 0x3BFU);
    for (const char* url : {"file:/opt/cam.xml", "File:///opt/cam.xml?SchemaVersion=1.0.0"}) {
        const auto file = ParseDescriptionUrl(url);
        ASSERT_TRUE(file.has_value()) << url;
        EXPECT_FALSE(file->local);
        EXPECT_EQ(file->file, "/opt/cam.xml");
    }
    for (const char* url : {"", "cam.xml", "file:", "file:/proc/self/environ", "file:/cam.xml/",
                            "file:xml", "http://host/cam.xml", "local:cam.xml;10",
                            "local:cam.xml;1x;10", "local:cam.xml;10;fffffffffffffff"}) {
        EXPECT_FALSE(ParseDescriptionUrl(url).has_value()) << url;
    }
}

TEST(Description, FilesAreRegularOnes) {
    const std::filesystem::path folder =
        std::filesystem::path(testing::TempDir()) / ("description" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    const std::string file = folder / "a.xml";
    std::ofstream(file) << "<a/>";
    EXPECT_EQ(ReadDescriptionFile(file), "<a/>");
    std::filesystem::resize_file(file, (uint64_t{32} << 20) + 1);
    const std::string fifo = folder / "fifo.xml";  // which nobody writes to
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& other : {file, fifo, folder.string(), file + "x"})
        EXPECT_THAT(FailureOf([&] { ReadDescriptionFile(other); }), StartsWith("7: ")) << other;
    std::filesystem::remove_all(folder);
}

TEST(Description, TextsAndArchives) {
    EXPECT_EQ(Unpack(std::string("<a/>\0\0\0", 7)), "<a/>");
    EXPECT_THAT(FailureOf([] { Unpack("PK, but no archive"); }), StartsWith("7: "));
}

TEST(HostAddress, OnlyThoseThatACameraCanHave) {
    const auto failure = [](const Network& network, bool any) {
        return FailureOf([&] { CheckNetwork(network, any); });
    };
    const Network usable[] = {{"192.168.0.10", "255.255.255.0", "0.0.0.0"},
                              {"192.168.0.10", "255.255.255.0", "192.168.0.1"},
                              {"10.0.1.0", "255.255.254.0", "10.0.0.255"},
                              {"169.254.255.1", "255.255.0.0", "0.0.0.0"}};
    for (const Network& network : usable)
        EXPECT_EQ(failure(network, false), "") << network.address;

    const struct {
        Network network;
        const char* fault;
    } refused[] = {
        {{"192.168.0.255", "255.255.255.0", "0.0.0.0"}, "broadcast"},
        {{"192.168.0.0", "255.255.255.0", "0.0.0.0"}, "the network itself"},
        {{"0.0.0.0", "255.255.255.0", "0.0.0.0"}, "not a host address"},
        {{"0.0.0.5", "255.255.255.0", "0.0.0.0"}, "not a host address"},
        {{"255.255.255.255", "255.255.255.0", "0.0.0.0"}, "not a host address"},
        {{"224.0.0.1", "255.255.255.0", "0.0.0.0"}, "not a host address"},
        {{"127.0.0.1", "255.0.0.0", "0.0.0.0"}, "not a host address"},
        {{"192.168.0.10", "255.0.255.0", "0.0.0.0"}, "not a network mask"},
        {{"192.168.0.10", "0.0.0.0", "0.0.0.0"}, "not a network mask"},
        {{"192.168.0.10", "255.255.255.255", "0.0.0.0"}, "not a network mask"},
        {{"192.168.0.10", "255.255.255.0", "192.168.1.1"}, "gateway 192.168.1.1 is outside"},
        {{"192.168.0.10", "255.255.255.0", "192.168.0.255"}, "gateway 192.168.0.255 is the broad"}};
    for (const auto& [network, fault] : refused) {
        EXPECT_THAT(failure(network, false), AllOf(StartsWith("1: "), HasSubstr(fault)));
        EXPECT_EQ(failure(network, true), "");
    }
    const Network noAddresses[] = {{"300.1.2.3", "255.0.0.0", "0.0.0.0"},
                                   {"10.1.2.3", "", "0.0.0.0"},
                                   {"10.1.2.3", "255.0.0.0", "10.1"}};
    for (const Network& network : noAddresses)
        EXPECT_THAT(failure(network, true), HasSubstr("of the form"));
}

TEST(Masking, AddressesByFormAndSecretsAnywhere) {
    Mask mask;
    mask.AddSecret("4711");
    mask.AddSecret("4711-B");
    mask.AddSecret("0");
    EXPECT_EQ(mask.Apply("192.168.0.10 00:11:22:aa:BB:cc 00-11-22-AA-BB-CC x4711-B_4711 0 1.2.3"),
              "*** *** *** x***_*** 0 1.2.3");
    EXPECT_TRUE(IsSecretFeature("DeviceSerialNumber"));
    EXPECT_TRUE(IsSecretFeature("GevCurrentIPAddress"));
    EXPECT_FALSE(IsSecretFeature("Width"));
}

}  // namespace
