// Defects of the tread, found in the single profiles of a wheel.
#include "inspect/train/treadDefects.h"

#include "inspect/base/points.h"
#include "inspect/fitting/median.h"
#include "inspect/fitting/noise.h"

#include <KxInspect/KxMathTypes.h>
#include <KxMath/KxProfile.h>

#include <QtCore/QString>

#include <algorithm>
#include <bitset>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

constexpr int kDegree = 20; // of the curve in METRO_detectWheelDefect()

/// Moves the middle of the tread to x = 0. The curve of the fit is the same in exact numbers; in rounded ones the high
/// powers of an x that lies to one side lose it.
void centre(PointList& tread) {
    const auto [first, last] = std::minmax_element(
        tread.cbegin(), tread.cend(), [](const KxMath::KxPointXY& a, const KxMath::KxPointXY& b) { return a.x < b.x; });
    const float middle = (first->x + last->x) / 2.0f;
    for (KxMath::KxPointXY& p : tread) {
        p.x -= middle;
    }
}

/// True when all of the points that are needed have an x of their own, and no deviation would go unseen.
bool hasEnoughPoints(const PointList& tread, const DefectLimits& limits) {
    std::vector<float> xs;
    xs.reserve(static_cast<std::size_t>(tread.size()));
    for (const KxMath::KxPointXY& p : tread) {
        xs.push_back(p.x);
    }
    std::sort(xs.begin(), xs.end());
    return std::unique(xs.begin(), xs.end()) - xs.begin() >= fewestPoints(limits);
}

/// The noise of a tread along y, mm; NaN with too few points.
float noiseOf(const PointList& tread) {
    const std::vector<Point> contour = toVector(tread);
    if (contour.empty()) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    const float slope = (contour.back().y - contour.front().y) / (contour.back().x - contour.front().x);
    return noiseAlongY(contour, slope);
}

/// How far off the curve counts: as the settings say, or what noise does not reach if that is more.
float limitOf(const std::vector<PointList>& treads, const DefectLimits& limits) {
    // Of 1000 points with normal noise 0.06 are farther off than four standard deviations, and a profile is defective
    // with several of them.
    constexpr float kNoises = 4.0f;
    std::vector<float> noises;
    for (const PointList& tread : treads) {
        if (const float noise = noiseOf(tread); std::isfinite(noise)) {
            noises.push_back(noise);
        }
    }
    return std::max(limits.maxDeviation, kNoises * median(noises, 0.0f));
}

CutOut cutOutOf(const PointList& tread, const KxMath::KxLine& reference) {
    CutOut result;
    std::bitset<static_cast<std::size_t>(kTreadTo - kTreadFrom)> millimetres;
    const float cosine = 1.0f / std::hypot(1.0f, reference.k);
    for (const KxMath::KxPointXY& p : tread) {
        const float behind = (p.y - reference.k * p.x - reference.b) * cosine;
        if (behind >= kTreadFrom && behind < kTreadTo) {
            millimetres.set(static_cast<std::size_t>(behind - kTreadFrom));
        }
        result.include({0, behind, behind});
    }
    result.treads = millimetres.count() >= kLeastTread ? 1 : 0;
    return result;
}

QString whyNoneJudged(const CutOut& cutOut, int treads, const DefectLimits& limits) {
    if (cutOut.isEmpty()) {
        const bool isLimited = std::isfinite(limits.fromX) || std::isfinite(limits.toX);
        return isLimited ? QStringLiteral("no profile has a point between the lines and within the range of x")
                         : QStringLiteral("no profile has a point between the lines");
    }
    if (cutOut.treads == 0) {
        return QStringLiteral("no profile shows %1 mm of the tread, %2 to %3 mm behind the reference line, between the "
                              "lines")
            .arg(kLeastTread)
            .arg(static_cast<double>(kTreadFrom))
            .arg(static_cast<double>(kTreadTo));
    }
    if (treads == 0) {
        return QStringLiteral("no profile shows both the tip of the flange and %1 mm of the tread").arg(kLeastTread);
    }
    return QStringLiteral("no profile has a curve through %1 points at different x between the lines")
        .arg(fewestPoints(limits));
}

/// Why a wheel without enough defective profiles is not sound, either; empty when it is.
QString whyNotSound(const TreadDefects& defects, int profiles, const CutOut& cutOut, int treads,
                    const DefectLimits& limits) {
    const int judged = defects.judged;
    if (judged == 0) {
        return whyNoneJudged(cutOut, treads, limits);
    }
    const QString count = QStringLiteral("%1 of %2 profiles could be judged").arg(judged).arg(profiles);
    if (judged <= limits.minProfiles) {
        return count + QStringLiteral(", it takes more than %1 (minimalDefectsProf)").arg(limits.minProfiles);
    }
    if (judged * static_cast<qint64>(kProfilesPerJudged) < profiles) {
        return count + QStringLiteral(", it takes one in %1").arg(kProfilesPerJudged);
    }
    // NaN, from settings made by hand: everything deviates that is compared with it.
    return defects.limit > kMostNoisy * limits.maxDeviation
               ? QStringLiteral(
                     "the noise of the profiles hides deviations up to %1 mm, more than %2 times maxDeviation")
                     .arg(static_cast<double>(defects.limit), 0, 'g', 3)
                     .arg(static_cast<double>(kMostNoisy))
               : QString();
}

} // namespace

int fewestPoints(const DefectLimits& limits) {
    return std::max(kFewestJudgedPoints, limits.pointsHigher + 1);
}

PointList cutTread(const PointList& profile, const TreadLines& lines, const DefectLimits& limits) {
    KxMath::KxProfile stretch;
    stretch.points = profile;
    stretch.removeHighLevel(lines.high);
    stretch.removeLowLevel(lines.low);
    const auto isLeftOut = [&](const KxMath::KxPointXY& p) { // one y of NaN would leave the profile without a curve
        return !(p.x >= limits.fromX && p.x <= limits.toX) || !std::isfinite(p.x) || !std::isfinite(p.y);
    };
    stretch.points = copyOf(stretch.points, stretch.points.size());
    stretch.points.removeIf(isLeftOut);
    return stretch.points;
}

TreadDeviation judgeTread(const PointList& tread, const DefectLimits& limits) {
    TreadDeviation result;
    KxMath::KxProfile curve;
    if (!hasEnoughPoints(tread, limits)) {
        return result;
    }
    curve.points = copyOf(tread, tread.size());
    centre(curve.points);
    if (!curve.polynomFit(kDegree)) {
        return result;
    }
    PointList deviations = copyOf(tread, tread.size());
    for (qsizetype i = 0; i < tread.size(); ++i) {
        const float deviation = tread[i].y - std::as_const(curve.points)[i].y;
        if (!std::isfinite(deviation)) {
            return {};
        }
        deviations[i].y = deviation;
        result.deviating += std::abs(deviation) > limits.maxDeviation ? 1 : 0;
        result.largest = std::max(result.largest, std::abs(deviation));
    }
    result.points = deviations;
    result.isSound = result.deviating <= limits.pointsHigher;
    return result;
}

TreadVerdict judgeTreads(const std::vector<PointList>& cuts, const std::vector<PointList>& treads,
                         const KxMath::KxLine& reference, const DefectLimits& limits) {
    TreadDefects result;
    CutOut all;
    int number = 0;
    std::vector<PointList> judgeable;
    int shown = 0;
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        all.include(cutOutOf(cuts[i], reference));
        const bool isShown = cutOutOf(treads[i], reference).treads > 0;
        shown += isShown ? 1 : 0;
        judgeable.push_back(isShown ? treads[i] : PointList());
    }
    DefectLimits ofWheel = limits;
    ofWheel.maxDeviation = result.limit = limitOf(judgeable, limits);
    for (const PointList& tread : judgeable) {
        ++number;
        const TreadDeviation judged = judgeTread(tread, ofWheel);
        if (judged.points.isEmpty()) {
            continue;
        }
        ++result.judged;
        result.deviating += judged.deviating;
        if (!judged.isSound) {
            result.profiles.push_back(number);
        }
        if (!(judged.largest <= result.largest)) { // the first one takes the place of NaN
            result.largest = judged.largest;
            result.worstProfile = number;
        }
    }
    const bool isDefective = static_cast<int>(result.profiles.size()) > limits.minProfiles;
    const QString reason = isDefective ? QString() : whyNotSound(result, number, all, shown, limits);
    if (reason.isEmpty()) {
        result.isDefective = isDefective;
    }
    return {result, reason.toStdString(), all};
}

} // namespace KxInspect::detail
