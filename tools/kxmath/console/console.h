// The output of a command on stderr and stdout.
#pragma once

#include "tools/kxmath/console/exitCodes.h"

#include <KxInspect/Progress.h>

#include <QtCore/QString>

namespace kxtool {

/// Prints "kxmath COMMAND: MESSAGE" as one line on stderr. Control characters, which file names may contain, become '?'.
void printLine(const char* command, const QString& message);

/// Writes text to stdout. Throws a CommandError when writing fails.
void printOutput(const QString& text);

/// Shows the current step on stderr when stderr is a terminal; otherwise silent. wipe() clears the line; call it before
/// anything else is printed. The destructor does it, too. After a signal all reports throw, see Interruption.
class Progress {
public:
    Progress();
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void step(const QString& text);
    /// Sets the progress of the step. Prints only when the percentage changes.
    void part(qint64 done, qint64 all);
    void wipe();

    /// A callback for library calls that shows their progress here. This object must outlive it.
    KxInspect::Progress callback();

private:
    void show(const QString& text);

    bool isShown_;
    QString step_;
    int percent_ = -1;
};

} // namespace kxtool
