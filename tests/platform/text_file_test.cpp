// TTextFile: bounded and zero-copy line reads, positions, and CR LF on output. Reading cases run
// over a file on disk and over OpenMemory, since the two fill the buffer differently.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text_file.h"
#include "test_support.h"

namespace {

class TextFileRead : public ::testing::TestWithParam<bool> {
protected:
    void OpenBytes(TTextFile& file, const std::string& bytes) {
        if (!GetParam()) return file.OpenMemory(bytes);
        WriteFileBytes(m_dir.File("in.txt"), bytes);
        ASSERT_TRUE(file.Open(m_dir.File("in.txt").c_str(), TTextFile::modeRead));
    }
    TTempDir m_dir;
};

TEST_P(TextFileRead, BoundedReadsComeBackInPieces) {
    struct TCase {
        const char* name;
        std::string bytes;
        std::size_t cap;
        std::vector<std::string> pieces;
    };
    const std::vector<TCase> cases = {
        {"mixed ends, last line without end", "ab\r\ncd\nef", 100, {"ab\n", "cd\n", "ef"}},
        {"empty file", "", 100, {}},
        {"120 characters, 100-byte buffer",
         std::string(120, 'x') + "\r\nz\n",
         100,
         {std::string(99, 'x'), std::string(21, 'x') + "\n", "z\n"}},
        {"cap-1 characters, then CR LF",
         std::string(99, 'y') + "\r\nz",
         100,
         {std::string(99, 'y'), "\n", "z"}},
        {"CR inside a line, bytes above 127", "a\rb\xFF\r\n\x80", 100, {"a\rb\xFF\n", "\x80"}},
        {"CR at end of file", "ab\r", 100, {"ab\n"}},
        {"two-byte buffer", "abc\n", 2, {"a", "b", "c", "\n"}},
    };
    for (const TCase& c : cases) {
        TTextFile file;
        OpenBytes(file, c.bytes);
        std::vector<std::string> pieces;
        std::vector<char> buf(c.cap);
        while (file.ReadLine(buf.data(), c.cap) && pieces.size() < 100) pieces.emplace_back(buf.data());
        EXPECT_EQ(pieces, c.pieces) << c.name;
    }
}

TEST_P(TextFileRead, LineViews) {
    struct TCase {
        const char* name;
        std::string bytes;
        std::size_t maxLen;
        std::vector<std::string> views;  // a piece of a longer line ends in '+'
    };
    const std::vector<TCase> cases = {
        {"LF, CR LF, empty lines", "ab\n\r\n\ncd\r\n", 10, {"ab", "", "", "cd"}},
        {"maxLen before CR LF, then maxLen+1", "abcd\r\nabcde\n", 4, {"abcd", "abcd+", "e"}},
        {"CR LF behind a piece", "abcd\r\n", 3, {"abc+", "d"}},
        {"NUL and high bytes",
         std::string("a\0\xE9\n\0\n", 6),
         10,
         {std::string("a\0\xE9", 3), std::string(1, '\0')}},
        {"CR at end of file", "ab\r", 10, {"ab"}},
    };
    for (const TCase& c : cases) {
        TTextFile file;
        OpenBytes(file, c.bytes);
        std::vector<std::string> views;
        std::string_view line;
        while (file.ReadLineView(line, c.maxLen) && views.size() < 100)
            views.push_back(std::string(line) + (file.LastLineComplete() ? "" : "+"));
        EXPECT_EQ(views, c.views) << c.name;
    }
}

TEST_P(TextFileRead, WholeLinesPeekAndSeek) {
    const std::string bytes = "abcdefgh\r\n\xFFz\nthird\r\nlast";
    TTextFile file;
    OpenBytes(file, bytes);
    EXPECT_EQ(file.GetLength(), 24);
    std::string line;
    ASSERT_TRUE(file.ReadLine(line, 3));
    EXPECT_EQ(line, "abc") << "the rest of a long line is skipped";
    EXPECT_EQ(file.GetPosition(), 10);
    EXPECT_EQ(file.PeekChar(), 0xFF);
    EXPECT_EQ(file.PeekChar(), 0xFF);
    ASSERT_TRUE(file.ReadLine(line, 3));
    EXPECT_EQ(line, "\xFFz");
    EXPECT_EQ(file.GetPosition(), 13);

    ASSERT_TRUE(file.Seek(9));
    char buf[16];
    ASSERT_TRUE(file.ReadLine(buf, sizeof buf));
    EXPECT_STREQ(buf, "\n") << "the LF of a split CR LF ends an empty line";
    ASSERT_TRUE(file.Seek(20));
    ASSERT_TRUE(file.ReadLine(line));
    EXPECT_EQ(line, "last");
    EXPECT_EQ(file.PeekChar(), -1);
    EXPECT_FALSE(file.ReadLine(line));
    EXPECT_FALSE(file.Seek(25)) << "beyond the end";
    EXPECT_FALSE(file.Seek(-1));
}

// A 3 MB line is longer than the read buffer: bounded reads and views return it in full-size
// pieces, and the line behind it is read intact.
TEST_P(TextFileRead, LineLongerThanTheBuffer) {
    const std::size_t size = std::size_t{3} << 20;
    std::string longLine(size, 'm');
    for (std::size_t i = 0; i < size; i += 4096) longLine[i] = static_cast<char>('a' + (i / 4096) % 26);
    TTextFile file;
    OpenBytes(file, longLine + "\r\nafter\r\n");
    std::string joined;
    char buf[1000];
    std::size_t pieces = 0;
    while (joined.empty() || joined.back() != '\n') {
        ASSERT_TRUE(file.ReadLine(buf, sizeof buf));
        joined += buf;
        ++pieces;
    }
    EXPECT_TRUE(joined == longLine + "\n");
    EXPECT_EQ(pieces, size / 999 + 1);
    ASSERT_TRUE(file.ReadLine(buf, sizeof buf));
    EXPECT_STREQ(buf, "after\n");

    OpenBytes(file, longLine + "\r\nafter\r\n");
    std::string_view view;
    std::size_t total = 0, views = 0;
    while (file.ReadLineView(view) && view != "after") total += view.size(), ++views;
    EXPECT_EQ(total, size);
    EXPECT_EQ(views, size / TTextFile::kMaxViewLine);
}

INSTANTIATE_TEST_SUITE_P(Sources, TextFileRead, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Disk" : "Memory"; });

// The disk buffer is refilled every MiB: a CR LF before, across or after the refill is one line
// end, and positions stay right.
TEST(TextFileBuffer, LineEndAcrossTheRefill) {
    for (const int shift : {-2, -1, 0}) {
        const std::size_t crAt = TTextFile::kBufferSize + shift;
        const std::size_t fillers = (crAt - 1) / 1002;
        std::string bytes;
        for (std::size_t i = 0; i < fillers; ++i) bytes += std::string(1000, 'f') + "\r\n";
        const std::string target(crAt - bytes.size(), 't');
        bytes += target + "\r\nend\r\n";
        TTempDir dir;
        WriteFileBytes(dir.File("refill.txt"), bytes);
        TTextFile file;
        ASSERT_TRUE(file.Open(dir.File("refill.txt").c_str(), TTextFile::modeRead));
        std::string line;
        for (std::size_t i = 0; i < fillers; ++i) file.ReadLine(line);
        ASSERT_TRUE(file.ReadLine(line));
        EXPECT_TRUE(line == target) << shift;
        EXPECT_EQ(file.GetPosition(), static_cast<std::int64_t>(crAt + 2)) << shift;
        ASSERT_TRUE(file.ReadLine(line));
        EXPECT_EQ(line, "end") << shift;
        EXPECT_FALSE(file.ReadLine(line)) << shift;
    }
}

// Output turns every LF into CR LF, also across a flush; a memory file cannot be written.
TEST(TextFileWrite, LineFeedsBecomeCrLf) {
    TTextFile memory;
    memory.OpenMemory("x\n");
    EXPECT_FALSE(memory.WriteString("y\n"));

    TTempDir dir;
    TTextFile file;
    ASSERT_TRUE(file.Open(dir.File("out.txt").c_str(), TTextFile::modeCreate));
    std::string big, expected = "a\r\nbc\r\n\r\n";
    for (int i = 0; i < 120000; ++i) big += "0123456789\n", expected += "0123456789\r\n";
    ASSERT_TRUE(file.WriteString("a\nbc"));
    ASSERT_TRUE(file.WriteString("\n\n"));
    ASSERT_TRUE(file.WriteString(big));
    EXPECT_EQ(file.GetPosition(), static_cast<std::int64_t>(expected.size()));
    ASSERT_TRUE(file.Close());
    EXPECT_TRUE(ReadFileBytes(dir.File("out.txt")) == expected);
}

}  // namespace
