// The radii of a tread in the profiles of a wheel, compared at the places across it that they have in common.
#include "inspect/train/treadTable.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise
constexpr std::size_t kTape = 25; // station of the tape circle, 70 mm behind the back face

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

int shownOf(const Stations& stations, const Band& band = {}) {
    return static_cast<int>(std::count_if(stations.begin() + static_cast<std::ptrdiff_t>(band.first),
                                          stations.begin() + static_cast<std::ptrdiff_t>(band.last) + 1,
                                          [](double value) { return !std::isnan(value); }));
}

/// The slope of values over the stations, and how firm it is: the sum of the squared distances from their middle.
struct Slope {
    double value = 0.0;
    double weight = 0.0;
};

/// By least squares with weights of the biweight function.
Slope slopeOf(const Stations& values) {
    constexpr double kTuning = 4.685;
    constexpr int kRounds = 5;
    Slope slope;
    double middle = 0.0;
    double height = 0.0;
    double reach = std::numeric_limits<double>::infinity();
    for (int round = 0; round < kRounds; ++round) {
        double w0 = 0.0, w1 = 0.0, v0 = 0.0, w2 = 0.0, v1 = 0.0;
        std::vector<double> sizes;
        const auto each = [&](auto use) {
            for (std::size_t i = 0; i < values.size(); ++i) {
                if (!std::isnan(values[i])) {
                    const double s = static_cast<double>(i);
                    const double off = values[i] - height - slope.value * (s - middle);
                    const double u = std::min(1.0, std::abs(off) / reach);
                    use(s, values[i], (1.0 - u * u) * (1.0 - u * u));
                }
            }
        };
        each([&](double s, double value, double w) { w0 += w, w1 += w * s, v0 += w * value; });
        if (!(w0 > 0.0)) {
            return {};
        }
        const double newMiddle = w1 / w0;
        each([&](double s, double value, double w) {
            w2 += w * (s - newMiddle) * (s - newMiddle);
            v1 += w * (s - newMiddle) * value;
        });
        if (!(w2 > 0.0)) {
            return {};
        }
        middle = newMiddle;
        height = v0 / w0;
        slope = {v1 / w2, w2};
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (!std::isnan(values[i])) {
                sizes.push_back(std::abs(values[i] - height - slope.value * (static_cast<double>(i) - middle)));
            }
        }
        reach = kTuning * std::max(kNormal * median(sizes), 1e-5);
    }
    return slope;
}

template <std::size_t N>
std::array<double, N> differenceOf(const std::array<double, N>& a, const std::array<double, N>& b) {
    std::array<double, N> difference;
    for (std::size_t i = 0; i < N; ++i) {
        difference[i] = a[i] - b[i];
    }
    return difference;
}

template <std::size_t N>
std::array<double, N> meanOf(const std::vector<std::array<double, N>>& all) {
    std::array<double, N> mean = {};
    for (const auto& one : all) {
        for (std::size_t i = 0; i < N; ++i) {
            mean[i] += one[i] / static_cast<double>(all.size());
        }
    }
    return mean;
}

} // namespace

Stations stationsOf(const std::vector<SectionPoint>& tread) {
    Stations result;
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = heightAt(tread, static_cast<double>(kTreadFrom) + static_cast<double>(i));
    }
    return result;
}

void TreadTable::add(int profile, double place, const Stations& down) {
    if (shownOf(down) >= kLeastTread) {
        rows_.push_back({profile, place, down});
    }
}

void TreadTable::keepComparable() {
    std::array<std::size_t, std::tuple_size_v<Stations>> shown = {};
    for (const Row& row : rows_) {
        for (std::size_t i = 0; i < shown.size(); ++i) {
            shown[i] += std::isnan(row.down[i]) ? 0 : 1;
        }
    }
    // Half of a row decides its median. Where most profiles do not show the tread, it is the row itself that tells what
    // is common to the station: it would always be found round.
    const auto isAlone = [&, count = rows_.size()](const Row& row) {
        int common = 0;
        int others = 0;
        for (std::size_t i = 0; i < shown.size(); ++i) {
            if (!std::isnan(row.down[i])) {
                ++(2 * shown[i] > count ? common : others);
            }
        }
        return common <= others;
    };
    rows_.erase(std::remove_if(rows_.begin(), rows_.end(), isAlone), rows_.end());
}

double TreadTable::acrossFromTip(std::size_t station) const {
    return static_cast<double>(kTreadFrom) + static_cast<double>(station) - tips_.across;
}

void TreadTable::updateRadii() {
    for (Row& row : rows_) {
        for (std::size_t i = 0; i < row.down.size(); ++i) {
            const double across = acrossFromTip(i);
            const double along = axle_.fromAxle(row.place, row.down[i]) - skew_ * across;
            row.radius[i] = axle_.radiusOf(along, row.down[i] - tilt_ * across);
        }
    }
}

/// By median polish: each value is taken as the sum of what is common to its row and what is common to its column
/// (Tukey, Exploratory Data Analysis, 1977).
void TreadTable::polish() {
    constexpr int kRounds = 10;
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t station = 0; station < common_.size(); ++station) {
            std::vector<double> values;
            for (const Row& row : rows_) {
                if (!std::isnan(row.radius[station])) {
                    values.push_back(row.radius[station] - row.effect);
                }
            }
            common_[station] = median(values);
        }
        for (Row& row : rows_) {
            row.effect = effectOf(row, {});
        }
    }
}

double TreadTable::effectOf(const Row& row, const Band& band) const {
    std::vector<double> values;
    for (std::size_t station = band.first; station <= band.last; ++station) {
        if (!std::isnan(row.radius[station])) {
            values.push_back(row.radius[station] - common_[station]);
        }
    }
    return median(values);
}

/// Finds how the rings lie to each other from the slopes of the rows over the stations.
/// @return false when nothing is left to change
bool TreadTable::straighten() {
    constexpr double kTuning = 4.685;
    constexpr int kRounds = 20;
    constexpr double kMostTilt = 0.0005; // of the axle against what is square to its back face, which runs true
    struct Lean {
        double sine, cosine;
        Slope slope;
    };
    std::vector<Lean> leans;
    for (const Row& row : rows_) {
        Stations rest;
        for (std::size_t i = 0; i < rest.size(); ++i) {
            rest[i] = row.radius[i] - common_[i];
        }
        const double radius = treadRadius();
        const double sine = row.fromAxle / radius;
        leans.push_back({sine, std::sqrt(std::max(0.0, 1.0 - sine * sine)), slopeOf(rest)});
    }
    std::array<double, 3> c = {};
    double reach = std::numeric_limits<double>::infinity();
    double noise = 0.0; // of a slope of weight 1
    for (int round = 0; round < kRounds; ++round) {
        LeastSquares3 sums;
        std::vector<double> sizes;
        for (const Lean& lean : leans) {
            const double off = lean.slope.value - c[0] * lean.sine - c[1] * lean.cosine - c[2];
            const double u = std::min(1.0, std::abs(off) * std::sqrt(lean.slope.weight) / reach);
            sums.add({lean.sine, lean.cosine, 1.0}, lean.slope.value,
                     lean.slope.weight * (1.0 - u * u) * (1.0 - u * u));
        }
        double square = std::max(noise * noise, 1e-12);
        if (const auto alone = sums.inverse()) {
            square = std::max(square, tips_.skewScatter * tips_.skewScatter / (*alone)[0][0]);
        }
        sums.add({1.0, 0.0, 0.0}, tips_.skew.value - skew_, square / (tips_.skew.error * tips_.skew.error));
        sums.add({0.0, 1.0, 0.0}, -tilt_, square / (kMostTilt * kMostTilt));
        const auto solved = sums.solve();
        if (!solved) {
            return false;
        }
        c = *solved;
        for (const Lean& lean : leans) {
            const double off = lean.slope.value - c[0] * lean.sine - c[1] * lean.cosine - c[2];
            sizes.push_back(std::abs(off) * std::sqrt(lean.slope.weight));
        }
        noise = kNormal * median(sizes);
        if (const auto inverse = sums.inverse()) {
            straightness_ = {{{(*inverse)[0][0] * square, (*inverse)[0][1] * square},
                              {(*inverse)[1][0] * square, (*inverse)[1][1] * square}}};
        }
        reach = kTuning * std::max(noise, 1e-5);
    }
    skew_ += c[0];
    tilt_ += c[1];
    return std::abs(c[0]) > 1e-7 || std::abs(c[1]) > 1e-7;
}

void TreadTable::measureNoise() {
    std::vector<double> noises;
    for (Row& row : rows_) {
        std::vector<double> sizes;
        for (std::size_t i = 0; i < row.radius.size(); ++i) {
            if (!std::isnan(row.radius[i])) {
                sizes.push_back(std::abs(row.radius[i] - common_[i] - row.effect));
            }
        }
        row.noise = kNormal * median(sizes);
        noises.push_back(row.noise);
    }
    // The noise of a row of few stations is uncertain by as much as noise differs from row to row.
    constexpr double kLoud = 1.5;
    const double usual = median(noises);
    for (Row& row : rows_) {
        row.noise = row.noise > kLoud * usual ? row.noise : usual;
    }
}

void TreadTable::compare(const AxleFit& axle, const TipView& tips) {
    constexpr int kRounds = 8;
    axle_ = axle;
    tips_ = tips;
    skew_ = tips.skew.value;
    tilt_ = 0.0;
    for (int round = 0; round < kRounds; ++round) {
        updateRadii();
        for (Row& row : rows_) {
            row.effect = 0.0;
            row.fromAxle = axle_.fromAxle(row.place, axle_.value[AxleFit::Down] + treadRadius());
        }
        polish();
        if (!straighten()) {
            break;
        }
    }
    measureNoise();
    findCommonChange();
}

TreadMap TreadTable::map(int profiles) const {
    const auto columns = static_cast<std::ptrdiff_t>(common_.size());
    TreadMap map;
    map.profiles = profiles;
    map.columns = static_cast<int>(columns);
    map.deviations.assign(static_cast<std::size_t>(profiles) * common_.size(), std::numeric_limits<float>::quiet_NaN());
    for (const Row& row : rows_) {
        std::transform(row.radius.begin(), row.radius.end(), common_.begin(),
                       map.deviations.begin() + (row.profile - 1) * columns,
                       [](double radius, double common) { return static_cast<float>(radius - common); });
    }
    return map;
}

double TreadTable::treadRadius() const {
    for (std::size_t away = 0; away < common_.size(); ++away) {
        for (const std::size_t station : {kTape + away, kTape - std::min(away, kTape)}) {
            if (station < common_.size() && common_[station] > 0.0) { // NaN: false
                return common_[station];
            }
        }
    }
    constexpr double kFlangeHeight = 28.0;
    return axle_.value[AxleFit::Radius] - kFlangeHeight;
}

TreadTable::Change TreadTable::changeAt(const Row& row, std::size_t station) const {
    const double across = acrossFromTip(station);
    const double down = row.down[station] - tilt_ * across;
    const auto ofAxle = axle_.changeOfRadius(row.place, down, skew_ * across);
    const double sine = (axle_.fromAxle(row.place, down) - skew_ * across) / row.radius[station];
    const double cosine = (down - axle_.value[AxleFit::Down]) / row.radius[station];
    Change change = {};
    std::copy(ofAxle.begin(), ofAxle.end(), change.begin());
    change[ofAxle.size()] = -sine * across;
    change[ofAxle.size() + 1] = -cosine * across;
    return change;
}

TreadTable::Change TreadTable::changeOf(const Row& row, const Band& band) const {
    std::vector<Change> changes;
    for (std::size_t station = band.first; station <= band.last; ++station) {
        if (!std::isnan(row.radius[station])) {
            changes.push_back(differenceOf(changeAt(row, station), commonChange_[station]));
        }
    }
    return meanOf(changes);
}

/// As polish() does, with means: it is linear.
void TreadTable::findCommonChange() {
    constexpr int kRounds = 5;
    std::vector<Change> ofRows(rows_.size());
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t station = 0; station < commonChange_.size(); ++station) {
            std::vector<Change> changes;
            for (std::size_t i = 0; i < rows_.size(); ++i) {
                if (!std::isnan(rows_[i].radius[station])) {
                    changes.push_back(differenceOf(changeAt(rows_[i], station), ofRows[i]));
                }
            }
            commonChange_[station] = meanOf(changes);
        }
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            ofRows[i] = changeOf(rows_[i], {});
        }
    }
}

double TreadTable::noiseOf(const Row& row, int shown) const {
    // The lines through the points of neighbouring stations share half of them, so that the errors r of neighbours are
    // correlated by 1/2. The variance of the median of n normal values is pi / 2 n times the mean over them of the sum of
    // 2 / pi asin(r) over all others (of the signs of two: W. F. Sheppard, 1899): pi / 2 (1 + 2 / 3) / n here.
    constexpr double kShared = 1.6180; // sqrt(5 pi / 6)
    const double points = kShared * row.noise / std::sqrt(shown);
    const bool isStill = isByChance(axle_.scatter, tips_.noise, static_cast<std::size_t>(tips_.count));
    const double moved = isStill ? 0.0 : axle_.scatter * axle_.scatter - tips_.noise * tips_.noise;
    return std::sqrt(points * points + moved);
}

double TreadTable::errorOf(double noise, const Change& change) const {
    const std::size_t ofAxle = axle_.value.size();
    double fit = 0.0;
    for (std::size_t i = 0; i < change.size(); ++i) {
        for (std::size_t k = 0; k < change.size(); ++k) {
            const bool isAxle = i < ofAxle && k < ofAxle;
            const bool isRing = i >= ofAxle && k >= ofAxle;
            fit += isAxle   ? change[i] * axle_.covariance[i][k] * change[k]
                   : isRing ? change[i] * straightness_[i - ofAxle][k - ofAxle] * change[k]
                            : 0.0;
        }
    }
    return std::sqrt(noise * noise + std::max(0.0, fit));
}

std::vector<BandRadius> TreadTable::deviations(const Band& band) const {
    std::vector<const Row*> shown;
    std::vector<double> effects;
    std::vector<Change> changes;
    const int least = std::min(kLeastTread, (3 * static_cast<int>(band.width()) + 4) / 5);
    for (const Row& row : rows_) {
        if (shownOf(row.radius, band) >= least) {
            shown.push_back(&row);
            effects.push_back(effectOf(row, band));
            changes.push_back(changeOf(row, band));
        }
    }
    const Change mean = meanOf(changes);
    const double middle = median(effects);
    std::vector<BandRadius> result;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const double noise = noiseOf(*shown[i], shownOf(shown[i]->radius, band));
        result.push_back({shown[i]->profile, shown[i]->fromAxle, effects[i] - middle,
                          errorOf(noise, differenceOf(changes[i], mean)), noise});
    }
    return result;
}

} // namespace KxInspect::detail
