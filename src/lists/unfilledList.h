// A list that grows without giving its new elements a value first.
#pragma once

#include "lists/reserve.h"

#include <QtCore/QList>

#include <algorithm>
#include <type_traits>
#include <utility>

// How new elements come without a value. KXMATH_PLAIN_LISTS chooses the last way whatever Qt is there.
#if !defined(KXMATH_PLAIN_LISTS) && QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
#define KXMATH_RESIZE_FOR_OVERWRITE
#elif !defined(KXMATH_PLAIN_LISTS) && QT_VERSION >= QT_VERSION_CHECK(6, 4, 0) && QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
#define KXMATH_LIST_INTERNALS // which Qt may change in any minor version: only for those that the tests have run with
#endif

namespace KxMath::detail {

#ifdef KXMATH_LIST_INTERNALS

/// Collects elements that are written where they will stay. QList::resize() would give each of them a value before,
/// which costs a third of reading a large file.
template <typename T>
class UnfilledList {
    static_assert(std::is_trivially_copy_constructible_v<T> && std::is_trivially_destructible_v<T>);

public:
    explicit UnfilledList(qsizetype capacity) : storage_(allocate(capacity)) {}

    qsizetype size() const { return storage_.size; }
    T* data() { return storage_.data(); }

    /// Makes the list `count` elements longer. @return the first of them; they have no value yet
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

    /// Removes the last `count` elements.
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

#else

/// The same by the public functions of QList. Where there is only resize(), elements get a value that is overwritten.
template <typename T>
class UnfilledList {
    static_assert(std::is_trivially_copy_constructible_v<T> && std::is_trivially_destructible_v<T>);

public:
    explicit UnfilledList(qsizetype capacity) { reserve(list_, capacity); }

    qsizetype size() const { return list_.size(); }
    T* data() { return list_.data(); }

    T* extend(qsizetype count) {
        const qsizetype before = size();
        if (list_.capacity() < before + count) {
            reserve(list_, std::max(before + count, 2 * before));
        }
#ifdef KXMATH_RESIZE_FOR_OVERWRITE
        list_.resizeForOverwrite(before + count);
#else
        list_.resize(before + count);
#endif
        return data() + before;
    }

    void drop(qsizetype count) {
        list_.resize(size() - count);
    }

    QList<T> take() {
        return std::exchange(list_, QList<T>());
    }

private:
    QList<T> list_;
};

#endif

} // namespace KxMath::detail
