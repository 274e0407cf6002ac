// Binds the references of classes generated for one camera to nodes.
#ifndef GENAPI_REFERENCE_H
#define GENAPI_REFERENCE_H

#include <Base/GCString.h>
#include <GenApi/IBase.h>

namespace GENAPI_NAMESPACE {

struct GENAPI_DECL_ABSTRACT IReference {
    virtual void SetReference(IBase* pBase) = 0;

  protected:
    ~IReference() = default;
};

struct GENAPI_DECL_ABSTRACT IEnumReference {
    virtual void SetEnumReference(int Index, GENICAM_NAMESPACE::gcstring Name) = 0;
    virtual void SetNumEnums(int NumEnums) = 0;

  protected:
    ~IEnumReference() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_REFERENCE_H
