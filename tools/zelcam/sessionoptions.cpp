#include "tools/zelcam/commands.h"

void AddSessionOptions(CLI::App& command, SessionOptions& options) {
    command
        .add_option("-p,--producer", options.producers,
                    "Also load this GenTL producer (.cti file); may be\n"
                    "given several times. Those in the folders named by\n"
                    "GENICAM_GENTL64_PATH are loaded in any case")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command
        .add_option("--search", options.searchMs,
                    "Time each interface has to find its cameras, in\n"
                    "milliseconds")
        ->type_name("MS")
        ->check(CLI::Range(uint64_t{0}, uint64_t{600000}).description(""))
        ->capture_default_str();
    command.add_flag("--json", options.json, "Print the result as JSON");
}
