// Ctrl-C.
#pragma once

#include <cstddef>
#include <string>

namespace ZelTool {

// Installs handlers. They only note the first SIGINT, SIGTERM or SIGHUP, so that a command can stop
// the camera and clean up. The second signal ends the program at once, with a message, and removes
// the watched files: a call into a producer may never return.
void NoteInterrupts();

bool Interrupted();

// Throws Failure (Interrupted) after the first signal.
void EndIfInterrupted();

// An unfinished file that the second signal removes. In every other case its owner removes it.
class RemovedWhenInterrupted {
  public:
    RemovedWhenInterrupted() = default;
    ~RemovedWhenInterrupted() { Forget(); }
    RemovedWhenInterrupted(const RemovedWhenInterrupted&) = delete;
    RemovedWhenInterrupted& operator=(const RemovedWhenInterrupted&) = delete;

    // Does nothing when too many files are watched or the name is too long.
    void Watch(const std::string& name);
    void Forget();

  private:
    size_t place_ = 0;  // in the table of watched files, from 1; 0: not watched
};

}  // namespace ZelTool
