// The features of a module.
#ifndef ZELGENPARAM_ARRAY_H
#define ZELGENPARAM_ARRAY_H

#include <cstdint>

#include "ZelCam/Error.h"
#include "ZelGenParam/GenApi.h"
#include "ZelGenParam/Param.h"

#pragma GCC visibility push(default)
namespace ZelGenParam {

// All features of one module (an interface, a camera, the transport layer's side of it, a stream),
// as its GenApi description lists them. It belongs to the object it was obtained from and is valid
// as long as that.
//
// Lookups fail with ZelCamErr_ParamNotFound for an unknown name and ZelCamErr_WrongParamType for a
// feature of another kind. Access by name, Set...Value, Get...Value, ExecuteCommand and
// IsCommandDone, fails with these and with
//   ZelCamErr_AccessDenied  not readable or not writable at the moment
//   ZelCamErr_OutOfRange    the value violates minimum, maximum or increment
//   ZelCamErr_InvalidValue  the value is not one the feature can have
//   ZelCamErr_GenApiError   anything else, a failed access to the camera for instance
// and reads zero, null or false on failure. `err` may be null; it is 0 on success.
//
// Thread-safe, like its Params: one access to the features at a time, others wait. What belongs
// together, a selector and what it selects, the application has to keep together.
class Array {
  public:
    // The feature of that name: the same object on every call. Null when there is none, and for the
    // typed forms when it is of another kind.
    virtual Param* GetParam(const char* name, ZelCamErr* err) = 0;
    virtual Boolean* GetBoolean(const char* name, ZelCamErr* err) = 0;
    virtual Command* GetCommand(const char* name, ZelCamErr* err) = 0;
    virtual Enum* GetEnum(const char* name, ZelCamErr* err) = 0;
    virtual Float* GetFloat(const char* name, ZelCamErr* err) = 0;
    virtual Int* GetInt(const char* name, ZelCamErr* err) = 0;
    virtual String* GetString(const char* name, ZelCamErr* err) = 0;

    // The root of the tree of categories.
    virtual Category* GetRootCategory(ZelCamErr* err) = 0;

    // The GenApi node map itself, for what this interface does not offer; it stays the Array's.
    virtual GenApi::INodeMap* GetNodeMap(ZelCamErr* err) = 0;

    // The features as a flat list, categories included, in the order of the node map. Null with
    // ZelCamErr_IndexOutOfRange when `index` is not below the count.
    virtual uint32_t GetCount() = 0;
    virtual Param* GetParamByIndex(uint32_t index, ZelCamErr* err) = 0;

    // Access by name, without an object for the feature. Values are verified against access mode
    // and limits before they are written. Enumerations go by the entry's symbolic name (...Str) or
    // its number. A text belongs to the thread that read it, and stays valid until that
    // thread reads one under the same name or ends. NaN violates no limit: see Float.
    virtual ZelCamErr SetBooleanValue(const char* name, bool value) = 0;
    virtual bool GetBooleanValue(const char* name, ZelCamErr* err) = 0;
    virtual ZelCamErr SetEnumValueStr(const char* name, const char* value) = 0;
    virtual ZelCamErr SetEnumValue(const char* name, int64_t value) = 0;
    virtual const char* GetEnumValueStr(const char* name, ZelCamErr* err) = 0;
    virtual int64_t GetEnumValue(const char* name, ZelCamErr* err) = 0;
    virtual ZelCamErr SetFloatValue(const char* name, double value) = 0;
    virtual double GetFloatValue(const char* name, ZelCamErr* err) = 0;
    virtual ZelCamErr SetIntegerValue(const char* name, int64_t value) = 0;
    virtual int64_t GetIntegerValue(const char* name, ZelCamErr* err) = 0;
    virtual ZelCamErr SetStringValue(const char* name, const char* value) = 0;
    virtual const char* GetStringValue(const char* name, ZelCamErr* err) = 0;
    virtual ZelCamErr ExecuteCommand(const char* name) = 0;
    virtual bool IsCommandDone(const char* name, ZelCamErr* err) = 0;

    // Lets features with a polling time, of which `elapsedMs` milliseconds have passed since the
    // last call, be read anew.
    virtual ZelCamErr Poll(int64_t elapsedMs) = 0;

  protected:
    ~Array() = default;
};

}  // namespace ZelGenParam
#pragma GCC visibility pop

#endif  // ZELGENPARAM_ARRAY_H
