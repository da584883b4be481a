// The radii of a tread in the profiles of a wheel, compared at the places that they have in common.
#pragma once

#include "inspect/train/axleYaw.h"
#include "inspect/train/flangeCircle.h"

#include <KxInspect/PassResult.h>

#include <array>
#include <vector>

namespace KxInspect::detail {

/// A value at each millimetre of the tread from kTreadFrom to kTreadTo, NaN where the profile does not show it.
using Stations = std::array<double, static_cast<std::size_t>(kTreadTo - kTreadFrom) + 1>;

/// Where the tread is at each station, down along the reference line.
Stations stationsOf(const std::vector<SectionPoint>& tread);

/// The radius of the tread at each station in each profile.
class RadiusTable {
public:
    /// Adds a profile that shows at least kLeastTread stations; others are left out.
    /// @param place of the profile along the pass, mm
    void add(int profile, double place, const Stations& tread, const FlangeCircle& circle, const Askew& askew);

    int size() const { return static_cast<int>(rows_.size()); }

    /// Leaves out the profiles that cannot be compared with the others: those with half of their stations or more where
    /// most profiles do not show the tread.
    void keepComparable();

    /// What is common to a profile, apart from what is common to a station: its radius against the median of all.
    std::vector<RadiusDeviation> deviations() const;

private:
    struct Row {
        int profile;
        double fromAxle;
        Stations radius;
    };

    std::vector<double> rowEffects() const;

    std::vector<Row> rows_;
};

} // namespace KxInspect::detail
