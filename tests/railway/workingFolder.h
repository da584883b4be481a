// A working directory of its own for the functions that read and write relative to the current one.
#pragma once

#include <KxMath/KxMath.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <utility>

namespace testing_support {

using SettingsTable = QList<std::pair<QString, QVariant>>;

class WorkingFolder {
public:
    WorkingFolder() : before_(QDir::currentPath()) {
        if (!folder_.isValid() || !QDir::setCurrent(folder_.path())) {
            qFatal("cannot work in a temporary folder");
        }
    }
    ~WorkingFolder() { QDir::setCurrent(before_); }
    Q_DISABLE_COPY_MOVE(WorkingFolder)

    /// A settings store that holds the values of a table and no others.
    std::unique_ptr<QSettings> settings(const SettingsTable& values) {
        const QString file = folder_.filePath(QStringLiteral("settings%1.ini").arg(++stores_));
        auto store = std::make_unique<QSettings>(file, QSettings::IniFormat);
        for (const auto& [key, value] : values) {
            store->setValue(key, value);
        }
        return store;
    }

    static void write(const QString& name, const QByteArray& bytes) {
        QFile file(name);
        file.remove(); // a file that is replaced goes to the disk at once, which takes its time
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write a file of the test");
        }
    }

    static QByteArray read(const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
    }

private:
    QString before_;
    QTemporaryDir folder_;
    int stores_ = 0;
};

/// The bytes of a profile as a cloud section, or as a profile record.
inline QByteArray record(KxMath::KxProfile& profile, bool withZ) {
    const QString name = QStringLiteral("record.tmp");
    if (withZ) {
        KxMath::KxProfileZ(profile).writeToFile(name);
    } else {
        profile.writeToFile(name);
    }
    const QByteArray bytes = WorkingFolder::read(name);
    QFile::remove(name);
    return bytes;
}

} // namespace testing_support
