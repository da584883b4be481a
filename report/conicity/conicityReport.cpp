// The report of a conicity calculation.
#include "report/conicity/conicityReport.h"

#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "tools/kxmath/console/numbers.h"

#include <KxMath/KxMathVersion.h>

#include <cmath>
#include <limits>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using KxMath::KxProfile;
using kxreport::Axis;
using kxreport::Cell;
using kxreport::Page;
using kxreport::Plot;
using kxreport::Points;
using kxreport::Range;
using kxreport::Stroke;

constexpr const char* kWheelColour = "#1f5fa8";
constexpr const char* kRailColour = "#555555";
constexpr const char* kContactColour = "#d1495b";
constexpr const char* kSecondColour = "#2a9d6f";

void includeX(Range& range, const Points& points) {
    for (const QPointF& p : points) {
        range.include(p.x());
    }
}

void includeY(Range& range, const Points& points) {
    for (const QPointF& p : points) {
        range.include(p.y());
    }
}

/// The contact points on the rails (index 1) or wheels (index 0).
Points contactPoints(const std::vector<std::unique_ptr<KxProfile>>& contacts, qsizetype index) {
    Points points;
    for (const auto& pair : contacts) {
        const KxPointXY& p = pair->points.at(index);
        points.emplace_back(static_cast<double>(p.x), static_cast<double>(p.y));
    }
    return points;
}

/// One side of the track: wheel above rail, lifted for display, with the contact points.
QString placedPlot(const QString& id, const ConicityResult& result, bool isFirst) {
    const Points wheel = toPoints(result.placed[isFirst ? Wheel1 : Wheel2]->points);
    const Points rail = toPoints(result.placed[isFirst ? Rail1 : Rail2]->points);
    const auto& contacts = isFirst ? result.contacts1 : result.contacts2;
    Range x;
    Range y;
    includeX(x, wheel);
    includeX(x, rail);
    includeY(y, wheel);
    includeY(y, rail);
    x = x.padded(0.03);
    y = y.padded(0.05);
    constexpr int kWidth = 520;
    constexpr int kHeight = 330;
    kxreport::makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(kHeight));
    Plot plot(id, isFirst ? QStringLiteral("First side") : QStringLiteral("Second side"), kWidth, kHeight,
              {QStringLiteral("lateral position, mm"), x}, {QStringLiteral("height, mm"), y});
    plot.addLine(wheel, {kWheelColour, 1.8}, QStringLiteral("wheel"));
    plot.addLine(rail, {kRailColour, 1.8}, QStringLiteral("rail"));
    plot.addDots(contactPoints(contacts, 0), kContactColour, 3.0, QStringLiteral("contact points"));
    plot.addDots(contactPoints(contacts, 1), kContactColour, 3.0);
    return plot.svg();
}

/// Where the rail is touched over the displacement, as distance from the contact of the centred wheel-set.
QString contactPlot(const ConicityResult& result) {
    const auto& displacements = result.contactSlope1.points; // in the order of the contacts
    const auto over = [&](const std::vector<std::unique_ptr<KxProfile>>& contacts, double direction) {
        Points points;
        for (size_t i = 0; i < contacts.size(); ++i) {
            const float from = contacts.front()->points.at(1).x;
            points.emplace_back(static_cast<double>(displacements.at(static_cast<qsizetype>(i)).x),
                                direction * static_cast<double>(contacts[i]->points.at(1).x - from));
        }
        return points;
    };
    const Points first = over(result.contacts1, -1.0);
    const Points second = over(result.contacts2, 1.0);
    Range x;
    Range y;
    includeX(x, first);
    includeY(y, first);
    includeY(y, second);
    Plot plot(QStringLiteral("contacts"), QStringLiteral("Contact points over the displacement"), 520, 300,
              {QStringLiteral("displacement of the wheel-set, mm"), x.padded(0.03)},
              {QStringLiteral("contact on the rail, outwards, mm"), y.padded(0.06)});
    plot.addDots(first, kWheelColour, 3.5, QStringLiteral("first rail"));
    plot.addDots(second, kSecondColour, 3.5, QStringLiteral("second rail"));
    return plot.svg();
}

QString deltaRPlot(const ConicityResult& result) {
    const Points curve = toPoints(result.deltaR.points);
    Range x;
    Range y;
    includeX(x, curve);
    includeY(y, curve);
    Plot plot(QStringLiteral("deltar"), QStringLiteral("Difference of the rolling radii"), 520, 300,
              {QStringLiteral("displacement of the wheel-set, mm"), x.padded(0.03)},
              {QStringLiteral("difference of the rolling radii, mm"), y.padded(0.06)});
    plot.addLevel(0.0, {"#999999", 1.0});
    plot.addLine(curve, {kWheelColour, 1.8});
    return plot.svg();
}

QString conicityPlot(const ConicityResult& result, float shownAmplitude) {
    Points curve;
    for (const KxPointXY& p : result.conicity.points) {
        const double value = hasConicity(p) ? static_cast<double>(p.y) : std::numeric_limits<double>::quiet_NaN();
        curve.emplace_back(static_cast<double>(p.x), value); // NaN interrupts the line
    }
    Range x;
    Range y;
    x.include(0.0);
    y.include(0.0);
    includeX(x, curve);
    includeY(y, curve);
    Plot plot(QStringLiteral("conicity"), QStringLiteral("Equivalent conicity over the amplitude"), 1080, 360,
              {QStringLiteral("amplitude, mm"), x.padded(0.02)},
              {QStringLiteral("equivalent conicity"), y.padded(0.06)});
    plot.addLine(curve, {kWheelColour, 2.0});
    const float value = conicityAt(result, shownAmplitude);
    if (!std::isnan(value)) {
        const QPointF at(static_cast<double>(shownAmplitude), static_cast<double>(value));
        plot.addMark(at, kContactColour, 5.0,
                     QStringLiteral("%1 at %2 mm").arg(fixedText(value, 3), fixedText(shownAmplitude, 1)));
    }
    return plot.svg();
}

void addTable(Page& page, const ConicityResult& result) {
    std::vector<std::vector<Cell>> rows;
    for (int amplitude = 1; amplitude <= 10; ++amplitude) {
        const float value = conicityAt(result, static_cast<float>(amplitude));
        if (!std::isnan(value)) {
            rows.push_back({{QString::number(amplitude)}, {fixedText(value, 4)}});
        }
    }
    page.table({QStringLiteral("amplitude, mm"), QStringLiteral("equivalent conicity")}, rows);
}

} // namespace

QString conicityReport(const WheelSet& set, const ConicityResult& result, float shownAmplitude,
                       const QStringList& names, const QStringList& warnings) {
    Page page(QStringLiteral("Equivalent conicity"),
              QStringLiteral("Wheels %1 and %3 on rails %2 and %4")
                  .arg(names[Wheel1], names[Rail1], names[Wheel2], names[Rail2]));
    page.facts({{QStringLiteral("conicity at %1 mm").arg(fixedText(shownAmplitude, 1)),
                 fixedText(conicityAt(result, shownAmplitude), 3)},
                {QStringLiteral("gauge, mm"), fixedText(set.gauge, 1)},
                {QStringLiteral("back-to-back, mm"), fixedText(set.backToBack, 1)},
                {QStringLiteral("radii, mm"),
                 QStringLiteral("%1 / %2").arg(fixedText(set.radius1, 1), fixedText(set.radius2, 1))}});
    for (const QString& warning : warnings) {
        page.warning(warning);
    }
    page.heading(QStringLiteral("Conicity"));
    page.figure(conicityPlot(result, shownAmplitude),
                QStringLiteral("The conicity of the pair of cones whose oscillation has the same wavelength, for each "
                               "amplitude of the wheel-set. The mark is the value at %1 mm.")
                    .arg(fixedText(shownAmplitude, 1)));
    addTable(page, result);
    page.heading(QStringLiteral("Contact"));
    page.figures(
        {{placedPlot(QStringLiteral("first"), result, true),
          QStringLiteral("First wheel and rail, seen along the track, each side with an origin of its own. The "
                         "wheel stands with its lowest point at the height of the rail's top; dots are the "
                         "contact points of all displacements.")},
         {placedPlot(QStringLiteral("second"), result, false), QStringLiteral("Second wheel and rail.")}});
    page.figures({{contactPlot(result),
                   QStringLiteral("Where each rail is touched, measured outwards from the contact of the centred "
                                  "wheel-set. A gap is a jump of the contact point.")},
                  {deltaRPlot(result),
                   QStringLiteral("Rolling radius of the second wheel minus that of the first. The oscillation takes "
                                  "place about the displacement at which it is 0.")}});
    page.paragraph(QStringLiteral("Edge margin %1 mm, KxMath %2.")
                       .arg(fixedText(set.edgeMargin, 4), QLatin1String(KxMath_GetVersionString())));
    return page.html();
}

} // namespace kxtool
