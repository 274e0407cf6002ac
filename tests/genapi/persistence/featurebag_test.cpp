// Storing the settings of a camera and loading them.
#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <GenApi/Persistence.h>
#include <gmock/gmock.h>

#include "tests/genapi/persistence/bag.h"
#include "tests/genapi/persistence/camera.h"

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::gcstring_vector;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using test::Camera;
using test::Lines;
using test::load;

gcstring_vector listOf(const Lines& names) {
    gcstring_vector list;
    for (const std::string& name : names)
        list.push_back(name.c_str());
    return list;
}

Lines linesOf(const CFeatureBag& bag) {
    std::istringstream stream(test::textOf(bag));
    Lines lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

Lines entriesOf(const CFeatureBag& bag) {
    Lines lines = linesOf(bag);
    lines.erase(lines.begin(), lines.begin() + 3);
    for (std::string& line : lines)
        std::replace(line.begin(), line.end(), '\t', ' ');
    return lines;
}

// The entries of the features named.
Lines stored(Camera& camera, const Lines& names, int maxEntries = -1) {
    gcstring_vector filter = listOf(names);
    CFeatureBag bag;
    const int64_t count = bag.StoreToBag(camera.nodeMap(), maxEntries, &filter);
    Lines entries = entriesOf(bag);
    EXPECT_EQ(count, static_cast<int64_t>(entries.size()));
    return entries;
}

TEST(StoreToBag, TakesWhatCanBeReadAndWrittenAndLoadedAgain) {
    Camera camera;
    camera.set("Width", "64");
    camera.set("Mask", "0x1f");
    camera.set("Name", "left");
    camera.set("Ratio", "1.5");
    const Lines names = {"Width", "Mask", "Name", "Ratio", "Fixed", "Start", "Hidden", "Outside"};
    EXPECT_THAT(stored(camera, names),
                ElementsAre("Width 64", "Mask 0x1f", "Name left", "Ratio 1.5"));
    EXPECT_THAT(stored(camera, {"Ratio", "Nope", "Width"}), ElementsAre("Width 64", "Ratio 1.5"));
}

TEST(StoreToBag, TellsWhereTheSettingsAreFrom) {
    Camera camera;
    gcstring_vector none;
    CFeatureBag bag;
    bag.SetInfo("mine");
    bag.StoreToBag(camera.nodeMap(), -1, &none);
    EXPECT_EQ(linesOf(bag)[2],
              "# Cam = V::M -- T -- Device version = 2.3.4 -- Product GUID = P -- "
              "Product version GUID = G");
    bag.SetInfo("mine");
    EXPECT_EQ(linesOf(bag)[2], "# mine");
}

TEST(StoreToBag, SelectorsGoBeforeTheirFeatureAndBackBehindIt) {
    Camera camera;
    for (const char* sel : {"A", "C", "B"}) {
        camera.set("Sel", sel);
        camera.set("Gain", sel == std::string("B") ? "20" : "10");
    }
    // Sel itself has been stored when its turn comes
    EXPECT_THAT(stored(camera, {"Gain"}),
                ElementsAre("Sel A", "Gain 10", "Sel B", "Gain 20", "Sel C", "Gain 10", "Sel B"));
    EXPECT_THAT(stored(camera, {"Boost"}),
                ElementsAre("Sel A", "Boost 0", "Sel C", "Boost 0", "Sel B"));
    EXPECT_EQ(camera.get("Sel"), "B");
}

TEST(StoreToBag, TheOutermostSelectorIsTheSlowest) {
    Camera camera;
    camera.set("Bank", "1");
    camera.set("LutIndex", "1");
    camera.set("LutValue", "7");
    EXPECT_THAT(
        stored(camera, {"LutValue"}),
        ElementsAre("Bank 0", "LutIndex 0", "LutValue 0", "LutIndex 1", "LutValue 0", "LutIndex 2",
                    "LutValue 0", "Bank 1", "LutIndex 0", "LutValue 0", "LutIndex 1", "LutValue 7",
                    "LutIndex 2", "LutValue 0", "Bank 1", "LutIndex 1"));
}

TEST(StoreToBag, EachStepWritesTheSelectorAndReadsTheFeature) {
    Camera camera;
    camera.set("Bank", "1");
    camera.port.takeTrace();
    stored(camera, {"BankValue"});
    EXPECT_EQ(camera.port.takeTrace(), "W40=0 R44 W40=1 R48 W40=0 W40=1 ");
}

TEST(StoreToBag, StopsAtTheMaximumAndAppends) {
    Camera camera;
    EXPECT_THAT(stored(camera, {"Gain"}, 3), ElementsAre("Sel A", "Gain 0", "Sel B"));
    EXPECT_THAT(stored(camera, {"Gain"}, 0), IsEmpty());
    EXPECT_EQ(camera.get("Sel"), "A");
    EXPECT_EQ(stored(camera, {"HugeValue"}, 100).size(), 100u);
    EXPECT_EQ(camera.get("HugeIndex"), "0");

    gcstring_vector width = listOf({"Width"});
    CFeatureBag bag;
    EXPECT_EQ(bag.StoreToBag(camera.nodeMap(), 1, &width), 1);
    EXPECT_EQ(bag.StoreToBag(camera.nodeMap(), 1, &width), 1);
    EXPECT_THAT(entriesOf(bag), ElementsAre("Width 0", "Width 0"));
}

TEST(StoreToBag, SelectorsWithTooManyCombinationsAreRefused) {
    Camera camera;
    camera.set("HugeIndex", "5");
    EXPECT_THROW(stored(camera, {"HugeValue"}), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_EQ(camera.get("HugeIndex"), "5");
}

TEST(StoreToBag, ValuesTooLongForATextAreRefused) {
    const int length = 1 << 20;
    Camera camera(test::features({"Index", "Table"}) + "<Port Name='Device'/>" +
                  test::integer("Index", test::limited("100000") + test::selecting("Table")) +
                  test::intReg("IndexReg", 0) +
                  "<Register Name='Table'><Streamable>Yes</Streamable><Address>4</Address>"
                  "<Length>" +
                  std::to_string(length) +
                  "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
                  "<pInvalidator>Index</pInvalidator></Register>");
    class : public test::MemoryPort {
        void Read(void* pBuffer, int64_t, int64_t Length) override {
            std::fill_n(static_cast<uint8_t*>(pBuffer), Length, uint8_t(0));
        }
    } quick;
    camera.map._Connect(&quick);
    EXPECT_THROW(stored(camera, {"Table"}), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_EQ(camera.get("Index"), "0");
    camera.map._Connect(static_cast<IPort*>(nullptr));
}

TEST(StoreToBag, SelectorsThatSelectOneAnotherEnd) {
    Camera camera;
    EXPECT_THAT(
        stored(camera, {"LoopValue"}),
        ElementsAre("LoopB 0", "LoopA 0", "LoopValue 0", "LoopA 1", "LoopValue 0", "LoopB 1",
                    "LoopA 0", "LoopValue 0", "LoopA 1", "LoopValue 0", "LoopB 0", "LoopA 0"));
    EXPECT_THAT(stored(camera, {"LoopA", "LoopB"}), IsEmpty());
}

TEST(StoreToBag, AnErrorOfThePortPassesAndSelectorsGoBack) {
    Camera camera;
    camera.set("Sel", "A");
    camera.port.failing = 108;  // Gain under B
    gcstring_vector filter = listOf({"Width", "Gain"});
    CFeatureBag bag;
    EXPECT_THROW(bag.StoreToBag(camera.nodeMap(), -1, &filter),
                 GENICAM_NAMESPACE::TimeoutException);
    EXPECT_THAT(entriesOf(bag), ElementsAre("Width 0", "Sel A", "Gain 0", "Sel B"));
    EXPECT_EQ(camera.get("Sel"), "A");
}

TEST(LoadFromBag, BringsBackWhatWasStored) {
    const Lines names = {"Width", "Name", "LutValue", "Gain", "Boost", "Ratio"};
    Camera one;
    one.set("Width", "64");
    one.set("Name", "left");
    one.set("Bank", "1");
    one.set("LutIndex", "2");
    one.set("LutValue", "7");
    one.set("Sel", "C");
    one.set("Gain", "30");
    const Lines settings = stored(one, names);
    std::string text;
    for (std::string line : settings)
        text += line.replace(line.find(' '), 1, "\t") + "\n";
    Camera other;
    EXPECT_THAT(load(other, text), IsEmpty());
    EXPECT_EQ(stored(other, names), settings);
    EXPECT_EQ(other.port.memory, one.port.memory);
}

TEST(LoadFromBag, UnderstandsSelectorsInBraces) {
    Camera camera;
    EXPECT_THAT(load(camera, "Gain\t{Sel=B}\t20\nGain\t{Sel=C}\t30\nSel\tA\n"), IsEmpty());
    EXPECT_THAT(stored(camera, {"Gain"}),
                ElementsAre("Sel A", "Gain 0", "Sel B", "Gain 20", "Sel C", "Gain 30", "Sel A"));
}

TEST(LoadFromBag, FailuresAreTold) {
    Camera camera;
    EXPECT_THAT(load(camera, "Nope\t1\n"),
                ElementsAre("Error while writing node: 'Nope' not found "));
    EXPECT_THAT(load(camera, "Device\t1\nWidth\t5\n"),
                ElementsAre("Error while writing node: 'Device' not found "));
    EXPECT_EQ(camera.get("Width"), "5");
    EXPECT_EQ(load(camera, "Nope\t1\nWidth\t0x6\n").size(), 1u);
    EXPECT_EQ(camera.get("Width"), "6");
    EXPECT_THAT(load(camera, "Width\tabc\n", false),
                ElementsAre(StartsWith("Error while writing node 'Width': Node 'Width' : cannot "
                                       "convert string 'abc' to int.")));
    EXPECT_THAT(load(camera, "Fixed\t0\n", false),
                ElementsAre(StartsWith("Error while writing node 'Fixed': ")));
    EXPECT_EQ(load(camera, "Sel\tNope\nWidth\t\n", false).size(), 2u);
    EXPECT_THAT(load(camera, "Root\tRoot\nStart\t1\n"), IsEmpty());
}

TEST(LoadFromBag, NothingThatAPortThrowsPasses) {
    Camera camera;
    camera.port.onWrite = [](int64_t address) {
        if (address == 0) throw 1;
        if (address == 4) throw std::runtime_error("unplugged");
    };
    EXPECT_THAT(load(camera, "Width\t5\nMask\t0x1\nRatio\t2\n"),
                ElementsAre(StartsWith("Error while writing node 'Width': "),
                            "Error while writing node 'Mask': unplugged"));
    EXPECT_EQ(camera.get("Ratio"), "2");
}

TEST(LoadFromBag, SelectorsAreWrittenTwiceAndNotCompared) {
    Camera camera;
    camera.port.takeTrace();
    EXPECT_THAT(load(camera, "Bank\t0x1\nBankValue\t9\n"), IsEmpty());
    EXPECT_EQ(camera.port.takeTrace(), "W40=1 W48=9 W40=1 R48 ");
}

TEST(LoadFromBag, TheListOfErrorsMayBeMissing) {
    Camera camera;
    EXPECT_TRUE(test::bagOf("Width\t5\n").LoadFromBag(camera.nodeMap()));
    EXPECT_FALSE(test::bagOf("Width\t500\n").LoadFromBag(camera.nodeMap()));
}

TEST(CFeatureBag, WithoutAMapNothingIsDone) {
    CFeatureBag bag;
    for (const bool isLoad : {false, true}) {
        try {
            if (isLoad) {
                bag.LoadFromBag(nullptr);
            } else {
                bag.StoreToBag(nullptr);
            }
            FAIL() << isLoad;
        } catch (const GENICAM_NAMESPACE::InvalidArgumentException& error) {
            EXPECT_STREQ(error.GetDescription(), "Nodemap pointer is NULL");
        }
    }
}

TEST(CFeatureBag, SingleFeaturesAreTakenDownWithTheirSelectors) {
    Camera camera;
    camera.set("Sel", "C");
    const CValuePtr gain(camera.map._GetNode("Gain"));
    CSelectorSet selectors(gain);
    CFeatureBag bag;
    IPersistScript& script = bag;
    script.PersistFeature(*gain);
    script.PersistFeature(*gain, &selectors);
    EXPECT_THAT(entriesOf(bag), ElementsAre("Gain 0", "Sel C", "Gain 0"));
}

}  // namespace
