// Profiles as blocks of numbers of a page.
#include "report/view/profileBlocks.h"

#include "report/view/decimation.h"

#include <QtCore/QJsonArray>

#include <algorithm>
#include <cmath>

namespace kxreport {

QJsonObject addProfiles(const std::vector<const KxInspect::Profile*>& profiles, const QStringList& names,
                        std::size_t block, const ViewSettings& settings, ViewPage& page, LeftOut& leftOut) {
    NumberCoder counts(settings.resolution);
    NumberCoder x(settings.resolution);
    NumberCoder y(settings.resolution);
    QJsonArray positions;
    bool hasPositions = false;
    for (const KxInspect::Profile* const profile : profiles) {
        const std::vector<std::size_t> kept = keptPoints(heightsOf(*profile), block);
        leftOut.isThinned |= kept.size() < profile->points.size();
        counts.addCode(kept.size());
        x.beginRow();
        y.beginRow();
        for (const std::size_t i : kept) {
            x.add(static_cast<double>(profile->points[i].x));
            y.add(static_cast<double>(profile->points[i].y));
        }
        const bool isPlaced = std::isfinite(profile->z);
        hasPositions |= isPlaced;
        positions.append(isPlaced ? QJsonValue(static_cast<double>(profile->z)) : QJsonValue());
    }
    leftOut.tooFar += x.leftOut() + y.leftOut();
    QJsonObject object;
    object[QStringLiteral("counts")] = page.addBlock(counts.bytes());
    object[QStringLiteral("x")] = page.addBlock(x.bytes());
    object[QStringLiteral("y")] = page.addBlock(y.bytes());
    object[QStringLiteral("names")] = QJsonArray::fromStringList(names);
    if (hasPositions) {
        object[QStringLiteral("z")] = positions;
    }
    return object;
}

std::vector<float> heightsOf(const KxInspect::Profile& profile) {
    std::vector<float> heights;
    heights.reserve(profile.points.size());
    for (const KxInspect::Point& p : profile.points) {
        heights.push_back(p.y);
    }
    return heights;
}

void tell(const LeftOut& leftOut, std::size_t block, ViewPage& page) {
    if (leftOut.isThinned) {
        page.addWarning(
            QStringLiteral("Not all points are on this page, which would be larger than --max-size: of each "
                           "%1 neighbouring points those with the lowest, the median and the highest y. "
                           "Numbers of points count those on the page.")
                .arg(block));
    }
    if (leftOut.tooFar > 0) {
        page.addWarning(QStringLiteral("%1 coordinates are missing on this page: they are further from 0 than its "
                                       "resolution reaches. A larger --resolution shows them.")
                            .arg(leftOut.tooFar));
    }
}

std::size_t blockAtLevel(int level) {
    constexpr std::size_t kFirst = 6;
    return level == 0 ? 1 : kFirst << std::min(level - 1, 40);
}

} // namespace kxreport
