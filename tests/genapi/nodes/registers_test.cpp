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
const std::string kSigned = Element("Sign", "Signed");
const std::string kUnsigned = Element("Sign", "Unsigned");

std::string Caching(const char* mode) {
    return Element("Cachable", mode);
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
        TestMap map(kPort + Named("IntReg", "R", RegisterAt(0, length) + c.form));
        map.port.Fill(0, c.bytes);
        IInteger& number = map.Integer("R");
        SCOPED_TRACE(c.form + " " + std::to_string(length));
        EXPECT_EQ(number.GetValue(), c.value);
        EXPECT_EQ(number.GetMin(), c.min);
        EXPECT_EQ(number.GetMax(), c.max);
        EXPECT_EQ(number.GetInc(), 1);
        number.SetValue(0, false);
        EXPECT_EQ(map.port.Content(0, c.bytes.size()), Bytes(c.bytes.size()));
        number.SetValue(c.value, false);
        EXPECT_EQ(map.port.Content(0, c.bytes.size()), c.bytes);
    }
}

std::string Bits(int lsb, int msb) {
    return Element("LSB", lsb) + Element("MSB", msb);
}

TEST(Registers, MasksCutFieldsAndKeepTheirNeighbours) {
    const struct {
        std::string form;
        size_t length;  // of a register 81 22 33 C4 ...
        int64_t value, min, max;
        int64_t written;
        Bytes after;
    } cases[] = {
        {Bits(31, 24) + kBig, 4, 0xC4, 0, 255, 0xAA, {0x81, 0x22, 0x33, 0xAA}},
        {Bits(7, 0) + kBig, 4, 0x81, 0, 255, 0, {0x00, 0x22, 0x33, 0xC4}},
        {Element("Bit", 0) + kBig, 4, 1, 0, 1, 0, {0x01, 0x22, 0x33, 0xC4}},
        {Element("Bit", 31) + kBig, 4, 0, 0, 1, 1, {0x81, 0x22, 0x33, 0xC5}},
        {Bits(27, 24) + kSigned + kBig, 4, -4, -8, 7, -1, {0x81, 0x22, 0x33, 0xF4}},
        {Bits(23, 12) + kBig, 3, 0x233, 0, 0xFFF, 0xABC, {0x81, 0x2A, 0xBC}},
        {Bits(0, 7) + kLittle, 4, 0x81, 0, 255, 0x7E, {0x7E, 0x22, 0x33, 0xC4}},
        {Bits(4, 11) + kLittle, 4, 0x28, 0, 255, 0xFF, {0xF1, 0x2F, 0x33, 0xC4}},
        {Bits(24, 31) + kSigned + kLittle, 4, -60, -128, 127, 1, {0x81, 0x22, 0x33, 0x01}},
        {Element("Bit", 31) + kLittle, 4, 1, 0, 1, 0, {0x81, 0x22, 0x33, 0x44}},
        {Bits(60, 63) + kSigned + kLittle,
         8,
         -8,
         -8,
         7,
         7,
         {0x81, 0x22, 0x33, 0xC4, 1, 2, 3, 0x7F}},
        {Bits(0, 63) + kLittle, 8, -0x70FCFDFE3BCCDD7F, 0, kMost, 1, {1, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        const int length = static_cast<int>(c.length);
        TestMap map(kPort + Named("MaskedIntReg", "M", RegisterAt(0, length) + c.form));
        map.port.Fill(0, {0x81, 0x22, 0x33, 0xC4, 1, 2, 3, 0x8F});
        IInteger& number = map.Integer("M");
        SCOPED_TRACE(c.form);
        EXPECT_EQ(number.GetValue(), c.value);
        EXPECT_EQ(number.GetMin(), c.min);
        EXPECT_EQ(number.GetMax(), c.max);
        number.SetValue(c.written);
        EXPECT_EQ(number.GetValue(false, true), c.written);
        EXPECT_EQ(map.port.Content(0, c.length), c.after);
        EXPECT_EQ(map.As<IRegister>("M").GetLength(), length);
    }
}

TEST(Registers, ReadModifyWriteUsesWhatIsCached) {
    const auto field = [](const char* name, int first, const char* mode) {
        return Named("MaskedIntReg", name,
                     RegisterAt(0, 2) + Caching(mode) + Bits(first, first + 7) + kLittle);
    };
    const struct {
        const char* mode;
        const char* traffic;
    } cases[] = {{"WriteThrough", "R0 W0=1 W0=1 "},
                 {"WriteAround", "R0 W0=1 R0 W0=1 "},
                 {"NoCache", "R0 W0=1 R0 W0=1 "}};
    for (const auto& c : cases) {
        TestMap map(kPort + field("Low", 0, c.mode) + field("High", 8, c.mode));
        map.Integer("Low").SetValue(1);
        map.Integer("High").SetValue(2);
        EXPECT_EQ(map.port.TakeTrace(), c.traffic) << c.mode;
        EXPECT_EQ(map.port.Content(0, 2), (Bytes{1, 2}));
    }
}

TEST(Registers, MaskThatCannotBeReadCannotBeWritten) {
    TestMap map(kPort + Named("MaskedIntReg", "M", RegisterAt(0, 4, "WO") + Bits(0, 7) + kLittle) +
                Named("IntReg", "W", RegisterAt(0, 4, "WO") + kLittle));
    EXPECT_EQ(ErrorOf([&] { map.Integer("M").SetValue(1); }),
              "AccessException: Node is not readable");
    map.Integer("W").SetValue(0x01020304);
    EXPECT_EQ(map.port.Content(0, 4), (Bytes{4, 3, 2, 1}));
    EXPECT_EQ(map.Integer("W").GetMax(), 0xFFFFFFFF);
}

TEST(Registers, StructEntriesInheritWhatTheyDoNotSay) {
    TestMap map(kPort + "<StructReg Comment='S'><ToolTip>all</ToolTip>" + RegisterAt(8, 4, "RO") +
                Caching("NoCache") + kBig + Named("StructEntry", "A", Element("Bit", 31)) +
                Named("StructEntry", "B",
                      Element("ToolTip", "mine") + Element("AccessMode", "RW") +
                          Caching("WriteAround") + Bits(7, 0)) +
                "</StructReg>");
    map.port.Fill(8, {0x42, 0, 0, 1});
    EXPECT_EQ(map.Mode("A"), RO);
    EXPECT_EQ(map.Mode("B"), RW);
    EXPECT_EQ(ToStd(map.Node("A").GetToolTip()), "all");
    EXPECT_EQ(ToStd(map.Node("B").GetToolTip()), "mine");
    EXPECT_EQ(map.Node("A").GetCachingMode(), NoCache);
    EXPECT_EQ(map.Node("B").GetCachingMode(), WriteAround);
    EXPECT_EQ(map.Get("A") + " " + map.Get("B"), "1 66");
    EXPECT_EQ(map.As<IRegister>("A").GetAddress(), 8);
    EXPECT_EQ(map.NodeMap()->GetNode("S"), nullptr);
}

TEST(Registers, AddressIsTheSumOfItsParts) {
    const std::string where =
        "<Address>0x1000</Address><Address>0x200</Address><pAddress>Base</pAddress>"
        "<IntSwissKnife Name='G'><pVariable Name='I'>Index</pVariable><Formula>I*0x100000</Formula>"
        "</IntSwissKnife><pIndex>Index</pIndex><pIndex Offset='8'>Index</pIndex>"
        "<pIndex pOffset='Step'>Index</pIndex>";
    TestMap map(kPort + Named("IntReg", "R", RegisterAt(where, 4) + kLittle) + IntReg("Index", 0) +
                Named("Integer", "Base", Element("Value", 0x30)) +
                Named("Integer", "Step", Element("Value", 0x10000)));
    IRegister& reg = map.As<IRegister>("R");
    EXPECT_EQ(reg.GetAddress(), 0x1230);
    map.port.Fill(0x1230, {5});
    EXPECT_EQ(map.Get("R"), "5");

    // each index moves it by the length, 8, the step and the formula
    map.Set("Index", "2");
    EXPECT_EQ(reg.GetAddress(), 0x1230 + 2 * (4 + 8 + 0x10000 + 0x100000));
    EXPECT_EQ(map.Get("R"), "0");
    map.Set("Step", "0");
    map.Set("Base", "-0x1000");
    EXPECT_EQ(reg.GetAddress(), 0x200 + 2 * (4 + 8 + 0x100000));
    map.port.Fill(reg.GetAddress(), {7});
    EXPECT_EQ(map.Get("R"), "7");
    map.Set("Index", "0");
    map.Set("R", "9");
    EXPECT_EQ(map.port.Content(0x200, 1), Bytes{9});
}

TEST(Registers, AddressFollowsWhatIsNotCached) {
    TestMap map(kPort + Named("IntReg", "Place", RegisterAt(0, 4) + Caching("NoCache") + kLittle) +
                Named("IntReg", "R", RegisterAt(Element("pAddress", "Place"), 4) + kLittle));
    map.port.Fill(16, {1, 0, 0, 0, 2});
    map.port.Fill(0, {16});
    EXPECT_EQ(map.Get("R"), "1");
    map.port.Fill(0, {20});  // by the device itself
    EXPECT_EQ(map.Get("R"), "2");
}

TEST(Registers, FloatsAndStringsAsBytes) {
    const auto real = [](const char* name, int address, int length, const std::string& order) {
        return Named("FloatReg", name, RegisterAt(address, length) + order);
    };
    TestMap map(kPort + real("F4B", 0, 4, kBig) + real("F4L", 4, 4, kLittle) +
                real("F8B", 8, 8, kBig) + real("F8L", 16, 8, kLittle) +
                Named("StringReg", "S", RegisterAt(32, 8)));
    for (const char* name : {"F4B", "F4L", "F8B", "F8L"})
        map.Floating(name).SetValue(-1.5);
    EXPECT_EQ(map.port.Content(0, 8), (Bytes{0xBF, 0xC0, 0, 0, 0, 0, 0xC0, 0xBF}));
    EXPECT_EQ(map.port.Content(8, 8), (Bytes{0xBF, 0xF8, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(map.port.Content(16, 8), (Bytes{0, 0, 0, 0, 0, 0, 0xF8, 0xBF}));
    for (const char* name : {"F4B", "F4L", "F8B", "F8L"})
        EXPECT_EQ(map.Floating(name).GetValue(false, true), -1.5) << name;
    EXPECT_EQ(map.Floating("F4B").GetMax(), std::numeric_limits<float>::max());
    EXPECT_EQ(map.Floating("F4B").GetMin(), -map.Floating("F4B").GetMax());
    EXPECT_EQ(map.Floating("F8B").GetMax(), std::numeric_limits<double>::max());

    map.port.Fill(32, {'c', 'a', 'm', 0, 'x', 'x', 'x', 'x'});
    EXPECT_EQ(map.Get("S"), "cam");
    map.Set("S", "12345678");
    EXPECT_EQ(map.port.Content(32, 8), (Bytes{'1', '2', '3', '4', '5', '6', '7', '8'}));
    EXPECT_EQ(ToStd(map.As<IString>("S").GetValue(false, true)), "12345678");
    map.Set("S", "ab");
    EXPECT_EQ(map.port.Content(32, 8), (Bytes{'a', 'b', 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(map.As<IString>("S").GetMaxLength(), 8);
    EXPECT_EQ(ErrorOf([&] { map.As<IString>("S").SetValue("123456789", false); }),
              "OutOfRangeException: String exceeds maximum length. Max length is 8");
    EXPECT_EQ(map.As<IRegister>("S").GetLength(), 8);
}

TEST(Registers, RawBytes) {
    TestMap map(kPort +
                Named("Register", "R",
                      Element("Address", 0) + "<pLength>Size</pLength><AccessMode>RW</AccessMode>"
                                              "<pPort>Device</pPort>") +
                Named("Integer", "Size", Element("Value", 4)));
    IRegister& reg = map.As<IRegister>("R");
    map.port.Fill(0, {0x0A, 0xB0, 0xFF, 0x01});
    EXPECT_EQ(map.Get("R"), "0x0ab0ff01");
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
        map.Set("R", t.text);
        EXPECT_EQ(map.port.Content(0, 5),
                  (Bytes{t.after[0], t.after[1], t.after[2], t.after[3], 0}));
        reg.Get(bytes, 4);
        EXPECT_EQ(Bytes(bytes, bytes + 4), t.after) << t.text;
    }
    for (const char* bad : {"", "0x", "123", "zz"})
        EXPECT_EQ(ErrorOf([&] { map.Set("R", bad); }),
                  "InvalidArgumentException: Node 'R' : cannot convert hex string")
            << bad;
    const std::string tooMuch = " : more data requested than hold by the register";
    const std::string null = " : pBuffer must not be NULL";
    EXPECT_EQ(ErrorOf([&] { reg.Get(bytes, 5); }),
              "OutOfRangeException: CRegisterImpl::InternalGet" + tooMuch);
    EXPECT_EQ(ErrorOf([&] { reg.Set(bytes, 5); }),
              "OutOfRangeException: CRegisterImpl::InternalSet" + tooMuch);
    EXPECT_EQ(ErrorOf([&] { reg.Get(nullptr, 1); }),
              "LogicalErrorException: CRegisterImpl::InternalGet" + null);
    EXPECT_EQ(ErrorOf([&] { reg.Set(nullptr, 1); }),
              "LogicalErrorException: CRegisterImpl::InternalSet" + null);
    map.Set("Size", "2");
    EXPECT_EQ(reg.GetLength(), 2);
    EXPECT_EQ(map.Get("R"), "0x0102");
}

// Two integers over one register, a second register at its place, one that it invalidates.
std::string CachedNodes(const char* mode) {
    return kPort +
           Named("IntReg", "R",
                 RegisterAt(0, 4) + Caching(mode) + Element("pInvalidator", "Trigger") + kLittle) +
           Named("Integer", "I", Element("pValue", "R")) +
           Named("Integer", "J", Element("pValue", "R")) +
           Named("IntReg", "Twin", RegisterAt(0, 4) + Caching(mode) + kBig) + IntReg("Trigger", 8);
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
        TestMap map(CachedNodes(c.mode));
        for (const char* name : {"I", "R", "J", "Twin"})
            EXPECT_EQ(map.Get(name), "0");
        EXPECT_EQ(map.port.TakeTrace(), c.reads);
        for (int i = 0; i < 2; ++i) {
            map.Set("I", "5");
            EXPECT_EQ(map.Get("I"), "5");
        }
        EXPECT_EQ(map.port.TakeTrace(), c.written);
        EXPECT_EQ(ToStd(map.Node("I").GetName()) + map.Get("J") + map.Get("R"), "I55");
    }
}

TEST(Caching, WhatDropsTheCache) {
    TestMap map(CachedNodes("WriteThrough"));
    IInteger& number = map.Integer("I");
    const auto traffic = [&] {
        number.GetValue();
        return map.port.TakeTrace();
    };
    EXPECT_FALSE(number.IsValueCacheValid());
    EXPECT_EQ(traffic(), "R0 ");
    EXPECT_TRUE(number.IsValueCacheValid());
    map.Node("I").InvalidateNode();
    EXPECT_EQ(traffic(), "") << "the register below keeps its content";
    map.Node("R").InvalidateNode();
    EXPECT_FALSE(number.IsValueCacheValid());
    EXPECT_EQ(traffic(), "R0 ");
    map.NodeMap()->InvalidateNodes();
    EXPECT_EQ(traffic(), "R0 ");
    map.Set("Trigger", "1");
    EXPECT_EQ(map.port.TakeTrace(), "W8=1 ");
    EXPECT_EQ(traffic(), "R0 ");

    map.port.Fill(0, {9});
    EXPECT_EQ(number.GetValue(false, true), 9);
    EXPECT_EQ(map.port.TakeTrace(), "R0 ");
    EXPECT_EQ(traffic(), "R0 ") << "reading past the cache leaves it invalid";
    EXPECT_EQ(traffic(), "");
}

TEST(Caching, FailedWritesLeaveNothingThatMayBeWrong) {
    for (const char* mode : {"WriteThrough", "WriteAround"}) {
        SCOPED_TRACE(mode);
        TestMap map(
            CachedNodes(mode) + IntReg("Fragile", 16) + Literal("L", "0") +
            Over("Both", "R", Element("pValueCopy", "Fragile")) +
            Over("BothL", "L", Element("pValueCopy", "Fragile")) +
            Named("IntSwissKnife", "K", "<pVariable Name='L'>L</pVariable><Formula>L</Formula>"));
        const auto read = [&] {
            return map.Get("I") + map.Get("J") + map.Get("Both") + map.Get("K");
        };
        EXPECT_EQ(read(), "0000");
        map.port.failing = 16;
        for (const char* name : {"Both", "BothL"})
            EXPECT_EQ(ErrorOf([&] { map.Set(name, "6"); }), "TimeoutException: no answer");
        EXPECT_EQ(read(), "6666") << "written before the other one failed";
        map.port.Fill(0, {7});
        map.Node("R").InvalidateNode();
        EXPECT_EQ(map.Get("I"), "7");
        map.port.failing = 0;
        EXPECT_EQ(ErrorOf([&] { map.Set("I", "8"); }), "TimeoutException: no answer");
        map.port.failing = -1;
        map.port.Fill(0, {8});
        EXPECT_EQ(map.Get("I") + map.Get("J"), "88") << "it may have arrived";
    }
}

TEST(Caching, EffectiveModes) {
    const auto knife = [](const char* name, const char* variable) {
        return Named(
            "SwissKnife", name,
            "<pVariable Name='V'>" + std::string(variable) + "</pVariable><Formula>V</Formula>");
    };
    TestMap map(kPort + Named("IntReg", "No", RegisterAt(0, 4) + Caching("NoCache") + kLittle) +
                IntReg("Through", 4) + Named("Integer", "OverNo", Element("pValue", "No")) +
                Named("Integer", "Literal", Element("Value", 1)) +
                Named("Float", "Real", Element("Value", 1)) + knife("Knife", "Through") +
                knife("KnifeOfNo", "OverNo"));
    const struct {
        const char* name;
        ECachingMode mode;
    } cases[] = {{"OverNo", NoCache},   {"Through", WriteThrough}, {"Literal", WriteThrough},
                 {"Real", WriteAround}, {"Knife", WriteAround},    {"KnifeOfNo", NoCache}};
    for (const auto& c : cases) {
        EXPECT_EQ(map.Node(c.name).GetCachingMode(), c.mode) << c.name;
        EXPECT_EQ(map.Node(c.name).IsCachable(), c.mode != NoCache) << c.name;
    }
    EXPECT_FALSE(map.Integer("Literal").IsValueCacheValid());
    map.Get("Literal");
    EXPECT_TRUE(map.Integer("Literal").IsValueCacheValid());
    map.Get("KnifeOfNo");
    map.Get("KnifeOfNo");
    EXPECT_EQ(map.port.TakeTrace(), "R0 R0 ");
}

}  // namespace
