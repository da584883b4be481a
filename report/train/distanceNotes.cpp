// What the distances of a pass and their intervals mean, in words.
#include "report/train/distanceNotes.h"

#include "report/elements/numbers.h"
#include "report/train/passWords.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kxreport {

using namespace KxInspect;

namespace {

/// "What, pairs 1-3: REASON." for each reason that pairs give.
void addReasons(const PassResult& pass, const QString& what, std::string WheelPair::*reason, QStringList& notes) {
    std::vector<std::pair<std::string, std::vector<int>>> groups;
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        const std::string& text = pass.pairs[i].*reason;
        if (text.empty()) {
            continue;
        }
        auto group = std::find_if(groups.begin(), groups.end(), [&](const auto& g) { return g.first == text; });
        if (group == groups.end()) {
            group = groups.insert(groups.end(), {text, {}});
        }
        group->second.push_back(static_cast<int>(i) + 1);
    }
    for (const auto& [text, pairs] : groups) {
        notes.append(QStringLiteral("%1, %2: %3.").arg(what, pairsText(pairs), QString::fromStdString(text)));
    }
}

} // namespace

QStringList distanceNotes(const PassResult& pass) {
    const auto hasInterval = [](const WheelPair& pair) { return pair.interval.isKnown(); };
    const auto hasYaw = [](const WheelPair& pair) { return pair.yawInterval.isKnown(); };
    QStringList notes;
    if (std::any_of(pass.pairs.begin(), pass.pairs.end(), hasInterval)) {
        const QString base =
            pass.baseUncertainty
                ? QStringLiteral("and \u00b1 %1 mm of the base distance").arg(shortestText(*pass.baseUncertainty))
                : QStringLiteral("but not the uncertainty of the base distance, which the settings do not give "
                                 "(baseUncertainty)");
        notes.append(QStringLiteral("Intervals of 95 % hold the noise of the profiles %1.").arg(base));
        notes.append(
            QStringLiteral("Distances are measured along the axle, on both sides so many mm behind it as chord "
                           "says (0: below the axle)."));
    }
    if (std::any_of(pass.pairs.begin(), pass.pairs.end(), hasYaw)) {
        notes.append(QStringLiteral("Yaw in mrad, positive when the wheel that SENSOR2 sees is ahead."));
    }
    addReasons(pass, QStringLiteral("No interval"), &WheelPair::intervalReason, notes);
    addReasons(pass, QStringLiteral("No yaw"), &WheelPair::yawReason, notes);
    return notes;
}

} // namespace kxreport
