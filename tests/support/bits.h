// Numbers, points, lists and maps as lists of numbers that are equal only in all their bits. Any NaN equals any NaN.
#pragma once

#include <KxMath/KxPointCloud.h>

#include <QtCore/QMap>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
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
};

/// As a hexadecimal and a decimal number.
std::ostream& operator<<(std::ostream& stream, const Exact& number);

/// What the numbers of a list stand for: elements of one or several fields.
struct ElementKind {
    const char* name;
    int fieldCount;
    std::array<const char*, 4> fieldNames;
};

inline constexpr ElementKind kNumbers{"number", 1, {"value"}};
inline constexpr ElementKind kEntries{"entry", 2, {"key", "value"}};
inline constexpr ElementKind kPlanePoints{"point", 2, {"x", "y"}};
inline constexpr ElementKind kSpacePoints{"point", 3, {"x", "y", "z"}};
inline constexpr ElementKind kColourPoints{"point", 4, {"x", "y", "z", "rgb"}};

/// Numbers to be compared. The kind of element does not take part; it serves to show them.
struct ExactList {
    std::vector<Exact> numbers;
    const ElementKind* kind = &kNumbers;

    ExactList() = default;
    ExactList(std::size_t count, Exact number) : numbers(count, number) {}
    ExactList(std::initializer_list<Exact> all, const ElementKind& ofKind) : numbers(all), kind(&ofKind) {}

    Exact& operator[](std::size_t i) { return numbers[i]; }
    const Exact& operator[](std::size_t i) const { return numbers[i]; }
    friend bool operator==(const ExactList& a, const ExactList& b) { return a.numbers == b.numbers; }
};

template <typename Number>
requires std::is_arithmetic_v<Number> Exact exact(Number v) {
    return {static_cast<double>(v)};
}

inline Exact exact(const Exact& number) {
    return number;
}

inline ExactList exact(const ExactList& list) {
    return list;
}

inline ExactList exact(const KxMath::KxPointXY& p) {
    return {{exact(p.x), exact(p.y)}, kPlanePoints};
}

inline ExactList exact(const KxMath::KxPointXYZ& p) {
    return {{exact(p.x), exact(p.y), exact(p.z)}, kSpacePoints};
}

inline ExactList exact(const KxMath::KxPointXYZRGB& p) {
    return {{exact(p.x), exact(p.y), exact(p.z), exact(p.rgb)}, kColourPoints};
}

inline void append(ExactList& all, const Exact& one) {
    all.numbers.push_back(one);
    all.kind = &kNumbers;
}

/// A list of several kinds of elements is one of numbers.
inline void append(ExactList& all, const ExactList& more) {
    all.kind = all.numbers.empty() || all.kind == more.kind ? more.kind : &kNumbers;
    all.numbers.insert(all.numbers.end(), more.numbers.begin(), more.numbers.end());
}

/// All elements of a list one after the other: numbers, or the fields of points.
template <typename Element>
ExactList exact(const QList<Element>& list) {
    ExactList all;
    for (const Element& element : list) {
        append(all, exact(element));
    }
    return all;
}

template <typename Key, typename Value>
ExactList exact(const QMap<Key, Value>& map) {
    ExactList all;
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        append(all, {{exact(entry.key()), exact(entry.value())}, kEntries});
    }
    return all;
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
