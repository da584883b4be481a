// What a measured rim does not show, and what its measurement left out.
#include "inspect/wheel/doubts.h"

#include "inspect/sections/runningSurface.h"

#include <QtCore/QString>

#include <algorithm>

namespace KxInspect::detail {

namespace {

std::string millimetres(float value) {
    return QString::number(static_cast<double>(value), 'f', 1).toStdString() + " mm";
}

/// Why there is no flange height; all measures need it.
std::string reasonWithoutHeight(const std::vector<Point>& measured) {
    if (measured.size() < 4) {
        return "there are too few points for a smooth profile";
    }
    const auto tip = std::min_element(measured.begin(), measured.end(), isHigher);
    const auto reaches = [](const Point& p) { return p.y >= kTipLevel; };
    if (std::none_of(tip, measured.end(), reaches)) {
        return "the profile has no flank: behind its highest point it never falls " + millimetres(kTipLevel);
    }
    if (measured.back().x < kTapeCircleX) {
        return "the profile ends " + millimetres(measured.back().x) +
               " from the flange back, before the tape circle at " + millimetres(kTapeCircleX);
    }
    return "no height was found at the tape circle, " + millimetres(kTapeCircleX) + " from the flange back";
}

std::string reasonWithoutLevel(float level) {
    return "the flank does not reach level " + QString::number(static_cast<double>(level), 'f', 1).toStdString();
}

} // namespace

std::array<std::string, kWheelMeasures.size()> reasonsOf(const WheelMeasures& measures,
                                                         const std::vector<Point>& measured) {
    std::array<std::string, kWheelMeasures.size()> reasons;
    const std::string withoutHeight = measures.heightAt70 ? std::string() : reasonWithoutHeight(measured);
    for (std::size_t i = 0; i < kSmoothMeasures; ++i) {
        const auto value = kWheelMeasures[i].value;
        if (measures.*value) {
            continue;
        }
        if (!measures.heightAt70) {
            reasons[i] = withoutHeight;
        } else {
            reasons[i] = reasonWithoutLevel(value == &WheelMeasures::xAtLevel18 ? kFlankLevel
                                                                                : *measures.heightAt70 - kFlankDepth);
        }
    }
    return reasons;
}

std::string droppedFlank(const std::vector<Point>& section) {
    constexpr float kBackWidth = 20.0f;
    const auto isBefore = [](const Point& a, const Point& b) { return a.x < b.x || (a.x == b.x && a.y < b.y); };
    const auto first = std::min_element(section.begin(), section.end(), isBefore);
    const auto tip = std::min_element(section.begin(), section.end(), isHigher);
    const auto isDropped = [&](const Point& p) { return p.x < kBackWidth && p.x > tip->x && p.y > first->y; };
    const auto dropped = std::count_if(section.begin(), section.end(), isDropped);
    if (dropped == 0) {
        return {};
    }
    return "begins only " + millimetres(first->y) + " below the tip of the flange: " + std::to_string(dropped) +
           " points of the flank, up to 20 mm from there, count as back of the flange and are left out, so that the "
           "measures on the flank are doubtful";
}

} // namespace KxInspect::detail
