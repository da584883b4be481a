// The files that commands write in place of older ones, through links and into devices. That they are written whole or not
// at all is the subject of tests/faults.
#include "kxmath/commandInputs.h"

#include <QtCore/QRegularExpression>

namespace {

using namespace tool_test;

/// A command line that writes OUT, of which nothing else stays.
struct Output {
    const char* name;
    const char* line;
};

const Output kOutputs[] = {
    {"o.bin", "convert spatial.bin OUT"},
    {"o.cloud", "convert flat.bin OUT"},
    {"o.profiles", "convert spatial.bin OUT"},
    {"o.csv", "convert flat.bin OUT"},
    {"o.xyzf", "convert spatial.bin OUT"},
    {"o.xyz", "convert spatial.bin OUT"},
    {"o.ply", "convert spatial.bin OUT"},
    {"o.pcd", "convert spatial.bin OUT"},
    {"o.npy", "convert spatial.bin OUT"},
    {"o.vtp", "convert spatial.bin OUT"},
    {"o.table", "convert spatial.bin OUT"},
    {"o.gauge", "convert flat.bin OUT"},
    {"w.json", "wheel wheel.csv --json OUT"},
    {"w.csv", "wheel wheel.csv --csv OUT"},
    {"w.html", "wheel wheel.csv --report OUT"},
    {"c.json", "conicity CONICITY --json OUT"},
    {"c.csv", "conicity CONICITY --csv OUT"},
    {"c.html", "conicity CONICITY --report OUT"},
    {"k.json", "calibrate shots/calibration-1.bin --position 2 --side larger-y --json OUT"},
    {"k.html", "calibrate shots/calibration-1.bin --position 2 --side larger-y --report OUT"},
    {"k.ini", "calibrate shots/calibration-1.bin --position 2 --side larger-y --sensor 1 --write OUT"},
    {"g.json", "grid scan.bin --step 0.5 --json OUT"},
    {"g.html", "grid scan.bin --step 0.5 --report OUT"},
    {"t.csv", "train TRAIN --csv OUT"},
    {"t.json", "train TRAIN --json OUT"},
    {"t.html", "train TRAIN --report OUT"},
};

class Outputs : public CommandInputs {
protected:
    /// The line for the shell.
    QString lineFor(const Output& output, const QString& out) const {
        return CommandInputs::lineFor(QString(output.line).replace("OUT", out), "exec ");
    }
};

TEST_F(Outputs, TakeThePlaceOfWhatALinkLeadsTo) {
    constexpr auto kPermissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ExeOther;
    QDir(path("")).mkdir("elsewhere");
    for (const Output& output : kOutputs) {
        SCOPED_TRACE(output.line);
        const QString target = QString("elsewhere/") + output.name;
        const QString hardLink = target + ".kept";
        const QByteArray old = QByteArray(output.name).endsWith("ini") ? "[MINE]\nkey=1\n" : "old";
        QFile::setPermissions(write(target, old), kPermissions);
        ASSERT_TRUE(QFile::link(target, path(output.name)));
        runShell(path(""), "ln " + target + ' ' + hardLink);
        runShell(path(""), lineFor(output, output.name));
        EXPECT_EQ(QFile::symLinkTarget(path(output.name)), path(target));
        EXPECT_GT(read(target).size(), old.size());
        EXPECT_EQ(QFile::permissions(path(target)) & QFile::Permissions(0x7077), kPermissions);
        EXPECT_EQ(read(hardLink), old) << "another name of the older file keeps it";
    }
    EXPECT_TRUE(QDir(path("elsewhere")).entryList({"incomplete-*"}).isEmpty());
    EXPECT_TRUE(QDir(path("")).entryList({"incomplete-*"}).isEmpty());
}

TEST_F(Outputs, GoIntoDevicesAndPipes) {
    for (const Output& output : kOutputs) {
        SCOPED_TRACE(output.line);
        const QString ending = QString(output.name).section('.', 1);
        const bool isConvert = QByteArray(output.line).startsWith("convert");
        const QString kind = isConvert ? " --to " + QString(ending).replace(QRegularExpression("^bin$"), "cloud") : "";
        if (!QByteArray(output.line).contains("--write")) { // of which the older content is read first
            EXPECT_TRUE(runShell(path(""), lineFor(output, "/dev/full") + kind, 4).errors.contains("/dev/full"));
            runShell(path(""), lineFor(output, "whole." + ending));
            runShell(path(""),
                     "{ " + lineFor(output, "/dev/fd/3").replace("exec ", "") + kind + " >table; } 3>&1 | cat >piped");
            EXPECT_GT(read("piped").size(), 50);
            const QByteArray name = "whole." + ending.toUtf8(); // which the command line on a page tells
            EXPECT_EQ(read("piped").size(), read(name).replace(name, "3").size());
        }
    }
}

} // namespace
