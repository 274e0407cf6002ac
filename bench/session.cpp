#include "bench/session.h"

#include "tests/support/acquisition.h"

namespace Bench {

namespace {

// Both ways use the registers of the camera, which cost the library a call of the producer, too.
auto AcquisitionOf(const LibraryCamera& camera) {
    const auto write = [&camera](uint64_t address, const auto& bytes) {
        return camera.Device().WriteMem(address, bytes.data(), bytes.size(), nullptr) ==
               ZelCamErr_Success;
    };
    return ZelTest::CameraAcquisition(write, false);
}

auto AcquisitionOf(const BareCamera& camera) {
    const auto write = [&camera](uint64_t address, const auto& bytes) {
        size_t size = bytes.size();
        return Simulator::Get().GCWritePort(camera.Port(), address, bytes.data(), &size) ==
               GenTL::GC_ERR_SUCCESS;
    };
    return ZelTest::CameraAcquisition(write, false);
}

}  // namespace

LibraryHost::LibraryHost()
    : system_(ZelCam_GetSystem()),
      interface_(system_ != nullptr ? system_->GetInterfaceById(kInterface) : nullptr) {
    Require(interface_ != nullptr, "the library does not find the interface");
}

ZelCam::DeviceInfo* LibraryHost::Info(size_t camera) const {
    return interface_->GetDeviceInfoById(CameraId(camera).c_str());
}

LibraryCamera::LibraryCamera(const LibraryHost& host, size_t camera)
    : device_(ZelCam_CreateDevice(host.Info(camera), ZelCam::DeviceAccess::Exclusive, nullptr)),
      stream_(device_ != nullptr ? device_->GetStreamByIndex(0) : nullptr) {
    Require(stream_ != nullptr, "the library does not open the camera");
}

void LibraryCamera::Announce(size_t buffers) const {
    Require(stream_->AllocBufferQueue(nullptr, buffers) == ZelCamErr_Success, "no buffers");
}

void LibraryCamera::Start(uint32_t flags) const {
    Require(stream_->StartAcquisition(ZelCam::Infinite, flags) == ZelCamErr_Success, "no start");
    Require(AcquisitionOf(*this).Start(), "the camera does not start");
}

void LibraryCamera::Stop() const {
    Require(AcquisitionOf(*this).Stop(), "the camera does not stop");
    Require(stream_->StopAcquisition(ZelCam::StopFlag_Kill) == ZelCamErr_Success, "no stop");
}

BareHost::BareHost() {
    Check(gentl_.GCInitLib(), "GCInitLib");
    Check(gentl_.TLOpen(&system_), "TLOpen");
    Check(gentl_.TLUpdateInterfaceList(system_, nullptr, kTimeoutMs), "TLUpdateInterfaceList");
    Check(gentl_.TLOpenInterface(system_, kInterface, &interface_), "TLOpenInterface");
    Check(gentl_.IFUpdateDeviceList(interface_, nullptr, kTimeoutMs), "IFUpdateDeviceList");
}

BareHost::~BareHost() {
    gentl_.IFClose(interface_);
    gentl_.TLClose(system_);
    gentl_.GCCloseLib();
}

BareCamera::BareCamera(const BareHost& host, size_t camera) {
    Check(gentl_.IFOpenDevice(host.Interface(), CameraId(camera).c_str(),
                              GenTL::DEVICE_ACCESS_EXCLUSIVE, &device_),
          "IFOpenDevice");
    Check(gentl_.DevGetPort(device_, &port_), "DevGetPort");
    char id[256];
    size_t size = sizeof id;
    Check(gentl_.DevGetDataStreamID(device_, 0, id, &size), "DevGetDataStreamID");
    Check(gentl_.DevOpenDataStream(device_, id, &stream_), "DevOpenDataStream");
    Check(gentl_.GCRegisterEvent(stream_, GenTL::EVENT_NEW_BUFFER, &event_), "GCRegisterEvent");
}

// The stream may be stopped already.
BareCamera::~BareCamera() {
    gentl_.DSStopAcquisition(stream_, GenTL::ACQ_STOP_FLAGS_KILL);
    gentl_.GCUnregisterEvent(stream_, GenTL::EVENT_NEW_BUFFER);
    gentl_.DSFlushQueue(stream_, GenTL::ACQ_QUEUE_ALL_DISCARD);
    gentl_.DSClose(stream_);
    gentl_.DevClose(device_);
}

void BareCamera::Announce(size_t buffers) const {
    size_t payload = 0;
    size_t size = sizeof payload;
    GenTL::INFO_DATATYPE type = 0;
    Check(gentl_.DSGetInfo(stream_, GenTL::STREAM_INFO_PAYLOAD_SIZE, &type, &payload, &size),
          "DSGetInfo");
    for (size_t i = 0; i < buffers; ++i) {
        GenTL::BUFFER_HANDLE buffer = nullptr;
        Check(gentl_.DSAllocAndAnnounceBuffer(stream_, payload, nullptr, &buffer),
              "DSAllocAndAnnounceBuffer");
        Check(gentl_.DSQueueBuffer(stream_, buffer), "DSQueueBuffer");
    }
}

void BareCamera::Start() const {
    Check(gentl_.DSStartAcquisition(stream_, GenTL::ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE),
          "DSStartAcquisition");
    Require(AcquisitionOf(*this).Start(), "the camera does not start");
}

void BareCamera::Stop() const {
    Require(AcquisitionOf(*this).Stop(), "the camera does not stop");
    Check(gentl_.DSStopAcquisition(stream_, GenTL::ACQ_STOP_FLAGS_KILL), "DSStopAcquisition");
}

}  // namespace Bench
