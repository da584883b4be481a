// The axle of wheels whose tips are known.
#include "inspect/train/axleFit.h"
#include "support/testing.h"

namespace {

using namespace testing_support;
using namespace KxInspect::detail;

constexpr double kPlace = 3000.0, kDown = -470.0, kRadius = 455.0, kLevel = -40.0;

/// The tip at a place, of an axle whose profiles lean and whose places are too short.
ProfileTip tipAt(double along, double shear, double stretch) {
    const double down = kDown + std::sqrt(kRadius * kRadius - along * along);
    return {kPlace + (along + shear * (down - kLevel)) / (1.0 + stretch), down};
}

std::vector<ProfileTip> tips(double from, double to, double shear, double stretch) {
    std::vector<ProfileTip> all;
    for (double along = from; along <= to; along += 6.0) {
        all.push_back(tipAt(along, shear, stretch));
    }
    return all;
}

std::optional<AxleFit> fit(const std::vector<ProfileTip>& all, const AxleKnowledge& known) {
    const std::optional<FlangeCircle> circle = fitFlangeCircle(all);
    return circle ? fitAxle(all, *circle, known) : std::nullopt;
}

TEST(AxleFit, FindsTheAxle) {
    struct Case {
        const char* desc;
        double from, to, shear, stretch;
        double outlier = 0.0; ///< what one tip is off, mm
    };
    const Case cases[] = {{"circle", -270.0, 240.0, 0.0, 0.0},
                          {"leaning plane", -270.0, 240.0, 0.03, 0.0},
                          {"short places", -260.0, 250.0, 0.0, 0.012},
                          {"both, more of one side", -280.0, 100.0, -0.02, -0.008},
                          {"a bad tip", -270.0, 240.0, 0.0, 0.0, 2.0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        std::vector<ProfileTip> all = tips(c.from, c.to, c.shear, c.stretch);
        all[7].down += c.outlier;
        const std::optional<AxleFit> axle = fit(all, {{0.0, 0.05}, {0.0, 0.02}});
        ASSERT_TRUE(axle);
        // Places of a leaning plane are counted from where the profile needs no shear.
        const double place = kPlace + c.shear * (axle->level - kLevel) / (1.0 + c.stretch);
        EXPECT_NEAR(axle->value[AxleFit::Place], place, 2e-3);
        EXPECT_NEAR(axle->value[AxleFit::Down], kDown, 2e-2);
        EXPECT_NEAR(axle->value[AxleFit::Radius], kRadius, 2e-2);
        EXPECT_NEAR(axle->value[AxleFit::Shear], c.shear, 1e-5);
        EXPECT_NEAR(axle->value[AxleFit::Stretch], c.stretch, 3e-5);
        EXPECT_NEAR(axle->scatter, 0.0, 1e-4);
    }
    EXPECT_FALSE(fit({}, {}));
}

TEST(AxleFit, ErrorsAreThoseOfManyFits) {
    constexpr int kFits = 400;
    constexpr double kNoise = 0.02;
    std::mt19937 random(11);
    std::normal_distribution<double> normal(0.0, 1.0);
    AxleFit::Fit::Vector squares = {};
    for (int i = 0; i < kFits; ++i) {
        // What is known of shear and stretch is as uncertain as it says.
        const AxleKnowledge known = {{0.002 * normal(random), 0.002}, {0.004 * normal(random), 0.004}, kNoise};
        std::vector<ProfileTip> all = tips(-270.0, 240.0, 0.0, 0.0);
        for (ProfileTip& tip : all) {
            tip.down += kNoise * normal(random);
        }
        const std::optional<AxleFit> axle = fit(all, known);
        ASSERT_TRUE(axle);
        const AxleFit::Fit::Vector truth = {kPlace, kDown, kRadius, 0.0, 0.0};
        for (std::size_t k = 0; k < truth.size(); ++k) {
            squares[k] += std::pow(axle->value[k] - truth[k], 2) / axle->covariance[k][k] / kFits;
        }
    }
    for (const double square : squares) {
        EXPECT_NEAR(std::sqrt(square), 1.0, 0.15);
    }
}

TEST(AxleFit, IsNoSurerThanTheNoiseOfTheTips) {
    const std::vector<ProfileTip> all = tips(-270.0, 240.0, 0.0, 0.0); // by chance without any
    const auto errorOf = [&](double noise) {
        return std::sqrt(fit(all, {{0.0, 0.002}, {0.0, 0.004}, noise})->covariance[AxleFit::Place][AxleFit::Place]);
    };
    EXPECT_NEAR(errorOf(0.04), 2.0 * errorOf(0.02), 0.1 * errorOf(0.04));
    EXPECT_GT(errorOf(0.02), 0.02 / std::sqrt(static_cast<double>(all.size())));
}

TEST(AxleFit, TellsHowRadiiChange) {
    AxleFit axle;
    axle.value = {kPlace, kDown, kRadius, 0.02, -0.01};
    axle.level = kLevel;
    const double place = 3170.0, down = -70.0, skewed = 15.0;
    const auto radius = [&] { return axle.radiusOf(axle.fromAxle(place, down) - skewed, down); };
    const AxleFit::Fit::Vector change = axle.changeOfRadius(place, down, skewed);
    for (std::size_t k = 0; k < change.size(); ++k) {
        const double step = k < AxleFit::Shear ? 1e-3 : 1e-6;
        axle.value[k] += step;
        const double above = radius();
        axle.value[k] -= 2.0 * step;
        const double below = radius();
        axle.value[k] += step;
        EXPECT_NEAR(change[k], (above - below) / (2.0 * step), 1e-3) << k;
    }
}

} // namespace
