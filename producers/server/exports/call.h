// The frame around every exported function.
#pragma once

#include <exception>
#include <new>
#include <utility>

#include "producers/server/base/answer.h"
#include "producers/server/base/error.h"
#include "producers/server/exports/faults.h"
#include "producers/server/exports/lasterror.h"
#include "producers/server/modules/library.h"

namespace ZelCti {

// Runs the work of a function and turns what it throws into its code and into the last error of the
// thread.
template <typename Work>
GenTL::GC_ERROR Guard(Function function, Work&& work) noexcept {
    try {
        std::forward<Work>(work)();
        return GenTL::GC_ERR_SUCCESS;
    } catch (const Error& error) {
        LastError::Set(error.Code(), NameOf(function), error.what());
        return error.Code();
    } catch (const std::bad_alloc& error) {
        LastError::Set(GenTL::GC_ERR_OUT_OF_MEMORY, NameOf(function), error.what());
        return GenTL::GC_ERR_OUT_OF_MEMORY;
    } catch (const std::exception& error) {
        LastError::Set(GenTL::GC_ERR_ERROR, NameOf(function), error.what());
        return GenTL::GC_ERR_ERROR;
    }
}

// Out of line: runs only while faults are set.
template <typename Work>
[[gnu::noinline]] GenTL::GC_ERROR CallWithFaults(Function function, const Answer& answer,
                                                 Work&& work) noexcept {
    const std::optional<FaultEffect> effect = Faults::Instance().Meet(function, answer.Command());
    if (!effect) return Guard(function, std::forward<Work>(work));
    const size_t capacity = answer.Capacity();
    GenTL::GC_ERROR result = effect->result.value_or(GenTL::GC_ERR_SUCCESS);
    if (!effect->result) {
        result = Guard(function, std::forward<Work>(work));
    } else if (result != GenTL::GC_ERR_SUCCESS) {
        LastError::Set(result, NameOf(function), "injected fault");
    }
    return effect->Apply(answer, capacity, result);
}

// Counts the call, applies injected faults and runs the work. `answer` names the out-parameters of
// the function, so that faults can change them.
template <typename Work>
GenTL::GC_ERROR CallAnyTime(Function function, const Answer& answer, Work&& work) noexcept {
    if (Faults::Instance().Enter(function)) {
        return CallWithFaults(function, answer, std::forward<Work>(work));
    }
    return Guard(function, std::forward<Work>(work));
}

// The same for the functions that GCInitLib must precede.
template <typename Work>
GenTL::GC_ERROR Call(Function function, const Answer& answer, Work&& work) noexcept {
    return CallAnyTime(function, answer, [&] {
        Library::Instance().CheckInitialized();
        work();
    });
}

}  // namespace ZelCti
