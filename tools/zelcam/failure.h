// How the program ends.
#ifndef ZELCAM_TOOLS_ZELCAM_FAILURE_H
#define ZELCAM_TOOLS_ZELCAM_FAILURE_H

#include <stdexcept>
#include <string>

// Exit codes of the program, listed in its help: scripts rely on the numbers.
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

#endif  // ZELCAM_TOOLS_ZELCAM_FAILURE_H
