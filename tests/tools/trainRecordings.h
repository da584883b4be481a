// Small recordings of flat wheels, whose distances are known exactly.
#pragma once

#include <QtCore/QByteArray>

#include <optional>
#include <vector>

namespace tool_test {

enum class RecordKind { CloudSections, ProfileRecords };

/// One wheel as a sensor sees it: flat, `offset` above the reference line. Without one the sensor misses the wheel.
using SeenWheel = std::optional<float>;

/// The recording of a train whose wheels follow each other after 30, 50, 30, 50, ... records; a wheel lasts 10 records,
/// and the one in the middle has the most points. Profile records have the number of the moment as z.
/// @param isTriggered nothing is recorded in the middle of the longer gaps; z goes on
QByteArray recording(const std::vector<SeenWheel>& wheels, RecordKind kind, int pointsPerProfile = 40,
                     bool isTriggered = false);

/// Settings for the serial numbers 1001 and 1002, with the base distance 1360.
QByteArray trainSettings();

} // namespace tool_test
