// Events of IEEE 1394 cameras: not supported.
#ifndef GENAPI_EVENTADAPTER1394_H
#define GENAPI_EVENTADAPTER1394_H

#include <cstddef>
#include <cstdint>

#include <GenApi/EventAdapter.h>

namespace GENAPI_NAMESPACE {

// Exists for sources that choose among all adapters. It attaches to a map like the others, but
// cannot deliver events of this transport.
class GENAPI_DECL CEventAdapter1394 : public CEventAdapter {
  public:
    CEventAdapter1394(INodeMap* pNodeMap = nullptr);
    ~CEventAdapter1394() override;

    // Always a RuntimeException.
    void DeliverMessage(const uint8_t msg[], uint32_t numBytes) override;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_EVENTADAPTER1394_H
