// The noise that is found in the points of a contour.
#include "inspect/fitting/noise.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace KxInspect;
using namespace KxInspect::detail;

namespace {

/// A slope, a bend of 13 mm and a steep face, with points at uneven distances and with noise.
std::vector<Point> contour(float noise, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<float> deviation(0.0f, 1.0f);
    std::uniform_real_distribution<float> step(0.15f, 0.35f);
    std::vector<Point> points;
    for (float s = 0.0f; s < 120.0f; s += step(random)) {
        const float angle = std::clamp((s - 60.0f) / 13.0f, 0.0f, 1.3f);
        const float before = std::min(s, 60.0f);
        const float behind = std::max(0.0f, s - 60.0f - 13.0f * 1.3f);
        const float off = noise * deviation(random);
        points.push_back({before + 13.0f * std::sin(angle) + behind * std::cos(angle) - off * std::sin(angle),
                          13.0f * (1.0f - std::cos(angle)) + behind * std::sin(angle) + off * std::cos(angle)});
    }
    return points;
}

} // namespace

TEST(Noise, IsFoundInBendsAndBesideOutliers) {
    for (const float noise : {0.005f, 0.05f, 0.1f}) {
        double sum = 0.0;
        for (unsigned seed = 0; seed < 20; ++seed) {
            std::vector<Point> points = contour(noise, seed);
            points[40].y += 5.0f;
            points.insert(points.begin() + 200, points[199]);
            const float found = noiseAcross(points);
            EXPECT_NEAR(found, noise, 0.25f * noise) << noise << " " << seed;
            sum += static_cast<double>(found) / 20.0;
        }
        EXPECT_NEAR(sum, static_cast<double>(noise), 0.05 * static_cast<double>(noise)) << noise;
    }
    EXPECT_LT(noiseAcross(contour(0.0f, 3)), 1e-4f);
}

TEST(Noise, IsFoundBetweenPointsThatAreCloserThanIt) {
    const float slope = -0.8f;
    std::mt19937 random(5);
    std::normal_distribution<float> deviation(0.0f, 0.3f);
    std::vector<Point> points;
    for (float x = 0.0f; x < 30.0f; x += 0.06f) {
        points.push_back({x, slope * x + 0.001f * x * x + deviation(random)});
    }
    EXPECT_NEAR(noiseAlongY(points, slope), 0.3f, 0.03f);
    EXPECT_TRUE(std::isnan(noiseAlongY(std::span(points).first(19), slope)));
    EXPECT_TRUE(std::isfinite(noiseAlongY(std::span(points).first(20), slope)));
}

TEST(Noise, OfFewPointsIsUnknown) {
    const std::vector<Point> points = contour(0.05f, 1);
    EXPECT_TRUE(std::isnan(noiseAcross(std::span(points).first(19))));
    EXPECT_TRUE(std::isfinite(noiseAcross(std::span(points).first(20))));
    EXPECT_TRUE(std::isnan(noiseAcross(std::vector<Point>(100, {1.0f, 2.0f}))));
}
