// Settings from INI files, every value checked.
#include "inspect/settings/iniFile.h"

#include "inspect/base/error.h"
#include "inspect/base/memory.h"
#include "inspect/base/paths.h"
#include "inspect/formats/openFile.h"
#include "inspect/identity/fileIdentity.h"
#include "inspect/settings/settingKeys.h"

#include <KxMath/KxWheelDetection.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// A name by which QSettings can read the file; it would take one that is missing or cannot be opened for an empty one.
/// @param identity gets that of the content
/// @param copy gets the content when the path is not UTF-8: QSettings remembers what it has read by the name
QString readable(const std::string& path, InputFile& identity, std::unique_ptr<QTemporaryFile>& copy) {
    const ErrorSource source{"settings", path, {}};
    const QtPath where(path);
    const QFileInfo info(where.text());
    if (!info.exists()) {
        fail(ErrorKind::NotFound, source, QStringLiteral("do not exist"));
    }
    if (!info.isFile()) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("are not a file"));
    }
    QFile file(where.text());
    if (!file.open(QIODevice::ReadOnly)) {
        fail(ErrorKind::Unreadable, source, QStringLiteral("cannot be read: ") + file.errorString());
    }
    const QByteArray content = readAll(file, source);
    identity = identityOf(path, {content.constData(), static_cast<std::size_t>(content.size())});
    if (content.contains("@Variant(")) { // QSettings would unpack it, and print a warning when it cannot
        fail(ErrorKind::Damaged, source, QStringLiteral("hold a value '@Variant(', which no setting has"));
    }
    needMemoryForSettings(content.size());
    if (isUtf8(path)) {
        return where.text();
    }
    copy = std::make_unique<QTemporaryFile>();
    if (!copy->open() || copy->write(content) != content.size() || !copy->flush()) {
        fail(ErrorKind::Unreadable, source, QStringLiteral("cannot be copied: ") + copy->errorString());
    }
    return copy->fileName();
}

} // namespace

void failSettings(const std::string& file, const std::string& key, const QString& reason) {
    fail(ErrorKind::Unsuitable, {"settings", file, key}, reason);
}

QString lacksKey(const QString& key) {
    return QStringLiteral("lack the key '%1'").arg(key);
}

IniFile::IniFile(const std::string& path)
    : path_(path), store_(readable(path, identity_, copy_), QSettings::IniFormat) {
    const bool isEmpty = store_.allKeys().isEmpty(); // sections are parsed when they are first looked into
    if (store_.status() != QSettings::NoError) {
        fail(ErrorKind::Damaged, {"settings", path, {}}, QStringLiteral("cannot be parsed as an INI file"));
    }
    if (isEmpty && QFileInfo(store_.fileName()).size() > 0) { // QSettings does not report that reading fails
        fail(ErrorKind::Damaged, {"settings", path, {}}, QStringLiteral("hold no key that could be read"));
    }
}

std::optional<float> IniFile::number(const QString& key, Need need) {
    const QVariant found = value(key, need);
    bool isNumber = false;
    const float result = found.toFloat(&isNumber);
    if (isNumber && std::isfinite(result)) {
        return isInRange(key, static_cast<double>(result)) ? std::optional(result) : std::nullopt;
    }
    if (found.isValid()) {
        addFault(key, QStringLiteral("hold no number in '%1'").arg(key));
    }
    return std::nullopt;
}

std::optional<int> IniFile::wholeNumber(const QString& key, Need need) {
    const QVariant found = value(key, need);
    bool isNumber = false;
    const int result = found.toInt(&isNumber);
    if (isNumber) {
        return isInRange(key, result) ? std::optional(result) : std::nullopt;
    }
    if (found.isValid()) {
        addFault(key, QStringLiteral("hold no whole number in '%1'").arg(key));
    }
    return std::nullopt;
}

std::optional<Line> IniFile::line(const QString& slopeKey, const QString& interceptKey, Need need) {
    const std::optional<float> slope = number(slopeKey, need);
    const std::optional<float> intercept = number(interceptKey, need);
    return slope && intercept ? std::optional(Line{*slope, *intercept}) : std::nullopt;
}

std::optional<std::size_t> IniFile::word(const QString& key) {
    const QVariant found = value(key, Need::Optional);
    const SettingKey* const known = findSettingKey(key);
    if (!found.isValid() || known == nullptr) {
        return {};
    }
    const std::vector<std::string>& words = known->words;
    const auto at = std::find(words.begin(), words.end(), found.toString().toStdString());
    if (at != words.end()) {
        return static_cast<std::size_t>(at - words.begin());
    }
    QStringList choices;
    for (const std::string& choice : words) {
        choices.append(toQt(choice));
    }
    addFault(key, QStringLiteral("give '%1' for '%2', which is %3")
                      .arg(found.toString(), key, choices.join(QStringLiteral(" or "))));
    return {};
}

int IniFile::serial(int sensor) {
    return wholeNumber(KxMath::KxSensorKey(sensor, "SN"), sensor == 1 ? Need::Required : Need::Optional).value_or(0);
}

QVariant IniFile::value(const QString& key, Need need) {
    QVariant found = store_.value(key);
    if (!found.isValid() && need == Need::Required) {
        addFault(key, lacksKey(key));
    }
    return found;
}

bool IniFile::isInRange(const QString& key, double value) {
    const QString reason = whyOutOfRange(key, value);
    if (!reason.isEmpty()) {
        addFault(key, reason);
    }
    return reason.isEmpty();
}

std::vector<std::string> IniFile::warnings() const {
    return warningsOfNames(path_, store_.allKeys());
}

void IniFile::addFault(const QString& key, const QString& reason) {
    faults_.push_back({key.toStdString(), reason.toStdString()});
}

} // namespace KxInspect::detail
