// A self-contained HTML page: no script, no other file.
#include "report/elements/page.h"

#include "report/elements/textList.h"

#include "report/elements/svg.h"

namespace kxreport {

namespace {

constexpr const char* kStyle = R"(
:root { color-scheme: light; }
* { box-sizing: border-box; }
body { margin: 0; background: #f4f6f8; color: #1c2630; font: 15px/1.5 "DejaVu Sans", "Segoe UI", Arial, sans-serif; }
main { max-width: 1120px; margin: 0 auto; padding: 28px 28px 48px; }
header { border-bottom: 3px solid #0072B2; margin-bottom: 20px; padding-bottom: 10px; }
h1 { font-size: 26px; line-height: 1.2; margin: 0; }
header p { margin: 4px 0 0; color: #55616d; overflow-wrap: anywhere; }
h2 { font-size: 18px; margin: 34px 0 8px; }
p { max-width: 900px; margin: 8px 0; overflow-wrap: anywhere; }
p.warning { max-width: none; background: #fff3e6; border-left: 4px solid #D55E00; padding: 8px 12px; }
p.verdict { max-width: none; font-size: 18px; background: #fff; border: 1px solid #dbe1e7; padding: 8px 12px; }
p.failure { max-width: none; background: #fdeaea; color: #8c1010; border-left: 4px solid #c01818; padding: 8px 12px; }
.facts { display: flex; flex-wrap: wrap; gap: 12px; margin: 16px 0; }
.facts div { background: #fff; border: 1px solid #dbe1e7; border-radius: 6px; padding: 10px 16px; min-width: 130px; }
.facts span { display: block; font-size: 12px; color: #55616d; }
.facts strong { font-size: 21px; font-weight: 600; }
figure { margin: 12px 0; background: #fff; border: 1px solid #dbe1e7; border-radius: 6px; padding: 10px 12px; }
figcaption { font-size: 13px; color: #44505c; margin-top: 4px; }
.half { display: grid; grid-template-columns: repeat(auto-fill, minmax(460px, 1fr)); gap: 12px; margin: 12px 0; }
.half figure { margin: 0; }
svg { display: block; width: 100%; height: auto; font-size: 11px; fill: #3a4652; }
svg text { font-family: inherit; }
svg .axis { font-size: 12px; fill: #1c2630; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; background: #fff; font-size: 13px; width: 100%; font-variant-numeric: tabular-nums; }
th, td { border-bottom: 1px solid #e3e8ed; padding: 4px 9px; text-align: right; }
th { background: #eaeff3; font-weight: 600; vertical-align: bottom; }
td { white-space: pre-line; }
td.text.bad, td.text.good, td.text.faint { white-space: nowrap; overflow-wrap: normal; }
.sheet th:first-child, .sheet td:first-child { position: sticky; left: 0; background: #eaeff3; min-width: 92px; }
.sheet td { vertical-align: top; white-space: pre; }
.sheet td:first-child { white-space: pre-line; }
.sheet tr:target td { background: #fff3c4; }
svg.natural { width: auto; max-width: none; }
svg a:focus, svg a:hover { outline: 2px solid #0072B2; }
th.text, td.text { text-align: left; overflow-wrap: anywhere; }
table.wide { font-size: 12px; }
.wide th, .wide td { padding: 4px 5px; }
.good { color: #00694d; }
.bad { color: #b34700; font-weight: 600; }
.faint { color: #7b8794; }
@page { margin: 14mm; }
@media print {
  body { background: #fff; font-size: 11px; }
  main { max-width: none; padding: 0 2px; }
  h2 { break-after: avoid; }
  figure, .facts div, tr { break-inside: avoid; }
  h2 { font-size: 14px; margin-top: 16px; }
  figcaption { font-size: 10px; }
  .facts div { padding: 5px 10px; min-width: 0; }
  .facts strong { font-size: 14px; }
  .half { grid-template-columns: minmax(0, 1fr) minmax(0, 1fr); }
  .scroll { overflow: visible; }
  table, table.wide { font-size: 9px; }
  th, td, .wide th, .wide td { padding: 2px 3px; }
  * { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
}
)";

const char* className(Tone tone) {
    switch (tone) {
    case Tone::Good:
        return "good";
    case Tone::Bad:
        return "bad";
    case Tone::Faint:
        return "faint";
    case Tone::Plain:
        break;
    }
    return "";
}

/// A text whose line feeds stay.
QString linesOf(const QString& text) {
    QStringList lines;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        lines.append(escaped(line));
    }
    return lines.join(QLatin1Char('\n'));
}

QString figureElement(const QString& svg, const QString& caption) {
    return QStringLiteral("<figure>\n") + svg + QStringLiteral("<figcaption>") + escaped(caption) +
           QStringLiteral("</figcaption>\n</figure>\n");
}

} // namespace

Page::Page(const QString& title, const QString& subtitle) : title_(escaped(title)) {
    body_ = QStringLiteral("<header><h1>") + title_ + QStringLiteral("</h1>");
    if (!subtitle.isEmpty()) {
        body_ += QStringLiteral("<p>") + escaped(subtitle) + QStringLiteral("</p>");
    }
    body_ += QStringLiteral("</header>\n");
}

void Page::heading(const QString& text) {
    body_ += QStringLiteral("<h2>") + escaped(text) + QStringLiteral("</h2>\n");
}

void Page::paragraph(const QString& text) {
    body_ += QStringLiteral("<p>") + escaped(text) + QStringLiteral("</p>\n");
}

void Page::warning(const QString& text) {
    body_ +=
        QStringLiteral("<p class=\"warning\"><strong>Warning:</strong> ") + escaped(text) + QStringLiteral("</p>\n");
}

void Page::failure(const QString& text) {
    body_ +=
        QStringLiteral("<p class=\"failure\"><strong>No result:</strong> ") + escaped(text) + QStringLiteral("</p>\n");
}

void Page::verdict(const QString& text, Tone tone) {
    body_ += QStringLiteral("<p class=\"verdict %1\">").arg(QLatin1String(className(tone))) + escaped(text) +
             QStringLiteral("</p>\n");
}

void Page::facts(const std::vector<Fact>& facts) {
    body_ += QStringLiteral("<div class=\"facts\">\n");
    for (const Fact& fact : facts) {
        body_ += QStringLiteral("<div><span>") + escaped(fact.label) +
                 QStringLiteral("</span><strong class=\"%1\">").arg(QLatin1String(className(fact.tone))) +
                 escaped(fact.value) + QStringLiteral("</strong></div>\n");
    }
    body_ += QStringLiteral("</div>\n");
}

void Page::figure(const QString& svg, const QString& caption) {
    body_ += figureElement(svg, caption);
}

void Page::wideFigure(const QString& svg, const QString& caption) {
    body_ += QStringLiteral("<figure>\n<div class=\"scroll\">") + svg + QStringLiteral("</div>\n<figcaption>") +
             escaped(caption) + QStringLiteral("</figcaption>\n</figure>\n");
}

void Page::figures(const std::vector<Figure>& figures) {
    body_ += QStringLiteral("<div class=\"half\">\n");
    for (const Figure& figure : figures) {
        body_ += figureElement(figure.svg, figure.caption);
    }
    body_ += QStringLiteral("</div>\n");
}

void Page::table(const QStringList& headers, const std::vector<std::vector<Cell>>& rows, int textColumns) {
    addTable(headers, rows, textColumns, {});
}

void Page::linkedTable(const QStringList& headers, const std::vector<std::vector<Cell>>& rows, const QStringList& ids,
                       int textColumns) {
    addTable(headers, rows, textColumns, ids);
}

void Page::addTable(const QStringList& headers, const std::vector<std::vector<Cell>>& rows, int textColumns,
                    const QStringList& ids) {
    const auto columnClass = [textColumns](int column) { return QLatin1String(column < textColumns ? "text " : ""); };
    constexpr qsizetype kMany = 12; // columns that have room
    const QString kind =
        QLatin1String(headers.size() > kMany ? "wide" : "") + QLatin1String(ids.isEmpty() ? "" : " sheet");
    body_ += QStringLiteral("<div class=\"scroll\"><table%1>\n<thead><tr>")
                 .arg(kind.isEmpty() ? QString() : QStringLiteral(" class=\"%1\"").arg(kind.trimmed()));
    for (int column = 0; column < headers.size(); ++column) {
        body_ += QStringLiteral("<th class=\"") + columnClass(column) + QStringLiteral("\">") +
                 escaped(headers.at(column)) + QStringLiteral("</th>");
    }
    body_ += QStringLiteral("</tr></thead>\n<tbody>\n");
    for (size_t number = 0; number < rows.size(); ++number) {
        const std::vector<Cell>& row = rows[number];
        const QString id = ids.value(static_cast<qsizetype>(number));
        body_ += id.isEmpty() ? QStringLiteral("<tr>") : QStringLiteral("<tr id=\"%1\">").arg(escaped(id));
        for (size_t column = 0; column < row.size(); ++column) {
            body_ += QStringLiteral("<td class=\"") + columnClass(static_cast<int>(column)) +
                     QLatin1String(className(row[column].tone)) + QStringLiteral("\">") + linesOf(row[column].text) +
                     QStringLiteral("</td>");
        }
        body_ += QStringLiteral("</tr>\n");
    }
    body_ += QStringLiteral("</tbody>\n</table></div>\n");
}

void Page::table(std::initializer_list<QString> headers, const std::vector<std::vector<Cell>>& rows, int textColumns) {
    table(textList(headers), rows, textColumns);
}

QString Page::html() const {
    return QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                          "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>") +
           title_ + QStringLiteral("</title>\n<style>") + QLatin1String(kStyle) +
           QStringLiteral("</style>\n</head>\n<body>\n<main>\n") + body_ +
           QStringLiteral("</main>\n</body>\n</html>\n");
}

} // namespace kxreport
