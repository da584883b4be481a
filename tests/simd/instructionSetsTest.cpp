#include "support/testing.h"

#include "grid/blockSums.h"
#include "grid/cells.h"
#include "profile/coordinates.h"
#include "profile/fir.h"
#include "profile/lookUp.h"
#include "profile/sampling.h"
#include "rounding/angles.h"
#include "simd/blockPolar.h"
#include "simd/blockTrigonometry.h"
#include "simd/windowSums.h"

#include <bit>
#include <numeric>
#include <random>
#include <vector>

namespace detail = KxMath::detail;
using detail::InstructionSet;
using namespace testing_support;

namespace {

/// Those that this processor has.
std::vector<InstructionSet> instructionSets() {
    if (detail::widestInstructionSet() == InstructionSet::Baseline) {
        return {InstructionSet::Baseline};
    }
    return {InstructionSet::Baseline, detail::widestInstructionSet()};
}

/// Floats of all sizes, NaN and infinities among them, and angles as they are in practice.
QList<float> numbers(Nasty& nasty, int count) {
    std::mt19937 bits(static_cast<unsigned>(nasty.below(1 << 30)));
    QList<float> numbers(count);
    for (float& number : numbers) {
        const int kind = nasty.below(3);
        number = kind == 0   ? std::bit_cast<float>(static_cast<std::uint32_t>(bits()))
                 : kind == 1 ? nasty.value()
                             : static_cast<float>(nasty.below(720000) - 360000) * 1e-3f;
    }
    return numbers;
}

template <typename Function>
QList<float> each(const QList<float>& a, const QList<float>& b, Function function) {
    QList<float> results(a.size());
    std::transform(a.begin(), a.end(), b.begin(), results.begin(), function);
    return results;
}

TEST(InstructionSets, TrigonometryIsThatOfTheStandardLibrary) {
    forNasty(11, 2000, [](Nasty& nasty) {
        const int count = nasty.size(detail::kPolarBlock);
        const QList<float> a = numbers(nasty, count);
        const QList<float> b = numbers(nasty, count);
        const auto arcTangents = each(a, a, [](float v, float) { return detail::atanF(v); });
        const auto sines = each(a, a, [](float v, float) { return detail::sinF(v); });
        const auto cosines = each(a, a, [](float v, float) { return detail::cosF(v); });
        const auto radii = each(a, b, [](float x, float y) { return detail::polarRadius(x, y); });
        const auto angles = each(a, b, [](float x, float y) { return detail::polarAngleDeg(x, y); });
        const auto xs =
            each(a, b, [](float radius, float deg) { return detail::cosF(detail::toRadians(deg)) * radius; });
        const auto ys =
            each(a, b, [](float radius, float deg) { return detail::sinF(detail::toRadians(deg)) * radius; });
        for (const InstructionSet set : instructionSets()) {
            SCOPED_TRACE(static_cast<int>(set));
            QList<float> first(a.size()), second(a.size());
            detail::atanOf(a.data(), count, first.data(), set);
            ASSERT_EXACT(first, arcTangents);
            detail::sinesAndCosinesOf(a.data(), count, first.data(), second.data(), set);
            ASSERT_EXACT(first, sines);
            ASSERT_EXACT(second, cosines);
            first = a;
            second = b;
            detail::toPolar(first.data(), second.data(), count, set);
            ASSERT_EXACT(first, radii);
            ASSERT_EXACT(second, angles);
            first = a;
            second = b;
            detail::fromPolar(first.data(), second.data(), count, set);
            ASSERT_EXACT(first, xs);
            ASSERT_EXACT(second, ys);
        }
    });
}

TEST(InstructionSets, WindowsAreSummedInTheirOrder) {
    forNasty(14, 500, [](Nasty& nasty) {
        const int window = nasty.below(60);
        const int count = nasty.size(500);
        QList<float> values = numbers(nasty, window + count + static_cast<int>(detail::kWindowPadding));
        QList<float> expected(count);
        for (int i = 0; i < count; ++i) {
            expected[i] = std::accumulate(values.begin() + i, values.begin() + i + window, 0.0f);
        }
        for (const InstructionSet set : instructionSets()) {
            QList<float> sums(count + detail::kWindowPadding);
            detail::windowSums(values.constData(), count, window, sums.data(), set);
            ASSERT_EXACT(sums.first(count), expected);
        }
    });
}

TEST(InstructionSets, BlocksAreSummedInTheirOrder) {
    forNasty(15, 200, [](Nasty& nasty) {
        const int width = nasty.below(25);
        std::vector<QList<float>> rows;
        std::vector<const float*> starts;
        for (int r = nasty.below(25); r > 0; --r) {
            starts.push_back(rows.emplace_back(numbers(nasty, 1 + width + detail::kBlocksPerCall)).constData());
        }
        QList<float> expected(detail::kBlocksPerCall, 0.0f);
        for (int block = 0; block < detail::kBlocksPerCall; ++block) {
            for (const float* cells : starts) {
                expected[block] = std::accumulate(cells + 1 + block, cells + 1 + block + width, expected[block]);
            }
        }
        for (const InstructionSet set : instructionSets()) {
            const auto sums = detail::blockSums(starts.data(), std::ssize(starts), 1, width, set);
            ASSERT_EXACT(QList<float>(sums.begin(), sums.end()), expected);
        }
    });
}

TEST(InstructionSets, CellsAreCountedAndEmptied) {
    forNasty(17, 1000, [](Nasty& nasty) {
        const QList<float> cells = numbers(nasty, nasty.size(200));
        const int count = static_cast<int>(cells.size());
        const float min = nasty.value(), max = nasty.value();
        QList<float> expected = cells;
        for (float& cell : expected) {
            cell = cell < min || cell > max ? kNaN : cell;
        }
        const auto filled = [](const QList<float>& of) {
            return std::count_if(of.begin(), of.end(), [](float cell) { return !std::isnan(cell); });
        };
        for (const InstructionSet set : instructionSets()) {
            QList<float> emptied = cells;
            ASSERT_EQ(detail::countFilled(cells.data(), count, set), filled(cells));
            ASSERT_EQ(detail::emptyOutside(emptied.data(), count, min, max, set), filled(cells) - filled(expected));
            ASSERT_EXACT(emptied, expected);
        }
    });
}

TEST(InstructionSets, PointsAreLookedThroughInTheirOrder) {
    forNasty(16, 2000, [](Nasty& nasty) {
        const Points points = nasty.points<KxMath::KxPointXY>(nasty.size(300));
        const qsizetype from = nasty.below(static_cast<int>(points.size()) + 1);
        const float x = nasty.value();
        const auto holds = [](auto a, auto b) { return a <= b; };
        const auto found = std::find_if(points.begin() + from, points.end(),
                                        [=](const KxMath::KxPointXY& p) { return p.x >= x; }); // NaN: false
        bool allHold = true;
        for (qsizetype i = 0; i + 1 < points.size(); ++i) {
            allHold = allHold && holds(points[i].x, points[i + 1].x);
        }
        for (const InstructionSet set : instructionSets()) {
            ASSERT_EQ(detail::findAtOrBeyond(points.constData(), points.size(), x, from, set), found - points.begin());
            ASSERT_EQ(detail::allAdjacentX(points.constData(), points.size(), holds, set), allHold);
        }
    });
}

TEST(InstructionSets, SmoothedHeightsAreTheSame) {
    forNasty(12, 2000, [](Nasty& nasty) {
        const Points points = nasty.points<KxMath::KxPointXY>(nasty.size(700));
        const float maxStep = nasty.pick(std::array{kNaN, 0.0f, 0.5f, 30.0f, kInf});
        std::vector<Points> results;
        for (const InstructionSet set : instructionSets()) {
            results.push_back(points);
            detail::smoothHeights(points.constData(), points.size(), maxStep, results.back().data(), set);
        }
        ASSERT_EXACT(results.front(), results.back());
    });
}

TEST(InstructionSets, SamplesOfASplineAreTheSame) {
    int samples = 0;
    forNasty(13, 400, [&](Nasty& nasty) {
        KxMath::KxPointCloud<KxMath::KxPointXY> points;
        points.points = nasty.points<KxMath::KxPointXY>(nasty.size(200));
        const KxMath::KxInterpolant spline(points, KxMath::Akima);
        const float range = spline.count > 0 ? spline.knotsX[spline.count - 1] - spline.knotsX[0] : kNaN;
        if (!(range > 0.0f && range < kInf)) {
            return;
        }
        const float step = range / static_cast<float>(1 + nasty.below(1500));
        std::vector<QList<float>> results;
        for (const InstructionSet set : instructionSets()) {
            QList<float>& result = results.emplace_back();
            detail::Sampler sampler(spline, step, kNaN, kNaN, set);
            detail::Sampler::Block block;
            while (sampler.next(block)) {
                result.append(QList<float>(block.xs.data(), block.xs.data() + block.count));
                result.append(QList<float>(block.ys.data(), block.ys.data() + block.count));
            }
            samples += static_cast<int>(result.size());
        }
        ASSERT_EXACT(results.front(), results.back());
    });
    EXPECT_GT(samples, 10000);
}

} // namespace
