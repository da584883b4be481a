// What the user of kxmath watch asks for.
#pragma once

#include "tools/kxmath/train/measuringOptions.h"
#include "tools/kxmath/watch/watchedGroup.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <string>

namespace kxtool {

struct WatchOptions : MeasuringOptions {
    std::string folder; ///< of the recordings
    std::string out; ///< of the results
    std::string layout;
    Patience patience;
    bool isFollowing; ///< goes on until a signal
    double poll; ///< looks again after so many seconds
    bool isJson; ///< a JSON document for each line
};

/// Throws a CommandError when the arguments are wrong. Empty when help was asked for and printed.
std::optional<WatchOptions> parseWatchOptions(const QStringList& arguments);

} // namespace kxtool
