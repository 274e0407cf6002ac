// Recording and replay of the writes to a port.
#ifndef GENAPI_IPORTRECORDER_H
#define GENAPI_IPORTRECORDER_H

#include <GenApi/IPort.h>

namespace GENAPI_NAMESPACE {

// A list of writes. Thread-bound.
struct GENAPI_DECL_ABSTRACT IPortWriteList {
    virtual void Write(const void* pBuffer, int64_t Address, int64_t Length) = 0;
    // Sends all writes to the port, in order.
    virtual void Replay(IPort* pPort) = 0;
    // A number for the owner's use.
    virtual void SetCookie(const int64_t Value) = 0;
    virtual int64_t GetCookie() = 0;

  protected:
    ~IPortWriteList() = default;
};

struct GENAPI_DECL_ABSTRACT IPortReplay : virtual public IPort {
    // Sends the list to the device; Invalidate then drops the caches above the port.
    virtual void Replay(IPortWriteList* pPortRecorder, bool Invalidate = true) = 0;
};

// Port nodes have this interface. Thread-safe.
struct GENAPI_DECL_ABSTRACT IPortRecorder : public IPortReplay {
    // From now on, writes go to the list instead of the device.
    virtual void StartRecording(IPortWriteList* pPortRecorder) = 0;
    virtual void StopRecording() = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IPORTRECORDER_H
