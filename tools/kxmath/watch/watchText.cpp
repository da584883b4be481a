// What kxmath watch says of groups.
#include "tools/kxmath/watch/watchText.h"

#include "tools/kxmath/console/printable.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

namespace kxtool {

namespace {

bool hasFolder(GroupState state) {
    return state == GroupState::Measured || state == GroupState::Done;
}

QString pathText(const WatchedGroup& group) {
    return printable(fromBytes(group.result()));
}

QJsonValue orNull(bool isThere, const QJsonValue& value) {
    return isThere ? value : QJsonValue();
}

} // namespace

const char* textOf(GroupState state) {
    switch (state) {
    case GroupState::Measured:
        return "measured";
    case GroupState::Done:
        return "done";
    case GroupState::Waiting:
        return "waiting";
    case GroupState::Failed:
        return "failed";
    case GroupState::NoResult:
        return "no result";
    case GroupState::NoMemory:
        break;
    }
    return "not enough memory";
}

QString groupText(const WatchedGroup& group, const GroupOutcome& outcome) {
    QString text = group.title() + QStringLiteral(": ") + QLatin1String(textOf(outcome.state));
    if (outcome.state == GroupState::Measured) {
        text += QStringLiteral(", %1 wheel pairs, %2 with a distance: %3")
                    .arg(QString::number(outcome.pairs), QString::number(outcome.distances), pathText(group));
    } else if (outcome.state == GroupState::Done) {
        text += QStringLiteral(": ") + pathText(group);
    }
    return (outcome.reason.isEmpty() ? text : text + QStringLiteral(": ") + printable(outcome.reason)) +
           QLatin1Char('\n');
}

QString groupJson(const WatchedGroup& group, const GroupOutcome& outcome) {
    QJsonArray serials;
    for (const int serial : group.serials) {
        serials.append(serial);
    }
    const bool isMeasured = outcome.state == GroupState::Measured;
    const QJsonObject line{{"station", orNull(!group.station.empty(), QString::fromStdString(group.station))},
                           {"time", QString::fromStdString(group.time)},
                           {"state", QLatin1String(textOf(outcome.state))},
                           {"serials", serials},
                           {"folder", orNull(hasFolder(outcome.state), pathText(group))},
                           {"pairs", orNull(isMeasured, outcome.pairs)},
                           {"distances", orNull(isMeasured, outcome.distances)},
                           {"reason", orNull(!outcome.reason.isEmpty(), printable(outcome.reason))}};
    return QString::fromUtf8(QJsonDocument(line).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
}

QString countText(const std::array<int, kGroupStates>& counts) {
    QStringList parts;
    for (std::size_t state = 0; state < counts.size(); ++state) {
        if (counts[state] > 0) {
            parts.append(QString::number(counts[state]) + QLatin1Char(' ') +
                         QLatin1String(textOf(static_cast<GroupState>(state))));
        }
    }
    return parts.isEmpty() ? QStringLiteral("no group of recordings") : parts.join(QStringLiteral(", "));
}

} // namespace kxtool
