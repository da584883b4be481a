// Wheel profiles as the measurement of a rim takes them.
#include "inspect/wheel/rimSection.h"

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxProfile;

bool isFinite(const KxPointXY& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

double distance(const KxPointXY& a, const KxPointXY& b) {
    return std::hypot(static_cast<double>(b.x) - static_cast<double>(a.x),
                      static_cast<double>(b.y) - static_cast<double>(a.y));
}

/// The point at a part of the way from one point to another.
KxPointXY between(const KxPointXY& a, const KxPointXY& b, double part) {
    const auto mix = [part](float from, float to) {
        return static_cast<float>(static_cast<double>(from) +
                                  (static_cast<double>(to) - static_cast<double>(from)) * part);
    };
    return {mix(a.x, b.x), mix(a.y, b.y)};
}

} // namespace

void appendRimSection(const KxProfile& profile, KxMath::KxPointCloud<KxPointXYZ>& rim) {
    // The measurement turns the rim until its first point, seen from the centre, lies on +x: that changes nothing where
    // all points lie there. It then reads the rim from the largest x inwards.
    constexpr float kFromCenter = 1.0f;
    float outermost = 0.0f;
    for (const KxPointXY& p : profile.points) {
        if (isFinite(p)) {
            outermost = std::max(outermost, p.x);
        }
    }
    for (const KxPointXY& p : profile.points) {
        if (isFinite(p)) {
            rim.points.append({outermost + kFromCenter - p.x, -p.y, 0.0f});
        }
    }
}

bool spaceEvenly(KxProfile& profile, double spacing) {
    constexpr double kMostPoints = 1e6;
    profile.points.removeIf([](const KxPointXY& p) { return !isFinite(p); });
    const QList<KxPointXY> points = profile.points;
    double length = 0.0;
    for (qsizetype i = 1; i < points.size(); ++i) {
        length += distance(points[i - 1], points[i]);
    }
    if (!(length / spacing < kMostPoints)) {
        return false;
    }
    if (points.size() < 2) {
        return true;
    }
    QList<KxPointXY> spaced = {points.first()};
    double next = spacing; // along the line from points[i - 1]
    for (qsizetype i = 1; i < points.size(); ++i) {
        const double step = distance(points[i - 1], points[i]);
        for (; next < step; next += spacing) {
            spaced.append(between(points[i - 1], points[i], next / step));
        }
        next -= step;
    }
    spaced.append(points.last());
    profile.points = spaced;
    return true;
}

} // namespace kxtool
