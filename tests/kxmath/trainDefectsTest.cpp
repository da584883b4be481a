// kxmath train --defects on simulated trains: the right wheels are accused, and no other.
#include "kxmath/toolRun.h"

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
    const ToolResult elsewhere = run(with({"--json", "-", "--defect-range", "-500:-400"}));
    EXPECT_EQ(elsewhere.output.count("\"isDefective\": null"), 8) << "nothing to judge is no verdict";
}

TEST_F(TrainDefects, ComparesNoCirclesWithoutPlaces) {
    simulatePass({"--records", "cloud", "--points", "400"});
    const ToolResult result = run(with({"--json", "-"}));
    EXPECT_EQ(result.output.count("\"roundness\": null"), 8);
    EXPECT_EQ(result.errors.count("have no rising z"), 2) << result.errors.toStdString();
}

TEST_F(TrainDefects, TellsThemInAllForms) {
    simulatePass({"--rate", "2000", "--build-up", "2:1:1", "--flat", "3:2:60"});
    const ToolResult table = run(with({"--csv", "defects.csv", "--report", "defects.html", "--wheel", "2"}));
    EXPECT_TRUE(table.output.contains("\n1 defective wheels.\n")) << table.output.toStdString();
    const QList<QByteArray> lines = read("defects.csv").split('\n');
    ASSERT_EQ(lines.size(), 6);
    EXPECT_TRUE(lines[0].contains(",tread_1,judged_profiles_2,") && lines[0].endsWith(",roundness_2"));
    EXPECT_EQ(lines[2].count("defective"), 1);
    for (const QByteArray& line : lines.first(5)) {
        EXPECT_EQ(line.count(','), lines[0].count(','));
    }
    const QByteArray page = read("defects.html");
    EXPECT_EQ(page.count("<svg"), 10) << "those of the distances, the deviations and the radii of both sides";
    EXPECT_TRUE(page.contains("out of round</td>"));
    EXPECT_FALSE(page.contains("nan"));
}

TEST_F(TrainDefects, RefusesSettingsThatDoNotFit) {
    simulatePass({"--points", "200"});
    QByteArray settings = read("pass/defects.ini");
    const std::tuple<QByteArray, QByteArray, const char*> cases[] = {
        {"lowLevel_k", "x", "lack the key 'SENSOR1/lowLevel_k'"},
        {"SN=101", "SN=7", "name no sensor with the serial number 101"},
        {"pointsHigher=5", "pointsHigher=few", "hold no whole number in 'pointsHigher'"},
        {"maxDeviation=0.2", "maxDeviation=inf", "hold no number in 'maxDeviation'"},
    };
    for (const auto& [from, to, error] : cases) {
        QByteArray changed = settings;
        write("pass/defects.ini", changed.replace(from, to));
        expectRefusal({with({}), 3, error});
    }
    for (const char* const range : {"1", "2:1", "a:b", "1:2:3", "nan:3"}) {
        expectRefusal({with({"--defect-range", range}), 2, "--defect-range needs MIN:MAX"});
    }
}

} // namespace
