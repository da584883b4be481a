// Files that appear whole or not at all.
#include <KxInspect/AtomicFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace KxInspect {

namespace {

using detail::toQt;

std::string lastError() {
    return std::strerror(errno);
}

/// What a path leads to: a file or a free name, or something that is written into.
struct Place {
    QString path;
    bool isReplaced;
};

Place placeOf(const QString& path) {
    constexpr int kMostLinks = 40; // as the system
    const QFileInfo reached(path); // follows all links
    if (reached.exists() && !reached.isFile() && !reached.isDir()) {
        return {path, false};
    }
    QString place = path;
    for (int links = 0; links < kMostLinks; ++links) {
        const QFileInfo info(place);
        if (!info.isSymLink()) {
            return {place, true};
        }
        const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
        if (folder.startsWith(QLatin1String("/proc/")) && folder.endsWith(QLatin1String("/fd"))) {
            return {path, false}; // an open file, /dev/stdout: whoever opened it would not see another in its place
        }
        place = info.symLinkTarget();
    }
    return {path, true}; // a circle: making the file fails
}

/// The name with "incomplete-" before it, short enough for a file system.
QString incompleteName(QString name) {
    constexpr qsizetype kMostBytes = 230; // 255 without the prefix and a number
    while (QFile::encodeName(name).size() > kMostBytes) {
        name.chop(1);
    }
    return QStringLiteral("incomplete-") + name;
}

/// Makes a file that was not there. @return its name, empty on failure
QString makeBeside(const QString& place, QString& why) {
    constexpr int kMostFiles = 10000;
    const QFileInfo info(place);
    const QString base = QDir(info.path()).filePath(incompleteName(info.fileName()));
    for (int number = 1; number <= kMostFiles; ++number) {
        QFile file(number == 1 ? base : base + QLatin1Char('-') + QString::number(number));
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            return file.fileName();
        }
        why = file.errorString();
        const QFileInfo taken(file.fileName());
        if (!taken.exists() && !taken.isSymLink()) {
            return {};
        }
    }
    return {};
}

/// Makes a file that only its owner may read, for what will be copied into a device. @return its name, empty on failure
QString makeTemporary(QString& why) {
    QTemporaryFile file;
    file.setAutoRemove(false);
    if (file.open()) {
        return file.fileName();
    }
    why = file.errorString();
    return {};
}

/// Owner and permissions of the file that is replaced. Those of a new file are right already.
bool copyPermissions(const QByteArray& from, const QByteArray& to) {
    struct stat old {};
    if (stat(from.constData(), &old) != 0) {
        return errno == ENOENT;
    }
    constexpr mode_t kBits = 07777;
    struct stat made {};
    if (stat(to.constData(), &made) == 0 && (made.st_uid != old.st_uid || made.st_gid != old.st_gid)) {
        // Only the superuser may: another user becomes the owner of what he writes.
        [[maybe_unused]] const int isIgnored = chown(to.constData(), old.st_uid, old.st_gid);
    }
    return chmod(to.constData(), old.st_mode & kBits) == 0;
}

/// Writes into a device, a pipe or an open file. @return false on failure, with errno
bool writeInto(int file, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = write(file, bytes, size);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

} // namespace

AtomicFile::AtomicFile(ErrorSource target) : target_(std::move(target)) {
    const Place place = placeOf(toQt(target_.file));
    place_ = place.path.toStdString();
    isReplaced_ = place.isReplaced;
    if (QFileInfo(place.path).isDir()) {
        fail("it is a folder");
    }
    if (!isReplaced_ && !QFileInfo(place.path).isWritable()) {
        fail("Permission denied");
    }
    QString why;
    path_ = (isReplaced_ ? makeBeside(place.path, why) : makeTemporary(why)).toStdString();
    if (path_.empty()) {
        fail(why.toStdString());
    }
}

AtomicFile::~AtomicFile() {
    if (!path_.empty()) {
        unlink(path_.c_str());
    }
}

void AtomicFile::fail(const std::string& why) const {
    detail::fail(ErrorKind::Unwritable, target_,
                 QStringLiteral("could not be written: ") + QString::fromStdString(why));
}

void AtomicFile::commit(std::uint64_t size) {
    const QFileInfo written(toQt(path_));
    if (!written.exists() || static_cast<std::uint64_t>(written.size()) != size) {
        fail("only " + std::to_string(written.size()) + " of " + std::to_string(size) + " bytes were stored");
    }
    if (isReplaced_) {
        replace();
    } else {
        copyInto();
    }
}

void AtomicFile::replace() {
    const QByteArray from = QFile::encodeName(toQt(path_));
    const QByteArray to = QFile::encodeName(toQt(place_));
    if (!copyPermissions(to, from) || std::rename(from.constData(), to.constData()) != 0) {
        fail(lastError());
    }
    path_.clear();
}

void AtomicFile::copyInto() const {
    constexpr qint64 kBlock = 1 << 16;
    QFile from(toQt(path_));
    if (!from.open(QIODevice::ReadOnly)) {
        fail(from.errorString().toStdString());
    }
    const int to = open(place_.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    bool isWritten = to >= 0;
    for (qint64 left = from.size(); isWritten && left > 0;) {
        const QByteArray bytes = from.read(std::min(left, kBlock));
        isWritten = !bytes.isEmpty() && writeInto(to, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        left -= bytes.size();
    }
    const std::string why = lastError();
    if (to >= 0 && close(to) != 0) {
        isWritten = false;
    }
    if (!isWritten) {
        fail(why);
    }
}

void writeWholeFile(const ErrorSource& target, std::string_view content) {
    AtomicFile whole(target);
    QFile file(toQt(whole.path()));
    const auto size = static_cast<qint64>(content.size());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content.data(), size) != size ||
        !file.flush()) {
        whole.fail(file.errorString().toStdString());
    }
    file.close();
    whole.commit(content.size());
}

} // namespace KxInspect
