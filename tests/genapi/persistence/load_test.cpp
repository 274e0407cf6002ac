// Loading settings that depend on one another, and comparing values in different texts.
#include <string>

#include <gmock/gmock.h>

#include "tests/genapi/persistence/bag.h"
#include "tests/genapi/persistence/camera.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using namespace GENAPI_NAMESPACE;

namespace {

using test::Camera;
using test::Load;

const std::string kUncached = "<Cachable>NoCache</Cachable>";
const std::string kStreamable = "<Streamable>Yes</Streamable>";

std::string UncachedReg(const std::string& name, int address) {
    return test::Named("IntReg", name, test::RegisterAt(address, 4) + kUncached + test::kLittle);
}

std::string Formula(const std::string& name, const std::string& variable, const std::string& text) {
    return "<IntSwissKnife Name='" + name + "'><pVariable Name='V'>" + variable +
           "</pVariable><Formula>" + text + "</Formula></IntSwissKnife>";
}

// The part of a sensor of 640 pixels that is read.
std::string Region() {
    return test::Features({"Width", "OffsetX"}) + test::kPort +
           test::Integer("Width", "<Min>16</Min><pMax>WidthMax</pMax><Inc>16</Inc>") +
           test::Integer("OffsetX", "<Min>0</Min><pMax>OffsetXMax</pMax>") +
           test::IntReg("WidthReg", 0) + test::IntReg("OffsetXReg", 4) +
           Formula("WidthMax", "OffsetXReg", "640-V") + Formula("OffsetXMax", "WidthReg", "640-V");
}

TEST(LoadFromBag, DependentFeaturesEndAlikeWhereverTheyStart) {
    for (const char* wanted :
         {"Width\t640\nOffsetX\t0\n", "OffsetX\t0\nWidth\t640\n", "Width\t320\nOffsetX\t320\n",
          "OffsetX\t320\nWidth\t320\n", "OffsetX\t600\nWidth\t16\n"}) {
        for (const auto& [width, offset] : {std::pair("640", "0"), {"320", "320"}, {"16", "624"}}) {
            SCOPED_TRACE(std::string(wanted) + width + " " + offset);
            Camera camera(Region());
            camera.Set("Width", width);
            camera.Set("OffsetX", offset);
            EXPECT_THAT(Load(camera, wanted), IsEmpty());
            EXPECT_THAT(wanted, HasSubstr("Width\t" + camera.Get("Width") + "\n"));
            EXPECT_THAT(wanted, HasSubstr("OffsetX\t" + camera.Get("OffsetX") + "\n"));
        }
    }
}

TEST(LoadFromBag, WhatCannotBeIsToldAndNeverWritten) {
    Camera camera(Region());
    camera.Set("Width", "320");
    camera.port.TakeTrace();
    EXPECT_THAT(Load(camera, "Width\t480\nOffsetX\t320\n"),
                ElementsAre(StartsWith("Error while writing node 'OffsetX': Value = 320 must be "
                                       "equal or smaller than Max = 160.")));
    EXPECT_THAT(camera.port.TakeTrace(), Not(HasSubstr("W4=")));
    EXPECT_EQ(camera.Get("Width"), "480");
    EXPECT_EQ(Load(camera, "Width\t100\nOffsetX\t700\n").size(), 2u);
    EXPECT_THAT(camera.port.TakeTrace(), Not(HasSubstr("W")));
    // without verification the camera decides
    EXPECT_THAT(Load(camera, "Width\t100\nOffsetX\t700\n", false), IsEmpty());
}

TEST(LoadFromBag, ALockIsWaitedForAndNotBroken) {
    Camera camera(test::Features({"Gain", "Auto"}) + test::kPort +
                  test::Integer("Gain", "", "<pIsLocked>AutoReg</pIsLocked>" + kStreamable) +
                  test::IntReg("GainReg", 0) + test::Integer("Auto") + test::IntReg("AutoReg", 4));
    camera.Set("Auto", "1");
    EXPECT_THAT(Load(camera, "Gain\t5\nAuto\t0\n"), IsEmpty());
    EXPECT_EQ(camera.Get("Gain"), "5");
    camera.Set("Auto", "1");
    EXPECT_THAT(Load(camera, "Gain\t6\n"), ElementsAre(HasSubstr("not writable")));
    EXPECT_EQ(camera.Get("Gain"), "5");
}

// The camera resets the width with each change of the binning.
TEST(LoadFromBag, WhatALaterEntryChangesIsWrittenAgain) {
    Camera camera(test::Features({"Width", "Binning"}) + test::kPort + test::Integer("Width") +
                  UncachedReg("WidthReg", 0) + test::Integer("Binning") +
                  test::IntReg("BinningReg", 4));
    camera.port.onWrite = [&](int64_t address) {
        if (address == 4) camera.port.memory[0] = 77;
    };
    EXPECT_THAT(Load(camera, "Width\t5\nBinning\t2\n"), IsEmpty());
    EXPECT_EQ(camera.Get("Width"), "5");
}

TEST(LoadFromBag, EntriesThatUndoOneAnotherEnd) {
    Camera camera(test::Features({"A", "B"}) + test::kPort + test::Integer("A") +
                  UncachedReg("AReg", 0) + test::Integer("B") + UncachedReg("BReg", 4));
    camera.port.onWrite = [&](int64_t address) { camera.port.memory[4 - address] = 77; };
    EXPECT_EQ(Load(camera, "A\t1\nB\t2\n").size(), 1u);
}

TEST(LoadFromBag, TheLastEntryOfAFeatureCounts) {
    Camera camera;
    EXPECT_THAT(Load(camera, "Width\t20\nWidth\t5\n"),
                ElementsAre("Error while verifying node 'Width'. Expected '20', but found '5'"));
    EXPECT_EQ(camera.Get("Width"), "5");
}

// An entry of the selector becomes available with a feature that comes later.
TEST(LoadFromBag, EntriesUnderSelectorsAreWrittenAgainUnderTheirs) {
    const std::string nodes = test::Features({"Gain", "Mode"}) + test::kPort +
                              "<Enumeration Name='Sel'>" + test::Entry("A", 0) +
                              test::Entry("B", 1, "<pIsAvailable>ModeReg</pIsAvailable>") +
                              "<pValue>SelReg</pValue>" + test::Selecting("Gain") +
                              "</Enumeration>" + test::IntReg("SelReg", 0) + test::Integer("Gain") +
                              test::IntReg("GainReg", 8, test::Index(4, "Sel")) +
                              test::Integer("Mode") + test::IntReg("ModeReg", 4);
    const std::string lines = "Sel\tB\nGain\t7\nSel\tA\nGain\t1\nSel\tA\n";
    Camera camera(nodes);
    EXPECT_THAT(Load(camera, lines + "Mode\t1\n"), IsEmpty());
    EXPECT_EQ(camera.Get("Sel"), "A");
    EXPECT_EQ(camera.Get("Gain"), "1");
    camera.Set("Sel", "B");
    EXPECT_EQ(camera.Get("Gain"), "7");

    // where it never does, the value must not land under another one
    for (const bool verify : {true, false}) {
        Camera fixed(nodes);
        fixed.Set("Gain", "3");
        EXPECT_THAT(Load(fixed, "Sel\tNope\nGain\t7\n", verify),
                    ElementsAre(StartsWith("Error while writing node 'Sel': "),
                                HasSubstr("A selector of the feature does not have its value")));
        EXPECT_EQ(fixed.Get("Gain"), "3");
        // one that cannot be written may be there already
        fixed.map._GetNode("Sel")->ImposeAccessMode(RO);
        EXPECT_EQ(Load(fixed, "Sel\tA\nGain\t7\n", verify).size(), 1u);
        EXPECT_EQ(fixed.Get("Gain"), "7");
    }
}

TEST(LoadFromBag, ValuesAreComparedWhateverTheirText) {
    const std::string nodes = test::Features({"I", "F", "B", "R", "S"}) + test::kPort +
                              test::Integer("I") + test::IntReg("IReg", 0) + "<Float Name='F'>" +
                              kStreamable + "<Value>0</Value></Float>" + "<Boolean Name='B'>" +
                              kStreamable + "<Value>0</Value></Boolean>" + "<Register Name='R'>" +
                              kStreamable + test::RegisterAt(8, 2) + "</Register>" +
                              "<String Name='S'>" + kStreamable + "<Value>x</Value></String>";
    for (const char* same :
         {"I\t0x140", "I\t0X140", "I\t+7", "I\t007", "I\t 7 ", "F\t1.50", "F\t5e3", "F\t+1.25",
          "F\t1.23456789", "F\t-0.1000000001", "B\ttrue", "B\tfalse", "R\t0xABcd", "R\tabcd"}) {
        Camera camera(nodes);
        EXPECT_THAT(Load(camera, std::string(same) + "\n"), IsEmpty()) << same;
    }
    // taken in parts, as far as the number goes
    for (const char* other : {"I\t5e3", "I\t7x", "F\t1,5", "F\t2.5s"}) {
        Camera camera(nodes);
        EXPECT_THAT(Load(camera, std::string(other) + "\n"),
                    ElementsAre(HasSubstr("', but found '")))
            << other;
    }
    Camera rounds(test::Features({"F"}) + test::kPort + "<Float Name='F'>" + kStreamable +
                  "<pValue>FReg</pValue></Float>" + test::IntReg("FReg", 0));
    EXPECT_THAT(Load(rounds, "F\t7.4\n"),
                ElementsAre("Error while verifying node 'F'. Expected '7.4', but found '7'"));
}

}  // namespace
