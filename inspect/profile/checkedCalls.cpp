// Calls of operations that first check whether they can work.
#include "inspect/profile/checkedCalls.h"

#include "inspect/profile/fits.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

using KxMath::KxPointXY;
using KxMath::KxProfile;

constexpr double kFarthest = std::numeric_limits<double>::max();

QString needForm(const ChainState& state, Form form) {
    if (state.form == form) {
        return {};
    }
    return form == Form::Polar ? QStringLiteral("needs a profile in polar form, toPolar comes first")
                               : QStringLiteral("needs a profile in x and y, which an earlier step has changed");
}

QString needRisingX(const KxProfile& profile) {
    const QList<KxPointXY>& points = profile.points;
    const bool isRising =
        std::is_sorted(points.cbegin(), points.cend(),
                       [](const KxPointXY& a, const KxPointXY& b) { return a.x < b.x; }) &&
        std::none_of(points.cbegin(), points.cend(), [](const KxPointXY& p) { return std::isnan(p.x); });
    return isRising ? QString() : QStringLiteral("needs points with rising x, sort comes first");
}

} // namespace

QString needPoints(const KxProfile& profile, qsizetype least) {
    return profile.points.size() >= least
               ? QString()
               : QStringLiteral("needs at least %1 points, there are %2").arg(least).arg(profile.points.size());
}

QString needCircle(ChainState& state, qsizetype least) {
    constexpr qsizetype kCircle = 3;
    QString reason = needForm(state, Form::Cartesian);
    if (reason.isEmpty()) {
        reason = needPoints(state.profile, std::max(least, kCircle));
    }
    KxMath::KxCircle circle;
    if (reason.isEmpty() && !(state.profile.calcCircle(circle) && std::isfinite(circle.radius))) {
        reason = QStringLiteral("finds no circle: the points lie on one line or coordinates are missing");
    }
    return reason;
}

QString removedParts(ChainState& state, float slope, float intercept, bool isHigh) {
    const KxMath::KxLine line(slope, intercept);
    isHigh ? state.profile.removeHighLevel(line) : state.profile.removeLowLevel(line);
    return {};
}

QString scale(ChainState& state, const Arguments& a) {
    if (a[0] == 0.0 || a[1] == 0.0) {
        return QStringLiteral("needs factors other than 0");
    }
    state.profile.resize(real(a, 0), real(a, 1), 1.0f);
    return {};
}

QString changeForm(ChainState& state, Form from, Form to) {
    QString reason = needForm(state, from);
    if (reason.isEmpty()) {
        to == Form::Polar ? state.profile.toPolar() : state.profile.toEvklid();
        state.form = to;
    }
    return reason;
}

QString turn(ChainState& state, Form form, void (KxProfile::*rotate)(float), float degrees) {
    QString reason = needForm(state, form);
    if (reason.isEmpty()) {
        (state.profile.*rotate)(degrees);
    }
    return reason;
}

QString turnAbout(ChainState& state, const Arguments& a) {
    QString reason = needForm(state, Form::Cartesian);
    if (reason.isEmpty()) {
        KxPointXY centre(real(a, 1), real(a, 2));
        state.profile.rotateFixed(real(a, 0), centre);
    }
    return reason;
}

QString slopes(ChainState& state, int window) {
    QString reason = needForm(state, Form::Cartesian);
    if (reason.isEmpty()) {
        reason = window % 2 == 0 ? needPoints(state.profile, window + 2)
                                 : QStringLiteral("needs an even window: the halves of an odd one do not compare");
    }
    if (reason.isEmpty()) {
        state.profile.diffFilt(state.profile, window);
        state.form = Form::Slopes;
    }
    return reason;
}

QString derive(ChainState& state) {
    QString reason = needForm(state, Form::Cartesian);
    if (reason.isEmpty()) {
        reason = needPoints(state.profile, 2);
    }
    if (reason.isEmpty()) {
        state.profile = state.profile.derivative();
        state.form = Form::Derivative;
    }
    return reason;
}

QString smoothOnPolynomial(ChainState& state, int degree) {
    const std::vector<Point> before = knownPoints(state.profile);
    if (static_cast<qsizetype>(before.size()) < state.profile.points.size()) {
        return QStringLiteral("needs points with both coordinates, removeLowLevel:0,-1e6 removes the others");
    }
    if (differentX(before) <= static_cast<std::size_t>(degree)) {
        return QStringLiteral("needs at least %1 different x").arg(degree + 1);
    }
    const bool isFitted = state.profile.polynomFit(degree);
    const std::vector<Point> after = knownPoints(state.profile);
    const auto best = fitPolynomial(before, std::min(degree, kMostDegree));
    constexpr double kRounding = 1.001; // of floats
    if (!isFitted || after.size() < before.size() ||
        (best && rmsBetween(before, after) > kRounding * best->rms + best->rounding)) {
        return QStringLiteral(
                   "cannot be calculated: powers of x up to %1 are too large here; a smaller degree, or shift "
                   "and resize towards x from -1 to 1, helps")
            .arg(2 * degree);
    }
    return {};
}

QString resample(ChainState& state, const Arguments& a) {
    constexpr std::size_t kKnots = 3;
    constexpr double kMost = 1e6;
    const std::vector<Point> points = knownPoints(state.profile);
    if (static_cast<qsizetype>(points.size()) < state.profile.points.size()) {
        return QStringLiteral("needs points with both coordinates, removeLowLevel:0,-1e6 removes the others");
    }
    if (differentX(points) < kKnots) {
        return QStringLiteral("needs at least 3 different x");
    }
    if (a[1] >= a[2]) { // NaN: false
        return QStringLiteral("needs a from below to");
    }
    const auto [left, right] =
        std::minmax_element(points.begin(), points.end(), [](const Point& p, const Point& q) { return p.x < q.x; });
    const double from = std::max(static_cast<double>(left->x), std::isnan(a[1]) ? -kFarthest : a[1]);
    const double to = std::min(static_cast<double>(right->x), std::isnan(a[2]) ? kFarthest : a[2]);
    if (!(from < to)) {
        return QStringLiteral("needs a range that meets the points, whose x are from %1 to %2 mm")
            .arg(static_cast<double>(left->x))
            .arg(static_cast<double>(right->x));
    }
    if ((to - from) / a[0] > kMost) {
        return QStringLiteral("needs a larger step: more than 1000000 points from x = %1 to %2 mm").arg(from).arg(to);
    }
    state.profile.interpolate(real(a, 0), real(a, 1), real(a, 2), KxMath::Akima);
    return {};
}

QString levelRun(ChainState& state, const Arguments& a) {
    QString reason = needPoints(state.profile, 2);
    if (reason.isEmpty()) {
        reason = needRisingX(state.profile);
    }
    if (!reason.isEmpty()) {
        return reason;
    }
    KxProfile run;
    const bool isTaken = state.profile.calcLineSegment(real(a, 0), real(a, 1), whole(a, 2), run, real(a, 3), real(a, 4),
                                                       real(a, 5), real(a, 6));
    if (isTaken) {
        state.profile = run;
        return {};
    }
    if (const float y = state.profile.calcY(real(a, 0), std::nanf(""), nullptr); run.isEmpty() && !std::isnan(y)) {
        return QStringLiteral("finds y = %1 mm at x = %2 mm, and no run with it within its bounds")
            .arg(static_cast<double>(y))
            .arg(a[0]);
    }
    return run.isEmpty() ? QStringLiteral("finds no points around x = %1 mm").arg(a[0])
                         : QStringLiteral("finds a run of %1 points from x = %2 to %3 mm, which is beyond its bounds")
                               .arg(run.points.size())
                               .arg(static_cast<double>(run.points.constFirst().x))
                               .arg(static_cast<double>(run.points.constLast().x));
}

} // namespace KxInspect::detail
