// A wheel as a body of revolution about an axle, fitted to its profiles.
#include "inspect/train/roundnessFit.h"

#include "inspect/fitting/median.h"
#include "inspect/train/wheelRoundness.h"

#include <QtCore/QString>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// Why the tips of the flange give no axle to measure from; empty when they do.
QString whyNoAxle(const std::vector<ProfileTip>& tips, const std::optional<AxleFit>& axle) {
    constexpr double kMostStretch = 0.05;
    if (tips.size() < kFewestTips) {
        return QStringLiteral("fewer than %1 profiles show the tip of the flange").arg(kFewestTips);
    }
    if (!axle) {
        return QStringLiteral("the tips of the flange are on no circle");
    }
    const double stretch = axle->value[AxleFit::Stretch];
    return std::abs(stretch) <= kMostStretch
               ? QString()
               : QStringLiteral("the tips of the flange are on a circle only if z is taken %1 times: it is no "
                                "millimetres along the track")
                     .arg(1.0 + stretch, 0, 'g', 3);
}

/// The standard error of single estimates: their own errors, or how they scatter if that is more.
double scatterOf(const std::vector<ValueWithError>& estimates) {
    constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise
    std::vector<double> values;
    std::vector<double> errors;
    for (const ValueWithError& e : estimates) {
        values.push_back(e.value);
        errors.push_back(e.error);
    }
    const double middle = median(values);
    for (double& value : values) {
        value = std::abs(value - middle);
    }
    return std::max(median(errors), kNormal * median(values));
}

ValueWithError medianOf(const std::vector<ValueWithError>& estimates) {
    constexpr double kMedian = 1.2533; // sqrt(pi / 2): standard error of a median against that of a mean
    std::vector<double> values;
    values.reserve(estimates.size());
    for (const ValueWithError& e : estimates) {
        values.push_back(e.value);
    }
    return {median(values), kMedian * scatterOf(estimates) / std::sqrt(static_cast<double>(estimates.size()))};
}

ValueWithError ofAxle(const AxleFit& axle, AxleFit::Unknown unknown) {
    return {axle.value[unknown], std::sqrt(axle.covariance[unknown][unknown])};
}

} // namespace

StationKnowledge knowledgeOf(const LaserPlane& plane) {
    // Poses are known to about 0.1 degrees. A sensor without one may stand as it likes, but hardly leans along the track.
    // Encoders are a few thousandths off, and lengths that rest on the diameter of a wheel as much as wheels wear.
    constexpr double kPose = 0.002;
    constexpr double kAnySkew = 0.3;
    constexpr double kAnyShear = 0.05;
    constexpr double kStretch = 0.02;
    return {{plane.shear, plane.isKnown ? kPose : kAnyShear},
            {0.0, kStretch},
            {plane.skew, plane.isKnown ? kPose : kAnySkew}};
}

RoundnessFit fitWheel(const WheelSections& sections, const WheelView& wheel, const StationKnowledge& known) {
    constexpr int kMostRounds = 12;
    constexpr double kSettled = 1e-3; // mm
    constexpr double kUnsettled = 0.01; // mm, a third of the least that counts as out of round
    constexpr double kFarthest = 80.0; // mm from the tip to the end of the tread
    RoundnessFit fit;
    const auto notFitted = [&](const QString& reason) {
        fit.axle.reset();
        fit.reason = reason.toStdString();
        return fit;
    };
    if (sections.isEmpty()) {
        return notFitted(QStringLiteral("flange and tread cannot be recognised in the profiles"));
    }
    TreadTable table = sections.table();
    const int shown = table.size();
    table.keepComparable();
    const double yaw = wheel.askew.perPlace * wheel.plane.acrossPerAcross; // of the axle against the track
    ValueWithError skew = {known.skew.value - yaw, known.skew.error};
    // A turned plane meets a face that is askew sooner or later on its way across the wheel.
    const double byYaw = -yaw * known.skew.value;
    const ValueWithError stretch = {known.stretch.value + byYaw, known.stretch.error};
    double across = 0.0;
    double place = 0.0; // of the back face when it is over the axle
    double change = 0.0;
    for (int round = 0; round < kMostRounds; ++round) {
        const FlangeTips tips = sections.tips(fit.axle, skew.value, across);
        across = tips.across;
        const std::optional<FlangeCircle> circle = fitFlangeCircle(tips.tips);
        fit.axle = circle ? fitAxle(tips.tips, *circle, {known.shear, stretch, tips.error}) : std::nullopt;
        if (const QString reason = whyNoAxle(tips.tips, fit.axle); !reason.isEmpty()) {
            return notFitted(reason);
        }
        if (shown < kFewestRadii) {
            return notFitted(QStringLiteral("fewer than %1 profiles show at least %2 mm of the tread between the lines")
                                 .arg(kFewestRadii)
                                 .arg(kLeastTread));
        }
        if (table.size() < kFewestRadii) {
            return notFitted(
                QStringLiteral("the profiles show different parts of the tread, fewer than %1 one that most show")
                    .arg(kFewestRadii));
        }
        table.compare(*fit.axle, {tips.across,
                                  tips.error,
                                  static_cast<int>(tips.tips.size()),
                                  {known.skew.value - yaw, known.skew.error},
                                  known.skewScatter});
        const double newPlace = fit.axle->value[AxleFit::Place] - skew.value * across;
        change = std::abs(newPlace - place) + kFarthest * std::abs(table.skew().value - skew.value);
        place = newPlace;
        skew = table.skew();
        if (change < kSettled) {
            break;
        }
    }
    if (!(change < kUnsettled)) {
        return notFitted(QStringLiteral("tips and tread put the axle in places %1 mm apart, again and again")
                             .arg(change, 0, 'g', 2));
    }
    fit.table = std::move(table);
    fit.skew = {skew.value + yaw, skew.error};
    fit.stretch = ofAxle(*fit.axle, AxleFit::Stretch);
    fit.stretch.value -= byYaw;
    return fit;
}

StationKnowledge knowledgeFrom(const std::vector<RoundnessFit>& fits, std::size_t without, const LaserPlane& plane) {
    // A flat that is one plane changes the differences of the rings as a turned laser plane does. Wheels that tell
    // another turn than the pose are not asked, unless most of them do: then the pose is wrong.
    constexpr double kFarOff = 0.01; // 0.6 degrees, much more than poses are off
    constexpr double kFirm = 0.01;
    const auto isFarOff = [&](const ValueWithError& skew) { return std::abs(skew.value - plane.skew) > kFarOff; };
    std::vector<double> all;
    for (const RoundnessFit& fit : fits) {
        if (fit.axle) {
            all.push_back(fit.skew.value);
        }
    }
    const bool isTrusted = plane.isKnown && !all.empty() && !isFarOff({median(all), 0.0});
    std::vector<ValueWithError> shears;
    std::vector<ValueWithError> stretches;
    std::vector<ValueWithError> skews;
    for (std::size_t i = 0; i < fits.size(); ++i) {
        if (i != without && fits[i].axle && !(isTrusted && isFarOff(fits[i].skew))) {
            shears.push_back(ofAxle(*fits[i].axle, AxleFit::Shear));
            stretches.push_back(fits[i].stretch);
            skews.push_back(fits[i].skew);
        }
    }
    constexpr std::size_t kFewest = 2;
    StationKnowledge known = skews.size() < kFewest ? knowledgeOf(plane)
                                                    : StationKnowledge{medianOf(shears), medianOf(stretches),
                                                                       medianOf(skews), scatterOf(skews)};
    if (isTrusted && isFarOff(fits[without].skew)) {
        known.skew.error *= kFirm;
    }
    return known;
}

} // namespace KxInspect::detail
