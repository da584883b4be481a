// The folder in which a pass is worked on.
#include "tools/kxmath/train/workFolder.h"

#include "tools/kxmath/console/commandError.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <cstring>

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
    if (!isFinished_) {
        QDir(path_).removeRecursively();
    }
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

QString passFolderName(const QString& first, const QString& second) {
    constexpr int kMostBytes = 90; // two of them and a number stay below what file systems allow
    const auto shortened = [](QString name) {
        while (QFile::encodeName(name).size() > kMostBytes) {
            name.chop(1);
        }
        return name;
    };
    return QStringLiteral("pass-%1-%2").arg(shortened(first), shortened(second));
}

} // namespace kxtool
