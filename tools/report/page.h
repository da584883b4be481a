// A self-contained HTML page: no script, no other file.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace kxreport {

/// How a cell or a figure of a summary is coloured.
enum class Tone { Plain, Good, Bad, Faint };

struct Cell {
    QString text;
    Tone tone = Tone::Plain;
};

/// A big number at the top of a page.
struct Fact {
    QString label;
    QString value;
    Tone tone = Tone::Plain;
};

/// Collects the parts of a page in order. All texts are escaped here; only `figure` takes markup, that of a Plot.
class Page {
public:
    explicit Page(const QString& title, const QString& subtitle = {});

    void heading(const QString& text);
    void paragraph(const QString& text);
    /// A paragraph that must not be overlooked.
    void warning(const QString& text);
    void facts(const std::vector<Fact>& facts);
    void figure(const QString& svg, const QString& caption);
    /// Two figures side by side, below each other on narrow screens.
    void figures(const QString& svg1, const QString& caption1, const QString& svg2, const QString& caption2);
    /// @param textColumns the number of columns from the left that hold text, the others hold numbers
    void table(const QStringList& headers, const std::vector<std::vector<Cell>>& rows, int textColumns = 0);

    /// The finished document.
    QString html() const;

private:
    QString title_;
    QString body_;
};

} // namespace kxreport
