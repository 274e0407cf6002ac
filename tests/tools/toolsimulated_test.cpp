// Simulated cameras appear when a user asks for them: by option, or in the environment.

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class ToolSimulated : public ToolTest {
  protected:
    std::vector<std::string> Cameras(const std::vector<std::string>& options = {}) {
        std::vector<std::string> words = {"list", "--json"};
        words.insert(words.end(), options.begin(), options.end());
        std::vector<std::string> ids;
        const nlohmann::json listing = Run(words).Json();
        for (const nlohmann::json& camera : listing.at("cameras"))
            ids.push_back(camera.at("id"));
        return ids;
    }

    const ::testing::Matcher<std::vector<std::string>> builtIn_ =
        ElementsAre("GEV0-CAM0", "GEV0-CAM1", "U3V0-CAM0");
};

TEST_F(ToolSimulated, UnaskedThereIsNoneAndEveryCommandSaysHow) {
    const ToolResult list = Run({"list"});
    EXPECT_EQ(list.exitCode, 3);
    EXPECT_THAT(list.out, AllOf(HasSubstr("No camera was found"), Not(HasSubstr("Interfaces\n")),
                                HasSubstr("ZELGEV_INTERFACES=none"), HasSubstr("--simulated`"),
                                HasSubstr("ZELSIM=1")));
    EXPECT_THAT(Cameras(), IsEmpty());
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"grab"}, {"grab", "cam"}, {"get", "Width"}, {"features"}}) {
        const ToolResult result = Run(command);
        EXPECT_EQ(result.exitCode, 3) << command.front();
        EXPECT_THAT(result.err, AllOf(HasSubstr("no camera was found"), HasSubstr("--simulated"),
                                      HasSubstr("ZELSIM=1")));
    }
    // Where the default producer is left out, its simulated cameras are no help.
    EXPECT_THAT(Run({"grab", "--only", ZELCAM_BROKEN "/apart/nocamera.cti"}).err,
                AllOf(HasSubstr("no camera was found"), Not(HasSubstr("--simulated"))));
    EXPECT_EQ(Run({}, ZELCAM_ONE_PICTURE).exitCode, 1);
}

TEST_F(ToolSimulated, OptionAsks) {
    for (const char* environment : {"", "0", "yes"}) {
        SetVariable("ZELSIM", environment);
        EXPECT_THAT(Cameras({"--simulated"}), builtIn_) << environment;
    }
    const ToolResult grabbed = Run({"grab", "--simulated", "-f", "none"});
    EXPECT_EQ(grabbed.exitCode, 0) << grabbed.err;
    EXPECT_EQ(grabbed.err, "");
    SetCameras("<Interface id='eth7' type='GEV'><Camera id='own'/></Interface>");
    EXPECT_THAT(Cameras({"--simulated"}), ElementsAre("own"));
    // A recorded camera in place of the default producer is a real one.
    SetVariable("LD_LIBRARY_PATH", ZELCAM_RECORDING);
    const ToolResult elsewhere = Run({"list", "--simulated"});
    EXPECT_EQ(elsewhere.exitCode, 3);
    EXPECT_THAT(elsewhere.out, AllOf(HasSubstr("check the file in ZELSIM_CONFIG"),
                                     Not(HasSubstr("no camera at hand"))));
}

TEST_F(ToolSimulated, EnvironmentAsks) {
    SetVariable("ZELSIM", "1");
    EXPECT_THAT(Cameras(), builtIn_);
    EXPECT_THAT(Run({}, ZELCAM_ONE_PICTURE).out, HasSubstr("640 x 480"));
    const ToolResult leftOut = Run({"list", "--no-simulated"});
    EXPECT_EQ(leftOut.exitCode, 3);
    EXPECT_THAT(leftOut.out, Not(HasSubstr("no camera at hand")));
    EXPECT_THAT(Run({"grab", "--no-simulated"}).err,
                AllOf(HasSubstr("no camera was found"), Not(HasSubstr("--simulated"))));
    SetCameras("<Interface id='eth7' type='GEV'/>");
    const ToolResult empty = Run({"list"});
    EXPECT_EQ(empty.exitCode, 3);
    EXPECT_THAT(empty.out, AllOf(HasSubstr("eth7"), Not(HasSubstr("no camera at hand"))));
}

TEST_F(ToolSimulated, UnknownValueIsExplained) {
    SetVariable("ZELSIM", "yes");
    const ToolResult list = Run({"list"});
    EXPECT_EQ(list.exitCode, 2);
    EXPECT_THAT(list.out, AllOf(HasSubstr("ZELSIM=\"yes\""), HasSubstr("set ZELSIM to 1"),
                                Not(HasSubstr("LD_LIBRARY_PATH"))));
    EXPECT_THAT(Run({"grab"}).err, HasSubstr("ZELSIM=\"yes\""));
}

}  // namespace
