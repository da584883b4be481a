// When a tread is judged at all: sound needs enough of it, a defect that was found counts.
#include "inspect/train/treadDefects.h"
#include "support/testing.h"

namespace {

using namespace testing_support;
using namespace KxInspect::detail;
using KxInspect::DefectLimits;

const KxLine kReferenceLine(-0.75f, 100.0f);

/// Points along a line across the wheel, from and to distances behind the reference line.
struct Stretch {
    double from, to;
    double step = 0.1;
    double bump = 0.0; ///< height of the points in the middle 2 mm
    double xFactor = 1.0; ///< 0: all points have one x
    double yFactor = 1.0;
};

void append(const Stretch& s, PointList& points) {
    const int count = static_cast<int>(std::lround((s.to - s.from) / s.step));
    for (int i = 0; i < count; ++i) {
        const double across = s.from + (i + 0.5) * s.step;
        const double bump = std::abs(across - (s.from + s.to) / 2.0) < 1.0 ? s.bump : 0.0;
        // Across the reference line is (0.6, 0.8), along it (0.8, -0.6); the tread is square to the back face.
        const double x = 0.6 * across + 0.8 * bump;
        const double y = 0.8 * across - 0.6 * bump + 100.0;
        points.append(at(s.xFactor * x, s.yFactor * (y + 0.75 * x - 100.0) - 0.75 * s.xFactor * x + 100.0));
    }
}

TEST(TreadDefects, JudgesTreadsOnly) {
    constexpr float kNone = std::numeric_limits<float>::infinity();
    const Stretch tread{45.0, 85.0}, damaged{45.0, 85.0, 0.1, 1.5}, face{-2.0, 8.0}, none{0.0, 0.0};
    struct Case {
        const char* desc;
        std::vector<std::pair<int, std::vector<Stretch>>> profiles; ///< how many of a kind
        const char* reason; ///< part of it, empty for a verdict
        int judged;
        bool isDefective = false;
        DefectLimits limits = {};
    };
    const std::vector<Case> cases = {
        {"sound", {{7, {tread}}}, "", 7},
        {"defective", {{5, {tread}}, {2, {damaged}}}, "", 7, true},
        {"far below the curve only", {{5, {tread}}, {2, {damaged}}}, "", 7, true, {1.25f}},
        {"one defective profile is allowed", {{5, {tread}}, {1, {damaged}}}, "", 6},
        {"back faces", {{7, {face}}}, "no profile shows 8 mm of the tread, 45 to 95 mm behind", 0},
        {"back faces and a little tread", {{7, {face, {45.0, 52.0}}}}, "no profile shows 8 mm", 0},
        {"just enough tread", {{7, {{44.0, 53.0}}}}, "", 7},
        {"behind the tread", {{7, {{95.0, 135.0}}}}, "no profile shows 8 mm", 0},
        {"back faces are left out", {{9, {face}}, {6, {tread}}}, "", 6},
        {"too few points", {{7, {{45.0, 85.0, 0.65}}}}, "curve through 63 points", 0},
        {"enough points", {{7, {{45.0, 85.95, 0.65}}}}, "", 7},
        {"as many points as may deviate", {{7, {tread}}}, "curve through 401 points", 0, false, {0.3f, 400}},
        {"points above each other", {{7, {{45.0, 85.0, 0.1, 0.0, 0.0}}}}, "different x", 0},
        {"no curve", {{7, {{45.0, 85.0, 0.1, 0.0, 1.0, 1e37}, tread}}}, "no profile has a curve", 0},
        {"nothing between the lines", {{7, {none}}}, "no profile has a point between the lines", 0},
        {"nothing in the range", {{7, {none}}}, "within the range of x", 0, false, {0.3f, 5, 1, 0.1f, 3, -9.0f, kNone}},
        {"no more than may be defective",
         {{9, {none}}, {1, {tread}}},
         "1 of 10 profiles could be judged, it takes more",
         1},
        {"one in ten", {{18, {none}}, {2, {tread}}}, "", 2},
        {"fewer", {{19, {none}}, {2, {tread}}}, "2 of 21 profiles could be judged, it takes one in 10", 2},
        {"fewer, but defective", {{19, {none}}, {2, {damaged}}}, "", 2, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        std::vector<PointList> treads;
        for (const auto& [count, stretches] : c.profiles) {
            PointList points;
            for (const Stretch& stretch : stretches) {
                append(stretch, points);
            }
            treads.insert(treads.end(), static_cast<size_t>(count), points);
        }
        const TreadVerdict verdict = judgeTreads(treads, treads, kReferenceLine, c.limits);
        EXPECT_EQ(verdict.defects.judged, c.judged);
        EXPECT_EQ(verdict.reason.empty(), *c.reason == '\0');
        EXPECT_NE(verdict.reason.find(c.reason), std::string::npos) << verdict.reason;
        EXPECT_EQ(verdict.defects.isDefective.has_value(), verdict.reason.empty());
        EXPECT_EQ(verdict.defects.isDefective.value_or(false), c.isDefective);
    }
}

TEST(TreadDefects, CutsBothEndsOfTheRangeOfX) {
    const PointList points = {at(-2.5, 1.0), at(-2.0, 1.0), at(0.5, 1.0), at(3.0, 1.0), at(3.5, 1.0)};
    DefectLimits limits;
    limits.fromX = -2.0f;
    limits.toX = 3.0f;
    EXPECT_EQ(cutTread(points, {KxLine(0.0f, 9.0f), KxLine(0.0f, -9.0f)}, limits).size(), 3);
}

} // namespace
