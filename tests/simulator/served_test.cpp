// Cameras that the producer serves on a network at a program's request.

#include <arpa/inet.h>
#include <array>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/simulator/producer.h"
#include "tests/support/networkapplication.h"

using namespace GenTL;
using ZelTest::NetworkApplication;

namespace {

class ServedCameraTest : public SimulatorTest {
  protected:
    ServedCameraTest() {
        UseConfig(
            "<ZelSim><Interface id='I' type='U3V'><Camera id='C' serial='77'>"
            "<Network LossEvery='5'/></Camera></Interface></ZelSim>");
    }
    ~ServedCameraTest() override { p.ServeCameras(nullptr); }

    std::string Get(const char* name) {
        std::array<char, 64> text{};
        size_t size = text.size();
        EXPECT_EQ(p.GetNetwork("C", name, text.data(), &size), GC_ERR_SUCCESS);
        return {text.data(), size - 1};
    }

    static std::string Serial(const std::string& address) {
        return ZelTest::TextAt(NetworkApplication(address).Discover(), 224);
    }
};

TEST_F(ServedCameraTest, CamerasAreServedWhileTheProgramWants) {
    EXPECT_EQ(p.SetNetwork("C", "Zip", "true"), GC_ERR_INVALID_ID);
    ASSERT_EQ(p.ServeCameras(""), GC_ERR_SUCCESS) << LastErrorText();
    const std::string address = Get("Address");
    EXPECT_EQ(address.substr(0, 4), "127.");
    EXPECT_EQ(Serial(address), "77");
    EXPECT_EQ(p.ServeCameras(nullptr), GC_ERR_SUCCESS);
    EXPECT_EQ(NetworkApplication(address).Discover().size(), 0U);
    EXPECT_EQ(p.ServeCameras("nosuch0"), GC_ERR_INVALID_PARAMETER);
}

TEST_F(ServedCameraTest, SwitchesAreSetAtRunTime) {
    ASSERT_EQ(p.ServeCameras(" 127.0.0.1 127.0.3.1 "), GC_ERR_SUCCESS) << LastErrorText();
    EXPECT_EQ(Get("LossEvery"), "5");
    EXPECT_EQ(p.SetNetwork("C", "EmptySerial", "true"), GC_ERR_SUCCESS);
    EXPECT_EQ(Serial(Get("Address")), "");
    EXPECT_EQ(p.SetNetwork("C", "EmptySerial", "maybe"), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(p.SetNetwork("C", "NoSuch", "1"), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(p.SetNetwork("D", "Zip", "true"), GC_ERR_INVALID_ID);

    size_t size = 0;
    EXPECT_EQ(p.GetNetwork("C", "EmptySerial", nullptr, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(size, 5U);
    std::array<char, 4> text{'x'};
    size = text.size();
    EXPECT_EQ(p.GetNetwork("C", "EmptySerial", text.data(), &size), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(text[0], 'x');
}

}  // namespace
