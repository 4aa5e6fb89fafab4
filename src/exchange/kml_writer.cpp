#include "kml_writer.h"

#include <algorithm>
#include <sstream>

#include <tl_gis/platform/text_encoding.h>
#include <pugixml.hpp>

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

// Text as XML holds it: UTF-8 (bytes that are none taken as Windows Latin 1, as the system
// writes), and no control characters but tab and line ends, which XML does not allow.
std::string XmlText(const std::string& text) {
    std::string out = ToUtf8(text, ENCODING_UTF8);
    for (char& c : out)
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r') c = '?';
    return out;
}

void AddText(pugi::xml_node parent, const char* name, const std::string& text) {
    parent.append_child(name).text().set(XmlText(text).c_str());
}

void AddStyles(pugi::xml_node document) {
    for (const TStyleDef& def : kStyles) {
        pugi::xml_node style = document.append_child("Style");
        style.append_attribute("id") = def.pszId;
        pugi::xml_node line = style.append_child("LineStyle");
        AddText(line, "color", def.pszLine);
        AddText(line, "width", def.pszWidth);
        pugi::xml_node poly = style.append_child("PolyStyle");
        AddText(poly, def.pszFill != nullptr ? "color" : "fill", def.pszFill != nullptr ? def.pszFill : "0");
    }
    for (int i = 0; i < SPRAY_RATE_CLASSES; ++i) {
        pugi::xml_node style = document.append_child("Style");
        style.append_attribute("id") = ("spray_" + std::to_string(i)).c_str();
        pugi::xml_node line = style.append_child("LineStyle");
        AddText(line, "color", kSprayFills[i]);
        AddText(line, "width", "0");
        AddText(style.append_child("PolyStyle"), "color", kSprayFills[i]);
    }
    for (const char* id : {"marker", "point"}) {
        pugi::xml_node style = document.append_child("Style");
        style.append_attribute("id") = id;
        AddText(style.append_child("IconStyle"), "scale", id[0] == 'm' ? "1" : "0.6");
    }
}

std::string CoordinatesText(const std::vector<tagLOC>& positions) {
    std::string text;
    for (const tagLOC& loc : positions) {
        if (!text.empty()) text += ' ';
        AppendDegrees(text, loc.dLon);
        text += ',';
        AppendDegrees(text, loc.dLat);
    }
    return text;
}

void AddCoordinates(pugi::xml_node parent, const std::vector<tagLOC>& positions) {
    AddText(parent, "coordinates", CoordinatesText(positions));
}

void AddGeometry(pugi::xml_node parent, const TExchangeGeometry& g) {
    switch (g.eKind) {
        case GEOMETRY_POINT:
            for (const std::vector<tagLOC>& part : g.Parts)
                AddCoordinates(parent.append_child("Point"), part);
            return;
        case GEOMETRY_LINE:
            for (const std::vector<tagLOC>& part : g.Parts) {
                pugi::xml_node line = parent.append_child("LineString");
                AddText(line, "tessellate", "1");
                AddCoordinates(line, part);
            }
            return;
        case GEOMETRY_POLYGON: {
            pugi::xml_node polygon = parent.append_child("Polygon");
            for (std::size_t i = 0; i < g.Parts.size(); ++i) {
                pugi::xml_node boundary =
                    polygon.append_child(i == 0 ? "outerBoundaryIs" : "innerBoundaryIs");
                AddCoordinates(boundary.append_child("LinearRing"), g.Parts[i]);
            }
            return;
        }
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
void AddSchema(pugi::xml_node document, const std::vector<TExchangeFeature>& features) {
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
    pugi::xml_node schema = document.append_child("Schema");
    schema.append_attribute("name") = kSchemaId;
    schema.append_attribute("id") = kSchemaId;
    for (const auto& [name, number] : fields) {
        pugi::xml_node field = schema.append_child("SimpleField");
        field.append_attribute("name") = XmlText(name).c_str();
        field.append_attribute("type") = number ? "double" : "string";
    }
}

void AddPlacemark(pugi::xml_node document, const TExchangeFeature& f) {
    pugi::xml_node placemark = document.append_child("Placemark");
    if (!f.strTitle.empty()) AddText(placemark, "name", f.strTitle);
    const char* style = StyleId(f);
    AddText(placemark, "styleUrl",
            style != nullptr ? std::string("#") + style : "#spray_" + std::to_string(f.iRateClass));
    pugi::xml_node data = placemark.append_child("ExtendedData").append_child("SchemaData");
    data.append_attribute("schemaUrl") = (std::string("#") + kSchemaId).c_str();
    for (const auto& [key, value] : f.Properties) {
        // An unknown value is left out.
        if (value.eType == TPropertyValue::PROPERTY_NULL) continue;
        std::string text;
        if (value.eType == TPropertyValue::PROPERTY_NUMBER)
            AppendPropertyNumber(text, value);
        else
            text = value.AsText();
        pugi::xml_node item = data.append_child("SimpleData");
        item.append_attribute("name") = XmlText(key).c_str();
        item.text().set(XmlText(text).c_str());
    }
    if (PartCount(f) > 1) {
        pugi::xml_node multi = placemark.append_child("MultiGeometry");
        for (const TExchangeGeometry& g : f.Geometries) AddGeometry(multi, g);
    } else {
        for (const TExchangeGeometry& g : f.Geometries) AddGeometry(placemark, g);
    }
}
}  // namespace

std::string WriteKmlText(const std::vector<TExchangeFeature>& features, const std::string& name) {
    pugi::xml_document doc;
    pugi::xml_node declaration = doc.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    pugi::xml_node kml = doc.append_child("kml");
    kml.append_attribute("xmlns") = "http://www.opengis.net/kml/2.2";
    pugi::xml_node document = kml.append_child("Document");
    if (!name.empty()) AddText(document, "name", name);
    AddStyles(document);
    AddSchema(document, features);
    for (const TExchangeFeature& f : features) AddPlacemark(document, f);
    std::ostringstream out;
    doc.save(out, " ", pugi::format_default, pugi::encoding_utf8);
    return out.str();
}
