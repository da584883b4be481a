// Room in a list, or std::bad_alloc.
#pragma once

#include <QtCore/QList>

namespace KxMath::detail {

/// QList::reserve() that throws std::bad_alloc. That of Qt checks no allocation: without memory a list that holds
/// elements is copied to a null pointer.
template <typename T>
void reserve(QList<T>& list, qsizetype capacity) {
    if (capacity <= list.capacity() && list.isDetached()) {
        return;
    }
    QList<T> larger;
    larger.reserve(capacity); // leaves an empty list as it is when there is no memory
    if (larger.capacity() < capacity) {
        qBadAlloc();
    }
    larger.append(list);
    list.swap(larger);
}

} // namespace KxMath::detail
