// Columns x y [z] as text.
#include "inspect/formats/pointTable.h"
#include "inspect/formats/viewerFormats.h"

namespace KxInspect::detail {

PointSet parseXyz(const ErrorSource& source, const QByteArray& content) {
    PointSet data;
    for (QByteArray line : content.split('\n')) {
        line.replace(';', ' ').replace(',', ' ').replace('\t', ' ');
        const QList<QByteArray> fields = line.simplified().split(' ');
        bool isX = false;
        bool isY = false;
        bool isZ = false;
        const float x = fields.value(0).toFloat(&isX);
        const float y = fields.value(1).toFloat(&isY);
        const float z = fields.value(2).toFloat(&isZ);
        if (isX && isY) {
            data.hasZ |= isZ;
            data.points.push_back({x, y, isZ ? z : std::numeric_limits<float>::quiet_NaN()});
        }
    }
    if (data.points.empty()) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("holds no points"));
    }
    return data;
}

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
