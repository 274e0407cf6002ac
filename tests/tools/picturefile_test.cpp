// Encoding and writing of files.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/tools/pngfile.h"
#include "tools/imaging/filewriter.h"
#include "tools/imaging/pixelformat.h"
#include "tools/imaging/png.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

TEST(EncodePng, GrayAndColourInBothDepths) {
    const PngFile gray = ReadPng(Imaging::EncodePng({3, 1, 1, 8, {0, 100, 255}}));
    EXPECT_EQ(gray.depth, 8U);
    EXPECT_THAT(gray.samples, ElementsAre(0, 100, 255));

    const PngFile deep = ReadPng(Imaging::EncodePng({1, 2, 1, 16, {0x1234, 0xFFFE}}));
    EXPECT_EQ(deep.depth, 16U);
    EXPECT_EQ(deep.height, 2U);
    EXPECT_THAT(deep.samples, ElementsAre(0x1234, 0xFFFE));

    const PngFile colour = ReadPng(Imaging::EncodePng({2, 1, 3, 8, {1, 2, 3, 4, 5, 6}}));
    EXPECT_EQ(colour.channels, 3U);
    EXPECT_THAT(colour.Pixel(1, 0), ElementsAre(4, 5, 6));

    const PngFile deepColour = ReadPng(Imaging::EncodePng({1, 1, 3, 16, {0x102, 0x304, 0xFFFF}}));
    EXPECT_THAT(deepColour.samples, ElementsAre(0x102, 0x304, 0xFFFF));
}

TEST(EncodePng, ReportsWhatTheEncoderRefuses) {
    try {
        Imaging::EncodePng({0, 0, 1, 8, {}});
        FAIL() << "an empty picture was encoded";
    } catch (const Imaging::Error& error) {
        EXPECT_THAT(error.what(), HasSubstr("PNG"));
    }
}

class WriteFile : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name = ::testing::TempDir() + "zelcam-XXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    static std::string Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static std::string FailureOf(const std::string& path) {
        try {
            Imaging::WriteFile(path, "abc", 3);
        } catch (const Imaging::Error& error) {
            return error.what();
        }
        return "";
    }
    size_t FilesInFolder() const {
        const std::filesystem::directory_iterator files(folder_);
        return static_cast<size_t>(std::distance(begin(files), end(files)));
    }

    std::string folder_;
};

TEST_F(WriteFile, ReplacesAFileAndLeavesNothingElse) {
    const std::string path = folder_ + "/picture";
    Imaging::WriteFile(path, "first version", 13);
    Imaging::WriteFile(path, "second", 6);
    EXPECT_EQ(Read(path), "second");
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(WriteFile, FailureNamesFileAndReasonAndLeavesNothing) {
    EXPECT_THAT(FailureOf(folder_ + "/no/such/folder"), HasSubstr("No such file or directory"));
    EXPECT_THAT(FailureOf(folder_ + "/no/such/folder"), HasSubstr(folder_ + "/no/such/folder"));
    EXPECT_EQ(FilesInFolder(), 0U);
}

// A rename would turn the device into a file, or fail after all the work.
TEST_F(WriteFile, RefusesDevicesAndFolders) {
    EXPECT_THAT(FailureOf("/dev/null"), HasSubstr("not a file"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_THAT(FailureOf(folder_), HasSubstr("not a file"));
}

// Every write to this device fails for want of space, once the file is open.
TEST_F(WriteFile, KeepsTheOldFileWhenTheDiskIsFull) {
    const std::string path = folder_ + "/picture";
    Imaging::WriteFile(path, "old", 3);
    const std::string temporary = path + ".part" + std::to_string(getpid());
    std::filesystem::create_symlink("/dev/full", temporary);
    EXPECT_THAT(FailureOf(path), HasSubstr("No space left"));
    EXPECT_EQ(Read(path), "old");
    EXPECT_EQ(FilesInFolder(), 1U);
}

}  // namespace
