// The output files of a command.
#include "tools/kxmath/console/outputFile.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/interruption.h"

#include <KxInspect/AtomicFile.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

#include <unistd.h>

namespace kxtool {

namespace {

/// The canonical path of a file; that of its folder and its name for a file that does not exist yet.
std::string uniquePath(const QString& name) {
    std::error_code none;
    const std::filesystem::path path = toBytes(name);
    if (std::filesystem::exists(path, none)) {
        return std::filesystem::canonical(path, none).string();
    }
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    return (std::filesystem::canonical(folder, none) / path.filename()).string();
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
    {
        const Interruption untilWritten; // else a signal would leave what is written beside the file
        KxInspect::writeWholeFile(source(), content.toStdString());
    }
    throwIfInterrupted();
}

KxInspect::ErrorSource OutputFile::source() const {
    return {option_.toStdString(), toBytes(name_), {}};
}

void OutputFile::checkWritable() const {
    const Interruption untilRemoved;
    const KxInspect::AtomicFile removedAtOnce(source());
}

void checkOutputs(const std::vector<const OutputFile*>& outputs, const QStringList& inputs) {
    std::vector<std::string> taken;
    for (const QString& input : inputs) {
        taken.push_back(uniquePath(input));
    }
    for (const OutputFile* const output : outputs) {
        if (!output->isWanted()) {
            continue;
        }
        const std::string path = output->isStandardOutput() ? "-" : uniquePath(output->name_);
        if (std::find(taken.begin(), taken.end(), path) != taken.end()) {
            throw CommandError{WrongUse, QStringLiteral("%1 names '%2', which is an input or another output")
                                             .arg(output->option_, output->name_)};
        }
        taken.push_back(path);
        if (!output->isStandardOutput()) {
            output->checkWritable();
        }
    }
}

} // namespace kxtool
