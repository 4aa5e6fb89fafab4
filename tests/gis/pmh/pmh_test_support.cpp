#include "pmh_test_support.h"

#include "gis/line_assembly.h"
#include "gis/numbers.h"

int LoadPmhText(const std::string& text, TMapLayer& layer) {
    TTempDir dir;
    WriteFileBytes(dir.File("in.pmh"), text);
    TGisFilePmh pmh;
    return pmh.LoadFile(dir.File("in.pmh").c_str(), &layer, nullptr);
}

int WritePmh(TMapLayer& layer, std::string& bytes, const std::string& name) {
    TTempDir dir;
    std::string path = dir.File(name);
    const int result = TGisFilePmh().WriteFile(path.c_str(), &layer);
    bytes = ReadFileBytes(ChangeExtension(path, "pmh"));
    return result;
}

void AddRatePolygon(TMapLayer& layer, double rate, const std::vector<tagLOC>& vertices, int boundType) {
    layer.m_dValue = rate;
    AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), boundType,
                    static_cast<int>(vertices.size()), vertices.data(), "", false, COLOR_NONE, false, false,
                    false);
}

std::string HeaderText(const std::string& line1, const std::string& line20, const char* line31) {
    std::string text =
        line1 + "\n0.5\n0\n0\n0\n0\n0\n2\n10\nPRODUCT\n" + std::string(9, '\n') + line20 + "\n";
    for (int i = 21; i <= 29; ++i) text += "0 0 0\n";
    text += "MAP\n";
    return line31 != nullptr ? text + line31 + "\n" : text;
}

std::string SquareBlock(const std::string& rateLine, double lat, double lon, const char* keyword) {
    std::string text = std::string(keyword) + "\n" + rateLine + "\n";
    const double corners[4][2] = {{0, 0}, {0.01, 0}, {0.01, 0.01}, {0, 0.01}};
    for (const auto& c : corners)
        text += FormatFixed(lat + c[0], 8) + " " + FormatFixed(lon + c[1], 8) + "\n";
    return text;
}
