// A train as a picture: vehicles as boxes, axles at their places, a mark on each wheel.
#pragma once

#include "report/elements/mark.h"

#include <QtCore/QString>

#include <array>
#include <vector>

namespace kxreport {

/// A wheel of an axle that is drawn.
struct DrawnWheel {
    Mark mark = Mark::None;
    QString link; ///< the id of an element of the page; empty for none
    QString tooltip;
};

struct DrawnAxle {
    double place = 0.0; ///< along the train from its head on, mm
    bool isSeen = true; ///< otherwise its place is only about right
    QString label; ///< a number: there is room for three characters
    int vehicle = -1; ///< the place in the list of vehicles; negative for none
    int bogie = 0; ///< axles of a vehicle with the same number above 0 are joined
    std::array<DrawnWheel, 2> wheels = {};
};

struct DrawnTrain {
    std::vector<QString> vehicles; ///< what stands on the boxes; cut where there is no room
    std::vector<DrawnAxle> axles; ///< by place
    std::array<QString, 2> sides; ///< the names of both sides of the train, the upper one first
};

/// The picture, 190 pixels high and as wide as it needs to be: the head of the train is on the left. Axles are
/// at least 24 pixels apart where they are a metre or more apart. Empty without axles.
QString trainDrawing(const DrawnTrain& train, const QString& title);

} // namespace kxreport
