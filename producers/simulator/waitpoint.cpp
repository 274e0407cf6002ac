#include "producers/simulator/waitpoint.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <semaphore.h>
#include <system_error>

namespace ZelSim {

namespace {

timespec TimespecOf(WaitPoint::Clock::time_point time) {
    const auto sinceStart = time.time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(sinceStart);
    const std::chrono::nanoseconds rest = sinceStart - seconds;
    timespec result{};
    result.tv_sec = static_cast<time_t>(seconds.count());
    result.tv_nsec = static_cast<decltype(result.tv_nsec)>(rest.count());
    return result;
}

}  // namespace

class WaitPoint::Sleeper {
  public:
    Sleeper() {
        if (sem_init(&semaphore_, 0, 0) != 0) {
            throw std::system_error(errno, std::generic_category(), "sem_init");
        }
    }
    ~Sleeper() { sem_destroy(&semaphore_); }
    Sleeper(const Sleeper&) = delete;
    Sleeper& operator=(const Sleeper&) = delete;

    void Wake() { sem_post(&semaphore_); }

    // False when the time came first.
    bool AwaitWake(Clock::time_point time) {
        const timespec end = TimespecOf(time);
        int result = 0;
        do {
            result = time == kEndless ? sem_wait(&semaphore_)
                                      : sem_clockwait(&semaphore_, CLOCK_MONOTONIC, &end);
        } while (result != 0 && errno == EINTR);
        return result == 0;
    }

  private:
    sem_t semaphore_{};
};

// False when the time came first.
bool WaitPoint::Sleep(std::unique_lock<std::mutex>& lock, Clock::time_point time) {
    Sleeper self;
    sleepers_.push_back(&self);
    lock.unlock();
    const bool woken = self.AwaitWake(time);
    lock.lock();
    if (woken) return true;
    const auto place = std::find(sleepers_.begin(), sleepers_.end(), &self);
    if (place == sleepers_.end()) return self.AwaitWake(kEndless);  // comes at any moment
    sleepers_.erase(place);
    return false;
}

void WaitPoint::UnlockAndWakeOne(std::unique_lock<std::mutex>& lock) {
    Sleeper* first = nullptr;
    if (!sleepers_.empty()) {
        first = sleepers_.front();
        sleepers_.erase(sleepers_.begin());
    }
    lock.unlock();
    if (first != nullptr) first->Wake();
}

void WaitPoint::WakeAll() {
    for (Sleeper* const sleeper : sleepers_)
        sleeper->Wake();
    sleepers_.clear();
}

}  // namespace ZelSim
