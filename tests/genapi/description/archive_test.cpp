// Zipped descriptions: which entry is taken, and archives that are damaged or too large.
#include "genapi/description/archive.h"

#include <Base/GCException.h>
#include <gtest/gtest.h>

#include "genapi/description/limits.h"
#include "tests/genapi/description/archives.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

constexpr const char* kInvalidArchive = "Invalid ZIP string in ParseXmlBuffer";

std::string ArchiveError(const std::string& bytes) {
    return TextOf<GENICAM_NAMESPACE::RuntimeException>([&] { UnzipFirstEntry(bytes); });
}

TEST(Archives, FirstEntryStoredOrDeflated) {
    const std::string text(10000, 'x');
    const std::string other(200, 'y');
    for (const int method : {ZIP_CM_STORE, ZIP_CM_DEFLATE})
        EXPECT_EQ(text,
                  UnzipFirstEntry(Archive({{"folder/a.txt", text}, {"b.xml", other}}, method)));
}

TEST(Archives, BytesBehindTheEndDoNotMatter) {
    const std::string bytes = Archive({{"a.xml", "text"}});
    EXPECT_EQ("text", UnzipFirstEntry(bytes + "tail"));
    EXPECT_EQ("text", UnzipFirstEntry(bytes + std::string(200000, '\xFF')));
}

TEST(Archives, DamagedOnes) {
    const std::string bytes = Archive({{"a.xml", "some text"}}, ZIP_CM_STORE);
    EXPECT_EQ(kInvalidArchive, ArchiveError("<RegisterDescription/>"));
    EXPECT_EQ(kInvalidArchive, ArchiveError(""));
    EXPECT_EQ(kInvalidArchive, ArchiveError("PK\5\6" + std::string(18, '\0')));
    EXPECT_EQ(kInvalidArchive, ArchiveError(bytes.substr(0, bytes.size() / 2)));
    std::string changed = bytes;
    changed[changed.find("some")] ^= 1;
    EXPECT_EQ(kInvalidArchive, ArchiveError(changed));
}

TEST(Archives, TooLargeContents) {
    EXPECT_EQ(kInvalidArchive,
              ArchiveError(Archive({{"a.xml", std::string(kMaxXmlSize + 1, ' ')}})));
    // Within the size, but blown up from nearly nothing.
    EXPECT_EQ(kInvalidArchive,
              ArchiveError(Archive({{"a.xml", std::string(kMaxXmlSize / 2, ' ')}})));
}

}  // namespace
}  // namespace test
