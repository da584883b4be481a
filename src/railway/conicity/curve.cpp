// The conicity over the amplitude of the oscillation.
#include "lists/checked.h"
#include "railway/conicity/steps.h"

#include "profile/area.h"
#include "profile/order.h"
#include "rounding/angles.h"

#include <algorithm>
#include <cmath>

namespace KxMath::detail {

namespace {

constexpr float kFirstAmplitude = 1.0f;

/// The potential over the displacement between the turning points of amplitude `n`, ordered by displacement.
KxProfile potentialWell(const Oscillation& o, qsizetype n) {
    KxProfile well;
    for (qsizetype m = 0; m <= n; ++m) {
        const float potential = o.potential.points.at(m).y;
        well.points.append(KxPointXY(o.right.points.at(m).y, potential));
        well.points.append(KxPointXY(o.left.points.at(m).y, potential));
    }
    well.sort(KxSortAscending, KxSortAscending);
    well.removeDuplicates();
    return well;
}

/// Whether the turning points move apart with every amplitude.
bool isWidening(const Oscillation& o) {
    const qsizetype count = o.count();
    if (count < 1 || !(o.left.points.at(0).y <= o.right.points.at(0).y)) { // NaN: true
        return false;
    }
    for (qsizetype m = 1; m < count; ++m) {
        const bool isRightRising = o.right.points.at(m - 1).y < o.right.points.at(m).y; // NaN: false
        const bool isLeftFalling = o.left.points.at(m - 1).y > o.left.points.at(m).y; // NaN: false
        if (!isRightRising || !isLeftFalling) {
            return false;
        }
    }
    return true;
}

bool isLeftOf(const KxPointXY& a, const KxPointXY& b) {
    return a.x < b.x;
}

/// Puts points between those of a rising list; where both have one the old one stays. Of new ones with the same x the
/// first counts. No x is NaN.
void mergeInto(QList<KxPointXY>& rising, QList<KxPointXY> added) {
    const auto unordered = writableSpan(added);
    std::stable_sort(unordered.begin(), unordered.end(), isLeftOf);
    QList<KxPointXY> all = filledList<KxPointXY>(rising.size() + added.size());
    KxPointXY* const first = writable(all);
    auto from = rising.cbegin();
    KxPointXY* end = first;
    for (const KxPointXY& p : std::as_const(added)) {
        const auto to = std::lower_bound(from, rising.cend(), p, isLeftOf);
        end = std::copy(from, to, end);
        from = to;
        const bool isOld = to != rising.cend() && to->x == p.x;
        const bool isRepeated = end != first && (end - 1)->x == p.x;
        if (!isOld && !isRepeated) {
            *end++ = p;
        }
    }
    end = std::copy(from, rising.cend(), end);
    all.resize(end - first);
    rising.swap(all);
}

/// The wells of rising amplitudes. While the turning points move apart a well is a range of that of the largest
/// amplitude, which is built once; otherwise each is the one before and the points between their amplitudes.
class Wells {
public:
    explicit Wells(const Oscillation& oscillation)
        : oscillation_(oscillation), isWidening_(isWidening(oscillation)), last_(oscillation.count() - 1) {
        if (isWidening_) {
            widest_ = potentialWell(oscillation, last_);
        }
    }

    /// `n` must not fall from call to call.
    QList<KxPointXY> at(qsizetype n) {
        if (!isWidening_) {
            return grownTo(n);
        }
        const qsizetype cut = last_ - n; // on each side
        return copyOf(widest_.points.constData() + cut, widest_.points.size() - 2 * cut);
    }

private:
    QList<KxPointXY> grownTo(qsizetype n) {
        QList<KxPointXY> added;
        for (; grown_ <= n; ++grown_) {
            const float potential = oscillation_.potential.points.at(grown_).y;
            added.append(KxPointXY(oscillation_.right.points.at(grown_).y, potential));
            added.append(KxPointXY(oscillation_.left.points.at(grown_).y, potential));
        }
        hasNaN_ =
            hasNaN_ || std::any_of(added.cbegin(), added.cend(), [](const KxPointXY& p) { return std::isnan(p.x); });
        if (hasNaN_) {
            return potentialWell(oscillation_, n).points; // an order that depends on all points
        }
        mergeInto(growing_, added);
        return growing_;
    }

    const Oscillation& oscillation_;
    bool isWidening_;
    qsizetype last_;
    KxProfile widest_;
    QList<KxPointXY> growing_;
    qsizetype grown_ = 0; ///< amplitudes in `growing_`
    bool hasNaN_ = false;
};

/// The value at `x` of the Akima spline through `points`, which are ordered by x. The spline is local: it is built over
/// the neighbourhood of `x` only, wide enough for the end rules, which reach two knots inwards.
float splineValue(const QList<KxPointXY>& points, float x) {
    constexpr qsizetype kReach = 6;
    const auto beyond =
        std::lower_bound(points.cbegin(), points.cend(), x, [](const KxPointXY& p, float v) { return p.x < v; });
    const qsizetype at = beyond - points.cbegin();
    const qsizetype begin = std::max<qsizetype>(at - kReach, 0);
    const qsizetype end = std::min(at + kReach, points.size());
    KxPointCloud<KxPointXY> knots;
    knots.points = copyOf(points.constData() + begin, end - begin);
    return KxInterpolant(knots, Akima).calcY(x);
}

/// Adds the points at which the integration ends, `margin` inside the turning points.
QList<KxPointXY> withMargins(const QList<KxPointXY>& well, float margin) {
    const float first = well.first().x + margin;
    const float last = well.last().x - margin;
    const QList<KxPointXY> ends =
        listOf({KxPointXY(first, splineValue(well, first)), KxPointXY(last, splineValue(well, last))});
    KxProfile extended;
    extended.points = well;
    if (isStrictlyRising(well) && !std::isnan(first) && !std::isnan(last)) {
        mergeInto(extended.points, ends);
    } else {
        extended.points.append(ends);
        extended.sort(KxSortAscending, KxSortAscending);
        extended.removeDuplicates();
    }
    return extended.points;
}

/// The integrand over a point of a well.
float integrandAt(const KxPointXY& p, float level) {
    return static_cast<float>(1.0 / std::sqrt(static_cast<double>(level) - static_cast<double>(p.y)));
}

/// The integral over all points but the first and the last, as KxProfile::integral() sums it.
float integrate(const QList<KxPointXY>& well, float level) {
    if (!isStrictlyRising(well)) {
        KxProfile integrand;
        for (const KxPointXY& p : well) {
            integrand.points.append(KxPointXY(p.x, integrandAt(p, level)));
        }
        return integrand.integral(1, integrand.size() - 2, true);
    }
    float sum = 0.0f;
    float previous = integrandAt(well[1], level);
    for (qsizetype i = 2; i + 1 < well.size(); ++i) {
        const float next = integrandAt(well[i], level);
        sum += trapezoid({well[i - 1].x, previous}, {well[i].x, next});
        previous = next;
    }
    return sum;
}

/// The conicity of the linear wheel-set with the same wavelength: half an oscillation takes the integral of
/// 1 / sqrt(F(n) - F(y)) over y from turning point to turning point.
/// @return false for a well of too few points
bool calcConicity(const QList<KxPointXY>& well, float level, float edgeMargin, float& conicity) {
    if (well.isEmpty()) {
        return false;
    }
    const QList<KxPointXY> extended = withMargins(well, edgeMargin);
    constexpr int kMinPoints = 4; // the first and the last are left out, the integrand is unbounded there
    if (extended.size() < kMinPoints) {
        return false;
    }
    const double integral = static_cast<double>(integrate(extended, level));
    conicity = static_cast<float>((kPi / integral) * (kPi / integral));
    return true;
}

/// The first index from 1 on with the amplitude nearest to 1.
qsizetype findStart(const QList<KxPointXY>& potential, qsizetype count) {
    qsizetype start = 1;
    for (qsizetype j = 2; j < count; ++j) {
        if (std::abs(potential[j].x - kFirstAmplitude) < std::abs(potential[start].x - kFirstAmplitude)) {
            start = j;
        }
    }
    return start;
}

/// Small amplitudes report a conicity of 0: puts points in front of the first one until amplitude 1 is reached.
void prependSmallAmplitudes(KxProfile& conicity, const QList<KxPointXY>& potential, qsizetype step) {
    if (conicity.isEmpty() || step >= potential.size()) {
        return;
    }
    const float width = potential[step].x - potential[0].x;
    QList<KxPointXY> small;
    for (float amplitude = conicity.points.at(0).x; amplitude > kFirstAmplitude;) { // NaN: false
        const float smaller = amplitude - width;
        if (!(smaller < amplitude)) {
            break; // a width of 0 would never get there
        }
        small.append(KxPointXY(smaller, 0.0f));
        amplitude = smaller;
    }
    const auto all = writableSpan(small);
    std::reverse(all.begin(), all.end());
    small.append(conicity.points);
    conicity.points = small;
}

} // namespace

void calcConicityCurve(const Oscillation& oscillation, unsigned int amplitudeCount, float edgeMargin,
                       KxProfile& conicity) {
    const qsizetype count = oscillation.count();
    if (count < 2 || amplitudeCount == 0) {
        return;
    }
    const QList<KxPointXY>& potential = oscillation.potential.points;
    const qsizetype start = findStart(potential, count);
    const double width = std::ceil(static_cast<double>(count - start) / static_cast<double>(amplitudeCount));
    const qsizetype step = std::max<qsizetype>(static_cast<qsizetype>(width), 1);
    Wells wells(oscillation);
    for (qsizetype n = start; n < count; n += step) {
        float value = 0.0f;
        if (calcConicity(wells.at(n), potential[n].y, edgeMargin, value)) {
            conicity.points.append(KxPointXY(potential[n].x, value));
        }
    }
    prependSmallAmplitudes(conicity, potential, step);
}

} // namespace KxMath::detail
