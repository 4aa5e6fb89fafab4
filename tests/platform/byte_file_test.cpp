// TByteFile reads, writes, seeks and status; open failures of both file kinds.

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
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

TEST(ByteFileRead, DiskAndMemoryAgree) {
    std::string bytes;
    for (int i = 0; i < 300; ++i) bytes += static_cast<char>(i);
    TTempDir dir;
    WriteFileBytes(dir.File("data.bin"), bytes);
    for (const bool memory : {false, true}) {
        SCOPED_TRACE(memory ? "memory" : "disk");
        TByteFile file;
        if (memory)
            file.OpenMemory(bytes);
        else
            ASSERT_TRUE(file.Open(dir.File("data.bin").c_str(), TByteFile::modeRead));
        EXPECT_EQ(file.GetLength(), 300);
        EXPECT_EQ(ReadBytes(file, 4), bytes.substr(0, 4));
        ASSERT_TRUE(file.Seek(250));
        EXPECT_EQ(ReadBytes(file, 100), bytes.substr(250)) << "short read at the end";
        EXPECT_EQ(ReadBytes(file, 10), "");
        ASSERT_TRUE(file.Seek(0x80));
        EXPECT_EQ(ReadBytes(file, 2), bytes.substr(0x80, 2));
        EXPECT_FALSE(file.Seek(-1));
        EXPECT_FALSE(file.Write("x", 1)) << "opened for reading";
        EXPECT_EQ(file.GetPosition(), 0x82);
    }
}

// A writer fills in its header after the body, and may read back what it wrote.
TEST(ByteFileWrite, HeaderRewrittenAfterTheBody) {
    TTempDir dir;
    const std::string path = dir.File("out.bin");
    TByteFile file;
    ASSERT_TRUE(file.Open(path.c_str(), TByteFile::modeCreate));
    ASSERT_TRUE(file.Write("HHHH", 4));
    const std::string body(3 << 20, 'b');  // more than the output buffer holds
    ASSERT_TRUE(file.Write(body.data(), body.size()));
    ASSERT_TRUE(file.Seek(0));
    ASSERT_TRUE(file.Write("1234", 4));
    EXPECT_EQ(file.GetLength(), 4 + static_cast<std::int64_t>(body.size()));
    ASSERT_TRUE(file.Seek(1));
    EXPECT_EQ(ReadBytes(file, 2), "23");
    ASSERT_TRUE(file.Write("X", 1));
    ASSERT_TRUE(file.Close());
    EXPECT_TRUE(ReadFileBytes(path) == "123X" + body);
}

template <class TFile>
void ExpectOpenFailures(const TTempDir& dir, const char* kind) {
    struct TCase {
        const char* name;
        std::string path;
        typename TFile::OpenMode mode;
        int error;
    };
    const std::vector<TCase> cases = {
        {"directory for reading", dir.Path(), TFile::modeRead, EISDIR},
        {"directory for writing", dir.Path(), TFile::modeCreate, EISDIR},
        {"missing file", dir.File("missing"), TFile::modeRead, ENOENT},
        {"missing folder for writing", dir.File("no/such"), TFile::modeCreate, ENOENT},
    };
    for (const TCase& c : cases) {
        TFile file;
        EXPECT_FALSE(file.Open(c.path.c_str(), c.mode)) << kind << ", " << c.name;
        EXPECT_EQ(file.GetOpenError(), c.error) << kind << ", " << c.name;
    }
    TFile file;
    EXPECT_FALSE(file.Open(nullptr, TFile::modeRead)) << kind;
}

TEST(FileOpen, FailuresSayWhyAndStatusTellsTheSize) {
    TTempDir dir;
    ExpectOpenFailures<TTextFile>(dir, "text file");
    ExpectOpenFailures<TByteFile>(dir, "byte file");

    WriteFileBytes(dir.File("five"), "12345");
    const std::vector<std::pair<std::string, std::int64_t>> status = {
        {dir.File("five"), 5}, {dir.Path(), -1}, {dir.File("missing"), -1}};
    for (const auto& [path, expected] : status) {
        std::int64_t size = -7;
        EXPECT_EQ(TByteFile::GetStatus(path.c_str(), size), expected >= 0) << path;
        EXPECT_EQ(size, expected >= 0 ? expected : 0) << path;
    }
}

}  // namespace
