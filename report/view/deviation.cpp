// A profile beside another one.
#include "report/view/deviation.h"

#include <KxInspect/Error.h>

#include <algorithm>
#include <cmath>

namespace kxreport {

namespace {

using KxInspect::Point;
using KxInspect::Profile;

bool isKnown(const Point& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

/// A straight line between two neighbouring points, the one with the smaller x first.
struct Join {
    Point from, to;

    double heightAt(double x) const {
        const double width = static_cast<double>(to.x) - static_cast<double>(from.x);
        const double part = width > 0.0 ? (x - static_cast<double>(from.x)) / width : 0.0;
        return static_cast<double>(from.y) + part * (static_cast<double>(to.y) - static_cast<double>(from.y));
    }
};

std::vector<Join> joinsOf(const Profile& profile, float gap) {
    std::vector<Join> joins;
    for (std::size_t i = 1; i < profile.points.size(); ++i) {
        Point a = profile.points[i - 1];
        Point b = profile.points[i];
        if (isKnown(a) && isKnown(b) && std::abs(b.x - a.x) <= gap) { // NaN: false
            joins.push_back(a.x <= b.x ? Join{a, b} : Join{b, a});
        }
    }
    std::sort(joins.begin(), joins.end(), [](const Join& a, const Join& b) { return a.from.x < b.from.x; });
    return joins;
}

/// What the reference says at an x.
struct Height {
    double value = std::numeric_limits<double>::quiet_NaN();
    int different = 0; ///< heights
};

Height heightAt(const std::vector<Join>& joins, float x, float widest) {
    const auto begin = std::lower_bound(joins.begin(), joins.end(), x - widest,
                                        [](const Join& join, float value) { return join.from.x < value; });
    Height height;
    for (auto join = begin; join != joins.end() && join->from.x <= x; ++join) {
        if (join->to.x < x) {
            continue;
        }
        const double value = join->heightAt(static_cast<double>(x));
        const bool isSteep = join->from.x == join->to.x && join->from.y != join->to.y;
        constexpr double kSame = 1e-9; // neighbouring lines meet at their common point
        if (isSteep || height.different == 0 || std::abs(value - height.value) > kSame * (1.0 + std::abs(value))) {
            height.different += isSteep ? 2 : 1;
            height.value = value;
        }
    }
    return height;
}

} // namespace

Deviation deviationOf(const Profile& profile, const Profile& reference, float gap) {
    const std::vector<Join> joins = joinsOf(reference, gap);
    float widest = 0.0f;
    for (const Join& join : joins) {
        widest = std::max(widest, join.to.x - join.from.x);
    }
    Deviation deviation;
    double sum = 0.0;
    for (const Point& p : profile.points) {
        deviation.values.push_back(std::numeric_limits<float>::quiet_NaN());
        if (!isKnown(p)) {
            continue;
        }
        const Height height = heightAt(joins, p.x, widest * 1.001f);
        deviation.outside += height.different == 0 ? 1 : 0;
        deviation.ambiguous += height.different > 1 ? 1 : 0;
        if (height.different == 1) {
            const double value = static_cast<double>(p.y) - height.value;
            deviation.values.back() = static_cast<float>(value);
            deviation.range.include(static_cast<float>(value));
            sum += value * value;
            ++deviation.compared;
        }
    }
    deviation.rootMeanSquare = std::sqrt(sum / static_cast<double>(deviation.compared)); // NaN for none
    return deviation;
}

namespace {

/// A place along an axis of a map: between a cell and the next one.
struct Between {
    int cell;
    double part; ///< of the way to the next cell, 0 to below 1
};

/// @param offset of the first cell of the map from that of the reference, in cells
Between placeOf(int cell, double offset) {
    constexpr double kSame = 1e-3; // of a cell: origins are floats
    const double at = cell + offset;
    const double nearest = std::round(at);
    if (std::abs(at - nearest) < kSame) {
        return {static_cast<int>(nearest), 0.0};
    }
    return {static_cast<int>(std::floor(at)), at - std::floor(at)};
}

double heightOf(const KxInspect::HeightMap& map, int row, int column) {
    const bool isInside = row >= 0 && row < map.rows && column >= 0 && column < map.columns;
    return isInside ? static_cast<double>(map.at(row, column)) : std::numeric_limits<double>::quiet_NaN();
}

/// NaN where a height that counts is missing.
double heightOf(const KxInspect::HeightMap& map, const Between& row, const Between& column) {
    const auto along = [&](int r) {
        const double first = heightOf(map, r, column.cell);
        return column.part == 0.0 ? first : first + column.part * (heightOf(map, r, column.cell + 1) - first);
    };
    const double first = along(row.cell);
    return row.part == 0.0 ? first : first + row.part * (along(row.cell + 1) - first);
}

} // namespace

KxInspect::HeightMap mapDeviation(const KxInspect::HeightMap& map, const KxInspect::HeightMap& reference) {
    constexpr float kSame = 1e-5f;
    constexpr double kFarthest = 1e8; // cells
    const auto offset = [&](float origin, float other) {
        return std::clamp((static_cast<double>(origin) - static_cast<double>(other)) / static_cast<double>(map.pitch),
                          -kFarthest, kFarthest);
    };
    if (!(std::abs(map.pitch - reference.pitch) <= kSame * map.pitch)) { // NaN: true
        throw KxInspect::Error(KxInspect::ErrorKind::BadArgument, {},
                               "only maps with the same distance of rows and columns are compared");
    }
    KxInspect::HeightMap deviation = map;
    const double rows = offset(map.originZ, reference.originZ);
    const double columns = offset(map.originX, reference.originX);
    for (int row = 0; row < map.rows; ++row) {
        for (int column = 0; column < map.columns; ++column) {
            const double height = heightOf(reference, placeOf(row, rows), placeOf(column, columns));
            deviation.heights[map.position(row, column)] =
                static_cast<float>(static_cast<double>(map.at(row, column)) - height);
        }
    }
    return deviation;
}

float joiningGap(const std::vector<Profile>& profiles) {
    constexpr std::size_t kSampled = 100;
    constexpr float kSpacings = 2.5f;
    const std::size_t stride = std::max<std::size_t>(1, profiles.size() / kSampled);
    std::vector<float> distances;
    for (std::size_t i = 0; i < profiles.size(); i += stride) {
        const std::vector<Point>& points = profiles[i].points;
        for (std::size_t k = 1; k < points.size(); ++k) {
            const float distance = std::abs(points[k].x - points[k - 1].x);
            if (distance > 0.0f && std::isfinite(distance)) { // NaN: false
                distances.push_back(distance);
            }
        }
    }
    if (distances.empty()) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
    std::nth_element(distances.begin(), middle, distances.end());
    return kSpacings * *middle;
}

} // namespace kxreport
