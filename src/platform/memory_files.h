#pragma once
// Folders held in memory, for tests and fuzz targets. While a memory folder exists, the text
// and byte files open every path below it in memory: a read sees what was put there or
// written and closed before, a file created there is kept when it is closed, and nothing
// below it touches the disk. Readers and writers take their paths as always, so a test can
// run one unchanged on bytes it never writes out. With no memory folder, an open pays one
// flag test.
//
// Paths are compared as written: "<folder>/name" is below the folder, "<folder>/./name" is not
// the same file. The folder's name should be one that does not exist on disk.

#include <cstdint>
#include <string>
#include <string_view>

class TMemoryFolder {
public:
    // Makes folder (a path without a trailing '/') a memory folder, empty.
    explicit TMemoryFolder(std::string folder);
    // Drops the folder and every file in it.
    ~TMemoryFolder();
    TMemoryFolder(const TMemoryFolder&) = delete;
    TMemoryFolder& operator=(const TMemoryFolder&) = delete;

    const std::string& Path() const { return m_strFolder; }
    // The path of a file in the folder.
    std::string File(std::string_view name) const;
    // Stores a file, replacing one of that name.
    void Put(std::string_view name, std::string_view bytes) const;
    // The bytes of a file; false when the folder holds none of that name.
    bool Get(std::string_view name, std::string& bytes) const;
    // Removes every file, keeping the folder.
    void Clear() const;

private:
    std::string m_strFolder;
};

// What the file classes ask. Each answers false at the cost of one flag test when there is no
// memory folder.
//
// True when path lies below a memory folder: the file system is then not asked about it.
bool IsMemoryPath(const char* path);
// Copies the bytes of the memory file at path; false when there is none.
bool ReadMemoryFile(const char* path, std::string& bytes);
// Size of the memory file at path; false when there is none.
bool GetMemoryFileSize(const char* path, std::int64_t& size);
// Stores bytes as the memory file at path, when path lies below a memory folder.
void StoreMemoryFile(const std::string& path, std::string bytes);
