// TByteFile: reads, writes, seeks, lengths and file status, on disk and in memory.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/byte_file.h"
#include "test_support.h"

namespace {

std::string ReadBytes(TByteFile& file, std::size_t n) {
    std::string out(n, '\0');
    out.resize(file.Read(out.data(), n));
    return out;
}

// One sequence of reads and seeks, run over a file on disk and over the same bytes in memory.
TEST(ByteFileRead, DiskAndMemoryAgree) {
    std::string bytes;
    for (int i = 0; i < 300; ++i) bytes += static_cast<char>(i & 0xFF);
    TTempDir dir;
    const std::string path = dir.File("data.bin");
    WriteFileBytes(path, bytes);

    for (const bool memory : {false, true}) {
        SCOPED_TRACE(memory ? "memory" : "disk");
        TByteFile file;
        if (memory)
            file.OpenMemory(bytes);
        else
            ASSERT_TRUE(file.Open(path.c_str(), TByteFile::modeRead));
        EXPECT_EQ(file.GetLength(), 300);
        EXPECT_EQ(ReadBytes(file, 4), bytes.substr(0, 4));
        EXPECT_EQ(file.GetPosition(), 4);
        ASSERT_TRUE(file.Seek(250));
        EXPECT_EQ(ReadBytes(file, 100), bytes.substr(250)) << "short read at the end";
        EXPECT_EQ(file.GetPosition(), 300);
        EXPECT_EQ(ReadBytes(file, 10), "");
        ASSERT_TRUE(file.Seek(0x80));
        EXPECT_EQ(ReadBytes(file, 2), bytes.substr(0x80, 2));
        EXPECT_FALSE(file.Seek(-1));
        EXPECT_FALSE(file.Write("x", 1)) << "opened for reading";
        EXPECT_EQ(file.GetPosition(), 0x82);
        EXPECT_TRUE(file.Close());
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(file.GetLength(), 0);
    }
}

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
    // A writer may read back what it wrote and go on writing from there.
    ASSERT_TRUE(file.Seek(1));
    EXPECT_EQ(ReadBytes(file, 2), "23");
    ASSERT_TRUE(file.Write("X", 1));
    EXPECT_EQ(file.GetPosition(), 4);
    ASSERT_TRUE(file.Close());
    const std::string onDisk = ReadFileBytes(path);
    ASSERT_EQ(onDisk.size(), 4 + body.size());
    EXPECT_EQ(onDisk.substr(0, 4), "123X");
    EXPECT_TRUE(onDisk.substr(4) == body);
}

TEST(ByteFileStatus, SizeByName) {
    TTempDir dir;
    WriteFileBytes(dir.File("empty"), "");
    WriteFileBytes(dir.File("five"), "12345");
    struct TCase {
        const char* name;
        std::string path;
        bool ok;
        std::int64_t size;
    };
    const std::vector<TCase> cases = {
        {"empty file", dir.File("empty"), true, 0},
        {"five bytes", dir.File("five"), true, 5},
        {"directory", dir.Path(), false, 0},
        {"missing", dir.File("missing"), false, 0},
    };
    for (const TCase& c : cases) {
        std::int64_t size = -7;
        EXPECT_EQ(TByteFile::GetStatus(c.path.c_str(), size), c.ok) << c.name;
        EXPECT_EQ(size, c.size) << c.name;
    }
    std::int64_t size = -7;
    EXPECT_FALSE(TByteFile::GetStatus(nullptr, size));
}

}  // namespace
