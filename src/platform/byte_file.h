#pragma once
// Untranslated byte stream over a file or a memory block (tests and fuzzers).

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include <tl_gis/platform/file_base.h>

class TByteFile : public TFileBase {
public:
    enum OpenMode { modeRead, modeCreate };

    TByteFile() = default;
    ~TByteFile() override;
    TByteFile(const TByteFile&) = delete;
    TByteFile& operator=(const TByteFile&) = delete;

    bool Open(const char* path, OpenMode mode);
    void OpenMemory(std::string_view data);
    bool IsOpen() const { return m_pFile != nullptr || m_bMemory; }
    bool Close();

    // Reads up to n bytes; returns the number read (short at end of file).
    std::size_t Read(void* dst, std::size_t n);
    bool Write(const void* src, std::size_t n);
    bool Seek(std::int64_t pos);
    std::int64_t GetPosition() const override;
    std::int64_t GetLength() const;
    bool HasWriteError() const { return m_bWriteError; }

    // Size of a file by name without opening it; false when it has no status or is a directory.
    static bool GetStatus(const char* path, std::int64_t& size);

private:
    // Open for a path below a memory folder (tests and fuzzers): reads copy the stored bytes,
    // writes go to the copy, which is stored on Close().
    bool OpenInMemory(const char* path, OpenMode mode);
    bool WriteMemory(const void* src, std::size_t n);
    bool FlushWrite();

    std::FILE* m_pFile = nullptr;
    bool m_bWriting = false;
    bool m_bMemory = false;
    bool m_bWriteError = false;
    std::string m_strMemory;
    std::int64_t m_iPos = 0;  // position in memory mode, or of pending output in write mode
    std::string m_strOut;     // pending output
};
