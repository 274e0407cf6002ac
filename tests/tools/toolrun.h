// Runs the built program as a user does.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

struct ToolResult {
    int exitCode = -1;  // -1 when a signal ended the program
    std::string out;
    std::string err;

    nlohmann::json Json() const { return nlohmann::json::parse(out); }
};

// A test with its own folder, in which the program runs, and its own cameras.
class ToolTest : public ::testing::Test {
  protected:
    // Runs with the cameras of SetCameras, if there are any.
    explicit ToolTest(std::string interfaces = "") : interfaces_(std::move(interfaces)) {}

    void SetUp() override;
    void TearDown() override;

    // The simulated cameras of the following runs: elements of the configuration.
    void SetCameras(const std::string& interfaces);

    // Adds a variable to the environment of the following runs.
    void SetVariable(const std::string& name, const std::string& value) {
        environment_[name] = value;
    }

    // Starts a program, zelcam by default; Wait returns its result.
    int Start(const std::vector<std::string>& arguments, const char* program = ZELCAM_TOOL);
    ToolResult Wait(int process);
    ToolResult Run(const std::vector<std::string>& arguments, const char* program = ZELCAM_TOOL) {
        return Wait(Start(arguments, program));
    }

    // Runs zelcam on a terminal; `out` is what the terminal showed.
    ToolResult RunOnTerminal(const std::vector<std::string>& arguments);

    std::string Path(const std::string& name) const { return folder_ + "/" + name; }
    std::string Read(const std::string& name) const;
    void Write(const std::string& name, const std::string& text) const;

    // Blocks until a file with this name appears in the folder. Create the object before what
    // creates the file.
    class FileWatch {
      public:
        explicit FileWatch(const std::string& folder);
        ~FileWatch();
        FileWatch(const FileWatch&) = delete;
        FileWatch& operator=(const FileWatch&) = delete;
        bool Await(const std::string& name) const;

      private:
        int inotify_;
    };

    std::string folder_;

  private:
    [[noreturn]] void Execute(const std::vector<std::string>& arguments, const char* program);

    const std::string interfaces_;
    std::map<std::string, std::string> environment_;
};
