// docs/idioms.md states what each function does with missing values. Each is called with a missing height and with a
// missing point, and the outcome is compared with the page.
#include "support/tempFiles.h"
#include "support/testing.h"

#include <QtCore/QRegularExpression>

#include <functional>
#include <optional>

using namespace testing_support;

namespace {

using P = KxProfile;
using Space = KxPointCloud<KxPointXYZ>;

/// The result of a function.
struct Outcome {
    bool isDone = true;
    std::optional<SpacePoints> points;
    QList<float> numbers;
};

using Run = std::function<Outcome(P&)>;

bool isMissing(const KxPointXYZ& p) {
    return std::isnan(p.x) || std::isnan(p.y) || std::isnan(p.z);
}

/// The outcome in the words of the page. `without` is the result without the point.
QString behaviour(const Outcome& outcome, const Outcome& without) {
    EXPECT_TRUE(without.isDone);
    if (!outcome.isDone) {
        return "fails";
    }
    if (outcome.points) {
        const auto missing = std::count_if(outcome.points->begin(), outcome.points->end(), isMissing);
        if (missing > 1 || outcome.points->size() < without.points->size()) {
            return "spreads";
        }
        return missing == 1 ? "keeps" : "removes";
    }
    const auto isSame = [](float a, float b) { return std::abs(a - b) <= 0.005f * (1 + std::abs(b)); }; // NaN: false
    return std::equal(outcome.numbers.begin(), outcome.numbers.end(), without.numbers.begin(), without.numbers.end(),
                      isSame)
               ? "skips"
               : "spreads";
}

/// The points as a cloud with z = 0, 1, ... 5, 0, 1, ...
Space inSpace(const P& profile) {
    Space cloud;
    for (const KxPointXY& p : profile.points) {
        cloud.points.append(KxPointXYZ(p.x, p.y, std::fmod(p.x, 6.0f)));
    }
    return cloud;
}

KxProfileZSet scanOf(const P& profile) {
    KxProfileZSet scan;
    scan.profiles.append(KxProfileZ(profile));
    scan.setZ(0, 1);
    return scan;
}

/// A function that changes a profile.
Run changes(const std::function<void(P&)>& change) {
    return [=](P& p) {
        change(p);
        Outcome outcome{true, SpacePoints(), {}};
        for (const KxPointXY& q : std::as_const(p.points)) {
            outcome.points->append(KxPointXYZ(q.x, q.y, 0));
        }
        return outcome;
    };
}

/// A function that changes a cloud.
Run changesCloud(const std::function<void(Space&)>& change) {
    return [=](P& p) {
        Space cloud = inSpace(p);
        change(cloud);
        return Outcome{true, cloud.points, {}};
    };
}

/// A function that writes points to another object.
Run makes(const std::function<void(P&, Space&)>& make) {
    return [=](P& p) {
        Space cloud;
        make(p, cloud);
        return Outcome{true, cloud.points, {}};
    };
}

/// A function that returns numbers.
Run finds(const std::function<QList<float>(P&)>& find) {
    return [=](P& p) { return Outcome{true, {}, find(p)}; };
}

/// A function that may fail.
Run succeeds(const std::function<bool(P&)>& run) {
    return [=](P& p) { return Outcome{run(p), {}, {}}; };
}

template <typename Shape>
QList<float> numbersOf(const Shape& shape) {
    return {shape.x, shape.y};
}

Points profileOf(int count, const std::function<double(double)>& y) {
    return pointsFor(count, [&](int i) { return at(i, y(i)); });
}

/// One point a millimetre; a bowl that crosses 0 has its 21st point on a flank.
const Points kBowl = profileOf(60, [](double x) { return 0.02 * (x - 29.5) * (x - 29.5) - 4.1 + 0.1 * std::sin(x); });
const Points kPlates = profileOf(60, [](double x) { return x < 30 ? 1 : 2; });
const Points kRidge = profileOf(60, [](double x) { return x >= 40 && x < 48 ? 4 : 0; });

struct Case {
    const char* function; // as on the page
    Run run;
    const Points& data = kBowl;
    int missing = 20;
};

QList<float> rangeOf(P& p) {
    return {p.minX, p.maxX, p.minY, p.maxY};
}

KxPointXY centre(P& p, bool (P::*calc)(KxPointXY&)) {
    KxPointXY c;
    (p.*calc)(c);
    return c;
}

KxLine lineOf(P& p) {
    KxLine line;
    p.calcLine(line);
    return line;
}

QList<float> circleOf(P& p, bool (P::*calc)(KxCircle&)) {
    KxCircle c;
    (p.*calc)(c);
    return {c.x, c.y, c.radius};
}

float coefficientOf(P& p) {
    double c[3];
    p.calcPolynomCoeffs(2, c);
    return static_cast<float>(c[2]);
}

QList<float> zerosOf(P& p) {
    QList<float> xs(p.size());
    xs.resize(p.findZeros(xs.data()));
    return xs;
}

bool hasCuts(P& p) {
    P cuts;
    QList<int> positions;
    return p.detectCutPoints(cuts, positions, 5, 3) > 0;
}

QList<float> jointOf(P& p) {
    KxPointCloud<KxPointXY> joint;
    p.detectJoint(joint);
    return {joint.points.value(0).x, joint.points.value(1).x};
}

QList<float> weldOf(P& p) {
    KxLine line;
    float x = 0;
    p.detectWeld(line, &x);
    return {line.b, x};
}

float stretchOf(P& p) {
    P out;
    p.calcLineSegment(33, 0.5f, 3, out, kNaN, kNaN, kNaN, kNaN);
    return static_cast<float>(out.size());
}

void toCsvAndBack(P& p) {
    const TempFiles files;
    p.writeToCSVFile(files.path("p.csv"));
    p.readFromCSVFile(files.path("p.csv"), 0, 1);
}

void difference(P& p) {
    P out(p), other;
    other.points = kBowl;
    p.calcDistance(other, out, 4, 0, false);
    p = out;
}

float distanceOf(P& p) {
    P other;
    other.points = kBowl;
    return METRO_calcWheelsDist(p, other, KxLine(0, 1), KxLine(0, 2), 9);
}

void toTrack(P& p, Space& cloud) {
    _KxMETRO_SensorCoord_ pose{1, 2, 3, 10, 20, 30, 1};
    METRO_XYtoXYZ(p, cloud, pose);
}

void toMap(P& p, Space& cloud) {
    KxProfileZSet scan = scanOf(p);
    scan.calcRange();
    KxMatrixCloud map;
    scan.toMatrixCloud(map, 2.5f, kNaN);
    map.toPointCloud(cloud);
}

void toSlices(P& p, Space& cloud) {
    Space whole = inSpace(p);
    KxProfileZSet scan;
    scan.calcFromPointCloud(whole, 1);
    scan.toPointCloud(cloud);
}

/// The mean of the block before the last cell.
float blockMeanOf(P& p) {
    KxMatrixCloud map;
    map.initMatrix(static_cast<int>(p.size()), 2, 1, 0, 59, 0, 1, 0, 1);
    for (int i = 0; i < p.size(); ++i) {
        map.cells[0][i] = map.cells[1][i] = p.points[i].y;
    }
    KxMatrixWithHistos blocks;
    blocks.calcFromMatrixCloud(map, 100, 0, nullptr, nullptr);
    return blocks.histoRows.last().last().mean;
}

QList<float> inBox(P& p) {
    QList<int> positions;
    p.getRangeIndeces(positions, 5, 50, -3, 20);
    return {static_cast<float>(positions.size())};
}

void section(Space& cloud) {
    Space out;
    cloud.calcSection(out, 2, 9);
    cloud = out;
}

const QList<Case> kCases = {
    {"KxPointCloud::calcRange()", finds([](P& p) { return p.KxPointCloud<KxPointXY>::calcRange(), rangeOf(p); })},
    {"KxProfile::calcRange()", finds([](P& p) { return p.calcRange(), rangeOf(p); })},
    {"KxProfile::calcRange(), first point", finds([](P& p) { return p.calcRange(), rangeOf(p); }), kBowl, 0},
    {"calcCenterPoint()", finds([](P& p) { return numbersOf(centre(p, &P::calcCenterPoint)); })},
    {"caclCenterMassPoint()", finds([](P& p) { return numbersOf(centre(p, &P::caclCenterMassPoint)); })},
    {"calcAverageY()", finds([](P& p) { return QList<float>{p.calcAverageY()}; })},
    {"getRangeIndeces()", finds(inBox)},
    {"shift()", changes([](P& p) { p.shift(1, 2, 0); })},
    {"sort()", changes([](P& p) { p.sort(KxSortDescending, KxSortNone); })},
    {"removeDuplicates()", changes([](P& p) { p.removeDuplicates(); })},
    {"toPolar()", changes([](P& p) { p.toPolar(); })},
    {"toEvklid()", changes([](P& p) { p.toEvklid(); })},
    {"rotateEvklid()", changes([](P& p) { p.rotateEvklid(30); })},
    {"writeToCSVFile()", changes(toCsvAndBack)},
    {"KxProfile::trim()", changes([](P& p) { p.trim(5, -3, 50, 20); })},
    {"KxPointCloud::trim()", changesCloud([](Space& c) { c.trim(5, 50, -3, 20, kNaN, kNaN); })},
    {"calcSection()", changesCloud(section)},
    {"removePointsByYLevel()", changesCloud([](Space& c) { c.removePointsByYLevel(5, true); })},
    {"cubicFilter()", changesCloud([](Space& c) { c.cubicFilter(20, 4); })},
    {"sphericalFilter2()", changesCloud([](Space& c) { c.sphericalFilter2(40, 30, 4); })},
    {"rotateXZ()", changesCloud([](Space& c) { c.rotateXZ(30); })},
    {"removeHighLevel()", changes([](P& p) { p.removeHighLevel(KxLine(0, 3)); })},
    {"removeLowLevel()", changes([](P& p) { p.removeLowLevel(KxLine(0, -9)); })},
    {"removeNoise()", changes([](P& p) { p.removeNoise(7, 1, 2, 0); })},
    {"removeLineParts()", changes([](P& p) { p.removeLineParts(5, 0.9f, 3, 4); })},
    {"splashFilter()", changes([](P& p) { p.splashFilter(p, 1, 2); })},
    {"splashFilterPolar()", changes([](P& p) { p.splashFilterPolar(p, 25, 1, 2); })},
    {"wndFilterPolar()", changes([](P& p) { p.wndFilterPolar(p, 1, 5, 2); })},
    {"kihFilter20()", changes([](P& p) { p.kihFilter20(kNaN); })},
    {"wndFilter()", changes([](P& p) { p.wndFilter(5); })},
    {"diffFilt()", changes([](P& p) { p.diffFilt(p, 6); })},
    {"derivative()", changes([](P& p) { p = p.derivative(); })},
    {"calcDistance()", changes(difference)},
    {"calcLine()", finds([](P& p) {
         return QList<float>{lineOf(p).k, lineOf(p).b};
     })},
    {"calcCircle()", finds([](P& p) { return circleOf(p, &P::calcCircle); })},
    {"detectCircle()", finds([](P& p) { return circleOf(p, &P::detectCircle); })},
    {"calcPolynomCoeffs()", finds([](P& p) { return QList<float>{coefficientOf(p)}; })},
    {"polynomFit()", changes([](P& p) { p.polynomFit(2); })},
    {"calcCorrelation()", finds([](P& p) { return QList<float>{p.calcCorrelation()}; })},
    {"integral(), plain", finds([](P& p) { return QList<float>{p.integral(0, p.size() - 1, true)}; })},
    {"integral(), refined", finds([](P& p) { return QList<float>{p.integral(0, p.size() - 1, false)}; })},
    {"interpolate()", changes([](P& p) { p.interpolate(0.5f, kNaN, kNaN, Akima); })},
    {"calcY()", finds([](P& p) { return QList<float>{p.calcY(20.25f, kNaN, nullptr)}; })},
    {"findZeros()", finds(zerosOf)},
    {"detectCutPoints()", succeeds(hasCuts), kRidge, 40},
    {"calcCutPoint()", succeeds([](P& p) { return p.calcCutPoint(5, 3) >= 0; }), kRidge, 40},
    {"detectWeld()", finds(weldOf), kRidge, 20},
    {"detectJoint()", finds(jointOf), kPlates, 20},
    {"calcLineSegment()", finds([](P& p) { return QList<float>{stretchOf(p)}; }), kPlates, 40},
    {"METRO_isWheel()", succeeds([](P& p) { return METRO_isWheel(p, KxLine(0, 3), 30); })},
    {"METRO_calcWheelsDist()", finds([](P& p) { return QList<float>{distanceOf(p)}; })},
    {"METRO_detectWheelDefect()", succeeds([](P& p) { return !METRO_detectWheelDefect(p, 20, 0.2f, 3); }), kRidge},
    {"METRO_XYtoXYZ()", makes(toTrack)},
    {"KxProfileZSet::toPointCloud()", makes([](P& p, Space& cloud) { scanOf(p).toPointCloud(cloud); })},
    {"toMatrixCloud()", makes(toMap)},
    {"KxProfileZSet::calcFromPointCloud()", makes(toSlices)},
    {"makeCloudTopView()", changes([](P& p) { p.makeCloudTopView(inSpace(p), -9); })},
    {"KxMatrixWithHistos::calcFromMatrixCloud()", finds([](P& p) { return QList<float>{blockMeanOf(p)}; })},
};

/// Of each function in the section on missing values: what it does with a missing height and with a missing point.
QMap<QString, QStringList> wordsOfPage() {
    static const QRegularExpression row("^\\| (`.*`) \\| (\\w+) \\| (\\w+) \\|", QRegularExpression::MultilineOption);
    static const QRegularExpression name("`([^`]*)`");
    QMap<QString, QStringList> words;
    QFile page(QStringLiteral(KXMATH_DOCS_DIR "/idioms.md"));
    EXPECT_TRUE(page.open(QIODevice::ReadOnly));
    for (auto rows = row.globalMatch(QString::fromUtf8(page.readAll())); rows.hasNext();) {
        const QRegularExpressionMatch match = rows.next();
        for (auto names = name.globalMatch(match.captured(1)); names.hasNext();) {
            words[names.next().captured(1)] = {match.captured(2), match.captured(3)};
        }
    }
    return words;
}

} // namespace

TEST(IdiomsPage, SaysWhatFunctionsDoWithMissingValues) {
    QMap<QString, QStringList> words = wordsOfPage();
    for (const Case& c : kCases) {
        P without, withoutHeight, withoutPoint;
        without.points = withoutHeight.points = withoutPoint.points = c.data;
        without.points.removeAt(c.missing);
        withoutHeight.points[c.missing].y = kNaN;
        withoutPoint.points[c.missing] = KxPointXY();
        const Outcome expected = c.run(without);
        const QStringList found = {behaviour(c.run(withoutHeight), expected), behaviour(c.run(withoutPoint), expected)};
        EXPECT_EQ(words.take(c.function), found) << c.function << ": " << qPrintable(found.join(" | "));
    }
    EXPECT_TRUE(words.isEmpty()) << "no case for " << qPrintable(words.keys().join(", "));
}
