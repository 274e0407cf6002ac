// zelcam: cameras from the command line. One source per subcommand, see commands.h.

#include <cstdio>
#include <iostream>
#include <unistd.h>

#include "tools/zelcam/camera/words.h"
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
    "   10  check: a check failed; doctor: something was found\n"
    "  130  ended with Ctrl-C before everything was done\n\n"
    "Examples:\n"
    "  zelcam list\n"
    "  zelcam list --simulated   (without a camera at hand)\n"
    "  zelcam grab -o picture.png\n"
    "  zelcam features\n"
    "  zelcam set 1 ExposureTime=5ms\n"
    "  zelcam grab --help";

void PrintFailure(const Failure& failure, bool json) {
    if (json) {
        // On one line: the output may have one object per line.
        PrintJsonLine({{"exitCode", static_cast<int>(failure.Code())}, {"error", failure.what()}});
        return;
    }
    const std::string text = "zelcam: " + PrintableLines(failure.what());
    for (const std::string& line : WrapText(text, TerminalWidth(STDERR_FILENO)))
        std::cerr << line << '\n';
}

ExitCode Run(const Invocation& invocation) {
    NoteInterrupts();
    ExitCode code = ExitCode::Ok;
    const std::optional<Failure> failure = FailureOf([&] {
        code = invocation.run();
        std::cout.flush();
        if (!std::cout) throw Failure(ExitCode::FileFailed, "the output cannot be written");
    });
    if (!failure) return code;
    PrintFailure(*failure, invocation.json);
    return failure->Code();
}

ExitCode ParseAndRun(int argc, char** argv) {
    CommandLine line("zelcam", ZELCAM_VERSION, "Find cameras, set their features and grab frames");
    Command app = line.Program();
    app.Footer(kHelp);
    Invocation invocation;
    for (CommandAdder* add :
         {AddListCommand, AddGrabCommand, AddFeaturesCommand, AddGetCommand, AddSetCommand,
          AddExecCommand, AddWatchCommand, AddEventsCommand, AddConfigCommand, AddXmlCommand,
          AddIpCommand, AddReadCommand, AddWriteCommand, AddFirmwareCommand, AddReportCommand,
          AddCheckCommand, AddDoctorCommand})
        add(app, invocation);
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
