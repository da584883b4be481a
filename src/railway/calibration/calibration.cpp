// Calibration of a sensor's pose.
#include "KxMath/KxMetro.h"

#include "lists/checked.h"
#include "railway/calibration/calibrationObject.h"
#include "railway/calibration/ridgeFit.h"
#include "railway/calibration/sensorPose.h"
#include "rounding/angles.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace KxMath {

namespace {

using detail::kNaN;

/// Makes every given point an apex and lays a line through each two neighbours.
void takeApexes(const QList<QPointF>& given, KxProfile& apexes, QList<KxLine>& lines) {
    for (const QPointF& p : given) {
        apexes.points.append(KxPointXY(static_cast<float>(p.x()), static_cast<float>(p.y())));
    }
    for (qsizetype i = 0; i + 1 < apexes.points.size(); ++i) {
        KxPointCloud<KxPointXY> ends;
        ends.points = detail::copyOf(apexes.points.constData() + i, 2);
        KxLine line; // stays NaN where there is no fit
        line.calcFromPointCloud(ends);
        lines.append(line);
    }
}

void report(const KxProfile& apexes, const QList<KxLine>& lines, _KxMETRO_DbgData_& dbg) {
    constexpr qsizetype kMaxApexes = 10;
    dbg.apexCount = static_cast<int>(std::min(apexes.points.size(), kMaxApexes));
    for (int i = 0; i < dbg.apexCount; ++i) {
        dbg.apexX[i] = apexes.points.at(i).x;
        dbg.apexY[i] = apexes.points.at(i).y;
    }
    for (int i = 0; i <= dbg.apexCount; ++i) { // given apexes have one line less
        const KxLine line = lines.value(i);
        dbg.lineK[i] = line.k;
        dbg.lineB[i] = line.b;
    }
}

/// The finite points, in the order in which the object is read: reversed for mirrored sensors.
QList<detail::ProfilePoint> workingPoints(const KxProfile& profile, const KxPlacement& placement) {
    KxProfile work;
    std::copy_if(profile.points.cbegin(), profile.points.cend(), std::back_inserter(work.points),
                 [](const KxPointXY& p) { return std::isfinite(p.x) && std::isfinite(p.y); });
    work.sort(placement.isMirrored ? KxSortDescending : KxSortAscending, KxSortAscending);
    QList<detail::ProfilePoint> points;
    detail::reserve(points, work.points.size());
    for (const KxPointXY& p : std::as_const(work.points)) {
        const double x = static_cast<double>(p.x);
        points.append({placement.isMirrored ? -x : x, static_cast<double>(p.y)});
    }
    return points;
}

QList<KxPointXY> workingApexes(const KxProfile& apexes, const KxPlacement& placement) {
    KxProfile work;
    work.points = apexes.points;
    if (placement.isMirrored) {
        work.resize(-1.0f, 1.0f, 1.0f);
    }
    work.sort(KxSortAscending, KxSortAscending);
    return work.points;
}

/// The crest next to a valley at the end of the apexes: where y is smallest before the points fall away again.
/// @param next the point that follows the valley, and `end` the one behind the last, either way round
template <typename Iterator>
std::optional<KxPointXY> crestBeyond(Iterator next, Iterator end) {
    constexpr double kFall = 1.0; // mm, more than noise
    if (next == end) {
        return std::nullopt;
    }
    auto crest = next;
    for (; next != end && next->y < crest->y + kFall; ++next) {
        if (next->y < crest->y) {
            crest = next;
        }
    }
    return KxPointXY(static_cast<float>(crest->x), static_cast<float>(crest->y));
}

/// Adds the crests at either end, which are missing among the apexes where the half ridge beyond is not seen.
void addEndCrests(QList<KxPointXY>& apexes, const QList<detail::ProfilePoint>& points) {
    if (apexes.isEmpty() || points.isEmpty()) {
        return;
    }
    const auto isBefore = [](const detail::ProfilePoint& p, float x) { return p.x < static_cast<double>(x); };
    const auto first = std::lower_bound(points.cbegin(), points.cend(), apexes.constFirst().x, isBefore);
    const auto last = std::lower_bound(points.cbegin(), points.cend(), apexes.constLast().x, isBefore);
    if (const auto crest = crestBeyond(std::make_reverse_iterator(first), points.crend())) {
        apexes.prepend(*crest);
    }
    if (const auto crest = crestBeyond(last, points.cend())) {
        apexes.append(*crest);
    }
}

/// True when apexes may be those of the object: finite and in order, each valley behind the line from crest to crest,
/// the straight crests about equally far apart.
bool isPlausible(const detail::Apexes& apexes) {
    constexpr float kMaxInequality = 0.25f;
    for (std::size_t i = 0; i < apexes.size(); ++i) {
        if (!std::isfinite(apexes[i].x) || !std::isfinite(apexes[i].y) || (i > 0 && apexes[i].x <= apexes[i - 1].x)) {
            return false;
        }
    }
    for (std::size_t i = 1; i + 1 < apexes.size(); i += 2) {
        const KxPointXY& a = apexes[i - 1];
        const KxPointXY& b = apexes[i + 1];
        const float t = (apexes[i].x - a.x) / (b.x - a.x);
        if (!(apexes[i].y > a.y + t * (b.y - a.y))) {
            return false;
        }
    }
    const float first = apexes[2].x - apexes[0].x;
    const float second = apexes[4].x - apexes[2].x;
    return std::abs(first - second) <= kMaxInequality * first;
}

/// The best pose for any run of apexes that may be those of the object, nothing when no pose is good.
std::optional<detail::PoseFit> findPose(const KxProfile& profile, const KxProfile& apexes,
                                        const detail::CalibrationObject& object, const KxPlacement& placement) {
    const QList<detail::ProfilePoint> points = workingPoints(profile, placement);
    QList<KxPointXY> all = workingApexes(apexes, placement);
    addEndCrests(all, points);
    std::optional<detail::PoseFit> best;
    for (qsizetype first = 0; first + detail::kApexCount <= all.size(); ++first) {
        detail::Apexes run;
        std::copy_n(all.cbegin() + first, detail::kApexCount, run.begin());
        if (!isPlausible(run)) {
            continue;
        }
        const auto fit = profile.points.isEmpty() ? detail::fitRidges(run) : detail::fitRidges(points, run);
        if (!fit) {
            continue;
        }
        const detail::PoseFit pose = detail::fitPose(*fit, object, placement);
        if (pose.isGood && (!best || pose.residual < best->residual)) {
            best = pose;
        }
    }
    return best;
}

/// Writes a pose, folded by the placement.
void store(const detail::SensorPose& pose, const KxPlacement& placement, _KxMETRO_SensorCoord_& coord) {
    constexpr double kTurn = 2.0 * detail::kPi;
    coord.alpha = static_cast<float>(placement.isMirrored ? kTurn - pose.alpha : pose.alpha);
    coord.beta = static_cast<float>(pose.beta);
    coord.gamma = static_cast<float>(placement.isMirrored ? kTurn - pose.gamma : pose.gamma);
    coord.x = static_cast<float>(pose.x);
    if (placement.findsY) {
        coord.y = static_cast<float>(pose.y);
    }
    coord.z = static_cast<float>(placement.isMirrored ? -pose.z : pose.z);
}

} // namespace

bool METRO_calcAnglesCoord(KxProfile& profile, float p1, float p2, float p3, float p4, _KxMETRO_SensorCoord_& coord,
                           // NOLINTNEXTLINE(performance-unnecessary-value-param): the interface takes a copy
                           QList<QPointF> apexes, _KxMETRO_DbgData_* dbg) {
    constexpr float kMaxDY = 2.0f;
    if (dbg != nullptr) {
        dbg->apexCount = 0;
        dbg->value0 = kNaN;
        dbg->value1 = kNaN;
    }
    KxProfile used;
    QList<KxLine> lines;
    if (apexes.isEmpty()) {
        METRO_detectApexes(profile, used, lines, kMaxDY);
    } else {
        takeApexes(apexes, used, lines);
    }
    if (dbg != nullptr) {
        report(used, lines, *dbg);
    }
    const detail::CalibrationObject object{static_cast<double>(p1), static_cast<double>(p2), static_cast<double>(p3),
                                           static_cast<double>(p4)};
    if (!object.isValid()) {
        return false;
    }
    const KxPlacement placement(coord.position);
    const auto solution = findPose(profile, used, object, placement);
    if (!solution) {
        return false;
    }
    store(solution->pose, placement, coord);
    if (dbg != nullptr) {
        dbg->value0 = static_cast<float>(solution->residual);
        dbg->value1 = static_cast<float>(solution->angleDeviation * 180.0 / detail::kPi);
    }
    return true;
}

} // namespace KxMath
