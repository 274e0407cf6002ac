// Runs a step on a thread with a small stack, as applications and other libraries make them.
#pragma once

#include <exception>
#include <functional>
#include <pthread.h>
#include <stdexcept>

namespace test {

constexpr size_t kSmallStack = 128u << 10;

// Sanitizers put a zone around each variable.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr size_t kStackFactor = 8;
#else
constexpr size_t kStackFactor = 1;
#endif

inline void OnSmallStack(const std::function<void()>& step) {
    struct Run {
        const std::function<void()>& step;
        std::exception_ptr thrown;
    } run{step, nullptr};
    const auto body = [](void* argument) -> void* {
        auto& started = *static_cast<Run*>(argument);
        try {
            started.step();
        } catch (...) {
            started.thrown = std::current_exception();
        }
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kSmallStack * kStackFactor);
    pthread_t thread{};
    const int error = pthread_create(&thread, &attributes, body, &run);
    pthread_attr_destroy(&attributes);
    if (error != 0) throw std::runtime_error("no thread");
    pthread_join(thread, nullptr);
    if (run.thrown) std::rethrow_exception(run.thrown);
}

}  // namespace test
