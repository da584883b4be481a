// Runs the command line program.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace tool_test {

struct ToolResult {
    int exitCode; ///< -1 when the program crashed or did not end
    QByteArray output;
    QByteArray errors;
};

/// Runs kxmath in `folder`. @param outputFile where stdout goes, empty to collect it
ToolResult runTool(const QString& folder, const QStringList& arguments, const QString& outputFile = {});

/// Runs a line of the shell in which $KXMATH is the program.
ToolResult runShell(const QString& folder, const QString& line);

} // namespace tool_test
