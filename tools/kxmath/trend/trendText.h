// The results of kxmath trend as text.
#pragma once

#include "tools/kxmath/trend/wheelTrends.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace kxtool {

/// A table with a line per wheel and measure, those that reach a limit first on top, and the shifts of sensors.
QString trendTable(const FleetTrends& trends);

/// One object; a missing value is null and has its reason.
QByteArray trendJson(const FleetTrends& trends);

/// The days until a limit with their interval, "35 (30 to 41)"; behind one end nothing may be known: "35 (30 or more)".
QString daysText(const kxfleet::DaysToLimit& days);

/// "2026-03-29" of a day since 1970-01-01.
QString dateText(double day);

/// "axle 2 left"
QString placeOnVehicle(const kxfleet::StoredWheel& wheel);

/// "north, left": the station and its side.
QString textOf(const kxfleet::MeasuringPlace& place);

} // namespace kxtool
