// Features of a module as typed objects.
#ifndef ZELGENPARAM_PARAM_H
#define ZELGENPARAM_PARAM_H

#include <cstddef>
#include <cstdint>

#include "ZelCam/Error.h"
#include "ZelGenParam/GenApi.h"

// Visible even in programs that hide symbols by default: for dynamic_cast between the interfaces,
// the library and its users need to share the type information.
#pragma GCC visibility push(default)
namespace ZelGenParam {

// The kind of a feature. It decides which of Param::ToInt and its siblings returns an interface.
enum ParamType : uint32_t {
    ParamType_Unknown = 0,  // registers, ports and others without a kind here
    ParamType_Int = 1,
    ParamType_Float = 2,
    ParamType_String = 3,
    ParamType_Enum = 4,
    ParamType_EnumEntry = 5,
    ParamType_Boolean = 6,
    ParamType_Command = 7,
    ParamType_Category = 8
};

// Whom a feature is meant for (GenApi EVisibility).
enum class Visibility : uint32_t {
    Beginner = 0,
    Expert = 1,
    Guru = 2,
    Invisible = 3,
    UndefinedVisibility = 99
};

class Boolean;
class Category;
class Command;
class Enum;
class EnumEntry;
class Float;
class Int;
class Param;
class String;

// The application implements it to be notified when a feature changes.
class ParamEventSink {
  public:
    // Called when `param` may have changed: on the thread that caused the change or on an event
    // thread of the library, with the node map locked. It may use this feature and all others of
    // the Array, numbers and texts. Other threads that use them wait meanwhile, so do not wait for
    // such a thread here. If it throws, the exception is dropped: the change and the calls of other
    // sinks continue.
    virtual void OnParamChanged(Param* param) = 0;

  protected:
    ~ParamEventSink() = default;
};

// One feature of an Array. The Array owns the object, keeps it for its own lifetime, and returns
// the same object for the same name. To access the value, get the interface of its kind by ToInt()
// and its siblings, or by dynamic_cast.
//
// Value operations of every kind report these codes, in `*err` (which may be null, and is 0 on
// success) or as their result:
//   ZelCamErr_AccessDenied     not readable or not writable at the moment
//   ZelCamErr_OutOfRange       the value violates minimum, maximum or increment
//   ZelCamErr_InvalidArgument  the feature cannot have the value
//   ZelCamErr_WrongParamType   the node behind the feature is of another kind
//   ZelCamErr_Error            any other failure, for instance a failed access to the camera
// and return zero, null or false on failure. Only writing reports OutOfRange.
//
// Thread-safe. A text belongs to the thread that asked for it: it stays valid until that thread
// calls the same operation on the same object again, or ends. So the texts that a sink reads on an
// event thread do not affect those of the application.
class Param {
  public:
    virtual ParamType GetType() = 0;

    // Texts of the feature's description; empty if it has none.
    virtual const char* GetName() = 0;
    virtual const char* GetToolTip() = 0;
    virtual const char* GetDescription() = 0;
    virtual const char* GetDisplayName() = 0;
    virtual Visibility GetVisibility() = 0;

    // State of the feature at the moment; false also if it cannot be determined.
    virtual bool IsValueCached() = 0;
    virtual bool IsAvailable() = 0;
    virtual bool IsWritable() = 0;
    virtual bool IsReadable() = 0;
    virtual bool IsStreamable() = 0;  // part of saved configurations
    virtual bool IsVisible(Visibility v) = 0;

    // Subscribe to changes. `sink` must outlive the subscription. A sink registered twice is called
    // twice and can be unregistered only once.
    virtual ZelCamErr RegisterEventSink(ParamEventSink* sink) = 0;

    // ZelCamErr_IndexOutOfRange if the sink is not registered.
    virtual ZelCamErr UnregisterEventSink(ParamEventSink* sink) = 0;

    // The GenApi node behind the feature; never null for a Param that an Array returned.
    virtual GenApi::INode* GetNode() = 0;

    // This feature as that kind; null if it is of another kind.
    virtual Category* ToCategory() = 0;
    virtual Boolean* ToBoolean() = 0;
    virtual Command* ToCommand() = 0;
    virtual EnumEntry* ToEnumEntry() = 0;
    virtual Enum* ToEnum() = 0;
    virtual Float* ToFloat() = 0;
    virtual Int* ToInt() = 0;
    virtual String* ToString() = 0;

  protected:
    ~Param() = default;
};

// An integer with its current limits.
class Int : public virtual Param {
  public:
    ParamType GetType() override { return ParamType_Int; }
    virtual ZelCamErr SetValue(int64_t value) = 0;
    virtual int64_t GetValue(ZelCamErr* err) = 0;
    virtual int64_t GetMin(ZelCamErr* err) = 0;
    virtual int64_t GetMax(ZelCamErr* err) = 0;
    virtual int64_t GetIncrement(ZelCamErr* err) = 0;

  protected:
    ~Int() = default;
};

// A number with a physical unit. NaN is neither below the minimum nor above the maximum: if the
// camera stores a floating-point number, NaN is written, and a camera may report it. If the camera
// stores an integer instead, NaN is refused (OutOfRange).
class Float : public virtual Param {
  public:
    ParamType GetType() override { return ParamType_Float; }
    virtual ZelCamErr SetValue(double value) = 0;
    virtual double GetValue(ZelCamErr* err) = 0;
    virtual double GetMin(ZelCamErr* err) = 0;
    virtual double GetMax(ZelCamErr* err) = 0;
    virtual const char* GetUnit(ZelCamErr* err) = 0;

  protected:
    ~Float() = default;
};

// A text. Texts longer than GetMaxLength are refused.
class String : public virtual Param {
  public:
    ParamType GetType() override { return ParamType_String; }
    virtual int64_t GetMaxLength(ZelCamErr* err) = 0;
    // The text, and its length in `*length` if `length` is not null.
    virtual const char* GetValue(size_t* length, ZelCamErr* err) = 0;
    virtual ZelCamErr SetValue(const char* value) = 0;

  protected:
    ~String() = default;
};

// A choice among entries. The entries belong to the Enum: the same entry is always the same object.
// Entries with the same number share one object: the entry that was asked for first.
class Enum : public virtual Param {
  public:
    ParamType GetType() override { return ParamType_Enum; }
    virtual size_t GetEnumEntriesCount(ZelCamErr* err) = 0;
    // Null if there is no such entry.
    virtual EnumEntry* GetEnumEntryByIndex(size_t index) = 0;
    virtual EnumEntry* GetEnumEntryByName(const char* name) = 0;
    virtual EnumEntry* GetEnumEntryByValue(int64_t value) = 0;
    // The current entry as its number and as its symbolic name.
    virtual int64_t GetValue(ZelCamErr* err) = 0;
    virtual const char* GetValueStr(ZelCamErr* err) = 0;
    virtual ZelCamErr SetValue(int64_t value) = 0;
    virtual ZelCamErr SetValueStr(const char* value) = 0;

  protected:
    ~Enum() = default;
};

// One entry of an Enum: its number and its symbolic name.
class EnumEntry : public virtual Param {
  public:
    ParamType GetType() override { return ParamType_EnumEntry; }
    virtual int64_t GetValue(ZelCamErr* err) = 0;
    virtual const char* GetValueStr(ZelCamErr* err) = 0;

  protected:
    ~EnumEntry() = default;
};

// A truth value.
class Boolean : public virtual Param {
  public:
    ParamType GetType() override { return ParamType_Boolean; }
    virtual ZelCamErr SetValue(bool value) = 0;
    virtual bool GetValue(ZelCamErr* err) = 0;

  protected:
    ~Boolean() = default;
};

// An action. Execute starts it; IsDone returns whether it has ended.
class Command : public virtual Param {
  public:
    ParamType GetType() override { return ParamType_Command; }
    virtual ZelCamErr Execute() = 0;
    virtual bool IsDone(ZelCamErr* err) = 0;

  protected:
    ~Command() = default;
};

// A group of features, which may be categories themselves.
class Category : public virtual Param {
  public:
    ParamType GetType() override { return ParamType_Category; }
    virtual uint32_t GetCount() = 0;
    // Null with ZelCamErr_IndexOutOfRange if `index` is not below the count.
    virtual Param* GetParamByIndex(uint32_t index, ZelCamErr* err) = 0;

  protected:
    ~Category() = default;
};

}  // namespace ZelGenParam
#pragma GCC visibility pop

#endif  // ZELGENPARAM_PARAM_H
