// Measured profiles made ready: cleaned, turned as their shape shows, with the flange back where it belongs.
#pragma once

#include <KxInspect/CrossSection.h>

#include <QtCore/QString>

#include <optional>
#include <vector>

namespace KxInspect::detail {

/// What was assumed or doubtful, predicates of sentences about the profile.
using Notes = std::vector<QString>;

/// Drops outliers of a contour without NaN; notes them, and its largest gap.
/// @return the number of outliers
int cleanContour(Profile& profile, Notes& notes);

/// How a profile stood in its file.
struct Stance {
    bool isUp = false;
    bool isMirrored = false;
    bool isAsShown = false; ///< as its shape shows
};

/// Turns a contour without NaN to y down and x outwards: as given, or else as its shape shows. Notes a turn that was found,
/// and a given one that contradicts the shape. Empty, without a change, when its shape is no wheel or rail in any
/// orientation and its orientation is not given completely. Profiles wider than kMaxSectionWidth pass as they are given.
std::optional<Stance> turnUpright(Profile& profile, SectionKind kind, Orientation given, float gaugeDepth,
                                  Notes& notes);

/// Why turnUpright() gave nothing, the predicate of a sentence.
QString noShapeOf(SectionKind kind);

/// Makes an upright wheel begin at its flange back: at the given place in its file, else where findFlangeBack() finds it.
/// Notes a place that the profile does not show. @return false, without a change, when it is not given and not found
bool placeFlangeBack(Profile& wheel, std::optional<float> given, bool isMirrored, Notes& notes);

/// Why placeFlangeBack() found nothing, the predicate of a sentence.
QString noFlangeBack();

} // namespace KxInspect::detail
