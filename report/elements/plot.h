// One plot as inline SVG.
#pragma once

#include "report/elements/axis.h"
#include "report/elements/heatMap.h"

#include <QtCore/QPointF>
#include <QtCore/QString>

#include <utility>
#include <vector>

namespace kxreport {

using Points = std::vector<QPointF>;

struct Stroke {
    const char* colour = "var(--black)";
    double width = 1.5; ///< pixels
    const char* dashes = ""; ///< as stroke-dasharray, empty for a solid line
};

/// A plot with axes, grid and legend. Items are drawn in the order in which they are added; an item with an empty legend
/// text has no legend entry. All texts are escaped here.
class Plot {
public:
    /// @param id unique on the page
    /// @param title read by screen readers
    Plot(QString id, QString title, int width, int height, Axis x, Axis y);

    /// The range of the x axis.
    const Range& range() const { return x_.range; }

    /// The area inside the axes in pixels.
    double areaWidth() const;
    double areaHeight() const;
    /// The width of a colour scale, pixels.
    static constexpr double kColourScaleWidth = 74;
    /// The area of a plot of this size, for choosing the ranges before it is made.
    static double areaWidth(int width);
    static double areaHeight(int height);

    /// A line through the points. Points less than half a pixel apart are drawn once; a point that is not finite
    /// interrupts the line.
    void addLine(const Points& points, const Stroke& stroke, const QString& legend = {});
    /// A dot for each point; dots that coincide are drawn once.
    void addDots(const Points& points, const char* colour, double diameter, const QString& legend = {});
    /// A round mark with a tooltip.
    void addMark(QPointF point, const char* colour, double radius, const QString& tooltip);
    /// A horizontal band across the plot.
    void addBand(double from, double to, const char* colour, const QString& legend = {});
    /// A horizontal line across the plot.
    void addLevel(double y, const Stroke& stroke, const QString& legend = {});
    /// The straight line y = k * x + b across the plot.
    void addStraight(double k, double b, const Stroke& stroke, const QString& legend = {});
    /// A filled box, never thinner than 2 pixels, with a tooltip.
    void addBox(double fromX, double toX, double fromY, double toY, const char* colour, const QString& tooltip);
    /// A picture that fills a box, its top row at `toY`. Its pixels stay sharp squares.
    /// @param areHoles whether transparent pixels are missing values, which are hatched; else they are white
    void addImage(double fromX, double toX, double fromY, double toY, const PaletteImage& image, bool areHoles = true);
    /// The colours of heights beside the plot, with ticks. The plot gets narrower: add it before all else.
    void addColourScale(const Range& heights, const QString& label, ColourMap map = ColourMap::Heights);
    /// Widens the right margin by `pixels`, which aligns a plot with others that have a colour scale.
    void keepRightFree(double pixels);
    /// Text centred at a point, or beside it where lines or other texts would cross it.
    void addText(QPointF point, const QString& text, const char* colour, int size = 11);
    /// Text centred at a point on a white disc, readable on any colour.
    void addBadge(QPointF point, const QString& text);
    /// Text beside the y axis, for plots whose rows have names.
    void addRowLabel(double y, const QString& text, const char* colour);
    /// Legend entries for boxes and marks, which have none of their own.
    void addLegend(const QString& text, const char* colour);
    void addLegendMark(const QString& text, const char* colour);

    /// The finished element.
    QString svg() const;

private:
    struct LegendEntry {
        QString text;
        QString sample; ///< SVG in a field of 22 x 10 pixels
    };

    struct PlotText {
        QPointF at; ///< pixels
        QString text;
        const char* colour;
        int size; ///< pixels
    };

    struct LegendPlace {
        double x; ///< pixels
        int row; ///< from the top
    };

    double pixelX(double x) const;
    double pixelY(double y) const;
    QString axes() const;
    std::vector<LegendPlace> legendPlaces() const;
    QString legend(const std::vector<LegendPlace>& places) const;
    static QString textElement(const PlotText& text, const QPointF& at);
    QString placedTexts() const;
    void addMissing(double left, double top, double width, double height);
    void addLegendLine(const QString& text, const Stroke& stroke);
    void addLegendBox(const QString& text, const char* colour, double opacity);

    QString id_;
    QString title_;
    int width_;
    int height_;
    double right_; ///< margin on the right of the area, pixels
    Axis x_;
    Axis y_;
    QString behind_; ///< behind the grid
    QString body_; ///< clipped to the area
    std::vector<std::pair<QPointF, QPointF>> segments_; ///< of lines, pixels
    std::vector<PlotText> texts_;
    QString labels_; ///< not clipped
    std::vector<LegendEntry> legend_;
};

} // namespace kxreport
