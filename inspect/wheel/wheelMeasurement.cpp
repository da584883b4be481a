// The measures of one wheel.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/base/points.h"
#include "inspect/base/ranges.h"
#include "inspect/sections/plausibility.h"
#include "inspect/sections/runningSurface.h"
#include "inspect/sections/sectionReader.h"
#include "inspect/wheel/doubts.h"
#include "inspect/wheel/rimSection.h"
#include "inspect/wheel/spacing.h"

#include <KxInspect/PointFile.h>
#include <KxInspect/Wheel.h>
#include <KxMath/KxMathVersion.h>
#include <KxMath/KxMetro.h>

#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

using detail::fail;
using detail::Rim;

bool isFinite(const Point& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

bool isFinite(const Point3& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

void checkOptions(const WheelOptions& options) {
    if (options.flangeBack) {
        detail::checkRange("flangeBack", *options.flangeBack, kFlangeBacks);
    }
    if (options.spacing) {
        detail::checkRange("spacing", *options.spacing, kSpacings);
    }
    if (!isFinite(options.centre)) {
        fail(ErrorKind::BadArgument, {{}, {}, "centre"}, QStringLiteral("centre needs two finite numbers"));
    }
}

/// Whether a file begins with a cloud section of points in space.
bool isSpatial(const std::string& path) {
    const detail::QtPath where(path);
    QFile file(where.text());
    const bool isRead = QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly); // a pipe would lose its first byte
    const QByteArray head = isRead ? file.read(1) : QByteArray();
    return head == "\x03" || head == "\x04";
}

/// Makes a profile begin at the flange back: points before it are cut; if the profile begins later, a single point at the
/// height of its first point is added.
void beginAt(std::vector<Point>& points, float back) {
    points.erase(std::remove_if(points.begin(), points.end(), [back](const Point& p) { return p.x < back; }),
                 points.end());
    const auto first =
        std::min_element(points.begin(), points.end(), [](const Point& a, const Point& b) { return a.x < b.x; });
    if (first != points.end() && first->x > back) {
        points.insert(points.begin(), Point{back, first->y});
    }
}

/// The violated assumptions of a profile with y down and x outwards.
std::vector<std::string> findWarnings(const Profile& profile) {
    Profile surface = profile;
    keepRunningSurface(surface, SectionKind::Wheel);
    std::vector<std::string> found;
    for (const QString& warning :
         {detail::fewPoints(profile.points.size()), detail::wheelContradiction(surface.points)}) {
        if (!warning.isEmpty()) {
            found.push_back(warning.toStdString());
        }
    }
    return found;
}

/// The section of a rim made from a profile. Throws an Error when that is impossible.
Rim rimOf(const CrossSection& wheel, const WheelOptions& options, std::vector<std::string>& warnings) {
    Profile profile = detail::readSection(wheel, {});
    std::vector<Point>& points = profile.points;
    points.erase(std::remove_if(points.begin(), points.end(), [](const Point& p) { return !isFinite(p); }),
                 points.end());
    if (points.empty()) {
        fail(ErrorKind::Unsuitable, {{}, wheel.file, {}}, QStringLiteral("holds no points"));
    }
    orient(profile, wheel.orientation);
    warnings = findWarnings(profile);
    if (options.spacing && !detail::spaceEvenly(points, static_cast<double>(*options.spacing))) {
        fail(ErrorKind::Unsuitable, {{}, wheel.file, {}},
             QStringLiteral("is too long for points every %1 mm").arg(static_cast<double>(*options.spacing)));
    }
    if (options.flangeBack) {
        beginAt(points, wheel.orientation.isMirrored.value_or(false) ? -*options.flangeBack : *options.flangeBack);
    }
    Rim rim;
    detail::appendRimSection(points, rim);
    return rim;
}

/// Where the measured profile first reaches the level at which the width begins, outside the tip of the flange.
std::optional<float> findWidthStart(const std::vector<Point>& measured) {
    auto p = std::min_element(measured.begin(), measured.end(), detail::isHigher);
    p = std::find_if(p, measured.end(), [](const Point& at) { return !(at.y < kTipLevel); }); // NaN: true
    return p == measured.end() ? std::nullopt : std::optional(p->x);
}

std::optional<float> present(float value) {
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

/// Measures a section; `centre` is that of the wheel.
void measure(Rim& rim, const Point& centre, const WheelLimits& limits, WheelResult& result) {
    KxMath::KxCircle circle;
    circle.x = centre.x;
    circle.y = centre.y;
    KxMath::_WheelProfileValues values;
    KxMath::KxProfile measured;
    KxMath::METRO_calcWheelParameters(rim, circle, &values, &measured);
    result.measures = {present(values.heightAt70), present(values.xAtLevel18), present(values.widthLevel2ToH13),
                       present(values.heightExcess)};
    if (values.heightAt70 < kFlankLevel) { // NaN: false
        result.measures.xAtLevel18.reset(); // this level is on the tread
    }
    result.section = detail::sectionOf(rim);
    result.measured = detail::toVector(measured.points);
    result.widthStart = findWidthStart(result.measured);
    result.reasons = detail::reasonsOf(result.measures, result.measured);
    if (std::string warning = detail::droppedFlank(result.section); !warning.empty()) {
        result.warnings.push_back(std::move(warning));
    }
    result.verdict = verdictOf(result.measures, limits);
}

} // namespace

WheelResult measureRim(const std::vector<Point3>& points, const std::string& file, const WheelOptions& options) {
    checkOptions(options);
    WheelResult result;
    result.file = detail::shown(file);
    Rim rim;
    for (const Point3& p : points) {
        if (isFinite(p)) {
            rim.points.append({p.x, p.y, p.z});
        }
    }
    if (rim.points.isEmpty()) {
        result.error = "holds no points";
        result.verdict = WheelVerdict::NotRead;
    } else {
        measure(rim, options.centre, options.limits, result);
    }
    return result;
}

WheelResult measureWheel(const CrossSection& wheel, const WheelOptions& options) {
    checkOptions(options);
    WheelResult result;
    result.file = detail::shown(wheel.file);
    try {
        if (!wheel.profile && isSpatial(wheel.file)) {
            return measureRim(readPoints(wheel.file, FileKind::Cloud).points, wheel.file, options);
        }
        Rim rim = rimOf(wheel, options, result.warnings);
        measure(rim, Point{0.0f, 0.0f}, options.limits, result);
    } catch (const Error& error) {
        result.error = error.reason();
        result.verdict = WheelVerdict::NotRead;
    }
    return result;
}

WheelResults measureWheels(const std::vector<CrossSection>& wheels, const WheelOptions& options,
                           const Progress& progress) {
    checkOptions(options);
    WheelResults results;
    results.limits = options.limits;
    results.version = KxMath_GetVersionString();
    for (const CrossSection& wheel : wheels) {
        if (progress) {
            progress("measuring " + detail::shown(wheel.file),
                     static_cast<double>(results.wheels.size()) / static_cast<double>(wheels.size()));
        }
        results.wheels.push_back(measureWheel(wheel, options));
    }
    return results;
}

} // namespace KxInspect
