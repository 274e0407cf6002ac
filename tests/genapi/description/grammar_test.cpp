// What may stand where in a description, with which attributes and texts: the same for both
// schemas.
#include <algorithm>
#include <sstream>

#include <Base/GCException.h>
#include <gtest/gtest.h>

#include "genapi/description/contentmodel.h"
#include "genapi/description/nodedata.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using GENICAM_NAMESPACE::GenericException;
using GENICAM_NAMESPACE::OutOfRangeException;
using GENICAM_NAMESPACE::PropertyException;
using GENICAM_NAMESPACE::RuntimeException;

constexpr const char* kFine = "nothing";
constexpr const char* kMissing = "expected element not encountered";
constexpr const char* kTooMuch = "unexpected element encountered";
constexpr const char* kNoAttribute = "expected attribute not encountered";
constexpr const char* kAttribute = "unexpected attribute encountered";
constexpr const char* kWord = "value is not in enumeration";
constexpr const char* kShort = "length is less than minimum allowed";
constexpr const char* kText = "unexpected characters encountered";
constexpr const char* kInteger = "invalid integer value";
constexpr const char* kDouble = "invalid double value";
constexpr const char* kBoolean = "invalid boolean value";

// What the nodes may refer to.
const std::string kOthers = kPort + Integer("X") + Named("Float", "XF", Element("Value", "1.5")) +
                            Named("Boolean", "XB", Element("Value", "true")) +
                            Named("Enumeration", "XE", Entry("A", 1) + Element("Value", 1)) +
                            Named("String", "XS", Element("Value", "s")) +
                            Named("Category", "XC", "");

// Why a description is refused: the reason of a parse error, or else the whole text.
std::string ReasonOf(const std::string& nodes, int minor) {
    const std::string text =
        TextOf<GenericException>([&] { Load(Document(nodes + kOthers, minor)); });
    if (text.find("parsing XML stream") == std::string::npos) return text;
    const size_t quote = text.find('\'') + 1;
    return text.substr(quote, text.size() - quote - 1);
}

struct Case {
    std::string nodes;
    std::string reason;
};

void Check(const std::vector<Case>& cases) {
    for (const Case& one : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ(one.reason, ReasonOf(one.nodes, minor)) << one.nodes << minor;
}

// "ok", or whether something was missing or too much, when the elements come one after the other.
std::string Verdict(const ContentModel& model, const std::string& elements) {
    ContentModel::State state = model.Start();
    std::istringstream words(elements);
    for (std::string word; words >> word;) {
        const ContentModel::State next = model.After(state, FindTag(word)->key);
        if (next == 0) return word + ((state & ContentModel::kEnd) != 0 ? " too much" : " early");
        state = next;
    }
    return (state & ContentModel::kEnd) != 0 ? "ok" : "missing";
}

TEST(ContentModels, FollowTheirExpression) {
    const ContentModel model("Unit? (Min | pMin (Max | pMax)+)* Value");
    EXPECT_EQ("missing", Verdict(model, ""));
    EXPECT_EQ("ok", Verdict(model, "Value"));
    EXPECT_EQ("ok", Verdict(model, "Unit Min Min pMin Max pMax Min pMin Max Value"));
    EXPECT_EQ("Unit early", Verdict(model, "Unit Unit"));
    EXPECT_EQ("Max early", Verdict(model, "Min Max"));
    EXPECT_EQ("Value early", Verdict(model, "pMin Value"));
    EXPECT_EQ("Value too much", Verdict(model, "Value Value"));
    const ContentModel repeated("(Unit? Value)+");
    EXPECT_EQ("ok", Verdict(repeated, "Value Unit Value Value"));
    EXPECT_EQ("missing", Verdict(repeated, "Value Unit"));
    EXPECT_EQ("Min too much", Verdict(ContentModel(""), "Min"));
}

TEST(Grammar, OrderOfElements) {
    const std::string place = "<Address>0</Address><Length>4</Length>";
    const std::string port = "<AccessMode>RW</AccessMode><pPort>Device</pPort>";
    const std::string invalidator = Element("pInvalidator", "X");
    const std::string streamable = Element("Streamable", "Yes");
    const std::string halves = "<FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>";
    const std::string value = Element("pValue", "X");
    Check({
        // the elements of every node; what is new in schema 1.1 also in 1.0
        {Named("Node", "N",
               "<Extension/><ToolTip>t</ToolTip><Description>d</Description>"
               "<DisplayName>n</DisplayName><Visibility>Guru</Visibility><DocuURL>u</DocuURL>"
               "<IsDeprecated>No</IsDeprecated><EventID>1</EventID>"
               "<pIsImplemented>X</pIsImplemented><pIsAvailable>X</pIsAvailable>"
               "<pIsLocked>X</pIsLocked><pBlockPolling>X</pBlockPolling>"
               "<ImposedAccessMode>RO</ImposedAccessMode><pError>XE</pError><pError>XE</pError>"
               "<pAlias>X</pAlias><pCastAlias>X</pCastAlias>" +
                   invalidator + invalidator),
         kFine},
        {Named("Node", "N", "<Description>d</Description><ToolTip>t</ToolTip>"), kTooMuch},
        {Named("Node", "N", "<ToolTip>t</ToolTip><ToolTip>t</ToolTip>"), kTooMuch},
        {Named("Node", "N", "<ToolTip>t</ToolTip><Extension/>"), kTooMuch},
        {Named("Node", "N", "<Extension/><Extension/>"), kTooMuch},
        {Named("Node", "N", "<Nope/>"), kTooMuch},
        // pInvalidator and Streamable: registers have them elsewhere
        {Named("Integer", "I", invalidator + streamable + value), kFine},
        {Named("Integer", "I", streamable + invalidator + value), kMissing},
        {Named("Register", "R",
               streamable + place + port +
                   "<Cachable>NoCache</Cachable><PollingTime>1</PollingTime>" + invalidator),
         kFine},
        {Named("Register", "R", invalidator + streamable + place + port), kMissing},
        {Named("Register", "R", place + port + streamable), kTooMuch},
        {Named("Register", "R", place + port + invalidator + Element("PollingTime", 1)), kTooMuch},
        // the place of a register
        {Named("Register", "R",
               "<pAddress>X</pAddress><Address>1</Address><pIndex Offset='4'>X</pIndex>"
               "<IntSwissKnife Name='K'><Formula>1</Formula></IntSwissKnife>"
               "<pLength>X</pLength>" +
                   port),
         kFine},
        {Named("Register", "R", "<Length>4</Length><Address>0</Address>" + port), kMissing},
        {Named("Register", "R", place + Element("pLength", "X") + port), kMissing},
        {Named("Register", "R", place + "<pPort>Device</pPort><AccessMode>RW</AccessMode>"),
         kMissing},
        // integers and floats
        {Named("Integer", "I", "<pValueCopy>X</pValueCopy>" + value + "<pValueCopy>X</pValueCopy>"),
         kFine},
        {Named("Integer", "I", "<pValueCopy>X</pValueCopy>"), kMissing},
        {Named("Float", "F", "<pValueCopy>X</pValueCopy>" + value), kMissing},
        {Named("Integer", "I",
               "<pIndex>X</pIndex><ValueIndexed Index='1'>1</ValueIndexed>"
               "<pValueIndexed Index='2'>X</pValueIndexed><ValueDefault>3</ValueDefault>"
               "<pMin>X</pMin><Max>1</Max><pInc>X</pInc><Unit>m</Unit>"
               "<Representation>Linear</Representation><ValidValueSet>1;2</ValidValueSet>"
               "<pSelected>XF</pSelected>"),
         kFine},
        {Named("Integer", "I", "<pIndex>X</pIndex><ValueDefault>3</ValueDefault>"), kMissing},
        {Named("Integer", "I", Element("Value", 1) + value), kTooMuch},
        {Literal("I", "1", "<Min>1</Min><pMin>X</pMin>"), kTooMuch},
        {Literal("I", "1", "<Max>1</Max><Min>1</Min>"), kTooMuch},
        {Literal("F", "1", "<pSelected>X</pSelected>", "Float"), kTooMuch},
        {Literal("F", "1",
                 "<DisplayNotation>Fixed</DisplayNotation><DisplayPrecision>1</DisplayPrecision>",
                 "Float"),
         kFine},
        // bits
        {Named("MaskedIntReg", "R", place + port + "<LSB>0</LSB><MSB>1</MSB>" + kLittle), kFine},
        {Named("MaskedIntReg", "R", place + port + "<MSB>1</MSB><LSB>0</LSB>" + kLittle), kMissing},
        {Named("MaskedIntReg", "R", place + port + "<LSB>0</LSB>" + kLittle), kMissing},
        {Named("MaskedIntReg", "R", place + port + "<Bit>0</Bit><MSB>1</MSB>" + kLittle), kMissing},
        {Named("MaskedIntReg", "R",
               "<Address>0</Address><pLength>X</pLength>" + port + "<Bit>0</Bit>" + kLittle),
         kMissing},
        {Named("IntReg", "R", place + port + kLittle + Element("Sign", "Signed")), kTooMuch},
        {"<StructReg Comment=''>" + place + port + kLittle +
             Named("StructEntry", "E",
                   "<PollingTime>1</PollingTime>" + streamable + "<Bit>1</Bit><Unit>u</Unit>") +
             "</StructReg>",
         kFine},
        {"<StructReg Comment=''>" + place + port + kLittle + "</StructReg>", kMissing},
        {"<StructReg Comment=''>" + place + port + kLittle +
             Named("StructEntry", "E", "<Bit>1</Bit>" + streamable) + "</StructReg>",
         kTooMuch},
        // other kinds
        {Named("Boolean", "B", "<OnValue>1</OnValue><Value>true</Value>"), kMissing},
        {Named("Command", "C",
               value + "<CommandValue>1</CommandValue>" + Element("PollingTime", 1)),
         kFine},
        {Named("Command", "C", streamable + value + "<CommandValue>1</CommandValue>"), kMissing},
        {Named("Enumeration", "E", Entry("A", 1) + value + "<PollingTime>1</PollingTime>"), kFine},
        {Named("Enumeration", "E", value), kMissing},
        {Named("Enumeration", "E", value + Entry("A", 1)), kMissing},
        {Named("Enumeration", "E", "<pEnumEntry>A</pEnumEntry>" + value), kMissing},
        {Named("Enumeration", "E", Named("EnumEntry", "A", Entry("B", 1)) + value), kTooMuch},
        {Named("Enumeration", "E",
               Entry("A", 1, "",
                     "<NumericValue>1.5</NumericValue><Symbolic>s</Symbolic>"
                     "<IsSelfClearing>No</IsSelfClearing>") +
                   value),
         kFine},
        {Named("Enumeration", "E", Named("EnumEntry", "A", "<Symbolic>s</Symbolic>") + value),
         kMissing},
        {Named("SwissKnife", "K",
               "<pVariable Name='A'>X</pVariable><Constant Name='C'>1.5</Constant>"
               "<Expression Name='E'>1</Expression><Formula>A</Formula>"),
         kFine},
        {Named("SwissKnife", "K", "<Formula>A</Formula><pVariable Name='A'>X</pVariable>"),
         kTooMuch},
        {Named("IntSwissKnife", "K",
               "<Constant Name='C'>1</Constant>"
               "<pVariable Name='A'>X</pVariable><Formula>A</Formula>"),
         kMissing},
        {Named("Converter", "C", halves + value + "<Slope>Varying</Slope><IsLinear>No</IsLinear>"),
         kFine},
        {Named("IntConverter", "C", halves + value + "<Slope>Varying</Slope>"), kFine},
        {Named("IntConverter", "C", halves + value + "<IsLinear>No</IsLinear>"), kTooMuch},
        {Named("Converter", "C", value + halves), kMissing},
        {Named("Port", "P", "<ChunkID>1</ChunkID><SwapEndianess>No</SwapEndianess>"), kFine},
        {Named("Port", "P", "<SwapEndianess>No</SwapEndianess><ChunkID>1</ChunkID>"), kTooMuch},
        {Named("String", "S", "<Value>a</Value><pValue>XS</pValue>"), kTooMuch},
        {Named("Category", "C", "<pFeature>X</pFeature>" + invalidator), kTooMuch},
        // top level
        {"<Group Comment='a'><Group Comment='b'>" + Integer("I") + "</Group></Group>", kFine},
        {"<Nope/>", kTooMuch},
        {"<Extension/>", kTooMuch},
        {Named("StructEntry", "E", "<Bit>1</Bit>"), kTooMuch},
        {Named("Integer", "I", "<Value>1<b/></Value>"), kTooMuch},
    });
}

TEST(Grammar, Extensions) {
    const auto extension = [](const std::string& text) {
        return Named("Node", "N", text + "<ToolTip>t</ToolTip>");
    };
    Check({
        {extension("<Extension><a x='1'>b<c xmlns='d'/></a>" + Integer("X") + "</Extension>"),
         kFine},
        {extension("<Extension>text</Extension>"), kText},
        {extension("<Extension a='1'/>"), kAttribute},
        {extension("<Extension><q:a/></Extension>"), "unbound prefix"},
    });
}

TEST(Grammar, Attributes) {
    const std::string reg = "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>";
    Check({
        {"<Node Name='N' NameSpace='Standard' MergePriority=' -1' ExposeStatic='Yes'/>", kFine},
        {"<Node Name='N' NameSpace=''/>", kFine},
        {"<Node Name='N' NameSpace='Std'/>", kWord},
        {"<Node Name='N' NameSpace=' Custom'/>", kWord},
        {"<Node Name='N' MergePriority='x'/>", kInteger},
        {"<Node Name='N' MergePriority=''/>", kInteger},
        {"<Node Name='N' ExposeStatic=''/>", kWord},
        {"<Node Name='N' Nope=''/>", kAttribute},
        {"<Node/>", kNoAttribute},
        {"<Node Name='N' xml:lang='en'/>", kAttribute},
        {"<Node Name='N' xmlns:s='http://www.w3.org/2001/XMLSchema-instance' s:nil='true'/>",
         kFine},
        {"<Node Name='N' xmlns:s='http://www.w3.org/2001/XMLSchema-instance' s:nope='true'/>",
         kAttribute},
        {"<Node Name='N' xmlns:s='other' s:nil='true'/>", kAttribute},
        {"<Node Name='N' s:nil='true'/>", "unbound prefix"},
        {"<a:Node xmlns:a='u' Name='N'/><a:Node Name='M'/>", "unbound prefix"},
        {"<Group Comment=''/>", kFine},
        {"<Group/>", kNoAttribute},
        {"<Group>" + Integer("I") + "</Group>", kNoAttribute},
        {"<Group Comment='' Name=''/>", kAttribute},
        {"<StructReg Comment='' Name='S'/>", kAttribute},
        {Named("Integer", "I", "<Value a=''>1</Value>"), kAttribute},
        {Named("IntSwissKnife", "K", "<pVariable>X</pVariable><Formula>1</Formula>"), kNoAttribute},
        {Named("IntSwissKnife", "K", "<pVariable Name=''>X</pVariable><Formula>1</Formula>"),
         kFine},
        {Named("Integer", "I",
               "<pIndex>X</pIndex><ValueIndexed>1</ValueIndexed><ValueDefault>1</ValueDefault>"),
         kNoAttribute},
        {Named("Integer", "I",
               "<pIndex Offset='4'>X</pIndex><ValueIndexed Index='1'>1</ValueIndexed>"
               "<ValueDefault>1</ValueDefault>"),
         kAttribute},
        {Named("Register", "R", "<pIndex Offset='4' pOffset='X'>X</pIndex>" + reg), kFine},
        {Named("Register", "R", "<pIndex Index='4'>X</pIndex>" + reg), kAttribute},
    });
    std::string root = Document("");
    root.insert(root.find(" VendorName"), " Nope=''");
    EXPECT_NE(std::string::npos, TextOf<RuntimeException>([&] { Load(root); }).find(kAttribute));
    root = Document("");
    root.replace(root.find("'GEV'"), 5, "'gev'");
    EXPECT_NE(std::string::npos, TextOf<RuntimeException>([&] { Load(root); }).find(kWord));
    root = Document("");
    root.replace(root.find("MajorVersion='2'"), 16, "MajorVersion='x'");
    EXPECT_EQ("Error in property of type 'MajorVersion': cannot convert 'x' to int64_t",
              TextOf<PropertyException>([&] { Load(root); }));
}

TEST(Grammar, Words) {
    const auto node = [](const std::string& name, const std::string& text) {
        return Named("Integer", "I", Element(name, text) + Element("Value", 1));
    };
    const auto reg = [](const std::string& access, const std::string& after = "") {
        return Named("IntReg", "R", RegisterAt(0, 4, access) + after);
    };
    Check({
        {node("Visibility", ""), kFine},
        {node("Visibility", "guru"), kWord},
        {node("Streamable", ""), kFine},
        {node("Streamable", "Yes "), kWord},
        {node("ImposedAccessMode", ""), kFine},
        {node("ImposedAccessMode", "NA"), kWord},
        {reg("", Element("Cachable", "") + Element("Sign", "") + Element("Endianess", "")), kFine},
        {reg("rw", kLittle), kWord},
        {reg("RW", Element("Cachable", "Yes") + kLittle), kWord},
        {reg("RW", Element("Sign", "signed") + kLittle), kWord},
        {reg("RW", Element("Endianess", "Little")), kWord},
        {Literal("I", "1", Element("Representation", "MACAddress")), kFine},
        {Literal("I", "1", Element("Representation", "")), kWord},
        {Literal("F", "1", Element("Representation", "PureNumber"), "Float"), kFine},
        {Literal("F", "1", Element("Representation", "HexNumber"), "Float"), kWord},
        {Literal("F", "1", Element("DisplayNotation", ""), "Float"), kWord},
        {node("ToolTip", " "), kFine},
        {node("ToolTip", ""), kShort},
        {node("DisplayName", ""), kShort},
        {node("DocuURL", ""), kFine},
        {node("EventID", ""), kFine},
        {Literal("I", "1", Element("Unit", "")), kShort},
        {Literal("I", "1", Element("ValidValueSet", "")), kShort},
        {Literal("S", "", "", "String"), kFine},
        {Named("Node", "N", "text"), kText},
        {"text", kText},
        {Named("Integer", "I", "<Value>1<!-- a -->2<![CDATA[3]]></Value>"), kFine},
        {Named("SmartFeature", "F",
               "<FeatureID>1</FeatureID><Address>0</Address><pPort>Device</pPort>"),
         "Error while parsing XML file : 1 is not a valid GUID "},
        {Named("SmartFeature", "F",
               "<FeatureID>11111111-2222-3333-4444-55555555555a</FeatureID><Address>0</Address>"
               "<pPort>Device</pPort>"),
         kFine},
    });
}

// An empty element is the default, not nothing.
TEST(Grammar, EmptyWordsAreDefaults) {
    const auto description = Load(Document(kPort + Named("IntReg", "R",
                                                         "<Streamable/>" + RegisterAt(0, 4, "") +
                                                             "<Cachable/><Sign/>"
                                                             "<Endianess/>")));
    const NodeId id = description->Find("R");
    EXPECT_EQ("No", description->Text(id, Element::Streamable));
    EXPECT_EQ("RO", description->Text(id, Element::AccessMode));
    EXPECT_EQ("WriteThrough", description->Text(id, Element::Cachable));
    EXPECT_EQ("Unsigned", description->Text(id, Element::Sign));
    EXPECT_EQ("LittleEndian", description->Text(id, Element::Endianess));
}

TEST(Grammar, Integers) {
    for (const char* text : {"12", " \n12", "+12", "-12", "012", "0x1F", "0X1f",
                             "9223372036854775807", "-9223372036854775808", "0x7FFFFFFFFFFFFFFF"})
        EXPECT_NO_THROW(Load(Document(Literal("I", text)))) << text;
    for (const char* text :
         {"", "12 ", "-0x10", "0x", "0x-1", "1.0", "1e3", "+-1", "1 2", "9223372036854775808",
          "-9223372036854775809", "0x8000000000000000", "0xFFFFFFFFFFFFFFFF"})
        EXPECT_EQ(std::string("Error in property of type 'Value': cannot convert '") + text +
                      "' to int64_t",
                  TextOf<PropertyException>([&] { Load(Document(Literal("I", text))); }));
    const auto error = [](const std::string& nodes) {
        return TextOf<PropertyException>([&] { Load(Document(nodes + kOthers)); });
    };
    const auto wrong = [](const char* type) {
        return std::string("Error in property of type '") + type +
               "': cannot convert 'x' to int64_t";
    };
    EXPECT_EQ(wrong("Inc"), error(Literal("I", "1", Element("Inc", "x"))));
    EXPECT_EQ(wrong("ValueIndexed"),
              error(Named("Integer", "I",
                          "<pIndex>X</pIndex><ValueIndexed Index='x'>1</ValueIndexed>"
                          "<ValueDefault>1</ValueDefault>")));
    EXPECT_EQ(wrong("Offset"),
              error(Named("Register", "R", RegisterAt("<pIndex Offset='x'>X</pIndex>", 4))));
    EXPECT_EQ(wrong("Invalid PropertyID 114"), error(Named("IntSwissKnife", "K",
                                                           "<Constant Name='C'>x</Constant>"
                                                           "<Formula>C</Formula>")));
    EXPECT_EQ(wrong("Invalid PropertyID 113"),
              error(Named("MaskedIntReg", "R", RegisterAt(0, 4) + "<Bit>x</Bit>" + kLittle)));
}

TEST(Grammar, FloatsAndBooleans) {
    const auto value = [](const char* kind, const std::string& text) {
        return Case{Named(kind, "N", Element("Value", text)), kFine};
    };
    std::vector<Case> cases;
    for (const char* text : {"1.5", " 1.5\n", "+1.5", ".5", "5.", "1e5", "0x10",
                             "0xFFFFFFFFFFFFFFFF", "INF", "inf", "-INF", "NaN", "nan", "-0"})
        cases.push_back(value("Float", text));
    for (const char* text : {"", " ", "1,5", "1.5f", "1e400", "1e-400", "abc", "0x", "0x-1"}) {
        cases.push_back(value("Float", text));
        cases.back().reason = kDouble;
    }
    for (const char* text : {"true", " false ", "1", "0"})
        cases.push_back(value("Boolean", text));
    for (const char* text : {"", "True", "yes", "2"}) {
        cases.push_back(value("Boolean", text));
        cases.back().reason = kBoolean;
    }
    cases.push_back({Literal("F", "1", Element("Max", ""), "Float"), kDouble});
    cases.push_back(
        {Named("SwissKnife", "K", "<Constant Name='C'>x</Constant><Formula>C</Formula>"), kDouble});
    cases.push_back({Named("Enumeration", "E",
                           Entry("A", 1, "", Element("NumericValue", "x")) + Element("Value", 1)),
                     kDouble});
    cases.push_back({Literal("B", "true", Element("OnValue", 0), "Boolean"),
                     "Boolean node 'B' has identical on and off value"});
    Check(cases);
}

TEST(Grammar, Names) {
    const auto invalid = [](const std::string& name, int column = 0) {
        return "XML Parse error at line 2 and column " + std::to_string(column) +
               ", Invalid node name '" + name + "'";
    };
    const std::string reg =
        "<IntSwissKnife Name='_K'><Formula>1</Formula></IntSwissKnife>" + RegisterAt(0, 4);
    Check({
        {Integer("9"), kFine},
        {Integer("A.B::C d-\xC3\xA4"), kFine},
        {Integer("A\n"), kFine},
        {Integer(""), invalid("")},
        {Integer(" I"), invalid(" I")},
        {Integer("_I"), invalid("_I")},
        {Integer("\xC3\xA4"), invalid("\xC3\xA4")},
        {Named("Enumeration", "E", Entry("_1.5/a", 1) + Entry("", 2) + Element("Value", 1)), kFine},
        // Formulas in registers are named after these, but for those of strings.
        {Named("Register", "R", reg), kFine},
        {Named("StringReg", "R", reg), invalid("_K", 20)},
    });
}

TEST(Grammar, KindsOfReferences) {
    const std::string integerText =
        "CIntegerPolyRef::operator(IBase*) : pointer is neither "
        "IInteger*, nor IEnumeration*, nor IBoolean*, nor IFloat*";
    const std::string conditionText =
        "CIntegerPolyRef::operator(IBase*) : pointer is neither "
        "IInteger*, IEnumeration*, nor IBoolean*";
    const std::string floatText =
        "CFloatPolyRef::operator(IBase*) : pointer is neither IFloat*, "
        "IInteger*, nor IEnumeration*";
    const std::string stringText = "CStringPolyRef::operator(IBase*) : pointer is not IString*";
    const auto condition = [](const std::string& link, const std::string& node) {
        return Named("Integer", "I", Element(link, node) + Element("Value", 1));
    };
    const auto dangling = [](const std::string& name) {
        return "Error in XML stream : dangling node reference '" + name + "'";
    };
    std::vector<Case> cases = {
        {Over("I", "XS"), integerText},
        {Over("I", "XC"), integerText},
        {Literal("I", "1", Element("pMax", "XS")), integerText},
        {Over("F", "XB", "", "Float"), floatText},
        {Over("F", "XS", "", "Float"), floatText},
        {Over("S", "X", "", "String"), stringText},
        {Named("Port", "P", Element("pChunkID", "X")), stringText},
        {Named("Port", "P", Element("pChunkID", "XS")), kFine},
        {condition("pBlockPolling", "XF"), kFine},
        {Over("I", " X"), dangling(" X")},
        {Over("I", "Cust::X"), dangling("Cust::X")},
        {Over("I", ""), dangling("")},
        {condition("pAlias", "Nope"), dangling("Nope")},
    };
    for (const char* target : {"X", "XF", "XB", "XE"})
        cases.push_back({Over("I", target), kFine});
    for (const char* target : {"X", "XF", "XE"})
        cases.push_back({Over("F", target, "", "Float"), kFine});
    for (const char* link : {"pIsImplemented", "pIsAvailable", "pIsLocked"}) {
        cases.push_back({condition(link, "XF"), conditionText});
        cases.push_back({condition(link, "XB"), kFine});
    }
    for (const char* target : {"X", "XS", "XC", "Device"})
        cases.push_back({condition("pInvalidator", target), kFine});
    Check(cases);
}

TEST(Grammar, Masks) {
    const auto masked = [](int lsb, int msb, const std::string& order) {
        return Named("MaskedIntReg", "R",
                     RegisterAt(0, 4) + Element("LSB", lsb) + Element("MSB", msb) + order);
    };
    const std::string node = "Node 'R' : For a ";
    const std::string littleWide =
        node + "little endian integer MSB must be smaller than 8 * Length";
    const std::string littleOrder =
        node + "little endian integer MSB must be greater or equal than LSB";
    const std::string bigWide = node + "big endian integer LSB must be smaller than 8 * Length";
    const std::string bigOrder = node + "big endian integer LSB must be greater or equal than MSB";
    Check({
        {masked(0, 31, kLittle), kFine},
        {masked(5, 5, kLittle), kFine},
        {masked(31, 0, kLittle), littleOrder},
        {masked(33, 32, kLittle), littleWide},
        {masked(-1, 3, kLittle), littleOrder},
        {masked(3, -1, kLittle), littleWide},
        {masked(31, 0, kBig), kFine},
        {masked(0, 31, kBig), bigOrder},
        {masked(32, 33, kBig), bigOrder},
        {masked(33, 32, kBig), bigWide},
        {masked(-1, 3, kBig), bigWide},
    });
    const auto ofLength = [](int length) {
        return Document(
            Named("MaskedIntReg", "R", RegisterAt(0, length) + "<Bit>0</Bit>" + kLittle) + kPort);
    };
    EXPECT_NO_THROW(Load(ofLength(8)));
    EXPECT_EQ("Value = 9 must be equal or smaller than Max = 8",
              TextOf<OutOfRangeException>([&] { Load(ofLength(9)); }));
    EXPECT_EQ("Value = 0 must be equal or greater than Min = 1",
              TextOf<OutOfRangeException>([&] { Load(ofLength(0)); }));
}

TEST(Grammar, ValidValues) {
    const auto valuesOf = [](const std::string& text) {
        const auto description = Load(Document(Literal("I", "1", Element("ValidValueSet", text))));
        return description->Tables().validValues;
    };
    using Values = std::vector<int64_t>;
    EXPECT_EQ(valuesOf("0x10; 5 ;;3;5"), (Values{3, 5, 5, 16}));
    EXPECT_EQ(valuesOf("1,2;x"), (Values{1}));
    EXPECT_EQ(valuesOf("a;b"), (Values{}));
}

}  // namespace
}  // namespace test
