// TTextFile: bounded and zero-copy line reads, positions, and CR LF on output. Every reading
// case runs twice, over a file on disk and over OpenMemory, since the two fill the buffer
// differently.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text_file.h"
#include "test_support.h"

namespace {

enum class TSource { Disk, Memory };

std::string SourceName(const ::testing::TestParamInfo<TSource>& info) {
    return info.param == TSource::Disk ? "Disk" : "Memory";
}

class TextFileRead : public ::testing::TestWithParam<TSource> {
protected:
    bool OpenBytes(TTextFile& file, const std::string& bytes) {
        if (GetParam() == TSource::Memory) {
            file.OpenMemory(bytes);
            return file.IsOpen();
        }
        const std::string path = m_dir.File("input.txt");
        WriteFileBytes(path, bytes);
        return file.Open(path.c_str(), TTextFile::modeRead);
    }

    TTempDir m_dir;
};

// Every piece ReadLine(buf, cap) returns until the end; a runaway loop stops the test.
std::vector<std::string> BoundedPieces(TTextFile& file, std::size_t cap) {
    std::vector<std::string> pieces;
    std::vector<char> buf(cap + 1, '#');
    while (file.ReadLine(buf.data(), cap)) {
        pieces.emplace_back(buf.data());
        if (pieces.size() > 100000) break;
    }
    return pieces;
}

struct TViewPiece {
    std::string text;
    bool complete;
    bool operator==(const TViewPiece&) const = default;
};

void PrintTo(const TViewPiece& p, std::ostream* os) {
    *os << '"' << p.text << '"' << (p.complete ? "" : " (piece)");
}

std::vector<TViewPiece> ViewPieces(TTextFile& file, std::size_t maxLen) {
    std::vector<TViewPiece> pieces;
    std::string_view line;
    while (file.ReadLineView(line, maxLen)) {
        pieces.push_back({std::string(line), file.LastLineComplete()});
        if (pieces.size() > 100000) break;
    }
    return pieces;
}

const std::string kX120(120, 'x');
const std::string kY99(99, 'y');

TEST_P(TextFileRead, BoundedReadLikeFgets) {
    struct TCase {
        const char* name;
        std::string bytes;
        std::size_t cap;
        std::vector<std::string> expected;
    };
    const std::vector<TCase> cases = {
        {"LF lines", "ab\ncd\n", 100, {"ab\n", "cd\n"}},
        {"CR LF lines", "ab\r\ncd\r\n", 100, {"ab\n", "cd\n"}},
        {"mixed ends, last line without end", "ab\r\ncd\nef", 100, {"ab\n", "cd\n", "ef"}},
        {"empty file", "", 100, {}},
        {"120 characters with a 100-byte buffer",
         kX120 + "\r\nz\n",
         100,
         {std::string(99, 'x'), std::string(21, 'x') + "\n", "z\n"}},
        {"exactly cap-1 characters", kY99 + "\nz\n", 100, {kY99, "\n", "z\n"}},
        {"cap-2 characters and CR LF",
         std::string(98, 'y') + "\r\nz",
         100,
         {std::string(98, 'y') + "\n", "z"}},
        {"CR LF right behind a full buffer", kY99 + "\r\nz\r\n", 100, {kY99, "\n", "z\n"}},
        {"CR inside a line stays", "a\rb\r\n", 100, {"a\rb\n"}},
        {"CR at end of file ends the line", "ab\r", 100, {"ab\n"}},
        {"bytes above 127", "\xC4\xFF\r\n\x80\n", 100, {"\xC4\xFF\n", "\x80\n"}},
        {"tiny buffer", "abc\n", 2, {"a", "b", "c", "\n"}},
    };
    for (const TCase& c : cases) {
        TTextFile file;
        ASSERT_TRUE(OpenBytes(file, c.bytes)) << c.name;
        EXPECT_EQ(BoundedPieces(file, c.cap), c.expected) << c.name;
    }
}

TEST_P(TextFileRead, LineViewsAndPieces) {
    struct TCase {
        const char* name;
        std::string bytes;
        std::size_t maxLen;
        std::vector<TViewPiece> expected;
    };
    const std::vector<TCase> cases = {
        {"LF and CR LF", "ab\ncd\r\n", 10, {{"ab", true}, {"cd", true}}},
        {"empty file", "", 10, {}},
        {"empty lines", "\r\n\n", 10, {{"", true}, {"", true}}},
        {"pieces of maxLen",
         "xxxxxxxxxx\nz\n",
         4,
         {{"xxxx", false}, {"xxxx", false}, {"xx", true}, {"z", true}}},
        {"exactly maxLen before CR LF", "abcd\r\nz\n", 4, {{"abcd", true}, {"z", true}}},
        {"maxLen+1", "abcde\n", 4, {{"abcd", false}, {"e", true}}},
        {"CR LF behind a piece", "abcd\r\n", 3, {{"abc", false}, {"d", true}}},
        {"NUL bytes inside",
         std::string("a\0b\n\0\n", 6),
         10,
         {{std::string("a\0b", 3), true}, {std::string(1, '\0'), true}}},
        {"CR at end of file", "ab\r", 10, {{"ab", true}}},
        {"bytes above 127", "\xE9t\xE9\r\n", 10, {{"\xE9t\xE9", true}}},
    };
    for (const TCase& c : cases) {
        TTextFile file;
        ASSERT_TRUE(OpenBytes(file, c.bytes)) << c.name;
        EXPECT_EQ(ViewPieces(file, c.maxLen), c.expected) << c.name;
    }
}

// A whole-line read skips the rest of a long line; a peek does not consume.
TEST_P(TextFileRead, WholeLineReadAndPeek) {
    TTextFile file;
    ASSERT_TRUE(OpenBytes(file, "abcdefgh\r\n\xFFz\n"));
    std::string line;
    ASSERT_TRUE(file.ReadLine(line, 3));
    EXPECT_EQ(line, "abc");
    EXPECT_EQ(file.PeekChar(), 0xFF);
    EXPECT_EQ(file.PeekChar(), 0xFF);
    ASSERT_TRUE(file.ReadLine(line, 3));
    EXPECT_EQ(line, "\xFFz");
    EXPECT_FALSE(file.ReadLine(line, 3));
    EXPECT_EQ(line, "");
    EXPECT_EQ(file.PeekChar(), -1);
}

TEST_P(TextFileRead, PositionsAndSeekBack) {
    const std::string bytes = "first\r\nsecond\nthird\r\nlast";
    TTextFile file;
    ASSERT_TRUE(OpenBytes(file, bytes));
    EXPECT_EQ(file.GetLength(), static_cast<std::int64_t>(bytes.size()));
    char buf[64];
    // Position after each line: the byte offset just behind its line end.
    const std::vector<std::int64_t> after = {7, 14, 21, 25};
    std::vector<std::int64_t> seen;
    std::int64_t remembered = -1;
    while (file.ReadLine(buf, sizeof buf)) {
        seen.push_back(file.GetPosition());
        if (seen.size() == 1) remembered = file.GetPosition();
    }
    EXPECT_EQ(seen, after);

    ASSERT_TRUE(file.Seek(remembered));
    std::string_view view;
    ASSERT_TRUE(file.ReadLineView(view));
    EXPECT_EQ(view, "second");

    // In the middle of a CR LF the LF alone ends an empty line.
    ASSERT_TRUE(file.Seek(6));
    ASSERT_TRUE(file.ReadLine(buf, sizeof buf));
    EXPECT_STREQ(buf, "\n");

    EXPECT_TRUE(file.Seek(static_cast<std::int64_t>(bytes.size())));
    EXPECT_FALSE(file.ReadLine(buf, sizeof buf));
    EXPECT_FALSE(file.Seek(static_cast<std::int64_t>(bytes.size()) + 1)) << "beyond the end";
    EXPECT_FALSE(file.Seek(-1));
}

// A 3 MB line: bounded reads come back in pieces, views never exceed their limit, and the
// line behind is read intact.
TEST_P(TextFileRead, MegabyteLines) {
    {
        const std::size_t size = std::size_t{3} << 20;
        std::string bytes(size, 'm');
        for (std::size_t i = 0; i < size; i += 4096) bytes[i] = static_cast<char>('a' + (i / 4096) % 26);
        const std::string longLine = bytes;
        bytes += "\r\nafter\r\n";

        TTextFile file;
        ASSERT_TRUE(OpenBytes(file, bytes));
        std::string joined;
        std::size_t pieces = 0;
        char buf[1000];
        while (file.ReadLine(buf, sizeof buf)) {
            const std::string piece(buf);
            ++pieces;
            if (piece.back() == '\n') {
                joined += piece.substr(0, piece.size() - 1);
                break;
            }
            ASSERT_EQ(piece.size(), sizeof buf - 1);
            joined += piece;
        }
        EXPECT_TRUE(joined == longLine);
        EXPECT_EQ(pieces, size / 999 + 1);
        ASSERT_TRUE(file.ReadLine(buf, sizeof buf));
        EXPECT_STREQ(buf, "after\n");

        ASSERT_TRUE(OpenBytes(file, bytes));
        std::string_view view;
        std::size_t total = 0, longest = 0;
        while (file.ReadLineView(view) && !file.LastLineComplete()) {
            total += view.size();
            longest = std::max(longest, view.size());
        }
        total += view.size();
        EXPECT_EQ(total, size);
        EXPECT_LE(longest, TTextFile::kMaxViewLine);
        ASSERT_TRUE(file.ReadLineView(view));
        EXPECT_EQ(view, "after");
    }
}

INSTANTIATE_TEST_SUITE_P(Sources, TextFileRead, ::testing::Values(TSource::Disk, TSource::Memory),
                         SourceName);

// The disk buffer is refilled every MiB: a CR LF split by the refill is still one line end,
// and positions stay right across it.
TEST(TextFileBuffer, LineEndAcrossTheRefill) {
    for (const int shift : {-3, -2, -1, 0, 1}) {
        SCOPED_TRACE(shift);
        // Filler lines of 100 characters + CR LF, then a line whose CR lands at kBufferSize + shift.
        const auto crAt = static_cast<std::size_t>(static_cast<long long>(TTextFile::kBufferSize) + shift);
        const std::size_t fillerLines = (crAt - 1) / 102;
        std::string bytes;
        for (std::size_t i = 0; i < fillerLines; ++i)
            bytes += std::string(100, static_cast<char>('A' + i % 26)) + "\r\n";
        const std::size_t lastLen = crAt - bytes.size();
        const std::string target(lastLen, 't');
        bytes += target + "\r\nend\r\n";
        ASSERT_EQ(bytes[crAt], '\r');

        TTempDir dir;
        const std::string path = dir.File("refill.txt");
        WriteFileBytes(path, bytes);

        TTextFile file;
        ASSERT_TRUE(file.Open(path.c_str(), TTextFile::modeRead));
        char buf[200];
        std::size_t lines = 0;
        std::int64_t targetStart = -1;
        while (true) {
            const std::int64_t at = file.GetPosition();
            if (!file.ReadLine(buf, sizeof buf)) break;
            ++lines;
            ASSERT_EQ(std::string(buf).find('\r'), std::string::npos) << "line " << lines;
            if (lines == fillerLines + 1) {
                targetStart = at;
                EXPECT_EQ(std::string(buf), target + "\n");
                EXPECT_EQ(file.GetPosition(), static_cast<std::int64_t>(crAt + 2));
            }
        }
        EXPECT_EQ(lines, fillerLines + 2);

        ASSERT_TRUE(file.Seek(targetStart));
        std::string_view view;
        ASSERT_TRUE(file.ReadLineView(view, 200));
        EXPECT_EQ(view, target);
        ASSERT_TRUE(file.ReadLineView(view, 200));
        EXPECT_EQ(view, "end");
    }
}

// A memory file is read-only; a file being written is not read, and what it wrote reads back.
TEST(TextFileWrite, LineFeedsBecomeCrLf) {
    TTextFile memory;
    memory.OpenMemory("x\n");
    EXPECT_FALSE(memory.WriteString("y\n"));

    TTempDir dir;
    const std::string path = dir.File("out.txt");
    TTextFile file;
    ASSERT_TRUE(file.Open(path.c_str(), TTextFile::modeCreate));
    ASSERT_TRUE(file.WriteString("a\nbc"));
    ASSERT_TRUE(file.WriteString("\n\n"));
    EXPECT_EQ(file.GetPosition(), 9);
    std::string line;
    EXPECT_FALSE(file.ReadLine(line));
    // More than one buffer full, so part of it is flushed while writing.
    std::string big;
    for (int i = 0; i < 120000; ++i) big += "0123456789\n";
    ASSERT_TRUE(file.WriteString(big));
    EXPECT_EQ(file.GetPosition(), 9 + 120000 * 12);
    ASSERT_TRUE(file.Close());
    std::string expected = "a\r\nbc\r\n\r\n";
    for (int i = 0; i < 120000; ++i) expected += "0123456789\r\n";
    EXPECT_TRUE(ReadFileBytes(path) == expected);
}

}  // namespace
