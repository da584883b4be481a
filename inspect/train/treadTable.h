// The radii of a tread in the profiles of a wheel, compared at the places across it that they have in common.
#pragma once

#include "inspect/train/axleFit.h"

#include <KxInspect/PassResult.h>

#include <array>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A value at each millimetre of the tread from kTreadFrom to kTreadTo, NaN where the profile does not show it.
using Stations = std::array<double, static_cast<std::size_t>(kTreadTo - kTreadFrom) + 1>;

/// How far down the tread is at each station.
Stations stationsOf(const std::vector<SectionPoint>& tread);

/// A range of stations, the last one included.
struct Band {
    std::size_t first = 0;
    std::size_t last = std::tuple_size_v<Stations> - 1;

    std::size_t width() const { return last - first + 1; }
};

/// The tread of one profile over a band.
struct BandRadius {
    int profile;
    double fromAxle; ///< mm, negative before it
    double deviation; ///< of the radius from the median of all profiles, mm
    double error; ///< its standard error, mm
    double noise; ///< the part of it that is independent of the other profiles, mm
};

/// What is known of the tips of the flange beside their circle.
struct TipView {
    double across; ///< behind the reference line, mm
    /// Standard error of a tip from the noise of its points; what they scatter more is movement of whole profiles.
    double noise;
    int count; ///< of the tips
    ValueWithError skew; ///< what is known of the shift of the rings of the wheel along the track for each mm across
    /// How much wheels of the station differ in it. Dirt leans the tread of many profiles alike, which the scatter of the
    /// profiles of one wheel does not show.
    double skewScatter;
};

/// The radius of the tread at each station in each profile.
class TreadTable {
public:
    /// Adds a profile that shows at least kLeastTread stations; others are left out.
    /// @param place of the profile along the pass, mm
    void add(int profile, double place, const Stations& down);

    int size() const { return static_cast<int>(rows_.size()); }

    /// Leaves out the profiles that cannot be compared with the others: those with half of their stations or more where
    /// most profiles do not show the tread.
    void keepComparable();

    /// Turns depths into radii about an axle. An axle that is not square to the track or to the reference line makes
    /// each ring of the tread a circle with a centre of its own; that is found from how the differences between the rings
    /// change along the wheel, which no flat of even depth does, and taken off.
    void compare(const AxleFit& axle, const TipView& tips);

    /// What is common to the stations of a band in each profile that shows kLeastTread of them, or three in five of a
    /// narrow band, apart from what is common to all profiles. Nothing when too few do. After compare().
    std::vector<BandRadius> deviations(const Band& band) const;

    /// The radii at all stations less what is common to a station, a row for each of so many profiles of the wheel. After
    /// compare().
    TreadMap map(int profiles) const;

    /// The shift of the rings along the track for each mm across. After compare().
    ValueWithError skew() const { return {skew_, std::sqrt(straightness_[0][0])}; }

    /// The radius at the tape circle, or what is nearest to it; mm.
    double treadRadius() const;

private:
    struct Row {
        int profile;
        double place;
        Stations down;
        Stations radius = {};
        double fromAxle = 0.0; ///< of the tape circle
        double effect = 0.0; ///< what is common to the row
        double noise = 0.0; ///< of the stations about it, as a standard deviation
    };

    void updateRadii();
    void polish();
    void measureNoise();
    bool straighten();
    double acrossFromTip(std::size_t station) const;
    double effectOf(const Row& row, const Band& band) const;
    /// How radii change with the unknowns of the axle, and with the skew and the tilt of the rings.
    using Change = std::array<double, 7>;
    Change changeAt(const Row& row, std::size_t station) const;
    /// What is common to the stations of a band, apart from what is common to all rows.
    Change changeOf(const Row& row, const Band& band) const;
    void findCommonChange();
    double noiseOf(const Row& row, int shown) const;
    double errorOf(double noise, const Change& change) const;

    std::vector<Row> rows_;
    Stations common_ = {};
    std::array<Change, std::tuple_size_v<Stations>> commonChange_ = {};
    AxleFit axle_;
    TipView tips_ = {};
    double skew_ = 0.0; ///< shift of the rings along the track for each mm across
    double tilt_ = 0.0; ///< shift downwards, likewise
    std::array<std::array<double, 2>, 2> straightness_ = {}; ///< covariance of the two
};

} // namespace KxInspect::detail
