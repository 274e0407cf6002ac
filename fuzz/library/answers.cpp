// The answers of a producer: counts, identifiers, values of info commands with their types and
// sizes, filled buffers, registers. Whatever it answers, the object model goes on or tells a code.
//
// Each call takes the next bytes of the input; when there are none left, every call fails.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>

#include "ZelCam/ZelCam.h"
#include "ZelCameraApi/ifaceimpl.h"

using namespace ZelCameraApi::Internal;
using GenTL::GC_ERROR;

namespace {

// The rest of the input. Calls come from one thread.
class Input {
  public:
    void Begin(const uint8_t* data, size_t size) {
        next_ = data;
        end_ = data + size;
    }
    bool Ended() const { return next_ == end_; }
    uint8_t Byte() { return Ended() ? uint8_t{0} : *next_++; }

    // Up to `room` bytes.
    size_t Copy(void* to, size_t room) {
        const size_t size = std::min(room, static_cast<size_t>(end_ - next_));
        std::copy_n(next_, size, static_cast<uint8_t*>(to));
        next_ += size;
        return size;
    }

  private:
    const uint8_t* next_ = nullptr;
    const uint8_t* end_ = nullptr;
};
Input input;

// One call in eight fails.
GC_ERROR Result() {
    if (input.Ended()) return GenTL::GC_ERR_ERROR;
    const uint8_t byte = input.Byte();
    return byte % 8 == 0 ? -1001 - byte / 8 : 0;
}

// A size that is often what was asked for, and sometimes far from it.
size_t ReportedSize(size_t written) {
    const uint8_t byte = input.Byte();
    if (byte < 200) return written;
    return byte == 255 ? SIZE_MAX : size_t{byte} << (byte % 32);
}

GC_ERROR Answer(void* buffer, size_t* size) {
    const GC_ERROR result = Result();
    if (result != 0) return result;
    size_t written = input.Byte() % 64;
    if (buffer != nullptr) written = input.Copy(buffer, std::min(written, *size));
    *size = ReportedSize(written);
    return 0;
}

GC_ERROR AnswerInfo(int32_t* type, void* buffer, size_t* size) {
    *type = input.Byte() % 16;
    return Answer(buffer, size);
}

GC_ERROR Count(uint32_t* count) {
    const uint8_t byte = input.Byte();
    *count = byte == 255 ? UINT32_MAX : byte % 8;
    return Result();
}

GC_ERROR Open(void** handle) {
    static std::array<char, 256> modules;
    *handle = &modules.at(input.Byte());
    return Result();
}

// The calls in the groups that are answered alike.
struct Producer {
    static GC_ERROR Info(void*, int32_t, int32_t* type, void* buffer, size_t* size) {
        return AnswerInfo(type, buffer, size);
    }
    static GC_ERROR InfoOfId(void*, const char*, int32_t, int32_t* type, void* buffer,
                             size_t* size) {
        return AnswerInfo(type, buffer, size);
    }
    static GC_ERROR InfoOfIndex(void*, uint32_t, int32_t, int32_t* type, void* buffer,
                                size_t* size) {
        return AnswerInfo(type, buffer, size);
    }
    static GC_ERROR InfoOfBuffer(void*, void*, int32_t, int32_t* type, void* buffer, size_t* size) {
        return AnswerInfo(type, buffer, size);
    }
    static GC_ERROR Id(void*, uint32_t, char* id, size_t* size) { return Answer(id, size); }
    static GC_ERROR NumberOf(void*, uint32_t* count) { return Count(count); }
    static GC_ERROR Update(void*, GenTL::bool8_t* changed, uint64_t) {
        if (changed != nullptr) *changed = input.Byte();
        return Result();
    }
    static GC_ERROR OpenById(void*, const char*, void** handle) { return Open(handle); }
    static GC_ERROR OpenDevice(void*, const char*, int32_t, void** handle) { return Open(handle); }
    static GC_ERROR OpenPort(void*, void** handle) { return Open(handle); }
    static GC_ERROR RegisterEvent(void*, int32_t, void** handle) { return Open(handle); }
    static GC_ERROR UnregisterEvent(void*, int32_t) { return Result(); }
    static GC_ERROR Close(void*) { return Result(); }
    static GC_ERROR Read(void*, uint64_t, void* buffer, size_t* size) {
        return Answer(buffer, size);
    }
    static GC_ERROR Write(void*, uint64_t, const void*, size_t* size) {
        *size = ReportedSize(*size);
        return Result();
    }
    static GC_ERROR Event(void*, void* buffer, size_t* size, uint64_t) {
        return Answer(buffer, size);
    }
    static GC_ERROR Alloc(void*, size_t, void*, void** handle) { return Open(handle); }
    static GC_ERROR Announce(void*, void*, size_t, void*, void** handle) { return Open(handle); }
    static GC_ERROR Revoke(void*, void*, void**, void**) { return Result(); }
    static GC_ERROR Queue(void*, void*) { return Result(); }
    static GC_ERROR Flush(void*, int32_t) { return Result(); }
    static GC_ERROR Start(void*, int32_t, uint64_t) { return Result(); }
};

template <typename Member, typename Function>
void Set(Member& member, Function* function) {
    member.Set(reinterpret_cast<void*>(function));
}

GenTLModule<void*> Module() {
    // A wide path loads nothing.
    auto lib = std::make_shared<GenTLLib>(std::wstring(L"fake"));
    Set(lib->GCGetPortInfo, Producer::Info);
    Set(lib->GCGetNumPortURLs, Producer::NumberOf);
    Set(lib->GCGetPortURLInfo, Producer::InfoOfIndex);
    Set(lib->GCReadPort, Producer::Read);
    Set(lib->GCWritePort, Producer::Write);
    Set(lib->GCRegisterEvent, Producer::RegisterEvent);
    Set(lib->GCUnregisterEvent, Producer::UnregisterEvent);
    Set(lib->EventGetData, Producer::Event);
    Set(lib->TLGetInterfaceInfo, Producer::InfoOfId);
    Set(lib->TLOpenInterface, Producer::OpenById);
    Set(lib->IFClose, Producer::Close);
    Set(lib->IFGetInfo, Producer::Info);
    Set(lib->IFGetNumDevices, Producer::NumberOf);
    Set(lib->IFGetDeviceID, Producer::Id);
    Set(lib->IFUpdateDeviceList, Producer::Update);
    Set(lib->IFGetDeviceInfo, Producer::InfoOfId);
    Set(lib->IFOpenDevice, Producer::OpenDevice);
    Set(lib->DevGetPort, Producer::OpenPort);
    Set(lib->DevGetNumDataStreams, Producer::NumberOf);
    Set(lib->DevGetDataStreamID, Producer::Id);
    Set(lib->DevOpenDataStream, Producer::OpenById);
    Set(lib->DevClose, Producer::Close);
    Set(lib->DSAnnounceBuffer, Producer::Announce);
    Set(lib->DSAllocAndAnnounceBuffer, Producer::Alloc);
    Set(lib->DSFlushQueue, Producer::Flush);
    Set(lib->DSStartAcquisition, Producer::Start);
    Set(lib->DSStopAcquisition, Producer::Flush);
    Set(lib->DSGetInfo, Producer::Info);
    Set(lib->DSClose, Producer::Close);
    Set(lib->DSRevokeBuffer, Producer::Revoke);
    Set(lib->DSQueueBuffer, Producer::Queue);
    Set(lib->DSGetBufferInfo, Producer::InfoOfBuffer);
    return {nullptr, lib};
}

void Use(ZelCam::Buffer& buffer) {
    buffer.GetImage();
    buffer.GetPixelFormat();
    buffer.GetFrameID();
    buffer.IsIncomplete();
    buffer.GetDeliveredHeight();
    buffer.IsKacFrameB();
}

void Use(ZelCam::Stream& stream) {
    stream.GetBufferSize();
    stream.GetBufferAlignment();
    stream.GetNumUnderrun();
    // A buffer's size is the producer's word, and the memory its matter.
    std::array<char, 64> memory{};
    stream.SetBuffer(memory.data(), memory.size(), nullptr, nullptr);
    stream.CreateBuffer(memory.size(), nullptr, nullptr);
    stream.StartAcquisition(1, ZelCam::StartFlag_Default);
    for (int i = 0; i < 4; ++i) {
        ZelCam::Buffer* const buffer = stream.GetBuffer(0, nullptr);
        if (buffer == nullptr) continue;
        Use(*buffer);
        stream.QueueBuffer(buffer);
    }
    stream.FlushBuffers(ZelCam::FlushOperation::AllDiscard);
    stream.GetParameters(nullptr);
    stream.StopAcquisition(0);
    stream.Release();
}

void Use(ZelCam::DeviceInfo& info) {
    info.GetVendor();
    info.GetSerialNumber();
    info.GetUSB3HostInfo();
    info.GetAccessStatus();
    info.GetIPAddress(nullptr);
    ZelCam::Device* const device =
        ZelCam_CreateDevice(&info, ZelCam::DeviceAccess::Control, nullptr);
    if (device == nullptr) return;
    device->GetNumStreams();
    device->GetEndianness();
    device->GetTransportParameters(nullptr);
    uint32_t value = 0;
    device->ReadMem(0, &value, sizeof value);
    if (ZelCam::Stream* const stream = device->GetStreamByIndex(0)) Use(*stream);
    device->Release();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    input.Begin(data, size);
    try {
        InterfaceImpl interface(nullptr, Module(), "if");
        interface.GetType();
        interface.GetDescription();
        interface.ReEnumerateDevices(nullptr, 0);
        interface.GetParameters(nullptr);
        ZelCam::List<ZelCam::DeviceInfo>* const infos = interface.GetDeviceInfoList();
        if (infos == nullptr) return 0;
        for (auto* info = infos->GetFirst(); info != nullptr; info = infos->GetNext())
            Use(*info);
    } catch (const std::exception&) {
        // operations may throw it, as their headers say
    }
    return 0;
}
