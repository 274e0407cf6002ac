#include "tools/zelcam/console/commandline.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include <CLI/CLI.hpp>

#include "tools/zelcam/console/numbertext.h"
#include "tools/zelcam/console/suggestion.h"
#include "tools/zelcam/console/texttable.h"

namespace ZelTool {

namespace {

// Columns of the help: the whole line, and the names of the options.
constexpr size_t kHelpWidth = 80;
constexpr size_t kNameWidth = 24;

std::string Wrapped(const std::string& text, size_t width) {
    return Joined(WrapText(text, width), "\n");
}

std::string Description(const std::string& what) {
    return Wrapped(what, kHelpWidth - kNameWidth);
}

std::vector<std::string> NamesOfCommands(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands(nullptr))
        names.push_back(command->get_name());
    return names;
}

}  // namespace

CommandOption& CommandOption::Required(bool required) {
    option_->required(required);
    return *this;
}

CommandOption& CommandOption::OneOf(const std::vector<std::string>& values) {
    option_->check(CLI::IsMember(values).description(""));
    return *this;
}

CommandOption& CommandOption::Range(uint64_t minimum, uint64_t maximum) {
    option_->check([minimum, maximum](const std::string& text) {
        const std::optional<uint64_t> number = ParseCount(text);
        const bool within = number && *number >= minimum && *number <= maximum;
        return within ? ""
                      : text + " is not from " + std::to_string(minimum) + " to " +
                            std::to_string(maximum);
    });
    return *this;
}

CommandOption& CommandOption::OneValueEach() {
    option_->allow_extra_args(false);
    return *this;
}

CommandOption& CommandOption::Excludes(const CommandOption& other) {
    option_->excludes(other.option_);
    return *this;
}

CommandOption& CommandOption::Hide() {
    option_->group("");
    return *this;
}

Command Command::AddCommand(const char* name, const char* what) {
    app_->require_subcommand(1);
    return Command(app_->add_subcommand(name, Description(what)));
}

CommandOption Command::AddOption(const char* names, const char* type, std::string& value,
                                 const std::string& what) {
    CLI::Option* const option = app_->add_option(names, value, Description(what));
    return CommandOption(option->type_name(type)->capture_default_str());
}

CommandOption Command::AddOption(const char* names, const char* type,
                                 std::vector<std::string>& values, const std::string& what) {
    return CommandOption(app_->add_option(names, values, Description(what))->type_name(type));
}

CommandOption Command::AddOption(const char* names, const char* type, uint64_t& value,
                                 const std::string& what) {
    const auto take = [&value](const CLI::results_t& texts) {
        value = ParseCount(texts.front()).value_or(0);
        return true;
    };
    const auto show = [&value] { return std::to_string(value); };
    CLI::Option* const option = app_->add_option(names, take, Description(what), false, show);
    option->check([](const std::string& text) {
        return ParseCount(text) ? "" : "\"" + text + "\" is not a whole number, or is too large";
    });
    return CommandOption(option->type_name(type)->capture_default_str());
}

CommandOption Command::AddFlag(const char* names, bool& flag, const char* what) {
    return CommandOption(app_->add_flag(names, flag, Description(what)));
}

void Command::Heading(const char* text) {
    app_->option_defaults()->group(text);
}

void Command::Footer(const char* text) {
    app_->footer(Wrapped(text, kHelpWidth));
}

void Command::OnChoice(std::function<void()> action) {
    app_->callback(std::move(action));
}

CommandLine::CommandLine(const char* name, const char* version, const char* what)
    : app_(std::make_unique<CLI::App>(what, name)) {
    app_->set_version_flag("--version", std::string(name) + ' ' + version, "Print the version");
    app_->set_help_flag("-h,--help", "Print this help");
    app_->failure_message([](const CLI::App* app, const CLI::Error& error) {
        return app->get_name() + ": " + error.what() + "\nRun with --help for more information.\n";
    });
    app_->get_formatter()->column_width(kNameWidth);
}

CommandLine::~CommandLine() = default;

std::optional<ExitCode> CommandLine::Parse(int argc, char** argv) {
    if (argc == 1) {
        std::cerr << app_->help();
        return ExitCode::Usage;
    }
    std::vector<std::string> words(argv + 1, argv + argc);
    if (words.front() == "help") {
        words.erase(words.begin());
        words.emplace_back("--help");
    }
    try {
        std::reverse(words.begin(), words.end());  // the order that CLI11 expects
        app_->parse(words);
    } catch (const CLI::ParseError& error) {
        const CLI::App* command = app_.get();
        std::string name = command->get_name();
        while (!command->get_subcommands().empty()) {
            command = command->get_subcommands().front();
            name += ' ' + command->get_name();
        }
        if (command->get_require_subcommand_min() != 0 && !command->remaining().empty()) {
            const std::string wanted = command->remaining().front();
            std::cerr << name << ": there is no command \"" << wanted << "\""
                      << DidYouMean(wanted, NamesOfCommands(*command)) << "; see " << name
                      << " --help\n";
            return ExitCode::Usage;
        }
        return app_->exit(error) == 0 ? ExitCode::Ok : ExitCode::Usage;
    }
    return std::nullopt;
}

}  // namespace ZelTool
