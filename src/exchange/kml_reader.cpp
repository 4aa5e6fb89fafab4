#include "kml_reader.h"

#include <charconv>
#include <cstring>
#include <vector>

#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/result_codes.h>
#include <pugixml.hpp>
#include "exchange_limits.h"

namespace {
// An element's name without its namespace prefix (kml:Placemark, gx:Track).
std::string_view LocalName(const pugi::xml_node& node) {
    std::string_view name = node.name();
    const auto colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool Is(const pugi::xml_node& node, std::string_view name) {
    return LocalName(node) == name;
}

pugi::xml_node Child(const pugi::xml_node& node, std::string_view name) {
    for (pugi::xml_node child : node.children())
        if (child.type() == pugi::node_element && Is(child, name)) return child;
    return {};
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// One number at p (a sign, digits, a fraction, an exponent); false when there is none.
bool Number(const char*& p, const char* end, double& value) {
    const char* start = p;
    if (p < end && *p == '+') ++p;
    const auto [next, ec] = std::from_chars(p, end, value);
    if (ec != std::errc() || next == p) {
        p = start;
        return false;
    }
    p = next;
    return true;
}

class TPlacemarkDecoder {
public:
    explicit TPlacemarkDecoder(TLayerImport& import) : m_Import(import) {}

    TExchangeFeature Decode(const pugi::xml_node& placemark, long long place) {
        m_lPlace = place;
        TExchangeFeature feature;
        m_pFeature = &feature;
        if (pugi::xml_node name = Child(placemark, "name"))
            SetProperty(feature.Properties, "name", Text(name));
        if (pugi::xml_node description = Child(placemark, "description"))
            SetProperty(feature.Properties, "description", Text(description));
        if (pugi::xml_node data = Child(placemark, "ExtendedData")) ReadExtendedData(data);
        for (pugi::xml_node child : placemark.children())
            if (child.type() == pugi::node_element) AddGeometry(child, 0);
        m_pFeature = nullptr;
        return feature;
    }

private:
    TPropertyValue Text(const pugi::xml_node& node) {
        std::string text = node.child_value();
        m_pFeature->bTextCutAtNul |= CutAtNul(text);
        return TPropertyValue::Text(std::move(text));
    }

    void ReadExtendedData(const pugi::xml_node& data) {
        for (pugi::xml_node item : data.children()) {
            if (Is(item, "Data")) {
                SetProperty(m_pFeature->Properties, item.attribute("name").value(),
                            Text(Child(item, "value")));
            } else if (Is(item, "SchemaData")) {
                for (pugi::xml_node simple : item.children())
                    if (Is(simple, "SimpleData"))
                        SetProperty(m_pFeature->Properties, simple.attribute("name").value(), Text(simple));
            }
        }
    }

    void Bad(const std::string& why) {
        m_Import.Skip(LOAD_FEATURE_BAD_GEOMETRY, m_lPlace, why);
        m_pFeature->bGeometryPassedOver = true;
    }

    // The positions of a coordinates element: "lon,lat[,alt]" tuples apart by white space.
    bool Coordinates(const pugi::xml_node& owner, std::vector<tagLOC>& out) {
        const pugi::xml_node coordinates = Child(owner, "coordinates");
        const char* p = coordinates.child_value();
        const char* end = p + std::strlen(p);
        while (true) {
            while (p < end && IsBlank(*p)) ++p;
            if (p == end) break;
            double lon = 0.0, lat = 0.0, height = 0.0;
            bool ok = Number(p, end, lon);
            while (ok && p < end && IsBlank(*p)) ++p;
            ok = ok && p < end && *p++ == ',';
            while (ok && p < end && IsBlank(*p)) ++p;
            ok = ok && Number(p, end, lat);
            if (ok && p < end && *p == ',') {
                ++p;
                while (p < end && IsBlank(*p)) ++p;
                ok = Number(p, end, height);
                m_pFeature->bHadHeights = true;
            }
            if (!ok || (p < end && !IsBlank(*p))) {
                Bad("coordinates that are not longitude,latitude pairs");
                return false;
            }
            out.push_back({lat, lon});
        }
        return true;
    }

    void NoteAltitudeMode(const pugi::xml_node& geometry) {
        // altitudeMode and gx:altitudeMode share their local name; on the ground nothing is lost.
        for (pugi::xml_node mode : geometry.children()) {
            const std::string_view value = mode.child_value();
            if (Is(mode, "altitudeMode") && value != "clampToGround" && value != "clampToSeaFloor")
                m_Import.Skip(LOAD_ALTITUDE_MODE_DROPPED, m_lPlace, std::string(value));
        }
    }

    void AddRing(const pugi::xml_node& boundary, TExchangeGeometry& polygon, bool& ok) {
        const pugi::xml_node ring = Child(boundary, "LinearRing");
        polygon.Parts.emplace_back();
        ok = ok && Coordinates(ring, polygon.Parts.back());
    }

    void AddGeometry(const pugi::xml_node& node, int depth) {
        const std::string_view name = LocalName(node);
        if (name == "Point" || name == "LineString" || name == "LinearRing" || name == "Polygon")
            NoteAltitudeMode(node);
        TExchangeGeometry geometry;
        bool ok = true;
        if (name == "Point") {
            geometry.eKind = GEOMETRY_POINT;
            std::vector<tagLOC> positions;
            ok = Coordinates(node, positions);
            if (ok && positions.size() != 1) {
                Bad("a Point of " + std::to_string(positions.size()) + " positions");
                return;
            }
            if (ok) geometry.Parts.push_back(std::move(positions));
        } else if (name == "LineString" || name == "LinearRing") {
            geometry.eKind = name == "LineString" ? GEOMETRY_LINE : GEOMETRY_POLYGON;
            geometry.Parts.emplace_back();
            ok = Coordinates(node, geometry.Parts.back());
        } else if (name == "Polygon") {
            geometry.eKind = GEOMETRY_POLYGON;
            const pugi::xml_node outer = Child(node, "outerBoundaryIs");
            if (!outer) {
                Bad("a Polygon without outerBoundaryIs");
                return;
            }
            AddRing(outer, geometry, ok);
            for (pugi::xml_node inner : node.children())
                if (Is(inner, "innerBoundaryIs")) AddRing(inner, geometry, ok);
        } else if (name == "MultiGeometry") {
            if (depth >= EXCHANGE_MAX_DEPTH) {
                Bad("MultiGeometry nested deeper than " + std::to_string(EXCHANGE_MAX_DEPTH) + " levels");
                return;
            }
            for (pugi::xml_node member : node.children())
                if (member.type() == pugi::node_element) AddGeometry(member, depth + 1);
            return;
        } else if (name == "Track" || name == "MultiTrack" || name == "Model") {
            m_Import.Skip(LOAD_FEATURE_UNKNOWN_GEOMETRY, m_lPlace, std::string(node.name()));
            m_pFeature->bGeometryPassedOver = true;
            return;
        } else {
            return;  // name, description, styles, views: not geometry
        }
        if (ok) m_pFeature->Geometries.push_back(std::move(geometry));
    }

    TLayerImport& m_Import;
    TExchangeFeature* m_pFeature = nullptr;
    long long m_lPlace = 0;
};

bool IsContainer(const pugi::xml_node& node) {
    return Is(node, "Document") || Is(node, "Folder");
}

bool IsOverlay(const pugi::xml_node& node) {
    return Is(node, "GroundOverlay") || Is(node, "ScreenOverlay") || Is(node, "PhotoOverlay") ||
           Is(node, "NetworkLink");
}
}  // namespace

TKmlRead ReadKml(std::string& text, TLayerImport& import, TLoadReport* report,
                 const std::function<void(std::int64_t)>& progress) {
    TKmlRead read;
    pugi::xml_document document;
    const pugi::xml_parse_result parsed = document.load_buffer_inplace(
        text.data(), text.size(), pugi::parse_default | pugi::parse_embed_pcdata, pugi::encoding_auto);
    if (!parsed) {
        if (report != nullptr)
            report->Stop(0, false,
                         std::string("XML syntax error at ") + LineAndColumn(text, parsed.offset) + ": " +
                             parsed.description());
        read.iResult = GISFILE_ERR_DATA;
        return read;
    }
    const pugi::xml_node root = document.document_element();
    if (!Is(root, "kml")) {
        if (report != nullptr)
            report->Stop(
                0, false,
                "the XML is no KML: its root element is <" + TLoadReport::EscapeText(root.name()) + ">");
        read.iResult = GISFILE_ERR_OPEN;
        return read;
    }
    TPlacemarkDecoder decoder(import);
    long long place = 0;
    // Containers are walked with a list of their children still to visit, not by recursion,
    // and only so deep.
    struct TLevel {
        pugi::xml_node next;
    };
    std::vector<TLevel> levels{{root.first_child()}};
    while (!levels.empty()) {
        pugi::xml_node node = levels.back().next;
        if (!node) {
            levels.pop_back();
            continue;
        }
        levels.back().next = node.next_sibling();
        if (node.type() != pugi::node_element) continue;
        if (IsContainer(node)) {
            if (read.strName.empty()) read.strName = Child(node, "name").child_value();
            if (levels.size() >= static_cast<std::size_t>(EXCHANGE_MAX_DEPTH)) {
                if (report != nullptr)
                    report->Stop(place, place > 0,
                                 "Documents and Folders nest deeper than " +
                                     std::to_string(EXCHANGE_MAX_DEPTH) + " levels (at " +
                                     LineAndColumn(text, node.offset_debug()) + ")");
                read.iResult = GISFILE_ERR_DATA;
                import.Finish();
                return read;
            }
            levels.push_back({node.first_child()});
        } else if (Is(node, "Placemark")) {
            ++place;
            if (!import.Add(decoder.Decode(node, place), place)) break;
            if (progress) progress(node.offset_debug());
        } else if (IsOverlay(node)) {
            import.Skip(LOAD_KML_OVERLAY, ++place, node.name());
        }
    }
    import.Finish();
    if (import.IsCancelled()) read.iResult = GISFILE_ERR_CANCELLED;
    return read;
}
