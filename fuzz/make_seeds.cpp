// Writes the seed corpora: fuzz_make_seeds OUT_FOLDER fills OUT_FOLDER/<target>/ with seed-*
// files. Every seed comes from the project's own files (examples/, tests/data/, Config/),
// from the JOB writer, or from the shapefile builders of the reader tests; a few are those
// files with one thing changed that a reader has to cope with.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/hostmap/map_layer.h>
#include "complete_profile.h"
#include "fuzz_support.h"
#include "shp_test_files.h"

namespace fs = std::filesystem;

namespace {

using TSeeds = std::map<std::string, std::string>;  // name -> bytes

std::string ReadSource(const std::string& relative) {
    std::ifstream in(std::string(TL_GIS_SOURCE_DIR) + "/" + relative, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", relative.c_str());
        std::exit(1);
    }
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The first count lines of a text.
std::string FirstLines(const std::string& text, int count) {
    std::size_t at = 0;
    for (int i = 0; i < count && at != std::string::npos; ++i) {
        at = text.find('\n', at);
        if (at != std::string::npos) ++at;
    }
    return at == std::string::npos ? text : text.substr(0, at);
}

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// JOB: the project's job files as they are, and as the writer writes them in each version.
void JobSeeds(TSeeds& seeds) {
    const char* const sources[][2] = {{"field", "examples/field.job"},
                                      {"v1-layer", "tests/data/job/v1_layer.job"},
                                      {"v2-marker", "tests/data/job/v2_marker.job"},
                                      {"v3-marker", "tests/data/job/v3_marker.job"}};
    const int savedFormat = TGisFile::s_iGisFileFormat;
    for (const auto& source : sources) {
        const std::string text = ReadSource(source[1]);
        seeds[std::string("seed-") + source[0]] = text;
        const std::string input = tl_fuzz::WriteScratchFile("12.job", text);
        TMapLayer layer;
        if (TGisFileJob{}.LoadFile(input.c_str(), &layer, nullptr) != GISFILE_OK) continue;
        for (int format : {GISFILE_JOB_V1, GISFILE_JOB_V2, GISFILE_JOB_V3}) {
            TGisFile::s_iGisFileFormat = format;
            const std::string output = tl_fuzz::ScratchFolder() + "/34.job";
            if (TGisFileJob{}.WriteFile(output.c_str(), &layer) != GISFILE_OK) continue;
            seeds[std::string("seed-") + source[0] + "-written-v" + std::to_string(format + 1)] =
                tl_fuzz::ReadScratchFile("34.job");
        }
    }
    TGisFile::s_iGisFileFormat = savedFormat;

    const std::string field = ReadSource("examples/field.job");
    seeds["seed-field-cut-in-pattern"] = FirstLines(field, 14);
    seeds["seed-field-cut-in-polygon"] = FirstLines(field, 24);
    seeds["seed-field-projected"] = ReplaceAll(field, "45.503500 -93.254000", "4987654.250 512345.500");
    seeds["seed-field-no-line-ends"] = ReplaceAll(field, "\n", "\t");
    seeds["seed-field-crlf"] = ReplaceAll(field, "\n", "\r\n");
}

// Shapefiles: main files from the reader tests' builders, each with its index and a small
// attribute table beside it.
std::string IndexFor(const std::string& shp, bool little) {
    using namespace shp_test;
    std::string records;
    std::size_t at = 100;
    int count = 0;
    while (at + 8 <= shp.size()) {
        auto word = [&](std::size_t pos) {
            std::uint32_t v = 0;
            for (int i = 0; i < 4; ++i) {
                const auto byte = static_cast<unsigned char>(shp[pos + (little ? 3 - i : i)]);
                v = (v << 8) | byte;
            }
            return v;
        };
        const std::uint32_t words = word(at + 4);
        PutBE32(records, static_cast<std::uint32_t>(at / 2));
        PutBE32(records, words);
        ++count;
        at += 8 + 2 * static_cast<std::size_t>(words);
    }
    std::string index = shp.substr(0, 100);
    const std::uint32_t lengthWords = 50 + 4 * static_cast<std::uint32_t>(count);
    for (int i = 0; i < 4; ++i) index[24 + i] = static_cast<char>((lengthWords >> (24 - 8 * i)) & 0xFF);
    return index + records;
}

std::string AttributeTable(int records) {
    using namespace shp_test;
    std::string dbf;
    dbf += '\x03';
    dbf += "\x7A\x0B\x17";  // last update 2022-11-23
    PutLE32(dbf, static_cast<std::uint32_t>(records));
    const int headerBytes = 32 + 2 * 32 + 1;
    const int recordBytes = 1 + 10 + 16;
    dbf += static_cast<char>(headerBytes & 0xFF);
    dbf += static_cast<char>(headerBytes >> 8);
    dbf += static_cast<char>(recordBytes & 0xFF);
    dbf += static_cast<char>(recordBytes >> 8);
    dbf.append(20, '\0');
    auto field = [&](const char* name, char type, int length) {
        std::string f(name);
        f.resize(11, '\0');
        f += type;
        f.append(4, '\0');
        f += static_cast<char>(length);
        f.append(15, '\0');
        dbf += f;
    };
    field("ID", 'N', 10);
    field("NAME", 'C', 16);
    dbf += '\x0D';
    for (int i = 0; i < records; ++i) {
        std::string id = std::to_string(i + 1);
        std::string name = "Field " + id;
        dbf += ' ';
        dbf += std::string(10 - id.size(), ' ') + id;
        dbf += name + std::string(16 - name.size(), ' ');
    }
    dbf += '\x1A';
    return dbf;
}

void ShpSeeds(TSeeds& seeds) {
    using namespace shp_test;
    std::vector<TXY> twoRings = SquareRing(0.01, true);
    const std::vector<TXY> hole = SquareRing(0.002, false);
    twoRings.insert(twoRings.end(), hole.begin(), hole.end());
    const std::vector<TXY> line = {{-93.25, 45.5}, {-93.24, 45.51}, {-93.23, 45.5}, {-93.22, 45.52}};
    auto mixed = [&](bool little) {
        return TShpBytes(little)
            .Record(1, PointContent(-93.25, 45.5))
            .Record(2, PolyContent(3, {0, 2}, line))
            .Record(3, PolyContent(5, {0}, SquareRing(0.01, true)));
    };
    const std::string multipointAndNull = TShpBytes()
                                              .Record(1, MultiPointContent({{-93.2, 45.4}, {-93.1, 45.3}}))
                                              .Record(2, std::string(4, '\0'))
                                              .Record(3, PointContent(-93.26, 45.51))
                                              .Bytes();
    const std::string polygonWithHole = TShpBytes().Record(1, PolyContent(5, {0, 5}, twoRings)).Bytes();
    struct TCase {
        const char* name;
        std::string shp;
        bool little;
        int records;
    };
    const TCase cases[] = {
        {"points",
         TShpBytes()
             .Record(1, PointContent(-93.25, 45.5))
             .Record(2, PointContent(-93.2, 45.4))
             .Bytes(9994, 1),
         false, 2},
        {"polyline", TShpBytes().Record(1, PolyContent(3, {0, 2}, line)).Bytes(9994, 3), false, 1},
        {"polygon", TShpBytes().Record(1, PolyContent(5, {0}, SquareRing(0.01, true))).Bytes(), false, 1},
        {"polygon-with-hole", polygonWithHole, false, 1},
        {"mixed-big-endian", mixed(false).Bytes(), false, 3},
        {"mixed-little-endian", mixed(true).Bytes(), true, 3},
        {"multipoint-and-null", multipointAndNull, false, 3},
        {"polygon-z",
         TShpBytes().Record(1, PolyContent(15, {0}, SquareRing(0.01, true)) + std::string(48, '\0')).Bytes(),
         false, 1},
        {"projected",
         TShpBytes()
             .Record(1, PolyContent(3, {0}, {{512345.5, 4987654.25}, {512400.0, 4987700.0}}))
             .Bytes(9994, 3),
         false, 1},
        {"counts-too-large",
         TShpBytes().Record(1, PolyContent(5, {0}, SquareRing(0.01, true), 1, 500)).Bytes(), false, 1},
        {"length-past-end", TShpBytes().Record(1, PointContent(-93.25, 45.5), 4000).Bytes(9994, 1), false, 1},
        {"trailing-zeros",
         TShpBytes().Record(1, PointContent(-93.25, 45.5)).Raw(std::string(20, '\0')).Bytes(9994, 1), false,
         1},
        {"header-only", TShpBytes().Bytes(), false, 0},
    };
    for (const TCase& c : cases)
        seeds[std::string("seed-") + c.name] =
            tl_fuzz::PackInput({c.shp, IndexFor(c.shp, c.little), AttributeTable(c.records)});

    // The complete profile (an input whose last byte is odd): every shape type, records numbered
    // from 0, and tables that do not fit their files.
    std::string multiPatch = PolyContent(31, {0, 5, 10}, twoRings);
    multiPatch.insert(44 + 12, std::string("\x02\0\0\0\x03\0\0\0\0\0\0\0", 12));
    const TCase complete[] = {
        {"mixed", mixed(false).Bytes(), false, 3},
        {"polygon-with-hole", polygonWithHole, false, 1},
        {"multipoint-and-null", multipointAndNull, false, 3},
        {"z-and-m",
         TShpBytes()
             .Record(1, PointContent(-93.25, 45.5, 11) + std::string(16, '\0'))
             .Record(2, PolyContent(23, {0}, line) + std::string(48, '\0'))
             .Record(3, PolyContent(15, {0}, SquareRing(0.01, true)) + std::string(96, '\0'))
             .Bytes(),
         false, 3},
        {"multipatch", TShpBytes().Record(1, multiPatch + std::string(16 + 8 * 10, '\0')).Bytes(), false, 1},
        {"record-zero",
         TShpBytes(true).Record(0, PointContent(-93.25, 45.5)).Record(1, PolyContent(3, {0}, line)).Bytes(),
         true, 2},
    };
    for (const TCase& c : complete) {
        const std::string table = AttributeTable(c.records);
        seeds[std::string("seed-complete-") + c.name] =
            tl_fuzz::PackInput({c.shp, IndexFor(c.shp, c.little), table + '\x01'});
        // The same table claiming more rows and a longer header than its file holds.
        std::string hostile = table;
        hostile[4] = '\x7F';
        hostile[9] = '\x40';
        seeds[std::string("seed-complete-hostile-table-") + c.name] =
            tl_fuzz::PackInput({c.shp, IndexFor(c.shp, c.little), hostile + '\x01'});
    }
}

// Configuration and language files: each language as installed, and a few files with one
// thing a loader must cope with.
void LanguageSeeds(TSeeds& seeds) {
    const char* const languages[] = {"english", "french", "german", "italian", "portuguese", "spanish"};
    const std::string config = ReadSource("Config/Orvanta.ini");
    for (const char* language : languages) {
        seeds[std::string("seed-") + language] =
            tl_fuzz::PackInput({ReplaceAll(config, "english", language),
                                ReadSource(std::string("Config/lang_") + language + ".ini")});
    }
    const std::string english = ReadSource("Config/lang_english.ini");
    seeds["seed-key-with-spaces"] = tl_fuzz::PackInput({"Language = French\n", english});
    seeds["seed-unknown-language"] = tl_fuzz::PackInput({"[Settings]\nLanguage=klingon\n", english});
    seeds["seed-long-config-lines"] = tl_fuzz::PackInput(
        {std::string(200, 'x') + "Language=german\nL" + std::string(120, 'L') + "\n", english});
    seeds["seed-ids-out-of-order"] = tl_fuzz::PackInput({config, "2041\tc\n2039\ta\n2040\tb\n1010\tx\n"});
    seeds["seed-no-tabs-and-blanks"] =
        tl_fuzz::PackInput({config, "2039 no tab\n\t2040\tindented\n[x]\n12a\tb\n"});
    seeds["seed-format-texts"] = tl_fuzz::PackInput(
        {config,
         "1010\t%s%s%s%s\n1011\t%-*d|%+08.3f|%#x|%c|%%\n2039\t%999d %.400f\n2040\t%lls %hhd %e %G\n"
         "2041\t%5.2s %o %X %i %u %\n5054\t%n%p%ls\n"});
    seeds["seed-long-text"] =
        tl_fuzz::PackInput({config, "2039\t" + std::string(3000, 'w') + "\n2040\tend\n"});
}

// Flight CSV: the example flight, cut short, and variations of its columns and rows.
void FlightCsvSeeds(TSeeds& seeds) {
    const std::string flight = ReadSource("examples/flight.csv");
    const std::string header = FirstLines(flight, 1);
    const std::string rows = FirstLines(flight, 13).substr(header.size());
    seeds["seed-flight"] = flight;
    seeds["seed-flight-short"] = FirstLines(flight, 13);
    seeds["seed-header-only"] = header;
    seeds["seed-crlf"] = ReplaceAll(FirstLines(flight, 13), "\n", "\r\n");
    seeds["seed-upper-case-columns"] = ReplaceAll(ReplaceAll(header, "lat", "LAT"), "swath", "Swath") + rows;
    seeds["seed-quoted-fields"] = header + ReplaceAll(ReplaceAll(rows, "North 40", "\"North, \"\"40\"\"\""),
                                                      "J.Smith", "\"J.\nSmith\"");
    seeds["seed-required-only"] =
        "run,time,lat,lon,heading,speed,spray,swath\n"
        "1,2024-06-01T14:03:10.00,45.493,-93.26,45,45.0,1,18.288\n"
        "1,2024-06-01T14:03:11.00,45.4932863,-93.2595922,45,45.0,1,18.288\n"
        "2,2024-06-01T14:03:12.00,45.4935726,-93.2591844,225,45.0,0,18.288\n";
    seeds["seed-many-channels"] =
        "run,time,lat,lon,heading,speed,spray,swath,rate,target,rate2,target2,rate10,target10,extra\n"
        "0,2024-06-01T14:03:10.00,45.493,-93.26,45,45.0,1,18.288,1.5,2,3.5,4,9.5,10,z\n"
        "0,2024-06-01T14:03:11.00,45.4932863,-93.2595922,45,45.0,1,18.288,1.5,2,3.5,4,9.5,10,z\n";
    seeds["seed-missing-column"] = ReplaceAll(header, "heading,", "") + rows;
    seeds["seed-bad-number"] = header + ReplaceAll(rows, "45.0,0,18.288", "fast,0,18.288");
    seeds["seed-short-row"] = header + FirstLines(rows, 2) + "0,2024-06-01T14:03:13.00,45.49\n";
    seeds["seed-samples-apart"] = header + ReplaceAll(rows, "14:03:1", "14:1");
}

// Readers whose tests keep hand-written files: those files as they are, and each cut short.
void TestDataSeeds(TSeeds& seeds, const char* folder, const char* extension) {
    for (const fs::directory_entry& e :
         fs::directory_iterator(std::string(TL_GIS_SOURCE_DIR) + "/" + folder)) {
        if (e.path().extension() != extension) continue;
        const std::string text = ReadFile(e.path().string());
        seeds["seed-" + e.path().stem().string()] = text;
        seeds["seed-" + e.path().stem().string() + "-cut"] = text.substr(0, text.size() / 2);
    }
}
// DXF: the test drawings, and each once more for the complete profile, which the fuzz target
// chooses for an input whose last byte is odd: the drawing without its last LF ends in CR. A
// drawing of the curves, points and texts that only the complete profile reads joins them.
void DxfSeeds(TSeeds& seeds) {
    TestDataSeeds(seeds, "tests/data/dxf", ".dxf");
    for (const fs::directory_entry& e :
         fs::directory_iterator(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/dxf")) {
        const std::string text = ReadFile(e.path().string());
        if (e.path().extension() == ".dxf" && text.ends_with("\r\n"))
            seeds["seed-" + e.path().stem().string() + "-complete"] = text.substr(0, text.size() - 1);
    }
    const std::string curves = ReplaceAll(
        "0|SECTION|2|HEADER|9|$ACADVER|1|AC1009|9|$DWGCODEPAGE|3|ANSI_1252|0|ENDSEC|0|SECTION|2|ENTITIES|"
        "0|LWPOLYLINE|8|F30|90|3|70|1|10|10.5|20|45.2|42|0.5|10|10.6|20|45.2|10|10.6|20|45.3|42|-1|"
        "0|POLYLINE|8|ROAD_OPEN|66|1|70|0|0|VERTEX|8|ROAD_OPEN|10|10.5|20|45.2|42|1|"
        "0|VERTEX|8|ROAD_OPEN|10|10.6|20|45.2|0|VERTEX|8|ROAD_OPEN|70|16|10|10.7|20|45.3|0|SEQEND|"
        "0|CIRCLE|8|H12|10|10.55|20|45.25|40|0.01|0|ARC|8|A41|10|10.55|20|45.25|40|0.01|50|30|51|300|"
        "0|POINT|8|MARKER_3|10|10.57|20|45.27|0|TEXT|8|MARKER_3|10|10.57|20|45.27|40|0.0001|1|Gate %%d "
        "\\U+00E9|"
        "0|POINT|8|POINTS|10|10.58|20|45.28|0|MTEXT|8|0|10|10.59|20|45.29|3|{\\fArial;Long }|1|text\\Pend|"
        "0|ENDSEC|0|EOF|",
        "|", "\r\n");
    seeds["seed-curves-points-texts-complete"] = curves.substr(0, curves.size() - 1);
}
// A pair of the objects the complete profile reads, with a table in another delimiter and charset.
constexpr const char* kCompleteMif =
    "Version 300\nCharset \"WindowsLatin1\"\nDelimiter \";\"\nCoordSys Earth Projection 1, 104\n"
    "Columns 4\n  ID Char(10)\n  BOUND Char(4)\n  VALUE Float\n  NAME Char(10)\nData\n\n"
    "Region 3\n  4\n0 40\n10 40\n10 50\n0 40\n  3\n2 42\n8 42\n5 48\n  3\n4 43\n6 43\n5 45\n"
    "    Pen (1,2,0)\nPline Multiple 2\n  2\n1 45\n2 46\n  3\n3 45\n4 45\n5 46\nLine 1 45 2 46\n"
    "Point 1 45\n    Symbol (35,0,12)\nMultipoint 2\n1 45\n2 46\nText\n  \"gate\"\n  1 45 2 46\n"
    "Collection 2\n  Region 1\n  3\n1 45\n2 45\n2 46\n  Pline 2\n1 45\n2 46\nRegion 1\n  3\n1 45\n2 45\n2 "
    "46\n";
constexpr const char* kCompleteMid =
    "f;INC;7.5;\nd;OPEN;1;\nl;OPEN;2;\ng;;3;\"G\xe9t\"\nw;;;\nt;;;\nc;INC;4;\nz;EXC;;\n";

// An input of the complete profile: a byte with its top bit set, then the packed pair.
std::string CompleteInput(const std::string& mif, const std::string& mid) {
    return "\x80" + tl_fuzz::PackInput({mif, mid});
}

// MIF: the test files alone (the default profile) and without a .mid (the complete profile), and
// a pair of every object the complete profile reads as it is and as the complete profile
// writes it back.
void MifSeeds(TSeeds& seeds) {
    TestDataSeeds(seeds, "tests/data/midmif", ".mif");
    TSeeds complete;
    for (const auto& [name, text] : seeds) complete[name + "-complete"] = CompleteInput(text, "");
    seeds.merge(complete);
    seeds["seed-complete-pair"] = CompleteInput(kCompleteMif, kCompleteMid);
    const TCompleteProfile profile;
    const std::string input = tl_fuzz::WriteScratchFile("in.mif", kCompleteMif);
    tl_fuzz::WriteScratchFile("in.mid", kCompleteMid);
    TMapLayer layer;
    const std::string output = tl_fuzz::ScratchFolder() + "/out.mif";
    if (TGisFileMidMif{}.LoadFile(input.c_str(), &layer, nullptr) == GISFILE_OK &&
        TGisFileMidMif{}.WriteFile(output.c_str(), &layer) == GISFILE_OK)
        seeds["seed-complete-pair-written"] =
            CompleteInput(tl_fuzz::ReadScratchFile("out.mif"), tl_fuzz::ReadScratchFile("out.mid"));
}
void PmhSeeds(TSeeds& seeds) {
    TestDataSeeds(seeds, "tests/data/pmh", ".pmh");
}

void WriteSeeds(const fs::path& folder, const TSeeds& seeds) {
    fs::create_directories(folder);
    for (const auto& [name, bytes] : seeds) {
        std::ofstream out(folder / name, std::ios::binary);
        out << bytes;
    }
    std::printf("%s: %zu seeds\n", folder.string().c_str(), seeds.size());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUT_FOLDER\n", argv[0]);
        return 2;
    }
    tl_fuzz::PrepareInput(0);
    const fs::path out(argv[1]);
    const struct {
        const char* target;
        void (*make)(TSeeds&);
    } targets[] = {{"job", JobSeeds},
                   {"shp", ShpSeeds},
                   {"language", LanguageSeeds},
                   {"flight_csv", FlightCsvSeeds},
                   {"dxf", DxfSeeds},
                   {"mif", MifSeeds},
                   {"pmh", PmhSeeds}};
    for (const auto& t : targets) {
        TSeeds seeds;
        t.make(seeds);
        WriteSeeds(out / t.target, seeds);
    }
    return 0;
}
