// Whether dirt explains what of a tread is off the circle.
#include "inspect/train/dirtOnTread.h"

#include "inspect/train/wheelRoundness.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

/// A spot 25 mm in radius leans the tread by its thickness over 25 mm. That changes the turn of the rings by up to
/// that over the difference of the sines before and behind the axle, 1.2, and so tilts the radii 45 mm from the flange by up
/// to 1.5 times the thickness; half of it is taken as the standard deviation.
constexpr double kTilt = 0.75 * kThickestDirt; // mm for a sine of 1

/// How far the radii of a round wheel without noise are off, mm: the points are taken as a line within a millimetre.
constexpr double kLeastNoise = 0.002;

/// The radii of a band, apart from what a constant, a tilt and a bend explain. The errors of the axle and of the turn of the
/// rings change all profiles together, by the sine and the cosine of where they are on the wheel.
class FreeRadii {
public:
    FreeRadii(const std::vector<BandRadius>& radii, double treadRadius) {
        double common = 0.0;
        for (const BandRadius& r : radii) {
            common = std::max(common, r.error * r.error - r.noise * r.noise);
        }
        common = std::max(std::sqrt(common), kLeastNoise);
        for (const BandRadius& r : radii) {
            const double sine = std::clamp(r.fromAxle / treadRadius, -1.0, 1.0);
            const double weight = 1.0 / std::max(r.noise, kLeastNoise);
            places_.push_back(arcOf(r.fromAxle, treadRadius));
            weights_.push_back(weight);
            free_[0].push_back(weight);
            free_[1].push_back(weight * sine);
            free_[2].push_back(weight * sine * sine);
            deviations_.push_back(weight * r.deviation);
        }
        const double farthest = largestSize(radii) / treadRadius;
        extend(free_[0], 0.0, 0.0);
        extend(free_[1], 1.0 / std::hypot(kTilt, common / farthest), 0.0); // expected to be 0
        extend(free_[2], 0.0, farthest * farthest / common); // likewise
        extend(deviations_, 0.0, 0.0);
        for (std::size_t i = 0; i < free_.size(); ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                subtract(free_[i], free_[k]);
            }
            normalize(free_[i]);
        }
        takeOff(deviations_);
    }

    const std::vector<double>& places() const { return places_; } ///< along the circumference, mm

    /// The sum of the squared deviations from a shape in standard errors. The shape may be as high as fits best, in the
    /// range.
    double misfit(const std::vector<double>& shape, double least, double most) const {
        std::vector<double> rest;
        rest.reserve(deviations_.size());
        for (std::size_t i = 0; i < shape.size(); ++i) {
            rest.push_back(weights_[i] * shape[i]);
        }
        extend(rest, 0.0, 0.0);
        takeOff(rest);
        const double size = dot(rest, rest);
        const double height = size > 0.0 ? std::clamp(dot(rest, deviations_) / size, least, most) : least;
        return dot(deviations_, deviations_) - height * (2.0 * dot(rest, deviations_) - height * size);
    }

private:
    using Values = std::vector<double>;

    static double dot(const Values& a, const Values& b) {
        double sum = 0.0;
        for (std::size_t i = 0; i < a.size(); ++i) {
            sum += a[i] * b[i];
        }
        return sum;
    }

    static void normalize(Values& values) {
        const double length = std::sqrt(dot(values, values));
        for (double& value : values) {
            value /= length;
        }
    }

    /// Takes off what a vector of the length 1 explains.
    static void subtract(Values& values, const Values& direction) {
        const double share = dot(values, direction);
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] -= share * direction[i];
        }
    }

    static void extend(Values& values, double ofTilt, double ofBend) {
        values.push_back(ofTilt);
        values.push_back(ofBend);
    }

    static double largestSize(const std::vector<BandRadius>& radii) {
        double size = 1.0;
        for (const BandRadius& r : radii) {
            size = std::max(size, std::abs(r.fromAxle));
        }
        return size;
    }

    void takeOff(Values& values) const {
        for (const Values& direction : free_) {
            subtract(values, direction);
        }
    }

    Values places_ = {};
    Values weights_ = {};
    std::array<Values, 3> free_ = {}; ///< constant, tilt and bend, of the length 1 and square to each other
    Values deviations_ = {}; ///< in standard deviations of the noise, apart from these
};

constexpr double kFarthest = 50.0; // mm from the place that stands on the rail to the middle of a shape

/// The best fit of flats, whose length says how deep they are.
double flatMisfit(const FreeRadii& radii, double treadRadius) {
    constexpr double kShortest = 4.0; // mm, half of the length
    constexpr double kLongest = 45.0;
    constexpr double kStep = 1.5;
    double least = std::numeric_limits<double>::infinity();
    std::vector<double> depth(radii.places().size());
    for (double half = kShortest; half <= kLongest; half += kStep) {
        for (double middle = -kFarthest; middle <= kFarthest; middle += kStep) {
            bool isSeen = false;
            for (std::size_t i = 0; i < depth.size(); ++i) {
                const double off = radii.places()[i] - middle;
                depth[i] = -std::max(0.0, half * half - off * off) / (2.0 * treadRadius);
                isSeen = isSeen || depth[i] < 0.0;
            }
            least = isSeen ? std::min(least, radii.misfit(depth, 1.0, 1.0)) : least;
        }
    }
    return least;
}

/// The best fit of spots of dirt, bell-shaped, as thick as they like.
double dirtMisfit(const FreeRadii& radii) {
    constexpr double kRadii[] = {3.0, 5.0, 7.0, 10.0, 14.0, 18.0, 25.0, 35.0}; // mm
    constexpr double kStep = 2.0;
    std::vector<double> height(radii.places().size());
    double least = std::numeric_limits<double>::infinity();
    for (const double radius : kRadii) {
        for (double middle = -kFarthest; middle <= kFarthest; middle += kStep) {
            for (std::size_t i = 0; i < height.size(); ++i) {
                const double off = (radii.places()[i] - middle) / radius;
                height[i] = std::exp(-off * off);
            }
            least = std::min(least, radii.misfit(height, 0.0, kThickestDirt));
        }
    }
    return least;
}

/// How far successive profiles are apart at least, all of them to one side: the farthest ones outside and inside, when the
/// radii are tilted so that this is least.
double depthOf(const std::vector<BandRadius>& radii, double treadRadius, std::size_t successive) {
    constexpr int kSteps = 20;
    double least = std::numeric_limits<double>::infinity();
    for (int step = -kSteps; step <= kSteps; ++step) {
        const double tilt = 3.0 * kTilt * step / kSteps;
        double outside = -std::numeric_limits<double>::infinity();
        double inside = std::numeric_limits<double>::infinity();
        for (std::size_t first = 0; first + successive <= radii.size(); ++first) {
            if (radii[first + successive - 1].profile - radii[first].profile != static_cast<int>(successive) - 1) {
                continue;
            }
            double lowest = std::numeric_limits<double>::infinity();
            double highest = -lowest;
            for (std::size_t i = first; i < first + successive; ++i) {
                const double deviation = radii[i].deviation - tilt * radii[i].fromAxle / treadRadius;
                lowest = std::min(lowest, deviation);
                highest = std::max(highest, deviation);
            }
            outside = std::max(outside, lowest);
            inside = std::min(inside, highest);
        }
        least = std::min(least, outside - inside);
    }
    return least;
}

} // namespace

bool isExplainedByDirt(const std::vector<BandRadius>& radii, double treadRadius, double limit, std::size_t successive) {
    constexpr double kDecisive = 9.0; // three standard deviations
    if (depthOf(radii, treadRadius, successive) > kThickestDirt + limit) {
        return false;
    }
    const FreeRadii free(radii, treadRadius);
    const double flat = flatMisfit(free, treadRadius);
    const double unit = std::max(1.0, flat / static_cast<double>(radii.size())); // where even the flat fits badly
    return dirtMisfit(free) - flat < kDecisive * unit;
}

} // namespace KxInspect::detail
