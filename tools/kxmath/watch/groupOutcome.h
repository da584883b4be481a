// Measuring a group into its result, once.
#pragma once

#include "tools/kxmath/watch/station.h"
#include "tools/kxmath/watch/watchedGroup.h"

#include <KxInspect/Progress.h>

#include <QtCore/QString>

#include <optional>
#include <vector>

namespace kxtool {

enum class GroupState {
    Measured, ///< by this run
    Done, ///< it has a result already
    Waiting, ///< it is not complete
    Failed, ///< its recordings or settings cannot be measured, or are no longer those of its result
    NoResult, ///< they show nothing that can be measured
    NoMemory, ///< there was not enough memory
};

/// What became of a group.
struct GroupOutcome {
    GroupState state = GroupState::Waiting;
    QString reason; ///< a sentence; for a measured group what it lacks, mostly nothing
    int pairs = 0; ///< of a group that was measured: how many wheel pairs
    int distances = 0; ///< how many of them have a distance
    std::vector<GivenVerdict> verdicts;
};

/// Removes what killed runs have left of a group.
void removeLeftovers(const WatchedGroup& group);

/// What earlier runs have made of a group: it is done or failed. Nothing when it has not been measured.
std::optional<GroupOutcome> outcomeBefore(const WatchedGroup& group, const Station& station);

/// Measures a group that is ready. Its result, or the reason why it has none, is then on the disk. It stays waiting when a
/// recording or the settings change meanwhile, or a recording comes. Throws what is not the fault of the group: outputs that
/// cannot be written, and Interrupted.
/// @param lack what the group lacks, empty for a complete one
GroupOutcome measureGroup(const WatchedGroup& group, const QString& lack, const Station& station,
                          const WatchOptions& options, const KxInspect::Progress& progress);

} // namespace kxtool
