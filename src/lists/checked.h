// What QList does without a check of its allocation, with one.
//
// Qt 6.4 checks the memory of a list that grows, but neither that of a list made with a size, from a range or from
// elements, nor that of the copy made when a shared list is changed: where there is none it writes to a null pointer.
// The functions below throw std::bad_alloc and leave the list as it was. They stand in for data(), begin(), first(),
// last() and [] on lists that are not const, for sort(), removeAt() and resize() to a smaller size on a list that may be
// shared, and for the constructors.
#pragma once

#include "lists/reserve.h"
#include "lists/unfilledList.h"

#include <QtCore/QList>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <span>
#include <type_traits>

namespace KxMath::detail {

/// A list of `count` elements like those from `first` on.
template <typename T>
QList<T> copyOf(const T* first, qsizetype count) {
    if constexpr (std::is_trivially_copy_constructible_v<T> && std::is_trivially_destructible_v<T>) {
        UnfilledList<T> list(count);
        std::uninitialized_copy_n(first, count, list.extend(count));
        return list.take();
    } else {
        QList<T> list;
        reserve(list, count);
        std::for_each(first, first + count, [&list](const T& element) { list.append(element); });
        return list;
    }
}

/// The elements as a list.
template <typename T>
QList<T> listOf(std::initializer_list<T> elements) {
    return copyOf(elements.begin(), static_cast<qsizetype>(elements.size()));
}

/// A list of `count` elements of one value.
template <typename T>
QList<T> filledList(qsizetype count, const T& value = T()) {
    UnfilledList<T> list(count);
    std::uninitialized_fill_n(list.extend(count), count, value);
    return list.take();
}

/// Gives the list elements of its own. Not inlined, so that the loops behind detach() still are.
template <typename T>
[[gnu::noinline]] void replaceByCopy(QList<T>& list) {
    QList<T> own = copyOf(list.constData(), list.size());
    list.swap(own);
}

/// Makes the list the only one that holds its elements, so that they can be changed.
template <typename T>
void detach(QList<T>& list) {
    if (!list.isDetached() && !list.isEmpty()) {
        replaceByCopy(list);
    }
}

/// The first element of a list, for writing to it and to those behind it.
template <typename T>
T* writable(QList<T>& list) {
    detach(list);
    return list.data();
}

/// All elements of a list, for writing.
template <typename T>
std::span<T> writableSpan(QList<T>& list) {
    return {writable(list), static_cast<std::size_t>(list.size())};
}

/// Keeps the first `count` elements, at most as many as there are.
template <typename T>
void truncate(QList<T>& list, qsizetype count) {
    if (list.isDetached()) {
        list.resize(count);
    } else {
        list = copyOf(list.constData(), count);
    }
}

} // namespace KxMath::detail
