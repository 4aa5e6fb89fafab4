#pragma once
// The file-system calls of the text and byte files and the file times, on path names given in
// UTF-8. Windows opens them through its wide-character API, so that a folder named
// "Feld Müller" is found as it is named whatever the code page; elsewhere the names pass
// straight to the C library. Positions and sizes are 64-bit on both.

#include <cstdint>
#include <cstdio>
#include <string>

// fopen on a UTF-8 name; null with errno set on failure, EISDIR for a folder.
std::FILE* OpenFileUtf8(const char* path, const char* mode);

struct TFileStatus {
    std::int64_t iSize = 0;
    bool bFolder = false;
};
// What the file system says about a name, or about an open file; false when it says nothing.
bool GetPathStatus(const char* path, TFileStatus& status);
bool GetOpenFileStatus(std::FILE* file, TFileStatus& status);

// Moves an open file to an absolute position; the 64-bit forms of fseek and ftell.
bool SeekFileTo(std::FILE* file, std::int64_t pos);
// Re-positions at the current position, as a stream needs between its reads and writes.
bool SeekFileHere(std::FILE* file);
std::int64_t TellFile(std::FILE* file);

#ifdef _WIN32
// UTF-16 of a UTF-8 name for the wide-character calls; empty when the name is not UTF-8.
std::wstring WidePath(const char* path);
#endif
