// One plot as inline SVG.
#include "report/elements/plot.h"

#include "report/elements/labelPlaces.h"
#include "report/elements/svg.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace kxreport {

namespace {

// Margins of the area, pixels. The legend is in the top margin.
constexpr int kLeft = 72;
constexpr int kRight = 16;
constexpr int kTop = 36;
constexpr int kBottom = 46;

constexpr double kLegendSize = 11; // pixels
constexpr int kLegendRow = 15;
constexpr double kTickSize = 11; // pixels

constexpr double kSpot = 0.5; ///< pixels; points closer than this look like one
constexpr double kFarOutside = 1e5; ///< pixels; renderers lose precision further out

double bounded(double pixels) {
    return std::clamp(pixels, -kFarOutside, kFarOutside);
}

bool isFinite(const QPointF& p) {
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

QString strokeAttributes(const Stroke& stroke) {
    QString text = QStringLiteral("stroke=\"%1\" stroke-width=\"%2\"")
                       .arg(QLatin1String(stroke.colour), QString::number(stroke.width));
    if (*stroke.dashes != '\0') {
        text += QStringLiteral(" stroke-dasharray=\"%1\"").arg(QLatin1String(stroke.dashes));
    }
    return text;
}

QString tooltipElement(const QString& tooltip) {
    return tooltip.isEmpty() ? QString() : QStringLiteral("<title>%1</title>").arg(escaped(tooltip));
}

} // namespace

Plot::Plot(QString id, QString title, int width, int height, Axis x, Axis y)
    : id_(std::move(id)), title_(std::move(title)), width_(width), height_(height), right_(kRight), x_(std::move(x)),
      y_(std::move(y)) {
    if (x_.range.isEmpty() || x_.range.size() <= 0.0) {
        x_.range = x_.range.padded(0.0);
    }
    if (y_.range.isEmpty() || y_.range.size() <= 0.0) {
        y_.range = y_.range.padded(0.0);
    }
}

double Plot::areaWidth(int width) {
    return width - kLeft - kRight;
}

double Plot::areaHeight(int height) {
    return height - kTop - kBottom;
}

double Plot::areaWidth() const {
    return width_ - kLeft - right_;
}

double Plot::areaHeight() const {
    return areaHeight(height_);
}

double Plot::pixelX(double x) const {
    return bounded(kLeft + (x - x_.range.min) / x_.range.size() * areaWidth());
}

double Plot::pixelY(double y) const {
    return bounded(kTop + (y_.range.max - y) / y_.range.size() * areaHeight());
}

void Plot::addLine(const Points& points, const Stroke& stroke, const QString& legend) {
    QString path;
    bool isOpen = false;
    QPointF last;
    for (const QPointF& p : points) {
        if (!isFinite(p)) {
            isOpen = false;
            continue;
        }
        const QPointF at(pixelX(p.x()), pixelY(p.y()));
        if (isOpen && std::abs(at.x() - last.x()) < kSpot && std::abs(at.y() - last.y()) < kSpot) {
            continue;
        }
        if (isOpen) {
            segments_.emplace_back(last, at);
        }
        path += QLatin1Char(isOpen ? 'L' : 'M') + coordinate(at.x()) + QLatin1Char(' ') + coordinate(at.y());
        isOpen = true;
        last = at;
    }
    body_ += QStringLiteral("<path d=\"%1\" fill=\"none\" stroke-linejoin=\"round\" %2/>\n")
                 .arg(path, strokeAttributes(stroke));
    addLegendLine(legend, stroke);
}

void Plot::addDots(const Points& points, const char* colour, double diameter, const QString& legend) {
    QString path;
    std::unordered_set<qint64> taken;
    const double spot = std::max(kSpot, diameter / 2);
    for (const QPointF& p : points) {
        if (!isFinite(p)) {
            continue;
        }
        const double x = pixelX(p.x());
        const double y = pixelY(p.y());
        if (x < 0.0 || y < 0.0 || x > width_ || y > height_) {
            continue;
        }
        const qint64 cell = static_cast<qint64>(x / spot) * 1'000'000 + static_cast<qint64>(y / spot);
        if (taken.insert(cell).second) {
            path += QLatin1Char('M') + coordinate(x) + QLatin1Char(' ') + coordinate(y) + QLatin1String("h0");
        }
    }
    const Stroke stroke{colour, diameter, ""};
    body_ += QStringLiteral("<path d=\"%1\" fill=\"none\" stroke-linecap=\"round\" %2/>\n")
                 .arg(path, strokeAttributes(stroke));
    if (!legend.isEmpty()) {
        legend_.push_back({legend, QStringLiteral("<path d=\"M5 0h0M11 0h0M17 0h0\" stroke-linecap=\"round\" %1/>")
                                       .arg(strokeAttributes({colour, std::max(diameter, 3.0), ""}))});
    }
}

void Plot::addMark(QPointF point, const char* colour, double radius, const QString& tooltip) {
    if (isFinite(point)) {
        body_ += QStringLiteral("<circle cx=\"%1\" cy=\"%2\" r=\"%3\" fill=\"%4\">%5</circle>\n")
                     .arg(coordinate(pixelX(point.x())), coordinate(pixelY(point.y())), QString::number(radius),
                          QLatin1String(colour), tooltipElement(tooltip));
    }
}

void Plot::addBand(double from, double to, const char* colour, const QString& legend) {
    const double top = pixelY(std::max(from, to));
    const double height = pixelY(std::min(from, to)) - top;
    body_ += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"%5\" fill-opacity=\"0.15\"/>\n")
                 .arg(kLeft)
                 .arg(coordinate(top), coordinate(areaWidth()), coordinate(height), QLatin1String(colour));
    addLegendBox(legend, colour, 0.15);
}

void Plot::addLevel(double y, const Stroke& stroke, const QString& legend) {
    addStraight(0.0, y, stroke, legend);
}

void Plot::addStraight(double k, double b, const Stroke& stroke, const QString& legend) {
    const double from = x_.range.min;
    const double to = x_.range.max;
    addLine({{from, k * from + b}, {to, k * to + b}}, stroke, legend);
}

void Plot::addBox(double fromX, double toX, double fromY, double toY, const char* colour, const QString& tooltip) {
    constexpr double kThinnest = 2.0;
    const double left = pixelX(fromX);
    const double top = pixelY(toY);
    const double width = std::max(pixelX(toX) - left, kThinnest);
    const double height = std::max(pixelY(fromY) - top, kThinnest);
    body_ += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"%5\">%6</rect>\n")
                 .arg(coordinate(left), coordinate(top), coordinate(width), coordinate(height), QLatin1String(colour),
                      tooltipElement(tooltip));
}

void Plot::addImage(double fromX, double toX, double fromY, double toY, const PaletteImage& image, bool areHoles) {
    const double left = pixelX(fromX);
    const double top = pixelY(toY);
    if (!areHoles) {
        behind_ += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"#ffffff\"/>\n")
                       .arg(coordinate(left), coordinate(top), coordinate(pixelX(toX) - left),
                            coordinate(pixelY(fromY) - top));
    } else if (std::find(image.pixels.begin(), image.pixels.end(), 0) != image.pixels.end()) {
        addMissing(left, top, pixelX(toX) - left, pixelY(fromY) - top);
    }
    body_ += QStringLiteral("<image x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" preserveAspectRatio=\"none\" "
                            "image-rendering=\"pixelated\" href=\"data:image/png;base64,%5\"/>\n")
                 .arg(coordinate(left), coordinate(top), coordinate(pixelX(toX) - left),
                      coordinate(pixelY(fromY) - top), QLatin1String(png(image).toBase64()));
}

/// A hatch that no colour of a height resembles, behind the transparent pixels of an image.
void Plot::addMissing(double left, double top, double width, double height) {
    const QString hatch = escaped(QStringLiteral("missing-") + id_);
    behind_ += QStringLiteral("<pattern id=\"%1\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\">"
                              "<path d=\"M0 0H6V6H0Z\" fill=\"#d9c8ee\"/><path d=\"M-1 1L1 -1M0 6L6 0M5 7L7 5\" "
                              "stroke=\"#8e6bbf\"/></pattern>\n"
                              "<rect x=\"%2\" y=\"%3\" width=\"%4\" height=\"%5\" fill=\"url(#%1)\" "
                              "clip-path=\"url(#%6)\"/>\n")
                   .arg(hatch, coordinate(left), coordinate(top), coordinate(width), coordinate(height),
                        escaped(QStringLiteral("clip-") + id_));
    legend_.push_back({QStringLiteral("no height"),
                       QStringLiteral("<rect y=\"-5\" width=\"22\" height=\"10\" fill=\"url(#%1)\"/>").arg(hatch)});
}

void Plot::addColourScale(const Range& heights, const QString& label, ColourMap map) {
    constexpr double kGap = 14;
    constexpr double kBar = 14;
    constexpr int kStops = 20;
    constexpr double kPixelsPerTick = 45;
    keepRightFree(kColourScaleWidth);
    const double left = width_ - right_ + kGap;
    const QString gradient = escaped(QStringLiteral("scale-") + id_);
    labels_ += QStringLiteral("<linearGradient id=\"%1\" x1=\"0\" y1=\"1\" x2=\"0\" y2=\"0\">").arg(gradient);
    for (int i = 0; i <= kStops; ++i) {
        const double part = static_cast<double>(i) / kStops;
        labels_ += QStringLiteral("<stop offset=\"%1\" stop-color=\"%2\"/>")
                       .arg(QString::number(part), colourText(mapColour(map, part)));
    }
    labels_ +=
        QStringLiteral("</linearGradient>\n<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" "
                       "fill=\"url(#%5)\" stroke=\"var(--frame)\"/>\n")
            .arg(coordinate(left), QString::number(kTop), QString::number(kBar), coordinate(areaHeight()), gradient);
    const Range shown = heights.isEmpty() || heights.size() <= 0.0 ? heights.padded(0.0) : heights;
    const Ticks ticks = makeTicks(shown, std::max(2, static_cast<int>(areaHeight() / kPixelsPerTick)));
    for (const double value : ticks.at) {
        const double at = kTop + (shown.max - value) / shown.size() * areaHeight();
        labels_ += QStringLiteral("<path d=\"M%1 %2h4\" stroke=\"var(--frame)\"/><text x=\"%3\" y=\"%4\">%5</text>\n")
                       .arg(coordinate(left + kBar), coordinate(at), coordinate(left + kBar + 6), coordinate(at + 4),
                            numberText(value, ticks.decimals));
    }
    labels_ += QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"end\" class=\"axis\">%3</text>\n")
                   .arg(width_ - 2)
                   .arg(kTop - 12)
                   .arg(escaped(label));
}

void Plot::keepRightFree(double pixels) {
    right_ = kRight + pixels;
}

void Plot::addText(QPointF point, const QString& text, const char* colour, int size) {
    texts_.push_back({{pixelX(point.x()), pixelY(point.y())}, text, colour, size});
}

/// A text centred at a place in pixels.
QString Plot::textElement(const PlotText& text, const QPointF& at) {
    return QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"middle\" font-size=\"%3\" fill=\"%4\">%5</text>\n")
        .arg(coordinate(at.x()), coordinate(at.y() + text.size * 0.35))
        .arg(text.size)
        .arg(QLatin1String(text.colour), escaped(text.text));
}

QString Plot::placedTexts() const {
    constexpr double kHeight = 1.3; // of a line of text, in its size
    LabelPlaces places({static_cast<double>(kLeft), static_cast<double>(kTop), areaWidth(), areaHeight()});
    for (const auto& [from, to] : segments_) {
        places.addLine(from, to);
    }
    QString elements;
    for (const PlotText& text : texts_) {
        elements +=
            textElement(text, places.place(text.at, {textWidth(text.text, text.size) + 4, kHeight * text.size}));
    }
    return elements;
}

void Plot::addBadge(QPointF point, const QString& text) {
    constexpr int kSize = 11;
    labels_ += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"16\" rx=\"8\" fill=\"var(--paper)\" "
                              "fill-opacity=\"0.9\"/>\n")
                   .arg(coordinate(pixelX(point.x()) - 5 - 3.5 * static_cast<double>(text.size())),
                        coordinate(pixelY(point.y()) - 8), coordinate(10 + 7.0 * static_cast<double>(text.size())));
    const PlotText inside{{pixelX(point.x()), pixelY(point.y())}, text, colour::kInk, kSize};
    labels_ += textElement(inside, inside.at);
}

void Plot::addRowLabel(double y, const QString& text, const char* colour) {
    labels_ += QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"end\" font-weight=\"600\" fill=\"%3\">%4</text>\n")
                   .arg(kLeft - 8)
                   .arg(coordinate(pixelY(y) + 4), QLatin1String(colour), escaped(text));
}

void Plot::addLegend(const QString& text, const char* colour) {
    addLegendBox(text, colour, 1.0);
}

void Plot::addLegendMark(const QString& text, const char* colour) {
    legend_.push_back({text, QStringLiteral("<circle cx=\"14\" r=\"4\" fill=\"%1\"/>").arg(QLatin1String(colour))});
}

void Plot::addLegendLine(const QString& text, const Stroke& stroke) {
    if (!text.isEmpty()) {
        legend_.push_back({text, QStringLiteral("<path d=\"M0 0h22\" %1/>").arg(strokeAttributes(stroke))});
    }
}

void Plot::addLegendBox(const QString& text, const char* colour, double opacity) {
    if (!text.isEmpty()) {
        legend_.push_back({text, QStringLiteral("<rect y=\"-5\" width=\"22\" height=\"10\" fill=\"%1\" "
                                                "fill-opacity=\"%2\"/>")
                                     .arg(QLatin1String(colour))
                                     .arg(opacity)});
    }
}

QString Plot::axes() const {
    constexpr double kPixelsPerTickX = 90;
    constexpr double kPixelsPerTickY = 45;
    const double bottom = kTop + areaHeight();
    QString grid;
    QString text;
    if (x_.hasTicks) {
        const Ticks ticks =
            makeTicks(x_.range, static_cast<int>(areaWidth() / kPixelsPerTickX), x_.isWhole ? 1.0 : 0.0);
        for (const double value : ticks.at) {
            const QString at = coordinate(pixelX(value));
            grid += QStringLiteral("M%1 %2V%3").arg(at).arg(kTop).arg(coordinate(bottom));
            const QString label = numberText(value, ticks.decimals);
            const bool isInside = pixelX(value) + textWidth(label, kTickSize) / 2 <= width_;
            text += QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"%3\">%4</text>\n")
                        .arg(at, coordinate(bottom + 17), QLatin1String(isInside ? "middle" : "end"), label);
        }
    }
    if (y_.hasTicks) {
        const Ticks ticks =
            makeTicks(y_.range, std::max(2, static_cast<int>(areaHeight() / kPixelsPerTickY)), y_.isWhole ? 1.0 : 0.0);
        for (const double value : ticks.at) {
            const double at = pixelY(value);
            grid += QStringLiteral("M%1 %2H%3").arg(kLeft).arg(coordinate(at), coordinate(kLeft + areaWidth()));
            text += QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"end\">%3</text>\n")
                        .arg(kLeft - 7)
                        .arg(coordinate(at + 4), numberText(value, ticks.decimals));
        }
    }
    text += QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"middle\" class=\"axis\">%3</text>\n")
                .arg(coordinate(kLeft + areaWidth() / 2), coordinate(height_ - 8), escaped(x_.label));
    text += QStringLiteral("<text transform=\"translate(15 %1) rotate(-90)\" text-anchor=\"middle\" "
                           "class=\"axis\">%2</text>\n")
                .arg(coordinate(kTop + areaHeight() / 2), escaped(y_.label));
    return QStringLiteral("<path d=\"%1\" stroke=\"var(--grid)\" fill=\"none\"/>\n").arg(grid) + text;
}

std::vector<Plot::LegendPlace> Plot::legendPlaces() const {
    constexpr double kSampleAndGap = 40;
    const double end = width_ - right_;
    std::vector<LegendPlace> places;
    LegendPlace next{kLeft, 0};
    for (const LegendEntry& entry : legend_) {
        const double width = std::min(kSampleAndGap + textWidth(entry.text, kLegendSize), end - kLeft);
        if (next.x > kLeft && next.x + width > end) {
            next = {kLeft, next.row + 1};
        }
        places.push_back(next);
        next.x += width;
    }
    return places;
}

QString Plot::legend(const std::vector<LegendPlace>& places) const {
    constexpr double kSample = 27;
    const double end = width_ - right_;
    const double lastRow = kTop - (places.empty() || places.back().row == 0 ? 17 : 10);
    QString text;
    for (size_t i = 0; i < legend_.size(); ++i) {
        const QString& words = legend_[i].text;
        const QString shown = cutToWidth(words, kLegendSize, end - places[i].x - kSample);
        const QString whole = shown == words ? QString() : QStringLiteral("<title>%1</title>").arg(escaped(words));
        text +=
            QStringLiteral("<g class=\"legend\" transform=\"translate(%1 %2)\" fill=\"none\">%3<text x=\"27\" "
                           "y=\"4\" fill=\"var(--ink)\">%4%5</text></g>\n")
                .arg(coordinate(places[i].x), coordinate(lastRow - kLegendRow * (places.back().row - places[i].row)),
                     legend_[i].sample, whole, escaped(shown));
    }
    return text;
}

QString Plot::svg() const {
    const QString area = QStringLiteral("x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\"")
                             .arg(kLeft)
                             .arg(kTop)
                             .arg(coordinate(areaWidth()), coordinate(areaHeight()));
    const QString clip = escaped(QStringLiteral("clip-") + id_);
    const std::vector<LegendPlace> places = legendPlaces();
    // Rows of the legend that the top margin has no room for make the picture higher.
    const int above = places.empty() ? 0 : std::max(0, places.back().row - 1) * kLegendRow;
    constexpr int kBroad = 700; // pixels; such plots are hard to read on a narrow screen unless they are scrolled
    QString text = QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 %1 %2 %3\"%4 role=\"img\" "
                                  "aria-label=\"%5\">\n")
                       .arg(-above)
                       .arg(width_)
                       .arg(height_ + above)
                       .arg(QLatin1String(width_ > kBroad ? " class=\"broad\"" : ""), escaped(title_));
    text +=
        QStringLiteral("<clipPath id=\"%1\"><rect %2/></clipPath>\n<rect %2 fill=\"var(--paper)\"/>\n").arg(clip, area);
    text += axes() + behind_;
    text += QStringLiteral("<g clip-path=\"url(#%1)\">\n").arg(clip) + body_ + QStringLiteral("</g>\n");
    text += QStringLiteral("<rect %1 fill=\"none\" stroke=\"var(--frame)\"/>\n").arg(area);
    return text + labels_ + placedTexts() + legend(places) + QStringLiteral("</svg>\n");
}

} // namespace kxreport
