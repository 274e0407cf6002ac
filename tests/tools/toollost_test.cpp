// Commands whose camera stops answering. They run in this process, so that the test can count calls
// and make them fail.

#include <cstdlib>
#include <iostream>
#include <sstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "gentl/GenTL.h"
#include "tests/support/simulator.h"
#include "tools/zelcam/commands/commands.h"

using namespace ZelTool;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class ToolLost : public ::testing::Test {
  protected:
    struct Result {
        ExitCode code = ExitCode::Ok;
        std::string out;
        std::string failure;
    };

    ToolLost() { EXPECT_EQ(simulator_.configure(nullptr), 0); }
    ~ToolLost() override { simulator_.clearFaults(); }

    static Result Run(std::vector<std::string> arguments) {
        CommandLine line("zelcam", "0", "");
        Invocation invocation;
        AddFeaturesCommand(line.Program(), invocation);
        AddGetCommand(line.Program(), invocation);
        AddWatchCommand(line.Program(), invocation);
        AddEventsCommand(line.Program(), invocation);
        AddReportCommand(line.Program(), invocation);
        AddCheckCommand(line.Program(), invocation);
        arguments.insert(arguments.begin(), "zelcam");
        std::vector<char*> argv;
        argv.reserve(arguments.size());
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        Result result;
        std::ostringstream out;
        std::streambuf* const before = std::cout.rdbuf(out.rdbuf());
        try {
            const auto end = line.Parse(static_cast<int>(argv.size()), argv.data());
            result.code = end ? *end : invocation.run();
        } catch (const Failure& failure) {
            result.code = failure.Code();
            result.failure = failure.what();
        }
        std::cout.rdbuf(before);
        result.out = out.str();
        return result;
    }

    // The number of reads of ports.
    uint64_t ReadsOf(const std::vector<std::string>& arguments) {
        const uint64_t before = simulator_.callCount("GCReadPort");
        EXPECT_EQ(Run(arguments).code, ExitCode::Ok);
        return simulator_.callCount("GCReadPort") - before;
    }

    // After that many reads, the next `count` fail.
    void FailReads(uint64_t after, uint32_t count = ZELSIM_FOREVER) {
        ZelSimFault fault{};
        fault.function = "GCReadPort";
        fault.command = ZELSIM_ANY_COMMAND;
        fault.skip = static_cast<uint32_t>(after);
        fault.count = count;
        fault.actions = ZELSIM_FAULT_RETURN;
        fault.code = GenTL::GC_ERR_IO;
        ASSERT_EQ(simulator_.injectFault(&fault), GenTL::GC_ERR_SUCCESS);
    }

    // Like FailReads, after half of the reads that follow the description.
    void LoseInTheMiddle(const std::vector<std::string>& arguments) {
        const uint64_t description = ReadsOf({"get", "DeviceTemperature"});
        const uint64_t all = ReadsOf(arguments);
        ASSERT_GT(all, description);
        FailReads((description + all) / 2);
    }

    ZelTest::Simulator simulator_;
};

TEST_F(ToolLost, FeaturesAreListedUntilThenAndTheCommandFails) {
    LoseInTheMiddle({"features"});
    const Result text = Run({"features"});
    EXPECT_EQ(text.code, ExitCode::FeatureFailed);
    EXPECT_THAT(text.out, AllOf(HasSubstr(" DeviceVendorName "), Not(HasSubstr("TestEvent"))));
    EXPECT_THAT(text.failure, HasSubstr("nothing answers any more: "));
    simulator_.clearFaults();

    LoseInTheMiddle({"features", "--json"});
    const Result machine = Run({"features", "--json"});
    EXPECT_EQ(machine.code, ExitCode::FeatureFailed);
    EXPECT_EQ(json::parse(machine.out).at("failures").size(), 1U) << machine.out;
}

// One read fails, but the camera is not lost.
TEST_F(ToolLost, OneFeatureThatFailsLeavesTheOthers) {
    FailReads(ReadsOf({"get", "DeviceVendorName"}) - 1, 1);
    const Result text = Run({"features", "-v", "invisible"});
    EXPECT_EQ(text.code, ExitCode::FeatureFailed);
    EXPECT_THAT(text.out, AllOf(HasSubstr("DeviceVendorName                  ro      !!"),
                                HasSubstr("TestEvent")));
    EXPECT_THAT(text.failure, AllOf(HasSubstr("1 feature cannot be read:\n  DeviceVendorName"),
                                    Not(HasSubstr("any more"))));
}

TEST_F(ToolLost, GetSaysWhy) {
    FailReads(ReadsOf({"get", "DeviceTemperature"}) - 1);
    const Result result = Run({"get", "DeviceTemperature", "Width"});
    EXPECT_EQ(result.code, ExitCode::FeatureFailed);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.failure, HasSubstr("DeviceTemperature cannot be read: "));
}

TEST_F(ToolLost, WatchEnds) {
    for (const char* form : {"--plain", "--json"}) {
        std::vector<std::string> arguments = {"watch", "1", "Device*", "-i", "1", "-d", "20000"};
        if (form != std::string("--plain")) arguments.emplace_back(form);
        FailReads(ReadsOf({"get", "DeviceTemperature"}) + 100);
        const Result result = Run(arguments);
        EXPECT_EQ(result.code, ExitCode::FeatureFailed) << form;
        EXPECT_THAT(result.failure, HasSubstr("nothing answers any more")) << form;
        simulator_.clearFaults();
    }
    // A single failure is a change, and it sets the exit code at the end.
    FailReads(ReadsOf({"get", "DeviceTemperature"}) + 1, 1);
    const Result once =
        Run({"watch", "1", "DeviceTemperature", "-i", "1", "-n", "2", "-d", "20000"});
    EXPECT_EQ(once.code, ExitCode::FeatureFailed);
    EXPECT_THAT(once.out, HasSubstr("-> (DeviceTemperature cannot be read: "));
}

TEST_F(ToolLost, EventsEnd) {
    FailReads(ReadsOf({"events", "1", "Test", "-d", "1"}));
    const Result result = Run({"events", "1", "Test", "-d", "20000"});
    EXPECT_EQ(result.code, ExitCode::FeatureFailed);
    EXPECT_THAT(result.failure, HasSubstr("nothing answers any more"));
}

TEST_F(ToolLost, ReportIsWrittenAndFails) {
    LoseInTheMiddle({"report", "-n", "1"});
    const Result text = Run({"report", "-n", "1"});
    EXPECT_EQ(text.code, ExitCode::FeatureFailed);
    EXPECT_THAT(text.out,
                AllOf(HasSubstr("\n!! "), HasSubstr("=== Frames"), HasSubstr("any more")));
    simulator_.clearFaults();

    LoseInTheMiddle({"report", "-n", "1", "--json"});
    const Result machine = Run({"report", "-n", "1", "--json"});
    EXPECT_EQ(machine.code, ExitCode::FeatureFailed);
    EXPECT_THAT(json::parse(machine.out).dump(), HasSubstr("\"problems\":["));
}

TEST_F(ToolLost, CheckFailsInEveryPass) {
    FailReads(ReadsOf({"get", "DeviceTemperature"}) + 5);
    const Result result = Run({"check", "-n", "1", "--json"});
    EXPECT_EQ(result.code, ExitCode::CheckFailed);
    const json checks = json::parse(result.out).at("checks");
    for (const json& check : checks) {
        const std::string name = check.at("check");
        if (name == "read camera" || name == "limits of camera" || name == "write and restore") {
            EXPECT_EQ(check.at("verdict"), "FAILED") << check;
        }
    }
}

}  // namespace
