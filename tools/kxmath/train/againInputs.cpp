// The inputs of a result that is measured again.
#include "tools/kxmath/train/againInputs.h"

#include "inspect/base/paths.h"
#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"

#include <KxInspect/Error.h>

#include <filesystem>
#include <system_error>

namespace kxtool {

namespace {

namespace fs = std::filesystem;
using KxInspect::PassSide;
using KxInspect::detail::toQt;

QString whyNotFound(const WantedFile& file, const QString& folder) {
    const QString name = QString::fromStdString(file.identity.name);
    if (file.namesake.empty()) {
        return QStringLiteral("recording '%1' is missing: nothing below '%2' has %3")
            .arg(name, folder, described(file.identity));
    }
    try {
        return QStringLiteral("recording '%1' has changed: '%2' has %3, the result was measured with %4")
            .arg(name, toQt(file.namesake), described(KxInspect::identifyFile(file.namesake)),
                 described(file.identity));
    } catch (const KxInspect::Error& error) {
        return QStringLiteral("recording '%1' is missing: '%2' %3")
            .arg(name, toQt(file.namesake), QString::fromStdString(error.reason()));
    }
}

QString temporaryFolder() {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    if (error) {
        throw CommandError{
            OutputFailed,
            QStringLiteral("no folder for temporary files: %1").arg(QString::fromStdString(error.message()))};
    }
    return fromBytes(folder.string());
}

} // namespace

FoundInputs findInputs(const KeptResult& kept, const QString& folder, const KxInspect::Progress& progress) {
    FoundInputs inputs;
    const SettingsCopies copies = copiesOf(kept.pass);
    for (const SettingsCopy* const copy : copies.all()) {
        if (const QString why = whyNotThose(*copy, kept); !why.isEmpty()) {
            inputs.problems.append(why);
        }
    }
    for (const PassSide* const side : kept.recordings()) {
        // One that could not be read has no hash; it is missing again.
        if (!side->sha256.empty()) {
            inputs.recordings.push_back({{side->file, side->bytes, side->sha256}});
        }
    }
    const SearchedFolders searched = findFiles(toBytes(folder), inputs.recordings, progress);
    bool isAnyMissing = false;
    for (const WantedFile& file : inputs.recordings) {
        if (file.path.empty()) {
            inputs.problems.append(whyNotFound(file, folder));
            isAnyMissing = true;
        }
    }
    for (const std::string& unreadable : searched.unreadable) {
        if (isAnyMissing) {
            inputs.problems.append(QStringLiteral("could not be searched: ") + QString::fromStdString(unreadable));
        }
    }
    return inputs;
}

NamedInputs::NamedInputs(const KeptResult& kept, const FoundInputs& inputs)
    : folder_(temporaryFolder(), QStringLiteral("kxmath-again")) {
    files.keep = kept.pass.kept.keep;
    makeFolder("recordings");
    for (const WantedFile& file : inputs.recordings) {
        link(file.path, "recordings/" + file.identity.name);
    }
    for (const PassSide* const side : kept.recordings()) {
        files.recordings.push_back(folder_.path() + "/recordings/" + side->file);
    }
    const SettingsCopies copies = copiesOf(kept.pass);
    files.settings = named(copies.station, kept);
    files.defects = named(copies.defects, kept);
    files.consist = named(copies.consist, kept);
    files.limits = named(copies.limits, kept);
    files.contour = named(copies.contour, kept);
}

QString NamedInputs::path() const {
    return fromBytes(folder_.path());
}

void NamedInputs::makeFolder(const std::string& name) const {
    std::error_code error;
    if (!fs::create_directory(folder_.path() + '/' + name, error)) {
        throw CommandError{OutputFailed, QStringLiteral("cannot write in folder '%1': %2")
                                             .arg(fromBytes(folder_.path()), QString::fromStdString(error.message()))};
    }
}

void NamedInputs::link(const std::string& from, const std::string& name) const {
    folder_.link(fromBytes(from), fromBytes(name));
}

QString NamedInputs::named(const SettingsCopy& copy, const KeptResult& kept) const {
    if (!copy.isUsed) {
        return {};
    }
    makeFolder(copy.name); // two of them may have had one name
    const std::string name = copy.name + '/' + copy.identity->name;
    link(copy.path(kept), name);
    return fromBytes(folder_.path() + '/' + name);
}

} // namespace kxtool
