// The values of what is found in a profile.
#include "inspect/profile/findingValues.h"

#include <limits>

namespace KxInspect::detail {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

ProfileValue millimetres(const char* key, const char* title) {
    return {key, title, "mm", kNaN};
}

std::vector<ProfileValue> polynomialValues(std::size_t coefficients) {
    std::vector<ProfileValue> values = {millimetres("middle", "m, about which the powers are")};
    for (std::size_t i = 0; i < coefficients; ++i) {
        const std::string power = std::to_string(i);
        const std::string unit = i == 0 ? "mm" : i == 1 ? "" : i == 2 ? "1/mm" : "1/mm^" + std::to_string(i - 1);
        values.push_back({"c" + power, "factor of (x - m)^" + power, unit, kNaN});
    }
    values.push_back(millimetres("rms", "root mean square of the points about it, along y"));
    return values;
}

} // namespace

std::vector<ProfileValue> valuesWithoutNumbers(const std::string& name, std::size_t coefficients) {
    if (name == "line") {
        return {{"slope", "slope", "", kNaN},
                {"angle", "angle against x", "degrees", kNaN},
                millimetres("intercept", "y at x = 0"),
                millimetres("rms", "root mean square of the points about it, along y")};
    }
    if (name == "circle" || name == "detected circle") {
        return {millimetres("x", "x of the centre"),
                millimetres("y", "y of the centre"),
                millimetres("radius", "radius"),
                millimetres("rms", "root mean square of the points about it"),
                {"arc", "arc that the points cover", "degrees", kNaN}};
    }
    if (name == "polynomial") {
        return polynomialValues(coefficients);
    }
    if (name == "detected weld") {
        return {millimetres("x", "x of the middle of its top"), millimetres("y", "lowest y of its top")};
    }
    if (name == "detected cuts") {
        return {{"count", "steps of the level", "", kNaN},
                {"window", "window on each side", "points", kNaN},
                millimetres("threshold", "threshold of the windowed difference")};
    }
    if (name == "detected joint") {
        return {millimetres("gap", "gap along x"), millimetres("offset", "offset along y, right less left")};
    }
    return {};
}

} // namespace KxInspect::detail
