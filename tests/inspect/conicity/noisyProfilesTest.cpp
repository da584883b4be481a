// The conicity of profiles with noise: smoothing, correction, intervals.
#include "inspect/inspectSupport.h"
#include "simulator/measuredTracks.h"

#include "inspect/conicity/oscillation.h"
#include "inspect/sections/contourNoise.h"
#include "inspect/sections/contourSmoothing.h"
#include "simulator/random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

using namespace KxInspect;
using namespace kxsim;

namespace {

constexpr Measuring kNoisy = {0.05, 0.2, true};

/// The arc of a circle with noise across it.
std::vector<Point> arc(double radius, double noise, double spacing) {
    std::vector<Point> points;
    kxsim::Random random({17});
    for (double angle = -1.3; angle < 1.3; angle += spacing / radius) {
        const double r = radius + noise * random.normal();
        points.push_back({static_cast<float>(r * std::sin(angle)), static_cast<float>(-r * std::cos(angle))});
    }
    return points;
}

double rms(const std::vector<Point>& points, double radius) {
    double sum = 0.0;
    for (const Point& p : points) {
        sum += std::pow(std::hypot(static_cast<double>(p.x), static_cast<double>(p.y)) - radius, 2);
    }
    return std::sqrt(sum / static_cast<double>(points.size()));
}

} // namespace

TEST(ContourSmoothing, TakesNoiseOffAndLeavesTheShape) {
    constexpr double kRadius = 60.0;
    const std::vector<Point> noisy = arc(kRadius, 0.04, 0.2);
    const detail::ContourNoise noise = detail::noiseOf(noisy);
    EXPECT_NEAR(noise.y, 0.04, 0.006);
    EXPECT_NEAR(noise.x, 0.04, 0.006);
    const std::vector<float> windows = detail::parabolaWindows(noisy, noise);
    const std::vector<detail::ContourPlace> places = detail::placesAlong(noisy, 2.0f, detail::PointPlaces::Tenth);
    const detail::ContourSmoothing smoothing(noisy, windows, places);
    EXPECT_LT(rms(smoothing.contour(), kRadius), 0.012) << "some 60 points with the variance factor 1.5: 0.006";
    const std::vector<float> narrow(noisy.size(), 4.0f);
    const std::vector<Point> exact = arc(kRadius, 0.0, 0.2);
    EXPECT_LT(rms(detail::ContourSmoothing(exact, narrow, places).contour(), kRadius), 3e-5);

    // Displacements of the points.
    std::vector<Point> moved = exact;
    std::vector<Point> by;
    for (std::size_t i = 0; i < moved.size(); ++i) {
        by.push_back({0.002f * std::sin(static_cast<float>(i)), 0.001f * static_cast<float>(i % 7)});
        moved[i] = {moved[i].x + by[i].x, moved[i].y + by[i].y};
    }
    const std::vector<detail::ContourPlace> atPoints = detail::placesOfPoints(exact);
    const detail::ContourSmoothing before(exact, narrow, atPoints);
    const std::vector<Point> shifts = before.displaced(by);
    const detail::ContourSmoothing again(moved, narrow, atPoints);
    const std::vector<Point>& after = again.contour();
    for (std::size_t i = 30; i + 30 < exact.size(); ++i) {
        // Along the contour the places move with their points; across it they agree.
        const double radius = std::hypot(static_cast<double>(before.contour()[i].x + shifts[i].x),
                                         static_cast<double>(before.contour()[i].y + shifts[i].y));
        EXPECT_NEAR(std::hypot(static_cast<double>(after[i].x), static_cast<double>(after[i].y)), radius, 2e-4) << i;
    }
}

TEST(Oscillation, HasTheConicityOfItsDifferenceOfRadii) {
    std::vector<float> cone;
    std::vector<float> jump;
    for (int i = -60; i <= 90; ++i) {
        const float y = 0.1f * static_cast<float>(i) - 0.23f; // the centre is between two displacements
        cone.push_back(2.0f * 0.15f * y);
        jump.push_back(y < 0.0f ? -0.2f : 0.2f);
    }
    const detail::Oscillation ofCone(cone, 60);
    const detail::Oscillation ofJump(jump, 60);
    for (const double amplitude : {0.5, 1.0, 3.0, 6.0}) {
        EXPECT_NEAR(ofCone.conicity(amplitude).value_or(0.0), 0.15, 1e-5) << amplitude;
        // A constant force f: F = f y, and the integral is 4 sqrt(a / f).
        const double expected = std::pow(std::acos(-1.0) / 4.0, 2) * 0.2 / amplitude;
        EXPECT_NEAR(ofJump.conicity(amplitude).value_or(0.0), expected, 0.02 * expected) << amplitude;
    }
    EXPECT_FALSE(ofCone.conicity(6.3)) << "the left side ends at 6.23 mm";
    EXPECT_FALSE(detail::Oscillation({3.0f, 2.0f, 1.0f}, 1).conicity(0.1));
}

TEST(NoisyProfiles, HaveTheConicityOfThoseWithoutNoise) {
    const ConicityResult truth = measureConicity(measured(TrackCase::NewOn40, {0.0, 0.2}, 1));
    const double expected = static_cast<double>(truth.shownConicity.value_or(0.0f));
    ASSERT_NEAR(expected, 0.175, 0.005);
    constexpr int kRuns = 8;
    int held = 0;
    double sum = 0.0;
    double sumAsMeasured = 0.0;
    for (std::uint64_t run = 0; run < kRuns; ++run) {
        const ConicityResult result = measureConicity(measured(TrackCase::NewOn40, kNoisy, run));
        ASSERT_TRUE(result.shownConicity && result.shownInterval.isKnown()) << run;
        held += result.shownInterval.holds(static_cast<float>(expected)) ? 1 : 0;
        sum += static_cast<double>(*result.shownConicity) / kRuns;
        sumAsMeasured += static_cast<double>(result.shownAsMeasured.value_or(0.0f)) / kRuns;
        EXPECT_LT(result.shownInterval.high - result.shownInterval.low, 0.1f);
    }
    EXPECT_GE(held, 6) << "of 8, 95 % each: fewer are one in 170";
    EXPECT_NEAR(sum, expected, 0.016) << "three standard deviations of the mean";
    EXPECT_LT(sumAsMeasured, expected - 0.004) << "what the correction is for";
}

TEST(NoisyProfiles, HoldTheToldErrorsOfTheirGauges) {
    // As much as profiles that are turned so much, both wheels and both rails (law of propagation).
    constexpr float kTurn = 0.5f; // mrad
    const ConicityInput exact = measured(TrackCase::NewOn20, {0.0, 0.1}, 0);
    const auto turned = [&](std::size_t first, float by) {
        ConicityInput input = exact;
        for (const std::size_t part : {first, first + 2}) {
            for (Point& p : input.sections[part].profile->points) {
                p = {p.x - by * 1e-3f * p.y, p.y + by * 1e-3f * p.x};
            }
        }
        return std::log(measureConicity(input).shownConicity.value());
    };
    float square = 0.0f;
    for (const std::size_t first : {Wheel1, Rail1}) {
        square += std::pow((turned(first, kTurn) - turned(first, -kTurn)) / 2.0f, 2.0f);
    }
    ConicityInput told = exact;
    told.gaugeError.turn = kTurn;
    const ConicityResult result = measureConicity(told);
    const float half = std::log(result.shownInterval.high / result.shownInterval.low) / 2.0f;
    EXPECT_NEAR(half, 1.96f * std::sqrt(square), 0.1f * std::sqrt(square));
    EXPECT_TRUE(result.shownInterval.holds(*result.shownConicity));
    told.gaugeError.scale = -1.0f;
    EXPECT_THROW(measureConicity(told), Error);
}

TEST(NoisyProfiles, AreSmoothedAsAskedForAndAlwaysAlike) {
    ConicityInput input = measured(TrackCase::NewOn20, kNoisy, 5);
    const ConicityResult found = measureConicity(input);
    EXPECT_EQ(toJson(measureConicity(input), Pictures::Included), toJson(found, Pictures::Included));
    ASSERT_TRUE(found.sections[Wheel1].windows);
    EXPECT_GT((*found.sections[Wheel1].windows)[1], 3.0f);
    EXPECT_NEAR(found.sections[Wheel1].noise.y, 0.05f, 0.006f);
    EXPECT_FALSE(found.sections[Wheel1].residuals.empty());
    // What the noise hides is absent, and its reason says what is known.
    ASSERT_TRUE(found.rows[3].conicity && !found.rows[0].conicity);
    EXPECT_EQ(reasonWithoutConicity(found, 0.5f).rfind("the noise of the profiles leaves it anywhere from 0.", 0), 0u);
    EXPECT_GT(found.intervals[0].high, 4.0f * found.intervals[0].low);
    EXPECT_EQ(toJson(conicityFromJson(toJson(found))), toJson(found));

    input.smoothing = 4.0f;
    const ConicityResult asked = measureConicity(input);
    EXPECT_EQ(asked.sections[Rail2].windows, (std::array{4.0f, 4.0f}));
    EXPECT_TRUE(asked.shownInterval.isKnown());
    EXPECT_EQ(asked.shownAsMeasured, found.shownAsMeasured);

    input.smoothing = 0.0f;
    const ConicityResult none = measureConicity(input);
    EXPECT_FALSE(none.sections[Rail2].windows);
    EXPECT_TRUE(none.shownInterval.isKnown() || !none.shownConicity);
    input.smoothing = 51.0f;
    inspect_test::expectError([&] { measureConicity(input); }, ErrorKind::BadArgument, "smoothing");
}
