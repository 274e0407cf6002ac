// Status codes of GigE Vision, in acknowledges and in stream packets.
#pragma once

#include <cstdint>

namespace ZelCti::Gev {

// X(value, enumerator, name)
#define ZELCTI_GEV_STATUS_CODES(X)                                                            \
    X(0x0000, Success, "SUCCESS")                                                             \
    /* Of a stream packet that was sent again; its data is valid. */                          \
    X(0x0100, PacketResend, "PACKET_RESEND")                                                  \
    X(0x8001, NotImplemented, "NOT_IMPLEMENTED")                                              \
    X(0x8002, InvalidParameter, "INVALID_PARAMETER")                                          \
    X(0x8003, InvalidAddress, "INVALID_ADDRESS")                                              \
    X(0x8004, WriteProtect, "WRITE_PROTECT")                                                  \
    X(0x8005, BadAlignment, "BAD_ALIGNMENT")                                                  \
    X(0x8006, AccessDenied, "ACCESS_DENIED")                                                  \
    /* The only error that is worth another try (known from one source). */                   \
    X(0x8007, Busy, "BUSY")                                                                   \
    /* The four below are deprecated, and WrongConfig. */                                     \
    X(0x8008, LocalProblem, "LOCAL_PROBLEM")                                                  \
    X(0x8009, MsgMismatch, "MSG_MISMATCH")                                                    \
    X(0x800A, InvalidProtocol, "INVALID_PROTOCOL")                                            \
    X(0x800B, NoMsg, "NO_MSG")                                                                \
    X(0x800C, PacketUnavailable, "PACKET_UNAVAILABLE")                                        \
    X(0x800D, DataOverrun, "DATA_OVERRUN")                                                    \
    X(0x800E, InvalidHeader, "INVALID_HEADER")                                                \
    X(0x800F, WrongConfig, "WRONG_CONFIG")                                                    \
    /* The three below are sent only with GvcpConfiguration::kStatusCodes11 (from memory). */ \
    X(0x8010, PacketNotYetAvailable, "PACKET_NOT_YET_AVAILABLE")                              \
    X(0x8011, PacketAndPrevRemovedFromMemory, "PACKET_AND_PREV_REMOVED_FROM_MEMORY")          \
    X(0x8012, PacketRemovedFromMemory, "PACKET_REMOVED_FROM_MEMORY")                          \
    /* The four below are sent only with GvcpConfiguration::kStatusCodes20 (from memory). */  \
    X(0x8013, NoRefTime, "NO_REF_TIME")                                                       \
    X(0x8014, PacketTemporarilyUnavailable, "PACKET_TEMPORARILY_UNAVAILABLE")                 \
    X(0x8015, Overflow, "OVERFLOW")                                                           \
    X(0x8016, ActionLate, "ACTION_LATE")                                                      \
    X(0x8017, LeaderTrailerOverflow, "LEADER_TRAILER_OVERFLOW")                               \
    X(0x8FFF, Error, "ERROR")

// Holds any value that a message carries, also those without a name.
enum class Status : uint16_t {
#define ZELCTI_GEV_STATUS(value, enumerator, name) enumerator = (value),
    ZELCTI_GEV_STATUS_CODES(ZELCTI_GEV_STATUS)
#undef ZELCTI_GEV_STATUS
};

constexpr bool IsError(Status status) {
    return (static_cast<uint16_t>(status) & 0x8000U) != 0;
}

// Null for a value that has no name.
constexpr const char* StatusName(Status status) {
    switch (status) {
#define ZELCTI_GEV_STATUS(value, enumerator, name) \
    case Status::enumerator:                       \
        return name;
        ZELCTI_GEV_STATUS_CODES(ZELCTI_GEV_STATUS)
#undef ZELCTI_GEV_STATUS
    }
    return nullptr;
}

}  // namespace ZelCti::Gev
