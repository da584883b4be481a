// A pass as a sheet: a row per wheel with all of its measures, limits and verdicts.
#pragma once

#include "Export.h"
#include "PassResult.h"

#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// A measure in the row of a wheel. Those of an axle, a bogie or a vehicle stand in the rows of all of their wheels.
struct SheetValue {
    std::optional<double> value = {}; ///< in MeasureInfo::unit
    Interval interval = {}; ///< of 95 %
    std::string intervalHolds =
        {}; ///< "noise only", "noise and poses", "noise and base distance"; empty without interval
    std::string reason = {}; ///< why there is no value, or no verdict on it, a clause; empty otherwise
    LimitBounds bounds = {}; ///< those that the value was judged by
    std::optional<LimitVerdict> verdict = {}; ///< absent without limits
    std::optional<bool> isDoubtful = {}; ///< as Assessment::isDoubtful
};

/// A wheel of the sheet.
struct SheetRow {
    int pair = 0; ///< from 1; 0 for an axle of a known vehicle that has no number in the pass
    int side = 0; ///< that of its recording, from 1; 0 likewise
    std::optional<TrackSide> trackSide = {}; ///< absent where the settings do not say it
    AxleNumber axle = {};
    std::vector<SheetValue> values = {}; ///< in the order of measureInfos()
    std::optional<LimitVerdict> verdict = {}; ///< PassAssessment::ofWheel()
    bool isDoubtful = false; ///< one of its own values is
    int profiles = 0; ///< from which its measures are taken, of all sensors
    std::vector<int> sensors = {}; ///< the numbers of those that contributed
    std::string reason = {}; ///< why nothing was seen of it, a clause; empty otherwise
};

/// The rows in the order in which the wheels passed, side 1 first; behind them those of axles that no sensor saw. They
/// depend on the result alone, also on one that was read from JSON.
KXINSPECT_EXPORT std::vector<SheetRow> sheetOf(const PassResult& result);

} // namespace KxInspect
