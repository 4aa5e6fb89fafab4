// What tlgis tells of a load: the report in info's summary and JSON, notes from convert, and
// exit status 1 with one line saying why for a load that stopped early or added nothing from a
// file that held data; the projected-coordinate question once per file.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "../gis/shp/shp_test_files.h"
#include "test_support.h"
#include "tool_run.h"

namespace {

using namespace shp_test;

// Files whose loads stop, leave everything out, or leave bytes unread.
void WriteSamples(const TTempDir& dir) {
    const std::string point = PointContent(-93.25, 45.5);
    std::string pointZ;
    PutLE32(pointZ, 11);
    pointZ.append(32, '\0');
    WriteFileBytes(dir.File("stopped.mif"), "Version 300\r\nData\r\nPline 2\r\n10 45\r\n500000 5000000\r\n");
    WriteFileBytes(dir.File("stopped.shp"), TShpBytes()
                                                .Record(1, point)
                                                .Record(2, PolyContent(3, {0}, {{-93.25, 45.5}, {200, 95}}))
                                                .Record(3, point)
                                                .Record(4, point)
                                                .Bytes());
    WriteFileBytes(
        dir.File("projected.shp"),
        TShpBytes().Record(1, PolyContent(3, {0}, {{500000, 5000000}, {500100, 5000100}})).Bytes());
    WriteFileBytes(dir.File("binary.dxf"), std::string("AutoCAD Binary DXF\r\n\x1a\0\x00\x01", 24));
    WriteFileBytes(dir.File("z.shp"),
                   TShpBytes().Record(1, pointZ).Record(2, pointZ).Record(3, pointZ).Bytes());
    WriteFileBytes(dir.File("junk.shp"),
                   TShpBytes().Record(1, point).Record(2, point).Raw("\x01junk").Bytes());
    WriteFileBytes(dir.File("splines.dxf"),
                   "  0\nSECTION\n  2\nENTITIES\n  0\nSPLINE\n  8\n0\n  0\nENDSEC\n  0\nEOF\n");
}

TEST(TlgisLoadReport, ExitStatusAndMessages) {
    TTempDir dir;
    WriteSamples(dir);
    const std::string shpStop =
        "stopped after record 2: its last point (95, 200) is outside the degree range; records 3.. were not "
        "read, 2 records";
    const std::string mifStop =
        "stopped at line 5: a point (5000000, 500000) looks projected (answered Yes; either answer ends the "
        "reading); it was the last line";
    const std::string zOnly = "3 PointZ records not read (shape type 11)";
    const std::string junk =
        "5 bytes after the last record not read; first: after record 2 (the file ends 5 bytes into the "
        "header of the record after record 2)";
    const std::string binary =
        "stopped at line 1: the file is a binary DXF (it starts with \"AutoCAD Binary DXF\"); only ASCII DXF "
        "is read";
    const std::vector<TToolCase> cases = {
        {"info, stopped MIF", "info stopped.mif", 1,
         "Stopped:  at line 5: a point (5000000, 500000) looks projected",
         "tlgis: reading stopped.mif " + mifStop + "\n"},
        {"convert, stopped MIF", "convert stopped.mif out1.shp", 1, "",
         "tlgis: reading stopped.mif " + mifStop + "\n"},
        {"info, stopped shapefile", "info stopped.shp", 1,
         "Result:   2 (the last point of a record is outside the degree range; reading stopped there)\n",
         "tlgis: reading stopped.shp " + shpStop + " (2)\n"},
        {"convert, stopped shapefile", "convert stopped.shp out2.mif", 1, "",
         "tlgis: reading stopped.shp " + shpStop + " (2)\n"},
        {"info, binary DXF", "info binary.dxf", 1, "Stopped:  at line 1: the file is a binary DXF",
         "tlgis: reading binary.dxf " + binary + "\n"},
        {"convert, binary DXF", "convert binary.dxf out3.job", 1, "",
         "tlgis: reading binary.dxf " + binary + "\n"},
        {"info, Z-only shapefile", "info z.shp", 1,
         "Elements: 0\nSkipped:  " + zOnly + "; first: record 1\nStopped:  no, the whole file was read\n",
         "tlgis: reading z.shp added nothing: " + zOnly + "\n"},
        {"convert, Z-only shapefile", "convert z.shp out4.mif", 1, "",
         "tlgis: z.shp: " + zOnly + "; first: record 1\ntlgis: reading z.shp added nothing: " + zOnly + "\n"},
        {"quiet keeps the exit status and its line", "convert z.shp out5.mif --quiet", 1, "",
         "tlgis: reading z.shp added nothing"},
        {"DXF of splines only", "convert splines.dxf out6.mif", 1, "",
         "tlgis: reading splines.dxf added nothing: 1 SPLINE entity not read\n"},
        {"info, junk after the last record", "info junk.shp", 0, "Skipped:  " + junk + "\nStopped:  no", ""},
        {"convert, junk after the last record: a note", "convert junk.shp out7.mif", 0, "",
         "tlgis: junk.shp: " + junk + "\ntlgis: wrote out7.mif\n", "out7.mif", "Version 300"},
    };
    for (const TToolCase& c : cases) RunToolCase(dir.Path(), c);
    for (const char* unwritten : {"out1_Spray_Polys.shp", "out1.shp", "out2.mif", "out3.job", "out4.mif"})
        EXPECT_FALSE(std::filesystem::exists(dir.File(unwritten)))
            << unwritten << " written from a load that stopped";
}

// The question is printed and answered once for a file of many projected points; skip is the
// old spelling of continue.
TEST(TlgisLoadReport, ProjectedQuestionOncePerFile) {
    TTempDir dir;
    WriteSamples(dir);
    const std::string stop =
        "tlgis: reading projected.shp stopped after record 1: its last point (5000100, 500100) looks "
        "projected; it was the last record (1)\n";
    const std::vector<TToolCase> cases = {
        {"continue", "info projected.shp --projected continue", 1,
         "Skipped:  2 coordinate pairs that look projected kept as read, as latitude and longitude; first: "
         "record 1",
         "answered No (--projected continue), and so for the rest of this file\n" + stop},
        {"skip", "info projected.shp --projected skip", 1, "",
         "tlgis: --projected skip is now spelled --projected continue; skip is taken as continue until the "
         "next release\n"},
        {"stop", "info projected.shp", 1, "Stopped:  at record 1: the projected-coordinate question",
         "answered Yes (--projected stop), and so for the rest of this file\n"},
    };
    for (const TToolCase& c : cases) {
        const TCommandResult r = RunToolCase(dir.Path(), c);
        std::size_t answers = 0;
        for (std::size_t at = r.strErr.find("(--projected "); at != std::string::npos;
             at = r.strErr.find("(--projected ", at + 1))
            ++answers;
        EXPECT_EQ(answers, 1u) << c.name << "\n" << r.strErr;
    }
}

// The "report" member of info --json, read back by Python: added by kind, each cause with its
// count and first place, the stop or null; printed whole when the exit status is 1.
TEST(TlgisLoadReport, InfoJsonReport) {
    if (!HaveProgram(TL_GIS_PYTHON))
        GTEST_SKIP() << TL_GIS_PYTHON " is missing; run scripts/install-test-tools.sh";
    TTempDir dir;
    WriteSamples(dir);
    const std::pair<const char*, std::string> cases[] = {
        {"z.shp",
         "1 ['added', 'skipped', 'stopped'] {} [{'cause': 'PointZ records not read (shape type 11)', "
         "'count': 3, 'first': 'record 1'}] None\n"},
        {"stopped.shp",
         "1 ['added', 'skipped', 'stopped'] {'boundary': 1, 'point': 1} [{'cause': 'coordinate pairs out of "
         "the degree range kept as read, as latitude and longitude', 'count': 1, 'first': 'record 2'}] "
         "{'reason': 'its last point (95, 200) is outside the degree range; records 3.. were not read, 2 "
         "records', 'at': 'after record 2'}\n"},
        {"junk.shp",
         "0 ['added', 'skipped', 'stopped'] {'point': 2} [{'cause': 'bytes after the last record not read', "
         "'count': 5, 'first': 'after record 2 (the file ends 5 bytes into the header of the record after "
         "record 2)'}] None\n"},
    };
    for (const auto& [file, parsed] : cases) {
        const std::string report =
            "sorted(d['report']), *(d['report'][k] for k in ('added', 'skipped', 'stopped'))";
        EXPECT_EQ(InfoJsonInPython(dir.Path(), file, report), parsed) << file;
    }
}

}  // namespace
