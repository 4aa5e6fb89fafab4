#pragma once
// Recorded spray for the writer tests, and the writer's files read back and cross-checked.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/hostmap/map_layer.h>
#include "gis/shp/shp_codec.h"
#include "gis/shp/shp_record_writer.h"
#include "shp_test_files.h"
#include "test_support.h"

namespace shp_test {

// Runs a peer's Python script (pyshp or GDAL writing shapefiles), stored in the folder, with the
// folder and the writer's name as its arguments; output and errors come in one text.
inline TCommandResult RunPeerScript(const TTempDir& dir, const char* script, const char* writer) {
    WriteFileBytes(dir.File("peer.py"), script);
    return RunCommand(std::string(TL_GIS_PYTHON) + " " + ShellQuote(dir.File("peer.py")) + " " +
                      ShellQuote(dir.Path()) + " " + writer + " 2>&1");
}

// True when the peer writer or reader ("gdal" or "pyshp") is installed.
inline bool HavePeer(const std::string& peer) {
    if (peer == "gdal") return HaveProgram("ogr2ogr") && HaveProgram("ogrinfo");
    return RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import shapefile'").iExit == 0;
}
#define SKIP_WITHOUT_PEER(peer) \
    if (!HavePeer(peer)) GTEST_SKIP() << peer << " is missing (scripts/install-test-tools.sh installs it)"

// GDAL's ogrinfo reads the shapefile with no error or warning, and finds the features and the
// texts given.
inline void ExpectGdalReads(const std::string& shp, std::size_t features, const std::string& text = "") {
    const TCommandResult info = RunCommand("ogrinfo -al " + ShellQuote(shp) + " 2>&1");
    EXPECT_TRUE(info.iExit == 0 &&
                info.strOut.find("Feature Count: " + std::to_string(features)) != std::string::npos &&
                info.strOut.find(text) != std::string::npos &&
                info.strOut.find("ERROR") == std::string::npos &&
                info.strOut.find("Warning") == std::string::npos)
        << shp << "\n"
        << info.strOut;
}

struct TSamplePlan {
    double dLat = 0.0;
    double dLon = 0.0;
    double dHeading = 0.0;  // degrees
    double dWidth = 20.0;   // metres
    int iSpray = 1;
};

// n samples flown on a steady heading, stepM apart, from (45.5, -93.25); spray gives the first
// samples' flags, the rest spray.
inline std::vector<TSamplePlan> Straight(int n, double heading, double stepM = 20.0,
                                         std::vector<int> spray = {}) {
    std::vector<TSamplePlan> out;
    for (TLoc at(45.5, -93.25); std::ssize(out) < n; at = at.Offset(heading, stepM))
        out.push_back({at.dLat, at.dLon, heading, 20.0, out.size() < spray.size() ? spray[out.size()] : 1});
    return out;
}

// A spray element with one sample per plan, one second apart from 14:03:00.50 on 1 June 2024,
// 50 m/s, 10 m high, line 7, field "North 40", offset "R"; added to the layer with its extents.
inline TFeatureSpray* AddSpray(TMapLayer& layer, const std::vector<TSamplePlan>& samples) {
    auto* spray = new TFeatureSpray(static_cast<int>(samples.size()));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const TSamplePlan& s = samples[i];
        tagSPRAYREC& r = spray->m_pRecs[i];
        r.locPos = {s.dLat, s.dLon};
        TFeatureSpray::SwathEnds(r.locPos, s.dHeading, s.dWidth, r.locSwathA, r.locSwathB);
        r.dSwathWidth = s.dWidth;
        r.sHeading = static_cast<std::int16_t>(s.dHeading);
        r.bySpray = static_cast<std::uint8_t>(s.iSpray);
        r.sBoom = static_cast<std::int16_t>(s.iSpray != 0);
        r.dSpeed = 50.0;
        r.sHeight = 50;
        r.dAgl = 3.0;
        r.sLine = 7;
        r.sTrack = 250;
        r.strFieldName = "North 40";
        r.strOffset = "R";
        r.afActualRate[0] = 50.0f;
        r.afTargetRate[0] = 48.0f;
        SetSprayText(r.szAircraft, sizeof r.szAircraft, "N512AG");
        SetSprayText(r.szPilot, sizeof r.szPilot, "J.Smith");
        PackSprayTime({2024, 6, 1, 14, 3, static_cast<int>(i % 60), 50}, r);
    }
    spray->CalculateGeoExtents();
    layer.AddElement(spray, ADD_ELEMENT_OWNED);
    return spray;
}

struct TShape {
    int iType = 0;
    std::vector<tagLOC> Points;
};

struct TTriple {
    std::string strStem;  // empty when the triple was not written
    std::string strShp, strShx, strDbf;
    std::vector<TShape> Shapes = {};  // decoded with the reader's codec
    int iRecordCount = 0;             // of the table
    std::size_t nHeaderLength = 0;
    std::vector<std::string> Names = {};
    std::string strTypes = {};                        // 'C' or 'N' per field
    std::vector<std::vector<std::string>> Rows = {};  // raw field texts, blanks kept
};

inline std::size_t Word16(const std::string& b, std::size_t at) {
    return static_cast<unsigned char>(b[at]) | static_cast<unsigned char>(b[at + 1]) << 8;
}

// Reads back the triple of a stem and checks that shapes, index entries, the table's count and
// rows and the headers' lengths agree. A table without fields keeps its count but no rows; one
// without records may lack its end byte.
inline TTriple ReadTriple(const std::string& stem) {
    TTriple t{stem, ReadFileBytes(ShpTriplePath(stem, "shp")), ReadFileBytes(ShpTriplePath(stem, "shx")),
              ReadFileBytes(ShpTriplePath(stem, "dbf"))};
    if (t.strShp.size() < 100 || t.strShx.size() < 100 || t.strDbf.size() < 32) return {};
    const auto* p = reinterpret_cast<const unsigned char*>(t.strShp.data());
    for (std::size_t at = SHP_HEADER_BYTES, length = 0; at + 8 <= t.strShp.size(); at += 8 + length) {
        const TShpRecordHeader h = DecodeShpRecordHeader(p + at, SHP_ORDER_BIG);
        length = static_cast<std::size_t>(h.iContentWords) * 2;
        TShape& s = t.Shapes.emplace_back(TShape{p[at + 8], {{}}});
        std::string problem = at + 8 + length > t.strShp.size() ? "runs past the file" : "";
        TShpPolyRecord poly;
        if (problem.empty() && s.iType != SHPT_POINT && poly.Decode(p + at + 8, length, problem)) {
            s.Points.resize(static_cast<std::size_t>(poly.GetPointCount()));
            poly.CopyPoints(0, poly.GetPointCount(), s.Points.data());
        }
        if (problem.empty() && s.iType == SHPT_POINT)
            DecodeShpPoint(p + at + 8, length, s.Points[0], problem);
        if (!problem.empty()) ADD_FAILURE() << stem << " record " << h.iNumber << ": " << problem;
        if (!problem.empty()) break;
    }
    t.iRecordCount = static_cast<int>(Word16(t.strDbf, 4) | Word16(t.strDbf, 6) << 16);
    t.nHeaderLength = Word16(t.strDbf, 8);
    const std::size_t recordLength = Word16(t.strDbf, 10), shapes = t.Shapes.size();
    std::vector<std::size_t> widths;
    for (std::size_t at = 32; at + 32 <= t.strDbf.size() && t.strDbf[at] != 0x0D; at += 32) {
        t.Names.emplace_back(t.strDbf.c_str() + at);
        t.strTypes += t.strDbf[at + 11];
        widths.push_back(static_cast<unsigned char>(t.strDbf[at + 16]));
    }
    for (std::size_t at = t.nHeaderLength + 1; !widths.empty() && at + recordLength <= t.strDbf.size() + 1;
         at += recordLength) {
        std::vector<std::string>& row = t.Rows.emplace_back();
        std::size_t field = at;
        for (std::size_t w : widths) row.push_back(t.strDbf.substr(field, w)), field += w;
    }
    const std::size_t entries = (t.strShx.size() - 100) / 8,
                      tableBytes = t.nHeaderLength + recordLength * t.Rows.size();
    const auto bytes = [](const std::string& b) {
        return DecodeShpHeader(reinterpret_cast<const unsigned char*>(b.data())).iFileLengthWords * 2u;
    };
    EXPECT_TRUE(bytes(t.strShp) == t.strShp.size() && bytes(t.strShx) == t.strShx.size() &&
                entries == shapes && (widths.empty() || t.Rows.size() == shapes) &&
                t.iRecordCount == static_cast<int>(shapes) &&
                (t.strDbf == t.strDbf.substr(0, tableBytes) + '\x1A' ||
                 (shapes == 0 && t.strDbf.size() == tableBytes)))
        << stem << ": " << shapes << " shapes, " << entries << " index entries, " << t.Rows.size()
        << " rows, count " << t.iRecordCount << ", " << t.strDbf.size() << " table bytes";
    return t;
}

struct TWriteOptions {
    int iSpray = ESRI_SPRAY_POLYGONS;
    int iNonSpray = ESRI_NONSPRAY_POLYLINES;
    int iWriteMode = 1;
    bool bSingleBlock = false;
    bool bMetric = false;
    std::string strCompany = "Acme Aerial";
    std::string strSource = "flight.csv";  // in the folder
};

struct TExport {
    int iResult = 0;
    TTriple Spray;  // or the boundaries
    TTriple NonSpray;
};

// Writes the layer to dir/name and reads back the triples written. Without a source file the
// non-spray triple goes to the current folder and is removed after reading.
inline TExport Export(TMapLayer& layer, const TWriteOptions& o, const TTempDir& dir,
                      const std::string& name = "f.shp") {
    TScriptedMessages quiet;
    TGisFileShp::s_eESRISprayFormat = static_cast<ESRISPRAYFORMAT>(o.iSpray);
    TGisFileShp::s_eESRINonSprayFormat = static_cast<ESRINONSPRAYFORMAT>(o.iNonSpray);
    const std::string source = o.strSource.empty() ? "" : dir.File(o.strSource);
    TGisFileShp writer;
    writer.m_iWriteMode = o.iWriteMode;
    writer.SetSingleBlockMode(o.bSingleBlock ? 1 : 0);
    writer.SetMetric(o.bMetric ? 1 : 0);
    writer.SetCompanyName(o.strCompany);
    writer.SetSourceFile(source);
    const int result = writer.WriteFile(dir.File(name).c_str(), &layer);
    const std::string nonSprayStem = TGisFileShp::GetNonSprayOutputStem(source);
    TExport out{result, ReadTriple(TGisFileShp::GetSprayOutputStem(dir.File(name))),
                ReadTriple(nonSprayStem)};
    TGisFileShp::s_eESRISprayFormat = ESRI_SPRAY_POLYGONS;
    TGisFileShp::s_eESRINonSprayFormat = ESRI_NONSPRAY_POLYLINES;
    for (const char* ext : {"shp", "shx", "dbf"})
        if (source.empty()) std::filesystem::remove(ShpTriplePath(nonSprayStem, ext));
    return out;
}
inline TExport Export(TMapLayer& layer, const TWriteOptions& o) {
    TTempDir dir;
    return Export(layer, o, dir);
}

}  // namespace shp_test
