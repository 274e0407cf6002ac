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
// The Device owns its Streams and parameter arrays; they end with Release. It belongs to the
// DeviceInfo it was opened from and is closed with the System at the latest.
// Thread-bound (see ZelCam.h).
class Device {
  public:
    // What an upload of firmware reports while it runs.
    enum UploadEventType : uint32_t {
        UploadEvent_SectorErased = 0,  // one flash sector was erased
        UploadEvent_Programmed = 1     // the page programming step ended, well or not
    };
    struct UploadEventData {
        uint64_t firstAddress;
        uint64_t currentAddress;
        uint64_t endAddress;
        uint64_t errorCode;  // 0 when there is none
    };
    using UploadCallback = void (*)(UploadEventType type, UploadEventData data, void* priv);

    // Closes the camera and destroys this object with its streams and parameters. The streams stop;
    // the camera is told nothing: execute AcquisitionStop and set TLParamsLocked to 0 first (see
    // Stream), or it may go on sending. Sinks that are still registered are not called any more.
    // Not from within an event callback or a sink.
    virtual void Release() = 0;

    // Number of data streams of the camera, opened or not; 0 when the producer fails.
    virtual uint32_t GetNumStreams() = 0;

    // The stream with that index or identifier, opened on the first call; the same object on later
    // calls until it is released. Null when there is none or it cannot be opened.
    virtual Stream* GetStreamByIndex(uint32_t index) = 0;
    virtual Stream* GetStreamById(const char* id) = 0;

    virtual DeviceInfo* GetInfo() = 0;

    // Read or write `size` bytes of the camera's register space. The bytes are as the camera has
    // them, see GetEndianness. Return the producer's code. `written` is neither read nor written.
    virtual ZelCamErr ReadMem(uint64_t address, void* buffer, size_t size) = 0;
    virtual ZelCamErr WriteMem(uint64_t address, const void* buffer, size_t size,
                               size_t* written) = 0;

    // Subscribe to and unsubscribe from GenTL events of the device: as for Interface.
    virtual ZelCamErr RegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr RegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;
    virtual ZelCamErr UnRegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr UnRegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;

    // The features of the transport layer's side of the connection, and those of the camera; owned
    // by the Device, the same on every call. Null on failure, as for Interface, and
    // ZelCamErr_FileOpenFailed when the camera's external description (DeviceInfo::SetExternalXml)
    // cannot be read; the next call tries again.
    //
    // From the first GetCameraParameters on, events of the camera reach its features, on the event
    // thread of the Device: features of an event are read, and ParamEventSinks are called there.
    virtual ZelGenParam::Array* GetTransportParameters(ZelCamErr* err) = 0;
    virtual ZelGenParam::Array* GetCameraParameters(ZelCamErr* err) = 0;

    // Saves the camera's streamable features, with the identifiers of the camera and its interface,
    // to an XML file: those that can be read and written at the moment, so that of a camera that is
    // open read-only there are none, and while frames are being grabbed those that are locked are
    // missing. A value that a line of the text cannot hold, one with line breaks for instance, is
    // left out with a comment, "# Left out: NAME ..."; for a selector it is a failure.
    //
    // The file is replaced as a whole. Whoever reads it finds the former or the new one, also when
    // the program is killed, the power fails or the disk is full; a temporary file ".zelcam-..."
    // is made in its folder, which only a program that is killed leaves there. The permissions of a
    // former file stay, those of a new one follow the umask. A file that may not be written is not
    // replaced; a symbolic link is followed, unless it leads nowhere.
    //
    // Success also when the file cannot be written, it is as before then: save under a name that
    // does not exist yet, and see whether it does, where that matters.
    //   ZelCamErr_GenApiError  a feature cannot be read, or not be put into a line
    //   ZelCamErr_Error        any other failure
    // or the code of GetCameraParameters.
    virtual ZelCamErr SaveConfiguration(const char* fileName) = 0;

    // Sets the camera's features as saved before, of this camera or another. `fileName` names a
    // file that SaveConfiguration wrote or one with the text of the features alone (GenApi
    // persistence text); when there is no such file it is taken as that text itself.
    //
    // Features that depend on one another end alike whatever the state of the camera: one that does
    // not take its value is tried again behind the others, and one that a later one changed is set
    // again. Nothing out of range or locked is written. In the end values are compared, not texts:
    // "0x140" is 320, "1.50" is 1.5. Nothing is rolled back: features set before a failure keep
    // their new values. CFeatureBag::LoadFromBag with the node map (Array::GetNodeMap) does the
    // same and says which features failed.
    //   ZelCamErr_FileOpenFailed    the file cannot be opened, or `fileName` is null
    //   ZelCamErr_InvalidFile       the file or text is not a configuration
    //   ZelCamErr_LoadConfigFailed  a feature did not take its value; the others are set
    // or the code of GetCameraParameters.
    virtual ZelCamErr LoadConfiguration(const char* fileName) = 0;

    // 1 when the camera's registers are little-endian, 0 when they are big-endian or the producer
    // does not tell.
    virtual uint32_t GetEndianness() const = 0;

    // Writes a firmware image into the camera's flash memory, after erasing all its sectors. So far
    // only an empty regular file is taken as an image: the flash is erased and nothing programmed.
    // Any other file is refused before the camera is touched.
    //
    // `progress` is called with `priv` on this thread after each step; it may be null. The event of
    // a sector has the range of the flash, and the sector's address as `currentAddress`. Nothing is
    // rolled back: sectors erased before a failure stay erased. When an upload was aborted while
    // the flash was busy, the next one waits for it, up to two seconds.
    //   ZelCamErr_FileOpenFailed  the file cannot be opened, or `fileName` is null
    //   ZelCamErr_InvalidFile     the file is no image
    //   ZelCamErr_GenTL_Busy      the flash stays busy, either before the first step, or in the
    //                             step whose event came last
    // or the producer's code when a register cannot be read or written.
    virtual ZelCamErr UploadFirmware(const char* fileName, UploadCallback progress, void* priv) = 0;

  protected:
    ~Device() = default;
};

}  // namespace ZelCam

// Opens a camera. With a null `info` a System of its own is created for it, and the first camera of
// its first interface that has one is opened; such a Device is released before the program ends
// like any other, and releases that System itself.
//
// Null on failure. When the producer refuses, `*err` is its code (ZelCamErr_GenTL_ResourceInUse or
// ZelCamErr_GenTL_AccessDenied when somebody else has the camera open; ZelCamErr_GenTL_Error when
// `info` is null and there is no camera); for other failures `*err` is left as it was. 0 is stored
// on success. A use of `info` (see ZelCam.h): cameras may be opened by several threads at once.
extern "C" __attribute__((visibility("default"))) ZelCam::Device* ZelCam_CreateDevice(
    ZelCam::DeviceInfo* info, ZelCam::DeviceAccess access, ZelCamErr* err);

#endif  // ZELCAM_DEVICE_H
