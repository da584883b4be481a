// The folder of a pass: what it was measured from, and its result.
#include "tools/kxmath/train/passFolder.h"

#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/outputFile.h"
#include "tools/kxmath/console/printable.h"

#include <KxInspect/Recording.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <filesystem>
#include <system_error>

namespace kxtool {

namespace {

using KxInspect::PassResult;

void linkRecordings(const WorkFolder& folder, const std::vector<std::string>& recordings) {
    for (const std::string& recording : recordings) {
        // Of several one may be missing; what cannot be looked at may still be there.
        std::error_code ignored;
        if (std::filesystem::status(recording, ignored).type() != std::filesystem::file_type::not_found) {
            folder.link(fromBytes(recording), QString::fromStdString(KxInspect::recordingName(recording).file));
        }
    }
}

void copySettings(const WorkFolder& folder, const PassFiles& files) {
    folder.copy(files.settings, QStringLiteral("settings.ini"));
    if (!files.defects.isEmpty()) {
        folder.copy(files.defects, QStringLiteral("defects.ini"));
    }
    if (!files.consist.isEmpty()) {
        folder.copy(files.consist, QStringLiteral("consist.csv"));
    }
    if (!files.limits.isEmpty()) {
        folder.copy(files.limits, QStringLiteral("limits.ini"));
    }
    if (!files.contour.isEmpty()) {
        const QString suffix = QFileInfo(files.contour).suffix(); // tells how it is read
        folder.copy(files.contour, QStringLiteral("contour") + (suffix.isEmpty() ? suffix : QLatin1Char('.') + suffix));
    }
}

bool hasResult(const PassResult& pass) {
    return pass.distances() > 0 || pass.hasResult();
}

} // namespace

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
    linkRecordings(folder, files.recordings);
    copySettings(folder, files);
    options.wheelFolder = folder.path();
    PassResult pass = measurePass(files.recordings, settings, options, progress);
    pass.folder.clear();
    if (hasResult(pass)) {
        const OutputFile json(QStringLiteral("result"), fromBytes(folder.path() + "/result.json"));
        json.write(QString::fromStdString(toJson(pass)));
    }
    return pass;
}

PassResult measureInNewFolder(const QString& parent, const PassFiles& files, const KxInspect::StationSettings& settings,
                              const KxInspect::PassOptions& options, const KxInspect::Progress& progress) {
    WorkFolder folder(parent, passFolderName(files.recordings));
    PassResult pass = measureInto(folder, files, settings, options, progress);
    if (hasResult(pass)) {
        folder.finish();
        pass.folder = printable(fromBytes(folder.path())).toStdString();
    }
    return pass;
}

} // namespace kxtool
