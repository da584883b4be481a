// How a page came to be, for its readers. It is no part of a result.
#pragma once

#include <QtCore/QString>

#include <vector>

namespace kxreport {

/// A file from which a page was made.
struct PageInput {
    QString name; ///< without its folder
    QString sha256; ///< 64 hexadecimal digits; empty when the file could not be read
};

/// An option of the command.
struct PageOption {
    QString name; ///< as on the command line
    QString value; ///< file names without folders
    bool isGiven = false; ///< false: its default
};

/// Empty texts are not shown; a page without `made` shows none of this but the note.
struct PageOrigin {
    QString made; ///< when, for people
    QString command; ///< the command line, file names without folders
    QString version; ///< of the program
    QString note; ///< of the operator, on top of the page
    std::vector<PageInput> inputs;
    std::vector<PageOption> options; ///< all that have a value
};

} // namespace kxreport
