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

#include <vector>

namespace tool_test {

using namespace testing_support;

struct ToolResult {
    QByteArray output, errors;
};

/// Runs a program with $KXMATH in its environment and expects its exit code, -1 of a crash.
/// @param stdoutFile empty to collect what it writes
inline ToolResult runProgram(const QString& program, const QString& folder, const QStringList& arguments, int exitCode,
                             const QString& stdoutFile = {}) {
    constexpr int kLongest = 20000; // ms
    QProcess process;
    process.setWorkingDirectory(folder);
    if (!stdoutFile.isEmpty()) {
        process.setStandardOutputFile(stdoutFile);
    }
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
inline ToolResult runTool(const QString& folder, const QStringList& arguments, int exitCode = 0,
                          const QString& stdoutFile = {}) {
    return runProgram(KXMATH_TOOL, folder, arguments, exitCode, stdoutFile);
}

/// Runs a line of the shell in which $KXMATH is the program.
inline ToolResult runShell(const QString& folder, const QString& line, int exitCode = 0) {
    return runProgram("sh", folder, {"-c", line}, exitCode);
}

/// A profile as contact gauges write them: header lines, one of them with numbers, and three columns.
inline QByteArray gaugeText(const KxProfile& profile, float shift, float xFactor, float yFactor) {
    QByteArray text = "Stock.......:\n32.58 37.11 14.71  (Sd/Sh/qR)\nWheel ID....: 7\n\n";
    for (const auto& p : profile.points) {
        text += QByteArray::number(double(xFactor * (p.x + shift)), 'f', 5) + "  " +
                QByteArray::number(double(yFactor * p.y), 'f', 5) + " 0.000\n";
    }
    return text + "\n";
}

/// Arguments that are refused.
struct Refusal {
    QStringList arguments;
    int exitCode;
    QByteArray message; ///< part of the one line on stderr
};

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

    void expectRefusal(const Refusal& refusal) const {
        SCOPED_TRACE(refusal.arguments.join(' ').toStdString());
        const ToolResult result = run(refusal.arguments, refusal.exitCode);
        EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.constData();
        EXPECT_TRUE(result.errors.startsWith("kxmath " + command_.toLatin1() + ": ")) << result.errors.constData();
        EXPECT_TRUE(result.errors.contains(refusal.message)) << result.errors.constData();
        EXPECT_EQ(result.output, QByteArray());
    }
    void expectRefusals(const std::vector<Refusal>& refusals) const {
        std::for_each(refusals.begin(), refusals.end(), [&](const Refusal& refusal) { expectRefusal(refusal); });
    }

private:
    QString command_;
};

} // namespace tool_test
