// A counter that runs through all combinations of the values of a feature's selectors.
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

// The selectors of a feature, those that select it through other selectors too: the outermost is
// the slowest digit. An enumeration runs through its available entries, an integer from its minimum
// to its maximum. A selector that is of another kind, or that cannot be both read and written, has
// its present value only. Each step writes to the device.
//
//     CSelectorSet selectors(feature);
//     bool more = selectors.SetFirst();
//     for (; more; more = selectors.SetNext()) ...
//     selectors.Restore();
//
// Thread-bound: hold the lock of the map meanwhile, and keep the map. Exceptions of the nodes pass.
class GENAPI_DECL CSelectorSet : public ISelectorDigit {
  public:
    // Of a node of a map; null and nodes without selectors give an empty set. RuntimeException if
    // there are more selectors than any camera has.
    explicit CSelectorSet(IBase* pBase);
    ~CSelectorSet() override;
    CSelectorSet(const CSelectorSet&) = delete;
    CSelectorSet& operator=(const CSelectorSet&) = delete;

    bool IsEmpty() const;

    // Writes the first combination. Always true: the empty set has one, of nothing.
    bool SetFirst() override;
    // Writes the next combination; after the last one writes the first again and gives false.
    // Without Tick nothing moves.
    bool SetNext(bool Tick = true) override;
    // Writes the values that the selectors had when the set was made, as far as they were changed.
    void Restore() override;

    // The present combination, as CSelectorState::ToString.
    GENICAM_NAMESPACE::gcstring ToString() override;
    // Replaces the state by the present combination.
    void GetState(CSelectorState& state) override;
    // Replaces the list, or with Incremental appends what it lacks. The outermost selector is
    // first.
    void GetSelectorList(FeatureList_t& SelectorList, bool Incremental = false) override;

    // The outermost selector that the last step wrote, as a position in the list of selectors; all
    // behind it were written too. The number of selectors if none was.
    size_t GetFirstChanged() const;

  private:
    void SetDigits(size_t First);

    std::vector<std::unique_ptr<ISelectorDigit>> m_Digits;
    size_t m_FirstChanged;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_SELECTORSET_H
