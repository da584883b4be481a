// Files of a test, in a folder that goes with it, and a disk that is full.
#pragma once

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <csignal>

#include <sys/resource.h>

namespace testing_support {

class TempFiles {
public:
    QString path(const QString& name) const { return folder_.filePath(name); }

    /// Writes a file and returns its path.
    QString write(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        file.remove(); // a file that is replaced goes to the disk at once, which takes its time
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write a file of the test");
        }
        return file.fileName();
    }

    QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
    }

    /// What `cloud` writes to a file.
    template <typename Cloud>
    QByteArray bytesOf(Cloud& cloud) const {
        QFile::remove(path("bytes"));
        return cloud.writeToFile(path("bytes")) ? read("bytes") : QByteArray("(not written)");
    }

private:
    QTemporaryDir folder_;
};

/// While it lives, no file of this process grows beyond `size` bytes: writes fail as on a full disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t size) : onExcess_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        static_cast<void>(std::signal(SIGXFSZ, onExcess_));
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*onExcess_)(int);
    rlimit before_{};
};

} // namespace testing_support
