#include "producers/simulator/features/usersets.h"

#include "producers/server/base/error.h"
#include "producers/simulator/features/categories.h"

namespace ZelSim {

using ZelCti::Access;
using ZelCti::CommandValue;
using ZelCti::Entry;
using ZelCti::Error;
using ZelCti::FeatureTable;

namespace {

constexpr uint32_t kSaveTime = 300;  // ms

std::vector<Entry> UserSetEntries() {
    return {{"Default", 0, "The settings at power-on, which cannot be saved over."},
            {"UserSet0", 1, "The first set of the user."},
            {"UserSet1", 2, "The second set of the user."}};
}

}  // namespace

void UserSets::Load(size_t index) {
    control_.ChangeFixed([&](FrameSettings& settings) {
        const LinkPace link = settings.link;  // no setting of the user
        settings = memory_.userSets.at(index);
        settings.link = link;
    });
}

void UserSets::Save(size_t index) {
    if (index == 0) throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the factory's settings stay");
    memory_.userSets.at(index) = *control_.Settings();
}

void AddUserSetControl(FeatureTable& features, UserSets& userSets) {
    features.Category("UserSetControl", "Sets of settings.");
    features.Enumeration("UserSetSelector", "The set that is loaded or saved.")
        .Entries(UserSetEntries())
        .Local(0);
    features.Command("UserSetLoad", "Brings the selected set into effect.")
        .SelectedBy("UserSetSelector")
        .LockedBy("FrameSettingsLocked")
        .At(0x2510)
        .Access(Access::WriteOnly)
        .Indexed("UserSetSelectorValue", UserSets::kCount, [&userSets](size_t i) {
            return CommandValue([&userSets, i] { userSets.Load(i); });
        });
    features.Command("UserSetSave", "Keeps the settings in the selected set.")
        .SelectedBy("UserSetSelector")
        .LockedBy("UserSetIsFixed")
        .At(0x2520)
        .Access(Access::WriteOnly)
        .Takes(kSaveTime)
        .Indexed("UserSetSelectorValue", UserSets::kCount, [&userSets](size_t i) {
            return CommandValue([&userSets, i] { userSets.Save(i); });
        });
    features.IntSwissKnife("UserSetIsFixed")
        .Variables({{"SELECTOR", "UserSetSelectorValue"}})
        .Formula("SELECTOR = 0");
    features.Enumeration("UserSetDefault", "The set with which the camera starts after a reset.")
        .Expert()
        .At(0x2504)
        .Entries(UserSetEntries())
        .Get([&userSets] { return userSets.Default(); })
        .Check([](uint64_t index) {
            if (index < UserSets::kCount) return;
            throw Error(GenTL::GC_ERR_INVALID_VALUE, "not that many user sets");
        })
        .Set([&userSets](uint64_t index) { userSets.SetDefault(index); });
}

}  // namespace ZelSim
