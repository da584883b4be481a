// The measures and cross-sections of wheels on the page of a pass.
#include "report/train/wheelSections.h"

#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"
#include "report/train/wheelWords.h"

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kWidth = 1060;
constexpr int kHeight = 420;

/// The sections of both wheels of a pair, over each other.
void addSections(const PassResult& pass, int pair, Page& page) {
    std::vector<std::pair<const PassWheelMeasures*, Points>> sections;
    Range x;
    Range y;
    for (const PassWheelMeasures& wheel : pass.wheels) {
        if (wheel.pair == pair && !wheel.section.empty()) {
            sections.emplace_back(&wheel, toPoints(wheel.section));
            for (const QPointF& p : sections.back().second) {
                x.include(p.x());
                y.include(p.y());
            }
        }
    }
    if (sections.empty()) {
        return;
    }
    x = x.padded(0.05);
    y = y.padded(0.1);
    makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(kHeight));
    Plot plot(QStringLiteral("sections%1").arg(pair), QStringLiteral("Cross-sections of wheel pair %1").arg(pair),
              kWidth, kHeight, {QStringLiteral("from the flange back, mm"), x},
              {QStringLiteral("above the tip of the flange, mm"), y});
    for (const auto& [wheel, points] : sections) {
        const bool isLeft = wheel->side == TrackSide::Left;
        plot.addDots(points, isLeft ? colour::kBlue : colour::kGreen, 2.0,
                     isLeft ? QStringLiteral("left wheel") : QStringLiteral("right wheel"));
    }
    page.figure(
        plot.svg(),
        QStringLiteral("All profiles of a wheel, turned about its axle into one plane: the median of the points "
                       "of each step along the contour. What no sensor sees is open."));
}

} // namespace

void addWheelMeasures(const PassResult& pass, Page& page) {
    if (pass.wheels.empty()) {
        return;
    }
    page.heading(QStringLiteral("Measures of the wheels"));
    const std::vector<QStringList> texts = wheelRows(pass);
    std::vector<std::vector<Cell>> rows;
    for (std::size_t i = 1; i < texts.size(); ++i) {
        rows.emplace_back();
        for (const QString& text : texts[i]) {
            rows.back().push_back({text});
        }
    }
    page.table(texts.front(), rows, kWheelTextColumns);
    page.paragraph(
        QStringLiteral("Lengths in mm, with intervals of 95 %. Intervals hold noise and what the axle leaves "
                       "open, not errors of the poses of the sensors."));
    for (const QString& note : wheelNotes(pass)) {
        page.paragraph(note);
    }
    for (const PairPicture& picture : pass.pictures) {
        addSections(pass, picture.pair, page);
    }
}

} // namespace kxreport
