// Limits of the measures of a wheel.
#include <KxInspect/Wheel.h>

namespace KxInspect {

WheelVerdict verdictOf(const WheelMeasures& measures, const WheelLimits& limits) {
    WheelVerdict verdict = WheelVerdict::NoLimits;
    for (const WheelMeasure& measure : kWheelMeasures) {
        const Limit& limit = limits.*measure.limit;
        const std::optional<float>& value = measures.*measure.value;
        if (!limit.isSet()) {
            continue;
        }
        if (value && !limit.holds(value)) {
            return WheelVerdict::Outside;
        }
        if (!value) {
            verdict = WheelVerdict::NotMeasured;
        } else if (verdict == WheelVerdict::NoLimits) {
            verdict = WheelVerdict::Within;
        }
    }
    return verdict;
}

WheelJudgement judgementOf(const WheelResults& results) {
    WheelJudgement judgement;
    for (const WheelResult& wheel : results.wheels) {
        // A wheel that was not read does not say whether there are limits.
        const bool hasLimits = verdictOf({}, results.limits) != WheelVerdict::NoLimits;
        const bool isOutside = wheel.verdict == WheelVerdict::Outside;
        judgement.wheels += hasLimits ? 1 : 0;
        judgement.judged += isOutside || wheel.verdict == WheelVerdict::Within ? 1 : 0;
        judgement.outside += isOutside ? 1 : 0;
    }
    return judgement;
}

std::string reasonNotJudged(const WheelResult& wheel, const WheelLimits& limits) {
    if (wheel.verdict == WheelVerdict::NotRead) {
        return wheel.error;
    }
    std::string reason;
    for (std::size_t i = 0; i < kWheelMeasures.size() && wheel.verdict == WheelVerdict::NotMeasured; ++i) {
        const WheelMeasure& measure = kWheelMeasures[i];
        if ((limits.*measure.limit).isSet() && !(wheel.measures.*measure.value)) {
            reason += (reason.empty() ? "no " : "; no ") + std::string(measure.key);
            reason += wheel.reasons[i].empty() ? "" : ": " + wheel.reasons[i];
        }
    }
    return reason;
}

const char* textOf(WheelVerdict verdict) {
    switch (verdict) {
    case WheelVerdict::Within:
        return "within";
    case WheelVerdict::Outside:
        return "outside";
    case WheelVerdict::NotMeasured:
        return "not measured";
    case WheelVerdict::NotRead:
        return "not read";
    case WheelVerdict::NoLimits:
        break;
    }
    return "";
}

} // namespace KxInspect
