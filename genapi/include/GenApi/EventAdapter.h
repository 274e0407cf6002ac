// Delivers a camera's events to its node map.
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

// Serves the nodes of a map that have an EventID. The port nodes with an event's id show its bytes,
// and are invalidated one after another; then the other nodes with that id are invalidated. The
// bytes stay until the next event with that id, or until the map is detached. Ids are compared as
// numbers.
//
// The adapter takes the ports over from an adapter that was attached to the same map earlier; when
// either of them detaches, the ports are unconnected. Detach or delete the adapter before its map
// ends. Thread-bound; the nodes' callbacks run in the thread that delivers. They may detach the map
// but must not delete the adapter.
class GENAPI_DECL CEventAdapter {
  public:
    CEventAdapter(INodeMap* pNodeMap = nullptr);
    // Detaches.
    virtual ~CEventAdapter();
    CEventAdapter(const CEventAdapter&) = delete;
    CEventAdapter& operator=(const CEventAdapter&) = delete;

    // Detaches from the previous map, if any, and connects all event ports. Null only detaches.
    // LogicalErrorException if an EventID has an odd number of digits; nothing is attached then.
    virtual void AttachNodeMap(INodeMap* pNodeMap);
    // Catches exceptions of callbacks.
    virtual void DetachNodeMap();

    // RuntimeException for a malformed message; none of its events is delivered. Does nothing
    // without a map, or for ids that no node has.
    virtual void DeliverMessage(const uint8_t msg[], uint32_t numBytes) = 0;

  protected:
    // Delivers one event, with its id in the form of CEventPort::CheckEventID.
    void DeliverEvent(const std::string& EventID, const uint8_t* pData, uint32_t Length);

    // Those of port nodes come first.
    std::vector<CEventPort*>* m_ppEventPorts;

  private:
    struct CUnattached {};
    explicit CEventAdapter(CUnattached);
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_EVENTADAPTER_H
