// Loading hand-assembled main files: byte orders, skipped records, ends of data, damage and the
// projected-coordinate question.

#include <gtest/gtest.h>

#include "gis/gis_map.h"
#include "gis/language.h"
#include "shp_test_support.h"

using namespace shp_test;

// A record of the type with the points, parts and (to damage it) counts given.
static std::string Poly(std::uint32_t type, const std::vector<TXY>& points,
                        std::vector<std::int32_t> parts = {0}, std::int64_t numParts = -1,
                        std::int64_t numPoints = -1) {
    return PolyContent(type, parts, points, numParts, numPoints);
}

static std::vector<TXY> operator+(std::vector<TXY> a, const std::vector<TXY>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// Each file is loaded, its questions answered No (n) or Yes (y); the elements are "id" for points
// and "id/bound type" for lines, and every message shown must contain the text given (and a
// damage report the file's name).
TEST(ShpReader, LoadsOrRejectsEachFile) {
    const std::vector<TXY> four = {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}, {-93.22, 45.5}};
    const std::string point = PointContent(-93.25, 45.5);
    const auto mixed = [&](bool little) {
        return TShpBytes(little)
            .Record(12, point)
            .Record(7, Poly(3, four, {0, 2}))
            .Record(8, Poly(5, SquareRing(.01, 1)));
    };
    const auto afterPoint = [&](const std::string& content, std::int64_t words = -1) {
        return TShpBytes().Record(1, point).Record(2, content, words).Bytes();
    };
    const std::string utm = TShpBytes().Record(1, Poly(3, {{500000, 5000000}, {500100, 5000100}})).Bytes();
    const std::string rings =
        TShpBytes()
            .Record(4, Poly(5, SquareRing(.01, false)))
            .Record(5, Poly(5, SquareRing(.01, false) + SquareRing(.002, false), {0, 5}))
            .Record(6, Poly(5, SquareRing(.01, true) + SquareRing(.002, true, -93.3), {0, 5}))
            .Bytes();
    const std::string skipped = TShpBytes()
                                    .Record(1, std::string(4, '\0'))
                                    .Record(2, Poly(15, four) + std::string(48, '\0'))
                                    .Record(3, MultiPointContent(four))
                                    .Record(4, point)
                                    .Raw(std::string(20, '\0'))
                                    .Bytes();
    const std::tuple<const char*, std::string, int, const char*, const char*, const char*> cases[] = {
        {"big-endian record headers", mixed(false).Bytes(), 0, "Point 12 7.1/18 7.2/18 8.1/16", nullptr, ""},
        {"little-endian record headers", mixed(true).Bytes(), 0, "Point 12 7.1/18 7.2/18 8.1/16", nullptr,
         ""},
        {"header only", TShpBytes().Bytes(), 0, "", nullptr, ""},
        {"null, PolygonZ and multipoint skipped, trailing zeros", skipped, 0, "Point 4", nullptr, ""},
        {"rings by orientation", rings, 0, "4.1/17 5.1/16 5.2/17 6.1/16 6.2/16", nullptr, ""},
        {"projected, answered no: loaded, ends with its class", utm, 1, "1.1/18", "projected grid", "nn"},
        {"projected, answered yes: stop", utm, 6080, "", "projected grid", "ny"},
        {"out of degree range", afterPoint(Poly(3, {{0, 0}, {200, 95}})), 2, "Point 1 2.1/18", nullptr, ""},
        {"part index past the points", afterPoint(Poly(3, four, {0, 5})), 6003, "Point 1",
         "record 2 is damaged: part 2 starts at point 5 of 4", ""},
        {"negative part start", afterPoint(Poly(3, four, {-1})), 6003, "Point 1", "starts at point -1", ""},
        {"parts going backwards", afterPoint(Poly(3, four, {0, 3, 2})), 6003, "Point 1", "starts at point 2",
         ""},
        {"point count 2^31-1", afterPoint(Poly(3, four, {0}, -1, 0x7FFFFFFF)), 6003, "Point 1",
         "1 parts and 2147483647 points need", ""},
        {"part count 2^31-16", afterPoint(Poly(3, four, {0}, 0x7FFFFFF0)), 6003, "Point 1",
         "2147483632 parts and 4 points need", ""},
        {"record length past the end", afterPoint(Poly(3, four), 1000), 6003, "Point 1",
         "record 2 gives its content as 2000 bytes, but only 112 bytes", ""},
        {"record length 2^31-1 words", afterPoint(Poly(3, four), 0x7FFFFFFF), 6003, "Point 1",
         "4294967294 bytes", ""},
        {"point record too short", afterPoint(point.substr(0, 12)), 6003, "Point 1",
         "a point record needs 20", ""},
        {"file cut inside a record header", afterPoint("").substr(0, 133), 6003, "Point 1",
         "ends 5 bytes into", ""},
        {"file cut inside the header", TShpBytes().Bytes().substr(0, 60), 6002, "", "fewer than the 100", ""},
        {"wrong file code", TShpBytes().Bytes(9993), 6002, "", "shapefile code 9994 (it has 9993)", ""},
    };
    for (const auto& [name, bytes, result, elements, message, answers] : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("test.shp"), bytes);
        EnsureLibraryStarted();  // its notices are not the reader's
        std::vector<int> script;
        for (const char* a = answers; *a != '\0'; ++a) script.push_back(*a == 'y' ? IDYES : IDNO);
        TScriptedMessages messages(script);
        TMapLayer layer;
        EXPECT_EQ(TGisMap().LoadFile(dir.File("test.shp").c_str(), &layer, nullptr), result) << name;
        std::string loaded;
        for (const TMapElement* e : layer.m_Elements) {
            const auto* line = dynamic_cast<const TFeatureLine*>(e);
            loaded += (loaded.empty() ? "" : " ") + e->m_strId +
                      (line ? "/" + std::to_string(line->m_iBoundType) : "");
        }
        EXPECT_EQ(loaded, elements) << name;
        EXPECT_EQ(messages.Shown().size(), message ? std::max<std::size_t>(script.size(), 1) : 0) << name;
        for (const TMessageBoxRequest& m : messages.Shown())
            EXPECT_TRUE(m.strText.find(message) != std::string::npos &&
                        (!script.empty() || m.strText.find("test.shp") != std::string::npos))
                << name << ": " << m.strText;
    }
}
