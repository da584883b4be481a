// Runs the command line program.
#include "tools/toolRun.h"

#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>

namespace tool_test {

namespace {

ToolResult wait(QProcess& process) {
    constexpr int kLongest = 20000; // ms
    const bool isEnded = process.waitForFinished(kLongest) && process.exitStatus() == QProcess::NormalExit;
    return {isEnded ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

} // namespace

ToolResult runTool(const QString& folder, const QStringList& arguments, const QString& outputFile) {
    QProcess process;
    process.setWorkingDirectory(folder);
    if (!outputFile.isEmpty()) {
        process.setStandardOutputFile(outputFile);
    }
    process.start(QStringLiteral(KXMATH_TOOL), arguments);
    return wait(process);
}

ToolResult runShell(const QString& folder, const QString& line) {
    QProcess process;
    process.setWorkingDirectory(folder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KXMATH"), QStringLiteral(KXMATH_TOOL));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), line});
    return wait(process);
}

} // namespace tool_test
