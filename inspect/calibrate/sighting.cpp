// What one profile shows of the calibration object.
#include "inspect/calibrate/sighting.h"

#include <KxInspect/CalibrationObject.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace KxInspect::detail {

namespace {

constexpr std::size_t kMostPoints = 200000; // profiles of sensors have some thousands; bounds the time
constexpr double kMostOutliers = 0.25; // of the points; a quarter is half of what the medians stand

/// The finite points in the order of x, or of -x, and their places among the finite points of the profile.
std::vector<ReadPoint> readPoints(const Profile& profile, bool isReversed, std::vector<std::size_t>& order) {
    const double sign = isReversed ? -1.0 : 1.0;
    std::vector<ReadPoint> finite;
    order.clear();
    for (const Point& p : profile.points) {
        if (std::isfinite(p.x) && std::isfinite(p.y)) {
            order.push_back(finite.size());
            finite.push_back({sign * static_cast<double>(p.x), static_cast<double>(p.y)});
        }
    }
    // Points at one x in the order of y, so that the order in the file makes no difference.
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return std::pair(finite[a].x, finite[a].y) < std::pair(finite[b].x, finite[b].y);
    });
    std::vector<ReadPoint> points;
    points.reserve(order.size());
    for (const std::size_t i : order) {
        points.push_back(finite[i]);
    }
    return points;
}

/// Why a fit is no good pose; empty for a good one.
QString faultOf(const ObjectFit& fit) {
    constexpr double kTolerance = 0.03; // mm, of a real object
    constexpr double kMostDegrees = 0.5; // beyond these a pose is of no use: at 250 mm either moves points by 2 mm
    constexpr double kMostMm = 2.0;
    const auto outliers = std::count(fit.areOutliers.begin(), fit.areOutliers.end(), true);
    if (!fit.hasAllFlanks) {
        return QStringLiteral("fits no pose of the object: a flank has fewer than 5 points");
    }
    if (!(fit.misfit <= kTolerance)) { // NaN: a fault
        return QStringLiteral(
                   "fits no pose of the object: it has another pitch or slope, or ridges are hidden (a flank "
                   "is off by %1 mm beyond its noise)")
            .arg(fit.misfit, 0, 'f', 2);
    }
    if (static_cast<double>(outliers) > kMostOutliers * static_cast<double>(fit.areOutliers.size())) {
        return QStringLiteral("fits no pose of the object: %1 of %2 points are outliers")
            .arg(outliers)
            .arg(fit.areOutliers.size());
    }
    for (std::size_t i = 0; i < ObjectPose::kCount; ++i) {
        const bool isAngle = i < ObjectPose::kX;
        const double halfWidth = halfWidthOf(fit, i);
        if (!(halfWidth <= (isAngle ? kMostDegrees : kMostMm))) {
            constexpr const char* kNames[] = {"alpha", "beta", "gamma", "x", "y", "z"};
            return QStringLiteral("leaves the pose too uncertain: %1 within +-%2 %3")
                .arg(QLatin1String(kNames[i]), QString::number(halfWidth, 'f', 2),
                     isAngle ? QStringLiteral("degrees") : QStringLiteral("mm"));
        }
    }
    return {};
}

} // namespace

Sighting sight(const NamedProfile& profile, const CalibrationTask& task) {
    CalibrationObject object = task.object;
    object.obliqueness = std::abs(object.obliqueness);
    object.crestY = 0.0;
    Sighting sighting;
    sighting.moved = profile.moved;
    if (profile.profile.points.size() > kMostPoints) {
        sighting.fault = QStringLiteral("has %1 points; up to %2 are searched for the object")
                             .arg(QString::number(profile.profile.points.size()), QString::number(kMostPoints));
        return sighting;
    }
    int apexes = 0;
    for (const bool isReversed : {false, true}) {
        std::vector<std::size_t> order;
        const bool direction = isReversed != placementOf(task.placement).isMirrored;
        const std::vector<ReadPoint> points = readPoints(profile.profile, direction, order);
        const FlankSearch search = searchFlanks(points, object.p2());
        apexes = std::max(apexes, search.apexes);
        for (const FlankLines& lines : search.candidates) {
            const auto start = poseFromLines(lines, object);
            auto fit = start ? fitObjectPose(points, object, *start) : std::nullopt;
            if (!fit) {
                continue;
            }
            const QString fault = faultOf(*fit);
            if (fault.isEmpty()) {
                addObjectError(points, object, task.objectError, *fit);
                sighting.fit = std::move(fit);
                sighting.isReversed = direction;
                sighting.order = std::move(order);
                sighting.fault.clear();
                return sighting;
            }
            sighting.fault = sighting.fault.isEmpty() ? fault : sighting.fault; // of the likeliest candidate
        }
    }
    constexpr int kFewestApexes = 5; // beside the two outer crests
    if (sighting.fault.isEmpty()) {
        sighting.fault =
            apexes < kFewestApexes
                ? QStringLiteral("shows %1 apexes; crest, valley, crest ... of the object are 7").arg(apexes)
                : QStringLiteral("fits no pose of the object: it has another pitch or slope, or ridges are "
                                 "hidden");
    }
    return sighting;
}

} // namespace KxInspect::detail
