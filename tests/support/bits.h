// Bit-exact comparison of numbers, points and clouds: EXPECT_EQ(exact(a), exact(b)). Any NaN equals any NaN.
#pragma once

#include <KxMath/KxPointCloud.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ostream>
#include <type_traits>
#include <vector>

namespace testing_support {

/// A number that equals another only in all its bits. Floats and 32-bit integers pass through it unchanged.
struct Exact {
    double value;

    friend bool operator==(const Exact& a, const Exact& b) {
        return (std::isnan(a.value) && std::isnan(b.value)) ||
               std::bit_cast<std::uint64_t>(a.value) == std::bit_cast<std::uint64_t>(b.value);
    }
    friend std::ostream& operator<<(std::ostream& stream, const Exact& a) {
        std::array<char, 64> text;
        std::snprintf(text.data(), text.size(), "%a (%.9g)", a.value, a.value);
        return stream << text.data();
    }
};

using ExactList = std::vector<Exact>;

template <typename Number>
requires std::is_arithmetic_v<Number> Exact exact(Number v) {
    return {static_cast<double>(v)};
}

inline ExactList exact(const KxMath::KxPointXY& p) {
    return {exact(p.x), exact(p.y)};
}

inline ExactList exact(const KxMath::KxPointXYZ& p) {
    return {exact(p.x), exact(p.y), exact(p.z)};
}

inline ExactList exact(const KxMath::KxPointXYZRGB& p) {
    return {exact(p.x), exact(p.y), exact(p.z), exact(p.rgb)};
}

/// All elements of a list one after the other: numbers, or the fields of points.
template <typename Element>
ExactList exact(const QList<Element>& list) {
    ExactList all;
    for (const Element& element : list) {
        if constexpr (std::is_arithmetic_v<Element>) {
            all.push_back(exact(element));
        } else {
            const ExactList fields = exact(element);
            all.insert(all.end(), fields.begin(), fields.end());
        }
    }
    return all;
}

inline void append(ExactList& all, const Exact& one) {
    all.push_back(one);
}

inline void append(ExactList& all, const ExactList& more) {
    all.insert(all.end(), more.begin(), more.end());
}

/// Numbers, points and lists one after the other.
template <typename First, typename... More>
requires(sizeof...(More) > 0) ExactList exact(const First& first, const More&... more) {
    ExactList all;
    append(all, exact(first));
    (append(all, exact(more)), ...);
    return all;
}

/// The cached range of a cloud or profile: minX, maxX, minY, maxY, minZ, maxZ.
template <typename Cloud>
ExactList exactRange(const Cloud& cloud) {
    return exact(cloud.minX, cloud.maxX, cloud.minY, cloud.maxY, cloud.minZ, cloud.maxZ);
}

} // namespace testing_support
