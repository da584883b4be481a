// The page of a scan or recording.
#include "report/elements/axis.h"
#include "report/elements/numbers.h"
#include "report/elements/textList.h"
#include "report/view/dataViews.h"
#include "report/view/deviation.h"
#include "report/view/mapData.h"
#include "report/view/pictures.h"
#include "report/view/profileBlocks.h"

#include <QtCore/QJsonArray>

#include <algorithm>
#include <cmath>

namespace kxreport {

namespace {

using KxInspect::HeightMap;
using KxInspect::Profile;

struct Ranges {
    Range x, y;
};

Ranges rangesOf(const std::vector<Profile>& profiles) {
    Ranges ranges;
    for (const Profile& profile : profiles) {
        for (const KxInspect::Point& p : profile.points) {
            if (std::isfinite(p.x) && std::isfinite(p.y)) {
                ranges.x.include(static_cast<double>(p.x));
                ranges.y.include(static_cast<double>(p.y));
            }
        }
    }
    return {ranges.x.padded(0.02), ranges.y.padded(0.05)};
}

float rootMeanSquare(const HeightMap& map) {
    double sum = 0.0;
    std::size_t count = 0;
    for (const float height : map.heights) {
        if (std::isfinite(height)) {
            sum += static_cast<double>(height) * static_cast<double>(height);
            ++count;
        }
    }
    return static_cast<float>(std::sqrt(sum / static_cast<double>(count))); // NaN for none
}

void addMapFacts(const SetView& view, ViewPage& page) {
    constexpr int kDecimals = 3;
    const HeightMap& map = *view.map;
    const auto missing =
        std::count_if(map.heights.begin(), map.heights.end(), [](float h) { return !std::isfinite(h); });
    const Range range = heightRange(map);
    page.addFact(QStringLiteral("Height map, rows \u00d7 columns"),
                 QStringLiteral("%1 \u00d7 %2").arg(map.rows).arg(map.columns));
    page.addFact(QStringLiteral("Distance of columns"), shortestText(map.pitch) + QStringLiteral(" mm"));
    if (!view.reference.isEmpty()) {
        page.addFact(QStringLiteral("Heights less those of"), view.reference);
        page.addFact(QStringLiteral("Root mean square"),
                     fixedText(rootMeanSquare(map), kDecimals) + QStringLiteral(" mm"));
    }
    page.addFact(QStringLiteral("Rows"), view.isMapLong ? shortestText(map.pitch) + QStringLiteral(" mm apart")
                                                        : QStringLiteral("one for each profile"));
    page.addFact(QStringLiteral("Missing cells"),
                 QStringLiteral("%1 of %2, %3 %")
                     .arg(QString::number(missing), QString::number(map.heights.size()),
                          QString::number(
                              100.0 * static_cast<double>(missing) / static_cast<double>(map.heights.size()), 'f', 1)));
    page.addFact(QStringLiteral("Lowest, highest cell"), QStringLiteral("%1, %2 mm")
                                                             .arg(fixedText(static_cast<float>(range.min), kDecimals),
                                                                  fixedText(static_cast<float>(range.max), kDecimals)));
}

QString captionOf(const SetView& view) {
    const QString what = view.reference.isEmpty()
                             ? QStringLiteral("The height y of each cell. Hatched cells have none.")
                             : QStringLiteral("The deviation of each cell. Hatched cells have none.");
    return std::isnan(view.map->gap)
               ? what
               : what + QStringLiteral(" Between points of a profile up to %1 mm apart heights are "
                                       "interpolated.")
                            .arg(shortestText(view.map->gap));
}

void addPicture(const SetView& view, const ViewSettings& settings, float gap, ViewPage& page) {
    if (view.map) {
        page.setPicture(
            mapPicture(*view.map,
                       {.isLong = view.isMapLong, .colours = settings.colours, .resolution = settings.resolution}),
            captionOf(view));
        return;
    }
    std::vector<const Profile*> first;
    QStringList names;
    for (std::size_t i = 0; i < std::min<std::size_t>(view.profiles.size(), 6); ++i) {
        first.push_back(&view.profiles[i]);
        names.append(QStringLiteral("profile %1").arg(i + 1));
    }
    page.setPicture(profilesPicture(names, first, gap, QStringLiteral("y, mm")), QStringLiteral("The first profiles."));
}

QByteArray makePage(const SetView& view, const Ranges& ranges, float gap, const ViewSettings& settings, int level) {
    const QString title = view.profiles.empty() ? QStringLiteral("Height map ") : QStringLiteral("Scan ");
    ViewPage page(
        (view.reference.isEmpty() ? title : QStringLiteral("Deviations of ")) + view.name, settings,
        textList({QStringLiteral("data"), QStringLiteral("words"), QStringLiteral("colours"), QStringLiteral("plot"),
                  QStringLiteral("eye"), QStringLiteral("plan"), QStringLiteral("map"), QStringLiteral("surface"),
                  QStringLiteral("setView"), QStringLiteral("main")}));
    std::vector<const Profile*> profiles;
    std::size_t empty = 0;
    for (const Profile& profile : view.profiles) {
        profiles.push_back(&profile);
        empty += profile.points.empty() ? 1 : 0;
    }
    if (!profiles.empty()) {
        page.addFact(QStringLiteral("Profiles"),
                     QStringLiteral("%1, %2 of them empty").arg(profiles.size()).arg(empty));
    }
    LeftOut leftOut;
    if (view.map) {
        addMapFacts(view, page);
        const QString without = addMap(*view.map, view.isMapLong, level, settings, page.frame(), leftOut);
        if (!without.isEmpty()) {
            page.addWarning(without);
        }
    } else {
        page.addWarning(view.whyNoMap);
    }
    const std::size_t block = blockAtLevel(level);
    if (!profiles.empty()) {
        page.data()[QStringLiteral("profiles")] = addProfiles(profiles, {}, block, settings, page, leftOut);
    }
    page.data()[QStringLiteral("xRange")] = jsonRange(ranges.x);
    page.data()[QStringLiteral("yRange")] = jsonRange(ranges.y);
    if (std::isfinite(gap)) {
        page.data()[QStringLiteral("gap")] = static_cast<double>(gap);
    }
    tell(leftOut, block, page);
    addPicture(view, settings, gap, page);
    return page.html();
}

} // namespace

QByteArray setPage(const SetView& view, const ViewSettings& settings) {
    const Ranges ranges = rangesOf(view.profiles);
    const float gap = joiningGap(view.profiles);
    return fittingPage(settings, [&](int level) { return makePage(view, ranges, gap, settings, level); });
}

} // namespace kxreport
