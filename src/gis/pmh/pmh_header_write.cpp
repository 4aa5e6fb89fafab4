// The header lines as the writer lays them out.

#include <tl_gis/platform/numbers.h>
#include "gis/pmh/pmh_header.h"

namespace {
// Line 1 is written blank, as wide as the title it stands for.
constexpr std::size_t kTitleWidth = 102;

void AppendFixedLine(std::string& out, double value, int decimals) {
    AppendFixed(out, value, decimals);
    out += '\n';
}

void AppendRateLine(std::string& out, double mid, double min, double max) {
    AppendFixed(out, mid, 4);
    out += ' ';
    AppendFixed(out, min, 4);
    out += ' ';
    AppendFixed(out, max, 4);
    out += '\n';
}
}  // namespace

const char* GetPmhUnitsText(int units) {
    switch (units) {
        case 1:
            return "1 US GAL / ACRE";
        case 2:
            return "2 LBS / ACRE";
        case 8:
            return "8 LITRES / HECTARE";
        case 10:
            return "10 KG / HECTARE";
        default:
            return nullptr;
    }
}

void AppendPmhHeader(std::string& out, const TMapLayer& layer) {
    out.append(kTitleWidth, ' ');
    out += '\n';
    AppendFixedLine(out, layer.m_dPmhLine2, 8);
    AppendFixedLine(out, layer.m_dPmhLine3, 8);
    AppendFixedLine(out, layer.m_dPmhLine4, 10);
    AppendFixedLine(out, layer.m_dPmhLine5, 10);
    AppendInt(out, layer.m_iPmhLine6);
    out += '\n';
    AppendInt(out, layer.m_iPmhLine7);
    out += "\n2\n10\n";
    out += layer.m_strPmhLine10;
    out += '\n';
    out.append(9, '\n');  // lines 11 to 19
    AppendRateLine(out, layer.m_dRateMid, layer.m_dRateMin, layer.m_dRateMax);
    for (int line = 21; line <= 29; ++line) AppendRateLine(out, 0.0, 0.0, 0.0);
    out += layer.m_strPmhLine30;
    out += '\n';
    if (const char* units = GetPmhUnitsText(layer.m_iRateUnits)) {
        out += units;
        out += '\n';
    } else if (TGisFile::s_bCompleteProfile) {
        // Without line 31 a reader takes the first ".POL" for it and loses that polygon; the
        // complete profile writes it blank (units 0) instead.
        out += '\n';
    }
}
