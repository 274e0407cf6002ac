// The C interface of the GenICam GenTL standard, version 1.6: types, enumerations, structures and
// functions with the names and numbers of the standard. Producers implement it; consumers resolve
// the functions by name from a producer file through the PGxxx pointer types.
//
// In C++ everything but bool8_t lies in the namespace GenTL; the functions have C linkage. A
// producer defines a function as GC_API GCInitLib(void) { ... }.
#ifndef GENTL_GENTL_V1_6_H
#define GENTL_GENTL_V1_6_H

// NOLINTBEGIN(modernize-*): C, too

#include <stddef.h>
#include <stdint.h>

// How a function is exported and called, and what all of them return.
#define GC_CALLTYPE
#define GC_IMPORT_EXPORT __attribute__((visibility("default")))
#define GC_API GC_IMPORT_EXPORT GC_ERROR GC_CALLTYPE
// Begins the declaration of a type of function pointers: GC_API_P(PGCInitLib)(void);
#define GC_API_P(name) typedef GC_ERROR(GC_CALLTYPE* name)

// Beside the fixed types of <stdint.h>.
typedef uint8_t bool8_t;

#ifdef __cplusplus
#define GENTL_ENUM_BASE : int32_t
namespace GenTL {
using ::bool8_t;
extern "C" {
#else
#define GENTL_ENUM_BASE
#endif

// Every enumeration is 32 bits wide. NAME_LIST (or NAME_IDS) holds the constants; the integer type
// NAME is what the functions take, so that values of later versions and custom ones pass through.

// Results of every function.
enum GC_ERROR_LIST GENTL_ENUM_BASE {
    GC_ERR_SUCCESS = 0,
    GC_ERR_ERROR = -1001,
    GC_ERR_NOT_INITIALIZED = -1002,
    GC_ERR_NOT_IMPLEMENTED = -1003,
    GC_ERR_RESOURCE_IN_USE = -1004,
    GC_ERR_ACCESS_DENIED = -1005,
    GC_ERR_INVALID_HANDLE = -1006,
    GC_ERR_INVALID_ID = -1007,
    GC_ERR_NO_DATA = -1008,
    GC_ERR_INVALID_PARAMETER = -1009,
    GC_ERR_IO = -1010,
    GC_ERR_TIMEOUT = -1011,
    GC_ERR_ABORT = -1012,               // GenTL 1.1
    GC_ERR_INVALID_BUFFER = -1013,      // GenTL 1.1
    GC_ERR_NOT_AVAILABLE = -1014,       // GenTL 1.2
    GC_ERR_INVALID_ADDRESS = -1015,     // GenTL 1.3
    GC_ERR_BUFFER_TOO_SMALL = -1016,    // GenTL 1.4
    GC_ERR_INVALID_INDEX = -1017,       // GenTL 1.4
    GC_ERR_PARSING_CHUNK_DATA = -1018,  // GenTL 1.4
    GC_ERR_INVALID_VALUE = -1019,       // GenTL 1.4
    GC_ERR_RESOURCE_EXHAUSTED = -1020,  // GenTL 1.4
    GC_ERR_OUT_OF_MEMORY = -1021,       // GenTL 1.4
    GC_ERR_BUSY = -1022,                // GenTL 1.5
    GC_ERR_AMBIGUOUS = -1023,           // GenTL 1.6
    GC_ERR_CUSTOM_ID = -10000,
};
typedef int32_t GC_ERROR;

// Type of a value returned by the GetInfo functions.
enum INFO_DATATYPE_LIST GENTL_ENUM_BASE {
    INFO_DATATYPE_UNKNOWN = 0,
    INFO_DATATYPE_STRING = 1,
    INFO_DATATYPE_STRINGLIST = 2,
    INFO_DATATYPE_INT16 = 3,
    INFO_DATATYPE_UINT16 = 4,
    INFO_DATATYPE_INT32 = 5,
    INFO_DATATYPE_UINT32 = 6,
    INFO_DATATYPE_INT64 = 7,
    INFO_DATATYPE_UINT64 = 8,
    INFO_DATATYPE_FLOAT64 = 9,
    INFO_DATATYPE_PTR = 10,
    INFO_DATATYPE_BOOL8 = 11,
    INFO_DATATYPE_SIZET = 12,
    INFO_DATATYPE_BUFFER = 13,
    INFO_DATATYPE_PTRDIFF = 14,  // GenTL 1.3
    INFO_DATATYPE_CUSTOM_ID = 1000,
};
typedef int32_t INFO_DATATYPE;

// Encoding of the strings a producer returns.
enum TL_CHAR_ENCODING_LIST GENTL_ENUM_BASE {
    TL_CHAR_ENCODING_ASCII = 0,
    TL_CHAR_ENCODING_UTF8 = 1,
};
typedef int32_t TL_CHAR_ENCODING;

// Commands of TLGetInfo and GCGetInfo.
enum TL_INFO_CMD_LIST GENTL_ENUM_BASE {
    TL_INFO_ID = 0,
    TL_INFO_VENDOR = 1,
    TL_INFO_MODEL = 2,
    TL_INFO_VERSION = 3,
    TL_INFO_TLTYPE = 4,
    TL_INFO_NAME = 5,
    TL_INFO_PATHNAME = 6,
    TL_INFO_DISPLAYNAME = 7,
    TL_INFO_CHAR_ENCODING = 8,     // GenTL 1.4
    TL_INFO_GENTL_VER_MAJOR = 9,   // GenTL 1.5
    TL_INFO_GENTL_VER_MINOR = 10,  // GenTL 1.5
    TL_INFO_CUSTOM_ID = 1000,
};
typedef int32_t TL_INFO_CMD;

// Commands of IFGetInfo and TLGetInterfaceInfo.
enum INTERFACE_INFO_CMD_LIST GENTL_ENUM_BASE {
    INTERFACE_INFO_ID = 0,
    INTERFACE_INFO_DISPLAYNAME = 1,
    INTERFACE_INFO_TLTYPE = 2,
    INTERFACE_INFO_CUSTOM_ID = 1000,
};
typedef int32_t INTERFACE_INFO_CMD;

// Access asked for in IFOpenDevice.
enum DEVICE_ACCESS_FLAGS_LIST GENTL_ENUM_BASE {
    DEVICE_ACCESS_UNKNOWN = 0,
    DEVICE_ACCESS_NONE = 1,
    DEVICE_ACCESS_READONLY = 2,
    DEVICE_ACCESS_CONTROL = 3,
    DEVICE_ACCESS_EXCLUSIVE = 4,
    DEVICE_ACCESS_CUSTOM_ID = 1000,
};
typedef int32_t DEVICE_ACCESS_FLAGS;

// Access a device grants at the moment.
enum DEVICE_ACCESS_STATUS_LIST GENTL_ENUM_BASE {
    DEVICE_ACCESS_STATUS_UNKNOWN = 0,
    DEVICE_ACCESS_STATUS_READWRITE = 1,
    DEVICE_ACCESS_STATUS_READONLY = 2,
    DEVICE_ACCESS_STATUS_NOACCESS = 3,
    DEVICE_ACCESS_STATUS_BUSY = 4,            // GenTL 1.5
    DEVICE_ACCESS_STATUS_OPEN_READWRITE = 5,  // GenTL 1.5
    DEVICE_ACCESS_STATUS_OPEN_READONLY = 6,   // GenTL 1.5
    DEVICE_ACCESS_STATUS_CUSTOM_ID = 1000,
};
typedef int32_t DEVICE_ACCESS_STATUS;

// Commands of DevGetInfo and IFGetDeviceInfo.
enum DEVICE_INFO_CMD_LIST GENTL_ENUM_BASE {
    DEVICE_INFO_ID = 0,
    DEVICE_INFO_VENDOR = 1,
    DEVICE_INFO_MODEL = 2,
    DEVICE_INFO_TLTYPE = 3,
    DEVICE_INFO_DISPLAYNAME = 4,
    DEVICE_INFO_ACCESS_STATUS = 5,
    DEVICE_INFO_USER_DEFINED_NAME = 6,    // GenTL 1.4
    DEVICE_INFO_SERIAL_NUMBER = 7,        // GenTL 1.4
    DEVICE_INFO_VERSION = 8,              // GenTL 1.4
    DEVICE_INFO_TIMESTAMP_FREQUENCY = 9,  // GenTL 1.4
    DEVICE_INFO_CUSTOM_ID = 1000,
};
typedef int32_t DEVICE_INFO_CMD;

// Flags of DSStopAcquisition.
enum ACQ_STOP_FLAGS_LIST GENTL_ENUM_BASE {
    ACQ_STOP_FLAGS_DEFAULT = 0,
    ACQ_STOP_FLAGS_KILL = 1,
    ACQ_STOP_FLAGS_CUSTOM_ID = 1000,
};
typedef int32_t ACQ_STOP_FLAGS;

// Flags of DSStartAcquisition.
enum ACQ_START_FLAGS_LIST GENTL_ENUM_BASE {
    ACQ_START_FLAGS_DEFAULT = 0,
    ACQ_START_FLAGS_CUSTOM_ID = 1000,
};
typedef int32_t ACQ_START_FLAGS;

// Operations of DSFlushQueue.
enum ACQ_QUEUE_TYPE_LIST GENTL_ENUM_BASE {
    ACQ_QUEUE_INPUT_TO_OUTPUT = 0,
    ACQ_QUEUE_OUTPUT_DISCARD = 1,
    ACQ_QUEUE_ALL_TO_INPUT = 2,
    ACQ_QUEUE_UNQUEUED_TO_INPUT = 3,
    ACQ_QUEUE_ALL_DISCARD = 4,
    ACQ_QUEUE_CUSTOM_ID = 1000,
};
typedef int32_t ACQ_QUEUE_TYPE;

// Commands of DSGetInfo.
enum STREAM_INFO_CMD_LIST GENTL_ENUM_BASE {
    STREAM_INFO_ID = 0,
    STREAM_INFO_NUM_DELIVERED = 1,
    STREAM_INFO_NUM_UNDERRUN = 2,
    STREAM_INFO_NUM_ANNOUNCED = 3,
    STREAM_INFO_NUM_QUEUED = 4,
    STREAM_INFO_NUM_AWAIT_DELIVERY = 5,
    STREAM_INFO_NUM_STARTED = 6,
    STREAM_INFO_PAYLOAD_SIZE = 7,
    STREAM_INFO_IS_GRABBING = 8,
    STREAM_INFO_DEFINES_PAYLOADSIZE = 9,
    STREAM_INFO_TLTYPE = 10,
    STREAM_INFO_NUM_CHUNKS_MAX = 11,             // GenTL 1.3
    STREAM_INFO_BUF_ANNOUNCE_MIN = 12,           // GenTL 1.3
    STREAM_INFO_BUF_ALIGNMENT = 13,              // GenTL 1.3
    STREAM_INFO_FLOW_TABLE = 14,                 // GenTL 1.6
    STREAM_INFO_GENDC_PREFETCH_DESCRIPTOR = 15,  // GenTL 1.6
    STREAM_INFO_CUSTOM_ID = 1000,
};
typedef int32_t STREAM_INFO_CMD;

// Commands of DSGetBufferInfo.
enum BUFFER_INFO_CMD_LIST GENTL_ENUM_BASE {
    BUFFER_INFO_BASE = 0,
    BUFFER_INFO_SIZE = 1,
    BUFFER_INFO_USER_PTR = 2,
    BUFFER_INFO_TIMESTAMP = 3,
    BUFFER_INFO_NEW_DATA = 4,
    BUFFER_INFO_IS_QUEUED = 5,
    BUFFER_INFO_IS_ACQUIRING = 6,
    BUFFER_INFO_IS_INCOMPLETE = 7,
    BUFFER_INFO_TLTYPE = 8,
    BUFFER_INFO_SIZE_FILLED = 9,
    BUFFER_INFO_WIDTH = 10,                       // GenTL 1.2
    BUFFER_INFO_HEIGHT = 11,                      // GenTL 1.2
    BUFFER_INFO_XOFFSET = 12,                     // GenTL 1.2
    BUFFER_INFO_YOFFSET = 13,                     // GenTL 1.2
    BUFFER_INFO_XPADDING = 14,                    // GenTL 1.2
    BUFFER_INFO_YPADDING = 15,                    // GenTL 1.2
    BUFFER_INFO_FRAMEID = 16,                     // GenTL 1.2
    BUFFER_INFO_IMAGEPRESENT = 17,                // GenTL 1.2
    BUFFER_INFO_IMAGEOFFSET = 18,                 // GenTL 1.2
    BUFFER_INFO_PAYLOADTYPE = 19,                 // GenTL 1.2
    BUFFER_INFO_PIXELFORMAT = 20,                 // GenTL 1.2
    BUFFER_INFO_PIXELFORMAT_NAMESPACE = 21,       // GenTL 1.2
    BUFFER_INFO_DELIVERED_IMAGEHEIGHT = 22,       // GenTL 1.2
    BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE = 23,  // GenTL 1.2
    BUFFER_INFO_CHUNKLAYOUTID = 24,               // GenTL 1.2
    BUFFER_INFO_FILENAME = 25,                    // GenTL 1.2
    BUFFER_INFO_PIXEL_ENDIANNESS = 26,            // GenTL 1.4
    BUFFER_INFO_DATA_SIZE = 27,                   // GenTL 1.4
    BUFFER_INFO_TIMESTAMP_NS = 28,                // GenTL 1.4
    BUFFER_INFO_DATA_LARGER_THAN_BUFFER = 29,     // GenTL 1.4
    BUFFER_INFO_CONTAINS_CHUNKDATA = 30,          // GenTL 1.4
    BUFFER_INFO_IS_COMPOSITE = 31,                // GenTL 1.6
    BUFFER_INFO_CUSTOM_ID = 1000,
};
typedef int32_t BUFFER_INFO_CMD;

// Commands of DSGetBufferPartInfo.
enum BUFFER_PART_INFO_CMD_LIST GENTL_ENUM_BASE {
    BUFFER_PART_INFO_BASE = 0,
    BUFFER_PART_INFO_DATA_SIZE = 1,
    BUFFER_PART_INFO_DATA_TYPE = 2,
    BUFFER_PART_INFO_DATA_FORMAT = 3,
    BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE = 4,
    BUFFER_PART_INFO_WIDTH = 5,
    BUFFER_PART_INFO_HEIGHT = 6,
    BUFFER_PART_INFO_XOFFSET = 7,
    BUFFER_PART_INFO_YOFFSET = 8,
    BUFFER_PART_INFO_XPADDING = 9,
    BUFFER_PART_INFO_SOURCE_ID = 10,
    BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT = 11,
    BUFFER_PART_INFO_REGION_ID = 12,        // GenTL 1.6
    BUFFER_PART_INFO_DATA_PURPOSE_ID = 13,  // GenTL 1.6
    BUFFER_PART_INFO_CUSTOM_ID = 1000,
};
typedef int32_t BUFFER_PART_INFO_CMD;

// Values of BUFFER_INFO_PAYLOADTYPE.
enum PAYLOADTYPE_INFO_IDS GENTL_ENUM_BASE {
    PAYLOAD_TYPE_UNKNOWN = 0,          // GenTL 1.2
    PAYLOAD_TYPE_IMAGE = 1,            // GenTL 1.2
    PAYLOAD_TYPE_RAW_DATA = 2,         // GenTL 1.2
    PAYLOAD_TYPE_FILE = 3,             // GenTL 1.2
    PAYLOAD_TYPE_CHUNK_DATA = 4,       // GenTL 1.2
    PAYLOAD_TYPE_JPEG = 5,             // GenTL 1.4
    PAYLOAD_TYPE_JPEG2000 = 6,         // GenTL 1.4
    PAYLOAD_TYPE_H264 = 7,             // GenTL 1.4
    PAYLOAD_TYPE_CHUNK_ONLY = 8,       // GenTL 1.4
    PAYLOAD_TYPE_DEVICE_SPECIFIC = 9,  // GenTL 1.4
    PAYLOAD_TYPE_MULTI_PART = 10,      // GenTL 1.5
    PAYLOAD_TYPE_GENDC = 11,           // GenTL 1.6
    PAYLOAD_TYPE_CUSTOM_ID = 1000,
};
typedef int32_t PAYLOADTYPE_INFO_ID;

// Values of BUFFER_INFO_PIXELFORMAT_NAMESPACE.
enum PIXELFORMAT_NAMESPACE_IDS GENTL_ENUM_BASE {
    PIXELFORMAT_NAMESPACE_UNKNOWN = 0,     // GenTL 1.2
    PIXELFORMAT_NAMESPACE_GEV = 1,         // GenTL 1.2
    PIXELFORMAT_NAMESPACE_IIDC = 2,        // GenTL 1.2
    PIXELFORMAT_NAMESPACE_PFNC_16BIT = 3,  // GenTL 1.4
    PIXELFORMAT_NAMESPACE_PFNC_32BIT = 4,  // GenTL 1.4
    PIXELFORMAT_NAMESPACE_CUSTOM_ID = 1000,
};
typedef int32_t PIXELFORMAT_NAMESPACE_ID;

// Values of BUFFER_INFO_PIXEL_ENDIANNESS.
enum PIXELENDIANNESS_IDS GENTL_ENUM_BASE {
    PIXELENDIANNESS_UNKNOWN = 0,  // GenTL 1.4
    PIXELENDIANNESS_LITTLE = 1,   // GenTL 1.4
    PIXELENDIANNESS_BIG = 2,      // GenTL 1.4
};
typedef int32_t PIXELENDIANNESS_ID;

// Values of BUFFER_PART_INFO_DATA_TYPE.
enum PARTDATATYPE_IDS GENTL_ENUM_BASE {
    PART_DATATYPE_UNKNOWN = 0,
    PART_DATATYPE_2D_IMAGE = 1,
    PART_DATATYPE_2D_PLANE_BIPLANAR = 2,
    PART_DATATYPE_2D_PLANE_TRIPLANAR = 3,
    PART_DATATYPE_2D_PLANE_QUADPLANAR = 4,
    PART_DATATYPE_3D_IMAGE = 5,
    PART_DATATYPE_3D_PLANE_BIPLANAR = 6,
    PART_DATATYPE_3D_PLANE_TRIPLANAR = 7,
    PART_DATATYPE_3D_PLANE_QUADPLANAR = 8,
    PART_DATATYPE_CONFIDENCE_MAP = 9,
    PART_DATATYPE_JPEG = 10,      // GenTL 1.6
    PART_DATATYPE_JPEG2000 = 11,  // GenTL 1.6
    PART_DATATYPE_CUSTOM_ID = 1000,
};
typedef int32_t PARTDATATYPE_ID;

// Commands of GCGetPortInfo.
enum PORT_INFO_CMD_LIST GENTL_ENUM_BASE {
    PORT_INFO_ID = 0,
    PORT_INFO_VENDOR = 1,
    PORT_INFO_MODEL = 2,
    PORT_INFO_TLTYPE = 3,
    PORT_INFO_MODULE = 4,
    PORT_INFO_LITTLE_ENDIAN = 5,
    PORT_INFO_BIG_ENDIAN = 6,
    PORT_INFO_ACCESS_READ = 7,
    PORT_INFO_ACCESS_WRITE = 8,
    PORT_INFO_ACCESS_NA = 9,
    PORT_INFO_ACCESS_NI = 10,
    PORT_INFO_VERSION = 11,
    PORT_INFO_PORTNAME = 12,
    PORT_INFO_CUSTOM_ID = 1000,
};
typedef int32_t PORT_INFO_CMD;

// Values of URL_INFO_SCHEME.
enum URL_SCHEME_IDS GENTL_ENUM_BASE {
    URL_SCHEME_LOCAL = 0,
    URL_SCHEME_HTTP = 1,
    URL_SCHEME_FILE = 2,
    URL_SCHEME_CUSTOM_ID = 1000,
};
typedef int32_t URL_SCHEME_ID;

// Commands of GCGetPortURLInfo.
enum URL_INFO_CMD_LIST GENTL_ENUM_BASE {
    URL_INFO_URL = 0,                    // GenTL 1.1
    URL_INFO_SCHEMA_VER_MAJOR = 1,       // GenTL 1.1
    URL_INFO_SCHEMA_VER_MINOR = 2,       // GenTL 1.1
    URL_INFO_FILE_VER_MAJOR = 3,         // GenTL 1.1
    URL_INFO_FILE_VER_MINOR = 4,         // GenTL 1.1
    URL_INFO_FILE_VER_SUBMINOR = 5,      // GenTL 1.1
    URL_INFO_FILE_SHA1_HASH = 6,         // GenTL 1.4
    URL_INFO_FILE_REGISTER_ADDRESS = 7,  // GenTL 1.5
    URL_INFO_FILE_SIZE = 8,              // GenTL 1.5
    URL_INFO_SCHEME = 9,                 // GenTL 1.5
    URL_INFO_FILENAME = 10,              // GenTL 1.5
    URL_INFO_CUSTOM_ID = 1000,
};
typedef int32_t URL_INFO_CMD;

// Events of GCRegisterEvent.
enum EVENT_TYPE_LIST GENTL_ENUM_BASE {
    EVENT_ERROR = 0,
    EVENT_NEW_BUFFER = 1,
    EVENT_FEATURE_INVALIDATE = 2,
    EVENT_FEATURE_CHANGE = 3,
    EVENT_REMOTE_DEVICE = 4,
    EVENT_MODULE = 5,  // GenTL 1.4
    EVENT_CUSTOM_ID = 1000,
};
typedef int32_t EVENT_TYPE;

// Commands of EventGetInfo.
enum EVENT_INFO_CMD_LIST GENTL_ENUM_BASE {
    EVENT_EVENT_TYPE = 0,
    EVENT_NUM_IN_QUEUE = 1,
    EVENT_NUM_FIRED = 2,
    EVENT_SIZE_MAX = 3,            // GenTL 1.2
    EVENT_INFO_DATA_SIZE_MAX = 4,  // GenTL 1.2
    EVENT_INFO_CUSTOM_ID = 1000,
};
typedef int32_t EVENT_INFO_CMD;

// Commands of EventGetDataInfo.
enum EVENT_DATA_INFO_CMD_LIST GENTL_ENUM_BASE {
    EVENT_DATA_ID = 0,
    EVENT_DATA_VALUE = 1,
    EVENT_DATA_NUMID = 2,  // GenTL 1.3
    EVENT_DATA_CUSTOM_ID = 1000,
};
typedef int32_t EVENT_DATA_INFO_CMD;

// Commands of DSGetFlowInfo.
enum FLOW_INFO_CMD_LIST GENTL_ENUM_BASE {
    FLOW_INFO_SIZE = 0,
    FLOW_INFO_CUSTOM_ID = 1000,
};
typedef int32_t FLOW_INFO_CMD;

// Commands of DSGetBufferSegmentInfo.
enum SEGMENT_INFO_CMD_LIST GENTL_ENUM_BASE {
    SEGMENT_INFO_BASE = 0,
    SEGMENT_INFO_SIZE = 1,
    SEGMENT_INFO_IS_INCOMPLETE = 2,
    SEGMENT_INFO_SIZE_FILLED = 3,
    SEGMENT_INFO_DATA_SIZE = 4,
    SEGMENT_INFO_CUSTOM_ID = 1000,
};
typedef int32_t SEGMENT_INFO_CMD;

typedef void* TL_HANDLE;
typedef void* IF_HANDLE;
typedef void* DEV_HANDLE;
typedef void* DS_HANDLE;
typedef void* PORT_HANDLE;
typedef void* BUFFER_HANDLE;
typedef void* EVENTSRC_HANDLE;
typedef void* EVENT_HANDLE;

#define GenTLMajorVersion 1
#define GenTLMinorVersion 6
#define GenTLSubMinorVersion 0
#define TLTypeMixedName "Mixed"
#define TLTypeCustomName "Custom"
#define TLTypeGEVName "GEV"
#define TLTypeCLName "CL"
#define TLTypeIIDCName "IIDC"
#define TLTypeUVCName "UVC"
#define TLTypeCXPName "CXP"
#define TLTypeCLHSName "CLHS"
#define TLTypeU3VName "U3V"
#define TLTypeETHERNETName "Ethernet"
#define TLTypePCIName "PCI"
#define GENTL_INVALID_HANDLE NULL
#define GENTL_INFINITE 0xFFFFFFFFFFFFFFFFULL

// The structures are packed to one byte.
#pragma pack(push, 1)

typedef struct S_EVENT_NEW_BUFFER {
    BUFFER_HANDLE BufferHandle;
    void* pUserPointer;
} EVENT_NEW_BUFFER_DATA;

typedef struct S_PORT_REGISTER_STACK_ENTRY {
    uint64_t Address;
    void* pBuffer;
    size_t Size;
} PORT_REGISTER_STACK_ENTRY;

typedef struct S_SINGLE_CHUNK_DATA {
    uint64_t ChunkID;
    ptrdiff_t ChunkOffset;
    size_t ChunkLength;
} SINGLE_CHUNK_DATA;

typedef struct S_DS_BUFFER_INFO_STACKED {
    BUFFER_INFO_CMD iInfoCmd;
    INFO_DATATYPE iType;
    void* pBuffer;
    size_t iSize;
    GC_ERROR iResult;
} DS_BUFFER_INFO_STACKED;

typedef struct S_DS_BUFFER_PART_INFO_STACKED {
    uint32_t iPartIndex;
    BUFFER_PART_INFO_CMD iInfoCmd;
    GC_ERROR iResult;
    INFO_DATATYPE iType;
    void* pBuffer;
    size_t iSize;
} DS_BUFFER_PART_INFO_STACKED;

#pragma pack(pop)

// GENTL_FUNCTIONS(X) expands X(name, (parameters)) for each function of the standard, in the order
// of the standard's document: the one list behind the declarations and pointer types below, and
// behind every table of functions that a consumer or a test resolves.

// clang-format off
// Functions up to version 1.4.
#define GENTL_FUNCTIONS_1_4(X) \
    X(GCGetInfo, (TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* \
        piSize)) \
    X(GCGetLastError, (GC_ERROR* piErrorCode, char* sErrText, size_t* piSize)) \
    X(GCInitLib, (void)) \
    X(GCCloseLib, (void)) \
    X(GCReadPort, (PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer, size_t* piSize)) \
    X(GCWritePort, (PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer, size_t* \
        piSize)) \
    X(GCGetPortURL, (PORT_HANDLE hPort, char* sURL, size_t* piSize)) \
    X(GCGetPortInfo, (PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, \
        void* pBuffer, size_t* piSize)) \
    X(GCRegisterEvent, (EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID, EVENT_HANDLE* \
        phEvent)) \
    X(GCUnregisterEvent, (EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID)) \
    X(EventGetData, (EVENT_HANDLE hEvent, void* pBuffer, size_t* piSize, uint64_t iTimeout)) \
    X(EventGetDataInfo, (EVENT_HANDLE hEvent, const void* pInBuffer, size_t iInSize, \
        EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pOutBuffer, size_t* \
        piOutSize)) \
    X(EventGetInfo, (EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, \
        void* pBuffer, size_t* piSize)) \
    X(EventFlush, (EVENT_HANDLE hEvent)) \
    X(EventKill, (EVENT_HANDLE hEvent)) \
    X(TLOpen, (TL_HANDLE* phTL)) \
    X(TLClose, (TL_HANDLE hTL)) \
    X(TLGetInfo, (TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, \
        size_t* piSize)) \
    X(TLGetNumInterfaces, (TL_HANDLE hTL, uint32_t* piNumIfaces)) \
    X(TLGetInterfaceID, (TL_HANDLE hTL, uint32_t iIndex, char* sID, size_t* piSize)) \
    X(TLGetInterfaceInfo, (TL_HANDLE hTL, const char* sIfaceID, INTERFACE_INFO_CMD iInfoCmd, \
        INFO_DATATYPE* piType, void* pBuffer, size_t* piSize)) \
    X(TLOpenInterface, (TL_HANDLE hTL, const char* sIfaceID, IF_HANDLE* phIface)) \
    X(TLUpdateInterfaceList, (TL_HANDLE hTL, bool8_t* pbChanged, uint64_t iTimeout)) \
    X(IFClose, (IF_HANDLE hIface)) \
    X(IFGetInfo, (IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, \
        void* pBuffer, size_t* piSize)) \
    X(IFGetNumDevices, (IF_HANDLE hIface, uint32_t* piNumDevices)) \
    X(IFGetDeviceID, (IF_HANDLE hIface, uint32_t iIndex, char* sIDeviceID, size_t* piSize)) \
    X(IFUpdateDeviceList, (IF_HANDLE hIface, bool8_t* pbChanged, uint64_t iTimeout)) \
    X(IFGetDeviceInfo, (IF_HANDLE hIface, const char* sDeviceID, DEVICE_INFO_CMD iInfoCmd, \
        INFO_DATATYPE* piType, void* pBuffer, size_t* piSize)) \
    X(IFOpenDevice, (IF_HANDLE hIface, const char* sDeviceID, DEVICE_ACCESS_FLAGS iOpenFlag, \
        DEV_HANDLE* phDevice)) \
    X(DevGetPort, (DEV_HANDLE hDevice, PORT_HANDLE* phRemoteDevice)) \
    X(DevGetNumDataStreams, (DEV_HANDLE hDevice, uint32_t* piNumDataStreams)) \
    X(DevGetDataStreamID, (DEV_HANDLE hDevice, uint32_t iIndex, char* sDataStreamID, size_t* \
        piSize)) \
    X(DevOpenDataStream, (DEV_HANDLE hDevice, const char* sDataStreamID, DS_HANDLE* \
        phDataStream)) \
    X(DevGetInfo, (DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, \
        void* pBuffer, size_t* piSize)) \
    X(DevClose, (DEV_HANDLE hDevice)) \
    X(DSAnnounceBuffer, (DS_HANDLE hDataStream, void* pBuffer, size_t iSize, void* pPrivate, \
        BUFFER_HANDLE* phBuffer)) \
    X(DSAllocAndAnnounceBuffer, (DS_HANDLE hDataStream, size_t iSize, void* pPrivate, \
        BUFFER_HANDLE* phBuffer)) \
    X(DSFlushQueue, (DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation)) \
    X(DSStartAcquisition, (DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags, uint64_t \
        iNumToAcquire)) \
    X(DSStopAcquisition, (DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags)) \
    X(DSGetInfo, (DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, \
        void* pBuffer, size_t* piSize)) \
    X(DSGetBufferID, (DS_HANDLE hDataStream, uint32_t iIndex, BUFFER_HANDLE* phBuffer)) \
    X(DSClose, (DS_HANDLE hDataStream)) \
    X(DSRevokeBuffer, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void** pBuffer, void** \
        pPrivate)) \
    X(DSQueueBuffer, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer)) \
    X(DSGetBufferInfo, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD \
        iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* piSize)) \
    X(GCGetNumPortURLs, (PORT_HANDLE hPort, uint32_t* piNumURLs)) \
    X(GCGetPortURLInfo, (PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, \
        INFO_DATATYPE* piType, void* pBuffer, size_t* piSize)) \
    X(GCReadPortStacked, (PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries, size_t* \
        piNumEntries)) \
    X(GCWritePortStacked, (PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries, size_t* \
        piNumEntries)) \
    X(DSGetBufferChunkData, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, \
        SINGLE_CHUNK_DATA* pChunkData, size_t* piNumChunks)) \
    X(IFGetParentTL, (IF_HANDLE hIface, TL_HANDLE* phSystem)) \
    X(DevGetParentIF, (DEV_HANDLE hDevice, IF_HANDLE* phIface)) \
    X(DSGetParentDev, (DS_HANDLE hDataStream, DEV_HANDLE* phDevice))

// Functions that versions 1.5 and 1.6 added.
#define GENTL_FUNCTIONS_1_6(X) \
    X(DSGetNumBufferParts, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t* \
        piNumParts)) \
    X(DSGetBufferPartInfo, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t \
        iPartIndex, BUFFER_PART_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, \
        size_t* piSize)) \
    X(DSAnnounceCompositeBuffer, (DS_HANDLE hDataStream, size_t iNumSegments, void** \
        ppSegments, size_t* piSizes, void* pPrivate, BUFFER_HANDLE* phBuffer)) \
    X(DSGetBufferInfoStacked, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, \
        DS_BUFFER_INFO_STACKED* pInfoStacked, size_t iNumInfos)) \
    X(DSGetBufferPartInfoStacked, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, \
        DS_BUFFER_PART_INFO_STACKED* pInfoStacked, size_t iNumInfos)) \
    X(DSGetNumFlows, (DS_HANDLE hDataStream, uint32_t* piNumFlows)) \
    X(DSGetFlowInfo, (DS_HANDLE hDataStream, uint32_t iFlowIndex, FLOW_INFO_CMD iInfoCmd, \
        INFO_DATATYPE* piType, void* pBuffer, size_t* piSize)) \
    X(DSGetNumBufferSegments, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t* \
        piNumSegments)) \
    X(DSGetBufferSegmentInfo, (DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t \
        iSegmentIndex, SEGMENT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, \
        size_t* piSize))
// clang-format on

#define GENTL_FUNCTIONS(X) \
    GENTL_FUNCTIONS_1_4(X) \
    GENTL_FUNCTIONS_1_6(X)

// Declares each function, and the type PNAME of a pointer to it.
#define GENTL_DECLARE(name, parameters) \
    GC_API name parameters;             \
    GC_API_P(P##name) parameters;

GENTL_FUNCTIONS(GENTL_DECLARE)

#undef GENTL_DECLARE

#ifdef __cplusplus
}  // extern "C"
}  // namespace GenTL
#endif

#undef GENTL_ENUM_BASE

// NOLINTEND(modernize-*)

#endif  // GENTL_GENTL_V1_6_H
