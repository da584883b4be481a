// Runs of successive records.
#include "inspect/station/recordRuns.h"

#include <algorithm>

namespace KxInspect::detail {

namespace {

std::vector<RecordRun> joined(const std::vector<RecordRun>& runs) {
    constexpr int kShare = 4;
    std::vector<RecordRun> result;
    for (const RecordRun& run : runs) {
        if (!result.empty()) {
            const int gap = run.first - result.back().last - 1;
            if (kShare * gap <= std::max(run.length(), result.back().length())) {
                result.back().last = run.last;
                continue;
            }
        }
        result.push_back(run);
    }
    return result;
}

} // namespace

std::vector<RecordRun> runsOf(const std::vector<int>& records) {
    constexpr int kMostMissing = 2;
    std::vector<RecordRun> runs;
    for (const int record : records) {
        if (runs.empty() || record > runs.back().last + kMostMissing + 1) {
            runs.push_back({record, record});
        }
        runs.back().last = record;
    }
    return joined(runs);
}

RunDivision divideRuns(const std::vector<RecordRun>& runs, std::size_t expected) {
    RunDivision division;
    if (runs.empty()) {
        return division;
    }
    std::vector<RecordRun> byLength = runs;
    std::stable_sort(byLength.begin(), byLength.end(),
                     [](const RecordRun& a, const RecordRun& b) { return a.length() > b.length(); });
    constexpr double kLeast = 2.0;
    std::size_t wheels = byLength.size();
    double largest = kLeast;
    for (std::size_t i = 0; i + 1 < byLength.size(); ++i) {
        const double quotient = static_cast<double>(byLength[i].length()) / byLength[i + 1].length();
        if (i + 1 == expected && quotient >= kLeast) {
            wheels = expected;
            break;
        }
        if (quotient > largest) {
            largest = quotient;
            wheels = i + 1;
        }
    }
    wheels = expected == byLength.size() ? expected : wheels;
    division.shortestWheel = byLength[wheels - 1].length();
    division.longestOther = wheels < byLength.size() ? byLength[wheels].length() : 1;
    byLength.resize(wheels);
    std::sort(byLength.begin(), byLength.end(),
              [](const RecordRun& a, const RecordRun& b) { return a.first < b.first; });
    division.wheels = byLength;
    return division;
}

} // namespace KxInspect::detail
