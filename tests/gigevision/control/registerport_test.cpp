// Accesses as the commands that they become, with a camera that takes only some of them.
#include "producers/gigevision/control/registerport.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "producers/server/base/error.h"
#include "producers/wire/bootstrapbits.h"
#include "producers/wire/gvcpcommands.h"

using testing::ElementsAre;
using ZelCti::Error;
using ZelCti::Gev::Status;
using ZelGev::Exchange;
using ZelGev::RegisterPort;
namespace Gvcp = ZelCti::Gvcp;
namespace Capability = ZelCti::Gev::GvcpCapability;

namespace {

// Has 64 KiB of memory in which byte i is i % 251, and notes commands as "R 100" for READREG,
// "r 100+8" for READMEM, "W" and "w" for writes, and "|" between rows of commands.
class CommandedCamera final : public ZelGev::CommandChannel {
  public:
    CommandedCamera() {
        for (size_t i = 0; i < memory.size(); ++i)
            memory[i] = static_cast<uint8_t>(i % 251);
    }

    void Run(Exchange* exchanges, size_t count) override {
        if (count > 1) commands.emplace_back("|");
        for (size_t i = 0; i < count; ++i)
            RunOne(exchanges[i]);
    }

    std::vector<std::string> TakeCommands() { return std::exchange(commands, {}); }

    std::vector<uint8_t> memory = std::vector<uint8_t>(65536);
    std::map<Gvcp::Code, Status> refused;  // commands
    uint32_t registersEnd = 65536;         // READREG and WRITEREG only below
    size_t losesAfter = SIZE_MAX;          // answers nothing after so many commands
    unsigned tries = 1;                    // that a command needs
    size_t shorter = 0;                    // READMEM answers with so many bytes less
    std::vector<std::string> commands;

  private:
    void RunOne(Exchange& exchange) {
        const auto command = *Gvcp::DecodeCommand({exchange.command.data(), exchange.commandSize});
        exchange.tries = tries;
        if (losesAfter == 0) {
            exchange.state = Exchange::State::Unanswered;
            return;
        }
        --losesAfter;
        exchange.state = Exchange::State::Acknowledged;
        const auto found = refused.find(command.code);
        exchange.status = found != refused.end() ? found->second : Do(command, exchange);
    }

    Status Do(const Gvcp::Command& command, Exchange& exchange) {
        const ZelCti::ByteSpan out{exchange.payload.data(), exchange.payload.size()};
        const uint32_t address = command.payload.U32(0);
        switch (command.code) {
            case Gvcp::Code::ReadRegCmd:
                Note("R", address, 4);
                if (address >= registersEnd) return Status::InvalidAddress;
                out.PutBytes(0, {&memory.at(address), 4});
                exchange.payloadSize = 4;
                return Status::Success;
            case Gvcp::Code::ReadMemCmd: {
                const size_t size = command.payload.U16(6);
                Note("r", address, size);
                out.PutU32(0, address);
                out.PutBytes(4, {&memory.at(address), size});
                exchange.payloadSize = shorter < size ? 4 + size - shorter : 0;
                return Status::Success;
            }
            case Gvcp::Code::WriteRegCmd:
                Note("W", address, 4);
                if (address >= registersEnd) return Status::InvalidAddress;
                std::copy_n(command.payload.data + 4, 4, &memory.at(address));
                return Status::Success;
            default:
                Note("w", address, command.payload.size - 4);
                std::copy_n(command.payload.data + 4, command.payload.size - 4,
                            &memory.at(address));
                return Status::Success;
        }
    }

    void Note(const char* kind, uint32_t address, size_t size) {
        commands.push_back(kind + std::to_string(address) +
                           (size != 4 ? "+" + std::to_string(size) : ""));
    }
};

class RegisterPortTest : public ::testing::Test {
  protected:
    std::vector<uint8_t> Read(uint64_t address, size_t size) {
        std::vector<uint8_t> bytes(size, 0xEE);
        port_.Read(address, bytes.data(), bytes.size());
        return bytes;
    }

    void ExpectRead(uint32_t address, size_t size) {
        const uint8_t* const bytes = camera_.memory.data() + address;
        EXPECT_EQ(Read(address, size), std::vector<uint8_t>(bytes, bytes + size))
            << address << '+' << size;
    }

    // Writes bytes of 0xAA, and looks that nothing else changes.
    void ExpectWrite(uint32_t address, size_t size) {
        auto expected = camera_.memory;
        std::fill_n(expected.data() + address, size, uint8_t{0xAA});
        const std::vector<uint8_t> bytes(size, uint8_t{0xAA});
        port_.Write(address, bytes.data(), size);
        EXPECT_EQ(camera_.memory, expected) << address << '+' << size;
    }

    template <typename Operation>
    GenTL::GC_ERROR CodeOf(const Operation& operation, const std::string& text = "") {
        try {
            operation();
        } catch (const Error& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(text));
            return error.Code();
        }
        return GenTL::GC_ERR_SUCCESS;
    }

    CommandedCamera camera_;
    RegisterPort port_{camera_};
};

}  // namespace

TEST_F(RegisterPortTest, WordsAreRegistersAndAllElseIsMemory) {
    ExpectRead(0x100, 4);
    ExpectRead(0x104, 8);
    ExpectRead(0x101, 1);
    ExpectRead(0x102, 4);
    EXPECT_THAT(camera_.TakeCommands(), ElementsAre("R256", "r260+8", "R256", "r256+8"));
    ExpectWrite(0x100, 4);
    ExpectWrite(0x104, 16);
    EXPECT_THAT(camera_.TakeCommands(), ElementsAre("W256", "w260+16"));
    ExpectWrite(0x201, 2);
    ExpectWrite(0x203, 6);
    EXPECT_THAT(camera_.TakeCommands(), ElementsAre("R512", "W512", "r512+12", "w512+12"));
    camera_.TakeCommands();
    port_.Read(0x101, nullptr, 0);
    port_.Write(0x101, nullptr, 0);
    EXPECT_THAT(camera_.TakeCommands(), ElementsAre());
    EXPECT_EQ(port_.ReadRegister(0x300), 0x0F101112U);
}

TEST_F(RegisterPortTest, LargeReadsAreRowsOfBlocks) {
    ExpectRead(1, 1027);
    EXPECT_THAT(camera_.TakeCommands(), ElementsAre("|", "r0+512", "r512+512", "r1024"));
    ExpectRead(0, 20'000);
    ExpectWrite(100, 1025);
    camera_.TakeCommands();

    camera_.losesAfter = 2;
    EXPECT_EQ(CodeOf([this] { Read(0, 2048); }), GenTL::GC_ERR_TIMEOUT);
    camera_.losesAfter = SIZE_MAX;
}

// A datagram may get lost now and then; a camera may also not keep up with rows.
TEST_F(RegisterPortTest, BlocksComeOneByOneForAWhileAfterTroubleWithARow) {
    const auto numRows = [this](size_t numBlocks) {
        ExpectRead(0, numBlocks * 512);
        const auto commands = camera_.TakeCommands();
        return std::count(commands.begin(), commands.end(), "|");
    };
    camera_.tries = 2;
    EXPECT_EQ(numRows(16), 1);
    EXPECT_EQ(numRows(32), 0);
    EXPECT_EQ(numRows(16), 1) << "another try";
    EXPECT_EQ(numRows(64), 0) << "which went wrong, and is put off for longer";
    camera_.tries = 1;
    EXPECT_EQ(numRows(32), 2);
    camera_.tries = 2;
    EXPECT_EQ(numRows(16), 1);
    EXPECT_EQ(numRows(32), 0);
    EXPECT_EQ(numRows(16), 1);
}

TEST_F(RegisterPortTest, WhatIsRefusedInOneWayIsTriedInTheOtherAndRemembered) {
    camera_.registersEnd = 0x1000;
    ExpectRead(0x1000, 4);
    ExpectRead(0x1004, 4);
    ExpectRead(0x0FFC, 4);
    ExpectWrite(0x1008, 4);
    EXPECT_THAT(camera_.TakeCommands(), ElementsAre("R4096", "r4096", "r4100", "R4092", "w4104"));

    camera_.refused[Gvcp::Code::ReadMemCmd] = Status::NotImplemented;
    camera_.refused[Gvcp::Code::WriteMemCmd] = Status::InvalidAddress;
    ExpectRead(0x10, 8);
    ExpectRead(0x18, 5);
    ExpectWrite(0x20, 8);
    EXPECT_THAT(camera_.TakeCommands(), ElementsAre("R16", "R20", "R24", "R28", "W32", "W36"));
    ExpectRead(0, 1024);
}

TEST_F(RegisterPortTest, ACameraWithoutWritememGetsWords) {
    port_.SetCapabilities(~Capability::kWriteMem);
    ExpectWrite(0x100, 12);
    EXPECT_THAT(camera_.TakeCommands(), ElementsAre("W256", "W260", "W264"));
}

TEST_F(RegisterPortTest, ErrorsNameTheAccessAndTheStatus) {
    camera_.refused[Gvcp::Code::ReadRegCmd] = Status::AccessDenied;
    EXPECT_EQ(CodeOf([this] { port_.ReadRegister(0x0A00); },
                     "READREG 0x00000A00: the camera answers ACCESS_DENIED (0x8006)"),
              GenTL::GC_ERR_ACCESS_DENIED);
    camera_.refused[Gvcp::Code::ReadRegCmd] = static_cast<Status>(0x8123);
    EXPECT_EQ(CodeOf([this] { port_.ReadRegister(4); }, "status 0x8123"), GenTL::GC_ERR_ERROR);
    // Both ways are refused: the usual one is told.
    camera_.refused[Gvcp::Code::ReadRegCmd] = Status::InvalidAddress;
    camera_.refused[Gvcp::Code::ReadMemCmd] = Status::NotImplemented;
    EXPECT_EQ(CodeOf([this] { port_.ReadRegister(4); }, "READREG"), GenTL::GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(CodeOf([this] { Read(0x1'0000'0000, 4); }), GenTL::GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(CodeOf([this] { Read(0xFFFF'FFFE, 4); }), GenTL::GC_ERR_INVALID_ADDRESS);
    camera_.losesAfter = 0;
    EXPECT_EQ(CodeOf([this] { port_.WriteRegister(4, 1); }, "does not answer"),
              GenTL::GC_ERR_TIMEOUT);
}

TEST_F(RegisterPortTest, AnswersThatAreTooShortAreErrors) {
    camera_.shorter = 4;
    EXPECT_EQ(CodeOf([this] { Read(0, 8); }, "malformed"), GenTL::GC_ERR_IO);
    EXPECT_EQ(CodeOf([this] { Read(0, 2048); }, "malformed"), GenTL::GC_ERR_IO);
    camera_.shorter = 10'000;  // which makes no payload at all
    EXPECT_EQ(CodeOf([this] { Read(0, 8); }, "malformed"), GenTL::GC_ERR_IO);
}
