// A result of a pass as it was kept, and what is beside it.
#include "tools/kxmath/train/keptResult.h"

#include "inspect/base/paths.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/train/passFolder.h"

#include <KxInspect/Error.h>

#include <QtCore/QFile>

#include <filesystem>
#include <system_error>

namespace kxtool {

namespace {

namespace fs = std::filesystem;
using KxInspect::ErrorKind;
using KxInspect::InputFile;
using KxInspect::PassResult;
using KxInspect::PassSide;
using KxInspect::detail::QtPath;
using KxInspect::detail::toQt;

std::string contentOf(const std::string& path) {
    const QtPath where(path);
    QFile file(where.text());
    QByteArray content;
    const bool isRead = file.open(QIODevice::ReadOnly);
    if (isRead) {
        content = file.readAll();
    }
    if (!isRead || file.error() != QFileDevice::NoError || content.size() < file.size()) {
        throw KxInspect::Error(file.exists() ? ErrorKind::Unreadable : ErrorKind::NotFound, {"result", path, {}},
                               "cannot be read: " + file.errorString().toStdString());
    }
    return content.toStdString();
}

/// Whether a name may be that of a file in a folder.
bool isFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

} // namespace

std::vector<const PassSide*> KeptResult::recordings() const {
    std::vector<const PassSide*> given;
    for (const auto* const list : {&pass.sides, &pass.further}) {
        for (const PassSide& side : *list) {
            if (isFileName(side.file)) {
                given.push_back(&side);
            } else if (!side.file.empty()) {
                throw KxInspect::Error(ErrorKind::Unsuitable, {"result", path, {}},
                                       "names a recording '" + side.file + "', which is no name of a file");
            }
        }
    }
    if (given.size() < 2) {
        throw KxInspect::Error(ErrorKind::Unsuitable, {"result", path, {}}, "names fewer than two recordings");
    }
    return given;
}

KeptResult readResult(const QString& name) {
    std::error_code ignored;
    fs::path path(toBytes(name));
    if (fs::is_directory(path, ignored)) {
        path /= kResultFile;
    }
    KeptResult kept{path.string(), path.has_parent_path() ? path.parent_path().string() : ".", contentOf(path), {}};
    try {
        kept.pass = KxInspect::passFromJson(kept.text);
    } catch (const KxInspect::Error& error) {
        throw KxInspect::Error(error.kind(), {"result", kept.path, error.source().key}, error.reason(), error.place());
    }
    return kept;
}

SettingsCopies copiesOf(const PassResult& pass) {
    const KxInspect::PassIdentity& identity = pass.identity;
    return {{QStringLiteral("the settings"), kSettingsCopy, true, identity.settings.file},
            {QStringLiteral("the settings for defects"), kDefectsCopy, pass.defectLimits.has_value(),
             identity.defects ? identity.defects->file : std::nullopt},
            {QStringLiteral("the list of vehicles"), kConsistCopy, pass.train.isListed, identity.consist},
            {QStringLiteral("the limits"), kLimitsCopy, pass.assessment.has_value(), identity.limits},
            {QStringLiteral("the points of the nominal contour"),
             contourCopy(pass.contour ? pass.contour->file : std::string()), pass.contour.has_value(),
             identity.contour}};
}

QString described(const InputFile& file) {
    return QStringLiteral("%1 bytes and the SHA-256 %2").arg(file.bytes).arg(QString::fromStdString(file.sha256));
}

QString whyNotThose(const SettingsCopy& copy, const KeptResult& kept) {
    if (!copy.isUsed) {
        return {};
    }
    if (!copy.identity || !isFileName(copy.identity->name)) {
        return QStringLiteral("the result does not name the file of %1").arg(copy.what);
    }
    const std::string path = copy.path(kept);
    try {
        const InputFile found = KxInspect::identifyFile(path);
        if (found.sha256 == copy.identity->sha256) {
            return {};
        }
        return QStringLiteral("%1 have changed: '%2' has %3, the result was measured with %4")
            .arg(copy.what, toQt(path), described(found), described(*copy.identity));
    } catch (const KxInspect::Error& error) {
        return QStringLiteral("%1 beside the result, '%2', %3")
            .arg(copy.what, toQt(path), QString::fromStdString(error.reason()));
    }
}

ProfilesFault faultOfProfiles(const KeptResult& kept) {
    if (!kept.pass.kept.profiles) {
        return {};
    }
    const std::string path = kept.folder + '/' + kProfilesFile;
    const InputFile& wanted = kept.pass.kept.profiles->file;
    std::error_code ignored;
    if (fs::status(path, ignored).type() == fs::file_type::not_found) {
        return {true, QStringLiteral("its profiles are not beside it: there is no '%1'").arg(toQt(path))};
    }
    const InputFile found = KxInspect::identifyFile(path);
    if (found.sha256 == wanted.sha256) {
        return {};
    }
    return {false, QStringLiteral("its profiles have changed: '%1' has %2, the result says %3")
                       .arg(toQt(path), described(found), described(wanted))};
}

} // namespace kxtool
