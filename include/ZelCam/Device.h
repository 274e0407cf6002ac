// An opened camera.
#ifndef ZELCAM_DEVICE_H
#define ZELCAM_DEVICE_H

#include <cstddef>
#include <cstdint>

#include "ZelCam/DeviceInfo.h"
#include "ZelCam/Error.h"
#include "ZelCam/Interface.h"

namespace ZelCam {

class Stream;

// One opened camera: its streams, its register space, its features and its events.
//
//   ZelCam_CreateDevice() ──> Open ── GetStreamByIndex() ── ... ── Release()
//
// The Device owns its Streams and parameter arrays; they end with Release. The Device belongs to
// the DeviceInfo that opened it, and closes with the System at the latest.
// Thread-bound (see ZelCam.h).
class Device {
  public:
    // What an upload of firmware reports while it runs.
    enum UploadEventType : uint32_t {
        UploadEvent_SectorErased = 0,  // one flash sector was erased
        UploadEvent_Programmed = 1     // the page programming step ended or failed
    };
    struct UploadEventData {
        uint64_t firstAddress;
        uint64_t currentAddress;
        uint64_t endAddress;
        uint64_t errorCode;  // 0 when there is none
    };
    using UploadCallback = void (*)(UploadEventType type, UploadEventData data, void* priv);

    // Closes the camera and destroys this object with its streams and parameters. The streams stop,
    // but the camera gets no command: execute AcquisitionStop and set TLParamsLocked to 0 first
    // (see Stream), or the camera may go on sending. The library no longer calls sinks that are
    // still registered. Do not call it from an event callback or a sink.
    virtual void Release() = 0;

    // Number of data streams of the camera, opened or not; 0 when the producer fails.
    virtual uint32_t GetNumStreams() = 0;

    // The stream with that index or identifier. The first call opens it; later calls return the
    // same object until it is released. Null if there is no such stream or it cannot be opened.
    virtual Stream* GetStreamByIndex(uint32_t index) = 0;
    virtual Stream* GetStreamById(const char* id) = 0;

    virtual DeviceInfo* GetInfo() = 0;

    // Read or write `size` bytes of the camera's register space, in the camera's byte order (see
    // GetEndianness). They return the producer's code and ignore `written`.
    virtual ZelCamErr ReadMem(uint64_t address, void* buffer, size_t size) = 0;
    virtual ZelCamErr WriteMem(uint64_t address, const void* buffer, size_t size,
                               size_t* written) = 0;

    // Subscribe to and unsubscribe from GenTL events of the device: as for Interface.
    virtual ZelCamErr RegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr RegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;
    virtual ZelCamErr UnRegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr UnRegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;

    // The features of the transport layer's side of the connection, and the features of the camera.
    // The Device owns the arrays and returns the same ones on every call. Null on failure, as for
    // Interface, and also with ZelCamErr_FileOpenFailed if the camera's external description
    // (DeviceInfo::SetExternalXml) cannot be read; the next call tries again.
    //
    // From the first GetCameraParameters on, events of the camera reach its features on the event
    // thread of the Device. On this thread the library reads the features of an event and calls
    // ParamEventSinks.
    virtual ZelGenParam::Array* GetTransportParameters(ZelCamErr* err) = 0;
    virtual ZelGenParam::Array* GetCameraParameters(ZelCamErr* err) = 0;

    // Saves the camera's streamable features, with the identifiers of the camera and its interface,
    // to an XML file. Only features that are readable and writable at the moment are saved: if the
    // camera is open read-only there are none, and while frames are being grabbed the locked ones
    // are missing. If a value does not fit into a line of text, for instance because it has line
    // breaks, a comment "# Left out: NAME ..." takes its place; for a selector this is a failure.
    //
    // The file is replaced as a whole. A reader finds either the old or the new file, even if the
    // program is killed, the power fails or the disk is full. Saving makes a temporary file
    // ".zelcam-..." in the same folder, which remains only if the program is killed. An existing
    // file keeps its permissions; the umask decides those of a new file. A write-protected file is
    // not replaced. A symbolic link is followed unless it leads nowhere.
    //
    // The result is also success if the file cannot be written, and the old file stays. If that
    // matters, save under a name that does not exist yet, and check that the file exists
    // afterwards.
    //   ZelCamErr_GenApiError  a feature cannot be read, or its text does not fit into a line
    //   ZelCamErr_Error        any other failure
    // or the code of GetCameraParameters.
    virtual ZelCamErr SaveConfiguration(const char* fileName) = 0;

    // Sets the camera's features to saved values of this camera or another. `fileName` names a file
    // that SaveConfiguration wrote, or a file with only the text of the features (GenApi
    // persistence text). If there is no such file, `fileName` itself is taken as that text.
    //
    // Features that depend on one another get the same values in every state of the camera: a
    // feature that refuses its value is tried again after the others, and a feature that a later
    // one changed is set again. Values that are out of range or locked are not written. In the end
    // values are compared, not texts: "0x140" equals 320, "1.50" equals 1.5. There is no rollback:
    // features set before a failure keep their new values. CFeatureBag::LoadFromBag with the node
    // map (Array::GetNodeMap) does the same and names the features that failed.
    //   ZelCamErr_FileOpenFailed    the file cannot be opened, or `fileName` is null
    //   ZelCamErr_InvalidFile       the file or text is not a configuration
    //   ZelCamErr_LoadConfigFailed  a feature refused its value; the others are set
    // or the code of GetCameraParameters.
    virtual ZelCamErr LoadConfiguration(const char* fileName) = 0;

    // 1 if the camera's registers are little-endian; 0 if they are big-endian or the producer does
    // not report it.
    virtual uint32_t GetEndianness() const = 0;

    // Writes a firmware image into the camera's flash memory after erasing all its sectors. So far
    // only an empty regular file is accepted as an image: it erases the flash and programs nothing.
    // Any other file is refused before the camera is touched.
    //
    // The library calls `progress` with `priv` on this thread after each step; it may be null. The
    // event of a sector has the range of the flash, and the sector's address as `currentAddress`.
    // There is no rollback: sectors erased before a failure stay erased. If an upload was aborted
    // while the flash was busy, the next upload waits for the flash for up to two seconds.
    //   ZelCamErr_FileOpenFailed  the file cannot be opened, or `fileName` is null
    //   ZelCamErr_InvalidFile     the file is not an image
    //   ZelCamErr_GenTL_Busy      the flash stays busy, either before the first step, or in the
    //                             step whose event came last
    // or the producer's code if a register cannot be read or written.
    virtual ZelCamErr UploadFirmware(const char* fileName, UploadCallback progress, void* priv) = 0;

  protected:
    ~Device() = default;
};

}  // namespace ZelCam

// Opens a camera. With a null `info` it creates a private System and opens the first camera of the
// first interface that has one. Release such a Device before the program ends, like any other; it
// releases its System itself.
//
// Null on failure. If the producer refuses, `*err` is its code: ZelCamErr_GenTL_ResourceInUse or
// ZelCamErr_GenTL_AccessDenied if another program has the camera open; ZelCamErr_GenTL_Error also
// if `info` is null and there is no camera. Other failures leave `*err` unchanged. Success stores
// 0. The call counts as a use of `info` (see ZelCam.h), so several threads may open different
// cameras at once.
extern "C" __attribute__((visibility("default"))) ZelCam::Device* ZelCam_CreateDevice(
    ZelCam::DeviceInfo* info, ZelCam::DeviceAccess access, ZelCamErr* err);

#endif  // ZELCAM_DEVICE_H
