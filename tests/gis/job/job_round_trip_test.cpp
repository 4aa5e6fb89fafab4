#include <gtest/gtest.h>

#include <cmath>

#include "job_test_support.h"

namespace {
constexpr double kFeet = 0.3048;

void BuildLayer(TMapLayer& layer) {
    layer.m_strLLB = "FARM";
    AddMarker(layer, "5", "Gate", 3, {45.123456, -93.654321});
    AddMarker(layer, "6", "Tank", 45, {-33.5, 151.25});
    TFeaturePattern* p = AddPattern(layer, "7", RACETRACK,
                                    {{'A', {45.5, -93.2}},
                                     {'B', {45.51, -93.2}},
                                     {'C', {45.5, -93.19}},
                                     {'D', {45.51, -93.19}},
                                     {'E', {45.52, -93.2}},
                                     {'F', {45.53, -93.21}}});
    p->m_iDirection = RIGHT;
    p->m_dSwathWidth = 21.3;
    p->m_dFieldWidth = 401.77;
    p->m_dOffset = -2.5;
    p->m_iAbLines = 3;
    AddPattern(layer, "8", EXPAND, {{'A', {45.6, -93.2}}, {'B', {45.61, -93.25}}});
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, CircleRing(45.3, -93.4, 200, 40));
    TFeatureLine* exc = AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, CircleRing(45.3, -93.4, 50, 12));
    exc->SetColor(0x10FF20);
    exc->m_bRgbFlag1 = true;
    exc->m_dValue = 4.5;
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_OPEN, WavyLine(45.4, -93.5, 30, 3));
    AddLine(layer, ELEMENT_LINE_GENERIC, BOUNDARY_OPEN, WavyLine(45.45, -93.5, 25, 3));
}

template <class T>
std::vector<const T*> Of(const TMapLayer& layer) {
    std::vector<const T*> out;
    for (const TMapElement* e : layer.m_Elements)
        if (const auto* t = dynamic_cast<const T*>(e)) out.push_back(t);
    return out;
}

// Whether the two rings hold the same vertices in the same cyclic order, either way round.
bool SameRing(const TFeatureLine& a, const TFeatureLine& b) {
    // The rings given are open; the reader closes what it reads back.
    const int na = a.m_iNumPoints, nb = b.m_iNumPoints - 1;
    if (na != nb) return false;
    auto near = [](const tagLOC& p, const tagLOC& q) {
        return std::fabs(p.dLat - q.dLat) <= 1e-6 && std::fabs(p.dLon - q.dLon) <= 1e-6;
    };
    for (int shift = 0; shift < na; ++shift) {
        for (int dir : {1, -1}) {
            bool all = true;
            for (int i = 0; i < na && all; ++i)
                all = near(a.m_pPoints[i], b.m_pPoints[((shift + dir * i) % na + na) % na]);
            if (all) return true;
        }
    }
    return false;
}

TEST(JobRoundTrip, EveryVersionReadsBackTheSameLayer) {
    struct TCase {
        int format;
        const char* fileName;
        int version;
        const char* jobName;
    };
    const TCase cases[] = {{GISFILE_JOB_V1, "44.job", 1, "44"},
                           {GISFILE_JOB_V2, "44.job", 2, "44"},
                           {GISFILE_JOB_V3, "North44.job", 3, "North44"}};
    for (const TCase& c : cases) {
        TJobSettings settings(c.format, REDUCE_NONE);
        TMapLayer original;
        BuildLayer(original);
        TTempDir dir;
        const std::string path = dir.File(c.fileName);
        TGisFileJob writer;
        ASSERT_EQ(writer.WriteFile(path.c_str(), &original), GISFILE_OK) << c.version;
        TMapLayer back;
        TGisFileJob reader;
        ASSERT_EQ(reader.LoadFile(path.c_str(), &back, nullptr), GISFILE_OK) << c.version;
        EXPECT_EQ(reader.m_iVersion, c.version);
        EXPECT_EQ(reader.m_strJobName, c.format == GISFILE_JOB_V2 ? "44" : c.jobName) << c.version;
        EXPECT_EQ(back.m_strLLB, c.format == GISFILE_JOB_V1 ? "44" : "FARM") << c.version;

        const auto markers = Of<TFeatureMarker>(original), markersBack = Of<TFeatureMarker>(back);
        ASSERT_EQ(markersBack.size(), markers.size()) << c.version;
        for (std::size_t i = 0; i < markers.size(); ++i) {
            EXPECT_EQ(markersBack[i]->m_strId, markers[i]->m_strId) << c.version;
            EXPECT_EQ(markersBack[i]->m_strName, markers[i]->m_strName) << c.version;
            EXPECT_EQ(markersBack[i]->GetLowBits(), markers[i]->GetLowBits()) << c.version;
            EXPECT_NEAR(markersBack[i]->m_Loc.dLat, markers[i]->m_Loc.dLat, 1e-6) << c.version;
            EXPECT_NEAR(markersBack[i]->m_Loc.dLon, markers[i]->m_Loc.dLon, 1e-6) << c.version;
        }

        const auto patterns = Of<TFeaturePattern>(original), patternsBack = Of<TFeaturePattern>(back);
        ASSERT_EQ(patternsBack.size(), patterns.size()) << c.version;
        const int abLines[] = {3, 1};  // pairs written: A-B, D, E-F; then A-B
        for (std::size_t i = 0; i < patterns.size(); ++i) {
            const TFeaturePattern& a = *patterns[i];
            const TFeaturePattern& b = *patternsBack[i];
            EXPECT_EQ(b.m_strId, a.m_strId) << c.version;
            EXPECT_EQ(b.m_iKind, a.m_iKind) << c.version;
            EXPECT_EQ(b.m_iDirection, a.m_iDirection) << c.version;
            EXPECT_NEAR(b.m_dSwathWidth, a.m_dSwathWidth, 1e-4 * kFeet) << c.version;
            EXPECT_NEAR(b.m_dFieldWidth, a.m_dFieldWidth, 1e-4 * kFeet) << c.version;
            EXPECT_NEAR(b.m_dOffset, a.m_dOffset, 1e-4 * kFeet) << c.version;
            EXPECT_EQ(b.m_iAbLines, abLines[i]) << c.version;
            for (int k = 0; k < PATTERN_POINT_COUNT; ++k) {
                EXPECT_NEAR(b.m_aPoint[k].m_Loc.dLat, a.m_aPoint[k].m_Loc.dLat, 1e-6)
                    << c.version << " point " << k;
                EXPECT_NEAR(b.m_aPoint[k].m_Loc.dLon, a.m_aPoint[k].m_Loc.dLon, 1e-6)
                    << c.version << " point " << k;
            }
        }

        const auto lines = Of<TFeatureLine>(original), linesBack = Of<TFeatureLine>(back);
        ASSERT_EQ(linesBack.size(), lines.size()) << c.version;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const TFeatureLine& a = *lines[i];
            const TFeatureLine& b = *linesBack[i];
            EXPECT_EQ(b.m_iBoundType, a.m_iBoundType) << c.version << " line " << i;
            std::uint32_t ca = 0, cb = 0;
            EXPECT_EQ(b.GetColor(cb), a.GetColor(ca)) << c.version << " line " << i;
            EXPECT_EQ(cb, ca) << c.version << " line " << i;
            EXPECT_EQ(b.m_bRgbFlag1, a.m_bRgbFlag1) << c.version << " line " << i;
            EXPECT_EQ(b.m_bRgbFlag2, a.m_bRgbFlag2) << c.version << " line " << i;
            if (a.m_iBoundType == BOUNDARY_OPEN) {
                ASSERT_EQ(b.m_iNumPoints, a.m_iNumPoints) << c.version << " line " << i;
                for (int k = 0; k < a.m_iNumPoints; ++k) {
                    EXPECT_NEAR(b.m_pPoints[k].dLat, a.m_pPoints[k].dLat, 1e-6) << c.version << " line " << i;
                    EXPECT_NEAR(b.m_pPoints[k].dLon, a.m_pPoints[k].dLon, 1e-6) << c.version << " line " << i;
                }
            } else {
                // Rings come back closed and possibly the other way round.
                EXPECT_TRUE(SameRing(a, b)) << c.version << " line " << i;
            }
        }
        EXPECT_DOUBLE_EQ(linesBack[1]->m_dValue, 0.0) << "values are not written";
    }
}
}  // namespace
