// Values that change at once.
#include "fleet/trend/step.h"

#include <algorithm>
#include <cstddef>

namespace kxfleet {

bool isStep(const std::vector<double>& values, const std::vector<double>& residuals) {
    constexpr double kMuchBetter = 0.5; // of the sum of squares
    constexpr std::size_t kFewest = 2;
    if (values.size() < 2 * kFewest) {
        return false;
    }
    const auto squaresAbout = [](double sum, double squares, double count) { return squares - sum * sum / count; };
    double ofLine = 0.0;
    double sum = 0.0;
    double squares = 0.0;
    const double shift = values.front(); // keeps digits
    for (std::size_t i = 0; i < values.size(); ++i) {
        ofLine += residuals[i] * residuals[i];
        sum += values[i] - shift;
        squares += (values[i] - shift) * (values[i] - shift);
    }
    double least = ofLine;
    double before = 0.0;
    double squaresBefore = 0.0;
    for (std::size_t i = 0; i + kFewest < values.size(); ++i) {
        const double value = values[i] - shift;
        before += value;
        squaresBefore += value * value;
        if (i + 1 >= kFewest) {
            least = std::min(least, squaresAbout(before, squaresBefore, static_cast<double>(i + 1)) +
                                        squaresAbout(sum - before, squares - squaresBefore,
                                                     static_cast<double>(values.size() - i - 1)));
        }
    }
    return least < kMuchBetter * ofLine;
}

} // namespace kxfleet
