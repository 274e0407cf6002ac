// Links between nodes: what they are, what follows from them, and that no description can make
// them expensive.
#include "genapi/description/links.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "genapi/description/limits.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

std::string reg(const std::string& name, const std::string& more = {}) {
    return named("IntReg", name, kRegister + more + kLittle);
}

std::string floatReg(const std::string& name, const std::string& more = {}) {
    return named("FloatReg", name, kRegister + more + kLittle);
}

std::string over(const std::string& name, const std::string& value,
                 const std::string& before = {}) {
    return named("Integer", name, before + element("pValue", value));
}

class Links {
  public:
    explicit Links(const std::string& nodes) : description_(load(document(nodes))) {}

    const Description& operator*() const { return *description_; }
    const Description* operator->() const { return description_.get(); }
    NodeId id(const char* name) const { return description_->find(name); }
    const NodeRecord& record(const char* name) const { return description_->record(id(name)); }

    std::string names(const std::vector<NodeId>& nodes) const {
        std::string all;
        for (const NodeId node : nodes)
            all.append(all.empty() ? "" : " ").append(description_->name(node));
        return all;
    }
    std::string children(const char* name, ELinkType type) const {
        return names(Engine::children(*description_, id(name), type));
    }
    std::string written(const char* name) const {
        return names(changedByWriteTo(*description_, id(name)));
    }

  private:
    std::shared_ptr<const Description> description_;
};

const std::string kCamera =
    named("Category", "Root", element("pFeature", "Gain") + element("pFeature", "Mode")) +
    over("Gain", "Scale", element("pIsLocked", "Lock")) +
    named("Enumeration", "Mode",
          "<EnumEntry Name='On'><pIsImplemented>Lock</pIsImplemented><Value>1</Value></EnumEntry>"
          "<pValue>ModeReg</pValue><pSelected>GainReg</pSelected>") +
    named("IntConverter", "Scale",
          "<pVariable Name='F'>Factor</pVariable><FormulaTo>FROM*F</FormulaTo>"
          "<FormulaFrom>TO/F</FormulaFrom><pValue>GainReg</pValue>") +
    reg("Lock") + reg("ModeReg") + integer("Factor") +
    reg("GainReg",
        "<pInvalidator>Lock"
        "</pInvalidator>") +
    kPort;

TEST(Links, Kinds) {
    const Links links(kCamera);
    EXPECT_EQ(links.children("Gain", ctReadingChildren), "Lock Scale");
    EXPECT_EQ(links.children("Gain", ctWritingChildren), "Scale");
    EXPECT_EQ(links.children("Gain", ctInvalidatingChildren), "Lock Scale Mode");
    EXPECT_EQ(links.children("Gain", ctTerminalNodes), "GainReg");
    EXPECT_EQ(links.children("Gain", ctDependingNodes), "Root");
    EXPECT_EQ(links.children("Gain", ctParentNodes), "Root");
    // The names of its formulas are read by the halves.
    EXPECT_EQ(links.children("Scale", ctReadingChildren),
              "GainReg Scale_ConvertTo Scale_ConvertFrom");
    EXPECT_EQ(links.children("Factor", ctParentNodes), "Scale_ConvertTo Scale_ConvertFrom");
    EXPECT_EQ(links.children("Scale_ConvertTo", ctTerminalNodes), "");
    // An entry belongs to its enumeration, which is not what it reads.
    EXPECT_EQ(links.children("Mode", ctReadingChildren), "ModeReg");
    EXPECT_EQ(links.children("Mode", ctInvalidatingChildren), "EnumEntry_Mode_On ModeReg");
    EXPECT_EQ(links.children("EnumEntry_Mode_On", ctParentNodes), "Mode");
    EXPECT_EQ(links.children("GainReg", ctInvalidatingChildren), "Device Lock Mode");
    EXPECT_TRUE(links.record("Gain").feature);
    EXPECT_FALSE(links.record("EnumEntry_Mode_On").feature);
}

TEST(Links, SelectorsReachWhatReadsTheSelected) {
    const Links links(named("Enumeration", "Inner",
                            "<EnumEntry Name='A'><Value>0</Value></EnumEntry>"
                            "<Value>0</Value><pSelected>R</pSelected>") +
                      named("Integer", "Outer", "<Value>0</Value><pSelected>B</pSelected>") +
                      named("Category", "Root", element("pFeature", "T")) + over("T", "B") +
                      over("B", "R") + reg("R") + kPort);
    EXPECT_EQ(links.names(selectedFeatures(*links, links.id("Inner"))), "R B T");
    EXPECT_EQ(links.names(selectedFeatures(*links, links.id("Outer"))), "B T");
    // Those that name the node come first.
    EXPECT_EQ(links.names(selectingFeatures(*links, links.id("B"))), "Outer Inner");
    EXPECT_EQ(links.names(selectingFeatures(*links, links.id("T"))), "Inner Outer");
    EXPECT_EQ(links.names(selectingFeatures(*links, links.id("Root"))), "");
}

TEST(Links, ChangeSets) {
    const Links links(kCamera +
                      named("Integer", "Both",
                            "<pValue>X</pValue><pValueCopy>Y"
                            "</pValueCopy>") +
                      reg("X") + reg("Y") + over("OverY", "Y"));
    // The converter passes the value on; its halves do not change.
    EXPECT_EQ(links.written("Gain"), "Root Gain Scale GainReg");
    EXPECT_EQ(&changedByWriteTo(*links, links.id("Gain")),
              &invalidatedBy(*links, links.id("GainReg")));
    EXPECT_EQ(links.written("Both"), "Both X Y OverY");
    // What selects a node changes it, and so does what invalidates it.
    EXPECT_EQ(links.written("Mode"), "Root Gain Mode Scale ModeReg GainReg");
    EXPECT_EQ(links.names(invalidatedBy(*links, links.id("Lock"))),
              "Root Gain Mode Lock Scale EnumEntry_Mode_On GainReg");
}

TEST(Links, Caching) {
    const Links links(
        reg("Volatile", "<Cachable>NoCache</Cachable>") + reg("R") +
        reg("Around", "<Cachable>WriteAround</Cachable>") + kPort + over("A", "Around") +
        over("Limited", "R", element("pIsLocked", "Volatile")) + over("Above", "Limited") +
        named("Category", "Root", element("pFeature", "Above")) +
        named("Integer", "Max", "<pValue>R</pValue><pMax>Volatile</pMax>") +
        named("Float", "F", "<pValue>R</pValue>") + floatReg("Rounding") +
        floatReg("RoundingEmpty", "<Cachable/>") +
        floatReg("Exact", "<Cachable>WriteThrough</Cachable>") + over("OverExact", "Exact") +
        named("IntSwissKnife", "K", "<pVariable Name='A'>Around</pVariable><Formula>A</Formula>") +
        named("IntSwissKnife", "V",
              "<pVariable Name='A'>Volatile</pVariable><Formula>A</Formula>") +
        named("IntReg", "Moving",
              "<pAddress>V</pAddress><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device"
              "</pPort><Endianess>LittleEndian</Endianess>"));
    const auto caching = [&](const char* name) { return links.record(name).caching; };
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
        EXPECT_EQ(links.record(name).accessCacheable, No) << name;
    for (const char* name : {"Volatile", "R", "Max", "V", "Moving"})
        EXPECT_EQ(links.record(name).accessCacheable, Yes) << name;
}

TEST(Links, LongChainsNeedNeitherStackNorMemory) {
    constexpr std::size_t kLength = 30000;
    std::string nodes;
    for (std::size_t i = 1; i < kLength; ++i)
        nodes += over("N" + std::to_string(i - 1), "N" + std::to_string(i));
    const Links links(nodes + integer("N" + std::to_string(kLength - 1)));
    EXPECT_EQ(links->nodeCount(), kLength);
    EXPECT_EQ(links.children("N0", ctTerminalNodes), "N29999");
    EXPECT_EQ(changedByWriteTo(*links, links.id("N0")).size(), kLength);
    for (NodeId id = 0; id < kLength; id += 10) {
        const ChangeSet& set = invalidatedBy(*links, id);
        ASSERT_TRUE(std::binary_search(set.begin(), set.end(), NodeId{0}));
        ASSERT_TRUE(std::binary_search(set.begin(), set.end(), id));
    }
    EXPECT_EQ(invalidatedBy(*links, 29990).size(), kLength);
    EXPECT_LE(links->links().setSize, kMaxChangeSetSize + kLength);
}

}  // namespace
}  // namespace test
