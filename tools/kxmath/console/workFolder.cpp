// The folder in which a command works until what it writes is whole.
#include "tools/kxmath/console/workFolder.h"

#include "tools/kxmath/console/commandError.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

namespace kxtool {

namespace {

constexpr int kMostFolders = 100000;

[[noreturn]] void failFolder(const QString& path, const QString& why) {
    throw CommandError{OutputFailed, QStringLiteral("cannot write in folder '%1': %2").arg(path, why)};
}

QString lastError() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

QString numbered(const QString& name, int number) {
    return number == 1 ? name : name + QLatin1Char('-') + QString::number(number);
}

} // namespace

WorkFolder::WorkFolder(const QString& parent, const QString& name)
    : parent_(QFileInfo(parent).absoluteFilePath()), name_(name) {
    errno = 0;
    if (!QDir().mkpath(parent_)) {
        failFolder(parent, errno != 0 ? lastError() : QStringLiteral("it is not a folder"));
    }
    for (int number = 1; number < kMostFolders; ++number) {
        const QString candidate = parent_ + QStringLiteral("/incomplete-") + numbered(name_, number);
        // Making a folder fails when it is there: no two runs get the same one.
        if (QDir().mkdir(candidate)) {
            path_ = candidate;
            break;
        }
        const QString why = lastError();
        if (!QFileInfo(candidate).exists() && !QFileInfo(candidate).isSymLink()) {
            failFolder(parent, why);
        }
    }
    if (path_.isEmpty()) {
        failFolder(parent, QStringLiteral("too many incomplete folders are there"));
    }
}

WorkFolder::~WorkFolder() {
    if (isFinished_) {
        return;
    }
    try {
        QDir(path_).removeRecursively();
    } catch (const std::bad_alloc&) { // the folder stays; its name says what it is
    }
}

WorkFolder WorkFolder::forTarget(const QString& target) {
    const QFileInfo info(QDir::cleanPath(QFileInfo(target).absoluteFilePath()));
    return {info.isDir() ? info.filePath() : info.path(), info.fileName()};
}

void WorkFolder::link(const QString& source, const QString& name) const {
    if (!QFile::link(QFileInfo(source).absoluteFilePath(), path_ + QLatin1Char('/') + name)) {
        copy(source, name);
    }
}

void WorkFolder::copy(const QString& source, const QString& name) const {
    QFile file(source);
    if (!file.copy(path_ + QLatin1Char('/') + name)) {
        failFolder(path_, file.errorString());
    }
}

void WorkFolder::finish() {
    throwIfInterrupted();
    for (int number = 1; number < kMostFolders; ++number) {
        const QString candidate = parent_ + QLatin1Char('/') + numbered(name_, number);
        const QFileInfo taken(candidate);
        if (taken.exists() || taken.isSymLink()) {
            continue;
        }
        // Another run may take the name meanwhile; renaming onto its folder fails, since that is not empty.
        if (QDir().rename(path_, candidate)) {
            path_ = candidate;
            isFinished_ = true;
            return;
        }
        const QString why = lastError();
        if (!QFileInfo::exists(candidate)) {
            failFolder(parent_, why);
        }
    }
    failFolder(parent_, QStringLiteral("no free name for '%1'").arg(name_));
}

void WorkFolder::finishAs(const QString& target, const QString& last) {
    throwIfInterrupted();
    if (QFileInfo(target).isDir()) {
        moveInto(target, last);
    } else if (!QDir().rename(path_, target)) {
        failFolder(target, lastError());
    } else {
        path_ = QFileInfo(target).absoluteFilePath();
    }
    isFinished_ = true;
}

void WorkFolder::moveInto(const QString& target, const QString& last) {
    const QDir from(path_);
    const QDir to(target);
    QStringList names = from.entryList(QDir::Files, QDir::Name);
    if (names.removeOne(last)) {
        names.append(last);
        const QString older = to.filePath(last);
        if (QFileInfo(older).isFile() && !QFile::remove(older)) {
            failFolder(older, lastError());
        }
    }
    for (const QString& name : std::as_const(names)) {
        const QByteArray source = QFile::encodeName(from.filePath(name));
        if (std::rename(source.constData(), QFile::encodeName(to.filePath(name)).constData()) != 0) {
            throw CommandError{OutputFailed,
                               QStringLiteral("cannot write '%1': %2").arg(to.filePath(name), lastError())};
        }
    }
    if (!QDir().rmdir(path_)) {
        failFolder(path_, lastError());
    }
}

} // namespace kxtool
