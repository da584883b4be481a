// Text of contact profile gauges, as gaugeText.h reads it.
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/pointTable.h"

namespace KxInspect::detail {

QByteArray formatGauge(const PointSet& set, bool isBlock) {
    QByteArray text =
        isBlock ? QByteArray("header.begin\nheader.end\nspline.begin\npoint.begin\n")
                : "XYPoints=" + QByteArray::number(static_cast<qint64>(set.points.size())) + "\nColumnDef=X,Y\n\n";
    for (const Point3& p : set.points) {
        text += coordinateText(p.x) + ' ' + coordinateText(p.y) + '\n';
    }
    return text + (isBlock ? "point.end\nspline.end\n" : "");
}

} // namespace KxInspect::detail
