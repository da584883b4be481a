// Runs of successive records, and which of them are wheels.
#pragma once

#include <cstddef>
#include <vector>

namespace KxInspect::detail {

/// Successive records that show the same thing, counted from 1.
struct RecordRun {
    int first;
    int last;

    int length() const { return last - first + 1; }
};

/// The runs of records, in ascending order. Up to two records without the thing do not end a run, nor does a gap of a
/// quarter of the longer run beside it: between two wheels there is more.
/// @param records ascending; some may stand there more than once
std::vector<RecordRun> runsOf(const std::vector<int>& records);

/// How the runs of a recording divide into wheels and others.
struct RunDivision {
    std::vector<RecordRun> wheels; ///< by their place
    int shortestWheel = 0; ///< in records
    int longestOther = 1; ///< 1 where there are no others: as long as a single stray record
};

/// Takes the longest runs for wheels. All wheels of a train take about as long to pass, and longer than brackets and
/// stray records: the division is where the quotient of a length and the next shorter one is largest, and above 2.
/// @param expected how many wheels there should be: the division is there where that quotient is 2 at least; 0: not known
RunDivision divideRuns(const std::vector<RecordRun>& runs, std::size_t expected = 0);

} // namespace KxInspect::detail
