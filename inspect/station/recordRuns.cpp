// Runs of successive records.
#include "inspect/station/recordRuns.h"

#include <algorithm>

namespace KxInspect::detail {

std::vector<RecordRun> runsOf(const std::vector<int>& records) {
    constexpr int kMostMissing = 2;
    std::vector<RecordRun> runs;
    for (const int record : records) {
        if (runs.empty() || record > runs.back().last + kMostMissing + 1) {
            runs.push_back({record, record});
        }
        runs.back().last = record;
    }
    return runs;
}

RunDivision divideRuns(const std::vector<RecordRun>& runs) {
    RunDivision division;
    if (runs.empty()) {
        return division;
    }
    std::vector<RecordRun> byLength = runs;
    std::stable_sort(byLength.begin(), byLength.end(),
                     [](const RecordRun& a, const RecordRun& b) { return a.length() > b.length(); });
    std::size_t wheels = 0;
    double largest = 0.0;
    for (std::size_t i = 0; i < byLength.size(); ++i) {
        const int next = i + 1 < byLength.size() ? byLength[i + 1].length() : 1;
        const double quotient = static_cast<double>(byLength[i].length()) / next;
        if (quotient > largest) {
            largest = quotient;
            wheels = i + 1;
        }
    }
    division.shortestWheel = byLength[wheels - 1].length();
    division.longestOther = wheels < byLength.size() ? byLength[wheels].length() : 1;
    byLength.resize(wheels);
    std::sort(byLength.begin(), byLength.end(),
              [](const RecordRun& a, const RecordRun& b) { return a.first < b.first; });
    division.wheels = byLength;
    return division;
}

} // namespace KxInspect::detail
