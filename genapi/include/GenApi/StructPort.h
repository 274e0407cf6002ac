// A port over a structure in memory, for tests without a device.
#ifndef GENAPI_STRUCTPORT_H
#define GENAPI_STRUCTPORT_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <GenApi/PortImpl.h>

namespace GENAPI_NAMESPACE {

// The members of CDataStruct are the registers, at their offsets from the base address, and
// initially zero. A test sets them directly and then calls InvalidateNode, so that the node map
// notices. Accesses outside the structure throw RuntimeException. Thread-bound.
template <class CDataStruct>
class CTestPortStruct : public CDataStruct, public CPortImpl {
    static_assert(std::is_trivially_copyable<CDataStruct>::value,
                  "registers are copied byte by byte");

  public:
    explicit CTestPortStruct(int64_t BaseAddress = 0)
        : CDataStruct(), m_BaseAddress(BaseAddress), m_AccessMode(RW) {}

    EAccessMode GetAccessMode() const override { return m_AccessMode; }
    // The node map notices it after the next InvalidateNode.
    void SetAccessMode(EAccessMode AccessMode) { m_AccessMode = AccessMode; }

    void Read(void* pBuffer, int64_t Address, int64_t Length) override {
        std::memcpy(pBuffer, At(Address, Length), static_cast<size_t>(Length));
    }
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override {
        std::memcpy(At(Address, Length), pBuffer, static_cast<size_t>(Length));
    }

  private:
    unsigned char* At(int64_t Address, int64_t Length) {
        CheckRange("CTestPortStruct", Address, Length, m_BaseAddress,
                   m_BaseAddress + static_cast<int64_t>(sizeof(CDataStruct)));
        CDataStruct* pData = this;
        return reinterpret_cast<unsigned char*>(pData) + (Address - m_BaseAddress);
    }

    const int64_t m_BaseAddress;
    EAccessMode m_AccessMode;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_STRUCTPORT_H
