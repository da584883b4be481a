// The straight parts of profiles: short pieces of the laser line with their direction and place.
#pragma once

#include <KxMath/KxPoints.h>

#include <QtCore/QList>

#include <vector>

namespace KxInspect::detail {

/// A piece of a profile with the line through its points.
struct StraightPart {
    int record; ///< from 1 on
    float degrees; ///< angle of the line to the x axis, -90 to 90
    float x; ///< its middle, mm
    float y;
    float deviation; ///< of the points from the line, root mean square, mm
};

/// The length of the pieces. The back face of a rim is flat over 20 mm at least: a worn rim is not thinner. Pieces of
/// half of that lie on it as a whole in every profile, and are long enough to tell their direction to a degree with
/// noise of some tenths of a millimetre.
inline constexpr double kPartLength = 10.0; // mm

/// Cuts a profile into pieces of kPartLength, each of which begins in the middle of the one before, and appends those
/// of at least 5 points without a gap.
void addStraightParts(const QList<KxMath::KxPointXY>& points, int record, std::vector<StraightPart>& parts);

/// The deviation up to which a piece of about this direction is as straight as the noise of its sensor allows: twice
/// the lower quartile of all such pieces, since what bends deviates by more. The noise is along y, so that it depends on
/// the direction what is left of it. Never below 0.02 mm, where the steps of sensors are.
double straightLimit(const std::vector<StraightPart>& parts, double degrees);

} // namespace KxInspect::detail
