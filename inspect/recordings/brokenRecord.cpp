// What is wrong where no whole record begins.
#include "inspect/recordings/brokenRecord.h"

#include <KxMath/KxRecording.h>

#include <QtCore/QStringList>
#include <QtCore/QtEndian>

#include <optional>

namespace KxInspect::detail {

namespace {

/// A kind of record in files: its first byte is followed by the number of its points.
struct Layout {
    KxMath::KxRecordKind kind;
    const char* name;
    int countBytes;
    int headBytes;
    int pointBytes;
};

constexpr Layout kLayouts[] = {{KxMath::KxSectionXY, "2-D cloud section", 2, 3, 8},
                               {KxMath::KxSectionXYZ, "3-D cloud section", 4, 5, 12},
                               {KxMath::KxSectionXYZRGB, "cloud section with colours", 4, 5, 16},
                               {KxMath::KxProfileRecord, "profile record", 2, 7, 8}};

const Layout* layoutOf(char first) {
    for (const Layout& layout : kLayouts) {
        if (first == static_cast<char>(layout.kind)) {
            return &layout;
        }
    }
    return nullptr;
}

/// "2 or 5 does", "2, 3 or 4 does"
QString beginnings(const QByteArray& expected) {
    QStringList numbers;
    for (const char first : expected) {
        numbers += QString::number(static_cast<int>(first));
    }
    const QString last = numbers.takeLast();
    return numbers.isEmpty() ? last : numbers.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
}

/// How many points a record says that it has, nothing when the file ends before.
std::optional<qint64> pointsIn(const QByteArray& head, const Layout& layout) {
    if (head.size() < 1 + layout.countBytes) {
        return {};
    }
    return layout.countBytes == 2 ? qFromLittleEndian<quint16>(head.constData() + 1)
                                  : qint64(qFromLittleEndian<quint32>(head.constData() + 1));
}

} // namespace

Error brokenRecord(QFile& file, const ErrorSource& source, std::int64_t recordsBefore, const QByteArray& expected) {
    constexpr qint64 kLongestHead = 7;
    const qint64 at = file.pos();
    const qint64 end = file.size();
    const ErrorPlace place{at, recordsBefore + 1, {}, {}};
    const QString where = QStringLiteral("at byte %1, after %2 whole records").arg(at).arg(recordsBefore);
    const auto error = [&](ErrorKind kind, const QString& reason) {
        return Error(kind, source, reason.toStdString(), place);
    };
    const auto damage = [&](const QString& what) {
        return error(ErrorKind::Damaged, QStringLiteral("is damaged %1: %2").arg(where, what));
    };
    const QByteArray head = file.peek(kLongestHead);
    if (head.isEmpty()) {
        return error(ErrorKind::Unreadable, QStringLiteral("cannot be read %1: %2").arg(where, file.errorString()));
    }
    const Layout* const layout = layoutOf(head.front());
    if (layout == nullptr) {
        return damage(QStringLiteral("no record begins with 0x%1 (%2 does)")
                          .arg(static_cast<unsigned char>(head.front()), 2, 16, QLatin1Char('0'))
                          .arg(beginnings(expected)));
    }
    if (!expected.contains(head.front())) {
        return error(ErrorKind::Unsuitable, QStringLiteral("has a %1 %2, which begins with %3 (%4 is expected)")
                                                .arg(QLatin1String(layout->name), where)
                                                .arg(static_cast<int>(head.front()))
                                                .arg(beginnings(expected)));
    }
    const std::optional<qint64> points = pointsIn(head, *layout);
    const qint64 needed = layout->headBytes + points.value_or(0) * layout->pointBytes;
    if (points && at + needed <= end) {
        return error(ErrorKind::Unreadable, QStringLiteral("cannot be read %1: %2").arg(where, file.errorString()));
    }
    const QString cut = QStringLiteral("the record that begins there is cut short by the end of the file at byte %1");
    return damage(points ? cut.arg(end) + QStringLiteral(", its %1 points end at byte %2").arg(*points).arg(at + needed)
                         : cut.arg(end));
}

} // namespace KxInspect::detail
