#include "mif_coordsys.h"

#include <charconv>
#include <vector>

namespace {

struct TMifDatum {
    int iNumber;
    const char* pszProj;
};
constexpr TMifDatum kDatums[] = {
    {104, "+datum=WGS84"},
    {74, "+datum=NAD83"},
    {62, "+datum=NAD27"},
    // ETRS89, GDA94 and NZGD2000: the GRS 80 ellipsoid, defined with no shift from WGS 84.
    {115, "+ellps=GRS80 +towgs84=0,0,0"},
    {116, "+ellps=GRS80 +towgs84=0,0,0"},
    {117, "+ellps=GRS80 +towgs84=0,0,0"},
};

// Metres per unit as a fraction, so that the survey foot (1200/3937 m) stays exact.
struct TMifUnit {
    const char* pszName;
    double dNumerator;
    double dDenominator;
    const char* pszProj;
};
constexpr TMifUnit kUnits[] = {
    {"m", 1, 1, "m"},        {"km", 1000, 1, "km"},     {"cm", 1, 100, "cm"},
    {"mm", 1, 1000, "mm"},   {"ft", 0.3048, 1, "ft"},   {"survey ft", 1200, 3937, "us-ft"},
    {"yd", 0.9144, 1, "yd"}, {"mi", 1609.344, 1, "mi"}, {"in", 0.0254, 1, "in"},
    {"nmi", 1852, 1, "kmi"},
};

// The parameters follow the units in this order, each setting one PROJ key; the false easting
// and northing come last, in the clause's units, where PROJ takes metres.
struct TMifProjection {
    int iType;
    const char* pszName;
    const char* pszProj;
    std::vector<const char*> keys;
};
const TMifProjection kProjections[] = {
    {3, "Lambert Conformal Conic", "lcc", {"lon_0", "lat_0", "lat_1", "lat_2", "x_0", "y_0"}},
    {8, "Transverse Mercator", "tmerc", {"lon_0", "lat_0", "k", "x_0", "y_0"}},
    {9, "Albers Equal-Area Conic", "aea", {"lon_0", "lat_0", "lat_1", "lat_2", "x_0", "y_0"}},
};

char Lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (Lower(a[i]) != Lower(b[i])) return false;
    return true;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

// Takes the next word (up to a blank or a comma) off the front of text.
std::string_view TakeWord(std::string_view& text) {
    text = Trim(text);
    std::size_t end = 0;
    while (end < text.size() && !IsBlank(text[end]) && text[end] != ',') ++end;
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The comma-separated items before the first clause that follows them (Bounds, Affine), which
// is returned in rest. Quoted text (the units) may hold anything.
std::vector<std::string_view> SplitItems(std::string_view text, std::string_view& rest) {
    std::vector<std::string_view> items;
    std::size_t start = 0;
    bool quoted = false;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        const char c = i < text.size() ? text[i] : ',';
        if (c == '"') quoted = !quoted;
        if (quoted) continue;
        if (IsLetter(c) && (i == 0 || !IsLetter(text[i - 1]))) {
            std::size_t end = i;
            while (end < text.size() && IsLetter(text[end])) ++end;
            const std::string_view word = text.substr(i, end - i);
            if (EqualsNoCase(word, "Bounds") || EqualsNoCase(word, "Affine")) {
                rest = text.substr(i);
                if (const std::string_view last = Trim(text.substr(start, i - start)); !last.empty())
                    items.push_back(last);
                return items;
            }
        }
        if (c == ',') {
            items.push_back(Trim(text.substr(start, i - start)));
            start = i + 1;
        }
    }
    rest = {};
    if (items.size() == 1 && items[0].empty()) items.clear();
    return items;
}

bool ReadNumber(std::string_view item, double& value, std::string& error) {
    const char* end = item.data() + item.size();
    const auto [stop, ec] = std::from_chars(item.data(), end, value);
    if (ec != std::errc() || stop != end) {
        error = "'" + std::string(item) + "' is not a number";
        return false;
    }
    return true;
}

// The shortest decimals that read back the same value, without an exponent.
std::string NumberText(double value) {
    char buf[400];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed);
    return std::string(buf, ec == std::errc() ? end : buf);
}

const TMifDatum* FindDatum(std::string_view item) {
    double number = 0;
    std::string ignored;
    if (!ReadNumber(item, number, ignored)) return nullptr;
    for (const TMifDatum& d : kDatums)
        if (d.iNumber == number) return &d;
    return nullptr;
}

}  // namespace

bool MifCoordSysToProj(std::string_view clause, std::string& proj, std::string& error) {
    std::string_view text = clause;
    if (!EqualsNoCase(TakeWord(text), "CoordSys")) {
        error = "it does not start with CoordSys";
        return false;
    }
    const std::string_view kind = TakeWord(text);
    if (!EqualsNoCase(kind, "Earth")) {
        error = "CoordSys " + std::string(kind) + " names no place on the earth";
        return false;
    }
    if (!EqualsNoCase(TakeWord(text), "Projection")) {
        error = "CoordSys Earth has no Projection";
        return false;
    }
    std::string_view rest;
    const std::vector<std::string_view> items = SplitItems(text, rest);
    if (EqualsNoCase(TakeWord(rest), "Affine")) {
        error = "an Affine transformation of the coordinates is not mapped";
        return false;
    }
    if (items.size() < 2) {
        error = "Projection needs a type and a datum";
        return false;
    }
    double type = 0;
    if (!ReadNumber(items[0], type, error)) return false;
    // Degrees on no stated datum, as the library's own MIF files say: they are taken as they are.
    if (type == 1 && items.size() == 2 && items[1] == "0") {
        proj.clear();
        return true;
    }
    const TMifDatum* datum = FindDatum(items[1]);
    if (datum == nullptr) {
        error = "datum " + std::string(items[1]) +
                " is not one that is mapped (104 WGS 84, 74 NAD 83, 62 NAD 27, 115 ETRS89, 116 GDA94, 117 "
                "NZGD2000)";
        return false;
    }
    if (type == 1) {
        if (items.size() > 2) {
            error = "longitude/latitude (projection 1) takes nothing after its datum";
            return false;
        }
        proj = "+proj=longlat " + std::string(datum->pszProj) + " +no_defs +type=crs";
        return true;
    }
    const TMifProjection* projection = nullptr;
    for (const TMifProjection& p : kProjections)
        if (p.iType == type) projection = &p;
    if (projection == nullptr) {
        error = "projection " + std::string(items[0]) +
                " is not one that is mapped (1 longitude/latitude, 3 Lambert Conformal Conic, 8 Transverse "
                "Mercator, 9 Albers)";
        return false;
    }
    const std::string about =
        std::string(projection->pszName) + " (projection " + std::string(items[0]) + ")";
    if (items.size() < 3 || items[2].size() < 2 || items[2].front() != '"' || items[2].back() != '"') {
        error = about + " needs its units in quotes after the datum";
        return false;
    }
    const std::string_view unitName = items[2].substr(1, items[2].size() - 2);
    const TMifUnit* unit = nullptr;
    for (const TMifUnit& u : kUnits)
        if (unitName == u.pszName) unit = &u;
    if (unit == nullptr) {
        error = "units \"" + std::string(unitName) +
                "\" are not mapped (m, km, cm, mm, ft, survey ft, yd, mi, in, nmi)";
        return false;
    }
    const std::size_t given = items.size() - 3;
    if (given != projection->keys.size()) {
        error = about + " takes " + std::to_string(projection->keys.size()) +
                " parameters after its units, " + std::to_string(given) + " given";
        return false;
    }
    proj = "+proj=" + std::string(projection->pszProj);
    for (std::size_t i = 0; i < given; ++i) {
        double value = 0;
        if (!ReadNumber(items[3 + i], value, error)) return false;
        const std::string_view key = projection->keys[i];
        if (key == "x_0" || key == "y_0") value = value * unit->dNumerator / unit->dDenominator;
        proj += " +" + std::string(key) + "=" + NumberText(value);
    }
    proj += " " + std::string(datum->pszProj) + " +units=" + unit->pszProj + " +no_defs +type=crs";
    return true;
}
