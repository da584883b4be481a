// How the groups of a station are measured: the settings and files of the options, as they were read at one time.
#pragma once

#include "tools/kxmath/watch/watchOptions.h"

#include <KxInspect/Settings.h>
#include <KxInspect/Train.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kxtool {

class Station {
public:
    /// Reads the files. Throws an Error or a CommandError when one cannot be read or the settings name too few sensors.
    explicit Station(const WatchOptions& options);

    const KxInspect::StationSettings& settings() const { return settings_; }
    const KxInspect::PassOptions& options() const { return options_; }

    /// Whether the files are still those that were read.
    bool isCurrent() const { return filesNow() == files_; }

    /// What results depend on besides the recordings: a line for each file and number.
    std::string identity() const;

private:
    using State = std::vector<std::pair<std::int64_t, std::int64_t>>; ///< sizes and times of change
    State filesNow() const;

    PassFiles names_;
    State files_;
    KxInspect::StationSettings settings_;
    KxInspect::PassOptions options_;
};

} // namespace kxtool
