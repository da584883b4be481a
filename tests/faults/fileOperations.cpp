#include "states.h"

#include "support/tempFiles.h"

#include <QtCore/QFile>

namespace faults {

namespace {

/// Objects that are read and written, and files that hold them.
struct FileState {
    bool isShared = false;
    KxProfile profile;
    KxPointCloud<KxPointXYZ> cloud;
    KxProfileZ positioned;
    KxProfileZSet set;
    KxLevelHistogram<KxPointXYZ> histogram;
    std::string written;
    int number = 0;

    /// The files, written once.
    static const testing_support::TempFiles& files() {
        static const testing_support::TempFiles folder = [] {
            testing_support::TempFiles made;
            FileState state;
            state.prepare();
            state.profile.writeToFile(made.path("profile"));
            state.profile.writeToCSVFile(made.path("profile.csv"));
            state.cloud.writeToFile(made.path("cloud"));
            state.positioned.writeToFile(made.path("positioned"));
            state.set.writeToFile(made.path("set"));
            return made;
        }();
        return folder;
    }
    static QString path(const char* name) { return files().path(QString::fromLatin1(name)); }

    void prepare() {
        clear(profile);
        profile.points = wave(120);
        clear(cloud);
        cloud.points = layers(100, 4);
        clear(positioned);
        positioned.points = wave(70);
        positioned.z = 2.5f;
        set.profiles = {};
        for (int i = 0; i < 5; ++i) {
            set.profiles.append(positioned);
        }
        histogram.clear();
        histogram.calcFromPointCloud(cloud, 0.5f);
        written.clear();
        number = 0;
    }

    void addTo(Digest& digest) const {
        digest.add(profile.points);
        digest.add(cloud.points);
        digest.add(positioned);
        digest.add(set.profiles);
        digest.add(written);
        digest.add(number);
        const QByteArray bytes = files().read("out");
        digest.add(bytes.toStdString());
    }
};

/// An operation that writes the file "out".
template <typename Write>
Operation writing(const char* name, Write write) {
    return operation<FileState>(name, [write](FileState& s) { return write(s, FileState::path("out")); });
}

/// The same for an operation that does not report when it could not write.
template <typename Write>
Operation writingText(const char* name, Write write) {
    Operation operation = writing(name, write);
    operation.hidesFailedWrites = true;
    return operation;
}

/// An operation that reads a file into objects that hold something else. Reports its count by `number`.
template <typename Read>
Operation reading(const char* name, const char* file, int count, Read read) {
    return operation<FileState>(name, [read, file, count](FileState& s) {
        s.profile.points = wave(count + 1); // stays when the file cannot be opened
        s.number = read(s, FileState::path(file));
        return s.number == count;
    });
}

} // namespace

std::vector<Operation> fileOperations() {
    using S = FileState;
    return {
        reading("ReadProfile", "profile", 120, [](S& s, const QString& f) { return s.profile.readFromFile(f); }),
        reading("ReadCsv", "profile.csv", 120,
                [](S& s, const QString& f) { return s.profile.readFromCSVFile(f, 0, 1); }),
        reading("ReadCloud", "cloud", 100, [](S& s, const QString& f) { return s.cloud.readFromFile(f); }),
        reading("ReadPositioned", "positioned", 70,
                [](S& s, const QString& f) { return s.positioned.readFromFile(f); }),
        reading("ReadSet", "set", 5, [](S& s, const QString& f) { return s.set.readFromFile(f); }),
        reading("ReadSections", "profile", 1, [](S& s, const QString& f) { return s.set.readFromFile(f, 1, 2); }),
        writing("WriteProfile", [](S& s, const QString& f) { return s.profile.writeToFile(f); }),
        writingText("WriteCsv", [](S& s, const QString& f) { return s.profile.writeToCSVFile(f); }),
        writing("WriteCloud", [](S& s, const QString& f) { return s.cloud.writeToFile(f); }),
        writing("WriteXyz", [](S& s, const QString& f) { return s.cloud.compat_writeToXYZFile(f); }),
        writing("WritePositioned", [](S& s, const QString& f) { return s.positioned.writeToFile(f); }),
        writing("WriteSet", [](S& s, const QString& f) { return s.set.writeToFile(f); }),
        writingText("WriteHistogram", [](S& s, const QString& f) { return s.histogram.writeToCSV(f); }),
    };
}

} // namespace faults
