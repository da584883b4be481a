// What the library makes of the points of a file, for the test that compares it with what the Python package makes of
// them: one line per operation with its name and the bytes of the result, in hexadecimal.
//
//     operations profile|cloud FILE, where FILE holds floats, 2 or 3 for each point.
#include <KxMath/KxMath.h>

#include <QtCore/QFile>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace KxMath;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;

/// Collects the bytes of results.
class Bytes {
public:
    template <typename T>
    Bytes& operator<<(const T& value) {
        bytes_.append(QByteArray(reinterpret_cast<const char*>(&value), sizeof(T)));
        return *this;
    }
    template <typename T>
    Bytes& operator<<(const QList<T>& values) {
        for (const T& value : values) {
            *this << value;
        }
        return *this;
    }
    Bytes& operator<<(const KxProfile& profile) { return *this << profile.points; }
    Bytes& operator<<(const Cloud& cloud) { return *this << cloud.points; }

    void print(const char* name) const { std::printf("%s %s\n", name, bytes_.toHex().constData()); }

private:
    QByteArray bytes_;
};

/// Changes an object, or adds to the bytes what it finds.
template <typename T>
struct Operation {
    const char* name;
    std::function<void(T&, Bytes&)> work;
};

template <typename T>
using Operations = std::vector<Operation<T>>;

using P = KxProfile&;

const Operations<KxProfile> kProfileChanges = {
    {"shift", [](P p, Bytes&) { p.shift(1.25f, -0.7f, 0.0f); }},
    {"scale", [](P p, Bytes&) { p.resize(1.5f, 0.3f, 1.0f); }},
    {"rotate", [](P p, Bytes&) { p.rotateEvklid(12.5f); }},
    {"rotateAbout",
     [](P p, Bytes&) {
         KxPointXY centre(3.0f, -4.0f);
         p.rotateFixed(-7.5f, centre);
     }},
    {"toPolar", [](P p, Bytes&) { p.toPolar(); }},
    {"toCartesian", [](P p, Bytes&) { p.toEvklid(); }},
    {"rotatePolar", [](P p, Bytes&) { p.rotatePolar(11.0f); }},
    {"sort", [](P p, Bytes&) { p.sort(KxSortAscending, KxSortNone); }},
    {"sortDown", [](P p, Bytes&) { p.sort(KxSortDescending, KxSortNone); }},
    {"trim", [](P p, Bytes&) { p.trim(-20.0f, 1.0f, 31.0f, 22.0f); }},
    {"trimLower", [](P p, Bytes&) { p.trimLower(9.0f); }},
    {"removeDuplicates", [](P p, Bytes&) { p.removeDuplicates(); }},
    {"movingAverage", [](P p, Bytes&) { p.wndFilter(7); }},
    {"fir20", [](P p, Bytes&) { p.kihFilter20(0.6f); }},
    {"medFilt", [](P p, Bytes&) { p.medFilt(p, 9, 0); }},
    {"slopeFilter", [](P p, Bytes&) { p.diffFilt(p, 6); }},
    {"removeNoise", [](P p, Bytes&) { p.removeNoise(9, 2, 0.4f, 0.0f); }},
    {"removeSpikes", [](P p, Bytes&) { p.splashFilter(p, 1.2f, 3.0f); }},
    {"removeSpikesPolar", [](P p, Bytes&) { p.splashFilterPolar(p, 40.0f, 1.2f, 3.0f); }},
    {"windowFilterPolar", [](P p, Bytes&) { p.wndFilterPolar(p, 0.5f, 9, 4); }},
    {"below", [](P p, Bytes&) { p.removeHighLevel(KxLine(0.05f, 14.0f)); }},
    {"above", [](P p, Bytes&) { p.removeLowLevel(KxLine(-0.05f, 9.0f)); }},
    {"removeLineParts", [](P p, Bytes&) { p.removeLineParts(4, 0.9f, 0.5f, 5); }},
    {"chords", [](P p, Bytes&) { p.addLineSegments(p, 11, 0); }},
    {"chordsByWidth", [](P p, Bytes&) { p.addLineSegmentsWithMMWindow(p, 2.5f); }},
    {"parallelPieces", [](P p, Bytes&) { p.addParallelLine(p, 8, 0, 0.2f); }},
    {"polynomialFit", [](P p, Bytes&) { p.polynomFit(4); }},
    {"resample",
     [](P p, Bytes&) {
         p.points.removeIf([](KxPointXY q) { return q.isNull(); });
         p.removeDuplicates();
         p.interpolate(0.21f, -30.0f, 25.0f, Akima);
     }},
    {"blockDifferences",
     [](P p, Bytes&) {
         KxProfile other(p);
         other.shift(0.0f, 2.0f, 0.0f);
         other.points.remove(0, 3);
         p.calcDistance(other, p, 5, 0, true);
     }},
    {"removeSome",
     [](P p, Bytes&) {
         QList<int> positions = {5, 2, 17};
         p.removeIndeces(positions);
     }},
};

const Operations<KxProfile> kProfileFinds = {
    {"inBox",
     [](P p, Bytes& bytes) {
         QList<int> positions;
         p.getRangeIndeces(positions, -10.0f, 10.0f, std::numeric_limits<float>::quiet_NaN(), 15.0f);
         for (const int position : positions) {
             bytes << qint64(position);
         }
     }},
    {"range",
     [](P p, Bytes& bytes) {
         p.KxPointCloud<KxPointXY>::calcRange();
         bytes << p.minX << p.maxX << p.minY << p.maxY;
     }},
    {"center",
     [](P p, Bytes& bytes) {
         KxPointXY point;
         p.calcCenterPoint(point);
         bytes << point;
     }},
    {"centerOfMass",
     [](P p, Bytes& bytes) {
         KxPointXY point;
         p.caclCenterMassPoint(point);
         bytes << point;
     }},
    {"averageY", [](P p, Bytes& bytes) { bytes << p.calcAverageY(); }},
    {"derivative",
     [](P p, Bytes& bytes) {
         for (const KxPointXY& q : p.derivative().points) {
             bytes << q.y << q.x;
         }
     }},
    {"findZeros",
     [](P p, Bytes& bytes) {
         p.shift(0.0f, -11.0f, 0.0f);
         std::vector<float> zeros(p.points.size());
         zeros.resize(size_t(p.findZeros(zeros.data())));
         for (const float zero : zeros) {
             bytes << zero;
         }
     }},
    {"correlation", [](P p, Bytes& bytes) { bytes << p.calcCorrelation(); }},
    {"integral", [](P p, Bytes& bytes) { bytes << p.integral(7, 300, true) << p.integral(3, 90, false); }},
    {"yAt", [](P p, Bytes& bytes) { bytes << p.calcY(-3.3f, 2.0f, nullptr) << p.calcY(8.05f, 2.0f, nullptr); }},
    {"cutPoint", [](P p, Bytes& bytes) { bytes << qint64(p.calcCutPoint(5, 3.0f)); }},
    {"cutPoints",
     [](P p, Bytes& bytes) {
         KxProfile cuts;
         QList<int> sums;
         p.detectCutPoints(cuts, sums, 5, 3.0f);
         bytes << cuts;
     }},
    {"apexes",
     [](P p, Bytes& bytes) {
         KxProfile apexes;
         QList<KxLine> lines;
         METRO_detectApexes(p, apexes, lines, 0.5f);
         bytes << apexes << lines;
     }},
    {"lineSegment",
     [](P p, Bytes& bytes) {
         KxProfile out;
         const float none = std::numeric_limits<float>::quiet_NaN();
         p.calcLineSegment(-25.0f, 0.4f, 3, out, 1.0f, 40.0f, none, 60.0f);
         bytes << out;
     }},
    {"isWheel",
     [](P p, Bytes& bytes) {
         bytes << METRO_isWheel(p, KxLine(0, 12), 100) << METRO_isWheel(p, KxLine(0, 12), KxLine(0, 11), 400);
     }},
    {"isSoundTread", [](P p, Bytes& bytes) { bytes << METRO_detectWheelDefect(p, 20, 0.5f, 3); }},
    {"findX",
     [](P p, Bytes& bytes) { bytes << qint64(p.findNearestToX(1.0f, false)) << qint64(p.findNearestToX(1.0f, true)); }},
    {"polynomial",
     [](P p, Bytes& bytes) {
         p.points.removeIf([](KxPointXY q) { return q.isNull(); });
         p.shift(-2.0f, 0.0f, 0.0f);
         std::array<double, 6> coefficients = {};
         p.calcPolynomCoeffs(5, coefficients.data());
         bytes << coefficients;
     }},
    {"fitLine",
     [](P p, Bytes& bytes) { // near the origin sums in single precision keep their digits
         p.points.removeIf([](KxPointXY q) { return q.isNull(); });
         const KxPointXY start = p.points.first();
         p.shift(-start.x, -start.y, 0.0f);
         KxLine line;
         p.calcLine(line);
         line.b += start.y - line.k * start.x;
         bytes << line;
     }},
    {"fitCircle",
     [](P p, Bytes& bytes) {
         p.points.removeIf([](KxPointXY q) { return q.isNull(); });
         const float x = p.calcCenterX(), y = p.calcCenterY();
         p.shift(-x, -y, 0.0f);
         KxCircle circle;
         p.calcCircle(circle);
         circle.x += x;
         circle.y += y;
         bytes << circle;
     }},
    {"detectCircle",
     [](P p, Bytes& bytes) {
         p.points.removeIf([](KxPointXY q) { return q.isNull(); });
         KxCircle circle;
         p.detectCircle(circle);
         bytes << circle;
     }},
};

using C = Cloud&;
constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

const Operations<Cloud> kCloudChanges = {
    {"shift", [](C c, Bytes&) { c.shift(1.0f, -2.0f, 0.5f); }},
    {"rotateXY", [](C c, Bytes&) { c.rotateXY(11.0f); }},
    {"rotateXZ", [](C c, Bytes&) { c.rotateXZ(12.0f); }},
    {"rotateYZ", [](C c, Bytes&) { c.rotateYZ(13.0f); }},
    {"rotate", [](C c, Bytes&) { c.rotate(4.0f, 0.0f, -5.0f); }},
    {"sort", [](C c, Bytes&) { c.sort(KxSortAscending, KxSortDescending); }},
    {"sortX", [](C c, Bytes&) { c.sort(KxSortDescending, KxSortNone); }},
    {"sortZX",
     [](C c, Bytes&) {
         c.points.removeIf([](const KxPointXYZ& p) { return std::isnan(p.x) || std::isnan(p.z); });
         c.sort(KxSortAscending, KxSortNone);
         c.sort(KxSortNone, KxSortAscending);
     }},
    {"crop", [](C c, Bytes&) { c.trim(1.0f, 8.0f, kNone, kNone, 0.5f, 7.0f); }},
    {"removeLevel", [](C c, Bytes&) { c.removePointsByYLevel(3.0f, false); }},
    {"removeAbove", [](C c, Bytes&) { c.removePointsByYLevel(3.0f, true); }},
    {"removeSparse", [](C c, Bytes&) { c.calcRange(), c.cubicFilter(2.0f, 5); }},
    {"removeIsolated", [](C c, Bytes&) { c.calcRange(), c.sphericalFilter2(3.0f, 0.7f, 3); }},
    {"removeIsolatedInCubes", [](C c, Bytes&) { c.calcRange(), c.cubicFilter2(3.0f, 0.7f, 3, false); }},
};

const Operations<Cloud> kCloudFinds = {
    {"extract",
     [](C c, Bytes& bytes) {
         Cloud out;
         c.extract(out, 1.0f, 8.0f, kNone, 4.0f, kNone, 6.0f, true);
         bytes << out << c;
     }},
    {"section",
     [](C c, Bytes& bytes) {
         Cloud out;
         c.calcSection(out, 4.0f, 0.75f);
         bytes << out;
     }},
    {"within",
     [](C c, Bytes& bytes) {
         QList<int> positions;
         c.getRangeIndeces(positions, KxPointXYZ(5, 3, 4), 4.0f);
         for (const int position : positions) {
             bytes << qint64(position);
         }
     }},
    {"wheelCircle",
     [](C c, Bytes& bytes) {
         Cloud second(c), third(c);
         second.points = second.points.mid(5, 395);
         third.shift(0.0f, 1.5f, 0.0f);
         KxCircle circle;
         METRO_calcWheel(c, second, third, circle);
         bytes << circle.x << circle.y << circle.radius;
     }},
    {"tape",
     [](C c, Bytes& bytes) {
         Cloud tape;
         c.extractInsulatingTape(tape, 2.0f, 0.3f, kNone);
         bytes << tape;
     }},
    {"topView",
     [](C c, Bytes& bytes) {
         KxProfile outline;
         outline.makeCloudTopView(c, 2.0f);
         bytes << outline;
     }},
    {"levelCounts",
     [](C c, Bytes& bytes) {
         KxLevelHistogram<KxPointXYZ> histogram;
         histogram.calcFromPointCloud(c, 0.5f);
         for (auto level = histogram.levels.cbegin(); level != histogram.levels.cend(); ++level) {
             bytes << level.key() << level.value();
         }
     }},
    {"range",
     [](C c, Bytes& bytes) {
         c.calcRange();
         bytes << c.minX << c.maxX << c.minY << c.maxY << c.minZ << c.maxZ;
     }},
};

template <typename T>
void run(const QByteArray& content, const Operations<T>& changes, const Operations<T>& finds) {
    using Point = typename decltype(T::points)::value_type;
    T input;
    input.points.resize(content.size() / qsizetype(sizeof(Point)));
    std::memcpy(static_cast<void*>(input.points.data()), content.constData(),
                size_t(input.points.size()) * sizeof(Point));
    for (const Operations<T>* operations : {&changes, &finds}) {
        for (const Operation<T>& operation : *operations) {
            T object(input);
            Bytes bytes;
            operation.work(object, bytes);
            (operations == &changes ? bytes << object : bytes).print(operation.name);
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    QFile file(QString::fromLocal8Bit(count == 3 ? arguments[2] : ""));
    if (!file.open(QIODevice::ReadOnly)) {
        return 1;
    }
    if (std::string_view(arguments[1]) == "cloud") {
        run<Cloud>(file.readAll(), kCloudChanges, kCloudFinds);
    } else {
        run<KxProfile>(file.readAll(), kProfileChanges, kProfileFinds);
    }
    return 0;
}
