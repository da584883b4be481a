// The output files of a command.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/Error.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <utility>
#include <vector>

namespace kxtool {

/// A file named by an option. It appears with its whole content or not at all; a device or pipe is written in place.
class OutputFile {
public:
    /// @param option the option that names the file, for messages
    /// @param name relative to the current directory, empty when the option was not given, "-" for the standard output
    OutputFile(QString option, QString name);

    bool isWanted() const { return !name_.isEmpty(); }
    bool isStandardOutput() const { return name_ == QLatin1String("-"); }

    /// What a report says of how it was made; empty for other outputs.
    const kxreport::PageOrigin& origin() const { return origin_; }
    void setOrigin(kxreport::PageOrigin origin) { origin_ = std::move(origin); }

    /// Writes the whole file as KxInspect::AtomicFile does. Throws an error when writing fails; an existing file then
    /// remains unchanged.
    void write(const QString& content) const;

private:
    KxInspect::ErrorSource source() const;
    void checkWritable() const;
    friend void checkOutputs(const std::vector<const OutputFile*>& outputs, const QStringList& inputs);

    QString option_;
    QString name_;
    kxreport::PageOrigin origin_;
};

/// Throws a CommandError when an output cannot be written, is one of the inputs, or is named twice. Call it before long
/// work; it leaves no file.
void checkOutputs(const std::vector<const OutputFile*>& outputs, const QStringList& inputs);

} // namespace kxtool
