// The measures of the wheels of a pass from all sensors of their sides.
#include "inspect/train/passWheels.h"

#include "inspect/base/tasks.h"
#include "inspect/wheelset/sectionMeasures.h"

#include <QtCore/QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace KxInspect::detail {

namespace {

/// Where a wheel stands along the train: its place when it passes the origin of the track, by the middle of its profiles.
double placeOf(const FoundWheel& wheel, const SensorSettings& sensor) {
    const double middle = (static_cast<double>(wheel.places.front()) + static_cast<double>(wheel.places.back())) / 2.0;
    return middle - sensor.origin->x;
}

/// Why a sensor cannot be used, a clause; empty when it can.
std::string whyUnusable(const SensorWheels& sensor) {
    if (sensor.found == nullptr) {
        return sensor.missing;
    }
    if (!sensor.sensor->hasPose()) {
        return QStringLiteral("the settings hold no pose of SENSOR%1 (x, y, z, alpha, beta, gamma)")
            .arg(sensor.sensor->number)
            .toStdString();
    }
    if (sensor.found->wheels().empty()) {
        return "its recording shows no wheel";
    }
    return sensor.found->hasPlaces() ? std::string() : "the records of the recording have no rising z";
}

/// The place of a pair along the train, from the recordings in which it was found.
std::optional<double> placeOf(const WheelPair& pair, const std::vector<SensorWheels>& sensors,
                              const std::array<const WheelCollector*, 2>& sides) {
    double sum = 0.0;
    int count = 0;
    for (std::size_t side = 0; side < sides.size(); ++side) {
        for (const SensorWheels& sensor : sensors) {
            if (pair.wheels[side] && sensor.found == sides[side] && whyUnusable(sensor).empty()) {
                sum += placeOf(sensor.found->wheels()[*pair.wheels[side]], *sensor.sensor);
                ++count;
            }
        }
    }
    return count > 0 ? std::optional(sum / count) : std::nullopt;
}

/// Finds the wheels of a pass in the recordings of all sensors.
class WheelFinder {
public:
    WheelFinder(const std::vector<SensorWheels>& sensors, const std::array<const WheelCollector*, 2>& sides,
                const PassResult& result)
        : sides_(sides) {
        for (const WheelPair& pair : result.pairs) {
            pairs_.push_back(placeOf(pair, sensors, sides));
        }
        for (std::size_t i = 0; i < pairs_.size(); ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                if (pairs_[i] && pairs_[k]) {
                    nearest_ = std::min(nearest_, std::abs(*pairs_[i] - *pairs_[k]) / 2.0);
                }
            }
        }
    }

    SensorView viewOf(const WheelPair& pair, std::size_t number, const SensorWheels& sensor,
                      const StationSettings& settings) const {
        SensorView view;
        view.sensor = sensor.sensor->number;
        view.isOnFieldSide = isOnFieldSide(*sensor.sensor, settings);
        view.missing = whyUnusable(sensor);
        if (!view.missing.empty()) {
            return view;
        }
        const std::optional<std::size_t> wheel = wheelOf(pair, number, sensor);
        if (!wheel) {
            view.missing = "the sensor did not see the wheel";
            return view;
        }
        const FoundWheel& found = sensor.found->wheels()[*wheel];
        view.wheel = static_cast<int>(*wheel) + 1;
        view.profiles = {&found.profiles, &found.places, sensor.sensor};
        return view;
    }

private:
    std::optional<std::size_t> wheelOf(const WheelPair& pair, std::size_t number, const SensorWheels& sensor) const {
        for (std::size_t side = 0; side < sides_.size(); ++side) {
            if (sensor.found == sides_[side]) {
                return pair.wheels[side];
            }
        }
        if (!pairs_[number]) {
            return {};
        }
        std::optional<std::size_t> best;
        double least = nearest_;
        for (std::size_t i = 0; i < sensor.found->wheels().size(); ++i) {
            const double apart = std::abs(placeOf(sensor.found->wheels()[i], *sensor.sensor) - *pairs_[number]);
            if (apart < least) {
                least = apart;
                best = i;
            }
        }
        return best;
    }

    const std::array<const WheelCollector*, 2>& sides_;
    std::vector<std::optional<double>> pairs_;
    /// How far the places of one wheel may be apart: half the smallest gap between wheels, and half a bogie.
    double nearest_ = 500.0;
};

void warnOf(const PassWheelMeasures& wheel, const std::vector<std::string>& what, PassResult& result) {
    for (const std::string& text : what) {
        result.warnings.push_back(QStringLiteral("the %1 wheel of pair %2 ")
                                      .arg(QLatin1String(textOf(wheel.side)))
                                      .arg(wheel.pair)
                                      .toStdString() +
                                  text);
    }
}

/// A wheel and what makes its measures doubtful.
struct MeasuredWheel {
    PassWheelMeasures measures = {};
    std::vector<std::string> warnings = {};
};

} // namespace

void measureWheels(const std::vector<SensorWheels>& sensors, const std::array<const WheelCollector*, 2>& sides,
                   const StationSettings& settings, const TaskRunner& runner, const Progress& progress,
                   PassResult& result) {
    const bool isAny =
        std::any_of(sensors.begin(), sensors.end(), [](const SensorWheels& s) { return s.found != nullptr; });
    if (!isAny || !settings.baseDistance) {
        return;
    }
    for (const SensorWheels& sensor : sensors) {
        if (sensor.found == nullptr && sensor.missing == kNotGiven) {
            result.warnings.push_back(
                QStringLiteral("no recording of SENSOR%1 was given: what only it sees of wheels is not measured")
                    .arg(sensor.sensor->number)
                    .toStdString());
        }
    }
    const WheelFinder finder(sensors, sides, result);
    constexpr std::array kSides{TrackSide::Left, TrackSide::Right};
    std::vector<MeasuredWheel> wheels(result.pairs.size() * kSides.size());
    runTasks(runner, progress, wheels.size(), [&](std::size_t i, const Progress& report) {
        const std::size_t pair = i / kSides.size();
        const TrackSide side = kSides[i % kSides.size()];
        if (report) {
            report("measuring wheels", static_cast<double>(i) / static_cast<double>(wheels.size()));
        }
        std::vector<SensorView> views;
        for (const SensorWheels& sensor : sensors) {
            if (sensor.sensor->side == side) {
                views.push_back(finder.viewOf(result.pairs[pair], pair, sensor, settings));
            }
        }
        MeasuredWheel& wheel = wheels[i];
        wheel.measures = measureWheelOf(views, static_cast<double>(*settings.baseDistance) / 2.0, wheel.warnings);
        wheel.measures.pair = static_cast<int>(pair) + 1;
        wheel.measures.side = side;
    });
    for (MeasuredWheel& wheel : wheels) {
        warnOf(wheel.measures, wheel.warnings, result);
        result.wheels.push_back(std::move(wheel.measures));
    }
}

} // namespace KxInspect::detail
