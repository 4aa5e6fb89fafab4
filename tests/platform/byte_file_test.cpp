// TByteFile reads, writes, seeks and status; open failures of both file kinds.

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <tuple>
#include <vector>

#include "platform/byte_file.h"
#include "platform/text_file.h"
#include "test_support.h"

namespace {

std::string ReadBytes(TByteFile& file, std::size_t n) {
    std::string out(n, '\0');
    out.resize(file.Read(out.data(), n));
    return out;
}

// Short reads at the end, seeks, and no writing to a file opened for reading, on disk and in memory.
TEST(ByteFile, ReadsOnDiskAndInMemory) {
    std::string bytes;
    for (int i = 0; i < 300; ++i) bytes += static_cast<char>(i);
    TTempDir dir;
    WriteFileBytes(dir.File("data.bin"), bytes);
    for (const bool memory : {false, true}) {
        TByteFile file;
        ASSERT_TRUE(memory ? (file.OpenMemory(bytes), true)
                           : file.Open(dir.File("data.bin").c_str(), TByteFile::modeRead));
        EXPECT_TRUE(file.GetLength() == 300 && file.Seek(250) && ReadBytes(file, 100) == bytes.substr(250))
            << memory;
        EXPECT_TRUE(ReadBytes(file, 10).empty() && file.Seek(0x80) &&
                    ReadBytes(file, 2) == bytes.substr(0x80, 2))
            << memory;
        EXPECT_FALSE(file.Seek(-1) || file.Write("x", 1)) << memory;
        EXPECT_EQ(file.GetPosition(), 0x82) << memory;
    }
}

// A writer fills in its header after the body, and may read back what it wrote.
TEST(ByteFile, HeaderRewrittenAfterTheBody) {
    TTempDir dir;
    TByteFile file;
    ASSERT_TRUE(file.Open(dir.File("out.bin").c_str(), TByteFile::modeCreate));
    const std::string body(3 << 20, 'b');  // more than the output buffer holds
    ASSERT_TRUE(file.Write("HHHH", 4) && file.Write(body.data(), body.size()));
    ASSERT_TRUE(file.Seek(0) && file.Write("1234", 4));
    EXPECT_EQ(file.GetLength(), 4 + static_cast<std::int64_t>(body.size()));
    ASSERT_TRUE(file.Seek(1));
    EXPECT_EQ(ReadBytes(file, 2), "23");
    ASSERT_TRUE(file.Write("X", 1) && file.Close());
    EXPECT_TRUE(ReadFileBytes(dir.File("out.bin")) == "123X" + body);
}

template <class TFile>
void ExpectOpenFailures(const TTempDir& dir, const char* kind) {
    const std::vector<std::tuple<std::string, typename TFile::OpenMode, int>> cases = {
        {dir.Path(), TFile::modeRead, EISDIR},
        {dir.Path(), TFile::modeCreate, EISDIR},
        {dir.File("missing"), TFile::modeRead, ENOENT},
        {dir.File("no/such"), TFile::modeCreate, ENOENT},
    };
    for (const auto& [path, mode, error] : cases) {
        TFile file;
        EXPECT_FALSE(file.Open(path.c_str(), mode)) << kind << " " << path << " " << mode;
        EXPECT_EQ(file.GetOpenError(), error) << kind << " " << path << " " << mode;
    }
}

TEST(FileOpen, FailuresSayWhyAndStatusTellsTheSize) {
    TTempDir dir;
    ExpectOpenFailures<TTextFile>(dir, "text file");
    ExpectOpenFailures<TByteFile>(dir, "byte file");
    WriteFileBytes(dir.File("five"), "12345");
    for (const auto& [path, expected] : std::vector<std::pair<std::string, std::int64_t>>{
             {dir.File("five"), 5}, {dir.Path(), 0}, {dir.File("x"), 0}}) {
        std::int64_t size = -7;
        EXPECT_EQ(TByteFile::GetStatus(path.c_str(), size), expected > 0) << path;
        EXPECT_EQ(size, expected) << path;
    }
}

}  // namespace
