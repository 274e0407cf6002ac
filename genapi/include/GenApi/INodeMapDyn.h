// A map that loads its description by itself.
//
// No map implements this; use CNodeMapFactory. The declaration exists for sources that name it.
#ifndef GENAPI_INODEMAPDYN_H
#define GENAPI_INODEMAPDYN_H

#include <cstddef>

#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <GenApi/INodeMap.h>
#include <GenApi/Types.h>

namespace GENAPI_NAMESPACE {

struct GENAPI_DECL_ABSTRACT INodeMapDyn : virtual public INodeMap {
    virtual void ClearAllNodes() = 0;
    virtual void LoadXMLFromFile(const GENICAM_NAMESPACE::gcstring& FileName) = 0;
    virtual void LoadXMLFromFileInject(const GENICAM_NAMESPACE::gcstring& TargetFileName,
                                       const GENICAM_NAMESPACE::gcstring& InjectFileName) = 0;
    virtual void LoadXMLFromString(const GENICAM_NAMESPACE::gcstring& XMLData) = 0;
    virtual void LoadXMLFromStringInject(const GENICAM_NAMESPACE::gcstring& TargetXMLData,
                                         const GENICAM_NAMESPACE::gcstring& InjectXMLData) = 0;
    virtual void PreprocessXMLFromFile(const GENICAM_NAMESPACE::gcstring& XMLFileName,
                                       const GENICAM_NAMESPACE::gcstring& StyleSheetFileName,
                                       const GENICAM_NAMESPACE::gcstring& OutputFileName,
                                       EXMLValidation XMLValidation = xvDefault) = 0;
    virtual void MergeXMLFiles(const GENICAM_NAMESPACE::gcstring& TargetFileName,
                               const GENICAM_NAMESPACE::gcstring& InjectedFileName,
                               const GENICAM_NAMESPACE::gcstring& OutputFileName) = 0;
    virtual void ExtractIndependentSubtree(const GENICAM_NAMESPACE::gcstring& XMLData,
                                           const GENICAM_NAMESPACE::gcstring& InjectXMLData,
                                           const GENICAM_NAMESPACE::gcstring& SubTreeRootNodeName,
                                           GENICAM_NAMESPACE::gcstring& ExtractedSubtree) = 0;
    virtual void GetSupportedSchemaVersions(
        GENICAM_NAMESPACE::gcstring_vector& SchemaVersions) const = 0;
    virtual void LoadXMLFromZIPFile(const GENICAM_NAMESPACE::gcstring& ZipFileName) = 0;
    virtual void LoadXMLFromZIPData(const void* zipData, size_t zipSize) = 0;
    virtual void PreprocessXMLFromZIPFile(const GENICAM_NAMESPACE::gcstring& XMLFileName,
                                          const GENICAM_NAMESPACE::gcstring& StyleSheetFileName,
                                          const GENICAM_NAMESPACE::gcstring& OutputFileName,
                                          EXMLValidation XMLValidation = xvDefault) = 0;

  protected:
    ~INodeMapDyn() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_INODEMAPDYN_H
