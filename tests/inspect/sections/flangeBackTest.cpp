// The flange back of wheels: how it leans.
#include "inspect/sections/flangeBack.h"
#include "inspect/sections/upright.h"
#include "simulator/wheelContour.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace KxInspect;
using detail::leanOfBack;

namespace {

/// S1002 with `height` mm of back face above the tape circle, which leans by `slope` and has points off by `noise` to
/// either side in turn; the third one stands 4 mm off.
Profile wheel(float height, float slope, float noise) {
    Profile profile;
    int number = 0;
    for (float y = -height; y < 9.5f; y += 0.3f) {
        const float off = ++number == 3 ? 4.0f : number % 2 == 0 ? noise : -noise;
        profile.points.push_back({slope * y + off, y});
    }
    for (int i = 1; i <= 520; ++i) {
        const double x = 0.25 * i;
        profile.points.push_back(
            {static_cast<float>(x), static_cast<float>(kxsim::s1002Height(x - kxsim::kTapeCircle))});
    }
    return profile;
}

} // namespace

TEST(FlangeBack, LeansAsItsFlatFace) {
    for (const float slope : {0.0f, 0.003f, -0.02f, 0.08f}) {
        const auto lean = leanOfBack(wheel(21.0f, slope, 0.05f).points);
        ASSERT_TRUE(lean) << slope;
        EXPECT_NEAR(lean->slope, static_cast<double>(slope), 4.0 * lean->error) << slope;
        EXPECT_LT(lean->error, 0.003);
    }
    EXPECT_FALSE(leanOfBack(wheel(-4.0f, 0.0f, 0.05f).points)) << "the face is not seen";
    EXPECT_FALSE(leanOfBack({}));
}

TEST(FlangeBack, IsToldWhereItLeansMoreThanTolerable) {
    for (const auto& [slope, noise, told] :
         {std::tuple{0.003f, 0.05f, ""},
          {-0.02f, 0.05f, "1.2"},
          {0.02f, 0.05f, "1.1"},
          {0.0065f, 0.05f, "0.4"}, // by less than three standard errors more than tolerable
          {0.02f, 1.0f, ""}}) {
        Profile profile = wheel(21.0f, slope, noise);
        detail::Notes notes;
        detail::placeFlangeBack(profile, 0.0f, false, notes);
        const QString note = notes.empty() ? QString() : notes.front();
        EXPECT_EQ(note.section(' ', 7, 7).toStdString(), told) << note.toStdString() << noise;
    }
}
