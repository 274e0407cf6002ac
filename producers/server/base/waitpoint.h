// Where threads sleep until another one has changed something.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>

namespace ZelCti {

// A condition variable made of semaphores, for what a mutex guards. After a std::condition_variable
// wait, unlocking the mutex always costs a system call, which would add to the latency of every
// frame. Waking makes no system call while nobody sleeps.
//
// Each sleeping thread has a semaphore of its own. With a shared one, a thread that comes later
// could consume a wake-up meant for another.
class WaitPoint {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr Clock::time_point kEndless = Clock::time_point::max();

    // Now and a time-out later; endless where that would overflow the clock.
    static Clock::time_point After(uint64_t timeoutMs);

    explicit WaitPoint(std::mutex& mutex) : mutex_(mutex) {}
    WaitPoint(const WaitPoint&) = delete;
    WaitPoint& operator=(const WaitPoint&) = delete;

    std::mutex& Mutex() const { return mutex_; }

    // Sleeps until `isOver`, which is called with the mutex held; false when the time came first.
    template <typename Predicate>
    bool SleepUntil(std::unique_lock<std::mutex>& lock, Clock::time_point time,
                    const Predicate& isOver) {
        while (!isOver()) {
            if (!Sleep(lock, time)) return isOver();
        }
        return true;
    }

    // Wakes the thread that has slept longest. Unlocks the mutex first: the woken thread would have
    // to wait for it.
    void UnlockAndWakeOne(std::unique_lock<std::mutex>& lock);
    void WakeAll();  // with the mutex held

  private:
    class Sleeper;

    bool Sleep(std::unique_lock<std::mutex>& lock, Clock::time_point time);
    Sleeper** PlaceOf(const Sleeper* sleeper);

    std::mutex& mutex_;
    Sleeper* first_ =
        nullptr;  // guarded by mutex_; those that are not being woken, the oldest first
};

}  // namespace ZelCti
