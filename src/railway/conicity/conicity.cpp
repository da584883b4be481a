// The equivalent conicity of a wheel-set on a track.
#include "KxMath/KxConicity.h"

#include "lists/checked.h"
#include "railway/conicity/steps.h"

#include <algorithm>

namespace KxMath {

namespace {

using detail::Contact;
using detail::Track;
using detail::WheelOnRail;

constexpr float kDisplayOffset = 5.0f;

/// How far each side is moved for display.
struct DisplayShift {
    float first;
    float second;
};

DisplayShift calcDisplayShift(Track& track) {
    track.first.wheel.calcRange();
    track.second.wheel.calcRange();
    return {-(track.first.wheel.maxX + kDisplayOffset), -(track.second.wheel.minX - kDisplayOffset)};
}

KxProfile* shiftedCopy(KxProfile& profile, float dx) {
    auto copy = std::make_unique<KxProfile>(profile);
    copy->shift(dx, 0.0f, 0.0f);
    return copy.release();
}

KxProfile* contactPair(const WheelOnRail& side, qsizetype wheelIndex, qsizetype railIndex, float dx) {
    auto pair = std::make_unique<KxProfile>();
    pair->points = detail::listOf({side.wheel.points.at(wheelIndex), side.rail.points.at(railIndex)});
    pair->shift(dx, 0.0f, 0.0f);
    return pair.release();
}

/// The slope of a wheel behind its contact point, before it where that is the last point.
float contactSlope(const QList<KxPointXY>& wheel, qsizetype contact) {
    const qsizetype left = std::max<qsizetype>(std::min(contact, wheel.size() - 2), 0);
    const qsizetype right = std::min(left + 1, wheel.size() - 1);
    return static_cast<float>(static_cast<double>(wheel[right].y - wheel[left].y) / 0.1);
}

/// The difference of the radii over the displacement, ascending.
void fillDeltaR(const std::vector<Contact>& contacts, KxProfile& deltaR) {
    for (const Contact& c : contacts) {
        deltaR.points.append(KxPointXY(static_cast<float>(c.displacement), static_cast<float>(c.deltaR)));
    }
    deltaR.sort(KxSortAscending, KxSortAscending);
}

} // namespace

int EquivalentConicity(KxProfile wheel1, KxProfile wheel2, KxProfile rail1, KxProfile rail2, float radius1,
                       float radius2, float railDistance, float wheelDistance, unsigned int amplitudeCount,
                       KxProfile& conicity, KxProfile& deltaR, KxProfile& contactSlope1, KxProfile& contactSlope2,
                       KxProfile** const placedProfiles, KxProfile** const contacts1, int& contactCount1,
                       KxProfile** const contacts2, int& contactCount2, float edgeMargin) {
    if (wheel1.isEmpty() || wheel2.isEmpty() || rail1.isEmpty() || rail2.isEmpty()) {
        return -1;
    }
    for (KxProfile* const curve : {&conicity, &deltaR, &contactSlope1, &contactSlope2}) {
        curve->clear();
    }
    contactCount1 = 0;
    contactCount2 = 0;

    Track track;
    track.first.wheel = wheel1;
    track.first.rail = rail1;
    track.second.wheel = wheel2;
    track.second.rail = rail2;
    const bool isPlaced = detail::placeOnTrack(track, radius1, radius2, railDistance, wheelDistance);
    const DisplayShift shift = calcDisplayShift(track);
    placedProfiles[0] = shiftedCopy(track.first.wheel, shift.first);
    placedProfiles[1] = shiftedCopy(track.first.rail, shift.first);
    placedProfiles[2] = shiftedCopy(track.second.wheel, shift.second);
    placedProfiles[3] = shiftedCopy(track.second.rail, shift.second);
    if (!isPlaced) {
        return 0;
    }

    const std::vector<Contact> contacts = detail::sweepLaterally(track);
    for (const Contact& c : contacts) {
        const float displacement = static_cast<float>(c.displacement);
        contacts1[contactCount1++] = contactPair(track.first, c.wheelIndex1, c.railIndex1, shift.first);
        contacts2[contactCount2++] = contactPair(track.second, c.wheelIndex2, c.railIndex2, shift.second);
        contactSlope1.points.append(KxPointXY(displacement, contactSlope(track.first.wheel.points, c.wheelIndex1)));
        contactSlope2.points.append(KxPointXY(displacement, contactSlope(track.second.wheel.points, c.wheelIndex2)));
    }
    fillDeltaR(contacts, deltaR);

    detail::Oscillation oscillation;
    if (detail::findOscillation(deltaR.points, oscillation)) {
        detail::calcConicityCurve(oscillation, amplitudeCount, edgeMargin, conicity);
    }
    return conicity.size();
}

} // namespace KxMath
