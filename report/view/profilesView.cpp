// The page of profiles.
#include "report/elements/numbers.h"
#include "report/elements/textList.h"
#include "report/view/dataViews.h"
#include "report/view/decimation.h"
#include "report/view/deviation.h"
#include "report/view/pictures.h"
#include "report/view/profileBlocks.h"

#include <algorithm>
#include <cmath>

namespace kxreport {

namespace {

using KxInspect::Profile;

struct Shown {
    std::vector<const Profile*> profiles; ///< the reference is the last one
    QStringList names;
    float gap;
    std::optional<Deviation> deviation;
};

Shown shownOf(const ProfilesView& view) {
    Shown shown{{}, {}, joiningGap({view.profiles.front().profile}), {}};
    for (const NamedProfile& named : view.profiles) {
        shown.profiles.push_back(&named.profile);
        shown.names.append(named.name);
    }
    if (view.reference) {
        shown.profiles.push_back(&view.reference->profile);
        shown.names.append(view.reference->name + QStringLiteral(" (reference)"));
        shown.deviation =
            deviationOf(view.profiles.front().profile, view.reference->profile, joiningGap({view.reference->profile}));
    }
    return shown;
}

void addDeviationFacts(const Shown& shown, ViewPage& page) {
    constexpr int kDecimals = 4;
    const Deviation& deviation = *shown.deviation;
    page.addFact(QStringLiteral("Deviation along y"),
                 deviation.compared == 0
                     ? QStringLiteral("none: no point has a deviation")
                     : QStringLiteral("%1 to %2 mm, root mean square %3 mm")
                           .arg(fixedText(deviation.range.min, kDecimals), fixedText(deviation.range.max, kDecimals),
                                fixedText(static_cast<float>(deviation.rootMeanSquare), kDecimals)));
    page.addFact(QStringLiteral("Points compared"),
                 QStringLiteral("%1 of %2; %3 beyond the reference, %4 where it has several heights")
                     .arg(QString::number(deviation.compared), QString::number(deviation.values.size()),
                          QString::number(deviation.outside), QString::number(deviation.ambiguous)));
}

void addFacts(const ProfilesView& view, ViewPage& page) {
    for (const NamedProfile& named : view.profiles) {
        const auto& points = named.profile.points;
        const auto missing = std::count_if(points.begin(), points.end(), [](const KxInspect::Point& p) {
            return !std::isfinite(p.x) || !std::isfinite(p.y);
        });
        page.addFact(named.name, QStringLiteral("%1 points, %2 of them missing").arg(points.size()).arg(missing));
    }
    for (const QString& note : view.notes) {
        page.addWarning(note);
    }
}

void addDeviation(const Shown& shown, std::size_t block, const ViewSettings& settings, ViewPage& page) {
    NumberCoder coder(settings.resolution);
    for (const std::size_t i : keptPoints(heightsOf(*shown.profiles.front()), block)) {
        coder.add(static_cast<double>(shown.deviation->values[i]));
    }
    QJsonObject object;
    object[QStringLiteral("block")] = page.addBlock(coder.bytes());
    object[QStringLiteral("name")] = shown.names.front();
    page.data()[QStringLiteral("deviation")] = object;
}

QByteArray makePage(const ProfilesView& view, const Shown& shown, const ViewSettings& settings, int level) {
    const std::size_t block = blockAtLevel(level);
    const QString title = view.profiles.size() == 1 ? QStringLiteral("Profile ") + view.profiles.front().name
                                                    : QStringLiteral("%1 profiles").arg(view.profiles.size());
    ViewPage page(title, settings,
                  textList({QStringLiteral("data"), QStringLiteral("words"), QStringLiteral("plot"),
                            QStringLiteral("profilesView"), QStringLiteral("main")}));
    addFacts(view, page);
    LeftOut leftOut;
    page.data()[QStringLiteral("profiles")] = addProfiles(shown.profiles, shown.names, block, settings, page, leftOut);
    if (std::isfinite(shown.gap)) {
        page.data()[QStringLiteral("gap")] = static_cast<double>(shown.gap);
    }
    if (shown.deviation) {
        addDeviationFacts(shown, page);
        addDeviation(shown, block, settings, page);
    }
    tell(leftOut, block, page);
    page.setPicture(profilesPicture(shown.names, shown.profiles, shown.gap, QStringLiteral("y, mm")),
                    QStringLiteral("The profiles. Lines join neighbouring points."));
    return page.html();
}

} // namespace

QByteArray profilesPage(const ProfilesView& view, const ViewSettings& settings) {
    const Shown shown = shownOf(view);
    return fittingPage(settings, [&](int level) { return makePage(view, shown, settings, level); });
}

} // namespace kxreport
