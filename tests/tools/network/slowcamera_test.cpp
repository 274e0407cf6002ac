// The program zelcam with cameras that take their time to answer, beside one that answers at once.

#include <ostream>

#include <gmock/gmock.h>

#include "tests/tools/doctor/doctornetwork.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

// It answers any of the first questions after 0.4 to 0.9 seconds. These times follow from its MAC
// address, and it is the first one in the list.
constexpr const char* kSlow = "GEV-020000697bf9";
constexpr const char* kCameras =
    R"(<Camera id="QUICK" width="64" height="48"><Network Mac="02:ff:00:00:00:01"/></Camera>)"
    R"(<Camera id="SLOW" width="32" height="48" userName="slow"><Network )"
    R"(Mac="02:00:00:69:7b:f9" DiscoveryDelayMs="1000"/></Camera>)";

class SlowCamera : public DoctorTest {
  protected:
    void SetUp() override {
        DoctorTest::SetUp();
        if (IsSkipped()) return;
        PlugCameras({"10.77.0.11/24", "10.77.0.12/24"}, kCameras);
    }
};

TEST_F(SlowCamera, IsListed) {
    std::vector<std::string> ids;
    const nlohmann::json listing = Run({"list", "--json"}).Json();
    for (const auto& camera : listing.at("cameras"))
        ids.push_back(camera.at("id"));
    EXPECT_THAT(ids, ElementsAre(kSlow, "GEV-02ff00000001"));
}

// Nothing in it asks for a search, and the camera that answers at once is enough.
TEST_F(SlowCamera, KeepsNoProgramWaiting) {
    EXPECT_EQ(Run({}, ZELCAM_ONE_PICTURE).out, "64 x 48 pixels\n");
}

struct Use {
    std::vector<std::string> arguments;
    std::string answer;

    friend void PrintTo(const Use& use, std::ostream* out) {
        for (const std::string& word : use.arguments)
            *out << word << ' ';
    }
};

class SlowCameraUse : public SlowCamera, public ::testing::WithParamInterface<Use> {};

TEST_P(SlowCameraUse, FindsIt) {
    const ToolResult result = Run(GetParam().arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr(GetParam().answer));
}

// Its number is the one in the list.
INSTANTIATE_TEST_SUITE_P(
    Commands, SlowCameraUse,
    ::testing::Values(Use{{"get", "slow", "Width"}, "Width=32\n"},
                      Use{{"get", "1", "Width"}, "Width=32\n"},
                      Use{{"set", kSlow, "Height=32"}, "Height=32 px\n"},
                      Use{{"grab", kSlow, "-n", "1", "-f", "none", "--json"}, kSlow},
                      Use{{"xml", kSlow}, "<RegisterDescription"}),
    [](const auto& use) { return use.param.arguments[0] + std::to_string(use.index); });

}  // namespace
