// The equivalent conicity in double precision with the Akima splines of the GNU Scientific Library.
#include "railway/jobs.h"

#include <gsl/gsl_spline.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace kxbench {

namespace {

struct Curve {
    std::vector<double> x;
    std::vector<double> y;

    std::size_t size() const { return x.size(); }
    void add(double newX, double newY) {
        x.push_back(newX);
        y.push_back(newY);
    }
    void shift(double dx, double dy) {
        std::for_each(x.begin(), x.end(), [=](double& v) { v += dx; });
        std::for_each(y.begin(), y.end(), [=](double& v) { v += dy; });
    }
};

class Spline {
public:
    explicit Spline(const Curve& c) : spline_(gsl_spline_alloc(gsl_interp_akima, c.size()), gsl_spline_free) {
        gsl_spline_init(spline_.get(), c.x.data(), c.y.data(), c.size());
    }
    double operator()(double x) const { return gsl_spline_eval(spline_.get(), x, accelerator_.get()); }

private:
    std::unique_ptr<gsl_spline, void (*)(gsl_spline*)> spline_;
    std::unique_ptr<gsl_interp_accel, void (*)(gsl_interp_accel*)> accelerator_{gsl_interp_accel_alloc(),
                                                                                gsl_interp_accel_free};
};

Curve resample(const Curve& c, double step) {
    const Spline spline(c);
    Curve out;
    for (std::size_t i = 0; c.x.front() + static_cast<double>(i) * step < c.x.back(); ++i) {
        const double x = c.x.front() + static_cast<double>(i) * step;
        out.add(x, spline(x));
    }
    return out;
}

/// A profile every 0.1 mm with y up, mirrored for the first side, its inner end at 0.
Curve place(const KxMath::KxProfile& profile, bool isFirst, bool isWheel) {
    Curve c;
    for (const KxMath::KxPointXY& p : profile.points) {
        c.add(static_cast<double>(p.x), -static_cast<double>(p.y));
    }
    c = resample(c, 0.1);
    if (isFirst) {
        std::reverse(c.x.begin(), c.x.end());
        std::reverse(c.y.begin(), c.y.end());
        std::for_each(c.x.begin(), c.x.end(), [](double& x) { x = -x; });
    }
    const auto [low, high] = std::minmax_element(c.y.begin(), c.y.end());
    c.shift(isFirst ? -c.x.back() : -c.x.front(), isWheel ? -*low : -*high);
    return c;
}

struct Side {
    Curve wheel;
    Curve rail;
    std::ptrdiff_t start;
    double reference; ///< height of the wheel at its radius

    bool isCovered(std::ptrdiff_t shift) const {
        return start + shift >= 0 &&
               static_cast<std::ptrdiff_t>(rail.size()) + start + shift <= static_cast<std::ptrdiff_t>(wheel.size());
    }
    /// The rolling radius minus that at the reference.
    double radius(std::ptrdiff_t shift) const {
        const double* const above = wheel.y.data() + start + shift;
        std::size_t contact = 0;
        for (std::size_t i = 0; i < rail.size(); ++i) {
            contact = std::abs(above[i] - rail.y[i]) <= std::abs(above[contact] - rail.y[contact]) ? i : contact;
        }
        return reference - above[contact];
    }
};

/// Moves both wheels to a common height.
void matchHeights(Curve& first, Curve& second) {
    std::size_t i = first.size() - 1;
    std::size_t j = 0;
    while (std::abs(second.y[j] - first.y[i]) > 0.025) {
        first.y[i] < second.y[j] ? ++j : --i;
    }
    first.x.resize(i + 1);
    first.y.resize(i + 1);
    second.x.erase(second.x.begin(), second.x.begin() + static_cast<std::ptrdiff_t>(j));
    second.y.erase(second.y.begin(), second.y.begin() + static_cast<std::ptrdiff_t>(j));
}

Curve radiusDifference(const WheelSet& set) {
    Side first{place(set.wheel1, true, true), place(set.rail1, true, false), 0, 0.0};
    Side second{place(set.wheel2, false, true), place(set.rail2, false, false), 0, 0.0};
    matchHeights(first.wheel, second.wheel);
    first.reference = first.wheel.y.back();
    second.reference = second.wheel.y.front();
    const double offset = static_cast<double>(set.railDistance - set.wheelDistance) / 2.0;
    const auto isOver = [=](const Side& side, std::size_t i, double shift) {
        return std::abs(side.wheel.x[i] - side.rail.x[0] - shift) <= 0.1;
    };
    std::size_t i = 0;
    while (!isOver(first, i, -offset)) {
        ++i;
    }
    std::size_t j = std::min(second.rail.size(), second.wheel.size()) - 1;
    while (!isOver(second, j, offset)) {
        --j;
    }
    first.start = static_cast<std::ptrdiff_t>(i) + 1;
    second.start = static_cast<std::ptrdiff_t>(j) - 1;
    std::vector<std::pair<double, double>> differences;
    for (const int direction : {1, -1}) {
        for (int k = direction > 0 ? 0 : 1; first.isCovered(direction * k) && second.isCovered(direction * k); ++k) {
            const double difference = second.radius(direction * k) - first.radius(direction * k);
            differences.emplace_back(-0.1 * k * direction, difference);
            if (std::abs(difference) >= 15.0) {
                break;
            }
        }
    }
    std::sort(differences.begin(), differences.end());
    Curve curve;
    for (const auto& [displacement, difference] : differences) {
        curve.add(displacement, difference);
    }
    return curve;
}

/// Displacement over potential from the centre on, to the right (1) or to the left (-1).
Curve turningPoints(const Curve& difference, std::size_t centre, std::ptrdiff_t way) {
    Curve curve;
    double area = 0.0;
    for (std::size_t p = centre; p < difference.size(); p += static_cast<std::size_t>(way)) { // ends below 0 as well
        if (p != centre) {
            const std::size_t before = p - static_cast<std::size_t>(way);
            area += std::abs((difference.y[p] + difference.y[before]) * 0.05);
        }
        curve.add(area, difference.x[p]);
    }
    return resample(curve, 0.01);
}

double conicityAt(const Curve& potential, const Curve& right, const Curve& left, std::size_t n, double margin) {
    std::vector<std::pair<double, double>> points;
    for (std::size_t m = 0; m <= n; ++m) {
        points.emplace_back(right.y[m], potential.y[m]);
        points.emplace_back(left.y[m], potential.y[m]);
    }
    std::sort(points.begin(), points.end());
    Curve well;
    for (const auto& [x, y] : points) {
        if (well.x.empty() || x > well.x.back()) {
            well.add(x, y);
        }
    }
    const Spline spline(well);
    const auto integrand = [&](double y) { return 1.0 / std::sqrt(potential.y[n] - y); };
    double x = well.x.front() + margin;
    double value = integrand(spline(x));
    double integral = 0.0;
    for (std::size_t i = 1; i < well.size(); ++i) {
        const bool isLast = i + 1 == well.size();
        const double nextX = isLast ? well.x[i] - margin : well.x[i];
        const double next = integrand(isLast ? spline(nextX) : well.y[i]);
        integral += (value + next) * (nextX - x) * 0.5;
        x = nextX;
        value = next;
    }
    return M_PI / integral * (M_PI / integral);
}

void calculate(ConicityJob& job, int amplitudes) {
    const WheelSet& set = wheelSet();
    const Curve difference = radiusDifference(set);
    std::size_t centre = 0;
    while (difference.y[centre] * difference.y[centre + 1] > 0.0) {
        ++centre;
    }
    centre += std::abs(difference.y[centre + 1]) < std::abs(difference.y[centre]) ? 1 : 0;
    const Curve toRight = turningPoints(difference, centre, 1);
    const Curve toLeft = turningPoints(difference, centre, -1);
    Curve potential;
    Curve right;
    Curve left;
    for (std::size_t i = 0; i < std::min(toRight.size(), toLeft.size()); ++i) {
        const double amplitude = (toRight.y[i] - toLeft.y[i]) / 2.0;
        potential.add(amplitude, toRight.x[i]);
        right.add(amplitude, toRight.y[i]);
        left.add(amplitude, toLeft.y[i]);
    }
    for (Curve* const curve : {&potential, &right, &left}) {
        *curve = resample(*curve, 0.01);
    }
    const auto start = static_cast<std::size_t>((1.0 - potential.x[0]) / 0.01 + 0.5);
    const std::size_t step =
        (potential.size() - start + static_cast<std::size_t>(amplitudes) - 1) / static_cast<std::size_t>(amplitudes);
    for (std::size_t n = start; n < potential.size(); n += step) {
        job.conicities.push_back(conicityAt(potential, right, left, n, static_cast<double>(set.edgeMargin)));
    }
}

[[maybe_unused]] const bool isRegistered = [] {
    addConicity("peer_gsl_akima", calculate);
    return true;
}();

} // namespace

} // namespace kxbench
