// Commands that are killed or interrupted leave nothing that looks complete.
#include "kxmath/commandInputs.h"

#include <QtCore/QThread>

namespace {

using namespace tool_test;

class Interruption : public CommandInputs {
protected:
    QStringList begun() const { return QDir(path("")).entryList({"incomplete-*"}, QDir::Dirs); }

    /// Starts a long simulation, sends the signal when it has begun, and returns the exit code, -1 of a crash.
    int interrupt(int signal) const {
        QProcess process;
        process.setWorkingDirectory(path(""));
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

/// The limit for the size of files kills each run while it writes.
TEST_F(Interruption, AKilledRunLeavesNoResult) {
    const std::pair<const char*, const char*> cases[] = {
        {"simulated", "simulate simulated --cars 1 --rate 500"},
        {"shot", "simulate shot --calibration 2 --profiles 3"},
        {"seeds", "grid scan.bin --step 0.5 --out seeds"},
    };
    for (const auto& [folder, line] : cases) {
        SCOPED_TRACE(line);
        runShell(path(""), lineFor(line, "ulimit -c 0; ulimit -f 1; exec "), -1);
        EXPECT_EQ(begun(), QStringList(QString("incomplete-") + folder));
        EXPECT_FALSE(QFile::exists(path(folder)));
        runShell(path(""), lineFor(line));
        EXPECT_FALSE(QDir(path(folder)).entryList(QDir::Files).isEmpty());
        EXPECT_TRUE(QDir(path(folder)).entryList({"incomplete-*"}).isEmpty());
        QDir(path(begun().value(0, "nothing"))).removeRecursively();
    }
}

TEST_F(Interruption, AnExistingFolderKeepsItsPassUntilTheNewOneIsWhole) {
    write("pass/mine.txt", "mine");
    const QByteArray older = read("pass/truth.json");
    const QString again = "simulate pass --cars 1 --rate 500 --seed 5";
    runShell(path(""), lineFor(again, "trap '' XFSZ; ulimit -f 100; "), 4);
    EXPECT_EQ(read("pass/truth.json"), older);
    runShell(path(""), lineFor(again));
    EXPECT_NE(read("pass/truth.json"), older);
    EXPECT_EQ(QDir(path("pass")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              (QStringList{"defects.ini", "mine.txt", "settings.ini", "train_101.bin", "train_102.bin", "truth.json"}));
}

} // namespace
