// kxmath grid: the height map of a scan, its block means and patches.
#include "report/grid/gridReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failurePage.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/workFolder.h"
#include "tools/kxmath/grid/gridOptions.h"
#include "tools/kxmath/grid/gridText.h"

#include <KxInspect/HeightMapFile.h>

#include <memory>

namespace kxtool {

namespace {

constexpr const char* kName = "grid";

int run(const GridArguments& arguments) {
    const QString& folder = arguments.patchFolder;
    const OutputFile map(QStringLiteral("--map"), arguments.mapFile);
    checkOutputs({&map, &arguments.json, &arguments.report}, QStringList(arguments.scan));
    if (!folder.isEmpty()) {
        KxInspect::checkPatchFolder(toBytes(folder));
    }
    Progress progress;
    KxInspect::GridResult grid =
        orFailurePage({arguments.report, QStringLiteral("Height map of a scan"), QStringList(arguments.scan)}, [&] {
            return KxInspect::measureGrid(toBytes(arguments.scan), arguments.options, progress.callback());
        });
    std::unique_ptr<WorkFolder> work;
    if (!folder.isEmpty()) {
        work.reset(new WorkFolder(WorkFolder::forTarget(folder)));
        writePatchFiles(work->path(), grid);
        grid.folder = printable(folder).toStdString();
    }
    progress.wipe();
    if (map.isWanted()) {
        KxInspect::writeHeightMap(toBytes(arguments.mapFile), arguments.mapKind, grid.map);
    }
    if (arguments.report.isWanted()) {
        arguments.report.write(kxreport::gridReport(grid, arguments.report.origin()));
    }
    if (arguments.json.isWanted()) {
        arguments.json.write(QString::fromStdString(toJson(grid)));
    }
    if (work) {
        work->finishAs(folder); // after all other files: a folder that is there is not written again
    }
    if (!arguments.json.isStandardOutput() && !arguments.report.isStandardOutput()) {
        printOutput(gridText(grid));
    }
    for (const std::string& warning : grid.warnings) {
        printLine(kName, QStringLiteral("warning: ") + QString::fromStdString(warning));
    }
    return arguments.failOn.exitCode(kName, Done, {{Verdict::NotJudged, grid.found.patches.empty() ? 1u : 0u}});
}

} // namespace

int runGrid(const QStringList& arguments) {
    return runCommand(kName, [&] {
        const std::optional<GridArguments> parsed = parseGridArguments(arguments);
        return parsed ? run(*parsed) : Done;
    });
}

} // namespace kxtool
