// Results as JSON: numbers and lists, to write and to read.
#pragma once

#include <KxInspect/CrossSection.h>
#include <KxInspect/Interval.h>
#include <KxInspect/Json.h>
#include <KxInspect/Profile.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// @{ A number, null for NaN and infinities. Floats are written with the digits that tell them from other floats:
/// 1360.1, not 1360.0999755859375.
QJsonValue jsonNumber(float value);
QJsonValue jsonNumber(double value);
QJsonValue jsonNumber(const std::optional<float>& value); ///< null for nothing too
/// @}

/// What `make` turns the items into.
template <typename Items, typename Make>
QJsonArray listOf(const Items& items, Make make) {
    QJsonArray list;
    for (const auto& item : items) {
        list.append(make(item));
    }
    return list;
}

QJsonArray jsonList(const std::vector<int>& numbers);
QJsonArray jsonList(const std::vector<std::string>& texts);
QJsonArray jsonList(const std::vector<float>& numbers); ///< null for those that are not finite
QJsonArray jsonList(const std::vector<double>& numbers); ///< as above

/// {"x": [...], "y": [...]}, which is shorter than a list of points.
QJsonObject jsonPoints(const std::vector<Point>& points);

/// {"k": slope, "b": intercept}
QJsonObject jsonLine(const Line& line);

/// [low, high]; null for an interval that is not known.
QJsonValue jsonInterval(const Interval& interval);

/// Its parts; null where no error was told.
QJsonValue jsonGaugeError(const GaugeError& error);

/// The document as text: indented, members in alphabetical order, a line feed at the end.
std::string jsonText(const QJsonObject& document);

/// A value of a JSON document that is being read, with its path for messages: "pairs[2].distance". Each member function
/// throws an Error of the kind Unsuitable when the value is not what it is asked for.
class JsonValue {
public:
    /// Reads a document. Throws an Error with the byte when the text is no JSON, or when it is the result of another
    /// command.
    /// @param command what its member "command" must be; null for the results that have none
    static JsonValue parse(const std::string& text, const char* command = nullptr);

    /// The member of an object.
    JsonValue operator[](const char* key) const;
    bool has(const char* key) const; ///< false too when the value is no object
    bool isNull() const { return value_.isNull(); }
    bool isText() const { return value_.isString(); }
    std::vector<std::string> keys() const; ///< of the members of an object, in alphabetical order

    /// The elements of a list.
    std::vector<JsonValue> list() const;
    std::vector<JsonValue> ofSize(std::size_t size) const; ///< those of a list of so many

    float number() const; ///< NaN for null
    std::optional<float> numberIfPresent() const; ///< nothing for null
    double wideNumber() const; ///< in double precision; NaN for null
    int wholeNumber(int min = std::numeric_limits<int>::min(), int max = std::numeric_limits<int>::max()) const;
    std::int64_t wideWholeNumber() const;
    bool flag() const;
    std::string text() const;
    std::string textOrNull() const; ///< empty for null

    std::vector<float> numbers(std::size_t count) const; ///< exactly so many; NaN for null
    std::vector<int> wholeNumbers() const;
    std::vector<float> numbers() const; ///< NaN for null
    std::vector<double> wideNumbers() const;
    std::vector<std::string> texts() const;
    std::vector<Point> points() const; ///< as jsonPoints() writes them
    Line line() const; ///< as jsonLine() writes it
    Interval interval() const; ///< as jsonInterval() writes it
    GaugeError gaugeError() const; ///< as jsonGaugeError() writes it

    /// Throws the Error "holds no WHAT in 'PATH'".
    [[noreturn]] void failAsNo(const QString& what) const;

private:
    JsonValue(const QJsonValue& value, const QString& path) : value_(value), path_(path) {}
    QJsonValue value_;
    QString path_;
};

} // namespace KxInspect::detail
