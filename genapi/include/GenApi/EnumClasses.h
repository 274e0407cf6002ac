// Text forms of the enumerations.
#ifndef GENAPI_ENUMCLASSES_H
#define GENAPI_ENUMCLASSES_H

#include <Base/GCString.h>
#include <GenApi/GenApiDll.h>
#include <GenApi/Types.h>

namespace GENAPI_NAMESPACE {

// Each enumeration E has a class EClass. The texts are the names of the enumerators.
//  - FromString: false for a text that is not an enumerator; the value stays unchanged.
//  - ToString: empty for a number that is not an enumerator.
// Thread-safe.
#define GENAPI_ENUM_CLASS(E)                                                            \
    class GENAPI_DECL E##Class {                                                        \
      public:                                                                           \
        static bool FromString(const GENICAM_NAMESPACE::gcstring& ValueStr, E* pValue); \
        static GENICAM_NAMESPACE::gcstring ToString(E Value);                           \
    };

GENAPI_ENUM_CLASS(ESign)
GENAPI_ENUM_CLASS(EAccessMode)
GENAPI_ENUM_CLASS(EVisibility)
GENAPI_ENUM_CLASS(ECachingMode)
GENAPI_ENUM_CLASS(ERepresentation)
GENAPI_ENUM_CLASS(EEndianess)
GENAPI_ENUM_CLASS(ENameSpace)
GENAPI_ENUM_CLASS(EStandardNameSpace)
GENAPI_ENUM_CLASS(EYesNo)
GENAPI_ENUM_CLASS(ESlope)
GENAPI_ENUM_CLASS(EXMLValidation)
GENAPI_ENUM_CLASS(EDisplayNotation)
GENAPI_ENUM_CLASS(EInterfaceType)
GENAPI_ENUM_CLASS(ELinkType)
GENAPI_ENUM_CLASS(EIncMode)
GENAPI_ENUM_CLASS(EInputDirection)
GENAPI_ENUM_CLASS(EGenApiSchemaVersion)
#undef GENAPI_ENUM_CLASS

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ENUMCLASSES_H
