// The folder of a pass: what it keeps, that it depends on nothing but its inputs, and that its result comes out again.
#include "kxmath/toolRun.h"

#include <QtCore/QDirIterator>

namespace {

using namespace tool_test;

const QByteArray kLayout = "[SENSOR1]\nSN=101\nside=left\nplace=inner\n[SENSOR2]\nSN=102\nside=right\nplace=inner\n"
                           "[SENSOR3]\nSN=103\nside=left\nplace=field\n";

/// The simulated pass of a bogie before three sensors, with limits and a list of vehicles.
class PassFolder : public ToolTest {
protected:
    PassFolder() : ToolTest("train") {
        write("layout.ini", kLayout);
        simulate("in", {"--cars", "1", "--bogies", "1", "--rate", "600", "--layout", "layout.ini"});
        write("in/two.csv", "mark,number,class,axle distances,to next\nM,7,metro,2100,\n");
        write("in/bounds.ini", "[backToBack]\nwarningHigh=1360.1\nalarmLow=1357\n");
    }

    /// Measures the pass with all that a result may depend on. @return its folder
    QString measure(const QString& out, const QStringList& more = {}, const QString& in = "in") const {
        run(QStringList{in,
                        "--defects",
                        in + "/defects.ini",
                        "--consist",
                        in + "/two.csv",
                        "--limits",
                        in + "/bounds.ini",
                        "--out",
                        out,
                        "--mode",
                        "7",
                        "--nominal",
                        "1359.7",
                        "--tolerance",
                        "1.1",
                        "--defect-range=-inf:410.3",
                        "--station",
                        "Hof",
                        "--time",
                        "2026-03-29T01:59+01:00",
                        "--speed",
                        "79.5",
                        "--consist-order",
                        "listed"} +
            more);
        return out + "/pass-train_101-train_102";
    }

    /// The names of the files in a folder that are no profiles of wheels, and how many those are.
    std::pair<std::string, int> filesIn(const QString& folder) const {
        QStringList names;
        int profiles = 0;
        for (QDirIterator at(path(folder), QDir::Files | QDir::System, QDirIterator::Subdirectories); at.hasNext();) {
            const QString file = at.next();
            EXPECT_FALSE(QFileInfo(file).isSymLink()) << qPrintable(file);
            const QString name = QDir(path(folder)).relativeFilePath(file);
            EXPECT_FALSE(read(folder + '/' + name).contains(path("").toUtf8())) << qPrintable(name);
            (name.contains('/') ? profiles++ : (names.append(name), 0));
        }
        names.sort();
        return {names.join(' ').toStdString(), profiles};
    }

    QByteArray again(const QString& result, const QString& recordings, int exitCode) const {
        const ToolResult found = run({"--again", result, "--recordings", recordings}, exitCode);
        return exitCode == 0 ? found.output : found.errors;
    }
};

TEST_F(PassFolder, KeepsWhatIsAskedFor) {
    const std::string inputs = "consist.csv defects.ini limits.ini ", end = "result.json settings.ini";
    const QString all = measure("all", {"--keep", "all"});
    int profiles = 0;
    for (const QJsonValue recording :
         QJsonArray{readJson(all + "/result.json")["recordings"][0], readJson(all + "/result.json")["recordings"][1],
                    readJson(all + "/result.json")["furtherRecordings"][0]}) {
        const QString folder = path(all + '/' + recording["wheelDirectory"].toString());
        profiles += static_cast<int>(QDir(folder).entryList(QDir::Files).size());
    }
    const std::string starts = " starts-1.csv starts-1.ini starts-2.csv starts-2.ini starts-3.csv starts-3.ini";
    EXPECT_EQ(filesIn(all), std::pair(inputs + "profiles.bin " + end + starts, profiles));
    EXPECT_EQ(filesIn(measure("none", {"--keep", "none"})), std::pair(inputs + end, 0));
    EXPECT_EQ(filesIn(measure("chosen")), std::pair(inputs + "profiles.bin " + end, 0));
}

TEST_F(PassFolder, SetHoldsTheChosenProfilesAndTheCrossSections) {
    const QString folder = measure("all", {"--keep", "all"});
    const QJsonValue result = readJson(folder + "/result.json");
    const QJsonArray records = result["kept"]["profiles"]["records"].toArray();
    QFile file(path(folder + "/profiles.bin"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    int merged = 0;
    for (const QJsonValue record : records) {
        KxProfileZ profile;
        ASSERT_GT(profile.readFromFile(file), 0);
        if (record["kind"] == "chosen") {
            const QString wheelFile = QString("%1/%2/%3_%4.bin")
                                          .arg(folder, record["recording"].toString().chopped(4))
                                          .arg(record["wheel"].toInt(), 2, 10, QChar('0'))
                                          .arg(record["profile"].toInt(), 2, 10, QChar('0'));
            KxProfile expected;
            ASSERT_GT(expected.readFromFile(path(wheelFile)), 0) << qPrintable(wheelFile);
            EXPECT_EXACT(profile.points, expected.points);
            const QJsonValue pair = result["pairs"][record["pair"].toInt() - 1];
            EXPECT_EQ(pair["sides"][record["recording"] == "train_101.bin" ? 0 : 1]["chosenProfile"],
                      record["profile"]);
        } else {
            const QJsonValue wheel = result["wheels"][merged++];
            EXPECT_EQ(wheel["side"], record["side"]);
            EXPECT_EQ(wheel["pair"], record["pair"]);
            EXPECT_EQ(profile.z, static_cast<float>(wheel["place"].toDouble()));
        }
    }
    EXPECT_TRUE(file.atEnd());
    EXPECT_EQ(merged, 4);
    EXPECT_EQ(records.size(), 8);
}

TEST_F(PassFolder, BytesDependOnInputsAlone) {
    const QString first = measure("first");
    QDir(path("")).mkpath("deep/er");
    runShell(path(""), "cp -r in deep/er/in2; touch -d 2001-02-03 deep/er/in2/*");
    const QString second = "deep/out/pass-train_101-train_102";
    measure(path("deep/out"), {"--report", "page.html", "--wheel", "99"}, path("deep/er/in2"));
    for (const char* const name : {"/result.json", "/profiles.bin"}) {
        EXPECT_EQ(read(first + name), read(second + name)) << name;
    }
}

TEST_F(PassFolder, ResultComesOutAgain) {
    write("in/train_103.bin", read("in/train_103.bin").chopped(5)); // damaged, of which the result knows the hash, too
    const QString made = measure("out");
    runShell(path(""), "mkdir -p kept archive/a; mv " + made +
                           " kept/p; cp in/train_102.bin archive/x; "
                           "cp in/train_103.bin archive/a/y; cp in/train_101.bin archive/a/train_102.bin");
    EXPECT_TRUE(again("kept/p", "archive", 0).contains("the same, byte for byte"));
    const std::tuple<const char*, int, const char*> changes[] = {
        {"rm archive/x", 3, "recording 'train_102.bin' has changed: 'archive/a/train_102.bin' has"},
        {"rm archive/a/y", 3, "recording 'train_103.bin' is missing: nothing below 'archive' has"},
        {"printf zzzz | dd of=archive/x bs=1 seek=1000 conv=notrunc", 3, "recording 'train_102.bin' has changed"},
        {"echo >>kept/p/settings.ini", 3, "the settings have changed: 'kept/p/settings.ini' has"},
        {"echo >>kept/p/defects.ini", 3, "the settings for defects have changed: 'kept/p/defects.ini' has"},
        {"rm kept/p/consist.csv", 3, "the list of vehicles beside the result, 'kept/p/consist.csv', does not exist"},
        {"echo >>kept/p/limits.ini", 3, "the limits have changed: 'kept/p/limits.ini' has"},
        {"echo >>kept/p/profiles.bin", 1, "its profiles have changed: 'kept/p/profiles.bin' has"},
        {"sed -i 's/\"nominal\".*/\"nominal\": 1359.75,/' kept/p/result.json", 1, "deviation: "},
        {"sed -i 's/\"version\": \"[0-9.]*\"/\"version\": \"0.1.2\"/' kept/p/result.json", 1,
         "'kept/p/result.json' was measured by version 0.1.2, this is version"},
        {"sed -i 's/\"file\": \"train_101.bin\"/\"file\": \"..\"/' kept/p/result.json", 3,
         "which is no name of a file"},
        {"echo {} >kept/p/result.json", 3, "result 'kept/p/result.json' lacks the key"},
    };
    for (const auto& [change, exitCode, message] : changes) {
        SCOPED_TRACE(change);
        runShell(path(""), QString("rm -rf trial; mkdir trial; cp -r kept archive trial; cd trial; ") + change);
        const ToolResult found =
            runTool(path("trial"), {"train", "--again", "kept/p", "--recordings", "archive"}, exitCode);
        EXPECT_TRUE(found.errors.contains(message)) << found.errors.constData();
    }
    run({"--again", "kept/p/result.json", "--recordings", ".", "--out", "new"});
    EXPECT_EQ(read("new/pass-train_101-train_102/result.json"), read("kept/p/result.json"));
    EXPECT_EQ(filesIn("new"), std::pair(std::string(), 6)) << "a folder with the same six files";
}

} // namespace
