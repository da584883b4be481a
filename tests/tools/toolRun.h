// Runs the command line program.
#pragma once

#include "support/tempFiles.h"

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <vector>

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

/// Arguments that are refused.
struct Refusal {
    QStringList arguments;
    int exitCode;
    QByteArray message; ///< part of the one line on stderr
};

/// Tests of one command, in a folder of their own.
class ToolTest : public testing::Test, public testing_support::TempFiles {
protected:
    explicit ToolTest(const QString& command) : command_(command) {}

    ToolResult run(const QStringList& arguments) const { return runTool(path(""), QStringList(command_) + arguments); }
    /// What the command writes as JSON when it ends with the code.
    QJsonValue json(const QStringList& arguments, int exitCode = 0) const;
    QJsonValue readJson(const QString& name) const;
    /// Writes what kxmath simulates into the folder `name`. @return the truth
    QJsonValue simulate(const QString& name, const QStringList& arguments) const;
    void expectRefusal(const Refusal& refusal) const;
    void expectRefusals(const std::vector<Refusal>& refusals) const;

private:
    QString command_;
};

} // namespace tool_test
