// kxmath train --defects on simulated trains: the right wheels are accused, and no other.
#include "kxmath/toolRun.h"

#include <QtCore/QRegularExpression>

#include <optional>

namespace {

using namespace tool_test;

class TrainDefects : public ToolTest {
protected:
    TrainDefects() : ToolTest("train") {}

    QJsonValue simulatePass(const QStringList& more) const {
        return simulate("pass", QStringList{"--cars", "1", "--rate", "1000"} + more);
    }

    static QStringList with(const QStringList& more) {
        return QStringList{"pass/train_101.bin", "pass/train_102.bin", "--settings",
                           "pass/settings.ini",  "--defects",          "pass/defects.ini"} +
               more;
    }
};

/// The wheels that are accused, as PAIR:SIDE.
std::string accused(const QJsonValue& result, const char* object, const char* verdict) {
    QStringList wheels;
    const QJsonArray pairs = result["pairs"].toArray();
    EXPECT_EQ(pairs.size(), 4);
    for (qsizetype pair = 0; pair < pairs.size(); ++pair) {
        for (qsizetype side = 0; side < 2; ++side) {
            const QJsonValue wheel = pairs[pair]["sides"][side];
            EXPECT_GT(wheel["defects"]["judgedProfiles"].toInt(), 10);
            EXPECT_GE(wheel["roundness"]["radii"].toArray().size(), 10);
            if (wheel[QLatin1String(object)][QLatin1String(verdict)].toBool()) {
                wheels.append(QStringLiteral("%1:%2").arg(pair + 1).arg(side + 1));
            }
        }
    }
    return wheels.join(' ').toStdString();
}

TEST_F(TrainDefects, AccusesTheRightWheels) {
    using Accused = std::optional<std::string>; // nothing where either verdict would be right
    const std::tuple<QStringList, Accused, Accused> cases[] = {
        {{"--seed", "1"}, "", ""},
        {{"--seed", "2"}, "", ""},
        // One of the flats is out of view.
        {{"--rate", "2000", "--flat", "3:2:60", "--flat", "1:1:50:-20", "--flat", "2:2:60:300"}, {}, "1:1 3:2"},
        {{"--seed", "2", "--build-up", "3:2:0.5", "--build-up", "1:1:1.5"}, "1:1 3:2", {}},
    };
    for (const auto& [pass, expectedDefective, expectedOutOfRound] : cases) {
        SCOPED_TRACE(pass.join(' ').toStdString());
        const QJsonValue truth = simulatePass(pass), result = json(with({}));
        const std::string defective = accused(result, "defects", "isDefective");
        const std::string outOfRound = accused(result, "roundness", "isOutOfRound");
        for (qsizetype i = 0; i < 4; ++i) {
            const double distance = result["pairs"][i]["distance"].toDouble();
            EXPECT_NEAR(distance, truth["pairs"][i]["backToBack"].toDouble(), 0.1); // as promised
        }
        EXPECT_EQ(defective, expectedDefective.value_or(defective));
        EXPECT_EQ(outOfRound, expectedOutOfRound.value_or(outOfRound));
    }
}

TEST_F(TrainDefects, ComparesNoCirclesWithoutPlaces) {
    simulatePass({"--records", "cloud", "--points", "400"});
    const ToolResult result = run(with({"--json", "-"}));
    EXPECT_EQ(result.output.count("\"roundness\": null"), 8);
    EXPECT_EQ(result.errors.count("have no rising z"), 2) << result.errors.toStdString();
}

/// The class and the value of a fact of a page, as CLASS:VALUE.
std::string factOf(const QString& page, const QString& label) {
    const QRegularExpression fact("<span>" + QRegularExpression::escape(label) +
                                  "</span><strong class=\"(\\w*)\">([^<]*)<");
    const QRegularExpressionMatch match = fact.match(page);
    return (match.captured(1) + ':' + match.captured(2)).toStdString();
}

/// Lines that select the back face where the tread should be, on one side or on both, and a range without points.
TEST_F(TrainDefects, SaysWhatWasNotJudged) {
    simulatePass({"--rate", "1500", "--flat", "3:1:60"});
    const auto levelOf2 = [&](const QByteArray& settings) {
        const qsizetype from = settings.lastIndexOf("\nlevel_b=");
        return settings.mid(from, settings.indexOf('\n', from + 1) - from);
    };
    const QByteArray settings = read("pass/settings.ini"), good = read("pass/defects.ini");
    QByteArray half = good;
    half.replace(half.lastIndexOf(levelOf2(good)), levelOf2(good).size(), levelOf2(settings));
    const struct {
        QByteArray defects;
        QStringList more;
        int exitCode, judged; ///< of 8, treads as well as roundness
        const char* warning;
        const char* reason; ///< of a tread on side 2
        const char *treadFact, *roundnessFact;
    } cases[] = {
        {good, {}, 0, 8, "", "", "good:0", "bad:1"},
        {good, {"--fail-on", "out,not-judged"}, 0, 8, "", "", "good:0", "bad:1"},
        {half,
         {},
         0,
         4,
         "the level line of SENSOR2 is the same",
         "no profile has a point between the lines",
         ":0",
         "bad:1"},
        {half, {"--fail-on", "not-judged"}, 5, 4, "8 x not-judged", "no profile has a point", ":0", "bad:1"},
        {half, {"--fail-on", "defect"}, 5, 4, "1 x defect", "no profile has a point", ":0", "bad:1"},
        {settings,
         {"--fail-on", "defect"},
         1,
         0,
         "SENSOR1 and SENSOR2 is the same",
         "no profile shows 8 mm",
         "bad:not judged",
         "bad:not judged"},
        {good,
         {"--defect-range", "-500:-400"},
         1,
         0,
         "no tread could be judged",
         "within the range of x",
         "bad:not judged",
         "bad:not judged"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.more.join(' ').toStdString() + " " + std::to_string(c.judged));
        write("pass/defects.ini", c.defects);
        const ToolResult table =
            run(with(c.more + QStringList{"--json", "r.json", "--csv", "r.csv", "--report", "r.html"}), c.exitCode);
        EXPECT_TRUE(table.errors.contains(c.warning)) << table.errors.toStdString();
        const QByteArray count = QByteArray::number(c.judged) + " of 8 ";
        EXPECT_TRUE(table.output.contains(count + "treads judged" + (c.judged > 0 ? ", 0 def" : ".\n")));
        EXPECT_TRUE(table.output.contains(count + "wheels judged for roundness" + (c.judged > 0 ? ", 1 out" : ".\n")));
        EXPECT_EQ(table.output.contains("pairs 1-4 on side 2: "), c.judged < 8) << table.output.toStdString();

        const QJsonValue result = readJson("r.json");
        EXPECT_EQ(result["judged"]["distances"], (QJsonObject{{"judged", 4}, {"of", 4}}));
        EXPECT_EQ(result["judged"]["treads"], (QJsonObject{{"judged", c.judged}, {"of", 8}}));
        EXPECT_EQ(result["judged"]["roundness"], (QJsonObject{{"judged", c.judged}, {"of", 8}}));
        const QJsonValue wheel = result["pairs"][2]["sides"][1];
        EXPECT_EQ(wheel["defects"]["isDefective"].isNull(), c.judged < 8);
        EXPECT_EQ(wheel["defects"]["deviatingPoints"].isNull(), c.judged < 8);
        EXPECT_TRUE(wheel["defectsReason"].toString().contains(c.reason));
        EXPECT_EQ(wheel["roundnessReason"].isNull(), c.judged == 8);

        const QList<QByteArray> lines = read("r.csv").split('\n');
        const auto field = [&](const char* name) {
            return lines[3].split(',').value(lines[0].split(',').indexOf(name));
        };
        EXPECT_EQ(field("tread_1"), c.judged > 0 ? "sound" : "");
        EXPECT_EQ(field("tread_2"), c.judged == 8 ? "sound" : "");
        EXPECT_EQ(field("roundness_1"), c.judged > 0 ? "out of round" : "");
        EXPECT_EQ(lines[3].endsWith("round,,,,,"), c.judged == 8) << lines[3].toStdString();
        EXPECT_TRUE(c.judged == 8 || lines[3].count(c.reason) == (c.judged == 4 ? 1 : 2)) << lines[3].toStdString();

        const QString page = read("r.html"), judged = QString(" (%1 of 8 judged)").arg(c.judged);
        EXPECT_EQ(factOf(page, "Distances out of tolerance (4 of 4 judged)"), "good:0");
        EXPECT_EQ(factOf(page, "Defective treads" + judged), c.treadFact);
        EXPECT_EQ(factOf(page, "Wheels out of round" + judged), c.roundnessFact);
        EXPECT_EQ(page.count("not judged</td>"), 2 * (8 - c.judged));
        EXPECT_EQ(page.contains("pairs 1-4 on side 2: "), c.judged < 8);
        EXPECT_EQ(page.contains("Treads of wheel pair"), c.judged > 0);
    }
}

TEST_F(TrainDefects, CountsWheelsThatASensorMissed) {
    simulatePass({"--rate", "1500"});
    QByteArray settings = read("pass/settings.ini");
    write("pass/settings.ini", settings.replace(settings.lastIndexOf("minPointsIn=64"), 14, "minPointsIn=9999"));
    const ToolResult table = run(with({"--json", "r.json", "--csv", "r.csv", "--report", "r.html"}), 1);
    EXPECT_TRUE(table.output.contains("\n0 of 4 distances measured.\n")) << table.output.toStdString();
    EXPECT_TRUE(table.output.contains("\n4 of 8 treads judged, 0 defective.\n"
                                      "Not judged, pairs 1-4 on side 2: the sensor did not see the wheel.\n"));
    EXPECT_EQ(readJson("r.json")["judged"]["roundness"], (QJsonObject{{"judged", 4}, {"of", 8}}));
    const QList<QByteArray> lines = read("r.csv").split('\n');
    EXPECT_TRUE(lines[1].endsWith("the sensor of side 2 did not see the wheel,,,the sensor did not see the wheel,"
                                  "the sensor did not see the wheel"))
        << lines[1].toStdString();
    const QString page = read("r.html");
    EXPECT_EQ(factOf(page, "Distances out of tolerance (0 of 4 judged)"), "bad:not judged");
    EXPECT_EQ(factOf(page, "Defective treads (4 of 8 judged)"), ":0");
    EXPECT_EQ(page.count("not judged</td>"), 12);
}

} // namespace
