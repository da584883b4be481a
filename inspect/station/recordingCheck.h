// Settings of a station against recordings.
#pragma once

#include <KxInspect/StationSetup.h>

namespace KxInspect::detail {

/// Adds what does not fit. Recordings of which measuring would refuse the settings become findings; those that are
/// missing or damaged throw an Error.
/// @param recordings one, or two for each pass
void checkRecordings(const std::vector<std::string>& recordings, const StationSettings& settings, int mode,
                     const Progress& progress, SettingsCheck& check);

} // namespace KxInspect::detail
