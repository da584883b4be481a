// The pictures that stand on a page without script and in print.
#include "report/view/pictures.h"

#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"
#include "report/view/decimation.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kxreport {

namespace {

constexpr int kWidth = 1060;
constexpr double kLowest = 150; ///< of the area inside the axes, pixels
constexpr double kHighest = 640;
constexpr int kMostPixels = 1000; ///< of an image along each axis

constexpr std::array<Stroke, 6> kStrokes = {{{colour::kBlue, 1.5, ""},
                                             {colour::kOrange, 1.5, "8 4"},
                                             {colour::kGreen, 1.5, "2 3"},
                                             {colour::kPurple, 1.5, "10 3 2 3"},
                                             {colour::kBlack, 1.5, "5 5"},
                                             {colour::kGrey, 1.5, "14 4"}}};

/// The points, with a missing one in each gap.
Points brokenLine(const KxInspect::Profile& profile, float gap) {
    Points points;
    for (const KxInspect::Point& p : profile.points) {
        const QPointF next = toPlot(p);
        if (!points.empty() && std::abs(next.x() - points.back().x()) > static_cast<double>(gap)) { // NaN: false
            points.emplace_back(std::nan(""), std::nan(""));
        }
        points.push_back(next);
    }
    return points;
}

/// The points of a broken line that no line joins.
Points alone(const Points& line) {
    const auto isMissing = [&](std::size_t i) {
        return i >= line.size() || std::isnan(line[i].x()) || std::isnan(line[i].y());
    };
    Points points;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (!isMissing(i) && isMissing(i - 1) && isMissing(i + 1)) { // -1 is beyond the end
            points.push_back(line[i]);
        }
    }
    return points;
}

Range rangeOf(const Raster& raster) {
    Range range;
    for (const float value : raster.values) {
        range.include(static_cast<double>(value));
    }
    return range;
}

struct Title {
    QString name; ///< for the page
    QString text;
};

/// What the colours of a picture stand for.
struct Scale {
    Range range;
    QString label;
    ColourMap colours;
};

QString raisedPicture(const Raster& raster, const Axis& along, const Axis& across, bool isToScale, const Scale& scale,
                      const Title& title, bool areHoles) {
    const double width = Plot::areaWidth(kWidth) - Plot::kColourScaleWidth;
    const double wanted = isToScale ? width * across.range.size() / along.range.size() : kHighest / 2;
    const double height = std::clamp(wanted, kLowest, kHighest);
    Axis x = along;
    Axis y = across;
    if (isToScale && wanted > kHighest) {
        makeScalesEqual(x.range, y.range, width, height);
    }
    const int around = 100 - static_cast<int>(Plot::areaHeight(100)); // margins for axes and legend
    Plot plot(title.name, title.text, kWidth, static_cast<int>(height) + around, x, y);
    plot.addColourScale(scale.range, scale.label, scale.colours);
    plot.addImage(along.range.min, along.range.max, across.range.min, across.range.max,
                  heatImage(raster, scale.range, scale.colours), areHoles);
    return plot.svg();
}

} // namespace

QString linesPicture(const std::vector<DrawnLine>& lines, const QString& xLabel, const QString& yLabel) {
    constexpr int kHeight = 460;
    constexpr double kMark = 9; // pixels
    constexpr double kDot = 3;
    Axis x{xLabel, {}};
    Axis y{yLabel, {}};
    for (const DrawnLine& line : lines) {
        for (const KxInspect::Point& p : line.profile->points) {
            if (std::isfinite(p.x) && std::isfinite(p.y)) {
                x.range.include(static_cast<double>(p.x));
                y.range.include(static_cast<double>(p.y));
            }
        }
    }
    x.range = x.range.padded(0.01);
    y.range = y.range.padded(0.05);
    Plot plot(QStringLiteral("picture"), QStringLiteral("Profiles"), kWidth, kHeight, x, y);
    for (const DrawnLine& line : lines) {
        const Stroke& stroke = kStrokes[line.stroke % kStrokes.size()];
        const Points points = brokenLine(*line.profile, line.gap);
        if (line.isMarks) {
            plot.addDots(points, stroke.colour, kMark, line.name);
        } else {
            plot.addLine(points, stroke, line.name);
            if (const Points dots = alone(points); !dots.empty()) {
                plot.addDots(dots, stroke.colour, kDot);
            }
        }
    }
    return plot.svg();
}

QString profilesPicture(const QStringList& names, const std::vector<const KxInspect::Profile*>& profiles, float gap,
                        const QString& yLabel) {
    std::vector<DrawnLine> lines;
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        lines.push_back({names.value(static_cast<qsizetype>(i)), profiles[i], gap, i, false});
    }
    return linesPicture(lines, QStringLiteral("x, mm"), yLabel);
}

Range aboutZero(const Range& range, double least) {
    const double far = std::max({std::abs(range.min), std::abs(range.max), least});
    return {-far, far};
}

QString mapPicture(const KxInspect::HeightMap& map, const MapLook& look) {
    const int size = (std::max(map.rows, map.columns) + kMostPixels - 1) / kMostPixels;
    const BlockMap blocks = blocksOf(map, size);
    Raster raster{blocks.rows, blocks.columns, {}};
    for (int column = blocks.columns - 1; column >= 0; --column) {
        for (int row = 0; row < blocks.rows; ++row) {
            raster.values.push_back(
                blocks.medians[static_cast<std::size_t>(row) * static_cast<std::size_t>(blocks.columns) +
                               static_cast<std::size_t>(column)]);
        }
    }
    const double pitch = static_cast<double>(map.pitch);
    const double rowPitch = look.isLong ? pitch : 1.0;
    const double fromZ = (look.isLong ? static_cast<double>(map.originZ) : 1.0) - rowPitch / 2;
    const double fromX = static_cast<double>(map.originX) - pitch / 2;
    const Axis along{look.isLong ? QStringLiteral("z along the scan, mm") : QStringLiteral("profile, number"),
                     {fromZ, fromZ + rowPitch * size * blocks.rows}};
    const Axis across{look.across, {fromX, fromX + pitch * size * blocks.columns}};
    Range range = rangeOf(raster);
    range.include(look.range.min);
    range.include(look.range.max);
    const bool isDeviation = look.colours == ColourMap::Deviations;
    return raisedPicture(
        raster, along, across, look.isLong,
        {isDeviation ? aboutZero(range, look.resolution) : range, mapLabel(look.colours), look.colours},
        {look.name, look.title}, true);
}

QString cloudPicture(const KxInspect::PointSet& cloud, ColourMap colours) {
    Axis along{QStringLiteral("z, mm"), {}};
    Axis across{QStringLiteral("x, mm"), {}};
    const auto isKnown = [](const KxInspect::Point3& p) {
        return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
    };
    for (const KxInspect::Point3& p : cloud.points) {
        if (isKnown(p)) {
            along.range.include(static_cast<double>(p.z));
            across.range.include(static_cast<double>(p.x));
        }
    }
    along.range = along.range.padded(0.01);
    across.range = across.range.padded(0.01);
    constexpr int kWide = 450;
    const int high = std::clamp(static_cast<int>(kWide * across.range.size() / along.range.size()), 60, 300);
    Raster raster{kWide, high, {}};
    raster.values.assign(static_cast<std::size_t>(kWide) * static_cast<std::size_t>(high), std::nanf(""));
    for (const KxInspect::Point3& p : cloud.points) {
        if (!isKnown(p)) {
            continue;
        }
        const auto place = [](double value, const Range& range, int pixels) {
            return std::clamp(static_cast<int>((value - range.min) / range.size() * pixels), 0, pixels - 1);
        };
        const int column = place(static_cast<double>(p.z), along.range, kWide);
        const int row = high - 1 - place(static_cast<double>(p.x), across.range, high);
        float& height = raster.values[static_cast<std::size_t>(row) * kWide + static_cast<std::size_t>(column)];
        height = p.y <= height ? height : p.y; // NaN: false
    }
    return raisedPicture(raster, along, across, true, {rangeOf(raster), QStringLiteral("height y, mm"), colours},
                         {QStringLiteral("picture"), QStringLiteral("Cloud from above")}, false);
}

} // namespace kxreport
