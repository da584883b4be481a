// Axles of a vehicle joined to bogies.
#include "inspect/consist/axleLayout.h"

#include <KxInspect/Consist.h>

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace KxInspect {

namespace detail {

std::vector<int> layoutOf(const std::vector<double>& spacings) {
    constexpr double kClearly = 0.8;
    std::vector<int> layout = {1};
    const double widest = spacings.empty() ? 0.0 : *std::max_element(spacings.begin(), spacings.end());
    const bool isOneBogie = widest <= kMostBogieGap; // of a vehicle that shares its other one
    for (const double gap : spacings) {
        if (gap <= kMostBogieGap && (isOneBogie || gap <= kClearly * widest)) {
            ++layout.back();
        } else {
            layout.push_back(1);
        }
    }
    return layout;
}

int bogieOf(const std::vector<int>& layout, int axle) {
    int bogie = 0;
    int last = 0;
    for (const int axles : layout) {
        bogie += axles > 1 ? 1 : 0;
        last += axles;
        if (axle <= last) {
            return axles > 1 ? bogie : 0;
        }
    }
    return 0;
}

} // namespace detail

int PassVehicle::axles() const {
    return std::accumulate(layout.begin(), layout.end(), 0);
}

} // namespace KxInspect
