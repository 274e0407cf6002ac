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
using test::Load;

gcstring_vector ListOf(const Lines& names) {
    gcstring_vector list;
    for (const std::string& name : names)
        list.push_back(name.c_str());
    return list;
}

Lines LinesOf(const CFeatureBag& bag) {
    std::istringstream stream(test::TextOf(bag));
    Lines lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

Lines EntriesOf(const CFeatureBag& bag) {
    Lines lines = LinesOf(bag);
    lines.erase(lines.begin(), lines.begin() + 3);
    for (std::string& line : lines)
        std::replace(line.begin(), line.end(), '\t', ' ');
    return lines;
}

// The entries of the features named.
Lines Stored(Camera& camera, const Lines& names, int maxEntries = -1) {
    gcstring_vector filter = ListOf(names);
    CFeatureBag bag;
    const int64_t count = bag.StoreToBag(camera.NodeMap(), maxEntries, &filter);
    Lines entries = EntriesOf(bag);
    EXPECT_EQ(count, static_cast<int64_t>(entries.size()));
    return entries;
}

TEST(StoreToBag, TakesWhatCanBeReadAndWrittenAndLoadedAgain) {
    Camera camera;
    camera.Set("Width", "64");
    camera.Set("Mask", "0x1f");
    camera.Set("Name", "left");
    camera.Set("Ratio", "1.5");
    const Lines names = {"Width", "Mask", "Name", "Ratio", "Fixed", "Start", "Hidden", "Outside"};
    EXPECT_THAT(Stored(camera, names),
                ElementsAre("Width 64", "Mask 0x1f", "Name left", "Ratio 1.5"));
    EXPECT_THAT(Stored(camera, {"Ratio", "Nope", "Width"}), ElementsAre("Width 64", "Ratio 1.5"));
}

TEST(StoreToBag, TellsWhereTheSettingsAreFrom) {
    Camera camera;
    gcstring_vector none;
    CFeatureBag bag;
    bag.SetInfo("mine");
    bag.StoreToBag(camera.NodeMap(), -1, &none);
    EXPECT_EQ(LinesOf(bag)[2],
              "# Cam = V::M -- T -- Device version = 2.3.4 -- Product GUID = P -- "
              "Product version GUID = G");
    bag.SetInfo("mine");
    EXPECT_EQ(LinesOf(bag)[2], "# mine");
}

TEST(StoreToBag, SelectorsGoBeforeTheirFeatureAndBackBehindIt) {
    Camera camera;
    for (const char* sel : {"A", "C", "B"}) {
        camera.Set("Sel", sel);
        camera.Set("Gain", sel == std::string("B") ? "20" : "10");
    }
    // Sel itself has been stored when its turn comes
    EXPECT_THAT(Stored(camera, {"Gain"}),
                ElementsAre("Sel A", "Gain 10", "Sel B", "Gain 20", "Sel C", "Gain 10", "Sel B"));
    EXPECT_THAT(Stored(camera, {"Boost"}),
                ElementsAre("Sel A", "Boost 0", "Sel C", "Boost 0", "Sel B"));
    EXPECT_EQ(camera.Get("Sel"), "B");
}

TEST(StoreToBag, TheOutermostSelectorIsTheSlowest) {
    Camera camera;
    camera.Set("Bank", "1");
    camera.Set("LutIndex", "1");
    camera.Set("LutValue", "7");
    EXPECT_THAT(
        Stored(camera, {"LutValue"}),
        ElementsAre("Bank 0", "LutIndex 0", "LutValue 0", "LutIndex 1", "LutValue 0", "LutIndex 2",
                    "LutValue 0", "Bank 1", "LutIndex 0", "LutValue 0", "LutIndex 1", "LutValue 7",
                    "LutIndex 2", "LutValue 0", "Bank 1", "LutIndex 1"));
}

TEST(StoreToBag, EachStepWritesTheSelectorAndReadsTheFeature) {
    Camera camera;
    camera.Set("Bank", "1");
    camera.port.TakeTrace();
    Stored(camera, {"BankValue"});
    EXPECT_EQ(camera.port.TakeTrace(), "W40=0 R44 W40=1 R48 W40=0 W40=1 ");
}

TEST(StoreToBag, StopsAtTheMaximumAndAppends) {
    Camera camera;
    EXPECT_THAT(Stored(camera, {"Gain"}, 3), ElementsAre("Sel A", "Gain 0", "Sel B"));
    EXPECT_THAT(Stored(camera, {"Gain"}, 0), IsEmpty());
    EXPECT_EQ(camera.Get("Sel"), "A");
    EXPECT_EQ(Stored(camera, {"HugeValue"}, 100).size(), 100u);
    EXPECT_EQ(camera.Get("HugeIndex"), "0");

    gcstring_vector width = ListOf({"Width"});
    CFeatureBag bag;
    EXPECT_EQ(bag.StoreToBag(camera.NodeMap(), 1, &width), 1);
    EXPECT_EQ(bag.StoreToBag(camera.NodeMap(), 1, &width), 1);
    EXPECT_THAT(EntriesOf(bag), ElementsAre("Width 0", "Width 0"));
}

TEST(StoreToBag, SelectorsWithTooManyCombinationsAreRefused) {
    Camera camera;
    camera.Set("HugeIndex", "5");
    EXPECT_THROW(Stored(camera, {"HugeValue"}), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_EQ(camera.Get("HugeIndex"), "5");
}

TEST(StoreToBag, ValuesTooLongForATextAreRefused) {
    const int length = 1 << 20;
    Camera camera(test::Features({"Index", "Table"}) + "<Port Name='Device'/>" +
                  test::Integer("Index", test::Limited("100000") + test::Selecting("Table")) +
                  test::IntReg("IndexReg", 0) +
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
    EXPECT_THROW(Stored(camera, {"Table"}), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_EQ(camera.Get("Index"), "0");
    camera.map._Connect(static_cast<IPort*>(nullptr));
}

TEST(StoreToBag, SelectorsThatSelectOneAnotherEnd) {
    Camera camera;
    EXPECT_THAT(
        Stored(camera, {"LoopValue"}),
        ElementsAre("LoopB 0", "LoopA 0", "LoopValue 0", "LoopA 1", "LoopValue 0", "LoopB 1",
                    "LoopA 0", "LoopValue 0", "LoopA 1", "LoopValue 0", "LoopB 0", "LoopA 0"));
    EXPECT_THAT(Stored(camera, {"LoopA", "LoopB"}), IsEmpty());
}

TEST(StoreToBag, AnErrorOfThePortPassesAndSelectorsGoBack) {
    Camera camera;
    camera.Set("Sel", "A");
    camera.port.failing = 108;  // Gain under B
    gcstring_vector filter = ListOf({"Width", "Gain"});
    CFeatureBag bag;
    EXPECT_THROW(bag.StoreToBag(camera.NodeMap(), -1, &filter),
                 GENICAM_NAMESPACE::TimeoutException);
    EXPECT_THAT(EntriesOf(bag), ElementsAre("Width 0", "Sel A", "Gain 0", "Sel B"));
    EXPECT_EQ(camera.Get("Sel"), "A");
}

TEST(LoadFromBag, BringsBackWhatWasStored) {
    const Lines names = {"Width", "Name", "LutValue", "Gain", "Boost", "Ratio"};
    Camera one;
    one.Set("Width", "64");
    one.Set("Name", "left");
    one.Set("Bank", "1");
    one.Set("LutIndex", "2");
    one.Set("LutValue", "7");
    one.Set("Sel", "C");
    one.Set("Gain", "30");
    const Lines settings = Stored(one, names);
    std::string text;
    for (std::string line : settings)
        text += line.replace(line.find(' '), 1, "\t") + "\n";
    Camera other;
    EXPECT_THAT(Load(other, text), IsEmpty());
    EXPECT_EQ(Stored(other, names), settings);
    EXPECT_EQ(other.port.memory, one.port.memory);
}

TEST(LoadFromBag, UnderstandsSelectorsInBraces) {
    Camera camera;
    EXPECT_THAT(Load(camera, "Gain\t{Sel=B}\t20\nGain\t{Sel=C}\t30\nSel\tA\n"), IsEmpty());
    EXPECT_THAT(Stored(camera, {"Gain"}),
                ElementsAre("Sel A", "Gain 0", "Sel B", "Gain 20", "Sel C", "Gain 30", "Sel A"));
}

TEST(LoadFromBag, FailuresAreTold) {
    Camera camera;
    EXPECT_THAT(Load(camera, "Nope\t1\n"),
                ElementsAre("Error while writing node: 'Nope' not found "));
    EXPECT_THAT(Load(camera, "Device\t1\nWidth\t5\n"),
                ElementsAre("Error while writing node: 'Device' not found "));
    EXPECT_EQ(camera.Get("Width"), "5");
    EXPECT_EQ(Load(camera, "Nope\t1\nWidth\t0x6\n").size(), 1u);
    EXPECT_EQ(camera.Get("Width"), "6");
    EXPECT_THAT(Load(camera, "Width\tabc\n", false),
                ElementsAre(StartsWith("Error while writing node 'Width': Node 'Width' : cannot "
                                       "convert string 'abc' to int.")));
    EXPECT_THAT(Load(camera, "Fixed\t0\n", false),
                ElementsAre(StartsWith("Error while writing node 'Fixed': ")));
    EXPECT_EQ(Load(camera, "Sel\tNope\nWidth\t\n", false).size(), 2u);
    EXPECT_THAT(Load(camera, "Root\tRoot\nStart\t1\n"), IsEmpty());
}

TEST(LoadFromBag, NothingThatAPortThrowsPasses) {
    Camera camera;
    camera.port.onWrite = [](int64_t address) {
        if (address == 0) throw 1;
        if (address == 4) throw std::runtime_error("unplugged");
    };
    EXPECT_THAT(Load(camera, "Width\t5\nMask\t0x1\nRatio\t2\n"),
                ElementsAre(StartsWith("Error while writing node 'Width': "),
                            "Error while writing node 'Mask': unplugged"));
    EXPECT_EQ(camera.Get("Ratio"), "2");
}

TEST(LoadFromBag, SelectorsAreWrittenTwiceAndNotCompared) {
    Camera camera;
    camera.port.TakeTrace();
    EXPECT_THAT(Load(camera, "Bank\t0x1\nBankValue\t9\n"), IsEmpty());
    EXPECT_EQ(camera.port.TakeTrace(), "W40=1 W48=9 W40=1 R48 ");
}

TEST(LoadFromBag, TheListOfErrorsMayBeMissing) {
    Camera camera;
    EXPECT_TRUE(test::BagOf("Width\t5\n").LoadFromBag(camera.NodeMap()));
    EXPECT_FALSE(test::BagOf("Width\t500\n").LoadFromBag(camera.NodeMap()));
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
    camera.Set("Sel", "C");
    const CValuePtr gain(camera.map._GetNode("Gain"));
    CSelectorSet selectors(gain);
    CFeatureBag bag;
    IPersistScript& script = bag;
    script.PersistFeature(*gain);
    script.PersistFeature(*gain, &selectors);
    EXPECT_THAT(EntriesOf(bag), ElementsAre("Gain 0", "Sel C", "Gain 0"));
}

}  // namespace
