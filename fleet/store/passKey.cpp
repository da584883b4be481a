// Hashes one line of text per thing that a result depends on.
#include "fleet/store/passKey.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDateTime>

namespace kxfleet {

namespace {

using KxInspect::InputFile;
using KxInspect::SettingsIdentity;

void addLine(std::string& text, const std::string& name, const std::string& value) {
    text += name + ' ' + std::to_string(value.size()) + ' ' + value + '\n'; // with its size no value looks like two
}

void addFile(std::string& text, const std::string& name, const std::optional<InputFile>& file) {
    if (file) {
        addLine(text, name, file->sha256);
    }
}

/// The values that were in force: defaults may change from version to version, and options of a command replace values.
void addSettings(std::string& text, const std::string& name, const SettingsIdentity& settings) {
    addFile(text, name, settings.file);
    for (const KxInspect::SettingValue& value : settings.values) {
        const auto* const number = std::get_if<double>(&value.value);
        addLine(text, name + '/' + value.key,
                number != nullptr ? QByteArray::number(*number, 'g', 17).toStdString()
                                  : std::get<std::string>(value.value));
    }
}

} // namespace

std::optional<std::string> passKey(const KxInspect::PassResult& pass) {
    std::string text;
    bool hasHash = false;
    for (const auto* const list : {&pass.sides, &pass.further}) {
        for (const KxInspect::PassSide& side : *list) {
            hasHash = hasHash || !side.sha256.empty();
            addLine(text, "recording", side.sha256);
            addLine(text, "sensor", std::to_string(side.sensor));
        }
    }
    if (!hasHash) {
        return {};
    }
    const KxInspect::PassIdentity& identity = pass.identity;
    addLine(text, "mode", std::to_string(pass.mode));
    addSettings(text, "settings", identity.settings);
    if (identity.defects) {
        addSettings(text, "defects", *identity.defects);
    }
    addFile(text, "consist", identity.consist);
    if (identity.consistOrder) {
        addLine(text, "order", std::to_string(static_cast<int>(*identity.consistOrder)));
    }
    addFile(text, "limits", identity.limits);
    addFile(text, "contour", identity.contour);
    addLine(text, "version", identity.version);
    return QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Sha256).toHex().toStdString();
}

std::optional<std::int64_t> utcMilliseconds(const std::string& time) {
    const QDateTime parsed = QDateTime::fromString(QString::fromStdString(time), Qt::ISODateWithMs);
    if (!parsed.isValid() || parsed.timeSpec() == Qt::LocalTime) {
        return {};
    }
    return parsed.toMSecsSinceEpoch();
}

} // namespace kxfleet
