// The Akima spline and resampling with it.
#include "KxMath/KxInterpolant.h"
#include "KxMath/KxProfile.h"

#include "lists/unfilledList.h"
#include "profile/coordinates.h"
#include "profile/sampling.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>
#include <vector>

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
std::vector<float> chordSlopes(const KxPointXY* points, std::size_t n) {
    std::vector<float> slopes(n);
    for (std::size_t i = 0; i + 1 < n; ++i) {
        slopes[i] = (points[i + 1].y - points[i].y) / (points[i + 1].x - points[i].x);
    }
    slopes[n - 1] = slopes[n - 2];
    return slopes;
}

/// The slope at an inner knot (H. Akima, A new method of interpolation and smooth curve fitting based on local procedures,
/// J. ACM 17, 1970): that of the two chords about it, each weighted by the change of slope on the other side, so that the
/// smoother side counts more; where it changes on neither side, weighted by their widths.
/// @param point the knot, with its neighbours
/// @param slope that of the chord behind it, with the two before and the one behind
float innerSlope(const KxPointXY* point, const float* slope) {
    const float before = std::abs(slope[-1] - slope[-2]);
    const float after = std::abs(slope[1] - slope[0]);
    const float weights = before + after;
    if (weights != 0.0f) { // NaN: true
        return (after * slope[-1] + before * slope[0]) / (after + before);
    }
    const KxPointXY& left = point[-1];
    const KxPointXY& right = point[1];
    return ((right.x - point->x) * slope[-1] + (point->x - left.x) * slope[0]) / (right.x - left.x);
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
    const std::size_t n = static_cast<std::size_t>(sortedPoints->points.size());
    if (n < 3) {
        return 0;
    }
    const KxPointXY* const p = sortedPoints->points.constData();
    const std::vector<float> slopes = chordSlopes(p, n);
    std::vector<float> derivatives(n);
    for (std::size_t i = 2; i + 2 < n; ++i) {
        derivatives[i] = innerSlope(p + i, slopes.data() + i);
    }
    const auto parabolaSlope = [&](std::size_t at, std::size_t from) {
        return diff3p(p[at].x, p[from].x, p[from].y, p[from + 1].x, p[from + 1].y, p[from + 2].x, p[from + 2].y);
    };
    derivatives[0] = parabolaSlope(0, 0);
    derivatives[1] = parabolaSlope(1, 0);
    derivatives[n - 2] = parabolaSlope(n - 2, n - 3);
    derivatives[n - 1] = parabolaSlope(n - 1, n - 3);

    knotsX = new float[n];
    coeffs = new float[4 * (n - 1)];
    for (std::size_t i = 0; i + 1 < n; ++i) {
        knotsX[i] = p[i].x;
        fillSegment(p[i], p[i + 1], derivatives[i], derivatives[i + 1], coeffs + 4 * i);
    }
    knotsX[n - 1] = p[n - 1].x;
    type = Akima;
    count = static_cast<int>(n);
    return count;
}

float KxInterpolant::calcY(float x) {
    return type == Akima ? detail::valueByBisection(*this, x) : kNaN;
}

int KxInterpolant::generatePointCloud(KxPointCloud<KxPointXY>& out, float step, float from, float to) {
    if (!(step > 0.0f) || count < 1) {
        return 0;
    }
    if (!out.isEmpty()) {
        out.clear();
    }
    detail::UnfilledList<KxPointXY> samples(0); // memory follows the samples
    detail::Sampler sampler(*this, step, from, to);
    detail::Sampler::Block block;
    while (sampler.next(block)) {
        detail::setPoints(block.xs.data(), block.ys.data(), block.count, samples.extend(block.count));
    }
    out.points = samples.take();
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
