// When the registers of a module are made.

#include <cstdint>
#include <initializer_list>

#include "tests/simulator/producer.h"
#include "tests/support/allocationfaults.h"

using namespace GenTL;
using ZelTest::AllocationFaults;

namespace {

class PortUseTest : public CameraTest {
  protected:
    // The allocations of a call; `count` from number `first` on fail.
    template <typename Call>
    static uint64_t Allocations(Call&& call, uint64_t first = UINT64_MAX, uint64_t count = 0) {
        AllocationFaults::Begin(first, count);
        const AllocationFaults::Counted counted;
        call();
        return AllocationFaults::End();
    }
    GC_ERROR Use(PORT_HANDLE port) {
        uint32_t count = 0;
        return p.GCGetNumPortURLs(port, &count);
    }
    PORT_HANDLE Remote() {
        PORT_HANDLE port = nullptr;
        EXPECT_EQ(p.DevGetPort(device, &port), GC_ERR_SUCCESS);
        return port;
    }
};

// A program that reads no feature of a module does not pay for them.
TEST_F(PortUseTest, FirstUseMakesTheRegisters) {
    OpenCamera("");
    for (const PORT_HANDLE port : {system, interface, device, stream, Remote()}) {
        EXPECT_GT(Allocations([&] { Use(port); }), 200U);
        EXPECT_LT(Allocations([&] { Use(port); }), 30U);
    }
}

// What a use without memory has made of the registers is not in the way of the next one.
TEST_F(PortUseTest, AFailedFirstUseIsRepeated) {
    OpenCamera("");
    for (const PORT_HANDLE port : {system, interface, device, stream, Remote()}) {
        for (const uint64_t first : {0U, 50U, 200U}) {
            Allocations([&] { EXPECT_EQ(Use(port), GC_ERR_OUT_OF_MEMORY); }, first, 1);
        }
        EXPECT_EQ(Use(port), GC_ERR_SUCCESS);
    }
}

}  // namespace
