// Delivery of a camera's events to its node map.
#ifndef GENAPI_EVENTADAPTER_H
#define GENAPI_EVENTADAPTER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <GenApi/GenApiDll.h>
#include <GenApi/INodeMap.h>

namespace GENAPI_NAMESPACE {

class CEventPort;

// Serves the nodes of a map that have an EventID. An event's bytes appear in the port nodes with
// its id, which are invalidated one after another; then the other nodes with that id are. They stay
// until the next event of that id or until the map is detached. Ids are compared as numbers.
//
// The adapter takes the ports over from an adapter attached to the same map before; whichever
// detaches leaves them unconnected. It must be detached or deleted before its map ends.
// Thread-bound; callbacks of the nodes run in the thread that delivers, and may detach the map but
// not delete the adapter.
class GENAPI_DECL CEventAdapter {
  public:
    CEventAdapter(INodeMap* pNodeMap = nullptr);
    // Detaches.
    virtual ~CEventAdapter();
    CEventAdapter(const CEventAdapter&) = delete;
    CEventAdapter& operator=(const CEventAdapter&) = delete;

    // Detaches from the former map, if any, and connects all event ports. Null only detaches.
    // LogicalErrorException if an EventID has an odd number of digits: nothing is attached then.
    virtual void AttachNodeMap(INodeMap* pNodeMap);
    // Exceptions of callbacks end here.
    virtual void DetachNodeMap();

    // RuntimeException for a malformed message, of which nothing is delivered. Without a map, and
    // for ids that no node has, nothing happens.
    virtual void DeliverMessage(const uint8_t msg[], uint32_t numBytes) = 0;

  protected:
    // Delivers one event; the id as CEventPort::CheckEventID takes it.
    void DeliverEvent(const std::string& EventID, const uint8_t* pData, uint32_t Length);

    // The ports first.
    std::vector<CEventPort*>* m_ppEventPorts;

  private:
    struct CUnattached {};
    explicit CEventAdapter(CUnattached);
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_EVENTADAPTER_H
