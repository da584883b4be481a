// Removing or collecting many elements in one pass.
#pragma once

#include "lists/checked.h"
#include "lists/unfilledList.h"

#include <QtCore/QList>

#include <algorithm>
#include <memory>

namespace KxMath::detail {

/// Keeps the elements that `keep` accepts, in order, and returns how many were removed. `keep` is called once for each
/// element, in stored order. A list that loses nothing is not touched, and so not detached from its copies.
template <typename T, typename Keep>
int keepIf(QList<T>& elements, Keep keep) {
    const qsizetype count = elements.size();
    const T* const source = elements.constData();
    qsizetype kept = 0;
    while (kept < count && keep(source[kept])) {
        ++kept;
    }
    if (kept == count) {
        return 0;
    }
    T* const data = writable(elements);
    for (qsizetype i = kept + 1; i < count; ++i) {
        const bool isKept = keep(data[i]);
        data[kept] = data[i]; // overwritten by the next one when it is not kept: no branch to mispredict
        kept += isKept;
    }
    elements.resize(kept);
    return static_cast<int>(count - kept);
}

/// The values of `make(i)` for the positions i below `count` that `accept(i)` accepts, in order.
template <typename Value, typename Accept, typename Make>
QList<Value> collectIf(qsizetype count, Accept accept, Make make) {
    constexpr qsizetype kBlock = 4096; // grown block by block: memory follows what is accepted
    UnfilledList<Value> collected(std::min(count, kBlock));
    for (qsizetype start = 0; start < count; start += kBlock) {
        const qsizetype end = std::min(count, start + kBlock);
        Value* const target = collected.extend(end - start);
        qsizetype accepted = 0;
        for (qsizetype i = start; i < end; ++i) {
            std::construct_at(target + accepted, make(i)); // overwritten by the next one where it is not accepted
            accepted += accept(i) ? 1 : 0;
        }
        collected.drop(end - start - accepted);
    }
    return collected.take();
}

} // namespace KxMath::detail
