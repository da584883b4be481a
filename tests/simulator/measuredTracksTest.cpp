// How the profiles of a track are measured: noise, spacing and the errors of gauges.
#include "simulator/measuredTracks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

using namespace kxsim;
using KxInspect::Point;

namespace {

/// The points of all four profiles.
std::vector<Point> pointsOf(const Measuring& measuring, TrackCase track = TrackCase::Hollow) {
    std::vector<Point> points;
    for (const auto& section : measured(track, measuring, 12).sections) {
        points.insert(points.end(), section.profile->points.begin(), section.profile->points.end());
    }
    return points;
}

struct Scatter {
    double x = 0, y = 0; ///< standard deviations
};

Scatter scatterOf(const std::vector<Point>& points, const std::vector<Point>& ideal) {
    EXPECT_EQ(points.size(), ideal.size());
    Scatter squares;
    for (std::size_t i = 0; i < ideal.size(); ++i) {
        squares.x += std::pow(double(points.at(i).x - ideal[i].x), 2);
        squares.y += std::pow(double(points[i].y - ideal[i].y), 2);
    }
    return {std::sqrt(squares.x / double(ideal.size())), std::sqrt(squares.y / double(ideal.size()))};
}

} // namespace

TEST(MeasuredTracks, NoiseIsAcrossTheProfilesUnlessAskedFor) {
    const std::vector<Point> ideal = pointsOf({});
    ASSERT_GT(ideal.size(), 3000u); // standard deviations are good to 4 %, at three standard deviations
    const Scatter across = scatterOf(pointsOf({.noise = 0.07}), ideal);
    EXPECT_EQ(across.x, 0.0);
    EXPECT_NEAR(across.y, 0.07, 0.0028);
    const Scatter both = scatterOf(pointsOf({.noise = 0.07, .isAcrossOnly = false}), ideal);
    EXPECT_NEAR(both.x, 0.07, 0.0028);
    EXPECT_NEAR(both.y, 0.07, 0.0028);
    EXPECT_NEAR(double(pointsOf({.spacing = 0.3}).size()), double(ideal.size()) / 3, 8) << "0.1 mm unless asked for";
}

TEST(MeasuredTracks, AGaugeShiftsTurnsAndScalesBothItsProfiles) {
    const auto ideal = measured(TrackCase::Cones, {}, 12).sections;
    struct Change {
        KxInspect::GaugeError error;
        bool turns, scales;
    };
    for (const auto& [error, turns, scales] :
         {Change{{0.4f, 0, 0}, false, false}, Change{{0, 2.0f, 0}, true, false}, Change{{0, 0, 500.0f}, false, true}}) {
        const auto sections = measured(TrackCase::Cones, {.gaugeError = error}, 12).sections;
        std::vector<double> turned, scaled, shifted;
        for (std::size_t part = 0; part < sections.size(); ++part) {
            const auto& was = ideal.at(part).profile->points;
            const auto& is = sections.at(part).profile->points;
            const double x = double(was.back().x - was.front().x), y = double(was.back().y - was.front().y);
            const double toX = double(is.back().x - is.front().x), toY = double(is.back().y - is.front().y);
            turned.push_back((x * toY - y * toX) / (x * x + y * y)); // rad
            scaled.push_back((x * toX + y * toY) / (x * x + y * y) - 1);
            shifted.push_back(double(is.front().x - was.front().x));
        }
        for (std::size_t i = 0; i < turned.size(); ++i) {
            EXPECT_EQ(std::abs(turned[i]) > 1e-5, turns) << turned[i];
            EXPECT_EQ(std::abs(scaled[i]) > 1e-5, scales) << scaled[i];
        }
        EXPECT_NEAR(shifted[0], shifted[2], 1e-4) << "one gauge for the wheels";
        EXPECT_NEAR(turned[0], turned[2], 1e-6);
        EXPECT_NEAR(scaled[1], scaled[3], 1e-6) << "one for the rails";
        EXPECT_TRUE(turns    ? std::abs(turned[0] - turned[1]) > 1e-5
                    : scales ? std::abs(scaled[0] - scaled[1]) > 1e-5
                             : std::abs(shifted[0] - shifted[1]) > 0.01);
    }
}
