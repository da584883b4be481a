// The equivalent conicity from measured profiles. Shown in docs/conicity.md.
#include <KxInspect/KxInspect.h>

#include <iostream>

/// Prints the conicity at 3 mm for two like wheels on two like rails. Returns false when there is none.
bool printConicity(const std::string& wheel, const std::string& rail) {
    KxInspect::ConicityInput input;
    input.sections[KxInspect::Wheel1].file = wheel;
    input.sections[KxInspect::Rail1].file = rail;
    input.sections[KxInspect::Wheel2].file = wheel;
    input.sections[KxInspect::Rail2].file = rail; // y up: .orientation.isUp, text columns: .text.columns
    input.gauge = 1442.0f;
    input.gaugeDepth = 0.0f; // these rails end above the usual 14 mm: the distance of their ends counts
    const KxInspect::ConicityResult result = KxInspect::measureConicity(input);
    for (const std::string& warning : result.warnings) {
        std::cout << "warning: " << warning << '\n';
    }
    if (!result.shownConicity) {
        std::cout << (result.isCalculated() ? "no conicity at 3 mm" : result.reason) << '\n';
        return false;
    }
    std::cout << "conicity at " << result.shownAmplitude << " mm: " << *result.shownConicity;
    if (result.shownInterval.isKnown()) {
        std::cout << ", 95 %: " << result.shownInterval.low << " to " << result.shownInterval.high;
    }
    std::cout << '\n';
    return true;
}

int main(int argc, char** argv) {
    try {
        return argc == 3 && printConicity(argv[1], argv[2]) ? 0 : 1;
    } catch (const KxInspect::Error& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
