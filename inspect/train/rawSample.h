// Some profiles of a recording, evenly spread over it, as they were recorded.
#pragma once

#include <KxInspect/Profile.h>
#include <KxMath/KxPoints.h>

#include <QtCore/QList>

#include <vector>

namespace KxInspect::detail {

/// Keeps every n-th profile. n doubles when there are too many, so that the number of profiles need not be known
/// before. Memory follows the profiles that are kept.
class RawSample {
public:
    void add(const QList<KxMath::KxPointXY>& points);

    int profiles() const { return static_cast<int>(kept_.size()); }
    /// The finite points of all kept profiles.
    std::vector<Point> points() const;

private:
    std::vector<QList<KxMath::KxPointXY>> kept_;
    int step_ = 1;
    int seen_ = 0;
};

} // namespace KxInspect::detail
