// Stable ordering by a float key in time that grows with the number of elements only.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>

namespace KxMath::detail {

/// An integer in the order of the float `key`, which is not NaN; 0 and -0 get the same. Falls as the key rises when not
/// `ascending`.
inline std::uint32_t orderedBits(float key, bool ascending) {
    constexpr std::uint32_t kSign = 0x80000000u;
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(key + 0.0f); // -0 becomes 0
    const std::uint32_t rising = bits & kSign ? ~bits : bits | kSign;
    return ascending ? rising : ~rising;
}

/// Uninitialised room for elements; null data when there is no memory.
template <typename T>
class Room {
    static_assert(std::is_trivially_copy_constructible_v<T> && std::is_trivially_destructible_v<T>);

public:
    explicit Room(std::size_t count) : bytes_(new (std::nothrow) std::byte[count * sizeof(T)]) {}
    T* data() { return reinterpret_cast<T*>(bytes_.get()); }

private:
    std::unique_ptr<std::byte[]> bytes_;
};

/// Sorts [first, first + count) by `key`, from the lowest byte of its bits to the highest one; equal keys keep their
/// order, and none is NaN. Larger digits would make fewer passes, but over more places than the caches hold.
/// @return false when that is nothing for this way: too few elements, too many, or no memory. They stay as they are
/// then
template <typename T, typename Key>
bool radixSort(T* first, std::size_t count, Key key, bool ascending) {
    constexpr std::size_t kWorthwhile = 200;
    constexpr int kDigits = 4;
    constexpr std::size_t kValues = 256;
    if (count < kWorthwhile || count > 0xffffffffu) {
        return false;
    }
    Room<T> room(count);
    T* from = first;
    T* to = room.data();
    if (to == nullptr) {
        return false;
    }
    const auto digit = [](std::uint32_t bits, int d) { return (bits >> (8 * d)) & (kValues - 1); };
    std::array<std::array<std::uint32_t, kValues>, kDigits> ends{};
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t bits = orderedBits(key(first[i]), ascending);
        for (int d = 0; d < kDigits; ++d) {
            ++ends[static_cast<std::size_t>(d)][digit(bits, d)];
        }
    }
    const std::uint32_t firstBits = orderedBits(key(first[0]), ascending);
    for (int d = 0; d < kDigits; ++d) {
        std::array<std::uint32_t, kValues>& places = ends[static_cast<std::size_t>(d)];
        if (places[digit(firstBits, d)] == count) {
            continue; // all have the same digit
        }
        std::uint32_t place = 0;
        for (std::uint32_t& entry : places) { // numbers become first places
            const std::uint32_t number = entry;
            entry = place;
            place += number;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t target = places[digit(orderedBits(key(from[i]), ascending), d)]++;
            std::construct_at(to + target, from[i]);
        }
        std::swap(from, to);
    }
    for (std::size_t i = 0; from != first && i < count; ++i) {
        first[i] = from[i];
    }
    return true;
}

} // namespace KxMath::detail
