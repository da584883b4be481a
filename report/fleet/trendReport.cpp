// The page of trends.
#include "report/fleet/trendReport.h"

#include "report/elements/page.h"
#include "report/elements/svg.h"

namespace kxreport {

namespace {

constexpr int kWidth = 400;
constexpr int kHeight = 230;

QString picture(const TrendCurve& curve, const QString& id, const QString& lastDay) {
    Range x;
    Range y;
    for (const Points* const points : {&curve.readings, &curve.line}) {
        for (const QPointF& p : *points) {
            x.include(p.x());
            y.include(p.y());
        }
    }
    // A limit that is far away would flatten the curve.
    constexpr double kFar = 4.0;
    const double reach = kFar * y.size();
    for (const auto& limit : {curve.low, curve.high}) {
        if (limit && *limit > y.min - reach && *limit < y.max + reach) {
            y.include(*limit);
        }
    }
    Plot plot(id, curve.wheel + QStringLiteral(", ") + curve.measure, kWidth, kHeight,
              {QStringLiteral("days before ") + lastDay, x.padded(0.03)}, {curve.measure, y.padded(0.08)});
    for (const double start : curve.lifeStarts) {
        const Range shown = y.padded(0.08);
        plot.addLine({{start, shown.min}, {start, shown.max}}, {colour::kGrey, 1.0, "2 3"}, {});
    }
    for (const auto& limit : {curve.low, curve.high}) {
        if (limit) {
            plot.addLevel(*limit, {colour::kCrimson, 1.5, "6 3"}, QStringLiteral("limit"));
        }
    }
    plot.addDots(curve.readings, colour::kBlue, 2.6, QStringLiteral("readings"));
    plot.addDots(curve.outliers, colour::kOrange, 4.5, QStringLiteral("outliers"));
    plot.addLine(curve.line, {colour::kBlack, 1.5}, QStringLiteral("trend"));
    return plot.svg();
}

} // namespace

QString trendReport(const TrendPage& trends, const PageOrigin& origin) {
    Page page(QStringLiteral("Trends of wheels"), {}, origin);
    page.verdict(textOf(trends.mark) + QStringLiteral(": ") + trends.verdict, toneOf(trends.mark));
    for (const QString& warning : trends.warnings) {
        page.warning(warning);
    }
    for (std::size_t v = 0; v < trends.vehicles.size(); ++v) {
        const TrendVehicle& vehicle = trends.vehicles[v];
        page.heading(QStringLiteral("Vehicle ") + vehicle.number);
        std::vector<Figure> figures;
        for (std::size_t i = 0; i < vehicle.curves.size(); ++i) {
            const TrendCurve& curve = vehicle.curves[i];
            figures.push_back({picture(curve, QStringLiteral("trend%1-%2").arg(v).arg(i), vehicle.lastDay),
                               QStringLiteral("%1: %2, %3").arg(textOf(curve.mark), curve.wheel, curve.words)});
        }
        page.figures(figures);
    }
    if (trends.further > 0) {
        page.note(
            QStringLiteral("%1 further vehicles have no pictures here; --vehicle shows one.").arg(trends.further));
    }
    page.heading(QStringLiteral("All wheels"));
    std::vector<std::vector<Cell>> rows;
    for (const QStringList& row : trends.rows) {
        std::vector<Cell> cells;
        for (const QString& text : row) {
            cells.push_back({text});
        }
        rows.push_back(std::move(cells));
    }
    page.table(trends.columns, rows, trends.textColumns);
    page.paragraph(QStringLiteral(
        "A trend is a line by medians through the readings of the last life of a wheel, with 95 % intervals. Dotted "
        "lines "
        "are new lives: the wheel was turned or replaced. Shifts of sensors that were named are taken off."));
    return page.html();
}

} // namespace kxreport
