#include <tl_gis/features/feature_spray.h>

#include <algorithm>
#include <cmath>
#include <new>

#include <tl_gis/hostmap/geodesy.h>

namespace {
constexpr int kInitialSteps = 1000;
constexpr int kStepGrowth = 1000;
constexpr int kInitialRates = 10;

// Replaces an array by a bigger one holding the first used entries of the old one.
template <typename T>
bool GrowArray(T*& array, int used, int newSize) {
    T* grown = new (std::nothrow) T[static_cast<std::size_t>(newSize)];
    if (grown == nullptr) return false;
    if (array != nullptr && used > 0) std::copy(array, array + used, grown);
    delete[] array;
    array = grown;
    return true;
}
}  // namespace

TFeatureSpray::TFeatureSpray() {
    m_dwType = ELEMENT_SPRAY;
    m_dwFlags |= ELEMENT_FLAG_SPRAY;
    m_rcExtents.Clear();
    AllocateStatistics();
}

TFeatureSpray::TFeatureSpray(int numRecs) : TFeatureSpray() {
    SetSampleCount(numRecs);
}

TFeatureSpray::~TFeatureSpray() {
    ReleaseStatistics();
    delete[] m_pRecs;
}

TFeatureSpray::TFeatureSpray(const TFeatureSpray& other) : TFeatureSpray() {
    *this = other;
}

TFeatureSpray& TFeatureSpray::operator=(const TFeatureSpray& other) {
    if (this == &other) return *this;
    TFeatureVector::operator=(other);
    SetSampleCount(other.m_iNumRecs);
    if (m_pRecs != nullptr) std::copy(other.m_pRecs, other.m_pRecs + m_iNumRecs, m_pRecs);
    m_dTotalArea = other.m_dTotalArea;
    std::copy(std::begin(other.m_adChannel), std::end(other.m_adChannel), m_adChannel);
    return *this;
}

void TFeatureSpray::SetSampleCount(int numRecs) {
    delete[] m_pRecs;
    m_pRecs = nullptr;
    m_iNumRecs = 0;
    if (numRecs <= 0) return;
    m_pRecs = new (std::nothrow) tagSPRAYREC[static_cast<std::size_t>(numRecs) + 1];
    if (m_pRecs != nullptr) m_iNumRecs = numRecs;
}

void TFeatureSpray::AllocateStatistics() {
    m_pdActualRate = new (std::nothrow) double[kInitialRates];
    m_pdTargetRate = new (std::nothrow) double[kInitialRates];
    m_iRateAlloc = m_pdActualRate && m_pdTargetRate ? kInitialRates : 0;
    m_pbySprayFlag = new (std::nothrow) std::uint8_t[kInitialSteps];
    m_pbyBoomFlag = new (std::nothrow) std::uint8_t[kInitialSteps];
    m_pdStepArea = new (std::nothrow) double[kInitialSteps];
    m_iStepAlloc = m_pbySprayFlag && m_pbyBoomFlag && m_pdStepArea ? kInitialSteps : 0;
    m_iRateCount = 0;
    m_iStepCount = 0;
}

void TFeatureSpray::ReleaseStatistics() {
    delete[] m_pdActualRate;
    delete[] m_pdTargetRate;
    delete[] m_pbySprayFlag;
    delete[] m_pbyBoomFlag;
    delete[] m_pdStepArea;
    m_pdActualRate = m_pdTargetRate = m_pdStepArea = nullptr;
    m_pbySprayFlag = m_pbyBoomFlag = nullptr;
    m_iRateAlloc = m_iStepAlloc = 0;
    m_iRateCount = m_iStepCount = 0;
}

bool TFeatureSpray::ReserveStep() {
    if (m_iStepCount >= m_iStepAlloc) {
        const int size = m_iStepAlloc + kStepGrowth;
        if (!GrowArray(m_pdStepArea, m_iStepCount, size) || !GrowArray(m_pbySprayFlag, m_iStepCount, size) ||
            !GrowArray(m_pbyBoomFlag, m_iStepCount, size))
            return false;
        m_iStepAlloc = size;
    }
    if (m_iRateCount + SPRAY_CHANNELS > m_iRateAlloc) {
        // Every step adds ten rate values; growing by doubling keeps long runs linear.
        const int size = std::max(m_iRateAlloc * 2, m_iRateCount + SPRAY_CHANNELS);
        if (!GrowArray(m_pdActualRate, m_iRateCount, size) || !GrowArray(m_pdTargetRate, m_iRateCount, size))
            return false;
        m_iRateAlloc = size;
    }
    return true;
}

bool TFeatureSpray::IsIn(const tagLOCRECT&) const {
    return false;
}

void TFeatureSpray::CalculateGeoExtents() {
    TLocRect extents;
    extents.InitExtents();
    if (IncludeInExtents() && m_pRecs != nullptr) {
        for (int i = 0; i < m_iNumRecs; ++i) {
            extents.ExpandExtents(m_pRecs[i].locSwathA);
            extents.ExpandExtents(m_pRecs[i].locSwathB);
        }
    }
    m_rcExtents = extents;
}

TMapElement* TFeatureSpray::Clone() const {
    auto* copy = new (std::nothrow) TFeatureSpray;
    if (copy != nullptr) *copy = *this;
    return copy;
}

double TFeatureSpray::StepArea(const tagSPRAYREC& a, const tagSPRAYREC& b, double* distance) {
    const double d = GeoDistance(a.locPos.dLat, a.locPos.dLon, b.locPos.dLat, b.locPos.dLon);
    if (distance != nullptr) *distance = d;
    return (a.dSwathWidth + b.dSwathWidth) * 0.5 * d * 0.0001;
}

void TFeatureSpray::SwathEnds(const tagLOC& pos, double headingDeg, double widthM, tagLOC& endA,
                              tagLOC& endB) {
    if (widthM < 0.001) {
        endA = pos;
        endB = pos;
        return;
    }
    const TLoc from(pos);
    endA = from.Offset(headingDeg + 90.0, widthM * 0.5);
    endB = from.Offset(headingDeg - 90.0, widthM * 0.5);
}

void TFeatureSpray::ComputeSprayStats(int first, int last, void*, double* channelOut) {
    m_bHasArea = 0;
    m_dTotalArea = 0.0;
    if (channelOut != nullptr) std::fill(channelOut, channelOut + SPRAY_CHANNELS, 0.0);
    m_iStepCount = 0;
    m_iRateCount = 0;
    if (m_pRecs == nullptr) return;
    first = std::max(first, 0);
    last = std::min(last, m_iNumRecs - 1);
    bool started = false;
    for (int k = first + 1; k <= last; ++k) {
        const tagSPRAYREC& prev = m_pRecs[k - 1];
        const tagSPRAYREC& cur = m_pRecs[k];
        // Nothing is counted until a sample with a real swath line has gone before.
        const bool noSwath =
            prev.locSwathA.dLat == prev.locSwathB.dLat && prev.locSwathA.dLon == prev.locSwathB.dLon;
        if (noSwath && !started) continue;
        started = true;
        // A gap of more than ten seconds is a break in the recording, not sprayed ground.
        if (std::fabs(SprayTimeOfDay(prev) - SprayTimeOfDay(cur)) > 10.0) continue;
        if (!ReserveStep()) break;

        if (channelOut != nullptr) std::copy(prev.adChannel, prev.adChannel + SPRAY_CHANNELS, channelOut);
        m_bHasArea = 1;
        double area = 0.0;
        if (last == 1) {
            // A run of two samples uses the later sample's width and channel values alone.
            const double d =
                GeoDistance(prev.locPos.dLat, prev.locPos.dLon, cur.locPos.dLat, cur.locPos.dLon);
            if (channelOut != nullptr) std::copy(cur.adChannel, cur.adChannel + SPRAY_CHANNELS, channelOut);
            area = cur.dSwathWidth * d * 0.0001;
        } else {
            area = StepArea(prev, cur);
        }
        m_pdStepArea[m_iStepCount] = area;
        m_pbySprayFlag[m_iStepCount] = cur.bySpray;
        m_pbyBoomFlag[m_iStepCount] = cur.sBoom != 0 ? 1 : 0;
        ++m_iStepCount;
        m_dTotalArea += area;

        m_dSwathWidth = cur.dSwathWidth;
        m_dHeight = cur.sHeight / 5.0;
        m_dAgl = cur.dAgl;
        m_strAircraft = GetSprayText(cur.szAircraft, sizeof cur.szAircraft);
        m_strPilot = GetSprayText(cur.szPilot, sizeof cur.szPilot);
        for (int i = 0; i < SPRAY_CHANNELS; ++i) {
            m_pdActualRate[m_iRateCount] = cur.afActualRate[i];
            m_pdTargetRate[m_iRateCount] = cur.afTargetRate[i];
            ++m_iRateCount;
        }
    }
}

void TFeatureSpray::ComputeAllSprayStats() {
    ComputeSprayStats(0, m_iNumRecs - 1, nullptr, m_adChannel);
}
