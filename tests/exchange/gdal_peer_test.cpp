// GDAL as the oracle: every file we write opens in GDAL with our features, parts, vertices and
// properties and no complaint; files GDAL writes from WKT (and real-world files) load as it wrote them.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>

#include <tl_gis/gis/flight/flight_csv.h>
#include <tl_gis/platform/numbers.h>
#include <nlohmann/json.hpp>
#include "exchange_test_support.h"
#include "layer_export.h"

using namespace exchange_test;
namespace fs = std::filesystem;

namespace {
struct TGdalFeature {
    std::vector<std::vector<tagLOC>> Parts;
    std::vector<std::string> Kinds;  // point, line or ring
    nlohmann::json Fields;
};

struct TGdalView {
    bool bOk = false;
    std::vector<TGdalFeature> Features;
    std::vector<std::string> Complaints;
};

bool HaveGdalPython() {
    return HaveProgram(TL_GIS_PYTHON) &&
           RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import osgeo.ogr'").iExit == 0;
}

struct TGdalCopy {
    std::string strPath, strSource{}, strDriver{};  // no source: the file is only read
};

// Has GDAL write each copy from its source with its driver, then read it. The script prints
// {"file": PATH} (with "failed" when GDAL could not write or read it), a line per feature and
// then GDAL's complaints.
std::map<std::string, TGdalView> ViewWithGdal(const std::vector<TGdalCopy>& copies, const TTempDir& dir) {
    std::string list;
    for (const TGdalCopy& c : copies) list += c.strPath + "\t" + c.strSource + "\t" + c.strDriver + "\n";
    WriteFileBytes(dir.File("copies.txt"), list);
    const std::string script = std::string(TL_GIS_SOURCE_DIR) + "/tests/exchange/gdal_view.py";
    std::istringstream lines(RunCommand(std::string(TL_GIS_PYTHON) + " " + ShellQuote(script) + " " +
                                        ShellQuote(dir.File("copies.txt")))
                                 .strOut);
    std::map<std::string, TGdalView> views;
    TGdalView* current = nullptr;
    for (std::string line; std::getline(lines, line);) {
        const nlohmann::json j = nlohmann::json::parse(line);
        if (j.contains("file")) {
            current = &views[j["file"].get<std::string>()];
            current->bOk = !j.contains("failed");
            if (!current->bOk) current->Features.clear();
        } else if (j.contains("complaints")) {
            current->Complaints = j["complaints"].get<std::vector<std::string>>();
        } else {
            TGdalFeature& f = current->Features.emplace_back();
            for (const auto& part : j["parts"]) {
                f.Parts.emplace_back();
                for (const auto& p : part) f.Parts.back().push_back({p[1].get<double>(), p[0].get<double>()});
            }
            f.Kinds = j["kinds"].get<std::vector<std::string>>();
            f.Fields = j["fields"];
        }
    }
    return views;
}

// The layer the GDAL tests write: every element kind, and the runs of the sample flight.
void FillWithSpray(TMapLayer& layer) {
    FillEveryKind(layer);
    TFlightImport flight =
        ReadFlightCsvFile((std::string(TL_GIS_SOURCE_DIR) + "/examples/flight.csv").c_str());
    ASSERT_EQ(flight.iResult, 0) << flight.strError;
    for (auto& spray : flight.Sprays) {
        spray->ComputeAllSprayStats();
        layer.AddElement(spray.release());
    }
}

// What differs between a property of ours and GDAL's field of the same name.
std::string FieldDifference(const std::string& key, const TPropertyValue& ours,
                            const nlohmann::json& fields) {
    // LIBKML shows a placemark's name as its Name field.
    const std::string field = fields.contains(key) ? key : key == "name" ? "Name" : key;
    if (!fields.contains(field)) return "no field " + key;
    const nlohmann::json& theirs = fields[field];
    switch (ours.eType) {
        case TPropertyValue::PROPERTY_NULL:
            return theirs.is_null() ? "" : key + " is not null";
        case TPropertyValue::PROPERTY_NUMBER: {
            const double a = ours.dNumber;
            const double b = theirs.is_number()
                                 ? theirs.get<double>()
                                 : ParseDouble(theirs.is_string() ? theirs.get<std::string>() : "x");
            // Numbers written with fixed decimals read back rounded to them.
            const double tolerance = ours.iDecimals >= 0 ? 0.5 * std::pow(10.0, -ours.iDecimals) + 1e-12
                                                         : 1e-9 * std::max(1.0, std::fabs(a));
            return std::fabs(a - b) <= tolerance ? "" : key + " " + theirs.dump();
        }
        default:
            return theirs.is_string() && theirs.get<std::string>() == ours.AsText()
                       ? ""
                       : key + " '" + ours.AsText() + "' read as " + theirs.dump();
    }
}

TEST(GdalOpensOurFiles, WithOurFeaturesVerticesAndProperties) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveGdalPython()) GTEST_SKIP() << "GDAL's Python bindings are missing";
    TTempDir dir;
    const std::vector<TGdalCopy> files = {
        {dir.File("ours.geojson")}, {dir.File("ours.kml")}, {dir.File("ours.kmz")}};
    for (const TGdalCopy& file : files) {
        TMapLayer layer;
        FillWithSpray(layer);
        ASSERT_EQ(WriteExchangeFile(file.strPath.c_str(), &layer, {}), 0);
    }
    const std::map<std::string, TGdalView> views = ViewWithGdal(files, dir);
    for (const TGdalCopy& file : files) {
        const std::string& path = file.strPath;
        SCOPED_TRACE(path);
        TMapLayer expected;
        FillWithSpray(expected);
        TExportSettings settings;
        settings.bSwathLines = GetExchangeFileType(path.c_str()) != EXCHANGE_FILE_GEOJSON;
        const std::vector<TExchangeFeature> ours = ExportLayerFeatures(expected, settings);

        ASSERT_TRUE(views.count(path) && views.at(path).bOk);
        const TGdalView& gdal = views.at(path);
        EXPECT_TRUE(gdal.Complaints.empty()) << gdal.Complaints.front();
        ASSERT_EQ(gdal.Features.size(), ours.size());
        for (std::size_t i = 0; i < ours.size(); ++i) {
            std::vector<std::vector<tagLOC>> parts;
            for (const TExchangeGeometry& g : ours[i].Geometries)
                parts.insert(parts.end(), g.Parts.begin(), g.Parts.end());
            const TGdalFeature& theirs = gdal.Features[i];
            ASSERT_EQ(theirs.Parts.size(), parts.size()) << "feature " << i;
            for (std::size_t p = 0; p < parts.size(); ++p) {
                ASSERT_EQ(theirs.Parts[p].size(), parts[p].size()) << "feature " << i << " part " << p;
                for (std::size_t v = 0; v < parts[p].size(); ++v)
                    EXPECT_TRUE(Near(theirs.Parts[p][v], parts[p][v])) << "feature " << i << " vertex " << v;
            }
            for (const auto& [key, value] : ours[i].Properties)
                EXPECT_EQ(FieldDifference(key, value, theirs.Fields), "") << "feature " << i;
        }
    }
}

// Loads the copy GDAL wrote: "" when our reader adds the parts and vertices GDAL wrote (every
// feature all in latitude and longitude; lines of 2 positions or more, rings of 3 or more;
// projected-looking features passed over by answering No) or when GDAL could not write the copy.
std::string CompareWithGdal(const TGdalView& gdal, const std::string& path) {
    if (!gdal.bOk) return "";
    long long parts = 0, vertices = 0;
    for (const TGdalFeature& f : gdal.Features) {
        bool geographic = true;
        for (const auto& part : f.Parts)
            for (const tagLOC& p : part)
                geographic = geographic && std::fabs(p.dLat) <= 90 && std::fabs(p.dLon) <= 180;
        for (std::size_t i = 0; geographic && i < f.Parts.size(); ++i)
            if (f.Parts[i].size() >= (f.Kinds[i] == "ring" ? 3u : f.Kinds[i] == "line" ? 2u : 1u)) {
                ++parts;
                vertices += static_cast<long long>(f.Parts[i].size());
            }
    }
    TScriptedMessages noToAll(std::vector<int>(100000, ANSWER_NO));
    TMapLayer layer;
    TLoadReport report;
    const int result = LoadFile(path, layer, report);
    if (result != 0) return "result " + std::to_string(result);
    for (const TMapElement* e : layer.m_Elements) {
        --parts;
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        vertices -= line != nullptr ? line->m_iNumPoints : 1;
    }
    return parts == 0 && vertices == 0 ? ""
                                       : "GDAL wrote " + std::to_string(parts) + " parts and " +
                                             std::to_string(vertices) + " vertices more than loaded";
}

const char* const kDrivers[][2] = {{"GeoJSON", "geojson"}, {"KML", "kml"}, {"LIBKML", "kml"}};

TEST(GdalWrittenFiles, FromWktLoadWithTheirPartsAndVertices) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveGdalPython()) GTEST_SKIP() << "GDAL's Python bindings are missing";
    TTempDir dir;
    WriteFileBytes(
        dir.File("shapes.csv"),
        "WKT,Name,id\n"
        "\"POLYGON ((-93.26 45.49,-93.26 45.51,-93.24 45.51,-93.24 45.49,-93.26 45.49),(-93.255 45.495,"
        "-93.25 45.495,-93.25 45.5,-93.255 45.5,-93.255 45.495))\",North,1\n"
        "\"MULTIPOLYGON (((-93.1 45.1,-93.1 45.2,-93.0 45.2,-93.1 45.1)),((-93.3 45.3,-93.3 45.4,-93.2 "
        "45.4,-93.3 45.3)))\",,2\n"
        "\"LINESTRING (-93.2 45.5,-93.1 45.6,-93.0 45.6)\",,3\n"
        "\"MULTILINESTRING ((-93.2 45.5,-93.1 45.6),(-93 45,-93.1 45.1))\",,4\n"
        "\"POINT (-93.25 45.5)\",Gate,5\n"
        "\"MULTIPOINT ((-93.2 45.4),(-93.21 45.41))\",,6\n"
        "\"POINT Z (-93.25 45.5 100)\",Tower,7\n");
    std::vector<TGdalCopy> copies;
    for (const auto& [driver, extension] : kDrivers)
        copies.push_back(
            {dir.File(std::string("from_wkt_") + driver + "." + extension), dir.File("shapes.csv"), driver});
    const std::map<std::string, TGdalView> views = ViewWithGdal(copies, dir);
    for (const TGdalCopy& copy : copies) {
        const std::string& path = copy.strPath;
        const char* driver = copy.strDriver.c_str();
        ASSERT_TRUE(views.count(path) && views.at(path).bOk) << driver;
        EXPECT_EQ(CompareWithGdal(views.at(path), path), "") << driver;
        TMapLayer layer;
        TLoadReport report;
        ASSERT_EQ(LoadFile(path, layer, report), 0) << driver;
        int markers = 0;
        for (const TMapElement* e : layer.m_Elements) markers += e->GetKind() == ELEMENT_MARKER ? 1 : 0;
        EXPECT_EQ(markers, 2) << driver << ": Gate and Tower have names";
    }
}

TEST(GdalWrittenFiles, FromRealWorldFilesLoadWithTheirPartsAndVertices) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveGdalPython()) GTEST_SKIP() << "GDAL's Python bindings are missing";
    // Files of other projects are not part of this one: the case runs on a folder named by
    // TL_GIS_REALWORLD (with shp/ and mif/ inside), as scripts/realworld-check.sh does.
    const char* folder = std::getenv("TL_GIS_REALWORLD");
    if (folder == nullptr || *folder == '\0')
        GTEST_SKIP() << "TL_GIS_REALWORLD names no folder of real-world files";
    const fs::path realworld = folder;
    std::error_code ec;
    if (!fs::is_directory(realworld, ec)) GTEST_SKIP() << "no real-world files at " << realworld;
    TTempDir dir;
    std::vector<TGdalCopy> copies;
    for (const char* folder : {"shp", "mif"}) {
        for (const auto& entry : fs::directory_iterator(realworld / folder, ec)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".shp" && extension != ".mif") continue;
            for (const auto& [driver, ext] : kDrivers)
                copies.push_back({dir.File(entry.path().stem().string() + "_" + driver + "." + ext),
                                  entry.path().string(), driver});
        }
    }
    const std::map<std::string, TGdalView> views = ViewWithGdal(copies, dir);
    int compared = 0;
    for (const TGdalCopy& copy : copies) {
        if (views.count(copy.strPath) == 0) continue;
        EXPECT_EQ(CompareWithGdal(views.at(copy.strPath), copy.strPath), "")
            << copy.strSource << " " << copy.strDriver;
        compared += views.at(copy.strPath).bOk ? 1 : 0;
    }
    EXPECT_GT(compared, static_cast<int>(copies.size()) / 2);
}
}  // namespace
