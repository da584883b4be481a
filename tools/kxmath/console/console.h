// What a subcommand says on stderr and stdout.
#pragma once

#include "tools/kxmath/console/exitCodes.h"

#include <KxInspect/Progress.h>

#include <QtCore/QString>

namespace kxtool {

/// Prints "kxmath COMMAND: MESSAGE" as one line on stderr, whatever characters file names bring into the message.
void printLine(const char* command, const QString& message);

/// Writes text to stdout. Throws a CommandError when it did not get there.
void printOutput(const QString& text);

/// Shows on stderr what is being done, when stderr is a terminal; otherwise silent. The line is wiped before anything
/// else is printed and at the end.
class Progress {
public:
    Progress();
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void step(const QString& text);
    /// The part of the step that is done. Prints only when the percentage changes.
    void part(qint64 done, qint64 all);
    void wipe();

    /// Shows what a library call reports while this lives.
    KxInspect::Progress callback();

private:
    void show(const QString& text);

    bool isShown_;
    QString step_;
    int percent_ = -1;
};

} // namespace kxtool
