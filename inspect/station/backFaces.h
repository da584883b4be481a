// The back faces of wheels among the straight parts of a recording.
#pragma once

#include "inspect/station/recordRuns.h"
#include "inspect/station/straightParts.h"

#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A line by its direction and its distance from the sensor, perpendicular to it: what is nearer to the sensor is below
/// it. Unlike y = k x + b it means the same at every tilt.
struct FaceLine {
    double degrees = 0.0; ///< to the x axis, within +-87: steeper ones are no settings
    double away = 0.0; ///< mm

    /// The distance of a point from a line of this direction through the sensor.
    double distanceOf(double x, double y) const;
};

/// The back faces that a recording shows: nearly parallel lines, one for each wheel.
struct BackFaces {
    FaceLine line; ///< medians of the wheels
    std::vector<double> degrees; ///< of each wheel
    std::vector<double> away; ///< of each wheel, perpendicular to `line`, mm
    RunDivision runs; ///< of records with a face
};

/// How far back faces may be from their median: wheelsets play in the track, by 5 mm to both sides when wheels and
/// rails are new, by some 15 mm with worn flanges in a curve.
inline constexpr double kMostPlay = 15.0; // mm

/// Finds the back faces: what is straight, comes and goes `wheels` times, and is nearest to the sensor.
///
/// Straight parts vote for lines, in cells of direction and distance. For each of the lines with the most votes the
/// records that show it are divided into runs. Of the lines with `wheels` runs before which no other such line lies, the
/// one in the most records is taken. Where another one without wheels before it is in more records, the number is
/// probably wrong, and that one is taken.
/// @param wheels how many there should be
/// @return nothing when no line shows a run of at least 3 records
std::optional<BackFaces> findBackFaces(const std::vector<StraightPart>& parts, std::size_t wheels);

} // namespace KxInspect::detail
