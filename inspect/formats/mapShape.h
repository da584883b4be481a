// Numbers of height maps in files.
#pragma once

#include "inspect/base/error.h"

#include <KxInspect/HeightMap.h>

#include <QtCore/QByteArray>
#include <QtCore/QLocale>

#include <cmath>

namespace KxInspect::detail {

inline constexpr double kMmPerMetre = 1000.0;
inline constexpr qint64 kMostCells = 40'000'000; ///< of a map, as in makeHeightMap()

/// Sets rows and columns, which a file claims. Throws an Error Damaged below 1, Unsuitable for too many cells.
inline void setShape(const ErrorSource& source, qint64 rows, qint64 columns, HeightMap& map) {
    if (rows < 1 || columns < 1) {
        fail(ErrorKind::Damaged, source, QStringLiteral("has a map of %1 x %2 cells").arg(rows).arg(columns));
    }
    if (rows > kMostCells || columns > kMostCells / rows) {
        fail(ErrorKind::Unsuitable, source,
             QStringLiteral("has a map of %1 x %2 cells, more than 40 million in all").arg(rows).arg(columns));
    }
    map.rows = static_cast<int>(rows);
    map.columns = static_cast<int>(columns);
}

/// Sets the pitch from those along x and z, mm. Throws an Error Damaged when one is not above 0, Unsuitable when they differ.
inline void setPitch(const ErrorSource& source, double alongX, double alongZ, HeightMap& map) {
    constexpr double kTolerance = 1e-6; // as decimal numbers of 7 digits are rounded
    map.pitch = static_cast<float>(alongX);
    const bool isAbove0 = map.pitch > 0.0f && alongZ > 0.0; // NaN: false
    if (!isAbove0 || !std::isfinite(map.pitch) || !std::isfinite(alongZ)) {
        fail(ErrorKind::Damaged, source, QStringLiteral("has cells of %1 x %2 mm").arg(alongX).arg(alongZ));
    }
    if (std::abs(alongX - alongZ) > kTolerance * alongX) {
        fail(ErrorKind::Unsuitable, source,
             QStringLiteral("has cells of %1 x %2 mm; only square ones are read").arg(alongX).arg(alongZ));
    }
}

/// Sets the place of the first cell, mm. Throws an Error Damaged when it is beyond a float.
inline void setOrigin(const ErrorSource& source, double x, double z, HeightMap& map) {
    map.originX = static_cast<float>(x);
    map.originZ = static_cast<float>(z);
    if (!std::isfinite(map.originX) || !std::isfinite(map.originZ)) {
        fail(ErrorKind::Damaged, source, QStringLiteral("has its first cell at %1, %2 mm").arg(x).arg(z));
    }
}

/// A number of a file that reads back as the same double.
inline QByteArray doubleText(double value) {
    return QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
}

/// A number in a header. Throws an Error Damaged for what is no finite number.
inline double readNumber(const ErrorSource& source, const QByteArray& name, const QByteArray& text) {
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value)) {
        fail(ErrorKind::Damaged, source,
             QStringLiteral("has no number behind %1: '%2'")
                 .arg(QString::fromLatin1(name), QString::fromLatin1(text.left(40))));
    }
    return value;
}

} // namespace KxInspect::detail
