#include "pmh_test_support.h"

#include <filesystem>

#include "gis/line_assembly.h"
#include "gis/numbers.h"

int LoadPmhText(const std::string& text, TMapLayer& layer) {
    TTempDir dir;
    const std::string path = dir.File("in.pmh");
    WriteFileBytes(path, text);
    TGisFilePmh pmh;
    return pmh.LoadFile(path.c_str(), &layer, nullptr);
}

int WritePmh(TMapLayer& layer, std::string& bytes, const std::string& name) {
    TTempDir dir;
    std::string path = dir.File(name);
    TGisFilePmh pmh;
    const int result = pmh.WriteFile(path.c_str(), &layer);
    ChangeExtension(path, "pmh");
    std::error_code ec;
    bytes = std::filesystem::is_regular_file(path, ec) ? ReadFileBytes(path) : std::string();
    return result;
}

TFeatureLine* AddRatePolygon(TMapLayer& layer, double rate, const std::vector<tagLOC>& vertices,
                             int boundType) {
    layer.m_dValue = rate;
    return AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), boundType,
                           static_cast<int>(vertices.size()), vertices.data(), "", false, COLOR_NONE, false,
                           false, false);
}

std::string WithLineEnds(const std::string& text, const char* lineEnd) {
    std::string out;
    for (char c : text) {
        if (c == '\n')
            out += lineEnd;
        else
            out += c;
    }
    return out;
}

std::string HeaderText(const std::string& line1, const std::string& line20, const char* line31) {
    std::string text = line1 + "\n0.00000000\n0.00000000\n0.0000000000\n0.0000000000\n0\n0\n2\n10\n\n";
    text += std::string(9, '\n') + line20 + "\n";
    for (int i = 21; i <= 29; ++i) text += "0.0000 0.0000 0.0000\n";
    text += "\n";
    return line31 != nullptr ? text + line31 + "\n" : text;
}

std::string SquareBlock(const std::string& rateLine, double lat, double lon, const char* keyword) {
    std::string text = std::string(keyword) + "\n" + rateLine + "\n";
    const double corners[4][2] = {{0, 0}, {0.01, 0}, {0.01, 0.01}, {0, 0.01}};
    for (const auto& c : corners)
        text += FormatFixed(lat + c[0], 8) + " " + FormatFixed(lon + c[1], 8) + "\n";
    return text;
}
