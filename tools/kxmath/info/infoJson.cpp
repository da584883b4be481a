// What files hold, as JSON.
#include "tools/kxmath/info/infoJson.h"

#include <KxInspect/Json.h>
#include <KxMath/KxMathVersion.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

namespace kxtool {

namespace {

using KxInspect::FileContents;
using KxInspect::PartKind;

QString kindText(PartKind kind) {
    switch (kind) {
    case PartKind::CloudSection2D:
        return QStringLiteral("cloudSection2D");
    case PartKind::CloudSection3D:
        return QStringLiteral("cloudSection3D");
    case PartKind::CloudSectionColours:
        return QStringLiteral("cloudSectionColours");
    case PartKind::ProfileRecord:
        return QStringLiteral("profileRecord");
    case PartKind::WholeFile:
        break;
    }
    return QStringLiteral("wholeFile");
}

/// A number as the shortest text that reads back as the same float; null for NaN and infinities, which JSON does not have.
QJsonValue number(float value) {
    return std::isfinite(value) ? QJsonValue(QString::fromStdString(KxInspect::shortestText(value)).toDouble())
                                : QJsonValue();
}

QJsonValue number(const std::optional<std::int64_t>& value) {
    return value ? QJsonValue(static_cast<qint64>(*value)) : QJsonValue();
}

QJsonValue rangeJson(const KxInspect::Range& range) {
    return range.isEmpty() ? QJsonValue() : QJsonValue(QJsonArray{number(range.min), number(range.max)});
}

QJsonValue partsJson(const FileContents& contents) {
    QJsonArray parts;
    for (const KxInspect::PartCount& part : contents.parts) {
        parts.append(QJsonObject{{"kind", kindText(part.kind)}, {"count", static_cast<qint64>(part.count)}});
    }
    return parts;
}

QJsonValue formJson(const std::optional<KxInspect::TextForm>& form) {
    if (!form) {
        return {};
    }
    return QJsonObject{{"columns", form->columns},
                       {"separator", QString(QLatin1Char(form->separator))},
                       {"decimalSign", QString(QLatin1Char(form->decimalSign))},
                       {"titleLines", static_cast<qint64>(form->titleLines)},
                       {"remarks", static_cast<qint64>(form->remarks)}};
}

QJsonValue errorJson(const std::optional<KxInspect::Error>& error) {
    if (!error) {
        return {};
    }
    const KxInspect::ErrorPlace& place = error->place();
    return QJsonObject{{"message", QString::fromUtf8(error->what())},
                       {"byte", number(place.byte)},
                       {"record", number(place.record)},
                       {"line", number(place.line)},
                       {"column", number(place.column)}};
}

QJsonObject entryJson(const InfoEntry& entry) {
    QJsonObject json{{"file", entry.file}, {"error", errorJson(entry.error)}};
    const bool isRead = entry.contents.has_value();
    const FileContents contents = entry.contents.value_or(FileContents());
    const auto add = [&](const char* name, const QJsonValue& value) {
        json.insert(QLatin1String(name), isRead ? value : QJsonValue());
    };
    add("kind", contents.kind ? QJsonValue(QString::fromStdString(kindName(*contents.kind))) : QJsonValue());
    add("parts", partsJson(contents));
    add("text", formJson(contents.text));
    add("points", static_cast<qint64>(contents.points));
    add("missingPoints", static_cast<qint64>(contents.missing));
    add("xRangeMm", rangeJson(contents.x));
    add("yRangeMm", rangeJson(contents.y));
    add("zRangeMm", rangeJson(contents.z));
    add("medianSpacingMm", number(contents.spacing));
    return json;
}

} // namespace

QString infoJson(const std::vector<InfoEntry>& entries) {
    QJsonArray files;
    for (const InfoEntry& entry : entries) {
        files.append(entryJson(entry));
    }
    const QJsonObject document{{"command", "info"}, {"version", KxMath_GetVersionString()}, {"files", files}};
    return QString::fromUtf8(QJsonDocument(document).toJson());
}

} // namespace kxtool
