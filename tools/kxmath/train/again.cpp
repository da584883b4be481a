// kxmath train --again: whether a result that was kept comes out again.
#include "tools/kxmath/train/again.h"

#include "inspect/base/paths.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/taskRunner.h"
#include "tools/kxmath/train/againInputs.h"
#include "tools/kxmath/train/resultDifferences.h"

#include <KxMath/KxMathVersion.h>

#include <algorithm>
#include <string>

namespace kxtool {

namespace {

using KxInspect::PassResult;
using KxInspect::detail::toQt;

constexpr const char* kName = "train";

/// The version that measured, where it is another one; else empty.
QString otherVersion(const KeptResult& kept) {
    const std::string version = KxMath_GetVersionString();
    return kept.pass.identity.version == version
               ? QString()
               : QStringLiteral("'%1' was measured by version %2, this is version %3")
                     .arg(toQt(kept.path), QString::fromStdString(kept.pass.identity.version),
                          QString::fromStdString(version));
}

KxInspect::PassOptions optionsOf(const PassResult& pass, const PassFiles& files, int jobs) {
    KxInspect::PassOptions options;
    options.runner = taskRunner(jobs);
    options.mode = pass.mode;
    options.nominal = pass.nominal;
    options.tolerance = pass.tolerance;
    options.labels = pass.identity.labels;
    if (!files.defects.isEmpty()) {
        options.defects = KxInspect::readDefectSettings(toBytes(files.defects));
        options.defects->limits.fromX = pass.defectLimits->fromX;
        options.defects->limits.toX = pass.defectLimits->toX;
    }
    if (!files.consist.isEmpty()) {
        options.consist = KxInspect::readConsist(toBytes(files.consist));
        options.consistOrder = pass.identity.consistOrder.value_or(KxInspect::ConsistOrder::Found);
    }
    if (!files.limits.isEmpty()) {
        options.limits = KxInspect::readLimits(toBytes(files.limits));
    }
    if (!files.contour.isEmpty()) {
        options.contour = KxInspect::CrossSection{toBytes(files.contour)};
    }
    return options;
}

struct Repeated {
    std::string text;
    std::string folder; ///< where it is, as texts show it; empty for nowhere
};

Repeated measureAgain(const KeptResult& kept, const FoundInputs& inputs, const AgainOptions& options,
                      const KxInspect::Progress& progress) {
    const QString& out = options.out;
    const NamedInputs named(kept, inputs);
    const KxInspect::StationSettings settings = KxInspect::readStationSettings(toBytes(named.files.settings));
    WorkFolder folder(out.isEmpty() ? named.path() : out, passFolderName(named.files.recordings));
    const PassResult pass =
        measureInto(folder, named.files, settings, optionsOf(kept.pass, named.files, options.jobs), progress);
    Repeated again{toJson(pass), {}};
    if (!out.isEmpty() && isKept(pass)) {
        folder.finish();
        again.folder = KxInspect::detail::shown(folder.path());
    }
    return again;
}

void printSources(const FoundInputs& inputs) {
    QString text;
    for (const WantedFile& file : inputs.recordings) {
        text += QStringLiteral("Recording %1: %2\n")
                    .arg(printable(QString::fromStdString(file.identity.name)), printable(fromBytes(file.path)));
    }
    printOutput(text);
}

/// The difference, its most likely reason first.
void printDifferences(const KeptResult& kept, const std::string& measured) {
    constexpr qsizetype kMost = 10;
    const QString version = otherVersion(kept);
    printLine(kName, QStringLiteral("the result differs from '%1', though recordings and settings are the same")
                         .arg(toQt(kept.path)));
    if (!version.isEmpty()) {
        printLine(kName, version);
    }
    const QStringList found = differences(kept.text, measured);
    for (qsizetype i = 0; i < std::min(found.size(), kMost); ++i) {
        printLine(kName, found[i]);
    }
    if (found.size() > kMost) {
        printLine(kName, QStringLiteral("and %1 more").arg(found.size() - kMost));
    }
    if (found.isEmpty()) {
        printLine(kName, QStringLiteral("all values are the same, they are only written in another way"));
    }
}

} // namespace

int runAgain(const AgainOptions& options) {
    const KeptResult kept = readResult(options.result);
    Progress progress;
    const FoundInputs inputs = findInputs(kept, options.recordings, progress.callback());
    progress.wipe();
    if (!inputs.problems.isEmpty()) {
        for (const QString& problem : inputs.problems) {
            printLine(kName, problem);
        }
        if (const QString version = otherVersion(kept); !version.isEmpty()) {
            printLine(kName, version);
        }
        return BadInput;
    }
    const Repeated again = measureAgain(kept, inputs, options, progress.callback());
    progress.wipe();
    printSources(inputs);
    if (!again.folder.empty()) {
        printOutput(QStringLiteral("Folder of the pass: %1\n").arg(printable(QString::fromStdString(again.folder))));
    }
    if (again.text != kept.text) {
        printDifferences(kept, again.text);
        return NoResult;
    }
    printOutput(QStringLiteral("The result is the same, byte for byte: %1\n").arg(printable(fromBytes(kept.path))));
    const ProfilesFault fault = faultOfProfiles(kept);
    if (!fault.text.isEmpty()) {
        printLine(kName, (fault.isMissing ? QStringLiteral("warning: ") : QString()) + fault.text);
    }
    return fault.text.isEmpty() || fault.isMissing ? Done : NoResult;
}

} // namespace kxtool
