// Smoothing of a contour.
#include "inspect/sections/contourSmoothing.h"

#include "inspect/sections/localFit.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr float kStep = 0.1f; // mm

float distance(const Point& a, const Point& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

} // namespace

std::vector<ContourPlace> placesAlong(const std::vector<Point>& contour, float gap, PointPlaces points) {
    std::vector<ContourPlace> places;
    for (std::size_t i = 0; i < contour.size(); ++i) {
        const bool isLast = i + 1 == contour.size();
        if (places.empty() || isLast || points == PointPlaces::All ||
            distance(places.back().at, contour[i]) >= kStep / 2.0f) {
            places.push_back({contour[i], i, 0.0f});
        }
        if (isLast) {
            break;
        }
        const Point &a = contour[i], &b = contour[i + 1];
        const float length = distance(a, b);
        const long parts = length <= gap ? std::lround(length / kStep) : 0;
        for (long part = 1; part < parts; ++part) {
            const float share = static_cast<float>(part) / static_cast<float>(parts);
            places.push_back({{a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)}, i, share});
        }
    }
    return places;
}

std::vector<ContourPlace> placesOfPoints(const std::vector<Point>& contour) {
    std::vector<ContourPlace> places;
    for (std::size_t i = 0; i < contour.size(); ++i) {
        places.push_back({contour[i], i, 0.0f});
    }
    return places;
}

ContourSmoothing::ContourSmoothing(const std::vector<Point>& contour, const std::vector<float>& windows,
                                   const std::vector<ContourPlace>& places) {
    for (const ContourPlace& place : places) {
        const float here = windows[place.point];
        const float next = windows[std::min(place.point + 1, windows.size() - 1)];
        const LocalFit fit = fitNear(contour, place.at, place.point, (here + place.share * (next - here)) / 2.0f);
        const std::size_t begin = shares_.size();
        shares_.insert(shares_.end(), fit.shares.begin(), fit.shares.end());
        places_.push_back({fit.normal, fit.first, begin, fit.shares.size()});
        smoothed_.push_back({place.at.x + fit.offset * fit.normal.x, place.at.y + fit.offset * fit.normal.y});
    }
}

std::vector<Point> ContourSmoothing::displaced(const std::vector<Point>& displacements) const {
    std::vector<Point> result;
    result.reserve(places_.size());
    for (const Place& place : places_) {
        const Point* const of = &displacements[place.first];
        const float* const shares = &shares_[place.begin];
        float x = 0.0f;
        float y = 0.0f;
        for (std::size_t k = 0; k < place.count; ++k) {
            x += shares[k] * of[k].x;
            y += shares[k] * of[k].y;
        }
        const float across = x * place.normal.x + y * place.normal.y;
        result.push_back({across * place.normal.x, across * place.normal.y});
    }
    return result;
}

} // namespace KxInspect::detail
