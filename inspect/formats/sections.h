// Cloud sections and profile records of all kinds.
#pragma once

#include <KxInspect/PointFile.h>
#include <KxMath/KxRecording.h>

namespace KxInspect::detail {

/// Reads the section or record at the position of `file`, identified by its first byte, and appends its points. Colours
/// are appended for a section that has them; the points of a profile record get its position as z.
/// @return its kind; KxNoRecord when no complete one begins there, `points` and the position are then unchanged
KxMath::KxRecordKind readSection(QFile& file, PointSet& points);

} // namespace KxInspect::detail
