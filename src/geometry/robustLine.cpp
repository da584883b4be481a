// Lines through points of which many may belong to something else.
#include "geometry/robustLine.h"

#include <algorithm>
#include <limits>

namespace KxMath::detail {

double medianOf(std::vector<double>& values) {
    if (values.empty()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::vector<double> heightsAbove(const RobustLine& line, const std::vector<KxPointXY>& points) {
    std::vector<double> heights;
    heights.reserve(points.size());
    for (const KxPointXY& p : points) {
        heights.push_back(line.heightOf(p));
    }
    return heights;
}

RobustLine repeatedMedianLine(const std::vector<KxPointXY>& points) {
    std::vector<double> slopes;
    std::vector<double> medianSlopes;
    for (const KxPointXY& p : points) {
        slopes.clear();
        for (const KxPointXY& q : points) {
            if (p.x != q.x) {
                slopes.push_back((static_cast<double>(q.y) - static_cast<double>(p.y)) /
                                 (static_cast<double>(q.x) - static_cast<double>(p.x)));
            }
        }
        if (!slopes.empty()) {
            medianSlopes.push_back(medianOf(slopes));
        }
    }
    RobustLine line;
    if (!medianSlopes.empty()) {
        line.k = medianOf(medianSlopes);
    }
    std::vector<double> heights = heightsAbove(line, points);
    line.b = points.empty() ? 0.0 : medianOf(heights);
    return line;
}

} // namespace KxMath::detail
