#include "tools/zelcam/commands.h"

void AddSessionOptions(CLI::App& command, SessionOptions& options) {
    command
        .add_option("-p,--producer", options.producers,
                    "Also load this GenTL producer file (.cti); may be given several times. The "
                    "folders of the environment variable GENICAM_GENTL64_PATH are loaded, too")
        ->type_name("FILE")
        ->expected(1)
        ->take_all()
        ->trigger_on_parse(false);
    command
        .add_option("--search", options.searchMs,
                    "Time in milliseconds that each interface has to find its cameras")
        ->type_name("MS")
        ->check(CLI::Range(0, 600000))
        ->capture_default_str();
    command.add_flag("--json", options.json, "Print the result as JSON");
}
