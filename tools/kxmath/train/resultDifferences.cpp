// Where two results in JSON differ.
#include "tools/kxmath/train/resultDifferences.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <utility>

namespace kxtool {

namespace {

QString textOf(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::Undefined:
        return QStringLiteral("nothing");
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Array:
        return QStringLiteral("a list of %1").arg(value.toArray().size());
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::String:
        return QLatin1Char('\'') + value.toString() + QLatin1Char('\'');
    default:
        return value.toVariant().toString();
    }
}

void compare(const QJsonValue& then, const QJsonValue& now, const QString& path, QStringList& found) {
    if (then.isObject() && now.isObject()) {
        const QJsonObject a = then.toObject();
        const QJsonObject b = now.toObject();
        QStringList keys = a.keys();
        const QStringList added = b.keys();
        for (const QString& key : added) {
            if (!a.contains(key)) {
                keys.append(key);
            }
        }
        for (const QString& key : std::as_const(keys)) {
            compare(a.value(key), b.value(key), path.isEmpty() ? key : path + QLatin1Char('.') + key, found);
        }
    } else if (then.isArray() && now.isArray() && then.toArray().size() == now.toArray().size()) {
        const QJsonArray a = then.toArray();
        const QJsonArray b = now.toArray();
        for (qsizetype i = 0; i < a.size(); ++i) {
            compare(a.at(i), b.at(i), path + QStringLiteral("[%1]").arg(i), found);
        }
    } else if (then != now) {
        found.append(QStringLiteral("%1: %2 in the result, %3 measured").arg(path, textOf(then), textOf(now)));
    }
}

QJsonValue parsed(const std::string& text) {
    const auto bytes = QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()));
    return QJsonDocument::fromJson(bytes).object();
}

} // namespace

QStringList differences(const std::string& result, const std::string& measured) {
    QStringList found;
    compare(parsed(result), parsed(measured), {}, found);
    return found;
}

} // namespace kxtool
