// Reads which sensors a simulated station has.
#include "simulator/layout.h"

#include <KxInspect/Error.h>

#include <QtCore/QFile>
#include <QtCore/QMap>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace kxsim {

namespace {

/// A value with the line that gives it.
struct Entry {
    QString text;
    int line = 0;
};

/// A number that a layout may hold, and its range.
struct NumberKey {
    const char* name;
    double min;
    double max;
};

constexpr double kFarthest = 20000.0; // mm
constexpr NumberKey kSerialKey = {"SN", 1.0, 1e9};
constexpr NumberKey kAlongKey = {"along", -kFarthest, kFarthest};
constexpr std::array kPoseKeys = {NumberKey{"x", -kFarthest, kFarthest}, NumberKey{"y", -kFarthest, kFarthest},
                                  NumberKey{"z", -kFarthest, kFarthest}, NumberKey{"alpha", -360.0, 360.0},
                                  NumberKey{"beta", -360.0, 360.0},      NumberKey{"gamma", -360.0, 360.0}};
constexpr std::array kSides = {"left", "right"};
constexpr std::array kPlaces = {"inner", "field"};

/// A layout while it is read.
class LayoutText {
public:
    explicit LayoutText(const std::string& path) : path_(path) {}

    std::vector<LayoutSensor> read() {
        readLines();
        std::vector<LayoutSensor> sensors;
        for (number_ = 1; number_ <= sections_; ++number_) {
            sensors.push_back(readSensor());
            const auto isSame = [&](const LayoutSensor& other) { return other.serial == sensors.back().serial; };
            if (std::any_of(sensors.begin(), sensors.end() - 1, isSame)) {
                failAt(entries_[name("SN")], QStringLiteral("gives a serial number for the second time"));
            }
        }
        return sensors;
    }

private:
    [[noreturn]] void fail(KxInspect::ErrorKind kind, const QString& reason) const {
        throw KxInspect::Error(kind, {"layout", path_, {}}, reason.toStdString());
    }

    [[noreturn]] void failAt(const Entry& entry, const QString& reason) const {
        fail(KxInspect::ErrorKind::Unsuitable, QStringLiteral("line %1 %2").arg(entry.line).arg(reason));
    }

    QString name(const char* key) const { return QStringLiteral("SENSOR%1/%2").arg(number_).arg(QLatin1String(key)); }

    void readLines() {
        constexpr qint64 kLongest = 1 << 20; // bytes; 49 sensors take less than a hundredth
        QFile file(QString::fromStdString(path_));
        if (!file.exists()) {
            fail(KxInspect::ErrorKind::NotFound, QStringLiteral("does not exist"));
        }
        if (!file.open(QIODevice::ReadOnly)) {
            fail(KxInspect::ErrorKind::Unreadable, QStringLiteral("cannot be read: ") + file.errorString());
        }
        const QByteArray text = file.read(kLongest + 1);
        if (file.error() != QFileDevice::NoError) {
            fail(KxInspect::ErrorKind::Unreadable, QStringLiteral("cannot be read: ") + file.errorString());
        }
        if (text.size() > kLongest) {
            fail(KxInspect::ErrorKind::Unsuitable, QStringLiteral("is too large for a layout"));
        }
        int line = 0;
        for (const QByteArray& bytes : text.split('\n')) {
            readLine({QString::fromUtf8(bytes).trimmed(), ++line});
        }
        if (sections_ == 0) {
            fail(KxInspect::ErrorKind::Unsuitable, QStringLiteral("holds no section [SENSOR1]"));
        }
    }

    void readLine(const Entry& entry) {
        const QString& text = entry.text;
        if (text.isEmpty() || text.startsWith(QLatin1Char(';')) || text.startsWith(QLatin1Char('#'))) {
            return;
        }
        if (text.startsWith(QLatin1Char('['))) {
            const QString expected = QStringLiteral("[SENSOR%1]").arg(++sections_);
            if (text != expected || sections_ > kMostSensors) {
                failAt(entry, QStringLiteral("has '%1' where %2 is due; a layout has the sections [SENSOR1] to "
                                             "[SENSOR%3] without gaps")
                                  .arg(text, expected)
                                  .arg(kMostSensors));
            }
            return;
        }
        const qsizetype equals = text.indexOf(QLatin1Char('='));
        const QString key = text.left(std::max<qsizetype>(equals, 0)).trimmed();
        number_ = sections_;
        if (equals < 0 || sections_ == 0 || !isKnown(key)) {
            failAt(entry,
                   QStringLiteral("has '%1'; a sensor has SN, side, place, along, or x, y, z, alpha, beta, gamma")
                       .arg(text));
        }
        const QString whole = QStringLiteral("SENSOR%1/%2").arg(sections_).arg(key);
        if (entries_.contains(whole)) {
            failAt(entry, QStringLiteral("gives '%1' for the second time").arg(whole));
        }
        entries_[whole] = {text.mid(equals + 1).trimmed(), entry.line};
    }

    static bool isKnown(const QString& key) {
        const auto isKey = [&](const NumberKey& known) { return key == QLatin1String(known.name); };
        return key == QLatin1String("side") || key == QLatin1String("place") || isKey(kSerialKey) || isKey(kAlongKey) ||
               std::any_of(kPoseKeys.begin(), kPoseKeys.end(), isKey);
    }

    const Entry& need(const char* key) {
        const auto found = entries_.constFind(name(key));
        if (found == entries_.constEnd()) {
            fail(KxInspect::ErrorKind::Unsuitable, QStringLiteral("lacks the key '%1'").arg(name(key)));
        }
        return *found;
    }

    double number(const NumberKey& key) {
        const Entry& entry = need(key.name);
        bool isNumber = false;
        const double value = entry.text.toDouble(&isNumber);
        if (!isNumber || !(value >= key.min && value <= key.max)) {
            failAt(entry, QStringLiteral("needs a number from %1 to %2 for '%3', got '%4'")
                              .arg(key.min)
                              .arg(key.max)
                              .arg(name(key.name), entry.text));
        }
        return value;
    }

    bool isFirst(const char* key, std::span<const char* const, 2> words) {
        const Entry& entry = need(key);
        for (const char* const word : words) {
            if (entry.text == QLatin1String(word)) {
                return word == words.front();
            }
        }
        failAt(entry, QStringLiteral("needs %1 or %2 for '%3', got '%4'")
                          .arg(QLatin1String(words[0]), QLatin1String(words[1]), name(key), entry.text));
    }

    std::optional<Pose> readPose() {
        const bool hasPose = std::any_of(kPoseKeys.begin(), kPoseKeys.end(),
                                         [&](const NumberKey& key) { return entries_.contains(name(key.name)); });
        if (!hasPose) {
            return {};
        }
        if (entries_.contains(name("along"))) {
            failAt(
                entries_[name("along")],
                QStringLiteral("moves the usual pose, but '%1' is given its own").arg(name("x").section(u'/', 0, 0)));
        }
        std::array<double, kPoseKeys.size()> v{};
        std::transform(kPoseKeys.begin(), kPoseKeys.end(), v.begin(),
                       [&](const NumberKey& key) { return number(key); });
        return Pose{{v[0], v[1], v[2]}, v[3], v[4], v[5]};
    }

    LayoutSensor readSensor() {
        LayoutSensor sensor;
        const double serial = number(kSerialKey);
        if (serial != std::floor(serial)) {
            failAt(need("SN"), QStringLiteral("needs a whole number for '%1'").arg(name("SN")));
        }
        sensor.serial = static_cast<int>(serial);
        sensor.isLeft = isFirst("side", kSides);
        sensor.place = isFirst("place", kPlaces) ? SensorPlace::Inner : SensorPlace::Field;
        sensor.pose = readPose();
        sensor.along = entries_.contains(name("along")) ? number(kAlongKey) : 0.0;
        return sensor;
    }

    std::string path_;
    int sections_ = 0;
    int number_ = 0; ///< of the sensor that is read
    QMap<QString, Entry> entries_;
};

} // namespace

std::vector<LayoutSensor> readLayout(const std::string& path) {
    return LayoutText(path).read();
}

} // namespace kxsim
