// kxmath profile: chains of operations on a profile.
#include "report/profile/profileReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failurePage.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/convert/pointOutput.h"
#include "tools/kxmath/convert/standardStreams.h"
#include "tools/kxmath/profile/profileInput.h"
#include "tools/kxmath/profile/profileOptions.h"
#include "tools/kxmath/profile/profileText.h"

#include <QtCore/QFileInfo>

#include <cmath>

namespace kxtool {

namespace {

constexpr const char* kName = "profile";

using KxInspect::ProfileResult;

void writeProfile(const ProfileArguments& arguments, const ProfileResult& result) {
    KxInspect::PointSet set;
    set.hasZ = std::isfinite(result.after.z);
    set.profileStarts.push_back(0);
    for (const KxInspect::Point& p : result.after.points) {
        set.points.push_back({p.x, p.y, result.after.z});
    }
    writePointOutput(kName, arguments.out, arguments.kind, set);
}

void writeOutputs(const ProfileArguments& arguments, const ProfileResult& result) {
    const bool hasProfile = !arguments.out.isEmpty() && result.failure.empty();
    if (hasProfile) {
        writeProfile(arguments, result);
    }
    if (arguments.json.isWanted()) {
        arguments.json.write(QString::fromStdString(toJson(result)));
    }
    if (arguments.report.isWanted()) {
        arguments.report.write(QString::fromUtf8(kxreport::profileReport(result, arguments.report.origin())));
    }
    const bool isPiped = hasProfile && isStream(arguments.out);
    if (!isPiped && !arguments.json.isStandardOutput() && !arguments.report.isStandardOutput()) {
        printOutput(profileTable(result));
    }
}

/// Prints what went wrong. @return the exit code for it
ExitCode printFaults(const ProfileResult& result) {
    if (!result.failure.empty()) {
        printLine(kName, QString::fromStdString(result.failure));
    }
    for (const KxInspect::ProfileFinding& finding : result.findings) {
        if (!finding.isFound()) {
            printLine(kName, QStringLiteral("no %1: %2")
                                 .arg(QString::fromStdString(finding.name), QString::fromStdString(finding.reason)));
        }
    }
    return result.isWhole() ? Done : NoResult;
}

int run(const ProfileArguments& arguments) {
    Progress progress;
    const ProfileInput input =
        orFailurePage({arguments.report, QStringLiteral("Profile ") + printable(QFileInfo(arguments.file).fileName()),
                       QStringList(arguments.file), arguments.text},
                      [&] { return readProfileInput(arguments, progress.callback()); });
    ProfileResult result = examineProfile(input.profile, arguments.chain);
    progress.wipe();
    result.file = printable(arguments.file).toStdString();
    result.record = arguments.record;
    if (!input.note.isEmpty()) {
        printLine(kName, QStringLiteral("'%1' %2").arg(arguments.file, input.note));
    }
    writeOutputs(arguments, result);
    return printFaults(result);
}

} // namespace

int runProfile(const QStringList& arguments) {
    return runCommand(kName, [&]() -> int {
        const auto parsed = parseProfileArguments(arguments);
        if (!parsed) {
            return Done;
        }
        if (const auto* const profile = std::get_if<ProfileArguments>(&*parsed)) {
            return run(*profile);
        }
        printOutput(operationList());
        return Done;
    });
}

} // namespace kxtool
