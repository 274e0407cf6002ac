// The files of a camera as streams.
#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <GenApi/Filestream.h>
#include <gmock/gmock.h>

#include "tests/genapi/persistence/camera.h"

using namespace GENAPI_NAMESPACE;

namespace {

constexpr int kBufferLength = 8;

std::string Enumeration(const std::string& name, const std::vector<std::string>& entries) {
    std::string text = "<Enumeration Name='" + name + "'>";
    for (size_t i = 0; i < entries.size(); ++i)
        text += "<EnumEntry Name='" + entries[i] + "'><Value>" + std::to_string(i) +
                "</Value></EnumEntry>";
    return text + "<pValue>" + name + "Reg</pValue></Enumeration>";
}

// Where the registers are.
enum Address {
    kFile,
    kOperation = 4,
    kExecute = 8,
    kMode = 12,
    kStatus = 16,
    kResult = 20,
    kOffset = 24,
    kLength = 28,
    kSize = 32,
    kBuffer = 100
};

std::string FileNodes() {
    const std::string no;
    return test::Features({"FileSelector"}) + "<Port Name='Device'/>" +
           Enumeration("FileSelector", {"One", "Two"}) + test::IntReg("FileSelectorReg", kFile) +
           Enumeration("FileOperationSelector", {"Open", "Close", "Read", "Write", "Delete"}) +
           test::IntReg("FileOperationSelectorReg", kOperation) +
           "<Command Name='FileOperationExecute'><pValue>ExecuteReg</pValue>"
           "<CommandValue>1</CommandValue></Command>" +
           "<IntReg Name='ExecuteReg'><Address>8</Address><Length>4</Length>"
           "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>"
           "<Endianess>LittleEndian</Endianess></IntReg>" +
           Enumeration("FileOpenMode", {"Read", "Write", "ReadWrite"}) +
           test::IntReg("FileOpenModeReg", kMode) +
           Enumeration("FileOperationStatus", {"Success", "Failure"}) +
           test::IntReg("FileOperationStatusReg", kStatus) +
           test::Integer("FileOperationResult", no, no) +
           test::IntReg("FileOperationResultReg", kResult) +
           test::Integer("FileAccessOffset", no, no) +
           test::IntReg("FileAccessOffsetReg", kOffset) +
           test::Integer("FileAccessLength", test::Limited(std::to_string(kBufferLength)), no) +
           test::IntReg("FileAccessLengthReg", kLength) + test::Integer("FileSize", no, no) +
           test::IntReg("FileSizeReg", kSize) + "<Register Name='FileAccessBuffer'><Address>" +
           std::to_string(kBuffer) + "</Address><Length>" + std::to_string(kBufferLength) +
           "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></Register>";
}

// Does the operations on its files. File two cannot be opened.
class FileDevice : public test::MemoryPort {
  public:
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override {
        MemoryPort::Write(pBuffer, Address, Length);
        if (Address != kExecute) return;
        memory[kExecute] = 0;
        memory[kStatus] = Operate() ? 0 : 1;
        memory[kSize] = static_cast<uint8_t>(File().size());
    }

    std::string files[2];
    bool isBroken = false;  // refuses whatever comes after Open
    int numOpen = 0;
    std::string modes;

  private:
    std::string& File() { return files[memory[kFile] & 1]; }

    bool Operate() {
        const int operation = memory[kOperation];
        if (operation == 0) {
            ++numOpen;
            modes += std::to_string(memory[kMode]);
            return memory[kFile] == 0;
        }
        if (operation == 1) --numOpen;
        if (isBroken) return false;
        if (operation == 2) ReadPart();
        if (operation == 3) WritePart();
        if (operation == 4) File().clear();
        return true;
    }

    void ReadPart() {
        const size_t offset = std::min<size_t>(memory[kOffset], File().size());
        const std::string part = File().substr(offset, memory[kLength]);
        for (size_t i = 0; i < part.size(); ++i)
            memory[kBuffer + static_cast<int64_t>(i)] = static_cast<uint8_t>(part[i]);
        memory[kResult] = static_cast<uint8_t>(part.size());
    }

    void WritePart() {
        File().resize(memory[kOffset]);
        for (int64_t i = 0; i < memory[kLength]; ++i)
            File() += static_cast<char>(memory[kBuffer + i]);
        memory[kResult] = memory[kLength];
    }
};

class FileStream : public testing::Test {
  protected:
    FileStream() : camera(FileNodes()) { camera.map._Connect(&device); }

    FileDevice device;
    test::Camera camera;
};

TEST_F(FileStream, WhatIsWrittenIsReadBack) {
    const std::string text = "twenty-one characters and a \xff byte";
    ODevFileStream out(camera.NodeMap(), "One");
    ASSERT_TRUE(out.is_open());
    EXPECT_TRUE(out << text << std::flush);
    EXPECT_EQ(device.files[0], text);
    out << '!';
    out.close();
    EXPECT_TRUE(out.good());
    EXPECT_EQ(device.files[0], text + "!");

    IDevFileStream in(camera.NodeMap(), "One");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), text + "!");
    in.close();
    EXPECT_EQ(device.numOpen, 0);
    EXPECT_EQ(device.modes, "10");
}

TEST_F(FileStream, WritingAtTheEndNeedsItsPosition) {
    device.files[0] = "first";
    device.memory[kSize] = 5;
    { ODevFileStream(camera.NodeMap(), "One", std::ios::app) << " second"; }
    EXPECT_EQ(device.files[0], "first second");
    EXPECT_EQ(device.numOpen, 0);
}

TEST_F(FileStream, WhatTheCameraRefusesIsAFailureOfTheStream) {
    EXPECT_TRUE(ODevFileStream(camera.NodeMap(), "Two").fail());
    EXPECT_TRUE(IDevFileStream(nullptr, "One").fail());
    EXPECT_TRUE(IDevFileStream(test::Camera().NodeMap(), "One").fail());
    EXPECT_THROW(IDevFileStream(camera.NodeMap(), "Nope"),
                 GENICAM_NAMESPACE::InvalidArgumentException);
    ODevFileStream out(camera.NodeMap(), "One");
    IDevFileStream in(camera.NodeMap(), "One");
    device.isBroken = true;
    EXPECT_TRUE((out << "text" << std::flush).bad());
    char c = 0;
    EXPECT_FALSE(in.get(c));
    out.clear();
    out.close();
    EXPECT_TRUE(out.fail());
    EXPECT_FALSE(out.is_open());
}

TEST_F(FileStream, TheEndOfAStreamSurvivesAnyExceptionOfThePort) {
    {
        ODevFileStream out(camera.NodeMap(), "One");
        IDevFileStream in(camera.NodeMap(), "One");
        out << "text";
        device.onWrite = [](int64_t) { throw std::runtime_error("unplugged"); };
    }
    device.onWrite = nullptr;
    ODevFileStream out(camera.NodeMap(), "One");
    out << "text";
    device.onWrite = [](int64_t address) {
        if (address == kBuffer) throw std::runtime_error("unplugged");
    };
    EXPECT_THROW(out.close(), std::runtime_error);
    EXPECT_FALSE(out.is_open());
}

TEST_F(FileStream, TheAdapterTellsOfFilesAndDeletesThem) {
    FileProtocolAdapter adapter;
    EXPECT_THROW(adapter.deleteFile("One"), GENICAM_NAMESPACE::LogicalErrorException);
    ASSERT_TRUE(adapter.attach(camera.NodeMap()));
    ASSERT_TRUE(adapter.openFile("One", std::ios::in | std::ios::out));
    EXPECT_EQ(device.modes, "2");
    EXPECT_EQ(adapter.getBufSize("One", std::ios::in), kBufferLength);
    EXPECT_EQ(adapter.write("0123456789", 0, 10, "One"), 10);
    EXPECT_EQ(adapter.getFileSize("One"), 10);
    char part[20];
    EXPECT_EQ(adapter.read(part, 4, 20, "One"), 6);
    EXPECT_EQ(std::string(part, 6), "456789");
    EXPECT_TRUE(adapter.closeFile("One"));
    EXPECT_TRUE(adapter.deleteFile("One"));
    EXPECT_EQ(device.files[0], "");
}

}  // namespace
