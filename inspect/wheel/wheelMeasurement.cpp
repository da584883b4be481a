// The measures of one wheel and what is allowed for them.
#include "inspect/wheel/wheelMeasurement.h"

#include "inspect/conicity/wheelSet.h"
#include "inspect/formats/profileFiles.h"
#include "inspect/wheel/rimSection.h"
#include <KxInspect/PointFile.h>

#include <QtCore/QFile>

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxProfile;
using Rim = KxMath::KxPointCloud<KxPointXYZ>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// Whether a file begins with a cloud section of points in 3-D.
bool isSpatial(const QString& path) {
    QFile file(path);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(1) : QByteArray();
    return head == "\x03" || head == "\x04";
}

/// @return what is wrong with the file, empty when it was read
QString readCloud(const QString& path, Rim& rim) {
    try {
        for (const KxInspect::Point3& p :
             KxInspect::readPoints(path.toStdString(), KxInspect::FileKind::Cloud).points) {
            if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) {
                rim.points.append({p.x, p.y, p.z});
            }
        }
    } catch (const KxInspect::Error& error) {
        return QString::fromStdString(error.reason());
    }
    return rim.points.isEmpty() ? QStringLiteral("holds no points") : QString();
}

/// Lets a profile begin at the flange back: what stands before is cut, and what is missing is reached from a single
/// point at the height of the profile's beginning.
void beginAt(KxProfile& profile, float back) {
    profile.points.removeIf([back](const KxPointXY& p) { return p.x < back; });
    const auto first = std::min_element(profile.points.cbegin(), profile.points.cend(),
                                        [](const KxPointXY& a, const KxPointXY& b) { return a.x < b.x; });
    if (first != profile.points.cend() && first->x > back) {
        profile.points.prepend(KxPointXY(back, first->y));
    }
}

/// What contradicts the method in a profile with y down and x outwards.
QStringList findWarnings(const KxProfile& profile) {
    constexpr int kMinPoints = 100;
    QStringList found;
    if (profile.points.size() < kMinPoints) {
        found += QStringLiteral("has %1 points only").arg(profile.points.size());
    }
    KxProfile surface;
    surface.points = profile.points;
    keepRunningSurface(surface, true);
    const QString contradiction = surface.isEmpty() ? QString() : wheelContradiction(surface);
    return contradiction.isEmpty() ? found : found + QStringList{contradiction};
}

/// Makes the cross-section of a rim from a profile. @return what is wrong with the file, empty when it was read
QString readSection(const QString& path, const WheelOptions& options, Rim& rim, QStringList& warnings) {
    KxProfile profile;
    const QString error = readProfileFile(path, options.columns.x, options.columns.y, profile);
    if (!error.isEmpty()) {
        return error;
    }
    profile.points.removeIf([](const KxPointXY& p) { return !std::isfinite(p.x) || !std::isfinite(p.y); });
    if (profile.isEmpty()) {
        return QStringLiteral("holds no points");
    }
    orient(profile, options.orientation);
    warnings += findWarnings(profile);
    if (options.spacing > 0.0f && !spaceEvenly(profile, static_cast<double>(options.spacing))) {
        return QStringLiteral("is too long for points every %1 mm").arg(static_cast<double>(options.spacing));
    }
    if (options.flangeBack) {
        beginAt(profile, options.orientation.isMirrored ? -*options.flangeBack : *options.flangeBack);
    }
    appendRimSection(profile, rim);
    return {};
}

/// The points of a measured rim with the origin of the measured profile, which is read from the outer end inwards.
QList<KxPointXY> sectionOf(const Rim& rim) {
    float outermost = -std::numeric_limits<float>::infinity();
    float lowest = std::numeric_limits<float>::infinity();
    for (const KxPointXYZ& p : rim.points) {
        outermost = std::max(outermost, p.x);
        lowest = std::min(lowest, p.y);
    }
    QList<KxPointXY> section;
    for (const KxPointXYZ& p : rim.points) {
        section.append(KxPointXY(outermost - p.x, p.y - lowest));
    }
    return section;
}

} // namespace

bool Limit::isSet() const {
    return !std::isnan(min) || !std::isnan(max);
}

bool Limit::holds(float value) const {
    return !isSet() || (!std::isnan(value) && !(value < min) && !(value > max)); // no limit: false for NaN
}

bool WheelResult::isMeasured() const {
    return std::any_of(kWheelMeasures.begin(), kWheelMeasures.end(),
                       [this](const WheelMeasure& m) { return !std::isnan(values.*m.value); });
}

WheelResult measureWheel(const QString& file, const WheelOptions& options) {
    WheelResult result{file, {}, {}, {kNaN, kNaN, kNaN, kNaN, kNaN}, {}, {}};
    Rim rim;
    const bool isCloud = isSpatial(file);
    result.error = isCloud ? readCloud(file, rim) : readSection(file, options, rim, result.warnings);
    if (!result.error.isEmpty()) {
        return result;
    }
    KxMath::KxCircle center;
    center.x = isCloud ? options.circle.x : 0.0f;
    center.y = isCloud ? options.circle.y : 0.0f;
    KxProfile measured;
    METRO_calcWheelParameters(rim, center, &result.values, &measured);
    result.section = sectionOf(rim);
    result.measured = measured.points;
    return result;
}

Verdict verdictOf(const WheelResult& result, const Limits& limits) {
    if (!result.error.isEmpty()) {
        return Verdict::NotRead;
    }
    Verdict verdict = Verdict::NoLimits;
    for (size_t i = 0; i < limits.size(); ++i) {
        const float value = result.values.*kWheelMeasures[i].value;
        if (!limits[i].isSet()) {
            continue;
        }
        if (!limits[i].holds(value) && !std::isnan(value)) {
            return Verdict::Outside;
        }
        if (std::isnan(value)) {
            verdict = Verdict::NotMeasured;
        } else if (verdict == Verdict::NoLimits) {
            verdict = Verdict::Within;
        }
    }
    return verdict;
}

QString verdictText(Verdict verdict) {
    switch (verdict) {
    case Verdict::Within:
        return QStringLiteral("within");
    case Verdict::Outside:
        return QStringLiteral("outside");
    case Verdict::NotMeasured:
        return QStringLiteral("not measured");
    case Verdict::NotRead:
        return QStringLiteral("not read");
    case Verdict::NoLimits:
        break;
    }
    return {};
}

} // namespace kxtool
