// A debugger, as far as the process that it looks at can see.
#pragma once

#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace GevTest {

// A process that traces this one, as a debugger does.
class Tracer {
  public:
    Tracer() {
        int told[2];
        int ending[2];
        if (pipe(told) != 0 || pipe(ending) != 0) return;
        const pid_t traced = getpid();
        child_ = fork();
        char byte = 0;
        if (child_ == 0) {
            close(ending[1]);
            [[maybe_unused]] ssize_t done = read(ending[0], &byte, 1);  // until it is allowed
            byte = ptrace(PTRACE_SEIZE, traced, nullptr, nullptr) == 0 ? 'y' : 'n';
            done = write(told[1], &byte, 1);
            done = read(ending[0], &byte, 1);
            _exit(0);
        }
        close(told[1]);
        close(ending[0]);
        prctl(PR_SET_PTRACER, child_);
        isAttached_ = write(ending[1], "g", 1) == 1 && read(told[0], &byte, 1) == 1 && byte == 'y';
        close(told[0]);
        ending_ = ending[1];
    }
    ~Tracer() {
        close(ending_);
        waitpid(child_, nullptr, 0);
    }
    Tracer(const Tracer&) = delete;
    Tracer& operator=(const Tracer&) = delete;

    bool IsAttached() const { return isAttached_; }

  private:
    pid_t child_ = -1;
    int ending_ = -1;
    bool isAttached_ = false;
};

}  // namespace GevTest
