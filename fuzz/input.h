// Numbers, points and profiles made from the bytes that a fuzzer gives.
#pragma once

#include <KxMath/KxPointCloud.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace kxfuzz {

/// Takes values from the front of the bytes; after their end all values are 0.
class Input {
public:
    Input(const std::uint8_t* data, size_t size) : at_(data), end_(data + size) {}

    bool isEmpty() const { return at_ == end_; }

    template <typename Value>
    Value take() {
        Value value{};
        const size_t there = std::min(sizeof(Value), static_cast<size_t>(end_ - at_));
        std::memcpy(&value, at_, there);
        at_ += there;
        return value;
    }

    std::uint8_t byte() { return take<std::uint8_t>(); }
    bool yes() { return byte() % 2 != 0; }

    /// Any float, but often one of a small grid, so that values coincide, or one of the size of measurements.
    float number() {
        const std::uint8_t kind = byte();
        if (kind < 128) {
            return static_cast<float>(kind % 16) * 0.5f - 2.0f;
        }
        if (kind < 200) {
            return static_cast<float>(take<std::int16_t>()) / 128.0f;
        }
        return kind < 224 ? special(kind) : take<float>();
    }

    /// A small whole number, sometimes any.
    int count() {
        const std::uint8_t kind = byte();
        return kind < 240 ? kind % 32 - 2 : take<int>();
    }

    KxMath::KxPointXY pointXY() {
        const float x = number();
        return {x, number()};
    }

    KxMath::KxPointXYZ pointXYZ() {
        const float x = number();
        const float y = number();
        return {x, y, number()};
    }

    KxMath::KxSortOrder order() { return static_cast<KxMath::KxSortOrder>(byte() % 4); }

private:
    static float special(std::uint8_t kind) {
        using Limits = std::numeric_limits<float>;
        const float values[] = {Limits::quiet_NaN(),  Limits::infinity(),
                                -Limits::infinity(),  Limits::max(),
                                -Limits::max(),       -0.0f,
                                Limits::denorm_min(), 1e-7f};
        return values[kind % std::size(values)];
    }

    const std::uint8_t* at_;
    const std::uint8_t* end_;
};

/// Appends up to `most` points; `take` is Input::pointXY or Input::pointXYZ.
template <typename Point>
void appendPoints(QList<Point>& points, Input& in, int most, Point (Input::*take)()) {
    for (int n = in.byte() % (most + 1); n > 0 && !in.isEmpty(); --n) {
        points.append((in.*take)());
    }
}

/// Whether the steps over an extent are too many to be tried often, although legal.
inline bool isLongWalk(float extent, float step, float most = 2000.0f) {
    return step > 0.0f && std::abs(extent / step) > most;
}

/// The distance from the smallest to the largest of a coordinate; huge when one of them is not finite.
template <typename Point>
float extentOf(const QList<Point>& points, float Point::*coordinate) {
    float min = std::numeric_limits<float>::max();
    float max = -std::numeric_limits<float>::max();
    for (const Point& p : points) {
        min = std::min(min, p.*coordinate);
        max = std::max(max, p.*coordinate);
        if (!std::isfinite(p.*coordinate)) {
            return std::numeric_limits<float>::max();
        }
    }
    return points.isEmpty() ? 0.0f : max - min;
}

/// Ends the run when a condition does not hold, so that the fuzzer keeps the input.
inline void require(bool condition) {
    if (!condition) {
        __builtin_trap();
    }
}

} // namespace kxfuzz
