// A consumer of a producer, for tests: its functions, its info commands, and a camera with a
// stream.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gentl/GenTL.h"

namespace ZelTest {

// Long enough for a loaded machine; the tests wait for events, not for time to pass.
constexpr uint64_t kPatienceMs = 20000;

struct GenTLFunctions {
#define ZELTEST_MEMBER(name, parameters) GenTL::P##name name = nullptr;
    GENTL_FUNCTIONS(ZELTEST_MEMBER)
#undef ZELTEST_MEMBER
};

// What an info command answered.
struct Info {
    GenTL::GC_ERROR code = 0;
    GenTL::INFO_DATATYPE type = 0;
    std::vector<char> bytes;

    // The value, after checking that it has this data type and size.
    template <typename T>
    T As(GenTL::INFO_DATATYPE expected) const {
        T value{};
        EXPECT_EQ(code, GenTL::GC_ERR_SUCCESS);
        EXPECT_EQ(type, expected);
        EXPECT_EQ(bytes.size(), sizeof(T));
        if (bytes.size() == sizeof(T)) std::copy(bytes.begin(), bytes.end(), AsBytes(value));
        return value;
    }
    size_t Size() const { return As<size_t>(GenTL::INFO_DATATYPE_SIZET); }
    uint64_t Uint64() const { return As<uint64_t>(GenTL::INFO_DATATYPE_UINT64); }
    int32_t Int32() const { return As<int32_t>(GenTL::INFO_DATATYPE_INT32); }
    bool Bool() const { return As<GenTL::bool8_t>(GenTL::INFO_DATATYPE_BOOL8) != 0; }
    void* Pointer() const { return As<void*>(GenTL::INFO_DATATYPE_PTR); }
    std::string Text() const;

  private:
    template <typename T>
    static char* AsBytes(T& value) {
        return reinterpret_cast<char*>(&value);
    }
};

// Asks an info function for the size, then for the value. `arguments` are those before the type.
template <typename Function, typename... Arguments>
Info Ask(Function function, Arguments... arguments) {
    Info info;
    size_t size = 0;
    info.code = function(arguments..., &info.type, nullptr, &size);
    if (info.code != GenTL::GC_ERR_SUCCESS) return info;
    info.bytes.resize(size);
    info.code = function(arguments..., &info.type, info.bytes.data(), &size);
    EXPECT_EQ(size, info.bytes.size());
    return info;
}

// The part of a test fixture that uses a producer. The fixture opens and closes the modules.
class Client {
  protected:
    explicit Client(const GenTLFunctions& functions) : gentl_(functions) {}

    std::string LastErrorText();
    GenTL::IF_HANDLE OpenInterface(const char* id);
    std::vector<std::string> DeviceIds(GenTL::IF_HANDLE of);
    Info DeviceInfo(GenTL::IF_HANDLE of, const char* id, int32_t command) {
        return Ask(gentl_.IFGetDeviceInfo, of, id, command);
    }

    // Opens a camera exclusively, its first stream, and the event of new buffers.
    void OpenCamera(const char* interfaceId, const std::string& id);
    GenTL::PORT_HANDLE Remote();

    GenTL::BUFFER_HANDLE Allocate();  // of the payload size of the stream
    void AllocateAndQueue(size_t count);
    GenTL::BUFFER_HANDLE QueueMemory(size_t size);  // `memory`, all of it 0xEE
    GenTL::GC_ERROR Queue(GenTL::BUFFER_HANDLE buffer) {
        return gentl_.DSQueueBuffer(stream, buffer);
    }
    GenTL::GC_ERROR StartStream(uint64_t count = GENTL_INFINITE) {
        return gentl_.DSStartAcquisition(stream, GenTL::ACQ_START_FLAGS_DEFAULT, count);
    }
    GenTL::GC_ERROR StopStream(int32_t flags = GenTL::ACQ_STOP_FLAGS_KILL) {
        return gentl_.DSStopAcquisition(stream, flags);
    }

    // The next filled buffer; null, and a failed test, when none comes.
    GenTL::BUFFER_HANDLE Fetch();
    GenTL::GC_ERROR TryFetch(uint64_t timeoutMs, GenTL::BUFFER_HANDLE* buffer = nullptr);

    Info StreamInfo(int32_t command) { return Ask(gentl_.DSGetInfo, stream, command); }
    Info BufferInfo(GenTL::BUFFER_HANDLE buffer, int32_t command) {
        return Ask(gentl_.DSGetBufferInfo, stream, buffer, command);
    }
    uint64_t FrameId(GenTL::BUFFER_HANDLE buffer) {
        return BufferInfo(buffer, GenTL::BUFFER_INFO_FRAMEID).Uint64();
    }
    const uint8_t* Data(GenTL::BUFFER_HANDLE buffer) {
        return static_cast<const uint8_t*>(BufferInfo(buffer, GenTL::BUFFER_INFO_BASE).Pointer());
    }

    GenTL::TL_HANDLE system = nullptr;
    GenTL::IF_HANDLE interface = nullptr;
    GenTL::DEV_HANDLE device = nullptr;
    GenTL::DS_HANDLE stream = nullptr;
    GenTL::EVENT_HANDLE newBuffer = nullptr;
    std::vector<uint8_t> memory;  // to announce; it outlives the acquisition of a failed test, too

  private:
    const GenTLFunctions& gentl_;
};

}  // namespace ZelTest
