// What kxmath watch says of groups.
#pragma once

#include "tools/kxmath/watch/groupOutcome.h"

#include <QtCore/QString>

#include <array>

namespace kxtool {

inline constexpr std::size_t kGroupStates = 6;

/// "measured", "done", ...
const char* textOf(GroupState state);

/// A line for the user.
QString groupText(const WatchedGroup& group, const GroupOutcome& outcome);

/// A JSON document in one line.
QString groupJson(const WatchedGroup& group, const GroupOutcome& outcome);

/// "3 measured, 1 waiting"
QString countText(const std::array<int, kGroupStates>& counts);

} // namespace kxtool
