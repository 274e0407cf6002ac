// zelcam check against good and bad simulated cameras, and the manual page.

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

using nlohmann::json;
using ::testing::Contains;
using ::testing::HasSubstr;

namespace {

class ToolCheck : public ToolTest {
  protected:
    // Names of the checks with that verdict.
    static std::vector<std::string> Named(const json& result, const std::string& verdict) {
        std::vector<std::string> names;
        for (const json& check : result.at("checks")) {
            if (check.at("verdict") == verdict) names.push_back(check.at("check"));
        }
        return names;
    }
};

TEST_F(ToolCheck, EverySimulatedCameraPasses) {
    SetVariable("ZELSIM", "1");
    for (const char* configuration : {"", ZELCAM_DEMO_CAMERAS}) {
        SetVariable("ZELSIM_CONFIG", configuration);
        const json cameras = Run({"list", "--json"}).Json().at("cameras");
        ASSERT_FALSE(cameras.empty());
        for (const json& camera : cameras) {
            const std::string id = camera.at("id");
            const ToolResult result = Run({"check", id, "--json", "-n", "5"});
            EXPECT_EQ(result.exitCode, 0) << id << result.out << result.err;
            if (result.exitCode != 0) continue;
            EXPECT_THAT(Named(result.Json(), "skipped"), ::testing::IsEmpty()) << result.out;
            EXPECT_GE(result.Json().at("passed"), 15) << id;
        }
    }
    const ToolResult text = Run({"check", "1", "-n", "1"});
    EXPECT_EQ(text.exitCode, 0) << text.out;
    EXPECT_THAT(text.out, HasSubstr("\npassed   unplug "));
    EXPECT_THAT(text.out, HasSubstr(" passed, 0 failed, 0 skipped\n"));
}

TEST_F(ToolCheck, FaultsFailTheirCheckAndLeaveTheOthers) {
    SetCameras(R"(
  <Interface id="eth7" type="GEV">
    <Camera id="bad" width="64" height="48" frameRate="0" incompleteEvery="3"/>
    <Camera id="lost" width="64" height="48" frameRate="0" dropEvery="4"/>
  </Interface>)");
    for (const char* camera : {"bad", "lost"}) {
        const ToolResult result = Run({"check", camera, "--json", "-n", "20"});
        EXPECT_EQ(result.exitCode, 10) << camera << result.out << result.err;
        EXPECT_THAT(Named(result.Json(), "FAILED"), ::testing::ElementsAre("frames")) << result.out;
    }
    EXPECT_EQ(Run({"check", "nobody"}).exitCode, 3);
}

TEST_F(ToolCheck, ReadOnlyLeavesTheCameraAlone) {
    const ToolResult result = Run({"check", "--simulated", "--json", "-a", "readonly", "-n", "5"});
    EXPECT_THAT(Named(result.Json(), "skipped"), Contains("write and restore")) << result.out;
}

// The manual has every command and every option that the help has.
TEST_F(ToolCheck, TheManualIsComplete) {
    std::stringstream page;
    page << std::ifstream(ZELCAM_MANUAL).rdbuf();
    std::string manual = page.str();
    manual.erase(std::remove(manual.begin(), manual.end(), '\\'), manual.end());
    const std::string help = Run({"--help"}).out;
    const std::string commands = help.substr(help.find("Subcommands:"));
    const std::regex command("\n  ([a-z]+) ");
    const std::regex option("\\s(--?[a-z]+)");
    for (std::sregex_iterator c(commands.begin(), commands.end(), command), end; c != end; ++c) {
        const std::string name = (*c)[1];
        if (name == "zelcam") continue;
        EXPECT_THAT(manual, HasSubstr(name));
        const std::string text = Run({name, "--help"}).out;
        const std::string options = text.substr(0, text.find("Examples:"));
        for (std::sregex_iterator o(options.begin(), options.end(), option); o != end; ++o)
            EXPECT_THAT(manual, HasSubstr((*o)[1].str())) << name;
    }
}

}  // namespace
