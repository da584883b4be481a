// The wheels of a recording as profiles in memory.
#include "inspect/train/wheelCollector.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace KxInspect::detail {

namespace {

bool isFinite(const KxMath::KxPointXY& point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
}

} // namespace

void WheelCollector::notePlace(float z) {
    const bool isFirst = profileRecords_ == 1;
    isSorted_ = isSorted_ && std::isfinite(z) && (isFirst || lastPlace_ <= z);
    firstPlace_ = isFirst ? z : firstPlace_;
    lastPlace_ = z;
}

void WheelCollector::countPoints(const PointList& points) {
    levelCount_.recorded += points.size();
    for (const KxMath::KxPointXY& p : points) {
        if (isFinite(p)) {
            ++levelCount_.points;
            levelCount_.below += level_.k * p.x + level_.b > p.y ? 1 : 0;
            levelCount_.lowest = std::min(levelCount_.lowest, p.y);
            levelCount_.highest = std::max(levelCount_.highest, p.y);
        }
    }
}

void WheelCollector::add(KxMath::KxRecordKind kind, KxMath::KxProfileZ& record) {
    if (kind == KxMath::KxProfileRecord) {
        ++profileRecords_;
        notePlace(record.z);
    } else {
        ++cloudSections_;
    }
    countPoints(record.points);
    sample_.add(record.points);
    int withoutNoise = 0;
    const bool isOfWheel = detector_.add(record, withoutNoise); // cleans the points
    levelCount_.withoutNoise += withoutNoise;
    levelCount_.cleaned += std::count_if(record.points.cbegin(), record.points.cend(), isFinite);
    if (isOfWheel) {
        if (detector_.profile() == 1) {
            const int number = cloudSections_ + profileRecords_;
            wheels_.push_back({number, {}, {}});
            starts_.push_back({detector_.wheel(), number});
        }
        wheels_.back().profiles.push_back(std::exchange(record.points, {}));
        wheels_.back().places.push_back(record.z);
    } else if (detector_.discarded() > 0) {
        longestDiscarded_ = std::max(longestDiscarded_, detector_.discarded());
        wheels_.pop_back();
    }
}

} // namespace KxInspect::detail
