// The folder in which a pass is worked on.
#pragma once

#include <QtCore/QString>

namespace kxtool {

/// A fresh folder for what is left of a pass. Until finish() its name begins with
/// "incomplete-", so that what a killed run leaves is never taken for a result; given up, it is removed.
class WorkFolder {
public:
    /// Makes the folder inside `parent`, which is made too where it is missing. Throws a CommandError when that fails.
    WorkFolder(const QString& parent, const QString& name);
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    /// Where the folder is now, absolute.
    const QString& path() const { return path_; }

    /// Links a file into the folder; where there are no links it is copied.
    void link(const QString& source, const QString& name) const;
    /// Copies a file into the folder.
    void copy(const QString& source, const QString& name) const;

    /// Gives the folder its final name, with a number behind it where that name is taken. It then stays.
    void finish();

private:
    QString parent_;
    QString name_;
    QString path_;
    bool isFinished_ = false;
};

/// The name of the folder for a pass: "pass-NAME1-NAME2" from the names of the recordings, long ones cut.
QString passFolderName(const QString& first, const QString& second);

} // namespace kxtool
