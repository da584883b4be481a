// kxmath train --defects on simulated trains: the right wheels are accused, and no other.
#include "kxmath/toolRun.h"

#include <optional>

namespace {

using namespace tool_test;

class TrainDefects : public ToolTest {
protected:
    TrainDefects() : ToolTest("train") {}
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
        const QJsonValue truth = simulate("pass", QStringList{"--cars", "1", "--rate", "1000"} + pass);
        const QJsonValue result = json({"pass/train_101.bin", "pass/train_102.bin", "--settings", "pass/settings.ini",
                                        "--defects", "pass/defects.ini"});
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

} // namespace
