#include "producers/gigevision/stream/threadpriority.h"

#include <cstdint>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ZelGev {

namespace {

// `struct sched_attr` of the kernel, whose header does not go together with that of the C library.
struct Attributes {
    uint32_t size;
    uint32_t policy;
    uint64_t flags;
    int32_t nice;
    uint32_t priority;
    uint64_t runtime;  // of ordinary threads: the slice
    uint64_t deadline;
    uint64_t period;
};
static_assert(sizeof(Attributes) == 48, "the first version of the structure");

// Since Linux 6.12 a thread that gets its share of the processor in short slices runs soon after it
// was woken, before others that have longer ones, and anybody may ask for it. Otherwise a small
// receive buffer is full, which takes a millisecond, before the thread runs on a busy machine.
void AskForShortSlices() {
    constexpr uint64_t kShortest = 100000;  // nanoseconds; the kernel gives no shorter ones
    Attributes attributes{};
    if (syscall(SYS_sched_getattr, 0, &attributes, sizeof attributes, 0) != 0) return;
    if (attributes.policy != SCHED_OTHER) return;
    attributes.runtime = kShortest;
    syscall(SYS_sched_setattr, 0, &attributes, 0);
}

}  // namespace

bool HurryThread() {
    sched_param parameters{};
    parameters.sched_priority = 10;
    if (pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters) == 0) return true;
    constexpr int kNiceness = -10;
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNiceness);
    AskForShortSlices();
    return false;
}

}  // namespace ZelGev
