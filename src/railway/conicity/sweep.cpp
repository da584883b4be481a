// Moving the wheel-set sideways over the rails.
#include "railway/conicity/steps.h"

#include <cmath>
#include <limits>

namespace KxMath::detail {

namespace {

constexpr double kMaxDeltaR = 15.0;

/// Whether all rail points have a wheel point above them when the wheel's index is `start` at the first one.
bool isRailCovered(const WheelOnRail& side, qsizetype start) {
    return start >= 0 && side.rail.points.size() + start <= side.wheel.points.size();
}

/// The rail point with the smallest gap to the wheel, the last of equal ones.
qsizetype findContact(const WheelOnRail& side, qsizetype start) {
    const KxPointXY* const rail = side.rail.points.constData();
    const KxPointXY* const wheel = side.wheel.points.constData() + start;
    float smallest = std::numeric_limits<float>::infinity();
    qsizetype contact = 0;
    for (qsizetype m = 0; m < side.rail.points.size(); ++m) {
        const float gap = std::abs(wheel[m].y - rail[m].y);
        if (gap <= smallest) { // NaN: false
            smallest = gap;
            contact = m;
        }
    }
    return contact;
}

/// Appends the contacts for the displacements -0.1 * k * direction, `k` rising from `firstK`, until a rail would leave
/// its wheel or the radii differ too much.
void sweepOneWay(const Track& track, int direction, int firstK, std::vector<Contact>& contacts) {
    for (int k = firstK;; ++k) {
        const qsizetype start1 = track.first.start + static_cast<qsizetype>(direction) * k;
        const qsizetype start2 = track.second.start + static_cast<qsizetype>(direction) * k;
        if (!isRailCovered(track.first, start1) || !isRailCovered(track.second, start2)) {
            return;
        }
        Contact c;
        c.displacement = -0.1 * k * direction;
        c.railIndex1 = findContact(track.first, start1);
        c.railIndex2 = findContact(track.second, start2);
        c.wheelIndex1 = c.railIndex1 + start1;
        c.wheelIndex2 = c.railIndex2 + start2;
        c.deltaR = track.second.radii[static_cast<size_t>(c.wheelIndex2)] -
                   track.first.radii[static_cast<size_t>(c.wheelIndex1)];
        contacts.push_back(c);
        if (std::abs(c.deltaR) >= kMaxDeltaR) { // recorded all the same
            return;
        }
    }
}

} // namespace

std::vector<Contact> sweepLaterally(const Track& track) {
    std::vector<Contact> contacts;
    sweepOneWay(track, 1, 0, contacts);
    sweepOneWay(track, -1, 1, contacts);
    return contacts;
}

} // namespace KxMath::detail
