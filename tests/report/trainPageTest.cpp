// The page of a pass beside its JSON.
#include "report/jsonOf.h"
#include "report/pageReader.h"
#include "report/train/passReport.h"

#include <KxInspect/PassResult.h>

#include <gtest/gtest.h>

namespace {

using namespace KxInspect;
using namespace page_test;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

PassWheel wheelOf(int number, int profiles, int firstRecord, int chosen, int points) {
    PassWheel wheel;
    wheel.number = number;
    wheel.profiles = profiles;
    wheel.firstRecord = firstRecord;
    wheel.chosenProfile = chosen;
    wheel.points = points;
    wheel.defects = TreadDefects();
    wheel.defectsReason = "r" + std::to_string(profiles);
    wheel.roundnessReason = "q";
    return wheel;
}

void judge(PassWheel& wheel, const TreadDefects& defects, const std::optional<Roundness>& roundness) {
    wheel.defects = defects;
    wheel.defectsReason.clear();
    wheel.roundness = roundness;
    wheel.roundnessReason = roundness ? "" : "q";
}

/// What is drawn of a wheel, all of it moved and tilted by `t`.
WheelPicture pictureOf(std::size_t side, float t) {
    WheelPicture picture;
    picture.side = side;
    picture.overlaid = side == 0 ? 10 : 5;
    for (int i = 0; i < 8; ++i) {
        const float x = 10.0f * static_cast<float>(i);
        picture.profiles.push_back({x, 40 + t + 0.3f * x});
        picture.chosen.push_back({x + 2, 45 + t + 0.2f * x});
        if (i < 4) {
            picture.half.push_back({x + 2, 45 + t + 0.2f * x});
            picture.heights.push_back(0.5 + 0.25 * i + static_cast<double>(t));
        }
        picture.faces.push_back({x - 30, 0.75f + t + 0.004f * x});
        picture.deviations.push_back({x + 3, 0.05f * static_cast<float>(i) * (i % 2 == 0 ? 1.0f : -1.0f) + t / 100});
    }
    picture.tread = {2, 3, 50.0f, {t, 0.125f, 0.25f, -0.5f, std::nanf(""), t}};
    picture.fit = Line{0.2f + t / 100, 44.5f + t};
    picture.offset = 1.25f + t;
    picture.low = Line{-0.1f, 20 + t};
    picture.hasPlaces = true;
    picture.faceLine = Line{0.004f, 0.875f + t};
    return picture;
}

/// Four pairs of three and four wheels: in tolerance, out of it, one side only, no line. Nothing is alike on both sides.
PassResult result() {
    PassResult r;
    r.mode = 3;
    r.settings = "s.ini";
    r.sides.resize(2);
    PassSide &left = r.sides[0], &right = r.sides[1];
    left.file = "in/left_101.bin";
    left.name = "left_101.bin";
    std::tie(left.serial, left.sensor, left.bytes, left.cloudSections) = std::tuple(101, 3, 12345, 200);
    std::tie(left.level, left.reference) = std::tuple(Line{0.1f, 120.0f}, Line{0.02f, 60.0f});
    right.file = "right_102.bin";
    right.name = "right_102.bin";
    std::tie(right.serial, right.sensor, right.bytes, right.profileRecords) = std::tuple(102, 7, 23456, 210);
    std::tie(right.level, right.reference) = std::tuple(Line{-0.2f, 130.0f}, Line{-0.05f, 70.0f});
    left.wheels = {wheelOf(1, 10, 21, 4, 33), wheelOf(2, 12, 51, 5, 34), wheelOf(3, 14, 111, 0, 0)};
    right.wheels = {wheelOf(1, 11, 24, 6, 43), wheelOf(2, 13, 53, 7, 44), wheelOf(3, 15, 81, 8, 45),
                    wheelOf(4, 16, 195, 9, 46)};
    Roundness out = {{{1, -20, 0.05f}, {2, -5, -0.0625f}, {4, 30, 0.5f}}, 488.5f, 0.03f, {4}, 0.375f, true};
    Roundness round = {{{2, -15, 0.02f}, {3, 10, -0.03f}}, 479.25f, 0.04f, {}, 0.0625f, false};
    std::tie(out.largestInterval, out.limit) = std::tuple(KxInspect::Interval{0.25f, 0.5f}, 0.125f);
    std::tie(round.largestInterval, round.limit) = std::tuple(KxInspect::Interval{0.0f, 0.125f}, 0.1875f);
    out.seen = {{-21.5f, -4.25f}, {3.0f, 20.0f}};
    judge(left.wheels[0], {9, {2, 3, 4}, 17, 3, 0.625f, true, 0.1875f}, out);
    judge(left.wheels[1], {8, {}, 1, 2, 0.125f, false, 0.1875f}, {});
    judge(right.wheels[0], {7, {}, 2, 5, 0.25f, false, 0.1875f}, round);
    judge(right.wheels[1], {6, {6, 8}, 19, 8, 0.75f, true, 0.1875f}, {});
    r.baseDistance = 1361.5f;
    r.nominal = 1359.75f;
    r.tolerance = 1.5f;
    r.defectLimits = DefectLimits{0.1875f, 5, 1, 0.125f, 4, 1.5f, 99.0f};
    r.pairs.resize(4);
    r.pairs[0] = {{0, 0}, 1360.25f, 0.5f, true, {}};
    r.pairs[1] = {{1, 1}, 1357.5f, -2.25f, false, {}};
    r.pairs[2] = {{std::nullopt, 2}, kNaN, kNaN, {}, "one side"};
    r.pairs[3] = {{2, 3}, kNaN, kNaN, {}, "no line"};
    r.warnings = {"w1"};
    r.pictures = {{1, {pictureOf(0, 0.0f), pictureOf(1, 3.0f)}}, {3, {pictureOf(1, 5.0f)}}};
    return r;
}

/// The page without the tables of its verdicts, its sheet and the quality of its data.
ReadPage readDetails(const PassResult& pass) {
    ReadPage page = readPage(kxreport::passReport(pass));
    page.tables.erase(page.tables.begin(), page.tables.begin() + 2);
    page.tables.erase(page.tables.begin() + 1);
    return page;
}

TEST(PassPage, ShowsTheFactsOfTheJson) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readDetails(result());
    EXPECT_EQ(page.subtitle, "left_101.bin and right_102.bin, settings s.ini, mode 3");
    const std::map<QString, ReadCell> facts = {
        {"Wheels found, sides 1 / 2", {"3 / 4", "bad"}},
        {"Smallest distance", {text(json["pairs"][1]["distance"], 2) + " mm", ""}},
        {"Largest distance", {text(json["pairs"][0]["distance"], 2) + " mm", ""}},
        {"Distances out of tolerance (2 of 4 judged)", {"1", "bad"}},
        {"Defective treads (4 of 8 judged)", {"2", "bad"}},
        {"Wheels out of round (2 of 8 judged)", {"1", "bad"}}};
    EXPECT_EQ(page.facts, facts);
    EXPECT_EQ(page.warnings.at(0), "Warning: w1");
    for (int side = 0; side < 2; ++side) {
        const QJsonValue recording = json["recordings"][side];
        QStringList row = {recording["file"].toString(), "SENSOR" + QString::number(recording["sensor"].toInt())};
        for (const char* const key : {"serial", "bytes", "cloudSections", "profileRecords", "wheels"}) {
            row += QString::number(recording[QLatin1String(key)].toInt());
        }
        EXPECT_EQ(page.tables.at(0).row(size_t(side)), row.join('|'));
    }
    const std::pair<const char*, int> judged[] = {{"distances", 2}, {"treads", 4}, {"roundness", 2}};
    for (const auto& [key, count] : judged) {
        EXPECT_EQ(json["judged"][QLatin1String(key)]["judged"].toInt(), count);
    }
    // All were judged and none is bad: only then a fact is green.
    PassResult good = result();
    good.pairs.resize(1);
    good.sides[0].wheels.resize(1);
    good.sides[1].wheels.resize(1);
    judge(good.sides[0].wheels[0], {9, {}, 1, 3, 0.0625f, false}, good.sides[1].wheels[0].roundness);
    good.pictures.clear();
    const ReadPage goodPage = readPage(kxreport::passReport(good));
    for (const char* const fact : {"Distances out of tolerance (1 of 1 judged)", "Defective treads (2 of 2 judged)",
                                   "Wheels out of round (2 of 2 judged)"}) {
        EXPECT_EQ(goodPage.facts.at(fact), (ReadCell{"0", "good"})) << fact;
    }
    good.sides[0].wheels[0].roundness.reset();
    EXPECT_EQ(readPage(kxreport::passReport(good)).facts.at("Wheels out of round (1 of 2 judged)"),
              (ReadCell{"0", ""}));
}

TEST(PassPage, TablesHoldTheValuesAndTonesOfTheJson) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readDetails(result());
    ASSERT_EQ(page.tables.size(), 5u) << "the last is that of the files";
    const char* const tones[] = {"good", "bad", "faint", "faint"};
    const char* const verdicts[] = {"ok", "out", "not judged", "not judged"};
    for (int i = 0; i < 4; ++i) {
        const QJsonValue pair = json["pairs"][i];
        const auto row = static_cast<size_t>(i);
        EXPECT_EQ(page.tables[1].at(row, "distance (back-to-back), mm"),
                  (ReadCell{text(pair["distance"], 3), tones[i]}));
        EXPECT_EQ(page.tables[1].at(row, "deviation from the nominal distance, mm"),
                  (ReadCell{text(pair["deviation"], 3), ""}));
        EXPECT_EQ(page.tables[1].at(row, "verdict"), (ReadCell{verdicts[i], tones[i]}));
        for (int side = 0; side < 2; ++side) {
            const QJsonValue wheel = pair["sides"][side];
            const QString prefix = "side " + QString::number(side + 1) + ": ";
            const auto number = [](const QJsonValue& v) {
                return v.isDouble() ? QString::number(v.toInt()) : QString("-");
            };
            const std::pair<const char*, const char*> counts[] = {{"wheel", "wheel"},
                                                                  {"profiles", "profiles"},
                                                                  {"first record", "firstRecord"},
                                                                  {"last record", "lastRecord"},
                                                                  {"chosen profile", "chosenProfile"},
                                                                  {"points below the level line", "points"}};
            for (const auto& [title, key] : counts) {
                EXPECT_EQ(page.tables[1].at(row, prefix + title).text, number(wheel[QLatin1String(key)]));
            }
            const QJsonValue defects = wheel["defects"], roundness = wheel["roundness"];
            const ReadTable &treads = page.tables[2], &shapes = page.tables[3];
            EXPECT_EQ(treads.at(row, prefix + "profiles judged").text, number(defects["judgedProfiles"]));
            EXPECT_EQ(treads.at(row, prefix + "points deviating").text, number(defects["deviatingPoints"]));
            EXPECT_EQ(
                treads.at(row, prefix + "largest deviation, mm").text,
                text(QJsonValue(defects["largestDeviation"]).isDouble() ? defects["largestDeviation"] : QJsonValue(),
                     3));
            const QJsonValue bad = defects["isDefective"], off = roundness["isOutOfRound"];
            const auto verdict = [&](const QJsonValue& isBad, const char* badWord, const char* goodWord) {
                return !isBad.isBool()  ? ReadCell{"not judged", "faint"}
                       : isBad.toBool() ? ReadCell{badWord, "bad"}
                                        : ReadCell{goodWord, "good"};
            };
            EXPECT_EQ(treads.at(row, prefix + "tread"), verdict(bad, "defective", "sound"));
            EXPECT_EQ(shapes.at(row, prefix + "shape"), verdict(off, "out of round", "round"));
            EXPECT_EQ(shapes.at(row, prefix + "allowed out of round, mm").text,
                      text(roundness["limit"].isDouble() ? roundness["limit"] : QJsonValue(), 3));
            EXPECT_EQ(shapes.at(row, prefix + "arc seen, degrees").text,
                      row == 0 && side == 0 ? "from -22 to -4, from 3 to 20" : "-");
            EXPECT_EQ(shapes.at(row, prefix + "out of round by, mm").text,
                      text(roundness["largestDeviation"].isDouble() ? roundness["largestDeviation"] : QJsonValue(), 3));
        }
    }
    EXPECT_EQ(page.tables[2].at(0, "side 1: numbers of defective profiles").text + " " +
                  page.tables[2].at(1, "side 2: numbers of defective profiles").text,
              "2-4 6 8");
    EXPECT_EQ(page.tables[2].at(0, "side 1: profiles defective").text, "3");
    EXPECT_EQ(page.tables[3].at(0, "side 1: profiles compared").text +
                  page.tables[3].at(0, "side 2: profiles compared").text,
              "32");
    EXPECT_EQ(page.tables[3].at(0, "side 1: numbers of profiles off the circle").text, "4");
}

TEST(PassPage, DrawsWheelsAndDistances) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readDetails(result());
    const ReadPlot wheels = page.plot("Wheels along the pass"), distances = page.plot("Distance of each wheel pair");
    const QString legends[] = {"wheel of left_101.bin (SENSOR3)", "wheel of right_102.bin (SENSOR7)"};
    double heights[2] = {};
    for (int i = 0; i < 4; ++i) {
        const QJsonValue pair = json["pairs"][i];
        for (int side = 0; side < 2; ++side) {
            const QJsonValue wheel = pair["sides"][side];
            if (wheel.isNull()) {
                continue;
            }
            const int first = wheel["firstRecord"].toInt(), last = wheel["lastRecord"].toInt();
            const ReadItem box = wheels.withTooltip(
                QString("wheel %1: records %2 to %3").arg(wheel["wheel"].toInt()).arg(first).arg(last));
            wheels.expectNear({box.points[0].x(), 0}, {first - 0.5, 0});
            wheels.expectNear({box.points[1].x(), 0}, {last + 0.5, 0});
            EXPECT_TRUE(wheels.left < first - 0.5 && last + 0.5 < wheels.right) << wheels.right;
            EXPECT_EQ(box.colour, wheels.legend.at(i == 2 ? "wheel without partner" : legends[side]).second);
            heights[side] = box.points[0].y(); // pixels: the rows have no ticks
            if (side == 0) {
                wheels.expectNear({wheels.placeOf(QString::number(wheel["wheel"].toInt())).x(), 0},
                                  {(first + last) / 2.0, 0});
            }
        }
        const bool isOut = !pair["inTolerance"].toBool();
        const ReadItem mark =
            distances.withTooltip(QString("pair %1: %2 mm").arg(i + 1).arg(text(pair["distance"], 3)));
        EXPECT_EQ(mark.kind, pair["distance"].isNull() ? "none" : "mark");
        if (mark.kind == "mark") {
            distances.expectNear(mark.points[0], {i + 1.0, pair["distance"].toDouble()});
            EXPECT_EQ(mark.colour, distances.legend.at(isOut ? "out of tolerance" : "in tolerance").second);
        }
    }
    EXPECT_LT(heights[0], heights[1]) << "side 1 is above";
    EXPECT_LT(wheels.placeOf("side 1").y(), wheels.placeOf("side 2").y());
    const double nominal = json["nominal"].toDouble(), tolerance = json["tolerance"].toDouble();
    const ReadItem band = *distances.shownAs("tolerance").at(0);
    distances.expectNear({0, band.points[0].y()}, {0, nominal - tolerance});
    distances.expectNear({0, band.points[1].y()}, {0, nominal + tolerance});
    distances.expectNear({0, distances.shownAs("nominal").at(0)->points[0].y()}, {0, nominal});
    EXPECT_TRUE(distances.caption.contains("1359.75 mm, 1.5 mm to both sides"));
}

/// Expects that a line runs along y = slope * x + intercept.
void expectLine(const ReadPlot& plot, const QString& legend, const QJsonValue& line) {
    SCOPED_TRACE(legend.toStdString());
    ASSERT_EQ(plot.shownAs(legend).size(), 1u);
    for (const QPointF& p : plot.shownAs(legend)[0]->points) {
        plot.expectNear(p, {p.x(), line["k"].toDouble() * p.x() + line["b"].toDouble()});
    }
}

TEST(PassPage, DrawsTheProfilesOfEachSide) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readDetails(result());
    const QString captions[] = {"Side 1, SENSOR3, wheel 1: all 10 profiles; chosen is profile 4 (record 24), with 33 "
                                "points below the level line. "
                                "What is far behind the wheel is outside the picture.",
                                "Side 2, SENSOR7, wheel 1: 5 of 11 profiles, evenly spread; chosen is profile 6 "
                                "(record 29), with 43 points below "
                                "the level line. What is far behind the wheel is outside the picture."};
    for (int side = 0; side < 2; ++side) {
        const QJsonValue drawn = json["pictures"][0]["wheels"][side], recording = json["recordings"][side];
        const QString number = QString::number(side + 1);
        const ReadPlot profile = page.plot("Profiles of the wheel on side " + number);
        profile.expectPoints("all profiles", points(drawn["profiles"]));
        profile.expectPoints("chosen", points(drawn["chosen"]));
        profile.expectPoints("fitted half", points(drawn["half"]));
        expectLine(profile, "level", recording["level"]);
        expectLine(profile, "reference", recording["reference"]);
        expectLine(profile, "low", drawn["low"]);
        expectLine(profile, "fit", drawn["fit"]);
        EXPECT_LT(profile.unitsPerPixel.y(), 0.0);
        EXPECT_EQ(profile.caption, captions[side]);

        const ReadPlot offset = page.plot("Height above the reference line on side " + number);
        std::vector<QPointF> heights;
        heights.reserve(4);
        for (int i = 0; i < 4; ++i) {
            heights.push_back({drawn["half"]["x"][i].toDouble(), drawn["heights"][i].toDouble()});
        }
        offset.expectPoints("fitted half", heights);
        const QJsonValue fit = drawn["fit"], reference = recording["reference"];
        expectLine(offset, "fit",
                   QJsonObject{{"k", fit["k"].toDouble() - reference["k"].toDouble()},
                               {"b", fit["b"].toDouble() - reference["b"].toDouble()}});
        expectLine(offset, "reference", QJsonObject{{"k", 0.0}, {"b", 0.0}});
        EXPECT_TRUE(
            offset.caption.startsWith("Side " + number + ": the chosen profile stands " + text(drawn["offset"], 3)));
        EXPECT_TRUE(offset.caption.contains("intercept " + text(fit["b"], 3) + " of the fit, " +
                                            text(reference["b"], 3) + " of the reference"));

        const ReadPlot face = page.plot("Back face along the pass on side " + number);
        face.expectPoints("a profile each", points(drawn["faces"]));
        expectLine(face, "line", drawn["faceLine"]);
        EXPECT_TRUE(face.caption.contains("4.00 \u00b5m each mm")) << face.caption.toStdString();

        const ReadPlot treads = page.plot("Deviation of the tread on side " + number);
        std::vector<QPointF> inside, outside;
        const double allowed = json["pairs"][0]["sides"][side]["defects"]["limit"].toDouble();
        for (const QPointF& p : points(drawn["deviations"])) {
            (std::abs(p.y()) > allowed ? outside : inside).push_back(p);
        }
        treads.expectPoints("point", inside);
        treads.expectPoints("deviating point", outside);
        treads.expectNear({0, treads.shownAs("allowed").at(0)->points[1].y()}, {0, allowed});
        const QJsonValue wheel = json["pairs"][0]["sides"][side], defects = wheel["defects"];
        const int worst = defects["worstProfile"].toInt();
        EXPECT_EQ(treads.caption,
                  QString("Side %1, wheel 1, profile %2 (record %3): %4 of 8 points deviate, the largest by "
                          "%5 mm; 0.188 mm count.")
                      .arg(number)
                      .arg(worst)
                      .arg(wheel["firstRecord"].toInt() + worst - 1)
                      .arg(outside.size())
                      .arg(text(defects["largestDeviation"], 3)));

        const ReadPlot radii = page.plot("Radius of the tread on side " + number);
        const QJsonValue roundness = wheel["roundness"];
        for (const QJsonValue radius : roundness["radii"].toArray()) {
            const ReadItem mark = radii.withTooltip(
                QString("profile %1: %2 mm").arg(radius["profile"].toInt()).arg(text(radius["deviation"], 3)));
            radii.expectNear(mark.points[0], {radius["fromAxle"].toDouble(), radius["deviation"].toDouble()});
            const bool isOff = roundness["profilesOff"].toArray().contains(radius["profile"]);
            EXPECT_EQ(mark.colour, radii.legend.at(isOff ? "off the circle" : "profile").second);
        }
        radii.expectNear({0, radii.shownAs("allowed").at(0)->points[0].y()}, {0, -roundness["limit"].toDouble()});
        EXPECT_TRUE(radii.caption.contains(text(roundness["flangeRadius"], 1) +
                                           " mm, single tips scatter about it by " + text(roundness["scatter"], 3)));
    }
    EXPECT_TRUE(page.paragraphs.contains("Base distance 1361.500 mm, distance of this pair 1360.250 mm."));
    EXPECT_TRUE(page.paragraphs.contains("Only one sensor saw this wheel; it has no distance."));
    EXPECT_TRUE(page.headings.contains("Profiles of wheel pair 3"));
}

TEST(PassPage, BeginsWithVerdictTrainAndSheet) {
    PassResult pass = result();
    pass.train.vehicles = {{1, {2}, 2, "Mc", "4711", {}, {}}, {2, {1, 1}, 1, {}, {}, {}, {}}};
    for (int i = 0; i < 3; ++i) {
        pass.pairs[std::size_t(i)].axle = {i / 2 + 1, i < 2 ? std::optional(1) : std::nullopt, i % 2 + 1, {}};
        pass.pairs[std::size_t(i)].place = 2000.0 * i;
    }
    pass.pairs[1].interval = {1357.0f, 1358.0f};
    Assessment low;
    low.measure = "backToBack";
    low.pair = 2;
    low.value = 1357.5;
    low.interval = pass.pairs[1].interval;
    low.bounds.alarmLow = 1357.75;
    low.verdict = LimitVerdict::Alarm;
    low.isDoubtful = true;
    Assessment missing = low;
    missing.pair = 3;
    missing.value.reset();
    missing.verdict = LimitVerdict::NotMeasured;
    missing.isDoubtful.reset();
    missing.reason = "one side";
    Assessment lacking = missing;
    lacking.measure = "flangeHeight";
    lacking.pair = low.pair;
    lacking.side = 1;
    pass.assessment = PassAssessment{{}, {low, missing, lacking}};
    const QString html = kxreport::passReport(pass);
    const ReadPage page = readPage(html);
    EXPECT_TRUE(
        page.paragraphs.value(1).startsWith("Verdict of the pass: \u25a0 alarm. Of 10 wheels: 2 with an alarm, 0 "
                                            "with a warning, 2 not wholly measured"))
        << page.paragraphs.value(1).toStdString();
    EXPECT_TRUE(
        page.paragraphs.value(1).contains("Of those with an alarm or a warning one is not wholly measured, too."));
    EXPECT_EQ(page.headings.mid(0, 3),
              QStringList({"Verdict on each wheel, the worst first", "The train as it passed", "Sheet of the wheels"}));
    EXPECT_EQ(
        page.tables[0].row(0),
        "vehicle 1, axle 2, side 1|\u25a0 alarm (doubtful)|back-to-back: 1357.50 \u00b1 0.500 mm, alarm, doubtful\n"
        "not measured: flange height (Sh)\n"
        "back-to-back out of tolerance: 1357.500 \u00b1 0.500 mm, -2.250 mm off the nominal distance");
    // Behind what limits say come the findings without limits, and at last the wheels of which nothing is said.
    QStringList verdicts;
    for (const std::vector<ReadCell>& row : page.tables[0].rows) {
        verdicts += row.at(1).text;
    }
    EXPECT_TRUE(verdicts.contains("\u25c6 finding"));
    EXPECT_GT(verdicts.indexOf("\u25c6 finding"), verdicts.lastIndexOf("\u25a0 alarm (doubtful)"));
    EXPECT_LT(verdicts.lastIndexOf("\u25c6 finding"), verdicts.indexOf("\u25cb not measured"));
    const ReadTable& sheet = page.tables[1];
    ASSERT_EQ(sheet.rows.size(), 10u) << "four pairs, and the axle that nobody saw";
    EXPECT_EQ(sheet.at(2, "wheel").text, "vehicle 1\naxle 2\nside 1");
    EXPECT_EQ(sheet.at(2, "back-to-back, mm"),
              (ReadCell{"1357.50 \u00b1 0.500\n\u25a0 alarm (doubtful)\nalarm unless \u2265 1357.75", "bad"}));
    EXPECT_EQ(sheet.at(2, "mark").text + sheet.at(2, "number").text, "Mc4711");
    EXPECT_EQ(sheet.at(4, "verdict"), (ReadCell{"\u25cb not measured", "faint"}));
    EXPECT_EQ(sheet.at(9, "profiles").text, "0\nthe axle has no number in the pass");
    EXPECT_FALSE(sheet.headers.contains("diameter, mm")) << "no value and no limits";
    EXPECT_TRUE(html.contains("href=\"#wheel-2-1\"") && html.contains("<tr id=\"wheel-2-1\">"));
    EXPECT_FALSE(html.contains("href=\"#wheel-4-1\"")) << "no place";
}

} // namespace
