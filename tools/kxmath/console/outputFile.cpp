// The output files of a command.
#include "tools/kxmath/console/outputFile.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/console.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

namespace kxtool {

namespace {

/// The canonical path of a file; that of its folder and its name for a file that does not exist yet.
QString uniquePath(const QString& path) {
    const QFileInfo file(path);
    if (file.exists()) {
        return file.canonicalFilePath();
    }
    return QFileInfo(file.absolutePath()).canonicalFilePath() + QLatin1Char('/') + file.fileName();
}

/// A device or pipe (/dev/stdout, a named pipe) is written in place: a new file would replace it.
bool isDeviceOrPipe(const QString& path) {
    const QFileInfo info(path); // follows links
    return info.exists() && !info.isFile() && !info.isDir();
}

[[noreturn]] void failWriting(const QString& name, const QString& why) {
    throw CommandError{OutputFailed, QStringLiteral("cannot write '%1': %2").arg(name, why)};
}

} // namespace

OutputFile::OutputFile(QString option, QString name)
    : option_(std::move(option)), name_(std::move(name)), path_(QFileInfo(name_).absoluteFilePath()) {}

void OutputFile::write(const QString& content) const {
    if (isStandardOutput()) {
        printOutput(content);
        return;
    }
    const QByteArray bytes = content.toUtf8();
    if (isDeviceOrPipe(path_)) {
        QFile file(path_);
        if (!file.open(QIODevice::WriteOnly | QIODevice::ExistingOnly | QIODevice::Unbuffered) ||
            file.write(bytes) != bytes.size()) {
            failWriting(name_, file.errorString());
        }
        return;
    }
    QSaveFile file(path_);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        failWriting(name_, file.errorString());
    }
    if (QFileInfo(path_).size() != bytes.size()) {
        failWriting(name_, QStringLiteral("the file is incomplete"));
    }
}

void OutputFile::checkWritable() const {
    const QFileInfo info(path_);
    if (info.isDir()) {
        failWriting(name_, QStringLiteral("it is a folder"));
    }
    if (isDeviceOrPipe(path_)) {
        if (!info.isWritable()) {
            failWriting(name_, QStringLiteral("permission denied"));
        }
        return;
    }
    QSaveFile probe(path_);
    if (!probe.open(QIODevice::WriteOnly)) {
        failWriting(name_, probe.errorString());
    }
    probe.cancelWriting();
}

void checkOutputs(const std::vector<const OutputFile*>& outputs, const QStringList& inputs) {
    QStringList taken;
    for (const QString& input : inputs) {
        taken.append(uniquePath(input));
    }
    for (const OutputFile* const output : outputs) {
        if (!output->isWanted()) {
            continue;
        }
        const QString path = output->isStandardOutput() ? output->name_ : uniquePath(output->path_);
        if (taken.contains(path)) {
            throw CommandError{WrongUse, QStringLiteral("%1 names '%2', which is an input or another output")
                                             .arg(output->option_, output->name_)};
        }
        taken.append(path);
        if (!output->isStandardOutput()) {
            output->checkWritable();
        }
    }
}

} // namespace kxtool
