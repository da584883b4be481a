// What vehicles look like to a row of gaps between axles. All lengths in mm.
#include "inspect/consist/vehicleShapes.h"

#include "inspect/consist/axleLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

constexpr double kNone = std::numeric_limits<double>::infinity();
constexpr double kVehicle = 1.0; // price of each
constexpr double kUnequal = 3.0; // of ends that are no mirror images
constexpr double kUnusual = 1.0; // of a length that few vehicles have

struct Bounds {
    double least;
    double most;
    bool holds(double value) const { return value >= least && value <= most; }
};

constexpr Bounds kBogieOfTwo{1200.0, kMostBogieGap};
constexpr Bounds kBogieOfThree{1100.0, 2600.0}; // each of its two gaps
constexpr Bounds kBetweenBogies{2800.0, 20500.0}; // from the last axle of one to the first of the other
constexpr Bounds kTwoAxles{kMostBogieGap, 12500.0};
constexpr Bounds kUsualTwoAxles{4500.0, 10500.0};
constexpr Bounds kCoupling{2600.0, 8500.0};
constexpr Bounds kUsualCoupling{2800.0, 7000.0};

/// Whether the gaps read the same from both ends.
bool isMirrored(const double* gaps, std::size_t count) {
    for (std::size_t i = 0; i < count / 2; ++i) {
        if (!isSameLength(gaps[i], gaps[count - 1 - i])) {
            return false;
        }
    }
    return true;
}

double costOfEnds(const double* gaps, std::size_t count) {
    return isMirrored(gaps, count) ? 0.0 : kUnequal;
}

/// Bogies of two axles with gaps between them that are wider than those within: the bogies are at even places.
double costOfBogiesOfTwo(const double* gaps, std::size_t count) {
    constexpr double kWider = 1.25;
    constexpr double kMostUneven = 2.0; // between the widest and the narrowest gap of an articulated train
    constexpr double kPerAlike = 0.25; // bodies of one length, which couplings hardly ever are as long as
    constexpr double kPerBogie = 0.75;
    double widestBogie = 0.0;
    double narrowest = kNone;
    double widest = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        if (i % 2 == 0) {
            widestBogie = std::max(widestBogie, gaps[i]);
            if (!kBogieOfTwo.holds(gaps[i])) {
                return kNone;
            }
        } else {
            narrowest = std::min(narrowest, gaps[i]);
            widest = std::max(widest, gaps[i]);
        }
    }
    if (!kBetweenBogies.holds(narrowest) || !kBetweenBogies.holds(widest) || narrowest < kWider * widestBogie ||
        widest > kMostUneven * narrowest) {
        return kNone;
    }
    const std::size_t bogies = (count + 1) / 2;
    const double perBogie = isSameLength(widest, narrowest) ? kPerAlike : kPerBogie;
    const double articulated = bogies > 2 ? perBogie * static_cast<double>(bogies) : 0.0;
    return kVehicle + articulated + costOfEnds(gaps, count);
}

double costOfBogiesOfThree(const double* gaps) {
    const double inner = gaps[2];
    for (const std::size_t i : {0u, 1u, 3u, 4u}) {
        if (!kBogieOfThree.holds(gaps[i]) || inner <= gaps[i]) {
            return kNone;
        }
    }
    return kBetweenBogies.holds(inner) ? kVehicle + costOfEnds(gaps, 5) : kNone;
}

} // namespace

double costOfVehicle(const double* gaps, std::size_t count) {
    if (count == 1) {
        return kTwoAxles.holds(*gaps) ? kVehicle + (kUsualTwoAxles.holds(*gaps) ? 0.0 : kUnusual) : kNone;
    }
    const double bogiesOfTwo = count % 2 == 1 ? costOfBogiesOfTwo(gaps, count) : kNone;
    return count == 5 ? std::min(bogiesOfTwo, costOfBogiesOfThree(gaps)) : bogiesOfTwo;
}

std::vector<int> layoutOfVehicle(const double* gaps, std::size_t count) {
    if (count == 1) {
        return {1, 1};
    }
    const bool hasThrees = count == 5 && costOfBogiesOfThree(gaps) < costOfBogiesOfTwo(gaps, count);
    return hasThrees ? std::vector<int>{3, 3} : std::vector<int>((count + 1) / 2, 2);
}

bool canPart(double gap) {
    return gap >= kCoupling.least;
}

double costOfCoupling(double gap) {
    if (!kCoupling.holds(gap)) {
        return kNone;
    }
    return kUsualCoupling.holds(gap) ? 0.0 : kUnusual;
}

bool isSameLength(double a, double b, double from) {
    constexpr double kTolerance = 50.0;
    constexpr double kPart = 0.01;
    return std::abs(a - b) <= kTolerance + kPart * std::max(std::abs(a - from), std::abs(b - from));
}

} // namespace KxInspect::detail
