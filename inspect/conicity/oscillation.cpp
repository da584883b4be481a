// The oscillation of a wheel-set whose difference of radii is known.
#include "inspect/conicity/oscillation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace KxInspect::detail {

namespace {

/// The nodes left and right of the change of sign from negative to positive that is nearest to a centre; the left one.
std::optional<std::size_t> stableCentre(const std::vector<float>& deltaR, std::size_t centre) {
    std::optional<std::size_t> nearest;
    const auto distance = [centre](std::size_t i) { return i < centre ? centre - i : i - centre; };
    for (std::size_t i = 0; i + 1 < deltaR.size(); ++i) {
        if (deltaR[i] < 0.0f && deltaR[i + 1] >= 0.0f && (!nearest || distance(i) < distance(*nearest))) {
            nearest = i;
        }
    }
    return nearest;
}

} // namespace

void Oscillation::Side::add(double value) {
    const double width = size() == 1 ? first : step;
    potential.push_back(potential.back() + (force.back() + value) / 2.0 * width);
    force.push_back(value);
    highest.push_back(std::max(highest.back(), potential.back()));
}

double Oscillation::Side::distance(std::size_t node) const {
    return node == 0 ? 0.0 : first + static_cast<double>(node - 1) * step;
}

double Oscillation::Side::turningPoint(double level) const {
    const auto beyond = std::lower_bound(highest.begin() + 1, highest.end(), level);
    const auto node = static_cast<std::size_t>(beyond - highest.begin());
    // Between two nodes the force is linear: level = potential + force t + (next - force) / (2 width) t^2.
    const double width = distance(node) - distance(node - 1);
    const double missing = level - potential[node - 1];
    const double bend = (force[node] - force[node - 1]) / width;
    const double root = std::sqrt(std::max(force[node - 1] * force[node - 1] + 2.0 * bend * missing, 0.0));
    const double sum = force[node - 1] + root;
    return distance(node - 1) + (sum > 0.0 ? std::min(2.0 * missing / sum, width) : width);
}

double Oscillation::Side::potentialAt(double place) const {
    const double steps = place < first ? 0.0 : 1.0 + (place - first) / step;
    const std::size_t node = std::min(static_cast<std::size_t>(steps), size() - 2);
    const double t = place - distance(node);
    const double bend = (force[node + 1] - force[node]) / (distance(node + 1) - distance(node));
    return potential[node] + (force[node] + bend / 2.0 * t) * t;
}

Oscillation::Oscillation(const std::vector<float>& deltaR, std::size_t centre, double step) {
    left_.step = right_.step = step;
    const auto before = stableCentre(deltaR, centre);
    if (!before) {
        return;
    }
    const auto low = static_cast<double>(deltaR[*before]);
    const auto high = static_cast<double>(deltaR[*before + 1]);
    constexpr double kLeast = 1e-9; // mm: no node at the centre itself
    left_.first = std::max(step * -low / (high - low), kLeast);
    right_.first = std::max(step * high / (high - low), kLeast);
    for (std::size_t i = *before + 1; i-- > 0;) {
        left_.add(-static_cast<double>(deltaR[i]));
    }
    for (std::size_t i = *before + 1; i < deltaR.size(); ++i) {
        right_.add(static_cast<double>(deltaR[i]));
    }
}

double Oscillation::amplitudeOf(double level) const {
    return (left_.turningPoint(level) + right_.turningPoint(level)) / 2.0;
}

std::optional<double> Oscillation::conicity(double amplitude) const {
    if (left_.size() < 2 || right_.size() < 2) {
        return {};
    }
    double low = 0.0;
    double high = std::min(left_.highest.back(), right_.highest.back());
    if (!(amplitude > 0.0 && high > 0.0 && amplitudeOf(high) >= amplitude)) {
        return {};
    }
    constexpr int kHalvings = 50;
    for (int i = 0; i < kHalvings; ++i) {
        const double middle = (low + high) / 2.0;
        (amplitudeOf(middle) < amplitude ? low : high) = middle;
    }
    const double left = left_.turningPoint(high);
    const double right = right_.turningPoint(high);
    constexpr double kTolerance = 0.01; // mm: there are no amplitudes between those before and behind a local maximum
    if (std::abs((left + right) / 2.0 - amplitude) > kTolerance) {
        return {};
    }
    // The ends are singular: y = (right - left) / 2 + amplitude sin(t).
    constexpr int kParts = 100;
    static const std::vector<double> kSines = [] {
        std::vector<double> sines;
        sines.reserve(kParts);
        for (int i = 0; i < kParts; ++i) {
            sines.push_back(std::sin(((i + 0.5) / kParts - 0.5) * std::numbers::pi));
        }
        return sines;
    }();
    double sum = 0.0;
    const double half = (left + right) / 2.0;
    for (const double sine : kSines) {
        const double y = (right - left) / 2.0 + half * sine;
        const double depth = high - (y < 0.0 ? left_.potentialAt(-y) : right_.potentialAt(y));
        sum += std::sqrt((1.0 - sine * sine) / std::max(depth, 1e-12));
    }
    const double integral = sum * std::numbers::pi / kParts * half;
    return std::numbers::pi * std::numbers::pi / (integral * integral);
}

} // namespace KxInspect::detail
