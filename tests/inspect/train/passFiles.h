// A pass measured by the functions of the core, which leave files and read them again.
#pragma once

#include "railway/workingFolder.h"

#include <KxInspect/Train.h>

#include <QtCore/QDirIterator>

#include <array>
#include <map>
#include <string>
#include <vector>

namespace inspect_test {

using namespace testing_support;

/// The content of all files below a folder, by their names relative to it.
inline std::map<QString, QByteArray> filesIn(const QString& folder) {
    std::map<QString, QByteArray> files;
    QDirIterator at(folder, QDir::Files, QDirIterator::Subdirectories);
    while (at.hasNext()) {
        QFile file(at.next());
        files[QDir(folder).relativeFilePath(file.fileName())] =
            file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not readable)");
    }
    return files;
}

/// The first file that differs, with the start of both contents; empty when none does.
inline std::string differenceOf(const std::map<QString, QByteArray>& found,
                                const std::map<QString, QByteArray>& expected) {
    std::map<QString, QByteArray> all = expected;
    all.insert(found.begin(), found.end());
    const auto content = [](const std::map<QString, QByteArray>& files, const QString& name) {
        const auto file = files.find(name);
        return file != files.end() ? file->second : QByteArray("(none)");
    };
    for (const auto& [name, unused] : all) {
        const QByteArray a = content(found, name);
        const QByteArray b = content(expected, name);
        if (a != b) {
            return (name.toUtf8() + ": " + a.left(400).toPercentEncoding("\n =[]") + " instead of " +
                    b.left(400).toPercentEncoding("\n =[]"))
                .toStdString();
        }
    }
    return {};
}

/// Two recordings, a_1.bin and b_2.bin, with settings for them, in a folder of their own.
class PassFiles : public TempFiles {
public:
    static constexpr std::array<const char*, 2> kBases = {"a_1", "b_2"};

    std::array<QByteArray, 2> recordings;
    QByteArray settings;
    int mode = 0;

    std::string recording(size_t side) const { return path(QString(kBases[side]) + ".bin").toStdString(); }
    std::string settingsFile() const { return path("settings.ini").toStdString(); }

    void writeInputs() const {
        for (const size_t side : {0u, 1u}) {
            write(QString(kBases[side]) + ".bin", recordings[side]);
        }
        write("settings.ini", settings);
    }

    /// What the library makes of them, with wheel files in the folder "memory".
    KxInspect::PassResult measure(KxInspect::PassOptions options = {}) const {
        options.mode = mode;
        options.wheelFolder = path("memory").toStdString();
        return KxInspect::measurePass({recording(0), recording(1)}, KxInspect::readStationSettings(settingsFile()),
                                      options);
    }
};

/// The wheels that the core finds in these recordings, over files below the folder "files".
class FileDoor {
public:
    explicit FileDoor(const PassFiles& pass, std::initializer_list<size_t> sides = {0, 1})
        : pass_(pass), folder_(pass.path("files")), before_(QDir::currentPath()) {
        QDir().mkpath(folder_);
        QDir::setCurrent(folder_);
        for (const size_t side : sides) {
            detect(side);
        }
    }
    ~FileDoor() { QDir::setCurrent(before_); }
    Q_DISABLE_COPY_MOVE(FileDoor)

    int wheels(size_t side) const { return wheels_[side]; }

    /// All that detection leaves.
    std::map<QString, QByteArray> files() const { return filesIn(folder_); }

    /// The distances by number, as far as the core measures them.
    std::vector<float> distances() const {
        QSettings settings(pass_.path("settings.ini"), QSettings::IniFormat);
        std::vector<float> all(static_cast<size_t>(std::min(wheels_[0], wheels_[1])));
        for (size_t count = all.size();; --count) {
            if (count == 0 ||
                METRO_calcWheelsDistInTrain("a_1.bin", "b_2.bin", static_cast<int>(count), &settings, all.data())) {
                all.resize(count);
                return all;
            }
        }
    }

    /// The points of the profiles of a wheel, counted from 1.
    std::vector<Points> profiles(size_t side, int wheel) const {
        std::vector<Points> all;
        const KxRecordingName name(QString(PassFiles::kBases[side]) + ".bin");
        for (int number = 1; QFile::exists(name.wheelFile(wheel, number)); ++number) {
            KxProfile profile;
            profile.readFromFile(name.wheelFile(wheel, number));
            all.push_back(profile.points);
        }
        return all;
    }

private:
    void detect(size_t side) {
        const QString name = QString(PassFiles::kBases[side]) + ".bin";
        const QString notes = QStringLiteral("starts-%1").arg(side + 1);
        QSettings settings(pass_.path("settings.ini"), QSettings::IniFormat);
        QFile::copy(pass_.path(name), name);
        {
            QSettings starts(folder_ + '/' + notes + ".ini", QSettings::IniFormat);
            METRO_detectWheels_Test(name, &settings, pass_.mode, &wheels_[side], &starts);
        }
        QFile::rename("test.csv", notes + ".csv");
        QFile::remove(name);
    }

    const PassFiles& pass_;
    QString folder_;
    QString before_;
    std::array<int, 2> wheels_ = {-1, -1};
};

} // namespace inspect_test
