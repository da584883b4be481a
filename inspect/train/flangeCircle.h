// The circle on which the flange tip of a wheel turns, from the profiles of a pass.
#pragma once

#include <KxMath/KxPoints.h>
#include <KxMath/KxPrimitives.h>

#include <QtCore/QList>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A point of a profile in the directions of the wheel.
struct SectionPoint {
    double across; ///< distance behind the reference line, towards the field side, mm
    double down; ///< along the reference line, towards the rail, mm
};

/// Turns the points of a profile into the directions of the wheel.
/// @param reference trace of the back face
/// @param towardsRail 1 when x runs down along the laser line, else -1
std::vector<SectionPoint> sectionOf(const QList<KxMath::KxPointXY>& points, const KxMath::KxLine& reference,
                                    double towardsRail);

/// Points around a place of a section, how many there are before and behind it.
struct Neighbours {
    int before = 0;
    int behind = 0;

    int fewer() const { return std::min(before, behind); }
};

/// Calls use(t, down) for each point of the section that is `t` behind `middle`, within +-halfWidth.
template <typename Use>
Neighbours visitNeighbours(const std::vector<SectionPoint>& section, double middle, double halfWidth, Use use) {
    Neighbours neighbours;
    for (const SectionPoint& p : section) {
        const double t = p.across - middle;
        if (std::abs(t) <= halfWidth) {
            ++(t < 0.0 ? neighbours.before : neighbours.behind);
            use(t, p.down);
        }
    }
    return neighbours;
}

/// The tip of the flange; nothing where the profile does not show it from both sides.
std::optional<SectionPoint> flangeTip(const std::vector<SectionPoint>& section);

/// The standard error of such a tip from the noise of the points around it, mm.
double tipError(const std::vector<SectionPoint>& section, const SectionPoint& tip);

/// 1 when x runs towards the rail, -1 when it runs away: the flange reaches farther down than the tread. 0 when no
/// profile shows both.
double directionOfRail(const std::vector<QList<KxMath::KxPointXY>>& profiles, const KxMath::KxLine& reference);

/// The tip of the flange in one profile.
struct ProfileTip {
    double place; ///< of the profile along the pass, mm
    double down;
};

/// Its centre is the axle.
struct FlangeCircle {
    double place = 0.0; ///< of the axle along the pass when it is over the laser plane
    double down = 0.0; ///< of the axle
    double radius = 0.0;
    double scatter = 0.0; ///< of the tips about the circle, as a standard deviation
};

/// Fits a circle that single tips far off do not move. Nothing for fewer than kFewestTips, or when they are in line.
std::optional<FlangeCircle> fitFlangeCircle(const std::vector<ProfileTip>& tips);

inline constexpr int kFewestTips = 8;

} // namespace KxInspect::detail
