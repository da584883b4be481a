// The small file that says why a group could not be measured.
#pragma once

#include "tools/kxmath/watch/station.h"
#include "tools/kxmath/watch/watchedGroup.h"

#include <QtCore/QString>

#include <optional>

namespace kxtool {

/// Why a group has no result.
struct GroupFailure {
    bool isNoResult = false; ///< its recordings are sound, but show nothing that can be measured
    QString reason; ///< a sentence
};

/// What has to change before a group that failed is tried again: a line for each recording, and the station.
std::string triedWith(const WatchedGroup& group, const Station& station);

/// The failure of an earlier run with the same recordings and the same station; nothing without one.
std::optional<GroupFailure> readFailure(const WatchedGroup& group, const std::string& triedWith);

/// Throws an Error when it cannot be written.
void writeFailure(const WatchedGroup& group, const std::string& triedWith, const GroupFailure& failure);

} // namespace kxtool
