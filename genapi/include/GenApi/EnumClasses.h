// The enumerations as text.
#ifndef GENAPI_ENUMCLASSES_H
#define GENAPI_ENUMCLASSES_H

#include <Base/GCString.h>
#include <GenApi/GenApiDll.h>
#include <GenApi/Types.h>

namespace GENAPI_NAMESPACE {

// The texts are the names of the enumerators. Thread-safe.
template <class E>
class GENAPI_DECL EnumText {
  public:
    // False, and nothing set, for text that names no enumerator.
    static bool FromString(const GENICAM_NAMESPACE::gcstring& ValueStr, E* pValue);
    // Empty for a number that is no enumerator.
    static GENICAM_NAMESPACE::gcstring ToString(E Value);
};

typedef EnumText<ESign> ESignClass;
typedef EnumText<EAccessMode> EAccessModeClass;
typedef EnumText<EVisibility> EVisibilityClass;
typedef EnumText<ECachingMode> ECachingModeClass;
typedef EnumText<ERepresentation> ERepresentationClass;
typedef EnumText<EEndianess> EEndianessClass;
typedef EnumText<ENameSpace> ENameSpaceClass;
typedef EnumText<EStandardNameSpace> EStandardNameSpaceClass;
typedef EnumText<EYesNo> EYesNoClass;
typedef EnumText<ESlope> ESlopeClass;
typedef EnumText<EXMLValidation> EXMLValidationClass;
typedef EnumText<EDisplayNotation> EDisplayNotationClass;
typedef EnumText<EInterfaceType> EInterfaceTypeClass;
typedef EnumText<ELinkType> ELinkTypeClass;
typedef EnumText<EIncMode> EIncModeClass;
typedef EnumText<EInputDirection> EInputDirectionClass;
typedef EnumText<EGenApiSchemaVersion> EGenApiSchemaVersionClass;

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ENUMCLASSES_H
