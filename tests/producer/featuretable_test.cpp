// Tables of features: what is made of a declaration, and what is refused.

#include "producers/server/registers/featuretable.h"

#include <stdexcept>

#include <gmock/gmock.h>

using namespace ZelCti;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

class FeatureTableTest : public ::testing::Test {
  protected:
    std::string Describe() { return features.Describe(DescriptionHeader{}); }

    RegisterSpace space{0xFFFF, ByteOrder::Big};
    FeatureTable features{space, "Device"};
};

// Nodes begin with their tag; helpers come behind the node that they belong to.
std::string NodeOf(const std::string& text, const std::string& tag) {
    const size_t begin = text.find("<" + tag + ">");
    return begin == std::string::npos ? "" : text.substr(begin, text.find("\n  </", begin) - begin);
}

TEST_F(FeatureTableTest, ADeclarationMakesTheRegisterAndItsNodes) {
    uint64_t width = 64;
    features.Category("Image", "The image.");
    features.Integer("GevSCPWidth", "Less than <100>.")
        .Get([&] { return width; })
        .Set([&](uint64_t value) { width = value; })
        .InvalidatedBy({"Height"})
        .Streamable()
        .Limits(1, "Max", 2)
        .Expert()
        .At(0x2110);
    features.Complete();

    const uint8_t bytes[] = {0, 0, 1, 2};
    space.Write(0x2110, bytes, sizeof(bytes));
    EXPECT_EQ(width, 0x102U);

    // Whatever the order of the declaration, elements are in that of the schema.
    EXPECT_EQ(NodeOf(Describe(), "Integer Name=\"GevSCPWidth\""), R"(<Integer Name="GevSCPWidth">
    <ToolTip>Less than &lt;100&gt;.</ToolTip>
    <DisplayName>Gev SCP Width</DisplayName>
    <Visibility>Expert</Visibility>
    <Streamable>Yes</Streamable>
    <pValue>GevSCPWidthReg</pValue>
    <Min>1</Min>
    <pMax>Max</pMax>
    <Inc>2</Inc>)");
    EXPECT_EQ(NodeOf(Describe(), "IntReg Name=\"GevSCPWidthReg\""),
              R"(<IntReg Name="GevSCPWidthReg">
    <Visibility>Invisible</Visibility>
    <Address>0x2110</Address>
    <Length>4</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
    <pInvalidator>Height</pInvalidator>
    <Sign>Unsigned</Sign>
    <Endianess>BigEndian</Endianess>)");
    EXPECT_THAT(NodeOf(Describe(), "Category Name=\"Image\""),
                HasSubstr("<pFeature>GevSCPWidth</pFeature>"));
}

// The functions decide what the register of a feature holds.
TEST_F(FeatureTableTest, FunctionsOfDoublesMakeAFloatingPointRegister) {
    double humidity = 45.5;
    features.Float("Humidity", "In percent.")
        .At(0x20)
        .Get([&] { return humidity; })
        .Set([&](double v) { humidity = v; });
    EXPECT_THAT([&] { features.IntReg("Mixed").At(0x40).Get([] { return 1; }).Set([](double) {}); },
                ThrowsMessage<std::logic_error>(HasSubstr("Mixed")));
    features.Complete();
    EXPECT_THAT(NodeOf(Describe(), "FloatReg Name=\"HumidityReg\""), HasSubstr("<Length>8<"));
    uint8_t bytes[8] = {};
    space.Read(0x20, bytes, sizeof(bytes));
    EXPECT_EQ(LoadInteger(bytes, sizeof(bytes), ByteOrder::Big), 0x4046C00000000000U);  // 45.5
    const uint8_t half[] = {0x3F, 0xE0, 0, 0, 0, 0, 0, 0};
    space.Write(0x20, half, sizeof(half));
    EXPECT_EQ(humidity, 0.5);
}

TEST_F(FeatureTableTest, AnAddressIsUsedOnce) {
    features.IntReg("First").At(0x100, 8);
    features.IntReg("Neighbour").At(0x108);
    features.IntReg("Second").At(0x104);
    EXPECT_THAT([&] { features.Complete(); }, ThrowsMessage<std::logic_error>(HasSubstr("Second")));
}

TEST_F(FeatureTableTest, AnAddressIsUsedOnceByTheRegistersOfAnIndex) {
    features.IntReg("Single").At(0x108);
    features.IntReg("Gains").At(0x100).Indexed("Selector", 3,
                                               [](size_t) { return IntegerValue{}; });
    EXPECT_THAT([&] { features.Complete(); }, ThrowsMessage<std::logic_error>(HasSubstr("Gains")));
}

// Several views of the same bits, and registers behind other ports, take no addresses.
TEST_F(FeatureTableTest, ViewsAndOtherPortsShareAddresses) {
    features.Memory(0x100, 4);
    features.MaskedIntReg("Low").At(0x100).Bits(0, 7);
    features.MaskedIntReg("High").At(0x100).Bits(8, 15);
    features.IntReg("Chunk").At(0x100).Port("ChunkPort");
    EXPECT_NO_THROW(features.Complete());
}

// Existing registers and those behind other ports stay where they are.
TEST_F(FeatureTableTest, ABaseMovesTheRegistersOfATable) {
    FeatureTable moved(space, "Device", Caching::On, 0x1000);
    EXPECT_EQ(moved.Memory(0x40, 4), 0x1040U);
    moved.MaskedIntReg("Mode").At(0x40).Bit(0);
    moved.IntReg("Gain").At(0x20).Initial(7).Indexed("Selector", 2,
                                                     [](size_t) { return IntegerValue{}; });
    moved.IntReg("Chunk").At(0x20).Port("ChunkPort");
    moved.IntReg("Key").AtExisting(0x80).IndexedBy("Selector", 16).Access(Access::ReadWrite);
    moved.IntReg("Version").AtExisting(0x84);
    moved.Complete();
    const std::string text = moved.Describe(DescriptionHeader{});
    EXPECT_THAT(NodeOf(text, "MaskedIntReg Name=\"Mode\""), HasSubstr("<Address>0x1040<"));
    EXPECT_THAT(NodeOf(text, "IntReg Name=\"Gain\""), HasSubstr("<Address>0x1020<"));
    EXPECT_THAT(NodeOf(text, "IntReg Name=\"Chunk\""), HasSubstr("<Address>0x20<"));
    EXPECT_THAT(NodeOf(text, "IntReg Name=\"Key\""),
                HasSubstr("<Address>0x80</Address>\n    <pIndex Offset=\"16\">Selector</pIndex>"));
    EXPECT_THAT(NodeOf(text, "IntReg Name=\"Version\""), HasSubstr("<AccessMode>RO<"));

    uint8_t gain[8] = {};
    space.Read(0x1020, gain, sizeof(gain));
    EXPECT_EQ(LoadInteger(gain, 4, ByteOrder::Big), 7U);
    EXPECT_NO_THROW(features.Memory(0x20, 4));
    EXPECT_NO_THROW(features.Memory(0x80, 8));
}

TEST_F(FeatureTableTest, DeclarationsThatMakeNoDescriptionAreRefused) {
    EXPECT_THAT([&] { features.IntReg("Number").With("Formula", "1"); },
                ThrowsMessage<std::logic_error>(HasSubstr("Number: no Formula")));
    EXPECT_THROW(features.Integer("Free").Range(), std::logic_error);
    features.IntReg("Selected").At(0).SelectedBy("NoSelector");
    EXPECT_THAT([&] { features.Complete(); },
                ThrowsMessage<std::logic_error>(HasSubstr("Selected: there is no NoSelector")));
}

TEST_F(FeatureTableTest, TheAccessFollowsFromWhatARegisterDoes) {
    features.IntReg("Shown").At(0x00).Get([] { return 7; });
    features.IntReg("Memory").At(0x04).Initial(0x01020304);
    features.Command("Run").At(0x08).Does([] {});
    features.Complete();
    const std::string text = Describe();
    EXPECT_THAT(NodeOf(text, "IntReg Name=\"Shown\""), HasSubstr(">RO<"));
    EXPECT_THAT(NodeOf(text, "IntReg Name=\"Memory\""), HasSubstr(">RW<"));
    EXPECT_THAT(NodeOf(text, "IntReg Name=\"RunReg\""), HasSubstr(">WO<"));
    uint8_t bytes[8] = {};
    space.Read(0, bytes, sizeof(bytes));
    EXPECT_EQ(LoadInteger(bytes, sizeof(bytes), ByteOrder::Big), 0x0000000701020304U);
    EXPECT_ANY_THROW(space.Write(0, bytes, 4));
    EXPECT_ANY_THROW(space.Read(8, bytes, 4));
}

}  // namespace
