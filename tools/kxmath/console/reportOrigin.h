// What a report says of how it was made.
#pragma once

#include "report/elements/pageOrigin.h"

#include <QtCore/QStringList>

#include <vector>

namespace kxtool {

/// The arguments of a command that writes a report.
struct ReportArguments {
    QStringList all; ///< the first is the name of the program
    QStringList files; ///< those that name files, whether these are there or not
    QStringList outputs; ///< the values of the options that name outputs, which are no inputs
    std::vector<kxreport::PageOption> options; ///< with file names as they were given
    QString note; ///< of the operator
};

/// Files that are named in the arguments are inputs; those that are gone or may not be read have no hash. The time is that
/// of SOURCE_DATE_EPOCH, where that is set to a number of seconds, else now. Throws an Error or a CommandError when an input
/// cannot be read for another reason.
kxreport::PageOrigin reportOrigin(const char* command, const ReportArguments& arguments);

} // namespace kxtool
