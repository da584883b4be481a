// The settings file of a simulated pass.
#include "simulator/settingsFile.h"

#include "simulator/calibration.h"

#include <KxInspect/AtomicFile.h>

#include <QtCore/QByteArray>
#include <QtCore/QMap>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace kxsim {

namespace {

/// How many profiles show a wheel: while its flange is below the upper end of the laser line on the back face.
int countProfilesOfWheel(const Parameters& p, const Pose& pose) {
    const SensorLine face = traceOfPlane(pose, p.backToBack / 2.0);
    double top = -1e9;
    for (const double share : {-1.0, 1.0}) {
        const double angle = share * p.halfAngle * std::numbers::pi / 180.0;
        const double x = face.b * std::tan(angle) / (1.0 - face.k * std::tan(angle));
        top = std::max(top, pose.toTrack(x, face.at(x)).z);
    }
    constexpr double kFlangeHeight = 28.0;
    const double tread = (p.diameter - p.wear) / 2.0;
    const double flange = tread + kFlangeHeight;
    const double down = tread - top;
    const double half = std::sqrt(std::max(0.0, flange * flange - down * down));
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
    writeLine("k2", "b2", lines.reference);
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
    const int profiles = static_cast<int>(kShareOfWheel * countProfilesOfWheel(p, makePose(p, 1)));
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
    const QByteArray text = textOf("General", general) + '\n' + textOf("SENSOR1", sensorSection(p, 1, band)) + '\n' +
                            textOf("SENSOR2", sensorSection(p, 2, band));
    KxInspect::writeWholeFile({{}, fileName.toStdString(), {}}, text.toStdString());
}

} // namespace kxsim
