// A self-contained page that shows data.
#include "report/view/viewPage.h"

#include <KxInspect/Error.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kxreport {

namespace {

constexpr int kPaletteColours = 256;

QString paletteText(ColourMap map) {
    QString text;
    for (int i = 0; i < kPaletteColours; ++i) {
        text += QStringLiteral("%1").arg(mapColour(map, i / (kPaletteColours - 1.0)), 6, 16, QLatin1Char('0'));
    }
    return text;
}

} // namespace

ViewPage::ViewPage(const QString& title, const ViewSettings& settings, const QStringList& scripts, PageOrigin origin)
    : page_(title, {}, std::move(origin)) {
    if (scripts.isEmpty()) {
        return;
    }
    page_.frame().addScripts(scripts);
    describeNumbers(settings, page_.frame());
    addFact(QStringLiteral("Numbers on this page"), QStringLiteral("rounded to %1 mm").arg(settings.resolution));
}

void ViewPage::addFact(const QString& label, const QString& value) {
    facts_.push_back({label, value});
}

void ViewPage::addWarning(const QString& text) {
    warnings_.append(text);
}

void ViewPage::addFailure(const QString& text) {
    failures_.append(text);
}

void ViewPage::addTable(const QString& title, const QStringList& head, const std::vector<QStringList>& rows) {
    Table table{title, head, {}};
    for (const QStringList& row : rows) {
        std::vector<Cell> cells;
        for (const QString& text : row) {
            cells.push_back({text});
        }
        table.rows.push_back(std::move(cells));
    }
    tables_.push_back(std::move(table));
}

void ViewPage::setPicture(const QString& svg, const QString& caption) {
    picture_ = {svg, caption};
}

QByteArray ViewPage::html() const {
    Page page = page_;
    for (const QString& failure : failures_) {
        page.failure(failure);
    }
    page.facts(facts_);
    for (const QString& warning : warnings_) {
        page.note(warning);
    }
    if (!picture_.svg.isEmpty()) {
        page.live(QStringLiteral("live"), picture_.svg, picture_.caption);
    }
    for (const Table& table : tables_) {
        page.heading(table.title);
        page.table(table.head, table.rows, 1);
    }
    if (!picture_.svg.isEmpty()) {
        page.tellTime();
    }
    return page.document();
}

void describeNumbers(const ViewSettings& settings, Frame& frame) {
    frame.data()[QStringLiteral("resolution")] = settings.resolution;
    frame.data()[QStringLiteral("decimals")] = decimalsOf(settings.resolution);
    frame.data()[QStringLiteral("colours")] = paletteText(settings.colours);
}

int decimalsOf(double resolution) {
    constexpr int kMost = 9;
    for (int decimals = 0; decimals < kMost; ++decimals) {
        const double scaled = resolution * std::pow(10.0, decimals);
        constexpr double kRounding = 1e-9;
        if (std::abs(scaled - std::round(scaled)) <= kRounding * scaled && scaled >= 1.0 - kRounding) {
            return decimals;
        }
    }
    return kMost;
}

QByteArray fittingPage(const ViewSettings& settings, const std::function<QByteArray(int)>& make) {
    constexpr int kLevels = 24;
    for (int level = 0; level < kLevels; ++level) {
        QByteArray page = make(level);
        if (page.size() <= settings.mostBytes) {
            return page;
        }
    }
    throw KxInspect::Error(KxInspect::ErrorKind::BadArgument, {{}, {}, "max-size"},
                           "--max-size is too small: the page without most of its data is larger");
}

} // namespace kxreport
