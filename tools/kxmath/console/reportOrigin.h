// What a report says of how it was made.
#pragma once

#include "report/elements/pageOrigin.h"

#include <QtCore/QStringList>

namespace kxtool {

/// @param arguments of the command; the first is the name of the program
/// @param files those of them that name files, whether these are there or not
/// @param outputs the values of the options that name outputs, which are no inputs
/// Files that are named in `arguments` are inputs; those that are gone or may not be read have no hash. The time is that of
/// SOURCE_DATE_EPOCH, where that is set to a number of seconds, else now. Throws an Error or a CommandError when an input
/// cannot be read for another reason.
kxreport::PageOrigin reportOrigin(const char* command, const QStringList& arguments, const QStringList& files,
                                  const QStringList& outputs, const QString& note);

} // namespace kxtool
