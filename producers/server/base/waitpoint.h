// Where threads sleep until another one has changed something.
#pragma once

#include <chrono>
#include <mutex>

namespace ZelSim {

// A condition variable made of semaphores, for what a mutex guards. The woken thread finds the
// mutex as any other thread does; after the wait of a std::condition_variable its release is a
// system call each time, which would add to the latency of every frame. Waking makes no system call
// while nobody sleeps.
//
// Each sleeping thread has a semaphore of its own: with a common one, a thread that comes later
// could take the wake-up of another, which waits for something else.
class WaitPoint {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr Clock::time_point kEndless = Clock::time_point::max();

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

    // The one that sleeps longest. Unlocks the mutex first, for which the woken thread would have
    // to wait otherwise.
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

}  // namespace ZelSim
