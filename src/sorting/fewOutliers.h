// Sorts sequences in which few elements are out of order.
#pragma once

#include "sorting/scratchBuffer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace KxMath::detail {

/// Takes elements out of a sequence until the rest is in order, sorts these, and puts them back. After the idea of E.
/// Ernerfeldt's drop-merge sort (2017), made stable by the positions of what was taken out.
template <typename T, typename Less>
class FewOutliers {
public:
    /// Sorts [first, first + count) when at most an eighth of it has to be taken out; elements that are alike keep their
    /// order.
    /// @param inOrder so many elements at the front are in order, at least one
    /// @param count below 2^32
    /// @return false when more have to be taken out, or without memory: nothing has changed then
    static bool sort(T* first, std::size_t inOrder, std::size_t count, Less less) {
        FewOutliers sorter(first, count, less);
        if (sorter.outliers_ == nullptr) {
            return false;
        }
        if (!sorter.takeOut(inOrder)) {
            sorter.putBack();
            return false;
        }
        sorter.merge();
        return true;
    }

private:
    struct Outlier {
        T element;
        std::uint32_t position; ///< in the sequence; later, how many of the rest stood before it
    };
    static constexpr std::size_t kInARow = 8; ///< after so many, what stands before them may be what is out of order

    FewOutliers(T* first, std::size_t count, Less less)
        : first_(first), count_(count), most_(count / 8), less_(less), memory_(most_ + kInARow),
          outliers_(memory_.data()) {}

    bool takeOut(std::size_t inOrder) {
        std::size_t kept = inOrder;
        std::size_t inARow = 0;
        T top = first_[kept - 1];
        for (std::size_t read = inOrder; read < count_; ++read) {
            const T element = first_[read];
            if (!less_(element, top)) {
                top = element;
                first_[kept++] = top;
                inARow = 0;
                continue;
            }
            if (taken_ >= most_) {
                read_ = read;
                kept_ = kept;
                return false;
            }
            if (inARow == 0 && kept > 1 && !less_(element, first_[kept - 2])) { // the one before it is too large
                add(top, read - 1);
                top = element;
                first_[kept - 1] = top;
                continue;
            }
            add(element, read);
            if (++inARow % kInARow == 0) {
                if (const std::size_t fewer = keptBehindThoseBefore(kept); fewer != kept) {
                    kept = fewer;
                    top = element;
                    inARow = 0;
                }
            }
        }
        read_ = count_;
        kept_ = kept;
        return true;
    }

    void add(const T& element, std::size_t position) {
        std::construct_at(outliers_ + taken_++, Outlier{element, static_cast<std::uint32_t>(position)});
    }

    /// When the last kInARow outliers are in order behind all but a few of those kept, these few are the outliers.
    /// @return how many are kept then; as before when nothing has changed
    std::size_t keptBehindThoseBefore(std::size_t kept) {
        Outlier* const row = outliers_ + taken_ - kInARow;
        const auto isBefore = [&](const Outlier& a, const Outlier& b) { return less_(a.element, b.element); };
        if (!std::is_sorted(row, row + kInARow, isBefore)) {
            return kept;
        }
        std::size_t large = 1;
        while (large < kInARow && large < kept && less_(row->element, first_[kept - 1 - large])) {
            ++large;
        }
        if (large == kInARow || large == kept) {
            return kept;
        }
        T inOrder[kInARow];
        std::transform(row, row + kInARow, inOrder, [](const Outlier& outlier) { return outlier.element; });
        std::size_t position = row->position;
        taken_ -= kInARow;
        // Those kept last stand before the row, but for outliers between them.
        std::size_t between = taken_;
        for (std::size_t i = 0; i < large; ++i) {
            --position;
            for (; between > 0 && outliers_[between - 1].position == position; --between) {
                --position;
            }
            add(first_[kept - 1 - i], position);
        }
        std::sort(outliers_ + between, outliers_ + taken_,
                  [](const Outlier& a, const Outlier& b) { return a.position < b.position; });
        std::copy_n(inOrder, kInARow, first_ + kept - large);
        return kept - large + kInARow;
    }

    void putBack() {
        std::size_t from = kept_;
        for (std::size_t to = read_; taken_ > 0;) {
            --to;
            first_[to] = outliers_[taken_ - 1].position == to ? outliers_[--taken_].element : first_[--from];
        }
    }

    void merge() {
        for (std::size_t i = 0; i < taken_; ++i) {
            outliers_[i].position -= static_cast<std::uint32_t>(i);
        }
        std::stable_sort(outliers_, outliers_ + taken_,
                         [&](const Outlier& a, const Outlier& b) { return less_(a.element, b.element); });
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): std::stable_sort frees its memory
        T* end = first_ + kept_; // of those that were kept and are not in their place yet
        for (std::size_t i = taken_; i-- > 0;) {
            const Outlier& outlier = outliers_[i];
            T* const from = behind(outlier, end);
            std::copy_backward(from, end, end + i + 1);
            end = from;
            *(end + i) = outlier.element;
        }
    }

    /// The first of those kept that come behind the outlier. They are most often near the end.
    T* behind(const Outlier& outlier, T* end) const {
        const auto isBehind = [&](const T* kept) {
            return less_(outlier.element, *kept) ||
                   (!less_(*kept, outlier.element) && kept - first_ >= static_cast<std::ptrdiff_t>(outlier.position));
        };
        std::ptrdiff_t step = 1;
        T* known = end; // comes behind, as all from here on
        while (known - first_ >= step && isBehind(known - step)) {
            known -= step;
            step *= 2;
        }
        T* low = known - first_ >= step ? known - step + 1 : first_;
        while (low != known) {
            T* const middle = low + (known - low) / 2;
            if (isBehind(middle)) {
                known = middle;
            } else {
                low = middle + 1;
            }
        }
        return known;
    }

    T* first_;
    std::size_t count_;
    std::size_t most_; ///< outliers
    Less less_;
    ScratchBuffer<Outlier> memory_;
    Outlier* outliers_; ///< by position until all are found
    std::size_t read_ = 0; ///< so far
    std::size_t kept_ = 0; ///< of these, at the front of the sequence
    std::size_t taken_ = 0;
};

} // namespace KxMath::detail
