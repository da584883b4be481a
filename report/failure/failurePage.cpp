// The page of a command that has no result: why, and the raw data.
#include "report/failure/failurePage.h"

#include "report/elements/fileNames.h"
#include "report/elements/numbers.h"
#include "report/elements/page.h"
#include "report/train/rawProfiles.h"

#include <algorithm>
#include <iterator>

namespace kxreport {

namespace {

QString rangeText(const KxInspect::Range& range) {
    constexpr int kDecimals = 3;
    return range.isEmpty() ? QStringLiteral("-")
                           : QStringLiteral("%1 \u2013 %2")
                                 .arg(numberText(static_cast<double>(range.min), kDecimals),
                                      numberText(static_cast<double>(range.max), kDecimals));
}

void addTable(const std::vector<RawFile>& files, const QStringList& names, Page& page) {
    std::vector<std::vector<Cell>> rows;
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::vector<Cell> row = {{names.at(static_cast<qsizetype>(i))}};
        if (const auto& contents = files[i].contents) {
            row.insert(row.end(), {{files[i].profiles > 0 ? QString::number(files[i].records) : QStringLiteral("-")},
                                   {QString::number(contents->points)},
                                   {QString::number(contents->missing)},
                                   {rangeText(contents->x)},
                                   {rangeText(contents->y)}});
        } else {
            row.resize(6, {QStringLiteral("-"), Tone::Faint});
        }
        rows.push_back(row);
    }
    page.table({QStringLiteral("file"), QStringLiteral("records"), QStringLiteral("points"),
                QStringLiteral("missing points"), QStringLiteral("x, mm"), QStringLiteral("y, mm")},
               rows, 1);
}

Figure figureOf(const RawFile& file, const QString& name, std::size_t number) {
    const QString profiles =
        file.profiles > 0
            ? QStringLiteral(", from %1 of %2 records, evenly spread").arg(file.profiles).arg(file.records)
            : QString();
    return {rawProfilesPlot(
                {QStringLiteral("raw%1").arg(number), QStringLiteral("Raw data of %1").arg(name), file.points, {}, {}}),
            QStringLiteral("%1 as it was recorded: %2 of %3 points%4.")
                .arg(name)
                .arg(file.points.size())
                .arg(file.contents->points)
                .arg(profiles)};
}

} // namespace

QString failurePage(const QString& title, const QString& reason, const std::vector<RawFile>& files,
                    const PageOrigin& origin) {
    Page page(title, {}, origin);
    page.failure(reason);
    std::vector<std::string> paths;
    std::transform(files.begin(), files.end(), std::back_inserter(paths),
                   [](const RawFile& file) { return file.path; });
    const QStringList names = distinctNames(paths);
    page.heading(QStringLiteral("Raw data"));
    addTable(files, names, page);
    std::vector<Figure> figures;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const QString whyNot = withBareName(files[i].whyNot);
        if (!reason.contains(whyNot)) { // the empty text is in every one
            page.warning(whyNot);
        }
        if (!files[i].points.empty()) {
            figures.push_back(figureOf(files[i], names.at(static_cast<qsizetype>(i)), i + 1));
        }
    }
    page.figures(figures);
    return page.html();
}

} // namespace kxreport
