#include "geojson_reader.h"

#include <iterator>
#include <vector>

#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/result_codes.h>
#include <nlohmann/json.hpp>
#include "exchange_limits.h"

namespace {
using json = nlohmann::json;

// Walks the text for the parser and remembers how far it has come, for progress and for the
// line and column of an error.
struct TCountingIterator {
    using iterator_category = std::forward_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    const char* p = nullptr;
    const char** reached = nullptr;

    reference operator*() const { return *p; }
    TCountingIterator& operator++() {
        *reached = ++p;
        return *this;
    }
    TCountingIterator operator++(int) {
        TCountingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const TCountingIterator& other) const { return p == other.p; }
};

// The parser's message without its exception name and its own position, printable.
std::string ParserMessage(const std::string& what) {
    std::string message = what;
    if (message.rfind("[json.exception.", 0) == 0) {
        const auto end = message.find("] ");
        if (end != std::string::npos) message.erase(0, end + 2);
    }
    const auto colon = message.find(": ");
    if (message.rfind("parse error at line ", 0) == 0 && colon != std::string::npos)
        message.erase(0, colon + 2);
    // It may quote bytes of the file.
    return TLoadReport::EscapeText(message, 160);
}

// One parsed feature, geometry or collection member into the shared feature model.
class TFeatureDecoder {
public:
    explicit TFeatureDecoder(TLayerImport& import) : m_Import(import) {}

    TExchangeFeature Decode(const json& value, long long place) {
        m_lPlace = place;
        TExchangeFeature feature;
        const std::string type = TypeOf(value);
        if (type == "Feature") {
            if (const auto g = value.find("geometry"); g != value.end() && !g->is_null())
                AddGeometry(feature, *g);
            if (const auto p = value.find("properties"); p != value.end() && p->is_object())
                for (const auto& [key, v] : p->items())
                    feature.Properties.emplace_back(Text(key), Property(v));
            // RFC 7946's feature id stands for the id property when there is none.
            if (const auto id = value.find("id");
                id != value.end() && FindProperty(feature.Properties, "id") == nullptr)
                feature.Properties.emplace_back("id", Property(*id));
        } else {
            AddGeometry(feature, value);
        }
        feature.bHadHeights = m_bHadHeights;
        feature.bTextCutAtNul = m_bCutAtNul;
        feature.bGeometryPassedOver = m_bPassedOver;
        m_bHadHeights = m_bCutAtNul = m_bPassedOver = false;
        return feature;
    }

private:
    static std::string TypeOf(const json& value) {
        const auto t = value.is_object() ? value.find("type") : value.end();
        return t != value.end() && t->is_string() ? t->get<std::string>() : std::string();
    }

    std::string Text(std::string text) {
        m_bCutAtNul |= CutAtNul(text);
        return text;
    }

    TPropertyValue Property(const json& v) {
        switch (v.type()) {
            case json::value_t::string:
                return TPropertyValue::Text(Text(v.get<std::string>()));
            case json::value_t::number_integer:
            case json::value_t::number_unsigned:
            case json::value_t::number_float:
                return TPropertyValue::Number(v.get<double>());
            case json::value_t::boolean: {
                TPropertyValue b = TPropertyValue::Number(v.get<bool>() ? 1.0 : 0.0);
                b.eType = TPropertyValue::PROPERTY_BOOLEAN;
                return b;
            }
            case json::value_t::null:
                return {};
            default:
                // Lists and objects as their JSON text, as GDAL shows them.
                return TPropertyValue::Text(Text(v.dump()));
        }
    }

    void Bad(const std::string& why) {
        m_Import.Skip(LOAD_FEATURE_BAD_GEOMETRY, m_lPlace, why);
        m_bPassedOver = true;
    }

    // A position [longitude, latitude, ...]; false, counted, when it is none.
    bool Position(const json& p, tagLOC& loc) {
        if (!p.is_array() || p.size() < 2 || !p[0].is_number() || !p[1].is_number()) {
            Bad("a position that is not two numbers");
            return false;
        }
        loc = {p[1].get<double>(), p[0].get<double>()};
        if (p.size() > 2) m_bHadHeights = true;
        return true;
    }

    bool Positions(const json& list, std::vector<tagLOC>& out) {
        if (!list.is_array()) {
            Bad("coordinates that are not a list of positions");
            return false;
        }
        out.reserve(list.size());
        for (const json& p : list) {
            tagLOC loc;
            if (!Position(p, loc)) return false;
            out.push_back(loc);
        }
        return true;
    }

    // Parts of depth 1 (a line, a ring list's ring) or of depth 2 (a polygon's rings).
    bool Rings(const json& list, std::vector<std::vector<tagLOC>>& out) {
        if (!list.is_array()) {
            Bad("coordinates that are not a list of rings");
            return false;
        }
        for (const json& ring : list) {
            out.emplace_back();
            if (!Positions(ring, out.back())) return false;
        }
        return true;
    }

    void AddGeometry(TExchangeFeature& feature, const json& g) {
        const std::string type = TypeOf(g);
        const auto c = g.is_object() ? g.find("coordinates") : g.end();
        const bool hasCoordinates = c != g.end();
        if (type == "GeometryCollection") {
            const auto list = g.find("geometries");
            if (list != g.end() && list->is_array())
                for (const json& member : *list) AddGeometry(feature, member);
            return;
        }
        TExchangeGeometry geometry;
        bool ok = hasCoordinates;
        if (!hasCoordinates && !type.empty()) Bad(type + " without coordinates");
        if (type == "Point" && ok) {
            geometry.eKind = GEOMETRY_POINT;
            tagLOC loc;
            ok = Position(*c, loc);
            geometry.Parts.push_back({loc});
        } else if (type == "MultiPoint" && ok) {
            geometry.eKind = GEOMETRY_POINT;
            std::vector<tagLOC> points;
            ok = Positions(*c, points);
            for (const tagLOC& p : points) geometry.Parts.push_back({p});
        } else if (type == "LineString" && ok) {
            geometry.eKind = GEOMETRY_LINE;
            geometry.Parts.emplace_back();
            ok = Positions(*c, geometry.Parts.back());
        } else if (type == "MultiLineString" && ok) {
            geometry.eKind = GEOMETRY_LINE;
            ok = Rings(*c, geometry.Parts);
        } else if (type == "Polygon" && ok) {
            geometry.eKind = GEOMETRY_POLYGON;
            ok = Rings(*c, geometry.Parts);
        } else if (type == "MultiPolygon" && ok) {
            ok = c->is_array();
            if (!ok) Bad("MultiPolygon coordinates that are not a list of polygons");
            for (std::size_t i = 0; ok && i < c->size(); ++i) {
                TExchangeGeometry polygon{GEOMETRY_POLYGON, {}};
                ok = Rings((*c)[i], polygon.Parts);
                if (ok) feature.Geometries.push_back(std::move(polygon));
            }
            return;
        } else if (ok || type.empty()) {
            m_Import.Skip(LOAD_FEATURE_UNKNOWN_GEOMETRY, m_lPlace,
                          type.empty() ? "a geometry without type" : type);
            m_bPassedOver = true;
            return;
        }
        if (ok) feature.Geometries.push_back(std::move(geometry));
    }

    TLayerImport& m_Import;
    long long m_lPlace = 0;
    bool m_bHadHeights = false;
    bool m_bCutAtNul = false;
    bool m_bPassedOver = false;
};

// Builds the top level and one feature at a time as values, handing each feature of a
// collection to the import as soon as it is complete. Members of the top level that are never
// needed are walked without being kept, so unknown members cannot grow it.
class TGeoJsonSax : public nlohmann::json_sax<json> {
public:
    TGeoJsonSax(TLayerImport& import, std::string_view text, const char* const& reached,
                const std::function<void(std::int64_t)>& progress)
        : m_Import(import), m_Decoder(import), m_Text(text), m_Reached(reached), m_Progress(progress) {}

    bool null() override { return Value(json(nullptr)); }
    bool boolean(bool v) override { return Value(json(v)); }
    bool number_integer(number_integer_t v) override { return Value(json(v)); }
    bool number_unsigned(number_unsigned_t v) override { return Value(json(v)); }
    bool number_float(number_float_t v, const string_t&) override { return Value(json(v)); }
    bool string(string_t& v) override { return Value(json(std::move(v))); }
    bool binary(binary_t&) override { return Value(json(nullptr)); }

    bool start_object(std::size_t) override { return Open(json::object()); }
    bool start_array(std::size_t) override {
        if (m_bFeaturesNext) {
            m_bFeaturesNext = false;
            m_iFeaturesDepth = ++m_iDepth;
            m_bSawFeatures = true;
            return true;
        }
        return Open(json::array());
    }
    bool key(string_t& k) override {
        m_bFeaturesNext = m_iDepth == 1 && m_Root.is_object() && k == "features";
        m_strKey = std::move(k);
        return true;
    }
    bool end_object() override { return Close(); }
    bool end_array() override {
        if (m_iDepth == m_iFeaturesDepth) {
            --m_iDepth;
            m_iFeaturesDepth = -1;
            return true;
        }
        return Close();
    }
    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::detail::exception& e) override {
        m_strError = "JSON syntax error at " + LineAndColumn(m_Text, static_cast<std::ptrdiff_t>(position)) +
                     ": " + ParserMessage(e.what());
        return false;
    }

    const json& Root() const { return m_Root; }
    long long Features() const { return m_lFeatures; }
    bool SawFeatures() const { return m_bSawFeatures; }
    const std::string& Error() const { return m_strError; }
    TFeatureDecoder& Decoder() { return m_Decoder; }

private:
    bool InFeaturesList() const { return m_iFeaturesDepth > 0 && m_iDepth == m_iFeaturesDepth; }
    bool InFeature() const { return m_iFeaturesDepth > 0 && m_iDepth > m_iFeaturesDepth; }
    bool Ignoring() const { return m_iIgnoreDepth > 0 && m_iDepth >= m_iIgnoreDepth; }
    std::vector<json*>& Stack() { return InFeature() ? m_FeatureStack : m_RootStack; }

    bool Fail(std::string why) {
        m_strError = std::move(why);
        return false;
    }

    static bool IsTopLevelMember(const std::string& key) {
        for (const char* wanted :
             {"type", "name", "geometry", "properties", "id", "coordinates", "geometries"})
            if (key == wanted) return true;
        return false;
    }

    // Whether the value now starting is a member of the top level that is not kept.
    bool IsUnkeptMember() const {
        return !InFeature() && m_RootStack.size() == 1 && m_Root.is_object() && !IsTopLevelMember(m_strKey);
    }

    // Puts a value into the container being built, or makes it the value being built; null
    // when the feature grows too large.
    json* Put(json&& value) {
        std::vector<json*>& stack = Stack();
        if (stack.empty()) {
            json& target = InFeature() ? m_Feature : m_Root;
            target = std::move(value);
            return &target;
        }
        std::size_t& values = InFeature() ? m_nFeatureValues : m_nRootValues;
        if (++values > GEOJSON_MAX_FEATURE_VALUES) {
            Fail("a feature holds more than " + std::to_string(GEOJSON_MAX_FEATURE_VALUES) +
                 " values, more than this reader takes for one feature");
            return nullptr;
        }
        json& top = *stack.back();
        if (top.is_object()) return &(top[m_strKey] = std::move(value));
        top.push_back(std::move(value));
        return &top.back();
    }

    bool Value(json&& value) {
        m_bFeaturesNext = false;
        if (Ignoring()) return true;
        if (InFeaturesList()) {
            m_Import.Skip(LOAD_FEATURE_NO_GEOMETRY, ++m_lFeatures, "a feature that is no object");
            return true;
        }
        if (IsUnkeptMember()) return true;
        return Put(std::move(value)) != nullptr;
    }

    bool Open(json&& container) {
        m_bFeaturesNext = false;
        if (++m_iDepth > EXCHANGE_MAX_DEPTH)
            return Fail("the JSON nests deeper than " + std::to_string(EXCHANGE_MAX_DEPTH) + " levels (at " +
                        LineAndColumn(m_Text, m_Reached - m_Text.data()) + ")");
        if (Ignoring()) return true;
        if (m_iFeaturesDepth > 0 && m_iDepth == m_iFeaturesDepth + 1) {
            ++m_lFeatures;
            m_nFeatureValues = 0;
            if (!container.is_object()) {
                m_Import.Skip(LOAD_FEATURE_NO_GEOMETRY, m_lFeatures, "a feature that is no object");
                m_iIgnoreDepth = m_iDepth;
                return true;
            }
            m_Feature = std::move(container);
            m_FeatureStack.assign(1, &m_Feature);
            return true;
        }
        if (IsUnkeptMember()) {
            m_iIgnoreDepth = m_iDepth;
            return true;
        }
        json* placed = Put(std::move(container));
        if (placed == nullptr) return false;
        Stack().push_back(placed);
        return true;
    }

    bool Close() {
        if (Ignoring()) {
            if (m_iDepth == m_iIgnoreDepth) m_iIgnoreDepth = -1;
            --m_iDepth;
            return true;
        }
        const bool endsFeature = m_iFeaturesDepth > 0 && m_iDepth == m_iFeaturesDepth + 1;
        std::vector<json*>& stack = Stack();
        if (!stack.empty()) stack.pop_back();
        --m_iDepth;
        if (!endsFeature) return true;
        const TExchangeFeature feature = m_Decoder.Decode(m_Feature, m_lFeatures);
        m_Feature = json();
        if (!m_Import.Add(feature, m_lFeatures)) return false;
        if (m_Progress) m_Progress(m_Reached - m_Text.data());
        return true;
    }

    TLayerImport& m_Import;
    TFeatureDecoder m_Decoder;
    std::string_view m_Text;
    const char* const& m_Reached;
    const std::function<void(std::int64_t)>& m_Progress;
    json m_Root;
    json m_Feature;
    std::vector<json*> m_RootStack;
    std::vector<json*> m_FeatureStack;
    std::string m_strKey;
    std::string m_strError;
    int m_iDepth = 0;           // containers open
    int m_iFeaturesDepth = -1;  // the depth of the collection's list of features while it is open
    int m_iIgnoreDepth = -1;    // the depth of a container walked without being kept
    bool m_bFeaturesNext = false;
    bool m_bSawFeatures = false;
    long long m_lFeatures = 0;
    std::size_t m_nFeatureValues = 0;
    std::size_t m_nRootValues = 0;
};
}  // namespace

TGeoJsonRead ReadGeoJson(std::string_view text, TLayerImport& import, TLoadReport* report,
                         const std::function<void(std::int64_t)>& progress) {
    TGeoJsonRead read;
    const char* reached = text.data();
    TGeoJsonSax sax(import, text, reached, progress);
    const TCountingIterator first{text.data(), &reached};
    const TCountingIterator last{text.data() + text.size(), &reached};
    const bool parsed = json::sax_parse(first, last, &sax, json::input_format_t::json, true, false);
    import.Finish();
    const json& root = sax.Root();
    if (const auto name = root.is_object() ? root.find("name") : root.end();
        name != root.end() && name->is_string())
        read.strName = name->get<std::string>();
    if (import.IsCancelled()) {
        read.iResult = GISFILE_ERR_CANCELLED;
        return read;
    }
    if (!parsed) {
        if (report != nullptr) report->Stop(sax.Features(), false, sax.Error());
        read.iResult = GISFILE_ERR_DATA;
        return read;
    }
    // A collection's features went to the import as they came; a single feature or geometry
    // is the top level itself.
    if (sax.SawFeatures()) return read;
    const auto type = root.is_object() ? root.find("type") : root.end();
    const std::string typeName = type != root.end() && type->is_string() ? type->get<std::string>() : "";
    if (typeName == "FeatureCollection") return read;
    static const char* const kGeoJsonTypes[] = {
        "Feature",         "Point",   "MultiPoint",   "LineString",
        "MultiLineString", "Polygon", "MultiPolygon", "GeometryCollection"};
    for (const char* known : kGeoJsonTypes) {
        if (typeName == known) {
            import.Add(sax.Decoder().Decode(root, 1), 1);
            import.Finish();
            read.iResult = import.IsCancelled() ? GISFILE_ERR_CANCELLED : 0;
            return read;
        }
    }
    if (report != nullptr)
        report->Stop(0, false,
                     typeName.empty() ? "the JSON is no GeoJSON: its top level has no type"
                                      : "the JSON is no GeoJSON: its top level is of type \"" +
                                            TLoadReport::EscapeText(typeName) + "\"");
    read.iResult = GISFILE_ERR_OPEN;
    return read;
}
