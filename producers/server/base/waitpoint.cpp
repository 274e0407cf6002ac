#include "producers/server/base/waitpoint.h"

#include <cerrno>
#include <ctime>
#include <semaphore.h>
#include <system_error>

namespace ZelCti {

namespace {

// Longer waits are endless.
constexpr uint64_t kLongestWaitMs = uint64_t{1000} * 3600 * 24 * 365;

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

WaitPoint::Clock::time_point WaitPoint::After(uint64_t timeoutMs) {
    if (timeoutMs > kLongestWaitMs) return kEndless;
    return Clock::now() + std::chrono::milliseconds(timeoutMs);
}

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
    friend class WaitPoint;

    sem_t semaphore_{};
    Sleeper* next_ = nullptr;  // guarded as first_; a chain, so that nobody needs memory to sleep
};

// Where the pointer to `sleeper` is; for null the end of the chain, and so for one not in it.
WaitPoint::Sleeper** WaitPoint::PlaceOf(const Sleeper* sleeper) {
    Sleeper** place = &first_;
    while (*place != nullptr && *place != sleeper)
        place = &(*place)->next_;
    return place;
}

// False when the time came first.
bool WaitPoint::Sleep(std::unique_lock<std::mutex>& lock, Clock::time_point time) {
    Sleeper self;
    *PlaceOf(nullptr) = &self;
    lock.unlock();
    const bool woken = self.AwaitWake(time);
    lock.lock();
    if (woken) return true;
    Sleeper** const place = PlaceOf(&self);
    if (*place == nullptr) return self.AwaitWake(kEndless);  // comes at any moment
    *place = self.next_;
    return false;
}

void WaitPoint::UnlockAndWakeOne(std::unique_lock<std::mutex>& lock) {
    Sleeper* const first = first_;
    if (first != nullptr) first_ = first->next_;
    lock.unlock();
    if (first != nullptr) first->Wake();
}

void WaitPoint::WakeAll() {
    while (first_ != nullptr) {
        Sleeper* const sleeper = first_;
        first_ = sleeper->next_;
        sleeper->Wake();
    }
}

}  // namespace ZelCti
