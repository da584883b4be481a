// A set of cells.
#pragma once

#include <QtCore/QPoint>

#include <vector>

namespace KxMath::detail {

/// The positions of cells, in a hash table with linear probing. Growing a region inserts and erases
/// often.
class CellSet {
public:
    /// @return false when the cell is there already
    bool insert(const QPoint& cell) {
        if (2 * (count_ + 1) > slots_.size()) {
            grow();
        }
        const size_t at = find(cell);
        if (slots_[at].isTaken) {
            return false;
        }
        slots_[at] = {cell, true};
        ++count_;
        return true;
    }

    void erase(const QPoint& cell) {
        if (slots_.empty()) {
            return;
        }
        size_t gap = find(cell);
        if (!slots_[gap].isTaken) {
            return;
        }
        --count_;
        // Cells that were displaced behind the gap move up, so that a search for them does not end at it.
        for (size_t at = next(gap); slots_[at].isTaken; at = next(at)) {
            const size_t home = homeOf(slots_[at].cell);
            if (((at - home) & mask()) >= ((at - gap) & mask())) {
                slots_[gap] = slots_[at];
                gap = at;
            }
        }
        slots_[gap].isTaken = false;
    }

private:
    struct Slot {
        QPoint cell;
        bool isTaken = false;
    };

    size_t mask() const { return slots_.size() - 1; } // the size is a power of two
    size_t next(size_t at) const { return (at + 1) & mask(); }
    size_t homeOf(const QPoint& cell) const {
        const quint64 key = quint64(quint32(cell.x())) << 32 | quint32(cell.y());
        // Knuth, The Art of Computer Programming 3, 6.4, 1973
        return static_cast<size_t>((key * 0x9e3779b97f4a7c15u) >> 32) & mask();
    }

    /// The slot of a cell, or the free one where it would be.
    size_t find(const QPoint& cell) const {
        size_t at = homeOf(cell);
        while (slots_[at].isTaken && slots_[at].cell != cell) {
            at = next(at);
        }
        return at;
    }

    void grow() {
        constexpr size_t kFirstSize = 64;
        std::vector<Slot> before(slots_.empty() ? kFirstSize : 2 * slots_.size());
        before.swap(slots_);
        for (const Slot& slot : before) {
            if (slot.isTaken) {
                slots_[find(slot.cell)] = slot;
            }
        }
    }

    std::vector<Slot> slots_;
    size_t count_ = 0;
};

} // namespace KxMath::detail
