#include <algorithm>
#include <exception>

#include <Base/GCException.h>
#include <GenApi/ISelector.h>
#include <GenApi/SelectorSet.h>
#include <GenApi/SelectorState.h>

#include "genapi/persistence/selectordigits.h"
#include "genapi/persistence/selectors.h"

namespace GENAPI_NAMESPACE {

namespace {

// Cameras nest two or three.
constexpr size_t kMaxSelectors = 64;

class SelectorSearch {
  public:
    explicit SelectorSearch(IBase* feature) {
        seen_.push_back(feature);
        Visit(feature);
    }

    const FeatureList_t& Found() const { return found_; }

  private:
    void Visit(IBase* feature) {
        const auto* const selected = dynamic_cast<ISelector*>(feature);
        if (selected == nullptr) return;
        FeatureList_t selectors;
        selected->GetSelectingFeatures(selectors);
        for (IValue* selector : selectors) {
            if (std::find(seen_.begin(), seen_.end(), selector) != seen_.end()) continue;
            if (seen_.size() > kMaxSelectors)
                throw RUNTIME_EXCEPTION("A feature has more than %d selectors",
                                        static_cast<int>(kMaxSelectors));
            seen_.push_back(selector);
            Visit(selector);
            found_.push_back(selector);
        }
    }

    std::vector<IBase*> seen_;
    FeatureList_t found_;
};

}  // namespace

FeatureList_t Engine::SelectorsOf(IBase* feature) {
    return SelectorSearch(feature).Found();
}

using GENICAM_NAMESPACE::gcstring;

CSelectorSet::CSelectorSet(IBase* pBase) : m_FirstChanged(0) {
    for (IValue* selector : Engine::SelectorsOf(pBase))
        m_Digits.push_back(Engine::MakeSelectorDigit(*selector));
    m_FirstChanged = m_Digits.size();
}

CSelectorSet::~CSelectorSet() = default;

bool CSelectorSet::IsEmpty() const {
    return m_Digits.empty();
}

void CSelectorSet::SetDigits(size_t First) {
    for (size_t i = First; i < m_Digits.size(); ++i)
        m_Digits[i]->SetFirst();
}

bool CSelectorSet::SetFirst() {
    m_FirstChanged = 0;
    SetDigits(0);
    return true;
}

bool CSelectorSet::SetNext(bool Tick) {
    m_FirstChanged = m_Digits.size();
    if (!Tick) return true;
    for (size_t i = m_Digits.size(); i-- > 0;) {
        if (!m_Digits[i]->SetNext()) continue;
        m_FirstChanged = i;
        SetDigits(i + 1);
        return true;
    }
    SetFirst();
    return false;
}

void CSelectorSet::Restore() {
    m_FirstChanged = 0;
    std::exception_ptr failure;
    for (const auto& digit : m_Digits) {
        try {
            digit->Restore();
        } catch (...) {
            if (!failure) failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

gcstring CSelectorSet::ToString() {
    CSelectorState state;
    GetState(state);
    return state.ToString();
}

void CSelectorSet::GetState(CSelectorState& state) {
    state.Clear();
    for (const auto& digit : m_Digits)
        digit->GetState(state);
}

void CSelectorSet::GetSelectorList(FeatureList_t& SelectorList, bool Incremental) {
    if (!Incremental) SelectorList.clear();
    for (const auto& digit : m_Digits) {
        FeatureList_t own;
        digit->GetSelectorList(own);
        for (IValue* selector : own) {
            if (std::find(SelectorList.begin(), SelectorList.end(), selector) == SelectorList.end())
                SelectorList.push_back(selector);
        }
    }
}

size_t CSelectorSet::GetFirstChanged() const {
    return m_FirstChanged;
}

}  // namespace GENAPI_NAMESPACE
