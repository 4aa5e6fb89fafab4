#include "kml_writer.h"

#include <algorithm>
#include <string>

#include <tl_gis/platform/text_encoding.h>

namespace {
struct TStyleDef {
    const char* pszId;
    const char* pszLine;  // aabbggrr
    const char* pszWidth;
    const char* pszFill;  // null for no fill
};

// Inclusion green, exclusion red, open lines blue, guidance grey, the path flown without
// spraying dark grey.
constexpr TStyleDef kStyles[] = {
    {"inclusion", "ff00b400", "2", "4000b400"}, {"exclusion", "ff0000ff", "2", "400000ff"},
    {"open", "ffff0000", "2", nullptr},         {"ab_line", "ff969696", "3", nullptr},
    {"swath_line", "ffc8c8c8", "1", nullptr},   {"nonspray", "ff606060", "1", nullptr},
};

// Spray swaths from the lowest applied rate to the highest: half transparent, from pale to deep
// green.
constexpr const char* kSprayFills[SPRAY_RATE_CLASSES] = {"8099e6b3", "8066d98c", "8033c066", "80009933",
                                                         "80006622"};

const char* StyleId(const TExchangeFeature& f) {
    switch (f.eStyle) {
        case STYLE_INCLUSION:
            return "inclusion";
        case STYLE_EXCLUSION:
            return "exclusion";
        case STYLE_MARKER:
            return "marker";
        case STYLE_POINT:
            return "point";
        case STYLE_AB_LINE:
            return "ab_line";
        case STYLE_SWATH_LINE:
            return "swath_line";
        case STYLE_SPRAY:
            return nullptr;  // by rate class
        case STYLE_NONSPRAY:
            return "nonspray";
        default:
            return "open";
    }
}

// Appends text as XML holds it: UTF-8 (bytes that are none taken as Windows Latin 1, as the
// system writes), markup characters escaped, and no control characters but tab and line ends,
// which XML does not allow.
void AppendXml(std::string& out, const std::string& text) {
    for (const char c : ToUtf8(text, ENCODING_UTF8)) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r' ? '?' : c;
        }
    }
}

// <name>text</name> on a line of its own, indented.
void AppendElement(std::string& out, const char* indent, const char* name, const std::string& text) {
    out += indent;
    out += '<';
    out += name;
    out += '>';
    AppendXml(out, text);
    out += "</";
    out += name;
    out += ">\n";
}

void AppendStyles(std::string& out) {
    for (const TStyleDef& def : kStyles) {
        out += "  <Style id=\"";
        out += def.pszId;
        out += "\"><LineStyle><color>";
        out += def.pszLine;
        out += "</color><width>";
        out += def.pszWidth;
        out += "</width></LineStyle><PolyStyle>";
        out += def.pszFill != nullptr ? std::string("<color>") + def.pszFill + "</color>" : "<fill>0</fill>";
        out += "</PolyStyle></Style>\n";
    }
    for (int i = 0; i < SPRAY_RATE_CLASSES; ++i) {
        out += "  <Style id=\"spray_" + std::to_string(i) + "\"><LineStyle><color>";
        out += kSprayFills[i];
        out += "</color><width>0</width></LineStyle><PolyStyle><color>";
        out += kSprayFills[i];
        out += "</color></PolyStyle></Style>\n";
    }
    out += "  <Style id=\"marker\"><IconStyle><scale>1</scale></IconStyle></Style>\n";
    out += "  <Style id=\"point\"><IconStyle><scale>0.6</scale></IconStyle></Style>\n";
}

void AppendCoordinates(std::string& out, const std::vector<tagLOC>& positions) {
    out += "<coordinates>";
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (i > 0) out += ' ';
        AppendDegrees(out, positions[i].dLon);
        out += ',';
        AppendDegrees(out, positions[i].dLat);
    }
    out += "</coordinates>";
}

void AppendGeometry(std::string& out, const TExchangeGeometry& g) {
    switch (g.eKind) {
        case GEOMETRY_POINT:
            for (const std::vector<tagLOC>& part : g.Parts) {
                out += "   <Point>";
                AppendCoordinates(out, part);
                out += "</Point>\n";
            }
            return;
        case GEOMETRY_LINE:
            for (const std::vector<tagLOC>& part : g.Parts) {
                out += "   <LineString><tessellate>1</tessellate>";
                AppendCoordinates(out, part);
                out += "</LineString>\n";
            }
            return;
        case GEOMETRY_POLYGON:
            out += "   <Polygon>";
            for (std::size_t i = 0; i < g.Parts.size(); ++i) {
                out += i == 0 ? "<outerBoundaryIs><LinearRing>" : "<innerBoundaryIs><LinearRing>";
                AppendCoordinates(out, g.Parts[i]);
                out += i == 0 ? "</LinearRing></outerBoundaryIs>" : "</LinearRing></innerBoundaryIs>";
            }
            out += "</Polygon>\n";
            return;
    }
}

std::size_t PartCount(const TExchangeFeature& f) {
    std::size_t parts = 0;
    for (const TExchangeGeometry& g : f.Geometries) parts += g.eKind == GEOMETRY_POLYGON ? 1 : g.Parts.size();
    return parts;
}

constexpr const char* kSchemaId = "tl_gis";

// The Schema of the properties, so that every KML reader makes fields of them: each name in the
// order it first comes, a double where every value is a number, a string otherwise.
void AppendSchema(std::string& out, const std::vector<TExchangeFeature>& features) {
    std::vector<std::pair<std::string, bool>> fields;  // name, all numbers
    for (const TExchangeFeature& f : features) {
        for (const auto& property : f.Properties) {
            const std::string& key = property.first;
            const bool number = property.second.eType == TPropertyValue::PROPERTY_NUMBER ||
                                property.second.eType == TPropertyValue::PROPERTY_NULL;
            auto field =
                std::find_if(fields.begin(), fields.end(), [&](const auto& x) { return x.first == key; });
            if (field == fields.end())
                fields.emplace_back(key, number);
            else
                field->second = field->second && number;
        }
    }
    out += "  <Schema name=\"";
    out += kSchemaId;
    out += "\" id=\"";
    out += kSchemaId;
    out += "\">\n";
    for (const auto& [name, number] : fields) {
        out += "   <SimpleField name=\"";
        AppendXml(out, name);
        out += number ? "\" type=\"double\"/>\n" : "\" type=\"string\"/>\n";
    }
    out += "  </Schema>\n";
}

void AppendPlacemark(std::string& out, const TExchangeFeature& f) {
    out += "  <Placemark>\n";
    if (!f.strTitle.empty()) AppendElement(out, "   ", "name", f.strTitle);
    if (!f.strDescription.empty()) AppendElement(out, "   ", "description", f.strDescription);
    const char* style = StyleId(f);
    AppendElement(out, "   ", "styleUrl",
                  style != nullptr ? std::string("#") + style : "#spray_" + std::to_string(f.iRateClass));
    out += "   <ExtendedData><SchemaData schemaUrl=\"#";
    out += kSchemaId;
    out += "\">\n";
    for (const auto& [key, value] : f.Properties) {
        // An unknown value is left out.
        if (value.eType == TPropertyValue::PROPERTY_NULL) continue;
        out += "    <SimpleData name=\"";
        AppendXml(out, key);
        out += "\">";
        if (value.eType == TPropertyValue::PROPERTY_NUMBER)
            AppendPropertyNumber(out, value);
        else
            AppendXml(out, value.AsText());
        out += "</SimpleData>\n";
    }
    out += "   </SchemaData></ExtendedData>\n";
    const bool multi = PartCount(f) > 1;
    if (multi) out += "   <MultiGeometry>\n";
    for (const TExchangeGeometry& g : f.Geometries) AppendGeometry(out, g);
    if (multi) out += "   </MultiGeometry>\n";
    out += "  </Placemark>\n";
}
}  // namespace

std::string WriteKmlText(const std::vector<TExchangeFeature>& features, const std::string& name) {
    std::string out =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n "
        "<Document>\n";
    if (!name.empty()) AppendElement(out, "  ", "name", name);
    AppendStyles(out);
    AppendSchema(out, features);
    for (const TExchangeFeature& f : features) AppendPlacemark(out, f);
    out += " </Document>\n</kml>\n";
    return out;
}
