// Notification of changes.
#ifndef GENAPI_NODECALLBACK_H
#define GENAPI_NODECALLBACK_H

#include <GenApi/GenApiDll.h>
#include <GenApi/INode.h>

namespace GENAPI_NAMESPACE {

// When to call a callback: before or after the map's lock is released.
using ECallbackType = enum _ECallbackType { cbPostInsideLock = 1, cbPostOutsideLock = 2 };

// Called twice for each change of its node, once with each type; the object ignores the type that
// is not its own. Runs in the thread that made the change. It should not throw: the exception
// reaches the caller that made the change, and the remaining callbacks are not called.
class GENAPI_DECL CNodeCallback {
  public:
    CNodeCallback(INode* pNode, ECallbackType CallbackType)
        : m_pNode(pNode), m_CallbackType(CallbackType) {}
    virtual ~CNodeCallback() {}

    virtual void operator()(ECallbackType CallbackType) const = 0;
    // Destroys the object.
    virtual void Destroy() = 0;
    INode* GetNode() { return m_pNode; }

  protected:
    INode* m_pNode;
    ECallbackType m_CallbackType;
};

// Calls function(node).
template <class Function>
class Function_NodeCallback : public CNodeCallback {
  public:
    Function_NodeCallback(INode* pNode, const Function& function, ECallbackType CallbackType)
        : CNodeCallback(pNode, CallbackType), m_Function(function) {}
    void operator()(ECallbackType CallbackType) const override {
        if (CallbackType == m_CallbackType) m_Function(m_pNode);
    }
    void Destroy() override { delete this; }

  private:
    Function m_Function;
};

// Calls client.member(node); the client must outlive the registration.
template <class Client, class Member>
class Member_NodeCallback : public CNodeCallback {
  public:
    using PMEMBER_FUNC = void (Client::*)(INode*);

    Member_NodeCallback(INode* pNode, Client& client, Member member, ECallbackType CallbackType)
        : CNodeCallback(pNode, CallbackType), m_Client(client), m_Member(member) {}
    void operator()(ECallbackType CallbackType) const override {
        if (CallbackType == m_CallbackType) (m_Client.*m_Member)(m_pNode);
    }
    void Destroy() override { delete this; }

  private:
    Client& m_Client;
    PMEMBER_FUNC m_Member;
};

template <class Function>
CNodeCallback* make_NodeCallback(INode* pNode, Function function, ECallbackType CallbackType) {
    return new Function_NodeCallback<Function>(pNode, function, CallbackType);
}
template <class Client, class Member>
CNodeCallback* make_NodeCallback(INode* pNode, Client& client, Member member,
                                 ECallbackType CallbackType) {
    return new Member_NodeCallback<Client, Member>(pNode, client, member, CallbackType);
}

// Calls the function after every change of the node, until Deregister or the end of the map.
template <class Function>
intptr_t Register(INode* pNode, Function function, ECallbackType CallbackType = cbPostInsideLock) {
    return pNode->RegisterCallback(make_NodeCallback(pNode, function, CallbackType));
}
template <class Client, class Member>
intptr_t Register(INode* pNode, Client& client, Member member,
                  ECallbackType CallbackType = cbPostInsideLock) {
    return pNode->RegisterCallback(make_NodeCallback(pNode, client, member, CallbackType));
}

// Removes a callback of Register while the map exists. Does nothing for 0.
GENAPI_DECL void Deregister(CallbackHandleType pCallbackInfo);

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_NODECALLBACK_H
