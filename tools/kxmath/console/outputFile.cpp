// The output files of a command.
#include "tools/kxmath/console/outputFile.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/console.h"

#include <KxInspect/AtomicFile.h>

#include <QtCore/QFileInfo>

#include <unistd.h>

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

/// What a terminal may show of a text: lines and tabs.
QString withoutControls(QString text) {
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control && c != QLatin1Char('\n') && c != QLatin1Char('\t')) {
            c = QLatin1Char('?');
        }
    }
    return text;
}

} // namespace

OutputFile::OutputFile(QString option, QString name) : option_(std::move(option)), name_(std::move(name)) {}

void OutputFile::write(const QString& content) const {
    if (isStandardOutput()) {
        printOutput(isatty(STDOUT_FILENO) != 0 ? withoutControls(content) : content);
        return;
    }
    KxInspect::writeWholeFile(source(), content.toStdString());
}

KxInspect::ErrorSource OutputFile::source() const {
    return {option_.toStdString(), name_.toStdString(), {}};
}

void OutputFile::checkWritable() const {
    const KxInspect::AtomicFile removedAtOnce(source());
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
        const QString path = output->isStandardOutput() ? output->name_ : uniquePath(output->name_);
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
