#pragma once
// Common base of the text and byte files: a position that progress reporting can read.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>

class TL_GIS_API TFileBase {
public:
    virtual ~TFileBase() = default;
    // Byte offset of the next read or write from the start of the file.
    virtual std::int64_t GetPosition() const = 0;
    // The path the file was opened with (empty when closed).
    const std::string& GetFilePath() const { return m_strPath; }
    // errno of the last failed open, 0 when the last open succeeded.
    int GetOpenError() const { return m_iOpenError; }

protected:
    std::string m_strPath;
    int m_iOpenError = 0;
};
