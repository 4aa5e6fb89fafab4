// Segment tests of pattern drawing: clipping in logical units and the AB-segment hit test.

#include <algorithm>
#include <cstdint>
#include <utility>

#include <tl_gis/features/feature_pattern.h>

namespace {
// Integer point wide enough for the products of the line function.
struct TWidePoint {
    std::int64_t x;
    std::int64_t y;
};

// The line through a and b as f(x, y) = x(ya - yb) - y(xa - xb) + (xa yb - xb ya). Long double
// keeps the products of coordinates near the int range exact.
struct TLineFunction {
    long double a, b, c;
    explicit TLineFunction(const TWidePoint& p, const TWidePoint& q)
        : a(static_cast<long double>(p.y - q.y)),
          b(static_cast<long double>(p.x - q.x)),
          c(static_cast<long double>(p.x) * static_cast<long double>(q.y) -
            static_cast<long double>(q.x) * static_cast<long double>(p.y)) {}
    long double At(std::int64_t x, std::int64_t y) const {
        return static_cast<long double>(x) * a - static_cast<long double>(y) * b + c;
    }
    // y where f = 0 at x, truncated toward zero; fallback when the line has become level in
    // that direction after an endpoint was moved.
    std::int64_t YAt(std::int64_t x, std::int64_t fallback) const {
        return Truncate((static_cast<long double>(x) * a + c) / b, fallback);
    }
    std::int64_t XAt(std::int64_t y, std::int64_t fallback) const {
        return Truncate((static_cast<long double>(y) * b - c) / a, fallback);
    }
    static std::int64_t Truncate(long double v, std::int64_t fallback) {
        if (!(v > -4.0e18L && v < 4.0e18L)) return fallback;  // also NaN
        return static_cast<std::int64_t>(v);
    }
};

int ToInt(std::int64_t v) {
    return static_cast<int>(std::clamp<std::int64_t>(v, INT32_MIN, INT32_MAX));
}
}  // namespace

int ClipSegment(TPointLP& p1, TPointLP& p2, const TRectLP& rect) {
    const std::int64_t left = rect.left, right = rect.right, top = rect.top, bottom = rect.bottom;
    TWidePoint a{p1.x, p1.y}, b{p2.x, p2.y};
    auto store = [&]() {
        p1 = {ToInt(a.x), ToInt(a.y)};
        p2 = {ToInt(b.x), ToInt(b.y)};
    };

    if ((a.x < left && b.x < left) || (a.x > right && b.x > right) || (a.y < bottom && b.y < bottom) ||
        (a.y > top && b.y > top))
        return -1;
    if (a.y > b.y) std::swap(a, b);

    if (a.y == b.y) {
        if (a.x > b.x) std::swap(a, b);
        if (a.x < left) a.x = left;
        if (b.x > right) b.x = right;
        store();
        return 1;
    }
    if (a.x == b.x) {
        if (a.y < bottom) a.y = bottom;
        if (b.y > top) b.y = top;
        store();
        return 1;
    }

    TLineFunction f(a, b);
    const bool leftBottom = f.At(left, bottom) < 0;
    const bool leftTop = f.At(left, top) < 0;
    const bool rightBottom = f.At(right, bottom) < 0;
    const bool rightTop = f.At(right, top) < 0;

    int crossed = 0;
    bool moved = false;
    if (leftBottom != leftTop) {
        ++crossed;
        for (TWidePoint* p : {&a, &b}) {
            if (p->x < left) {
                *p = {left, f.YAt(left, p->y)};
                moved = true;
                f = TLineFunction(a, b);
            }
        }
    }
    if (leftTop != rightTop) {
        ++crossed;
        if (b.y > top) {
            b = {f.XAt(top, b.x), top};
            moved = true;
            f = TLineFunction(a, b);
        }
    }
    if (rightBottom != rightTop) {
        ++crossed;
        for (TWidePoint* p : {&a, &b}) {
            if (p->x > right) {
                *p = {right, f.YAt(right, p->y)};
                moved = true;
                f = TLineFunction(a, b);
            }
        }
    }
    if (leftBottom != rightBottom) {
        ++crossed;
        if (a.y < bottom) {
            a = {f.XAt(bottom, a.x), bottom};
            store();
            return 1;
        }
    }
    store();
    if (crossed == 0) return -1;
    return moved ? 1 : 0;
}

bool IsSegmentInRect(const tagLOC& a, const tagLOC& b, const tagLOCRECT& rect) {
    if ((a.dLon < rect.dWest && b.dLon < rect.dWest) || (a.dLon > rect.dEast && b.dLon > rect.dEast) ||
        (a.dLat < rect.dSouth && b.dLat < rect.dSouth) || (a.dLat > rect.dNorth && b.dLat > rect.dNorth))
        return false;
    auto latIn = [&](double lat) { return lat >= rect.dSouth && lat <= rect.dNorth; };
    auto lonIn = [&](double lon) { return lon >= rect.dWest && lon <= rect.dEast; };
    if (latIn(a.dLat) && latIn(b.dLat)) return true;
    if (lonIn(a.dLon) && lonIn(b.dLon)) return true;
    if ((latIn(a.dLat) && lonIn(a.dLon)) || (latIn(b.dLat) && lonIn(b.dLon))) return true;

    const tagLOC& w = a.dLon <= b.dLon ? a : b;
    const tagLOC& e = a.dLon <= b.dLon ? b : a;
    // The two longitudes differ here: equal ones were accepted above when within the rectangle
    // and rejected at the start otherwise.
    const double slope = (e.dLat - w.dLat) / (e.dLon - w.dLon);
    const double latAtWest = w.dLat + slope * (rect.dWest - w.dLon);
    const double latAtEast = w.dLat + slope * (rect.dEast - w.dLon);
    if (latIn(latAtWest) || latIn(latAtEast)) return true;
    if (slope == 0.0) return false;
    const double lonAtSouth = w.dLon + (rect.dSouth - w.dLat) / slope;
    return lonIn(lonAtSouth);
}
