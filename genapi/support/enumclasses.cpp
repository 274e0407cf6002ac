// The text forms of the interface's enumerations.
#include <cstring>

#include <GenApi/EnumClasses.h>

namespace GENAPI_NAMESPACE {

namespace {

template <class E>
struct Name {
    E value;
    const char* text;
};

#define ENUMERATOR(name) \
    { name, #name }

// The enumerators of each enumeration, with their names.
template <class E>
constexpr int kNames = 0;

template <>
constexpr Name<ESign> kNames<ESign>[] = {ENUMERATOR(Signed), ENUMERATOR(Unsigned),
                                         ENUMERATOR(_UndefinedSign)};

template <>
constexpr Name<EAccessMode> kNames<EAccessMode>[] = {ENUMERATOR(NI),
                                                     ENUMERATOR(NA),
                                                     ENUMERATOR(WO),
                                                     ENUMERATOR(RO),
                                                     ENUMERATOR(RW),
                                                     ENUMERATOR(_UndefinedAccesMode),
                                                     ENUMERATOR(_CycleDetectAccesMode)};

template <>
constexpr Name<EVisibility> kNames<EVisibility>[] = {ENUMERATOR(Beginner), ENUMERATOR(Expert),
                                                     ENUMERATOR(Guru), ENUMERATOR(Invisible),
                                                     ENUMERATOR(_UndefinedVisibility)};

template <>
constexpr Name<ECachingMode> kNames<ECachingMode>[] = {
    ENUMERATOR(NoCache), ENUMERATOR(WriteThrough), ENUMERATOR(WriteAround),
    ENUMERATOR(_UndefinedCachingMode)};

template <>
constexpr Name<ERepresentation> kNames<ERepresentation>[] = {
    ENUMERATOR(Linear),     ENUMERATOR(Logarithmic),
    ENUMERATOR(Boolean),    ENUMERATOR(PureNumber),
    ENUMERATOR(HexNumber),  ENUMERATOR(IPV4Address),
    ENUMERATOR(MACAddress), ENUMERATOR(_UndefinedRepresentation)};

template <>
constexpr Name<EEndianess> kNames<EEndianess>[] = {ENUMERATOR(BigEndian), ENUMERATOR(LittleEndian),
                                                   ENUMERATOR(_UndefinedEndian)};

template <>
constexpr Name<ENameSpace> kNames<ENameSpace>[] = {ENUMERATOR(Custom), ENUMERATOR(Standard),
                                                   ENUMERATOR(_UndefinedNameSpace)};

template <>
constexpr Name<EStandardNameSpace> kNames<EStandardNameSpace>[] = {
    ENUMERATOR(None), ENUMERATOR(GEV), ENUMERATOR(IIDC),
    ENUMERATOR(CL),   ENUMERATOR(USB), ENUMERATOR(_UndefinedStandardNameSpace)};

template <>
constexpr Name<EYesNo> kNames<EYesNo>[] = {ENUMERATOR(Yes), ENUMERATOR(No),
                                           ENUMERATOR(_UndefinedYesNo)};

template <>
constexpr Name<ESlope> kNames<ESlope>[] = {ENUMERATOR(Increasing), ENUMERATOR(Decreasing),
                                           ENUMERATOR(Varying), ENUMERATOR(Automatic),
                                           ENUMERATOR(_UndefinedESlope)};

template <>
constexpr Name<EXMLValidation> kNames<EXMLValidation>[] = {
    ENUMERATOR(xvLoad),    ENUMERATOR(xvCycles), ENUMERATOR(xvSFNC),
    ENUMERATOR(xvDefault), ENUMERATOR(xvAll),    ENUMERATOR(_UndefinedEXMLValidation)};

template <>
constexpr Name<EDisplayNotation> kNames<EDisplayNotation>[] = {
    ENUMERATOR(fnAutomatic), ENUMERATOR(fnFixed), ENUMERATOR(fnScientific),
    ENUMERATOR(_UndefinedEDisplayNotation)};

template <>
constexpr Name<EInterfaceType> kNames<EInterfaceType>[] = {
    ENUMERATOR(intfIValue),       ENUMERATOR(intfIBase),      ENUMERATOR(intfIInteger),
    ENUMERATOR(intfIBoolean),     ENUMERATOR(intfICommand),   ENUMERATOR(intfIFloat),
    ENUMERATOR(intfIString),      ENUMERATOR(intfIRegister),  ENUMERATOR(intfICategory),
    ENUMERATOR(intfIEnumeration), ENUMERATOR(intfIEnumEntry), ENUMERATOR(intfIPort)};

template <>
constexpr Name<ELinkType> kNames<ELinkType>[] = {
    ENUMERATOR(ctParentNodes),     ENUMERATOR(ctReadingChildren),
    ENUMERATOR(ctWritingChildren), ENUMERATOR(ctInvalidatingChildren),
    ENUMERATOR(ctDependingNodes),  ENUMERATOR(ctTerminalNodes)};

template <>
constexpr Name<EIncMode> kNames<EIncMode>[] = {ENUMERATOR(noIncrement), ENUMERATOR(fixedIncrement),
                                               ENUMERATOR(listIncrement)};

template <>
constexpr Name<EInputDirection> kNames<EInputDirection>[] = {ENUMERATOR(idFrom), ENUMERATOR(idTo),
                                                             ENUMERATOR(idNone)};

template <>
constexpr Name<EGenApiSchemaVersion> kNames<EGenApiSchemaVersion>[] = {
    ENUMERATOR(v1_0), ENUMERATOR(v1_1), ENUMERATOR(_Undefined)};

template <class E>
bool FindValue(const GENICAM_NAMESPACE::gcstring& text, E* value) {
    for (const Name<E>& name : kNames<E>) {
        if (std::strcmp(text.c_str(), name.text) == 0) {
            *value = name.value;
            return true;
        }
    }
    return false;
}

template <class E>
GENICAM_NAMESPACE::gcstring FindName(E value) {
    for (const Name<E>& name : kNames<E>) {
        if (name.value == value) return name.text;
    }
    return "";
}

}  // namespace

#define ENUM_CLASS(E)                                                                   \
    bool E##Class::FromString(const GENICAM_NAMESPACE::gcstring& ValueStr, E* pValue) { \
        return FindValue(ValueStr, pValue);                                             \
    }                                                                                   \
    GENICAM_NAMESPACE::gcstring E##Class::ToString(E Value) {                           \
        return FindName(Value);                                                         \
    }

ENUM_CLASS(ESign)
ENUM_CLASS(EAccessMode)
ENUM_CLASS(EVisibility)
ENUM_CLASS(ECachingMode)
ENUM_CLASS(ERepresentation)
ENUM_CLASS(EEndianess)
ENUM_CLASS(ENameSpace)
ENUM_CLASS(EStandardNameSpace)
ENUM_CLASS(EYesNo)
ENUM_CLASS(ESlope)
ENUM_CLASS(EXMLValidation)
ENUM_CLASS(EDisplayNotation)
ENUM_CLASS(EInterfaceType)
ENUM_CLASS(ELinkType)
ENUM_CLASS(EIncMode)
ENUM_CLASS(EInputDirection)
ENUM_CLASS(EGenApiSchemaVersion)

}  // namespace GENAPI_NAMESPACE
