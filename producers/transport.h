// What a transport gives to the server side of the producer, and what it may use of it.
//
//   Transport ──> HostInterface ──> Camera ──Open──> Connection ──OpenStream──> StreamEngine
//   simulated     network adapter   one camera       one client's use           one stream
//   cameras,      or USB host                        of the camera              of frames
//   GigE Vision                                          │                          │
//                                                        v                          v
//                                                    CameraSink                 BufferQueue
//                                                    events, loss               buffers for frames
//
// The server makes GenTL modules of these objects: it checks handles and parameters, answers info
// commands, decides which clients of this process may open a camera, and keeps buffers and events.
// A transport supplies values, moves registers and frames, and reports what a camera does by
// itself.
//
// Rules for all of them:
// - Operations are thread-safe, and throw ZelCti::Error when they fail; any other exception becomes
//   GC_ERR_ERROR. An operation that throws has changed nothing, unless it says otherwise.
// - An operation with a deadline returns by then; every other one within about a second, unless the
//   camera asks for more time, or the user waits for one that somebody else has.
// - What runs beside calls runs on threads of the transport, which end with the object that started
//   them. The server destroys no object of the transport on such a thread.
// - No pointer that is returned is null.
// - Features that a transport adds have addresses from 0x4000 to 0x4FFF; all others are the
//   server's. They may be in categories of the server.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/events/eventdata.h"
#include "producers/server/registers/featuretable.h"
#include "producers/server/registers/porturl.h"
#include "producers/wire/byteorder.h"

namespace ZelCti {

using Deadline = std::chrono::steady_clock::time_point;

// ---- Frames ------------------------------------------------------------------------------------

// A part of a frame of several, for example the depth or the confidence of an image.
struct FramePart {
    GenTL::PARTDATATYPE_ID type = GenTL::PART_DATATYPE_UNKNOWN;
    size_t offset = 0;    // of its data in the buffer
    size_t dataSize = 0;  // bytes that the buffer holds of it
    uint64_t format = 0;  // PFNC value
    size_t width = 0;
    size_t height = 0;
    size_t offsetX = 0;
    size_t offsetY = 0;
    size_t xPadding = 0;
    size_t deliveredHeight = 0;
    uint64_t sourceId = 0;
    uint64_t regionId = 0;
    uint64_t purposeId = 0;
};

// What a frame left in a buffer.
struct FrameInfo {
    uint64_t id = 0;
    uint64_t timestamp = 0;  // ticks of the camera's clock
    uint64_t timestampNs = 0;
    uint64_t pixelFormat = 0;  // PFNC value
    size_t width = 0;
    size_t height = 0;
    size_t offsetX = 0;
    size_t offsetY = 0;
    size_t xPadding = 0;         // bytes behind each line
    size_t yPadding = 0;         // bytes behind the image
    size_t imageOffset = 0;      // bytes before it
    size_t deliveredHeight = 0;  // lines that came
    size_t sizeFilled = 0;       // bytes of the buffer that hold the frame
    bool incomplete = false;
    bool tooLarge = false;        // larger than the buffer
    bool isSecondOfPair = false;  // of a stream that sends pairs
    // The byte order of the trailers of chunks, which end the payload; none without chunk data.
    std::optional<ByteOrder> chunkOrder;
    uint64_t chunkLayoutId = 0;
    size_t chunkBegin = 0;  // bytes before the first chunk, which are parts
    GenTL::PAYLOADTYPE_INFO_ID payloadType = GenTL::PAYLOAD_TYPE_IMAGE;
    // Whether format, size, offsets, padding and lines above are those of an image.
    bool hasImage = true;
    ByteOrder pixelOrder = ByteOrder::Little;
    // Where the data end that came, for a frame with gaps; without it at `sizeFilled`.
    std::optional<size_t> dataSize;
    // Of a multi-part payload, StreamInfo::maxParts at most. Each lies within the buffer.
    std::vector<FramePart> parts;
};

// Memory for a frame.
class FrameBuffer {
  public:
    virtual uint8_t* Base() const = 0;
    virtual size_t Size() const = 0;

  protected:
    ~FrameBuffer() = default;  // the server's
};

// The queued buffers of a stream, as an engine sees them. A buffer that was taken belongs to the
// engine until it gives it back with one of the other operations. None of them allocates memory.
class BufferQueue {
  public:
    virtual bool HasInput() const = 0;

    // The buffer for the next frame, whose start is counted; null without a queued one, which
    // counts as an under-run when there `mustBeOne`.
    virtual FrameBuffer* Take(bool mustBeOne) = 0;

    // No frame came: the buffer is the first of the queue again, and the start is not counted.
    virtual void PutBack(FrameBuffer& buffer) = 0;

    // The client gets the buffer with this frame.
    virtual void Deliver(FrameBuffer& buffer, const FrameInfo& frame) = 0;

    // The frame is lost, which counts as an under-run; the buffer is the first of the queue again.
    virtual void Lose(FrameBuffer& buffer) = 0;

  protected:
    ~BufferQueue() = default;  // the server's
};

// What does not change while a stream is open.
struct StreamInfo {
    bool definesPayloadSize = true;  // or else the camera's features do
    bool sendsPairs = false;         // frames come in pairs
    size_t minBuffers = 1;           // announced before a start
    size_t alignment = 1;            // of the memory of a buffer; a power of two
    size_t maxChunks = 0;
    size_t maxParts = 0;  // of a frame; each buffer keeps memory for the description of as many
};

// The source of the frames of an open stream. The server calls Start and Stop one at a time, and
// stops the engine before it destroys it.
class StreamEngine {
  public:
    virtual ~StreamEngine() = default;

    virtual const StreamInfo& Info() const = 0;
    virtual size_t PayloadSize() const = 0;  // asked for only if StreamInfo::definesPayloadSize

    // Frames go into the buffers until `numFrames` are delivered. An engine that is started and has
    // delivered all of its frames goes on with this number.
    virtual void Start(uint64_t numFrames) = 0;

    // Waits for a frame that is on its way into a buffer, unless `kill`. Every buffer that was
    // taken is given back when it returns or throws: no frame comes any more even when the camera
    // does not obey. Nothing for an engine that is not started.
    virtual void Stop(bool kill) = 0;

    // Lets a Stop of another thread wait no longer. The stream is being closed.
    virtual void Kill() noexcept = 0;

    // Whether further frames may come: false when it is not started, when the number of frames is
    // delivered, and when the camera is lost.
    virtual bool IsGrabbing() const noexcept = 0;

    // Buffers were queued, or taken away; also while the engine is not started.
    virtual void OnInput() noexcept = 0;

    // Adds the features that only streams of this transport have; see Connection::AddFeatures.
    virtual void AddFeatures(FeatureTable& /*features*/) {}
};

// ---- Open cameras ------------------------------------------------------------------------------

// Where a camera reports what it does by itself, from any thread. A report calls nothing of the
// transport, and the server holds no lock that a report needs while it calls the transport; so the
// transport may hold locks of its own.
class CameraSink {
  public:
    // `type` is EVENT_REMOTE_DEVICE for a message of the camera, with the number of its GenApi
    // event, or EVENT_FEATURE_INVALIDATE, with the name of a feature and its terminating zero.
    virtual void OnEvent(GenTL::EVENT_TYPE type, uint64_t id, EventData data) = 0;

    // The camera is gone for good. Called once. `reason` stands behind the camera's identifier in
    // the texts of errors: "is unplugged".
    virtual void OnLost(const std::string& reason) = 0;

  protected:
    ~CameraSink() = default;  // the server's
};

// The use that one client makes of a camera. Streams are destroyed before their connection.
class Connection {
  public:
    virtual ~Connection() = default;

    // The registers of the camera.
    virtual void Read(uint64_t address, void* buffer, size_t size) = 0;
    virtual void Write(uint64_t address, const void* buffer, size_t size) = 0;

    // Where the description of the registers is, the first choice first.
    virtual std::vector<PortUrl> DescriptionUrls() = 0;

    // Does not change. Each stream is open once at most; `buffers` outlives its engine.
    virtual uint32_t NumStreams() const = 0;
    virtual std::unique_ptr<StreamEngine> OpenStream(uint32_t index, BufferQueue& buffers) = 0;

    // Adds the features that only device modules of this transport have. Called when a client first
    // uses the port of the module, and again if that failed; the camera may be lost by then.
    virtual void AddFeatures(FeatureTable& /*features*/) {}

    // The client has closed the camera: gives up its control. Called once, all streams being
    // stopped; other operations may be under way, and must end. The sink hears nothing more when it
    // returns, so it waits for a report that is under way.
    virtual void Close() noexcept = 0;
};

// ---- Lists -------------------------------------------------------------------------------------

struct CameraInfo {
    std::string id;  // no other camera of the producer has it
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string version;
    std::string tlType;
    uint64_t timestampFrequency = 0;     // ticks a second
    bool bigEndian = false;              // its registers
    std::optional<std::string> usbHost;  // what a USB3 camera is connected to
};

// The addresses of a camera on a network, as it last told them.
struct CameraNetwork {
    uint64_t macAddress = 0;  // 48 bits
    uint32_t address = 0;     // 192.168.1.2 is 0xC0A80102
    uint32_t mask = 0;
    uint32_t gateway = 0;  // 0: none
};

// A camera that is listed. The object stays the same while the camera does; a camera that was lost
// and comes back is another one. An open camera may outlive its interface and its transport.
class Camera {
  public:
    virtual ~Camera() = default;

    virtual const CameraInfo& Info() const = 0;
    const std::string& Id() const { return Info().id; }

    virtual std::string UserName() const = 0;  // what the user calls it

    // Name for people, if it is another one than the user's or, without one, that of the model.
    virtual std::string DisplayName() const { return {}; }

    // Ticks a second of the camera's clock; 0: unknown. Transports that learn it after the camera
    // is listed override this.
    virtual uint64_t TimestampFrequency() const { return Info().timestampFrequency; }

    // None: the camera is on no network. It may change while the camera is listed.
    virtual std::optional<CameraNetwork> Network() const { return {}; }

    // What a client of this process may get when no other of this process has the camera open:
    // READWRITE, READONLY, BUSY or, for a camera that is lost or cannot be reached, NOACCESS.
    virtual GenTL::DEVICE_ACCESS_STATUS AccessStatus() const = 0;

    // Why the status is not READWRITE, and what helps, as far as the transport knows: "controlled
    // by 10.0.0.7:40000". One line; empty when the status says all.
    virtual std::string AccessReason() const { return {}; }

    // The server has decided who may open the camera. `sink` outlives the connection. Throws
    // GC_ERR_IO for a camera that is lost.
    virtual std::unique_ptr<Connection> Open(GenTL::DEVICE_ACCESS_FLAGS access,
                                             CameraSink& sink) = 0;
};

// Lists never change: when there are others, there is another list.
using CameraList = std::vector<std::shared_ptr<Camera>>;

struct InterfaceInfo {
    std::string id;  // no other interface of the producer has it
    std::string displayName;
    std::string tlType;
    std::string vendor;
    std::string model;
    std::string version;
};

// What cameras are connected to.
class HostInterface {
  public:
    // The camera that the DeviceSelector of an interface module has chosen; throws
    // GC_ERR_INVALID_INDEX when the module lists none.
    using SelectedCamera = std::function<std::shared_ptr<Camera>()>;

    virtual ~HostInterface() = default;

    virtual const InterfaceInfo& Info() const = 0;
    const std::string& Id() const { return Info().id; }

    // Looks for cameras. A camera that cannot be asked is left out; it is not an error.
    virtual void UpdateCameras(Deadline deadline) = 0;
    virtual std::shared_ptr<const CameraList> Cameras() const = 0;

    // Whether Cameras() tells what is there. If not, the server searches once for consumers that
    // list cameras without an update.
    virtual bool HasSearched() const { return true; }

    // Adds the features that only interface modules of this transport have; see
    // Connection::AddFeatures.
    virtual void AddFeatures(FeatureTable& /*features*/, const SelectedCamera& /*camera*/) {}
};

using InterfaceList = std::vector<std::shared_ptr<HostInterface>>;

// A kind of cameras, with everything that is connected at the moment.
class Transport {
  public:
    virtual ~Transport() = default;

    // Looks for interfaces. One that cannot be used is left out; it is not an error.
    virtual void UpdateInterfaces(Deadline deadline) = 0;
    virtual std::shared_ptr<const InterfaceList> Interfaces() const = 0;
};

// ---- The producer file -------------------------------------------------------------------------

// What the producer says of itself.
struct ProducerInfo {
    std::string id;
    std::string vendor;
    std::string model;
    std::string version;
    std::string fileName;
    std::string displayName;
};

// The two functions that a producer file implements: who it is, and its transports in the order in
// which their interfaces are listed. They are asked for when the producer is first used, and anew
// after the last GCCloseLib and after Library::Reconfigure.
const ProducerInfo& GetProducerInfo();
std::vector<std::shared_ptr<Transport>> MakeTransports();

}  // namespace ZelCti
