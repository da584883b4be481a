// What is looked for in the profile that a chain leaves.
#include "inspect/profile/findings.h"

#include "inspect/base/points.h"
#include "inspect/profile/fits.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

using KxMath::KxProfile;
using Points = std::vector<Point>;

constexpr int kCurvePoints = 400;
constexpr double kDegrees = 180.0 / 3.14159265358979323846;

ProfileValue millimetres(const char* key, const char* title, double value) {
    return {key, title, "mm", value};
}

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
    return {"line",
            {},
            {{"slope", "slope", "", line->slope},
             {"angle", "angle against x", "degrees", std::atan(line->slope) * kDegrees},
             millimetres("intercept", "y at x = 0", line->intercept),
             millimetres("rms", "root mean square of the points about it, along y", line->rms)},
            {},
            curveOver(points, 1, [&](double x) { return line->intercept + line->slope * x; })};
}

ProfileFinding circleFinding(const std::string& name, const CircleFit& circle) {
    ProfileFinding finding{name,
                           {},
                           {millimetres("x", "x of the centre", circle.x),
                            millimetres("y", "y of the centre", circle.y),
                            millimetres("radius", "radius", circle.radius),
                            millimetres("rms", "root mean square of the points about it", circle.rms),
                            {"arc", "arc that the points cover", "degrees", circle.arc}},
                           {},
                           {}};
    for (int i = 0; i <= kCurvePoints; ++i) {
        const double angle = (circle.from + circle.arc * i / kCurvePoints) / kDegrees;
        finding.curve.push_back(
            pointAt(circle.x + circle.radius * std::cos(angle), circle.y + circle.radius * std::sin(angle)));
    }
    return finding;
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
    ProfileFinding finding{"polynomial",
                           {},
                           {millimetres("middle", "m, about which the powers are", fit->middle)},
                           {},
                           curveOver(points, kCurvePoints, [&](double x) { return fit->at(x); })};
    for (std::size_t i = 0; i < fit->coefficients.size(); ++i) {
        const std::string power = std::to_string(i);
        const std::string unit = i == 0 ? "mm" : i == 1 ? "" : i == 2 ? "1/mm" : "1/mm^" + std::to_string(i - 1);
        finding.values.push_back({"c" + power, "factor of (x - m)^" + power, unit, fit->coefficients[i]});
    }
    finding.values.push_back(millimetres("rms", "root mean square of the points about it, along y", fit->rms));
    return finding;
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
    return {detected(ProfileFeature::Weld),
            {},
            {millimetres("x", "x of the middle of its top", x), millimetres("y", "lowest y of its top", y)},
            {pointAt(x, y)},
            {}};
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
    ProfileFinding finding = nothing(name, {});
    finding.values = {{"count", "steps of the level", "", static_cast<double>(cuts.size())},
                      {"window", "window on each side", "points", static_cast<double>(options.cutWindow)},
                      {"threshold", "threshold of the windowed difference", "mm", decimal(options.cutThreshold)}};
    finding.points = toVector(cuts.points);
    if (finding.points.empty()) {
        return nothing(name, "no step of the level is beyond the threshold");
    }
    return finding;
}

ProfileFinding jointOf(const Points& points) {
    KxMath::KxPointCloud<KxMath::KxPointXY> joint;
    if (!toProfile(points).detectJoint(joint)) {
        return nothing(detected(ProfileFeature::Joint),
                       "there is no gap of 0.5 mm and no offset of 0.3 mm between two plates");
    }
    const Points edges = toVector(joint.points);
    return {detected(ProfileFeature::Joint),
            {},
            {millimetres("gap", "gap along x", static_cast<double>(edges[1].x) - static_cast<double>(edges[0].x)),
             millimetres("offset", "offset along y, right less left",
                         static_cast<double>(edges[1].y) - static_cast<double>(edges[0].y))},
            edges,
            {}};
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
