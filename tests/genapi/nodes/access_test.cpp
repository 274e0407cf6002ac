// Access modes: how they combine, when they are computed anew, and what an unverified write skips.
#include <string>

#include <GenApi/NodeCallback.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

std::string node(const std::string& kind, const std::string& name, const std::string& conditions,
                 const std::string& source) {
    return named(kind, name, conditions + source);
}
std::string whenLocked(const char* by) {
    return element("pIsLocked", by);
}
std::string whenAvailable(const char* by) {
    return element("pIsAvailable", by);
}
std::string whenImplemented(const char* by) {
    return element("pIsImplemented", by);
}
std::string imposed(const char* mode) {
    return element("ImposedAccessMode", mode);
}
const std::string kEntry = entry("A", 1);
const std::string kConditions =
    kPort + node("Integer", "Zero", "", element("Value", 0)) +
    node("Integer", "One", "", element("Value", 1)) +
    node("Integer", "Two", "", element("Value", 2)) +
    node("Boolean", "False", "", element("Value", "false")) +
    node("Enumeration", "List", "", kEntry + element("Value", 1)) +
    named("IntReg", "Write", registerAt(8, 4, "WO") + kLittle) +
    node("Integer", "Absent", whenAvailable("Zero"), element("Value", 1)) +
    node("Integer", "Missing", whenImplemented("Zero"), element("Value", 1));

TEST(AccessMode, OfConditionsAndWhatIsImposed) {
    const struct {
        std::string conditions;
        const char* access;  // of the register below
        EAccessMode mode;
    } cases[] = {
        {"", "RW", RW},
        {"", "WO", WO},
        {whenImplemented("Zero"), "RW", NI},
        {whenImplemented("Two"), "RW", RW},
        {whenImplemented("Write"), "RW", NA},
        {whenImplemented("Zero") + whenAvailable("Zero"), "RO", NI},
        {whenAvailable("False"), "RW", NA},
        {whenAvailable("List"), "RO", RO},
        {whenAvailable("Write"), "RW", NA},
        {whenAvailable("Absent"), "RW", NA},
        {whenAvailable("Missing"), "RW", NI},
        {whenLocked("One"), "RW", RO},
        {whenLocked("Two"), "WO", NA},
        {whenLocked("List"), "RO", RO},
        {whenLocked("Zero"), "RW", RW},
        {whenLocked("Write"), "RW", NA},
        {whenLocked("Write"), "RO", RO},
        {whenLocked("Absent"), "RO", NA},
        {imposed("RO"), "RW", RO},
        {imposed("RO"), "WO", NA},
        {imposed("WO"), "RW", WO},
        {whenLocked("One") + imposed("WO"), "RW", NA},
    };
    for (const auto& c : cases) {
        TestMap map(kConditions + node("Integer", "I", c.conditions, element("pValue", "R")) +
                    named("IntReg", "R", registerAt(0, 4, c.access) + kLittle));
        EXPECT_EQ(map.mode("I"), c.mode) << c.conditions << c.access;
    }
}

TEST(AccessMode, OfWhatAValueRestsOn) {
    const struct {
        const char* name;
        std::string nodes;
        EAccessMode mode;
    } cases[] = {
        {"R", named("IntReg", "R", registerAt(0, 4, "RW", "One") + kLittle), RW},
        {"R",
         "<Port Name='Open'/>" + named("IntReg", "R", registerAt(0, 4, "RW", "Open") + kLittle),
         NI},
        {"R", named("IntReg", "R", registerAt("<pAddress>Absent</pAddress>", 4) + kLittle), NA},
        {"I", node("Integer", "I", "", "<Value>1</Value><pMax>Absent</pMax>"), NA},
        {"I", node("Integer", "I", "", "<Value>1</Value><pMin>Absent</pMin>"), NA},
        {"E", node("Enumeration", "E", "", kEntry + "<pValue>Absent</pValue>"), NA},
        {"E", node("Enumeration", "E", "", kEntry + "<pValue>Write</pValue>"), WO},
        {"C",
         named("Converter", "C",
               "<pVariable Name='V'>Write</pVariable><FormulaTo>FROM</FormulaTo>"
               "<FormulaFrom>TO+V</FormulaFrom><pValue>One</pValue>"),
         RW},
        {"C",
         named("IntConverter", "C",
               "<pVariable Name='V'>Missing</pVariable><FormulaTo>FROM</FormulaTo>"
               "<FormulaFrom>TO+V</FormulaFrom><pValue>One</pValue>"),
         NI},
        {"G", "<Category Name='G'/>", NI},
        {"G", named("Category", "G", "<pFeature>Missing</pFeature>"), NI},
        {"G", named("Category", "G", "<pFeature>Missing</pFeature><pFeature>Absent</pFeature>"),
         RO},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TestMap(kConditions + c.nodes).mode(c.name), c.mode) << c.nodes;
    EXPECT_EQ(TestMap("<Category Name='G'/>").node("G").GetVisibility(), Invisible);
}

TEST(AccessMode, IsDroppedWithWhatItRestsOn) {
    const std::string fresh = "<Cachable>NoCache</Cachable>";
    TestMap map(kConditions + node("Integer", "I", whenLocked("Zero"), "<pValue>R</pValue>") +
                intReg("R", 0) + node("Integer", "J", whenAvailable("Fresh"), "<Value>1</Value>") +
                named("IntReg", "Fresh", registerAt(4, 4) + fresh + kLittle));
    EXPECT_EQ(map.mode("I"), RW);
    map.set("Zero", "1");
    EXPECT_EQ(map.mode("I"), RO);
    EXPECT_EQ(map.node("I").IsAccessModeCacheable(), Yes);
    map.set("Zero", "0");
    EXPECT_EQ(map.mode("I"), RW);
    map.node("I").ImposeAccessMode(RO);
    EXPECT_EQ(map.mode("I"), RO);
    map.node("I").ImposeAccessMode(RW);
    EXPECT_EQ(map.mode("I"), RW);
    map.node("R").ImposeAccessMode(WO);
    EXPECT_EQ(map.mode("I"), WO);
    map.node("R").ImposeAccessMode(_UndefinedAccesMode);
    EXPECT_EQ(map.mode("I"), RW);
    map.map._Connect(static_cast<IPort*>(nullptr));
    EXPECT_EQ(map.mode("I"), NI);
    map.map._Connect(&map.port);
    EXPECT_EQ(map.mode("I"), RW);

    EXPECT_EQ(map.node("J").IsAccessModeCacheable(), No);
    EXPECT_EQ(map.mode("J"), NA);
    map.port.fill(4, {1});
    EXPECT_EQ(map.mode("J"), RW) << "nothing told the map";
}

TEST(AccessMode, UnverifiedWritesSkipLocksAndAvailability) {
    const std::string refused = "AccessException: Node is not writable.";
    const std::string below = "<pValue>R</pValue>";
    const std::string readOnly = named("IntReg", "X", registerAt(4, 4, "RO") + kLittle);
    const struct {
        std::string node;
        const char* value;
        std::string relaxed;
    } cases[] = {
        {node("Integer", "X", whenLocked("One"), below), "1", "nothing"},
        {node("Integer", "X", whenAvailable("Zero"), below), "1", "nothing"},
        {node("Float", "X", whenLocked("One"), below), "1", "nothing"},
        {node("Boolean", "X", whenLocked("One"), below), "1", "nothing"},
        {node("Enumeration", "X", whenLocked("One"), kEntry + below), "A", "nothing"},
        {node("String", "X", whenLocked("One"), "<pValue>S</pValue>"), "t", "nothing"},
        {node("IntReg", "X", whenLocked("One"), registerAt(0, 4, "WO") + kLittle), "1", "nothing"},
        {node("Integer", "X", whenImplemented("Zero"), below), "1", refused},
        {node("Integer", "X", imposed("RO"), below), "1", refused},
        {readOnly, "1", refused},
        {node("Command", "X", whenLocked("One"), below + "<CommandValue>1</CommandValue>"), "1",
         refused},
    };
    for (const auto& c : cases) {
        TestMap map(kConditions + intReg("R", 0) + named("StringReg", "S", registerAt(16, 4)) +
                    c.node);
        SCOPED_TRACE(c.node);
        EXPECT_THAT(errorOf([&] { map.set("X", c.value); }),
                    testing::StartsWith("AccessException: Node is not writable"));
        EXPECT_EQ(map.port.trace, "");
        EXPECT_EQ(errorOf([&] { map.as<IValue>("X").FromString(c.value, false); }), c.relaxed);
        EXPECT_EQ(map.port.trace.empty(), c.relaxed != "nothing");
    }
}

TEST(AccessMode, TextsOfRefusal) {
    TestMap map(kConditions + named("IntReg", "R", registerAt(0, 4, "RO") + kLittle) +
                named("StringReg", "S", registerAt(0, 4, "RO")) +
                named("StringReg", "T", registerAt(0, 4, "WO")) +
                node("Float", "F", whenAvailable("Zero"), element("Value", 1)));
    const auto refused = [](const char* text) {
        return "AccessException: Node is not " + std::string(text);
    };
    EXPECT_EQ(errorOf([&] { map.integer("Write").GetValue(); }), refused("readable."));
    EXPECT_EQ(errorOf([&] { map.get("Write"); }), refused("readable"));
    EXPECT_EQ(errorOf([&] { map.get("F"); }), refused("readable"));
    EXPECT_EQ(errorOf([&] { map.get("T"); }), refused("readable"));
    EXPECT_EQ(errorOf([&] { map.integer("R").SetValue(1); }), refused("writable."));
    EXPECT_EQ(errorOf([&] { map.as<IString>("S").SetValue("x"); }), refused("writable"));
    EXPECT_EQ(errorOf([&] { map.integer("Absent").GetMax(); }), refused("available."));
    EXPECT_EQ(errorOf([&] { map.integer("Absent").GetInc(); }), refused("available."));
    EXPECT_EQ(errorOf([&] { map.floating("F").GetMin(); }), refused("available."));
    EXPECT_EQ(map.integer("Write").GetMin(), 0) << "write-only nodes have limits";
}

TEST(AccessMode, IsAskedOnceByAReadThatNamesItsOwnCall) {
    TestMap map(
        kConditions +
        named("IntReg", "State", registerAt(0, 4) + element("Cachable", "NoCache") + kLittle) +
        node("Integer", "Guarded", whenAvailable("State"), element("Value", 1)) +
        node("Integer", "Set", "", element("Value", 1)));
    const auto refusal = [&] {
        try {
            map.get("Guarded");
        } catch (const GENICAM_NAMESPACE::AccessException& e) {
            return std::string(e.what());
        }
        return std::string("nothing");
    };
    const auto named = testing::HasSubstr("in node 'Guarded' while calling 'Guarded.ToString()'");
    EXPECT_THAT(refusal(), named);
    EXPECT_EQ(map.port.takeTrace(), "R0 ");
    std::string inside;
    Register(
        &map.node("Set"), [&](INode*) { inside = refusal(); }, cbPostInsideLock);
    map.set("Set", "2");
    EXPECT_THAT(inside, named);
    map.port.memory[0] = 1;
    EXPECT_EQ(map.get("Guarded"), "1");
    EXPECT_EQ(map.port.takeTrace(), "R0 R0 ");
}

}  // namespace
