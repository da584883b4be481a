// Points as the output of a command.
#include "tools/kxmath/convert/pointOutput.h"

#include "tools/kxmath/console/console.h"
#include "tools/kxmath/convert/standardStreams.h"

namespace kxtool {

void writePointOutput(const char* command, const QString& name, KxInspect::FileKind kind,
                      const KxInspect::PointSet& points) {
    writeFileOrStream(name, [&](const std::string& path) { KxInspect::writePoints(path, kind, points); });
    if (const std::string parts = partsLeftOut(kind, points); !parts.empty()) {
        printLine(command, QStringLiteral("warning: '%1' is without %2, which %3 does not hold")
                               .arg(name, QString::fromStdString(parts), QString::fromStdString(kindName(kind))));
    }
}

} // namespace kxtool
