// The wheels of a recording as profiles in memory.
#include "inspect/train/wheelCollector.h"

#include <cmath>
#include <utility>

namespace KxInspect::detail {

void WheelCollector::notePlace(float z) {
    const bool isFirst = profileRecords_ == 1;
    isSorted_ = isSorted_ && std::isfinite(z) && (isFirst || lastPlace_ <= z);
    firstPlace_ = isFirst ? z : firstPlace_;
    lastPlace_ = z;
}

void WheelCollector::add(KxMath::KxRecordKind kind, KxMath::KxProfileZ& record) {
    if (kind == KxMath::KxProfileRecord) {
        ++profileRecords_;
        notePlace(record.z);
    } else {
        ++cloudSections_;
    }
    if (detector_.add(record)) {
        if (detector_.profile() == 1) {
            const int number = cloudSections_ + profileRecords_;
            wheels_.push_back({number, {}, {}});
            starts_.push_back({detector_.wheel(), number});
        }
        wheels_.back().profiles.push_back(std::exchange(record.points, {}));
        wheels_.back().places.push_back(record.z);
    } else if (detector_.discarded() > 0) {
        wheels_.pop_back();
    }
}

} // namespace KxInspect::detail
