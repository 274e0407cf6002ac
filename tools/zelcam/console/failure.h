// Exit codes, and the exception that ends a command.
#pragma once

#include <stdexcept>
#include <string>

namespace ZelTool {

// Exit codes of the program, which its help lists. Scripts rely on the numbers.
enum class ExitCode {
    Ok = 0,
    Usage = 1,
    NoProducer = 2,
    NoCamera = 3,
    CannotOpen = 4,
    AcquisitionFailed = 5,
    Timeout = 6,
    FileFailed = 7,
    FeatureFailed = 8,
    Different = 9,
    CheckFailed = 10,
    Interrupted = 130,
};

// Ends a command with a message for the user.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
    ExitCode Code() const { return code_; }

  private:
    ExitCode code_;
};

}  // namespace ZelTool
