// Recorded writes.
#ifndef GENAPI_PORTWRITELIST_H
#define GENAPI_PORTWRITELIST_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <GenApi/GenApiDll.h>
#include <GenApi/IPortRecorder.h>

namespace GENAPI_NAMESPACE {

// Keeps copies of writes in order. Pass it to IPortRecorder::StartRecording, and then to
// IPortReplay::Replay as often as needed. Thread-bound.
class GENAPI_DECL CPortWriteList : public IPortWriteList {
  public:
    CPortWriteList();
    virtual ~CPortWriteList();

    // InvalidArgumentException for a negative length, or for null unless the length is 0.
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override;
    // An exception of the port ends the replay. InvalidArgumentException for null.
    void Replay(IPort* pPort) override;
    void SetCookie(const int64_t Value) override;
    // 0 unless set.
    int64_t GetCookie() override;

  private:
    struct CEntry {
        int64_t Address;
        size_t Offset;
        size_t Length;
    };

    std::vector<CEntry> m_Entries;
    std::vector<uint8_t> m_Bytes;
    int64_t m_Cookie;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_PORTWRITELIST_H
