#include "shp_write_support.h"

#include <gtest/gtest.h>

#include "gis/shp/shp_codec.h"
#include "test_support.h"

namespace shp_write_test {

std::unique_ptr<TFeatureSpray> MakeSpray(const std::vector<TSamplePlan>& samples) {
    auto spray = std::make_unique<TFeatureSpray>(static_cast<int>(samples.size()));
    spray->m_strId = "run";
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
        r.sHeight = 50;  // 10 m
        r.dAgl = 3.0;
        r.sLine = 7;
        r.sTrack = 250;
        r.strFieldName = "North 40";
        r.strOffset = "R";
        r.afActualRate[0] = 50.0f;
        r.afTargetRate[0] = 48.0f;
        SetSprayText(r.szAircraft, sizeof r.szAircraft, "N512AG");
        SetSprayText(r.szPilot, sizeof r.szPilot, "J.Smith");
        TSprayTime t;
        t.iYear = 2024;
        t.iMonth = 6;
        t.iDay = 1;
        t.iHour = 14;
        t.iMinute = 3;
        t.iSecond = static_cast<int>(i % 60);
        t.iHundredths = 50;
        PackSprayTime(t, r);
    }
    return spray;
}

std::vector<TSamplePlan> Straight(int n, double heading, double stepM, std::vector<int> spray) {
    std::vector<TSamplePlan> out;
    TLoc at(45.5, -93.25);
    for (int i = 0; i < n; ++i) {
        TSamplePlan s;
        s.dLat = at.dLat;
        s.dLon = at.dLon;
        s.dHeading = heading;
        s.iSpray = i < static_cast<int>(spray.size()) ? spray[static_cast<std::size_t>(i)] : 1;
        out.push_back(s);
        at = at.Offset(heading, stepM);
    }
    return out;
}

TFeatureSpray* AddSpray(TMapLayer& layer, std::unique_ptr<TFeatureSpray> spray) {
    spray->CalculateGeoExtents();
    TFeatureSpray* raw = spray.get();
    layer.AddElement(spray.release(), ADD_ELEMENT_OWNED);
    return raw;
}

TFeatureLine* AddBoundary(TMapLayer& layer, const std::vector<tagLOC>& points, int boundType) {
    auto* line = new TFeatureLineBoundary;
    auto* copy = new tagLOC[points.size() + 1];
    std::copy(points.begin(), points.end(), copy);
    line->AdoptPoints(copy, static_cast<int>(points.size()), static_cast<int>(points.size()));
    line->m_iBoundType = boundType;
    line->CalculateGeoExtents();
    layer.AddElement(line, ADD_ELEMENT_OWNED);
    return line;
}

std::vector<TShape> ReadShapes(const std::string& bytes) {
    std::vector<TShape> shapes;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t at = SHP_HEADER_BYTES;
    while (at + SHP_RECORD_HEADER_BYTES <= bytes.size()) {
        const TShpRecordHeader h = DecodeShpRecordHeader(p + at, SHP_ORDER_BIG);
        const std::size_t length = static_cast<std::size_t>(h.iContentWords) * 2;
        at += SHP_RECORD_HEADER_BYTES;
        if (h.iContentWords < 2 || at + length > bytes.size()) {
            ADD_FAILURE() << "record " << h.iNumber << " runs past the file";
            break;
        }
        TShape shape;
        shape.iNumber = h.iNumber;
        shape.iType = static_cast<int>(p[at]) | (p[at + 1] << 8);
        std::string problem;
        if (shape.iType == SHPT_POINT) {
            tagLOC loc;
            if (DecodeShpPoint(p + at, length, loc, problem)) shape.Points.push_back(loc);
        } else {
            TShpPolyRecord poly;
            if (poly.Decode(p + at, length, problem)) {
                shape.Points.resize(static_cast<std::size_t>(poly.GetPointCount()));
                poly.CopyPoints(0, poly.GetPointCount(), shape.Points.data());
            }
        }
        if (!problem.empty()) ADD_FAILURE() << "record " << h.iNumber << ": " << problem;
        shapes.push_back(std::move(shape));
        at += length;
    }
    return shapes;
}

TTable ReadTable(const std::string& bytes) {
    TTable t;
    if (bytes.size() < 32) {
        ADD_FAILURE() << "table of " << bytes.size() << " bytes";
        return t;
    }
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    t.iRecordCount = static_cast<int>(p[4] | (p[5] << 8) | (p[6] << 16) | (p[7] << 24));
    t.iHeaderLength = p[8] | (p[9] << 8);
    t.iRecordLength = p[10] | (p[11] << 8);
    std::vector<int> widths;
    for (std::size_t at = 32; at + 32 <= bytes.size() && p[at] != 0x0D; at += 32) {
        t.Names.emplace_back(bytes.c_str() + at);
        widths.push_back(p[at + 16]);
    }
    for (std::size_t at = static_cast<std::size_t>(t.iHeaderLength);
         t.iRecordLength > 1 && at + static_cast<std::size_t>(t.iRecordLength) <= bytes.size();
         at += static_cast<std::size_t>(t.iRecordLength)) {
        std::vector<std::string> row;
        std::size_t field = at + 1;
        for (int w : widths) {
            row.push_back(bytes.substr(field, static_cast<std::size_t>(w)));
            field += static_cast<std::size_t>(w);
        }
        t.Rows.push_back(std::move(row));
    }
    t.bEndsWith1A = !bytes.empty() && bytes.back() == '\x1A';
    return t;
}

TTriple ReadTriple(const std::string& stem) {
    return {ReadFileBytes(stem + ".shp"), ReadFileBytes(stem + ".shx"), ReadFileBytes(stem + ".dbf")};
}

void SetShpFormats(int sprayFormat, int nonSprayFormat) {
    TGisFileShp::s_eESRISprayFormat = static_cast<ESRISPRAYFORMAT>(sprayFormat);
    TGisFileShp::s_eESRINonSprayFormat = static_cast<ESRINONSPRAYFORMAT>(nonSprayFormat);
}

}  // namespace shp_write_test
