// The commands that tell a camera that its settings are stored or loaded.
#include <chrono>
#include <string>

#include <gmock/gmock.h>

#include "genapi/persistence/command.h"
#include "genapi/persistence/featureload.h"
#include "tests/genapi/persistence/bag.h"
#include "tests/genapi/persistence/camera.h"

using namespace GENAPI_NAMESPACE;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using test::Camera;
using test::Load;

constexpr std::chrono::milliseconds kNoTime(0);

// The commands write 1 to 4 to the register at 64, where the camera writes 0 when it is done.
std::string Command(const std::string& name, int value, const std::string& conditions = "",
                    const std::string& nameSpace = "Standard") {
    return "<Command Name='" + name + "' NameSpace='" + nameSpace + "'>" + conditions +
           "<pValue>CommandReg</pValue>" + test::Element("CommandValue", value) + "</Command>";
}

std::string Commands(const std::string& conditions = "",
                     const std::string& nameSpace = "Standard") {
    return Command("DeviceFeaturePersistenceStart", 1, conditions, nameSpace) +
           Command("DeviceFeaturePersistenceEnd", 2, conditions, nameSpace) +
           Command("DeviceRegistersStreamingStart", 3, conditions, nameSpace) +
           Command("DeviceRegistersStreamingEnd", 4, conditions, nameSpace);
}

std::string Nodes(const std::string& commands, const std::string& access = "WO") {
    return test::Features({"Width"}) + test::kPort + test::Integer("Width", test::Limited("100")) +
           test::IntReg("WidthReg", 0) + commands +
           test::Named(
               "IntReg", "CommandReg",
               test::RegisterAt(64, 4, access) + "<Cachable>NoCache</Cachable>" + test::kLittle) +
           "<Integer Name='Zero'><Value>0</Value></Integer>";
}

std::string TraceOfStoring(Camera& camera) {
    camera.port.TakeTrace();
    CFeatureBag bag;
    EXPECT_EQ(bag.StoreToBag(camera.NodeMap()), 1);
    return camera.port.TakeTrace();
}

TEST(PersistenceCommands, StandAroundStoringAndLoading) {
    Camera camera(Nodes(Commands()));
    EXPECT_EQ(TraceOfStoring(camera), "W64=1 R0 W64=2 ");
    EXPECT_THAT(Load(camera, "Width\t5\n"), IsEmpty());
    EXPECT_EQ(camera.port.TakeTrace(), "W64=3 W0=5 W64=4 ");
    // also when a value fails
    camera.map._InvalidateNodes();
    camera.port.failing = 0;
    CFeatureBag bag;
    EXPECT_THROW(bag.StoreToBag(camera.NodeMap()), GENICAM_NAMESPACE::TimeoutException);
    EXPECT_THAT(Load(camera, "Width\t500\n"), ElementsAre(HasSubstr("Width")));
    EXPECT_EQ(camera.port.TakeTrace(), "W64=1 W64=2 W64=3 W64=4 ");
}

TEST(PersistenceCommands, OthersOfTheirNameAndThoseNotAvailableArePassedOver) {
    for (const std::string& others :
         {Commands("", "Custom"), Commands("<pIsAvailable>Zero</pIsAvailable>"),
          Commands("<pIsImplemented>Zero</pIsImplemented>"),
          std::string("<Integer Name='DeviceFeaturePersistenceStart' NameSpace='Standard'>"
                      "<pValue>CommandReg</pValue></Integer>")}) {
        Camera camera(Nodes(others));
        EXPECT_EQ(TraceOfStoring(camera), "R0 ");
        EXPECT_THAT(Load(camera, "Width\t5\n"), IsEmpty());
        EXPECT_EQ(camera.port.TakeTrace(), "W0=5 ");
    }
}

TEST(PersistenceCommands, ARefusalLeavesTheSettings) {
    Camera camera(Nodes(Commands()));
    camera.port.failing = 64;
    EXPECT_EQ(TraceOfStoring(camera), "R0 ");
    EXPECT_THAT(Load(camera, "Width\t5\n"),
                ElementsAre(HasSubstr("'DeviceRegistersStreamingStart': no answer"),
                            HasSubstr("'DeviceRegistersStreamingEnd': no answer")));
    EXPECT_EQ(camera.Get("Width"), "5");
}

// Done when it was asked for the third time.
class SlowPort : public test::MemoryPort {
  public:
    void Read(void* pBuffer, int64_t Address, int64_t Length) override {
        if (Address == 64 && ++numAsked_ == 3) {
            memory[64] = 0;
            numAsked_ = 0;
        }
        MemoryPort::Read(pBuffer, Address, Length);
    }

  private:
    int numAsked_ = 0;
};

TEST(PersistenceCommands, TheirEndIsWaitedFor) {
    SlowPort port;
    Camera camera(Nodes(Commands(), "RW"));
    camera.map._Connect(&port);
    EXPECT_THAT(Load(camera, "Width\t5\n"), IsEmpty());
    EXPECT_EQ(port.TakeTrace(), "W64=3 R64 R64 R64 W0=5 W64=4 R64 R64 R64 ");
    camera.map._Connect(static_cast<IPort*>(nullptr));
}

TEST(PersistenceCommands, OneThatNeverEndsIsGivenUp) {
    Camera camera(Nodes(Commands(), "RW"));
    EXPECT_THAT(
        Engine::NotifyCamera(*camera.NodeMap(), "DeviceFeaturePersistenceStart", kNoTime).c_str(),
        EndsWith("'DeviceFeaturePersistenceStart': the command does not end"));
    GENICAM_NAMESPACE::gcstring_vector names(1, "Width");
    GENICAM_NAMESPACE::gcstring_vector values(1, "5");
    Engine::FeatureLoad load(*camera.NodeMap(), Engine::EntryList(names, values), true, kNoTime);
    EXPECT_FALSE(load.Run());
    EXPECT_EQ(load.Errors().size(), 2u);
    EXPECT_EQ(camera.Get("Width"), "5");
}

}  // namespace
