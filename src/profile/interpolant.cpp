// The Akima spline and resampling with it.
#include "KxMath/KxInterpolant.h"
#include "KxMath/KxProfile.h"

#include "numeric/bounds.h"
#include "profile/sampling.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

using detail::kNaN;

namespace {

constexpr int kUnbuilt = -1;

void release(KxInterpolant& spline) {
    delete[] spline.knotsX;
    delete[] spline.coeffs;
    spline.knotsX = nullptr;
    spline.coeffs = nullptr;
    spline.count = 0;
    spline.type = kUnbuilt;
}

/// The slopes of the chords, the last one repeated.
QList<float> chordSlopes(const QList<KxPointXY>& points) {
    const qsizetype n = points.size();
    QList<float> slopes(n);
    for (qsizetype i = 0; i + 1 < n; ++i) {
        slopes[i] = (points[i + 1].y - points[i].y) / (points[i + 1].x - points[i].x);
    }
    slopes[n - 1] = slopes.at(n - 2);
    return slopes;
}

/// The slope at an inner knot: that of the two chords about it, each weighted by how little the slope changes on the
/// other side; where it changes on neither side, weighted by their widths.
float innerSlope(const QList<KxPointXY>& points, const QList<float>& slopes, qsizetype i) {
    const float before = std::abs(slopes[i - 1] - slopes[i - 2]);
    const float after = std::abs(slopes[i + 1] - slopes[i]);
    const float weights = before + after;
    if (weights != 0.0f) { // NaN: true
        return (after * slopes[i - 1] + before * slopes[i]) / (after + before);
    }
    const KxPointXY& left = points[i - 1];
    const KxPointXY& middle = points[i];
    const KxPointXY& right = points[i + 1];
    return ((right.x - middle.x) * slopes[i - 1] + (middle.x - left.x) * slopes[i]) / (right.x - left.x);
}

/// The four coefficients of the cubic between two knots with given slopes.
void fillSegment(const KxPointXY& left, const KxPointXY& right, float leftSlope, float rightSlope, float* coeffs) {
    const double h = static_cast<double>(right.x - left.x);
    const double rise = static_cast<double>(right.y - left.y);
    const double d0 = static_cast<double>(leftSlope);
    const double d1 = static_cast<double>(rightSlope);
    coeffs[0] = left.y;
    coeffs[1] = leftSlope;
    coeffs[2] = static_cast<float>((3.0 * rise - 2.0 * d0 * h - d1 * h) / (h * h));
    coeffs[3] = static_cast<float>((-2.0 * rise + (d0 + d1) * h) / (h * h * h));
}

} // namespace

float detail::segmentValue(const KxInterpolant& spline, int segment, float x) {
    const float* const c = spline.coeffs + 4 * static_cast<qsizetype>(segment);
    const double t = static_cast<double>(x) - static_cast<double>(spline.knotsX[segment]);
    const double cubic = static_cast<double>(c[3]) * t + static_cast<double>(c[2]);
    return static_cast<float>((cubic * t + static_cast<double>(c[1])) * t + static_cast<double>(c[0]));
}

int detail::bisectSegment(const KxInterpolant& spline, float x) {
    int low = 0;
    int high = spline.count;
    while (low != high - 1) {
        const int middle = low + (high - low) / 2;
        if (spline.knotsX[middle] >= x) { // NaN: false
            high = middle;
        } else {
            low = middle;
        }
    }
    return low;
}

detail::SegmentCursor::SegmentCursor(const KxInterpolant& spline) : spline_(spline) {
    const auto isNotRising = [](float a, float b) { return !(a <= b); }; // NaN: true
    const float* const begin = spline.knotsX;
    const float* const end = begin + spline.count;
    isOrdered_ = std::adjacent_find(begin, end, isNotRising) == end;
}

int detail::SegmentCursor::segmentOf(float x) {
    if (!isOrdered_ || !(spline_.knotsX[segment_] < x)) {
        segment_ = bisectSegment(spline_, x);
        return segment_;
    }
    while (segment_ + 1 < spline_.count && spline_.knotsX[segment_ + 1] < x) {
        ++segment_;
    }
    return segment_;
}

float detail::SegmentCursor::valueAt(float x) {
    if (x < spline_.knotsX[0] || x > spline_.knotsX[spline_.count - 1]) { // NaN: false
        return kNaN;
    }
    const int segment = segmentOf(x);
    if (segment >= spline_.count - 1) {
        return kNaN; // only knots or positions that are no numbers lead here
    }
    return segmentValue(spline_, segment, x);
}

KxInterpolant::KxInterpolant() : knotsX(nullptr), coeffs(nullptr), count(0), type(kUnbuilt) {}

KxInterpolant::KxInterpolant(const KxPointCloud<KxPointXY>& points, _KxInterpolantType_ type) : KxInterpolant() {
    buildFromPointCloud(points, type);
}

KxInterpolant::~KxInterpolant() {
    release(*this);
}

int KxInterpolant::buildFromPointCloud(const KxPointCloud<KxPointXY>& points, _KxInterpolantType_ type) {
    if (static_cast<int>(type) == kUnbuilt) {
        return 0;
    }
    release(*this);
    KxPointCloud<KxPointXY> sorted;
    sorted = points;
    sorted.sort(KxSortAscending, KxSortAscending);
    if (type != Akima) {
        return 0;
    }
    return buildAkimaSpline(&sorted);
}

float KxInterpolant::diff3p(float t, float x0, float y0, float x1, float y1, float x2, float y2) {
    const float dx1 = x1 - x0;
    const float dx2 = x2 - x0;
    const double d1 = static_cast<double>(dx1);
    const double d2 = static_cast<double>(dx2);
    const double dy1 = static_cast<double>(y1) - static_cast<double>(y0);
    const double dy2 = static_cast<double>(y2) - static_cast<double>(y0);
    const float a = static_cast<float>((dy2 - d2 / d1 * dy1) / (d2 * d2 - d2 * d1));
    const float b = static_cast<float>((dy1 - static_cast<double>(a) * d1 * d1) / d1);
    return static_cast<float>(static_cast<double>(b) +
                              2.0 * static_cast<double>(a) * (static_cast<double>(t) - static_cast<double>(x0)));
}

int KxInterpolant::buildAkimaSpline(KxPointCloud<KxPointXY>* sortedPoints) {
    const QList<KxPointXY>& p = sortedPoints->points;
    const qsizetype n = p.size();
    if (n < 3) {
        return 0;
    }
    const QList<float> slopes = chordSlopes(p);
    QList<float> derivatives(n);
    for (qsizetype i = 2; i + 2 < n; ++i) {
        derivatives[i] = innerSlope(p, slopes, i);
    }
    const auto parabolaSlope = [&](qsizetype at, qsizetype from) {
        return diff3p(p[at].x, p[from].x, p[from].y, p[from + 1].x, p[from + 1].y, p[from + 2].x, p[from + 2].y);
    };
    derivatives[0] = parabolaSlope(0, 0);
    derivatives[1] = parabolaSlope(1, 0);
    derivatives[n - 2] = parabolaSlope(n - 2, n - 3);
    derivatives[n - 1] = parabolaSlope(n - 1, n - 3);

    knotsX = new float[static_cast<size_t>(n)];
    coeffs = new float[4 * static_cast<size_t>(n - 1)];
    for (qsizetype i = 0; i + 1 < n; ++i) {
        knotsX[i] = p[i].x;
        fillSegment(p[i], p[i + 1], derivatives[i], derivatives[i + 1], coeffs + 4 * i);
    }
    knotsX[n - 1] = p[n - 1].x;
    type = Akima;
    count = static_cast<int>(n);
    return count;
}

float KxInterpolant::calcY(float x) {
    if (type == kUnbuilt || x < knotsX[0] || x > knotsX[count - 1]) { // NaN: false
        return kNaN;
    }
    const int segment = detail::bisectSegment(*this, x);
    if (type != Akima || segment >= count - 1) {
        return kNaN;
    }
    return detail::segmentValue(*this, segment, x);
}

int KxInterpolant::generatePointCloud(KxPointCloud<KxPointXY>& out, float step, float from, float to) {
    if (!(step > 0.0f) || count < 1) {
        return 0;
    }
    if (!out.isEmpty()) {
        out.clear();
    }
    detail::forEachSample(*this, step, from, to, [&](const KxPointXY& p) { out.points.append(p); });
    return out.size();
}

int KxInterpolant::generatePointCloudH(KxPointCloud<KxPointXY>&, float, float, float, float) {
    return 0;
}

int KxProfile::interpolate(float step, float from, float to, _KxInterpolantType_ type) {
    removeDuplicates();
    sort(KxSortAscending, KxSortAscending);
    KxInterpolant spline(*this, type);
    spline.generatePointCloud(*this, step, from, to);
    return size();
}

} // namespace KxMath
