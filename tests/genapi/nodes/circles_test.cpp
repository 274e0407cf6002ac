// Limits and conditions that go in circles, as descriptions of schema 1.0 may have them.
#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

class OldMap {
  public:
    explicit OldMap(const std::string& nodes) : map_("Cam") {
        map_._LoadXMLFromString(document(nodes, 0).c_str());
    }

    IInteger& integer(const char* name) const {
        return dynamic_cast<IInteger&>(*map_._GetNode(name));
    }
    EAccessMode mode(const char* name) const { return map_._GetNode(name)->GetAccessMode(); }

  private:
    CNodeMapRef map_;
};

std::string difference(const std::string& name, const std::string& variable) {
    return named("IntSwissKnife", name,
                 "<pVariable Name='V'>" + variable + "</pVariable><Formula>100-V</Formula>");
}

std::string when(const std::string& name, const std::string& link, const std::string& condition,
                 int value) {
    return named("Integer", name, element(link, condition) + element("Value", value));
}

// Formulas need values, not limits, so that nothing comes back to where it began.
TEST(Circles, OfLimits) {
    const OldMap map(literal("Height", "4", element("pMax", "HeightMax")) +
                     difference("HeightMax", "Offset") +
                     literal("Offset", "2", element("pMax", "OffsetMax")) +
                     difference("OffsetMax", "Height") + literal("I", "7", element("pMax", "I")));
    EXPECT_EQ(map.mode("Height"), RW);
    EXPECT_EQ(map.integer("Height").GetMax(), 98);
    EXPECT_EQ(map.integer("Offset").GetMax(), 96);
    map.integer("Offset").SetValue(96);
    EXPECT_EQ(map.integer("Height").GetMax(), 4);
    EXPECT_EQ(map.integer("I").GetMax(), 7);
}

// The mode of a node that is being computed does not restrict itself.
TEST(Circles, OfConditions) {
    const OldMap map(when("Free", "pIsLocked", "Free", 0) +
                     when("Locked", "pIsLocked", "Locked", 1) + when("A", "pIsAvailable", "B", 1) +
                     when("B", "pIsAvailable", "A", 1));
    EXPECT_EQ(map.mode("Free"), RW);
    EXPECT_EQ(map.mode("Locked"), RO);
    EXPECT_EQ(map.mode("A"), RW);
}

}  // namespace
