// The page of alarms.
#include "report/fleet/alarmsReport.h"

#include "report/elements/page.h"

namespace kxreport {

namespace {

/// A table, or the words for none.
void addTable(Page& page, const std::vector<QStringList>& rows, const QString& none) {
    constexpr int kTextColumns = 5;
    if (rows.size() < 2) {
        page.paragraph(none);
        return;
    }
    std::vector<std::vector<Cell>> cells;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        std::vector<Cell> row;
        for (const QString& text : rows[i]) {
            row.push_back({text});
        }
        cells.push_back(std::move(row));
    }
    page.table(rows.front(), cells, kTextColumns);
}

} // namespace

QString alarmsReport(const AlarmsPage& alarms, const PageOrigin& origin) {
    Page page(QStringLiteral("Alarms of wheels and sensors"), {}, origin);
    page.verdict(textOf(alarms.mark) + QStringLiteral(": ") + alarms.verdict, toneOf(alarms.mark));
    for (const QString& shift : alarms.shifts) {
        page.warning(shift);
    }
    page.heading(QStringLiteral("Beyond a limit"));
    addTable(page, alarms.alarms, QStringLiteral("No alarm is open."));
    page.heading(QStringLiteral("Limits that are announced"));
    addTable(page, alarms.announced, QStringLiteral("No limit is announced."));
    return page.html();
}

} // namespace kxreport
