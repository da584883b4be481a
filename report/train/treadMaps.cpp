// The treads of the wheels of a pass as maps.
#include "report/train/treadMaps.h"

#include "report/elements/numbers.h"
#include "report/train/shownWheel.h"
#include "report/view/mapData.h"
#include "report/view/pictures.h"

#include <KxInspect/HeightMap.h>

#include <algorithm>
#include <vector>

namespace kxreport {

using namespace KxInspect;

namespace {

/// Each profile a row, each millimetre across a column.
HeightMap heightMapOf(const TreadMap& tread) {
    HeightMap map;
    map.rows = tread.profiles;
    map.columns = tread.columns;
    map.pitch = 1.0f;
    map.originX = tread.from;
    map.originZ = 1.0f;
    map.heights = tread.deviations;
    return map;
}

/// Those out of round first, then by how far off they are.
std::vector<ShownWheel> wheelsWithMaps(const PassResult& pass) {
    std::vector<ShownWheel> wheels;
    for (const PairPicture& pair : pass.pictures) {
        for (const WheelPicture& picture : pair.wheels) {
            if (const ShownWheel shown{pass, pair, picture}; picture.tread.profiles > 0 && shown.wheel().roundness) {
                wheels.push_back(shown);
            }
        }
    }
    std::vector<std::size_t> order(wheels.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const Roundness& first = *wheels[a].wheel().roundness;
        const Roundness& second = *wheels[b].wheel().roundness;
        return first.isOut != second.isOut ? first.isOut : first.largest > second.largest;
    });
    std::vector<ShownWheel> sorted;
    sorted.reserve(order.size());
    for (const std::size_t i : order) {
        sorted.push_back(wheels[i]);
    }
    return sorted;
}

QString captionOf(const ShownWheel& shown) {
    const Roundness& roundness = *shown.wheel().roundness;
    return QStringLiteral("Wheel pair %1, side %2, wheel %3: %4, at most %5 mm off its circle.")
        .arg(QString::number(shown.pair.pair), shown.number(), QString::number(shown.wheel().number),
             roundness.isOut ? QStringLiteral("out of round")
                             : (roundness.isDirty ? QStringLiteral("round, dirty") : QStringLiteral("round")),
             fixedText(roundness.largest, 3));
}

} // namespace

void addTreadMaps(const PassResult& pass, Page& page) {
    const std::vector<ShownWheel> wheels = wheelsWithMaps(pass);
    if (wheels.empty()) {
        return;
    }
    ViewSettings settings;
    settings.colours = ColourMap::Deviations;
    const QString across = QStringLiteral("behind the reference line, mm");
    Range range; // all have the same colours
    for (const ShownWheel& shown : wheels) {
        const Range ofWheel = heightRange(heightMapOf(shown.picture.tread));
        range.include(ofWheel.min);
        range.include(ofWheel.max);
    }
    std::vector<Figure> pictures;
    for (const ShownWheel& shown : wheels) {
        MapLook look{.isLong = false, .colours = settings.colours, .resolution = settings.resolution};
        look.title = QStringLiteral("Map of the tread on side ") + shown.number();
        look.across = across;
        look.name = shown.plotName("tread");
        look.range = range;
        pictures.push_back({mapPicture(heightMapOf(shown.picture.tread), look), captionOf(shown)});
    }
    page.heading(QStringLiteral("Maps of the treads"));
    page.paragraph(
        QStringLiteral("How far the radius of the tread stands off the median of all profiles at the same place "
                       "across it: a flat lies below 0 in some profiles, dirt above. Hatched cells show no tread, "
                       "or were not compared. The first map is that of the wheel that is farthest off."));
    LeftOut leftOut;
    addMapScripts(settings, page.frame());
    addMap(heightMapOf(wheels.front().picture.tread), false, 0, settings, page.frame(), leftOut, across);
    page.live(QStringLiteral("live"), pictures.front().svg, pictures.front().caption);
    for (std::size_t i = 1; i < pictures.size(); ++i) {
        page.figure(pictures[i].svg, pictures[i].caption);
    }
    page.tellTime();
}

} // namespace kxreport
