// Failed commands as errors of GenTL.
#pragma once

#include "producers/gigevision/control/exchange.h"

namespace ZelGev {

// Throws ZelCti::Error for an exchange that is done and did not succeed: the code for the status,
// with its number in the text, GC_ERR_TIMEOUT without an answer, or GC_ERR_IO for a cancelled one.
[[noreturn]] void ThrowFailure(const Exchange& exchange);

// Throws for an acknowledge that does not have the form of its command's.
[[noreturn]] void ThrowMalformed(const Exchange& exchange);

}  // namespace ZelGev
