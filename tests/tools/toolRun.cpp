// Runs the command line program.
#include "tools/toolRun.h"

#include <QtCore/QJsonDocument>
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

QJsonValue ToolTest::json(const QStringList& arguments, int exitCode) const {
    const ToolResult result = run(arguments + QStringList{"--json", "-"});
    EXPECT_EQ(result.exitCode, exitCode) << arguments.join(' ').toStdString() << result.errors.constData();
    return QJsonDocument::fromJson(result.output).object();
}

QJsonValue ToolTest::readJson(const QString& name) const {
    return QJsonDocument::fromJson(read(name)).object();
}

QJsonValue ToolTest::simulate(const QString& name, const QStringList& arguments) const {
    const ToolResult result = runTool(path(""), QStringList{"simulate", name} + arguments);
    EXPECT_EQ(result.exitCode, 0) << result.errors.constData();
    return readJson(name + "/truth.json");
}

void ToolTest::expectRefusal(const Refusal& refusal) const {
    SCOPED_TRACE(refusal.arguments.join(' ').toStdString());
    const ToolResult result = run(refusal.arguments);
    EXPECT_EQ(result.exitCode, refusal.exitCode);
    EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.constData();
    EXPECT_TRUE(result.errors.startsWith("kxmath " + command_.toLatin1() + ": ")) << result.errors.constData();
    EXPECT_TRUE(result.errors.contains(refusal.message)) << result.errors.constData();
    EXPECT_EQ(result.output, QByteArray());
}

void ToolTest::expectRefusals(const std::vector<Refusal>& refusals) const {
    for (const Refusal& refusal : refusals) {
        expectRefusal(refusal);
    }
}

} // namespace tool_test
