// Codes and numbers of the library as words for people.
#ifndef ZELCAM_TEXT_H
#define ZELCAM_TEXT_H

#include "ZelCam/Error.h"
#include "ZelCam/Interface.h"

namespace ZelCam {

// What a result code means, in a few English words without the number: "access denied" for -1005.
// Never null; the text is constant. Thread-safe.
inline const char* ErrorText(ZelCamErr code) {
    switch (static_cast<int32_t>(code)) {
        case ZelCamErr_Success:
            return "success";
        case ZelCamErr_Error:
            return "unspecified failure";
        case ZelCamErr_FileOpenFailed:
            return "the file cannot be opened";
        case ZelCamErr_InvalidFile:
            return "the file has the wrong form";
        case ZelCamErr_LoadConfigFailed:
            return "not every feature took its value";
        case ZelCamErr_IndexOutOfRange:
            return "the index is too large";
        case ZelCamErr_NotFound:
            return "there is no such object";
        case ZelCamErr_InvalidArgument:
            return "an argument is not valid";
        case ZelCamErr_AcquisitionActive:
            return "not allowed while frames are being grabbed";
        case ZelCamErr_GenApiError:
            return "access to the feature failed";
        case ZelCamErr_NoNodeMap:
            return "it has no features";
        case ZelCamErr_AccessDenied:
            return "not readable or not writable at the moment";
        case ZelCamErr_WrongParamType:
            return "the feature is of another kind";
        case ZelCamErr_OutOfRange:
            return "the value is out of range";
        case ZelCamErr_ParamNotFound:
            return "there is no such feature";
        case ZelCamErr_InvalidValue:
            return "the feature cannot have this value";
        case ZelCamErr_RuntimeError:
            return "the description of the features cannot be used";
        case ZelCamErr_GenTL_Error:
            return "the producer reports an unspecified error";
        case ZelCamErr_GenTL_NotInitialized:
            return "the producer was not initialised";
        case ZelCamErr_GenTL_NotImplemented:
            return "the producer cannot do this";
        case ZelCamErr_GenTL_ResourceInUse:
            return "another program uses it";
        case ZelCamErr_GenTL_AccessDenied:
            return "access denied";
        case ZelCamErr_GenTL_InvalidHandle:
            return "the producer does not know the handle";
        case ZelCamErr_GenTL_InvalidId:
            return "the producer does not know the identifier";
        case ZelCamErr_GenTL_NoData:
            return "no data";
        case ZelCamErr_GenTL_InvalidParameter:
            return "the producer rejects a value as invalid";
        case ZelCamErr_GenTL_Io:
            return "communication failed";
        case ZelCamErr_GenTL_Timeout:
            return "no answer in time";
        case ZelCamErr_GenTL_Abort:
            return "the operation was ended early";
        case ZelCamErr_GenTL_InvalidBuffer:
            return "too few buffers, or an invalid one";
        case ZelCamErr_GenTL_NotAvailable:
            return "not available, or the producer lacks a function";
        case ZelCamErr_GenTL_InvalidAddress:
            return "there is nothing at that address";
        case ZelCamErr_GenTL_BufferTooSmall:
            return "a buffer is too small";
        case -1017:  // GC_ERR_INVALID_INDEX
            return "there is no such index";
        case -1018:  // GC_ERR_PARSING_CHUNK_DATA
            return "the chunk data have the wrong form";
        case -1019:  // GC_ERR_INVALID_VALUE
            return "the value is rejected";
        case -1020:  // GC_ERR_RESOURCE_EXHAUSTED
            return "a resource is exhausted";
        case -1021:  // GC_ERR_OUT_OF_MEMORY
            return "out of memory";
        case ZelCamErr_GenTL_Busy:
            return "busy";
        case -1023:  // GC_ERR_AMBIGUOUS
            return "the name is ambiguous";
        default:
            // GenTL leaves this range to producers.
            return code <= -10000 && code > -40000 ? "an error specific to this producer"
                                                   : "an unknown error";
    }
}

// The name of a type of events: "RemoteDevice" for EventType_RemoteDevice, "Custom" for those that
// belong to the producer, "Unknown" for any other number. Never null; the text is constant.
// Thread-safe.
inline const char* EventTypeName(uint32_t eventType) {
    constexpr uint32_t kFirstOfProducer = 1000;  // GenTL, EVENT_CUSTOM_ID
    switch (eventType) {
        case EventType_Error:
            return "Error";
        case EventType_NewBuffer:
            return "NewBuffer";
        case EventType_FeatureInvalidate:
            return "FeatureInvalidate";
        case EventType_FeatureChange:
            return "FeatureChange";
        case EventType_RemoteDevice:
            return "RemoteDevice";
        case EventType_Module:
            return "Module";
        default:
            return eventType >= kFirstOfProducer ? "Custom" : "Unknown";
    }
}

}  // namespace ZelCam

#endif  // ZELCAM_TEXT_H
