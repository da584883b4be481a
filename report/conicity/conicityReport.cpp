// The report of a conicity calculation.
#include "report/conicity/conicityReport.h"

#include "report/elements/fileNames.h"
#include "report/elements/numbers.h"
#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"
#include "report/wheel/wheelWords.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxreport {

namespace {

using KxInspect::ConicityResult;
using KxInspect::Contact;
using KxInspect::PerWheelSetPart;
using KxInspect::Point;
using KxInspect::WheelSetPart;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr const char* kWheelColour = colour::kBlue;
constexpr const char* kRailColour = colour::kGrey;
constexpr const char* kContactColour = colour::kCrimson;
constexpr const char* kSecondColour = colour::kGreen;

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

Points contactPoints(const std::vector<Contact>& contacts, Point Contact::*of) {
    Points points;
    for (const Contact& contact : contacts) {
        points.push_back(toPlot(contact.*of));
    }
    return points;
}

/// One side of the track: the wheel above the rail, with the contact points.
QString placedPlot(const QString& id, const ConicityResult& result, bool isFirst) {
    const Points wheel = toPoints(result.sections[isFirst ? KxInspect::Wheel1 : KxInspect::Wheel2].points);
    const Points rail = toPoints(result.sections[isFirst ? KxInspect::Rail1 : KxInspect::Rail2].points);
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
    makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(kHeight));
    Plot plot(id, isFirst ? QStringLiteral("First side") : QStringLiteral("Second side"), kWidth, kHeight,
              {QStringLiteral("lateral position, mm"), x}, {QStringLiteral("height, mm"), y});
    plot.addLine(wheel, {kWheelColour, 1.8}, QStringLiteral("wheel"));
    plot.addLine(rail, {kRailColour, 1.8}, QStringLiteral("rail"));
    if (!contacts.empty()) {
        plot.addDots(contactPoints(contacts, &Contact::wheel), kContactColour, 3.0, QStringLiteral("contact points"));
        plot.addDots(contactPoints(contacts, &Contact::rail), kContactColour, 3.0);
    }
    return plot.svg();
}

/// The contact point on the rail over the displacement, as distance from that of the centred wheel-set.
QString contactPlot(const ConicityResult& result) {
    const auto over = [](const std::vector<Contact>& contacts) {
        Points points;
        for (const Contact& contact : contacts) {
            points.push_back(toPlot({contact.displacement, contact.outwards}));
        }
        return points;
    };
    const Points first = over(result.contacts1);
    const Points second = over(result.contacts2);
    Range x;
    Range y;
    includeX(x, first);
    includeX(x, second);
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
    const Points curve = toPoints(result.deltaR);
    Range x;
    Range y;
    includeX(x, curve);
    includeY(y, curve);
    Plot plot(QStringLiteral("deltar"), QStringLiteral("Difference of the rolling radii"), 520, 300,
              {QStringLiteral("displacement of the wheel-set, mm"), x.padded(0.03)},
              {QStringLiteral("difference of the rolling radii, mm"), y.padded(0.06)});
    plot.addLevel(0.0, {colour::kPale, 1.0});
    plot.addLine(curve, {kWheelColour, 1.8});
    return plot.svg();
}

QString conicityPlot(const ConicityResult& result) {
    Points curve;
    for (const Point& p : result.conicity) {
        curve.push_back(toPlot({p.x, hasConicity(p) ? p.y : kNaN})); // NaN interrupts the line
    }
    Points low;
    Points high;
    for (std::size_t i = 0; i < std::min(result.intervals.size(), result.conicity.size()); ++i) {
        const KxInspect::Interval interval =
            hasConicity(result.conicity[i]) ? result.intervals[i] : KxInspect::Interval();
        low.push_back(toPlot({result.conicity[i].x, interval.low}));
        high.push_back(toPlot({result.conicity[i].x, interval.high}));
    }
    Range x;
    Range y;
    x.include(0.0);
    y.include(0.0);
    includeX(x, curve);
    includeY(y, curve);
    includeY(y, high);
    Plot plot(QStringLiteral("conicity"), QStringLiteral("Equivalent conicity over the amplitude"), 1080, 360,
              {QStringLiteral("amplitude, mm"), x.padded(0.02)},
              {QStringLiteral("equivalent conicity"), y.padded(0.06)});
    const bool isUncertain = result.intervals.size() == result.conicity.size() && !result.conicity.empty();
    plot.addLine(curve, {kWheelColour, 2.0});
    if (isUncertain) {
        plot.addLine(low, {kWheelColour, 1.0, "4 3"}, QStringLiteral("95 % interval"));
        plot.addLine(high, {kWheelColour, 1.0, "4 3"});
    }
    if (result.shownConicity) {
        plot.addMark(toPlot({result.shownAmplitude, *result.shownConicity}), kContactColour, 5.0,
                     QStringLiteral("%1 at %2 mm")
                         .arg(fixedText(*result.shownConicity, 3), fixedText(result.shownAmplitude, 1)));
    }
    return plot.svg();
}

void addTable(Page& page, const ConicityResult& result) {
    std::vector<std::vector<Cell>> rows;
    for (const KxInspect::ConicityRow& row : reachedRows(result)) {
        rows.push_back({{amplitudeText(row.amplitude)},
                        {row.conicity ? conicityText(row.conicity, row.interval)
                                      : QString::fromStdString("none: " + reasonWithoutConicity(result, row.amplitude)),
                         row.conicity ? Tone::Plain : Tone::Bad},
                        {fixedText(row.asMeasured.value_or(kNaN), 4)}});
    }
    page.table({QStringLiteral("amplitude, mm"), QStringLiteral("equivalent conicity, 95 % interval"),
                QStringLiteral("equivalent conicity without smoothing")},
               rows);
}

/// The names of the profiles' files, their parts of the wheel-set for profiles that have no file.
PerWheelSetPart<QString> sectionNames(const ConicityResult& result) {
    std::vector<std::string> files;
    for (const KxInspect::PlacedSection& section : result.sections) {
        files.push_back(section.file);
    }
    const QStringList distinct = distinctNames(files);
    PerWheelSetPart<QString> names;
    for (const WheelSetPart part : {KxInspect::Wheel1, KxInspect::Rail1, KxInspect::Wheel2, KxInspect::Rail2}) {
        const QString& name = distinct[static_cast<qsizetype>(part)];
        names[part] = name.isEmpty() ? QLatin1String(nameOf(part)) : name;
    }
    return names;
}

void addFacts(Page& page, const ConicityResult& result) {
    page.facts(
        {{QStringLiteral("equivalent conicity at %1 mm").arg(fixedText(result.shownAmplitude, 1)),
          conicityText(result.shownConicity, result.shownInterval), result.shownConicity ? Tone::Plain : Tone::Bad},
         {QStringLiteral("gauge, mm"), fixedText(result.gauge, 1)},
         {QStringLiteral("back-to-back, mm"), fixedText(result.backToBack, 1)},
         {QStringLiteral("rolling radii, mm"),
          QStringLiteral("%1 / %2").arg(fixedText(result.radius1, 1), fixedText(result.radius2, 1))}});
}

void addConicity(Page& page, const ConicityResult& result) {
    page.heading(QStringLiteral("Conicity"));
    const QString mark =
        result.shownConicity
            ? QStringLiteral(" The mark is the value at %1 mm.").arg(fixedText(result.shownAmplitude, 1))
            : QString();
    page.figure(
        conicityPlot(result),
        QStringLiteral("The equivalent conicity is that of a pair of cones whose lateral oscillation has the same "
                       "wavelength as the wheel-set at this amplitude.%1")
            .arg(mark));
    addTable(page, result);
    page.paragraph(QStringLiteral("The intervals contain %1%2")
                       .arg(causesText(result.gaugeError),
                            result.gaugeError.isSet()
                                ? QStringLiteral(", each the same for both wheels and the same for both rails.")
                                : QStringLiteral(" alone: an error of the gauge that no profile shows was not told.")));
}

void addContact(Page& page, const ConicityResult& result) {
    page.heading(QStringLiteral("Contact"));
    page.figures(
        {{placedPlot(QStringLiteral("first"), result, true),
          QStringLiteral("First wheel and rail, seen along the track; each side has its own origin. The lowest "
                         "point of the wheel is drawn at the height of the rail's top. The dots are the contact "
                         "points at all displacements.")},
         {placedPlot(QStringLiteral("second"), result, false), QStringLiteral("Second wheel and rail.")}});
    page.figures(
        {{contactPlot(result),
          QStringLiteral("Contact point on each rail, measured outwards from that of the centred wheel-set. "
                         "At a gap the contact point jumps.")},
         {deltaRPlot(result),
          QStringLiteral("Rolling radius of the second wheel minus that of the first. The wheel-set oscillates "
                         "about the displacement where the difference is 0.")}});
}

/// How far the points of a profile are off its smoothed contour.
QString residualPlot(const ConicityResult& result, WheelSetPart part, const QString& name) {
    const Points residuals = toPoints(result.sections[part].residuals);
    Range x;
    Range y;
    y.include(0.0);
    includeX(x, residuals);
    includeY(y, residuals);
    Plot plot(QStringLiteral("smoothing-") + QLatin1String(nameOf(part)),
              QStringLiteral("Smoothing of ") + QLatin1String(nameOf(part)), 520, 220,
              {QStringLiteral("x of %1, mm").arg(name), x.padded(0.03)},
              {QStringLiteral("beside the contour, mm"), y.padded(0.06)});
    plot.addLevel(0.0, {colour::kPale, 1.0});
    plot.addDots(residuals, part % 2 == 0 ? kWheelColour : kRailColour, 2.5);
    return plot.svg();
}

/// What the noise is, and what the smoothing did to the profiles.
void addSmoothing(Page& page, const ConicityResult& result, const PerWheelSetPart<QString>& names) {
    page.heading(QStringLiteral("Noise and smoothing"));
    std::vector<std::vector<Cell>> rows;
    std::vector<Figure> figures;
    for (const WheelSetPart part : {KxInspect::Wheel1, KxInspect::Rail1, KxInspect::Wheel2, KxInspect::Rail2}) {
        const KxInspect::PlacedSection& section = result.sections[part];
        rows.push_back({{QLatin1String(nameOf(part))},
                        {fixedText(section.noise.x, 4)},
                        {fixedText(section.noise.y, 4)},
                        {smoothingText(section)}});
        if (!section.residuals.empty()) {
            figures.push_back(
                {residualPlot(result, part, names[part]),
                 QStringLiteral("%1: its points beside the smoothed contour, positive below it or, where it is "
                                "steep, outside. Points without a pattern are noise; a wave is a shape that "
                                "was smoothed away.")
                     .arg(names[part])});
        }
    }
    page.table({QStringLiteral("profile"), QStringLiteral("noise in x, mm"), QStringLiteral("noise in y, mm"),
                QStringLiteral("smoothing")},
               rows);
    for (std::size_t i = 0; i < figures.size(); i += 2) {
        page.figures({figures.begin() + static_cast<std::ptrdiff_t>(i),
                      figures.begin() + static_cast<std::ptrdiff_t>(std::min(i + 2, figures.size()))});
    }
}

/// The profiles of a wheel-set without contacts.
void addProfiles(Page& page, const ConicityResult& result) {
    page.heading(QStringLiteral("Profiles"));
    page.figures(
        {{placedPlot(QStringLiteral("first"), result, true),
          QStringLiteral("First wheel and rail. The flange of a wheel that stands rightly points down, beside the "
                         "rail's gauge side.")},
         {placedPlot(QStringLiteral("second"), result, false), QStringLiteral("Second wheel and rail.")}});
}

} // namespace

std::vector<KxInspect::ConicityRow> reachedRows(const ConicityResult& result) {
    std::vector<KxInspect::ConicityRow> rows;
    for (const KxInspect::ConicityRow& row : result.rows) {
        if (!result.conicity.empty() && row.amplitude <= result.conicity.back().x) {
            rows.push_back(row);
        }
    }
    return rows;
}

QString conicityText(const std::optional<float>& conicity, const KxInspect::Interval& interval) {
    constexpr int kFewest = 2;
    constexpr int kMost = 4;
    int decimals = kMost;
    if (const float half = (interval.high - interval.low) / 2.0f; half > 0.0f) { // its first digit; NaN: false
        decimals = std::clamp(static_cast<int>(std::floor(-std::log10(half))) + 1, kFewest, kMost);
    }
    if (interval.isKnown() && interval.high - interval.low < 1e-4f) {
        return fixedText(conicity.value_or(kNaN), kMost) + QStringLiteral(" ± <0.0001");
    }
    return withInterval(conicity.value_or(kNaN), interval, decimals);
}

QString smoothingText(const KxInspect::PlacedSection& section) {
    if (!section.windows) {
        return QStringLiteral("not smoothed");
    }
    const auto [shortest, longest] = *section.windows;
    const QString from = fixedText(shortest, 1);
    const QString to = fixedText(longest, 1);
    return QStringLiteral("smoothed over %1 mm").arg(from == to ? from : from + QStringLiteral(" to ") + to);
}

QString amplitudeText(float amplitude) {
    return fixedText(amplitude, amplitude == std::round(amplitude) ? 0 : 1);
}

QString conicityReport(const ConicityResult& result, const PageOrigin& origin) {
    const PerWheelSetPart<QString> names = sectionNames(result);
    Page page(
        QStringLiteral("Equivalent conicity"),
        QStringLiteral("Wheels %1 and %3 on rails %2 and %4")
            .arg(names[KxInspect::Wheel1], names[KxInspect::Rail1], names[KxInspect::Wheel2], names[KxInspect::Rail2]),
        origin);
    addFacts(page, result);
    if (!result.isCalculated()) {
        page.failure(QString::fromStdString(result.reason));
    }
    for (std::size_t part = 0; part < result.sections.size(); ++part) {
        if (const std::string& reading = result.sections[part].reading; !reading.empty()) {
            page.paragraph(QStringLiteral("The file %1 %2.").arg(names[part], QString::fromStdString(reading)));
        }
    }
    for (const std::string& warning : result.warnings) {
        page.warning(QString::fromStdString(warning));
    }
    if (result.isCalculated()) {
        addConicity(page, result);
        addSmoothing(page, result, names);
    }
    const auto hasPoints = [](const KxInspect::PlacedSection& section) { return !section.points.empty(); };
    if (!result.contacts1.empty()) {
        addContact(page, result);
    } else if (std::all_of(result.sections.begin(), result.sections.end(), hasPoints)) {
        addProfiles(page, result);
    }
    QStringList how;
    if (result.edgeMargin) {
        how.append(QStringLiteral("Edge margin %1 mm").arg(fixedText(*result.edgeMargin, 4)));
    }
    if (!result.version.empty()) {
        how.append(QStringLiteral("KxMath %1").arg(QString::fromStdString(result.version)));
    }
    if (!how.empty()) {
        page.paragraph(how.join(QStringLiteral(", ")) + QLatin1Char('.'));
    }
    return page.html();
}

} // namespace kxreport
