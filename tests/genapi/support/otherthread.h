// What another thread sees of a lock.
#pragma once

#include <thread>

namespace test {

template <typename Lock>
bool OtherThreadGets(Lock& lock) {
    bool got = false;
    std::thread([&] {
        got = lock.TryLock();
        if (got) lock.Unlock();
    }).join();
    return got;
}

}  // namespace test
