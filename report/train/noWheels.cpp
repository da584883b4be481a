// The part of a page that says why no wheel was found in a recording.
#include "report/train/noWheels.h"

#include "report/train/rawProfiles.h"

namespace kxreport {

using namespace KxInspect;

namespace {

QString failureText(const PassSide& side, const RawPicture& raw) {
    const QString share =
        raw.all == 0 ? QStringLiteral("it holds no points")
                     : QStringLiteral("%1 of its %2 points lie below the level line").arg(raw.below).arg(raw.all);
    return QStringLiteral("No wheel was found in %1 (SENSOR%2): %3.")
        .arg(QString::fromStdString(side.file))
        .arg(side.sensor)
        .arg(share);
}

RawProfiles rawProfilesOf(const PassSide& side, const RawPicture& raw) {
    std::vector<LineOver> lines = {{side.level, QStringLiteral("level"), kLevelStroke},
                                   {side.reference, QStringLiteral("reference"), kReferenceStroke}};
    if (raw.low) {
        lines.push_back({*raw.low, QStringLiteral("low"), kLowStroke});
    }
    return {QStringLiteral("raw%1").arg(raw.side + 1),
            QStringLiteral("Raw profiles of side %1").arg(raw.side + 1),
            raw.points,
            side.level,
            lines,
            raw.side == 0 ? colour::kBlue : colour::kPurple};
}

QString captionOf(const PassSide& side, const RawPicture& raw) {
    return QStringLiteral(
               "Side %1: %2 of %3 profiles as they were recorded, evenly spread. Of the points drawn %4 of %5 "
               "lie below the level line, %6 below the reference line. A wheel is where successive profiles "
               "have points below the level line; kxmath settings fit finds the lines.")
        .arg(raw.side + 1)
        .arg(raw.profiles)
        .arg(side.records())
        .arg(countBelow(raw.points, side.level))
        .arg(raw.points.size())
        .arg(countBelow(raw.points, side.reference));
}

} // namespace

void addRawProfiles(const PassResult& pass, Page& page) {
    std::vector<Figure> figures;
    for (const RawPicture& raw : pass.rawPictures) {
        const PassSide& side = pass.sides[raw.side];
        page.failure(failureText(side, raw));
        figures.push_back({rawProfilesPlot(rawProfilesOf(side, raw)), captionOf(side, raw)});
    }
    if (!figures.empty()) {
        page.heading(QStringLiteral("Raw profiles without wheels"));
        page.figures(figures);
    }
}

} // namespace kxreport
