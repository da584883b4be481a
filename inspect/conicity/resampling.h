// How noise of the profiles changes the conicity, by resampling.
#pragma once

#include "inspect/conicity/lateralSweep.h"
#include "inspect/conicity/preparation.h"

#include <KxInspect/Conicity.h>
#include <KxInspect/Interval.h>

#include <vector>

namespace KxInspect::detail {

/// What noise does to the conicity at some amplitudes.
class NoiseEffect {
public:
    /// What an amplitude's conicity has to be multiplied with to be free of bias; NaN where that is unknown.
    float correction(float amplitude) const;
    /// The conicity of the profiles, calculated as in the trials; NaN where there is none.
    float observedAt(float amplitude) const;
    /// The 95 % interval of a corrected conicity.
    Interval interval(float amplitude, float conicity) const;

    struct Value {
        float amplitude = 0.0f;
        float logCorrection = 0.0f; ///< NaN where it is unknown
        float halfWidth = 0.0f; ///< of the 95 % interval of the logarithm of the corrected conicity
    };
    std::vector<Value> values = {}; ///< ascending amplitudes
    Oscillation observed; ///< that of the profiles, as coarse as in the trials
};

/// Draws the noise of all profiles many times and looks at what the conicity becomes, at amplitudes every 0.5 mm up to `last`.
/// Always draws the same numbers. The errors of the gauges are smooth: what each changes by itself is added to the variance.
/// @param pilotStep of the profiles that the trials are compared with: kFineStep takes off what the coarser steps of the trials do, too
NoiseEffect resample(const PerWheelSetPart<PreparedSection>& sections, const ConicityInput& input, float last,
                     double pilotStep);

} // namespace KxInspect::detail
