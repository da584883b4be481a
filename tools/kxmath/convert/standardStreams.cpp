// The standard input and output as files.
#include "tools/kxmath/convert/standardStreams.h"

#include "tools/kxmath/console/commandLine.h"

#include <QtCore/QDir>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace kxtool {

namespace {

[[noreturn]] void failToMake(int why) {
    throw CommandError{OutputFailed, QStringLiteral("cannot make a temporary folder in '%1': %2")
                                         .arg(QDir::tempPath(), QString::fromLocal8Bit(std::strerror(why)))};
}

/// Copies an open stream or file to its end. @return why that failed, empty when it did not
QString copyAll(QFile& from, QFile& to) {
    constexpr qint64 kBlock = 1 << 16;
    constexpr qint64 kMost = qint64(1) << 30;
    for (qint64 size = 0;;) {
        const QByteArray bytes = from.read(kBlock);
        size += bytes.size();
        if (from.error() != QFileDevice::NoError) {
            return from.errorString();
        }
        if (bytes.isEmpty() ? !to.flush() : to.write(bytes) != bytes.size()) {
            return to.errorString();
        }
        if (bytes.isEmpty()) {
            const bool isWhole = from.isSequential() || from.pos() == from.size();
            return isWhole ? QString() : QStringLiteral("it ends at byte %1 of %2").arg(from.pos()).arg(from.size());
        }
        if (from.isSequential() && size > kMost) {
            return QStringLiteral("it does not end within 1 GiB");
        }
    }
}

} // namespace

Scratch::Scratch() {
    const QByteArray name = QFile::encodeName(QDir::tempPath()) + "/kxmath-XXXXXX";
    if (static_cast<std::size_t>(name.size()) >= folder_.size()) {
        failToMake(ENAMETOOLONG);
    }
    std::copy(name.cbegin(), name.cend(), folder_.begin());
    if (mkdtemp(folder_.data()) == nullptr) {
        failToMake(errno);
    }
}

Scratch::~Scratch() {
    for (const char* const name : {"/in", "/out"}) {
        std::array<char, kLongest + 8> path;
        const int length = std::snprintf(path.data(), path.size(), "%s%s", folder_.data(), name);
        if (length > 0 && static_cast<std::size_t>(length) < path.size()) {
            unlink(path.data());
        }
    }
    rmdir(folder_.data());
}

void copyStandardInput(const QString& path) {
    QFile input;
    QFile file(path);
    const bool isOpen = file.open(QIODevice::WriteOnly) && input.open(stdin, QIODevice::ReadOnly);
    if (const QString why = isOpen ? copyAll(input, file) : file.errorString(); !why.isEmpty()) {
        throw CommandError{BadInput, QStringLiteral("cannot read the standard input: ") + why};
    }
}

void copyToStandardOutput(const QString& path) {
    QFile file(path);
    QFile output;
    const bool isOpen = file.open(QIODevice::ReadOnly) && output.open(stdout, QIODevice::WriteOnly);
    if (const QString why = isOpen ? copyAll(file, output) : file.errorString(); !why.isEmpty()) {
        throw CommandError{OutputFailed, QStringLiteral("cannot write to the standard output: ") + why};
    }
}

} // namespace kxtool
