// The noise of a contour, and how much smoothing it allows.
#include "inspect/sections/contourNoise.h"

#include "inspect/fitting/median.h"
#include "inspect/fitting/noise.h"
#include "inspect/sections/localFit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

constexpr float kShortest = 1.5f; // mm
constexpr float kLongest = 23.0f;
constexpr float kRatio = 1.4f; // of each window to the one before
constexpr double kDeviations = 1.2; // half the width of an interval, in standard deviations

double sumOfSquares(const std::vector<float>& values) {
    double sum = 0.0;
    for (const float value : values) {
        sum += static_cast<double>(value) * static_cast<double>(value);
    }
    return sum;
}

/// The longest window whose interval has a place in common with those of all shorter ones, at a point.
float windowAt(const std::vector<Point>& contour, std::size_t i, const ContourNoise& noise) {
    double low = -std::numeric_limits<double>::infinity();
    double high = std::numeric_limits<double>::infinity();
    float longest = kShortest;
    for (float window = kShortest; window <= kLongest; window *= kRatio) {
        const LocalFit fit = fitNear(contour, contour[i], i, window / 2.0f);
        const double deviation = static_cast<double>(noise.across(fit.normal)) * std::sqrt(sumOfSquares(fit.shares));
        low = std::max(low, static_cast<double>(fit.offset) - kDeviations * deviation);
        high = std::min(high, static_cast<double>(fit.offset) + kDeviations * deviation);
        if (!(low <= high)) {
            break;
        }
        longest = window;
    }
    return longest;
}

/// The indices of points about 1 mm apart, the first and the last one included.
std::vector<std::size_t> everyMillimetre(const std::vector<Point>& contour) {
    std::vector<std::size_t> places;
    if (!contour.empty()) {
        places.push_back(0);
    }
    for (std::size_t i = 1; i < contour.size(); ++i) {
        const Point& last = contour[places.back()];
        if (i + 1 == contour.size() || std::hypot(contour[i].x - last.x, contour[i].y - last.y) >= 1.0f) {
            places.push_back(i);
        }
    }
    return places;
}

/// The median of each value and its neighbours: single places err.
std::vector<float> steadied(const std::vector<float>& values) {
    constexpr std::size_t kSide = 2;
    std::vector<float> result;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t side = std::min({kSide, i, values.size() - 1 - i});
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(i);
        const auto reach = static_cast<std::ptrdiff_t>(side);
        result.push_back(median(std::vector<float>(middle - reach, middle + reach + 1)));
    }
    return result;
}

} // namespace

float ContourNoise::across(const Point& normal) const {
    return std::abs(normal.x) > std::abs(normal.y) ? x : y;
}

bool ContourNoise::isNegligible() const {
    constexpr float kLeast = 0.0005f;
    return x < kLeast && y < kLeast;
}

bool ContourNoise::isWorthSmoothing() const {
    constexpr float kLeast = 0.005f;
    return y > kLeast;
}

int groupSize(const std::vector<Point>& contour, double spacing) {
    double length = 0.0;
    const std::vector<std::size_t> places =
        everyMillimetre(contour); // the noise makes the line through all points longer
    for (std::size_t k = 1; k < places.size(); ++k) {
        const Point &a = contour[places[k - 1]], &b = contour[places[k]];
        length += std::hypot(static_cast<double>(b.x) - static_cast<double>(a.x),
                             static_cast<double>(b.y) - static_cast<double>(a.y));
    }
    const double size = spacing * static_cast<double>(contour.size()) / length;
    return size >= 1.0 && std::isfinite(size) ? static_cast<int>(size) : 1;
}

std::vector<Point> meansOfGroups(const std::vector<Point>& contour, int size) {
    std::vector<Point> means;
    const auto step = static_cast<std::size_t>(size);
    for (std::size_t first = 0; first < contour.size(); first += step) {
        const std::size_t end = std::min(first + step, contour.size());
        double x = 0.0;
        double y = 0.0;
        for (std::size_t i = first; i < end; ++i) {
            x += static_cast<double>(contour[i].x);
            y += static_cast<double>(contour[i].y);
        }
        const auto count = static_cast<double>(end - first);
        means.push_back({static_cast<float>(x / count), static_cast<float>(y / count)});
    }
    return means;
}

ContourNoise noiseOf(const std::vector<Point>& measured) {
    constexpr float kReach = 1.0f; // mm; more where the points are far apart
    constexpr double kSpacing = 0.05;
    const int size = groupSize(measured, kSpacing);
    const std::vector<Point> contour = meansOfGroups(measured, size);
    const float ofOne = std::sqrt(static_cast<float>(size)); // the noise of a point beside that of a mean
    std::vector<Point> flat;
    std::vector<Point> steep;
    const std::vector<std::size_t> places = everyMillimetre(contour);
    for (std::size_t k = 0; k < places.size(); ++k) {
        const Point normal = fitNear(contour, contour[places[k]], places[k], kReach).normal;
        std::vector<Point>& part = std::abs(normal.y) > std::abs(normal.x) ? flat : steep;
        const std::size_t end = k + 1 < places.size() ? places[k + 1] : contour.size();
        part.insert(part.end(), contour.begin() + static_cast<std::ptrdiff_t>(places[k]),
                    contour.begin() + static_cast<std::ptrdiff_t>(end));
    }
    const float y = noiseAcross(flat) * ofOne;
    const float x = noiseAcross(steep) * ofOne;
    const auto orElse = [](float value, float other) { return std::isnan(value) ? other : value; };
    return {orElse(x, orElse(y, 0.0f)), orElse(y, orElse(x, 0.0f))};
}

std::vector<float> parabolaWindows(const std::vector<Point>& contour, const ContourNoise& noise) {
    std::vector<float> windows(contour.size(), kShortest);
    if (contour.empty()) {
        return windows;
    }
    const std::vector<std::size_t> places = everyMillimetre(contour);
    std::vector<float> found;
    found.reserve(places.size());
    for (const std::size_t place : places) {
        found.push_back(windowAt(contour, place, noise));
    }
    found = steadied(found);
    windows.front() = found.front();
    for (std::size_t k = 1; k < places.size(); ++k) {
        for (std::size_t i = places[k - 1]; i <= places[k]; ++i) {
            const float share = static_cast<float>(i - places[k - 1]) / static_cast<float>(places[k] - places[k - 1]);
            windows[i] = found[k - 1] + share * (found[k] - found[k - 1]);
        }
    }
    return windows;
}

} // namespace KxInspect::detail
