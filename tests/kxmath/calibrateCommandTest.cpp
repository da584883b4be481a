// kxmath calibrate --write of several processes into one file.
#include "kxmath/toolRun.h"

#include <QtCore/QLockFile>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace tool_test;

class CalibrateCommand : public ToolTest {
protected:
    CalibrateCommand() : ToolTest("calibrate") { simulate("a", {"--calibration", "2"}); }
};

TEST_F(CalibrateCommand, PosesOfSeveralRunsAllStayInTheSettings) {
    constexpr int kSensors = 8;
    for (int round = 1; round <= 5; ++round) {
        write("s.ini", "[Mine]\nkey=1\n");
        runShell(
            path(""),
            QString(
                "for n in $(seq %1); do \"$KXMATH\" calibrate a/calibration-1.bin --position 2 --side larger-y --write "
                "s.ini --sensor $n >/dev/null || echo >failed & done; wait; test ! -e failed")
                .arg(kSensors));
        const QByteArray settings = read("s.ini");
        EXPECT_EQ(settings.count("position=2"), kSensors) << settings.constData();
        EXPECT_TRUE(settings.startsWith("[Mine]\nkey=1\n"));
    }
    EXPECT_FALSE(QFile::exists(path("s.ini.lock")));
}

TEST_F(CalibrateCommand, WaitsForTheLockOfALivingProcessOnly) {
    write("s.ini", "");
    ASSERT_TRUE(QFile::link(path("s.ini"), path("link.ini")));
    const QStringList arguments = {
        "a/calibration-1.bin", "--position", "2", "--side", "larger-y", "--write", "link.ini", "--sensor", "3"};
    // A process that ends without a destructor leaves its lock, as one that is killed.
    const pid_t holder = fork();
    if (holder == 0) {
        QLockFile lock(path("s.ini.lock"));
        _exit(lock.lock() ? 0 : 1);
    }
    int status = -1;
    ASSERT_TRUE(waitpid(holder, &status, 0) == holder && status == 0 && QFile::exists(path("s.ini.lock")));
    run(arguments);
    EXPECT_TRUE(read("s.ini").contains("[SENSOR3]"));

    write("s.ini", "");
    QLockFile held(path("s.ini.lock"));
    ASSERT_TRUE(held.lock());
    const ToolResult result = run(arguments, 4);
    EXPECT_TRUE(result.errors.contains("settings 'link.ini' could not be written: the lock 's.ini.lock' beside it was "
                                       "held by another process for 10 s"))
        << result.errors.constData();
    EXPECT_EQ(read("s.ini"), "");
}

} // namespace
