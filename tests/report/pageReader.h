// Reads pages as a reader does: facts, tables with the tones of their cells, and plots, whose points are read off at the
// ticks of the axes.
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <map>
#include <ostream>
#include <utility>
#include <vector>

/// Makes differences of texts readable in failures.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace page_test {

struct ReadCell {
    QString text;
    QString tone; ///< good, bad, faint or empty
    bool operator==(const ReadCell&) const = default;
};
inline void PrintTo(const ReadCell& cell, std::ostream* out) {
    *out << '"' << cell.text.toStdString() << "\" (" << cell.tone.toStdString() << ')';
}

struct ReadTable {
    QStringList headers;
    std::vector<std::vector<ReadCell>> rows;

    /// The texts of a row, joined by "|".
    QString row(size_t index) const;
    /// The cell of a row below a header. A header that is not there fails the test.
    ReadCell at(size_t row, const QString& header) const;
};

/// What a plot shows: dots, line, mark, band, box or image.
struct ReadItem {
    QString kind;
    QString colour;
    QString tooltip;
    std::vector<QPointF>
        points; ///< in the units of the axes; of bands, boxes and images two corners, the lower left first
    int runs = 0; ///< of a line: its uninterrupted parts
    double size = 0.0; ///< of dots: their diameter, pixels
    QByteArray png = {}; ///< of an image
};

struct ReadPlot {
    QString title, caption, xLabel, yLabel;
    QPointF unitsPerPixel = {1.0, 1.0};
    double left = 0.0, right = 0.0; ///< ends of the x axis, in its units
    std::vector<ReadItem> items;
    std::vector<std::pair<QString, QPointF>> texts; ///< centred texts on the plot and their places
    std::map<QString, std::pair<QString, QString>> legend; ///< text: kind and colour

    /// The items that an entry of the legend stands for.
    std::vector<const ReadItem*> shownAs(const QString& legend) const;
    /// The place of a text; NaN where there is none.
    QPointF placeOf(const QString& text) const;
    /// The item with a tooltip; an empty one where there is none.
    ReadItem withTooltip(const QString& tooltip) const;

    /// Expects that the items of a legend entry are at these points and nowhere else, to a fraction of a pixel.
    void expectPoints(const QString& legend, const std::vector<QPointF>& expected) const;
    /// Expects a point at a place, to less than a pixel.
    void expectNear(const QPointF& found, const QPointF& expected) const;
};

struct ReadPage {
    QString title, subtitle;
    QStringList headings, paragraphs, warnings;
    std::map<QString, ReadCell> facts;
    std::vector<ReadTable> tables;
    std::vector<ReadPlot> plots;

    /// The plot with a title; one without items, and a failure, where there is none.
    ReadPlot plot(const QString& title) const;
};

/// Reads a page. One that is not well-formed fails the test.
ReadPage readPage(const QString& html);

/// The pixels of an indexed PNG as colours, 0xRRGGBB, -1 for transparent ones, the top row first; empty for another
/// picture or a broken one.
std::vector<std::vector<int>> readPng(const QByteArray& file);

} // namespace page_test
