// Tries a producer in a child process, so that a producer that crashes or hangs ends only that
// process.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace ZelTool {

struct OfferedInterface {
    std::string id;
    bool simulated = false;
};

struct TrialOptions {
    uint64_t limitMs = 10000;  // for everything except the search for cameras
    uint64_t searchMs = 1000;  // for each interface that is searched
    bool searchReal = true;    // search the interfaces of real cameras
    bool searchSimulated = true;
};

// The constructor forks: no other thread may run yet. The child loads the file, initialises it,
// lists its interfaces and cameras, and closes it again, as the library will. The child ends with
// this object at the latest, or when this process ends, however that happens.
class ProducerTrial {
  public:
    ProducerTrial(const std::string& file, const TrialOptions& options);
    ~ProducerTrial();
    ProducerTrial(const ProducerTrial&) = delete;
    ProducerTrial& operator=(const ProducerTrial&) = delete;

    // Waits until the trial has ended. Throws Failure (Interrupted) at Ctrl-C.
    void Await();

    // After Await: why the producer cannot be used; empty when it can.
    const std::string& Reason() const { return reason_; }

    // After Await: the interfaces that can be opened, in the producer's order.
    const std::vector<OfferedInterface>& Interfaces() const { return interfaces_; }

  private:
    // The reading end of a pipe.
    struct Channel {
        int file = -1;
        std::string text;
    };

    void Receive(Channel& channel, size_t most);
    void ReceiveLastWords();
    void TakeRecords();
    void TakeRecord(const std::string& record);
    uint64_t TimeLeftMs() const;
    void Judge(int status);
    int End();
    std::string LastWords() const;

    const TrialOptions options_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    pid_t process_ = -1;
    Channel records_;  // see TrialRecord
    Channel words_;    // what the producer prints
    std::string step_ = "the loader";
    size_t searched_ = 0;
    bool done_ = false;
    bool late_ = false;
    std::string reason_;
    std::vector<OfferedInterface> interfaces_;
};

}  // namespace ZelTool
