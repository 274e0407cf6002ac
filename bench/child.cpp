#include "bench/child.h"

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace Bench {

namespace {

[[noreturn]] void RunChild(const std::function<std::vector<double>()>& work, int pipe) {
    int status = 1;
    try {
        const std::vector<double> numbers = work();
        const size_t size = numbers.size() * sizeof(double);
        if (write(pipe, numbers.data(), size) == static_cast<ssize_t>(size)) status = 0;
    } catch (const std::exception& e) {
        fprintf(stderr, "zelcam_bench: %s\n", e.what());
    }
    _exit(status);
}

std::vector<double> ReadAll(int pipe) {
    std::vector<double> numbers;
    double number = 0;
    while (read(pipe, &number, sizeof number) == sizeof number)
        numbers.push_back(number);
    return numbers;
}

}  // namespace

std::vector<double> InChild(const std::function<std::vector<double>()>& work) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no fork");
    if (child == 0) RunChild(work, ends[1]);
    close(ends[1]);
    std::vector<double> numbers = ReadAll(ends[0]);
    close(ends[0]);
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error("a process that measures failed");
    }
    return numbers;
}

}  // namespace Bench
