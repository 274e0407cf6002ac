// Access modes: how they combine, when they are computed anew, and what an unverified write skips.
#include <string>

#include <GenApi/NodeCallback.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

std::string Node(const std::string& kind, const std::string& name, const std::string& conditions,
                 const std::string& source) {
    return Named(kind, name, conditions + source);
}
std::string WhenLocked(const char* by) {
    return Element("pIsLocked", by);
}
std::string WhenAvailable(const char* by) {
    return Element("pIsAvailable", by);
}
std::string WhenImplemented(const char* by) {
    return Element("pIsImplemented", by);
}
std::string Imposed(const char* mode) {
    return Element("ImposedAccessMode", mode);
}
const std::string kEntry = Entry("A", 1);
const std::string kConditions =
    kPort + Node("Integer", "Zero", "", Element("Value", 0)) +
    Node("Integer", "One", "", Element("Value", 1)) +
    Node("Integer", "Two", "", Element("Value", 2)) +
    Node("Boolean", "False", "", Element("Value", "false")) +
    Node("Enumeration", "List", "", kEntry + Element("Value", 1)) +
    Named("IntReg", "Write", RegisterAt(8, 4, "WO") + kLittle) +
    Node("Integer", "Absent", WhenAvailable("Zero"), Element("Value", 1)) +
    Node("Integer", "Missing", WhenImplemented("Zero"), Element("Value", 1));

TEST(AccessMode, OfConditionsAndWhatIsImposed) {
    const struct {
        std::string conditions;
        const char* access;  // of the register below
        EAccessMode mode;
    } cases[] = {
        {"", "RW", RW},
        {"", "WO", WO},
        {WhenImplemented("Zero"), "RW", NI},
        {WhenImplemented("Two"), "RW", RW},
        {WhenImplemented("Write"), "RW", NA},
        {WhenImplemented("Zero") + WhenAvailable("Zero"), "RO", NI},
        {WhenAvailable("False"), "RW", NA},
        {WhenAvailable("List"), "RO", RO},
        {WhenAvailable("Write"), "RW", NA},
        {WhenAvailable("Absent"), "RW", NA},
        {WhenAvailable("Missing"), "RW", NI},
        {WhenLocked("One"), "RW", RO},
        {WhenLocked("Two"), "WO", NA},
        {WhenLocked("List"), "RO", RO},
        {WhenLocked("Zero"), "RW", RW},
        {WhenLocked("Write"), "RW", NA},
        {WhenLocked("Write"), "RO", RO},
        {WhenLocked("Absent"), "RO", NA},
        {Imposed("RO"), "RW", RO},
        {Imposed("RO"), "WO", NA},
        {Imposed("WO"), "RW", WO},
        {WhenLocked("One") + Imposed("WO"), "RW", NA},
    };
    for (const auto& c : cases) {
        TestMap map(kConditions + Node("Integer", "I", c.conditions, Element("pValue", "R")) +
                    Named("IntReg", "R", RegisterAt(0, 4, c.access) + kLittle));
        EXPECT_EQ(map.Mode("I"), c.mode) << c.conditions << c.access;
    }
}

TEST(AccessMode, OfWhatAValueRestsOn) {
    const struct {
        const char* name;
        std::string nodes;
        EAccessMode mode;
    } cases[] = {
        {"R", Named("IntReg", "R", RegisterAt(0, 4, "RW", "One") + kLittle), RW},
        {"R",
         "<Port Name='Open'/>" + Named("IntReg", "R", RegisterAt(0, 4, "RW", "Open") + kLittle),
         NI},
        {"R", Named("IntReg", "R", RegisterAt("<pAddress>Absent</pAddress>", 4) + kLittle), NA},
        {"I", Node("Integer", "I", "", "<Value>1</Value><pMax>Absent</pMax>"), NA},
        {"I", Node("Integer", "I", "", "<Value>1</Value><pMin>Absent</pMin>"), NA},
        {"E", Node("Enumeration", "E", "", kEntry + "<pValue>Absent</pValue>"), NA},
        {"E", Node("Enumeration", "E", "", kEntry + "<pValue>Write</pValue>"), WO},
        {"C",
         Named("Converter", "C",
               "<pVariable Name='V'>Write</pVariable><FormulaTo>FROM</FormulaTo>"
               "<FormulaFrom>TO+V</FormulaFrom><pValue>One</pValue>"),
         RW},
        {"C",
         Named("IntConverter", "C",
               "<pVariable Name='V'>Missing</pVariable><FormulaTo>FROM</FormulaTo>"
               "<FormulaFrom>TO+V</FormulaFrom><pValue>One</pValue>"),
         NI},
        {"G", "<Category Name='G'/>", NI},
        {"G", Named("Category", "G", "<pFeature>Missing</pFeature>"), NI},
        {"G", Named("Category", "G", "<pFeature>Missing</pFeature><pFeature>Absent</pFeature>"),
         RO},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TestMap(kConditions + c.nodes).Mode(c.name), c.mode) << c.nodes;
    EXPECT_EQ(TestMap("<Category Name='G'/>").Node("G").GetVisibility(), Invisible);
}

TEST(AccessMode, IsDroppedWithWhatItRestsOn) {
    const std::string fresh = "<Cachable>NoCache</Cachable>";
    TestMap map(kConditions + Node("Integer", "I", WhenLocked("Zero"), "<pValue>R</pValue>") +
                IntReg("R", 0) + Node("Integer", "J", WhenAvailable("Fresh"), "<Value>1</Value>") +
                Named("IntReg", "Fresh", RegisterAt(4, 4) + fresh + kLittle));
    EXPECT_EQ(map.Mode("I"), RW);
    map.Set("Zero", "1");
    EXPECT_EQ(map.Mode("I"), RO);
    EXPECT_EQ(map.Node("I").IsAccessModeCacheable(), Yes);
    map.Set("Zero", "0");
    EXPECT_EQ(map.Mode("I"), RW);
    map.Node("I").ImposeAccessMode(RO);
    EXPECT_EQ(map.Mode("I"), RO);
    map.Node("I").ImposeAccessMode(RW);
    EXPECT_EQ(map.Mode("I"), RW);
    map.Node("R").ImposeAccessMode(WO);
    EXPECT_EQ(map.Mode("I"), WO);
    map.Node("R").ImposeAccessMode(_UndefinedAccesMode);
    EXPECT_EQ(map.Mode("I"), RW);
    map.map._Connect(static_cast<IPort*>(nullptr));
    EXPECT_EQ(map.Mode("I"), NI);
    map.map._Connect(&map.port);
    EXPECT_EQ(map.Mode("I"), RW);

    EXPECT_EQ(map.Node("J").IsAccessModeCacheable(), No);
    EXPECT_EQ(map.Mode("J"), NA);
    map.port.Fill(4, {1});
    EXPECT_EQ(map.Mode("J"), RW) << "nothing told the map";
}

TEST(AccessMode, UnverifiedWritesSkipLocksAndAvailability) {
    const std::string refused = "AccessException: Node is not writable.";
    const std::string below = "<pValue>R</pValue>";
    const std::string readOnly = Named("IntReg", "X", RegisterAt(4, 4, "RO") + kLittle);
    const struct {
        std::string node;
        const char* value;
        std::string relaxed;
    } cases[] = {
        {Node("Integer", "X", WhenLocked("One"), below), "1", "nothing"},
        {Node("Integer", "X", WhenAvailable("Zero"), below), "1", "nothing"},
        {Node("Float", "X", WhenLocked("One"), below), "1", "nothing"},
        {Node("Boolean", "X", WhenLocked("One"), below), "1", "nothing"},
        {Node("Enumeration", "X", WhenLocked("One"), kEntry + below), "A", "nothing"},
        {Node("String", "X", WhenLocked("One"), "<pValue>S</pValue>"), "t", "nothing"},
        {Node("IntReg", "X", WhenLocked("One"), RegisterAt(0, 4, "WO") + kLittle), "1", "nothing"},
        {Node("Integer", "X", WhenImplemented("Zero"), below), "1", refused},
        {Node("Integer", "X", Imposed("RO"), below), "1", refused},
        {readOnly, "1", refused},
        {Node("Command", "X", WhenLocked("One"), below + "<CommandValue>1</CommandValue>"), "1",
         refused},
    };
    for (const auto& c : cases) {
        TestMap map(kConditions + IntReg("R", 0) + Named("StringReg", "S", RegisterAt(16, 4)) +
                    c.node);
        SCOPED_TRACE(c.node);
        EXPECT_THAT(ErrorOf([&] { map.Set("X", c.value); }),
                    testing::StartsWith("AccessException: Node is not writable"));
        EXPECT_EQ(map.port.trace, "");
        EXPECT_EQ(ErrorOf([&] { map.As<IValue>("X").FromString(c.value, false); }), c.relaxed);
        EXPECT_EQ(map.port.trace.empty(), c.relaxed != "nothing");
    }
}

TEST(AccessMode, TextsOfRefusal) {
    TestMap map(kConditions + Named("IntReg", "R", RegisterAt(0, 4, "RO") + kLittle) +
                Named("StringReg", "S", RegisterAt(0, 4, "RO")) +
                Named("StringReg", "T", RegisterAt(0, 4, "WO")) +
                Node("Float", "F", WhenAvailable("Zero"), Element("Value", 1)));
    const auto refused = [](const char* text) {
        return "AccessException: Node is not " + std::string(text);
    };
    EXPECT_EQ(ErrorOf([&] { map.Integer("Write").GetValue(); }), refused("readable."));
    EXPECT_EQ(ErrorOf([&] { map.Get("Write"); }), refused("readable"));
    EXPECT_EQ(ErrorOf([&] { map.Get("F"); }), refused("readable"));
    EXPECT_EQ(ErrorOf([&] { map.Get("T"); }), refused("readable"));
    EXPECT_EQ(ErrorOf([&] { map.Integer("R").SetValue(1); }), refused("writable."));
    EXPECT_EQ(ErrorOf([&] { map.As<IString>("S").SetValue("x"); }), refused("writable"));
    EXPECT_EQ(ErrorOf([&] { map.Integer("Absent").GetMax(); }), refused("available."));
    EXPECT_EQ(ErrorOf([&] { map.Integer("Absent").GetInc(); }), refused("available."));
    EXPECT_EQ(ErrorOf([&] { map.Floating("F").GetMin(); }), refused("available."));
    EXPECT_EQ(map.Integer("Write").GetMin(), 0) << "write-only nodes have limits";
}

TEST(AccessMode, IsAskedOnceByAReadThatNamesItsOwnCall) {
    TestMap map(
        kConditions +
        Named("IntReg", "State", RegisterAt(0, 4) + Element("Cachable", "NoCache") + kLittle) +
        Node("Integer", "Guarded", WhenAvailable("State"), Element("Value", 1)) +
        Node("Integer", "Set", "", Element("Value", 1)));
    const auto refusal = [&] {
        try {
            map.Get("Guarded");
        } catch (const GENICAM_NAMESPACE::AccessException& e) {
            return std::string(e.what());
        }
        return std::string("nothing");
    };
    const auto named = testing::HasSubstr("in node 'Guarded' while calling 'Guarded.ToString()'");
    EXPECT_THAT(refusal(), named);
    EXPECT_EQ(map.port.TakeTrace(), "R0 ");
    std::string inside;
    Register(
        &map.Node("Set"), [&](INode*) { inside = refusal(); }, cbPostInsideLock);
    map.Set("Set", "2");
    EXPECT_THAT(inside, named);
    map.port.memory[0] = 1;
    EXPECT_EQ(map.Get("Guarded"), "1");
    EXPECT_EQ(map.port.TakeTrace(), "R0 R0 ");
}

}  // namespace
