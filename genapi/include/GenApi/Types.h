// The enumerations of the node-map interface.
#ifndef GENAPI_TYPES_H
#define GENAPI_TYPES_H

#include <Base/GCStringVector.h>
#include <Base/GCTypes.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {

// Signedness of a register.
using ESign = enum _ESign { Signed = 0, Unsigned = 1, _UndefinedSign = 2 };

// What a node allows: not implemented, not available, write only, read only, read and write.
using EAccessMode = enum _EAccessMode {
    NI = 0,
    NA = 1,
    WO = 2,
    RO = 3,
    RW = 4,
    _UndefinedAccesMode = 5,
    _CycleDetectAccesMode = 6  // internal, while the mode is being computed
};

// The users that a feature is meant for.
using EVisibility = enum _EVisibility {
    Beginner = 0,
    Expert = 1,
    Guru = 2,
    Invisible = 3,
    _UndefinedVisibility = 99
};

// How the value of a register is cached.
using ECachingMode = enum _ECachingMode {
    NoCache = 0,
    WriteThrough = 1,  // a write fills the cache
    WriteAround = 2,   // a write empties the cache, a read fills it
    _UndefinedCachingMode = 3
};

// How to display a number.
using ERepresentation = enum _ERepresentation {
    Linear = 0,
    Logarithmic = 1,
    Boolean = 2,
    PureNumber = 3,
    HexNumber = 4,
    IPV4Address = 5,
    MACAddress = 6,
    _UndefinedRepresentation = 7
};

#ifndef NO_UNDEFINEDED_REPRESENTATION
// An old misspelling.
#define _UndefindedRepresentation _UndefinedRepresentation
#endif

// Byte order of a register.
using EEndianess = enum _EEndianess { BigEndian = 0, LittleEndian = 1, _UndefinedEndian = 2 };

// Whether a standard defines a node's name.
using ENameSpace = enum _ENameSpace { Custom = 0, Standard = 1, _UndefinedNameSpace = 2 };

// The standard that a description follows.
using EStandardNameSpace = enum _EStandardNameSpace {
    None = 0,
    GEV = 1,
    IIDC = 2,
    CL = 3,
    USB = 4,
    _UndefinedStandardNameSpace = 5
};

using EYesNo = enum _EYesNo { Yes = 1, No = 0, _UndefinedYesNo = 2 };

// Direction of the formula of a converter.
using ESlope = enum _ESlope {
    Increasing = 0,
    Decreasing = 1,
    Varying = 2,
    Automatic = 3,
    _UndefinedESlope = 4
};

// What to check of a description.
using EXMLValidation = enum _EXMLValidation {
    xvLoad = 1,
    xvCycles = 2,
    xvSFNC = 4,
    xvDefault = 0,
    xvAll = 0xffffffff,
    _UndefinedEXMLValidation = 0x8000000
};

// Notation of a floating-point number as text.
using EDisplayNotation = enum _EDisplayNotation {
    fnAutomatic = 0,
    fnFixed = 1,
    fnScientific = 2,
    _UndefinedEDisplayNotation = 3
};

// The principal interface of a node.
using EInterfaceType = enum _EInterfaceType {
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
};

// The neighbours of a node that INode::GetChildren lists.
using ELinkType = enum _ELinkType {
    ctParentNodes = 0,
    ctReadingChildren = 1,       // nodes read from
    ctWritingChildren = 2,       // nodes written to
    ctInvalidatingChildren = 3,  // nodes whose change invalidates this one
    ctDependingNodes = 4,        // nodes that a change of this one invalidates, at any distance
    ctTerminalNodes = 5          // nodes that finally hold the value
};

// Kind of increment of a number.
using EIncMode = enum _EIncMode { noIncrement = 0, fixedIncrement = 1, listIncrement = 2 };

// Whether a formula converts from or to the device.
using EInputDirection = enum _EInputDirection { idFrom = 0, idTo = 1, idNone = 2 };

// Version of the schema that a description follows.
using EGenApiSchemaVersion = enum _EGenApiSchemaVersion { v1_0 = 1, v1_1 = 2, _Undefined = -1 };

using StringList_t = GENICAM_NAMESPACE::gcstring_vector;

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_TYPES_H
