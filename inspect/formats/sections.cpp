// Cloud sections and profile records of all kinds.
#include "inspect/formats/sections.h"

#include <KxMath/KxPointCloud.h>

#include <QtCore/QFile>

#include <limits>

namespace KxInspect::detail {

namespace {

void append(PointSet& set, const KxMath::KxPointXYZ& p) {
    set.points.push_back({p.x, p.y, p.z});
}

void append(PointSet& set, const KxMath::KxPointXYZRGB& p) {
    set.points.push_back({p.x, p.y, p.z});
    set.colours.push_back(p.rgb);
}

template <typename KxPoint>
bool readCloud(QFile& file, PointSet& set) {
    KxMath::KxPointCloud<KxPoint> cloud;
    if (cloud.readFromFile(file) < 0) {
        return false;
    }
    for (const KxPoint& p : std::as_const(cloud.points)) {
        append(set, p);
    }
    return true;
}

bool readProfile(QFile& file, PointSet& set) {
    KxMath::KxProfileZ profile;
    if (KxMath::KxReadRecord(file, profile) == KxMath::KxNoRecord) {
        return false;
    }
    for (const KxMath::KxPointXY& p : std::as_const(profile.points)) {
        set.points.push_back({p.x, p.y, profile.z});
    }
    return true;
}

} // namespace

KxMath::KxRecordKind readSection(QFile& file, PointSet& points) {
    char first = 0;
    if (file.peek(&first, 1) != 1) {
        return KxMath::KxNoRecord;
    }
    bool isRead = false;
    switch (first) {
    case KxMath::KxSectionXY:
    case KxMath::KxProfileRecord:
        isRead = readProfile(file, points);
        break;
    case KxMath::KxSectionXYZ:
        isRead = readCloud<KxMath::KxPointXYZ>(file, points);
        break;
    case KxMath::KxSectionXYZRGB:
        isRead = readCloud<KxMath::KxPointXYZRGB>(file, points);
        break;
    default:
        break;
    }
    return isRead ? static_cast<KxMath::KxRecordKind>(first) : KxMath::KxNoRecord;
}

} // namespace KxInspect::detail
