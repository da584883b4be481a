// The files that a subcommand writes for its user.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace kxtool {

/// A file named by an option. It appears with its whole content or not at all; a device or pipe is written into.
class OutputFile {
public:
    /// @param option the option that names the file, for messages
    /// @param name relative to the current directory, empty when the option was not given, "-" for the standard output
    OutputFile(QString option, QString name);

    bool isWanted() const { return !name_.isEmpty(); }
    bool isStandardOutput() const { return name_ == QLatin1String("-"); }

    /// Writes the whole file. Throws a CommandError when the data did not get there; an older file then stays.
    void write(const QString& content) const;

private:
    void checkWritable() const;
    friend void checkOutputs(const std::vector<const OutputFile*>& outputs, const QStringList& inputs);

    QString option_;
    QString name_; ///< as given, for messages
    QString path_; ///< absolute, so that a later change of the current directory does no harm
};

/// Throws a CommandError when an output cannot be written, is one of the inputs, or is named twice. Made before long
/// work; leaves no file behind.
void checkOutputs(const std::vector<const OutputFile*>& outputs, const QStringList& inputs);

} // namespace kxtool
