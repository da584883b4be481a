// Straight parts of a profile and the apexes between them.
#include "KxMath/KxMetro.h"

#include "geometry/lineFit.h"
#include "lists/checked.h"

#include <cmath>

namespace KxMath {

namespace {

/// The cut points of a profile with their positions in it.
struct Cuts {
    KxProfile points;
    QList<int> positions;

    const KxPointXY& operator[](qsizetype i) const { return points.points.at(i); }
    qsizetype count() const { return points.points.size(); }
    void remove(qsizetype i) {
        detail::detach(points.points);
        detail::detach(positions);
        points.points.removeAt(i);
        positions.removeAt(i);
    }
};

/// Drops cut points at nearly the height of both neighbours.
void dropLevelCuts(Cuts& cuts, float maxDY) {
    for (qsizetype i = cuts.count() - 2; i >= 1; --i) {
        if (std::abs(cuts[i].y - cuts[i - 1].y) < maxDY && std::abs(cuts[i].y - cuts[i + 1].y) < maxDY) { // NaN: false
            cuts.remove(i);
        }
    }
}

/// Drops cut points that lie nearly on the line between their neighbours.
void dropStraightCuts(Cuts& cuts, float maxDY) {
    for (qsizetype i = cuts.count() - 3; i >= 0; --i) {
        const KxPointXY ends[2] = {cuts[i], cuts[i + 2]};
        KxLine line;
        detail::fitLine(ends, ends + 2, line);
        const KxPointXY& between = cuts[i + 1];
        if (std::abs(line.y(between.x) - between.y) < 3.0f * maxDY) { // NaN: false
            cuts.remove(i + 1);
        }
    }
}

} // namespace

int METRO_detectApexes(KxProfile profile, KxProfile& apexes, QList<KxLine>& lines, float maxDY) {
    constexpr int kWindow = 5;
    profile.sort(KxSortAscending, KxSortAscending);
    Cuts cuts;
    profile.detectCutPoints(cuts.points, cuts.positions, kWindow, 0.0f);
    dropLevelCuts(cuts, maxDY);
    dropStraightCuts(cuts, maxDY);

    lines.clear();
    const KxPointXY* const sorted = profile.points.constData();
    for (qsizetype j = 0; j + 1 < cuts.count(); ++j) {
        KxLine line;
        detail::fitLine(sorted + cuts.positions.at(j), sorted + cuts.positions.at(j + 1), line);
        lines.append(line);
    }
    KxLine* const fitted = detail::writable(lines);
    for (qsizetype j = 0; j + 1 < lines.size(); ++j) {
        KxPointXY apex; // stays NaN where the lines are parallel
        fitted[j].calcIntersection(fitted[j + 1], apex);
        apexes.points.append(apex);
    }
    return apexes.size();
}

} // namespace KxMath
