// Inputs that the competitors of the railway functions share.
#pragma once

#include "digests.h"
#include "inputs.h"

#include <vector>

namespace kxbench {

/// A wheel-set of cones on round rails, y down and x outwards.
struct WheelSet {
    KxMath::KxProfile wheel1, wheel2, rail1, rail2;
    float radius = 460.0f;
    float railDistance = 1442.0f;
    float wheelDistance = 1360.0f;
    float edgeMargin = 0.001f;
};
WheelSet& wheelSet(); // not const: copying a profile needs a non-const one

/// The conicity over the amplitude and the other results of a calculation.
struct ConicityJob {
    std::vector<double> conicities;
};

inline Digest digestConicity(ConicityJob& job) {
    double sum = 0.0;
    for (const double value : job.conicities) {
        sum += value;
    }
    return {sum / static_cast<double>(job.conicities.size()), 0.03};
}

/// A competitor for each number of amplitudes: `calculate(job, amplitudes)`.
template <typename Calculate>
void addConicity(const char* who, Calculate calculate) {
    for (const int amplitudes : {50, 100, 200}) {
        add<ConicityJob>(
            "conicity, by amplitudes", amplitudes, who, 1, [](ConicityJob&) { wheelSet(); },
            [=](ConicityJob& j) { calculate(j, amplitudes); }, digestConicity);
    }
}

/// The cross-section of a rim of 1300 points about the origin.
constexpr int kRimPoints = 1300;
const QList<KxMath::KxPointXYZ>& rimPoints();

struct RimJob {
    KxMath::KxPointCloud<KxMath::KxPointXYZ> rim;
    std::vector<double> measures; ///< height, flank and width
};

inline Digest digestRim(RimJob& job) {
    double sum = 0.0;
    for (const double value : job.measures) {
        sum += value;
    }
    return {sum, 1e-3};
}

/// A competitor for the parameters of a wheel.
template <typename Work, typename Result>
void addOnRim(const char* who, Work work, Result digest) {
    const auto fill = [](RimJob& job) { job.rim.points = freshCopy(rimPoints()); };
    add<RimJob>("wheel parameters", kRimPoints, who, 20, fill, work, digest);
}

} // namespace kxbench
