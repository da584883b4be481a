// The folder in which a command works until what it writes is whole.
#pragma once

#include "inspect/base/paths.h"
#include "tools/kxmath/console/interruption.h"

#include <QtCore/QString>

#include <optional>
#include <string>
#include <vector>

namespace kxtool {

/// A fresh folder for files that make sense together only. Until finish() its name begins with "incomplete-", so that
/// what a killed run leaves is never taken for a result; given up, it is removed. While it lives, SIGINT and SIGTERM
/// end the command at its next report of progress or when it finishes, so that the folder is removed then, too.
class WorkFolder {
public:
    /// Makes the folder inside `parent`, which is made too where it is missing. Throws a CommandError when that fails.
    WorkFolder(const QString& parent, const QString& name);
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    /// A folder whose files are for `target`: inside it where it is there, else beside it.
    static WorkFolder forTarget(const QString& target);

    /// Where the folder is now, absolute; the bytes of the system.
    const std::string& path() const { return path_; }
    /// The same as Qt reaches it until it is moved.
    const QString& qtPath() const { return qtPath_->text(); }

    /// Links a file into the folder; where there are no links it is copied.
    void link(const QString& source, const QString& name) const;
    /// Copies a file into the folder.
    void copy(const QString& source, const QString& name) const;

    /// Gives the folder its final name, with a number behind it where that name is taken. It then stays.
    void finish();

    /// Gives the folder exactly its final name by one rename, after which it stays. What was written is on the disk then,
    /// also if the computer stops. @return false when something of that name is there; the folder is then not finished
    bool finishUnlessTaken();

    /// Makes the folder `target`, or puts its files into `target` where that is there: all other files of it stay, those
    /// of the same name are replaced, and `last` goes away before the first of them and comes after all others.
    void finishAs(const QString& target, const QString& last = {});

private:
    void moveInto(const std::string& target, const std::string& last);

    Interruption interruption_;
    std::string parent_;
    std::string name_;
    std::string path_;
    std::optional<KxInspect::detail::QtPath> qtPath_;
    bool isFinished_ = false;
};

/// Removes a file, a link, or a folder with what is in it. What cannot be removed stays.
void removeAll(const std::string& path);

/// What is in a folder, without "." and "..". Throws a CommandError when it cannot be read.
std::vector<std::string> namesIn(const std::string& path);

} // namespace kxtool
