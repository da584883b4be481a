// Results as JSON: numbers and lists, to write and to read.
#include "inspect/results/json.h"

#include "inspect/base/error.h"

#include <QtCore/QJsonDocument>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace KxInspect {

std::string shortestText(float value) {
    if (!std::isfinite(value)) {
        return {};
    }
    std::array<char, 64> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

namespace detail {

namespace {

[[noreturn]] void failResult(ErrorKind kind, const QString& key, const QString& reason, const ErrorPlace& place = {}) {
    fail(kind, {"result", {}, key.toStdString()}, reason, place);
}

/// The float whose shortest text was written. Rounding the double that the text was read as once more could miss it.
float floatOf(double value) {
    std::array<char, 64> text;
    const char* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    auto result = static_cast<float>(value); // stays beyond the range of floats
    std::from_chars(text.data(), end, result);
    return result;
}

} // namespace

QJsonValue jsonNumber(float value) {
    return std::isfinite(value) ? QJsonValue(QByteArray::fromStdString(shortestText(value)).toDouble()) : QJsonValue();
}

QJsonValue jsonNumber(double value) {
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QJsonValue jsonNumber(const std::optional<float>& value) {
    return value ? jsonNumber(*value) : QJsonValue();
}

QJsonArray jsonList(const std::vector<int>& numbers) {
    return listOf(numbers, [](int number) { return QJsonValue(number); });
}

QJsonArray jsonList(const std::vector<std::string>& texts) {
    return listOf(texts, [](const std::string& text) { return QJsonValue(QString::fromStdString(text)); });
}

QJsonArray jsonList(const std::vector<float>& numbers) {
    return listOf(numbers, [](float number) { return jsonNumber(number); });
}

QJsonArray jsonList(const std::vector<double>& numbers) {
    return listOf(numbers, [](double number) { return jsonNumber(number); });
}

QJsonObject jsonPoints(const std::vector<Point>& points) {
    QJsonArray x;
    QJsonArray y;
    for (const Point& point : points) {
        x.append(jsonNumber(point.x));
        y.append(jsonNumber(point.y));
    }
    return {{QStringLiteral("x"), x}, {QStringLiteral("y"), y}};
}

QJsonObject jsonLine(const Line& line) {
    return {{QStringLiteral("k"), jsonNumber(line.slope)}, {QStringLiteral("b"), jsonNumber(line.intercept)}};
}

QJsonValue jsonInterval(const Interval& interval) {
    return interval.isKnown() ? QJsonArray{jsonNumber(interval.low), jsonNumber(interval.high)} : QJsonValue();
}

QJsonValue jsonGaugeError(const GaugeError& error) {
    return error.isSet() ? QJsonValue(QJsonObject{{QStringLiteral("place"), jsonNumber(error.place)},
                                                  {QStringLiteral("turn"), jsonNumber(error.turn)},
                                                  {QStringLiteral("scale"), jsonNumber(error.scale)}})
                         : QJsonValue();
}

std::string jsonText(const QJsonObject& document) {
    return QJsonDocument(document).toJson().toStdString();
}

JsonValue JsonValue::parse(const std::string& text, const char* command) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    if (error.error != QJsonParseError::NoError) {
        failResult(ErrorKind::Damaged, {},
                   QStringLiteral("is no JSON at byte %1: %2").arg(error.offset).arg(error.errorString()),
                   {error.offset, {}, {}, {}});
    }
    if (!document.isObject()) {
        failResult(ErrorKind::Unsuitable, {}, QStringLiteral("is no JSON object"));
    }
    JsonValue result(document.object(), {});
    if (command == nullptr) {
        return result;
    }
    const std::string found = result["command"].text();
    if (found != command) {
        failResult(ErrorKind::Unsuitable, QStringLiteral("command"),
                   QStringLiteral("is one of the command '%1', not of '%2'")
                       .arg(QString::fromStdString(found), QLatin1String(command)));
    }
    return result;
}

JsonValue JsonValue::operator[](const char* key) const {
    if (!value_.isObject()) {
        failAsNo(QStringLiteral("object"));
    }
    const QString path = path_.isEmpty() ? QString::fromLatin1(key) : path_ + QLatin1Char('.') + QLatin1String(key);
    const QJsonValue member = value_.toObject().value(QLatin1String(key));
    if (member.isUndefined()) {
        failResult(ErrorKind::Unsuitable, path, QStringLiteral("lacks the key '%1'").arg(path));
    }
    return {member, path};
}

bool JsonValue::has(const char* key) const {
    return value_.toObject().contains(QLatin1String(key));
}

std::vector<std::string> JsonValue::keys() const {
    if (!value_.isObject()) {
        failAsNo(QStringLiteral("object"));
    }
    std::vector<std::string> result;
    for (const QString& key : value_.toObject().keys()) {
        result.push_back(key.toStdString());
    }
    return result;
}

std::vector<JsonValue> JsonValue::list() const {
    if (!value_.isArray()) {
        failAsNo(QStringLiteral("list"));
    }
    const QJsonArray elements = value_.toArray();
    std::vector<JsonValue> result;
    result.reserve(static_cast<std::size_t>(elements.size()));
    for (qsizetype i = 0; i < elements.size(); ++i) {
        result.push_back({elements[i], QStringLiteral("%1[%2]").arg(path_).arg(i)});
    }
    return result;
}

std::vector<JsonValue> JsonValue::ofSize(std::size_t size) const {
    std::vector<JsonValue> elements = list();
    if (elements.size() != size) {
        failAsNo(QStringLiteral("list of %1").arg(size));
    }
    return elements;
}

float JsonValue::number() const {
    return isNull() ? std::numeric_limits<float>::quiet_NaN() : floatOf(wideNumber());
}

std::optional<float> JsonValue::numberIfPresent() const {
    return isNull() ? std::nullopt : std::optional(number());
}

double JsonValue::wideNumber() const {
    if (!value_.isDouble() && !isNull()) {
        failAsNo(QStringLiteral("number"));
    }
    return value_.toDouble(std::numeric_limits<double>::quiet_NaN());
}

int JsonValue::wholeNumber(int min, int max) const {
    const std::int64_t number = wideWholeNumber();
    if (number < min || number > max) {
        failAsNo(QStringLiteral("whole number from %1 to %2").arg(min).arg(max));
    }
    return static_cast<int>(number);
}

std::int64_t JsonValue::wideWholeNumber() const {
    // A number that is not whole gives the default, whichever that is.
    if (!value_.isDouble() || value_.toInteger(0) != value_.toInteger(1)) {
        failAsNo(QStringLiteral("whole number"));
    }
    return value_.toInteger();
}

bool JsonValue::flag() const {
    if (!value_.isBool()) {
        failAsNo(QStringLiteral("true or false"));
    }
    return value_.toBool();
}

std::string JsonValue::text() const {
    if (!value_.isString()) {
        failAsNo(QStringLiteral("text"));
    }
    return value_.toString().toStdString();
}

std::string JsonValue::textOrNull() const {
    return isNull() ? std::string() : text();
}

std::vector<float> JsonValue::numbers(std::size_t count) const {
    std::vector<float> result;
    for (const JsonValue& element : list()) {
        result.push_back(element.number());
    }
    if (result.size() != count) {
        failAsNo("list of as many numbers as there should be");
    }
    return result;
}

std::vector<int> JsonValue::wholeNumbers() const {
    std::vector<int> result;
    for (const JsonValue& element : list()) {
        result.push_back(element.wholeNumber());
    }
    return result;
}

std::vector<float> JsonValue::numbers() const {
    std::vector<float> result;
    for (const JsonValue& element : list()) {
        result.push_back(element.number());
    }
    return result;
}

std::vector<double> JsonValue::wideNumbers() const {
    std::vector<double> result;
    for (const JsonValue& element : list()) {
        result.push_back(element.wideNumber());
    }
    return result;
}

std::vector<std::string> JsonValue::texts() const {
    std::vector<std::string> result;
    for (const JsonValue& element : list()) {
        result.push_back(element.text());
    }
    return result;
}

std::vector<Point> JsonValue::points() const {
    const std::vector<JsonValue> x = (*this)["x"].list();
    const std::vector<JsonValue> y = (*this)["y"].list();
    if (x.size() != y.size()) {
        failAsNo(QStringLiteral("list of points: x and y differ in length"));
    }
    std::vector<Point> result;
    result.reserve(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        result.push_back({x[i].number(), y[i].number()});
    }
    return result;
}

Line JsonValue::line() const {
    return {(*this)["k"].number(), (*this)["b"].number()};
}

Interval JsonValue::interval() const {
    if (isNull()) {
        return {};
    }
    const std::vector<float> ends = numbers(2);
    return {ends[0], ends[1]};
}

GaugeError JsonValue::gaugeError() const {
    if (isNull()) {
        return {};
    }
    return {(*this)["place"].number(), (*this)["turn"].number(), (*this)["scale"].number()};
}

void JsonValue::failAsNo(const QString& what) const {
    failResult(ErrorKind::Unsuitable, path_, QStringLiteral("holds no %1 in '%2'").arg(what, path_));
}

} // namespace detail

} // namespace KxInspect
