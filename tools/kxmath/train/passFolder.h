// The folder of a pass: what it was measured from, and its result.
#pragma once

#include "tools/kxmath/console/workFolder.h"

#include <KxInspect/Train.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <vector>

namespace kxtool {

/// The files of a pass: what it is measured from, and what is kept of it.
struct PassFiles {
    std::vector<std::string> recordings; ///< two or more; of more than two some may be missing
    QString settings;
    QString defects; ///< settings of the judgement of treads, empty for none
    QString consist; ///< list of vehicles, empty for none
    QString limits; ///< file of limits, empty for none
    QString contour = {}; ///< nominal cross-section, empty for none
    KxInspect::PassKeep keep = KxInspect::PassKeep::Chosen; ///< of the profiles

    /// All that it is measured from.
    QStringList all() const;
};

/// The name of the folder for a pass: "pass-NAME1-NAME2" from the names of the first two recordings, long ones cut.
QString passFolderName(const std::vector<std::string>& recordings);

/// Whether a pass has a result for which its folder stays.
bool isKept(const KxInspect::PassResult& pass);

/// @{ The names in the folder of a pass.
inline constexpr const char* kResultFile = "result.json";
inline constexpr const char* kProfilesFile = "profiles.bin";
inline constexpr const char* kSettingsCopy = "settings.ini";
inline constexpr const char* kDefectsCopy = "defects.ini";
inline constexpr const char* kConsistCopy = "consist.csv";
inline constexpr const char* kLimitsCopy = "limits.ini";
/// @}
/// The name of the copy of a nominal contour, with the ending of its own, which tells how it is read.
std::string contourCopy(const std::string& file);

/// Measures a pass and leaves in `folder` what belongs in the folder of a pass, result.json last: no links, nothing that
/// names another folder. A pass without a result leaves no result.json. The folder is not finished. Throws an Error, a
/// CommandError or Interrupted.
/// @param options what `files` hold is read into it already; what it says of files to write does not count
/// @return the result; PassResult::folder is empty
KxInspect::PassResult measureInto(const WorkFolder& folder, const PassFiles& files,
                                  const KxInspect::StationSettings& settings, KxInspect::PassOptions options,
                                  const KxInspect::Progress& progress);

/// The same in a fresh folder inside `parent`, which gets its final name, passFolderName(), once it is whole. A pass
/// without a result leaves no folder.
/// @return the result; PassResult::folder is where it is, empty without one
KxInspect::PassResult measureInNewFolder(const QString& parent, const PassFiles& files,
                                         const KxInspect::StationSettings& settings,
                                         const KxInspect::PassOptions& options, const KxInspect::Progress& progress);

} // namespace kxtool
