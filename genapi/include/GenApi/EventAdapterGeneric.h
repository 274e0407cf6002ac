// Events whose ids the transport layer provides.
#ifndef GENAPI_EVENTADAPTERGENERIC_H
#define GENAPI_EVENTADAPTERGENERIC_H

#include <cstddef>
#include <cstdint>

#include <Base/GCString.h>
#include <GenApi/EventAdapter.h>

namespace GENAPI_NAMESPACE {

// The whole message is the event's data: address 0 of its port is msg[0].
class GENAPI_DECL CEventAdapterGeneric : public CEventAdapter {
  public:
    CEventAdapterGeneric(INodeMap* pNodeMap = nullptr);
    ~CEventAdapterGeneric() override;

    // Without an id, the message reaches no node.
    void DeliverMessage(const uint8_t msg[], uint32_t numBytes) override;
    // The id consists of hexadecimal digits without "0x". RuntimeException for an odd number of
    // them; any other text matches no node.
    virtual void DeliverMessage(const uint8_t msg[], uint32_t numBytes,
                                const GENICAM_NAMESPACE::gcstring& EventID);
    virtual void DeliverMessage(const uint8_t msg[], uint32_t numBytes, uint64_t EventID);
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_EVENTADAPTERGENERIC_H
