// The folder of a pass: what it was measured from, and its result.
#include "tools/kxmath/train/passFolder.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/outputFile.h"
#include "tools/kxmath/console/printable.h"

#include <KxInspect/Recording.h>

#include <QtCore/QFile>

#include <filesystem>
#include <optional>

namespace kxtool {

namespace {

using KxInspect::PassResult;

/// Copies a file of settings, which must be what was read before.
void copyRead(const WorkFolder& folder, const QString& source, const char* name,
              const std::optional<KxInspect::InputFile>& asRead) {
    folder.copy(source, QLatin1String(name));
    if (asRead && KxInspect::identifyFile(folder.path() + '/' + name).sha256 != asRead->sha256) {
        throw CommandError{BadInput,
                           QStringLiteral("'%1' has changed since the pass was begun: measure again").arg(source)};
    }
}

void copySettings(const WorkFolder& folder, const PassFiles& files, const KxInspect::StationSettings& settings,
                  const KxInspect::PassOptions& options) {
    copyRead(folder, files.settings, kSettingsCopy, settings.source);
    if (options.defects) {
        copyRead(folder, files.defects, kDefectsCopy, options.defects->source);
    }
    if (options.consist) {
        copyRead(folder, files.consist, kConsistCopy, options.consist->source);
    }
    if (options.limits) {
        copyRead(folder, files.limits, kLimitsCopy, options.limits->source);
    }
    if (!files.contour.isEmpty()) {
        folder.copy(files.contour, fromBytes(contourCopy(toBytes(files.contour))));
    }
}

} // namespace

std::string contourCopy(const std::string& file) {
    return "contour" + std::filesystem::path(file).extension().string();
}

bool isKept(const PassResult& pass) {
    return pass.distances() > 0 || pass.hasResult();
}

QStringList PassFiles::all() const {
    QStringList files;
    for (const std::string& recording : recordings) {
        files.append(fromBytes(recording));
    }
    for (const QString* const file : {&settings, &defects, &consist, &limits, &contour}) {
        if (!file->isEmpty()) {
            files.append(*file);
        }
    }
    return files;
}

QString passFolderName(const std::vector<std::string>& recordings) {
    constexpr int kMostBytes = 90; // two of them and a number stay below what file systems allow
    const auto shortened = [](const std::string& recording) {
        QString name = QString::fromStdString(KxInspect::recordingName(recording).base);
        while (QFile::encodeName(name).size() > kMostBytes) {
            name.chop(1);
        }
        return name;
    };
    return QStringLiteral("pass-%1-%2").arg(shortened(recordings[0]), shortened(recordings[1]));
}

PassResult measureInto(const WorkFolder& folder, const PassFiles& files, const KxInspect::StationSettings& settings,
                       KxInspect::PassOptions options, const KxInspect::Progress& progress) {
    using KxInspect::PassKeep;
    copySettings(folder, files, settings, options);
    options.wheelFolder = files.keep == PassKeep::All ? folder.path() : std::string();
    options.profileFile = files.keep == PassKeep::None ? std::string() : folder.path() + '/' + kProfilesFile;
    PassResult pass = measurePass(files.recordings, settings, options, progress);
    pass.folder.clear();
    if (isKept(pass)) {
        const OutputFile json(QStringLiteral("result"), fromBytes(folder.path() + '/' + kResultFile));
        json.write(QString::fromStdString(toJson(pass)));
    }
    return pass;
}

PassResult measureInNewFolder(const QString& parent, const PassFiles& files, const KxInspect::StationSettings& settings,
                              const KxInspect::PassOptions& options, const KxInspect::Progress& progress) {
    WorkFolder folder(parent, passFolderName(files.recordings));
    PassResult pass = measureInto(folder, files, settings, options, progress);
    if (isKept(pass)) {
        folder.finish();
        pass.folder = printable(fromBytes(folder.path())).toStdString();
    }
    return pass;
}

} // namespace kxtool
