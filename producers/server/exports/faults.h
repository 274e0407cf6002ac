// Fault injection and call counts.
#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/answer.h"
#include "producers/simulator/zelsim.h"

namespace ZelSim {

// The functions of the standard, as numbers.
#define ZELSIM_NAME(name, parameters) name,
enum class Function { GENTL_FUNCTIONS(ZELSIM_NAME) Count };
#undef ZELSIM_NAME

const char* NameOf(Function function);

// What the injected faults do to one call.
struct FaultEffect {
    uint32_t actions = 0;
    GenTL::GC_ERROR code = 0;
    GenTL::INFO_DATATYPE type = 0;
    size_t size = 0;
    std::vector<uint8_t> value;

    bool Has(ZelSimFaultAction action) const {
        return (actions & static_cast<uint32_t>(action)) != 0;
    }

    // Changes the answer of a call that ended with `result`, its buffer having this capacity; the
    // code it ends with now.
    GenTL::GC_ERROR Apply(Answer answer, size_t capacity, GenTL::GC_ERROR result) const;
};

// The faults of the process. With none set a call costs one counter and one test. Thread-safe.
class Faults {
  public:
    static Faults& Instance();

    // Throws GC_ERR_INVALID_PARAMETER for an unknown function name.
    void Inject(const ZelSimFault& fault);

    void Clear();

    uint64_t CallCount(std::string_view function) const;

    // Counts a call; true when there are faults to look at.
    bool Enter(Function function) {
        counts_[static_cast<size_t>(function)].calls.fetch_add(1, std::memory_order_relaxed);
        return armed_.load(std::memory_order_relaxed);
    }

    // The effect of the faults on a call, after it has been blocked for as long as they say.
    std::optional<FaultEffect> Meet(Function function, int32_t command);

  private:
    struct Fault {
        std::optional<Function> function;  // none: every function
        int32_t command;
        uint32_t skip;
        uint32_t count;
        uint32_t blockMs;
        FaultEffect effect;
    };

    // A line of the cache each: threads count without disturbing each other.
    struct alignas(64) Counter {
        std::atomic<uint64_t> calls{0};
    };

    void Block(std::unique_lock<std::mutex>& lock, uint32_t milliseconds);

    std::array<Counter, static_cast<size_t>(Function::Count)> counts_;
    std::atomic<bool> armed_{false};
    std::mutex mutex_;
    std::condition_variable cleared_;
    std::list<Fault> faults_;  // guarded by mutex_
    uint64_t numClears_ = 0;   // guarded by mutex_
};

}  // namespace ZelSim
