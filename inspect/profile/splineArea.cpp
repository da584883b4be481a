// The area under a smooth curve through the points of a profile.
#include <KxInspect/SplineArea.h>

#include <KxMath/KxInterpolant.h>
#include <KxMath/KxProfile.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace KxInspect {

namespace {

/// The points with both coordinates, in the order of x, one for each x.
KxMath::KxProfile orderedPoints(const Profile& profile) {
    KxMath::KxProfile ordered;
    ordered.points.reserve(static_cast<qsizetype>(profile.points.size()));
    for (const Point& p : profile.points) {
        if (!std::isnan(p.x) && !std::isnan(p.y)) {
            ordered.points.append(KxMath::KxPointXY(p.x, p.y));
        }
    }
    ordered.removeDuplicates();
    ordered.sort(KxMath::KxSortAscending, KxMath::KxSortAscending);
    return ordered;
}

/// The integral of a cubic from its knot to `t` behind it.
double areaOf(const float* coeffs, double t) {
    const auto c = [&](int i) { return static_cast<double>(coeffs[i]); };
    return t * (c(0) + t * (c(1) / 2.0 + t * (c(2) / 3.0 + t * c(3) / 4.0)));
}

} // namespace

std::optional<double> splineArea(const Profile& profile, float from, float to) {
    const KxMath::KxInterpolant spline(orderedPoints(profile), KxMath::Akima);
    if (spline.count < 3 || std::isnan(from) || std::isnan(to)) {
        return std::nullopt;
    }
    const float* const knots = spline.knotsX;
    const float first = std::max(from, knots[0]);
    const float last = std::min(to, knots[spline.count - 1]);
    double area = 0.0;
    for (int i = 0; i + 1 < spline.count; ++i) {
        const double knot = static_cast<double>(knots[i]);
        const double begin = static_cast<double>(std::max(first, knots[i]));
        const double end = static_cast<double>(std::min(last, knots[i + 1]));
        if (begin < end) {
            const float* const coeffs = spline.coeffs + static_cast<std::ptrdiff_t>(4) * i;
            area += areaOf(coeffs, end - knot) - (begin > knot ? areaOf(coeffs, begin - knot) : 0.0);
        }
    }
    return std::isfinite(area) ? std::optional(area) : std::nullopt;
}

} // namespace KxInspect
