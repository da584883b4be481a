// Profiles from files of several kinds.
#include "inspect/formats/profileFiles.h"

#include <KxMath/KxProfileZ.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <optional>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using KxMath::KxProfile;

enum class Kind { CloudSection, ProfileRecord, Csv, Columns };

constexpr qint64 kMaxTextSize = 256 << 20; ///< larger texts are no profiles

Kind kindOf(const QByteArray& head) {
    if (head.startsWith('\x02')) {
        return Kind::CloudSection;
    }
    if (head.startsWith('\x05')) {
        return Kind::ProfileRecord;
    }
    const QByteArray firstLine = head.left(head.indexOf('\n'));
    return firstLine.contains(';') ? Kind::Csv : Kind::Columns;
}

/// The point in a line of columns, nothing in a header or remark.
std::optional<KxPointXY> pointIn(const QString& line, int xColumn, int yColumn) {
    static const QRegularExpression separators(QStringLiteral("[\\s;]+"));
    const QStringList fields = line.split(separators, Qt::SkipEmptyParts);
    if (fields.size() <= std::max(xColumn, yColumn)) {
        return {};
    }
    bool isX = false;
    bool isY = false;
    const float x = fields[xColumn].toFloat(&isX);
    const float y = fields[yColumn].toFloat(&isY);
    return isX && isY ? std::optional<KxPointXY>({x, y}) : std::nullopt;
}

/// The longest block of lines with points; what stands before, between and behind blocks is header or remark.
QList<KxPointXY> readColumns(const QByteArray& text, int xColumn, int yColumn) {
    QList<KxPointXY> longest;
    QList<KxPointXY> block;
    const auto closeBlock = [&] {
        if (block.size() > longest.size()) {
            longest = block;
        }
        block.clear();
    };
    for (const QByteArray& line : text.split('\n')) {
        if (const auto point = pointIn(QString::fromLatin1(line), xColumn, yColumn)) {
            block.append(*point);
        } else {
            closeBlock();
        }
    }
    closeBlock();
    return longest;
}

/// Reads the record at the start of a file. @return the number of points, -1 for a damaged record
int readRecord(const QString& path, KxProfile& profile) {
    KxMath::KxProfileZ record;
    const int count = record.readFromFile(path);
    profile = record;
    return count;
}

/// Reads the record or the section at the position of a file. @return the number of points, -1 for neither
int readNext(QFile& file, QList<KxPointXY>& points) {
    KxMath::KxProfileZ record;
    int count = record.readFromFile(file);
    if (count < 0) {
        count = static_cast<KxMath::KxPointCloud<KxPointXY>&>(record).readFromFile(file);
    }
    points = record.points;
    return count;
}

/// @return what is wrong, empty when the file is open
QString openForReading(QFile& file) {
    return file.open(QIODevice::ReadOnly) ? QString() : QStringLiteral("cannot be read: %1").arg(file.errorString());
}

} // namespace

QString readProfileFile(const QString& path, int xColumn, int yColumn, KxProfile& profile) {
    QFile file(path);
    if (const QString fault = openForReading(file); !fault.isEmpty()) {
        return fault;
    }
    if (file.size() > kMaxTextSize) {
        return QStringLiteral("is too large for a profile");
    }
    const QByteArray content = file.readAll();
    file.close();
    profile.clear();
    int count = 0;
    switch (kindOf(content)) {
    case Kind::CloudSection:
        count = static_cast<KxMath::KxPointCloud<KxPointXY>&>(profile).readFromFile(path);
        break;
    case Kind::ProfileRecord:
        count = readRecord(path, profile);
        break;
    case Kind::Csv:
        count = profile.readFromCSVFile(path, xColumn, yColumn);
        break;
    case Kind::Columns:
        profile.points = readColumns(content, xColumn, yColumn);
        count = profile.size();
        break;
    }
    if (count < 0) {
        return QStringLiteral("is damaged");
    }
    return count == 0 ? QStringLiteral("holds no points") : QString();
}

QString readProfilesOfFile(const QString& path, int xColumn, int yColumn, std::vector<QList<KxPointXY>>& profiles) {
    QFile file(path);
    if (const QString fault = openForReading(file); !fault.isEmpty()) {
        return fault;
    }
    profiles.clear();
    const Kind kind = kindOf(file.peek(1));
    if (kind != Kind::CloudSection && kind != Kind::ProfileRecord) {
        file.close();
        KxProfile profile;
        const QString fault = readProfileFile(path, xColumn, yColumn, profile);
        profiles.push_back(profile.points);
        return fault;
    }
    while (!file.atEnd()) {
        if (readNext(file, profiles.emplace_back()) < 0) {
            return QStringLiteral("is damaged: neither a profile record nor a 2-D cloud section begins at byte %1")
                .arg(file.pos());
        }
    }
    return {};
}

} // namespace kxtool
