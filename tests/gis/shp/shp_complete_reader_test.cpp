// The complete profile's load of hand-assembled shapefiles: Z, M, multipoint and multipatch
// records, records numbered 0, records skipped alone where the system's load stops, and the
// chosen columns of the table beside the main file, good and hostile, each with the elements it
// gives and the load report it leaves.

#include <gtest/gtest.h>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include "load_report_check.h"
#include "shp_complete_support.h"
#include "shp_test_files.h"
#include "test_support.h"

using namespace shp_test;

namespace {
std::string Doubles(std::initializer_list<double> values) {
    std::string out;
    for (double v : values) PutLEDouble(out, v);
    return out;
}

// A multipatch of the part types given, the points split evenly among them, with its Z values.
std::string MultiPatch(const std::vector<std::uint32_t>& types, const std::vector<TXY>& points) {
    std::string c;
    PutLE32(c, 31);
    c.append(32, '\0');
    PutLE32(c, static_cast<std::uint32_t>(types.size()));
    PutLE32(c, static_cast<std::uint32_t>(points.size()));
    for (std::size_t p = 0; p < types.size(); ++p)
        PutLE32(c, static_cast<std::uint32_t>(p * points.size() / types.size()));
    for (std::uint32_t t : types) PutLE32(c, t);
    for (const auto& [x, y] : points) PutLEDouble(c, x), PutLEDouble(c, y);
    c += Doubles({0, 9});
    for (std::size_t i = 0; i < points.size(); ++i) c += Doubles({3});
    return c;
}

std::string MultiPointZ(const std::vector<TXY>& points) {
    std::string c = MultiPointContent(points);
    c[0] = 18;
    return c;
}

struct TCompleteCase {
    const char* name;
    std::string shp;
    std::string dbf;                   // none when empty
    std::string cpg;                   // none when empty
    std::vector<std::string> columns;  // the chosen id, value and name columns
    std::string elements;
    std::vector<TSkipWant> skips;
};
}  // namespace

TEST(ShpCompleteReader, LoadsEveryShapeTypeAndTheChosenColumns) {
    const std::vector<TXY> three = {{-93.25, 45.5}, {-93.24, 45.51}, {-93.23, 45.5}};
    const std::vector<TXY> four = {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}, {-93.22, 45.5}};
    std::vector<TXY> withHole = SquareRing(0.01, true);
    const std::vector<TXY> hole = SquareRing(0.002, false);
    withHole.insert(withHole.end(), hole.begin(), hole.end());
    std::vector<TXY> patch = SquareRing(0.01, true);
    for (const std::vector<TXY>& more : {hole, SquareRing(0.002, true, -93.2), SquareRing(0.003, true, -93.3),
                                         SquareRing(0.004, true, -93.4)})
        patch.insert(patch.end(), more.begin(), more.end());
    const std::string point = PointContent(-93.25, 45.5);
    const std::string latin =
                          "\xD1"
                          "and\xFA",
                      utf8 =
                          "\xC3\x91"
                          "and\xC3\xBA";  // Ñandú
    std::string typed77;
    PutLE32(typed77, 77);
    const std::string nullShape(4, '\0');
    // Point 1 and 2, line 3, polygon 4 with its hole.
    const std::string mixed = TShpBytes()
                                  .Record(1, point)
                                  .Record(2, PointContent(-93.2, 45.4))
                                  .Record(3, PolyContent(3, {0}, three))
                                  .Record(4, PolyContent(5, {0, 5}, withHole))
                                  .Bytes();
    const std::vector<TDbfFieldSpec> columns = {{"ID", 'C', 5}, {"RATE", 'N', 6}, {"LABEL", 'C', 8}};
    const std::vector<std::vector<std::string>> rows = {
        {"P-1", "1.5", "Gate"}, {"P-2", "", ""}, {"L-3", "2", "x"}, {"F-4", "12.25", ""}};
    const std::string table = DbfBytes(columns, rows);
    const std::vector<std::string> chosen = {"ID", "RATE", "LABEL"};
    const std::string threePoints = TShpBytes().Record(1, point).Record(2, point).Record(3, point).Bytes();
    const std::string named = TShpBytes().Record(1, point).Bytes();
    const std::string plain = "boundary:3.1/18#3, boundary:4.1/16#5, boundary:4.2/17#5";
    const std::string pointZM = TShpBytes()
                                    .Record(1, PointContent(-93.25, 45.5, 11) + Doubles({120, 7}))
                                    .Record(2, PointContent(-93.25, 45.5, 11) + Doubles({120}))
                                    .Record(3, PointContent(-93.25, 45.5, 21) + Doubles({-1e39}))
                                    .Record(4, PointContent(-93.25, 45.5, 21) + Doubles({5}))
                                    .Bytes();
    const std::string lineZM =
        TShpBytes()
            .Record(1, PolyContent(13, {0}, three) + Doubles({1, 3, 1, 2, 3, 0, 9, 0, -1e39, 9}))
            .Record(2, PolyContent(25, {0, 5}, withHole) + Doubles({0, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0}))
            .Bytes();
    const std::string multi =
        TShpBytes()
            .Record(7, MultiPointContent(three))
            .Record(8, MultiPointZ({{-93.2, 45.4}, {-93.1, 45.3}}) + Doubles({1, 2, 1, 2}))
            .Bytes();
    const std::string outside = TShpBytes()
                                    .Record(1, PolyContent(3, {0}, three))
                                    .Record(2, PolyContent(3, {0}, {{0, 0}, {200, 95}}))
                                    .Record(3, point)
                                    .Bytes();
    const std::string damaged =
        TShpBytes().Record(1, point).Record(2, PolyContent(3, {0, 5}, four)).Record(3, point).Bytes();
    const std::string p = "point:Point ", b = "boundary:1.", mark = "marker:Point 1 '" + utf8 + "'";
    const std::vector<std::string> none, nameN = {"", "", "N"};
    // clang-format off
    const TCompleteCase cases[] = {
        {"PointZ with and without M, PointM", pointZM, "", "", none, p + "1, " + p + "2, " + p + "3, " + p + "4",
         {{LOAD_SHP_Z_VALUES, 2, "record 1"}, {LOAD_SHP_M_VALUES, 2, "record 1"}}},
        {"PolyLineZ with M (one of them no data), PolygonM with a hole", lineZM, "", "", none,
         "boundary:1.1/18#3, boundary:2.1/16#5, boundary:2.2/17#5", {{LOAD_SHP_Z_VALUES, 3, "record 1"}, {LOAD_SHP_M_VALUES, 12, "record 1"}}},
        {"MultiPoint and MultiPointZ, one point element per point", multi, "", "", none,
         p + "7.1, " + p + "7.2, " + p + "7.3, " + p + "8.1, " + p + "8.2", {{LOAD_SHP_Z_VALUES, 2, "record 8"}}},
        {"MultiPatch: outer and inner rings, a triangle strip and fan as rings, a part of type 9 left out",
         TShpBytes().Record(1, MultiPatch({2, 3, 0, 1, 9}, patch)).Bytes(), "", "", none,
         b + "1/16#5, " + b + "2/17#5, " + b + "3.1/16#4, " + b + "3.2/16#4, " + b + "3.3/16#4, " + b + "4.1/16#4, " + b + "4.2/16#4, " + b + "4.3/16#4",
         {{LOAD_SHP_Z_VALUES, 25, "record 1"}, {LOAD_SHP_MULTIPATCH_UNKNOWN_PART, 1, "record 1"}}},
        {"records numbered from 0, big-endian", TShpBytes().Record(0, point).Record(1, point).Bytes(), "", "", none, p + "0, " + p + "1", {}},
        {"records numbered from 0, little-endian", TShpBytes(true).Record(0, point).Record(1, point).Bytes(), "", "", none, p + "0, " + p + "1", {}},
        {"a line ending out of range is skipped alone", outside, "", "", none, "boundary:1.1/18#3, point:Point 3",
         {{LOAD_SHP_LAST_POINT_OUTSIDE, 1, "record 2 ((95, 200) is outside the degree range)"}}},
        {"a damaged record is skipped alone", damaged, "", "", none, p + "1, " + p + "3",
         {{LOAD_SHP_DAMAGED_RECORD, 1, "record 2 (part 2 starts at point 5 of 4: past the record's last point)"}}},
        {"null and unknown shapes as by default", TShpBytes().Record(1, nullShape).Record(2, typed77).Bytes(), "", "", none, "",
         {{LOAD_SHP_NULL, 1, "record 1"}, {LOAD_SHP_UNKNOWN_TYPE, 1, "record 2 (shape type 77)"}}},
        {"chosen columns: ids, values, a named point becomes a marker", mixed, table, "", chosen,
         "marker:P-1 'Gate' =1.5, point:P-2, boundary:L-3/18#3 =2, boundary:F-4/16#5 =12.25, boundary:F-4/17#5 =12.25", {}},
        {"Windows Latin 1 without a .cpg", named, DbfBytes({{"N", 'C', 6}}, {{latin}}), "", nameN, mark, {}},
        {"UTF-8 by the .cpg", named, DbfBytes({{"N", 'C', 7}}, {{utf8}}), "UTF-8\n", nameN, mark, {}},
        {"a .cpg that names an unknown set", named, DbfBytes({{"N", 'C', 6}}, {{latin}}), "KOI8-R", nameN, mark,
         {{LOAD_SHP_UNKNOWN_CHARSET, 1, "the file header (t.cpg says KOI8-R)"}}},
        {"a value that is no number", named, DbfBytes({{"V", 'N', 6}}, {{"abc"}}), "", {"", "V", ""}, p + "1",
         {{LOAD_SHP_VALUE_NOT_NUMBER, 1, "record 1 (abc)"}}},
        {"a chosen column the table lacks", mixed, table, "", {"ID", "NOPE", ""},
         "point:P-1, point:P-2, boundary:L-3/18#3, boundary:F-4/16#5, boundary:F-4/17#5",
         {{LOAD_SHP_COLUMN_MISSING, 1, "the file header (t.dbf has no NOPE)"}}},
        {"no table beside the main file", mixed, "", "", chosen, p + "1, " + p + "2, " + plain,
         {{LOAD_SHP_TABLE_NOT_READ, 1, "the file header (there is no .dbf beside the shapefile)"}}},
        {"a header length past the table's end", mixed, DbfBytes(columns, rows, -1, 5000), "", chosen, p + "1, " + p + "2, " + plain,
         {{LOAD_SHP_TABLE_NOT_READ, 1, "the file header (t.dbf: its header length of 5000 bytes runs past the file's 210 bytes)"}}},
        {"a row count past the table's end", threePoints, DbfBytes(columns, {rows[0]}, 5), "", chosen,
         "marker:P-1 'Gate' =1.5, point:Point 2, point:Point 3",
         {{LOAD_SHP_NO_TABLE_ROW, 2, "record 2 (the table announces 5 rows and its file holds 1)"}}},
    };
    // clang-format on
    EnsureLibraryStarted();
    for (const TCompleteCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("t.shp"), c.shp);
        if (!c.dbf.empty()) WriteFileBytes(dir.File("t.dbf"), c.dbf);
        if (!c.cpg.empty()) WriteFileBytes(dir.File("t.cpg"), c.cpg);
        const std::vector<std::string> cols = c.columns.empty() ? std::vector<std::string>(3) : c.columns;
        const TCompleteProfile complete(true, cols[0], cols[1], cols[2]);
        TScriptedMessages messages;
        TLoadReport report;
        TMapLayer layer, unreported;
        EXPECT_EQ(TGisMap().LoadFile(dir.File("t.shp").c_str(), &layer, nullptr, report), GISFILE_OK)
            << c.name;
        EXPECT_EQ(TGisMap().LoadFile(dir.File("t.shp").c_str(), &unreported, nullptr), GISFILE_OK) << c.name;
        EXPECT_EQ(DescribeElements(layer), c.elements) << c.name;
        EXPECT_EQ(DescribeElements(unreported), c.elements) << c.name << ": the same without a report";
        EXPECT_EQ(DescribeReport(report), DescribeWanted(c.skips)) << c.name;
        EXPECT_TRUE(messages.Shown().empty()) << c.name;
        EXPECT_EQ(layer.m_dValue, 0.0) << c.name << ": the layer keeps its own value";
    }
}
