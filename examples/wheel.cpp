// The measures of wheel profiles from files. Shown in docs/wheel.md.
#include <KxInspect/KxInspect.h>

#include <iostream>

/// Prints the measures of each wheel and whether its flange is thick enough.
void printWheels(const std::vector<std::string>& files) {
    KxInspect::WheelOptions options;
    options.spacing = 0.05f;
    options.limits.flangeThickness.min = 22.0f; // Sd
    for (const std::string& file : files) {
        const KxInspect::WheelResult wheel = KxInspect::measureWheel({file}, options);
        std::cout << file << ": " << (wheel.error.empty() ? textOf(wheel.verdict) : wheel.error) << '\n';
        for (std::size_t i = 0; i < KxInspect::kWheelMeasures.size(); ++i) {
            const KxInspect::WheelMeasure& measure = KxInspect::kWheelMeasures[i];
            if (const std::optional<float> value = wheel.measures.*measure.value) {
                const KxInspect::Interval& interval = wheel.intervals[i]; // NaN where the noise is unknown
                std::cout << "  " << measure.key << " = " << *value << " (" << interval.low << " to " << interval.high
                          << ")\n";
            }
        }
    }
}

int main(int argc, char** argv) {
    printWheels({argv + 1, argv + argc});
}
