#pragma once
// Writes the groups of a drawing: each group is a code line formatted "%3d" and a value line
// of at most 82 characters, buffered and handed to the text file in large pieces.

#include <string>
#include <string_view>

#include <tl_gis/platform/text_file.h>

class TDxfGroupWriter {
public:
    static constexpr std::size_t kMaxValue = 82;
    // Longest text of a TEXT entity that release 12 programs read.
    static constexpr std::size_t kMaxText = 255;

    explicit TDxfGroupWriter(TTextFile& file) : m_File(file) {}
    ~TDxfGroupWriter() { Flush(); }
    TDxfGroupWriter(const TDxfGroupWriter&) = delete;
    TDxfGroupWriter& operator=(const TDxfGroupWriter&) = delete;

    void WriteGroup(int code, std::string_view value);
    // A text value of at most kMaxText characters, for the texts of the complete profile.
    void WriteTextGroup(int code, std::string_view value);
    // The value formatted "%.6lf".
    void WriteGroup(int code, double value);
    // The value formatted "%d".
    void WriteIntGroup(int code, int value);
    // Hands what is buffered to the file; false once a write has failed.
    bool Flush();

private:
    void AppendCode(int code);
    void EndValue(std::size_t valueStart, std::size_t maxValue = kMaxValue);

    TTextFile& m_File;
    std::string m_strBuf;
};
