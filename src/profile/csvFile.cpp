// Profiles in semicolon-separated text.
#include "KxMath/KxProfile.h"

#include "io/binaryIo.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QStringView>
#include <QtCore/QTextStream>

#include <optional>

namespace KxMath {

namespace {

constexpr QLatin1Char kSeparator(';');

/// The field of a line at `column`, nothing when there are not so many.
std::optional<QStringView> fieldAt(QStringView line, int column) {
    for (; column > 0; --column) {
        const qsizetype end = line.indexOf(kSeparator);
        if (end < 0) {
            return {};
        }
        line = line.sliced(end + 1);
    }
    const qsizetype end = line.indexOf(kSeparator);
    return end < 0 ? line : line.first(end);
}

/// The number in a field, with a decimal comma or point; 0 when it is none.
float parseField(QStringView field) {
    QString text = field.toString();
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    return static_cast<float>(text.toDouble());
}

QByteArray numberText(float v) {
    return QByteArray::number(static_cast<double>(v), 'g', 6).replace('.', ',');
}

} // namespace

bool KxProfile::writeToCSVFile(QString fileName) {
    QFile file(fileName);
    if (!detail::openForWriting(file)) {
        return false;
    }
    QByteArray text;
    for (const KxPointXY& p : std::as_const(points)) {
        text += numberText(p.x) + ';' + numberText(p.y) + '\n';
    }
    file.write(text);
    file.close();
    return true;
}

int KxProfile::readFromCSVFile(QString fileName, int xColumn, int yColumn) {
    QFile file(fileName);
    if (!detail::openForReading(file)) {
        return size();
    }
    clear();
    QTextStream stream(&file);
    QString line;
    while (stream.readLineInto(&line) && !line.isEmpty()) {
        const std::optional<QStringView> x = fieldAt(line, xColumn);
        const std::optional<QStringView> y = fieldAt(line, yColumn);
        if (x && y) {
            points.append(KxPointXY(parseField(*x), parseField(*y)));
        }
    }
    return size();
}

} // namespace KxMath
