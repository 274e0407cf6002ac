// Limits and conditions that go in circles, as descriptions of schema 1.0 may have them.
#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

class OldMap {
  public:
    explicit OldMap(const std::string& nodes) : map_("Cam") {
        map_._LoadXMLFromString(Document(nodes, 0).c_str());
    }

    IInteger& Integer(const char* name) const {
        return dynamic_cast<IInteger&>(*map_._GetNode(name));
    }
    EAccessMode Mode(const char* name) const { return map_._GetNode(name)->GetAccessMode(); }

  private:
    CNodeMapRef map_;
};

std::string Difference(const std::string& name, const std::string& variable) {
    return Named("IntSwissKnife", name,
                 "<pVariable Name='V'>" + variable + "</pVariable><Formula>100-V</Formula>");
}

std::string When(const std::string& name, const std::string& link, const std::string& condition,
                 int value) {
    return Named("Integer", name, Element(link, condition) + Element("Value", value));
}

// Formulas need values, not limits, so that nothing comes back to where it began.
TEST(Circles, OfLimits) {
    const OldMap map(Literal("Height", "4", Element("pMax", "HeightMax")) +
                     Difference("HeightMax", "Offset") +
                     Literal("Offset", "2", Element("pMax", "OffsetMax")) +
                     Difference("OffsetMax", "Height") + Literal("I", "7", Element("pMax", "I")));
    EXPECT_EQ(map.Mode("Height"), RW);
    EXPECT_EQ(map.Integer("Height").GetMax(), 98);
    EXPECT_EQ(map.Integer("Offset").GetMax(), 96);
    map.Integer("Offset").SetValue(96);
    EXPECT_EQ(map.Integer("Height").GetMax(), 4);
    EXPECT_EQ(map.Integer("I").GetMax(), 7);
}

// The mode of a node that is being computed does not restrict itself.
TEST(Circles, OfConditions) {
    const OldMap map(When("Free", "pIsLocked", "Free", 0) +
                     When("Locked", "pIsLocked", "Locked", 1) + When("A", "pIsAvailable", "B", 1) +
                     When("B", "pIsAvailable", "A", 1));
    EXPECT_EQ(map.Mode("Free"), RW);
    EXPECT_EQ(map.Mode("Locked"), RO);
    EXPECT_EQ(map.Mode("A"), RW);
}

}  // namespace
