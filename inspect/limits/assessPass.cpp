// Verdicts on the values of a pass.
#include "inspect/limits/assessPass.h"

#include "inspect/limits/passValues.h"

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

using namespace detail;

/// The limits of a measure.
class LimitsOfMeasure {
public:
    LimitsOfMeasure(const Limits& limits, const std::string& measure) {
        for (const MeasureLimits& all : limits.measures) {
            if (all.measure == measure) {
                own_.measures.push_back(all);
            }
        }
    }

    bool isEmpty() const { return own_.measures.empty(); }
    bool differByClass() const {
        return std::any_of(own_.measures.begin(), own_.measures.end(),
                           [](const MeasureLimits& limits) { return !limits.vehicleClass.empty(); });
    }

    /// Those of a class, or else those for all; null when there are none.
    const LimitBounds* of(const std::string& vehicleClass) const {
        return isEmpty() ? nullptr : boundsOf(own_, own_.measures.front().measure, vehicleClass);
    }

private:
    Limits own_;
};

/// The class of a vehicle; absent when it is not known.
std::optional<std::string> classOf(const PassResult& result, int vehicle) {
    const bool isThere = vehicle >= 1 && static_cast<std::size_t>(vehicle) <= result.train.vehicles.size();
    return isThere ? result.train.vehicles[static_cast<std::size_t>(vehicle) - 1].vehicleClass : std::nullopt;
}

void judge(Assessment& value) {
    if (!value.value || !value.reason.empty()) {
        return;
    }
    value.verdict = verdictOf(*value.value, value.bounds);
    if (value.interval.isKnown()) {
        value.isDoubtful = verdictOf(static_cast<double>(value.interval.low), value.bounds) != value.verdict ||
                           verdictOf(static_cast<double>(value.interval.high), value.bounds) != value.verdict;
    }
}

/// What the axles of a vehicle that no sensor saw leave unmeasured.
void addUnseen(const PassResult& result, const MeasureInfo& measure, const LimitsOfMeasure& limits,
               std::vector<Assessment>& values) {
    for (const PassVehicle& vehicle : result.train.vehicles) {
        const int unseen = vehicle.axles() - vehicle.seen;
        const bool isPerAxle = measure.of == MeasureOf::Wheel || measure.of == MeasureOf::Axle;
        if (unseen <= 0 || !isPerAxle || limits.of(vehicle.vehicleClass.value_or(std::string())) == nullptr) {
            continue;
        }
        Assessment value;
        value.measure = measure.name;
        value.vehicle = vehicle.number;
        value.reason =
            std::to_string(unseen) + " of its " + std::to_string(vehicle.axles()) + " axles have no number in the pass";
        values.push_back(value);
    }
}

template <typename Condition>
std::optional<LimitVerdict> worst(const std::vector<Assessment>& values, Condition isMeant) {
    std::optional<LimitVerdict> result;
    for (const Assessment& value : values) {
        if (isMeant(value)) {
            result = std::max(result.value_or(LimitVerdict::Ok), value.verdict);
        }
    }
    return result;
}

} // namespace

const LimitBounds* boundsOf(const Limits& limits, const std::string& measure, const std::string& vehicleClass) {
    const LimitBounds* general = nullptr;
    for (const MeasureLimits& of : limits.measures) {
        if (of.measure != measure) {
            continue;
        }
        if (of.vehicleClass.empty()) {
            general = &of.bounds;
        } else if (of.vehicleClass == vehicleClass) {
            return &of.bounds;
        }
    }
    return general;
}

LimitVerdict verdictOf(double value, const LimitBounds& bounds) {
    const auto isBelow = [&](const std::optional<double>& bound) { return bound && value < *bound; };
    const auto isAbove = [&](const std::optional<double>& bound) { return bound && value > *bound; };
    if (std::isnan(value)) {
        return LimitVerdict::NotMeasured;
    }
    if (isBelow(bounds.alarmLow) || isAbove(bounds.alarmHigh)) {
        return LimitVerdict::Alarm;
    }
    return isBelow(bounds.warningLow) || isAbove(bounds.warningHigh) ? LimitVerdict::Warning : LimitVerdict::Ok;
}

PassAssessment detail::assessPass(const PassResult& result, const Limits& limits) {
    PassAssessment assessment;
    assessment.limits = limits.measures;
    for (const MeasureInfo& measure : measureInfos()) {
        const LimitsOfMeasure ofMeasure(limits, measure.name);
        if (ofMeasure.isEmpty()) {
            continue;
        }
        for (Assessment value : valuesOf(result, measure)) {
            const std::optional<std::string> vehicleClass = classOf(result, value.vehicle);
            if (!vehicleClass && ofMeasure.differByClass()) {
                const bool isMeasured = value.value.has_value();
                value.reason =
                    isMeasured ? "its limits differ by the class of the vehicle, which is not known" : value.reason;
            } else if (const LimitBounds* const bounds = ofMeasure.of(vehicleClass.value_or(std::string()))) {
                value.bounds = *bounds;
            } else {
                continue; // vehicles of this class have no limit
            }
            judge(value);
            assessment.values.push_back(value);
        }
        addUnseen(result, measure, ofMeasure, assessment.values);
    }
    return assessment;
}

std::optional<LimitVerdict> PassAssessment::ofWheel(int pair, int side) const {
    return worst(values, [&](const Assessment& v) { return v.pair == pair && (v.side == side || v.side == 0); });
}

std::optional<LimitVerdict> PassAssessment::ofPair(int pair) const {
    return worst(values, [&](const Assessment& v) { return v.pair == pair; });
}

std::optional<LimitVerdict> PassAssessment::ofVehicle(int vehicle) const {
    return worst(values, [&](const Assessment& v) { return v.vehicle == vehicle; });
}

std::optional<LimitVerdict> PassAssessment::ofPass() const {
    if (values.empty() && !limits.empty()) {
        return LimitVerdict::NotMeasured; // no wheel was found
    }
    return worst(values, [](const Assessment&) { return true; });
}

std::optional<LimitVerdict> PassAssessment::ofAxle(int pair, const std::string& measure) const {
    return worst(values, [&](const Assessment& v) { return v.pair == pair && v.measure == measure; });
}

int PassAssessment::count(LimitVerdict verdict) const {
    return static_cast<int>(
        std::count_if(values.begin(), values.end(), [&](const Assessment& v) { return v.verdict == verdict; }));
}

} // namespace KxInspect
