// Recordings: what their names say, and their records one after the other.
#include "KxMath/KxRecording.h"

#include "grid/profileRecord.h"

#include <QtCore/QFile>

#include <limits>

namespace KxMath {

namespace {

void appendTwoDigits(QString& path, int number) { // at least two
    if (number >= 0 && number < 10) {
        path += QLatin1Char('0');
    }
    path += QString::number(number);
}

} // namespace

KxRecordKind KxReadRecord(QFile& file, KxProfileZ& profile) {
    char marker = 0;
    if (file.peek(&marker, 1) == 1 && marker == detail::kRecordMarker) {
        return profile.readFromFile(file) >= 0 ? KxProfileRecord : KxNoRecord;
    }
    profile.z = std::numeric_limits<float>::quiet_NaN();
    KxPointCloud<KxPointXY>& section = profile;
    return section.readFromFile(file) >= 0 ? KxSectionXY : KxNoRecord;
}

KxRecordingName::KxRecordingName(const QString& fileName) : base(fileName) {
    base.remove(QStringLiteral(".bin"), Qt::CaseSensitive); // every occurrence
    serial = base.mid(base.indexOf(QLatin1Char('_')) + 1).toInt();
}

QString KxRecordingName::directory() const {
    return QStringLiteral("./") + base;
}

QString KxRecordingName::wheelFile(int wheel, int profile) const {
    QString path;
    path.reserve(base.size() + 18);
    path += QLatin1String("./");
    path += base;
    path += QLatin1Char('/');
    appendTwoDigits(path, wheel);
    path += QLatin1Char('_');
    appendTwoDigits(path, profile);
    path += QLatin1String(".bin");
    return path;
}

} // namespace KxMath
