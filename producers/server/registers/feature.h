// A feature of a module: its nodes in the description, and the register behind them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "producers/server/registers/descriptionnode.h"
#include "producers/server/registers/registerspace.h"

namespace ZelCti {

// What happens when a register is read or written, as in Register; each function may be empty.
template <typename T>
struct RegisterValue {
    std::function<T()> get;
    std::function<void(T)> check;
    std::function<void(T)> set;
};
using IntegerValue = RegisterValue<uint64_t>;
using FloatValue = RegisterValue<double>;
using TextValue = RegisterValue<std::string>;

// Computes the bytes of a read-only register.
using BytesSource = std::function<void(uint8_t* bytes, size_t size)>;

// What a register does; one without a value is memory.
using AnyValue = std::variant<std::monostate, IntegerValue, FloatValue, TextValue, BytesSource>;

// Acts when anything but 0 is written.
IntegerValue CommandValue(std::function<void()> action);

// In upper case, without a prefix.
std::string HexOf(uint64_t value);

// A limit of a number: a constant, or another node.
class Limit {
  public:
    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T>>>
    Limit(T value) : text_(TextOf(value)) {
        if constexpr (std::is_integral_v<T>) integer_ = static_cast<int64_t>(value);
    }
    Limit(const char* node) : Limit(std::string(node)) {}
    Limit(std::string node) : text_(std::move(node)), isNode_(true) {}

    const std::string& Text() const { return text_; }
    bool IsNode() const { return isNode_; }
    std::optional<int64_t> Integer() const { return integer_; }

  private:
    static std::string TextOf(double value);
    template <typename T>
    static std::enable_if_t<std::is_integral_v<T>, std::string> TextOf(T value) {
        return std::to_string(value);
    }

    std::string text_;
    bool isNode_ = false;
    std::optional<int64_t> integer_;
};

// One value of an enumeration.
struct Entry {
    std::string name;
    int64_t value;
    std::string toolTip;
    bool isSelfClearing = false;
};

// A row of a FeatureTable. The operations describe it one after the other, in any order; those that
// a kind of node cannot have throw std::logic_error.
//
// A register (IntReg, StringReg ...) is one node. An Integer, Float, Boolean, Enumeration or
// Command is a node over a register, which is a second node with "Reg" behind the name, unless
// Over, Local, Value or Constant says otherwise. A row without a tool tip helps others: it is
// invisible and in no category.
class Feature {
  public:
    Feature(std::string_view kind, std::string name, std::string toolTip);

    // What the description says.

    Feature& Display(std::string name);  // otherwise the name in words
    Feature& Expert() { return With("Visibility", "Expert"); }
    Feature& Guru() { return With("Visibility", "Guru"); }
    Feature& Invisible() { return With("Visibility", "Invisible"); }
    Feature& AvailableIf(std::string node) { return With("pIsAvailable", std::move(node)); }
    Feature& LockedBy(std::string node) { return With("pIsLocked", std::move(node)); }
    Feature& Streamable() { return With("Streamable", "Yes"); }
    Feature& Unit(std::string unit) { return With("Unit", std::move(unit)); }
    Feature& Representation(std::string form) { return With("Representation", std::move(form)); }
    Feature& Limits(const Limit& lowest, const Limit& highest);
    Feature& Limits(const Limit& lowest, const Limit& highest, const Limit& increment);
    Feature& Entries(const std::vector<Entry>& entries);

    // The category and the selector of the feature. By default, a feature is in the category above
    // it in the table.
    Feature& In(std::string category);
    Feature& SelectedBy(std::string selector);

    // Where the value comes from, if not from a register of its own.
    Feature& Over(std::string node) { return With("pValue", std::move(node)); }
    Feature& Value(const Limit& value) { return With("Value", value.Text()); }
    Feature& Constant(const Limit& value);
    Feature& Local(int64_t initial);  // every node map keeps a value of its own

    // Formulas over the values of other nodes.
    Feature& Variables(std::initializer_list<std::pair<std::string, std::string>> nodes);
    Feature& Formula(std::string text) { return With("Formula", std::move(text)); }
    Feature& Formulas(std::string to, std::string from);

    // Any other element.
    Feature& With(std::string_view element, std::string text);

    // Where the register is, counted from the base of the table. By default it takes 4 bytes, and 8
    // bytes for a floating-point number.
    Feature& At(uint64_t address, size_t size = 0);

    // The same for a register that others put into the space: it is described only, read-only
    // unless Access says otherwise, and its address counts from 0.
    Feature& AtExisting(uint64_t address, size_t size = 0);
    // The value of another node is added to the address.
    Feature& AtOffset(std::string node);

    Feature& InRegister(std::string name);  // instead of the name with "Reg" behind
    Feature& Port(std::string name);        // registers behind other ports are described only
    Feature& Bit(unsigned bit) { return With("Bit", std::to_string(bit)); }
    Feature& Bits(unsigned lowest, unsigned highest);
    Feature& Signed();
    Feature& Order(ByteOrder order);  // otherwise that of the space
    Feature& Cachable(std::string mode);
    Feature& Volatile() { return Cachable("NoCache"); }
    Feature& InvalidatedBy(std::initializer_list<std::string> nodes);

    // What the register does. Without any of these it is memory; with a getter only, it is
    // read-only. The functions give and take whole numbers, doubles or std::strings; the first of
    // them decides what the register holds.
    template <typename Getter>
    Feature& Get(Getter get) {
        Held<RegisterType<std::invoke_result_t<Getter>>>().get = std::move(get);
        return *this;
    }
    template <typename Checker>
    Feature& Check(Checker check) {
        Held<RegisterType<ArgumentOf<Checker>>>().check = std::move(check);
        return *this;
    }
    template <typename Setter>
    Feature& Set(Setter set) {
        Held<RegisterType<ArgumentOf<Setter>>>().set = std::move(set);
        return *this;
    }
    Feature& Bind(IntegerValue value) { return value_ = std::move(value), *this; }
    Feature& Bind(BytesSource source) { return value_ = std::move(source), *this; }
    Feature& Initial(uint64_t value);  // of memory
    Feature& Access(ZelCti::Access access);

    // A command that can only be written. After that, BusyWhile and DoneAtOnce make its register
    // say whether the command is done.
    Feature& Does(std::function<void()> action);
    Feature& BusyWhile(std::function<bool()> isBusy);
    Feature& DoneAtOnce();

    // How long, in ms, devices take to acknowledge a write: Register::duration.
    Feature& Takes(uint32_t milliseconds) { return duration_ = milliseconds, *this; }

    // One register for each value of another node, from 0, one behind the other. IndexedBy only
    // describes them; it may say how many bytes there are from one to the next.
    Feature& IndexedBy(std::string node, size_t stride = 0);
    Feature& Indexed(std::string node, size_t count, std::function<IntegerValue(size_t)> value);

    // Applies what several features have in common; it sees what was declared before.
    Feature& Apply(const std::function<void(Feature&)>& trait) { return trait(*this), *this; }

    // The constant limits of the value, from Limits, Entries or the kind Boolean. Throws
    // std::logic_error when there are none.
    std::pair<int64_t, int64_t> Range() const;

    // What the table uses.

    const std::string& Name() const { return node_.attribute.second; }
    std::string_view Kind() const { return node_.kind; }
    const std::string& Category() const { return category_; }
    const std::string& Selector() const { return selector_; }
    bool IsHelper() const { return isHelper_; }
    void AddRegisters(RegisterSpace& space, uint64_t addressBase) const;

    // What a table says of all its rows.
    struct Defaults {
        std::string port;
        bool isVolatile;  // registers change by themselves
        ByteOrder order;
        uint64_t addressBase;
    };

    // The node of the feature, and the register or local value behind it. The row is used up.
    std::vector<DescriptionNode> TakeNodes(const Defaults& defaults);

  private:
    // What a register holds for a function that gives or takes a T.
    template <typename T>
    using RegisterType =
        std::conditional_t<std::is_floating_point_v<T>, double,
                           std::conditional_t<std::is_integral_v<T>, uint64_t, std::string>>;

    template <typename Result, typename Argument>
    static std::decay_t<Argument> ArgumentOfFunction(const std::function<Result(Argument)>&);
    template <typename Function>
    using ArgumentOf = decltype(ArgumentOfFunction(std::function(std::declval<Function>())));

    // The value of the row, which holds a T from now on. Throws std::logic_error when it holds
    // something else already.
    template <typename T>
    RegisterValue<T>& Held();

    void AddLimit(std::string_view element, std::string_view link, const Limit& limit);
    std::string_view RegisterKind() const;
    size_t Size() const;
    uint64_t Address(uint64_t addressBase) const;
    ZelCti::Access GetAccess() const;
    void CompleteNode();
    void CompleteRegister(DescriptionNode& reg, const Defaults& defaults);

    DescriptionNode node_;
    std::vector<DescriptionNode> registerElements_;
    const bool isHelper_;
    std::string category_;
    std::string selector_;
    std::optional<int64_t> local_;
    std::optional<int64_t> lowest_;
    std::optional<int64_t> highest_;

    std::optional<uint64_t> address_;
    size_t size_ = 0;
    bool isExisting_ = false;
    std::string registerName_;
    std::string port_;
    std::optional<ByteOrder> order_;
    bool isSigned_ = false;
    std::optional<ZelCti::Access> access_;
    AnyValue value_;
    uint32_t duration_ = 0;
    std::optional<uint64_t> initial_;
    std::string index_;
    size_t stride_ = 0;
    size_t count_ = 1;
    std::function<IntegerValue(size_t)> indexed_;
};

}  // namespace ZelCti
