// Access modes: what each node that another one reads means for it, in which order the device is
// asked, and modes that cannot be computed.
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

// An Integer of each mode, by the name of the mode and a letter before it.
std::string ofEachMode(const std::string& letter, int value) {
    const std::string text = element("Value", value);
    return named("Integer", letter + "NI", element("pIsImplemented", "Zero") + text) +
           named("Integer", letter + "NA", element("pIsAvailable", "Zero") + text) +
           named("Integer", letter + "WO", element("ImposedAccessMode", "WO") + text) +
           named("Integer", letter + "RO", element("ImposedAccessMode", "RO") + text) +
           named("Integer", letter + "RW", text);
}
const std::string kEachMode =
    kPort + literal("Zero", "0") + ofEachMode("A", 5) + ofEachMode("B", 5);

std::string converterReading(const std::string& name, const std::string& variable,
                             const std::string& below) {
    return named("Converter", name,
                 "<pVariable Name='V'>" + variable +
                     "</pVariable><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>" +
                     element("pValue", below));
}

// What a node is over A, by the mode of the node B that it reads, which stands for "@" in it.
TEST(AccessRules, WhateverANodeReadsRestrictsIt) {
    const auto value = [](const std::string& a) { return element("pValue", a); };
    const struct {
        const char* link;
        std::string a;
        std::string node;
        EAccessMode ni, na, wo, ro, rw;  // for each mode of B
    } cases[] = {
        {"pMin", "ARW", named("Integer", "X", value("ARW") + "<pMin>@</pMin>"), NI, NA, RW, RW, RW},
        {"pMax", "ANA", named("Float", "X", value("ANA") + "<pMax>@</pMax>"), NI, NA, NA, NA, NA},
        {"pInc", "ARO", named("Integer", "X", value("ARO") + "<pInc>@</pInc>"), NI, NA, RO, RO, RO},
        {"pBlockPolling", "AWO",
         named("Integer", "X", "<pBlockPolling>@</pBlockPolling>" + value("AWO")), NI, NA, WO, WO,
         WO},
        {"pVariable", "ARW", converterReading("X", "@", "ARW"), NI, NA, RW, RW, RW},
        {"pVariable", "ARW",
         named("IntSwissKnife", "X", "<pVariable Name='V'>@</pVariable><Formula>V</Formula>"), NI,
         NA, RO, RO, RO},
        {"pIsImplemented", "ARW",
         named("Integer", "X", "<pIsImplemented>@</pIsImplemented>" + value("ARW")), NI, NA, NA, RW,
         RW},
        {"pIsAvailable", "ANA",
         named("Integer", "X", "<pIsAvailable>@</pIsAvailable>" + value("ANA")), NI, NA, NA, NA,
         NA},
        {"pIsLocked", "ARW", named("Integer", "X", "<pIsLocked>@</pIsLocked>" + value("ARW")), NI,
         NA, NA, RO, RO},
        {"pIsLocked", "ARO", named("Integer", "X", "<pIsLocked>@</pIsLocked>" + value("ARO")), NI,
         NA, RO, RO, RO},
        {"pValueCopy", "ARW", named("Integer", "X", value("ARW") + "<pValueCopy>@</pValueCopy>"),
         NI, NA, RW, RO, RW},
        {"pValueCopy", "AWO", named("Integer", "X", value("AWO") + "<pValueCopy>@</pValueCopy>"),
         NI, NA, WO, NA, WO},
        {"pCommandValue", "ARW",
         named("Command", "X", value("ARW") + "<pCommandValue>@</pCommandValue>"), NI, NA, NA, RW,
         RW},
        {"pIndex", "ARO",
         named("Integer", "X",
               "<pIndex>@</pIndex><pValueIndexed Index='5'>ARO</pValueIndexed>"
               "<ValueDefault>1</ValueDefault>"),
         NI, NA, NA, RO, RO},
        {"condition of the only entry", "ARW",
         named("Enumeration", "X",
               named("EnumEntry", "E", "<pIsAvailable>@</pIsAvailable><Value>5</Value>") +
                   value("ARW")),
         NI, NA, NA, RW, RW},
        {"pAddress", "", named("IntReg", "X", registerAt("<pAddress>@</pAddress>", 4) + kLittle),
         NI, NA, RW, RW, RW},
        {"pIndex and pOffset of a register", "",
         named("IntReg", "X", registerAt("<pIndex pOffset='@'>ARW</pIndex>", 4) + kLittle), NI, NA,
         RW, RW, RW},
        {"pLength", "",
         named("Register", "X",
               "<Address>0</Address><pLength>@</pLength><AccessMode>RW</AccessMode>"
               "<pPort>Device</pPort>"),
         NI, NA, RW, RW, RW},
    };
    for (const auto& c : cases) {
        const std::pair<const char*, EAccessMode> modes[] = {
            {"BNI", c.ni}, {"BNA", c.na}, {"BWO", c.wo}, {"BRO", c.ro}, {"BRW", c.rw}};
        for (const auto& [name, expected] : modes) {
            std::string node = c.node;
            node.replace(node.find('@'), 1, name);
            EXPECT_EQ(TestMap(kEachMode + node).mode("X"), expected)
                << c.link << " " << name << " over " << c.a;
        }
    }
}

TEST(AccessRules, AnErrorNodeRestrictsToo) {
    const std::string zero = literal("Zero", "0");
    const auto over = [&](const std::string& condition) {
        return TestMap(zero +
                       named("Enumeration", "Errors",
                             condition + entry("None", 0) + element("Value", 0)) +
                       named("Integer", "X", "<pError>Errors</pError><Value>1</Value>"))
            .mode("X");
    };
    EXPECT_EQ(over(""), RW);
    EXPECT_EQ(over("<pIsAvailable>Zero</pIsAvailable>"), NA);
    EXPECT_EQ(over("<pIsImplemented>Zero</pIsImplemented>"), NI);
}

// A number picked by an index is what it picks: neither its conditions nor its limits count.
TEST(AccessRules, AnIndexedNumberHasTheModeOfWhatItPicks) {
    const std::string indexed =
        "<pIndex>Five</pIndex><pValueIndexed Index='5'>ARO</pValueIndexed>"
        "<ValueDefault>1</ValueDefault>";
    const std::string nodes =
        kEachMode + literal("Five", "5") +
        named("Integer", "I", "<pIsImplemented>Zero</pIsImplemented>" + indexed) +
        named("Float", "F", "<pIsAvailable>Zero</pIsAvailable>" + indexed + "<pMax>BNI</pMax>") +
        named("Integer", "W", "<ImposedAccessMode>WO</ImposedAccessMode>" + indexed) +
        named(
            "IntReg", "R",
            "<pIsAvailable>Zero</pIsAvailable>" + registerAt("<pIndex>Five</pIndex>", 4) + kLittle);
    TestMap map(nodes);
    EXPECT_EQ(map.mode("I"), RO);
    EXPECT_EQ(map.mode("F"), RO);
    EXPECT_EQ(map.mode("W"), NA) << "what is imposed counts";
    EXPECT_EQ(map.mode("R"), NA) << "a register is no such number";
    map.set("Five", "4");
    EXPECT_EQ(map.mode("I"), RW);
}

// The modes of all nodes that are read come first, then what the conditions say, then the entries.
TEST(AccessRules, TheDeviceIsAskedInOneOrder) {
    const auto guarded = [](const char* name, const char* by) {
        return named("Integer", name, element("pIsAvailable", by) + "<Value>1</Value>");
    };
    const std::string conditions =
        "<pIsImplemented>R4</pIsImplemented><pIsAvailable>R5</pIsAvailable>"
        "<pIsLocked>R6</pIsLocked>";
    TestMap map(kPort + intReg("R1", 1) + intReg("R2", 2) + intReg("R3", 3) + intReg("R4", 4) +
                intReg("R5", 5) + intReg("R6", 6) + guarded("Source", "R1") +
                guarded("Limit", "R2") +
                named("Integer", "X", conditions + "<pValue>Source</pValue><pMax>Limit</pMax>") +
                named("Enumeration", "E",
                      conditions + "<EnumEntry Name='A'><pIsAvailable>R3</pIsAvailable>"
                                   "<Value>0</Value></EnumEntry><pValue>Source</pValue>") +
                named("Integer", "Fixed",
                      "<pIsLocked>R6</pIsLocked><ImposedAccessMode>RO</ImposedAccessMode>"
                      "<Value>1</Value>"));
    for (int address = 1; address <= 6; ++address)
        map.port.memory[address] = 1;
    const auto asked = [&](const char* name) {
        map.map._InvalidateNodes();
        map.port.takeTrace();
        map.mode(name);
        return map.port.takeTrace();
    };
    EXPECT_EQ(asked("X"), "R1 R2 R4 R5 R6 ");
    EXPECT_EQ(asked("E"), "R1 R4 R5 R6 R3 ");
    EXPECT_EQ(asked("Fixed"), "") << "a lock does not matter where nothing can be written";
    map.port.memory = {};
    EXPECT_EQ(asked("Limit"), "R2 ");
    EXPECT_EQ(asked("X"), "R1 R2 R4 ") << "not implemented";
}

TEST(AccessRules, AChunkPortIsNotAvailableBeforeItsChunk) {
    const auto chunk = [](const char* name, const std::string& inside) {
        return named("Port", name, inside);
    };
    TestMap map(literal("Zero", "0") + literal("Id", "10", "", "String") +
                literal("None", "", "", "String") + chunk("Fixed", "<ChunkID>10</ChunkID>") +
                chunk("Named", "<pChunkID>Id</pChunkID>") + chunk("Empty", "<ChunkID/>") +
                chunk("Unnamed", "<pChunkID>None</pChunkID>") +
                chunk("Event", "<EventID>10</EventID>") +
                chunk("Missing", "<pIsImplemented>Zero</pIsImplemented><ChunkID>10</ChunkID>") +
                named("IntReg", "R", registerAt(0, 4, "RO", "Fixed") + kLittle));
    EXPECT_EQ(map.mode("Fixed"), NA);
    EXPECT_EQ(map.mode("R"), NA);
    EXPECT_EQ(map.mode("Named"), NA);
    for (const char* name : {"Empty", "Unnamed", "Event", "Missing"})
        EXPECT_EQ(map.mode(name), NI) << name;
}

TEST(AccessRules, ANodeThatIsNoPortIsNotUsedAsOne) {
    TestMap map(
        literal("Zero", "0") + literal("Off", "0") +
        named("IntSwissKnife", "Bad",
              "<pVariable Name='Z'>Zero</pVariable><Formula>1/Z</Formula>") +
        named("IntReg", "R", registerAt(0, 4, "RW", "Zero") + kLittle) +
        named("IntReg", "Guarded",
              "<pIsAvailable>Bad</pIsAvailable>" + registerAt(0, 4, "RW", "Zero") + kLittle));
    const std::string noPort = "AccessException: CRegisterImpl::InternalGet : port not set";
    EXPECT_EQ(map.mode("R"), RW);
    EXPECT_EQ(errorOf([&] { map.get("R"); }), noPort);
    EXPECT_EQ(errorOf([&] { map.set("R", "1"); }),
              "AccessException: CRegisterImpl::InternalSet : port not set");
    EXPECT_THAT(errorOf([&] { map.get("Guarded"); }), testing::HasSubstr("#Infinity somewhere!"));
    EXPECT_EQ(errorOf([&] { map.get("Guarded"); }), noPort);
}

// A mode that cannot be computed is told once; then the node is unrestricted until it is
// invalidated or read past its cache, and the device is not asked again.
TEST(AccessRules, AModeThatFailedIsComputedAgainAfterAnInvalidation) {
    TestMap map(
        kPort + intReg("Divisor", 0) + intReg("Value", 4) +
        named("IntSwissKnife", "Lock",
              "<pVariable Name='D'>Divisor</pVariable><Formula>1/D</Formula>") +
        named("Integer", "X", "<pIsLocked>Lock</pIsLocked><pValue>Value</pValue>") +
        named("Category", "G", "<pIsImplemented>Lock</pIsImplemented><pFeature>Value</pFeature>") +
        named("Enumeration", "E",
              "<EnumEntry Name='A'><pIsAvailable>Lock</pIsAvailable><Value>0</Value>"
              "</EnumEntry><Value>0</Value>"));
    const auto fails = [&](const char* name) {
        return errorOf([&] { map.mode(name); }).find("#Infinity") != std::string::npos;
    };
    EXPECT_TRUE(fails("X"));
    map.port.takeTrace();
    EXPECT_EQ(map.mode("X"), RW);
    EXPECT_EQ(map.port.takeTrace(), "");
    EXPECT_TRUE(fails("G"));
    EXPECT_EQ(map.mode("G"), RO);
    EXPECT_TRUE(fails("EnumEntry_E_A"));
    EXPECT_EQ(map.mode("EnumEntry_E_A"), RO);

    EXPECT_EQ(map.get("X"), "0");
    EXPECT_EQ(map.mode("X"), RW) << "a read from the cache changes nothing";
    EXPECT_EQ(toStd(map.as<IValue>("X").ToString(false, true)), "0");
    EXPECT_TRUE(fails("X"));

    map.set("Divisor", "1");
    EXPECT_EQ(map.mode("X"), RO) << "locked";
    map.set("Divisor", "0");
    EXPECT_TRUE(fails("X"));
    map.set("Divisor", "2");
    EXPECT_EQ(map.mode("X"), RW) << "open";
}

}  // namespace
