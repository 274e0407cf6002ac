// The simulated producer as the tests load it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gentl/GenTL.h"
#include "producers/simulator/zelsim.h"

// A loaded producer file with all its functions; unloaded with the object.
struct Producer {
    Producer();
    ~Producer();
    Producer(const Producer&) = delete;
    Producer& operator=(const Producer&) = delete;

    static bool IsLoaded();

    void* file;
#define ZELSIM_MEMBER(name, parameters) GenTL::P##name name;
    GENTL_FUNCTIONS(ZELSIM_MEMBER)
#undef ZELSIM_MEMBER
    PZelSim_InjectFault InjectFault;
    PZelSim_ClearFaults ClearFaults;
    PZelSim_GetCallCount GetCallCount;
    PZelSim_Configure Configure;
    PZelSim_PlugCamera PlugCamera;
    PZelSim_UnplugCamera UnplugCamera;
    PZelSim_FireEvent FireEvent;
    PZelSim_GetNumOpenHandles GetNumOpenHandles;
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

// Asks for the size, then for the value: `query(type, buffer, size)` is the info function.
template <typename Query>
Info Ask(Query&& query) {
    Info info;
    size_t size = 0;
    info.code = query(&info.type, nullptr, &size);
    if (info.code != GenTL::GC_ERR_SUCCESS) return info;
    info.bytes.resize(size);
    info.code = query(&info.type, info.bytes.data(), &size);
    EXPECT_EQ(size, info.bytes.size());
    return info;
}

// A producer that is initialised, with the built-in cameras and one system module open.
class SimulatorTest : public ::testing::Test {
  protected:
    SimulatorTest();
    ~SimulatorTest() override;

    // Whatever the tests did, nothing keeps the file in memory.
    static void TearDownTestSuite() { EXPECT_FALSE(Producer::IsLoaded()); }

    // Reads a configuration and opens the system anew.
    void UseConfig(const std::string& xml);

    GenTL::IF_HANDLE OpenInterface(const char* id);
    Info DeviceInfo(GenTL::IF_HANDLE interface, const char* id, int32_t command);
    GenTL::GC_ERROR OpenDevice(GenTL::IF_HANDLE interface, const char* id, int32_t access,
                               GenTL::DEV_HANDLE* device);
    std::vector<std::string> DeviceIds(GenTL::IF_HANDLE interface);
    std::string LastErrorText();

    Producer p;
    GenTL::TL_HANDLE system = nullptr;
    std::vector<uint8_t> memory;  // to announce; it outlives the acquisition of a failed test, too
};

// A camera "C" on the interface "I", open with its first stream and the event of new buffers.
class CameraTest : public SimulatorTest {
  protected:
    // `keys` are attributes of the Camera element.
    void OpenCamera(const std::string& keys, const std::string& type = "GEV");

    void AllocateAndQueue(size_t count);
    GenTL::BUFFER_HANDLE Allocate();
    GenTL::BUFFER_HANDLE QueueMemory(size_t size);  // `memory`, all of it 0xEE
    GenTL::GC_ERROR Queue(GenTL::BUFFER_HANDLE buffer) { return p.DSQueueBuffer(stream, buffer); }

    // The stream, and then the camera; or the stream alone.
    GenTL::GC_ERROR Start(uint64_t count = GENTL_INFINITE);
    GenTL::GC_ERROR Stop(int32_t flags = GenTL::ACQ_STOP_FLAGS_KILL);
    GenTL::GC_ERROR StartStream(uint64_t count = GENTL_INFINITE);
    GenTL::GC_ERROR StopStream(int32_t flags = GenTL::ACQ_STOP_FLAGS_KILL);

    // The next filled buffer; null, and a failed test, when none comes.
    GenTL::BUFFER_HANDLE Fetch();
    GenTL::GC_ERROR TryFetch(uint64_t timeoutMs, GenTL::BUFFER_HANDLE* buffer = nullptr);

    Info StreamInfo(int32_t command);
    Info BufferInfo(GenTL::BUFFER_HANDLE buffer, int32_t command);
    uint64_t FrameId(GenTL::BUFFER_HANDLE buffer);

    // The start of the buffer's memory.
    const uint8_t* Data(GenTL::BUFFER_HANDLE buffer);

    GenTL::IF_HANDLE interface = nullptr;
    GenTL::DEV_HANDLE device = nullptr;
    GenTL::DS_HANDLE stream = nullptr;
    GenTL::EVENT_HANDLE newBuffer = nullptr;

  private:
    auto Acquisition();
};

// Long enough for a loaded machine; the tests wait for events, not for time to pass.
constexpr uint64_t patienceMs = 20000;
