// Results as the values of their JSON documents, which pages are compared with.
#pragma once

#include <KxInspect/Json.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPointF>

#include <string>
#include <vector>

namespace page_test {

/// The document of a result, with pictures.
template <typename Result>
QJsonObject jsonOf(const Result& result) {
    return QJsonDocument::fromJson(QByteArray::fromStdString(toJson(result, KxInspect::Pictures::Included))).object();
}

/// A number as text; `missing` for null.
inline QString text(const QJsonValue& value, int decimals, const QString& missing = "-") {
    return value.isNull() ? missing : QString::number(value.toDouble(), 'f', decimals);
}

/// The points of two lists, {"x": [...], "y": [...]}, without those that miss a number.
inline std::vector<QPointF> points(const QJsonValue& lists, double ySign = 1.0) {
    std::vector<QPointF> result;
    const QJsonArray x = lists["x"].toArray(), y = lists["y"].toArray();
    for (qsizetype i = 0; i < x.size(); ++i) {
        if (!x[i].isNull() && !y[i].isNull()) {
            result.emplace_back(x[i].toDouble(), ySign * y[i].toDouble());
        }
    }
    return result;
}

/// The points of a list of rows, from two of their columns.
inline std::vector<QPointF> points(const QJsonValue& rows, int xColumn, int yColumn) {
    std::vector<QPointF> result;
    for (const auto row : rows.toArray()) {
        result.emplace_back(row[xColumn].toDouble(), row[yColumn].toDouble());
    }
    return result;
}

} // namespace page_test
