// A self-contained page that shows data: its scripts, its numbers, and the picture for readers without script and for
// print.
#pragma once

#include "report/elements/colourMap.h"
#include "report/elements/page.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <vector>

namespace kxreport {

struct ViewSettings {
    double resolution = 0.001; ///< of the numbers on the page, mm, above 0
    qsizetype mostBytes = 20'000'000; ///< of the page
    ColourMap colours = ColourMap::Viridis;
};

/// Collects the parts of a page. All texts are escaped here.
class ViewPage {
public:
    /// @param scripts of report/view/script, without their ending, in their order; none: a page without numbers to look at
    ViewPage(const QString& title, const ViewSettings& settings, const QStringList& scripts, PageOrigin origin = {});

    void addFact(const QString& label, const QString& value);
    void addWarning(const QString& text);
    /// What failed, or was not found: a red bar above all else.
    void addFailure(const QString& text);
    /// A table below the plots; its first column holds text.
    void addTable(const QString& title, const QStringList& head, const std::vector<QStringList>& rows);
    /// The picture that stands on the page without script and in print. A page without one has no live part.
    void setPicture(const QString& svg, const QString& caption);
    /// @return the name under which the script finds the block
    QString addBlock(const QByteArray& codes) { return page_.frame().addBlock(codes); }
    Frame& frame() { return page_.frame(); }
    /// What the script reads: settings and names of blocks.
    QJsonObject& data() { return page_.frame().data(); }

    /// The finished document, UTF-8.
    QByteArray html() const;

private:
    struct Table {
        QString title;
        QStringList head;
        std::vector<std::vector<Cell>> rows;
    };

    Page page_;
    std::vector<Fact> facts_;
    QStringList warnings_;
    QStringList failures_;
    std::vector<Table> tables_;
    Figure picture_;
};

/// Tells the scripts of a page how its numbers are rounded and which colours heights have.
void describeNumbers(const ViewSettings& settings, Frame& frame);

/// The decimals that show a resolution: 3 for 0.001.
int decimalsOf(double resolution);

/// Makes a page with all its data, or if that is larger than the settings allow, with as little left out as needed:
/// `make(level)` makes it with less for each level from 0 on. Throws an Error BadArgument when no level is small enough.
QByteArray fittingPage(const ViewSettings& settings, const std::function<QByteArray(int)>& make);

} // namespace kxreport
