// The inputs of a result that is measured again.
#pragma once

#include "tools/kxmath/console/workFolder.h"
#include "tools/kxmath/train/fileSearch.h"
#include "tools/kxmath/train/keptResult.h"
#include "tools/kxmath/train/passFolder.h"

#include <KxInspect/Progress.h>

#include <QtCore/QStringList>

#include <string>
#include <vector>

namespace kxtool {

/// The inputs of a result: where its recordings are now, and what is wrong.
struct FoundInputs {
    std::vector<WantedFile> recordings;
    QStringList problems;
};

/// Looks for the recordings of a result below a folder, and at the settings beside it. Throws an Error when the folder cannot
/// be read.
FoundInputs findInputs(const KeptResult& kept, const QString& folder, const KxInspect::Progress& progress);

/// The inputs under the names that they had, which are part of the result, in a folder for temporary files.
class NamedInputs {
public:
    /// Throws a CommandError when the folder cannot be made.
    NamedInputs(const KeptResult& kept, const FoundInputs& inputs);

    /// A folder that goes away with this object.
    QString path() const;

    PassFiles files;

private:
    void makeFolder(const std::string& name) const;
    void link(const std::string& from, const std::string& name) const;
    QString named(const SettingsCopy& copy, const KeptResult& kept) const;

    WorkFolder folder_;
};

} // namespace kxtool
