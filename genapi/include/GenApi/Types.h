// The enumerations of the node-map interface.
#ifndef GENAPI_TYPES_H
#define GENAPI_TYPES_H

#include <Base/GCStringVector.h>
#include <Base/GCTypes.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {

// Signedness of a register.
typedef enum _ESign { Signed = 0, Unsigned = 1, _UndefinedSign = 2 } ESign;

// What can be done with a node: not implemented, not available, write only, read only, both.
typedef enum _EAccessMode {
    NI = 0,
    NA = 1,
    WO = 2,
    RO = 3,
    RW = 4,
    _UndefinedAccesMode = 5,
    _CycleDetectAccesMode = 6  // used inside while the mode is being computed
} EAccessMode;

// For whom a feature is meant.
typedef enum _EVisibility {
    Beginner = 0,
    Expert = 1,
    Guru = 2,
    Invisible = 3,
    _UndefinedVisibility = 99
} EVisibility;

// How the value of a register is cached.
typedef enum _ECachingMode {
    NoCache = 0,
    WriteThrough = 1,  // a write fills the cache
    WriteAround = 2,   // a write empties the cache, a read fills it
    _UndefinedCachingMode = 3
} ECachingMode;

// How a number wants to be shown.
typedef enum _ERepresentation {
    Linear = 0,
    Logarithmic = 1,
    Boolean = 2,
    PureNumber = 3,
    HexNumber = 4,
    IPV4Address = 5,
    MACAddress = 6,
    _UndefinedRepresentation = 7
} ERepresentation;

#ifndef NO_UNDEFINEDED_REPRESENTATION
// Old misspelling.
#define _UndefindedRepresentation _UndefinedRepresentation
#endif

// Byte order of a register.
typedef enum _EEndianess { BigEndian = 0, LittleEndian = 1, _UndefinedEndian = 2 } EEndianess;

// Whether a node's name is one of a standard.
typedef enum _ENameSpace { Custom = 0, Standard = 1, _UndefinedNameSpace = 2 } ENameSpace;

// The standard that a description follows.
typedef enum _EStandardNameSpace {
    None = 0,
    GEV = 1,
    IIDC = 2,
    CL = 3,
    USB = 4,
    _UndefinedStandardNameSpace = 5
} EStandardNameSpace;

typedef enum _EYesNo { Yes = 1, No = 0, _UndefinedYesNo = 2 } EYesNo;

// Direction of the formula of a converter.
typedef enum _ESlope {
    Increasing = 0,
    Decreasing = 1,
    Varying = 2,
    Automatic = 3,
    _UndefinedESlope = 4
} ESlope;

// What to check of a description.
typedef enum _EXMLValidation {
    xvLoad = 1,
    xvCycles = 2,
    xvSFNC = 4,
    xvDefault = 0,
    xvAll = 0xffffffff,
    _UndefinedEXMLValidation = 0x8000000
} EXMLValidation;

// Notation of a floating-point number as text.
typedef enum _EDisplayNotation {
    fnAutomatic = 0,
    fnFixed = 1,
    fnScientific = 2,
    _UndefinedEDisplayNotation = 3
} EDisplayNotation;

// The interface that a node is mainly used by.
typedef enum _EInterfaceType {
    intfIValue = 0,
    intfIBase = 1,
    intfIInteger = 2,
    intfIBoolean = 3,
    intfICommand = 4,
    intfIFloat = 5,
    intfIString = 6,
    intfIRegister = 7,
    intfICategory = 8,
    intfIEnumeration = 9,
    intfIEnumEntry = 10,
    intfIPort = 11
} EInterfaceType;

// The neighbours of a node that INode::GetChildren lists.
typedef enum _ELinkType {
    ctParentNodes = 0,
    ctReadingChildren = 1,       // nodes read from
    ctWritingChildren = 2,       // nodes written to
    ctInvalidatingChildren = 3,  // nodes whose change invalidates this one
    ctDependingNodes = 4,        // nodes that a change of this one invalidates, however far
    ctTerminalNodes = 5          // nodes at which the value finally rests
} ELinkType;

// Kind of increment of a number.
typedef enum _EIncMode { noIncrement = 0, fixedIncrement = 1, listIncrement = 2 } EIncMode;

// Whether a formula converts from or to the device.
typedef enum _EInputDirection { idFrom = 0, idTo = 1, idNone = 2 } EInputDirection;

// Version of the schema that a description follows.
typedef enum _EGenApiSchemaVersion { v1_0 = 1, v1_1 = 2, _Undefined = -1 } EGenApiSchemaVersion;

typedef GENICAM_NAMESPACE::gcstring_vector StringList_t;

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_TYPES_H
