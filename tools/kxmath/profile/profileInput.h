// The profile that kxmath profile works on.
#pragma once

#include "tools/kxmath/profile/profileOptions.h"

#include <KxInspect/Profile.h>
#include <KxInspect/Progress.h>

namespace kxtool {

struct ProfileInput {
    KxInspect::Profile profile;
    QString note; ///< how a text was read, the predicate of a sentence about the file; or empty
};

/// Reads the profile of a file, or one of its records. Throws an Error for a file that cannot be read, a CommandError for one
/// that holds no single profile.
ProfileInput readProfileInput(const ProfileArguments& arguments, const KxInspect::Progress& progress);

} // namespace kxtool
