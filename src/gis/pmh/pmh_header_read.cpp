// Taking the values of the header lines apart.

#include <cstddef>

#include <tl_gis/platform/numbers.h>
#include "gis/pmh/pmh_header.h"

namespace {
constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

std::string_view Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

// Takes one field off rest, up to its first blank or, fromEnd, after its last blank; all of rest
// when it has no blank.
std::string_view TakeField(std::string_view& rest, bool fromEnd) {
    const std::size_t blank = fromEnd ? rest.rfind(' ') : rest.find(' ');
    std::string_view field = rest;
    if (blank == std::string_view::npos) {
        rest = {};
    } else if (fromEnd) {
        field = rest.substr(blank + 1);
        rest = rest.substr(0, blank);
    } else {
        field = rest.substr(0, blank);
        rest = rest.substr(blank + 1);
    }
    return field;
}
}  // namespace

void ReadPmhTitleLine(std::string_view line, TMapLayer& layer) {
    // Blanks are not collapsed: two blanks in a row leave an empty field between them.
    std::string_view rest = Trim(line);
    layer.m_strPmhField5 = TakeField(rest, true);
    layer.m_dPmhField4 = ParseDouble(TakeField(rest, true));
    layer.m_strPmhField3 = TakeField(rest, true);
    layer.m_dPmhField2 = ParseDouble(TakeField(rest, true));
    layer.m_strPmhField1 = rest;
}

void ReadPmhRateLine(std::string_view line, TMapLayer& layer) {
    std::string_view rest = line;
    layer.m_dRateMid = ParseDouble(TakeField(rest, false));
    layer.m_dRateMin = ParseDouble(TakeField(rest, false));
    layer.m_dRateMax = ParseDouble(rest);
}

int ReadPmhUnitsLine(std::string_view line) {
    return ParseInt(TakeField(line, false));
}
