// A working directory of its own for the functions that read and write relative to the current one.
#pragma once

#include "support/tempFiles.h"
#include "support/testing.h"

#include <QtCore/QDir>
#include <QtCore/QSettings>

#include <memory>

namespace testing_support {

using SettingsTable = QList<std::pair<QString, QVariant>>;

class WorkingFolder : public TempFiles {
public:
    WorkingFolder() { QDir::setCurrent(path(QStringLiteral("."))); }
    ~WorkingFolder() { QDir::setCurrent(before_); }
    Q_DISABLE_COPY_MOVE(WorkingFolder)

    /// A settings store that holds the values of a table and no others.
    std::unique_ptr<QSettings> settings(const SettingsTable& values) {
        const QString file = path("settings" + QString::number(++stores_));
        auto store = std::make_unique<QSettings>(file, QSettings::IniFormat);
        for (const auto& [key, value] : values) {
            store->setValue(key, value);
        }
        return store;
    }

private:
    QString before_ = QDir::currentPath();
    int stores_ = 0;
};

/// The bytes of a profile as a cloud section, or as a profile record.
inline QByteArray record(KxProfile& profile, bool withZ) {
    static const TempFiles files;
    KxProfileZ positioned(profile);
    return withZ ? files.bytesOf(positioned) : files.bytesOf(profile);
}

} // namespace testing_support
