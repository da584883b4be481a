// Columns x y [z] as text.
#include "inspect/formats/pointTable.h"
#include "inspect/formats/viewerFormats.h"

namespace KxInspect::detail {

QByteArray formatXyz(const PointSet& data) {
    QByteArray text;
    for (const Point3& p : data.points) {
        text += coordinateText(p.x) + ' ' + coordinateText(p.y);
        if (data.hasZ) {
            text += ' ' + coordinateText(p.z);
        }
        text += '\n';
    }
    return text;
}

} // namespace KxInspect::detail
