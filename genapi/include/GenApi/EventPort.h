// Connects events to a node.
#ifndef GENAPI_EVENTPORT_H
#define GENAPI_EVENTPORT_H

#include <cstdint>
#include <string>
#include <vector>

#include <GenApi/GenApiDll.h>
#include <GenApi/INode.h>
#include <GenApi/IPort.h>
#include <GenApi/IPortConstruct.h>

namespace GENAPI_NAMESPACE {

// Serves one node with an EventID. Behind a port node it holds the bytes of the last event:
//
//   not connected (NI) --Connect--> NA --AttachEvent--> RO      Disconnect returns from each
//
// Events only invalidate a node of another kind. The node must outlive the object.
// Thread-bound, except for GetAccessMode and Read, which the node map calls.
class GENAPI_DECL CEventPort : public IPort {
  public:
    // Does not connect. LogicalErrorException if the EventID has an odd number of digits.
    explicit CEventPort(INode* pNode);
    // Disconnects; catches exceptions of callbacks.
    ~CEventPort() override;
    CEventPort(const CEventPort&) = delete;
    CEventPort& operator=(const CEventPort&) = delete;

    // These invalidate the port node.
    void Connect();
    void Disconnect();

    // Whether the node is a port, which shows the bytes of its events.
    bool IsPort() const;
    // Compares with an id in capital hexadecimal digits without leading zeros; empty for 0.
    bool CheckEventID(const std::string& EventID) const;

    // Copies the event and invalidates the node. The callbacks may destroy this object.
    void AttachEvent(const uint8_t* pData, uint32_t Length);

    EAccessMode GetAccessMode() const override;
    // AccessException without an event, RuntimeException outside its bytes.
    void Read(void* pBuffer, int64_t Address, int64_t Length) override;
    // Always an AccessException.
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override;

  private:
    INode* const m_pNode;
    IPortConstruct* const m_pPortNode;  // null if the node is not a port
    std::string m_EventID;
    bool m_HasID;  // whether the EventID is a number
    std::vector<uint8_t> m_Data;
    bool m_IsConnected;
    bool m_HasEvent;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_EVENTPORT_H
