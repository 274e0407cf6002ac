#include "ZelCameraApi/ZelGenParam/porterrors.h"

#include <string>

#include <GenApi/GenApi.h>

#include "gentl/GenTL.h"
#include "log/zellog4cpp.h"

namespace ZelCameraApi::Internal {

namespace {

bool IsInvalidParameter(int result) {
    return result == GenTL::GC_ERR_INVALID_HANDLE || result == GenTL::GC_ERR_INVALID_PARAMETER ||
           result == GenTL::GC_ERR_INVALID_BUFFER;
}

std::string Describe(const PortAccess& access) {
    const auto length = static_cast<long>(access.length);
    return help_str("Address = 0x%08lX, Length = %ld(0x%lX)",
                    static_cast<unsigned long>(access.address), length,
                    static_cast<unsigned long>(length));
}

}  // namespace

void CheckPortAccess(const PortAccess& access, int result, size_t actualSize) {
    if (result == 0 && actualSize == static_cast<size_t>(access.length)) return;

    const char* const verb = access.verb;
    const std::string where = Describe(access);
    if (result == 0) {
        throw LOGICAL_ERROR_EXCEPTION("%s incomplete. %s, Actual size = %ld(0x%lX)", verb,
                                      where.c_str(), static_cast<long>(actualSize),
                                      static_cast<unsigned long>(actualSize));
    }
    if (result == GenTL::GC_ERR_ACCESS_DENIED) {
        throw ACCESS_EXCEPTION("%s error. Access denied. %s", verb, where.c_str());
    }
    if (result == GenTL::GC_ERR_TIMEOUT) {
        throw TIMEOUT_EXCEPTION("%s error. Timeout. %s", verb, where.c_str());
    }
    if (IsInvalidParameter(result)) {
        throw INVALID_ARGUMENT_EXCEPTION("%s error. Invalid parameter. %s, Error = %d", verb,
                                         where.c_str(), result);
    }
    throw RUNTIME_EXCEPTION("%s error. %s, Error = %d", verb, where.c_str(), result);
}

void CheckPortInfo(int command, int result) {
    if (result == 0) return;
    if (result == GenTL::GC_ERR_ACCESS_DENIED) {
        throw ACCESS_EXCEPTION("Get port info error. Access denied. Command = %d.", command);
    }
    if (IsInvalidParameter(result)) {
        throw INVALID_ARGUMENT_EXCEPTION(
            "Get port info error. Invalid parameter. Command = %d, Error = %d", command, result);
    }
    throw RUNTIME_EXCEPTION("Get port info error. Command = %d, Error = %d", command, result);
}

}  // namespace ZelCameraApi::Internal
