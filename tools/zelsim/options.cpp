#include "tools/zelsim/options.h"

#include <CLI/CLI.hpp>

namespace ZelSimTool {

namespace {

constexpr const char* kFooter =
    "Without --on, cameras are served on loopback only, from 127.0.0.2 on.\n"
    "Exit codes: 0 ended by a signal, or done; 1 wrong command line; 2 failed.\n\n"
    "Examples:\n"
    "  zelsim\n"
    "  zelsim --config cameras.xml --control /tmp/zelsim.sock\n"
    "  zelsim --control /tmp/zelsim.sock --tell help\n"
    "  zelsim --control /tmp/zelsim.sock --tell \"set all LossRate 0.01\"";

}  // namespace

std::optional<ExitCode> ParseOptions(int argc, char** argv, Options& options) {
    CLI::App app("Serve simulated cameras on a network, for GigE Vision programs", "zelsim");
    app.set_version_flag("--version", "zelsim " ZELCAM_VERSION, "Print the version");
    app.set_help_flag("-h,--help", "Print this help");
    app.add_option("-c,--config", options.config, "Cameras to serve; default: the built-in ones")
        ->type_name("FILE");
    app.add_option("--on", options.on, "Where to serve them; can be repeated")
        ->type_name("ADDRESS|INTERFACE")
        ->allow_extra_args(false);
    CLI::Option* const control =
        app.add_option("--control", options.control, "Socket for commands while it runs")
            ->type_name("SOCKET");
    app.add_option("-t,--tell", options.tell,
                   "Send a command to the program behind SOCKET, and end")
        ->type_name("COMMAND")
        ->needs(control);
    app.add_flag("--switches", options.listsSwitches,
                 "List the switches of cameras, which are also the keys of Network, and end");
    app.footer(kFooter);
    app.failure_message([](const CLI::App* failed, const CLI::Error& error) {
        return failed->get_name() + ": " + error.what() + "\nRun with --help for more.\n";
    });
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? ExitCode::Ok : ExitCode::Usage;
    }
    return std::nullopt;
}

}  // namespace ZelSimTool
