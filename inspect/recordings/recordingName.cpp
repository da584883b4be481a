// What the name of a recording says, wherever the file stands.
#include "inspect/recordings/recordingName.h"

#include "inspect/base/paths.h"

#include <KxInspect/Recording.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace KxInspect {

namespace detail {

namespace {

QString withSuffix(const QString& name) {
    const QString suffix = QStringLiteral(".bin");
    return name.contains(suffix) ? name : name + suffix;
}

} // namespace

RecordingFiles::RecordingFiles(const std::string& path)
    : file(withSuffix(QFileInfo(toQt(path)).fileName())), parts(file) {}

QString RecordingFiles::serialText() const {
    return parts.base.mid(parts.base.indexOf(QLatin1Char('_')) + 1);
}

QString RecordingFiles::wheelFile(const QString& folder, int wheel, int profile) const {
    return QDir::cleanPath(folder + QLatin1Char('/') + parts.wheelFile(wheel, profile));
}

} // namespace detail

RecordingName recordingName(const std::string& path) {
    const detail::RecordingFiles files(path);
    return {files.file.toStdString(), files.parts.base.toStdString(), files.parts.serial};
}

} // namespace KxInspect
