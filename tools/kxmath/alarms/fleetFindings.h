// The findings that kxmath alarms tells.
#pragma once

#include "fleet/findings/findings.h"
#include "tools/kxmath/trend/wheelTrends.h"

#include <vector>

namespace kxtool {

struct MeasureFindings {
    KxInspect::MeasureInfo measure;
    kxfleet::History history;
    kxfleet::Findings found;
};

/// How alarms are made.
struct FindingRules {
    kxfleet::AlarmRule alarm;
    kxfleet::AnnounceRule announce;
    double recent = 14.0; ///< shifts of sensors are findings for so many days
};

/// What was found in a store.
struct FleetFindings {
    std::vector<MeasureFindings> measures;
    std::vector<PlaceShift> shifts; ///< those of the last days before the last reading
    double lastDay = 0.0; ///< of all readings

    std::size_t openAlarms() const;
    std::size_t announcements() const;
    std::size_t judged() const;
};

FleetFindings findingsOf(kxfleet::Store& store, const std::vector<KxInspect::MeasureInfo>& measures,
                         const KxInspect::Limits& limits, const FindingRules& rules);

} // namespace kxtool
