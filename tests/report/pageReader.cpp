// Reads pages as a reader does.
#include "report/pageReader.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamReader>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace page_test {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

/// The colour of a stroke with its dashes, or that of an area.
QString colourOf(const QXmlStreamAttributes& a) {
    const QString dashes = a.value("stroke-dasharray").toString();
    return (a.hasAttribute("stroke") ? a.value("stroke") : a.value("fill")).toString() +
           (dashes.isEmpty() ? QString() : ' ' + dashes);
}

double number(const QXmlStreamAttributes& attributes, const char* name) {
    return attributes.value(QLatin1String(name)).toDouble();
}

/// Values over pixels, from the ticks of an axis. With fewer than two the unit is the pixel.
struct Scale {
    std::vector<std::pair<double, double>> ticks; ///< pixel and value

    double perPixel() const {
        return ticks.size() < 2
                   ? 1.0
                   : (ticks.back().second - ticks.front().second) / (ticks.back().first - ticks.front().first);
    }
    double at(double pixel) const {
        return ticks.size() < 2 ? pixel : ticks.front().second + (pixel - ticks.front().first) * perPixel();
    }
};

/// Reads one element <svg>.
class SvgReader {
public:
    explicit SvgReader(QXmlStreamReader& xml) : xml_(xml) {}

    ReadPlot read() {
        plot_.title = xml_.attributes().value("aria-label").toString();
        while (xml_.readNextStartElement()) {
            const QXmlStreamAttributes a = xml_.attributes();
            if (xml_.name() == QLatin1String("rect")) {
                if (number(a, "width") > frame_.second - frame_.first) { // not that of a scale of colours
                    frame_ = {number(a, "x"), number(a, "x") + number(a, "width")};
                }
                xml_.skipCurrentElement();
            } else if (xml_.name() == QLatin1String("g") && a.hasAttribute("clip-path")) {
                plot_.unitsPerPixel = {x_.perPixel(), y_.perPixel()};
                isBehindAxes_ = true;
                while (xml_.readNextStartElement()) {
                    readItem();
                }
            } else if (xml_.name() == QLatin1String("g")) {
                readLegend();
            } else if (xml_.name() == QLatin1String("text")) {
                readText(a);
            } else {
                xml_.skipCurrentElement();
            }
        }
        plot_.left = x_.at(frame_.first);
        plot_.right = x_.at(frame_.second);
        return plot_;
    }

private:
    QPointF at(double x, double y) const { return {x_.at(x), y_.at(y)}; }

    void readText(const QXmlStreamAttributes& a) {
        const QString text = xml_.readElementText();
        const bool isCentred = a.value("text-anchor") == QLatin1String("middle");
        if (a.value("class") == QLatin1String("axis")) {
            (a.hasAttribute("transform") ? plot_.yLabel : isCentred ? plot_.xLabel : plot_.legend[text].first) = text;
        } else if (isBehindAxes_) {
            const double middle = isCentred ? 0.35 * number(a, "font-size") : 4.0; // the base line is below it
            plot_.texts.emplace_back(text, at(number(a, "x"), number(a, "y") - middle));
        } else if (isCentred) {
            x_.ticks.emplace_back(number(a, "x"), text.toDouble());
        } else {
            y_.ticks.emplace_back(number(a, "y") - 4.0, text.toDouble());
        }
    }

    void readItem() {
        const QXmlStreamAttributes a = xml_.attributes();
        ReadItem item;
        item.kind = kindOf(a);
        item.colour = colourOf(a);
        item.size = number(a, "stroke-width");
        if (item.kind == QLatin1String("mark")) {
            item.points = {at(number(a, "cx"), number(a, "cy"))};
        } else if (a.hasAttribute("d")) {
            static const QRegularExpression step("([ML])(-?[\\d.]+) (-?[\\d.]+)");
            for (const QRegularExpressionMatch& match : step.globalMatch(a.value("d").toString())) {
                item.points.push_back(at(match.captured(2).toDouble(), match.captured(3).toDouble()));
                item.runs += match.captured(1) == QLatin1String("M");
            }
        } else {
            const double left = number(a, "x"), top = number(a, "y");
            item.points = {at(left, top + number(a, "height")), at(left + number(a, "width"), top)};
        }
        const QString data = QStringLiteral("data:image/png;base64,");
        item.png = QByteArray::fromBase64(a.value("href").mid(data.size()).toLatin1());
        if (xml_.readNextStartElement()) {
            item.tooltip = xml_.readElementText();
            xml_.skipCurrentElement();
        }
        plot_.items.push_back(item);
    }

    QString kindOf(const QXmlStreamAttributes& a) const {
        return xml_.name() == QLatin1String("circle")                            ? "mark"
               : xml_.name() == QLatin1String("image")                           ? "image"
               : a.value("stroke-linecap") == QLatin1String("round")             ? "dots"
               : xml_.name() == QLatin1String("path")                            ? "line"
               : a.hasAttribute("fill-opacity") && number(a, "fill-opacity") < 1 ? "band"
                                                                                 : "box";
    }

    void readLegend() {
        std::pair<QString, QString> sample;
        while (xml_.readNextStartElement()) {
            if (xml_.name() == QLatin1String("text")) {
                plot_.legend[xml_.readElementText()] = sample;
            } else {
                const QXmlStreamAttributes a = xml_.attributes();
                sample = {kindOf(a), colourOf(a)};
                xml_.skipCurrentElement();
            }
        }
    }

    QXmlStreamReader& xml_;
    ReadPlot plot_;
    Scale x_, y_;
    std::pair<double, double> frame_ = {0.0, 0.0}; ///< left and right end, pixels
    bool isBehindAxes_ = false;
};

/// The distance of two points in pixels.
double pixelsBetween(const ReadPlot& plot, const QPointF& a, const QPointF& b) {
    return std::hypot((a.x() - b.x()) / plot.unitsPerPixel.x(), (a.y() - b.y()) / plot.unitsPerPixel.y());
}

double pixelsToNearest(const ReadPlot& plot, const QPointF& point, const std::vector<QPointF>& points) {
    double nearest = std::numeric_limits<double>::infinity();
    for (const QPointF& other : points) {
        nearest = std::min(nearest, pixelsBetween(plot, point, other));
    }
    return nearest;
}

ReadTable readTable(QXmlStreamReader& xml) {
    ReadTable table;
    while (!(xml.readNext() == QXmlStreamReader::EndElement && xml.name() == QLatin1String("table")) && !xml.atEnd()) {
        if (!xml.isStartElement()) {
            continue;
        }
        const QString tone = xml.attributes().value("class").toString().remove("text").trimmed();
        if (xml.name() == QLatin1String("th")) {
            table.headers += xml.readElementText();
        } else if (xml.name() == QLatin1String("tr") && !table.headers.isEmpty()) {
            table.rows.emplace_back();
        } else if (xml.name() == QLatin1String("td")) {
            table.rows.back().push_back({xml.readElementText(), tone});
        }
    }
    return table;
}

} // namespace

QString ReadTable::row(size_t index) const {
    QStringList texts;
    for (const ReadCell& cell : rows.at(index)) {
        texts += cell.text;
    }
    return texts.join('|');
}

ReadCell ReadTable::at(size_t row, const QString& header) const {
    const qsizetype column = headers.indexOf(header);
    if (column < 0 || row >= rows.size()) {
        ADD_FAILURE() << "no cell " << row << ' ' << header.toStdString() << " in " << headers.join('|').toStdString();
        return {};
    }
    return rows[row].at(static_cast<size_t>(column));
}

std::vector<const ReadItem*> ReadPlot::shownAs(const QString& entry) const {
    std::vector<const ReadItem*> found;
    const auto sample = legend.find(entry);
    for (const ReadItem& item : items) {
        if (sample != legend.end() && sample->second == std::pair(item.kind, item.colour)) {
            found.push_back(&item);
        }
    }
    return found;
}

QPointF ReadPlot::placeOf(const QString& text) const {
    const auto found = std::find_if(texts.begin(), texts.end(), [&](const auto& t) { return t.first == text; });
    return found == texts.end() ? QPointF(kNone, kNone) : found->second;
}

ReadItem ReadPlot::withTooltip(const QString& tooltip) const {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const auto& item) { return item.tooltip == tooltip; });
    return found == items.end() ? ReadItem{"none", {}, {}, {{kNone, kNone}, {kNone, kNone}}, 0, 0.0, {}} : *found;
}

void ReadPlot::expectPoints(const QString& entry, const std::vector<QPointF>& expected) const {
    SCOPED_TRACE(title.toStdString() + ": " + entry.toStdString());
    constexpr double kRounding = 0.35; // pixels: those of coordinates and ticks have one decimal
    std::vector<QPointF> shown;
    double spot = 0.5; // what is closer together than this is drawn once
    for (const ReadItem* const item : shownAs(entry)) {
        shown.insert(shown.end(), item->points.begin(), item->points.end());
        spot = std::max(spot, item->kind == QLatin1String("dots") ? item->size / 2 : 0.0);
    }
    EXPECT_EQ(shown.empty(), expected.empty());
    for (const QPointF& p : shown) {
        ASSERT_LE(pixelsToNearest(*this, p, expected), kRounding) << "shown at " << p.x() << ", " << p.y();
    }
    for (const QPointF& p : expected) {
        ASSERT_LE(pixelsToNearest(*this, p, shown), kRounding + spot * std::sqrt(2.0))
            << "not shown: " << p.x() << ", " << p.y();
    }
}

void ReadPlot::expectNear(const QPointF& found, const QPointF& expected) const {
    EXPECT_LE(pixelsBetween(*this, found, expected), 0.75)
        << title.toStdString() << ": " << found.x() << ", " << found.y() << " for " << expected.x() << ", "
        << expected.y();
}

ReadPlot ReadPage::plot(const QString& title) const {
    for (const ReadPlot& plot : plots) {
        if (plot.title == title) {
            return plot;
        }
    }
    ADD_FAILURE() << "no plot " << title.toStdString();
    return {};
}

ReadPage readPage(const QString& html) {
    ReadPage page;
    const qsizetype from = html.indexOf("<main>"), to = html.indexOf("</main>");
    QXmlStreamReader xml(html.mid(from, to - from) + "</main>");
    QString label;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QStringView name = xml.name();
        const QString kind = xml.attributes().value("class").toString();
        if (name == QLatin1String("h1")) {
            page.title = xml.readElementText();
        } else if (name == QLatin1String("h2")) {
            page.headings += xml.readElementText();
        } else if (name == QLatin1String("p")) {
            const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            (kind == QLatin1String("warning") || kind == QLatin1String("failure") ? page.warnings : page.paragraphs) +=
                text;
        } else if (name == QLatin1String("dt")) {
            label = xml.readElementText();
        } else if (name == QLatin1String("dd")) {
            page.facts[label] = {xml.readElementText(), kind};
        } else if (name == QLatin1String("table")) {
            page.tables.push_back(readTable(xml));
        } else if (name == QLatin1String("svg")) {
            page.plots.push_back(SvgReader(xml).read());
        } else if (name == QLatin1String("figcaption")) {
            page.plots.back().caption = xml.readElementText();
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    page.subtitle = page.paragraphs.value(0);
    return page;
}

std::vector<std::vector<int>> readPng(const QByteArray& file) {
    const auto numberAt = [&file](qsizetype at) {
        quint32 value = 0;
        for (int i = 0; i < 4; ++i) {
            value = value << 8 | static_cast<quint8>(file.at(at + i));
        }
        return value;
    };
    std::map<QByteArray, QByteArray> chunks;
    for (qsizetype at = 8; at + 12 <= file.size(); at += 12 + numberAt(at)) {
        chunks[file.mid(at + 4, 4)] = file.mid(at + 8, numberAt(at));
    }
    const QByteArray& header = chunks["IHDR"];
    if (header.mid(8) != QByteArray("\x08\x03\0\0\0", 5)) { // 8 bits, indexed
        return {};
    }
    const quint32 width = numberAt(16), height = numberAt(20);
    const quint32 length = (width + 1) * height;
    QByteArray packed(4, '\0'); // qUncompress() wants the length before the stream
    for (int i = 0; i < 4; ++i) {
        packed[i] = static_cast<char>(length >> (24 - 8 * i));
    }
    const QByteArray rows = qUncompress(packed + chunks["IDAT"]);
    if (rows.size() != length || chunks["tRNS"] != QByteArray(1, '\0')) {
        return {};
    }
    std::vector<std::vector<int>> pixels(height, std::vector<int>(width));
    for (quint32 row = 0; row < height; ++row) {
        for (quint32 column = 0; column < width; ++column) {
            const auto entry = static_cast<quint8>(rows.at(qsizetype{row} * (width + 1) + 1 + column));
            int colour = 0;
            for (int i = 0; i < 3; ++i) {
                colour = colour << 8 | static_cast<quint8>(chunks["PLTE"].at(qsizetype{3} * entry + i));
            }
            pixels[row][column] = entry == 0 ? -1 : colour;
        }
    }
    return pixels;
}

} // namespace page_test
