#include "gis/job/job_decimation.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <utility>
#include <vector>
#include "platform/units.h"

namespace {
constexpr double kSmallestTolerance = 1e-6;

struct TSplit {
    int first;
    int last;
};

// The vertex strictly between first and last farthest from their line; the lowest index wins
// a tie. distance is -1 when no distance compares (all NaN).
struct TFarthest {
    int index;
    double distance;
};

// Longitudes scaled by the cosine of their own latitude, worked out once per vertex.
std::vector<double> ScaledLongitudes(const tagLOC* points, int first, int last) {
    std::vector<double> x(static_cast<std::size_t>(last - first + 1));
    for (int i = first; i <= last; ++i)
        x[static_cast<std::size_t>(i - first)] =
            std::cos(points[i].dLat * DEGREES_TO_RADIANS) * points[i].dLon;
    return x;
}

// The distance of DistanceToLine with the scaled longitudes given, so that a split measures all
// its vertices without working out cosines again; the arithmetic is the same, and so are the
// results.
class TLineDistance {
public:
    TLineDistance(double x1, double lat1, double x2, double lat2) : m_x1(x1), m_lat1(lat1) {
        if (x1 == x2) {
            m_eCase = AcrossX;
        } else if (lat1 == lat2) {
            m_eCase = AcrossLat;
        } else {
            m_eCase = Slanted;
            m_m = (lat2 - lat1) / (x2 - x1);
            m_b = lat1 - m_m * x1;
        }
    }
    double operator()(double x, double lat) const {
        switch (m_eCase) {
            case AcrossX:
                return std::fabs(x - m_x1);
            case AcrossLat:
                return std::fabs(lat - m_lat1);
            default: {
                const double xf = (x / m_m + lat - m_b) / (1.0 / m_m + m_m);
                const double dx = x - xf;
                const double dy = lat - (m_m * xf + m_b);
                return std::sqrt(dx * dx + dy * dy);
            }
        }
    }

private:
    enum { AcrossX, AcrossLat, Slanted } m_eCase;
    double m_x1, m_lat1, m_m = 0.0, m_b = 0.0;
};

// x holds the scaled longitudes of points from index base on.
TFarthest FindFarthest(const tagLOC* points, const std::vector<double>& x, int base, int first, int last) {
    auto at = [&](int i) { return x[static_cast<std::size_t>(i - base)]; };
    const TLineDistance distance(at(first), points[first].dLat, at(last), points[last].dLat);
    TFarthest best{first + 1, -1.0};
    for (int i = first + 1; i < last; ++i) {
        const double d = distance(at(i), points[i].dLat);
        if (d > best.distance) best = {i, d};
    }
    return best;
}
}  // namespace

double DistanceToLine(const tagLOC& p1, const tagLOC& p2, const tagLOC& p) {
    const double x1 = std::cos(p1.dLat * DEGREES_TO_RADIANS) * p1.dLon;
    const double x2 = std::cos(p2.dLat * DEGREES_TO_RADIANS) * p2.dLon;
    const double x = std::cos(p.dLat * DEGREES_TO_RADIANS) * p.dLon;
    return TLineDistance(x1, p1.dLat, x2, p2.dLat)(x, p.dLat);
}

void MarkDouglasPeucker(const tagLOC* points, std::uint8_t* marks, int first, int last, double tolerance) {
    if (points == nullptr || marks == nullptr) return;
    if (last - first < 2) return;
    std::vector<TSplit> work;
    try {
        const std::vector<double> x = ScaledLongitudes(points, first, last);
        work.push_back({first, last});
        while (!work.empty()) {
            const TSplit split = work.back();
            work.pop_back();
            if (split.last - split.first < 2) continue;
            const TFarthest far = FindFarthest(points, x, first, split.first, split.last);
            if (far.distance >= tolerance) {
                // The second half is pushed first so that the first half is taken next.
                work.push_back({far.index, split.last});
                work.push_back({split.first, far.index});
            } else {
                std::fill(marks + split.first + 1, marks + split.last, std::uint8_t{1});
            }
        }
    } catch (const std::bad_alloc&) {
        // Without room for the work list the remaining splits keep all their vertices.
    }
}

int DecimateLocArray(tagLOC* points, int count, double tolerance) {
    if (points == nullptr || !(tolerance >= kSmallestTolerance) || count < 3) return count;
    std::unique_ptr<std::uint8_t[]> marks(new (std::nothrow) std::uint8_t[static_cast<std::size_t>(count)]());
    if (!marks) return count;
    MarkDouglasPeucker(points, marks.get(), 0, count - 1, tolerance);
    int kept = 0;
    for (int i = 0; i < count; ++i)
        if (marks[i] == 0) points[kept++] = points[i];
    return kept;
}

int ReduceBelowVertexLimit(tagLOC* points, int count, int limit) {
    if (points == nullptr || limit < 3) return -1;
    if (count < limit) return count;
    // The splits do not depend on the tolerance: a tolerance only decides how deep they are
    // followed. A split is followed when its distance and those of all splits above it reach
    // the tolerance, so its "reach" is the smallest of them, and a pass keeps 2 vertices plus
    // one per split whose reach is at least the pass's tolerance.
    std::vector<double> reaches;
    try {
        struct TNode {
            TSplit split;
            double reach;
        };
        std::vector<TNode> work;
        const std::vector<double> x = ScaledLongitudes(points, 0, count - 1);
        reaches.reserve(static_cast<std::size_t>(count));
        work.push_back({{0, count - 1}, HUGE_VAL});
        // Splits that no pass from t = 2 on follows need not be looked into.
        const double smallest = JobReductionTolerance(2);
        while (!work.empty()) {
            const TNode node = work.back();
            work.pop_back();
            if (node.split.last - node.split.first < 2) continue;
            const TFarthest far = FindFarthest(points, x, 0, node.split.first, node.split.last);
            if (!(far.distance >= smallest)) continue;
            const double reach = std::min(node.reach, far.distance);
            reaches.push_back(reach);
            work.push_back({{far.index, node.split.last}, reach});
            work.push_back({{node.split.first, far.index}, reach});
        }
    } catch (const std::bad_alloc&) {
        return -1;
    }

    // Fewer than limit vertices means at most limit - 3 followed splits.
    const std::size_t allowed = static_cast<std::size_t>(limit - 3);
    long long pass = 2;  // pass 1 is below the smallest tolerance and removes nothing
    if (reaches.size() > allowed) {
        std::nth_element(reaches.begin(), reaches.begin() + static_cast<std::ptrdiff_t>(allowed),
                         reaches.end(), std::greater<double>());
        const double cut = reaches[allowed];  // the pass must go beyond this reach
        if (!std::isfinite(cut)) return -1;
        const double estimate = std::floor(cut / JobReductionTolerance(1));
        if (estimate > 4.0e15) return -1;
        pass = std::max(2LL, static_cast<long long>(estimate));
        while (pass > 2 && JobReductionTolerance(pass - 1) > cut) --pass;
        while (JobReductionTolerance(pass) <= cut) ++pass;
    }
    // The ranking and a real pass agree; a few more passes guard against rounding all the same.
    std::vector<tagLOC> original;
    try {
        original.assign(points, points + count);
    } catch (const std::bad_alloc&) {
        return -1;
    }
    for (int extra = 0; extra < 16; ++extra, ++pass) {
        std::copy(original.begin(), original.end(), points);
        const int kept = DecimateLocArray(points, count, JobReductionTolerance(pass));
        if (kept < limit) return kept;
    }
    std::copy(original.begin(), original.end(), points);
    return -1;
}
