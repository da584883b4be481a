// Profiles in semicolon-separated text.
#include "KxMath/KxProfile.h"

#include "io/binaryIo.h"
#include "io/decimalText.h"
#include "io/lineReader.h"

#include <QtCore/QBuffer>
#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QTextStream>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace KxMath {

namespace {

constexpr char kSeparator = ';';

/// Two fields of a line, by their columns; nothing when the line has fewer columns.
std::optional<std::pair<std::string_view, std::string_view>> fieldsAt(std::string_view line, int xColumn, int yColumn) {
    std::pair<std::string_view, std::string_view> fields;
    const char* const lineEnd = line.data() + line.size();
    const char* begin = line.data();
    for (int column = 0;; ++column) {
        const char* const end = std::find(begin, lineEnd, kSeparator);
        const std::string_view field(begin, static_cast<std::size_t>(end - begin));
        if (column == xColumn) {
            fields.first = field;
        }
        if (column == yColumn) {
            fields.second = field;
        }
        if (column >= std::max(xColumn, yColumn)) {
            return fields;
        }
        if (end == lineEnd) {
            return {};
        }
        begin = end + 1;
    }
}

/// The number in a field with a decimal point; 0 for other text.
float parseField(std::string_view field) {
    if (const std::optional<double> number = detail::parsePlainNumber(field)) {
        return static_cast<float>(*number);
    }
    return static_cast<float>(QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size())).toDouble());
}

/// Whether the text is UTF-16 or UTF-32, or has a byte order mark: these start with bytes that no number contains.
bool isEncoded(QFile& file) {
    const QByteArray head = file.peek(4);
    return std::any_of(head.cbegin(), head.cend(), [](char c) { return c == '\0' || static_cast<signed char>(c) < 0; });
}

/// The whole text in UTF-8, without a byte order mark.
QByteArray decoded(QFile& file) {
    QTextStream stream(&file);
    return stream.readAll().toUtf8();
}

} // namespace

bool KxProfile::writeToCSVFile(QString fileName) {
    QFile file(fileName);
    if (!detail::openForWriting(file)) {
        return false;
    }
    constexpr qsizetype kLongestLine = 2 * static_cast<qsizetype>(detail::kNumberTextSize) + 2;
    constexpr qsizetype kBlock = 4096; // points whose text is held in memory
    QByteArray text;
    for (qsizetype begin = 0; begin < points.size(); begin += kBlock) {
        const qsizetype end = std::min(points.size(), begin + kBlock);
        text.resize((end - begin) * kLongestLine);
        char* at = text.data();
        for (qsizetype i = begin; i < end; ++i) {
            const KxPointXY& p = std::as_const(points)[i];
            at = detail::writeNumber(p.x, at);
            *at++ = kSeparator;
            at = detail::writeNumber(p.y, at);
            *at++ = '\n';
        }
        std::transform(text.data(), at, text.data(), [](char c) { return c == '.' ? ',' : c; });
        file.write(text.constData(), at - text.constData());
    }
    file.close();
    return true;
}

int KxProfile::readFromCSVFile(QString fileName, int xColumn, int yColumn) {
    QFile file(fileName);
    if (!detail::openForReading(file)) {
        return size();
    }
    clear();
    QBuffer text;
    const bool isText = !isEncoded(file);
    if (!isText) {
        text.setData(decoded(file));
        text.open(QIODevice::ReadOnly);
    }
    // Commas between digits are decimal points; elsewhere a field is not a number with either of them.
    detail::LineReader lines(isText ? static_cast<QIODevice&>(file) : text, ',', '.');
    for (std::optional<std::string_view> line = lines.next(); line && !line->empty(); line = lines.next()) {
        if (const auto fields = fieldsAt(*line, std::max(xColumn, 0), std::max(yColumn, 0))) {
            points.append(KxPointXY(parseField(fields->first), parseField(fields->second)));
        }
    }
    return size();
}

} // namespace KxMath
