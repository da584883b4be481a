// What contradicts the method, and what limits the meaning of a result.
#include "inspect/conicity/wheelSet.h"

#include "inspect/fitting/lookUp.h"

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using KxMath::KxProfile;

constexpr int kMinPoints = 100;
constexpr float kTapeCircle = 70.0f; ///< distance of the tape circle from the flange back (EN 13715, 2020)
constexpr float kGaugeTolerance = 0.1f;
constexpr float kMinFlangeHeight = 15.0f;
constexpr float kMaxFlangeHeight = 45.0f;

bool isLower(const KxPointXY& a, const KxPointXY& b) {
    return a.y < b.y;
}

QString text(size_t role, const QString& what) {
    return QStringLiteral("%1 %2").arg(QLatin1String(roleName(role)), what);
}

/// A rail has its top, the smallest y, away from its ends.
QString railContradiction(const KxProfile& rail, float gaugeDepth) {
    const QList<KxPointXY>& points = rail.points;
    const auto [top, bottom] = std::minmax_element(points.cbegin(), points.cend(), isLower);
    const bool isBottomInside = bottom != points.cbegin() && bottom != points.cend() - 1;
    const bool isTopAtEnd = top == points.cbegin() || top == points.cend() - 1;
    if (isBottomInside && isTopAtEnd) {
        return QStringLiteral("looks upside down (its y should point down; see --up)");
    }
    if (points.first().y - top->y < gaugeDepth - kGaugeTolerance && points.last().y - top->y >= gaugeDepth) {
        return QStringLiteral(
            "reaches down to the gauge depth on its outer side only (x should point outwards; see --mirror)");
    }
    return isTopAtEnd ? QStringLiteral("rises to one end: its top is not in the profile") : QString();
}

/// Whether `distance` is a multiple of `step` within a hundredth of a millimetre.
bool isMultiple(float distance, float step) {
    return std::abs(distance - std::round(distance / step) * step) < 0.01f;
}

} // namespace

QString wheelContradiction(const KxProfile& wheel) {
    // A wheel has its flange, the largest y, near the flange back, and its tread less far down.
    const QList<KxPointXY>& points = wheel.points;
    const float back = points.first().x;
    const float width = points.last().x - back;
    const auto [highest, lowest] = std::minmax_element(points.cbegin(), points.cend(), isLower);
    const float tread = static_cast<float>(valueAt(wheel, static_cast<double>(back + kTapeCircle)));
    if (lowest->x - back < width * 0.4f) {
        const float height = lowest->y - tread;
        if (std::isnan(height) || (height >= kMinFlangeHeight && height <= kMaxFlangeHeight)) {
            return {};
        }
        return QStringLiteral("has no flange of the usual height 70 mm inside the tape circle");
    }
    if (highest->x - back < width * 0.4f && tread - highest->y >= kMinFlangeHeight) {
        return QStringLiteral("looks upside down (its y should point down; see --up)");
    }
    return QStringLiteral("has its lowest point far from the flange back (x should point outwards; see --mirror)");
}

QStringList findContradictions(const WheelSet& set) {
    QStringList found;
    for (size_t role = 0; role < RoleCount; ++role) {
        const KxProfile& profile = set.profiles[role];
        if (profile.points.size() < kMinPoints) {
            found += text(role, QStringLiteral("has %1 points only").arg(profile.points.size()));
        }
        if (profile.points.isEmpty()) {
            continue;
        }
        if (!(widthOf(profile) <= kMaxWidth)) { // NaN: true
            found += text(role, QStringLiteral("is %1 mm wide, more than the %2 mm that are calculated with")
                                    .arg(static_cast<double>(widthOf(profile)))
                                    .arg(static_cast<double>(kMaxWidth)));
        }
        const QString what = isWheel(role) ? wheelContradiction(profile) : railContradiction(profile, set.gaugeDepth);
        if (!what.isEmpty()) {
            found += text(role, what);
        }
    }
    constexpr float kGrid = 0.2f;
    if (!isMultiple(set.gauge - set.backToBack, kGrid)) {
        found += QStringLiteral("gauge minus back-to-back distance is no multiple of 0.2 mm: the wheels are lined up "
                                "with the rails to the next 0.1 mm");
    }
    return found;
}

QStringList findLimits(const ConicityResult& result, float shownAmplitude) {
    QStringList found;
    const QList<KxPointXY>& curve = result.conicity.points;
    if (curve.isEmpty() || curve.last().x < shownAmplitude) {
        found += QStringLiteral("the amplitude of %1 mm is not reached: the curve ends at %2 mm")
                     .arg(static_cast<double>(shownAmplitude))
                     .arg(curve.isEmpty() ? 0.0 : static_cast<double>(curve.last().x), 0, 'f', 2);
    }
    const auto without = curve.size() - std::count_if(curve.cbegin(), curve.cend(), hasConicity);
    if (without > 0) {
        found +=
            QStringLiteral("%1 of %2 amplitudes have no conicity: the difference of radii is too rough there for the "
                           "method")
                .arg(without)
                .arg(curve.size());
    }
    constexpr float kJump = 0.5f; ///< mm between neighbours 0.1 mm apart
    const QList<KxPointXY>& deltaR = result.deltaR.points;
    for (qsizetype i = 0; i + 1 < deltaR.size(); ++i) {
        const float jump = deltaR[i + 1].y - deltaR[i].y;
        if (std::abs(jump) > kJump && std::abs(deltaR[i].x) <= shownAmplitude) {
            found += QStringLiteral("the difference of radii jumps by %1 mm at the displacement %2 mm")
                         .arg(static_cast<double>(jump), 0, 'f', 2)
                         .arg(static_cast<double>(deltaR[i].x), 0, 'f', 1);
        }
    }
    return found;
}

} // namespace kxtool
