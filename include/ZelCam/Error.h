// Result codes of every operation of the library.
#ifndef ZELCAM_ERROR_H
#define ZELCAM_ERROR_H

#include <cstdint>

// 0 is success, every failure is negative. Two families of values reach a caller: the library's own
// codes, and the GC_ERROR codes of the GenTL standard. GenTL codes pass through unchanged, so a
// value may also be a producer's custom code that has no name here.
//
// An operation returns a ZelCamErr, or takes a trailing `ZelCamErr* err`. Such an `err` may be
// null; the operation then works the same and reports nothing. Unless its comment says otherwise,
// an operation stores 0 in `*err` first, so that 0 means success afterwards.
enum ZelCamErr : int32_t {
    ZelCamErr_Success = 0,

    // General.
    ZelCamErr_Error = -40001,             // unspecified failure
    ZelCamErr_FileOpenFailed = -40002,    // a file or input stream cannot be opened or used
    ZelCamErr_InvalidFile = -40003,       // a file cannot be read or has unexpected contents
    ZelCamErr_LoadConfigFailed = -40004,  // a configuration was read but could not be applied
    ZelCamErr_IndexOutOfRange =
        -40005,                   // an index is not below the count; also: no such event sink
    ZelCamErr_NotFound = -40006,  // no object has the identifier
    ZelCamErr_InvalidArgument =
        -40007,  // an argument is not valid, or a value of a parameter object
    ZelCamErr_AcquisitionActive = -40051,  // refused while the stream is grabbing

    // Parameters.
    ZelCamErr_GenApiError = -40200,     // any other failure of the GenApi node map
    ZelCamErr_NoNodeMap = -40201,       // the module has no node map
    ZelCamErr_AccessDenied = -40202,    // the feature is not readable or not writable at the moment
    ZelCamErr_WrongParamType = -40203,  // the feature is of another kind than the call needs
    ZelCamErr_OutOfRange = -40204,      // the value violates minimum, maximum or increment
    ZelCamErr_ParamNotFound = -40205,   // the node map has no feature of that name
    ZelCamErr_InvalidValue = -40206,    // not a valid value, in access by name
    ZelCamErr_RuntimeError = -40207,    // the node map could not be created

    // GenTL 1.6, GC_ERROR_LIST. The producer decides what each means in detail.
    ZelCamErr_GenTL_Error = -1001,
    ZelCamErr_GenTL_NotInitialized = -1002,
    ZelCamErr_GenTL_NotImplemented = -1003,
    ZelCamErr_GenTL_ResourceInUse = -1004,
    ZelCamErr_GenTL_AccessDenied = -1005,
    ZelCamErr_GenTL_InvalidHandle = -1006,
    ZelCamErr_GenTL_InvalidId = -1007,
    ZelCamErr_GenTL_NoData = -1008,
    ZelCamErr_GenTL_InvalidParameter = -1009,
    ZelCamErr_GenTL_Io = -1010,
    ZelCamErr_GenTL_Timeout = -1011,
    ZelCamErr_GenTL_Abort = -1012,
    ZelCamErr_GenTL_InvalidBuffer = -1013,
    ZelCamErr_GenTL_NotAvailable = -1014,  // also: the producer lacks the function that is needed
    ZelCamErr_GenTL_InvalidAddress = -1015,
    ZelCamErr_GenTL_BufferTooSmall = -1016,
    ZelCamErr_GenTL_Busy = -1022
};

#endif  // ZELCAM_ERROR_H
