// zelcam: cameras from the command line. One source per subcommand, see commands.h.

#include <cstdio>
#include <exception>
#include <iostream>
#include <sstream>
#include <unistd.h>

#include <Base/GCBase.h>
#include <nlohmann/json.hpp>

#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/texttable.h"

namespace ZelTool {

namespace {

constexpr const char* kHelp =
    "Exit codes:\n"
    "    0  success\n"
    "    1  wrong option or argument\n"
    "    2  a required producer does not work\n"
    "    3  no camera was found, or the name matches none or several\n"
    "    4  the camera cannot be opened\n"
    "    5  the acquisition failed\n"
    "    6  no frame arrived in time\n"
    "    7  a file cannot be read or written, or a frame cannot be converted\n"
    "    8  a feature does not exist, or cannot be read, set or started; a\n"
    "       register cannot be read or written; an upload of firmware failed;\n"
    "       or the camera is lost\n"
    "    9  config diff: the settings of camera and file differ\n"
    "   10  check: a check failed\n"
    "  130  ended with Ctrl-C before everything was done\n\n"
    "Examples:\n"
    "  zelcam list\n"
    "  zelcam list --simulated   (without a camera at hand)\n"
    "  zelcam grab -o picture.png\n"
    "  zelcam features\n"
    "  zelcam set 1 ExposureTime=5ms\n"
    "  zelcam grab --help";

void PrintFailure(const std::string& message, ExitCode code, bool json) {
    if (!json) {
        const size_t width = TerminalWidth(STDERR_FILENO);
        std::istringstream lines("zelcam: " + PrintableLines(message));
        for (std::string line; std::getline(lines, line);) {
            for (const std::string& part : WrapText(line, width))
                std::cerr << part << '\n';
        }
        return;
    }
    using Json = nlohmann::ordered_json;
    const Json failure = {{"exitCode", static_cast<int>(code)}, {"error", message}};
    // On one line: the output may have one object per line.
    std::cout << JsonText(failure, -1) << '\n';
}

ExitCode Run(const Invocation& invocation) {
    NoteInterrupts();
    ExitCode code = ExitCode::Ok;
    try {
        code = invocation.run();
        std::cout.flush();
        if (!std::cout) throw Failure(ExitCode::FileFailed, "the output cannot be written");
    } catch (const Failure& failure) {
        code = failure.Code();
        PrintFailure(failure.what(), code, invocation.json);
    } catch (const GenICam::GenericException& error) {
        code = ExitCode::FeatureFailed;
        PrintFailure(error.GetDescription(), code, invocation.json);
    } catch (const std::exception& error) {
        code = ExitCode::AcquisitionFailed;
        PrintFailure(error.what(), code, invocation.json);
    }
    return code;
}

ExitCode ParseAndRun(int argc, char** argv) {
    CommandLine line("zelcam", ZELCAM_VERSION, "Find cameras, set them, and grab frames from them");
    Command app = line.Program();
    app.Footer(kHelp);
    Invocation invocation;
    AddListCommand(app, invocation);
    AddGrabCommand(app, invocation);
    AddFeaturesCommand(app, invocation);
    AddGetCommand(app, invocation);
    AddSetCommand(app, invocation);
    AddExecCommand(app, invocation);
    AddWatchCommand(app, invocation);
    AddEventsCommand(app, invocation);
    AddConfigCommand(app, invocation);
    AddXmlCommand(app, invocation);
    AddIpCommand(app, invocation);
    AddReadCommand(app, invocation);
    AddWriteCommand(app, invocation);
    AddFirmwareCommand(app, invocation);
    AddReportCommand(app, invocation);
    AddCheckCommand(app, invocation);
    const std::optional<ExitCode> end = line.Parse(argc, argv);
    return end ? *end : Run(invocation);
}

}  // namespace

}  // namespace ZelTool

int main(int argc, char** argv) {
    try {
        const ZelTool::TerminalGuard out(std::cout, STDOUT_FILENO);
        const ZelTool::TerminalGuard err(std::cerr, STDERR_FILENO);
        return static_cast<int>(ZelTool::ParseAndRun(argc, argv));
    } catch (...) {
        std::fputs("zelcam: the program could not start\n", stderr);
        return static_cast<int>(ZelTool::ExitCode::Usage);
    }
}
