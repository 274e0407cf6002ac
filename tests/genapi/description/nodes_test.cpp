// Which nodes a description leaves, in which order and with which elements.
#include <Base/GCException.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using testing::ElementsAre;

std::vector<std::string> namesOf(const Description& description) {
    std::vector<std::string> names;
    for (NodeId id = 0; id < description.nodeCount(); ++id)
        names.emplace_back(description.name(id));
    return names;
}

// The elements of a node as "Name=text"; the text of a link is the name it points to.
std::vector<std::string> elementsOf(const Description& description, const char* name) {
    std::vector<std::string> elements;
    for (const Property& property : description.properties(description.find(name))) {
        std::string text(isLink(property.element) ? description.name(property.node())
                                                  : description.text(property.text()));
        if (property.attribute != 0)
            text += "[" + std::string(description.text(property.attribute)) + "]";
        elements.push_back(text);
    }
    return elements;
}

NodeKind kindOf(const Description& description, const char* name) {
    return description.record(description.find(name)).kind;
}

TEST(DescriptionNodes, StandInTheOrderOfTheirFirstMention) {
    const auto description = load(
        document("<Group Comment='g'><Group Comment='h'>"
                 "<Category Name='Root'><pFeature>A</pFeature><pFeature>B</pFeature></Category>"
                 "</Group></Group>" +
                 integer("X") + "<Integer Name='B'><pValue>Y</pValue><pMax>X</pMax></Integer>" +
                 integer("Y") + integer("A")));
    EXPECT_THAT(namesOf(*description), ElementsAre("Root", "A", "B", "X", "Y"));
}

TEST(DescriptionNodes, AreFoundByName) {
    const auto description =
        load(document("<Node Name='S' NameSpace='Standard' ExposeStatic='Yes'/><Node Name='C'/>"));
    EXPECT_EQ(0u, description->find("S"));
    EXPECT_EQ(0u, description->find("Std::S"));
    EXPECT_EQ(kNoNode, description->find("Cust::S"));
    EXPECT_EQ(1u, description->find("Cust::C"));
    EXPECT_EQ(kNoNode, description->find("Nope"));
    EXPECT_EQ(kNoNode, description->find(""));
    EXPECT_TRUE(description->record(0).exposeStatic);
    EXPECT_FALSE(description->record(1).exposeStatic);
}

TEST(DescriptionNodes, EntriesOfEnumerations) {
    const auto description =
        load(document("<Enumeration Name='E'><EnumEntry Name='a'><Value>1</Value></EnumEntry>"
                      "<EnumEntry Name='b'><Value>2</Value><Symbolic> two </Symbolic></EnumEntry>"
                      "<EnumEntry Name='c'><Value>3</Value><Symbolic></Symbolic></EnumEntry>"
                      "<Value>1</Value></Enumeration>"));
    EXPECT_THAT(namesOf(*description),
                ElementsAre("E", "EnumEntry_E_a", "EnumEntry_E_b", "EnumEntry_E_c"));
    EXPECT_THAT(elementsOf(*description, "E"),
                ElementsAre("EnumEntry_E_a[a]", "EnumEntry_E_b[b]", "EnumEntry_E_c[c]", "1"));
    EXPECT_EQ("a", description->text(1, Element::Symbolic));
    EXPECT_EQ(" two ", description->text(2, Element::Symbolic));
    EXPECT_EQ("EnumEntry_E_c", description->text(3, Element::Symbolic));
}

// They mean nothing, and nothing is wrong with them but for what is wrong with any node.
TEST(DescriptionNodes, EntriesOutsideOfEnumerationsInSchema10) {
    const std::string entry = "<EnumEntry Name='E'><Value>1</Value></EnumEntry>";
    for (const std::string& nodes : {entry + integer("E"), integer("E") + entry})
        EXPECT_EQ(NodeKind::Integer, kindOf(*load(document(nodes, 0)), "E"));
    EXPECT_THROW(load(document(entry, 1)), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_THROW(load(document("<EnumEntry Name='E'><Value>x</Value></EnumEntry>", 0)),
                 GENICAM_NAMESPACE::PropertyException);
}

TEST(DescriptionNodes, HalvesOfConverters) {
    const auto description = load(document(
        "<IntConverter Name='C'><pVariable Name='A'>V</pVariable><FormulaTo>FROM-A</FormulaTo>"
        "<FormulaFrom>TO+A</FormulaFrom><pValue>X</pValue></IntConverter>"
        "<Converter Name='F'><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>"
        "<pValue>X</pValue></Converter>" +
        integer("V") + integer("X")));
    EXPECT_THAT(namesOf(*description), ElementsAre("C", "V", "X", "C_ConvertTo", "C_ConvertFrom",
                                                   "F", "F_ConvertTo", "F_ConvertFrom"));
    EXPECT_EQ(NodeKind::IntSwissKnife, kindOf(*description, "C_ConvertTo"));
    EXPECT_EQ(NodeKind::SwissKnife, kindOf(*description, "F_ConvertFrom"));
    EXPECT_THAT(elementsOf(*description, "C_ConvertFrom"), ElementsAre("V[A]", "TO+A"));
    EXPECT_EQ("C_ConvertTo", description->name(description->find(0, Element::pConvertTo)->node()));
}

TEST(DescriptionNodes, ConstantsAndExpressionsOfFormulas) {
    const auto description = load(document(
        "<SwissKnife Name='K'><pVariable Name='A'>V</pVariable><Constant Name='C'>1.5</Constant>"
        "<Expression Name='X'>A*C</Expression><Expression Name='Y'>X+1</Expression>"
        "<Formula>Y</Formula></SwissKnife>" +
        integer("V")));
    EXPECT_THAT(namesOf(*description), ElementsAre("K", "V", "_K_C", "_K_X", "_K_Y"));
    EXPECT_EQ(NodeKind::Float, kindOf(*description, "_K_C"));
    EXPECT_EQ(NodeKind::SwissKnife, kindOf(*description, "_K_X"));
    EXPECT_THAT(elementsOf(*description, "K"),
                ElementsAre("V[A]", "_K_C[C]", "_K_X[X]", "_K_Y[Y]", "Y"));
    EXPECT_THAT(elementsOf(*description, "_K_X"), ElementsAre("V[A]", "_K_C[C]", "A*C"));
    EXPECT_THAT(elementsOf(*description, "_K_Y"), ElementsAre("V[A]", "_K_C[C]", "_K_X[X]", "X+1"));
}

const char* const kAddress =
    "<IntSwissKnife Name='G'><pVariable Name='A'>I</pVariable><Formula>4*A</Formula>"
    "</IntSwissKnife>";

TEST(DescriptionNodes, FormulasInAddresses) {
    const auto description =
        load(document(std::string("<Register Name='R'>") + kAddress +
                      "<pIndex Offset=' 8'>I</pIndex><pIndex pOffset='O'>I</pIndex>"
                      "<pIndex Offset='7' pOffset='O'>I</pIndex><pIndex Offset='0'>I</pIndex>" +
                      kRegister + "</Register>" + kPort + integer("I") + integer("O")));
    EXPECT_THAT(namesOf(*description), ElementsAre("R", "_R_G", "I", "O", "Device"));
    EXPECT_THAT(elementsOf(*description, "R"),
                ElementsAre("_R_G", "I", " 8", "I", "O", "I", "7", "I", "0", "4", "RW", "Device"));
    EXPECT_EQ("_R_G", description->name(description->find(0, Element::pAddress)->node()));
    EXPECT_THAT(elementsOf(*description, "_R_G"), ElementsAre("I[A]", "4*A"));
}

TEST(DescriptionNodes, FormulasInAddressesOfStringsAndStructs) {
    const auto description =
        load(document(std::string("<StringReg Name='S'>") + kAddress + kRegister + "</StringReg>" +
                      over("X", "G") + kPort + integer("I")));
    EXPECT_THAT(namesOf(*description), ElementsAre("S", "G", "I", "Device", "X"));
    const std::string structure = std::string("<StructReg Comment='S'>") + kAddress + kRegister +
                                  "<Endianess>BigEndian</Endianess><StructEntry Name='P'>"
                                  "<Bit>1</Bit></StructEntry></StructReg>";
    EXPECT_THAT(textOf<GENICAM_NAMESPACE::RuntimeException>(
                    [&] { load(document(integer("G") + structure + kPort + integer("I"))); }),
                testing::HasSubstr("duplicate node'G'"));
}

TEST(DescriptionNodes, EntriesInheritFromTheirStruct) {
    const auto description = load(document(
        std::string("<StructReg Comment='S'><ToolTip>all</ToolTip><pError>E</pError>"
                    "<pError>I</pError>") +
        kAddress + kRegister +
        "<Endianess>BigEndian</Endianess>"
        "<StructEntry Name='P' NameSpace='Standard'><ToolTip>own</ToolTip><pError>I</pError>"
        "<AccessMode>RO</AccessMode><LSB>3</LSB><MSB>0</MSB></StructEntry>"
        "<StructEntry Name='Q'><Bit>1</Bit></StructEntry></StructReg>" +
        kPort + integer("I") + integer("E")));
    EXPECT_THAT(namesOf(*description), ElementsAre("E", "I", "G", "Device", "P", "Q"));
    EXPECT_THAT(elementsOf(*description, "P"),
                ElementsAre("own", "I", "RO", "3", "0", "G", "0", "4", "Device", "BigEndian"));
    EXPECT_THAT(elementsOf(*description, "Q"),
                ElementsAre("1", "all", "E", "I", "G", "0", "4", "RW", "Device", "BigEndian"));
    EXPECT_EQ(Standard, description->record(description->find("P")).nameSpace);
    EXPECT_EQ(Custom, description->record(description->find("Q")).nameSpace);
    EXPECT_THAT(elementsOf(*description, "G"), ElementsAre("I[A]", "4*A"));
}

TEST(DescriptionNodes, KeysOfConfigurationRoms) {
    const auto description = load(document(
        std::string("<ConfRom Name='R'><Unit>1</Unit><Address>0</Address><Length>4</Length>"
                    "<pPort>Device</pPort><TextDesc Name='T'>0x81</TextDesc>"
                    "<IntKey Name='K'>0x38</IntKey></ConfRom>") +
        kPort));
    EXPECT_THAT(namesOf(*description), ElementsAre("R", "Device", "T", "K"));
    EXPECT_EQ(NodeKind::TextDesc, kindOf(*description, "T"));
    EXPECT_THAT(elementsOf(*description, "K"), ElementsAre("R", "0x38"));
}

TEST(DescriptionNodes, Texts) {
    const std::string nodes =
        "<Node Name='N'><Extension><a xmlns='other'><b>x</b></a></Extension>"
        "<ToolTip> a &lt;&#66; <![CDATA[<c>]]>\r\n</ToolTip><DisplayName>d</DisplayName>"
        "<Visibility>Guru</Visibility></Node>";
    EXPECT_THAT(elementsOf(*load(document(nodes)), "N"), ElementsAre(" a <B <c>\n", "d", "Guru"));
    LoadOptions options;
    options.suppressStrings = true;
    EXPECT_THAT(elementsOf(*load(document(nodes), options), "N"), ElementsAre("d", "Guru"));
}

TEST(DescriptionNodes, PrefixedNamesAndInformation) {
    const auto description = load(
        "<g:RegisterDescription ModelName='M' VendorName='' StandardNameSpace='GEV' "
        "SchemaMajorVersion='1' SchemaMinorVersion='1' SchemaSubMinorVersion='0' ToolTip='t' "
        "MajorVersion='0x10' MinorVersion='-1' SubMinorVersion='70000' ProductGuid='P' "
        "VersionGuid='G' xmlns:g='http://www.genicam.org/GenApi/Version_1_1'><g:Node Name='N'/>"
        "<Node Name='O' xmlns='other'/><x:Node xmlns:x='other' Name='P'/></g:RegisterDescription>");
    EXPECT_EQ(3u, description->nodeCount());
    EXPECT_EQ("M", description->info().modelName);
    EXPECT_EQ("t", description->info().toolTip);
    EXPECT_EQ(16, description->info().deviceVersion.Major);
    EXPECT_EQ(65535, description->info().deviceVersion.Minor);
    EXPECT_EQ(4464, description->info().deviceVersion.SubMinor);
}

}  // namespace
}  // namespace test
