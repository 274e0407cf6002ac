// Another program beside the benchmarks.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Bench {

// Runs on the processor, in the network namespace and with the environment of the thread that
// starts it. Killed with the object.
class Process {
  public:
    // A program and its arguments. What it writes is kept. Throws when it does not start.
    explicit Process(std::vector<std::string> command);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    bool Runs();
    void Signal(int signal);
    int64_t CpuTime() const;  // of all its threads until now, in nanoseconds

    // False when it still runs after that time.
    bool Await(std::chrono::milliseconds patience);

    std::string Output() const;  // until now, errors as well

  private:
    struct Closer {
        void operator()(FILE* file) const { std::fclose(file); }
    };

    const std::unique_ptr<FILE, Closer> output_;
    pid_t process_ = -1;
    bool isOver_ = false;
};

// Where a program of this project is: beside this one.
std::string ProgramBeside(const std::string& name);

}  // namespace Bench
