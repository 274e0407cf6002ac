// The features of a module.
#ifndef ZELGENPARAM_ARRAY_H
#define ZELGENPARAM_ARRAY_H

#include <cstdint>

#include "ZelCam/Error.h"
#include "ZelGenParam/GenApi.h"
#include "ZelGenParam/Param.h"

#pragma GCC visibility push(default)
namespace ZelGenParam {

// All features of one module (an interface, a camera, the transport layer's side of a camera, a
// stream), as its GenApi description lists them. The array belongs to the object that returned it
// and lives as long as that object.
//
// Lookups fail with ZelCamErr_ParamNotFound for an unknown name and ZelCamErr_WrongParamType for a
// feature of another kind. Access by name (Set...Value, Get...Value, SetValueStr, ExecuteCommand
// and IsCommandDone) fails with these codes and with
//   ZelCamErr_AccessDenied  not readable or not writable at the moment
//   ZelCamErr_OutOfRange    the value violates minimum, maximum or increment
//   ZelCamErr_InvalidValue  the feature cannot have the value
//   ZelCamErr_GenApiError   any other failure, for instance a failed access to the camera
// and returns zero, null or false on failure. `err` may be null; it is 0 on success.
//
// Thread-safe, like its Params: one thread at a time accesses the features, others wait. Accesses
// that belong together, such as a selector and what it selects, are protected by Lock.
class Array {
  public:
    // The feature of that name: the same object on every call. Null if there is no such feature or,
    // for the typed forms, if it is of another kind.
    virtual Param* GetParam(const char* name, ZelCamErr* err) = 0;
    virtual Boolean* GetBoolean(const char* name, ZelCamErr* err) = 0;
    virtual Command* GetCommand(const char* name, ZelCamErr* err) = 0;
    virtual Enum* GetEnum(const char* name, ZelCamErr* err) = 0;
    virtual Float* GetFloat(const char* name, ZelCamErr* err) = 0;
    virtual Int* GetInt(const char* name, ZelCamErr* err) = 0;
    virtual String* GetString(const char* name, ZelCamErr* err) = 0;

    // The root of the tree of categories.
    virtual Category* GetRootCategory(ZelCamErr* err) = 0;

    // The GenApi node map itself, for what this interface does not offer. The Array owns it.
    virtual GenApi::INodeMap* GetNodeMap(ZelCamErr* err) = 0;

    // The features as a flat list, including categories, in the order of the node map. Null with
    // ZelCamErr_IndexOutOfRange if `index` is not below the count.
    virtual uint32_t GetCount() = 0;
    virtual Param* GetParamByIndex(uint32_t index, ZelCamErr* err) = 0;

    // Access by name, without an object for the feature. Values are checked against access mode and
    // limits before they are written. Enumerations use the entry's symbolic name (...Str) or its
    // number. A text belongs to the thread that read it, and stays valid until that thread ends or
    // reads a text under the same name. NaN violates no limit: see Float.
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

    // Advances the clock of polled features by `elapsedMs`, the milliseconds since the last call.
    // Features whose polling time has passed are read again on their next access.
    virtual ZelCamErr Poll(int64_t elapsedMs) = 0;

    // Sets a feature of any kind from a text: a number (an Int also takes hexadecimal digits after
    // "0x"), "1", "0", "true" or "false" for a Boolean, the symbolic name of an entry for an Enum,
    // a text for a String, hexadecimal digits for a register. Commands, categories and ports have
    // no value: ZelCamErr_WrongParamType.
    //
    // `reason` may be null. Otherwise `*reason` becomes the node map's explanation of a failure,
    // for a message to the user. It is never null: it is empty on success, and if the node map was
    // not asked. It stays valid until the calling thread calls this operation again or ends.
    virtual ZelCamErr SetValueStr(const char* name, const char* value, const char** reason) = 0;

    // The value of a feature of any kind as a text that SetValueStr takes: the symbolic name of an
    // Enum's entry, "1" or "0" for a Boolean, "0x" and hexadecimal digits for a register and for an
    // Int that the description shows so. Commands, categories and ports have no value:
    // ZelCamErr_WrongParamType. The text stays valid as those of GetStringValue do.
    virtual const char* GetValueStr(const char* name, ZelCamErr* err) = 0;

    // Keep the features to the calling thread until it unlocks them as often as it locked them:
    // for accesses that belong together, such as a selector and what it selects. Other threads that
    // use the features wait meanwhile, and so do the events of the camera. A ParamEventSink is
    // called with the features locked.
    virtual void Lock() = 0;
    virtual void Unlock() = 0;

  protected:
    ~Array() = default;
};

}  // namespace ZelGenParam
#pragma GCC visibility pop

#endif  // ZELGENPARAM_ARRAY_H
