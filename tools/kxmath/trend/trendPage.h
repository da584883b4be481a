// The trends of wheels as a page.
#pragma once

#include "report/fleet/trendReport.h"
#include "tools/kxmath/trend/wheelTrends.h"

namespace kxtool {

/// @param lead days before a limit within which it is marked
/// @param most vehicles that get pictures
kxreport::TrendPage trendPage(const FleetTrends& trends, double lead, int most);

/// One shift of sensors as a sentence.
QString shiftText(const PlaceShift& shift);

} // namespace kxtool
