#include <cstdio>

#include <GenApi/Persistence.h>
#include <GenApi/Synch.h>

#include "genapi/persistence/command.h"
#include "genapi/persistence/entryline.h"
#include "genapi/persistence/entrylist.h"
#include "genapi/persistence/featureload.h"
#include "genapi/persistence/featurestore.h"

namespace GENAPI_NAMESPACE {

using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::gcstring_vector;

CFeatureBag::CFeatureBag() = default;
CFeatureBag::CFeatureBag(const CFeatureBag& obj) = default;
CFeatureBag& CFeatureBag::operator=(const CFeatureBag& rhs) = default;
CFeatureBag::~CFeatureBag() = default;

namespace {

// Tells the camera that its settings are being stored, and on every way out that this is over.
class Storing {
  public:
    explicit Storing(const INodeMap& nodeMap) : nodeMap_(nodeMap) {
        Engine::NotifyCamera(nodeMap_, "DeviceFeaturePersistenceStart",
                             Engine::kPersistencePatience);
    }
    ~Storing() {
        Engine::NotifyCamera(nodeMap_, "DeviceFeaturePersistenceEnd", Engine::kPersistencePatience);
    }
    Storing(const Storing&) = delete;
    Storing& operator=(const Storing&) = delete;

  private:
    const INodeMap& nodeMap_;
};

}  // namespace

void CFeatureBag::SetInfo(const gcstring& Info) {
    m_Info = Engine::InOneLine(Info);
}

void CFeatureBag::PersistFeature(IValue& item, CSelectorSet* selectorSet) {
    Engine::EntryList entries(m_Names, m_Values);
    FeatureList_t features;
    if (selectorSet != nullptr) selectorSet->GetSelectorList(features);
    features.push_back(&item);
    for (IValue* feature : features)
        entries.Append(feature->GetNode()->GetName(), feature->ToString());
}

int64_t CFeatureBag::StoreToBag(INodeMap* pNodeMap, const int MaxNumPersistSkriptEntries,
                                gcstring_vector* pFeatureFilter) {
    if (pNodeMap == nullptr) throw INVALID_ARGUMENT_EXCEPTION("Nodemap pointer is NULL");
    const AutoLock lock(pNodeMap->GetLock());
    SetInfo(Engine::DescribeDevice(*pNodeMap));
    const Storing storing(*pNodeMap);
    Engine::FeatureStore store(Engine::EntryList(m_Names, m_Values), MaxNumPersistSkriptEntries,
                               pFeatureFilter);
    store.Store(*pNodeMap);
    return static_cast<int64_t>(store.Count());
}

bool CFeatureBag::LoadFromBag(INodeMap* pNodeMap, bool Verify, gcstring_vector* pErrorList) {
    if (pNodeMap == nullptr) throw INVALID_ARGUMENT_EXCEPTION("Nodemap pointer is NULL");
    const AutoLock lock(pNodeMap->GetLock());
    Engine::FeatureLoad load(*pNodeMap, Engine::EntryList(m_Names, m_Values), Verify);
    const bool isGood = load.Run();
    if (pErrorList != nullptr) *pErrorList = load.Errors();
    return isGood;
}

bool CFeatureBag::IsLine(const gcstring& Name, const gcstring& Value) {
    return Engine::IsLine(Name, Value);
}

gcstring CFeatureBag::InOneLine(const gcstring& Text) {
    return Engine::InOneLine(Text);
}

bool CFeatureBag::operator==(const CFeatureBag& FeatureBag) const {
    const auto isSame = [](const gcstring_vector& a, const gcstring_vector& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    };
    return isSame(m_Names, FeatureBag.m_Names) && isSame(m_Values, FeatureBag.m_Values);
}

gcstring CFeatureBag::ToString() {
    char address[2 + 2 * sizeof(void*) + 1];
    std::snprintf(address, sizeof address, "%p", static_cast<void*>(this));
    return address;
}

void CFeatureBag::Destroy() {
    m_Names.clear();
    m_Values.clear();
    m_Info = gcstring();
    m_BagName = gcstring();
}

const gcstring& CFeatureBag::GetBagName() const {
    return m_BagName;
}

void CFeatureBag::SetBagName(const gcstring& BagName) {
    m_BagName = BagName;
}

}  // namespace GENAPI_NAMESPACE
