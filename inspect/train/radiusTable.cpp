// The radii of a tread in the profiles of a wheel, compared at the places that they have in common.
#include "inspect/train/radiusTable.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

/// Where the tread is at a station, on the line through the points within a millimetre of it.
double heightAt(const std::vector<SectionPoint>& tread, double station) {
    constexpr double kHalfWidth = 1.0;
    constexpr int kFewestPoints = 3; // to each side
    double s1 = 0.0;
    double s2 = 0.0;
    double d0 = 0.0;
    double d1 = 0.0;
    const Neighbours near = visitNeighbours(tread, station, kHalfWidth, [&](double t, double down) {
        s1 += t;
        s2 += t * t;
        d0 += down;
        d1 += t * down;
    });
    if (near.fewer() < kFewestPoints) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    return (s2 * d0 - s1 * d1) / (s2 * (near.before + near.behind) - s1 * s1);
}

} // namespace

Stations stationsOf(const std::vector<SectionPoint>& tread) {
    Stations result;
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = heightAt(tread, static_cast<double>(kTreadFrom) + static_cast<double>(i));
    }
    return result;
}

void RadiusTable::add(int profile, double place, const Stations& tread, const FlangeCircle& circle,
                      const Askew& askew) {
    Row row{profile, place - circle.place, {}};
    int shown = 0;
    for (std::size_t i = 0; i < tread.size(); ++i) {
        const double behind = static_cast<double>(kTreadFrom) + static_cast<double>(i);
        row.radius[i] = std::hypot(row.fromAxle + askew.alongAt(behind), tread[i] - circle.down);
        shown += std::isnan(row.radius[i]) ? 0 : 1;
    }
    if (shown >= kLeastTread) {
        rows_.push_back(row);
    }
}

void RadiusTable::keepComparable() {
    std::array<std::size_t, std::tuple_size_v<Stations>> shown = {};
    for (const Row& row : rows_) {
        for (std::size_t i = 0; i < shown.size(); ++i) {
            shown[i] += std::isnan(row.radius[i]) ? 0 : 1;
        }
    }
    // Half of a row decides its median. Where most profiles do not show the tread, it is the row itself that tells what
    // is common to the station: it would always be found round.
    const auto isAlone = [&, count = rows_.size()](const Row& row) {
        int common = 0;
        int others = 0;
        for (std::size_t i = 0; i < shown.size(); ++i) {
            if (!std::isnan(row.radius[i])) {
                ++(2 * shown[i] > count ? common : others);
            }
        }
        return common <= others;
    };
    rows_.erase(std::remove_if(rows_.begin(), rows_.end(), isAlone), rows_.end());
}

std::vector<RadiusDeviation> RadiusTable::deviations() const {
    const std::vector<double> effects = rowEffects();
    const double middle = median(effects);
    std::vector<RadiusDeviation> result;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        result.push_back(
            {rows_[i].profile, static_cast<float>(rows_[i].fromAxle), static_cast<float>(effects[i] - middle)});
    }
    return result;
}

/// By median polish: each value is taken as the sum of what is common to its row and what is common to its column
/// (Tukey, Exploratory Data Analysis, 1977).
std::vector<double> RadiusTable::rowEffects() const {
    constexpr int kRounds = 10;
    std::vector<double> effects(rows_.size(), 0.0);
    Stations common;
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t station = 0; station < common.size(); ++station) {
            std::vector<double> values;
            for (std::size_t row = 0; row < rows_.size(); ++row) {
                if (!std::isnan(rows_[row].radius[station])) {
                    values.push_back(rows_[row].radius[station] - effects[row]);
                }
            }
            common[station] = median(values);
        }
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            std::vector<double> values;
            for (std::size_t station = 0; station < common.size(); ++station) {
                if (!std::isnan(rows_[row].radius[station])) {
                    values.push_back(rows_[row].radius[station] - common[station]);
                }
            }
            effects[row] = median(values);
        }
    }
    return effects;
}

} // namespace KxInspect::detail
