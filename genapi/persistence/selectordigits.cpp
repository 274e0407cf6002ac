#include "genapi/persistence/selectordigits.h"

#include <cstdint>
#include <optional>

#include <GenApi/IEnumEntry.h>
#include <GenApi/IEnumeration.h>
#include <GenApi/IInteger.h>
#include <GenApi/SelectorState.h>

#include "genapi/persistence/access.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

// A selector that keeps its present value.
class FixedDigit : public ISelectorDigit {
  public:
    explicit FixedDigit(IValue& selector) : selector_(selector) {}

    bool SetFirst() override { return true; }
    bool SetNext(bool tick = true) override { return !tick; }
    void Restore() override {}

    gcstring ToString() override {
        CSelectorState state;
        GetState(state);
        return state.ToString();
    }

    void GetState(CSelectorState& state) override {
        if (IsReadable(selector_))
            state.Append(selector_.GetNode()->GetName(), selector_.ToString());
    }

    void GetSelectorList(FeatureList_t& selectors, bool incremental = false) override {
        if (!incremental) selectors.clear();
        selectors.push_back(&selector_);
    }

  private:
    IValue& selector_;
};

// A selector that runs through values. They may depend on the outer selectors, so each SetFirst
// looks them up anew.
class RunningDigit : public FixedDigit {
  public:
    using FixedDigit::FixedDigit;

    bool SetFirst() override {
        const std::optional<int64_t> value =
            IsReadableAndWritable(Target()) ? First() : std::nullopt;
        isRunning_ = value.has_value();
        if (isRunning_) Write(*value);
        return true;
    }

    bool SetNext(bool tick = true) override {
        if (!tick) return true;
        if (!isRunning_) return false;
        const std::optional<int64_t> value = Next();
        if (value) Write(*value);
        return value.has_value();
    }

    void Restore() override {
        if (former_ && wasWritten_) Set(*former_);
    }

  protected:
    void Remember(int64_t value) { former_ = value; }

    virtual const IBase& Target() const = 0;
    virtual std::optional<int64_t> First() = 0;
    virtual std::optional<int64_t> Next() = 0;
    virtual void Set(int64_t value) = 0;

  private:
    void Write(int64_t value) {
        wasWritten_ = true;
        Set(value);
    }

    std::optional<int64_t> former_;
    bool isRunning_ = false;
    bool wasWritten_ = false;
};

class EnumerationDigit final : public RunningDigit {
  public:
    explicit EnumerationDigit(IEnumeration& selector) : RunningDigit(selector), target_(selector) {
        if (!IsReadableAndWritable(selector)) return;
        const int64_t value = selector.GetIntValue();
        if (selector.GetEntry(value) != nullptr) Remember(value);
    }

  private:
    const IBase& Target() const override { return target_; }

    std::optional<int64_t> First() override {
        target_.GetEntries(entries_);
        index_ = 0;
        return Next();
    }

    std::optional<int64_t> Next() override {
        while (index_ < entries_.size()) {
            auto* const entry = dynamic_cast<IEnumEntry*>(entries_[index_++]);
            if (IsAvailable(entry)) return entry->GetValue();
        }
        return std::nullopt;
    }

    void Set(int64_t value) override { target_.SetIntValue(value); }

    IEnumeration& target_;
    NodeList_t entries_;
    size_t index_ = 0;
};

class IntegerDigit final : public RunningDigit {
  public:
    explicit IntegerDigit(IInteger& selector) : RunningDigit(selector), target_(selector) {
        if (IsReadableAndWritable(selector)) Remember(selector.GetValue());
    }

  private:
    const IBase& Target() const override { return target_; }

    std::optional<int64_t> First() override {
        hasList_ = target_.GetIncMode() == listIncrement;
        if (hasList_) {
            list_ = target_.GetListOfValidValues();
            index_ = 0;
            return NextOfList();
        }
        value_ = target_.GetMin();
        max_ = target_.GetMax();
        inc_ = target_.GetInc();
        return value_ <= max_ ? std::optional<int64_t>(value_) : std::nullopt;
    }

    std::optional<int64_t> Next() override {
        if (hasList_) return NextOfList();
        // The difference fits in uint64_t, but not always in int64_t.
        const uint64_t rest = static_cast<uint64_t>(max_) - static_cast<uint64_t>(value_);
        if (inc_ <= 0 || static_cast<uint64_t>(inc_) > rest) return std::nullopt;
        return value_ += inc_;
    }

    std::optional<int64_t> NextOfList() {
        return index_ < list_.size() ? std::optional<int64_t>(list_[index_++]) : std::nullopt;
    }

    void Set(int64_t value) override { target_.SetValue(value); }

    IInteger& target_;
    bool hasList_ = false;
    int64_autovector_t list_;
    size_t index_ = 0;
    int64_t value_ = 0;
    int64_t max_ = 0;
    int64_t inc_ = 0;
};

}  // namespace

std::unique_ptr<ISelectorDigit> MakeSelectorDigit(IValue& selector) {
    const EInterfaceType type = selector.GetNode()->GetPrincipalInterfaceType();
    if (type == intfIEnumeration)
        return std::make_unique<EnumerationDigit>(dynamic_cast<IEnumeration&>(selector));
    if (type == intfIInteger)
        return std::make_unique<IntegerDigit>(dynamic_cast<IInteger&>(selector));
    return std::make_unique<FixedDigit>(selector);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
