// Some profiles of a recording, evenly spread over it.
#include "inspect/train/rawSample.h"

#include <cmath>

namespace KxInspect::detail {

void RawSample::add(const QList<KxMath::KxPointXY>& points) {
    constexpr std::size_t kMost = 80; // kept are half as many at least
    if (seen_++ % step_ != 0) {
        return;
    }
    kept_.push_back(points);
    if (kept_.size() == kMost) {
        for (std::size_t i = 0; 2 * i < kMost; ++i) {
            kept_[i] = kept_[2 * i];
        }
        kept_.resize(kMost / 2);
        step_ *= 2;
    }
}

std::vector<Point> RawSample::points() const {
    std::vector<Point> all;
    for (const QList<KxMath::KxPointXY>& profile : kept_) {
        for (const KxMath::KxPointXY& p : profile) {
            if (std::isfinite(p.x) && std::isfinite(p.y)) {
                all.push_back({p.x, p.y});
            }
        }
    }
    return all;
}

} // namespace KxInspect::detail
