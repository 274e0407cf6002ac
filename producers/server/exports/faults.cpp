#include "producers/server/exports/faults.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "producers/server/base/error.h"

namespace ZelCti {

namespace {

constexpr const char* kNames[] = {
#define ZELCTI_NAME(name, parameters) #name,
    GENTL_FUNCTIONS(ZELCTI_NAME)
#undef ZELCTI_NAME
};

constexpr size_t kNumFunctions = static_cast<size_t>(Function::Count);

// Failures that mean "there is no answer to give"; an injected value is the answer then.
bool LacksAnswer(GenTL::GC_ERROR code) {
    return code == GenTL::GC_ERR_NOT_IMPLEMENTED || code == GenTL::GC_ERR_NOT_AVAILABLE ||
           code == GenTL::GC_ERR_NO_DATA || code == GenTL::GC_ERR_BUFFER_TOO_SMALL;
}

}  // namespace

const char* NameOf(Function function) {
    return kNames[static_cast<size_t>(function)];
}

std::optional<Function> FunctionOf(std::string_view name) {
    for (size_t i = 0; i < kNumFunctions; ++i) {
        if (name == kNames[i]) return static_cast<Function>(i);
    }
    return std::nullopt;
}

GenTL::GC_ERROR FaultEffect::Apply(Answer answer, size_t capacity, GenTL::GC_ERROR ended) const {
    const bool replaceable = ended == GenTL::GC_ERR_SUCCESS || (!result && LacksAnswer(ended));
    if (value && replaceable) {
        answer.OverwriteSize(capacity);
        try {
            answer.Replace(value->data(), value->size());
            ended = GenTL::GC_ERR_SUCCESS;
        } catch (const Error& error) {
            ended = error.Code();
        }
    }
    if (type) answer.OverwriteType(*type);
    if (size) answer.OverwriteSize(*size);
    return ended;
}

Faults& Faults::Instance() {
    static Faults faults;
    return faults;
}

void Faults::Inject(CallFault fault) {
    if (fault.count == 0) return;
    const std::lock_guard lock(mutex_);
    faults_.push_back(std::move(fault));
    armed_.store(true, std::memory_order_relaxed);
}

void Faults::Clear() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
    armed_.store(false, std::memory_order_relaxed);
    ++numClears_;
    cleared_.notify_all();
}

uint64_t Faults::CallCount(Function function) const {
    return counts_[static_cast<size_t>(function)].calls.load(std::memory_order_relaxed);
}

void Faults::Block(std::unique_lock<std::mutex>& lock, uint32_t milliseconds) {
    const uint64_t before = numClears_;
    const auto isCleared = [&] { return numClears_ != before; };
    if (milliseconds == CallFault::kForever) {
        cleared_.wait(lock, isCleared);
    } else {
        cleared_.wait_for(lock, std::chrono::milliseconds(milliseconds), isCleared);
    }
}

std::optional<FaultEffect> Faults::Meet(Function function, int32_t command) {
    std::unique_lock lock(mutex_);
    const auto matches = [&](CallFault& f) {
        if (f.function && *f.function != function) return false;
        if (f.command && *f.command != command) return false;
        if (f.skip == 0) return true;
        --f.skip;
        return false;
    };
    const auto fault = std::find_if(faults_.begin(), faults_.end(), matches);
    if (fault == faults_.end()) return std::nullopt;
    // Copied: the fault may be cleared while the call is blocked.
    const FaultEffect effect = fault->effect;
    if (fault->count != CallFault::kForever && --fault->count == 0) faults_.erase(fault);
    armed_.store(!faults_.empty(), std::memory_order_relaxed);
    if (effect.blockMs) Block(lock, *effect.blockMs);
    return effect;
}

}  // namespace ZelCti
