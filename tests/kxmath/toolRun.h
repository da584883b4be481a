// Runs the command line program.
#pragma once

#include "support/tempFiles.h"
#include "support/testing.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>

namespace tool_test {

using namespace testing_support;

struct ToolResult {
    QByteArray output, errors;
};

/// Runs a program with $KXMATH in its environment and expects its exit code, -1 of a crash.
inline ToolResult runProgram(const QString& program, const QString& folder, const QStringList& arguments,
                             int exitCode) {
    constexpr int kLongest = 20000; // ms
    QProcess process;
    process.setWorkingDirectory(folder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KXMATH", KXMATH_TOOL);
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    const bool isEnded = process.waitForFinished(kLongest) && process.exitStatus() == QProcess::NormalExit;
    ToolResult result{process.readAllStandardOutput(), process.readAllStandardError()};
    EXPECT_EQ(isEnded ? process.exitCode() : -1, exitCode) << qPrintable(arguments.join(' ')) << "\n"
                                                           << result.errors.constData();
    return result;
}

/// Runs kxmath.
inline ToolResult runTool(const QString& folder, const QStringList& arguments, int exitCode = 0) {
    return runProgram(KXMATH_TOOL, folder, arguments, exitCode);
}

/// Runs a line of the shell in which $KXMATH is the program.
inline ToolResult runShell(const QString& folder, const QString& line, int exitCode = 0) {
    return runProgram("sh", folder, {"-c", line}, exitCode);
}

/// Tests of one command, in a folder of their own.
class ToolTest : public testing::Test, public TempFiles {
protected:
    explicit ToolTest(const QString& command) : command_(command) {}

    ToolResult run(const QStringList& arguments, int exitCode = 0) const {
        return runTool(path(""), QStringList(command_) + arguments, exitCode);
    }
    /// What the command writes as JSON when it ends with the code.
    QJsonValue json(const QStringList& arguments, int exitCode = 0) const {
        return QJsonDocument::fromJson(run(arguments + QStringList{"--json", "-"}, exitCode).output).object();
    }
    QJsonValue readJson(const QString& name) const { return QJsonDocument::fromJson(read(name)).object(); }

    /// Writes what kxmath simulates into the folder `name`. @return the truth
    QJsonValue simulate(const QString& name, const QStringList& arguments) const {
        runTool(path(""), QStringList{"simulate", name} + arguments);
        return readJson(name + "/truth.json");
    }

private:
    QString command_;
};

} // namespace tool_test
