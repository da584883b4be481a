// Which wheel of one recording belongs to which of the other, by the gaps between them: for records that do not tell
// where they were taken.
#pragma once

#include "inspect/train/pairing.h"

#include <vector>

namespace KxInspect::detail {

/// The wheels of one recording in its records.
struct RecordedWheels {
    std::vector<double> middles; ///< numbers of records, ascending
    double length = 0.0; ///< records of a wheel, the median
    int records = 0; ///< of the whole recording
};

/// True when both recordings have as many records (within 1 %): they are then taken for records of the same moments.
bool runAlongside(const RecordedWheels& first, const RecordedWheels& second);

/// Aligns both sequences of wheels so that the gaps between successive pairs agree, as sequences are aligned by dynamic
/// programming (Needleman and Wunsch, A general method applicable to the search for similarities, 1970). A wheel without
/// partner costs as much as a gap that is off by 3.5 times what gaps may be off: 2 records and 2 % of them, and, where
/// a side missed a wheel, the records that show it, which a trigger leaves out. In recordings that run alongside, wheels
/// at different record numbers cost as well.
///
/// A pair is doubtful when another partner for one of its wheels costs at most two wheels without partner more: with even
/// axle distances one end of the train may be missing on one side, and the other end on the other.
/// Single wheels belong together when they are seen at the same moments in recordings that run alongside; else they are
/// doubtful.
Pairing pairByGaps(const RecordedWheels& first, const RecordedWheels& second);

} // namespace KxInspect::detail
