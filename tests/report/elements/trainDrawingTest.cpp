// The picture of a train.
#include "report/elements/trainDrawing.h"

#include <QtCore/QRegularExpression>

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace kxreport;

/// A train of cars with four axles each, 17 m long, with the name "NUMBER · Mc · 4711".
DrawnTrain trainOf(int cars) {
    DrawnTrain train;
    train.sides = {"right", "left"};
    for (int car = 0; car < cars; ++car) {
        train.vehicles.push_back(QString("%1 \u00b7 Mc \u00b7 4711").arg(car + 1));
        int number = 0;
        for (const double place : {0.0, 2100.0, 12600.0, 14700.0}) {
            DrawnAxle axle;
            axle.place = 48250.0 + 17300.0 * car + place;
            axle.label = QString::number(++number);
            axle.vehicle = car;
            axle.bogie = number <= 2 ? 1 : 2;
            axle.wheels = {DrawnWheel{Mark::Ok, QString("w%1-%2-1").arg(car).arg(number), "a < b"},
                           DrawnWheel{number == 3 ? Mark::Alarm : Mark::Warning, {}, {}}};
            train.axles.push_back(axle);
        }
    }
    return train;
}

/// x of all matches of an expression with one number.
std::vector<double> numbersIn(const QString& svg, const char* expression) {
    std::vector<double> numbers;
    for (const QRegularExpressionMatch& match : QRegularExpression(expression).globalMatch(svg)) {
        numbers.push_back(match.captured(1).toDouble());
    }
    return numbers;
}

TEST(TrainDrawing, KeepsDistancesAndRoomForLabels) {
    for (const int cars : {1, 2, 5, 12, 20}) {
        const DrawnTrain train = trainOf(cars);
        const QString svg = trainDrawing(train, "train");
        const std::vector<double> x = numbersIn(svg, "<path d=\"M([\\d.]+) 44V132\"");
        ASSERT_EQ(x.size(), train.axles.size());
        const double perMm = (x.back() - x.front()) / (train.axles.back().place - train.axles.front().place);
        for (std::size_t i = 1; i < x.size(); ++i) {
            EXPECT_NEAR(x[i] - x[0], perMm * (train.axles[i].place - train.axles[0].place), 0.11)
                << "coordinates in 0.1";
            EXPECT_GE(x[i] - x[i - 1], 23.9) << "marks of 17 pixels and labels beside each other";
        }
        EXPECT_EQ(svg.count("4711</text>"), cars) << "names have room between the axles";
        EXPECT_GT(numbersIn(svg, "viewBox=\"0 0 ([\\d.]+)").front(), x.back() + 28.0);
        EXPECT_TRUE(svg.contains("href=\"#w0-2-1\"><title>a &lt; b</title>"));
    }
}

TEST(TrainDrawing, VerdictsDifferInShapeAndWord) {
    std::set<QString> shapes, words;
    const Mark marks[] = {Mark::Ok, Mark::Warning, Mark::Alarm, Mark::NotMeasured, Mark::None};
    for (const Mark mark : marks) {
        shapes.insert(markShape(mark, 0, 0).remove(QRegularExpression("(fill|stroke)=\"#[^\"]*\"")));
        words.insert(wordOf(mark));
        EXPECT_TRUE(trainDrawing(trainOf(1), {}).contains(">" + wordOf(mark) + "</text>")) << "in the legend";
    }
    EXPECT_EQ(shapes.size(), std::size(marks));
    EXPECT_EQ(words.size(), std::size(marks));
}

TEST(TrainDrawing, HoldsAnyAxles) {
    EXPECT_TRUE(trainDrawing({}, {}).isEmpty());
    DrawnTrain train;
    train.axles = {{0.0, true, "1", -1, 0, {}}, {0.0, false, "2", -1, 0, {}}, {1e9, true, "3", -1, 0, {}}};
    const QString svg = trainDrawing(train, {});
    EXPECT_LT(numbersIn(svg, "viewBox=\"0 0 ([\\d.]+)").front(), 31000.0);
    EXPECT_EQ(svg.count("stroke-dasharray=\"3 3\""), 1) << "the axle that was not seen";
    EXPECT_FALSE(svg.contains("nan"));
}

} // namespace
