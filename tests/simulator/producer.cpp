#include "tests/simulator/producer.h"

#include <dlfcn.h>
#include <stdexcept>

#include "tests/support/acquisition.h"

using namespace GenTL;

namespace {

template <typename Pointer>
void Resolve(void* file, const char* name, Pointer& pointer) {
    pointer = reinterpret_cast<Pointer>(dlsym(file, name));
    EXPECT_NE(pointer, nullptr) << name;
}

}  // namespace

Producer::Producer() : file(dlopen(ZELCTI_PATH, RTLD_NOW)) {
    if (file == nullptr) throw std::runtime_error(dlerror());
#define ZELSIM_RESOLVE(name, parameters) Resolve(file, #name, name);
    GENTL_FUNCTIONS(ZELSIM_RESOLVE)
#undef ZELSIM_RESOLVE
    Resolve(file, "ZelSim_InjectFault", InjectFault);
    Resolve(file, "ZelSim_ClearFaults", ClearFaults);
    Resolve(file, "ZelSim_GetCallCount", GetCallCount);
    Resolve(file, "ZelSim_Configure", Configure);
    Resolve(file, "ZelSim_PlugCamera", PlugCamera);
    Resolve(file, "ZelSim_UnplugCamera", UnplugCamera);
    Resolve(file, "ZelSim_FireEvent", FireEvent);
    Resolve(file, "ZelSim_GetNumOpenHandles", GetNumOpenHandles);
}

Producer::~Producer() {
    dlclose(file);
}

bool Producer::IsLoaded() {
    void* const handle = dlopen(ZELCTI_PATH, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
}

std::string Info::Text() const {
    EXPECT_EQ(code, GC_ERR_SUCCESS);
    EXPECT_EQ(type, INFO_DATATYPE_STRING);
    if (bytes.empty() || bytes.back() != '\0') {
        ADD_FAILURE() << "a text without its terminating zero";
        return {};
    }
    return bytes.data();
}

SimulatorTest::SimulatorTest() {
    EXPECT_EQ(p.Configure(nullptr), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GCInitLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(p.TLOpen(&system), GC_ERR_SUCCESS);
}

SimulatorTest::~SimulatorTest() {
    p.ClearFaults();
    EXPECT_EQ(p.GCCloseLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GetNumOpenHandles(), 0U);
}

void SimulatorTest::UseConfig(const std::string& xml) {
    ASSERT_EQ(p.TLClose(system), GC_ERR_SUCCESS);
    ASSERT_EQ(p.Configure(xml.c_str()), GC_ERR_SUCCESS) << LastErrorText();
    ASSERT_EQ(p.TLOpen(&system), GC_ERR_SUCCESS);
}

IF_HANDLE SimulatorTest::OpenInterface(const char* id) {
    IF_HANDLE handle = nullptr;
    EXPECT_EQ(p.TLOpenInterface(system, id, &handle), GC_ERR_SUCCESS);
    return handle;
}

Info SimulatorTest::DeviceInfo(IF_HANDLE interface, const char* id, int32_t command) {
    return Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
        return p.IFGetDeviceInfo(interface, id, command, type, buffer, size);
    });
}

GC_ERROR SimulatorTest::OpenDevice(IF_HANDLE interface, const char* id, int32_t access,
                                   DEV_HANDLE* device) {
    return p.IFOpenDevice(interface, id, access, device);
}

std::vector<std::string> SimulatorTest::DeviceIds(IF_HANDLE interface) {
    uint32_t count = 0;
    EXPECT_EQ(p.IFGetNumDevices(interface, &count), GC_ERR_SUCCESS);
    std::vector<std::string> ids;
    for (uint32_t i = 0; i < count; ++i) {
        char id[64] = {};
        size_t size = sizeof(id);
        EXPECT_EQ(p.IFGetDeviceID(interface, i, id, &size), GC_ERR_SUCCESS);
        EXPECT_EQ(size, std::string(id).size() + 1);
        ids.emplace_back(id);
    }
    return ids;
}

std::string SimulatorTest::LastErrorText() {
    GC_ERROR code = 0;
    char text[600] = {};
    size_t size = sizeof(text);
    EXPECT_EQ(p.GCGetLastError(&code, text, &size), GC_ERR_SUCCESS);
    return text;
}

void CameraTest::OpenCamera(const std::string& keys, const std::string& type) {
    UseConfig("<ZelSim><Interface id='I' type='" + type + "'><Camera id='C' " + keys +
              "/></Interface></ZelSim>");
    interface = OpenInterface("I");
    ASSERT_EQ(OpenDevice(interface, "C", DEVICE_ACCESS_EXCLUSIVE, &device), GC_ERR_SUCCESS);
    ASSERT_EQ(p.DevOpenDataStream(device, "C/Stream0", &stream), GC_ERR_SUCCESS);
    ASSERT_EQ(p.GCRegisterEvent(stream, EVENT_NEW_BUFFER, &newBuffer), GC_ERR_SUCCESS);
}

BUFFER_HANDLE CameraTest::Allocate() {
    BUFFER_HANDLE buffer = nullptr;
    const size_t size = StreamInfo(STREAM_INFO_PAYLOAD_SIZE).Size();
    EXPECT_EQ(p.DSAllocAndAnnounceBuffer(stream, size, nullptr, &buffer), GC_ERR_SUCCESS);
    return buffer;
}

void CameraTest::AllocateAndQueue(size_t count) {
    for (size_t i = 0; i < count; ++i)
        ASSERT_EQ(Queue(Allocate()), GC_ERR_SUCCESS);
}

BUFFER_HANDLE CameraTest::QueueMemory(size_t size) {
    memory.assign(size, 0xEE);
    BUFFER_HANDLE buffer = nullptr;
    EXPECT_EQ(p.DSAnnounceBuffer(stream, memory.data(), size, nullptr, &buffer), GC_ERR_SUCCESS);
    EXPECT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    return buffer;
}

auto CameraTest::Acquisition() {
    PORT_HANDLE port = nullptr;
    p.DevGetPort(device, &port);
    const bool bigEndian =
        Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
            return p.GCGetPortInfo(port, PORT_INFO_BIG_ENDIAN, type, buffer, size);
        }).Bool();
    const auto write = [this, port](uint64_t address, const auto& bytes) {
        size_t size = bytes.size();
        return p.GCWritePort(port, address, bytes.data(), &size) == GC_ERR_SUCCESS;
    };
    return ZelTest::CameraAcquisition(write, bigEndian);
}

GC_ERROR CameraTest::StartStream(uint64_t count) {
    return p.DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, count);
}

GC_ERROR CameraTest::StopStream(int32_t flags) {
    return p.DSStopAcquisition(stream, flags);
}

GC_ERROR CameraTest::Start(uint64_t count) {
    const GC_ERROR code = StartStream(count);
    if (code == GC_ERR_SUCCESS) {
        EXPECT_TRUE(Acquisition().Start());
    }
    return code;
}

GC_ERROR CameraTest::Stop(int32_t flags) {
    EXPECT_TRUE(Acquisition().Stop());
    return StopStream(flags);
}

GC_ERROR CameraTest::TryFetch(uint64_t timeoutMs, BUFFER_HANDLE* buffer) {
    EVENT_NEW_BUFFER_DATA data{};
    size_t size = sizeof(data);
    const GC_ERROR code = p.EventGetData(newBuffer, &data, &size, timeoutMs);
    if (buffer != nullptr) *buffer = data.BufferHandle;
    return code;
}

BUFFER_HANDLE CameraTest::Fetch() {
    BUFFER_HANDLE buffer = nullptr;
    EXPECT_EQ(TryFetch(patienceMs, &buffer), GC_ERR_SUCCESS);
    return buffer;
}

Info CameraTest::StreamInfo(int32_t command) {
    return Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
        return p.DSGetInfo(stream, command, type, buffer, size);
    });
}

Info CameraTest::BufferInfo(BUFFER_HANDLE buffer, int32_t command) {
    return Ask([&](INFO_DATATYPE* type, void* out, size_t* size) {
        return p.DSGetBufferInfo(stream, buffer, command, type, out, size);
    });
}

uint64_t CameraTest::FrameId(BUFFER_HANDLE buffer) {
    return BufferInfo(buffer, BUFFER_INFO_FRAMEID).Uint64();
}

const uint8_t* CameraTest::Data(BUFFER_HANDLE buffer) {
    return static_cast<const uint8_t*>(BufferInfo(buffer, BUFFER_INFO_BASE).Pointer());
}
