// Surface data file of ISO 25178-71:2017, as text.
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/mapShape.h"
#include "inspect/formats/pointTable.h"
#include "inspect/formats/textNumber.h"

#include <QtCore/QMap>

#include <limits>
#include <string_view>

namespace KxInspect::detail {

namespace {

constexpr int kMost = 65535; ///< points and profiles: counts of 16 bits in the binary form
constexpr const char* kBlanks = " \t\r\n";

/// NAME = VALUE lines up to a line "*" or the end.
QMap<QByteArray, QByteArray> readEntries(FileHeader& lines) {
    QMap<QByteArray, QByteArray> entries;
    while (const auto words = lines.nextLine()) {
        const QByteArray line = words->join(' ');
        if (line == "*") {
            break;
        }
        if (const qsizetype sign = line.indexOf('='); sign > 0) {
            entries.insert(line.left(sign).trimmed().toLower(), line.mid(sign + 1).trimmed());
        }
    }
    return entries;
}

class SdfText {
public:
    SdfText(const ErrorSource& source, const QByteArray& content) : source_(source), content_(content) {}

    HeightMap read() {
        FileHeader lines(source_, content_);
        const auto first = lines.nextLine();
        if (!first || !first->constFirst().startsWith("aISO-")) {
            const bool isBinary = content_.startsWith("bISO-");
            lines.failWhole(ErrorKind::Unsuitable, isBinary ? QStringLiteral("is binary; only text is read")
                                                            : QStringLiteral("is not a surface data file"));
        }
        entries_ = readEntries(lines);
        if (number("compression", 0.0) != 0.0) {
            fail(ErrorKind::Unsuitable, source_, QStringLiteral("is compressed"));
        }
        HeightMap map;
        setShape(source_, count("numprofiles"), count("numpoints"), map);
        setPitch(source_, number("xscale") * kMmPerMetre, number("yscale") * kMmPerMetre, map);
        readHeights(lines.end(), number("zscale") * kMmPerMetre, map);
        return map;
    }

private:
    double number(const char* name, std::optional<double> byDefault = {}) const {
        return byDefault && !entries_.contains(name) ? *byDefault : readNumber(source_, name, entries_.value(name));
    }
    qint64 count(const char* name) const {
        const double value = number(name);
        if (!(value >= 0.0 && value <= kMost) || value != std::floor(value)) {
            fail(ErrorKind::Damaged, source_,
                 QStringLiteral("has %1 = %2, which is no count").arg(QLatin1String(name)).arg(value));
        }
        return static_cast<qint64>(value);
    }

    void readHeights(qsizetype begin, double mmPerUnit, HeightMap& map) {
        const std::string_view text(content_.constData(), static_cast<std::size_t>(content_.size()));
        const std::size_t cells = static_cast<std::size_t>(map.rows) * static_cast<std::size_t>(map.columns);
        std::size_t at = static_cast<std::size_t>(begin);
        map.heights.reserve(std::min(cells, text.size() / 2 + 1));
        for (;;) {
            at = std::min(text.find_first_not_of(kBlanks, at), text.size());
            const std::size_t end = std::min(text.find_first_of(kBlanks, at), text.size());
            const std::string_view word = text.substr(at, end - at);
            if (word.empty() || word == "*") {
                checkCount(map, cells, at);
                readOrigin(end, map);
                return;
            }
            if (map.heights.size() == cells) {
                failAt(at, QStringLiteral("goes on behind its %1 heights").arg(cells));
            }
            map.heights.push_back(heightIn(word, at, mmPerUnit));
            at = end;
        }
    }

    float heightIn(std::string_view word, std::size_t at, double mmPerUnit) const {
        if (word == "BAD" || word == "nan") {
            return std::numeric_limits<float>::quiet_NaN();
        }
        char decimalSign = '.';
        double value = 0.0;
        if (parseDouble(word, decimalSign, value) != FieldKind::Number) {
            failAt(at, QStringLiteral("has no height: '%1'").arg(QString::fromStdString(excerpt(word))));
        }
        return static_cast<float>(value * mmPerUnit);
    }

    void checkCount(const HeightMap& map, std::size_t cells, std::size_t at) const {
        if (map.heights.size() != cells) {
            failAt(at, QStringLiteral("ends after %1 of %2 heights").arg(map.heights.size()).arg(cells));
        }
    }

    /// The trailer, in which other programs have other things.
    void readOrigin(std::size_t begin, HeightMap& map) {
        const QByteArray trailer = content_.mid(static_cast<qsizetype>(begin)).trimmed() + '\n';
        FileHeader lines(source_, trailer);
        entries_ = readEntries(lines);
        setOrigin(source_, number("originx", 0.0) * kMmPerMetre, number("originz", 0.0) * kMmPerMetre, map);
    }

    [[noreturn]] void failAt(std::size_t byte, const QString& reason) const {
        fail(ErrorKind::Damaged, source_, QStringLiteral("%1, at byte %2").arg(reason).arg(byte),
             {static_cast<std::int64_t>(byte), {}, {}, {}});
    }

    const ErrorSource& source_;
    const QByteArray& content_;
    QMap<QByteArray, QByteArray> entries_;
};

} // namespace

HeightMap parseSdf(const ErrorSource& source, const QByteArray& content) {
    return SdfText(source, content).read();
}

QByteArray formatSdf(const ErrorSource& source, const HeightMap& map) {
    if (map.rows > kMost || map.columns > kMost) {
        fail(ErrorKind::Unwritable, source,
             QStringLiteral("cannot hold %1 x %2 cells; the maximum is 65535 rows and columns")
                 .arg(map.rows)
                 .arg(map.columns));
    }
    const QByteArray pitch = doubleText(static_cast<double>(map.pitch) / kMmPerMetre);
    // The dates are not known, nor is the resolution (negative).
    QByteArray text = "aISO-1.0\nManufacID = KxMath\nCreateDate = 000000000000\nModDate = 000000000000\nNumPoints = " +
                      QByteArray::number(map.columns) + "\nNumProfiles = " + QByteArray::number(map.rows) +
                      "\nXscale = " + pitch + "\nYscale = " + pitch +
                      "\nZscale = 0.001\nZresolution = -1\nCompression = 0\nDataType = 7\nCheckType = 0\n*\n";
    for (std::size_t i = 0; i < map.heights.size(); ++i) {
        text += std::isfinite(map.heights[i]) ? coordinateText(map.heights[i]) : QByteArray("nan");
        text += (i + 1) % static_cast<std::size_t>(map.columns) == 0 ? '\n' : ' ';
    }
    return text + "*\nOriginX = " + doubleText(static_cast<double>(map.originX) / kMmPerMetre) +
           "\nOriginZ = " + doubleText(static_cast<double>(map.originZ) / kMmPerMetre) + "\n*\n";
}

} // namespace KxInspect::detail
