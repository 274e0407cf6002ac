// The subcommands. Each has a source of its own, which adds its options to the parser and notes in
// `run` what to do when the user chose it.
#ifndef ZELCAM_TOOLS_ZELCAM_COMMANDS_H
#define ZELCAM_TOOLS_ZELCAM_COMMANDS_H

#include <functional>

#include <CLI/CLI.hpp>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/session.h"

struct Invocation {
    std::function<ExitCode()> run;
    bool json = false;  // failures, too, are told as JSON
};

void AddListCommand(CLI::App& app, Invocation& invocation);
void AddGrabCommand(CLI::App& app, Invocation& invocation);

// The options that every command with cameras has.
void AddSessionOptions(CLI::App& command, SessionOptions& options);

#endif  // ZELCAM_TOOLS_ZELCAM_COMMANDS_H
