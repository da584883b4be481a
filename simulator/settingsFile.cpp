// The settings file of a simulated pass.
#include "simulator/settingsFile.h"

#include "simulator/calibration.h"
#include "simulator/wheelContour.h"

#include <KxInspect/AtomicFile.h>

#include <QtCore/QByteArray>
#include <QtCore/QMap>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace kxsim {

namespace {

/// How many profiles show a wheel to a sensor: while its flange, from outside its rim, is below the upper end of the laser
/// line on its back face, or on its outer one.
int countProfilesOfWheel(const Parameters& p, int sensor) {
    const Pose pose = makePose(p, sensor);
    const double behind = placeOf(p, sensor) == SensorPlace::Field ? kRimWidth : 0.0;
    const SensorLine face = traceOfPlane(pose, sideOf(p, sensor) * (p.backToBack / 2.0 + behind));
    constexpr double kFlangeHeight = 28.0; // S1002, above the tape circle
    constexpr double kOuterEdge = -7.6;
    double top = -1e9;
    for (const double share : {-1.0, 1.0}) {
        const double angle = share * p.halfAngle * std::numbers::pi / 180.0;
        const double x = face.b * std::tan(angle) / (1.0 - face.k * std::tan(angle));
        top = std::max(top, pose.toTrack(x, face.at(x)).z);
    }
    const double height = placeOf(p, sensor) == SensorPlace::Field ? kOuterEdge : kFlangeHeight;
    const double tread = (p.diameter - p.wear) / 2.0;
    const double lowest = tread + height;
    const double down = tread - top;
    const double half = std::sqrt(std::max(0.0, lowest * lowest - down * down));
    return static_cast<int>(2.0 * half / (1000.0 * p.speed / p.rate));
}

/// The values of a section, in the order of their keys.
using Section = QMap<QByteArray, QByteArray>;

Section sensorSection(const Parameters& p, int sensor, DefectBand band) {
    Section section;
    // Settings are read as floats, which are short and exact as text.
    const auto write = [&](const char* key, double value) {
        section[key] = QByteArray::number(static_cast<double>(static_cast<float>(value)), 'g', 9);
    };
    const auto writeLine = [&](const char* slopeKey, const char* interceptKey, const SensorLine& line) {
        write(slopeKey, line.k);
        write(interceptKey, line.b);
    };
    const CalibratedLines lines = calibrate(p, sensor);
    write("SN", serialOf(p, sensor));
    if (placeOf(p, sensor) == SensorPlace::Inner) {
        writeLine("k2", "b2", lines.reference);
    }
    writeLine("level_k", "level_b", band == DefectBand::BackFace ? lines.level : lines.treadLevel);
    writeLine("lowlevel_k", "lowlevel_b", lines.low);
    writeLine("lowLevel_k", "lowLevel_b", band == DefectBand::BackFace ? lines.low : lines.treadLow);
    if (band == DefectBand::BackFace) {
        const Pose pose = makePose(p, sensor);
        for (const auto& [key, value] : {std::pair{"x", pose.origin.x},
                                         {"y", pose.origin.y},
                                         {"z", pose.origin.z},
                                         {"alpha", pose.alpha},
                                         {"beta", pose.beta},
                                         {"gamma", pose.gamma}}) {
            write(key, value);
        }
    }
    section["side"] = sideOf(p, sensor) > 0 ? "left" : "right";
    write("wndSize", 3);
    write("higherPoinInWnd", 0);
    write("maxdY", 1.5);
    write("minPointsIn", std::max(1, p.points / 20));
    write("maxCorr", 1);
    write("parts", 0);
    write("maxDist", 10);
    return section;
}

QByteArray textOf(const QByteArray& name, const Section& section) {
    QByteArray text = '[' + name + "]\n";
    for (auto at = section.cbegin(); at != section.cend(); ++at) {
        text += at.key() + '=' + at.value() + '\n';
    }
    return text;
}

} // namespace

void writeSettings(const QString& fileName, const Parameters& p, DefectBand band) {
    // Passing objects shorter than this share of a wheel are not wheels.
    constexpr double kShareOfWheel = 0.4;
    int fewest = std::numeric_limits<int>::max();
    for (int sensor = 1; sensor <= sensorsOf(p); ++sensor) {
        fewest = std::min(fewest, countProfilesOfWheel(p, sensor));
    }
    const int profiles = static_cast<int>(kShareOfWheel * fewest);
    const Section general = {
        {"minProfsInWheel", QByteArray::number(std::max(1, profiles))},
        {"calibrLines2", QByteArray::number(p.backToBack, 'g', 9)},
        {"baseUncertainty", "0"}, // lines and base distance are those of the simulated station
        {"use", "1"},
        {"polynomDegree", "20"},
        // On treads 0.2 mm is four times the default noise, and finds features of 0.5 mm that are 2 mm wide.
        {"maxDeviation", band == DefectBand::Tread ? "0.2" : "0.3"},
        {"pointsHigher", "5"},
        {"minimalDefectsProf", "1"}};
    QByteArray text = textOf("General", general);
    for (int sensor = 1; sensor <= sensorsOf(p); ++sensor) {
        text += '\n' + textOf("SENSOR" + QByteArray::number(sensor), sensorSection(p, sensor, band));
    }
    KxInspect::writeWholeFile({{}, fileName.toStdString(), {}}, text.toStdString());
}

} // namespace kxsim
