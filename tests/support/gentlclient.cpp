#include "tests/support/gentlclient.h"

using namespace GenTL;

namespace ZelTest {

std::string Info::Text() const {
    EXPECT_EQ(code, GC_ERR_SUCCESS);
    EXPECT_EQ(type, INFO_DATATYPE_STRING);
    if (bytes.empty() || bytes.back() != '\0') {
        ADD_FAILURE() << "a text without its terminating zero";
        return {};
    }
    return bytes.data();
}

std::string Client::LastErrorText() {
    GC_ERROR code = 0;
    char text[600] = {};
    size_t size = sizeof(text);
    EXPECT_EQ(gentl_.GCGetLastError(&code, text, &size), GC_ERR_SUCCESS);
    return text;
}

IF_HANDLE Client::OpenInterface(const char* id) {
    IF_HANDLE handle = nullptr;
    EXPECT_EQ(gentl_.TLOpenInterface(system, id, &handle), GC_ERR_SUCCESS);
    return handle;
}

std::vector<std::string> Client::DeviceIds(IF_HANDLE of) {
    uint32_t count = 0;
    EXPECT_EQ(gentl_.IFGetNumDevices(of, &count), GC_ERR_SUCCESS);
    std::vector<std::string> ids;
    for (uint32_t i = 0; i < count; ++i) {
        char id[64] = {};
        size_t size = sizeof(id);
        EXPECT_EQ(gentl_.IFGetDeviceID(of, i, id, &size), GC_ERR_SUCCESS);
        EXPECT_EQ(size, std::string(id).size() + 1);
        ids.emplace_back(id);
    }
    return ids;
}

void Client::OpenCamera(const char* interfaceId, const std::string& id) {
    const std::string streamId = id + "/Stream0";
    interface = OpenInterface(interfaceId);
    ASSERT_EQ(gentl_.IFOpenDevice(interface, id.c_str(), DEVICE_ACCESS_EXCLUSIVE, &device),
              GC_ERR_SUCCESS);
    ASSERT_EQ(gentl_.DevOpenDataStream(device, streamId.c_str(), &stream), GC_ERR_SUCCESS);
    ASSERT_EQ(gentl_.GCRegisterEvent(stream, EVENT_NEW_BUFFER, &newBuffer), GC_ERR_SUCCESS);
}

PORT_HANDLE Client::Remote() {
    PORT_HANDLE port = nullptr;
    EXPECT_EQ(gentl_.DevGetPort(device, &port), GC_ERR_SUCCESS);
    return port;
}

BUFFER_HANDLE Client::Allocate() {
    BUFFER_HANDLE buffer = nullptr;
    const size_t size = StreamInfo(STREAM_INFO_PAYLOAD_SIZE).Size();
    EXPECT_EQ(gentl_.DSAllocAndAnnounceBuffer(stream, size, nullptr, &buffer), GC_ERR_SUCCESS);
    return buffer;
}

void Client::AllocateAndQueue(size_t count) {
    for (size_t i = 0; i < count; ++i)
        ASSERT_EQ(Queue(Allocate()), GC_ERR_SUCCESS);
}

BUFFER_HANDLE Client::QueueMemory(size_t size) {
    memory.assign(size, 0xEE);
    BUFFER_HANDLE buffer = nullptr;
    EXPECT_EQ(gentl_.DSAnnounceBuffer(stream, memory.data(), size, nullptr, &buffer),
              GC_ERR_SUCCESS);
    EXPECT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    return buffer;
}

GC_ERROR Client::TryFetch(uint64_t timeoutMs, BUFFER_HANDLE* buffer) {
    EVENT_NEW_BUFFER_DATA data{};
    size_t size = sizeof(data);
    const GC_ERROR code = gentl_.EventGetData(newBuffer, &data, &size, timeoutMs);
    if (buffer != nullptr) *buffer = data.BufferHandle;
    return code;
}

BUFFER_HANDLE Client::Fetch() {
    BUFFER_HANDLE buffer = nullptr;
    EXPECT_EQ(TryFetch(kPatienceMs, &buffer), GC_ERR_SUCCESS);
    return buffer;
}

}  // namespace ZelTest
