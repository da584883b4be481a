// What makes the results of a pass doubtful.
#include "inspect/train/passWarnings.h"

#include "inspect/base/paths.h"
#include "inspect/fitting/median.h"
#include "inspect/identity/fileIdentity.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace KxInspect::detail {

namespace {

void warn(PassResult& result, const QString& text) {
    result.warnings.push_back(text.toStdString());
}

QString lineText(const KxMath::KxLine& line) {
    return QStringLiteral("y = %1 x %2 %3")
        .arg(QString::number(static_cast<double>(line.k)), line.b < 0.0f ? QStringLiteral("-") : QStringLiteral("+"),
             QString::number(std::abs(static_cast<double>(line.b))));
}

void warnOfLevel(const MeasuredSide& side, PassResult& result) {
    const LevelCount& count = side.found.levelCount();
    const bool isNone = count.below == 0;
    const bool isAll = count.below == count.points;
    if (count.points == 0) {
        warn(result, QStringLiteral("recording '%1' holds no points").arg(toQt(bareName(side.input.path))));
    } else if (isNone || isAll || side.found.wheels().empty()) {
        const QString what = isNone  ? QStringLiteral("no point is below the level line")
                             : isAll ? QStringLiteral("all points are below the level line")
                                     : QStringLiteral("no wheel was found with the level line");
        warn(result,
             QStringLiteral("recording '%1': %2 of SENSOR%3, %4: %5 of %6 points are below it, y is %7 to %8 mm")
                 .arg(toQt(bareName(side.input.path)), what, QString::number(side.input.sensor),
                      lineText(side.input.detection.level), QString::number(count.below), QString::number(count.points),
                      QString::number(static_cast<double>(count.lowest)),
                      QString::number(static_cast<double>(count.highest))));
    }
}

/// The angle of a line to the x axis in degrees.
double angleOf(double slope) {
    return std::atan(slope) * 180.0 / std::numbers::pi;
}

void warnOfReference(const MeasuredSide& side, PassResult& result) {
    // Wheelsets stand less than a degree askew in straight track. At three degrees the end of 50 mm of back face is
    // 2.6 mm off the reference line when its beginning is on it: as much as distances may deviate.
    constexpr double kMostDegrees = 3.0;
    std::vector<double> angles;
    for (const ChosenProfile& chosen : side.chosen) {
        KxMath::KxProfile half;
        half.points = fittedHalf(chosen.points);
        KxMath::KxLine fit;
        if (half.calcLine(fit) && std::isfinite(fit.k)) {
            angles.push_back(angleOf(static_cast<double>(fit.k)));
        }
    }
    const double slope = static_cast<double>(side.input.reference.k);
    const double fitted = median(angles); // NaN where there is none
    const double apart = std::abs(fitted - angleOf(slope)); // lines have no direction: 179 degrees are 1
    if (const double between = std::min(apart, 180.0 - apart); between > kMostDegrees) {
        warn(result, QStringLiteral(
                         "recording '%1': the wheels stand at %2 degrees to the reference line of SENSOR%3, more than "
                         "%4: k2 is %5, the slope of their chosen profiles is %6")
                         .arg(toQt(bareName(side.input.path)), QString::number(between, 'f', 1),
                              QString::number(side.input.sensor), QString::number(kMostDegrees), QString::number(slope),
                              QString::number(std::tan(fitted * std::numbers::pi / 180.0), 'g', 4)));
    }
}

} // namespace

void warnOfDefectSettings(const DefectSettings& settings, PassResult& result) {
    for (const std::string& text : settings.warnings) {
        const std::string warning = withBareName(text, settings.file);
        if (std::find(result.warnings.begin(), result.warnings.end(), warning) == result.warnings.end()) {
            result.warnings.push_back(warning);
        }
    }
}

void warnOfEqualLevels(const std::vector<MeasuredSide>& sides, PassResult& result) {
    QStringList sensors;
    for (const MeasuredSide& side : sides) {
        const KxMath::KxLine& level = side.input.detection.level;
        const KxMath::KxLine& high = side.input.tread->high;
        if (level.k == high.k && level.b == high.b) {
            sensors.append(QStringLiteral("SENSOR%1").arg(side.input.sensor));
        }
    }
    if (!sensors.isEmpty()) {
        warn(result,
             QStringLiteral("the level line of %1 is the same for distances and for defects of the tread: that "
                            "of the distances is just beyond the back face, that of the defects beyond the tread")
                 .arg(sensors.join(QStringLiteral(" and "))));
    }
}

void warnOfTreadLines(const PassSide& side, const CutOut& cutOut, PassResult& result) {
    if (side.wheels.empty() || cutOut.treads > 0) {
        return;
    }
    const QString lines = QStringLiteral("the lines for defects of SENSOR%1").arg(side.sensor);
    QString what;
    if (cutOut.isEmpty()) {
        const DefectLimits& limits = *result.defectLimits;
        const bool isLimited = std::isfinite(limits.fromX) || std::isfinite(limits.toX);
        what = QStringLiteral("no point of its wheels is between ") + lines +
               (isLimited ? QStringLiteral(" and within the range of x") : QString());
    } else {
        const auto mm = [](float value) { return QString::number(static_cast<double>(value), 'f', 1); };
        what =
            lines + QStringLiteral(" cut out what is %1 to %2 mm behind the reference line, the tread is %3 to %4 mm "
                                   "behind it")
                        .arg(mm(cutOut.from), mm(cutOut.to), QString::number(static_cast<double>(kTreadFrom)),
                             QString::number(static_cast<double>(kTreadTo)));
    }
    warn(result, QStringLiteral("recording '%1': ").arg(toQt(side.file)) + what);
}

void warnOfLines(const MeasuredSide& side, PassResult& result) {
    if (!side.input.missing.empty()) {
        warn(result, toQt(side.input.missing) + QStringLiteral(": what only this sensor sees is not measured"));
        return;
    }
    warnOfLevel(side, result);
    if (std::isfinite(side.input.reference.k)) { // else it measures no distances
        warnOfReference(side, result);
    }
}

namespace {

/// Why most wheels of a side may look out of round without being so.
QString whyAllOut(const PassSide& side, bool hasPose) {
    constexpr float kRestless = 0.1f; // mm; ten times what noise leaves of a tip
    std::vector<float> scatters;
    for (const PassWheel& wheel : side.wheels) {
        if (wheel.roundness) {
            scatters.push_back(wheel.roundness->scatter);
        }
    }
    if (median(scatters) > kRestless) {
        return QStringLiteral("the tips of their flanges are restless, too: z does not follow the train evenly, or the "
                              "sensor shakes");
    }
    return hasPose ? QStringLiteral(
                         "check alpha, beta and gamma of SENSOR%1, its reference line, and that z is millimetres")
                         .arg(side.sensor)
                   : QStringLiteral(
                         "the settings hold no pose of SENSOR%1 (alpha, beta, gamma), without which a laser plane "
                         "that stands askew is guessed from the wheels")
                         .arg(side.sensor);
}

} // namespace

void warnOfShapes(const PassSide& side, bool hasPlaces, bool hasPose, PassResult& result) {
    constexpr auto kFewest = 4; // wheels that make a majority
    const auto count = [&](auto condition) { return std::count_if(side.wheels.begin(), side.wheels.end(), condition); };
    const auto most = [&](auto bad, auto judged) { return judged >= kFewest && 2 * bad > judged; };
    const auto compared = count([](const PassWheel& wheel) { return wheel.roundness.has_value(); });
    const auto out = count([](const PassWheel& wheel) { return wheel.roundness && wheel.roundness->isOut; });
    const auto all = static_cast<std::ptrdiff_t>(side.wheels.size());
    const QString name = toQt(side.file);
    if (!hasPlaces && !side.wheels.empty()) {
        warn(result, QStringLiteral("the records of '%1' have no rising z: its wheels were not compared with circles")
                         .arg(name));
    } else if (compared < all) {
        const auto first = std::find_if(side.wheels.begin(), side.wheels.end(),
                                        [](const PassWheel& wheel) { return !wheel.roundness; });
        warn(result, QStringLiteral("%1 of %2 wheels in '%3' were not compared with circles, wheel %4 because %5")
                         .arg(QString::number(all - compared), QString::number(all), name,
                              QString::number(first->number), QString::fromStdString(first->roundnessReason)));
    }
    if (most(out, compared)) {
        warn(result, QStringLiteral("%1 of %2 wheels in '%3' are out of round, more than are damaged at once: %4")
                         .arg(QString::number(out), QString::number(compared), name, whyAllOut(side, hasPose)));
    }
    const auto judged =
        count([](const PassWheel& wheel) { return wheel.defects && wheel.defects->isDefective.has_value(); });
    const auto bad = count([](const PassWheel& wheel) { return wheel.defects && wheel.defects->isDefective == true; });
    if (most(bad, judged)) {
        warn(result,
             QStringLiteral("%1 of %2 treads in '%3' are defective, more than are damaged at once: check whether "
                            "the lines for defects of SENSOR%4 leave more than the tread, and whether its windows "
                            "are clean")
                 .arg(QString::number(bad), QString::number(judged), name, QString::number(side.sensor)));
    }
}

} // namespace KxInspect::detail
