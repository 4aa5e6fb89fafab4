#pragma once
// A recorded spray run as a map element: its samples, and the statistics of a stretch of them
// (sprayed area, per-step flags and rates) that the exporters read.

#include <tl_gis/export.h>
#include <memory>
#include <string>

#include <tl_gis/features/spray_record.h>
#include <tl_gis/hostmap/features.h>

class TL_GIS_API TFeatureSpray : public TFeatureVector {
public:
    // No samples; statistics storage for 1000 steps and 10 rate values, both counts 0.
    TFeatureSpray();
    // numRecs samples (numRecs + 1 allocated, the last spare), all fields zero and texts empty.
    explicit TFeatureSpray(int numRecs);
    ~TFeatureSpray() override;
    TFeatureSpray(const TFeatureSpray& other);
    // Copies the element part, the samples (texts as independent copies), the total area and
    // the channel values; the statistics arrays and last-sample values stay as they are.
    TFeatureSpray& operator=(const TFeatureSpray& other);

    // A spray run is never picked by a rectangle.
    bool IsIn(const tagLOCRECT& rect) const override;
    // The box of every sample's two swath ends (positions alone are not included); an empty
    // box when the element does not count toward extents or has no samples.
    void CalculateGeoExtents() override;
    TMapElement* Clone() const override;

    // Statistics of the steps that end at samples first + 1 .. last: a step is counted once a
    // sample with distinct swath ends has preceded it, and when its two samples are at most
    // 10 s apart. Replaces every statistics member; channelOut (10 values) receives the
    // channel values of the last counted step. The pointer argument is not used.
    void ComputeSprayStats(int first, int last, void* reserved, double* channelOut);
    // The run over all samples, with m_adChannel as the channel output.
    void ComputeAllSprayStats();

    // Area in hectares of the strip between two samples: mean swath width times the distance
    // of their positions. The distance in metres goes to *distance when given.
    static double StepArea(const tagSPRAYREC& a, const tagSPRAYREC& b, double* distance = nullptr);
    // The ends of the swath line across the track: endA to the right of the heading, endB to
    // the left, each width / 2 from the position; both the position for widths below 1 mm.
    static void SwathEnds(const tagLOC& pos, double headingDeg, double widthM, tagLOC& endA, tagLOC& endB);

    int m_iNumRecs = 0;
    tagSPRAYREC* m_pRecs = nullptr;  // owned; m_iNumRecs + 1 entries
    int m_iRateUnits = 4;
    double m_dTotalArea = 0.0;  // hectares, from the last statistics run
    double m_adChannel[SPRAY_CHANNELS] = {};
    std::uint8_t m_bHasArea = 0;

    // Results of the last statistics run: 10 rate values per counted step, and per step its
    // area (hectares), the spray flag and the boom flag of its later sample.
    int m_iRateCount = 0;
    int m_iStepCount = 0;
    double* m_pdActualRate = nullptr;        // owned
    double* m_pdTargetRate = nullptr;        // owned
    std::uint8_t* m_pbySprayFlag = nullptr;  // owned
    std::uint8_t* m_pbyBoomFlag = nullptr;   // owned
    double* m_pdStepArea = nullptr;          // owned
    // Room in the rate arrays and in the three step arrays.
    int m_iRateAlloc = 0;
    int m_iStepAlloc = 0;

    // Values of the last counted sample.
    std::string m_strAircraft;
    std::string m_strPilot;
    double m_dHeight = 0.0;  // metres
    double m_dAgl = 0.0;
    double m_dSwathWidth = 0.0;

private:
    void AllocateStatistics();
    void ReleaseStatistics();
    // Makes room for one more step and ten more rate values; false when memory fails.
    bool ReserveStep();
    void SetSampleCount(int numRecs);
};
