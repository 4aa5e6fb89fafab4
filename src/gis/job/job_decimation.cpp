#include "gis/job/job_decimation.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace {
constexpr double kDegreesToRadians = 0.017453292519943334;
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

TFarthest FindFarthest(const tagLOC* points, int first, int last) {
    TFarthest best{first + 1, -1.0};
    for (int i = first + 1; i < last; ++i) {
        const double d = DistanceToLine(points[first], points[last], points[i]);
        if (d > best.distance) best = {i, d};
    }
    return best;
}
}  // namespace

double DistanceToLine(const tagLOC& p1, const tagLOC& p2, const tagLOC& p) {
    const double x1 = std::cos(p1.dLat * kDegreesToRadians) * p1.dLon;
    const double x2 = std::cos(p2.dLat * kDegreesToRadians) * p2.dLon;
    const double x = std::cos(p.dLat * kDegreesToRadians) * p.dLon;
    if (x1 == x2) return std::fabs(x - x1);
    if (p1.dLat == p2.dLat) return std::fabs(p.dLat - p1.dLat);
    const double m = (p2.dLat - p1.dLat) / (x2 - x1);
    const double b = p1.dLat - m * x1;
    const double xf = (x / m + p.dLat - b) / (1.0 / m + m);
    const double dx = x - xf;
    const double dy = p.dLat - (m * xf + b);
    return std::sqrt(dx * dx + dy * dy);
}

void MarkDouglasPeucker(const tagLOC* points, std::uint8_t* marks, int first, int last, double tolerance) {
    if (points == nullptr || marks == nullptr) return;
    std::vector<TSplit> work;
    try {
        work.push_back({first, last});
        while (!work.empty()) {
            const TSplit split = work.back();
            work.pop_back();
            if (split.last - split.first < 2) continue;
            const TFarthest far = FindFarthest(points, split.first, split.last);
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
        reaches.reserve(static_cast<std::size_t>(count));
        work.push_back({{0, count - 1}, HUGE_VAL});
        // Splits that no pass from t = 2 on follows need not be looked into.
        const double smallest = JobReductionTolerance(2);
        while (!work.empty()) {
            const TNode node = work.back();
            work.pop_back();
            if (node.split.last - node.split.first < 2) continue;
            const TFarthest far = FindFarthest(points, node.split.first, node.split.last);
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
