// Interrupted commands clean up. Those that are killed are the subject of tests/faults.
#include "kxmath/toolRun.h"

#include <QtCore/QThread>

#include <csignal>

namespace {

using namespace tool_test;

class Interruption : public ToolTest {
protected:
    Interruption() : ToolTest("simulate") {}

    QStringList begun() const { return QDir(path("")).entryList({"incomplete-*"}, QDir::Dirs); }

    /// Starts a long simulation, sends the signal when it has begun, and returns the exit code, -1 of a crash.
    int interrupt(int signal) const {
        QProcess process;
        process.setWorkingDirectory(path(""));
        // Shells start what they put into the background with SIGINT ignored, and that is inherited.
        process.setChildProcessModifier([] { static_cast<void>(::signal(SIGINT, SIG_DFL)); });
        process.start(KXMATH_TOOL, {"simulate", "long", "--cars", "25"});
        for (int i = 0; i < 1000 && begun().isEmpty(); ++i) {
            QThread::msleep(10);
        }
        EXPECT_EQ(begun(), QStringList("incomplete-long"));
        ::kill(static_cast<pid_t>(process.processId()), signal);
        const bool isEnded = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
        return isEnded ? process.exitCode() : -1;
    }
};

TEST_F(Interruption, SignalsCleanUp) {
    for (const auto& [signal, code] : {std::pair(SIGINT, 130), {SIGTERM, 143}}) {
        EXPECT_EQ(interrupt(signal), code);
        EXPECT_TRUE(begun().isEmpty());
        EXPECT_FALSE(QFile::exists(path("long")));
    }
}

} // namespace
