// The conicity of contours as gauges measure them, beside a fine search of the contacts on the same contours.
#include "inspect/conicity/fineConicity.h"
#include "inspect/conicity/wheelSets.h"
#include "inspect/inspectSupport.h"
#include "simulator/measuredTracks.h"
#include "simulator/wheelContour.h"

#include <cmath>
#include <numbers>

using namespace conicity_test;

namespace {

using Contour = std::vector<Point>;

/// A wheel with the contour S1002 from its back face on; x from the back, y down. Points are `spacing` mm apart in x.
Contour s1002Wheel(double spacing, double raisedTip = 0.0, double hollow = 0.0) {
    Contour wheel = {{0.004f, -3.0f}, {-0.002f, 4.0f}}; // the flat of the back, no function of x
    for (double x = 0.0; x <= kxsim::kRimWidth; x += spacing) {
        double y = kxsim::s1002Height(x - kxsim::kTapeCircle);
        y += raisedTip * std::max(0.0, 1.0 - (28.0 - y) / 8.0);
        y -= hollow * std::exp(-std::pow((x - 72.0) / 14.0, 2));
        wheel.push_back({static_cast<float>(x), static_cast<float>(y)});
    }
    return wheel;
}

/// A worn rail as a gauge measures it, from the gauge side on: a face that leans back by `lean` mm over 25 mm of height
/// and zigzags, a corner of the radius 12 mm, a head of the radius `head`. Points are `spacing` mm apart.
Contour wornRail(double head, double lean, double zigzag, double spacing) {
    constexpr double kCorner = 12.0, kHalfWidth = 34.0, kFace = 25.0;
    Contour rail;
    // The corner touches head and face: the angles of its normal.
    const double top = std::asin((kHalfWidth - kCorner) / (head - kCorner));
    const double centreX = kHalfWidth - (head - kCorner) * std::sin(top);
    const double centreY = head - (head - kCorner) * std::cos(top);
    const double side = std::numbers::pi / 2.0 + std::atan(lean / kFace);
    const auto add = [&rail](double x, double y) { rail.push_back({static_cast<float>(x), static_cast<float>(y)}); };
    const auto onCorner = [&](double angle) {
        return std::pair{centreX - kCorner * std::sin(angle), centreY - kCorner * std::cos(angle)};
    };
    const auto [endX, endY] = onCorner(side);
    int n = 0;
    for (double down = kFace; down > 0.0; down -= spacing, ++n) {
        add(endX + down * lean / kFace + (n % 2 == 0 ? zigzag : -zigzag), endY + down);
    }
    for (double angle = side; angle > top; angle -= spacing / kCorner) {
        add(onCorner(angle).first, onCorner(angle).second);
    }
    for (double angle = top; static_cast<double>(rail.back().x) < 2.0 * kHalfWidth - 3.0; angle -= spacing / head) {
        add(kHalfWidth - head * std::sin(angle), head - head * std::cos(angle));
    }
    return rail;
}

/// The contour with the middle of each line added, and every second point of the contour.
Contour refined(const Contour& contour) {
    Contour result = {contour.front()};
    for (std::size_t i = 1; i < contour.size(); ++i) {
        const Point &a = contour[i - 1], &b = contour[i];
        result.push_back({(a.x + b.x) / 2.0f, (a.y + b.y) / 2.0f});
        result.push_back(b);
    }
    return result;
}

Contour thinned(const Contour& contour) {
    Contour result;
    for (std::size_t i = 0; i < contour.size(); i += 2) {
        result.push_back(contour[i]);
    }
    return result;
}

using Contours = PerWheelSetPart<Contour>;

const Contours kWheelSet = {s1002Wheel(0.11, 0.0, 0.1), wornRail(210.0, 1.5, 0.06, 0.15), s1002Wheel(0.09),
                            wornRail(300.0, 2.5, 0.03, 0.12)};

ConicityInput inputOf(const Contours& contours) {
    ConicityInput input;
    for (std::size_t part = 0; part < contours.size(); ++part) {
        input.sections[part].profile = Profile{contours[part]};
    }
    input.gauge = 1434.6f;
    input.backToBack = 1360.2f;
    input.radius1 = 460.1f;
    input.radius2 = 460.0f;
    return input;
}

FineWheelSet fineOf(const ConicityInput& input) {
    const auto contour = [&](WheelSetPart part) { return input.sections[part].profile->points; };
    return {contour(Wheel1),
            contour(Rail1),
            contour(Wheel2),
            contour(Rail2),
            static_cast<double>(input.gauge),
            static_cast<double>(input.gaugeDepth),
            static_cast<double>(input.backToBack),
            static_cast<double>(input.radius1),
            static_cast<double>(input.radius2)};
}

/// At 2, 3 and 4 mm.
void expectNear(const ConicityResult& result, const ConicityResult& expected, float relative, float absolute) {
    for (const float amplitude : {2.0f, 3.0f, 4.0f}) {
        const float value = conicityAt(expected, amplitude).value_or(std::nanf(""));
        EXPECT_NEAR(conicityAt(result, amplitude).value_or(0.0f), value, relative * value + absolute) << amplitude;
    }
}

/// The conicity at an amplitude, NaN without one.
float conicityOf(const Contours& contours, float amplitude) {
    return conicityAt(measureConicity(inputOf(contours)), amplitude).value_or(std::nanf(""));
}

} // namespace

TEST(ConicityOfContours, IsThatOfAFineSearch) {
    const Contours swapped = {kWheelSet[Wheel2], kWheelSet[Rail2], kWheelSet[Wheel1], kWheelSet[Rail1]};
    // On the last two the contacts jump where the radii are equal: steps of 0.1 mm are off by 3 % and 8 %.
    for (const ConicityInput& input :
         {inputOf(kWheelSet), inputOf(swapped), measured(kxsim::TrackCase::NewOn20, {0.0, 0.05}, 1),
          measured(kxsim::TrackCase::Hollow, {0.0, 0.05}, 1)}) {
        const ConicityResult result = measureConicity(input);
        for (const float amplitude : {2.0f, 3.0f, 4.0f}) {
            const auto fine = fineConicity(fineOf(input), static_cast<double>(amplitude));
            ASSERT_TRUE(fine);
            EXPECT_NEAR(conicityAt(result, amplitude).value_or(0.0f), *fine, 0.005 * *fine) << amplitude;
        }
    }
}

TEST(ConicityOfContours, HardlyDependsOnTheDensityOfPoints) {
    const ConicityResult expected = measureConicity(inputOf(kWheelSet));
    for (const auto change : {refined, thinned}) {
        Contours changed = kWheelSet;
        std::transform(changed.begin(), changed.end(), changed.begin(), change);
        expectNear(measureConicity(inputOf(changed)), expected, 0.02f, 0.0f);
    }
}

TEST(ConicityOfContours, DoesNotDependOnTheHeightOfAFlangeTip) {
    const ConicityResult expected = measureConicity(inputOf(kWheelSet));
    for (const double raised : {0.1, 0.45, 1.0, 2.0}) {
        Contours first = kWheelSet, second = kWheelSet;
        first[Wheel1] = s1002Wheel(0.11, raised, 0.1);
        second[Wheel2] = s1002Wheel(0.09, raised);
        expectNear(measureConicity(inputOf(first)), expected, 0.0f, 0.002f);
        expectNear(measureConicity(inputOf(second)), expected, 0.0f, 0.002f);
    }
}

TEST(ConicityOfContours, KnowsWhereTheFlangeBackIs) {
    // The wheel without its first 2 mm, x counted from the back or from the tape circle; and x counted from elsewhere.
    const float expected = conicityOf(kWheelSet, 3.0f);
    for (const float origin : {0.0f, 70.0f}) {
        Contours contours = kWheelSet;
        Contour& wheel = contours[Wheel1];
        wheel.erase(wheel.begin(), std::find_if(wheel.begin(), wheel.end(), [](const Point& p) { return p.x > 2.0f; }));
        for (Point& p : wheel) {
            p.x -= origin;
        }
        const ConicityResult result = measureConicity(inputOf(contours));
        EXPECT_NEAR(conicityAt(result, 3.0f).value_or(0.0f), expected, 1e-3f) << origin;
        ASSERT_FALSE(result.warnings.empty());
        EXPECT_EQ(result.warnings[0].rfind("wheel1 shows no flange back: it is taken to be at x = ", 0), 0u);

        for (Point& p : wheel) {
            p.x += 33.5f;
        }
        EXPECT_THROW(measureConicity(inputOf(contours)), Error) << origin;
        ConicityInput input = inputOf(contours);
        input.flangeBack1 = 33.5f - origin;
        EXPECT_NEAR(conicityAt(measureConicity(input), 3.0f).value_or(0.0f), expected, 1e-3f) << origin;
    }
}

TEST(ConicityOfContours, NeedsWheelsThatFitBetweenTheRails) {
    ConicityInput input = inputOf(kWheelSet); // flanges of 32.5 mm
    input.backToBack = 1369.8f;
    const ConicityResult result = measureConicity(input);
    EXPECT_FALSE(result.isCalculated());
    EXPECT_EQ(result.reason.rfind("the wheel-set does not fit between the rails: its flanges are 32.", 0), 0u)
        << result.reason;
    EXPECT_TRUE(result.conicity.empty() && !result.shownConicity);
    input.backToBack = 1369.0f;
    EXPECT_TRUE(measureConicity(input).isCalculated());
    input.backToBack = 1300.0f;
    const std::vector<std::string> warnings = measureConicity(input).warnings;
    EXPECT_TRUE(std::any_of(warnings.begin(), warnings.end(), [](const std::string& warning) {
        return warning.rfind("the flanges have a clearance of 69.", 0) == 0;
    }));
}

TEST(ConicityOfContours, DropsOutliersAndTellsGaps) {
    Contours contours = kWheelSet;
    const std::size_t places[] = {600, 700, 815};
    for (const std::size_t i : places) {
        contours[Wheel1][i].y += i == 700 ? -1.04f : 0.9f;
    }
    Contour& rail = contours[Rail2];
    const auto head = std::find_if(rail.begin(), rail.end(), [](const Point& p) { return p.x > 50.0f; });
    rail.erase(head, head + 40); // 0.12 mm apart
    const ConicityResult result = measureConicity(inputOf(contours));
    EXPECT_NEAR(conicityAt(result, 3.0f).value_or(0.0f), conicityOf(kWheelSet, 3.0f), 1e-3f);
    ASSERT_GE(result.warnings.size(), 2u);
    EXPECT_EQ(
        result.warnings[0].rfind("wheel1 has 3 outliers, which were dropped; the farthest one, at x = 76.8, is 1.0", 0),
        0u)
        << result.warnings[0];
    const auto gap = std::find_if(result.warnings.begin(), result.warnings.end(), [](const auto& w) {
        return w.rfind("rail2 has a gap of 4.9 mm at x = 52.4", 0) == 0;
    });
    EXPECT_NE(gap, result.warnings.end());
}

TEST(ConicityOfContours, NeedsPointsThatFollowAContour) {
    Contours contours = kWheelSet;
    Contour& rail = contours[Rail2];
    for (std::size_t i = 0; i < rail.size(); ++i) { // in no order
        std::swap(rail[i], rail[i * 7919 % rail.size()]);
    }
    const Error error = inspect_test::errorOf([&] { measureConicity(inputOf(contours)); });
    EXPECT_EQ(error.kind(), ErrorKind::Unsuitable);
    EXPECT_EQ(error.source().role, "rail2");
}
