#include "tests/producer/scriptedtransport.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "producers/server/base/error.h"

namespace ZelTest {

using namespace ZelCti;

namespace {

thread_local bool isReporting = false;

void Meet(const char* operation) {
    Script::Instance().Meet(operation);
}

void Note(const std::string& step) {
    Script::Instance().Note(step);
}

// Nothing of a transport may end within its own report.
void NoteEnd(const std::string& name) {
    Note("~" + name + (isReporting ? " within a report" : ""));
}

class ScriptedConnection final : public Connection {
  public:
    explicit ScriptedConnection(std::shared_ptr<ScriptedCamera> camera)
        : camera_(std::move(camera)) {}
    ~ScriptedConnection() override { NoteEnd("Connection"); }

    void Read(uint64_t address, void* buffer, size_t size) override {
        Meet("Read");
        for (size_t i = 0; i < size; ++i) {
            const auto found = camera_->registers.find(address + i);
            static_cast<uint8_t*>(buffer)[i] =
                found == camera_->registers.end() ? uint8_t{0} : found->second;
        }
    }
    void Write(uint64_t address, const void* buffer, size_t size) override {
        Meet("Write");
        for (size_t i = 0; i < size; ++i)
            camera_->registers[address + i] = static_cast<const uint8_t*>(buffer)[i];
    }
    std::vector<PortUrl> DescriptionUrls() override { return camera_->urls; }
    uint32_t NumStreams() const override { return camera_->numStreams; }
    std::unique_ptr<StreamEngine> OpenStream(uint32_t index, BufferQueue& buffers) override {
        Meet("OpenStream");
        return std::make_unique<ScriptedStream>(camera_, index, buffers);
    }
    void AddFeatures(FeatureTable& features) override { camera_->deviceRows(features); }
    void Close() noexcept override {
        const std::lock_guard lock(camera_->sinkMutex);
        camera_->sink = nullptr;
        Note("Close");
    }

  private:
    const std::shared_ptr<ScriptedCamera> camera_;
};

}  // namespace

Script& Script::Instance() {
    static Script script;
    return script;
}

void Script::Meet(const std::string& operation) {
    std::unique_lock lock(mutex_);
    const auto failure = failures_.extract(operation);
    lock.unlock();
    if (!failure.empty()) failure.mapped()();
}

void Script::Note(const std::string& step) {
    const std::lock_guard lock(mutex_);
    steps_.push_back(step);
}

std::vector<std::string> Script::Take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(steps_, {});
}

ScriptedCamera::ScriptedCamera(const std::string& id) {
    info = {id, "V", "M", "S", "3", "GEV", 1000, false, {}};
    urls.emplace_back("Local:camera.xml;1000;20", PortUrl::LocalFile{"camera.xml", 0x1000, 0x20});
}

std::string ScriptedCamera::UserName() const {
    Meet("UserName");
    return userName;
}

GenTL::DEVICE_ACCESS_STATUS ScriptedCamera::AccessStatus() const {
    Meet("AccessStatus");
    return status;
}

std::unique_ptr<Connection> ScriptedCamera::Open(GenTL::DEVICE_ACCESS_FLAGS /*access*/,
                                                 CameraSink& client) {
    Meet("Open");
    if (status == GenTL::DEVICE_ACCESS_STATUS_NOACCESS) throw Error(GenTL::GC_ERR_IO, "lost");
    Note("Open " + info.id);
    const std::lock_guard lock(sinkMutex);
    sink = &client;
    return std::make_unique<ScriptedConnection>(shared_from_this());
}

void ScriptedCamera::Report(GenTL::EVENT_TYPE type, uint64_t id, const std::string& data) {
    const std::lock_guard lock(sinkMutex);
    if (sink != nullptr) sink->OnEvent(type, id, {data.data(), data.size()});
}

void ScriptedCamera::Lose() {
    const std::lock_guard lock(sinkMutex);
    status = GenTL::DEVICE_ACCESS_STATUS_NOACCESS;
    {
        const std::lock_guard open(streamsMutex);
        for (const auto& [index, stream] : streams)
            stream->End();
    }
    isReporting = true;
    if (sink != nullptr) sink->OnLost("is unplugged");
    isReporting = false;
}

ScriptedStream::ScriptedStream(std::shared_ptr<ScriptedCamera> camera, uint32_t index,
                               BufferQueue& queue)
    : buffers(queue), camera_(std::move(camera)), index_(index) {
    const std::lock_guard lock(camera_->streamsMutex);
    camera_->streams[index] = this;
}

ScriptedStream::~ScriptedStream() {
    NoteEnd("Stream");
    const std::lock_guard lock(camera_->streamsMutex);
    camera_->streams.erase(index_);
}

size_t ScriptedStream::PayloadSize() const {
    Meet("PayloadSize");
    return camera_->payloadSize;
}

void ScriptedStream::Start(uint64_t numFrames) {
    Meet("Start");
    Note("Start");
    numLeft_ = numFrames;
}

void ScriptedStream::Stop(bool kill) {
    Note(kill ? "Stop at once" : "Stop");
    Meet("Stop");
    while (camera_->holdsFrames && !kill && !isKilled_)
        std::this_thread::yield();
    numLeft_ = 0;
}

void ScriptedStream::Kill() noexcept {
    Note("Kill");
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
    : info{id, "Interface " + id, "GEV", "V", "M", "2.5"},
      present(std::move(cameras)),
      cameras_(std::make_shared<const CameraList>(present)) {}

void ScriptedInterface::UpdateCameras(Deadline deadline) {
    Meet("UpdateCameras");
    lastDeadline = deadline;
    if (present != *cameras_) cameras_ = std::make_shared<const CameraList>(present);
}

void ScriptedTransport::UpdateInterfaces(Deadline /*deadline*/) {
    Meet("UpdateInterfaces");
    if (present != *interfaces_) interfaces_ = std::make_shared<const InterfaceList>(present);
}

}  // namespace ZelTest

namespace ZelCti {

const ProducerInfo& GetProducerInfo() {
    static const ProducerInfo kInfo{"Scripted", "Tests",  "Script",
                                    "1.0",      "script", "Scripted cameras"};
    return kInfo;
}

std::vector<std::shared_ptr<Transport>> MakeTransports() {
    return ZelTest::Script::Instance().transports;
}

}  // namespace ZelCti
