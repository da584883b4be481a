// The train of a pass as a picture.
#include "report/train/passDrawing.h"

#include "report/elements/trainDrawing.h"
#include "report/train/sheetColumns.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace kxreport {

using namespace KxInspect;

namespace {

/// "2 · Mc · 4711".
QString nameOf(const PassVehicle& vehicle) {
    QString name = QString::number(vehicle.number);
    for (const auto& text : {vehicle.mark, vehicle.vehicleNumber}) {
        if (text && !text->empty()) {
            name += QStringLiteral(" \u00b7 ") + QString::fromStdString(*text);
        }
    }
    return name;
}

/// An axle of a vehicle that was not seen: where it would be by the seen axles of its vehicle, on the line through them by
/// their numbers; absent with fewer than two.
std::optional<double> expectedPlace(const PassResult& pass, const AxleNumber& axle) {
    const WheelPair* nearest = nullptr;
    const WheelPair* next = nullptr;
    const auto distance = [&](const WheelPair& pair) { return std::abs(*pair.axle.axle - *axle.axle); };
    for (const WheelPair& pair : pass.pairs) {
        if (pair.axle.vehicle != axle.vehicle || !pair.axle.axle || !pair.place) {
            continue;
        }
        if (nearest == nullptr || distance(pair) < distance(*nearest)) {
            next = nearest;
            nearest = &pair;
        } else if (next == nullptr || distance(pair) < distance(*next)) {
            next = &pair;
        }
    }
    if (next == nullptr) {
        return {};
    }
    const double perAxle = (*next->place - *nearest->place) / (*next->axle.axle - *nearest->axle.axle);
    return *nearest->place + perAxle * (*axle.axle - *nearest->axle.axle);
}

DrawnWheel drawnWheel(const WheelVerdict& verdict) {
    return {verdict.mark, idOf(*verdict.row),
            kxreport::nameOf(*verdict.row) + QStringLiteral(": ") + wordOf(verdict.mark) +
                (verdict.row->isDoubtful ? QStringLiteral(", doubtful") : QString())};
}

/// Collects the axles of the rows, two of which are one axle.
class TrainPicture {
public:
    explicit TrainPicture(const PassResult& pass) : pass_(pass) {
        for (const PassVehicle& vehicle : pass.train.vehicles) {
            train_.vehicles.push_back(nameOf(vehicle));
        }
    }

    void add(const WheelVerdict& firstVerdict, const WheelVerdict& secondVerdict) {
        const SheetRow& first = *firstVerdict.row;
        const SheetRow& second = *secondVerdict.row;
        DrawnAxle axle;
        axle.isSeen = first.pair > 0;
        axle.label = axle.isSeen && !first.axle.axle ? QString::number(first.pair)
                                                     : QString::number(first.axle.axle.value_or(0));
        axle.vehicle = first.axle.vehicle.value_or(0) - 1;
        axle.bogie = first.axle.bogie.value_or(0);
        const auto place = axle.isSeen ? pass_.pairs[static_cast<std::size_t>(first.pair) - 1].place
                                       : expectedPlace(pass_, first.axle);
        if (!place) {
            hidden_ += 1;
            return;
        }
        axle.place = *place;
        // The head of the train is on the left, so that its left side is below.
        const bool isLeftFirst = first.trackSide == TrackSide::Left;
        axle.wheels = {drawnWheel(isLeftFirst ? secondVerdict : firstVerdict),
                       drawnWheel(isLeftFirst ? firstVerdict : secondVerdict)};
        train_.sides = {sideOf(isLeftFirst ? second : first, 1), sideOf(isLeftFirst ? first : second, 2)};
        train_.axles.push_back(axle);
    }

    DrawnTrain take() {
        std::stable_sort(train_.axles.begin(), train_.axles.end(),
                         [](const DrawnAxle& a, const DrawnAxle& b) { return a.place < b.place; });
        return std::move(train_);
    }

    int hidden() const { return hidden_; }

private:
    static QString sideOf(const SheetRow& row, int number) {
        return row.trackSide ? QString::fromLatin1(textOf(*row.trackSide)) : QStringLiteral("side %1").arg(number);
    }

    const PassResult& pass_;
    DrawnTrain train_;
    int hidden_ = 0;
};

} // namespace

void addTrain(const PassResult& pass, const std::vector<WheelVerdict>& verdicts, Page& page) {
    TrainPicture picture(pass);
    for (std::size_t i = 0; i + 1 < verdicts.size(); i += 2) {
        picture.add(verdicts[i], verdicts[i + 1]);
    }
    const int hidden = picture.hidden();
    const QString svg = trainDrawing(picture.take(), QStringLiteral("The train as it passed"));
    page.heading(QStringLiteral("The train as it passed"));
    if (svg.isEmpty()) {
        page.paragraph(QStringLiteral("No picture: the records hold no places of the axles."));
        return;
    }
    QString caption =
        QStringLiteral("The head of the train is on the left; axles are at their true distances, with their "
                       "numbers in the vehicle, or those of the pair where no vehicle is known. A "
                       "mark leads to the row of its wheel.");
    if (hidden > 0) {
        caption += QStringLiteral(" %1 axles have no place that is known and are not drawn.").arg(hidden);
    }
    page.wideFigure(svg, caption);
}

} // namespace kxreport
