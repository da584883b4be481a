// Where the axles of a simulated train stand.
#include "simulator/axles.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace kxsim {

namespace {

/// The axles of equal cars.
std::vector<AxlePlace> ofCars(const Parameters& p) {
    std::vector<AxlePlace> axles;
    for (int car = 0; car < p.cars; ++car) {
        for (int bogie = 0; bogie < p.bogies; ++bogie) {
            for (int axle = 0; axle < p.axles; ++axle) {
                const double behind = car * p.carLength + bogie * p.bogieSpacing + axle * p.axleSpacing;
                axles.push_back({car + 1, bogie + 1, axle + 1, behind, static_cast<int>(axles.size()) + 1});
            }
        }
    }
    return axles;
}

/// The axles of listed vehicles. Those farther apart than in any bogie are in different ones.
std::vector<AxlePlace> ofVehicles(const Parameters& p) {
    constexpr double kLongestBogie = 3600.0; // between two of its axles, mm
    std::vector<AxlePlace> axles;
    AxlePlace next{1, 1, 1, 0.0, 1};
    for (const KxInspect::ListedVehicle& vehicle : p.vehicles) {
        axles.push_back(next);
        for (const double spacing : vehicle.spacings) {
            const bool isSameBogie = spacing <= kLongestBogie;
            next.bogie += isSameBogie ? 0 : 1;
            next.axle = isSameBogie ? next.axle + 1 : 1;
            next.behind += spacing;
            ++next.listed;
            axles.push_back(next);
        }
        next = {next.car + 1, 1, 1, next.behind + vehicle.toNext, next.listed + 1};
    }
    return axles;
}

} // namespace

std::vector<AxlePlace> axlesOf(const Parameters& parameters) {
    std::vector<AxlePlace> axles = parameters.vehicles.empty() ? ofCars(parameters) : ofVehicles(parameters);
    if (parameters.isTurned) {
        const double length = axles.back().behind;
        std::reverse(axles.begin(), axles.end());
        for (AxlePlace& axle : axles) {
            axle.behind = length - axle.behind;
        }
    }
    return axles;
}

double closestAxles(const std::vector<AxlePlace>& axles) {
    double closest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < axles.size(); ++i) {
        closest = std::min(closest, axles[i].behind - axles[i - 1].behind);
    }
    return closest;
}

} // namespace kxsim
