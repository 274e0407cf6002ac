// Registers: which bytes stand for which value, and when the device is accessed.
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();
const std::string kSigned = element("Sign", "Signed");
const std::string kUnsigned = element("Sign", "Unsigned");

std::string caching(const char* mode) {
    return element("Cachable", mode);
}

TEST(Registers, IntegersOfEveryLengthSignAndByteOrder) {
    const struct {
        std::string form;
        Bytes bytes;
        int64_t value, min, max;
    } cases[] = {
        {kUnsigned + kLittle, {0x81}, 129, 0, 255},
        {kSigned + kLittle, {0x81}, -127, -128, 127},
        {kUnsigned + kBig, {0x81, 0x22}, 0x8122, 0, 65535},
        {kSigned + kLittle, {0x22, 0x81}, -0x7EDE, -32768, 32767},
        {kUnsigned + kLittle, {0x33, 0x22, 0x81}, 0x812233, 0, 0xFFFFFF},
        {kSigned + kBig, {0x81, 0x22, 0x33}, 0x812233 - 0x1000000, -0x800000, 0x7FFFFF},
        {kUnsigned + kBig, {0x81, 0x22, 0x33, 0xC4}, 0x812233C4, 0, 0xFFFFFFFF},
        {kSigned + kLittle, {0xFE, 0xFF, 0xFF, 0xFF}, -2, -0x80000000LL, 0x7FFFFFFF},
        {kUnsigned + kBig, {0x81, 0, 0, 0, 1}, 0x8100000001, 0, 0xFFFFFFFFFF},
        {kSigned + kLittle, {1, 0, 0, 0, 0, 0x80}, 1 - (1LL << 47), -(1LL << 47), (1LL << 47) - 1},
        {kUnsigned + kLittle, {1, 0, 0, 0, 0, 0, 0x80}, (1LL << 55) + 1, 0, (1LL << 56) - 1},
        {kUnsigned + kBig, {0x80, 0, 0, 0, 0, 0, 0, 1}, kLeast + 1, 0, kMost},
        {kSigned + kBig, {0x80, 0, 0, 0, 0, 0, 0, 0}, kLeast, kLeast, kMost},
        {kLittle, {0x81}, 129, 0, 255},
    };
    for (const auto& c : cases) {
        const int length = static_cast<int>(c.bytes.size());
        TestMap map(kPort + named("IntReg", "R", registerAt(0, length) + c.form));
        map.port.fill(0, c.bytes);
        IInteger& number = map.integer("R");
        SCOPED_TRACE(c.form + " " + std::to_string(length));
        EXPECT_EQ(number.GetValue(), c.value);
        EXPECT_EQ(number.GetMin(), c.min);
        EXPECT_EQ(number.GetMax(), c.max);
        EXPECT_EQ(number.GetInc(), 1);
        number.SetValue(0, false);
        EXPECT_EQ(map.port.content(0, c.bytes.size()), Bytes(c.bytes.size()));
        number.SetValue(c.value, false);
        EXPECT_EQ(map.port.content(0, c.bytes.size()), c.bytes);
    }
}

std::string bits(int lsb, int msb) {
    return element("LSB", lsb) + element("MSB", msb);
}

TEST(Registers, MasksCutFieldsAndKeepTheirNeighbours) {
    const struct {
        std::string form;
        size_t length;  // of a register 81 22 33 C4 ...
        int64_t value, min, max;
        int64_t written;
        Bytes after;
    } cases[] = {
        {bits(31, 24) + kBig, 4, 0xC4, 0, 255, 0xAA, {0x81, 0x22, 0x33, 0xAA}},
        {bits(7, 0) + kBig, 4, 0x81, 0, 255, 0, {0x00, 0x22, 0x33, 0xC4}},
        {element("Bit", 0) + kBig, 4, 1, 0, 1, 0, {0x01, 0x22, 0x33, 0xC4}},
        {element("Bit", 31) + kBig, 4, 0, 0, 1, 1, {0x81, 0x22, 0x33, 0xC5}},
        {bits(27, 24) + kSigned + kBig, 4, -4, -8, 7, -1, {0x81, 0x22, 0x33, 0xF4}},
        {bits(23, 12) + kBig, 3, 0x233, 0, 0xFFF, 0xABC, {0x81, 0x2A, 0xBC}},
        {bits(0, 7) + kLittle, 4, 0x81, 0, 255, 0x7E, {0x7E, 0x22, 0x33, 0xC4}},
        {bits(4, 11) + kLittle, 4, 0x28, 0, 255, 0xFF, {0xF1, 0x2F, 0x33, 0xC4}},
        {bits(24, 31) + kSigned + kLittle, 4, -60, -128, 127, 1, {0x81, 0x22, 0x33, 0x01}},
        {element("Bit", 31) + kLittle, 4, 1, 0, 1, 0, {0x81, 0x22, 0x33, 0x44}},
        {bits(60, 63) + kSigned + kLittle,
         8,
         -8,
         -8,
         7,
         7,
         {0x81, 0x22, 0x33, 0xC4, 1, 2, 3, 0x7F}},
        {bits(0, 63) + kLittle, 8, -0x70FCFDFE3BCCDD7F, 0, kMost, 1, {1, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        const int length = static_cast<int>(c.length);
        TestMap map(kPort + named("MaskedIntReg", "M", registerAt(0, length) + c.form));
        map.port.fill(0, {0x81, 0x22, 0x33, 0xC4, 1, 2, 3, 0x8F});
        IInteger& number = map.integer("M");
        SCOPED_TRACE(c.form);
        EXPECT_EQ(number.GetValue(), c.value);
        EXPECT_EQ(number.GetMin(), c.min);
        EXPECT_EQ(number.GetMax(), c.max);
        number.SetValue(c.written);
        EXPECT_EQ(number.GetValue(false, true), c.written);
        EXPECT_EQ(map.port.content(0, c.length), c.after);
        EXPECT_EQ(map.as<IRegister>("M").GetLength(), length);
    }
}

TEST(Registers, ReadModifyWriteUsesWhatIsCached) {
    const auto field = [](const char* name, int first, const char* mode) {
        return named("MaskedIntReg", name,
                     registerAt(0, 2) + caching(mode) + bits(first, first + 7) + kLittle);
    };
    const struct {
        const char* mode;
        const char* traffic;
    } cases[] = {{"WriteThrough", "R0 W0=1 W0=1 "},
                 {"WriteAround", "R0 W0=1 R0 W0=1 "},
                 {"NoCache", "R0 W0=1 R0 W0=1 "}};
    for (const auto& c : cases) {
        TestMap map(kPort + field("Low", 0, c.mode) + field("High", 8, c.mode));
        map.integer("Low").SetValue(1);
        map.integer("High").SetValue(2);
        EXPECT_EQ(map.port.takeTrace(), c.traffic) << c.mode;
        EXPECT_EQ(map.port.content(0, 2), (Bytes{1, 2}));
    }
}

TEST(Registers, MaskThatCannotBeReadCannotBeWritten) {
    TestMap map(kPort + named("MaskedIntReg", "M", registerAt(0, 4, "WO") + bits(0, 7) + kLittle) +
                named("IntReg", "W", registerAt(0, 4, "WO") + kLittle));
    EXPECT_EQ(errorOf([&] { map.integer("M").SetValue(1); }),
              "AccessException: Node is not readable");
    map.integer("W").SetValue(0x01020304);
    EXPECT_EQ(map.port.content(0, 4), (Bytes{4, 3, 2, 1}));
    EXPECT_EQ(map.integer("W").GetMax(), 0xFFFFFFFF);
}

TEST(Registers, StructEntriesInheritWhatTheyDoNotSay) {
    TestMap map(kPort + "<StructReg Comment='S'><ToolTip>all</ToolTip>" + registerAt(8, 4, "RO") +
                caching("NoCache") + kBig + named("StructEntry", "A", element("Bit", 31)) +
                named("StructEntry", "B",
                      element("ToolTip", "mine") + element("AccessMode", "RW") +
                          caching("WriteAround") + bits(7, 0)) +
                "</StructReg>");
    map.port.fill(8, {0x42, 0, 0, 1});
    EXPECT_EQ(map.mode("A"), RO);
    EXPECT_EQ(map.mode("B"), RW);
    EXPECT_EQ(toStd(map.node("A").GetToolTip()), "all");
    EXPECT_EQ(toStd(map.node("B").GetToolTip()), "mine");
    EXPECT_EQ(map.node("A").GetCachingMode(), NoCache);
    EXPECT_EQ(map.node("B").GetCachingMode(), WriteAround);
    EXPECT_EQ(map.get("A") + " " + map.get("B"), "1 66");
    EXPECT_EQ(map.as<IRegister>("A").GetAddress(), 8);
    EXPECT_EQ(map.nodeMap()->GetNode("S"), nullptr);
}

TEST(Registers, AddressIsTheSumOfItsParts) {
    const std::string where =
        "<Address>0x1000</Address><Address>0x200</Address><pAddress>Base</pAddress>"
        "<IntSwissKnife Name='G'><pVariable Name='I'>Index</pVariable><Formula>I*0x100000</Formula>"
        "</IntSwissKnife><pIndex>Index</pIndex><pIndex Offset='8'>Index</pIndex>"
        "<pIndex pOffset='Step'>Index</pIndex>";
    TestMap map(kPort + named("IntReg", "R", registerAt(where, 4) + kLittle) + intReg("Index", 0) +
                named("Integer", "Base", element("Value", 0x30)) +
                named("Integer", "Step", element("Value", 0x10000)));
    IRegister& reg = map.as<IRegister>("R");
    EXPECT_EQ(reg.GetAddress(), 0x1230);
    map.port.fill(0x1230, {5});
    EXPECT_EQ(map.get("R"), "5");

    // each index moves it by the length, 8, the step and the formula
    map.set("Index", "2");
    EXPECT_EQ(reg.GetAddress(), 0x1230 + 2 * (4 + 8 + 0x10000 + 0x100000));
    EXPECT_EQ(map.get("R"), "0");
    map.set("Step", "0");
    map.set("Base", "-0x1000");
    EXPECT_EQ(reg.GetAddress(), 0x200 + 2 * (4 + 8 + 0x100000));
    map.port.fill(reg.GetAddress(), {7});
    EXPECT_EQ(map.get("R"), "7");
    map.set("Index", "0");
    map.set("R", "9");
    EXPECT_EQ(map.port.content(0x200, 1), Bytes{9});
}

TEST(Registers, AddressFollowsWhatIsNotCached) {
    TestMap map(kPort + named("IntReg", "Place", registerAt(0, 4) + caching("NoCache") + kLittle) +
                named("IntReg", "R", registerAt(element("pAddress", "Place"), 4) + kLittle));
    map.port.fill(16, {1, 0, 0, 0, 2});
    map.port.fill(0, {16});
    EXPECT_EQ(map.get("R"), "1");
    map.port.fill(0, {20});  // by the device itself
    EXPECT_EQ(map.get("R"), "2");
}

TEST(Registers, FloatsAndStringsAsBytes) {
    const auto real = [](const char* name, int address, int length, const std::string& order) {
        return named("FloatReg", name, registerAt(address, length) + order);
    };
    TestMap map(kPort + real("F4B", 0, 4, kBig) + real("F4L", 4, 4, kLittle) +
                real("F8B", 8, 8, kBig) + real("F8L", 16, 8, kLittle) +
                named("StringReg", "S", registerAt(32, 8)));
    for (const char* name : {"F4B", "F4L", "F8B", "F8L"})
        map.floating(name).SetValue(-1.5);
    EXPECT_EQ(map.port.content(0, 8), (Bytes{0xBF, 0xC0, 0, 0, 0, 0, 0xC0, 0xBF}));
    EXPECT_EQ(map.port.content(8, 8), (Bytes{0xBF, 0xF8, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(map.port.content(16, 8), (Bytes{0, 0, 0, 0, 0, 0, 0xF8, 0xBF}));
    for (const char* name : {"F4B", "F4L", "F8B", "F8L"})
        EXPECT_EQ(map.floating(name).GetValue(false, true), -1.5) << name;
    EXPECT_EQ(map.floating("F4B").GetMax(), std::numeric_limits<float>::max());
    EXPECT_EQ(map.floating("F4B").GetMin(), -map.floating("F4B").GetMax());
    EXPECT_EQ(map.floating("F8B").GetMax(), std::numeric_limits<double>::max());

    map.port.fill(32, {'c', 'a', 'm', 0, 'x', 'x', 'x', 'x'});
    EXPECT_EQ(map.get("S"), "cam");
    map.set("S", "12345678");
    EXPECT_EQ(map.port.content(32, 8), (Bytes{'1', '2', '3', '4', '5', '6', '7', '8'}));
    EXPECT_EQ(toStd(map.as<IString>("S").GetValue(false, true)), "12345678");
    map.set("S", "ab");
    EXPECT_EQ(map.port.content(32, 8), (Bytes{'a', 'b', 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(map.as<IString>("S").GetMaxLength(), 8);
    EXPECT_EQ(errorOf([&] { map.as<IString>("S").SetValue("123456789", false); }),
              "OutOfRangeException: String exceeds maximum length. Max length is 8");
    EXPECT_EQ(map.as<IRegister>("S").GetLength(), 8);
}

TEST(Registers, RawBytes) {
    TestMap map(kPort +
                named("Register", "R",
                      element("Address", 0) + "<pLength>Size</pLength><AccessMode>RW</AccessMode>"
                                              "<pPort>Device</pPort>") +
                named("Integer", "Size", element("Value", 4)));
    IRegister& reg = map.as<IRegister>("R");
    map.port.fill(0, {0x0A, 0xB0, 0xFF, 0x01});
    EXPECT_EQ(map.get("R"), "0x0ab0ff01");
    uint8_t bytes[5] = {1, 2, 3, 4, 5};
    reg.Get(bytes, 2);
    EXPECT_EQ(Bytes(bytes, bytes + 3), (Bytes{0x0A, 0xB0, 3}));
    reg.Set(bytes, 1);
    const struct {
        const char* text;
        Bytes after;
    } texts[] = {{"0x01", {1, 0xB0, 0xFF, 1}},
                 {"aBcD", {0xAB, 0xCD, 0xFF, 1}},
                 {"0102030405", {1, 2, 3, 4}}};
    for (const auto& t : texts) {
        map.set("R", t.text);
        EXPECT_EQ(map.port.content(0, 5),
                  (Bytes{t.after[0], t.after[1], t.after[2], t.after[3], 0}));
        reg.Get(bytes, 4);
        EXPECT_EQ(Bytes(bytes, bytes + 4), t.after) << t.text;
    }
    for (const char* bad : {"", "0x", "123", "zz"})
        EXPECT_EQ(errorOf([&] { map.set("R", bad); }),
                  "InvalidArgumentException: Node 'R' : cannot convert hex string")
            << bad;
    const std::string tooMuch = " : more data requested than hold by the register";
    const std::string null = " : pBuffer must not be NULL";
    EXPECT_EQ(errorOf([&] { reg.Get(bytes, 5); }),
              "OutOfRangeException: CRegisterImpl::InternalGet" + tooMuch);
    EXPECT_EQ(errorOf([&] { reg.Set(bytes, 5); }),
              "OutOfRangeException: CRegisterImpl::InternalSet" + tooMuch);
    EXPECT_EQ(errorOf([&] { reg.Get(nullptr, 1); }),
              "LogicalErrorException: CRegisterImpl::InternalGet" + null);
    EXPECT_EQ(errorOf([&] { reg.Set(nullptr, 1); }),
              "LogicalErrorException: CRegisterImpl::InternalSet" + null);
    map.set("Size", "2");
    EXPECT_EQ(reg.GetLength(), 2);
    EXPECT_EQ(map.get("R"), "0x0102");
}

// Two integers over one register, a second register at its place, one that it invalidates.
std::string cachedNodes(const char* mode) {
    return kPort +
           named("IntReg", "R",
                 registerAt(0, 4) + caching(mode) + element("pInvalidator", "Trigger") + kLittle) +
           named("Integer", "I", element("pValue", "R")) +
           named("Integer", "J", element("pValue", "R")) +
           named("IntReg", "Twin", registerAt(0, 4) + caching(mode) + kBig) + intReg("Trigger", 8);
}

TEST(Caching, PortTrafficOfEachMode) {
    const struct {
        const char* mode;
        const char* reads;
        const char* written;
    } cases[] = {{"WriteThrough", "R0 ", "W0=5 W0=5 "},
                 {"WriteAround", "R0 ", "W0=5 R0 W0=5 R0 "},
                 {"NoCache", "R0 R0 R0 R0 ", "W0=5 R0 W0=5 R0 "}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.mode);
        TestMap map(cachedNodes(c.mode));
        for (const char* name : {"I", "R", "J", "Twin"})
            EXPECT_EQ(map.get(name), "0");
        EXPECT_EQ(map.port.takeTrace(), c.reads);
        for (int i = 0; i < 2; ++i) {
            map.set("I", "5");
            EXPECT_EQ(map.get("I"), "5");
        }
        EXPECT_EQ(map.port.takeTrace(), c.written);
        EXPECT_EQ(toStd(map.node("I").GetName()) + map.get("J") + map.get("R"), "I55");
    }
}

TEST(Caching, WhatDropsTheCache) {
    TestMap map(cachedNodes("WriteThrough"));
    IInteger& number = map.integer("I");
    const auto traffic = [&] {
        number.GetValue();
        return map.port.takeTrace();
    };
    EXPECT_FALSE(number.IsValueCacheValid());
    EXPECT_EQ(traffic(), "R0 ");
    EXPECT_TRUE(number.IsValueCacheValid());
    map.node("I").InvalidateNode();
    EXPECT_EQ(traffic(), "") << "the register below keeps its content";
    map.node("R").InvalidateNode();
    EXPECT_FALSE(number.IsValueCacheValid());
    EXPECT_EQ(traffic(), "R0 ");
    map.nodeMap()->InvalidateNodes();
    EXPECT_EQ(traffic(), "R0 ");
    map.set("Trigger", "1");
    EXPECT_EQ(map.port.takeTrace(), "W8=1 ");
    EXPECT_EQ(traffic(), "R0 ");

    map.port.fill(0, {9});
    EXPECT_EQ(number.GetValue(false, true), 9);
    EXPECT_EQ(map.port.takeTrace(), "R0 ");
    EXPECT_EQ(traffic(), "R0 ") << "reading past the cache leaves it invalid";
    EXPECT_EQ(traffic(), "");
}

TEST(Caching, FailedWritesLeaveNothingThatMayBeWrong) {
    for (const char* mode : {"WriteThrough", "WriteAround"}) {
        SCOPED_TRACE(mode);
        TestMap map(
            cachedNodes(mode) + intReg("Fragile", 16) + literal("L", "0") +
            over("Both", "R", element("pValueCopy", "Fragile")) +
            over("BothL", "L", element("pValueCopy", "Fragile")) +
            named("IntSwissKnife", "K", "<pVariable Name='L'>L</pVariable><Formula>L</Formula>"));
        const auto read = [&] {
            return map.get("I") + map.get("J") + map.get("Both") + map.get("K");
        };
        EXPECT_EQ(read(), "0000");
        map.port.failing = 16;
        for (const char* name : {"Both", "BothL"})
            EXPECT_EQ(errorOf([&] { map.set(name, "6"); }), "TimeoutException: no answer");
        EXPECT_EQ(read(), "6666") << "written before the other one failed";
        map.port.fill(0, {7});
        map.node("R").InvalidateNode();
        EXPECT_EQ(map.get("I"), "7");
        map.port.failing = 0;
        EXPECT_EQ(errorOf([&] { map.set("I", "8"); }), "TimeoutException: no answer");
        map.port.failing = -1;
        map.port.fill(0, {8});
        EXPECT_EQ(map.get("I") + map.get("J"), "88") << "it may have arrived";
    }
}

TEST(Caching, EffectiveModes) {
    const auto knife = [](const char* name, const char* variable) {
        return named(
            "SwissKnife", name,
            "<pVariable Name='V'>" + std::string(variable) + "</pVariable><Formula>V</Formula>");
    };
    TestMap map(kPort + named("IntReg", "No", registerAt(0, 4) + caching("NoCache") + kLittle) +
                intReg("Through", 4) + named("Integer", "OverNo", element("pValue", "No")) +
                named("Integer", "Literal", element("Value", 1)) +
                named("Float", "Real", element("Value", 1)) + knife("Knife", "Through") +
                knife("KnifeOfNo", "OverNo"));
    const struct {
        const char* name;
        ECachingMode mode;
    } cases[] = {{"OverNo", NoCache},   {"Through", WriteThrough}, {"Literal", WriteThrough},
                 {"Real", WriteAround}, {"Knife", WriteAround},    {"KnifeOfNo", NoCache}};
    for (const auto& c : cases) {
        EXPECT_EQ(map.node(c.name).GetCachingMode(), c.mode) << c.name;
        EXPECT_EQ(map.node(c.name).IsCachable(), c.mode != NoCache) << c.name;
    }
    EXPECT_FALSE(map.integer("Literal").IsValueCacheValid());
    map.get("Literal");
    EXPECT_TRUE(map.integer("Literal").IsValueCacheValid());
    map.get("KnifeOfNo");
    map.get("KnifeOfNo");
    EXPECT_EQ(map.port.takeTrace(), "R0 R0 ");
}

}  // namespace
