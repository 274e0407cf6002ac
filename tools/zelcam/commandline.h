// The parser of the command line. The commands see only this face of it: the library behind it is
// all headers, and compiling them again for each command would take most of the time of a build.
#ifndef ZELCAM_TOOLS_ZELCAM_COMMANDLINE_H
#define ZELCAM_TOOLS_ZELCAM_COMMANDLINE_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/zelcam/failure.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

// An option or a flag (with a dash), or an argument (without). Each function gives the option back,
// for the next.
class CommandOption {
  public:
    explicit CommandOption(CLI::Option* option) : option_(option) {}

    CommandOption& TypeName(const char* name);  // what the help calls the value
    CommandOption& Required(bool required = true);
    CommandOption& OneOf(const std::vector<std::string>& values);
    CommandOption& Range(uint64_t minimum, uint64_t maximum);
    CommandOption& OneValueEach();  // several values need the option several times
    CommandOption& Excludes(const CommandOption& other);  // not both can be given
    CommandOption& ShowDefault();                         // in the help
    CommandOption& Hide();                                // from the help

  private:
    CLI::Option* option_;
};

// A command, or the program as a whole. A handle: it is copied freely, and valid as long as the
// CommandLine. So have to be the variables that the options fill.
class Command {
  public:
    explicit Command(CLI::App* app) : app_(app) {}

    // From then on, one of the commands in this one has to be chosen.
    Command AddCommand(const char* name, const char* what);

    CommandOption AddOption(const char* names, std::string& value, const std::string& what);
    CommandOption AddOption(const char* names, std::vector<std::string>& values,
                            const std::string& what);
    // Takes whole numbers in decimal digits only.
    CommandOption AddOption(const char* names, uint64_t& value, const std::string& what);
    CommandOption AddFlag(const char* names, bool& flag, const char* what);

    void Footer(const char* text);  // of the help
    void OnChoice(std::function<void()> action);

  private:
    CLI::App* app_;
};

class CommandLine {
  public:
    CommandLine(const char* name, const char* version, const char* what);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    Command Program() { return Command(app_.get()); }

    // Fills the variables and calls the action of the chosen command. Gives the program's exit code
    // where nothing is left to do: help was asked for, or something is wrong, which it tells.
    std::optional<ExitCode> Parse(int argc, char** argv);

  private:
    std::unique_ptr<CLI::App> app_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_COMMANDLINE_H
