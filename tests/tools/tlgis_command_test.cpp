// The tlgis tool as a user runs it: help, exit statuses, the result codes it reports, progress
// on a pipe, the JSON report, and the options each format adds.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "test_support.h"
#include "tool_run.h"

namespace {

const char* const kJob =
    ".JOB 12 FARM\r\n.VERSION 1\r\n.MAR 3 Gate\r\n\tTYPE 5\r\n\t45.5 -93.25\r\n"
    ".PAT 7 P\r\n\tEXPAND\r\n\tRIGHT\r\n\tSWIDTH 60\r\n\tFIELD_WIDTH 600\r\n\tOFFSET 10\r\n\tABLINES  2\r\n"
    "\tA 45.5 -93.2\r\n\tB 45.51 -93.2\r\n\tD 45.51 -93.19\r\n"
    ".POL 1 x\r\n\tINC\r\n\t45.5 -93.3\r\n\t45.6 -93.3\r\n\t45.6 -93.2\r\n";

// Python runs the tool and prints its exit status and what it parsed. Point C of the pattern is
// not valid and is not listed. Marker names come out as UTF-8 whether the file held them in
// Windows Latin 1 (the system's texts) or in UTF-8.
TEST(TlgisTool, InfoJsonParsesBack) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveProgram(TL_GIS_PYTHON))
        GTEST_SKIP() << TL_GIS_PYTHON " is missing; run scripts/install-test-tools.sh";
    TTempDir dir;
    WriteFileBytes(dir.File("12.job"), kJob);
    // A drawing's attribute text in Windows Latin 1, and a GeoJSON name in UTF-8.
    WriteFileBytes(dir.File("m.dxf"),
                   "  0\nSECTION\n  2\nENTITIES\n  0\nINSERT\n  8\n0\n  2\nB\n 10\n10.1\n 20\n45.1\n 66\n1\n"
                   "  0\nATTRIB\n  8\n0\n 10\n10.8\n 20\n45.5\n  1\nM\xFC"
                   "ller\n  2\nTGR_NAME\n"
                   "  0\nSEQEND\n  0\nENDSEC\n  0\nEOF\n");
    WriteFileBytes(dir.File("m.geojson"), R"({"type":"Feature","properties":{"name":"M\u00fcller"},)"
                                          R"("geometry":{"type":"Point","coordinates":[-93.25,45.5]}})");
    const std::pair<const char*, std::string> cases[] = {
        {"12.job",
         "0 1 0 ['marker', 'pattern', 'boundary'] [('EXPAND', 18.288, ['A', 'B', 'D'])] ['Gate']\n"},
        {"m.dxf", "0 3 0 ['marker'] [] ['M\\xfcller']\n"},
        {"m.geojson", "0 6 0 ['marker'] [] ['M\\xfcller']\n"},
        {"gone.job", "1 1 6002 [] [] []\n"}};
    const std::string printed =
        "d['type'], d['result'], [e['kind'] for e in d['elements']], [(e['pattern_kind'], "
        "e['swath_width_m'], "
        "sorted(e['points'])) for e in d['elements'] if e['kind'] == 'pattern'], "
        "ascii([e['name'] for e in d['elements'] if 'name' in e])";
    for (const auto& [file, parsed] : cases)
        EXPECT_EQ(InfoJsonInPython(dir.Path(), file, printed), parsed) << file;
}

// Run A sprays three samples 100 m apart with channel-2 rates 10, 30 and 20 L/ha.
const char* const kFlight =
    "run,time,lat,lon,heading,speed,spray,swath,height,rate,rate2\n"
    "A,2024-06-01T14:03:10.00,45.5,-93.25,0,50,1,20,100,5,10\n"
    "A,2024-06-01T14:03:11.00,45.500899753,-93.25,0,40,1,20,50,6,30\n"
    "A,2024-06-01T14:03:12.50,45.501799507,-93.25,0,60,1,20,0,7,20\n"
    "B,2024-06-01T14:04:00.00,45.6,-93.2,90,50,0,20,0,9,9\n";

// Help, usage errors (exit 2), result codes, progress on a pipe and the options of each format.
TEST(TlgisTool, CommandsAndOptions) {
    TTempDir dir;
    WriteFileBytes(dir.File("notes.txt"), "not a map\r\n");
    WriteFileBytes(dir.File("12.job"), kJob);
    WriteFileBytes(dir.File("flight.csv"), kFlight);
    WriteFileBytes(dir.File("track.csv"),
                   "run,time,lat,lon,heading,speed,spray,swath,height,rate,target\n"
                   "B,2024-06-01T14:04:00.00,45.6,-93.2,90,50,0,20,0,9,9\n"
                   "B,2024-06-01T14:04:01.00,45.6,-93.199,90,50,0,20,0,9,9\n");
    WriteFileBytes(dir.File("in.mif"), "Version 300\nData\nPLINE 3\n-93 45\n-92.9 45\n-92.9 45.1\n");
    const std::string kFieldFolder = "Feld M\xC3\xBCller";
    std::filesystem::create_directory(Utf8Path(dir.File(kFieldFolder)));
    // The tool names what it wrote with the system's own folder separator.
    const std::string kSeparator(1, static_cast<char>(std::filesystem::path::preferred_separator));
    const std::string usage = "Usage: tlgis COMMAND [ARGS] [OPTIONS]\n\nCommands:\n  info FILE";
    const std::vector<TToolCase> cases = {
        {"--help", "--help", 0, usage + " [--json] [--points]", ""},
        {"help convert", "help convert", 0, "Usage: tlgis convert IN OUT", ""},
        {"no command", "", 2, "", usage},
        {"unknown command", "frobnicate", 2, "", "unknown command 'frobnicate'"},
        {"misspelt flag", "info - --jsno", 2, "", "lists the options of every format)\n" + usage},
        {"no such answer", "--projected maybe info -", 2, "", "--projected takes stop, continue or ask"},
        {"value missing", "info - --config", 2, "", "option --config needs a value"},
        {"value given to a flag", "info - --quiet=yes", 2, "", "option --quiet takes no value"},
        {"info with two files", "info a.job b.job", 2, "", "usage: tlgis info FILE"},
        {"batch without a format", "convert a.job -o out", 2, "", "usage: tlgis convert IN... -o DIR"},
        {"missing file", "info missing.job", 1, "Result:   6002", "missing.job (no such file) (6002)"},
        {"folder given as a file", "info ./", 1, "Result:   6002", "not a file) (6002)"},
        {"no format for the name", "info notes.txt", 1, "Result:   6001", "no format for"},
        {"no format to write", "convert - out.xyz", 1, "", "(6001)"},
        {"--progress",
         "convert " + ShellQuote(TL_GIS_SOURCE_DIR "/examples/field.job") + " field.mif --progress", 0, "",
         "0...10...20...30...40...50...60...70...80...90...100 - done.\nwriting field.mif ... done in "},
        {"JOB version 3", "convert 12.job North.job --job-version 3", 0, "", "", "North.job",
         ".JOB 9999 9999\r\n.VERSION 3\r\n.JNM North\r\n"},
        {"PMH from a job", "convert 12.job out.pmh --pmh-units 10", 0, "",
         "2 elements left out of the PMH file, which holds polygons only (marker 1, pattern 1)", "out.pmh",
         "10 KG / HECTARE\r\n.POL\r\nINC 0.00000000\r\n45.50000000 -93.30000000\r\n"},
        {"PMH from a job, complete profile: line 31 blank", "convert 12.job full.pmh --complete", 0, "", "",
         "full.pmh", "0.0000 0.0000 0.0000\r\n\r\n\r\n.POL\r\n"},
        {"MID delimiter", "convert in.mif tab.mif --mid-delimiter TAB --mid-complete-rows", 0, "", "",
         "tab.mid", "1\t\t\t\t\t\t\t\r\n"},
        {"flight as paired swaths",
         "convert - s.mif --spray flight.csv --mid-spray-channels 2 --single-block", 0, "", "", "s.mid",
         ", ON,    3.2072, \r\n06:01:2024,14:03:11.00, 89.5,000,00164, ON,    0.6414, \r\n"},
        {"dotted target name", "convert - two.dots.shp --spray flight.csv", 0, "",
         "the target two.dots.shp holds a '.' in its name or folder, where the shapefile naming rule cuts: "
         "writing two.shp, two.shx and two.dbf",
         "two.shp", ""},
        {"folder named with a non-ASCII letter",
         "convert 12.job " + ShellQuote(kFieldFolder + "/North.job") + " --job-version 3", 0, "", "",
         kFieldFolder + "/North.job", ".JNM North\r\n"},
        {"target in ./", "convert - ./field.shp --spray flight.csv", 0, "",
         kSeparator + "field_Spray_Polys.shx", "field_Spray_Polys.shp", ""},
        {"DXF track flown without spraying", "convert - t.dxf --spray track.csv --spray-only 0", 0, "", "",
         "t.dxf", "ENTITIES\r\n  0\r\nPOLYLINE\r\n  8\r\n1\r\n 62\r\n2\r\n"},
    };
    for (const TToolCase& c : cases) RunToolCase(dir.Path(), c);
}

}  // namespace
