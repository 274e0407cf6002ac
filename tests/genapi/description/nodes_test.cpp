// Which nodes a description leaves, in which order and with which elements.
#include <Base/GCException.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using testing::ElementsAre;

std::vector<std::string> NamesOf(const Description& description) {
    std::vector<std::string> names;
    for (NodeId id = 0; id < description.NodeCount(); ++id)
        names.emplace_back(description.Name(id));
    return names;
}

// The elements of a node as "Name=text"; the text of a link is the name it points to.
std::vector<std::string> ElementsOf(const Description& description, const char* name) {
    std::vector<std::string> elements;
    for (const Property& property : description.Properties(description.Find(name))) {
        std::string text(IsLink(property.element) ? description.Name(property.Target())
                                                  : description.Text(property.Text()));
        if (property.attribute != 0)
            text += "[" + std::string(description.Text(property.attribute)) + "]";
        elements.push_back(text);
    }
    return elements;
}

NodeKind KindOf(const Description& description, const char* name) {
    return description.Record(description.Find(name)).kind;
}

TEST(DescriptionNodes, StandInTheOrderOfTheirFirstMention) {
    const auto description = Load(
        Document("<Group Comment='g'><Group Comment='h'>"
                 "<Category Name='Root'><pFeature>A</pFeature><pFeature>B</pFeature></Category>"
                 "</Group></Group>" +
                 Integer("X") + "<Integer Name='B'><pValue>Y</pValue><pMax>X</pMax></Integer>" +
                 Integer("Y") + Integer("A")));
    EXPECT_THAT(NamesOf(*description), ElementsAre("Root", "A", "B", "X", "Y"));
}

TEST(DescriptionNodes, AreFoundByName) {
    const auto description =
        Load(Document("<Node Name='S' NameSpace='Standard' ExposeStatic='Yes'/><Node Name='C'/>"));
    EXPECT_EQ(0u, description->Find("S"));
    EXPECT_EQ(0u, description->Find("Std::S"));
    EXPECT_EQ(kNoNode, description->Find("Cust::S"));
    EXPECT_EQ(1u, description->Find("Cust::C"));
    EXPECT_EQ(kNoNode, description->Find("Nope"));
    EXPECT_EQ(kNoNode, description->Find(""));
    EXPECT_TRUE(description->Record(0).exposeStatic);
    EXPECT_FALSE(description->Record(1).exposeStatic);
}

TEST(DescriptionNodes, EntriesOfEnumerations) {
    const auto description =
        Load(Document("<Enumeration Name='E'><EnumEntry Name='a'><Value>1</Value></EnumEntry>"
                      "<EnumEntry Name='b'><Value>2</Value><Symbolic> two </Symbolic></EnumEntry>"
                      "<EnumEntry Name='c'><Value>3</Value><Symbolic></Symbolic></EnumEntry>"
                      "<Value>1</Value></Enumeration>"));
    EXPECT_THAT(NamesOf(*description),
                ElementsAre("E", "EnumEntry_E_a", "EnumEntry_E_b", "EnumEntry_E_c"));
    EXPECT_THAT(ElementsOf(*description, "E"),
                ElementsAre("EnumEntry_E_a[a]", "EnumEntry_E_b[b]", "EnumEntry_E_c[c]", "1"));
    EXPECT_EQ("a", description->Text(1, Element::Symbolic));
    EXPECT_EQ(" two ", description->Text(2, Element::Symbolic));
    EXPECT_EQ("EnumEntry_E_c", description->Text(3, Element::Symbolic));
}

// They mean nothing, and nothing is wrong with them but for what is wrong with any node.
TEST(DescriptionNodes, EntriesOutsideOfEnumerationsInSchema10) {
    const std::string entry = "<EnumEntry Name='E'><Value>1</Value></EnumEntry>";
    for (const std::string& nodes : {entry + Integer("E"), Integer("E") + entry})
        EXPECT_EQ(NodeKind::Integer, KindOf(*Load(Document(nodes, 0)), "E"));
    EXPECT_THROW(Load(Document(entry, 1)), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_THROW(Load(Document("<EnumEntry Name='E'><Value>x</Value></EnumEntry>", 0)),
                 GENICAM_NAMESPACE::PropertyException);
}

TEST(DescriptionNodes, HalvesOfConverters) {
    const auto description = Load(Document(
        "<IntConverter Name='C'><pVariable Name='A'>V</pVariable><FormulaTo>FROM-A</FormulaTo>"
        "<FormulaFrom>TO+A</FormulaFrom><pValue>X</pValue></IntConverter>"
        "<Converter Name='F'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>"
        "<pValue>X</pValue></Converter>" +
        Integer("V") + Integer("X")));
    EXPECT_THAT(NamesOf(*description), ElementsAre("C", "V", "X", "C_ConvertTo", "C_ConvertFrom",
                                                   "F", "F_ConvertTo", "F_ConvertFrom"));
    EXPECT_EQ(NodeKind::IntSwissKnife, KindOf(*description, "C_ConvertTo"));
    EXPECT_EQ(NodeKind::SwissKnife, KindOf(*description, "F_ConvertFrom"));
    EXPECT_THAT(ElementsOf(*description, "C_ConvertFrom"), ElementsAre("V[A]", "TO+A"));
    EXPECT_EQ("C_ConvertTo",
              description->Name(description->Find(0, Element::pConvertTo)->Target()));
}

TEST(DescriptionNodes, ConstantsAndExpressionsOfFormulas) {
    const auto description = Load(Document(
        "<SwissKnife Name='K'><pVariable Name='A'>V</pVariable><Constant Name='C'>1.5</Constant>"
        "<Expression Name='X'>A*C</Expression><Expression Name='Y'>X+1</Expression>"
        "<Formula>Y</Formula></SwissKnife>" +
        Integer("V")));
    EXPECT_THAT(NamesOf(*description), ElementsAre("K", "V", "_K_C", "_K_X", "_K_Y"));
    EXPECT_EQ(NodeKind::Float, KindOf(*description, "_K_C"));
    EXPECT_EQ(NodeKind::SwissKnife, KindOf(*description, "_K_X"));
    EXPECT_THAT(ElementsOf(*description, "K"),
                ElementsAre("V[A]", "_K_C[C]", "_K_X[X]", "_K_Y[Y]", "Y"));
    EXPECT_THAT(ElementsOf(*description, "_K_X"), ElementsAre("V[A]", "_K_C[C]", "A*C"));
    EXPECT_THAT(ElementsOf(*description, "_K_Y"), ElementsAre("V[A]", "_K_C[C]", "_K_X[X]", "X+1"));
}

const char* const kAddress =
    "<IntSwissKnife Name='G'><pVariable Name='A'>I</pVariable><Formula>4*A</Formula>"
    "</IntSwissKnife>";

TEST(DescriptionNodes, FormulasInAddresses) {
    const auto description =
        Load(Document(std::string("<Register Name='R'>") + kAddress +
                      "<pIndex Offset=' 8'>I</pIndex><pIndex pOffset='O'>I</pIndex>"
                      "<pIndex Offset='7' pOffset='O'>I</pIndex><pIndex Offset='0'>I</pIndex>" +
                      kRegister + "</Register>" + kPort + Integer("I") + Integer("O")));
    EXPECT_THAT(NamesOf(*description), ElementsAre("R", "_R_G", "I", "O", "Device"));
    EXPECT_THAT(ElementsOf(*description, "R"),
                ElementsAre("_R_G", "I", " 8", "I", "O", "I", "7", "I", "0", "4", "RW", "Device"));
    EXPECT_EQ("_R_G", description->Name(description->Find(0, Element::pAddress)->Target()));
    EXPECT_THAT(ElementsOf(*description, "_R_G"), ElementsAre("I[A]", "4*A"));
}

TEST(DescriptionNodes, FormulasInAddressesOfStringsAndStructs) {
    const auto description =
        Load(Document(std::string("<StringReg Name='S'>") + kAddress + kRegister + "</StringReg>" +
                      Over("X", "G") + kPort + Integer("I")));
    EXPECT_THAT(NamesOf(*description), ElementsAre("S", "G", "I", "Device", "X"));
    const std::string structure = std::string("<StructReg Comment='S'>") + kAddress + kRegister +
                                  "<Endianess>BigEndian</Endianess><StructEntry Name='P'>"
                                  "<Bit>1</Bit></StructEntry></StructReg>";
    EXPECT_THAT(TextOf<GENICAM_NAMESPACE::RuntimeException>(
                    [&] { Load(Document(Integer("G") + structure + kPort + Integer("I"))); }),
                testing::HasSubstr("duplicate node'G'"));
}

TEST(DescriptionNodes, EntriesInheritFromTheirStruct) {
    const auto description = Load(Document(
        std::string("<StructReg Comment='S'><ToolTip>all</ToolTip><pError>E</pError>"
                    "<pError>I</pError>") +
        kAddress + kRegister +
        "<Endianess>BigEndian</Endianess>"
        "<StructEntry Name='P' NameSpace='Standard'><ToolTip>own</ToolTip><pError>I</pError>"
        "<AccessMode>RO</AccessMode><LSB>3</LSB><MSB>0</MSB></StructEntry>"
        "<StructEntry Name='Q'><Bit>1</Bit></StructEntry></StructReg>" +
        kPort + Integer("I") + Integer("E")));
    EXPECT_THAT(NamesOf(*description), ElementsAre("E", "I", "G", "Device", "P", "Q"));
    EXPECT_THAT(ElementsOf(*description, "P"),
                ElementsAre("own", "I", "RO", "3", "0", "G", "0", "4", "Device", "BigEndian"));
    EXPECT_THAT(ElementsOf(*description, "Q"),
                ElementsAre("1", "all", "E", "I", "G", "0", "4", "RW", "Device", "BigEndian"));
    EXPECT_EQ(Standard, description->Record(description->Find("P")).nameSpace);
    EXPECT_EQ(Custom, description->Record(description->Find("Q")).nameSpace);
    EXPECT_THAT(ElementsOf(*description, "G"), ElementsAre("I[A]", "4*A"));
}

TEST(DescriptionNodes, KeysOfConfigurationRoms) {
    const auto description = Load(Document(
        std::string("<ConfRom Name='R'><Unit>1</Unit><Address>0</Address><Length>4</Length>"
                    "<pPort>Device</pPort><TextDesc Name='T'>0x81</TextDesc>"
                    "<IntKey Name='K'>0x38</IntKey></ConfRom>") +
        kPort));
    EXPECT_THAT(NamesOf(*description), ElementsAre("R", "Device", "T", "K"));
    EXPECT_EQ(NodeKind::TextDesc, KindOf(*description, "T"));
    EXPECT_THAT(ElementsOf(*description, "K"), ElementsAre("R", "0x38"));
}

TEST(DescriptionNodes, Texts) {
    const std::string nodes =
        "<Node Name='N'><Extension><a xmlns='other'><b>x</b></a></Extension>"
        "<ToolTip> a &lt;&#66; <![CDATA[<c>]]>\r\n</ToolTip><DisplayName>d</DisplayName>"
        "<Visibility>Guru</Visibility></Node>";
    EXPECT_THAT(ElementsOf(*Load(Document(nodes)), "N"), ElementsAre(" a <B <c>\n", "d", "Guru"));
    LoadOptions options;
    options.suppressStrings = true;
    EXPECT_THAT(ElementsOf(*Load(Document(nodes), options), "N"), ElementsAre("d", "Guru"));
}

TEST(DescriptionNodes, PrefixedNamesAndInformation) {
    const auto description = Load(
        "<g:RegisterDescription ModelName='M' VendorName='' StandardNameSpace='GEV' "
        "SchemaMajorVersion='1' SchemaMinorVersion='1' SchemaSubMinorVersion='0' ToolTip='t' "
        "MajorVersion='0x10' MinorVersion='-1' SubMinorVersion='70000' ProductGuid='P' "
        "VersionGuid='G' xmlns:g='http://www.genicam.org/GenApi/Version_1_1'><g:Node Name='N'/>"
        "<Node Name='O' xmlns='other'/><x:Node xmlns:x='other' Name='P'/></g:RegisterDescription>");
    EXPECT_EQ(3u, description->NodeCount());
    EXPECT_EQ("M", description->Info().modelName);
    EXPECT_EQ("t", description->Info().toolTip);
    EXPECT_EQ(16, description->Info().deviceVersion.Major);
    EXPECT_EQ(65535, description->Info().deviceVersion.Minor);
    EXPECT_EQ(4464, description->Info().deviceVersion.SubMinor);
}

}  // namespace
}  // namespace test
