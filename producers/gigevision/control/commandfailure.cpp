#include "producers/gigevision/control/commandfailure.h"

#include <array>
#include <cstdio>

#include "producers/server/base/error.h"

namespace ZelGev {

using ZelCti::Error;
using ZelCti::Gev::Status;

namespace {

GenTL::GC_ERROR CodeOf(Status status) {
    switch (status) {
        case Status::NotImplemented:
            return GenTL::GC_ERR_NOT_IMPLEMENTED;
        case Status::InvalidParameter:
            return GenTL::GC_ERR_INVALID_VALUE;
        case Status::InvalidAddress:
        case Status::BadAlignment:
            return GenTL::GC_ERR_INVALID_ADDRESS;
        case Status::WriteProtect:
        case Status::AccessDenied:
            return GenTL::GC_ERR_ACCESS_DENIED;
        case Status::Busy:
            return GenTL::GC_ERR_BUSY;
        default:
            return GenTL::GC_ERR_ERROR;
    }
}

std::string TextOf(Status status) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "0x%04X", static_cast<unsigned>(status));
    const char* const name = ZelCti::Gev::StatusName(status);
    return name != nullptr ? std::string(name) + " (" + number.data() + ")"
                           : std::string("status ") + number.data();
}

}  // namespace

void ThrowFailure(const Exchange& exchange) {
    if (exchange.IsAcknowledged()) {
        throw Error(CodeOf(exchange.status),
                    exchange.Name() + ": the camera answers " + TextOf(exchange.status));
    }
    if (exchange.state == Exchange::State::Unanswered)
        throw Error(GenTL::GC_ERR_TIMEOUT, exchange.Name() + ": the camera does not answer");
    throw Error(GenTL::GC_ERR_IO, exchange.Name() + ": the camera is lost or closed");
}

void ThrowMalformed(const Exchange& exchange) {
    throw Error(GenTL::GC_ERR_IO, exchange.Name() + ": the answer of the camera is malformed");
}

}  // namespace ZelGev
