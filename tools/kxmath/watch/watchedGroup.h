// A group of recordings, where its result belongs, and whether it is complete.
#pragma once

#include <KxInspect/RecordingGroups.h>
#include <KxInspect/Settings.h>

#include <QtCore/QString>

#include <chrono>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kxtool {

/// A group as the settings of the station see it.
struct WatchedGroup {
    std::string station; ///< empty when it is not known
    std::string time;
    std::vector<int> serials; ///< of all sensors of the settings
    std::vector<KxInspect::FoundRecording> recordings; ///< of these sensors, in their order
    std::string folder; ///< where its result belongs
    std::string name; ///< of its result: TIME_SERIALS

    std::string result() const { return folder + '/' + name; }
    std::string failure() const { return result() + ".failed.txt"; }
    QString title() const; ///< "A12 2026-11-21T08:15:00Z"
};

/// @param out the folder of all results
WatchedGroup watchedGroup(const KxInspect::RecordingGroup& group, const KxInspect::StationSettings& settings,
                          const std::string& out);

/// Whether the recordings are as they were when they were found. Throws an Error when that cannot be found out.
bool areUnchanged(const std::vector<KxInspect::FoundRecording>& recordings);

/// Knows for how long recordings have not changed: by the clock of the system, or because it saw them itself.
class Stillness {
public:
    /// Notes the recordings of one look at the folder, and forgets those that are not among them.
    void note(const KxInspect::FoundRecordings& found);

    /// Whether a recording has not changed for so many seconds.
    bool isStill(const KxInspect::FoundRecording& recording, double seconds) const;

private:
    using Clock = std::chrono::steady_clock;
    struct Seen {
        std::pair<std::int64_t, std::int64_t> state; ///< size and time of change
        Clock::time_point since;
    };
    std::map<std::string, Seen> seen_;
};

/// For how many seconds recordings must not have changed.
struct Patience {
    double settle; ///< those of a complete group
    double giveUp; ///< those of an incomplete one, which is then measured without what it lacks
};

/// Whether a group is complete.
struct Completeness {
    QString
        lack; ///< what it lacks, as a sentence; empty for a complete group. A recording that is damaged lacks nothing
    bool isReady = false; ///< it is to be measured: nothing is missing, or nobody waits for it any longer
};

Completeness completenessOf(const WatchedGroup& group, const Stillness& stillness, const Patience& patience);

} // namespace kxtool
