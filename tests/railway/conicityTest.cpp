// The equivalent conicity against closed forms, properties, a literal version of the method, and bad input.
#include "shapes/crossSections.h"
#include "support/testing.h"

#include <memory>

namespace {

using namespace testing_support;

/// Two cones on round rails.
struct WheelSet {
    KxProfile wheel1, wheel2, rail1, rail2;
    float radius1 = 460, radius2 = 460, railDistance = 1442, wheelDistance = 1360;
    unsigned int amplitudes = 100;
    float edgeMargin = 0.001f;

    explicit WheelSet(float slope = 0.1f) : WheelSet(slope, slope, 80.0f, 80.0f) {}
    WheelSet(float slope1, float slope2, float railRadius1, float railRadius2) {
        kxtool::appendConicalWheel(wheel1, slope1);
        kxtool::appendConicalWheel(wheel2, slope2);
        kxtool::appendRoundRail(rail1, railRadius1);
        kxtool::appendRoundRail(rail2, railRadius2);
    }
};

using Profiles = std::vector<std::unique_ptr<KxProfile>>;

/// The results of one call, which own the profiles that the call hands out.
struct Result {
    int count = 0;
    KxProfile conicity, deltaR, slope1, slope2;
    Profiles placed, contacts1, contacts2;

    explicit Result(WheelSet& set) {
        conicity.points.append(KxPointXY(1, 2)); // stale
        constexpr int kRoom = 20000;
        QList<KxProfile*> handed(4), first(kRoom), second(kRoom);
        int count1 = 0, count2 = 0;
        count = EquivalentConicity(set.wheel1, set.wheel2, set.rail1, set.rail2, set.radius1, set.radius2,
                                   set.railDistance, set.wheelDistance, set.amplitudes, conicity, deltaR, slope1,
                                   slope2, handed.data(), first.data(), count1, second.data(), count2, set.edgeMargin);
        EXPECT_EQ(count1, count2);
        placed = Profiles(handed.begin(), handed.end());
        contacts1 = Profiles(first.begin(), first.begin() + count1);
        contacts2 = Profiles(second.begin(), second.begin() + count2);
    }
};

/// y at `x` between the points of a curve ordered by x.
float valueAt(KxProfile& curve, float x) {
    return curve.calcY(x, kNaN, nullptr);
}

TEST(Conicity, OfConesIsTheirSlope) {
    for (const float slope : {0.025f, 0.05f, 0.1f, 0.2f}) {
        WheelSet set(slope);
        Result r(set);
        ASSERT_GT(r.count, 20) << slope;
        for (const KxPointXY& p : std::as_const(r.conicity.points)) {
            if (p.x <= 5.0f) {
                EXPECT_NEAR(p.y, slope, std::max(0.005f, 0.04f * slope)) << "amplitude " << p.x;
            }
        }
        // The wheel-set stands between its rails: the cone meets the arc where both have the same slope.
        KxProfile& contact = *r.contacts1.front();
        ASSERT_EQ(contact.size(), 2);
        EXPECT_NEAR(contact.points[0].x, contact.points[1].x, 0.2f);
        EXPECT_NEAR(std::abs(r.slope2.points[0].y), slope, 0.01f);
        EXPECT_EQ(r.deltaR.size(), int(r.contacts1.size()));
        ASSERT_EQ(r.placed.size(), 4u);
        EXPECT_FLOAT_EQ(r.placed[2]->points.first().x, 5.0f) << "second flange back, for display";
    }
}

TEST(Conicity, EachSideHasItsOwnConeRailAndRadius) {
    const double slope1 = 0.05, slope2 = 0.12, radius1 = 461, radius2 = 459.5, gauge = 1442, backToBack = 1361;
    WheelSet set(0.05f, 0.12f, 80.0f, 110.0f);
    std::tie(set.radius1, set.radius2, set.railDistance, set.wheelDistance) =
        std::tuple(461.0f, 459.5f, 1442.0f, 1361.0f);
    Result r(set);
    // A cone touches the arc where that has its slope: so far from the gauge side of the rail, whose top is at 32 mm, and
    // from the flange back of the centred wheel-set. Shifted towards the second side its second wheel rolls on more.
    const double inside = (gauge - backToBack) / 2;
    const double touch1 = inside + 32 - 80 * std::sin(std::atan(slope1));
    const double touch2 = inside + 32 - 110 * std::sin(std::atan(slope2));
    ASSERT_GT(r.deltaR.size(), 60);
    for (const float shift : {-3.0f, -0.5f, 0.0f, 1.0f, 2.5f}) {
        const double first = radius1 + (70 - touch1 - double(shift)) * slope1;
        const double second = radius2 + (70 - touch2 + double(shift)) * slope2;
        EXPECT_NEAR(valueAt(r.deltaR, shift), second - first, 0.01) << shift;
        EXPECT_NEAR(std::abs(valueAt(r.slope1, shift)), slope1, 0.002);
        EXPECT_NEAR(std::abs(valueAt(r.slope2, shift)), slope2, 0.002);
    }
    EXPECT_NEAR(valueAt(r.conicity, 3.0f), (slope1 + slope2) / 2, 0.002);
}

TEST(Conicity, KeepsItsSymmetries) {
    WheelSet set;
    kxtool::appendConicalWheel(set.wheel2, 0.05f); // sides that differ
    set.wheel2.points.remove(0, set.wheel1.points.size());
    Result r(set);
    ASSERT_GT(r.count, 20);
    const std::tuple<const char*, void (*)(WheelSet&), float> kCases[] = {
        {"sides exchanged",
         [](WheelSet& s) { s.wheel1.points.swap(s.wheel2.points), s.rail1.points.swap(s.rail2.points); }, -1},
        {"profiles shifted", [](WheelSet& s) { s.wheel1.shift(300, -20, 0), s.rail2.shift(-50, 7, 0); }, 1},
        {"other equal radii", [](WheelSet& s) { s.radius1 = s.radius2 = 300.0f; }, 1},
    };
    for (const auto& [what, change, sign] : kCases) {
        SCOPED_TRACE(what);
        WheelSet changed(set);
        change(changed);
        Result other(changed);
        ASSERT_GT(other.count, 20);
        EXPECT_NEAR(valueAt(other.conicity, 3.0f), valueAt(r.conicity, 3.0f), 0.002f);
        EXPECT_NEAR(valueAt(other.deltaR, sign * 2.0f), sign * valueAt(r.deltaR, 2.0f), 0.03f);
    }
    WheelSet wide(set), narrow(set);
    wide.railDistance += 4.0f;
    narrow.wheelDistance -= 4.0f;
    Result a(wide), b(narrow);
    ASSERT_GT(a.count, 20);
    EXPECT_NEAR(valueAt(a.conicity, 3.0f), valueAt(b.conicity, 3.0f), 0.002f) << "gauge against back-to-back";
}

// Steps 12 to 14 of the method written down as they are told: every curve and every spline from nothing.
void conicityByDefinition(KxProfile& deltaR, unsigned int amplitudeCount, float edgeMargin, KxProfile& conicity) {
    const QList<KxPointXY>& d = deltaR.points;
    int centre = -1;
    for (double e = 0.001; centre < 0; e *= 1.25) {
        for (int i = 0; i < d.size(); ++i) {
            int candidate = -1;
            if (double(std::abs(d[i].y)) <= e) {
                candidate = i;
            } else if (i + 1 < d.size() && ((d[i].y > 0 && d[i + 1].y < 0) || (d[i].y < 0 && d[i + 1].y > 0))) {
                candidate = std::abs(d[i + 1].y) < std::abs(d[i].y) ? i + 1 : i;
            }
            if (candidate >= 0 && (centre < 0 || std::abs(d[candidate].x) < std::abs(d[centre].x))) {
                centre = candidate;
            }
        }
    }
    KxProfile right, left;
    right.points = left.points = {KxPointXY(0.0f, d[centre].x)};
    for (int p = centre + 1; p < d.size(); ++p) {
        right.points.append(KxPointXY(std::abs(deltaR.integral(centre, p, true)), d[p].x));
    }
    for (int p = centre - 1; p >= 0; --p) {
        left.points.append(KxPointXY(std::abs(deltaR.integral(p, centre, true)), d[p].x));
    }
    for (KxProfile* const side : {&right, &left}) {
        if (side->size() > 1 && side->points[0].x != side->points[1].x) {
            side->interpolate(0.01f, 0.0f, kNaN, Akima);
        }
    }
    KxProfile level, rightAt, leftAt;
    for (int i = 0; i < std::min(right.size(), left.size()); ++i) {
        const float a = (right.points[i].y - left.points[i].y) * 0.5f;
        level.points.append(KxPointXY(a, right.points[i].x));
        rightAt.points.append(KxPointXY(a, right.points[i].y));
        leftAt.points.append(KxPointXY(a, left.points[i].y));
    }
    for (KxProfile* const curve : {&level, &rightAt, &leftAt}) {
        curve->interpolate(0.01f, kNaN, kNaN, Akima);
    }
    int start = 1;
    for (int j = 1; j < level.size(); ++j) {
        start = std::abs(level.points[j].x - 1.0f) < std::abs(level.points[start].x - 1.0f) ? j : start;
    }
    const int step = std::max(1, int(std::ceil(double(level.size() - start) / double(amplitudeCount))));
    for (int n = start; n < level.size(); n += step) {
        KxProfile well;
        for (int m = 0; m <= n; ++m) {
            well.points.append(KxPointXY(rightAt.points[m].y, level.points[m].y));
            well.points.append(KxPointXY(leftAt.points[m].y, level.points[m].y));
        }
        well.sort(KxSortAscending, KxSortAscending);
        well.removeDuplicates();
        well.calcRange();
        KxInterpolant spline(well, Akima);
        for (const float x : {well.minX + edgeMargin, well.maxX - edgeMargin}) {
            well.points.append(KxPointXY(x, spline.calcY(x)));
        }
        well.sort(KxSortAscending, KxSortAscending);
        well.removeDuplicates();
        for (KxPointXY& p : well.points) {
            p.y = float(1.0 / std::sqrt(double(level.points[n].y) - double(p.y)));
        }
        const double ratio = double(3.1415927f) / double(well.integral(1, well.size() - 2, true));
        conicity.points.append(KxPointXY(level.points[n].x, float(ratio * ratio)));
    }
}

TEST(Conicity, IsBitForBitThatOfTheLiteralMethod) {
    std::mt19937 random(20);
    std::uniform_real_distribution<float> slopes(0.02f, 0.15f);
    std::normal_distribution<float> noise(0.0f, 0.01f);
    for (int round = 0; round < 12; ++round) {
        WheelSet set(slopes(random));
        set.amplitudes = round % 3 == 0 ? 7 : 60;
        set.edgeMargin = std::array{0.001f, 0.03f, 0.0f, -0.5f}[static_cast<unsigned>(round) % 4];
        if (round >= 4) { // measured profiles: contact points jump, the potential need not rise
            for (KxProfile* const p : {&set.wheel1, &set.wheel2, &set.rail1, &set.rail2}) {
                for (KxPointXY& point : p->points) {
                    point.y += noise(random) * float(round - 3);
                }
            }
        }
        InputLog input;
        for (const KxProfile* const p : {&set.wheel1, &set.wheel2, &set.rail1, &set.rail2}) {
            input.add(p->points);
        }
        const RoundReport report(20, round, input);
        Result r(set);
        ASSERT_GT(r.count, 2);
        ASSERT_LE(r.conicity.points.first().x, 1.1f) << "else points of conicity 0 stand before";
        KxProfile expected;
        conicityByDefinition(r.deltaR, set.amplitudes, set.edgeMargin, expected);
        EXPECT_EXACT(r.conicity.points, expected.points);
    }
}

TEST(Conicity, HasAsManyPointsAsAmplitudesAreAskedFor) {
    WheelSet set;
    for (const unsigned int amplitudes : {0u, 1u}) {
        set.amplitudes = amplitudes;
        Result r(set);
        EXPECT_GT(r.deltaR.size(), 20);
        ASSERT_EQ(r.count, int(amplitudes));
        EXPECT_TRUE(r.count == 0 || std::abs(r.conicity.points[0].x - 1.0f) <= 0.011f);
    }
}

TEST(Conicity, EndsWhereOnlySplinesSwingOut) {
    WheelSet set;
    for (KxProfile* const wheel : {&set.wheel1, &set.wheel2}) {
        wheel->points = {{0, 0}, {22, 3}, {45, 3}, {68, 6}, {90, 5}, {112, 4}, {135, 0}};
    }
    for (KxProfile* const rail : {&set.rail1, &set.rail2}) {
        rail->points = {{0, 3}, {11, -1}, {21, -2}, {32, 0}, {43, 1}, {53, 3}, {64, -3}};
    }
    set.railDistance = 1435;
    set.amplitudes = 3;
    Result r(set); // the amplitudes of its spline would take some GB
    ASSERT_GT(r.count, 2);
    EXPECT_GT(r.conicity.points.last().x, 500.0f) << "no more than a spline";
    for (const KxPointXY& p : std::as_const(r.conicity.points)) {
        EXPECT_LE(std::abs(p.x), 1000.0f);
    }
}

TEST(Conicity, LeavesEverythingForAnEmptyProfile) {
    KxProfile profile, empty, conicity, deltaR, slope1, slope2;
    kxtool::appendRoundRail(profile, 80.0f);
    conicity.points.append(KxPointXY(1, 2));
    int count1 = 17, count2 = 18;
    KxProfile* slot = &profile;
    EXPECT_EQ(EquivalentConicity(profile, profile, profile, empty, 1, 1, 1435, 1360, 10, conicity, deltaR, slope1,
                                 slope2, &slot, &slot, count1, &slot, count2, 0.001f),
              -1);
    EXPECT_TRUE(conicity.size() == 1 && count1 == 17 && count2 == 18 && slot == &profile);
}

TEST(Conicity, EndsWithEmptyResultsForBadInput) {
    const Points kPoints[] = {{{0, 0}, {50, 1}},
                              {{0, 0}, {10, 1}, {30, 2}, {50, 1}, {60, 0}},
                              Points(40, {3, 1}),
                              Points(40, {kNaN, kNaN}),
                              {{0, 0}},
                              {{0, 0}, {30, 1}, {60, 0}},
                              {{0, kNaN}, {10, kNaN}, {30, kNaN}, {60, kNaN}},
                              {{-kInf, 0}, {0, 1}, {1, 2}, {kInf, 3}},
                              {{0, kInf}, {10, -kInf}, {30, kInf}, {60, 0}},
                              {{0, 0}, {kNaN, 1}, {30, 2}, {kNaN, 3}, {60, 1}},
                              {{0, 3e38f}, {10, -3e38f}, {30, 3e38f}, {60, 0}},
                              {{-1e30f, 0}, {0, 1}, {1, 2}, {1e30f, 3}},
                              {{0, 0}, {1e6f, 1}, {2e6f, 0}},
                              {{0, 0}, {20, 0}, {40, 0}, {60, 0}}};
    for (const Points& points : kPoints) {
        for (int which = 1; which < 16; ++which) { // every choice of the four profiles
            SCOPED_TRACE(testing::Message() << "points " << &points - kPoints << ", profiles " << which);
            WheelSet set;
            KxProfile* const all[4] = {&set.wheel1, &set.wheel2, &set.rail1, &set.rail2};
            for (int i = 0; i < 4; ++i) {
                all[i]->points = which >> i & 1 ? points : all[i]->points;
            }
            set.amplitudes = 5;
            Result r(set);
            EXPECT_GE(r.count, 0);
            EXPECT_EQ(r.count, r.conicity.size());
            for (const auto& p : r.placed) {
                EXPECT_NE(p, nullptr);
            }
        }
    }
    using Distances = std::tuple<float, float, float>; // of the rails, of the wheels, and the edge margin
    for (const Distances& d : {Distances(5000, 1360, 0.001f), Distances(1000, 1360, 0.001f),
                               Distances(kNaN, 1360, 0.001f), Distances(1435, kInf, 0.001f), Distances(1442, 1360, -1),
                               Distances(1442, 1360, 1e30f), Distances(1442, 1360, kNaN)}) {
        WheelSet set;
        std::tie(set.railDistance, set.wheelDistance, set.edgeMargin) = d;
        Result r(set);
        EXPECT_EQ(r.count, r.conicity.size()) << set.railDistance << ' ' << set.wheelDistance << ' ' << set.edgeMargin;
    }
}

} // namespace
