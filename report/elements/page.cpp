// A self-contained HTML page.
#include "report/elements/page.h"

#include "report/elements/svg.h"
#include "report/elements/textList.h"

namespace kxreport {

namespace {

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

/// Begins a part that is scrolled sideways where it is wider than the page, with the keyboard, too.
QString scrolled(const char* kind) {
    return QStringLiteral("<div class=\"%1\" tabindex=\"0\">").arg(QLatin1String(kind));
}

QString figureElement(const QString& svg, const QString& caption, const QString& classes = {}) {
    return QStringLiteral("<figure%1>\n")
               .arg(classes.isEmpty() ? QString() : QStringLiteral(" class=\"%1\"").arg(classes)) +
           scrolled("plot") + svg + QStringLiteral("</div>\n<figcaption>") + escaped(caption) +
           QStringLiteral("</figcaption>\n</figure>\n");
}

} // namespace

Page::Page(const QString& title, const QString& subtitle, PageOrigin origin)
    : origin_(std::move(origin)), title_(escaped(title)) {
    body_ = QStringLiteral("<header><h1>") + title_ + QStringLiteral("</h1>");
    if (!subtitle.isEmpty()) {
        body_ += QStringLiteral("<p>") + escaped(subtitle) + QStringLiteral("</p>");
    }
    body_ += QStringLiteral("</header>\n");
    if (!origin_.note.isEmpty()) {
        paragraph(QStringLiteral("Note of the operator: ") + origin_.note);
    }
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

void Page::note(const QString& text) {
    body_ += QStringLiteral("<p class=\"warning\"><strong>Note:</strong> ") + escaped(text) + QStringLiteral("</p>\n");
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
    body_ += QStringLiteral("<dl>\n");
    for (const Fact& fact : facts) {
        body_ += QStringLiteral("<div><dt>") + escaped(fact.label) +
                 QStringLiteral("</dt><dd class=\"%1\">").arg(QLatin1String(className(fact.tone))) +
                 escaped(fact.value) + QStringLiteral("</dd></div>\n");
    }
    body_ += QStringLiteral("</dl>\n");
}

void Page::figure(const QString& svg, const QString& caption) {
    body_ += figureElement(svg, caption);
}

void Page::wideFigure(const QString& svg, const QString& caption) {
    body_ += QStringLiteral("<figure>\n") + scrolled("scroll") + svg + QStringLiteral("</div>\n<figcaption>") +
             escaped(caption) + QStringLiteral("</figcaption>\n</figure>\n");
}

void Page::live(const QString& id, const QString& svg, const QString& caption) {
    body_ += QStringLiteral("<div class=\"live-part\" id=\"%1\"></div>\n").arg(escaped(id)) +
             figureElement(svg, caption, QStringLiteral("still"));
}

void Page::tellTime() {
    body_ += QStringLiteral("<output id=\"time\"></output>\n");
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
    body_ +=
        scrolled("scroll") + QStringLiteral("<table%1>\n<thead><tr>")
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

/// How the page was made: its last part.
void Page::addOrigin() {
    heading(QStringLiteral("How this page was made"));
    std::vector<std::vector<Cell>> rows = {
        {{QStringLiteral("made")}, {origin_.made}},
        {{QStringLiteral("command")}, {origin_.command}},
        {{QStringLiteral("program")}, {QStringLiteral("KxMath ") + origin_.version}}};
    for (const PageInput& input : origin_.inputs) {
        rows.push_back({{QStringLiteral("input ") + input.name},
                        {input.sha256.isEmpty() ? QStringLiteral("no hash, it could not be read")
                                                : QStringLiteral("SHA-256 ") + input.sha256}});
    }
    constexpr int kTextColumns = 2;
    table({QStringLiteral("what"), QStringLiteral("value")}, rows, kTextColumns);
    if (origin_.options.empty()) {
        return;
    }
    paragraph(QStringLiteral("Options of the command with their values:"));
    rows.clear();
    for (const PageOption& option : origin_.options) {
        rows.push_back({{option.name},
                        {option.value},
                        {option.isGiven ? QStringLiteral("given") : QStringLiteral("default"),
                         option.isGiven ? Tone::Plain : Tone::Faint}});
    }
    table({QStringLiteral("option"), QStringLiteral("value"), QStringLiteral("from")}, rows, kTextColumns + 1);
}

QByteArray Page::document() const {
    if (origin_.made.isEmpty()) {
        return frame_.html(title_, body_.toUtf8());
    }
    Page whole = *this;
    whole.addOrigin();
    return frame_.html(title_, whole.body_.toUtf8());
}

QString Page::html() const {
    return QString::fromUtf8(document());
}

} // namespace kxreport
