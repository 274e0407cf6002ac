// Access modes: what each node that another one reads means for it, in which order the device is
// asked, and modes that cannot be computed.
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

// An Integer of each mode, by the name of the mode and a letter before it.
std::string OfEachMode(const std::string& letter, int value) {
    const std::string text = Element("Value", value);
    return Named("Integer", letter + "NI", Element("pIsImplemented", "Zero") + text) +
           Named("Integer", letter + "NA", Element("pIsAvailable", "Zero") + text) +
           Named("Integer", letter + "WO", Element("ImposedAccessMode", "WO") + text) +
           Named("Integer", letter + "RO", Element("ImposedAccessMode", "RO") + text) +
           Named("Integer", letter + "RW", text);
}
const std::string kEachMode =
    kPort + Literal("Zero", "0") + OfEachMode("A", 5) + OfEachMode("B", 5);

std::string ConverterReading(const std::string& name, const std::string& variable,
                             const std::string& below) {
    return Named("Converter", name,
                 "<pVariable Name='V'>" + variable +
                     "</pVariable><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>" +
                     Element("pValue", below));
}

// What a node is over A, by the mode of the node B that it reads, which stands for "@" in it.
TEST(AccessRules, WhateverANodeReadsRestrictsIt) {
    const auto value = [](const std::string& a) { return Element("pValue", a); };
    const struct {
        const char* link;
        std::string a;
        std::string node;
        EAccessMode ni, na, wo, ro, rw;  // for each mode of B
    } cases[] = {
        {"pMin", "ARW", Named("Integer", "X", value("ARW") + "<pMin>@</pMin>"), NI, NA, RW, RW, RW},
        {"pMax", "ANA", Named("Float", "X", value("ANA") + "<pMax>@</pMax>"), NI, NA, NA, NA, NA},
        {"pInc", "ARO", Named("Integer", "X", value("ARO") + "<pInc>@</pInc>"), NI, NA, RO, RO, RO},
        {"pBlockPolling", "AWO",
         Named("Integer", "X", "<pBlockPolling>@</pBlockPolling>" + value("AWO")), NI, NA, WO, WO,
         WO},
        {"pVariable", "ARW", ConverterReading("X", "@", "ARW"), NI, NA, RW, RW, RW},
        {"pVariable", "ARW",
         Named("IntSwissKnife", "X", "<pVariable Name='V'>@</pVariable><Formula>V</Formula>"), NI,
         NA, RO, RO, RO},
        {"pIsImplemented", "ARW",
         Named("Integer", "X", "<pIsImplemented>@</pIsImplemented>" + value("ARW")), NI, NA, NA, RW,
         RW},
        {"pIsAvailable", "ANA",
         Named("Integer", "X", "<pIsAvailable>@</pIsAvailable>" + value("ANA")), NI, NA, NA, NA,
         NA},
        {"pIsLocked", "ARW", Named("Integer", "X", "<pIsLocked>@</pIsLocked>" + value("ARW")), NI,
         NA, NA, RO, RO},
        {"pIsLocked", "ARO", Named("Integer", "X", "<pIsLocked>@</pIsLocked>" + value("ARO")), NI,
         NA, RO, RO, RO},
        {"pValueCopy", "ARW", Named("Integer", "X", value("ARW") + "<pValueCopy>@</pValueCopy>"),
         NI, NA, RW, RO, RW},
        {"pValueCopy", "AWO", Named("Integer", "X", value("AWO") + "<pValueCopy>@</pValueCopy>"),
         NI, NA, WO, NA, WO},
        {"pCommandValue", "ARW",
         Named("Command", "X", value("ARW") + "<pCommandValue>@</pCommandValue>"), NI, NA, NA, RW,
         RW},
        {"pIndex", "ARO",
         Named("Integer", "X",
               "<pIndex>@</pIndex><pValueIndexed Index='5'>ARO</pValueIndexed>"
               "<ValueDefault>1</ValueDefault>"),
         NI, NA, NA, RO, RO},
        {"condition of the only entry", "ARW",
         Named("Enumeration", "X",
               Named("EnumEntry", "E", "<pIsAvailable>@</pIsAvailable><Value>5</Value>") +
                   value("ARW")),
         NI, NA, NA, RW, RW},
        {"pAddress", "", Named("IntReg", "X", RegisterAt("<pAddress>@</pAddress>", 4) + kLittle),
         NI, NA, RW, RW, RW},
        {"pIndex and pOffset of a register", "",
         Named("IntReg", "X", RegisterAt("<pIndex pOffset='@'>ARW</pIndex>", 4) + kLittle), NI, NA,
         RW, RW, RW},
        {"pLength", "",
         Named("Register", "X",
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
            EXPECT_EQ(TestMap(kEachMode + node).Mode("X"), expected)
                << c.link << " " << name << " over " << c.a;
        }
    }
}

TEST(AccessRules, AnErrorNodeRestrictsToo) {
    const std::string zero = Literal("Zero", "0");
    const auto over = [&](const std::string& condition) {
        return TestMap(zero +
                       Named("Enumeration", "Errors",
                             condition + Entry("None", 0) + Element("Value", 0)) +
                       Named("Integer", "X", "<pError>Errors</pError><Value>1</Value>"))
            .Mode("X");
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
        kEachMode + Literal("Five", "5") +
        Named("Integer", "I", "<pIsImplemented>Zero</pIsImplemented>" + indexed) +
        Named("Float", "F", "<pIsAvailable>Zero</pIsAvailable>" + indexed + "<pMax>BNI</pMax>") +
        Named("Integer", "W", "<ImposedAccessMode>WO</ImposedAccessMode>" + indexed) +
        Named(
            "IntReg", "R",
            "<pIsAvailable>Zero</pIsAvailable>" + RegisterAt("<pIndex>Five</pIndex>", 4) + kLittle);
    TestMap map(nodes);
    EXPECT_EQ(map.Mode("I"), RO);
    EXPECT_EQ(map.Mode("F"), RO);
    EXPECT_EQ(map.Mode("W"), NA) << "what is imposed counts";
    EXPECT_EQ(map.Mode("R"), NA) << "a register is no such number";
    map.Set("Five", "4");
    EXPECT_EQ(map.Mode("I"), RW);
}

// The modes of all nodes that are read come first, then what the conditions say, then the entries.
TEST(AccessRules, TheDeviceIsAskedInOneOrder) {
    const auto guarded = [](const char* name, const char* by) {
        return Named("Integer", name, Element("pIsAvailable", by) + "<Value>1</Value>");
    };
    const std::string conditions =
        "<pIsImplemented>R4</pIsImplemented><pIsAvailable>R5</pIsAvailable>"
        "<pIsLocked>R6</pIsLocked>";
    TestMap map(kPort + IntReg("R1", 1) + IntReg("R2", 2) + IntReg("R3", 3) + IntReg("R4", 4) +
                IntReg("R5", 5) + IntReg("R6", 6) + guarded("Source", "R1") +
                guarded("Limit", "R2") +
                Named("Integer", "X", conditions + "<pValue>Source</pValue><pMax>Limit</pMax>") +
                Named("Enumeration", "E",
                      conditions + "<EnumEntry Name='A'><pIsAvailable>R3</pIsAvailable>"
                                   "<Value>0</Value></EnumEntry><pValue>Source</pValue>") +
                Named("Integer", "Fixed",
                      "<pIsLocked>R6</pIsLocked><ImposedAccessMode>RO</ImposedAccessMode>"
                      "<Value>1</Value>"));
    for (int address = 1; address <= 6; ++address)
        map.port.memory[address] = 1;
    const auto asked = [&](const char* name) {
        map.map._InvalidateNodes();
        map.port.TakeTrace();
        map.Mode(name);
        return map.port.TakeTrace();
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
        return Named("Port", name, inside);
    };
    TestMap map(Literal("Zero", "0") + Literal("Id", "10", "", "String") +
                Literal("None", "", "", "String") + chunk("Fixed", "<ChunkID>10</ChunkID>") +
                chunk("Named", "<pChunkID>Id</pChunkID>") + chunk("Empty", "<ChunkID/>") +
                chunk("Unnamed", "<pChunkID>None</pChunkID>") +
                chunk("Event", "<EventID>10</EventID>") +
                chunk("Missing", "<pIsImplemented>Zero</pIsImplemented><ChunkID>10</ChunkID>") +
                Named("IntReg", "R", RegisterAt(0, 4, "RO", "Fixed") + kLittle));
    EXPECT_EQ(map.Mode("Fixed"), NA);
    EXPECT_EQ(map.Mode("R"), NA);
    EXPECT_EQ(map.Mode("Named"), NA);
    for (const char* name : {"Empty", "Unnamed", "Event", "Missing"})
        EXPECT_EQ(map.Mode(name), NI) << name;
}

TEST(AccessRules, ANodeThatIsNoPortIsNotUsedAsOne) {
    TestMap map(
        Literal("Zero", "0") + Literal("Off", "0") +
        Named("IntSwissKnife", "Bad",
              "<pVariable Name='Z'>Zero</pVariable><Formula>1/Z</Formula>") +
        Named("IntReg", "R", RegisterAt(0, 4, "RW", "Zero") + kLittle) +
        Named("IntReg", "Guarded",
              "<pIsAvailable>Bad</pIsAvailable>" + RegisterAt(0, 4, "RW", "Zero") + kLittle));
    const std::string noPort = "AccessException: CRegisterImpl::InternalGet : port not set";
    EXPECT_EQ(map.Mode("R"), RW);
    EXPECT_EQ(ErrorOf([&] { map.Get("R"); }), noPort);
    EXPECT_EQ(ErrorOf([&] { map.Set("R", "1"); }),
              "AccessException: CRegisterImpl::InternalSet : port not set");
    EXPECT_THAT(ErrorOf([&] { map.Get("Guarded"); }), testing::HasSubstr("#Infinity somewhere!"));
    EXPECT_EQ(ErrorOf([&] { map.Get("Guarded"); }), noPort);
}

// A mode that cannot be computed is told once; then the node is unrestricted until it is
// invalidated or read past its cache, and the device is not asked again.
TEST(AccessRules, AModeThatFailedIsComputedAgainAfterAnInvalidation) {
    TestMap map(
        kPort + IntReg("Divisor", 0) + IntReg("Value", 4) +
        Named("IntSwissKnife", "Lock",
              "<pVariable Name='D'>Divisor</pVariable><Formula>1/D</Formula>") +
        Named("Integer", "X", "<pIsLocked>Lock</pIsLocked><pValue>Value</pValue>") +
        Named("Category", "G", "<pIsImplemented>Lock</pIsImplemented><pFeature>Value</pFeature>") +
        Named("Enumeration", "E",
              "<EnumEntry Name='A'><pIsAvailable>Lock</pIsAvailable><Value>0</Value>"
              "</EnumEntry><Value>0</Value>"));
    const auto fails = [&](const char* name) {
        return ErrorOf([&] { map.Mode(name); }).find("#Infinity") != std::string::npos;
    };
    EXPECT_TRUE(fails("X"));
    map.port.TakeTrace();
    EXPECT_EQ(map.Mode("X"), RW);
    EXPECT_EQ(map.port.TakeTrace(), "");
    EXPECT_TRUE(fails("G"));
    EXPECT_EQ(map.Mode("G"), RO);
    EXPECT_TRUE(fails("EnumEntry_E_A"));
    EXPECT_EQ(map.Mode("EnumEntry_E_A"), RO);

    EXPECT_EQ(map.Get("X"), "0");
    EXPECT_EQ(map.Mode("X"), RW) << "a read from the cache changes nothing";
    EXPECT_EQ(ToStd(map.As<IValue>("X").ToString(false, true)), "0");
    EXPECT_TRUE(fails("X"));

    map.Set("Divisor", "1");
    EXPECT_EQ(map.Mode("X"), RO) << "locked";
    map.Set("Divisor", "0");
    EXPECT_TRUE(fails("X"));
    map.Set("Divisor", "2");
    EXPECT_EQ(map.Mode("X"), RW) << "open";
}

}  // namespace
