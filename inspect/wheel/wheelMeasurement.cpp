// The measures of one wheel.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/base/points.h"
#include "inspect/base/ranges.h"
#include "inspect/sections/flangeBack.h"
#include "inspect/sections/plausibility.h"
#include "inspect/sections/runningSurface.h"
#include "inspect/sections/sectionReader.h"
#include "inspect/sections/upright.h"
#include "inspect/wheel/contourResults.h"
#include "inspect/wheel/doubts.h"
#include "inspect/wheel/gaugeError.h"
#include "inspect/wheel/rimMeasures.h"
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

/// Flange heights of wheels, from new ones to the most worn treads, mm.
constexpr std::array<float, 2> kUsualHeights = {24.0f, 40.0f};

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
    if (options.spacing != 0.0f) { // NaN: true
        detail::checkRange("spacing", options.spacing, kSpacings);
    }
    const GaugeError& error = options.gaugeError;
    for (const float part : {error.place, error.turn, error.scale}) {
        detail::checkRange("gaugeError", part, kGaugeErrors);
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

/// Whether a profile that stands upright at its flange back is that of a wheel.
bool isWheelAsItStands(Profile profile) {
    return keepRunningSurface(profile, SectionKind::Wheel) && detail::wheelContradiction(profile.points).isEmpty();
}

/// A section of a rim, and whether its shape is that of a wheel, or its orientation was given.
struct Section {
    Rim rim = {};
    bool isWheel = true;
    std::vector<Point> contour = {}; ///< the points of the file, with x from the flange back and y the level
    bool isBackMeasured = false; ///< otherwise the flange back was given, or is where x is counted from
};

/// The points of a profile in the coordinates of the section that is made of it: x from its smallest one, y from its largest.
std::vector<Point> contourIn(const std::vector<Point>& section, std::vector<Point> points) {
    if (section.empty()) {
        return {}; // all points were before the flange back
    }
    const auto isLeft = [](const Point& a, const Point& b) { return a.x < b.x; };
    const float back = std::min_element(section.begin(), section.end(), isLeft)->x;
    const float tip = std::max_element(section.begin(), section.end(), detail::isHigher)->y;
    for (Point& p : points) {
        p = {p.x - back, tip - p.y};
    }
    return points;
}

/// The section of a rim made from a profile. The result gets what is to be told of its file and shape. Throws an Error
/// when that is impossible.
Section sectionOf(const CrossSection& wheel, const WheelOptions& options, WheelResult& result) {
    Profile profile = detail::readSection(wheel, {}, result.reading);
    std::vector<Point>& points = profile.points;
    points.erase(std::remove_if(points.begin(), points.end(), [](const Point& p) { return !isFinite(p); }),
                 points.end());
    if (points.empty()) {
        fail(ErrorKind::Unsuitable, {{}, wheel.file, {}}, QStringLiteral("holds no points"));
    }
    detail::Notes notes = {detail::fewPoints(points.size())};
    detail::cleanContour(profile, notes);
    const auto stance = detail::turnUpright(profile, SectionKind::Wheel, wheel.orientation, 0.0f, notes);
    if (!stance) {
        orient(profile, wheel.orientation);
    }
    Section section;
    const std::vector<Point> contour = points;
    section.isBackMeasured = !options.flangeBack && detail::isBackMeasured(points);
    const bool isMirrored = stance ? stance->isMirrored : wheel.orientation.isMirrored.value_or(false);
    if ((options.flangeBack || (stance && stance->isAsShown)) &&
        !detail::placeFlangeBack(profile, options.flangeBack, isMirrored, notes)) {
        fail(ErrorKind::Unsuitable, {{}, wheel.file, {}}, detail::noFlangeBack());
    }
    const double spacing = static_cast<double>(options.spacing);
    if (spacing > 0.0 && !detail::spaceEvenly(points, spacing)) {
        fail(ErrorKind::Unsuitable, {{}, wheel.file, {}},
             QStringLiteral("is too long for points every %1 mm").arg(spacing));
    }
    for (const QString& note : notes) {
        if (!note.isEmpty()) {
            result.warnings.push_back(note.toStdString());
        }
    }
    detail::appendRimSection(points, section.rim);
    section.contour = contourIn(points, contour);
    section.isWheel = stance || (options.flangeBack && isWheelAsItStands(profile)); // it may begin near the tip
    return section;
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

/// Takes all measures back, for a reason.
void withhold(const std::string& reason, const WheelLimits& limits, WheelResult& result) {
    result.measures = {};
    result.intervals = {};
    result.intervalReasons = {};
    result.places = {};
    result.reasons.fill("the profile " + reason);
    result.verdict = verdictOf(result.measures, limits);
}

/// Why a contour cannot be measured; empty when it can.
std::string reasonWithoutContour(const std::vector<Point>& contour) {
    const auto isFar = [](const Point& p) {
        return !(std::abs(p.x) <= kMaxSectionWidth && std::abs(p.y) <= kMaxSectionWidth); // NaN: true
    };
    if (std::any_of(contour.begin(), contour.end(), isFar)) {
        return "the profile is larger than that of a wheel";
    }
    Profile inOrder{contour};
    return keepRunningSurface(inOrder, SectionKind::Wheel)
               ? std::string()
               : "the points do not follow a contour from one end to the other";
}

/// Measures the contour of a rim besides its smooth profile.
void measureContour(const std::vector<Point>& contour, bool isBackMeasured, const GaugeError& error,
                    WheelResult& result) {
    const std::string reason = reasonWithoutContour(contour);
    detail::RimMeasures rim;
    if (reason.empty()) {
        rim = detail::measureRim(detail::RimContour(contour), isBackMeasured);
        detail::addGaugeError(contour, isBackMeasured, error, rim);
    } else {
        rim.reasons.fill(reason);
    }
    addContourResults(rim, result);
}

/// Measures a section; `centre` is that of the wheel.
void measure(Section& section, const Point& centre, const WheelOptions& options, WheelResult& result) {
    const WheelLimits& limits = options.limits;
    Rim& rim = section.rim;
    KxMath::KxCircle circle;
    circle.x = centre.x;
    circle.y = centre.y;
    KxMath::_WheelProfileValues values;
    KxMath::KxProfile measured;
    KxMath::METRO_calcWheelParameters(rim, circle, &values, &measured);
    result.measures = {present(values.heightAt70), present(values.xAtLevel18), present(values.widthLevel2ToH13),
                       present(values.heightExcess)};
    result.section = detail::sectionOf(rim);
    result.measured = detail::toVector(measured.points);
    result.widthStart = findWidthStart(result.measured);
    result.reasons = detail::reasonsOf(result.measures, result.measured);
    if (std::string warning = detail::droppedFlank(result.section); !warning.empty()) {
        result.warnings.push_back(std::move(warning));
    }
    if (section.contour.empty()) { // of a rim in space, which has no place before it was turned
        section.contour = result.section;
        if (!section.contour.empty() && section.contour.front().x > section.contour.back().x) {
            std::reverse(section.contour.begin(), section.contour.end());
        }
    }
    measureContour(section.contour, section.isBackMeasured, options.gaugeError, result);
    if (!result.isMeasured()) {
        const std::string reason = result.reasons.front(); // one for all
        result.reasons.fill(reason);
    }
    result.verdict = verdictOf(result.measures, limits);
    const float height = result.measures.heightAt70.value_or(result.measures.flangeHeight.value_or(kUsualHeights[0]));
    if (height < kUsualHeights[0] || height > kUsualHeights[1]) {
        withhold(QStringLiteral("shows a flange of %1 mm; those of wheels have 24 to 40 mm")
                     .arg(static_cast<double>(height), 0, 'f', 1)
                     .toStdString(),
                 limits, result);
    }
}

} // namespace

WheelResult measureRim(const std::vector<Point3>& points, const std::string& file, const WheelOptions& options) {
    checkOptions(options);
    WheelResult result;
    result.file = detail::shown(file);
    Section section;
    section.isBackMeasured = true;
    for (const Point3& p : points) {
        if (isFinite(p)) {
            section.rim.points.append({p.x, p.y, p.z});
        }
    }
    if (section.rim.points.isEmpty()) {
        result.error = "holds no points";
        result.verdict = WheelVerdict::NotRead;
    } else {
        measure(section, options.centre, options, result);
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
        Section section = sectionOf(wheel, options, result);
        measure(section, Point{0.0f, 0.0f}, options, result);
        if (!section.isWheel && result.isMeasured()) {
            withhold(detail::noShapeOf(SectionKind::Wheel).toStdString(), options.limits, result);
        }
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
    results.gaugeError = options.gaugeError;
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
