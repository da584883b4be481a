// From passes with known distances to the settings of a station.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/fitting/median.h"
#include "inspect/fitting/studentT.h"
#include "inspect/settings/settingKeys.h"
#include "inspect/station/stationSide.h"
#include "inspect/station/treadLines.h"
#include "inspect/train/passInputs.h"

#include <KxInspect/Conicity.h>
#include <KxInspect/KxMathTypes.h>
#include <KxInspect/StationSetup.h>
#include <KxInspect/Train.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace KxInspect {

namespace {

using namespace detail;

[[noreturn]] void failArgument(const QString& reason) {
    fail(ErrorKind::BadArgument, {}, reason);
}

void checkDistances(const std::vector<KnownPass>& passes) {
    std::size_t known = 0;
    for (const KnownPass& pass : passes) {
        if (pass.recordings.size() != 2) {
            failArgument(QStringLiteral("a pass needs two recordings, not %1").arg(pass.recordings.size()));
        }
        if (pass.distances.empty()) {
            failArgument(QStringLiteral("the pass of '%1' has no distances").arg(toQt(pass.recordings.front())));
        }
        for (const double distance : pass.distances) {
            if (distance < kTrackDistances[0] || distance > kTrackDistances[1]) { // NaN: false, not known
                failArgument(QStringLiteral("a distance must be from %1 to %2 mm, it is %3")
                                 .arg(kTrackDistances[0])
                                 .arg(kTrackDistances[1])
                                 .arg(distance));
            }
            known += std::isnan(distance) ? 0 : 1;
        }
    }
    if (known == 0) {
        failArgument(QStringLiteral("at least one distance must be known"));
    }
}

WheelDetection detectionOf(const FitOptions& options, int serial) {
    const SensorSettings* const known = options.settings ? findSensor(*options.settings, serial) : nullptr;
    return known != nullptr ? known->detection : WheelDetection();
}

/// The recordings by sensors: first that of the first recording.
std::vector<StationSide> sidesOf(const std::vector<KnownPass>& passes, const FitOptions& options) {
    std::vector<StationSide> sides(2);
    for (std::size_t pass = 0; pass < passes.size(); ++pass) {
        std::vector<SideInput> inputs;
        for (const std::string& path : passes[pass].recordings) {
            inputs.push_back(openSide(path));
        }
        checkSidesDiffer(inputs[0], inputs[1]);
        for (std::size_t i = 0; i < sides.size() && pass == 0; ++i) {
            sides[i].serial = inputs[i].name.parts.serial;
            sides[i].detection = detectionOf(options, sides[i].serial);
        }
        for (const SideInput& input : inputs) {
            const auto side = std::find_if(sides.begin(), sides.end(),
                                           [&](const StationSide& s) { return s.serial == input.name.parts.serial; });
            if (side == sides.end()) {
                failArgument(QStringLiteral("recording '%1' is of neither sensor of the first pass, %2 and %3")
                                 .arg(toQt(input.path))
                                 .arg(sides[0].serial)
                                 .arg(sides[1].serial));
            }
            side->recordings.push_back({input.path, passes[pass].distances.size(), {}, 0, {}});
        }
    }
    return sides;
}

void describeWheels(const StationSide& side, FittedSensor& sensor) {
    const KxMath::KxLine& reference = side.lines->reference;
    std::size_t at = 0;
    for (std::size_t pass = 0; pass < side.recordings.size(); ++pass) {
        for (std::size_t i = 0; i < side.recordings[pass].wheels; ++i) {
            const WheelRecords& wheel = side.wheels[at++];
            const double angle = std::atan(static_cast<double>(reference.k));
            FittedWheel fitted;
            fitted.pass = static_cast<int>(pass) + 1;
            fitted.number = static_cast<int>(i) + 1;
            fitted.firstRecord = wheel.face.first;
            fitted.lastRecord = wheel.face.last;
            fitted.offset = static_cast<double>(wheel.line.b - reference.b) * std::cos(angle);
            fitted.degrees = (std::atan(static_cast<double>(wheel.line.k)) - angle) * 180.0 / std::numbers::pi;
            sensor.wheels.push_back(fitted);
        }
    }
}

/// The low line: before all faces, by what wheels play in the track.
Line lowLineOf(const StationSide& side) {
    const KxMath::KxLine& reference = side.lines->reference;
    double nearest = static_cast<double>(reference.b);
    for (const WheelRecords& wheel : side.wheels) {
        nearest = std::min(nearest, static_cast<double>(wheel.line.b));
    }
    const double across = std::cos(std::atan(static_cast<double>(reference.k)));
    return {reference.k, static_cast<float>(nearest - kMostPlay / across)};
}

FittedSensor describe(const StationSide& side, int number) {
    FittedSensor sensor;
    sensor.number = number;
    sensor.serial = side.serial;
    sensor.detection = side.detection;
    sensor.profiles = side.sample.profiles();
    sensor.points = side.sample.points();
    if (side.limit > 0.0) {
        sensor.noise = side.limit / 2.0;
    }
    for (const SideRecording& recording : side.recordings) {
        sensor.files.push_back(shown(recording.path));
        sensor.records += recording.records;
    }
    if (side.lines) {
        sensor.reference = fromKxLine(side.lines->reference);
        sensor.level = fromKxLine(side.lines->level);
        sensor.low = lowLineOf(side);
        sensor.margin = side.lines->margin;
        sensor.fromMargin = side.lines->fromMargin;
        sensor.toMargin = side.lines->toMargin;
        sensor.turn = side.lines->turn;
        sensor.deviation = side.lines->deviation;
        sensor.shortestWheel = side.shortestWheel;
        sensor.longestOther = side.longestOther;
        describeWheels(side, sensor);
    }
    return sensor;
}

/// Finds all lines. @return why that is not possible; empty when it is
QString findAll(StationSide& side, const Progress& progress) {
    QString fault = findFaces(side, progress);
    if (fault.isEmpty()) {
        fault = findSensorLines(side, progress);
    }
    return fault.isEmpty() ? findThresholds(side, progress) : fault;
}

StationSettings settingsFrom(const StationFit& fit) {
    StationSettings settings;
    settings.baseDistance = fit.baseDistance;
    if (std::isfinite(fit.baseUncertainty)) {
        settings.baseUncertainty = fit.baseUncertainty;
    }
    settings.minProfilesInWheel = fit.minProfilesInWheel;
    for (const FittedSensor& sensor : fit.sensors) {
        settings.sensors.push_back(
            {sensor.number, sensor.serial, sensor.level, sensor.low, sensor.reference, sensor.detection});
    }
    return settings;
}

/// Measures the passes with the fitted lines as any other pass. @return why that is not possible; empty when it is
QString measurePairs(const std::vector<KnownPass>& passes, StationFit& fit, const Progress& progress) {
    for (std::size_t i = 0; i < passes.size(); ++i) {
        const PassResult result = measurePass(passes[i].recordings, settingsFrom(fit), {}, progress);
        fit.warnings.insert(fit.warnings.end(), result.warnings.begin(), result.warnings.end());
        if (result.pairs.size() != passes[i].distances.size()) {
            return QStringLiteral("the pass of '%1' has %2 wheel pairs, but %3 distances were given")
                .arg(toQt(passes[i].recordings.front()))
                .arg(result.pairs.size())
                .arg(passes[i].distances.size());
        }
        for (std::size_t pair = 0; pair < result.pairs.size(); ++pair) {
            if (std::isnan(result.pairs[pair].distance)) {
                return QStringLiteral("wheel pair %1 of the pass of '%2' has no distance: %3")
                    .arg(pair + 1)
                    .arg(toQt(passes[i].recordings.front()), toQt(result.pairs[pair].reason));
            }
            FittedPair fitted;
            fitted.pass = static_cast<int>(i) + 1;
            fitted.pair = static_cast<int>(pair) + 1;
            fitted.given = passes[i].distances[pair];
            fitted.measured = static_cast<double>(result.pairs[pair].distance);
            fit.pairs.push_back(fitted);
        }
    }
    return {};
}

/// Half of the 95 % interval of a mean; NaN for one value.
double uncertaintyOfMean(const std::vector<double>& values, double mean) {
    double squares = 0.0;
    for (const double value : values) {
        squares += (value - mean) * (value - mean);
    }
    const auto count = static_cast<double>(values.size());
    return studentT(count - 1.0) * std::sqrt(squares / (count - 1.0) / count);
}

/// Moves the base distance so that the residuals have the mean 0; when one of them is too large, so that they have the
/// median 0, since a wrong one moves the mean. @return the fault
QString fitBase(StationFit& fit) {
    std::vector<double> differences;
    double sum = 0.0;
    for (const FittedPair& pair : fit.pairs) {
        if (!std::isnan(pair.given)) {
            differences.push_back(pair.given - pair.measured);
            sum += differences.back();
        }
    }
    const double middle = median(differences);
    const auto isOff = [&](double base) {
        return std::any_of(differences.begin(), differences.end(),
                           [&](double difference) { return std::abs(difference - base) > fit.maxResidual; });
    };
    const double mean = sum / static_cast<double>(differences.size());
    const double base = isOff(middle) ? middle : mean;
    const double before = static_cast<double>(fit.baseDistance);
    fit.baseDistance = static_cast<float>(before + base);
    const double moved = static_cast<double>(fit.baseDistance) - before;
    fit.baseUncertainty = static_cast<float>(uncertaintyOfMean(differences, mean));
    QStringList off;
    for (FittedPair& pair : fit.pairs) {
        pair.measured += moved;
        pair.residual = pair.measured - pair.given; // NaN where nothing was given
        if (std::abs(pair.residual) > fit.maxResidual) {
            off.append(QStringLiteral("%1 mm for pair %2 of pass %3")
                           .arg(QString::number(pair.residual, 'f', 2))
                           .arg(pair.pair)
                           .arg(pair.pass));
        }
    }
    return off.isEmpty() ? QString()
                         : QStringLiteral("the measured distances differ from the given ones by more than %1 mm: %2; "
                                          "check the order and the values of the distances")
                               .arg(fit.maxResidual)
                               .arg(off.join(QStringLiteral(", ")));
}

/// Distances that follow the given ones come closer to them than a constant would.
void warnOfSpread(StationFit& fit) {
    constexpr int kFewest = 4; // pairs that have a spread to compare
    double mean = 0.0;
    for (const FittedPair& pair : fit.pairs) {
        mean += std::isnan(pair.given) ? 0.0 : pair.given / fit.known();
    }
    double spread = 0.0;
    for (const FittedPair& pair : fit.pairs) {
        spread += std::isnan(pair.given) ? 0.0 : (pair.given - mean) * (pair.given - mean) / fit.known();
    }
    constexpr double kGauge = 0.1; // mm, what gauges read to
    if (fit.known() >= kFewest && fit.rms() > kGauge && fit.rms() >= std::sqrt(spread)) {
        fit.warnings.push_back(
            QStringLiteral("the residuals, %1 mm rms, are no smaller than the spread of the given distances, %2 mm: "
                           "the measured distances do not follow them; check their order")
                .arg(QString::number(fit.rms(), 'f', 2), QString::number(std::sqrt(spread), 'f', 2))
                .toStdString());
    }
}

QString fitAll(const std::vector<KnownPass>& passes, const FitOptions& options, std::vector<StationSide>& sides,
               StationFit& fit, const Progress& progress) {
    QString fault;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        const QString own = findAll(sides[i], progress);
        fault = fault.isEmpty() ? own : fault;
        fit.sensors.push_back(describe(sides[i], static_cast<int>(i) + 1));
    }
    if (!fault.isEmpty()) {
        return fault;
    }
    // Halfway between the longest run that is no wheel and the shortest wheel, as quotients go: both get longer when a
    // train is slower, by the same factor.
    const int shortest = std::min(sides[0].shortestWheel, sides[1].shortestWheel);
    const int longest = std::max(sides[0].longestOther, sides[1].longestOther);
    fit.minProfilesInWheel =
        std::max(1, static_cast<int>(std::lround(std::sqrt(static_cast<double>(shortest) * longest))));
    fit.baseDistance = 1000.0f; // to be moved; within the range of settings
    fault = measurePairs(passes, fit, progress);
    if (fault.isEmpty()) {
        fault = fitBase(fit);
        warnOfSpread(fit);
        const QString range = whyOutOfRange(QStringLiteral("calibrLines2"), static_cast<double>(fit.baseDistance));
        fault = fault.isEmpty() && !range.isEmpty() ? QStringLiteral("the settings would ") + range : fault;
    }
    for (std::size_t i = 0; i < sides.size() && options.withTreads && fault.isEmpty(); ++i) {
        fault = findTreadLines(sides[i], fit.sensors[i]);
    }
    return fault;
}

} // namespace

StationFit fitStation(const std::vector<KnownPass>& passes, const FitOptions& options, const Progress& progress) {
    if (passes.empty()) {
        failArgument(QStringLiteral("at least one pass is needed"));
    }
    checkDistances(passes);
    if (!(options.maxResidual > 0.0)) {
        failArgument(QStringLiteral("the largest residual must be above 0 mm, it is %1").arg(options.maxResidual));
    }
    std::vector<StationSide> sides = sidesOf(passes, options);
    StationFit fit;
    fit.maxResidual = options.maxResidual;
    fit.fault = fitAll(passes, options, sides, fit, progress).toStdString();
    return fit;
}

StationSettings settingsOf(const StationFit& fit) {
    if (!fit.hasSettings()) {
        fail(ErrorKind::NoResult, {}, toQt(fit.fault));
    }
    return settingsFrom(fit);
}

int StationFit::known() const {
    return static_cast<int>(
        std::count_if(pairs.begin(), pairs.end(), [](const FittedPair& pair) { return !std::isnan(pair.given); }));
}

double StationFit::rms() const {
    double sum = 0.0;
    for (const FittedPair& pair : pairs) {
        sum += std::isnan(pair.residual) ? 0.0 : pair.residual * pair.residual;
    }
    return std::sqrt(sum / known()); // NaN where there is none
}

double StationFit::largest() const {
    double largest = std::numeric_limits<double>::quiet_NaN();
    for (const FittedPair& pair : pairs) {
        largest = std::fmax(largest, std::abs(pair.residual)); // of NaN and a number it takes the number
    }
    return largest;
}

} // namespace KxInspect
