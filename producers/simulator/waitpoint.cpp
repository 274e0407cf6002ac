#include "producers/simulator/waitpoint.h"

#include <cerrno>
#include <ctime>
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

WaitPoint::WaitPoint(std::mutex& mutex) : mutex_(mutex) {
    if (sem_init(&wakeUps_, 0, 0) != 0) {
        throw std::system_error(errno, std::generic_category(), "sem_init");
    }
}

WaitPoint::~WaitPoint() {
    sem_destroy(&wakeUps_);
}

// False when the time came.
bool WaitPoint::Sleep(std::unique_lock<std::mutex>& lock, Clock::time_point time) {
    ++numSleeping_;
    lock.unlock();
    int result = 0;
    if (time == kEndless) {
        result = sem_wait(&wakeUps_);
    } else {
        const timespec end = TimespecOf(time);
        result = sem_clockwait(&wakeUps_, CLOCK_MONOTONIC, &end);
    }
    const bool inTime = result == 0 || errno != ETIMEDOUT;
    lock.lock();
    --numSleeping_;
    return inTime;
}

void WaitPoint::UnlockAndWakeOne(std::unique_lock<std::mutex>& lock) {
    const bool wake = numSleeping_ != 0;
    lock.unlock();
    if (wake) sem_post(&wakeUps_);
}

void WaitPoint::WakeAll() {
    for (size_t i = 0; i < numSleeping_; ++i)
        sem_post(&wakeUps_);
}

}  // namespace ZelSim
