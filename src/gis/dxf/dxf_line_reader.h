#pragma once
// The lines of a drawing, one at a time, as views into the text file's buffer.

#include <cstddef>
#include <string>
#include <string_view>

#include <tl_gis/platform/text_file.h>

class TDxfLineReader {
public:
    // Longest part of a line that is kept; the rest of a longer line is skipped, so that a
    // garbage file cannot make the reader hold more than this of any one line.
    static constexpr std::size_t kMaxLine = TTextFile::kMaxViewLine;

    explicit TDxfLineReader(TTextFile& file) : m_File(file) {}

    // The next line without its line end (LF or CR LF), valid until the next call. False at
    // the end of the file.
    bool Next(std::string_view& line) {
        if (!m_File.ReadLineView(line, kMaxLine)) return false;
        ++m_iLine;
        return m_File.LastLineComplete() || KeepLongLine(line);
    }
    // Number of the line Next() returned last, counting from 1.
    long long GetLineNumber() const { return m_iLine; }

private:
    // Keeps the start of a line longer than kMaxLine in m_strLong, skips the rest and points
    // line at the kept start.
    bool KeepLongLine(std::string_view& line);

    TTextFile& m_File;
    long long m_iLine = 0;
    std::string m_strLong;  // the kept start of an over-long line
};
