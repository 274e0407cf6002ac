// Ports for programs: a structure as registers, several writes in one, and recorded writes.
#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/NodeCallback.h>
#include <GenApi/Pointer.h>
#include <GenApi/PortStackedImpl.h>
#include <GenApi/PortWriteList.h>
#include <GenApi/StructPort.h>
#include <gmock/gmock.h>

#include "tests/genapi/adapters/description.h"

using namespace GENAPI_NAMESPACE;
using testing::ElementsAre;

namespace {

struct Registers {
    uint8_t gain[4];
    uint8_t offset[4];
};

using Port = CTestPortStruct<Registers>;

const std::string kNodes = "<Port Name=\"Device\"/>" + RegisterOn("Device", "Gain", 0x1000, 4) +
                           RegisterOn("Device", "Offset", 0x1004, 4);

// A port that notes what is written.
class NotingPort : public CPortStackedImpl {
  public:
    using CPortStackedImpl::Write;
    EAccessMode GetAccessMode() const override { return WO; }
    void Read(void*, int64_t, int64_t) override { throw ACCESS_EXCEPTION("no"); }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        if (address == 0xBAD) throw ACCESS_EXCEPTION("no");
        log.push_back(std::to_string(address) + ":" +
                      std::string(static_cast<const char*>(buffer), static_cast<size_t>(length)));
    }

    std::vector<std::string> log;
};

std::string RangeError(Port& port, int64_t address, int64_t length) {
    uint8_t bytes[8];
    try {
        port.Read(bytes, address, length);
    } catch (const GENICAM_NAMESPACE::RuntimeException& e) {
        return e.GetDescription();
    }
    return {};
}

TEST(StructPortTest, HoldsTheRegisters) {
    Port port(0x1000);
    EXPECT_EQ(port.offset[0], 0);
    port.offset[0] = 5;
    uint8_t bytes[4] = {};
    port.Read(bytes, 0x1004, 4);
    EXPECT_EQ(bytes[0], 5);
    bytes[1] = 6;
    port.Write(bytes, 0x1000, 2);
    EXPECT_EQ(port.gain[1], 6);

    EXPECT_EQ(RangeError(port, 0x1000, 8), "");
    EXPECT_EQ(RangeError(port, 0x1008, 0), "");
    EXPECT_EQ(RangeError(port, 0x1006, 4),
              "CTestPortStruct : Attempt to read address range [4102,4106] which is outside the "
              "buffers address range [4096,4104]");
    EXPECT_NE(RangeError(port, 0xFFF, 1), "");
    EXPECT_NE(RangeError(port, 0x1000, -1), "");
    EXPECT_NE(RangeError(port, std::numeric_limits<int64_t>::max(), 8), "");
    EXPECT_NE(RangeError(port, 0x1000, std::numeric_limits<int64_t>::max()), "");
    EXPECT_THROW(port.Write(bytes, 0x1005, 4), GENICAM_NAMESPACE::RuntimeException);
}

TEST(StructPortTest, InvalidatesItsNode) {
    Port port(0x1000);
    CNodeMapRef map;
    Load(map, kNodes);
    ASSERT_TRUE(map._Connect(&port));
    CIntegerPtr gain(map._GetNode("Gain"));
    gain->SetValue(0x01020304);
    EXPECT_EQ(port.gain[3], 4);
    EXPECT_EQ(gain->GetValue(), 0x01020304);

    int changes = 0;
    Register(map._GetNode("Gain"), [&](INode*) { ++changes; });
    port.gain[3] = 9;
    EXPECT_EQ(gain->GetValue(), 0x01020304);
    port.InvalidateNode();
    EXPECT_EQ(gain->GetValue(), 0x01020309);
    EXPECT_EQ(changes, 1);
    port.SetAccessMode(NA);
    port.InvalidateNode();
    EXPECT_EQ(gain->GetAccessMode(), NA);
    map._Connect(static_cast<IPort*>(nullptr));
}

TEST(PortImplTest, IsHarmlessUnconnected) {
    Port port;
    port.InvalidateNode();
    EXPECT_EQ(port.GetSwapEndianess(), No);

    CNodeMapRef map;
    Load(map, "<Port Name=\"Device\"><SwapEndianess>Yes</SwapEndianess></Port>");
    map._Connect(&port);
    EXPECT_EQ(port.GetSwapEndianess(), Yes);
    port.SetPortImpl(nullptr);
    EXPECT_EQ(port.GetSwapEndianess(), No);
}

TEST(PortStackedImplTest, WritesOneAfterAnother) {
    NotingPort port;
    char ab[] = "ab", cde[] = "cde";
    PORT_REGISTER_STACK_ENTRY entries[] = {{4, ab, 2}, {8, cde, 3}, {0xBAD, ab, 1}, {12, ab, 1}};
    port.Write(entries, 2);
    EXPECT_THAT(port.log, ElementsAre("4:ab", "8:cde"));
    port.log.clear();
    EXPECT_THROW(port.Write(entries, 4), GENICAM_NAMESPACE::AccessException);
    EXPECT_EQ(port.log.size(), 2u);
    EXPECT_THROW(port.Write(static_cast<PORT_REGISTER_STACK_ENTRY*>(nullptr), 1),
                 GENICAM_NAMESPACE::InvalidArgumentException);
}

TEST(PortWriteListTest, ReplaysCopiesInOrder) {
    NotingPort port;
    CPortWriteList list;
    char bytes[] = "one";
    list.Write(bytes, 16, 3);
    std::copy_n("two", 3, bytes);
    list.Write(bytes, 8, 3);
    list.Write(nullptr, 4, 0);
    for (int i = 0; i < 2; ++i) {
        port.log.clear();
        list.Replay(&port);
        EXPECT_THAT(port.log, ElementsAre("16:one", "8:two", "4:"));
    }
    EXPECT_THROW(list.Replay(nullptr), GENICAM_NAMESPACE::InvalidArgumentException);
    EXPECT_THROW(list.Write(bytes, 0, -1), GENICAM_NAMESPACE::InvalidArgumentException);
    EXPECT_THROW(list.Write(nullptr, 0, 1), GENICAM_NAMESPACE::InvalidArgumentException);

    EXPECT_EQ(list.GetCookie(), 0);
    list.SetCookie(-7);
    EXPECT_EQ(list.GetCookie(), -7);
}

TEST(PortWriteListTest, RecordsThePortNode) {
    Port port(0x1000);
    CNodeMapRef map;
    Load(map, kNodes);
    map._Connect(&port);
    CPortRecorderPtr recorder(map._GetNode("Device"));
    CPortWriteList list;
    recorder->StartRecording(&list);
    CIntegerPtr(map._GetNode("Offset"))->SetValue(7);
    recorder->StopRecording();
    EXPECT_EQ(port.offset[3], 0);
    recorder->Replay(&list);
    EXPECT_EQ(port.offset[3], 7);
    map._Connect(static_cast<IPort*>(nullptr));
}

}  // namespace
