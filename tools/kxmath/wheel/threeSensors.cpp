// The circle of a wheel that three sensors see.
#include "tools/kxmath/wheel/threeSensors.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"

#include <KxInspect/Error.h>
#include <KxInspect/PointFile.h>
#include <KxMath/KxMetro.h>

#include <array>
#include <cmath>

namespace kxtool {

namespace {

using Cloud = KxMath::KxPointCloud<KxMath::KxPointXYZ>;

void readCloud(const QString& file, Cloud& cloud) {
    const KxInspect::PointSet points = KxInspect::readPoints(toBytes(file), KxInspect::FileKind::Cloud);
    for (const KxInspect::Point3& p : points.points) {
        if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) {
            cloud.points.append({p.x, p.y, p.z});
        }
    }
    if (cloud.points.isEmpty()) {
        throw CommandError{BadInput, QStringLiteral("'%1' holds no points in space").arg(file)};
    }
}

} // namespace

KxMath::KxCircle circleOfMarks(const QStringList& files) {
    std::array<Cloud, 3> clouds;
    for (std::size_t i = 0; i < clouds.size(); ++i) {
        readCloud(files[static_cast<qsizetype>(i)], clouds[i]);
    }
    KxMath::KxCircle circle;
    KxMath::METRO_calcWheel(clouds[0], clouds[1], clouds[2], circle);
    if (!std::isfinite(circle.x) || !std::isfinite(circle.y) || !std::isfinite(circle.radius)) {
        throw CommandError{
            BadInput,
            QStringLiteral("the marks in '%1', '%2' and '%3' are on no circle").arg(files[0], files[1], files[2])};
    }
    return circle;
}

} // namespace kxtool
