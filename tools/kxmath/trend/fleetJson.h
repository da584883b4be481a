// What trends and alarms have in common, as JSON.
#pragma once

#include "tools/kxmath/trend/wheelTrends.h"

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>

namespace kxtool {

QJsonValue timeJson(double day); ///< ISO 8601 in UTC
QJsonValue textJson(const std::string& text); ///< null when it is empty
/// `vehicle`, `axle`, `side`
QJsonObject toJson(const kxfleet::StoredWheel& wheel);
/// `days`, `soonest`, `latest`, `limit`, `isLow`
QJsonObject toJson(const kxfleet::DaysToLimit& days, const kxfleet::Limits& limits);
/// `measure`, `station`, `side` (of the track), `named`, `began`, `size`
QJsonObject toJson(const PlaceShift& shift);

} // namespace kxtool
