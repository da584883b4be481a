// docs/idioms.md on const objects and on calls from several threads.
#include "support/tempFiles.h"
#include "support/testing.h"

#include <QtCore/QRegularExpression>

#include <functional>

using namespace testing_support;

namespace {

template <typename T>
concept HasConstSize = requires(const T& object) {
    object.size();
};
template <typename T>
concept CopiesConst = std::is_constructible_v<T, const T&>;
template <typename T>
concept TakesTemporaries = requires(KxLine& line, T (*make)()) {
    line.calcFromPointCloud(make());
};

static_assert(!HasConstSize<KxProfile> && !HasConstSize<KxPointCloud<KxPointXYZ>> && !HasConstSize<KxProfileZSet>);
static_assert(!CopiesConst<KxProfile> && !CopiesConst<KxPointCloud<KxPointXYZ>>);
static_assert(CopiesConst<KxProfileZ> && CopiesConst<KxProfileZSet>);
static_assert(!TakesTemporaries<KxProfile>);

using P = KxProfile;
using Cloud = KxPointCloud<KxPointXYZ>;

struct Query {
    const char* name; // as on the page
    std::function<void(P&, Cloud&)> ask;
};

const QList<Query> kReadOnly = {
    {"size()", [](P& p, Cloud& c) { p.size(), c.size(); }},
    {"isEmpty()", [](P& p, Cloud& c) { p.isEmpty(), c.isEmpty(); }},
    {"size_x()", [](P& p, Cloud& c) { p.size_x(), c.size_x(); }},
    {"size_y()", [](P& p, Cloud& c) { p.size_y(), c.size_y(); }},
    {"size_z()", [](P&, Cloud& c) { c.size_z(); }},
    {"caclCenterMassPoint()",
     [](P& p, Cloud& c) {
         KxPointXY m;
         KxPointXYZ n;
         p.caclCenterMassPoint(m), c.caclCenterMassPoint(n);
     }},
    {"calcAverageY()", [](P& p, Cloud& c) { p.calcAverageY(), c.calcAverageY(); }},
    {"getIndexX()", [](P& p, Cloud& c) { p.getIndexX(3), c.getIndexX(3); }},
    {"getIndexY()", [](P& p, Cloud& c) { p.getIndexY(3), c.getIndexY(3); }},
    {"getIndexZ()", [](P&, Cloud& c) { c.getIndexZ(3); }},
    {"getRangeIndeces()",
     [](P& p, Cloud& c) {
         QList<int> positions;
         p.getRangeIndeces(positions, 1, 9, kNaN, kNaN);
         c.getRangeIndeces(positions, KxPointXYZ(1, 2, 3), 4);
         c.getRangeIndeces(positions, 1, 9, kNaN, kNaN, kNaN, kNaN);
     }},
    {"calcSection()",
     [](P&, Cloud& c) {
         Cloud out;
         c.calcSection(out, 2, 1);
     }},
    {"extract()",
     [](P&, Cloud& c) {
         Cloud out;
         c.extract(out, 1, 9, 0, 9, 0, 9, false);
     }},
    {"extractInsulatingTape()",
     [](P&, Cloud& c) {
         Cloud tape;
         c.extractInsulatingTape(tape, 1, 1, 2);
     }},
    {"writeToFile()",
     [](P& p, Cloud& c) {
         const TempFiles files;
         p.writeToFile(files.path("p")), c.writeToFile(files.path("c"));
     }},
    {"compat_writeToXYZFile()", [](P&, Cloud& c) { c.compat_writeToXYZFile(TempFiles().path("c")); }},
    {"writeToCSVFile()", [](P& p, Cloud&) { p.writeToCSVFile(TempFiles().path("p")); }},
    {"calcRange()",
     [](P& p, Cloud&) {
         float a, b, c, d;
         p.calcRange(&a, &b, &c, &d);
     }},
    {"findNearestToX()", [](P& p, Cloud&) { p.findNearestToX(3, false), p.findNearestToX(3, true); }},
    {"calcLine()",
     [](P& p, Cloud&) {
         KxLine line;
         p.calcLine(line);
     }},
    {"calcCircle()",
     [](P& p, Cloud&) {
         KxCircle circle;
         p.calcCircle(circle);
     }},
    {"detectCircle()",
     [](P& p, Cloud&) {
         KxCircle circle;
         p.detectCircle(circle);
     }},
    {"calcPolynomCoeffs()",
     [](P& p, Cloud&) {
         double c[3];
         p.calcPolynomCoeffs(2, c);
     }},
    {"derivative()", [](P& p, Cloud&) { p.derivative(); }},
    {"findZeros()", [](P& p, Cloud&) { p.findZeros(QList<float>(p.size()).data()); }},
    {"calcCorrelation()", [](P& p, Cloud&) { p.calcCorrelation(); }},
    {"integral()", [](P& p, Cloud&) { p.integral(1, 9, true), p.integral(1, 9, false); }},
    {"calcY()", [](P& p, Cloud&) { p.calcY(3.5f, kNaN, nullptr); }},
    {"calcCutPoint()", [](P& p, Cloud&) { p.calcCutPoint(2, 1); }},
    {"detectCutPoints()",
     [](P& p, Cloud&) {
         P cuts;
         QList<int> positions;
         p.detectCutPoints(cuts, positions, 2, 1);
     }},
    {"detectWeld()",
     [](P& p, Cloud&) {
         KxLine line;
         float x;
         p.detectWeld(line, &x);
     }},
    {"detectJoint()",
     [](P& p, Cloud&) {
         KxPointCloud<KxPointXY> joint;
         p.detectJoint(joint);
     }},
    {"calcLineSegment()",
     [](P& p, Cloud&) {
         P out;
         p.calcLineSegment(3, 1, 2, out, kNaN, kNaN, kNaN, kNaN);
     }},
    {"calcDistance()",
     [](P& p, Cloud&) {
         P out, other;
         other.points = pointsFor(40, [](int i) { return at(i, 3); });
         p.calcDistance(other, out, 3, 0, false);
     }},
};

/// The names in the section on threads, from the list of queries that only read.
QStringList namesOfPage() {
    static const QRegularExpression name("`([a-zA-Z_]+\\(\\))`");
    QFile page(QStringLiteral(KXMATH_DOCS_DIR "/idioms.md"));
    EXPECT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll()).section("only read:", 1).section("\n\n", 0, 0);
    QStringList names;
    for (auto found = name.globalMatch(text); found.hasNext();) {
        names += found.next().captured(1);
    }
    return names;
}

} // namespace

// A call that writes would detach the shared list or change the range.
TEST(IdiomsPage, NamesQueriesThatOnlyRead) {
    QStringList names = namesOfPage();
    for (const Query& query : kReadOnly) {
        SCOPED_TRACE(query.name);
        EXPECT_TRUE(names.removeOne(query.name));
        P profile;
        Cloud cloud;
        const Points points = profile.points = pointsFor(40, [](int i) { return at(i, i % 7 - 3); });
        const SpacePoints spacePoints = cloud.points = pointsFor(40, [](int i) { return at(i, i % 7, i % 5); });
        setRange(profile, 2);
        setRange(cloud, 2);
        const QList<float> before = {profile.minX, profile.maxX, profile.minY, profile.maxY};
        query.ask(profile, cloud);
        EXPECT_TRUE(profile.points.isSharedWith(points) && cloud.points.isSharedWith(spacePoints));
        EXPECT_EQ(QList<float>({profile.minX, profile.maxX, profile.minY, profile.maxY}), before);
        EXPECT_EQ(QList<float>({cloud.minX, cloud.maxX, cloud.minY, cloud.maxY, cloud.minZ, cloud.maxZ}),
                  QList<float>({2, 3, 4, 5, 6, 7}));
        EXPECT_EQ(cloud.zIndexBuilt, 0);
    }
    EXPECT_TRUE(names.isEmpty()) << "no case for " << qPrintable(names.join(", "));
}
