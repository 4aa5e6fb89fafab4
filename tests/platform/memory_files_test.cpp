// Memory folders: which paths they take from the file system, what reads and writes below them
// see, and that the disk is untouched and visible again once the folder is gone.

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include <tl_gis/platform/text_file.h>
#include "platform/byte_file.h"
#include "platform/memory_files.h"
#include "test_support.h"

namespace {

// The bytes at path through both file kinds, or "error N" with the errno of the open; the
// size the status call gives, or "no status".
std::string Read(const std::string& path) {
    TTextFile text;
    TByteFile bytes;
    const bool textOpen = text.Open(path.c_str(), TTextFile::modeRead);
    if (!bytes.Open(path.c_str(), TByteFile::modeRead) || !textOpen)
        return "error " + std::to_string(bytes.GetOpenError()) + "/" + std::to_string(text.GetOpenError());
    std::string out(static_cast<std::size_t>(bytes.GetLength()), '\0');
    out.resize(bytes.Read(out.data(), out.size()));
    std::string line;
    text.ReadLine(line);
    if (text.GetLength() != bytes.GetLength() || line != out.substr(0, out.find_first_of("\r\n")))
        return "text and byte files differ";
    return out;
}

std::string Status(const std::string& path) {
    std::int64_t size = 0;
    return TByteFile::GetStatus(path.c_str(), size) ? std::to_string(size) : "no status";
}

TEST(MemoryFolder, TakesThePathsBelowItFromTheDisk) {
    namespace fs = std::filesystem;
    TTempDir dir;
    const std::string folder = dir.File("mem");
    fs::create_directory(folder);
    WriteFileBytes(folder + "/a.txt", "on disk");
    WriteFileBytes(folder + "/disk-only.txt", "on disk");
    WriteFileBytes(dir.File("mem-sibling.txt"), "sibling");
    const std::string isDir = "error " + std::to_string(EISDIR) + "/" + std::to_string(EISDIR);
    const std::string missing = "error " + std::to_string(ENOENT) + "/" + std::to_string(ENOENT);
    struct TCase {
        std::string strPath, strInMemory, strStatusInMemory, strAfter, strStatusAfter;
    };
    const std::vector<TCase> cases = {
        {folder + "/a.txt", "in memory", "9", "on disk", "7"},
        {folder + "/disk-only.txt", missing, "no status", "on disk", "7"},
        {folder + "/sub/a.txt", missing, "no status", missing, "no status"},
        {folder + "/written.txt", "written\r\nx", "10", missing, "no status"},
        {folder, isDir, "no status", isDir, "no status"},
        {dir.File("mem-sibling.txt"), "sibling", "7", "sibling", "7"},
    };
    {
        const TMemoryFolder memory(folder);
        memory.Put("a.txt", "in memory");
        TTextFile out;
        ASSERT_TRUE(out.Open((folder + "/written.txt").c_str(), TTextFile::modeCreate));
        ASSERT_TRUE(out.WriteString("written\nx"));
        EXPECT_EQ(Read(folder + "/written.txt"), "") << "created empty before it is closed";
        ASSERT_TRUE(out.Close());
        EXPECT_FALSE(fs::exists(folder + "/written.txt")) << "nothing reaches the disk";
        for (const TCase& c : cases) {
            EXPECT_EQ(Read(c.strPath), c.strInMemory) << c.strPath;
            EXPECT_EQ(Status(c.strPath), c.strStatusInMemory) << c.strPath;
        }
    }
    for (const TCase& c : cases) {
        EXPECT_EQ(Read(c.strPath), c.strAfter) << c.strPath << ", folder gone";
        EXPECT_EQ(Status(c.strPath), c.strStatusAfter) << c.strPath << ", folder gone";
    }
}

}  // namespace
