// What is kept of a pass in its JSON form.
#include "inspect/results/keptJson.h"

#include "inspect/results/identityJson.h"

#include <QtCore/QLatin1String>

namespace KxInspect::detail {

namespace {

constexpr const char* kChosen = "chosen";
constexpr const char* kMerged = "merged";

QJsonObject recordObject(const KeptProfile& profile, qint64 number) {
    QJsonObject object = {{QStringLiteral("record"), number},
                          {QStringLiteral("kind"), QLatin1String(profile.isMerged ? kMerged : kChosen)},
                          {QStringLiteral("pair"), profile.pair}};
    if (profile.isMerged) {
        object[QStringLiteral("side")] = QLatin1String(textOf(profile.side));
    } else {
        object[QStringLiteral("recording")] = QString::fromStdString(profile.recording);
        object[QStringLiteral("wheel")] = profile.wheel;
        object[QStringLiteral("profile")] = profile.profile;
    }
    return object;
}

QJsonValue profilesValue(const std::optional<KeptProfiles>& profiles) {
    if (!profiles) {
        return QJsonValue();
    }
    qint64 number = 0;
    const QJsonArray records =
        listOf(profiles->records, [&](const KeptProfile& profile) { return recordObject(profile, ++number); });
    return QJsonObject{{QStringLiteral("file"), fileValue(profiles->file)}, {QStringLiteral("records"), records}};
}

template <typename Value>
Value readWord(const JsonValue& value, std::initializer_list<Value> values) {
    const std::string word = value.text();
    for (const Value each : values) {
        if (word == textOf(each)) {
            return each;
        }
    }
    value.failAsNo(QStringLiteral("known word"));
}

KeptProfile readRecord(const JsonValue& value) {
    constexpr int kMost = 1 << 30;
    KeptProfile profile;
    const std::string kind = value["kind"].text();
    profile.isMerged = kind == kMerged;
    profile.pair = value["pair"].wholeNumber(1, kMost);
    if (profile.isMerged) {
        profile.side = readWord(value["side"], {TrackSide::Left, TrackSide::Right});
        return profile;
    }
    if (kind != kChosen) {
        value["kind"].failAsNo(QStringLiteral("known word"));
    }
    profile.recording = value["recording"].text();
    profile.wheel = value["wheel"].wholeNumber(1, kMost);
    profile.profile = value["profile"].wholeNumber(1, kMost);
    return profile;
}

} // namespace

QJsonObject keptObject(const PassKept& kept) {
    return {{QStringLiteral("keep"), QLatin1String(textOf(kept.keep))},
            {QStringLiteral("profiles"), profilesValue(kept.profiles)}};
}

PassKept readKept(const JsonValue& value) {
    PassKept kept;
    kept.keep = readWord(value["keep"], {PassKeep::None, PassKeep::Chosen, PassKeep::All});
    const JsonValue profiles = value["profiles"];
    if (!profiles.isNull()) {
        kept.profiles.emplace();
        kept.profiles->file = readFile(profiles["file"]).value_or(InputFile());
        for (const JsonValue& record : profiles["records"].list()) {
            kept.profiles->records.push_back(readRecord(record));
        }
    }
    return kept;
}

} // namespace KxInspect::detail
