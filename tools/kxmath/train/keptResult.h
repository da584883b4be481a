// A result of a pass as it was kept, and what is beside it.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QString>

#include <optional>
#include <string>
#include <vector>

namespace kxtool {

struct KeptResult {
    std::string path;
    std::string folder; ///< that holds it
    std::string text;
    KxInspect::PassResult pass;

    /// The recordings that were given, in the order in which the result lists them. Throws an Error when there are fewer than
    /// two, or one has no name of a file.
    std::vector<const KxInspect::PassSide*> recordings() const;
};

/// @param name of the file, or of the folder that holds it as result.json. Throws an Error for what is no result
KeptResult readResult(const QString& name);

/// A file of settings of a result: what it was, and its copy beside the result.
struct SettingsCopy {
    QString what; ///< "the settings"
    std::string name; ///< of the copy
    bool isUsed;
    std::optional<KxInspect::InputFile> identity;

    std::string path(const KeptResult& kept) const { return kept.folder + '/' + name; }
};

struct SettingsCopies {
    SettingsCopy station, defects, consist, limits, contour;

    std::vector<const SettingsCopy*> all() const { return {&station, &defects, &consist, &limits, &contour}; }
};

SettingsCopies copiesOf(const KxInspect::PassResult& pass);

/// What is wrong with the copy of settings beside the result; empty when it is what was measured with.
QString whyNotThose(const SettingsCopy& copy, const KeptResult& kept);

/// What is wrong with the profiles beside the result; empty when they are what it says.
struct ProfilesFault {
    bool isMissing = false;
    QString text = {};
};
ProfilesFault faultOfProfiles(const KeptResult& kept);

/// "800 bytes and the SHA-256 ..."
QString described(const KxInspect::InputFile& file);

} // namespace kxtool
