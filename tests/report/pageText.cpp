// A page as text.
#include "report/pageText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace page_test {

namespace {

QString text(double value) {
    return QString::number(value, 'g', 4);
}

/// A place in a plot; what is less than a thousandth of a pixel off 0 is 0.
QString text(const ReadPlot& plot, const QPointF& p) {
    const auto coordinate = [](double value, double perPixel) {
        return text(std::abs(value) < std::abs(perPixel) / 1000 ? 0.0 : value);
    };
    return '(' + coordinate(p.x(), plot.unitsPerPixel.x()) + ", " + coordinate(p.y(), plot.unitsPerPixel.y()) + ')';
}

QPointF meanOf(const std::vector<QPointF>& points) {
    QPointF sum;
    for (const QPointF& p : points) {
        sum += p / static_cast<double>(points.size());
    }
    return sum;
}

/// The mean of red, green and blue of colours, 0xRRGGBB; "none" where all are transparent.
QString meanColour(const std::vector<int>& colours) {
    std::array<double, 3> sums = {};
    int count = 0;
    for (const int colour : colours) {
        if (colour >= 0) {
            sums[0] += colour >> 16;
            sums[1] += colour >> 8 & 255;
            sums[2] += colour & 255;
            ++count;
        }
    }
    QStringList means;
    for (const double sum : sums) {
        means += text(sum / count);
    }
    return count > 0 ? means.join(',') : "none";
}

/// The size of a picture, how many cells have no value, and the mean colour of each quarter.
QString text(const std::vector<std::vector<int>>& pixels) {
    std::array<std::vector<int>, 4> quarters;
    std::ptrdiff_t missing = 0;
    for (std::size_t row = 0; row < pixels.size(); ++row) {
        for (std::size_t column = 0; column < pixels[row].size(); ++column) {
            const std::size_t lower = row < pixels.size() / 2 ? 0 : 2;
            quarters[lower + (column < pixels[row].size() / 2 ? 0 : 1)].push_back(pixels[row][column]);
        }
        missing += std::count(pixels[row].begin(), pixels[row].end(), -1);
    }
    return QStringLiteral("picture of %1 rows of %2, %3 without a value, quarters %4 %5 / %6 %7")
        .arg(pixels.size())
        .arg(pixels.empty() ? 0 : pixels.front().size())
        .arg(missing)
        .arg(meanColour(quarters[0]), meanColour(quarters[1]), meanColour(quarters[2]), meanColour(quarters[3]));
}

QString text(const ReadPlot& plot, const ReadItem& item) {
    QString line = "  " + item.kind + ' ' + item.colour;
    if (item.size > 0) {
        line += " size " + text(item.size);
    }
    if (!item.points.empty()) {
        line += ": " + text(plot, item.points.front());
    }
    if (item.points.size() > 1) {
        line += " to " + text(plot, item.points.back());
    }
    if (item.points.size() > 2) {
        line += QStringLiteral(", %1 points in %2 parts, mean ").arg(item.points.size()).arg(item.runs) +
                text(plot, meanOf(item.points));
    }
    if (!item.png.isEmpty()) {
        line += ", " + text(readPng(item.png));
    }
    return line + (item.tooltip.isEmpty() ? QString() : "  \"" + item.tooltip + '"') + '\n';
}

QString text(const ReadPlot& plot) {
    QString lines = "plot: " + plot.title + "\n  x from " + text(plot.left) + " to " + text(plot.right) + ", " +
                    plot.xLabel + "; y: " + plot.yLabel + '\n';
    for (const auto& [entry, sample] : plot.legend) {
        lines += "  legend: " + entry + " = " + sample.first + ' ' + sample.second + '\n';
    }
    for (const auto& [words, place] : plot.texts) {
        lines += "  text: " + words + " at " + text(plot, place) + '\n';
    }
    for (const ReadItem& item : plot.items) {
        lines += text(plot, item);
    }
    return lines + "  " + plot.caption + '\n';
}

QString text(const ReadTable& table) {
    QString lines = "table: " + table.headers.join(" | ") + '\n';
    for (const std::vector<ReadCell>& row : table.rows) {
        QStringList cells;
        for (const ReadCell& cell : row) {
            cells += cell.text + (cell.tone.isEmpty() ? QString() : " <" + cell.tone + '>');
        }
        lines += "  " + cells.join(" | ") + '\n';
    }
    return lines;
}

} // namespace

QString textOf(const ReadPage& page) {
    QString lines = "page: " + page.title + '\n';
    for (const QString& heading : page.headings) {
        lines += "heading: " + heading + '\n';
    }
    for (const QString& paragraph : page.paragraphs) {
        lines += paragraph + '\n';
    }
    for (const QString& warning : page.warnings) {
        lines += "warning: " + warning + '\n';
    }
    for (const auto& [label, value] : page.facts) {
        lines +=
            "fact: " + label + ": " + value.text + (value.tone.isEmpty() ? QString() : " <" + value.tone + '>') + '\n';
    }
    for (const ReadTable& table : page.tables) {
        lines += text(table);
    }
    for (const ReadPlot& plot : page.plots) {
        lines += text(plot);
    }
    return lines;
}

} // namespace page_test
