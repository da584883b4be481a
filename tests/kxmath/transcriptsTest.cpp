// Whole outputs of the commands, as the transcripts in transcripts/ show them: tables, JSON, CSV, messages, exit codes.
//
// A line "$ LINE" is run by the shell; the lines below it are what it prints, those on stderr with "! " before them, and
// its exit code when that is not 0. "page FILE" there shows a page as text. Numbers may differ in the sixth digit, since
// functions of the C library may. With
// KXMATH_UPDATE_TRANSCRIPTS in the environment the transcripts are written anew, see scripts/transcripts.
#include "kxmath/toolRun.h"
#include "kxmath/trainRecordings.h"
#include "report/pageText.h"
#include "shapes/crossSections.h"
#include "shapes/patchScan.h"

#include <QtCore/QRegularExpression>

namespace {

using namespace tool_test;

const QString kFolder = QStringLiteral(KXMATH_TRANSCRIPTS);

/// A profile as contact gauges write them: header lines, one of them with numbers, and three columns.
QByteArray gaugeText(const KxProfile& profile, float shift) {
    QByteArray text = "Stock.......:\n32.58 37.11 14.71  (Sd/Sh/qR)\nWheel ID....: 7\n\n";
    for (const auto& p : profile.points) {
        text += QByteArray::number(double(p.x + shift), 'f', 5) + "  " + QByteArray::number(double(p.y), 'f', 5) +
                " 0.000\n";
    }
    return text + "\n";
}

/// A folder with the files that the transcripts name.
class CommandFiles : public ToolTest {
protected:
    CommandFiles() : ToolTest("") {
        qputenv("SOURCE_DATE_EPOCH", "1767225600"); // pages say when they were made
        writeSections();
        write("left_1001.bin", recording({0.25f, -1.0f, 0.5f, SeenWheel(), 0.75f}, RecordKind::CloudSections, 40));
        write("right_1002.bin", recording({0.5f, -2.5f, 0.0f, 1.0f, -0.5f}, RecordKind::ProfileRecords, 55));
        write("none_1001.bin", recording({SeenWheel(), SeenWheel()}, RecordKind::CloudSections));
        write("few_1002.bin", recording({0.0f}, RecordKind::CloudSections, 5)); // too few points for a line
        write("flat.ini", trainSettings());
        write("flat.csv", "0;250\n1;250\n2;250\n");
        KxProfileZSet set;
        const kxtool::Patch patches[] = {{3, 12, 4, 20, 12.0f}, {13, 26, 4, 18, 10.5f}};
        kxtool::appendPatchScan(set, {30, 25, 0.5f, -40.0f, 8.0f, 0.03f, 7}, patches);
        set.writeToFile(path("scan.bin"));
        KxProfileZSet gaps; // nothing but patches: one at the height 0, and rows without points before and between them
        const kxtool::Patch apart[] = {{3, 12, 4, 20, 0.05f}, {16, 27, 4, 18, -4.0f}};
        kxtool::appendPatchScan(gaps, {30, 25, 0.5f, -40.0f, kNaN, 0.03f, 7}, apart);
        gaps.writeToFile(path("gaps.bin"));
        KxPointCloud<KxPointXYZ> space;
        space.points = {at(1, -2, 3), at(1.5, 2.25, 3), at(-7, 0.125, 4.5), at(kNaN, 1, 4.5), at(20, 30, 40)};
        space.writeToFile(path("space.bin"));
        write("plane.csv", "height;width;length\n1,5;2;3\n-4,25;5;6\n7;8;9\n");
        write("coloured.xyz", "1 2 3 10 20 30\n4 5 6.5 255 0 128\n");
    }

    /// What a command line prints as JSON.
    QJsonValue jsonOf(const QString& line) const {
        const QByteArray output = runShell(path(""), "\"$KXMATH\" " + line + " --json -").output;
        return QJsonDocument::fromJson(output).object();
    }

private:
    void writeSections() const {
        KxProfile cone, high, w1, w2, r1, r2, flange;
        kxtool::appendConicalWheel(cone, 0.1f);
        high.points = pointsFor(cone.size(), [&](int i) { return at(cone.points[i].x, 1.05f * cone.points[i].y); });
        flange.points = cone.points.mid(0, 700); // to 35 mm
        kxtool::appendConicalWheel(w1, 0.05f);
        kxtool::appendConicalWheel(w2, 0.12f);
        kxtool::appendRoundRail(r1, 80.0f);
        kxtool::appendRoundRail(r2, 110.0f);
        const std::pair<const char*, KxProfile*> files[] = {{"high.csv", &high}, {"flange.csv", &flange},
                                                            {"w1.csv", &w1},     {"w2.csv", &w2},
                                                            {"r1.csv", &r1},     {"r2.csv", &r2}};
        for (const auto& [name, profile] : files) {
            profile->writeToCSVFile(path(name));
        }
        write("wide.whl", gaugeText(cone, 2.5f));
    }
};

class Transcripts : public CommandFiles, public testing::WithParamInterface<const char*> {
protected:
    /// The whole line and the transcript of what it prints.
    QByteArray transcriptOf(const QString& line) const {
        const QString run =
            "kxmath() { \"$KXMATH\" \"$@\"; }\npage() { echo \"PAGE $1\"; }\n" + line + "\necho \"exit $?\" >&2";
        ToolResult result = runShell(path(""), run);
        QList<QByteArray> errors = result.errors.trimmed().split('\n');
        QByteArray text = withPages(result.output);
        if (!text.isEmpty() && !text.endsWith('\n')) {
            text += '\n';
        }
        const QByteArray exit = errors.takeLast();
        for (const QByteArray& error : errors) {
            text += "! " + error + '\n';
        }
        text += exit == "exit 0" ? QByteArray() : exit + '\n';
        text.replace(QDir(path("")).canonicalPath().toUtf8() + '/', "FOLDER/");
        text.replace(path("").toUtf8(), "FOLDER/");
        text.replace(KxMath_GetVersionString(), "VERSION");
        static const QRegularExpression hash("\\b[0-9a-f]{64}\\b"); // of bytes that differ by rounding
        text = QString::fromUtf8(text).replace(hash, "SHA256").toUtf8();
        return "$ " + line.toUtf8() + '\n' + withShortLists(text);
    }

private:
    /// Lines "PAGE FILE" become what is on that page.
    QByteArray withPages(const QByteArray& output) const {
        QByteArrayList lines = output.split('\n');
        for (QByteArray& line : lines) {
            if (line.startsWith("PAGE ")) {
                QFile file(path(QString::fromUtf8(line.mid(5))));
                EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << line.constData();
                line = page_test::textOf(page_test::readPage(QString::fromUtf8(file.readAll()))).toUtf8().trimmed();
            }
        }
        return lines.join('\n');
    }

    /// Lists of numbers take one line.
    static QByteArray withShortLists(const QByteArray& json) {
        static const QRegularExpression list("\\[[-+\\d.eEnul,\\s\\[\\]]*\\]"), space("\\s+");
        QString text = QString::fromUtf8(json);
        qsizetype from = 0;
        for (QRegularExpressionMatch m = list.match(text); m.hasMatch(); m = list.match(text, from)) {
            const QString shortened = m.captured().remove(space).replace(',', ", ");
            text.replace(m.capturedStart(), m.capturedLength(), shortened);
            from = m.capturedStart() + shortened.size();
        }
        return text.toUtf8();
    }
};

/// Decimals of a number as it was printed. With few of them it was rounded on purpose.
qsizetype decimals(const QString& number) {
    return number.contains('.') ? number.size() - number.indexOf('.') - 1 : 0;
}

bool isSameNumber(const QString& found, const QString& expected) {
    constexpr qsizetype kRounded = 4;
    const qsizetype theirs = decimals(found), ours = decimals(expected);
    const double x = found.toDouble(), y = expected.toDouble();
    return std::abs(x - y) <= 1e-6 * std::max(1.0, std::abs(y)) &&
           (theirs == ours || std::max(theirs, ours) > kRounded);
}

/// Expects the same texts, and numbers that differ by rounding only.
void expectSame(const QByteArray& found, const QByteArray& expected) {
    static const QRegularExpression number("-?\\d+\\.?\\d*(?:e[-+]?\\d+)?");
    const QStringList foundLines = QString::fromUtf8(found).split('\n');
    const QStringList expectedLines = QString::fromUtf8(expected).split('\n');
    for (qsizetype i = 0; i < std::max(foundLines.size(), expectedLines.size()); ++i) {
        QString a = foundLines.value(i, "(nothing)"), b = expectedLines.value(i, "(nothing)");
        bool isSame = true;
        QRegularExpressionMatchIterator theirs = number.globalMatch(b);
        for (const QRegularExpressionMatch& mine : number.globalMatch(a)) {
            isSame = isSame && theirs.hasNext() && isSameNumber(mine.captured(), theirs.next().captured());
        }
        isSame = isSame && a.replace(number, "#") == b.replace(number, "#");
        ASSERT_TRUE(isSame) << "line " << i + 1 << "\nfound:    " << foundLines.value(i).toStdString()
                            << "\nexpected: " << expectedLines.value(i).toStdString()
                            << "\nscripts/transcripts writes the transcripts anew when a change intends this";
    }
}

TEST_P(Transcripts, ShowWhatTheCommandsPrint) {
    QFile file(kFolder + '/' + GetParam() + ".txt");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray expected = file.readAll();
    file.close();
    QByteArray found;
    for (const QByteArray& line : expected.split('\n')) {
        if (line.startsWith("$ ")) {
            found += transcriptOf(QString::fromUtf8(line.mid(2)));
        } else if (line.startsWith("//")) {
            found += line + '\n';
        }
    }
    if (!qEnvironmentVariableIsSet("KXMATH_UPDATE_TRANSCRIPTS")) {
        return expectSame(found, expected);
    }
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(found), found.size());
}

INSTANTIATE_TEST_SUITE_P(Of, Transcripts,
                         testing::Values("calibrate", "conicity", "convert", "forms", "grid", "pages", "poses",
                                         "profile", "settings", "shapes", "simulate", "train", "verdicts", "view",
                                         "watch", "wheel"),
                         [](const auto& info) { return std::string(info.param); });

// The numbers of the transcripts beside what is known of the inputs, and beside each other.

TEST_F(CommandFiles, TrainMeasuresWhatWasRecorded) {
    const QJsonValue flat = jsonOf("train left_1001.bin right_1002.bin --settings flat.ini --nominal 1359.5 "
                                   "--tolerance 1.25 --out passes");
    const std::optional<double> offsets[] = {
        0.25 + 0.5, -1 - 2.5, 0.5 + 0.0, {}, 0.75 - 0.5}; // of both wheels of a pair
    for (int i = 0; i < 5; ++i) {
        const QJsonValue pair = flat["pairs"][i];
        EXPECT_EQ(pair["distance"].isNull(), !offsets[i]);
        if (offsets[i]) {
            EXPECT_EQ(pair["distance"].toDouble(), 1360 + *offsets[i]);
            EXPECT_EQ(pair["deviation"].toDouble(), 1360 + *offsets[i] - 1359.5);
            EXPECT_EQ(pair["inTolerance"].toBool(), std::abs(pair["deviation"].toDouble()) <= 1.25);
        }
        for (const QJsonValue side : pair["sides"].toArray()) {
            EXPECT_EQ(side["lastRecord"].toInt(),
                      side["firstRecord"].toInt() + side["profiles"].toInt() + side.isNull() - 1);
        }
    }
    const QJsonValue truth = simulate("pass", {"--cars", "1", "--bogies", "1", "--rate", "2000", "--build-up", "2:1:1",
                                               "--distance-spread", "1.5", "--seed", "7"});
    const QJsonValue pass = jsonOf("train pass/train_101.bin pass/train_102.bin --settings pass/settings.ini --defects "
                                   "pass/defects.ini --out passes");
    for (int i = 0; i < 2; ++i) {
        EXPECT_NEAR(pass["pairs"][i]["distance"].toDouble(), truth["pairs"][i]["backToBack"].toDouble(), 0.1);
        for (int side = 0; side < 2; ++side) {
            const QJsonValue isDefective = pass["pairs"][i]["sides"][side]["defects"]["isDefective"];
            EXPECT_EQ(isDefective.toBool(), i == 1 && side == 0) << i << ' ' << side;
        }
    }
}

TEST_F(CommandFiles, WheelMeasuresTheDrawing) {
    // A flange of 28 mm whose flank falls by 1.6 mm per mm from its tip at 20 mm; the other one is 1.05 times as high.
    const std::pair<const char*, std::array<double, 4>> cases[] = {
        {"wheel wide.whl --flange-back 2.5", {28, 31.25, 8.125, 0}}, {"wheel high.csv", {29.4, 30.714, 8.636, -0.6}}};
    const char* const keys[] = {"heightAt70", "xAtLevel18", "widthLevel2ToH13", "heightExcess"};
    for (const auto& [line, expected] : cases) {
        const QJsonValue wheel = jsonOf(line)["wheels"][0];
        for (size_t i = 0; i < 4; ++i) { // the means of the smoothing stand up to 0.125 mm before their middle
            EXPECT_NEAR(wheel[QLatin1String(keys[i])].toDouble(), expected[i], 0.13) << line << ' ' << keys[i];
        }
        EXPECT_NEAR(wheel["flangeHeight"].toDouble(), expected[0], 0.01) << line;
    }
}

TEST_F(CommandFiles, ConicityFollowsFromTheConesAndRails) {
    const QJsonValue result =
        jsonOf("conicity --wheel1 w1.csv --wheel2 w2.csv --rail1 r1.csv --rail2 r2.csv --gauge 1442 "
               "--back-to-back 1361 --gauge-depth 0 --radius1 461 --radius2 459.5 --amplitude 2.5");
    // Each cone touches its rail where that has its slope; the tape circles are at 70 mm, the tops of the rails at 32 mm.
    const double touch1 = 40.5 + 32 - 80 * std::sin(std::atan(0.05)),
                 touch2 = 40.5 + 32 - 110 * std::sin(std::atan(0.12));
    int compared = 0;
    for (const QJsonValue point : result["deltaR"].toArray()) {
        const double shift = point[0].toDouble();
        if (std::abs(shift) < 3) {
            const double first = 461 + (70 - touch1 - shift) * 0.05, second = 459.5 + (70 - touch2 + shift) * 0.12;
            EXPECT_NEAR(point[1].toDouble(), second - first, 0.01);
            ++compared;
        }
    }
    EXPECT_EQ(compared, 59);
    EXPECT_NEAR(result["shownConicity"].toDouble(), 0.085, 0.001);
}

TEST_F(CommandFiles, CalibrateAveragesItsProfiles) {
    const QJsonValue truth =
        simulate("shots", {"--calibration", "2", "--profiles", "3", "--turn", "4,-3,2", "--move", "5,-10,8", "--noise",
                           "0.03", "--pitch", "22", "--slope", "1.1", "--plane-y", "120"});
    const QJsonValue result =
        jsonOf("calibrate shots/calibration-1.bin shots/calibration-2.bin shots/calibration-3.bin "
               "--position 2 --side larger-y --pitch 22 --slope 1.1 --plane-y 120");
    for (const char* const name : {"x", "y", "z", "alpha", "beta", "gamma"}) {
        const QLatin1String field(name);
        double sum = 0, squares = 0, largest = 0;
        for (int i = 0; i < 3; ++i) {
            sum += result["profiles"][i]["pose"][field].toDouble();
        }
        for (int i = 0; i < 3; ++i) {
            const double difference = result["profiles"][i]["pose"][field].toDouble() - sum / 3;
            squares += difference * difference;
            largest = std::max(largest, std::abs(difference));
        }
        EXPECT_NEAR(result["pose"][field].toDouble(), sum / 3, 1e-9) << name;
        EXPECT_NEAR(result["deviation"][field].toDouble(), std::sqrt(squares / 2), 1e-9) << name;
        EXPECT_NEAR(result["largest"][field].toDouble(), largest, 1e-9) << name;
        const double error = result["pose"][field].toDouble() - truth["pose"][field].toDouble();
        EXPECT_NEAR(std::remainder(error, 360), 0, name[1] == '\0' ? 0.1 : 0.03) << name;
    }
}

TEST_F(CommandFiles, GridFindsThePatchesOfTheScan) {
    const QJsonValue result = jsonOf("grid scan.bin --step 0.5 --z0 20 --blocks 3");
    // 10 x 17 and 14 x 15 cells; block means lie up to three cells behind the edges of a patch.
    const double heights[] = {12.0, 10.5}, cells[] = {10 * 17, 14 * 15};
    const double ranges[2][4] = {{-38, -30, 21.5, 26}, {-38, -31, 26.5, 33}}; // of x and of z
    for (int i = 0; i < 2; ++i) {
        const QJsonValue seed = result["seeds"][i];
        EXPECT_NEAR(seed["mean"].toDouble(), heights[i], 0.02);
        EXPECT_NEAR(seed["deviation"].toDouble(), 0.03, 0.005);
        EXPECT_EQ(seed["cells"].toDouble(), cells[i]);
        EXPECT_EQ(seed["area"].toDouble(), cells[i] * 0.25);
        for (int k = 0; k < 2; ++k) {
            EXPECT_EQ(seed["x"][k].toDouble(), ranges[i][k]);
            EXPECT_EQ(seed["z"][k].toDouble(), ranges[i][2 + k]);
        }
    }
}

} // namespace
