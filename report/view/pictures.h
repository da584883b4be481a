// The pictures that stand on a page without script and in print.
#pragma once

#include "report/elements/axis.h"
#include "report/elements/colourMap.h"

#include <KxInspect/HeightMap.h>
#include <KxInspect/PointFile.h>
#include <KxInspect/Profile.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstddef>
#include <vector>

namespace kxreport {

/// Points that are shown as a line or as marks.
struct DrawnLine {
    QString name;
    const KxInspect::Profile* profile;
    float gap; ///< neighbours that are further apart in x are not joined, mm; NaN: all are
    std::size_t stroke; ///< 0 to 5: blue, orange, green, purple, black, grey, each with dashes of its own
    bool isMarks;
};

QString linesPicture(const std::vector<DrawnLine>& lines, const QString& xLabel, const QString& yLabel);

/// Lines through the points of profiles, broken where neighbours are further apart in x than `gap`, mm.
QString profilesPicture(const QStringList& names, const std::vector<const KxInspect::Profile*>& profiles, float gap,
                        const QString& yLabel);

/// The range with 0 in its middle that holds a range: that of the colours of deviations. It reaches to `least` on each side,
/// so that rounding has no colours.
Range aboutZero(const Range& range, double least);

/// What the values of a map are: heights, or deviations.
inline QString mapLabel(ColourMap colours) {
    return colours == ColourMap::Deviations ? QStringLiteral("deviation, mm") : QStringLiteral("height y, mm");
}

/// How a map is drawn.
struct MapLook {
    bool isLong = true; ///< whether the positions of its rows are lengths, else numbers of profiles
    ColourMap colours = ColourMap::Viridis;
    double resolution = 0.001; ///< of the page, mm
    QString title = QStringLiteral("Height map");
    QString across = QStringLiteral("x across the scan, mm"); ///< what the positions of its columns are
    QString name = QStringLiteral("picture"); ///< that no other picture of the page has
    Range range = {}; ///< that its colours hold, too; empty: that of its values
};

/// A height map from above with its scale. Missing cells are hatched; the range of deviations is about 0 and holds the
/// resolution of the page.
QString mapPicture(const KxInspect::HeightMap& map, const MapLook& look);

/// A cloud from above, coloured by height: where points cover each other, by the highest one.
QString cloudPicture(const KxInspect::PointSet& cloud, ColourMap colours);

} // namespace kxreport
