// The files that a subcommand writes for its user.
#include "outputFile.h"

#include "commandError.h"
#include "console.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

namespace kxtool {

namespace {

/// A name that is the same for all ways to one file; a file that does not exist yet is known by its folder.
QString uniquePath(const QString& path) {
    const QFileInfo file(path);
    if (file.exists()) {
        return file.canonicalFilePath();
    }
    return QFileInfo(file.absolutePath()).canonicalFilePath() + QLatin1Char('/') + file.fileName();
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
    QSaveFile file(path_);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        failWriting(name_, file.errorString());
    }
    if (QFileInfo(path_).size() != bytes.size()) {
        failWriting(name_, QStringLiteral("the file is incomplete"));
    }
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
        if (output->isStandardOutput()) {
            continue;
        }
        if (QFileInfo(output->path_).isDir()) {
            failWriting(output->name_, QStringLiteral("it is a folder"));
        }
        QSaveFile probe(output->path_);
        if (!probe.open(QIODevice::WriteOnly)) {
            failWriting(output->name_, probe.errorString());
        }
        probe.cancelWriting();
    }
}

} // namespace kxtool
