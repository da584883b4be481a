// Cloud sections and profile records of all kinds.
#pragma once

#include <KxInspect/PointFile.h>
#include <KxMath/KxRecording.h>

namespace KxInspect::detail {

/// Reads the section or record at the position of `file`, told by its first byte, and appends its points. Colours are
/// appended for a section that has some; the points of a profile record have its position as z.
/// @return its kind, KxNoRecord when no whole one begins there; `points` and the position are then as they were
KxMath::KxRecordKind readSection(QFile& file, PointSet& points);

} // namespace KxInspect::detail
