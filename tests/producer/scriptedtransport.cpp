#include "tests/producer/scriptedtransport.h"

#include <algorithm>

namespace ZelTest {

using namespace ZelCti;

namespace {

Script& TheScript() {
    return ScriptedProducer::Instance().script;
}

thread_local bool isReporting = false;

// Nothing of a transport may end within its own report.
void NoteEnd(const char* name) {
    TheScript().Note(std::string("~") + name + (isReporting ? " within a report" : ""));
}

}  // namespace

void Script::Meet(const std::string& operation) {
    std::function<void()> fail;
    {
        const std::lock_guard lock(mutex_);
        const auto found = failures_.find(operation);
        if (found == failures_.end()) return;
        fail = std::move(found->second);
        failures_.erase(found);
    }
    fail();
}

void Script::Note(const std::string& step) {
    const std::lock_guard lock(mutex_);
    steps_.push_back(step);
}

std::vector<std::string> Script::Take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(steps_, {});
}

void Script::Clear() {
    const std::lock_guard lock(mutex_);
    failures_.clear();
    steps_.clear();
}

ScriptedProducer& ScriptedProducer::Instance() {
    static ScriptedProducer producer;
    return producer;
}

ScriptedCamera::ScriptedCamera(const std::string& id) {
    info.id = id;
    info.vendor = "V";
    info.model = "M";
    info.serialNumber = "S";
    info.version = "3";
    info.tlType = "GEV";
    info.timestampFrequency = 1000;
    urls.emplace_back("Local:camera.xml;1000;20", PortUrl::LocalFile{"camera.xml", 0x1000, 0x20});
}

std::string ScriptedCamera::UserName() const {
    TheScript().Meet("UserName");
    return userName;
}

GenTL::DEVICE_ACCESS_STATUS ScriptedCamera::AccessStatus() const {
    TheScript().Meet("AccessStatus");
    return status;
}

std::unique_ptr<Connection> ScriptedCamera::Open(GenTL::DEVICE_ACCESS_FLAGS /*access*/,
                                                 CameraSink& sink) {
    TheScript().Meet("Open");
    TheScript().Note("Open " + info.id);
    return std::make_unique<ScriptedConnection>(shared_from_this(), sink);
}

ScriptedConnection::ScriptedConnection(std::shared_ptr<ScriptedCamera> camera, CameraSink& sink)
    : camera_(std::move(camera)), sink_(&sink) {
    camera_->connection = this;
}

ScriptedConnection::~ScriptedConnection() {
    if (camera_->connection == this) camera_->connection = nullptr;
    NoteEnd("Connection");
}

void ScriptedConnection::Read(uint64_t address, void* buffer, size_t size) {
    TheScript().Meet("Read");
    auto* const bytes = static_cast<uint8_t*>(buffer);
    for (size_t i = 0; i < size; ++i) {
        const auto found = camera_->registers.find(address + i);
        bytes[i] = found == camera_->registers.end() ? uint8_t{0} : found->second;
    }
}

void ScriptedConnection::Write(uint64_t address, const void* buffer, size_t size) {
    TheScript().Meet("Write");
    const auto* const bytes = static_cast<const uint8_t*>(buffer);
    for (size_t i = 0; i < size; ++i)
        camera_->registers[address + i] = bytes[i];
}

uint32_t ScriptedConnection::NumStreams() const {
    TheScript().Meet("NumStreams");
    return camera_->numStreams;
}

std::unique_ptr<StreamEngine> ScriptedConnection::OpenStream(uint32_t index, BufferQueue& buffers) {
    TheScript().Meet("OpenStream");
    return std::make_unique<ScriptedStream>(camera_, index, buffers);
}

void ScriptedConnection::Close() noexcept {
    const std::lock_guard lock(sinkMutex_);
    sink_ = nullptr;
    TheScript().Note("Close");
}

void ScriptedConnection::Send(GenTL::EVENT_TYPE type, uint64_t id, const std::string& data) {
    const std::lock_guard lock(sinkMutex_);
    if (sink_ != nullptr) sink_->OnEvent(type, id, {data.data(), data.size()});
}

void ScriptedConnection::Lose() {
    const std::lock_guard lock(sinkMutex_);
    camera_->status = GenTL::DEVICE_ACCESS_STATUS_NOACCESS;
    for (const auto& [index, stream] : camera_->streams)
        stream->End();
    isReporting = true;
    if (sink_ != nullptr) sink_->OnLost();
    isReporting = false;
}

ScriptedStream::ScriptedStream(std::shared_ptr<ScriptedCamera> camera, uint32_t index,
                               BufferQueue& queue)
    : buffers(queue), camera_(std::move(camera)), index_(index) {
    camera_->streams[index] = this;
}

ScriptedStream::~ScriptedStream() {
    camera_->streams.erase(index_);
    NoteEnd("Stream");
}

size_t ScriptedStream::PayloadSize() const {
    TheScript().Meet("PayloadSize");
    return camera_->payloadSize;
}

void ScriptedStream::Start(uint64_t numFrames) {
    TheScript().Meet("Start");
    TheScript().Note("Start");
    numLeft_ = numFrames;
}

void ScriptedStream::Stop(bool kill) {
    TheScript().Note(kill ? "Stop at once" : "Stop");
    TheScript().Meet("Stop");
    while (camera_->holdsFrames && !kill && !isKilled_)
        std::this_thread::yield();
    numLeft_ = 0;
}

void ScriptedStream::Kill() noexcept {
    TheScript().Note("Kill");
    isKilled_ = true;
}

bool ScriptedStream::Send(const FrameInfo& frame, const std::vector<uint8_t>& bytes) {
    FrameBuffer* const buffer = buffers.Take(true);
    if (buffer == nullptr) return false;
    std::copy_n(bytes.begin(), std::min(bytes.size(), buffer->Size()), buffer->Base());
    if (numLeft_ != GENTL_INFINITE) --numLeft_;
    buffers.Deliver(*buffer, frame);
    return true;
}

ScriptedInterface::ScriptedInterface(const std::string& id, CameraList cameras)
    : present(std::move(cameras)), cameras_(std::make_shared<const CameraList>(present)) {
    info.id = id;
    info.displayName = "Interface " + id;
    info.tlType = "GEV";
    info.vendor = "V";
    info.model = "M";
    info.version = "2.5";
}

void ScriptedInterface::UpdateCameras(Deadline deadline) {
    TheScript().Meet("UpdateCameras");
    lastDeadline = deadline;
    if (present != *cameras_) cameras_ = std::make_shared<const CameraList>(present);
}

void ScriptedInterface::AddFeatures(FeatureTable& features, const SelectedCamera& camera) {
    if (rows) rows(features, camera);
}

ScriptedTransport::ScriptedTransport(InterfaceList interfaces)
    : present(std::move(interfaces)), interfaces_(std::make_shared<const InterfaceList>(present)) {}

void ScriptedTransport::UpdateInterfaces(Deadline /*deadline*/) {
    TheScript().Meet("UpdateInterfaces");
    if (present != *interfaces_) interfaces_ = std::make_shared<const InterfaceList>(present);
}

}  // namespace ZelTest

namespace ZelCti {

const ProducerInfo& GetProducerInfo() {
    static const ProducerInfo info{"Scripted", "Tests",  "Script",
                                   "1.0",      "script", "Scripted cameras"};
    return info;
}

std::vector<std::shared_ptr<Transport>> MakeTransports() {
    return ZelTest::ScriptedProducer::Instance().transports;
}

}  // namespace ZelCti
