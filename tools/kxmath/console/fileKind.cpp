// The kind of a point file that an option or the file tells.
#include "tools/kxmath/console/fileKind.h"

#include "tools/kxmath/console/fileNames.h"

namespace kxtool {

KxInspect::FileKind kindOfFile(const Options& options, const char* option, const QString& fileName, bool hasContent) {
    if (options.isSet(option)) {
        QStringList names;
        for (const KxInspect::FileKind kind : KxInspect::kFileKinds) {
            names += QString::fromStdString(kindName(kind));
        }
        return KxInspect::kindByName(options.oneOf(option, names).toStdString()).value();
    }
    const std::string path = toBytes(fileName);
    const auto kind = hasContent ? KxInspect::kindOfFile(path) : KxInspect::kindByFileName(path);
    if (!kind) {
        options.fail(
            QStringLiteral("the ending of '%1' names no kind, give it with --%2").arg(fileName, QLatin1String(option)));
    }
    return *kind;
}

} // namespace kxtool
