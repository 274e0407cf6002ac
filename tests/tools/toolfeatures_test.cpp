// The commands that work on features, run as programs against a simulated camera.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

using nlohmann::json;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

namespace {

constexpr const char* kTimeStamp =
    "2[0-9]{3}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{6}Z";

class ToolFeatures : public ToolTest {
  protected:
    ToolFeatures()
        : ToolTest(R"(
  <Interface id="eth7" type="GEV">
    <Camera id="cam-a" model="Line 4" serial="SN081512" width="320" height="240" frameRate="0"/>
  </Interface>
  <Interface id="usb7" type="U3V"><Camera id="cam-c"/></Interface>)") {}

    static json FeatureNamed(const json& listing, const std::string& name) {
        for (const json& feature : listing.at("features")) {
            if (feature.at("name") == name) return feature;
        }
        return nullptr;
    }
};

TEST_F(ToolFeatures, TreeWithValuesUnitsAndRanges) {
    const ToolResult text = Run({"features", "cam-a"});
    EXPECT_EQ(text.exitCode, 0) << text.err;
    EXPECT_THAT(text.out, AllOf(HasSubstr("\nImageFormatControl\n"), HasSubstr("GainSelector="),
                                HasSubstr("(command)")));
    const json listing = Run({"features", "cam-a", "--json"}).Json();
    const json width = FeatureNamed(listing, "Width");
    EXPECT_EQ(width.at("value"), 320);
    EXPECT_EQ(width.at("access"), "rw");
    EXPECT_GE(width.at("max"), 320);
    const json gain = FeatureNamed(listing, "Gain");
    EXPECT_EQ(gain.at("kind"), "float");
    EXPECT_EQ(gain.at("selectedBy").at(0), "GainSelector");
    EXPECT_THAT(FeatureNamed(listing, "PixelFormat").at("entries"), ::testing::Contains("Mono8"));
}

TEST_F(ToolFeatures, FiltersByNameCategoryAndLevel) {
    const json one = Run({"features", "cam-a", "wid?h", "--json"}).Json();
    ASSERT_EQ(one.at("features").size(), 1U);
    const json category = Run({"features", "cam-a", "AnalogControl", "--json"}).Json();
    EXPECT_FALSE(FeatureNamed(category, "Gain").is_null());
    EXPECT_TRUE(FeatureNamed(category, "Width").is_null());
    const json everything = Run({"features", "cam-a", "--json", "-v", "invisible"}).Json();
    const json simple = Run({"features", "cam-a", "--json", "-v", "beginner"}).Json();
    EXPECT_LT(simple.at("features").size(), everything.at("features").size());
    EXPECT_EQ(Run({"features", "cam-a", "NoSuch*"}).exitCode, 8);
}

TEST_F(ToolFeatures, TheCameraMayBeLeftOut) {
    EXPECT_EQ(Run({"get", "Width", "Height"}).out, "Width=320\nHeight=240\n");
    EXPECT_EQ(Run({"get", "2", "Width"}).out, "Width=640\n") << "the number of a camera";
    EXPECT_EQ(Run({"get", "SN081512", "Width"}).out, "Width=320\n");
    EXPECT_EQ(Run({"features", "Width", "--json"}).Json().at("camera"), "cam-a");
    EXPECT_EQ(Run({"features", "cam-c", "Width", "--json"}).Json().at("camera"), "cam-c");
    EXPECT_EQ(Run({"features", "2", "--json"}).Json().at("camera"), "cam-c");
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"get"}, {"get", "cam-a"}}) {
        const ToolResult result = Run(command);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.err, HasSubstr("name the features to read"));
    }
    const ToolResult neither = Run({"get", "cam-x", "Width"});
    EXPECT_EQ(neither.exitCode, 8);
    EXPECT_EQ(neither.out, "");
    EXPECT_THAT(neither.err, HasSubstr("No camera has that name either"));
    EXPECT_EQ(Run({"features", "cam-x", "Width"}).exitCode, 3) << "the first of two is a camera";
    EXPECT_THAT(Run({"features", "Exposuretme"}).err,
                HasSubstr("no camera has that name; did you mean ExposureTime"));
}

// Lines in files stay whole, whatever COLUMNS says; lines on a terminal fit its width.
TEST_F(ToolFeatures, LinesFitOnTheTerminal) {
    SetVariable("COLUMNS", "60");
    const std::string file = Run({"features", "ImageFormatControl", "-d"}).out;
    const size_t row = file.find("  PixelFormat ");
    EXPECT_THAT(file.substr(row, file.find('\n', row) - row), EndsWith("|YCbCr422_12p"));
    EXPECT_THAT(file, HasSubstr("\n      Width of the image"));
    size_t longest = 0;
    size_t formats = 0;
    std::istringstream lines(RunOnTerminal({"features", "ImageFormatControl", "-d"}).out);
    for (std::string line; std::getline(lines, line);) {
        longest = std::max(longest, line.size() - 1);  // without the carriage return
        formats += line.find("Bayer") != std::string::npos ? 1U : 0U;
    }
    EXPECT_LE(longest, 60U);
    EXPECT_GT(longest, 40U);
    EXPECT_GT(formats, 5U);
}

TEST_F(ToolFeatures, ModulesHaveFeatures) {
    for (const char* module : {"local", "interface", "stream"}) {
        const ToolResult result = Run({"features", "cam-a", "-m", module, "--json"});
        ASSERT_EQ(result.exitCode, 0) << module << result.err << result.out;
        EXPECT_FALSE(result.Json().at("features").empty()) << module;
    }
}

// The simulated cameras live as long as the process, so that each run starts anew.
TEST_F(ToolFeatures, GetsAndSets) {
    EXPECT_EQ(Run({"get", "cam-a", "Width", "Height"}).out, "Width=320\nHeight=240\n");
    EXPECT_EQ(Run({"get", "cam-a", "--plain", "Width"}).out, "320\n");
    EXPECT_EQ(Run({"get", "cam-a", "--json", "Width"}).Json().at("Width"), 320);
    const ToolResult set = Run({"set", "cam-a", "Width=160", "PixelFormat=Mono16"});
    EXPECT_EQ(set.out, "Width=160 px\nPixelFormat=Mono16\n") << set.err;
}

TEST_F(ToolFeatures, RefusedSettingsSayWhatIsPossible) {
    const ToolResult large = Run({"set", "cam-a", "Height=120", "Width=9999999", "OffsetX=0"});
    EXPECT_EQ(large.exitCode, 8);
    EXPECT_EQ(large.out, "Height=120 px\n")
        << "what comes before a failure is done, the rest is not";
    EXPECT_THAT(large.err, AllOf(HasSubstr("Width cannot be set"), HasSubstr("It can be ")));
    EXPECT_THAT(Run({"set", "cam-a", "PixelFormat=Pink8"}).err, HasSubstr("Mono8|"));
    EXPECT_THAT(Run({"set", "cam-a", "DeviceModelName=x"}).err, HasSubstr("read-only"));
    EXPECT_THAT(Run({"get", "cam-a", "width"}).err, HasSubstr("did you mean Width or WidthMax"));
    EXPECT_EQ(Run({"set", "cam-a", "Width"}).exitCode, 1);
    EXPECT_EQ(Run({"set", "cam-a", "AcquisitionStart=1"}).exitCode, 8);
    EXPECT_EQ(Run({"set", "cam-a", "-a", "readonly", "Width=160"}).exitCode, 8);
}

TEST_F(ToolFeatures, Executes) {
    const ToolResult result = Run({"exec", "cam-a", "UserSetLoad", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_EQ(result.Json().at("done"), true);
    EXPECT_EQ(Run({"exec", "cam-a", "Width"}).exitCode, 8);
}

TEST_F(ToolFeatures, GrabsWithSettings) {
    const ToolResult result = Run({"grab", "cam-a", "-f", "none", "--set", "Width=160", "--set",
                                   "Height=120", "--set", "PixelFormat=Mono16", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_EQ(result.Json().at("image"), "160 x 120 Mono16");
}

TEST_F(ToolFeatures, DescriptionsOfAllModules) {
    for (const char* module : {"camera", "device", "local", "interface", "stream", "system"}) {
        const ToolResult result = Run({"xml", "cam-a", "--module", module});
        EXPECT_EQ(result.exitCode, 0) << module << result.err;
        EXPECT_THAT(result.out.substr(0, 2000), HasSubstr("<RegisterDescription")) << module;
        EXPECT_EQ(result.out.find('\0'), std::string::npos);
    }
    EXPECT_EQ(Run({"xml", "-o", "camera.xml"}).exitCode, 0);
    const std::string text = Read("camera.xml");
    EXPECT_THAT(text, HasSubstr("Name=\"Width\""));
    const json written = Run({"xml", "cam-a", "-o", "camera.xml", "--json"}).Json();
    EXPECT_EQ(written.at("camera"), "cam-a");
    EXPECT_EQ(written.at("bytes"), text.size());
    EXPECT_EQ(Read("camera.xml"), text);
}

// A camera may name any file.
TEST_F(ToolFeatures, PrintsDescriptionsOnly) {
    SetCameras(R"(<Interface id="eth7" type="GEV">
        <Camera id="cam-a" descriptionUrl="File:/proc/self/environ"/></Interface>)");
    const ToolResult result = Run({"xml", "cam-a"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, AllOf(HasSubstr("<RegisterDescription"), Not(HasSubstr("ZELSIM"))));
}

TEST_F(ToolFeatures, PrintsEventsOfTheNamedKind) {
    const ToolResult result =
        Run({"events", "cam-a", "ExposureEnd", "--grab", "-n", "3", "-d", "60000", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.out << result.err;
    std::istringstream lines(result.out);
    size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const json event = json::parse(line);
        EXPECT_EQ(event.at("event"), "ExposureEnd");
        EXPECT_TRUE(event.at("data").at("EventExposureEndTimestamp").is_number()) << line;
        EXPECT_EQ(event.at("data").at("EventExposureEnd"), 0x9001);
        EXPECT_THAT(event.at("time").get<std::string>(), MatchesRegex(kTimeStamp));
    }
    EXPECT_EQ(count, 3U);
    const ToolResult none = Run({"events", "cam-a", "--grab", "-d", "100"});
    EXPECT_EQ(none.exitCode, 0);
    EXPECT_THAT(none.err,
                HasSubstr("no event came; without NAME, only events that are already on arrive"));
    const ToolResult unknown = Run({"events", "cam-a", "Sunrise"});
    EXPECT_EQ(unknown.exitCode, 8);
    EXPECT_THAT(unknown.err, HasSubstr("ExposureEnd"));
}

TEST_F(ToolFeatures, ShowsAndForcesAddresses) {
    const json before = Run({"ip", "show", "cam-a", "--json"}).Json();
    EXPECT_THAT(before.at("address").get<std::string>(),
                MatchesRegex("[0-9]+[.][0-9]+[.][0-9]+[.][0-9]+"));
    EXPECT_EQ(Run({"ip", "force", "cam-a", "10.1.2.3", "255.0.0.0"}).exitCode, 0);
    EXPECT_EQ(Run({"ip", "force", "cam-a", "auto"}).exitCode, 0);
    EXPECT_EQ(Run({"ip", "force", "cam-a", "300.1.2.3", "255.0.0.0"}).exitCode, 1);
    const ToolResult refused = Run({"ip", "force", "cam-a", "10.0.0.0", "255.0.0.0"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err, HasSubstr("--force"));
    EXPECT_EQ(Run({"ip", "force", "cam-a", "10.0.0.0", "255.0.0.0", "--force"}).exitCode, 0);
    EXPECT_EQ(Run({"ip", "show", "cam-c"}).exitCode, 1) << "a USB camera has no address";
}

TEST_F(ToolFeatures, ShowsTheAddressOfTheNamedCamera) {
    SetCameras(R"(<Interface id="eth7" type="GEV">
        <Camera id="b" ip="10.0.0.2" mask="255.0.0.0"/><Camera id="a" ip="10.0.0.1" mask="255.0.0.0"/>
        </Interface>)");
    for (const auto& [camera, address] : {std::pair{"a", "10.0.0.1"}, {"b", "10.0.0.2"}}) {
        EXPECT_EQ(Run({"ip", "show", camera, "--json"}).Json().at("address"), address);
    }
}

TEST_F(ToolFeatures, WatchPrintsChanges) {
    const ToolResult result =
        Run({"watch", "cam-a", "DeviceTemperature", "-i", "1", "-n", "1", "-d", "60000", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.Json().at("name"), "DeviceTemperature");
    EXPECT_TRUE(result.Json().at("now").is_number());
    EXPECT_THAT(result.Json().at("time").get<std::string>(), MatchesRegex(kTimeStamp));
    EXPECT_EQ(Run({"watch", "cam-a", "Width", "-i", "1", "-d", "2", "-n", "1"}).exitCode, 6)
        << "the change that was asked for did not come";
    EXPECT_EQ(Run({"watch", "cam-a", "NoSuch"}).exitCode, 8);
}

TEST_F(ToolFeatures, ReportHasEverySectionAndCanBeMasked) {
    const ToolResult open = Run({"report", "cam-a"});
    EXPECT_EQ(open.exitCode, 0) << open.err;
    const std::string version = "zelcam        " ZELCAM_VERSION;
    for (const char* expected : {version.c_str(), "SN081512", "Width", "=== Features of the stream",
                                 "Frames      10", "Delivered"}) {
        EXPECT_THAT(open.out, HasSubstr(expected));
    }
    EXPECT_THAT(open.out, Not(HasSubstr("!!")));
    const std::string address =
        Run({"ip", "show", "cam-a", "--json"}).Json().at("address").get<std::string>();
    EXPECT_THAT(open.out, HasSubstr(address));

    const json machine = Run({"report", "cam-a", "--json", "-n", "3"}).Json();
    EXPECT_EQ(machine.at("camera").at("serialNumber"), "SN081512");
    EXPECT_EQ(machine.at("frames").at("delivered"), 3);
    EXPECT_EQ(machine.at("system").at("cameras").size(), 2U);
    for (const char* module : {"camera", "localDevice", "interface", "stream"}) {
        EXPECT_FALSE(machine.at(std::string(module) + "Features").at("features").empty()) << module;
    }
    const ToolResult masked = Run({"report", "cam-a", "--json", "--mask"});
    EXPECT_THAT(masked.out, AllOf(Not(HasSubstr("SN081512")), Not(HasSubstr(address))));
    EXPECT_EQ(masked.Json().at("camera").at("serialNumber"), "***");

    EXPECT_EQ(Run({"report", "cam-a", "--mask", "-o", "report.txt"}).exitCode, 0);
    EXPECT_THAT(Read("report.txt"), AllOf(HasSubstr("Frames      10"), Not(HasSubstr("SN081512")),
                                          Not(HasSubstr(address))));
}

// Neither the widths of columns nor the limits of a text show it.
TEST_F(ToolFeatures, AMaskedReportDoesNotShowTheLengthOfASecret) {
    const auto report = [this](const std::string& secret) {
        SetCameras("<Interface id='eth7' type='GEV'><Camera id='cam-a' model='M " + secret +
                   "' serial='" + secret + "' userName='" + secret +
                   "' frameRate='0'/></Interface>");
        std::string text = Run({"report", "cam-a", "--mask"}).out;
        const size_t warming = text.find("    DeviceTemperature ");  // differs from time to time
        text.erase(warming, text.find('\n', warming) - warming);
        const size_t begin = text.find("=== Producers");  // behind the time
        return text.substr(begin, text.find("\nFrames ") - begin);
    };
    const std::string brief = report("1234");
    EXPECT_THAT(brief, HasSubstr("  M ***  ***     ***        ***      free"));
    EXPECT_EQ(brief, report("1234567890123456789012345678901234567890"));
}

}  // namespace
