// Values as users write them, and cameras that stop answering: zelcam as a program.

#include <regex>

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class ToolValues : public ToolTest {
  protected:
    ToolValues()
        : ToolTest(R"(<Interface id="eth7" type="GEV">
            <Camera id="cam-a" width="320" height="240" frameRate="0"/></Interface>)") {}
};

TEST_F(ToolValues, NumbersMayHaveAUnitThatConverts) {
    const ToolResult set =
        Run({"set", "cam-a", "ExposureTime=5ms", "ExposureTime=0.0011 s", "ExposureTime=7.5\u00B5s",
             "GevHeartbeatTimeout=1.5s", "AcquisitionFrameRateEnable=1",
             "AcquisitionFrameRate=0.02kHz", "Gain=3dB", "Width=0x80"});
    EXPECT_EQ(set.exitCode, 0) << set.err;
    EXPECT_EQ(set.out,
              "ExposureTime=5000 us\nExposureTime=1100 us\nExposureTime=7.5 us\n"
              "GevHeartbeatTimeout=1500 ms\nAcquisitionFrameRateEnable=1\nAcquisitionFrameRate=20 "
              "Hz\nGain=3 dB\nWidth=128 px\n");
    const nlohmann::json value = Run({"set", "cam-a", "ExposureTime=5ms", "--json"}).Json().at(0);
    EXPECT_EQ(value.at("value"), 5000);
    EXPECT_EQ(value.at("unit"), "us");
    const std::vector<std::string> grab = {"grab", "cam-a", "-f",
                                           "none", "--set", "ExposureTime=5ms"};
    EXPECT_THAT(Run(grab).out, HasSubstr("\nSet         ExposureTime=5000 us\n"));
    const nlohmann::json report =
        Run({"grab", "cam-a", "-f", "none", "--set", "ExposureTime=5ms", "--json"}).Json();
    EXPECT_EQ(report.at("set"), nlohmann::json::array({value}));
}

TEST_F(ToolValues, NothingIsSetWhenAWordIsNoSetting) {
    const ToolResult result = Run({"set", "cam-a", "Width=160", "oops"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("\"oops\" is not of the form NAME=VALUE"));
    EXPECT_THAT(result.out, testing::IsEmpty());
}

TEST_F(ToolValues, WhatIsNoNumberSetsNothing) {
    for (const char* setting :
         {"ExposureTime=5kHz", "ExposureTime=5x", "ExposureTime=", "ExposureTime=1e999",
          "GevHeartbeatTimeout=1000.5", "GevHeartbeatTimeout=1000500us", "Width=160.5", "Width=3e2",
          "Width=160pixels", "Width=99999999999999999999", "BinningVertical=1x"}) {
        for (const std::vector<std::string>& command :
             {std::vector<std::string>{"set", "cam-a", setting},
              {"grab", "cam-a", "-f", "none", "--set", setting}}) {
            const ToolResult result = Run(command);
            EXPECT_EQ(result.exitCode, 8) << command.front() << setting << result.out;
            EXPECT_THAT(result.err, HasSubstr(" cannot be set to ")) << setting;
        }
    }
    EXPECT_THAT(Run({"set", "cam-a", "ExposureTime=5kHz"}).err, HasSubstr("0.5..1e+07 us"));
    EXPECT_THAT(Run({"set", "cam-a", "ReverseX=on"}).err, HasSubstr("It can be true|false|1|0\n"));
    EXPECT_THAT(Run({"set", "cam-a", "PixelFormat=Mno8"}).err, HasSubstr("did you mean Mono8?"));
}

TEST_F(ToolValues, ConfigurationsHoldTheSameNumbers) {
    ASSERT_EQ(Run({"config", "save", "cam-a", "camera.xml"}).exitCode, 0);
    const std::string saved = Read("camera.xml");
    const auto with = [&saved](const std::string& width, const std::string& exposure) {
        const std::string text = std::regex_replace(saved, std::regex("Width\t320"), width);
        return std::regex_replace(text, std::regex("ExposureTime\t.*"), exposure);
    };
    Write("good.xml", with("Width\t160px", "ExposureTime\t2ms"));
    EXPECT_EQ(Run({"config", "load", "cam-a", "good.xml"}).exitCode, 0);
    Write("unit.xml", with("Width\t320px", "ExposureTime\t10ms"));
    EXPECT_EQ(Run({"config", "diff", "cam-a", "unit.xml"}).exitCode, 0);
    Write("bad.xml", with("Width\t160x", "ExposureTime\t2ms"));
    const ToolResult bad = Run({"config", "load", "cam-a", "bad.xml"});
    EXPECT_EQ(bad.exitCode, 8);
    EXPECT_THAT(bad.err, AllOf(HasSubstr("1 failed"), HasSubstr("\nWidth: "),
                               Not(HasSubstr("ExposureTime"))));
}

TEST_F(ToolValues, OptionsTakeWholeNumbersOnly) {
    const std::vector<std::string> commands[] = {{"grab", "cam-a", "-f", "none", "-n"},
                                                 {"grab", "cam-a", "-f", "none", "-t"},
                                                 {"grab", "cam-a", "-f", "none", "-b"},
                                                 {"list", "--search"},
                                                 {"watch", "cam-a", "-d", "1", "-i"},
                                                 {"watch", "cam-a", "-n"},
                                                 {"events", "cam-a", "-d"},
                                                 {"exec", "cam-a", "DeviceReset", "-t"},
                                                 {"check", "cam-a", "-n"},
                                                 {"report", "cam-a", "-n"}};
    for (std::vector<std::string> command : commands) {
        const std::string option = command.back();
        command.emplace_back();
        for (const char* number : {"-1", "1.5", "1s", "0x1", "18446744073709551616", ""}) {
            command.back() = number;
            const ToolResult result = Run(command);
            EXPECT_EQ(result.exitCode, 1) << command.front() << option << number << result.out;
            EXPECT_THAT(result.err, HasSubstr("is not a whole number"))
                << command.front() << number;
        }
    }
}

}  // namespace
