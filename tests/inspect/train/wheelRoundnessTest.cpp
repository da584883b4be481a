// The roundness of wheels whose shape is known: the tread is as far off the circle as it was made.
#include "inspect/train/wheelRoundness.h"
#include "inspect/train/treadDefects.h"
#include "support/testing.h"

#include <functional>
#include <memory>

namespace {

using namespace testing_support;
using KxInspect::DefectLimits;
using KxInspect::Roundness;
using namespace KxInspect::detail;

constexpr double kFlangeRadius = 455.0, kTreadRadius = 427.0;
constexpr double kAxle = 5000.0; // along the pass
constexpr int kProfiles = 60;

/// How profiles are made.
struct Make {
    double slope = -0.8; ///< of the reference line
    double towardsRail = 1.0; ///< of x
    double step = 9.0; ///< between profiles
    double noise = 0.0, zScale = 1.0;
    double skew = 0.0; ///< of the laser plane, mm along the track for each mm across
    double yaw = 0.0; ///< of the axle
    double ahead = 0.0; ///< how much farther profiles are seen before the axle than behind it, mm
    int hidden = 0; ///< the number of a profile that shows no tread
    std::function<double(int)> worn = [](int) { return 0.0; }; ///< depth of the tread in a profile
    std::function<double(double)> reach = [](double) { return 1.0; }; ///< share of that depth, over the width
    std::function<double(int)> raised = [](int) { return 0.0; }; ///< what the flange is seen lower
    std::function<bool(int, double)> shown = [](int, double) { return true; }; ///< of a place across, in a profile
};

double fromAxle(int number, const Make& make) {
    return (number - kProfiles / 2.0 - 0.5) * make.step - make.ahead;
}

/// Where the laser plane meets a ring of the wheel, from the axle along the track.
double alongOf(double across, int number, const Make& make) {
    return (fromAxle(number, make) - make.skew * across) / (1.0 + make.skew * make.yaw);
}

/// A cylinder with a rounded flange, cut by a plane across the track; points each 0.1 mm across the wheel.
KxProfile makeProfile(int number, const Make& make) {
    std::mt19937 random(static_cast<unsigned>(number));
    std::normal_distribution<double> normal(0.0, 1.0);
    const double cosine = 1.0 / std::hypot(1.0, make.slope);
    KxProfile profile;
    for (double across = 5.0; across < (number == make.hidden ? 30.0 : 120.0);
         across += across < 24.9 || across > 40.0 ? 0.1 : 15.0) {
        if (across > 30.0 && !make.shown(number, across)) {
            continue;
        }
        const double tip = across - 15.0;
        const double radius = across < 30.0
                                  ? kFlangeRadius + make.raised(number) - tip * tip / 25.0
                                  : kTreadRadius - (across - 70.0) / 40.0 - make.worn(number) * make.reach(across);
        const double noise = make.noise > 0.0 ? make.noise * normal(random) : 0.0;
        const double along = alongOf(across, number, make);
        const double down = std::sqrt(radius * radius - std::pow(along + make.yaw * across, 2)) - 400.0 + noise;
        const double seen = across + make.yaw * along;
        // The direction (cosine, slope cosine) runs down along the reference line y = slope x + 100.
        const double x = make.towardsRail * down * cosine - seen * make.slope * cosine;
        const double y = make.towardsRail * down * make.slope * cosine + seen * cosine + 100.0;
        profile.points.append(at(x, y));
    }
    return profile;
}

/// What is kept of a wheel to be judged.
struct Wheel {
    std::vector<PointList> profiles, treads;
    std::vector<float> places;
    WheelView view;

    Wheel(const Make& make, const DefectLimits& limits) : view{profiles, treads, places, behind(make, 0.0f)} {
        const TreadLines lines = {behind(make, 150.0f), behind(make, 40.0f)};
        for (int number = 1; number <= kProfiles; ++number) {
            profiles.push_back(makeProfile(number, make).points);
            treads.push_back(cutTread(profiles.back(), lines, limits));
            places.push_back(static_cast<float>(kAxle + make.zScale * fromAxle(number, make)));
        }
        view.askew = {make.yaw / (1.0 + make.yaw * make.skew), kAxle};
        view.plane.skew = make.skew;
        view.plane.isKnown = true;
    }

    static KxLine behind(const Make& make, float distance) {
        const float slope = static_cast<float>(make.slope);
        return KxLine(slope, 100.0f + distance * std::sqrt(1.0f + slope * slope));
    }
};

RoundnessVerdict judge(const Make& make, const DefectLimits& limits = {}) {
    const Wheel wheel(make, limits);
    return judgeRoundness({wheel.view}, limits).front();
}

/// A step of the tread in some profiles.
std::function<double(int)> within(int first, int last, double depth) {
    return [=](int number) { return number >= first && number <= last ? depth : 0.0; };
}

TEST(WheelRoundness, MeasuresWhatIsOffTheCircle) {
    struct Case {
        const char* desc;
        Make make;
        std::vector<int> profiles;
        double largest;
    };
    const std::vector<Case> cases = {
        {"round", {}, {}, 0.0},
        {"flat", {.worn = within(5, 8, 0.3)}, {5, 6, 7, 8}, 0.3},
        {"build-up at the end", {.worn = within(58, 60, -0.16)}, {58, 59, 60}, 0.16},
        {"too few successive ones", {.worn = within(5, 6, 0.3)}, {}, 0.0},
        {"a gap between them", {.hidden = 7, .worn = within(5, 8, 0.3)}, {}, 0.0},
        {"too shallow", {.worn = within(5, 20, 0.027)}, {}, 0.027},
        {"x away from the rail", {.towardsRail = -1.0, .worn = within(20, 22, 0.2)}, {20, 21, 22}, 0.2},
        {"face along x", {.slope = 0.0, .worn = within(20, 22, 0.2)}, {20, 21, 22}, 0.2},
        {"two bad flanges", {.worn = within(5, 8, 0.3), .raised = within(30, 31, 3.0)}, {5, 6, 7, 8}, 0.3},
        {"both sides are no run", {.worn = [](int n) { return n > 2 && n < 9 ? (n % 2 - 0.5) : 0.0; }}, {}, 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        const std::optional<Roundness> judged = judge(c.make).roundness;
        ASSERT_TRUE(judged);
        const Roundness& result = *judged;
        ASSERT_EQ(result.radii.size(), kProfiles - (c.make.hidden > 0 ? 1 : 0));
        EXPECT_EQ(result.profiles, c.profiles);
        EXPECT_EQ(result.isOut, !c.profiles.empty());
        EXPECT_NEAR(result.largest, c.largest, 2e-3);
        EXPECT_NEAR(result.flangeRadius, kFlangeRadius, 0.05);
        EXPECT_NEAR(result.radii[0].place, fromAxle(1, c.make), 0.01);
    }
}

TEST(WheelRoundness, MapsTheTread) {
    constexpr int kShown = 55; // mm across: the wheel has no tread nearer to the flange
    constexpr int kShownLast = 65; // of what profiles 41 to 60 show
    constexpr int kWorn = 80;
    Make make = {.hidden = 7, .worn = within(20, 24, 0.25)};
    make.reach = [](double across) { return across > kWorn ? 1.0 : 0.0; };
    make.shown = [](int number, double across) { return number <= 40 || across >= kShownLast; };
    const KxInspect::TreadMap map = judge(make).map;
    ASSERT_EQ(map.profiles, kProfiles);
    ASSERT_EQ(map.columns, 51);
    EXPECT_EQ(map.from, 45.0f);
    ASSERT_EQ(map.deviations.size(), 51u * kProfiles);
    for (int number = 1; number <= kProfiles; ++number) {
        for (int across = 45; across < 95; ++across) {
            SCOPED_TRACE("profile " + std::to_string(number) + ", " + std::to_string(across) + " mm");
            const float deviation = map.deviations[static_cast<std::size_t>((number - 1) * 51 + across - 45)];
            const bool isEdge =
                std::abs(across - kShown) <= 1 || std::abs(across - kShownLast) <= 1 || std::abs(across - kWorn) <= 1;
            if (number == 7 || across < kShown - 1 || (number > 40 && across < kShownLast - 1)) {
                EXPECT_TRUE(std::isnan(deviation));
            } else if (!isEdge) {
                const bool isWorn = number >= 20 && number <= 24 && across > kWorn;
                EXPECT_NEAR(deviation, isWorn ? -0.25f : 0.0f, 0.02f);
            }
        }
    }
    EXPECT_EQ(judge({.zScale = 0.0}).map.profiles, 0) << "not judged";
}

TEST(WheelRoundness, TellsFlatsFromDirt) {
    const auto arc = [](int number) { return arcOf(fromAxle(number, {}), kTreadRadius); };
    const auto spot = [&](double middle, double radius, double thickness) {
        return [=](int number) { return -thickness * std::exp(-std::pow((arc(number) - middle) / radius, 2)); };
    };
    const auto flat = [&](double middle, double length) {
        return [=](int number) {
            return std::max(0.0, std::pow(length / 2.0, 2) - std::pow(arc(number) - middle, 2)) / (2.0 * kTreadRadius);
        };
    };
    struct Case {
        const char* desc;
        std::function<double(int)> worn;
        bool isOut, isDirty;
    };
    const Case cases[] = {
        {"spot", spot(8.0, 7.0, 0.09), false, true},
        {"wide spot", spot(-15.0, 20.0, 0.095), false, true},
        {"too thick for dirt", spot(8.0, 7.0, 0.19), true, false},
        {"short flat", flat(5.0, 16.0), true, false}, // 0.075 mm deep
        {"flat at the end", flat(19.0, 18.0), true, false},
        {"edge of a flat", flat(-21.0, 15.0), true, false},
        {"deep flat", flat(-3.0, 45.0), true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        const std::optional<Roundness> judged = judge({.noise = 0.03, .worn = c.worn}).roundness;
        ASSERT_TRUE(judged);
        EXPECT_EQ(judged->isOut, c.isOut) << judged->largest;
        EXPECT_EQ(judged->isDirty, c.isDirty);
        EXPECT_FALSE(judged->profiles.empty());
    }
}

TEST(WheelRoundness, FindsTheAxleWithATurnedLaserPlane) {
    // A turned plane moves the lowest place of the flange away from its tip, by more where profiles are farther from the
    // axle. What the other wheels tell of the plane leaves no doubt of it.
    std::vector<std::unique_ptr<Wheel>> wheels;
    std::vector<WheelView> views;
    for (const double yaw : {0.004, 0.0, 0.0}) {
        wheels.push_back(
            std::make_unique<Wheel>(Make{.step = 6.0, .skew = 0.27, .yaw = yaw, .ahead = 70.0}, DefectLimits()));
        views.push_back(wheels.back()->view);
    }
    for (const RoundnessVerdict& verdict : judgeRoundness(views, {})) {
        ASSERT_TRUE(verdict.roundness);
        EXPECT_NEAR(verdict.roundness->largest, 0.0, 2e-3);
        EXPECT_NEAR(verdict.roundness->flangeRadius, kFlangeRadius, 0.02);
    }
}

/// A part of the tread in the first profiles, another one in the others.
std::function<bool(int, double)> parts(int lastOfFirst, double endOfFirst, double startOfOthers) {
    return
        [=](int number, double across) { return number <= lastOfFirst ? across < endOfFirst : across > startOfOthers; };
}

TEST(WheelRoundness, FindsFlatsOfWhichOnlyTheEdgeIsInView) {
    // One plane on a conical tread: the deeper, the nearer to the flange.
    const std::optional<Roundness> judged = judge({.worn = within(5, 12, 0.12),
                                                   .reach = [](double a) { return std::max(0.0, (76.0 - a) / 6.0); },
                                                   .shown = parts(0, 0.0, 70.0)})
                                                .roundness;
    ASSERT_TRUE(judged);
    EXPECT_EQ(judged->profiles, (std::vector<int>{5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(judged->bandFrom, 69.0f);
    EXPECT_EQ(judged->bandTo, 73.0f);
    EXPECT_NEAR(judged->largest, 0.08, 0.01);
}

TEST(WheelRoundness, ComparesWhatMostProfilesShow) {
    // A flat that alone shows its part of the tread would be found round.
    const std::optional<Roundness> judged =
        judge({.worn = within(36, 60, 1.0), .shown = parts(35, 75.0, 85.0)}).roundness;
    ASSERT_TRUE(judged);
    EXPECT_EQ(judged->radii.size(), 35);
    EXPECT_EQ(judged->radii.back().profile, 35);
    const std::optional<Roundness> overlapping =
        judge({.worn = within(41, 60, 1.0), .shown = parts(40, 200.0, 70.0)}).roundness;
    ASSERT_TRUE(overlapping);
    EXPECT_EQ(overlapping->radii.size(), kProfiles);
    EXPECT_NEAR(overlapping->largest, 1.0, 2e-3);
}

TEST(WheelRoundness, SaysWhyItIsNotJudged) {
    const float nan = std::nanf("");
    struct Case {
        Make make;
        float maxDeviation = 0.1f;
        int radiusProfiles = 3;
        const char* reason;
    };
    const Case cases[] = {
        {{.noise = 0.05}, 0.001f, 3, ""}, // limits follow the noise
        {{.noise = 1.0}, 0.1f, 3, "the noise of the profiles hides deviations up to"},
        {{}, nan, 3, "no limit to compare with"},
        {{.zScale = 1.02}, 0.1f, 3, ""}, // found with the axle
        {{.zScale = 0.9}, 0.1f, 3, "it is no millimetres along the track"},
        {{.step = 0.0}, 0.1f, 3, "on no circle"}, // all in one place
        {{.shown = parts(kProfiles, 0.0, 0.0)}, 0.1f, 3, "flange and tread cannot be recognised"},
        {{.shown = parts(6, 200.0, 90.0)}, 0.1f, 3, ""},
        {{.shown = parts(5, 200.0, 90.0)}, 0.1f, 3, "fewer than 6 profiles show at least 8 mm"},
        {{.shown = parts(30, 75.0, 85.0)}, 0.1f, 3, "different parts of the tread, fewer than 6 one that most"},
        {{.hidden = 20}, 0.1f, 41, "fewer than 41 successive profiles"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reason);
        DefectLimits limits;
        limits.maxRadiusDeviation = c.maxDeviation;
        limits.radiusProfiles = c.radiusProfiles;
        const RoundnessVerdict verdict = judge(c.make, limits);
        EXPECT_EQ(verdict.roundness.has_value(), verdict.reason.empty());
        EXPECT_EQ(verdict.reason.empty(), *c.reason == '\0');
        EXPECT_NE(verdict.reason.find(c.reason), std::string::npos) << verdict.reason;
    }
    for (const size_t count : {0u, 20u}) {
        const std::vector<PointList> none(count);
        const std::vector<float> places(count, 1.0f);
        EXPECT_FALSE(judgeRoundness({WheelView{none, none, places, {}}}, {}).front().roundness);
    }
}

} // namespace
