// Wheels in recordings of 2000 profiles. The functions work in the current directory, which is one in memory.
#include "railway/jobs.h"

#include "simulator/settingsFile.h"
#include "simulator/simulation.h"

#include <KxMath/KxProfileZ.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <utility>

namespace kxbench {

namespace {

constexpr int kMode = 3; // between two lines
const char* const kLeft = "train_101.bin";
const char* const kRight = "train_102.bin";

/// A file of a recording or of a wheel.
struct File {
    QByteArray name;
    QByteArray bytes;
};

/// A simulated pass in a directory in memory, which is removed at the end of the program.
class Pass {
public:
    Pass() : folder_(memoryFile("pass-")) {
        kxsim::Parameters parameters;
        parameters.cars = 3;
        kxsim::simulatePass(parameters, folder_.path(), [](double) {});
        for (const char* const name : {kLeft, kRight}) {
            const QString recording = folder_.filePath(QLatin1String(name));
            KxMath::KxProfileZSet set;
            set.readFromFile(recording);
            set.profiles.resize(kRows);
            set.writeToFile(recording);
        }
        settings = std::make_unique<QSettings>(folder_.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    }

    QString path() const { return folder_.path(); }

    std::unique_ptr<QSettings> settings;

private:
    QTemporaryDir folder_;
};

Pass& thePass() {
    static Pass pass;
    return pass;
}

/// Works in the directory of the pass.
struct TrainJob {
    TrainJob() { QDir::setCurrent(thePass().path()); }
    ~TrainJob() { QDir::setCurrent(before); }
    Q_DISABLE_COPY_MOVE(TrainJob)

    QString before = QDir::currentPath();
    int wheels = 0;
    std::vector<File> files;
    double value = 0.0;
};

void removeWheels(const char* recording) {
    QDir(QString::fromLatin1(recording).chopped(4)).removeRecursively();
}

int detect(const char* recording) {
    int wheels = 0;
    KxMath::METRO_detectWheels(QString::fromLatin1(recording), thePass().settings.get(), kMode, &wheels);
    return wheels;
}

/// The wheel files of a recording.
std::vector<File> wheelFiles(const char* recording) {
    std::vector<File> files;
    const QDir dir(QString::fromLatin1(recording).chopped(4));
    for (const QString& name : dir.entryList(QDir::Files, QDir::Name)) {
        QFile file(dir.filePath(name));
        file.open(QIODevice::ReadOnly);
        files.push_back({file.fileName().toLocal8Bit(), file.readAll()});
    }
    return files;
}

Digest digestFiles(TrainJob&) {
    BitDigest digest;
    for (const File& file : wheelFiles(kLeft)) {
        digest.add(static_cast<int>(file.bytes.size()));
        digest.add(static_cast<int>(qHash(file.bytes)));
    }
    return resultOf(digest);
}

void readFile(const char* name, char* bytes, std::size_t size) {
    const int file = open(name, O_RDONLY);
    while (read(file, bytes, size) > 0) {
    }
    close(file);
}

void addDetection() {
    add<TrainJob>(
        "wheel detection", kRows, "kx", 1, [](TrainJob&) { removeWheels(kLeft); },
        [](TrainJob& j) { j.wheels = detect(kLeft); }, digestFiles);
    add<TrainJob>(
        "wheel detection", kRows, "limit_one_read_and_writes", 1,
        [](TrainJob& j) {
            static const std::vector<File> files = [] {
                detect(kLeft);
                return wheelFiles(kLeft);
            }();
            removeWheels(kLeft);
            j.files = files;
        },
        [](TrainJob& j) {
            struct stat info;
            stat(kLeft, &info);
            const auto size = static_cast<std::size_t>(info.st_size);
            const auto bytes = std::make_unique_for_overwrite<char[]>(size);
            readFile(kLeft, bytes.get(), size);
            QDir().mkdir(QString::fromLatin1(kLeft).chopped(4));
            for (const File& wheel : j.files) {
                const int file = open(wheel.name.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
                j.value += static_cast<double>(
                    write(file, wheel.bytes.constData(), static_cast<std::size_t>(wheel.bytes.size())));
                close(file);
            }
        },
        digestFiles);
}

void addDistances() {
    const auto detectBoth = [](TrainJob& j) {
        removeWheels(kLeft);
        removeWheels(kRight);
        j.wheels = std::min(detect(kLeft), detect(kRight));
    };
    add<TrainJob>(
        "wheel distances", kRows, "kx", 1, detectBoth,
        [](TrainJob& j) {
            std::vector<float> distances(static_cast<std::size_t>(j.wheels));
            KxMath::METRO_calcWheelsDistInTrain(QString::fromLatin1(kLeft), QString::fromLatin1(kRight), j.wheels,
                                                thePass().settings.get(), distances.data());
        },
        nothing<TrainJob>);
    add<TrainJob>(
        "wheel distances", kRows, "limit_reads", 1,
        [=](TrainJob& j) {
            detectBoth(j);
            for (const char* const recording : {kLeft, kRight}) {
                for (File& file : wheelFiles(recording)) {
                    j.files.push_back({file.name, {}});
                }
            }
        },
        [](TrainJob& j) {
            char bytes[65536];
            for (const File& file : j.files) {
                readFile(file.name.constData(), bytes, sizeof(bytes));
            }
        },
        nothing<TrainJob>);
}

[[maybe_unused]] const bool isRegistered = [] {
    addDetection();
    addDistances();
    return true;
}();

} // namespace

} // namespace kxbench
