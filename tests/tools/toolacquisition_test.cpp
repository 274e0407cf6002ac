// The order in which programs start and stop a camera. The recording camera writes every step to a
// file, and sends nothing to a program that leaves one out.

#include <csignal>
#include <filesystem>
#include <sstream>

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

using Steps = std::vector<std::string>;

const Steps kWholeOrder = {"TLParamsLocked=1",   "PayloadSize",       "DSAllocAndAnnounceBuffer",
                           "DSStartAcquisition", "AcquisitionStart",  "frame",
                           "AcquisitionStop",    "DSStopAcquisition", "TLParamsLocked=0"};

class ToolAcquisition : public ToolTest {
  protected:
    void SetUp() override {
        ToolTest::SetUp();
        SetVariable("LD_LIBRARY_PATH", ZELCAM_RECORDING);
        SetVariable("RECORDING_FILE", Path("steps"));
    }

    // The steps since the last call, without repetitions. Leaves out revoked buffers: programs may
    // revoke them at any time.
    Steps TakeSteps() {
        std::istringstream in(Read("steps"));
        Write("steps", "");
        Steps steps;
        for (std::string step; std::getline(in, step);) {
            if (step != "DSRevokeBuffer" && (steps.empty() || steps.back() != step))
                steps.push_back(step);
        }
        return steps;
    }
};

TEST_F(ToolAcquisition, EveryProgramKeepsTheOrder) {
    const struct {
        const char* program;
        std::vector<std::string> arguments;
        const char* output;
    } cases[] = {{ZELCAM_TOOL, {"grab", "-n", "3", "-f", "none"}, "Frames      3"},
                 {ZELCAM_README_EXAMPLE, {}, "100 x 50\n"},
                 {ZELCAM_ONE_PICTURE, {}, "100 x 50 pixels\n"},
                 {ZELCAM_GRAB_LOOP, {}, "frame 100: 100 x 50"}};
    for (const auto& each : cases) {
        const ToolResult result = Run(each.arguments, each.program);
        EXPECT_EQ(result.exitCode, 0) << each.program << result.err;
        EXPECT_THAT(result.out, HasSubstr(each.output)) << each.program;
        EXPECT_THAT(TakeSteps(), ElementsAreArray(kWholeOrder)) << each.program;
    }
}

// A report also reads the size, like any other feature.
TEST_F(ToolAcquisition, CommandsThatGrabBesides) {
    EXPECT_THAT(Run({"events", "1", "--grab", "--duration", "200"}).err,
                HasSubstr("no event came"));
    EXPECT_THAT(TakeSteps(), ElementsAreArray(kWholeOrder));
    EXPECT_THAT(Run({"report"}).out, HasSubstr("Frames      10"));
    const Steps steps = TakeSteps();
    ASSERT_EQ(steps.size(), kWholeOrder.size() + 2);
    EXPECT_THAT(Steps(steps.begin() + 1, steps.end() - 1), ElementsAreArray(kWholeOrder));
}

// The example grabs three times and then wants an event that this camera does not have.
TEST_F(ToolAcquisition, ExampleThatGrabsAgain) {
    EXPECT_THAT(Run({"camera.xml"}, ZELCAM_FEATURES).err, HasSubstr("switching it on failed"));
    Steps thrice;
    for (int i = 0; i < 3; ++i)
        thrice.insert(thrice.end(), kWholeOrder.begin(), kWholeOrder.end());
    EXPECT_THAT(TakeSteps(), ElementsAreArray(thrice));
}

TEST_F(ToolAcquisition, CheckGetsFramesInEveryOrderOfStartsAndStops) {
    const nlohmann::json result = Run({"check", "-n", "5", "--json"}).Json();
    for (const char* name :
         {"frames", "start and stop", "counted frames", "cancel", "search while streaming"}) {
        EXPECT_THAT(result.at("checks"), Contains(AllOf(Contains(name), Contains("passed"))))
            << result;
    }
    const Steps steps = TakeSteps();
    for (size_t i = 0; i + 1 < steps.size(); ++i) {
        if (steps[i] == "DSStartAcquisition") {
            EXPECT_EQ(steps[i + 1], "AcquisitionStart");
        } else if (steps[i] == "AcquisitionStop") {
            EXPECT_EQ(steps[i + 1], "DSStopAcquisition");
        }
    }
}

// The program undoes all steps in order, including the failed one, and its message names that step.
TEST_F(ToolAcquisition, EveryStepFailingInTurn) {
    const struct {
        const char* step;
        const char* message;
        Steps steps;
    } cases[] = {
        {"TLParamsLocked=1",
         "TLParamsLocked failed: Write error",
         {"TLParamsLocked=1", "TLParamsLocked=0"}},
        {"PayloadSize",
         "the size of a frame",
         {"TLParamsLocked=1", "PayloadSize", "TLParamsLocked=0"}},
        {"DSAllocAndAnnounceBuffer",
         "buffers of 6000 bytes cannot be made",
         {"TLParamsLocked=1", "PayloadSize", "DSAllocAndAnnounceBuffer", "TLParamsLocked=0"}},
        {"DSStartAcquisition",
         "StartAcquisition failed",
         {"TLParamsLocked=1", "PayloadSize", "DSAllocAndAnnounceBuffer", "DSStartAcquisition",
          "DSStopAcquisition", "TLParamsLocked=0"}},
        {"AcquisitionStart",
         "AcquisitionStart failed: Write error",
         {"TLParamsLocked=1", "PayloadSize", "DSAllocAndAnnounceBuffer", "DSStartAcquisition",
          "AcquisitionStart", "AcquisitionStop", "DSStopAcquisition", "TLParamsLocked=0"}},
        {"EventGetData",
         "waiting for a frame failed",
         {"TLParamsLocked=1", "PayloadSize", "DSAllocAndAnnounceBuffer", "DSStartAcquisition",
          "AcquisitionStart", "EventGetData", "AcquisitionStop", "DSStopAcquisition",
          "TLParamsLocked=0"}},
        {"DSQueueBuffer",
         "a buffer cannot be queued again",
         {"TLParamsLocked=1", "PayloadSize", "DSAllocAndAnnounceBuffer", "DSStartAcquisition",
          "AcquisitionStart", "frame", "DSQueueBuffer", "AcquisitionStop", "DSStopAcquisition",
          "TLParamsLocked=0"}},
        {"AcquisitionStop",
         "AcquisitionStop failed: Write error",
         {"TLParamsLocked=1", "PayloadSize", "DSAllocAndAnnounceBuffer", "DSStartAcquisition",
          "AcquisitionStart", "frame", "AcquisitionStop", "AcquisitionAbort", "DSStopAcquisition",
          "TLParamsLocked=0"}},
        {"DSStopAcquisition", "StopAcquisition failed", kWholeOrder},
        {"TLParamsLocked=0", "TLParamsLocked failed: Write error", kWholeOrder},
    };
    for (const auto& each : cases) {
        SetVariable("RECORDING_FAIL", each.step);
        const ToolResult result = Run({"grab", "-n", "2", "-f", "none"});
        EXPECT_EQ(result.exitCode, 5) << each.step;
        EXPECT_THAT(result.err, HasSubstr(each.message)) << each.step;
        Steps steps = TakeSteps();
        // The library stops a stream again that did not stop.
        if (std::string(each.step) == "DSStopAcquisition") steps.pop_back();
        EXPECT_THAT(steps, ElementsAreArray(each.steps)) << each.step;
    }
}

// A stop that takes too long is not a failure if the camera can abort.
TEST_F(ToolAcquisition, AbortWhenTheStopDoesNotEnd) {
    SetVariable("RECORDING_SLOW_STOP", "1");
    const Steps end = {"AcquisitionStop", "AcquisitionAbort", "DSStopAcquisition",
                       "TLParamsLocked=0"};
    for (const char* failing : {"", "AcquisitionAbort"}) {
        SetVariable("RECORDING_FAIL", failing);
        const ToolResult result = Run({"grab", "-f", "none"});
        const Steps steps = TakeSteps();
        EXPECT_THAT(Steps(steps.end() - 4, steps.end()), ElementsAreArray(end));
        const bool aborted = failing[0] == '\0';
        EXPECT_EQ(result.exitCode, aborted ? 0 : 5);
        EXPECT_THAT(result.err, HasSubstr(aborted ? "" : "AcquisitionAbort failed"));
    }
}

// The stream of this camera does not know the size of a buffer.
TEST_F(ToolAcquisition, ProducerWithoutAlignment) {
    SetVariable("RECORDING_UNALIGNED", "1");
    const ToolResult result = Run({"grab", "-f", "none"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(TakeSteps(), ElementsAreArray(kWholeOrder));
}

// The signal comes while frames arrive, and during a wait for a frame.
TEST_F(ToolAcquisition, CtrlCStopsTheCamera) {
    for (const char* frames : {"1000000", "3"}) {
        SetVariable("RECORDING_FRAMES", frames);
        const FileWatch watch(folder_);
        const int process =
            Start({"grab", "-n", "0", "-t", "86400000", "-o", "{n}.raw", "--overwrite"});
        EXPECT_TRUE(watch.Await("0003.raw"));
        kill(process, SIGINT);
        EXPECT_EQ(Wait(process).exitCode, 0);
        EXPECT_THAT(TakeSteps(), ElementsAreArray(kWholeOrder));
    }
}

// An interrupted check is not a failed one.
TEST_F(ToolAcquisition, CtrlCIsNoVerdictAboutTheCamera) {
    SetVariable("RECORDING_FRAMES", "0");
    SetVariable("RECORDING_MARK", "AcquisitionStart");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const FileWatch watch(folder_);
        const int process = Start({"check", "-t", "86400000"});
        EXPECT_TRUE(watch.Await("reached"));
        kill(process, signal);
        const ToolResult result = Wait(process);
        EXPECT_EQ(result.exitCode, 130);
        EXPECT_THAT(result.out, AllOf(HasSubstr("\ninterrupted frames "), Not(HasSubstr("FAILED")),
                                      HasSubstr(" 0 failed"), Not(HasSubstr("start and stop"))));
        const Steps steps = TakeSteps();
        EXPECT_EQ(steps.back(), "TLParamsLocked=0") << "and the camera is stopped";
    }
}

// The first signal waits for the producer, the second does not.
TEST_F(ToolAcquisition, ASecondCtrlCEndsACallThatNeverReturns) {
    SetVariable("TMPDIR", folder_);
    const struct {
        const char* step;
        std::vector<std::string> command;
    } cases[] = {{"TriggerSelector=1", {"config", "save", "--all", "1", "saved.xml"}},
                 {"AcquisitionStop", {"grab", "-f", "none"}},
                 {"PayloadSize", {"get", "1", "PayloadSize"}}};
    for (const auto& [step, command] : cases) {
        SetVariable("RECORDING_HANG", step);
        SetVariable("RECORDING_MARK", step);
        const FileWatch watch(folder_);
        const int process = Start(command);
        EXPECT_TRUE(watch.Await("reached"));
        kill(process, SIGINT);
        kill(process, SIGTERM);
        const ToolResult result = Wait(process);
        EXPECT_EQ(result.exitCode, 130) << command.front();
        EXPECT_THAT(result.err, HasSubstr("ended at once")) << command.front();
        for (const auto& file : std::filesystem::directory_iterator(folder_)) {
            EXPECT_THAT(file.path().filename(), AnyOf("steps", "stdout", "stderr", "reached"))
                << command.front();
        }
    }
}

// Only a terminal shows that the program waits.
TEST_F(ToolAcquisition, ALongWaitShowsOnATerminal) {
    SetVariable("RECORDING_FRAMES", "0");
    const std::vector<std::string> command = {"grab", "-t", "2500"};
    const ToolResult watched = RunOnTerminal(command);
    EXPECT_EQ(watched.exitCode, 6);
    EXPECT_THAT(watched.out, HasSubstr("\r\x1b[Kwaiting for the first frame, "));
    EXPECT_THAT(watched.out, HasSubstr("\r\x1b[KCamera ")) << "and is gone afterwards";
    EXPECT_THAT(Run(command).err, Not(HasSubstr("waiting")));
}

TEST_F(ToolAcquisition, LostCamera) {
    SetVariable("RECORDING_LOST", "2");
    const ToolResult result = Run({"grab", "-n", "5", "-f", "none"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.out, HasSubstr("Frames      2"));
    EXPECT_THAT(result.err, HasSubstr("waiting for a frame failed"));
    Steps steps = kWholeOrder;
    steps.insert(steps.begin() + 7, "AcquisitionAbort");
    EXPECT_THAT(TakeSteps(), ElementsAreArray(steps));
}

TEST_F(ToolAcquisition, CameraThatStopsByItself) {
    SetVariable("RECORDING_FRAMES", "3");
    const ToolResult result =
        Run({"grab", "-n", "5", "-f", "none", "-t", "100", "--set", "AcquisitionMode=MultiFrame"});
    EXPECT_EQ(result.exitCode, 6);
    EXPECT_THAT(result.err, AllOf(HasSubstr("stopped by itself after 3 frames: AcquisitionMode is "
                                            "MultiFrame, AcquisitionFrameCount is 3"),
                                  HasSubstr("Next: "), Not(HasSubstr("no frame within"))));
    EXPECT_THAT(TakeSteps(), ElementsAreArray(kWholeOrder));
}

// The report shows the features, for each trigger, and restores the selector.
TEST_F(ToolAcquisition, SilenceShowsTheFeatures) {
    const ToolResult triggered = Run({"grab", "-t", "100", "--set", "TriggerSelector=LineStart",
                                      "--set", "TriggerSource=Line1", "--set", "TriggerMode=On",
                                      "--set", "TriggerSelector=FrameStart"});
    EXPECT_EQ(triggered.exitCode, 6);
    EXPECT_THAT(
        triggered.err,
        AllOf(HasSubstr("ok  the camera accepted AcquisitionStart"),
              HasSubstr("ok  TLParamsLocked is 1"), HasSubstr("ok  AcquisitionMode is Continuous"),
              HasSubstr("!!  TriggerMode is On for LineStart, TriggerSource is Line1"),
              HasSubstr("ok  TriggerMode is Off for FrameStart"),
              HasSubstr("ok  ExposureTime is 10000 us"),
              HasSubstr("Next: send the camera a trigger (Line1), or switch it off: "
                        "zelcam set cam0 TriggerSelector=LineStart TriggerMode=Off\n")));
    const Steps steps = TakeSteps();
    EXPECT_THAT(std::vector(steps.end() - 5, steps.end()),
                ElementsAre("TriggerSelector=1", "TriggerSelector=0", "AcquisitionStop",
                            "DSStopAcquisition", "TLParamsLocked=0"));

    SetVariable("RECORDING_FRAMES", "0");
    const ToolResult slow = Run({"grab", "-t", "100", "--set", "ExposureTime=200000"});
    EXPECT_THAT(slow.err, AllOf(Not(HasSubstr("TriggerMode is On")),
                                HasSubstr("!!  ExposureTime is 200000 us"),
                                HasSubstr("Next: wait longer: zelcam grab cam0 --timeout 400\n")));
    const ToolResult silent = Run({"grab", "-t", "100"});
    EXPECT_THAT(silent.err, HasSubstr("Next: let `zelcam doctor "));
}

// Including events, settings and configurations.
TEST_F(ToolTest, ExamplesWithSimulatedCameras) {
    SetCameras(R"(<Interface id="eth0" type="GEV"><Camera id="cam" frameRate="0"/></Interface>)");
    for (const char* program :
         {ZELCAM_README_EXAMPLE, ZELCAM_ONE_PICTURE, ZELCAM_GRAB_LOOP, ZELCAM_FEATURES}) {
        const ToolResult result = Run({}, program);
        EXPECT_EQ(result.exitCode, 0) << program << result.err;
        EXPECT_THAT(result.out, HasSubstr("640 x 480")) << program;
    }
}

}  // namespace
