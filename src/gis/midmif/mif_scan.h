#pragma once
// Reading the text of .mif lines: blanks as the reader sees them, numbers as "%lf" reads them,
// words and quoted header values. Inline, as every point line of a file passes through them.

#include <cstring>
#include <string_view>

#include <tl_gis/hostmap/loc.h>
#include <tl_gis/platform/numbers.h>

inline bool IsAsciiLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Blanks as the reader sees them: every byte whose signed value is at most 32, so control
// characters and all bytes from 0x80 up count too.
inline bool IsMifBlank(char c) {
    return static_cast<signed char>(c) <= 32;
}

// The text of a line as the readers take it: up to a NUL byte (as in a C string), without the
// blanks before it.
inline std::string_view MifLineText(std::string_view line) {
    if (const void* nul = std::memchr(line.data(), '\0', line.size()))
        line = line.substr(0, static_cast<std::size_t>(static_cast<const char*>(nul) - line.data()));
    std::size_t start = 0;
    while (start < line.size() && IsMifBlank(line[start])) ++start;
    return line.substr(start);
}

inline bool IsCSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Reads a number as "%lf" does: blanks, an optional sign, then the longest decimal prefix.
// Advances pos past it; false when there is none.
inline bool ScanDouble(std::string_view text, std::size_t& pos, double& value) {
    std::size_t i = pos;
    while (i < text.size() && IsCSpace(text[i])) ++i;
    const std::size_t signAt = i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    const char* first = text.data() + i;
    double v = 0.0;
    const char* end = ScanUnsignedDouble(first, text.data() + text.size(), v);
    if (end == first) return false;
    value = text[signAt] == '-' ? -v : v;
    pos = static_cast<std::size_t>(end - text.data());
    return true;
}

// "%lf %lf": two numbers, any blanks (or none) between them.
inline bool ScanTwoDoubles(std::string_view text, double& x, double& y) {
    std::size_t pos = 0;
    return ScanDouble(text, pos, x) && ScanDouble(text, pos, y);
}

// The first word of a line: the run of characters above a blank.
inline std::string_view FirstWord(std::string_view line) {
    std::size_t end = 0;
    while (end < line.size() && !IsMifBlank(line[end])) ++end;
    return line.substr(0, end);
}

// The line after its first word and the blanks that follow it.
inline std::string_view AfterFirstWord(std::string_view line) {
    std::size_t i = FirstWord(line).size();
    while (i < line.size() && IsMifBlank(line[i])) ++i;
    return line.substr(i);
}

// The location a POINT line gives the layer's centroids: x is the number up to the next space
// after the keyword's space, y the one after the last space; two spaces after the keyword
// therefore give x = 0.
inline tagLOC PointKeywordLocation(std::string_view line) {
    const std::size_t space = line.find(' ');
    const std::string_view rest = space == std::string_view::npos ? line : line.substr(space + 1);
    const double x = ParseDouble(rest.substr(0, rest.find(' ')));
    const std::size_t last = rest.rfind(' ');
    const double y = ParseDouble(last == std::string_view::npos ? rest : rest.substr(last + 1));
    return tagLOC{y, x};
}
