// kxmath view: what files hold, as a page.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/view/resultPage.h"
#include "tools/kxmath/view/viewInputs.h"
#include "tools/kxmath/view/viewOptions.h"

namespace kxtool {

namespace {

constexpr const char* kName = "view";

/// The page of what was read.
struct PageOf {
    const ViewArguments& arguments;

    QString operator()(const std::string& json) const { return resultPage(json, arguments.files.constFirst()); }
    QString operator()(const kxreport::ProfilesView& view) const {
        return QString::fromUtf8(profilesPage(view, arguments.settings));
    }
    QString operator()(const kxreport::SetView& view) const {
        kxreport::ViewSettings settings = arguments.settings;
        if (!view.reference.isEmpty()) {
            settings.colours = kxreport::ColourMap::Deviations;
        }
        return QString::fromUtf8(setPage(view, settings));
    }
    QString operator()(const kxreport::CloudView& view) const {
        return QString::fromUtf8(cloudPage(view, arguments.settings));
    }
};

int run(const ViewArguments& arguments) {
    Progress progress;
    const QString page = std::visit(PageOf{arguments}, readShown(arguments, progress.callback()));
    progress.wipe();
    arguments.page.write(page);
    if (!arguments.page.isStandardOutput()) {
        printOutput(printable(arguments.pageName) + QLatin1Char('\n'));
    }
    return Done;
}

} // namespace

int runView(const QStringList& arguments) {
    return runCommand(kName, [&] {
        const std::optional<ViewArguments> parsed = parseViewArguments(arguments);
        return parsed ? run(*parsed) : Done;
    });
}

} // namespace kxtool
