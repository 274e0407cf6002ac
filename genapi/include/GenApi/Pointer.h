// Smart pointers that convert between the interfaces of an object.
#ifndef GENAPI_POINTER_H
#define GENAPI_POINTER_H

#include <type_traits>

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <GenApi/IBoolean.h>
#include <GenApi/ICategory.h>
#include <GenApi/IChunkPort.h>
#include <GenApi/ICommand.h>
#include <GenApi/IDeviceInfo.h>
#include <GenApi/IEnumEntry.h>
#include <GenApi/IEnumeration.h>
#include <GenApi/IFloat.h>
#include <GenApi/IInteger.h>
#include <GenApi/INode.h>
#include <GenApi/INodeMap.h>
#include <GenApi/IPort.h>
#include <GenApi/IPortConstruct.h>
#include <GenApi/IPortRecorder.h>
#include <GenApi/IPortStacked.h>
#include <GenApi/IRegister.h>
#include <GenApi/ISelector.h>
#include <GenApi/IString.h>
#include <GenApi/IUserData.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// The interface T of an object known as B; does not own it. Null if the object does not have T.
// Using a null pointer throws LogicalErrorException, and so does its conversion to T*: test it with
// IsValid or in a condition. Reentrant.
template <class T, class B = IBase>
class CPointer {
  public:
    CPointer() noexcept : m_pT(nullptr) {}
    CPointer(B* pB) : m_pT(dynamic_cast<T*>(pB)) {}
    CPointer(const CPointer&) = default;
    virtual ~CPointer() {}

    CPointer& operator=(const CPointer&) = default;
    CPointer& operator=(B* pB) {
        m_pT = dynamic_cast<T*>(pB);
        return *this;
    }

    operator T*() const { return Checked(); }
    T& operator*() const { return *Checked(); }
    T& operator()() const { return *Checked(); }
    T* operator->() const { return Checked(); }

    bool IsValid() const noexcept { return m_pT != nullptr; }
    operator bool() const noexcept { return m_pT != nullptr; }

    bool operator==(T* pT) const { return m_pT == pT; }
    bool operator==(const CPointer& rT) const { return m_pT == rT.m_pT; }
    // For comparisons with 0 and NULL; any other number is a LogicalErrorException.
    template <class Int, class = typename std::enable_if<std::is_integral<Int>::value>::type>
    bool operator==(Int nNull) const {
        if (nNull != 0) throw LOGICAL_ERROR_EXCEPTION("argument must be NULL");
        return m_pT == nullptr;
    }

  protected:
    T* m_pT;

  private:
    T* Checked() const {
        if (m_pT == nullptr) throw LOGICAL_ERROR_EXCEPTION("NULL pointer dereferenced");
        return m_pT;
    }
};

// The principal interface of a node as text, such as "IInteger"; "IBase" for objects other than
// nodes.
GENAPI_DECL GENICAM_NAMESPACE::gcstring GetInterfaceName(IBase* pBase);

using CBasePtr = CPointer<IBase>;
using CNodePtr = CPointer<INode>;
using CValuePtr = CPointer<IValue>;
using CCategoryPtr = CPointer<ICategory>;
using CBooleanPtr = CPointer<IBoolean>;
using CIntegerPtr = CPointer<IInteger>;
using CStringPtr = CPointer<IString>;
using CRegisterPtr = CPointer<IRegister>;
using CEnumerationPtr = CPointer<IEnumeration>;
using CEnumEntryPtr = CPointer<IEnumEntry>;
using CPortPtr = CPointer<IPort>;
using CPortReplayPtr = CPointer<IPortReplay>;
using CPortRecorderPtr = CPointer<IPortRecorder>;
using CPortWriteListPtr = CPointer<IPortWriteList, IPortWriteList>;
using CChunkPortPtr = CPointer<IChunkPort>;
using CSelectorPtr = CPointer<ISelector>;
using CCommandPtr = CPointer<ICommand>;
using CNodeUserDataPtr = CPointer<IUserData>;
using CPortConstructPtr = CPointer<IPortConstruct>;
using CPortStackedConstructPtr = CPointer<IPortStackedConstruct>;
using CNodeMapPtr = CPointer<INodeMap, INodeMap>;
using CDeviceInfoPtr = CPointer<IDeviceInfo, INodeMap>;
using CNodeMapUserDataPtr = CPointer<IUserData, INodeMap>;

class CFloatPtr : public CPointer<IFloat, IBase> {
  public:
    CFloatPtr() noexcept {}
    CFloatPtr(IBase* pB) : CPointer<IFloat, IBase>(pB) {}
    CFloatPtr& operator=(IBase* pB) {
        CPointer<IFloat, IBase>::operator=(pB);
        return *this;
    }

    // The same feature as integer or enumeration; null if the description does not name one.
    IInteger* GetIntAlias() { return dynamic_cast<IInteger*>(CastAlias()); }
    IEnumeration* GetEnumAlias() { return dynamic_cast<IEnumeration*>(CastAlias()); }

  private:
    INode* CastAlias() const { return (*this)->GetNode()->GetCastAlias(); }
};

template <class T, class B>
inline bool IsReadable(const CPointer<T, B>& ptr) {
    return ptr.IsValid() && IsReadable(ptr->GetAccessMode());
}
template <class T, class B>
inline bool IsWritable(const CPointer<T, B>& ptr) {
    return ptr.IsValid() && IsWritable(ptr->GetAccessMode());
}
template <class T, class B>
inline bool IsImplemented(const CPointer<T, B>& ptr) {
    return ptr.IsValid() && IsImplemented(ptr->GetAccessMode());
}
template <class T, class B>
inline bool IsAvailable(const CPointer<T, B>& ptr) {
    return ptr.IsValid() && IsAvailable(ptr->GetAccessMode());
}

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_POINTER_H
