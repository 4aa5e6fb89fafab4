// dBASE tables read without a map: good tables, and hostile ones whose header length, row length,
// field widths or row count do not fit the file, each refused with its reason or read as far as
// the file holds rows; and the complete profile's table of ID, BOUND, VALUE and NAME written and
// read back, its columns as wide as their values and its UTF-8 texts cut at whole characters.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <tl_gis/hostmap/element_kinds.h>
#include "gis/shp/dbf_complete_table.h"
#include "gis/shp/dbf_reader.h"
#include "shp_test_files.h"
#include "test_support.h"

using namespace shp_test;

namespace {
// Opens the bytes as a table; "problem: ..." when refused, else the columns ("ID:N10"), the rows
// the header announces and the file holds, and every row read ("1|Field 1").
std::string Read(const std::string& bytes) {
    TTempDir dir;
    WriteFileBytes(dir.File("t.dbf"), bytes);
    TDbfReader reader;
    std::string problem;
    if (!reader.Open(dir.File("t.dbf").c_str(), problem)) return "problem: " + problem;
    std::string out;
    std::vector<int> all;
    for (const TDbfColumn& c : reader.GetColumns()) {
        out += c.strName + ":" + c.cType + std::to_string(c.nWidth) + " ";
        all.push_back(static_cast<int>(all.size()));
    }
    out += std::to_string(reader.GetDeclaredRows()) + "/" + std::to_string(reader.GetRowsInFile());
    std::vector<std::string> row(all.size());
    while (reader.NextRow(row, all)) {
        out += " [";
        for (std::size_t i = 0; i < row.size(); ++i) out += (i > 0 ? "|" : "") + row[i];
        out += "]";
    }
    return out;
}
}  // namespace

TEST(DbfReader, ReadsOrRefusesEachTable) {
    const std::vector<TDbfFieldSpec> fields = {{"ID", 'N', 4}, {"NAME", 'C', 6}};
    const std::vector<std::vector<std::string>> rows = {{"1", "North"}, {"22", "South"}};
    const std::string good = DbfBytes(fields, rows);
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"two rows", good, "ID:N4 NAME:C6 2/2 [   1|North ] [  22|South ]"},
        {"no fields, as boundary tables are", DbfBytes({}, {}, 3), "3/1"},
        {"fewer rows announced than the file holds", DbfBytes(fields, rows, 1),
         "ID:N4 NAME:C6 1/2 [   1|North ]"},
        {"row count 2^32-1", DbfBytes(fields, rows, 0xFFFFFFFF),
         "ID:N4 NAME:C6 4294967295/2 [   1|North ] [  22|South ]"},
        {"rows longer than their fields",
         DbfBytes(fields, {}, 2, -1, 12).substr(0, 97) + "    1North !   22South !",
         "ID:N4 NAME:C6 2/2 [   1|North ] [  22|South ]"},
        {"file shorter than a header", good.substr(0, 20), "problem: it has 20 bytes, fewer than the 32"},
        {"header length past the end", DbfBytes(fields, rows, -1, 5000),
         "problem: its header length of 5000 bytes runs past the file's"},
        {"header length under 32", DbfBytes(fields, rows, -1, 20),
         "problem: its header length of 20 bytes is shorter"},
        {"rows of 0 bytes", DbfBytes(fields, rows, -1, -1, 0), "problem: its rows are 0 bytes long"},
        {"fields wider than the rows", DbfBytes(fields, rows, -1, -1, 6),
         "problem: its 2 fields are 10 bytes wide, but its rows hold 6 bytes"},
    };
    for (const auto& [name, bytes, want] : cases) {
        const std::string got = Read(bytes);
        EXPECT_EQ(got.substr(0, want.size()), want) << name << ": " << got;
    }
}

TEST(DbfCompleteTable, ColumnsFitTheirValuesAndReadBack) {
    const std::string longName = std::string(253, 'x') + "\xC3\x91" + "and\xC3\xBA";  // a cut falls inside Ñ
    const TCompleteRow rows[] = {
        {"Field 7", BOUNDARY_INC, 12.5, ""},
        {"\xC3\x91"
         "and\xC3\xBA",
         BOUNDARY_OPEN, -3.25, "Gate"},
        {"", 0, std::numeric_limits<double>::quiet_NaN(), longName},
        {"huge", BOUNDARY_EXC, 1e300, ""},
    };
    TDbfCompleteTable table;
    for (const TCompleteRow& row : rows) table.Fit(row);
    std::string bytes;
    AppendDbfHeader(bytes, table.GetFields(), std::size(rows), {});
    TDbfRecordWriter writer;
    for (const TCompleteRow& row : rows) bytes += table.Format(writer, row);
    // ID as wide as "Field 7", BOUND as "OPEN", VALUE as "12.500000", NAME cut to the widest
    // field before the two bytes of its N; no value (NaN, and 1e300, whose 307 digits fit no
    // field) is left blank.
    const std::string blankName(254, ' ');
    EXPECT_EQ(Read(bytes + '\x1A'),
              "ID:C7 BOUND:C4 VALUE:N9 NAME:C254 4/4 [Field 7|INC |12.500000|" + blankName +
                  "] [\xC3\x91"
                  "and\xC3\xBA|OPEN|-3.250000|Gate" +
                  std::string(250, ' ') + "] [       |    |         |" + std::string(253, 'x') +
                  " ] [huge   |EXC |         |" + blankName + "]");
}
