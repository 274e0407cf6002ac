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
using test::load;

constexpr std::chrono::milliseconds kNoTime(0);

// The commands write 1 to 4 to the register at 64, where the camera writes 0 when it is done.
std::string command(const std::string& name, int value, const std::string& conditions = "",
                    const std::string& nameSpace = "Standard") {
    return "<Command Name='" + name + "' NameSpace='" + nameSpace + "'>" + conditions +
           "<pValue>CommandReg</pValue>" + test::element("CommandValue", value) + "</Command>";
}

std::string commands(const std::string& conditions = "",
                     const std::string& nameSpace = "Standard") {
    return command("DeviceFeaturePersistenceStart", 1, conditions, nameSpace) +
           command("DeviceFeaturePersistenceEnd", 2, conditions, nameSpace) +
           command("DeviceRegistersStreamingStart", 3, conditions, nameSpace) +
           command("DeviceRegistersStreamingEnd", 4, conditions, nameSpace);
}

std::string nodes(const std::string& commands, const std::string& access = "WO") {
    return test::features({"Width"}) + test::kPort + test::integer("Width", test::limited("100")) +
           test::intReg("WidthReg", 0) + commands +
           test::named(
               "IntReg", "CommandReg",
               test::registerAt(64, 4, access) + "<Cachable>NoCache</Cachable>" + test::kLittle) +
           "<Integer Name='Zero'><Value>0</Value></Integer>";
}

std::string traceOfStoring(Camera& camera) {
    camera.port.takeTrace();
    CFeatureBag bag;
    EXPECT_EQ(bag.StoreToBag(camera.nodeMap()), 1);
    return camera.port.takeTrace();
}

TEST(PersistenceCommands, StandAroundStoringAndLoading) {
    Camera camera(nodes(commands()));
    EXPECT_EQ(traceOfStoring(camera), "W64=1 R0 W64=2 ");
    EXPECT_THAT(load(camera, "Width\t5\n"), IsEmpty());
    EXPECT_EQ(camera.port.takeTrace(), "W64=3 W0=5 W64=4 ");
    // also when a value fails
    camera.map._InvalidateNodes();
    camera.port.failing = 0;
    CFeatureBag bag;
    EXPECT_THROW(bag.StoreToBag(camera.nodeMap()), GENICAM_NAMESPACE::TimeoutException);
    EXPECT_THAT(load(camera, "Width\t500\n"), ElementsAre(HasSubstr("Width")));
    EXPECT_EQ(camera.port.takeTrace(), "W64=1 W64=2 W64=3 W64=4 ");
}

TEST(PersistenceCommands, OthersOfTheirNameAndThoseNotAvailableArePassedOver) {
    for (const std::string& others :
         {commands("", "Custom"), commands("<pIsAvailable>Zero</pIsAvailable>"),
          commands("<pIsImplemented>Zero</pIsImplemented>"),
          std::string("<Integer Name='DeviceFeaturePersistenceStart' NameSpace='Standard'>"
                      "<pValue>CommandReg</pValue></Integer>")}) {
        Camera camera(nodes(others));
        EXPECT_EQ(traceOfStoring(camera), "R0 ");
        EXPECT_THAT(load(camera, "Width\t5\n"), IsEmpty());
        EXPECT_EQ(camera.port.takeTrace(), "W0=5 ");
    }
}

TEST(PersistenceCommands, ARefusalLeavesTheSettings) {
    Camera camera(nodes(commands()));
    camera.port.failing = 64;
    EXPECT_EQ(traceOfStoring(camera), "R0 ");
    EXPECT_THAT(load(camera, "Width\t5\n"),
                ElementsAre(HasSubstr("'DeviceRegistersStreamingStart': no answer"),
                            HasSubstr("'DeviceRegistersStreamingEnd': no answer")));
    EXPECT_EQ(camera.get("Width"), "5");
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
    Camera camera(nodes(commands(), "RW"));
    camera.map._Connect(&port);
    EXPECT_THAT(load(camera, "Width\t5\n"), IsEmpty());
    EXPECT_EQ(port.takeTrace(), "W64=3 R64 R64 R64 W0=5 W64=4 R64 R64 R64 ");
    camera.map._Connect(static_cast<IPort*>(nullptr));
}

TEST(PersistenceCommands, OneThatNeverEndsIsGivenUp) {
    Camera camera(nodes(commands(), "RW"));
    EXPECT_THAT(
        Engine::notifyCamera(*camera.nodeMap(), "DeviceFeaturePersistenceStart", kNoTime).c_str(),
        EndsWith("'DeviceFeaturePersistenceStart': the command does not end"));
    GENICAM_NAMESPACE::gcstring_vector names(1, "Width");
    GENICAM_NAMESPACE::gcstring_vector values(1, "5");
    Engine::FeatureLoad load(*camera.nodeMap(), Engine::EntryList(names, values), true, kNoTime);
    EXPECT_FALSE(load.run());
    EXPECT_EQ(load.errors().size(), 2u);
    EXPECT_EQ(camera.get("Width"), "5");
}

}  // namespace
