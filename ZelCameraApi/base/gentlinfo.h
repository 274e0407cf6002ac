// Typed queries on top of the GetInfo functions of the GenTL standard.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "ZelCameraApi/base/gentl_error.h"
#include "ZelCameraApi/base/gentlmodule.h"
#include "gentl/GenTL.h"

namespace ZelCameraApi::Internal {

// The value of a command: its C++ type, and the data type that the producer must report.
template <typename List, List CMD>
struct info_command;

template <typename T, GenTL::INFO_DATATYPE_LIST TYPE>
struct InfoValue {
    using return_type = T;
    static constexpr GenTL::INFO_DATATYPE kDataType = TYPE;
};

using BoolInfo = InfoValue<bool, GenTL::INFO_DATATYPE_BOOL8>;
using PointerInfo = InfoValue<void*, GenTL::INFO_DATATYPE_PTR>;
using SizeInfo = InfoValue<size_t, GenTL::INFO_DATATYPE_SIZET>;
using Uint64Info = InfoValue<uint64_t, GenTL::INFO_DATATYPE_UINT64>;

// The second frame of a frame pair: a producer-specific command.
constexpr auto BUFFER_INFO_KAC_FRAME_B = static_cast<GenTL::BUFFER_INFO_CMD_LIST>(1101);

#define ZELCAM_INFO_COMMAND(command, info) \
    template <>                            \
    struct info_command<std::decay_t<decltype(command)>, command> : info {};

ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_BASE, PointerInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_SIZE, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_USER_PTR, PointerInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_TIMESTAMP, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_IS_INCOMPLETE, BoolInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_WIDTH, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_HEIGHT, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_XOFFSET, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_YOFFSET, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_XPADDING, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_YPADDING, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_FRAMEID, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_IMAGEOFFSET, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_PAYLOADTYPE, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_PIXELFORMAT, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_DELIVERED_IMAGEHEIGHT, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_INFO_SIZE_FILLED, SizeInfo)
ZELCAM_INFO_COMMAND(BUFFER_INFO_KAC_FRAME_B, BoolInfo)

ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_BASE, PointerInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_DATA_SIZE, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_DATA_TYPE, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_DATA_FORMAT, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_WIDTH, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_HEIGHT, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_XOFFSET, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_YOFFSET, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_XPADDING, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_SOURCE_ID, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_REGION_ID, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::BUFFER_PART_INFO_DATA_PURPOSE_ID, Uint64Info)

ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_NUM_DELIVERED, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_NUM_UNDERRUN, Uint64Info)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_NUM_ANNOUNCED, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_NUM_QUEUED, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_NUM_AWAIT_DELIVERY, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_PAYLOAD_SIZE, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_IS_GRABBING, BoolInfo)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_DEFINES_PAYLOADSIZE, BoolInfo)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN, SizeInfo)
ZELCAM_INFO_COMMAND(GenTL::STREAM_INFO_BUF_ALIGNMENT, SizeInfo)

#undef ZELCAM_INFO_COMMAND

template <auto CMD>
using InfoOf = info_command<decltype(CMD), CMD>;

// Reads the value of a command through `query(command, &type, buffer, &size)`. Throws
// zelcam_exception if the producer fails, std::invalid_argument if the size is wrong for the
// command, and std::bad_cast if the data type is wrong.
template <auto CMD, typename Query>
typename InfoOf<CMD>::return_type QueryValue(Query&& query) {
    using Value = typename InfoOf<CMD>::return_type;
    // A producer may write any byte as a boolean, but a bool must be 0 or 1.
    using Storage = std::conditional_t<std::is_same_v<Value, bool>, GenTL::bool8_t, Value>;

    int type = GenTL::INFO_DATATYPE_UNKNOWN;
    Storage value{};
    size_t size = sizeof value;
    ThrowOnError(query(static_cast<int>(CMD), &type, static_cast<void*>(&value), &size));
    if (size != sizeof value) throw std::invalid_argument("Info size error");
    if (type != InfoOf<CMD>::kDataType) throw std::bad_cast();
    if constexpr (std::is_same_v<Value, bool>) {
        return value != 0;
    } else {
        return value;
    }
}

// Text queries. They throw zelcam_exception if the producer fails, std::invalid_argument if the
// value is not a string. The interface's text ends before its terminating zero byte; the others
// include this byte. c_str() hides the difference.
std::string TLGetInfoString(const GenTLModule<void*>& tl, int cmd);
std::string IFGetInfoString(const GenTLModule<void*>& iface, int cmd);
std::string GetDevInfoString(const GenTLModule<void*>& iface, const std::string& deviceId, int cmd);
std::string PortGetInfoString(const GenTLModule<void*>& port, int cmd);
std::string PortGetURLString(const GenTLModule<void*>& port, uint32_t index);

// The largest number of interfaces, cameras or streams. Only a broken producer reports more.
constexpr uint32_t kMaxCount = 65536;

// The number that `count(&number)` reads from a producer. Throws zelcam_exception if the producer
// fails or the number is above kMaxCount, so that no loop runs to 2^32.
template <typename Count>
uint32_t QueryCount(Count&& count) {
    uint32_t number = 0;
    ThrowOnError(count(&number));
    if (number > kMaxCount) throw zelcam_exception(GenTL::GC_ERR_ERROR);
    return number;
}

// The size that a producer reports for a text. Throws zelcam_exception if no text can be that
// large, so that a broken producer does not exhaust the memory.
size_t CheckedTextSize(size_t size);

// Reads an identifier with `query(buffer, &size)`, which is called for the size first. The result
// includes the producer's terminating zero byte. Throws zelcam_exception if the producer fails.
template <typename Query>
std::string QueryId(Query&& query) {
    size_t size = 0;
    ThrowOnError(query(nullptr, &size));
    std::string id(CheckedTextSize(size), '\0');
    ThrowOnError(query(id.data(), &size));
    return id;
}

}  // namespace ZelCameraApi::Internal
