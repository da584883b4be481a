// The results of kxmath alarms as text.
#pragma once

#include "tools/kxmath/alarms/fleetFindings.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace kxtool {

/// How many there are of what, on one line.
QString summaryOf(const FleetFindings& findings);

/// @{ Tables with their heads: vehicle, wheel, measure and what was found.
std::vector<QStringList> alarmRows(const FleetFindings& findings, bool withClosed);
std::vector<QStringList> announcementRows(const FleetFindings& findings);
/// @}

/// Lines of plain text, as for mail.
QString alarmsText(const FleetFindings& findings, bool withClosed);

/// One object.
QByteArray alarmsJson(const FleetFindings& findings);

} // namespace kxtool
