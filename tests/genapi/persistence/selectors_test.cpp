// The counter over the values of selectors.
#include <string>
#include <vector>

#include <GenApi/SelectorSet.h>
#include <GenApi/SelectorState.h>
#include <gmock/gmock.h>

#include "tests/genapi/persistence/camera.h"

using namespace GENAPI_NAMESPACE;
using testing::ElementsAre;

namespace {

using test::Camera;

std::vector<std::string> StatesOf(CSelectorSet& selectors) {
    std::vector<std::string> states;
    bool more = selectors.SetFirst();
    for (; more && states.size() < 100; more = selectors.SetNext())
        states.push_back(selectors.ToString().c_str());
    return states;
}

TEST(SelectorSet, RunsThroughAvailableEntriesAndComesBack) {
    Camera camera;
    camera.Set("Sel", "B");
    CSelectorSet selectors(camera.map._GetNode("Gain"));
    EXPECT_FALSE(selectors.IsEmpty());
    EXPECT_THAT(StatesOf(selectors), ElementsAre("Sel=A", "Sel=B", "Sel=C"));
    EXPECT_EQ(camera.Get("Sel"), "A");
    EXPECT_TRUE(selectors.SetNext(false));
    EXPECT_EQ(camera.Get("Sel"), "A");
    selectors.Restore();
    EXPECT_EQ(camera.Get("Sel"), "B");
}

TEST(SelectorSet, InnerSelectorsRunFaster) {
    Camera camera;
    CSelectorSet selectors(camera.map._GetNode("LutValue"));
    EXPECT_THAT(StatesOf(selectors),
                ElementsAre("Bank=0\tLutIndex=0", "Bank=0\tLutIndex=1", "Bank=0\tLutIndex=2",
                            "Bank=1\tLutIndex=0", "Bank=1\tLutIndex=1", "Bank=1\tLutIndex=2"));
    FeatureList_t list;
    selectors.GetSelectorList(list);
    selectors.GetSelectorList(list, true);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0]->GetNode(), camera.map._GetNode("Bank"));
    CSelectorState state;
    selectors.GetState(state);
    EXPECT_EQ(state.GetSize(), 2u);
    EXPECT_STREQ(state.GetName(1), "LutIndex");
    EXPECT_STREQ(state.GetValue(1), "0");
}

TEST(SelectorSet, ASelectorThatCannotBeWrittenKeepsItsValue) {
    Camera camera;
    camera.Set("Sel", "C");
    camera.map._GetNode("Sel")->ImposeAccessMode(RO);
    CSelectorSet selectors(camera.map._GetNode("Gain"));
    camera.port.TakeTrace();
    EXPECT_THAT(StatesOf(selectors), ElementsAre("Sel=C"));
    selectors.Restore();
    EXPECT_EQ(camera.port.TakeTrace(), "");
}

TEST(SelectorSet, WithoutSelectorsThereIsOneCombination) {
    Camera camera;
    for (IBase* feature :
         {static_cast<IBase*>(nullptr), static_cast<IBase*>(camera.map._GetNode("Width"))}) {
        CSelectorSet selectors(feature);
        EXPECT_TRUE(selectors.IsEmpty());
        EXPECT_THAT(StatesOf(selectors), ElementsAre(""));
    }
}

TEST(SelectorSet, LongChainsOfSelectorsAreRefused) {
    std::string nodes = test::Features({"S0"});
    for (int i = 0; i < 1000; ++i)
        nodes += "<Integer Name='S" + std::to_string(i + 1) + "'><Value>0</Value><pSelected>S" +
                 std::to_string(i) + "</pSelected></Integer>";
    Camera camera(nodes + "<Port Name='Device'/><Integer Name='S0'><Value>0</Value></Integer>");
    EXPECT_THROW(CSelectorSet selectors(camera.map._GetNode("S0")),
                 GENICAM_NAMESPACE::RuntimeException);
}

}  // namespace
