// The page of a cloud.
#include "report/elements/numbers.h"
#include "report/elements/textList.h"
#include "report/view/dataViews.h"
#include "report/view/decimation.h"
#include "report/view/pictures.h"
#include "report/view/profileBlocks.h"

#include <algorithm>
#include <cmath>

namespace kxreport {

namespace {

using KxInspect::Point3;

QByteArray makePage(const CloudView& view, const ViewSettings& settings, int level) {
    ViewPage page(QStringLiteral("Cloud ") + view.name, settings,
                  textList({QStringLiteral("data"), QStringLiteral("words"), QStringLiteral("colours"),
                            QStringLiteral("eye"), QStringLiteral("cloud"), QStringLiteral("main")}));
    const std::vector<Point3>& points = view.points.points;
    std::vector<float> heights;
    std::size_t missing = 0;
    for (const Point3& p : points) {
        heights.push_back(p.y);
        missing += std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z) ? 0 : 1;
    }
    const std::size_t block = blockAtLevel(level);
    const std::vector<std::size_t> kept = keptPoints(heights, block);
    NumberCoder x(settings.resolution);
    NumberCoder y(settings.resolution);
    NumberCoder z(settings.resolution);
    NumberCoder colours(settings.resolution);
    for (const std::size_t i : kept) {
        x.add(static_cast<double>(points[i].x));
        y.add(static_cast<double>(points[i].y));
        z.add(static_cast<double>(points[i].z));
        if (view.points.hasColours) {
            constexpr std::uint32_t kRgb = 0xffffff;
            colours.addCode(view.points.colours[i] & kRgb);
        }
    }
    page.addFact(QStringLiteral("Points"),
                 QStringLiteral("%1, %2 of them with a missing coordinate, which are not drawn")
                     .arg(points.size())
                     .arg(missing));
    const LeftOut leftOut{x.leftOut() + y.leftOut() + z.leftOut(), kept.size() < points.size()};
    QJsonObject cloud;
    cloud[QStringLiteral("count")] = static_cast<qint64>(kept.size());
    cloud[QStringLiteral("thinned")] = leftOut.isThinned;
    cloud[QStringLiteral("x")] = page.addBlock(x.bytes());
    cloud[QStringLiteral("y")] = page.addBlock(y.bytes());
    cloud[QStringLiteral("z")] = page.addBlock(z.bytes());
    if (view.points.hasColours) {
        cloud[QStringLiteral("colours")] = page.addBlock(colours.bytes());
    }
    page.data()[QStringLiteral("cloud")] = cloud;
    tell(leftOut, block, page);
    page.setPicture(cloudPicture(view.points, settings.colours),
                    QStringLiteral("The cloud from above, coloured by height y; where points cover each other, by the "
                                   "highest one."));
    return page.html();
}

} // namespace

QByteArray cloudPage(const CloudView& view, const ViewSettings& settings) {
    return fittingPage(settings, [&](int level) { return makePage(view, settings, level); });
}

} // namespace kxreport
