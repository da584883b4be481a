// Random input of the kind that breaks numeric code, the same in every run: ties, NaN, +-0, infinities, denormals, and
// numbers of points about the multiples of blocks.
#pragma once

#include "support/inputLog.h"

#include <KxMath/KxPointCloud.h>

#include <algorithm>
#include <array>
#include <limits>
#include <random>
#include <type_traits>

namespace testing_support {

class Nasty {
public:
    explicit Nasty(unsigned seed) : engine_(seed) { nextCase(); }

    /// Draws the character of the values to come: how many differ, how many are special. Forgets the input so far.
    void nextCase() {
        distinct_ = draw(std::array{2, 5, 40, 100000});
        scale_ = draw(std::array{1.0f, 0.25f, 1e-3f, 37.7f});
        specialPercent_ = draw(std::array{0, 0, 3, 25});
        isHuge_ = specialPercent_ > 0 && isDrawn(50);
        input_.clear();
    }

    /// 0 up to, not including, `count`.
    int below(int count) { return noted(drawBelow(count)); }
    bool chance(int percent) { return noted(isDrawn(percent)); }

    template <typename Array>
    typename Array::value_type pick(const Array& choices) {
        const int index = drawBelow(static_cast<int>(choices.size()));
        const auto& choice = choices[static_cast<std::size_t>(index)];
        if constexpr (std::is_arithmetic_v<typename Array::value_type>) {
            input_.add(choice);
        } else {
            input_.add(index);
        }
        return choice;
    }

    /// A number of points from 0 to `max`, small ones more often, and those about the ends of blocks.
    int size(int max = 300) {
        if (isDrawn(25)) {
            return noted(std::clamp(drawBorder(max) - 1 + drawBelow(3), 0, max));
        }
        return noted(drawBelow(1 + std::min(max, draw(std::array{3, 8, 40, max}))));
    }

    /// An ordinary coordinate.
    float plain() { return noted(drawPlain()); }

    /// A coordinate, special ones included as often as the case wants.
    float value() { return noted(drawValue()); }

    float special() { return noted(drawSpecial()); }

    template <typename Point>
    Point point() {
        const Point p = drawPoint<Point>();
        input_.addPoint(p);
        return p;
    }

    /// Points in random order, in scan order (x rising), reversed, or in scan order but for two neighbours at the end of a
    /// block.
    template <typename Point>
    QList<Point> points(int count) {
        QList<Point> all;
        all.reserve(count);
        const int order = drawBelow(5);
        for (int i = 0; i < count; ++i) {
            Point p = drawPoint<Point>();
            if (order >= 2 && !isDrawn(specialPercent_)) {
                p.x = static_cast<float>(order == 2 ? i / 2 : order == 3 ? count - i : i) * scale_;
            }
            all.append(p);
        }
        if (const int border = drawBorder(count); order == 4 && border > 0 && border < count) {
            all.swapItemsAt(border - 1, border);
        }
        input_.add(all);
        return all;
    }

    /// What was drawn since nextCase(). A test may add what it made of it.
    InputLog& input() { return input_; }

private:
    template <typename Number>
    Number noted(Number drawn) {
        input_.add(drawn);
        return drawn;
    }

    int drawBelow(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }
    bool isDrawn(int percent) { return drawBelow(100) < percent; }
    /// A multiple of the size of a block, up to `max`; 0 when no block is so small.
    int drawBorder(int max) {
        int block = draw(std::array{8, 64, 128, 256, 512});
        while (block > std::max(max, 1)) {
            block /= 2;
        }
        return max < 1 ? 0 : block * (1 + drawBelow(max / block));
    }
    float drawPlain() {
        const int fromMiddle = drawBelow(distinct_) - distinct_ / 2;
        return static_cast<float>(fromMiddle) * scale_;
    }
    float drawValue() { return isDrawn(specialPercent_) ? drawSpecial() : drawPlain(); }

    template <typename Array>
    typename Array::value_type draw(const Array& choices) {
        return choices[static_cast<std::size_t>(drawBelow(static_cast<int>(choices.size())))];
    }

    float drawSpecial() {
        using Limits = std::numeric_limits<float>;
        constexpr std::array kTame{Limits::quiet_NaN(), Limits::quiet_NaN(), 0.0f, -0.0f, Limits::denorm_min(), 1e-20f};
        constexpr std::array kHuge{
            Limits::infinity(), -Limits::infinity(), Limits::max(), Limits::lowest(), 1e20f, -3e9f, 1e-38f};
        return isHuge_ && isDrawn(60) ? draw(kHuge) : draw(kTame);
    }

    template <typename Point>
    Point drawPoint() {
        if constexpr (std::is_same_v<Point, KxMath::KxPointXY>) {
            return {drawValue(), drawValue()}; // in braces: drawn from left to right
        } else if constexpr (std::is_same_v<Point, KxMath::KxPointXYZ>) {
            return {drawValue(), drawValue(), drawValue()};
        } else {
            return {drawValue(), drawValue(), drawValue(), static_cast<unsigned>(engine_())};
        }
    }

    InputLog input_;
    std::mt19937 engine_;
    int distinct_ = 1;
    float scale_ = 1.0f;
    int specialPercent_ = 0;
    bool isHuge_ = false;
};

} // namespace testing_support
