#include "producers/server/exports/faults.h"

#include <algorithm>
#include <chrono>

#include "producers/server/base/error.h"

namespace ZelSim {

namespace {

constexpr const char* kNames[] = {
#define ZELSIM_NAME(name, parameters) #name,
    GENTL_FUNCTIONS(ZELSIM_NAME)
#undef ZELSIM_NAME
};

constexpr size_t kNumFunctions = static_cast<size_t>(Function::Count);

std::optional<Function> FunctionOf(std::string_view name) {
    for (size_t i = 0; i < kNumFunctions; ++i) {
        if (name == kNames[i]) return static_cast<Function>(i);
    }
    return std::nullopt;
}

// Failures that mean "there is no answer to give"; an injected value is the answer then.
bool LacksAnswer(GenTL::GC_ERROR code) {
    return code == GenTL::GC_ERR_NOT_IMPLEMENTED || code == GenTL::GC_ERR_NOT_AVAILABLE ||
           code == GenTL::GC_ERR_NO_DATA || code == GenTL::GC_ERR_BUFFER_TOO_SMALL;
}

}  // namespace

const char* NameOf(Function function) {
    return kNames[static_cast<size_t>(function)];
}

GenTL::GC_ERROR FaultEffect::Apply(Answer answer, size_t capacity, GenTL::GC_ERROR result) const {
    const bool replaceable =
        result == GenTL::GC_ERR_SUCCESS || (!Has(ZELSIM_FAULT_RETURN) && LacksAnswer(result));
    if (Has(ZELSIM_FAULT_VALUE) && replaceable) {
        answer.OverwriteSize(capacity);
        try {
            answer.Replace(value.data(), value.size());
            result = GenTL::GC_ERR_SUCCESS;
        } catch (const Error& error) {
            result = error.Code();
        }
    }
    if (Has(ZELSIM_FAULT_TYPE)) answer.OverwriteType(type);
    if (Has(ZELSIM_FAULT_SIZE)) answer.OverwriteSize(size);
    return result;
}

Faults& Faults::Instance() {
    static Faults faults;
    return faults;
}

void Faults::Inject(const ZelSimFault& fault) {
    Require(fault.function);
    if (fault.valueSize != 0) Require(fault.value);
    const std::optional<Function> function = FunctionOf(fault.function);
    if (!function && std::string_view(fault.function) != "*") {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER,
                    std::string(fault.function) + " is not a GenTL function");
    }
    if (fault.count == 0) return;
    FaultEffect effect{fault.actions, fault.code, fault.type, fault.size, {}};
    const auto* const bytes = static_cast<const uint8_t*>(fault.value);
    if (bytes != nullptr) effect.value.assign(bytes, bytes + fault.valueSize);
    const std::lock_guard lock(mutex_);
    faults_.push_back(
        {function, fault.command, fault.skip, fault.count, fault.blockMs, std::move(effect)});
    armed_.store(true, std::memory_order_relaxed);
}

void Faults::Clear() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
    armed_.store(false, std::memory_order_relaxed);
    ++numClears_;
    cleared_.notify_all();
}

uint64_t Faults::CallCount(std::string_view function) const {
    const std::optional<Function> known = FunctionOf(function);
    return known ? counts_[static_cast<size_t>(*known)].calls.load(std::memory_order_relaxed) : 0;
}

void Faults::Block(std::unique_lock<std::mutex>& lock, uint32_t milliseconds) {
    const uint64_t before = numClears_;
    const auto isCleared = [&] { return numClears_ != before; };
    if (milliseconds == ZELSIM_FOREVER) {
        cleared_.wait(lock, isCleared);
    } else {
        cleared_.wait_for(lock, std::chrono::milliseconds(milliseconds), isCleared);
    }
}

std::optional<FaultEffect> Faults::Meet(Function function, int32_t command) {
    std::unique_lock lock(mutex_);
    const auto matches = [&](Fault& f) {
        if (f.function && *f.function != function) return false;
        if (f.command != ZELSIM_ANY_COMMAND && f.command != command) return false;
        if (f.skip == 0) return true;
        --f.skip;
        return false;
    };
    const auto fault = std::find_if(faults_.begin(), faults_.end(), matches);
    if (fault == faults_.end()) return std::nullopt;
    // Copied: the fault may be cleared while the call is blocked.
    const FaultEffect effect = fault->effect;
    const uint32_t blockMs = fault->blockMs;
    if (fault->count != ZELSIM_FOREVER && --fault->count == 0) faults_.erase(fault);
    armed_.store(!faults_.empty(), std::memory_order_relaxed);
    if (effect.Has(ZELSIM_FAULT_BLOCK)) Block(lock, blockMs);
    return effect;
}

}  // namespace ZelSim
