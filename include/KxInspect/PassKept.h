// What is kept of the profiles of a pass beside its result.
#pragma once

#include "InputFile.h"
#include "Settings.h"

#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// What is kept.
enum class PassKeep {
    None, ///< nothing
    Chosen, ///< the chosen profiles and the cross-sections of wheels, in one file
    All, ///< all profiles of all wheels too, each in a file
};

/// "none", "chosen", "all".
KXINSPECT_EXPORT const char* textOf(PassKeep keep);

/// A record of the file of kept profiles.
struct KeptProfile {
    bool isMerged = false; ///< the cross-section of a wheel from all its profiles; else a chosen profile
    int pair = 0; ///< from 1
    std::string recording = {}; ///< of a chosen profile: PassSide::file
    int wheel = 0; ///< of a chosen profile: number of the wheel in the recording, from 1
    int profile = 0; ///< of a chosen profile: its number among those of the wheel, from 1
    TrackSide side = TrackSide::Left; ///< of a merged one
};

/// A profile set of the library (KxMath::KxProfileZSet): a profile record for each of `records`, in their order.
///
/// A chosen profile is that of the sensor after cleaning, in its frame, with the z of its record; NaN where that has none.
/// A merged one is PassWheelMeasures::section, with PassWheelMeasures::place as z.
struct KeptProfiles {
    InputFile file = {};
    std::vector<KeptProfile> records = {};
};

struct PassKept {
    PassKeep keep = PassKeep::None;
    std::optional<KeptProfiles> profiles = {}; ///< absent when no file of profiles was asked for
};

} // namespace KxInspect
