// Fault injection and call counts.
#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <list>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/answer.h"

namespace ZelCti {

// The functions of the standard, as numbers.
#define ZELCTI_NAME(name, parameters) name,
enum class Function { GENTL_FUNCTIONS(ZELCTI_NAME) Count };
#undef ZELCTI_NAME

const char* NameOf(Function function);
std::optional<Function> FunctionOf(std::string_view name);

// What a fault does to a call, in this order.
struct FaultEffect {
    std::optional<uint32_t> blockMs;        // waits first; kForever: until the faults are cleared
    std::optional<GenTL::GC_ERROR> result;  // replaces the work of the function

    // Replaces the answer of a call that succeeds, or that fails only because there is no answer.
    std::optional<std::vector<uint8_t>> value;
    std::optional<GenTL::INFO_DATATYPE> type;
    std::optional<size_t> size;

    // Changes the answer of a call that ended with `ended`, its buffer having this capacity; the
    // code it ends with now.
    GenTL::GC_ERROR Apply(Answer answer, size_t capacity, GenTL::GC_ERROR ended) const;
};

struct CallFault {
    static constexpr uint32_t kForever = std::numeric_limits<uint32_t>::max();

    std::optional<Function> function;  // none: every function
    std::optional<int32_t> command;    // only calls with this info command
    uint32_t skip = 0;                 // matching calls that pass first
    uint32_t count = 0;                // calls that are hit then
    FaultEffect effect;
};

// The faults of the process. With none set a call costs one counter and one test. Thread-safe.
class Faults {
  public:
    static Faults& Instance();

    void Inject(CallFault fault);
    void Clear();

    uint64_t CallCount(Function function) const;

    // Counts a call; true when there are faults to look at.
    bool Enter(Function function) {
        counts_[static_cast<size_t>(function)].calls.fetch_add(1, std::memory_order_relaxed);
        return armed_.load(std::memory_order_relaxed);
    }

    // The effect of the faults on a call, after it has been blocked for as long as they say.
    std::optional<FaultEffect> Meet(Function function, int32_t command);

  private:
    // A line of the cache each: threads count without disturbing each other.
    struct alignas(64) Counter {
        std::atomic<uint64_t> calls{0};
    };

    void Block(std::unique_lock<std::mutex>& lock, uint32_t milliseconds);

    std::array<Counter, static_cast<size_t>(Function::Count)> counts_;
    std::atomic<bool> armed_{false};
    std::mutex mutex_;
    std::condition_variable cleared_;
    std::list<CallFault> faults_;  // guarded by mutex_
    uint64_t numClears_ = 0;       // guarded by mutex_
};

}  // namespace ZelCti
