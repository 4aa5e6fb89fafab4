// TTextFile: bounded and zero-copy line reads on disk, from a memory block and from a memory
// folder, positions, CR LF on output.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include <tl_gis/platform/text_file.h>
#include "platform/memory_files.h"
#include "test_support.h"

namespace {

TEST(TextFileRead, BoundedReadsAndViews) {
    struct TCase {
        const char* name;
        std::string bytes;
        std::size_t cap;                // bounded reads take cap - 1 characters, views cap
        std::vector<std::string> read;  // the bounded pieces
        std::vector<std::string> view;  // a piece of a longer line ends in '+'
    };
    const std::string x120(120, 'x'), x99(99, 'x'), x21(21, 'x');
    // clang-format off
    const std::vector<TCase> cases = {
        {"mixed ends, no last end", "ab\r\n\ncd", 100, {"ab\n", "\n", "cd"}, {"ab", "", "cd"}},
        {"empty file", "", 100, {}, {}},
        {"120 characters", x120 + "\r\nz\n", 100, {x99, x21 + "\n", "z\n"}, {x99 + "x+", x21.substr(1), "z"}},
        {"cap-1 and cap before CR LF", "abc\r\nabcd\r\nabcde\r\n", 4, {"abc", "\n", "abc", "d\n", "abc", "de\n"},
         {"abc", "abcd", "abcd+", "e"}},
        {"CR inside, NUL and high bytes", std::string("a\rb\0\xFF\r\n\x80", 8), 100, {"a\rb", "\x80"},
         {std::string("a\rb\0\xFF", 5), "\x80"}},
        {"CR at end of file", "ab\r", 100, {"ab\n"}, {"ab"}},
        {"two-byte buffer", "abc\n", 2, {"a", "b", "c", "\n"}, {"ab+", "c"}},
    };
    // clang-format on
    TTempDir dir;
    const TMemoryFolder memory("/tl_gis-test-memory");
    // A path opens the file on disk or in the memory folder; no path, the bytes as a memory block.
    const std::pair<const char*, std::string> places[] = {
        {"memory block", ""}, {"disk", dir.File("in.txt")}, {"memory folder", memory.File("in.txt")}};
    for (const auto& [where, path] : places)
        for (const TCase& c : cases) {
            TTextFile file;
            WriteFileBytes(dir.File("in.txt"), c.bytes);
            memory.Put("in.txt", c.bytes);
            const auto open = [&] {
                if (!path.empty()) return file.Open(path.c_str(), TTextFile::modeRead);
                file.OpenMemory(c.bytes);
                return true;
            };
            ASSERT_TRUE(open());
            std::vector<std::string> read, view;
            std::vector<char> buf(c.cap);
            while (file.ReadLine(buf.data(), c.cap) && read.size() < 100) read.emplace_back(buf.data());
            ASSERT_TRUE(open());
            std::string_view line;
            while (file.ReadLineView(line, c.cap) && view.size() < 100)
                view.push_back(std::string(line) + (file.LastLineComplete() ? "" : "+"));
            EXPECT_EQ(read, c.read) << c.name << ", " << where;
            EXPECT_EQ(view, c.view) << c.name << ", " << where;
        }
}

// A whole-line read skips the rest of a long line; a peek does not consume; a seek into the
// middle of a CR LF leaves the LF to end an empty line.
TEST(TextFileRead, WholeLinesPeekAndSeek) {
    TTextFile file;
    file.OpenMemory("abcdefgh\r\n\xFFz\nlast");
    EXPECT_EQ(file.GetLength(), 17);
    std::string line;
    char buf[16];
    EXPECT_TRUE(file.ReadLine(line, 3) && line == "abc" && file.GetPosition() == 10) << line;
    EXPECT_TRUE(file.PeekChar() == 0xFF && file.ReadLine(line, 3) && line == "\xFFz") << line;
    EXPECT_TRUE(file.Seek(9) && file.ReadLine(buf, sizeof buf) && std::string(buf) == "\n") << buf;
    EXPECT_TRUE(file.Seek(13) && file.ReadLine(line) && line == "last" && file.PeekChar() == -1) << line;
    EXPECT_FALSE(file.ReadLine(line) || file.Seek(18) || file.Seek(-1));
}

// The disk buffer is refilled every MiB: a CR LF before, across or after the refill is one line
// end, and positions stay right.
TEST(TextFileRead, LineEndAcrossTheRefill) {
    for (const int shift : {-2, -1, 0}) {
        const std::size_t crAt = TTextFile::kBufferSize + shift, fillers = (crAt - 1) / 1002;
        std::string bytes;
        for (std::size_t i = 0; i < fillers; ++i) bytes += std::string(1000, 'f') + "\r\n";
        const std::string target(crAt - bytes.size(), 't');
        TTempDir dir;
        WriteFileBytes(dir.File("refill.txt"), bytes + target + "\r\nend\r\n");
        TTextFile file;
        ASSERT_TRUE(file.Open(dir.File("refill.txt").c_str(), TTextFile::modeRead));
        char buf[2000];
        for (std::size_t i = 0; i <= fillers; ++i) file.ReadLine(buf, sizeof buf);
        EXPECT_TRUE(buf == target + "\n" && file.GetPosition() == static_cast<std::int64_t>(crAt + 2))
            << shift;
        EXPECT_TRUE(file.ReadLine(buf, sizeof buf) && buf == std::string("end\n") && !file.ReadLine(buf, 9))
            << shift;
    }
}

// Output turns every LF into CR LF, also across a flush, on disk and in a memory folder.
TEST(TextFileWrite, LineFeedsBecomeCrLf) {
    TTempDir dir;
    const TMemoryFolder memory("/tl_gis-test-memory");
    std::string big, expected = "a\r\nbc\r\n\r\n";
    for (int i = 0; i < 120000; ++i) big += "0123456789\n", expected += "0123456789\r\n";
    for (const bool inMemory : {false, true}) {
        const std::string path = inMemory ? memory.File("out.txt") : dir.File("out.txt");
        TTextFile file;
        ASSERT_TRUE(file.Open(path.c_str(), TTextFile::modeCreate));
        ASSERT_TRUE(file.WriteString("a\nbc") && file.WriteString("\n\n") && file.WriteString(big));
        EXPECT_TRUE(file.GetPosition() == static_cast<std::int64_t>(expected.size()) && file.Close()) << path;
        std::string written;
        if (inMemory)
            EXPECT_TRUE(memory.Get("out.txt", written));
        else
            written = ReadFileBytes(path);
        EXPECT_TRUE(written == expected) << path;
    }
}

}  // namespace
