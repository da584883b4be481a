// The trends that kxmath trend tells.
#pragma once

#include "fleet/history/history.h"

#include <KxInspect/Limits.h>

#include <string>
#include <vector>

namespace kxtool {

/// Where a measure of a wheel is going.
struct WheelTrend {
    KxInspect::MeasureInfo measure;
    kxfleet::HistoryWheel wheel;
    kxfleet::Readings readings; ///< of all lives, without the shifts of sensors
    std::size_t lifeBegins = 0; ///< index of the first reading of the last life
    std::size_t lives = 1;
    kxfleet::Limits limits;
    bool isBeyond = false; ///< an alarm is open: see kxfleet::AlarmRule
    kxfleet::Trend trend; ///< of the last life; its outliers are indices into `readings`
};

/// A shift of the sensors at a place.
struct PlaceShift {
    std::string measure;
    kxfleet::MeasuringPlace place;
    kxfleet::StationShift shift;
};

/// All of them.
struct FleetTrends {
    std::vector<WheelTrend> wheels; ///< those that reach a limit soonest first
    std::vector<PlaceShift> shifts;
};

/// @param measures with readings of any wheel, or none
/// @param vehicle only this one; empty: all
FleetTrends trendsOf(kxfleet::Store& store, const std::vector<KxInspect::MeasureInfo>& measures,
                     const std::string& vehicle, const KxInspect::Limits& limits);

} // namespace kxtool
