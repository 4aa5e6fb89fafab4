#include "source_crs.h"

#include <fstream>
#include <iterator>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/gis_map.h>
#include "mif_coordsys.h"
#include "utf8_paths.h"

namespace {
// A CRS definition is a few kilobytes at most; anything far larger is no definition.
constexpr std::size_t kMaxDefinitionBytes = 1 << 20;
// The header of a MIF file ends at its Data line; a file without one ends the search here.
constexpr int kMaxMifHeaderLines = 100000;

bool IsRegularFile(const std::string& path) {
    std::error_code ec;
    return std::filesystem::is_regular_file(PathOf(path), ec);
}

bool IsBlankText(const std::string& text) {
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

// The whole of a file that holds a definition; false with why in error.
bool ReadDefinitionFile(const std::string& path, std::string& text, std::string& error) {
    std::ifstream in(PathOf(path), std::ios::binary);
    if (!in) {
        error = "cannot be read";
        return false;
    }
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (text.size() > kMaxDefinitionBytes) {
        error = "is too large to be a CRS definition";
        return false;
    }
    if (IsBlankText(text)) {
        error = "is empty";
        return false;
    }
    return true;
}

bool StartsWithWordNoCase(const std::string& line, std::size_t at, const char* word) {
    std::size_t i = 0;
    for (; word[i] != '\0'; ++i) {
        if (at + i >= line.size()) return false;
        char c = line[at + i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != word[i]) return false;
    }
    return at + i == line.size() || line[at + i] == ' ' || line[at + i] == '\t' || line[at + i] == '\r';
}

// The CoordSys clause of a MIF header, empty when the header has none (the file is then in
// longitude and latitude, by the format's rule).
std::string FindCoordSys(const std::string& path) {
    std::ifstream in(PathOf(path), std::ios::binary);
    std::string line;
    for (int n = 0; n < kMaxMifHeaderLines && std::getline(in, line); ++n) {
        const std::size_t at = line.find_first_not_of(" \t");
        if (at == std::string::npos) continue;
        if (StartsWithWordNoCase(line, at, "data")) break;
        if (StartsWithWordNoCase(line, at, "coordsys")) {
            while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
            return line.substr(at);
        }
    }
    return "";
}

// The .prj beside a shapefile, in either case of its extension; empty when there is none.
std::string FindPrj(const std::string& path) {
    for (const char* ext : {"prj", "PRJ"}) {
        std::string prj = path;
        ChangeExtension(prj, ext);
        if (IsRegularFile(prj)) return prj;
    }
    return "";
}
}  // namespace

bool FindSourceCrs(const std::string& path, int type, const std::string& crsOption, TSourceCrs& crs,
                   std::string& error) {
    crs = TSourceCrs{};
    std::string why;
    if (!crsOption.empty()) {
        crs.strFrom = "--crs";
        crs.strDefinition = crsOption;
        // A file named by --crs holds the definition (WKT, or a PROJ string).
        if (IsRegularFile(crsOption) && !ReadDefinitionFile(crsOption, crs.strDefinition, why)) {
            error = "--crs " + crsOption + ": the file " + why;
            return false;
        }
        return true;
    }
    if (type == GIS_FILE_SHP) {
        const std::string prj = FindPrj(path);
        if (prj.empty()) return true;
        crs.strFrom = prj;
        if (!ReadDefinitionFile(prj, crs.strDefinition, why)) {
            error = prj + " " + why + ", so it names no CRS";
            return false;
        }
        return true;
    }
    if (type == GIS_FILE_MIDMIF) {
        const std::string clause = FindCoordSys(path);
        if (clause.empty()) return true;
        crs.strFrom = path;
        if (!MifCoordSysToProj(clause, crs.strDefinition, why)) {
            error = path + ": its clause '" + clause + "' is not understood: " + why;
            return false;
        }
        if (crs.strDefinition.empty()) crs.strFrom.clear();
    }
    return true;
}
