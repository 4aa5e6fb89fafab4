// Reports of random hostile files in every format: result and elements as without a report, texts
// printable (file bytes escaped), every first place numbered, counts adding up.

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include "load_report_check.h"
#include "shp/shp_test_files.h"
#include "test_support.h"

namespace {

// Lines made of the words each reader looks for, numbers in and out of every range, and bytes
// of every value, after the lines a file of the format starts with.
std::string RandomText(std::mt19937& rng, const std::string& start, const std::vector<std::string>& words) {
    static const std::vector<std::string> numbers = {"45.5",  "-93.25", "0.5",     "200", "95",
                                                     "1e999", "500000", "5000000", "-1",  "30001",
                                                     "nan",   "2",      "0",       "",    "1"};
    std::string text = start;
    const int lines = std::uniform_int_distribution<int>(1, 200)(rng);
    for (int i = 0; i < lines; ++i) {
        switch (rng() % 4) {
            case 0:
                text += words[rng() % words.size()];
                break;
            case 1:
                text += words[rng() % words.size()] + " " + numbers[rng() % numbers.size()];
                break;
            case 2:
                text += numbers[rng() % numbers.size()] + " " + numbers[rng() % numbers.size()];
                break;
            default:
                for (int k = std::uniform_int_distribution<int>(0, 12)(rng); k > 0; --k)
                    text += static_cast<char>(rng() % 256);
        }
        text += rng() % 5 == 0 ? "\r\n" : "\n";
    }
    return text;
}

// Group codes, each with a value of the kind it takes.
std::string RandomDrawing(std::mt19937& rng) {
    static const std::vector<std::string> entities = {"LINE",       "POLYLINE",   "VERTEX", "SEQEND",
                                                      "LWPOLYLINE", "INSERT",     "ATTRIB", "CIRCLE",
                                                      "SPLINE",     "\x01\xFF\\X"};
    static const std::vector<std::string> layers = {"0", "A41", "ZIP", "NAME", "CONTOUR", "F30"};
    static const std::vector<std::string> values = {"45.5", "-93.25", "0.5",     "200",
                                                    "95",   "500000", "5000000", "4"};
    std::string text = rng() % 20 == 0 ? "AutoCAD Binary DXF\r\n" : "  0\nSECTION\n  2\nENTITIES\n";
    for (int n = std::uniform_int_distribution<int>(1, 300)(rng); n > 0; --n) {
        switch (rng() % 8) {
            case 0:
            case 1:
                text += "  0\n" + entities[rng() % entities.size()] + "\n";
                break;
            case 2:
                text += "  8\n" + layers[rng() % layers.size()] + "\n";
                break;
            case 3:
                text += " 67\n" + std::to_string(rng() % 2) + "\n";
                break;
            case 4:
                text += "  2\nTGR_NAME\n";
                break;
            default:
                text += " " + std::to_string(std::vector<int>{10, 20, 11, 21, 90, 70}[rng() % 6]) + "\n" +
                        values[rng() % values.size()] + "\n";
        }
    }
    return text + "  0\nEOF\n";
}

std::string RandomShapefile(std::mt19937& rng) {
    using namespace shp_test;
    TShpBytes bytes(rng() % 2 == 0);
    const std::vector<std::uint32_t> types = {0, 1, 3, 5, 8, 11, 13, 15, 18, 21, 23, 25, 28, 31, 77};
    for (int n = std::uniform_int_distribution<int>(0, 30)(rng), i = 1; i <= n; ++i) {
        const std::uint32_t type = types[rng() % types.size()];
        const double x = rng() % 3 == 0 ? 500000.0 : -93.25, y = rng() % 4 == 0 ? 95.0 : 45.5;
        std::string content = type == 1 ? PointContent(x, y)
                              : type == 3 || type == 5
                                  ? PolyContent(type, {0}, {{-93.25, 45.5}, {x, y}, {-93.2, 45.6}, {x, y}})
                                  : PointContent(x, y, type);
        bytes.Record(rng() % 10 == 0 ? 0 : i, content, rng() % 12 == 0 ? 1000 : -1);
    }
    std::string tail;
    for (int k = std::uniform_int_distribution<int>(0, 9)(rng); k > 0; --k)
        tail += static_cast<char>(rng() % 256);
    return bytes.Raw(tail).Bytes();
}

bool IsPrintable(const std::string& text) {
    for (unsigned char c : text)
        if (c < 0x20 || c >= 0x7F) return false;
    return true;
}

std::string Elements(const TMapLayer& layer) {
    std::string out;
    for (const TMapElement* e : layer.m_Elements)
        out += GetElementKindName(e->m_dwType) + (":" + e->m_strId) + " ";
    return out;
}

TEST(LoadReport, HostileFilesInEveryFormat) {
    const std::vector<std::string> job = {".POL 1 N", ".GPL 2 N", ".MAR 3 M", ".PAT 4 P",
                                          ".XYZ",     "TYPE",     "INC",      "A"};
    const std::vector<std::string> pmh = {".POL", ".END", "INC", "EXC", "OPEN", ".X"};
    const std::vector<std::string> mif = {"Pline", "Pline Multiple", "Region",     "Point",
                                          "Line",  "Text",           "Multipoint", "Rect",
                                          "Arc",   "none",           "Collection", "Pen (1,2,0)"};
    const struct {
        const char* ext;
        std::function<std::string(std::mt19937&)> make;
    } formats[] = {
        {"job", [&](std::mt19937& r) { return RandomText(r, ".JOB 1 F\n", job); }},
        {"pmh", [&](std::mt19937& r) { return RandomText(r, std::string(31, '\n'), pmh); }},
        {"dxf", &RandomDrawing},
        {"mif", [&](std::mt19937& r) { return RandomText(r, "Version 300\nData\n", mif); }},
        {"shp", &RandomShapefile},
    };
    EnsureLibraryStarted();
    std::mt19937 rng(17);
    TTempDir dir;
    for (const auto& [ext, make] : formats) {
        const std::string path = dir.File(std::string("f.") + ext);
        std::set<int> causes;  // seen in any round, so that the rounds reach the report's paths
        int stops = 0;
        for (int round = 0; round < 150; ++round) {
            WriteFileBytes(path, make(rng));
            const auto answers = ScriptedAnswers(rng() % 2 ? "nnnnnnnn" : "yyyyyyyy");
            TLoadReport report;
            TMapLayer with, without;
            int withResult = 0, withoutResult = 0;
            {
                TScriptedMessages messages(answers);
                withResult = TGisMap().LoadFile(path.c_str(), &with, nullptr, report);
            }
            {
                TScriptedMessages messages(answers);
                withoutResult = TGisMap().LoadFile(path.c_str(), &without, nullptr);
            }
            const std::string name = std::string(ext) + " round " + std::to_string(round);
            ASSERT_EQ(withResult, withoutResult) << name;
            ASSERT_EQ(Elements(with), Elements(without)) << name;
            long long added = 0;
            for (const auto& [kind, count] : report.GetAdded()) added += count;
            EXPECT_EQ(added, static_cast<long long>(with.m_Elements.size())) << name;
            for (const TLoadReport::TSkipped& s : report.GetSkipped()) {
                causes.insert(s.eCause);
                EXPECT_GT(s.lCount, 0) << name;
                EXPECT_TRUE(IsPrintable(s.strCause) && IsPrintable(s.strFirst)) << name << ": " << s.strFirst;
                EXPECT_NE(s.strFirst.find_first_of("0123456789"), std::string::npos)
                    << name << ": " << s.strFirst;
            }
            stops += report.HasStopped() ? 1 : 0;
            if (report.HasStopped()) {
                EXPECT_TRUE(IsPrintable(report.GetStopped().strReason) &&
                            IsPrintable(report.GetStopped().strAt))
                    << name << ": " << report.GetStopped().strReason;
            }
        }
        EXPECT_GE(causes.size(), 5u) << ext << ": the rounds reach too few of the report's causes";
        EXPECT_TRUE(stops > 0 || std::string(ext) == "job" || std::string(ext) == "pmh") << ext;
    }
}

}  // namespace
