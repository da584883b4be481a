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
