// What errors of the poses of the sensors make of the measures of a wheel.
#pragma once

#include "inspect/wheelset/sectionMeasures.h"
#include "inspect/wheelset/turnedWheel.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A sensor with the wheel that it has found.
struct PosedWheel {
    const SensorView* view;
    const TurnedWheel* wheel;
};

/// The measures of the section that some wheels give together, in the order of PassMeasure; in parallel with those of
/// poseErrors(). Absent ones are not measured.
using SectionValues = std::array<std::optional<double>, kPassMeasures>;
using MeasureSection = std::function<SectionValues(const std::vector<const TurnedWheel*>& wheels)>;

/// Half the widths of the 95 % intervals that the uncertainties of the poses make of the measures, in the order of
/// PassMeasure. Absent where a measure cannot be taken, and all of them where the uncertainty of a sensor is not known.
///
/// The points are put into the track frame by poses that are off in every value by its standard uncertainty, to one side or
/// the other, turned about their axle anew and measured, in the runs of an orthogonal plan (R. L. Plackett, J. P. Burman, The
/// design of optimum multifactorial experiments, 1946): the mean square of what the measures differ by is the sum of the
/// squares of the effects of all values, as of values that are independent of each other, and of what they do together. x and
/// z of a pose move a wheel and its axle alike, so that no measure depends on them.
SectionValues poseErrors(const std::vector<PosedWheel>& wheels, double face, const MeasureSection& measure);

} // namespace KxInspect::detail
