// Prints how far the measures of an S1002 wheel come out from those of its closed form, over the spacing of the points.
#include "simulator/wheelContour.h"

#include <KxInspect/Wheel.h>

#include <cmath>
#include <cstdio>

namespace {

constexpr double kFlangeHeight = 28.0; // over the tape circle
constexpr double kTip = -55.0; // from the tape circle
constexpr double kFlankEnd = -35.0; // the flank falls from the tip to here

struct Measures {
    double heightAt70;
    double xAtLevel18;
    double widthLevel2ToH13;
};

/// Where the flank is `level` below the tip of the flange, from the flange back.
double flankAt(double level) {
    double inner = kTip;
    double outer = kFlankEnd;
    for (int i = 0; i < 60; ++i) {
        const double middle = (inner + outer) / 2.0;
        (kFlangeHeight - kxsim::s1002Height(middle) < level ? inner : outer) = middle;
    }
    return inner + kxsim::kTapeCircle;
}

Measures closedForm() {
    const double height = kFlangeHeight - kxsim::s1002Height(0.0);
    return {height, flankAt(18.0), flankAt(height - 13.0) - flankAt(2.0)};
}

KxInspect::Profile wheel(double step) {
    KxInspect::Profile profile;
    const int steps = static_cast<int>(std::lround((kxsim::kRimWidth - 5.0) / step)); // up to the chamfer
    for (int i = 0; i <= steps; ++i) {
        const double x = i * step;
        profile.points.push_back(
            {static_cast<float>(x), static_cast<float>(kxsim::s1002Height(x - kxsim::kTapeCircle))});
    }
    return profile;
}

Measures measure(const KxInspect::Profile& profile, const KxInspect::WheelOptions& options) {
    KxInspect::CrossSection section;
    section.profile = profile;
    const KxInspect::WheelMeasures m = measureWheel(section, options).measures;
    const auto value = [](const std::optional<float>& found) {
        return found ? static_cast<double>(*found) : std::nan("");
    };
    return {value(m.heightAt70), value(m.xAtLevel18), value(m.widthLevel2ToH13)};
}

void printErrors(const char* how, double spacing, const Measures& measured) {
    const Measures truth = closedForm();
    std::printf("| %s | %g | %+.3f | %+.3f | %+.3f |\n", how, spacing, measured.heightAt70 - truth.heightAt70,
                measured.xAtLevel18 - truth.xAtLevel18, measured.widthLevel2ToH13 - truth.widthLevel2ToH13);
}

} // namespace

int main() {
    constexpr double kSpacings[] = {0.05, 0.1, 0.2, 0.3, 0.4};
    constexpr double kSpacingsAlong[] = {0.02, 0.05, 0.1, 0.2, 0.3, 0.4};
    KxInspect::WheelOptions asTheyAre;
    asTheyAre.spacing = 0.0f;
    const Measures truth = closedForm();
    std::printf("| points evenly spaced | spacing, mm | `heightAt70` | `xAtLevel18` | `widthLevel2ToH13` |\n"
                "| --- | --- | --- | --- | --- |\n"
                "| closed form | | %.3f | %.3f | %.3f |\n",
                truth.heightAt70, truth.xAtLevel18, truth.widthLevel2ToH13);
    for (const double spacing : kSpacings) {
        printErrors("across the wheel", spacing, measure(wheel(spacing), asTheyAre));
    }
    for (const double spacing : kSpacingsAlong) {
        constexpr double kFine = 0.005;
        KxInspect::WheelOptions options;
        options.spacing = static_cast<float>(spacing);
        printErrors("along the profile", spacing, measure(wheel(kFine), options));
    }
    return 0;
}
