// What is looked for in the profile that a chain leaves.
#include "inspect/profile/findings.h"

#include "inspect/base/points.h"
#include "inspect/profile/findingValues.h"
#include "inspect/profile/fits.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

using KxMath::KxProfile;
using Points = std::vector<Point>;

constexpr int kCurvePoints = 400;
constexpr double kDegrees = 180.0 / 3.14159265358979323846;

/// The number that a float stands for in decimal text: 0.1, not 0.100000001490116.
double decimal(float value) {
    return QString::fromStdString(shortestText(value)).toDouble();
}

std::string detected(ProfileFeature feature) {
    return std::string("detected ") + nameOf(feature);
}

ProfileFinding nothing(const std::string& name, const std::string& reason) {
    return {name, reason, {}, {}, {}};
}

/// What was found: its numbers in the order of its values.
ProfileFinding found(const std::string& name, const std::vector<double>& numbers, const Points& points,
                     const Points& curve = {}) {
    constexpr std::size_t kOthers = 2; // of a polynomial, which are no coefficients
    ProfileFinding finding{name, {}, valuesWithoutNumbers(name, numbers.size() - kOthers), points, curve};
    for (std::size_t i = 0; i < finding.values.size(); ++i) {
        finding.values[i].value = numbers[i];
    }
    return finding;
}

Point pointAt(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y)};
}

std::pair<double, double> rangeOfX(const Points& points) {
    const auto [left, right] =
        std::minmax_element(points.begin(), points.end(), [](const Point& p, const Point& q) { return p.x < q.x; });
    return {static_cast<double>(left->x), static_cast<double>(right->x)};
}

/// Points of y(x) over the range of the points.
template <typename Height>
Points curveOver(const Points& points, int pieces, Height height) {
    const auto [from, to] = rangeOfX(points);
    Points curve;
    for (int i = 0; i <= pieces; ++i) {
        const double x = from + (to - from) * i / pieces;
        curve.push_back(pointAt(x, height(x)));
    }
    return curve;
}

ProfileFinding lineOf(const Points& points) {
    const auto line = fitLine(points);
    if (!line) {
        return nothing("line", "there are fewer than two points with different x");
    }
    return found("line", {line->slope, std::atan(line->slope) * kDegrees, line->intercept, line->rms}, {},
                 curveOver(points, 1, [&](double x) { return line->intercept + line->slope * x; }));
}

ProfileFinding circleFinding(const std::string& name, const CircleFit& circle) {
    Points curve;
    for (int i = 0; i <= kCurvePoints; ++i) {
        const double angle = (circle.from + circle.arc * i / kCurvePoints) / kDegrees;
        curve.push_back(
            pointAt(circle.x + circle.radius * std::cos(angle), circle.y + circle.radius * std::sin(angle)));
    }
    return found(name, {circle.x, circle.y, circle.radius, circle.rms, circle.arc}, {}, curve);
}

ProfileFinding circleOf(const Points& points) {
    const auto circle = fitCircle(points);
    return circle ? circleFinding("circle", *circle)
                  : nothing("circle", "there are fewer than three points, or all lie on one line");
}

ProfileFinding polynomialOf(const Points& points, int degree) {
    const auto fit = fitPolynomial(points, degree);
    if (!fit) {
        return nothing("polynomial", differentX(points) <= static_cast<std::size_t>(degree)
                                         ? "there are fewer different x than coefficients"
                                         : "rounding prevents a polynomial of this degree");
    }
    std::vector<double> numbers = {fit->middle};
    numbers.insert(numbers.end(), fit->coefficients.begin(), fit->coefficients.end());
    numbers.push_back(fit->rms);
    return found("polynomial", numbers, {}, curveOver(points, kCurvePoints, [&](double x) { return fit->at(x); }));
}

KxProfile toProfile(const Points& points) {
    KxProfile profile;
    profile.points = toList(points);
    return profile;
}

ProfileFinding weldOf(const Points& points) {
    KxMath::KxLine line;
    float centre = 0.0f;
    if (!toProfile(points).detectWeld(line, &centre)) {
        return nothing(detected(ProfileFeature::Weld), "fewer than 5 points are at most 0.9 mm below the highest one");
    }
    const double x = decimal(centre);
    const double y = decimal(line.b);
    return found(detected(ProfileFeature::Weld), {x, y}, {pointAt(x, y)});
}

/// KxProfile::detectCircle() sums in single precision: its points are fitted in double precision here.
ProfileFinding upperCircleOf(const Points& points) {
    constexpr float kAbove = 1.0f; // mm, as KxProfile::detectCircle()
    const std::string name = detected(ProfileFeature::Circle);
    const auto lowest =
        std::min_element(points.begin(), points.end(), [](const Point& p, const Point& q) { return p.y < q.y; });
    Points upper;
    for (const Point& p : points) {
        if (p.y - lowest->y >= kAbove) {
            upper.push_back(p);
        }
    }
    const auto circle = fitCircle(upper);
    return circle ? circleFinding(name, *circle)
                  : nothing(name,
                            "fewer than three points are at least 1 mm above the lowest one, or they lie on one line");
}

ProfileFinding cutsOf(const Points& points, const ProfileOptions& options) {
    const std::string name = detected(ProfileFeature::Cuts);
    Points ordered = points;
    std::stable_sort(ordered.begin(), ordered.end(), [](const Point& p, const Point& q) { return p.x < q.x; });
    KxProfile cuts;
    QList<int> ignored;
    toProfile(ordered).detectCutPoints(cuts, ignored, options.cutWindow, options.cutThreshold);
    if (cuts.points.isEmpty()) {
        return nothing(name, "no step of the level is beyond the threshold");
    }
    return found(
        name, {static_cast<double>(cuts.size()), static_cast<double>(options.cutWindow), decimal(options.cutThreshold)},
        toVector(cuts.points));
}

ProfileFinding jointOf(const Points& points) {
    KxMath::KxPointCloud<KxMath::KxPointXY> joint;
    if (!toProfile(points).detectJoint(joint)) {
        return nothing(detected(ProfileFeature::Joint),
                       "there is no gap of 0.5 mm and no offset of 0.3 mm between two plates");
    }
    const Points edges = toVector(joint.points);
    return found(detected(ProfileFeature::Joint),
                 {static_cast<double>(edges[1].x) - static_cast<double>(edges[0].x),
                  static_cast<double>(edges[1].y) - static_cast<double>(edges[0].y)},
                 edges);
}

ProfileFinding featureOf(const Points& points, ProfileFeature feature, const ProfileOptions& options) {
    switch (feature) {
    case ProfileFeature::Weld:
        return weldOf(points);
    case ProfileFeature::Circle:
        return upperCircleOf(points);
    case ProfileFeature::Cuts:
        return cutsOf(points, options);
    case ProfileFeature::Joint:
        break;
    }
    return jointOf(points);
}

} // namespace

std::vector<ProfileFinding> findingsOf(const Points& points, const ProfileOptions& options) {
    std::vector<ProfileFinding> findings;
    if (options.line) {
        findings.push_back(lineOf(points));
    }
    if (options.circle) {
        findings.push_back(circleOf(points));
    }
    if (options.polynomial) {
        findings.push_back(polynomialOf(points, *options.polynomial));
    }
    for (const ProfileFeature feature : options.features) {
        findings.push_back(featureOf(points, feature, options));
    }
    return findings;
}

std::vector<ProfileFinding> nothingFound(const ProfileOptions& options, const std::string& reason) {
    std::vector<ProfileFinding> findings;
    const auto add = [&](bool isWanted, const std::string& name) {
        if (isWanted) {
            findings.push_back(nothing(name, reason));
        }
    };
    add(options.line, "line");
    add(options.circle, "circle");
    add(options.polynomial.has_value(), "polynomial");
    for (const ProfileFeature feature : options.features) {
        add(true, detected(feature));
    }
    return findings;
}

} // namespace KxInspect::detail

namespace KxInspect {

const char* nameOf(ProfileFeature feature) {
    switch (feature) {
    case ProfileFeature::Weld:
        return "weld";
    case ProfileFeature::Circle:
        return "circle";
    case ProfileFeature::Cuts:
        return "cuts";
    case ProfileFeature::Joint:
        break;
    }
    return "joint";
}

} // namespace KxInspect
