// A counter over all combinations of the values of a feature's selectors.
#ifndef GENAPI_SELECTORSET_H
#define GENAPI_SELECTORSET_H

#include <cstddef>
#include <memory>
#include <vector>

#include <Base/GCString.h>
#include <GenApi/Container.h>
#include <GenApi/GenApiDll.h>
#include <GenApi/IBase.h>
#include <GenApi/ISelectorDigit.h>

namespace GENAPI_NAMESPACE {

class CSelectorState;

// Contains the selectors of a feature, including those that select it through other selectors. The
// outermost selector is the slowest digit. An enumeration runs through its available entries, an
// integer from its minimum to its maximum. A selector of another kind, or one that cannot be both
// read and written, keeps its current value. Each step writes to the device.
//
//     CSelectorSet selectors(feature);
//     bool more = selectors.SetFirst();
//     for (; more; more = selectors.SetNext()) ...
//     selectors.Restore();
//
// Thread-bound: hold the lock of the map meanwhile, and keep the map alive. Exceptions of the nodes
// pass through.
class GENAPI_DECL CSelectorSet : public ISelectorDigit {
  public:
    // Takes a node of a map; null and nodes without selectors give an empty set. RuntimeException
    // if there are more selectors than any camera has.
    explicit CSelectorSet(IBase* pBase);
    ~CSelectorSet() override;
    CSelectorSet(const CSelectorSet&) = delete;
    CSelectorSet& operator=(const CSelectorSet&) = delete;

    bool IsEmpty() const;

    // Writes the first combination. Always true: the empty set has one combination, the empty one.
    bool SetFirst() override;
    // Writes the next combination; after the last one, writes the first again and returns false.
    // Without Tick, changes nothing.
    bool SetNext(bool Tick = true) override;
    // Writes the values that the selectors had when the set was made, where they have changed.
    void Restore() override;

    // The current combination, in the form of CSelectorState::ToString.
    GENICAM_NAMESPACE::gcstring ToString() override;
    // Replaces the state by the current combination.
    void GetState(CSelectorState& state) override;
    // Replaces the list; with Incremental, appends missing selectors to it. The outermost selector
    // comes first.
    void GetSelectorList(FeatureList_t& SelectorList, bool Incremental = false) override;

    // The position of the outermost selector that the last step wrote; all selectors after it were
    // written, too. The number of selectors if none was written.
    size_t GetFirstChanged() const;

  private:
    void SetDigits(size_t First);

    std::vector<std::unique_ptr<ISelectorDigit>> m_Digits;
    size_t m_FirstChanged;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_SELECTORSET_H
