// The report of a conicity calculation.
#pragma once

#include "inspect/conicity/wheelSet.h"

namespace kxtool {

/// A self-contained HTML page: the profiles in place with the contact points, the contact points over the displacement,
/// the difference of radii and the conicity with its value at `shownAmplitude`.
QString conicityReport(const WheelSet& set, const ConicityResult& result, float shownAmplitude,
                       const QStringList& names, const QStringList& warnings);

} // namespace kxtool
