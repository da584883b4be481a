// Members of many cells in the order of the cells.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace KxMath::detail {

/// Something in a cell.
struct CellEntry {
    std::uint64_t cell;
    std::uint32_t member;
};

/// Sorts entries by their cells. Keeps the room that it needs from one use to the next.
class CellOrder {
public:
    /// @param cellCount all cells are below it
    void sort(std::vector<CellEntry>& entries, std::uint64_t cellCount) {
        constexpr std::size_t kWorthwhile = 128;
        if (entries.size() < kWorthwhile) {
            std::sort(entries.begin(), entries.end(),
                      [](const CellEntry& a, const CellEntry& b) { return a.cell < b.cell; });
            return;
        }
        spare_.resize(entries.size());
        int shift = 0;
        for (std::uint64_t rest = cellCount - 1; rest > 0; rest >>= kDigitBits) {
            sortByDigit(entries, shift);
            entries.swap(spare_);
            shift += kDigitBits;
        }
    }

private:
    static constexpr int kDigitBits = 11;
    static constexpr std::size_t kValues = std::size_t{1} << kDigitBits;

    /// Moves the entries to the spare room by rising digit; those with the same one keep their order.
    void sortByDigit(const std::vector<CellEntry>& entries, int shift) {
        const auto digit = [shift](const CellEntry& entry) { return (entry.cell >> shift) % kValues; };
        std::array<std::size_t, kValues> places{};
        for (const CellEntry& entry : entries) {
            ++places[digit(entry)];
        }
        std::size_t place = 0;
        for (std::size_t& entry : places) { // numbers become first places
            const std::size_t number = entry;
            entry = place;
            place += number;
        }
        for (const CellEntry& entry : entries) {
            spare_[places[digit(entry)]++] = entry;
        }
    }

    std::vector<CellEntry> spare_;
};

} // namespace KxMath::detail
