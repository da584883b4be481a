// Files of a test, in a folder that goes with it.
#pragma once

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

namespace testing_support {

class TempFiles {
public:
    QString path(const QString& name) const { return folder_.filePath(name); }

    /// Writes a file and returns its path.
    QString write(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write a file of the test");
        }
        return file.fileName();
    }

    QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
    }

private:
    QTemporaryDir folder_;
};

} // namespace testing_support
