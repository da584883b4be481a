// Chains of operations on a profile: each step as the member function that it names, what ends a chain, what is found.
#include <KxInspect/Error.h>
#include <KxInspect/KxMathTypes.h>
#include <KxInspect/ProfileChain.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTextStream>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>

namespace {

using namespace KxInspect;
using KxMath::KxProfile;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// A slope with a ridge, three spikes and unequal distances; 173 points.
Profile slope() {
    Profile profile;
    profile.z = 4.5f;
    for (int i = 0; i < 173; ++i) {
        const float x = -9.0f + 0.11f * float(i) + 0.01f * float(i % 3);
        const float y = 7.0f + 0.07f * x + (x > 2.0f && x < 3.5f ? 0.8f : 0.0f) + 0.002f * float((i * 37) % 11);
        profile.points.push_back({x, i == 40 || i == 41 || i == 150 ? y + 2.5f : y});
    }
    return profile;
}

std::string failureOf(const Profile& profile, const std::string& chain) {
    ProfileOptions options;
    options.steps = profileSteps(chain);
    return examineProfile(profile, options).failure;
}

TEST(ProfileChainTest, EachStepIsTheMemberFunctionOfItsName) {
    const std::pair<const char*, std::function<void(KxProfile&)>> cases[] = {
        {"shift:1.5,-2", [](auto& p) { p.shift(1.5f, -2.0f, 0.0f); }},
        {"resize:-1,0.5", [](auto& p) { p.resize(-1.0f, 0.5f, 1.0f); }},
        {"sort", [](auto& p) { p.sort(KxMath::KxSortAscending, KxMath::KxSortNone); }},
        {"sort:2", [](auto& p) { p.sort(KxMath::KxSortDescending, KxMath::KxSortNone); }},
        {"trim:-5,nan,4,7.25", [](auto& p) { p.trim(-5.0f, kNaN, 4.0f, 7.25f); }},
        {"trimLower:7", [](auto& p) { p.trimLower(7.0f); }},
        {"trimUpper:7.5", [](auto& p) { p.trimUpper(7.5f); }},
        {"trimY:6.9,7.75", [](auto& p) { p.trimY(6.9f, 7.75f); }},
        {"trimX:-3,nan", [](auto& p) { p.trimX(-3.0f, kNaN); }},
        {"toPolar", [](auto& p) { p.toPolar(); }},
        {"toPolar rotatePolar:12 toEvklid",
         [](auto& p) {
             p.toPolar();
             p.rotatePolar(12.0f);
             p.toEvklid();
         }},
        {"rotateEvklid:-30", [](auto& p) { p.rotateEvklid(-30.0f); }},
        {"rotateFixed:5,1,2",
         [](auto& p) {
             KxMath::KxPointXY centre(1.0f, 2.0f);
             p.rotateFixed(5.0f, centre);
         }},
        {"removeDuplicates", [](auto& p) { p.removeDuplicates(); }},
        {"kihFilter20", [](auto& p) { p.kihFilter20(kNaN); }},
        {"kihFilter20:0.115", [](auto& p) { p.kihFilter20(0.115f); }},
        {"wndFilter:7", [](auto& p) { p.wndFilter(7); }},
        {"medFilt:9", [](auto& p) { p.medFilt(p, 9, 0); }},
        {"diffFilt:6", [](auto& p) { p.diffFilt(p, 6); }},
        {"splashFilter:1,0.6", [](auto& p) { p.splashFilter(p, 1.0f, 0.6f); }},
        {"splashFilterPolar:40,1,0.6", [](auto& p) { p.splashFilterPolar(p, 40.0f, 1.0f, 0.6f); }},
        {"wndFilterPolar:0.5,5,3", [](auto& p) { p.wndFilterPolar(p, 0.5f, 5, 3); }},
        {"removeNoise:4,1,0.5", [](auto& p) { p.removeNoise(4, 1, 0.5f, 0.0f); }},
        {"removeHighLevel:0.1,7.4", [](auto& p) { p.removeHighLevel(KxMath::KxLine(0.1f, 7.4f)); }},
        {"removeLowLevel:0.1,7.1", [](auto& p) { p.removeLowLevel(KxMath::KxLine(0.1f, 7.1f)); }},
        {"trimUpper:7.3 removeLineParts:6,0.995,1.2,4",
         [](auto& p) {
             p.trimUpper(7.3f);
             p.removeLineParts(6, 0.995f, 1.2f, 4);
         }},
        {"polynomFit:4", [](auto& p) { p.polynomFit(4); }},
        {"derivative", [](auto& p) { p = p.derivative(); }},
        {"interpolate:0.25", [](auto& p) { p.interpolate(0.25f, kNaN, kNaN, KxMath::Akima); }},
        {"interpolate:0.3,-2,5.5", [](auto& p) { p.interpolate(0.3f, -2.0f, 5.5f, KxMath::Akima); }},
        {"sort calcLineSegment:0,0.3,2,nan,9",
         [](auto& p) {
             KxProfile run;
             p.sort(KxMath::KxSortAscending, KxMath::KxSortNone);
             p.calcLineSegment(0.0f, 0.3f, 2, run, kNaN, 9.0f, kNaN, kNaN);
             p = run;
         }},
        {"addLineSegments:12", [](auto& p) { p.addLineSegments(p, 12, 0); }},
        {"addLineSegmentsWithMMWindow:1.5", [](auto& p) { p.addLineSegmentsWithMMWindow(p, 1.5f); }},
        {"addParallelLine:10,0.2", [](auto& p) { p.addParallelLine(p, 10, 0, 0.2f); }}};
    QSet<QString> called;
    for (const auto& [chain, call] : cases) {
        KxProfile expected = toKxProfile(slope());
        call(expected);
        const Profile result = applied(slope(), profileSteps(chain));
        ASSERT_EQ(qsizetype(result.points.size()), expected.points.size()) << chain;
        EXPECT_EQ(std::memcmp(result.points.data(), expected.points.constData(), result.points.size() * sizeof(Point)),
                  0)
            << chain;
        EXPECT_EQ(result.z, 4.5f);
        for (const ProfileStep& step : profileSteps(chain)) {
            called += QString::fromStdString(step.operation);
            EXPECT_EQ(profileSteps(textOf(step)).front(), step) << textOf(step);
        }
    }
    EXPECT_EQ(called.size(), qsizetype(profileOperations().size()));
}

/// The names of the public member functions in a part of a header.
QSet<QString> membersIn(const char* header, const QString& from) {
    QFile file(QStringLiteral(KXMATH_HEADERS "/") + header);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QString text = QString::fromUtf8(file.readAll());
    text = text.mid(text.indexOf(from) + from.size());
    text = text.left(text.indexOf(QRegularExpression("\nprotected:|\n\\};")));
    text.remove(QRegularExpression("//[^\n]*"));
    QSet<QString> names;
    const QRegularExpression member("(\\w+)[^\\w(]*\\([^)]*\\)\\s*;");
    for (auto found = member.globalMatch(text); found.hasNext();) {
        names += found.next().captured(1);
    }
    return names;
}

TEST(ProfileChainTest, EveryMemberIsAnOperationOrListedWithAReason) {
    const QSet<QString> members = membersIn("KxProfile.h", "class KXMATH_EXPORT KxProfile") |
                                  membersIn("KxPointCloud.h", "class KXMATH_EXPORT KxPointCloud<KxPointXY> {");
    EXPECT_GT(members.size(), 60);
    QSet<QString> known;
    for (const ProfileOperation& operation : profileOperations()) {
        known += QString::fromStdString(operation.name);
    }
    QFile list(QStringLiteral(KXMATH_NOT_OPERATIONS));
    ASSERT_TRUE(list.open(QIODevice::ReadOnly));
    QTextStream lines(&list);
    for (QString line; lines.readLineInto(&line);) {
        const QString name = line.section(" | ", 0, 0);
        EXPECT_FALSE(known.contains(name)) << name.toStdString();
        if (!line.startsWith('#')) {
            known += name;
        }
    }
    for (const QString& name : members) {
        EXPECT_TRUE(known.contains(name)) << name.toStdString() << " is neither";
    }
    for (const QString& name : known) {
        EXPECT_TRUE(members.contains(name)) << name.toStdString() << " is no member";
    }
}

TEST(ProfileChainTest, SaysWhatEndsIt) {
    Profile gappy = slope();
    gappy.points[11].y = kNaN;
    Profile line;
    for (int i = 0; i < 30; ++i) {
        line.points.push_back({float(i), 2.0f});
    }
    const Profile three{{{0.0f, 1.0f}, {1.0f, 3.0f}, {2.0f, 2.5f}}, kNaN};
    const Profile none{{{kNaN, 1.0f}, {2.0f, kNaN}}, kNaN};
    const struct {
        const Profile& profile;
        const char* chain;
        const char* failure;
    } cases[] = {
        {none, "sort", "the profile has no point with both coordinates"},
        {three, "kihFilter20", "step 1 of 1, kihFilter20, needs at least 20 points, there are 3"},
        {slope(), "trimX:-2,2 wndFilter:90", "step 2 of 2, wndFilter:90, needs at least 91 points, there are 36"},
        {slope(), "sort trimX:50,60 derivative", "step 2 of 3, trimX:50,60, leaves none of 173 points"},
        {three, "medFilt:3", "needs at least 4 points"},
        {three, "diffFilt:2", "needs at least 4 points"},
        {slope(), "diffFilt:5", "needs an even window"},
        {three, "splashFilter:1,1", "needs at least 6 points"},
        {line, "splashFilterPolar:9,1,1", "finds no circle"},
        {gappy, "wndFilterPolar:1,3,0", "finds no circle"},
        {three, "wndFilterPolar:1,4,0", "needs at least 4 points"},
        {three, "removeNoise:4,1,1", "needs at least 4 points"},
        {three, "removeNoise:3,9,1", "leaves none of 3 points"},
        {line, "removeHighLevel:0,1", "leaves none of 30 points"},
        {three, "polynomFit:3", "needs at least 4 different x"},
        {gappy, "polynomFit:2", "needs points with both coordinates"},
        {three, "shift:90000,0 polynomFit:2", "cannot be calculated: powers of x up to 4 are too large here"},
        {gappy, "interpolate:0.1", "needs points with both coordinates"},
        {three, "interpolate:1e-7", "needs a larger step"},
        {three, "interpolate:0.1,5,6", "needs a range that meets the points, whose x are from 0 to 2 mm"},
        {three, "interpolate:0.1,1.5,1", "needs a from below to"},
        {three, "sort:2 calcLineSegment:1,9,1", "needs points with rising x"},
        {three, "calcLineSegment:1,9,1,5", "finds y = 3 mm at x = 1 mm, and no run with it within its bounds"},
        {three, "calcLineSegment:1,9,1,nan,nan,4", "finds a run of 3 points from x = 0 to 2 mm"},
        {three, "addLineSegments:4", "needs at least 4 points"},
        {three, "addParallelLine:4,1", "needs at least 4 points"},
        {line, "resize:0,1", "needs factors other than 0"},
        {three, "toEvklid", "needs a profile in polar form"},
        {three, "toPolar rotateEvklid:3", "needs a profile in x and y"},
        {three, "derivative toPolar", "needs a profile in x and y"},
    };
    for (const auto& c : cases) {
        EXPECT_NE(failureOf(c.profile, c.chain).find(c.failure), std::string::npos)
            << c.chain << ": " << failureOf(c.profile, c.chain);
    }
    EXPECT_THROW(applied(three, profileSteps("trimX:5,6")), Error);
    ProfileOptions options;
    options.steps = profileSteps("trimX:-100,100 trimX:-1,1 kihFilter20:0.05");
    const ProfileResult result = examineProfile(gappy, options);
    ASSERT_EQ(result.outcomes.size(), 3u);
    EXPECT_FALSE(result.outcomes[0].isChanged);
    EXPECT_EQ(result.outcomes[0].missing, 1);
    EXPECT_EQ(result.outcomes[1].before, 173);
    EXPECT_EQ(result.outcomes[1].after, 18);
    EXPECT_EQ(result.outcomes[2].after, 0) << "it failed";
}

TEST(ProfileChainTest, ArgumentsAreCheckedByName) {
    const std::pair<const char*, const char*> cases[] = {
        {"sort trimx:1,2", "step 2: there is no operation 'trimx' (is 'trimX' meant?)"},
        {"zebra", "step 1: there is no operation 'zebra'"},
        {"trimX:1", "step 1: trimX:minX,maxX takes 2 arguments, got 1"},
        {"interpolate", "step 1: interpolate:step[,from[,to]] takes 1 to 3 arguments, got 0"},
        {"toPolar:1", "step 1: toPolar takes 0 arguments, got 1"},
        {"removeNoise:3,1.5,1",
         "maxJumps of removeNoise:window,maxJumps,threshold needs a whole number from 0 to 65535 "
         "(jumps), got '1.5'"},
        {"trimLower:nan", "level of trimLower:level needs a number from -1000000 to 1000000 (mm), got 'nan'"},
        {"trimX:inf,1", "got 'inf'"},
        {"trimX:,1", "got ''"},
        {"interpolate:1e-50", "step of interpolate:step[,from[,to]] needs a number above 0, up to 1000000 (mm), got"},
        {"removeLineParts:3,1.01,1,1", "needs a number above 0, up to 1, got '1.01'"},
    };
    for (const auto& [chain, message] : cases) {
        try {
            profileSteps(chain);
            ADD_FAILURE() << "taken: " << chain;
        } catch (const Error& error) {
            EXPECT_EQ(error.kind(), ErrorKind::BadArgument);
            EXPECT_NE(std::string(error.what()).find(message), std::string::npos) << error.what();
        }
    }
    EXPECT_TRUE(profileSteps("  ").empty());
    EXPECT_THROW(applied(slope(), {{"trimX", {1.0}}}), Error);
    EXPECT_THROW(applied(slope(), {{"sort sort", {}}}), Error);
}

/// The value of a finding.
double valueOf(const ProfileFinding& finding, const std::string& key) {
    for (const ProfileValue& value : finding.values) {
        if (value.key == key) {
            return value.value;
        }
    }
    ADD_FAILURE() << finding.name << " has no " << key << ": " << finding.reason;
    return 0.0;
}

ProfileFinding found(const std::function<float(float)>& height, int points, float from, float to,
                     const std::function<void(ProfileOptions&)>& ask) {
    Profile profile;
    for (int i = 0; i < points; ++i) {
        const float x = from + (to - from) * float(i) / float(points - 1);
        profile.points.push_back({x, height(x)});
    }
    profile.points.push_back({kNaN, 1.0f});
    ProfileOptions options;
    ask(options);
    return examineProfile(profile, options).findings.at(0);
}

TEST(ProfileChainTest, FitsShapesFarFromTheOrigin) {
    const auto line =
        found([](float x) { return 3.0f - 0.25f * x; }, 57, 900.0f, 960.0f, [](auto& o) { o.line = true; });
    EXPECT_NEAR(valueOf(line, "slope"), -0.25, 1e-6);
    EXPECT_NEAR(valueOf(line, "angle"), -14.036243, 1e-4);
    EXPECT_NEAR(valueOf(line, "intercept"), 3.0, 1e-3);
    const auto arc = [](float x) { return 700.0f + std::sqrt(35.0f * 35.0f - (x - 510.0f) * (x - 510.0f)); };
    const auto circle = found(arc, 201, 490.0f, 525.0f, [](auto& o) { o.circle = true; });
    EXPECT_NEAR(valueOf(circle, "radius"), 35.0, 1e-3);
    EXPECT_NEAR(valueOf(circle, "x"), 510.0, 1e-3);
    EXPECT_NEAR(valueOf(circle, "y"), 700.0, 1e-3);
    EXPECT_NEAR(valueOf(circle, "arc"), (std::asin(20.0 / 35) + std::asin(15.0 / 35)) * 180 / M_PI, 1e-3);
    const auto cubic = [](float x) { return 2.0f + 0.5f * x - 0.03f * x * x + 0.002f * x * x * x; };
    const auto polynomial = found(cubic, 121, -6.0f, 18.0f, [](auto& o) { o.polynomial = 3; });
    EXPECT_NEAR(valueOf(polynomial, "middle"), 6.0, 1e-5);
    EXPECT_NEAR(valueOf(polynomial, "c0"), cubic(6.0f), 1e-5);
    EXPECT_NEAR(valueOf(polynomial, "c1"), 0.5 - 2 * 0.03 * 6 + 3 * 0.002 * 36, 1e-5);
    EXPECT_NEAR(valueOf(polynomial, "c2"), -0.03 + 3 * 0.002 * 6, 1e-6);
    EXPECT_NEAR(valueOf(polynomial, "c3"), 0.002, 1e-7);
    EXPECT_LT(valueOf(polynomial, "rms"), 1e-5);
    EXPECT_EQ(polynomial.curve.front().x, -6.0f);
    EXPECT_NEAR(double(polynomial.curve.front().y), double(cubic(-6.0f)), 1e-5);
    const auto few = found(cubic, 3, 0.0f, 1.0f, [](auto& o) { o.polynomial = 3; });
    EXPECT_EQ(few.reason, "there are fewer different x than coefficients");
    const auto flat = found([](float) { return 1.0f; }, 9, 0.0f, 1.0f, [](auto& o) { o.circle = true; });
    EXPECT_FALSE(flat.isFound());
}

TEST(ProfileChainTest, DetectsFeatures) {
    const auto plates = [](float x) { return x < 1.0f ? 2.0f : x < 1.9f ? kNaN : 2.7f; };
    const auto joint = found(plates, 301, -10.0f, 14.0f, [](auto& o) { o.features = {ProfileFeature::Joint}; });
    EXPECT_NEAR(valueOf(joint, "offset"), 0.7, 1e-4);
    EXPECT_NEAR(valueOf(joint, "gap"), 0.96, 1e-4);
    ASSERT_EQ(joint.points.size(), 2u);
    const auto ridge = [](float x) { return x > 2.0f && x < 3.0f ? 4.0f : 3.0f; };
    const auto look = [](auto& o) { o.features = {ProfileFeature::Cuts}; };
    const auto cuts = found(ridge, 201, -5.0f, 15.0f, look);
    EXPECT_EQ(valueOf(cuts, "count"), double(cuts.points.size()));
    ASSERT_FALSE(cuts.points.empty());
    EXPECT_NEAR(double(cuts.points[0].x), 2.5, 0.6);
    EXPECT_FALSE(found([](float) { return 3.0f; }, 201, -5.0f, 15.0f, look).isFound());
    const auto top = [](float x) { return 5.0f - 0.1f * (x - 1.0f) * (x - 1.0f); };
    const auto weld = found(top, 101, -9.0f, 11.0f, [](auto& o) { o.features = {ProfileFeature::Weld}; });
    EXPECT_NEAR(valueOf(weld, "x"), 1.0, 1e-4);
    const auto tube = [](float x) { return std::abs(x) < 8.0f ? 50.0f + std::sqrt(100.0f - x * x) : 20.0f; };
    const auto circle = found(tube, 401, -20.0f, 30.0f, [](auto& o) { o.features = {ProfileFeature::Circle}; });
    EXPECT_EQ(circle.name, "detected circle");
    EXPECT_NEAR(valueOf(circle, "radius"), 10.0, 1e-4);
    const auto polar = found(top, 101, -9.0f, 11.0f, [](auto& o) {
        o.steps = profileSteps("toPolar");
        o.line = true;
    });
    EXPECT_EQ(polar.reason, "the last step leaves radius, mm and angle, degrees, not x and y");
}

} // namespace
