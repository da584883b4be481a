// A list that grows without giving its new elements a value first.
#pragma once

#include <QtCore/QList>

#include <algorithm>
#include <type_traits>

namespace KxMath::detail {

/// Collects elements that are written where they will stay. QList::resize() would give each of them a value before,
/// which costs a third of reading a large file.
template <typename T>
class UnfilledList {
    static_assert(std::is_trivially_copy_constructible_v<T> && std::is_trivially_destructible_v<T>);

public:
    explicit UnfilledList(qsizetype capacity) : storage_(allocate(capacity)) {}

    qsizetype size() const { return storage_.size; }
    T* data() { return storage_.data(); }

    /// Makes the list `count` elements longer. @return the first of them, which have no value yet
    T* extend(qsizetype count) {
        if (storage_.freeSpaceAtEnd() < count) {
            const qsizetype capacity = std::max(size() + count, 2 * size());
            if (size() == 0) {
                storage_ = allocate(capacity);
            } else {
                storage_->reallocate(capacity, QArrayData::KeepSize); // large blocks move by their pages
            }
        }
        storage_.size += count;
        return storage_.end() - count;
    }

    /// Forgets the last `count` elements.
    void drop(qsizetype count) { storage_.size -= count; }

    /// Hands the elements over; the collection is empty afterwards.
    QList<T> take() {
        Storage taken;
        storage_.swap(taken);
        return QList<T>(std::move(taken));
    }

private:
    using Storage = QArrayDataPointer<T>;

    static Storage allocate(qsizetype capacity) {
        Storage storage(QTypedArrayData<T>::allocate(capacity));
        if (capacity > 0) {
            Q_CHECK_PTR(storage.data());
        }
        return storage;
    }

    Storage storage_;
};

} // namespace KxMath::detail
