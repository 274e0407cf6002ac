// The device information in a description.
#ifndef GENAPI_IDEVICEINFO_H
#define GENAPI_IDEVICEINFO_H

#include <Base/GCString.h>
#include <Base/GCTypes.h>
#include <GenApi/GenApiDll.h>

namespace GENAPI_NAMESPACE {

// Every node map has this interface. Thread-safe.
struct GENAPI_DECL_ABSTRACT IDeviceInfo {
    virtual GENICAM_NAMESPACE::gcstring GetModelName() = 0;
    virtual GENICAM_NAMESPACE::gcstring GetVendorName() = 0;
    virtual GENICAM_NAMESPACE::gcstring GetToolTip() = 0;
    virtual GENICAM_NAMESPACE::gcstring GetStandardNameSpace() = 0;
    // The version of this library.
    virtual void GetGenApiVersion(GENICAM_NAMESPACE::Version_t& Version, uint16_t& Build) = 0;
    virtual void GetSchemaVersion(GENICAM_NAMESPACE::Version_t& Version) = 0;
    virtual void GetDeviceVersion(GENICAM_NAMESPACE::Version_t& Version) = 0;
    virtual GENICAM_NAMESPACE::gcstring GetProductGuid() = 0;
    virtual GENICAM_NAMESPACE::gcstring GetVersionGuid() = 0;

  protected:
    ~IDeviceInfo() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IDEVICEINFO_H
