// A page as text: what a reader sees of it, for transcripts.
#pragma once

#include "report/pageReader.h"

namespace page_test {

/// Facts, tables and plots, a line for each. Of a row of points: how many, how many uninterrupted parts, the first, the
/// last and the mean of both coordinates.
QString textOf(const ReadPage& page);

} // namespace page_test
