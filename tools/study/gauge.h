// A gauge that is set onto a wheel or a rail by hand.
#pragma once

#include "simulator/random.h"
#include "simulator/wheelContour.h"

#include <KxInspect/Profile.h>
#include <KxInspect/Wheel.h>

namespace kxstudy {

/// What makes the gauge of a station differ from others, and one placement from the next; dirt is on the metal.
struct Gauge {
    double noise = 0.02; ///< mm, standard deviation of the points across the contour
    double spacing = 0.2; ///< mm along the contour
    double shift = 0.0; ///< mm, across the wheel or rail
    double turn = 0.0; ///< mrad
    double scale = 1.0;
    double placementShift = 0.01; ///< mm, standard deviation from placement to placement, as the next one
    double placementTurn = 0.1; ///< mrad
    double dirt = 0.05; ///< mm, of the thickest spot
};

/// The gauge of a station: off by its own calibration.
Gauge gaugeOf(int station);

/// The standard uncertainties of gauges, as their users know them: of their own errors and of placing them.
KxInspect::GaugeError gaugeError();

/// The points of a contour as the gauge measures them when it is set onto it once. y is the radius: the metal is on the
/// right hand of who walks along the contour.
KxInspect::Profile measuredBy(const Gauge& gauge, const kxsim::Contour& contour, kxsim::Random& random);

} // namespace kxstudy
