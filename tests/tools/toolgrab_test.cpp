// `zelcam grab`, run as a program against simulated cameras.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <sstream>

#include <gmock/gmock.h>

#include "tests/support/picturereader.h"
#include "tests/tools/toolrun.h"

using nlohmann::json;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

// Colour bars of 80 x 64 pixels, ten pixels wide; lines 32 to 47 show only the bars. The library
// sorts cameras by identifier.
constexpr const char* kCameras = R"(
  <Interface id="eth0" type="GEV">
    <Camera id="a-gray" serial="101" userName="pair" width="80" height="64" pixelFormat="Mono8"
            frameRate="0" xPadding="3" imageOffset="16"/>
    <Camera id="a-gray12" serial="102" userName="pair" width="80" height="64" pixelFormat="Mono12p"
            frameRate="0"/>
    <Camera id="bayer" serial="103" width="80" height="64" pixelFormat="BayerRG8" frameRate="0"/>
    <Camera id="bgr" serial="104" width="80" height="64" pixelFormat="BGR8" frameRate="0"/>
    <Camera id="yuv" serial="105" width="80" height="64" pixelFormat="YUV422_8" frameRate="0"/>
    <Camera id="silent" serial="106" dropEvery="1"/>
    <Camera id="three-d" serial="110" width="80" height="64" pixelFormat="BGR8" frameRate="0"
            xPadding="3" payload="GenDC"/>
    <Camera id="faulty" serial="107" width="80" height="64" frameRate="0" dropEvery="4"
            incompleteEvery="3"/>
    <Camera id="sparse" serial="108" width="80" height="64" frameRate="0.0001"/>
    <Camera id="deaf" serial="109" streams="0"/>
  </Interface>)";

class ToolGrab : public ToolTest {
  protected:
    ToolGrab() : ToolTest(kCameras) {}
    bool Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }
};

// The middle of each bar: white, yellow, cyan, green, magenta, red, blue, black.
std::vector<std::vector<uint16_t>> Bars(const PictureFile& picture) {
    std::vector<std::vector<uint16_t>> bars;
    for (size_t x = 5; x < 80; x += 10)
        bars.push_back(picture.Pixel(x, 40));
    return bars;
}

const std::vector<std::vector<uint16_t>> kGrayBars = {{255}, {226}, {179}, {150},
                                                      {105}, {76},  {29},  {0}};
const std::vector<std::vector<uint16_t>> kColourBars = {
    {255, 255, 255}, {255, 255, 0}, {0, 255, 255}, {0, 255, 0},
    {255, 0, 255},   {255, 0, 0},   {0, 0, 255},   {0, 0, 0}};

TEST_F(ToolGrab, OnePictureOfTheFirstCameraByDefault) {
    const ToolResult result = Run({"grab", "--simulated"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "") << "no progress bar outside of a terminal";
    EXPECT_THAT(result.out, AllOf(HasSubstr("80 x 64 Mono8"), HasSubstr("frame-0001.png")));
    EXPECT_EQ(Bars(ReadPngFile(Path("frame-0001.png"))), kGrayBars);
    EXPECT_FALSE(Exists("frame-0002.png"));
}

TEST_F(ToolGrab, PicturesOfEveryKindOfFormat) {
    for (const char* camera : {"bayer", "bgr", "three-d"}) {
        const ToolResult result = Run({"grab", camera, "-o", "{camera}.png"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(Bars(ReadPngFile(Path(std::string(camera) + ".png"))), kColourBars) << camera;
    }
    EXPECT_EQ(Run({"grab", "a-gray12", "-o", "gray12.png"}).exitCode, 0);
    const PictureFile deep = ReadPngFile(Path("gray12.png"));
    EXPECT_EQ(deep.depth, 16U);
    EXPECT_EQ(deep.Pixel(5, 40)[0], 65535);
    EXPECT_NEAR(deep.Pixel(55, 40)[0], 76 * 257, 20) << "red";
    EXPECT_EQ(deep.Pixel(75, 40)[0], 0);
    EXPECT_EQ(Run({"grab", "yuv", "-o", "yuv.png"}).exitCode, 0);
    const auto bars = Bars(ReadPngFile(Path("yuv.png")));
    for (size_t i = 0; i < bars.size(); ++i) {
        for (size_t channel = 0; channel < 3; ++channel) {
            EXPECT_NEAR(bars[i][channel], kColourBars[i][channel], 2) << "bar " << i;
        }
    }
}

// Raw lines include the padding, but not the offset in the buffer.
TEST_F(ToolGrab, RawBytesAndTheirDescription) {
    const ToolResult result = Run({"grab", "a-gray", "-o", "{camera}-{frame}.raw"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const std::string bytes = Read("a-gray-0.raw");
    ASSERT_EQ(bytes.size(), size_t{83} * 63 + 80);
    EXPECT_EQ(bytes.substr(size_t{83} * 40, 10), std::string(10, '\xFF'));
    EXPECT_EQ(bytes.substr(size_t{83} * 40 + 70, 10), std::string(10, '\0'));
    EXPECT_THAT(Read("a-gray-0.raw.txt"),
                AllOf(HasSubstr("pixel format: Mono8\n"), HasSubstr("number: 0x01080001\n"),
                      HasSubstr("width: 80\n"), HasSubstr("height: 64\n"),
                      HasSubstr("bytes per line: 83\n"), HasSubstr("bytes: 5309\n"),
                      HasSubstr("frame: 0\n"), HasSubstr("incomplete: no\n")));
}

TEST_F(ToolGrab, FormatsByTheEndingOfTheName) {
    for (const char* name : {"a.tif", "b.TIFF"}) {
        EXPECT_EQ(Run({"grab", "bayer", "-o", name}).exitCode, 0);
        EXPECT_EQ(Bars(ReadTiffFile(Path(name))), kColourBars);
    }
    EXPECT_EQ(Run({"grab", "a-gray12", "-o", "deep", "-f", "tiff"}).exitCode, 0);
    EXPECT_EQ(ReadTiffFile(Path("deep")).Pixel(5, 40)[0], 65535);
    EXPECT_EQ(Run({"grab", "bgr", "-o", "c.jpg"}).exitCode, 0);
    EXPECT_NEAR(ReadJpegFile(Path("c.jpg")).Pixel(5, 40)[1], 255, 5);
    EXPECT_NEAR(ReadJpegFile(Path("c.jpg")).Pixel(65, 40)[1], 0, 5);
    EXPECT_EQ(Run({"grab", "a-gray", "-o", "no-ending"}).exitCode, 0);
    EXPECT_EQ(Bars(ReadPngFile(Path("no-ending"))), kGrayBars);
    const ToolResult unknown = Run({"grab", "-o", "x.bmp"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_THAT(unknown.err, AllOf(HasSubstr(".bmp"), HasSubstr(".png, .tif, .jpg or .raw")));
    EXPECT_FALSE(Exists("x.bmp"));
}

TEST_F(ToolGrab, StandardOutputGetsTheBytesAndNothingElse) {
    const ToolResult raw = Run({"grab", "a-gray", "-n", "3", "-f", "raw", "-o", "-"});
    EXPECT_EQ(raw.exitCode, 0) << raw.err;
    ASSERT_EQ(raw.out.size(), 3 * (size_t{83} * 63 + 80));
    EXPECT_EQ(raw.out.substr(size_t{83} * 40, 10), std::string(10, '\xFF'));
    EXPECT_THAT(raw.err, AllOf(HasSubstr("Frames      3"), HasSubstr("to standard output")));
    const ToolResult png = Run({"grab", "a-gray", "-o", "-"});
    EXPECT_EQ(Bars(ReadPng({png.out.begin(), png.out.end()})), kGrayBars);
    const ToolResult failed = Run({"grab", "silent", "-t", "100", "-o", "-"});
    EXPECT_EQ(failed.exitCode, 6);
    EXPECT_EQ(failed.out, "");
    EXPECT_EQ(Run({"grab", "-o", "-", "--json"}).exitCode, 1);
    EXPECT_EQ(Run({"grab", "a-gray", "bgr", "-o", "-"}).exitCode, 1);
    const ToolResult watched = RunOnTerminal({"grab", "-o", "-"});
    EXPECT_EQ(watched.exitCode, 1);
    EXPECT_THAT(watched.out, AllOf(HasSubstr("terminal"), Not(HasSubstr("PNG"))));
}

// Before grabbing if the names are known, and always before a file is lost.
TEST_F(ToolGrab, FilesThatExistStay) {
    Write("frame-0003.png", "precious");
    Write("2.raw.txt", "precious");
    const ToolResult known = Run({"grab", "-n", "3"});
    EXPECT_EQ(known.exitCode, 7);
    EXPECT_THAT(known.err, AllOf(HasSubstr("frame-0003.png"), HasSubstr("--overwrite")));
    EXPECT_FALSE(Exists("frame-0001.png"));
    const ToolResult late = Run({"grab", "a-gray", "-n", "5", "-o", "{frame}.raw"});
    EXPECT_EQ(late.exitCode, 7);
    EXPECT_TRUE(Exists("1.raw"));
    EXPECT_FALSE(Exists("2.raw")) << "nor is the first of two files left alone";
    EXPECT_EQ(Read("frame-0003.png") + Read("2.raw.txt"), "preciousprecious");
    EXPECT_EQ(Run({"grab", "-n", "3", "--overwrite"}).exitCode, 0);
    EXPECT_EQ(Bars(ReadPngFile(Path("frame-0003.png"))), kGrayBars);
}

// The camera tears the frames 2, 5, 8, ... and loses 3, 7, ...
TEST_F(ToolGrab, IncompleteFramesAreMarkedInNamesAndLog) {
    const ToolResult result =
        Run({"grab", "faulty", "-n", "6", "-o", "{frame}.raw", "--log", "frames.csv"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    for (const char* name :
         {"0.raw", "1.raw", "2-incomplete-0003.raw", "4.raw", "5-incomplete-0005.raw", "6.raw"})
        EXPECT_TRUE(Exists(name)) << name;
    std::istringstream log(Read("frames.csv"));
    std::string line;
    std::getline(log, line);
    EXPECT_EQ(line,
              "camera,number,arrived,frame_id,timestamp,width,height,pixel_format,bytes,complete,"
              "file");
    const char* const ends[] = {"yes,0.raw",
                                "yes,1.raw",
                                "no,2-incomplete-0003.raw",
                                "yes,4.raw",
                                "no,5-incomplete-0005.raw",
                                "yes,6.raw"};
    for (size_t i = 0; i < std::size(ends); ++i) {
        std::getline(log, line);
        const std::string begin = "faulty," + std::to_string(i + 1) + ",";
        EXPECT_THAT(line, AllOf(StartsWith(begin), HasSubstr(",Mono8,"), EndsWith(ends[i])));
    }
    EXPECT_FALSE(std::getline(log, line)) << line;
}

TEST_F(ToolGrab, SeveralCamerasAtOnce) {
    const json report =
        Run({"grab", "a-gray", "104", "-n", "2", "--log", "all.csv", "--json"}).Json();
    EXPECT_EQ(report.at("exitCode"), 0) << report;
    EXPECT_EQ(report.at("cameras").at(0).at("camera"), "a-gray");
    EXPECT_EQ(report.at("cameras").at(1).at("camera"), "bgr");
    EXPECT_EQ(report.at("cameras").at(1).at("written"), 2);
    EXPECT_EQ(Bars(ReadPngFile(Path("a-gray-0002.png"))), kGrayBars);
    EXPECT_EQ(Bars(ReadPngFile(Path("bgr-0002.png"))), kColourBars);
    const std::string log = Read("all.csv");
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 5);
    // A silent camera does not affect the other one.
    const ToolResult half = Run({"grab", "bgr", "silent", "-t", "300", "-o", "{camera}.png"});
    EXPECT_EQ(half.exitCode, 6);
    EXPECT_TRUE(Exists("bgr.png"));
    EXPECT_THAT(half.err, HasSubstr("no frame within 300 ms"));
    EXPECT_EQ(Run({"grab", "bgr", "104"}).exitCode, 1) << "the same camera";
    EXPECT_EQ(Run({"grab", "bgr", "bayer", "-o", "{n}.png"}).exitCode, 1) << "the same names";
}

TEST_F(ToolGrab, SoftwareTriggers) {
    const std::vector<std::string> set = {"grab",  "bayer",
                                          "-n",    "3",
                                          "-f",    "none",
                                          "--set", "TriggerMode=On",
                                          "--set", "TriggerSource=Software"};
    const ToolResult silent = Run({"grab", "bayer", "--trigger"});
    EXPECT_EQ(silent.exitCode, 8);
    EXPECT_THAT(silent.err,
                AllOf(HasSubstr("TriggerMode is Off"), HasSubstr("--set TriggerMode=On "
                                                                 "--set TriggerSource")));
    for (const std::vector<std::string>& how :
         {std::vector<std::string>{"--trigger"}, {"--trigger-rate", "50.5"}}) {
        std::vector<std::string> command = set;
        command.insert(command.end(), how.begin(), how.end());
        const ToolResult result = Run(command);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_THAT(result.out, AllOf(HasSubstr("Frames      3"), HasSubstr("\nTriggers    ")));
    }
    const ToolResult lost =
        Run({"grab", "silent", "--trigger", "-t", "300", "-f", "none", "--set", "TriggerMode=On"});
    EXPECT_EQ(lost.exitCode, 6);
    EXPECT_THAT(lost.err, AllOf(HasSubstr("ok  TriggerMode is On for FrameStart, TriggerSource is "
                                          "Software, triggers sent: 1"),
                                Not(HasSubstr("send the camera a trigger"))));
    for (const char* rate : {"0", "-1", "nan", "1e9", "5x"})
        EXPECT_EQ(Run({"grab", "--trigger-rate", rate}).exitCode, 1) << rate;
}

// Every counted frame has a file, however slow the disk is.
TEST_F(ToolGrab, AFullQueueIsCountedAndLosesNothing) {
    SetCameras(R"(<Interface id="eth0" type="GEV">
        <Camera id="large" width="800" height="600" pixelFormat="BayerRG8" frameRate="0"/>
        </Interface>)");
    const json report = Run({"grab", "-n", "40", "--queue", "1", "--threads", "1", "-b", "4",
                             "--log", "frames.csv", "--json"})
                            .Json();
    EXPECT_EQ(report.at("written"), 40);
    EXPECT_GT(report.at("queueFull"), 0);
    for (const char* name : {"frame-0001.png", "frame-0020.png", "frame-0040.png"})
        EXPECT_EQ(ReadPngFile(Path(name)).width, 800U);
    const std::string log = Read("frames.csv");
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 41);
}

TEST_F(ToolGrab, SeveralFramesAndTheSummary) {
    const ToolResult result = Run({"grab", "104", "-n", "3", "-o", "a{n}.png", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const json report = result.Json();
    EXPECT_EQ(report.at("camera"), "bgr");
    EXPECT_EQ(report.at("producer"), ZELCAM_DEFAULT_PRODUCER);
    EXPECT_EQ(report.at("simulated"), true);
    EXPECT_EQ(report.at("frames"), 3);
    EXPECT_EQ(report.at("lost"), 0);
    EXPECT_EQ(report.at("written"), 3);
    EXPECT_EQ(report.at("firstFile"), "a0001.png");
    EXPECT_EQ(report.at("lastFile"), "a0003.png");
    EXPECT_EQ(report.at("exitCode"), 0);
    EXPECT_FALSE(report.contains("checks"));
    for (const char* file : {"a0001.png", "a0002.png", "a0003.png"}) {
        EXPECT_TRUE(Exists(file)) << file;
    }
}

// Of the frames 0, 1, 2, ... the camera loses 3, 7, 11, ... and tears 2, 5, 8, 11, ...: the first
// nine that arrive are 0 1 2 4 5 6 8 9 10.
TEST_F(ToolGrab, CountsWhatWasLostOrIsIncomplete) {
    const json report = Run({"grab", "faulty", "-n", "9", "-f", "none", "--json"}).Json();
    EXPECT_EQ(report.at("frames"), 9);
    EXPECT_EQ(report.at("lost"), 2);
    EXPECT_EQ(report.at("incomplete"), 3);
    EXPECT_EQ(report.at("written"), 0);
}

TEST_F(ToolGrab, UnknownAndAmbiguousCameras) {
    const ToolResult unknown = Run({"grab", "nobody"});
    EXPECT_EQ(unknown.exitCode, 3);
    EXPECT_THAT(unknown.err, AllOf(HasSubstr("nobody"), HasSubstr("bayer")));
    const ToolResult ambiguous = Run({"grab", "pair"});
    EXPECT_EQ(ambiguous.exitCode, 3);
    EXPECT_THAT(ambiguous.err,
                AllOf(HasSubstr("1  a-gray"), HasSubstr("2  a-gray12"), Not(HasSubstr("bayer"))));
    const ToolResult inJson = Run({"grab", "nobody", "--json"});
    EXPECT_EQ(inJson.Json().at("exitCode"), 3);
    SetCameras(R"(<Interface id="eth0" type="GEV"/>)");
    EXPECT_EQ(Run({"grab"}).exitCode, 3);
}

TEST_F(ToolGrab, ProducersThatFail) {
    const ToolResult asked = Run({"grab", "-p", "missing.cti"});
    EXPECT_EQ(asked.exitCode, 2);
    EXPECT_THAT(asked.err, AllOf(HasSubstr("missing.cti"), HasSubstr("no such file")));
    EXPECT_FALSE(Exists("frame-0001.png"));
    SetVariable("GENICAM_GENTL64_PATH", ZELCAM_BROKEN);
    const ToolResult found = Run({"grab"});
    EXPECT_EQ(found.exitCode, 0) << "a broken file in a folder is only a warning";
    EXPECT_THAT(found.err, AllOf(HasSubstr("nolist.cti"), HasSubstr("refuses.cti")));
    const std::string several = Run({"grab", "bgr", "bayer", "-f", "none"}).err;
    EXPECT_THAT(several, HasSubstr("nolist.cti"));
    EXPECT_EQ(several.find("nolist.cti"), several.rfind("nolist.cti")) << several;
}

TEST_F(ToolGrab, SilenceIsExplained) {
    const ToolResult text = Run({"grab", "silent", "-t", "200"});
    EXPECT_EQ(text.exitCode, 6);
    EXPECT_THAT(text.out, HasSubstr("Frames      0"));
    EXPECT_THAT(
        text.err,
        AllOf(HasSubstr("no frame within 200 ms"), HasSubstr("ok  the stream is grabbing"),
              HasSubstr("ok  8 buffers are announced"), HasSubstr("!!  0 frames were delivered"),
              HasSubstr("access status is \"open\""), HasSubstr("TriggerMode is Off"),
              HasSubstr("Next: let `zelcam doctor ")));
    const json report = Run({"grab", "sparse", "-n", "2", "-t", "200", "--json"}).Json();
    EXPECT_EQ(report.at("exitCode"), 6);
    EXPECT_EQ(report.at("frames"), 1) << "what came before counts";
    EXPECT_EQ(report.at("lastFile"), "frame-0001.png");
    for (const json& check : report.at("checks")) {
        const bool slow = check.at("finding") == "AcquisitionFrameRate is 0.0001 Hz";
        EXPECT_EQ(check.at("good"), !slow) << check;
    }
    EXPECT_EQ(report.at("nextStep"), "wait longer: zelcam grab sparse --timeout 20000000");
}

TEST_F(ToolGrab, CameraThatCannotBeOpened) {
    const ToolResult result = Run({"grab", "deaf"});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("no data stream"));
}

// The program checks known names before it grabs a frame.
TEST_F(ToolGrab, UnwritableOutput) {
    const ToolResult result = Run({"grab", "-o", "no/such/{frame}.png"});
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_THAT(result.err, HasSubstr(".png cannot be written: No such file"));
    EXPECT_THAT(result.out, HasSubstr("Frames      1"));
    const ToolResult known = Run({"grab", "-o", "no/such/folder.png"});
    EXPECT_EQ(known.exitCode, 7);
    EXPECT_THAT(known.err, HasSubstr("there is no folder \"no/such\""));
    EXPECT_THAT(known.out, testing::IsEmpty());
}

TEST_F(ToolGrab, WrongUse) {
    EXPECT_EQ(Run({"grab", "-f", "gif"}).exitCode, 1);
    EXPECT_EQ(Run({"grab", "-b", "0"}).exitCode, 1);
    EXPECT_EQ(Run({"grab", "-o", "{index}.png"}).exitCode, 1);
    EXPECT_EQ(Run({"grab", "-f", "none", "-o", "x.png"}).exitCode, 1);
    const ToolResult overwriting = Run({"grab", "-n", "2", "-o", "x.png"});
    EXPECT_EQ(overwriting.exitCode, 1);
    EXPECT_THAT(overwriting.err, HasSubstr("{n}"));
    EXPECT_FALSE(Exists("x.png"));
}

// With a count, Ctrl-C cuts the run short; without one, it is the normal end.
TEST_F(ToolGrab, CtrlCEndsWithASummary) {
    const struct {
        const char* count;
        int exitCode;
    } cases[] = {{"1000000", 130}, {"0", 0}};
    for (const auto& each : cases) {
        const FileWatch watch(folder_);
        const int process =
            Start({"grab", "-n", each.count, "-o", "{n}.raw", "--overwrite", "a-gray"});
        EXPECT_TRUE(watch.Await("0003.raw"));
        kill(process, SIGINT);
        const ToolResult result = Wait(process);
        EXPECT_EQ(result.exitCode, each.exitCode) << result.err;
        EXPECT_THAT(result.out, AllOf(HasSubstr("ended with Ctrl-C"), HasSubstr("0001.raw ... ")));
    }
}

// Ctrl-C also ends a running wait.
TEST_F(ToolGrab, CtrlCEndsAWait) {
    const FileWatch watch(folder_);
    const int process = Start({"grab", "sparse", "-n", "2", "-t", "86400000"});
    EXPECT_TRUE(watch.Await("frame-0001.png"));
    kill(process, SIGTERM);
    EXPECT_EQ(Wait(process).exitCode, 130);
}

}  // namespace
