#include "profileSupport.h"

using namespace testing_support;

namespace {

TEST(SignChanges, AHeightOfZeroHidesTheSignChange) {
    const std::pair<QList<float>, QList<float>> cases[] = {
        {{-1, 2, -3}, {1, 2}}, {{-1, 0, 1}, {}},  {{-1, kNaN, 1}, {}}, {{1, -0.0f, -1}, {}},
        {{-kInf, kInf}, {1}},  {{1, 1, -1}, {2}}, {{1}, {}},           {{}, {}},
    };
    for (const auto& [ys, zeros] : cases) {
        QList<float> xs(ys.size());
        xs.resize(heights(ys).findZeros(xs.data()));
        EXPECT_EXACT(xs, zeros);
    }
}

} // namespace
