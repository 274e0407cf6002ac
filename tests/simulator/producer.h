// The producer file as the tests load it, with simulated cameras.
#pragma once

#include <string>

#include "producers/simulator/zelsim.h"
#include "tests/support/gentlclient.h"

using ZelTest::Ask;
using ZelTest::Info;
using ZelTest::kPatienceMs;

// A loaded producer file with all its functions; unloaded with the object.
struct Producer : ZelTest::GenTLFunctions {
    Producer();
    ~Producer();
    Producer(const Producer&) = delete;
    Producer& operator=(const Producer&) = delete;

    static bool IsLoaded();

    void* file;
    // NOLINTBEGIN(readability-identifier-naming): functions, in the form of pointers.
    PZelSim_InjectFault InjectFault;
    PZelSim_ClearFaults ClearFaults;
    PZelSim_GetCallCount GetCallCount;
    PZelSim_Configure Configure;
    PZelSim_PlugCamera PlugCamera;
    PZelSim_UnplugCamera UnplugCamera;
    PZelSim_FireEvent FireEvent;
    PZelSim_GetNumOpenHandles GetNumOpenHandles;
    PZelSim_ServeCameras ServeCameras;
    PZelSim_SetNetwork SetNetwork;
    PZelSim_GetNetwork GetNetwork;
    // NOLINTEND(readability-identifier-naming)
};

struct HasProducer {
    Producer p;
};

// A producer that is initialised, with the built-in cameras and one system module open.
class SimulatorTest : public ::testing::Test, protected HasProducer, protected ZelTest::Client {
  protected:
    SimulatorTest();
    ~SimulatorTest() override;

    // Whatever the tests did, nothing keeps the file in memory.
    static void TearDownTestSuite() { EXPECT_FALSE(Producer::IsLoaded()); }

    // Reads a configuration and opens the system anew.
    void UseConfig(const std::string& xml);
};

// A camera "C" on the interface "I", open with its first stream and the event of new buffers.
class CameraTest : public SimulatorTest {
  protected:
    // `keys` are attributes of the Camera element.
    void OpenCamera(const std::string& keys, const std::string& type = "GEV");

    // The stream, and then the camera.
    GenTL::GC_ERROR Start(uint64_t count = GENTL_INFINITE);
    GenTL::GC_ERROR Stop(int32_t flags = GenTL::ACQ_STOP_FLAGS_KILL);

  private:
    auto Acquisition();
};
