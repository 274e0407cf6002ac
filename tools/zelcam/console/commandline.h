// The parser of the command line. Commands see only these classes: the library behind them is
// header-only, and compiling it again for each command would take most of the build time.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/zelcam/console/failure.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace ZelTool {

// An option or a flag (with a dash), or an argument (without one). Each function returns the
// option, so that calls can be chained.
class CommandOption {
  public:
    explicit CommandOption(CLI::Option* option) : option_(option) {}

    CommandOption& Required(bool required = true);
    CommandOption& OneOf(const std::vector<std::string>& values);
    CommandOption& Range(uint64_t minimum, uint64_t maximum);
    CommandOption& OneValueEach();  // the user repeats the option for several values
    CommandOption& Excludes(const CommandOption& other);  // the user may not give both
    CommandOption& Hide();                                // from the help

  private:
    CLI::Option* option_;
};

// A command, or the program as a whole. This is a handle: copy it freely. It is valid as long as
// the CommandLine, and the variables that the options fill must live as long.
class Command {
  public:
    explicit Command(CLI::App* app) : app_(app) {}

    // Afterwards the user must choose one of the commands inside this one.
    Command AddCommand(const char* name, const char* what);

    // The help calls the value `type` and shows the default. A number is accepted only as whole and
    // in decimal digits.
    CommandOption AddOption(const char* names, const char* type, std::string& value,
                            const std::string& what);
    CommandOption AddOption(const char* names, const char* type, std::vector<std::string>& values,
                            const std::string& what);
    CommandOption AddOption(const char* names, const char* type, uint64_t& value,
                            const std::string& what);
    CommandOption AddFlag(const char* names, bool& flag, const char* what);

    // The heading in the help for the options that follow; "Options" at first.
    void Heading(const char* text);
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

    // Fills the variables and calls the action of the chosen command. Returns an exit code when
    // nothing is left to do: it has printed the help, or a message about a wrong command line.
    std::optional<ExitCode> Parse(int argc, char** argv);

  private:
    std::unique_ptr<CLI::App> app_;
};

}  // namespace ZelTool
