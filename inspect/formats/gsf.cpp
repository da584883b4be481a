// Gwyddion Simple Field 1.0, as the user guide of Gwyddion 2.62 describes it.
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/mapShape.h"
#include "inspect/formats/pointTable.h"

#include <QtCore/QMap>
#include <QtCore/QtEndian>

namespace KxInspect::detail {

namespace {

constexpr qsizetype kAlignment = 4; ///< of the data, which 1 to 4 bytes 0 stand before

using Entries = QMap<QByteArray, QByteArray>;

Entries readEntries(const ErrorSource& source, const QByteArray& header) {
    FileHeader lines(source, header);
    const auto first = lines.nextLine();
    if (!first || first->join(' ') != "Gwyddion Simple Field 1.0") {
        lines.failWhole(ErrorKind::Unsuitable, QStringLiteral("is not a Gwyddion Simple Field 1.0"));
    }
    Entries entries;
    while (const auto words = lines.nextLine()) {
        const QByteArray line = words->join(' ');
        const qsizetype sign = line.indexOf('=');
        if (sign < 1) {
            lines.fail(ErrorKind::Damaged, QStringLiteral("has no entry NAME = VALUE"));
        }
        entries.insert(line.left(sign).trimmed(), line.mid(sign + 1).trimmed());
    }
    return entries;
}

double numberIn(const ErrorSource& source, const Entries& entries, const char* name, double byDefault) {
    return entries.contains(name) ? readNumber(source, name, entries.value(name)) : byDefault;
}

qint64 countIn(const ErrorSource& source, const Entries& entries, const char* name) {
    bool isCount = false;
    const qint64 count = entries.value(name).toLongLong(&isCount);
    if (!isCount) {
        fail(ErrorKind::Damaged, source, QStringLiteral("has no count behind %1").arg(QLatin1String(name)));
    }
    return count;
}

void checkUnits(const ErrorSource& source, const Entries& entries) {
    for (const char* const name : {"XYUnits", "ZUnits"}) {
        if (entries.value(name) != "m") {
            fail(ErrorKind::Unsuitable, source,
                 QStringLiteral("has %1 '%2', only m is read")
                     .arg(QLatin1String(name), QString::fromUtf8(entries.value(name).left(40))));
        }
    }
}

} // namespace

HeightMap parseGsf(const ErrorSource& source, const QByteArray& content) {
    const qsizetype end = content.indexOf('\0');
    if (end < 0) {
        fail(ErrorKind::Damaged, source, QStringLiteral("has no data behind its header"), {content.size(), {}, {}, {}});
    }
    const Entries entries = readEntries(source, content.left(end));
    HeightMap map;
    setShape(source, countIn(source, entries, "YRes"), countIn(source, entries, "XRes"), map);
    checkUnits(source, entries);
    setPitch(source, numberIn(source, entries, "XReal", 1.0) * kMmPerMetre / map.columns,
             numberIn(source, entries, "YReal", 1.0) * kMmPerMetre / map.rows, map);
    setOrigin(source, numberIn(source, entries, "XOffset", 0.0) * kMmPerMetre,
              numberIn(source, entries, "YOffset", 0.0) * kMmPerMetre, map);
    const qsizetype start = (end / kAlignment + 1) * kAlignment;
    const qint64 needed = qint64(map.rows) * map.columns * qint64(sizeof(float));
    if (content.size() - start != needed) {
        fail(ErrorKind::Damaged, source,
             QStringLiteral("has %1 bytes behind its header, %2 x %3 cells need %4")
                 .arg(std::max(content.size() - start, qsizetype(0)))
                 .arg(map.rows)
                 .arg(map.columns)
                 .arg(needed),
             {content.size(), {}, {}, {}});
    }
    map.heights.resize(static_cast<std::size_t>(needed) / sizeof(float));
    qFromLittleEndian<float>(content.constData() + start, static_cast<qsizetype>(map.heights.size()),
                             map.heights.data());
    for (float& height : map.heights) {
        height = static_cast<float>(static_cast<double>(height) * kMmPerMetre);
    }
    return map;
}

QByteArray formatGsf(const HeightMap& map) {
    const double pitch = static_cast<double>(map.pitch) / kMmPerMetre;
    QByteArray bytes = "Gwyddion Simple Field 1.0\nXRes = " + QByteArray::number(map.columns) +
                       "\nYRes = " + QByteArray::number(map.rows) + "\nXReal = " + doubleText(map.columns * pitch) +
                       "\nYReal = " + doubleText(map.rows * pitch) +
                       "\nXOffset = " + doubleText(static_cast<double>(map.originX) / kMmPerMetre) +
                       "\nYOffset = " + doubleText(static_cast<double>(map.originZ) / kMmPerMetre) +
                       "\nXYUnits = m\nZUnits = m\nTitle = height\n";
    bytes.append(kAlignment - bytes.size() % kAlignment, '\0');
    bytes.reserve(bytes.size() + static_cast<qsizetype>(map.heights.size() * sizeof(float)));
    for (const float height : map.heights) {
        appendFloat(bytes, static_cast<float>(static_cast<double>(height) / kMmPerMetre));
    }
    return bytes;
}

} // namespace KxInspect::detail
