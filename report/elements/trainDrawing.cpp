// A train as a picture.
#include "report/elements/trainDrawing.h"

#include "report/elements/svg.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

namespace kxreport {

namespace {

constexpr double kLeft = 84.0; // pixels before the first axle
constexpr double kRight = 60.0;
constexpr double kUpper = 44.0; // of the marks of the upper side
constexpr double kLower = 132.0;
constexpr double kBoxTop = 60.0;
constexpr double kBoxBottom = 116.0;
constexpr double kHeight = 190.0;
constexpr double kOverhang = 28.0; // of the ends of the train beyond its axles

/// From places to pixels.
class Scale {
public:
    explicit Scale(const std::vector<DrawnAxle>& axles) : first_(axles.front().place) {
        constexpr double kLeastGap = 24.0; // pixels
        constexpr double kNarrowest = 1000.0; // mm; nearer axles are drawn nearer
        constexpr double kUsualWidth = 900.0;
        constexpr double kMostPerMm = 0.03;
        constexpr double kWidest = 30000.0;
        const double length = axles.back().place - first_;
        double gap = std::numeric_limits<double>::infinity();
        for (std::size_t i = 1; i < axles.size(); ++i) {
            gap = std::min(gap, std::max(kNarrowest, axles[i].place - axles[i - 1].place));
        }
        perMm_ = std::max(kLeastGap / gap, length > 0.0 ? std::min(kMostPerMm, kUsualWidth / length) : kMostPerMm);
        perMm_ = length > 0.0 ? std::min(perMm_, kWidest / length) : perMm_;
        width_ = kLeft + perMm_ * length + kRight;
    }

    double at(double place) const { return kLeft + (place - first_) * perMm_; }
    double width() const { return width_; }

private:
    double first_;
    double perMm_;
    double width_;
};

/// A part of the train on the paper.
struct Extent {
    double from = std::numeric_limits<double>::infinity();
    double to = -std::numeric_limits<double>::infinity();

    void include(double x) {
        from = std::min(from, x);
        to = std::max(to, x);
    }
    double size() const { return to - from; }
};

/// The text cut to a width.
QString cut(const QString& text, double pixels) {
    constexpr double kPerCharacter = 7.2; // of bold digits and capitals at 12 pixels
    const auto most = static_cast<qsizetype>(pixels / kPerCharacter);
    if (text.size() <= most) {
        return text;
    }
    return most >= 2 ? text.left(most - 1) + QChar(0x2026) : QString();
}

/// The boxes of the vehicles: they meet in the middle between their axles.
std::map<int, Extent> boxesOf(const DrawnTrain& train, const Scale& scale) {
    constexpr double kBetween = 3.0;
    std::map<int, Extent> boxes;
    for (const DrawnAxle& axle : train.axles) {
        if (axle.vehicle >= 0) {
            boxes[axle.vehicle].include(scale.at(axle.place));
        }
    }
    std::map<int, Extent> wide = boxes;
    for (auto& [number, box] : wide) {
        double before = kOverhang;
        double behind = kOverhang;
        for (const DrawnAxle& axle : train.axles) {
            const double x = scale.at(axle.place);
            if (axle.vehicle != number && x < box.from) {
                before = std::min(before, (box.from - x) / 2.0 - kBetween);
            } else if (axle.vehicle != number && x > box.to) {
                behind = std::min(behind, (x - box.to) / 2.0 - kBetween);
            }
        }
        box.from -= std::max(2.0, before);
        box.to += std::max(2.0, behind);
    }
    return wide;
}

/// The name of a vehicle in the middle between its axles; cut to the room between those beside it, unless one is too near.
QString nameIn(const DrawnTrain& train, const Scale& scale, int vehicle, const Extent& box) {
    constexpr double kLeast = 60.0;
    Extent ends;
    for (const DrawnAxle& axle : train.axles) {
        if (axle.vehicle == vehicle) {
            ends.include(scale.at(axle.place));
        }
    }
    const double middle = (ends.from + ends.to) / 2.0;
    double half = std::min(middle - box.from, box.to - middle);
    const double whole = half;
    for (const DrawnAxle& axle : train.axles) {
        half = axle.vehicle == vehicle ? std::min(half, std::abs(scale.at(axle.place) - middle)) : half;
    }
    const double room = 2.0 * (2.0 * half >= kLeast ? half : whole) - 8.0;
    return QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"middle\" font-size=\"12\" "
                          "font-weight=\"bold\">%3</text>")
        .arg(coordinate(middle), coordinate((kBoxTop + kBoxBottom) / 2.0 + 4.0),
             escaped(cut(train.vehicles.at(static_cast<std::size_t>(vehicle)), room)));
}

QString boxes(const DrawnTrain& train, const Scale& scale) {
    QString svg;
    for (const auto& [number, box] : boxesOf(train, scale)) {
        svg += QStringLiteral("<a><title>%1</title><rect x=\"%2\" y=\"%3\" width=\"%4\" height=\"%5\" rx=\"6\" "
                              "fill=\"var(--box)\" stroke=\"var(--ink)\"/>%6</a>\n")
                   .arg(escaped(train.vehicles.at(static_cast<std::size_t>(number))), coordinate(box.from),
                        coordinate(kBoxTop), coordinate(box.size()), coordinate(kBoxBottom - kBoxTop),
                        nameIn(train, scale, number, box));
    }
    return svg;
}

/// A bar for each bogie on both sides of its box.
QString bogies(const DrawnTrain& train, const Scale& scale) {
    std::map<std::pair<int, int>, Extent> bars;
    for (const DrawnAxle& axle : train.axles) {
        if (axle.vehicle >= 0 && axle.bogie > 0) {
            bars[{axle.vehicle, axle.bogie}].include(scale.at(axle.place));
        }
    }
    QString svg;
    for (const auto& [place, bar] : bars) {
        for (const double y : {kBoxTop + 5.0, kBoxBottom - 5.0}) {
            svg += QStringLiteral("<a><path d=\"M%1 %3H%2\" stroke=\"var(--grey)\" stroke-width=\"5\" "
                                  "stroke-linecap=\"butt\"/></a>\n")
                       .arg(coordinate(bar.from - 6.0), coordinate(bar.to + 6.0), coordinate(y));
        }
    }
    return svg;
}

QString wheel(const DrawnWheel& drawn, double x, double y) {
    const QString link = drawn.link.isEmpty() ? QString() : QStringLiteral(" href=\"#%1\"").arg(escaped(drawn.link));
    return QStringLiteral("<a%1><title>%2</title>%3</a>\n")
        .arg(link, escaped(drawn.tooltip), markShape(drawn.mark, x, y));
}

QString axles(const DrawnTrain& train, const Scale& scale) {
    QString svg;
    for (const DrawnAxle& axle : train.axles) {
        const double x = scale.at(axle.place);
        svg += QStringLiteral("<a><path d=\"M%1 %2V%3\" stroke=\"var(--ink)\" stroke-width=\"2\"%4/>"
                              "<text x=\"%1\" y=\"24\" text-anchor=\"middle\" font-size=\"11\">%5</text></a>\n")
                   .arg(coordinate(x), coordinate(kUpper), coordinate(kLower),
                        QLatin1String(axle.isSeen ? "" : " stroke-dasharray=\"3 3\""), escaped(axle.label));
        svg += wheel(axle.wheels[0], x, kUpper) + wheel(axle.wheels[1], x, kLower);
    }
    return svg;
}

QString frame(const DrawnTrain& train) {
    QString svg = QStringLiteral("<a><text x=\"4\" y=\"24\" font-size=\"11\">axle</text>"
                                 "<path d=\"M40 88H8M16 82L8 88L16 94\" fill=\"none\" stroke=\"var(--ink)\" "
                                 "stroke-width=\"2\"/></a>\n");
    for (const auto& [name, y] : {std::pair(train.sides[0], kUpper), std::pair(train.sides[1], kLower)}) {
        svg += QStringLiteral("<a><text x=\"4\" y=\"%1\" font-size=\"12\">%2</text></a>\n")
                   .arg(coordinate(y + 4.0), escaped(name));
    }
    return svg;
}

/// The marks and their words, in two rows that a narrow screen shows, too.
QString legend() {
    QString svg = QStringLiteral("<g>");
    double x = 12.0;
    double y = 158.0;
    for (const Mark mark : {Mark::Ok, Mark::Warning, Mark::Alarm, Mark::NotMeasured, Mark::None, Mark::Finding}) {
        if (mark == Mark::NotMeasured) {
            x = 12.0;
            y += 20.0;
        }
        svg += markShape(mark, x, y) + QStringLiteral("<text x=\"%1\" y=\"%2\" font-size=\"11\">%3</text>")
                                           .arg(coordinate(x + 13.0), coordinate(y + 4.0), wordOf(mark));
        x += 100.0;
    }
    return svg + QStringLiteral("</g>\n");
}

} // namespace

QString trainDrawing(const DrawnTrain& train, const QString& title) {
    if (train.axles.empty()) {
        return {};
    }
    const Scale scale(train.axles);
    const QString width = coordinate(std::max(320.0, scale.width()));
    return QStringLiteral(
               "<svg class=\"natural\" xmlns=\"http://www.w3.org/2000/svg\" role=\"group\" aria-label=\"%1\" "
               "width=\"%2\" height=\"%3\" viewBox=\"0 0 %2 %3\">\n")
               .arg(escaped(title), width, coordinate(kHeight)) +
           boxes(train, scale) + bogies(train, scale) + axles(train, scale) + frame(train) + legend() +
           QStringLiteral("</svg>\n");
}

} // namespace kxreport
