// Random input of the kind that breaks numeric code, the same in every run: ties, NaN, +-0, infinities, denormals.
#pragma once

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

    /// Draws the character of the values to come: how many differ, how many are special.
    void nextCase() {
        distinct_ = pick(std::array{2, 5, 40, 100000});
        scale_ = pick(std::array{1.0f, 0.25f, 1e-3f, 37.7f});
        specialPercent_ = pick(std::array{0, 0, 3, 25});
        isHuge_ = specialPercent_ > 0 && chance(50);
    }

    /// 0 up to, not including, `count`.
    int below(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }
    bool chance(int percent) { return below(100) < percent; }

    template <typename Array>
    typename Array::value_type pick(const Array& choices) {
        return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
    }

    /// A number of points from 0 to `max`, small ones more often.
    int size(int max = 300) { return below(1 + std::min(max, pick(std::array{3, 8, 40, max}))); }

    /// An ordinary coordinate.
    float plain() { return static_cast<float>(below(distinct_) - distinct_ / 2) * scale_; }

    /// A coordinate, special ones included as often as the case wants.
    float value() { return chance(specialPercent_) ? special() : plain(); }

    float special() {
        using Limits = std::numeric_limits<float>;
        constexpr std::array kTame{Limits::quiet_NaN(), Limits::quiet_NaN(), 0.0f, -0.0f, Limits::denorm_min(), 1e-20f};
        constexpr std::array kHuge{
            Limits::infinity(), -Limits::infinity(), Limits::max(), Limits::lowest(), 1e20f, -3e9f, 1e-38f};
        return isHuge_ && chance(60) ? pick(kHuge) : pick(kTame);
    }

    template <typename Point>
    Point point() {
        if constexpr (std::is_same_v<Point, KxMath::KxPointXY>) {
            return {value(), value()}; // in braces: drawn from left to right
        } else if constexpr (std::is_same_v<Point, KxMath::KxPointXYZ>) {
            return {value(), value(), value()};
        } else {
            return {value(), value(), value(), static_cast<unsigned>(engine_())};
        }
    }

    /// Points in random order, in scan order (x rising) or reversed.
    template <typename Point>
    QList<Point> points(int count) {
        QList<Point> all;
        all.reserve(count);
        const int order = below(4);
        for (int i = 0; i < count; ++i) {
            Point p = point<Point>();
            if (order >= 2 && !chance(specialPercent_)) {
                p.x = static_cast<float>(order == 2 ? i / 2 : count - i) * scale_;
            }
            all.append(p);
        }
        return all;
    }

private:
    std::mt19937 engine_;
    int distinct_ = 1;
    float scale_ = 1.0f;
    int specialPercent_ = 0;
    bool isHuge_ = false;
};

} // namespace testing_support
