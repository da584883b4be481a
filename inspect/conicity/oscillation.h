// The oscillation of a wheel-set whose difference of radii is known.
#pragma once

#include <KxInspect/Profile.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// Distance of neighbouring displacements in the calculation of the core, and of the samples of its running surfaces, mm.
inline constexpr double kLateralStep = 0.1;

/// The same of a calculation that adds hardly any error of its own.
inline constexpr double kFineStep = 0.01;

/// The oscillation about the displacement with equal radii that is nearest to 0.
class Oscillation {
public:
    Oscillation() = default; ///< reaches no amplitude
    /// @param deltaR the rolling radius of the second wheel minus that of the first, for displacements every `step` mm; no NaN
    /// @param centre the index of the displacement 0
    Oscillation(const std::vector<float>& deltaR, std::size_t centre, double step = kLateralStep);

    /// The conicity of the cones whose wheel-set has the same wavelength at an amplitude in mm: (pi / integral)^2 for the
    /// integral of 1 / sqrt(F(a) - F(y)) between the turning points, F being the integral of the difference. Empty when
    /// the amplitude is not reached.
    std::optional<double> conicity(double amplitude) const;

private:
    /// One side of the centre as nodes at rising distances from it: 0, then `first`, and every `step` mm from there on.
    struct Side {
        double step = kLateralStep;
        double first = 0.0;
        std::vector<double> force = {0.0}; ///< the difference of radii, positive where it brings the wheel-set back
        std::vector<double> potential = {0.0}; ///< its integral
        std::vector<double> highest = {0.0}; ///< the highest potential so far

        void add(double value);
        std::size_t size() const { return force.size(); }
        double distance(std::size_t node) const;
        double turningPoint(double level) const; ///< the first distance with a potential, which is reached
        double potentialAt(double place) const;
    };

    double amplitudeOf(double level) const;

    Side left_ = {};
    Side right_ = {};
};

} // namespace KxInspect::detail
