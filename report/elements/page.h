// A self-contained HTML page: no other file, and no script but its own.
#pragma once

#include "report/elements/frame.h"
#include "report/elements/pageOrigin.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <initializer_list>
#include <vector>

namespace kxreport {

/// The colour of a table cell or fact.
enum class Tone { Plain, Good, Bad, Faint };

struct Cell {
    QString text; ///< line feeds begin new lines
    Tone tone = Tone::Plain;
};

/// A key figure at the top of a page.
struct Fact {
    QString label;
    QString value;
    Tone tone = Tone::Plain;
};

struct Figure {
    QString svg; ///< markup of a Plot
    QString caption;
};

/// Collects the parts of a page in order. All texts are escaped here; only figures take markup, that of a Plot.
class Page {
public:
    explicit Page(const QString& title, const QString& subtitle = {}, PageOrigin origin = {});

    void heading(const QString& text);
    void paragraph(const QString& text);
    /// A highlighted paragraph.
    void warning(const QString& text);
    /// A highlighted paragraph about the page itself.
    void note(const QString& text);
    /// A red paragraph: why there is no result.
    void failure(const QString& text);
    /// A paragraph in large letters: what is to be read first.
    void verdict(const QString& text, Tone tone);
    void facts(const std::vector<Fact>& facts);
    /// A figure of the full width.
    void figure(const QString& svg, const QString& caption);
    /// A figure in its own size, which is scrolled where it is wider than the page.
    void wideFigure(const QString& svg, const QString& caption);
    /// A part of the page that its scripts fill, and the picture that stands there without script and in print.
    /// @param id of the element for the scripts
    void live(const QString& id, const QString& svg, const QString& caption);
    /// A line in which the scripts say when the first picture was there.
    void tellTime();
    /// Figures of half the width side by side, below each other on narrow screens.
    void figures(const std::vector<Figure>& figures);
    /// @param textColumns the number of columns from the left that hold text, the others hold numbers
    void table(const QStringList& headers, const std::vector<std::vector<Cell>>& rows, int textColumns = 0);
    void table(std::initializer_list<QString> headers, const std::vector<std::vector<Cell>>& rows, int textColumns = 0);

    /// A table whose rows other parts of the page link to and whose first column stays when it is scrolled.
    /// @param ids of the rows; in parallel with them
    void linkedTable(const QStringList& headers, const std::vector<std::vector<Cell>>& rows, const QStringList& ids,
                     int textColumns);

    /// Scripts of the page and what they read.
    Frame& frame() { return frame_; }

    /// The finished document.
    QString html() const;
    /// The same as UTF-8.
    QByteArray document() const;

private:
    void addOrigin();
    void addTable(const QStringList& headers, const std::vector<std::vector<Cell>>& rows, int textColumns,
                  const QStringList& ids);

    Frame frame_;
    PageOrigin origin_;
    QString title_; ///< escaped
    QString body_;
};

} // namespace kxreport
