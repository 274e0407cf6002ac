// Links between nodes: what they are, what follows from them, and that no description can make
// them expensive.
#include "genapi/description/links.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "genapi/description/limits.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

std::string Reg(const std::string& name, const std::string& more = {}) {
    return Named("IntReg", name, kRegister + more + kLittle);
}

std::string FloatReg(const std::string& name, const std::string& more = {}) {
    return Named("FloatReg", name, kRegister + more + kLittle);
}

std::string Over(const std::string& name, const std::string& value,
                 const std::string& before = {}) {
    return Named("Integer", name, before + Element("pValue", value));
}

class Links {
  public:
    explicit Links(const std::string& nodes) : description_(Load(Document(nodes))) {}

    const Description& operator*() const { return *description_; }
    const Description* operator->() const { return description_.get(); }
    NodeId Id(const char* name) const { return description_->Find(name); }
    const NodeRecord& Record(const char* name) const { return description_->Record(Id(name)); }

    std::string Names(const std::vector<NodeId>& nodes) const {
        std::string all;
        for (const NodeId node : nodes)
            all.append(all.empty() ? "" : " ").append(description_->Name(node));
        return all;
    }
    std::string Children(const char* name, ELinkType type) const {
        return Names(Engine::Children(*description_, Id(name), type));
    }
    std::string Written(const char* name) const {
        return Names(ChangedByWriteTo(*description_, Id(name)));
    }

  private:
    std::shared_ptr<const Description> description_;
};

const std::string kCamera =
    Named("Category", "Root", Element("pFeature", "Gain") + Element("pFeature", "Mode")) +
    Over("Gain", "Scale", Element("pIsLocked", "Lock")) +
    Named("Enumeration", "Mode",
          "<EnumEntry Name='On'><pIsImplemented>Lock</pIsImplemented><Value>1</Value></EnumEntry>"
          "<pValue>ModeReg</pValue><pSelected>GainReg</pSelected>") +
    Named("IntConverter", "Scale",
          "<pVariable Name='F'>Factor</pVariable><FormulaTo>FROM*F</FormulaTo>"
          "<FormulaFrom>TO/F</FormulaFrom><pValue>GainReg</pValue>") +
    Reg("Lock") + Reg("ModeReg") + Integer("Factor") +
    Reg("GainReg",
        "<pInvalidator>Lock"
        "</pInvalidator>") +
    kPort;

TEST(Links, Kinds) {
    const Links links(kCamera);
    EXPECT_EQ(links.Children("Gain", ctReadingChildren), "Lock Scale");
    EXPECT_EQ(links.Children("Gain", ctWritingChildren), "Scale");
    EXPECT_EQ(links.Children("Gain", ctInvalidatingChildren), "Lock Scale Mode");
    EXPECT_EQ(links.Children("Gain", ctTerminalNodes), "GainReg");
    EXPECT_EQ(links.Children("Gain", ctDependingNodes), "Root");
    EXPECT_EQ(links.Children("Gain", ctParentNodes), "Root");
    // The names of its formulas are read by the halves.
    EXPECT_EQ(links.Children("Scale", ctReadingChildren),
              "GainReg Scale_ConvertTo Scale_ConvertFrom");
    EXPECT_EQ(links.Children("Factor", ctParentNodes), "Scale_ConvertTo Scale_ConvertFrom");
    EXPECT_EQ(links.Children("Scale_ConvertTo", ctTerminalNodes), "");
    // An entry belongs to its enumeration, which is not what it reads.
    EXPECT_EQ(links.Children("Mode", ctReadingChildren), "ModeReg");
    EXPECT_EQ(links.Children("Mode", ctInvalidatingChildren), "EnumEntry_Mode_On ModeReg");
    EXPECT_EQ(links.Children("EnumEntry_Mode_On", ctParentNodes), "Mode");
    EXPECT_EQ(links.Children("GainReg", ctInvalidatingChildren), "Device Lock Mode");
    EXPECT_TRUE(links.Record("Gain").feature);
    EXPECT_FALSE(links.Record("EnumEntry_Mode_On").feature);
}

TEST(Links, SelectorsReachWhatReadsTheSelected) {
    const Links links(Named("Enumeration", "Inner",
                            "<EnumEntry Name='A'><Value>0</Value></EnumEntry>"
                            "<Value>0</Value><pSelected>R</pSelected>") +
                      Named("Integer", "Outer", "<Value>0</Value><pSelected>B</pSelected>") +
                      Named("Category", "Root", Element("pFeature", "T")) + Over("T", "B") +
                      Over("B", "R") + Reg("R") + kPort);
    EXPECT_EQ(links.Names(SelectedFeatures(*links, links.Id("Inner"))), "R B T");
    EXPECT_EQ(links.Names(SelectedFeatures(*links, links.Id("Outer"))), "B T");
    // Those that name the node come first.
    EXPECT_EQ(links.Names(SelectingFeatures(*links, links.Id("B"))), "Outer Inner");
    EXPECT_EQ(links.Names(SelectingFeatures(*links, links.Id("T"))), "Inner Outer");
    EXPECT_EQ(links.Names(SelectingFeatures(*links, links.Id("Root"))), "");
}

TEST(Links, ChangeSets) {
    const Links links(kCamera +
                      Named("Integer", "Both",
                            "<pValue>X</pValue><pValueCopy>Y"
                            "</pValueCopy>") +
                      Reg("X") + Reg("Y") + Over("OverY", "Y"));
    // The converter passes the value on; its halves do not change.
    EXPECT_EQ(links.Written("Gain"), "Root Gain Scale GainReg");
    EXPECT_EQ(&ChangedByWriteTo(*links, links.Id("Gain")),
              &InvalidatedBy(*links, links.Id("GainReg")));
    EXPECT_EQ(links.Written("Both"), "Both X Y OverY");
    // What selects a node changes it, and so does what invalidates it.
    EXPECT_EQ(links.Written("Mode"), "Root Gain Mode Scale ModeReg GainReg");
    EXPECT_EQ(links.Names(InvalidatedBy(*links, links.Id("Lock"))),
              "Root Gain Mode Lock Scale EnumEntry_Mode_On GainReg");
}

TEST(Links, Caching) {
    const Links links(
        Reg("Volatile", "<Cachable>NoCache</Cachable>") + Reg("R") +
        Reg("Around", "<Cachable>WriteAround</Cachable>") + kPort + Over("A", "Around") +
        Over("Limited", "R", Element("pIsLocked", "Volatile")) + Over("Above", "Limited") +
        Named("Category", "Root", Element("pFeature", "Above")) +
        Named("Integer", "Max", "<pValue>R</pValue><pMax>Volatile</pMax>") +
        Named("Float", "F", "<pValue>R</pValue>") + FloatReg("Rounding") +
        FloatReg("RoundingEmpty", "<Cachable/>") +
        FloatReg("Exact", "<Cachable>WriteThrough</Cachable>") + Over("OverExact", "Exact") +
        Named("IntSwissKnife", "K", "<pVariable Name='A'>Around</pVariable><Formula>A</Formula>") +
        Named("IntSwissKnife", "V",
              "<pVariable Name='A'>Volatile</pVariable><Formula>A</Formula>") +
        Named("IntReg", "Moving",
              "<pAddress>V</pAddress><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device"
              "</pPort><Endianess>LittleEndian</Endianess>"));
    const auto caching = [&](const char* name) { return links.Record(name).caching; };
    EXPECT_EQ(caching("A"), WriteAround);
    EXPECT_EQ(caching("Max"), WriteThrough);
    EXPECT_EQ(caching("F"), WriteAround);
    // What is written to a float may read back differently, unless a register says that it does
    // not.
    EXPECT_EQ(caching("Rounding"), WriteAround);
    EXPECT_EQ(caching("RoundingEmpty"), WriteAround);
    EXPECT_EQ(caching("OverExact"), WriteThrough);
    EXPECT_EQ(caching("K"), WriteThrough);
    EXPECT_EQ(caching("V"), NoCache);
    EXPECT_EQ(caching("Moving"), NoCache);
    // A condition decides about access, everywhere above, and about nothing else.
    EXPECT_EQ(caching("Limited"), WriteThrough);
    for (const char* name : {"Limited", "Above", "Root"})
        EXPECT_EQ(links.Record(name).accessCacheable, No) << name;
    for (const char* name : {"Volatile", "R", "Max", "V", "Moving"})
        EXPECT_EQ(links.Record(name).accessCacheable, Yes) << name;
}

TEST(Links, LongChainsNeedNeitherStackNorMemory) {
    constexpr size_t kLength = 30000;
    std::string nodes;
    for (size_t i = 1; i < kLength; ++i)
        nodes += Over("N" + std::to_string(i - 1), "N" + std::to_string(i));
    const Links links(nodes + Integer("N" + std::to_string(kLength - 1)));
    EXPECT_EQ(links->NodeCount(), kLength);
    EXPECT_EQ(links.Children("N0", ctTerminalNodes), "N29999");
    EXPECT_EQ(ChangedByWriteTo(*links, links.Id("N0")).size(), kLength);
    for (NodeId id = 0; id < kLength; id += 10) {
        const ChangeSet& set = InvalidatedBy(*links, id);
        ASSERT_TRUE(std::binary_search(set.begin(), set.end(), NodeId{0}));
        ASSERT_TRUE(std::binary_search(set.begin(), set.end(), id));
    }
    EXPECT_EQ(InvalidatedBy(*links, 29990).size(), kLength);
    EXPECT_LE(links->Links().setSize, kMaxChangeSetSize + kLength);
}

}  // namespace
}  // namespace test
