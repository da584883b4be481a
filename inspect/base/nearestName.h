// The name that was probably meant by a misspelled one.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

namespace KxInspect::detail {

/// How many characters have to be inserted, deleted, replaced or exchanged with their neighbour (Damerau, 1964), without
/// regard to case.
inline int editDistance(const QString& a, const QString& b) {
    const auto isSame = [&](qsizetype i, qsizetype j) { return a[i].toLower() == b[j].toLower(); };
    const auto width = static_cast<std::size_t>(b.size()) + 1;
    std::vector<int> before(width), last(width), row(width); // distances of the first i - 1, i, i + 1 characters of a
    std::iota(last.begin(), last.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        row[0] = static_cast<int>(i) + 1;
        for (qsizetype j = 0; j < b.size(); ++j) {
            const auto k = static_cast<std::size_t>(j);
            row[k + 1] = std::min({last[k] + (isSame(i, j) ? 0 : 1), row[k] + 1, last[k + 1] + 1});
            if (i > 0 && j > 0 && isSame(i, j - 1) && isSame(i - 1, j)) {
                row[k + 1] = std::min(row[k + 1], before[k - 1] + 1);
            }
        }
        before.swap(last);
        last.swap(row);
    }
    return last.back();
}

/// The known name that is nearest to `name`, the first of equally near ones; empty when none is near. Short names are
/// near to everything, so that they may differ in fewer characters.
inline QString nearestName(const QString& name, const QStringList& known) {
    constexpr int kNear = 3;
    constexpr qsizetype kLongest = 200; // of a name that somebody typed
    if (name.size() > kLongest) {
        return {};
    }
    QString nearest;
    const auto size = static_cast<int>(name.size());
    int least = std::min({kNear, size / 2, (size + 2) / 3}) + 1;
    for (const QString& candidate : known) {
        const int distance = editDistance(name, candidate);
        if (distance < least && distance < candidate.size()) {
            least = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

} // namespace KxInspect::detail
