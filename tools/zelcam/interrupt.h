// Ctrl-C.
#ifndef ZELCAM_TOOLS_ZELCAM_INTERRUPT_H
#define ZELCAM_TOOLS_ZELCAM_INTERRUPT_H

#include <cstddef>
#include <string>

// From now on the first SIGINT, SIGTERM or SIGHUP is only noted, so that a command can stop the
// camera and clean up. The second one ends the program wherever it is, says so and removes the
// files that are watched: a call of a producer may never return.
void NoteInterrupts();

bool Interrupted();

// Failure (Interrupted) after the first signal.
void EndIfInterrupted();

// A file that is not finished: the second signal removes it. Its owner does in every other case.
class RemovedWhenInterrupted {
  public:
    RemovedWhenInterrupted() = default;
    ~RemovedWhenInterrupted() { Forget(); }
    RemovedWhenInterrupted(const RemovedWhenInterrupted&) = delete;
    RemovedWhenInterrupted& operator=(const RemovedWhenInterrupted&) = delete;

    // Does nothing when too many are watched, or the name is too long.
    void Watch(const std::string& name);
    void Forget();

  private:
    size_t place_ = 0;  // among those that are watched, from 1; 0: in none
};

#endif  // ZELCAM_TOOLS_ZELCAM_INTERRUPT_H
