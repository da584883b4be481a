// The page of a profile before and after a chain of operations.
#include "report/profile/profileReport.h"

#include "report/elements/textList.h"
#include "report/profile/profileWords.h"
#include "report/view/deviation.h"
#include "report/view/pictures.h"
#include "report/view/profileBlocks.h"
#include "report/view/viewPage.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>

#include <cmath>
#include <deque>
#include <limits>

namespace kxreport {

namespace {

using KxInspect::Profile;
using KxInspect::ProfileFinding;
using KxInspect::ProfileResult;

constexpr std::size_t kBlue = 0;
constexpr std::size_t kGrey = 5; ///< of the strokes of pictures

/// What the plots show, in the order of the legend.
struct Drawing {
    std::deque<Profile> made; ///< curves and points, which `lines` names
    std::vector<DrawnLine> lines;
    QJsonArray looks; ///< of the lines, for the script
    bool isOne = true; ///< before and after share a plot
};

Profile profileOf(const std::vector<KxInspect::Point>& points) {
    Profile profile;
    profile.points = points;
    return profile;
}

void addFinding(const ProfileFinding& finding, Drawing& drawing) {
    const QString name = QString::fromStdString(finding.name);
    const std::size_t stroke = 1 + drawing.made.size() % 4;
    const auto add = [&](const std::vector<KxInspect::Point>& points, bool isMarks) {
        if (!points.empty()) {
            drawing.made.push_back(profileOf(points));
            drawing.lines.push_back(
                {name, &drawing.made.back(), std::numeric_limits<float>::quiet_NaN(), stroke, isMarks});
            drawing.looks.append(QJsonObject{{QStringLiteral("n"), static_cast<int>(stroke)},
                                             {isMarks ? QStringLiteral("marks") : QStringLiteral("curve"), true}});
        }
    };
    add(finding.curve, false);
    add(finding.points, true);
}

Drawing drawingOf(const ProfileResult& result) {
    Drawing drawing;
    drawing.isOne = result.xTitle == ProfileResult().xTitle && result.yTitle == ProfileResult().yTitle;
    const float gap = joiningGap({result.before});
    drawing.lines.push_back({QStringLiteral("before"), &result.before, gap, kGrey, false});
    drawing.looks.append(QJsonObject{{QStringLiteral("colour"), QStringLiteral("--faint")},
                                     {QStringLiteral("n"), static_cast<int>(kGrey)}});
    if (!result.after.points.empty()) {
        const float gapAfter = drawing.isOne ? joiningGap({result.after}) : std::numeric_limits<float>::quiet_NaN();
        drawing.lines.push_back({QStringLiteral("after"), &result.after, gapAfter, kBlue, false});
        drawing.looks.append(QJsonObject{{QStringLiteral("n"), static_cast<int>(kBlue)}});
    }
    for (const ProfileFinding& finding : result.findings) {
        addFinding(finding, drawing);
    }
    return drawing;
}

QJsonObject plotObject(const char* title, const char* id, const QString& x, const QString& y, std::size_t from,
                       std::size_t to) {
    return {{QStringLiteral("title"), QLatin1String(title)},
            {QStringLiteral("id"), QLatin1String(id)},
            {QStringLiteral("x"), x},
            {QStringLiteral("y"), y},
            {QStringLiteral("from"), static_cast<int>(from)},
            {QStringLiteral("to"), static_cast<int>(to)}};
}

/// What the script draws: which lines on which plot.
QJsonArray plotsOf(const ProfileResult& result, const Drawing& drawing) {
    const QString x = QStringLiteral("x, mm");
    const QString y = QStringLiteral("y, mm");
    const std::size_t count = drawing.lines.size();
    QJsonArray plots;
    if (drawing.isOne) {
        plots.append(plotObject(count > 1 ? "Before and after" : "Before", "profiles", x, y, 0, count));
    } else {
        plots.append(plotObject("After", "after", QString::fromStdString(result.xTitle),
                                QString::fromStdString(result.yTitle), 1, count));
        plots.append(plotObject("Before", "profiles", x, y, 0, 1));
    }
    return plots;
}

void addTables(const ProfileResult& result, ViewPage& page) {
    if (!result.outcomes.empty()) {
        std::vector<QStringList> rows;
        for (const KxInspect::StepOutcome& outcome : result.outcomes) {
            rows.push_back(stepRow(outcome));
        }
        page.addTable(QStringLiteral("Steps"),
                      textList({QStringLiteral("step"), QStringLiteral("points before"), QStringLiteral("points after"),
                                QStringLiteral("points missing"), QStringLiteral("result")}),
                      rows);
    }
    for (const ProfileFinding& finding : result.findings) {
        std::vector<QStringList> rows;
        for (const auto& [title, value] : findingRows(finding)) {
            rows.push_back(textList({title, value}));
        }
        QString name = QString::fromStdString(finding.name);
        name[0] = name[0].toUpper();
        page.addTable(name, textList({QStringLiteral("Value"), QStringLiteral("Result")}), rows);
    }
}

void addFacts(const ProfileResult& result, ViewPage& page) {
    page.addFact(QStringLiteral("Points before"), QString::number(result.pointsBefore));
    page.addFact(QStringLiteral("Points after"),
                 result.failure.empty() ? QString::number(result.pointsAfter) : QStringLiteral("-"));
    if (!result.failure.empty()) {
        page.addFailure(QString::fromStdString(result.failure));
    }
    for (const ProfileFinding& finding : result.findings) {
        if (!finding.isFound()) {
            page.addFailure(QStringLiteral("no %1: %2")
                                .arg(QString::fromStdString(finding.name), QString::fromStdString(finding.reason)));
        }
    }
}

QString pictureOf(const ProfileResult& result, const Drawing& drawing) {
    const QString x = QStringLiteral("x, mm");
    const QString y = QStringLiteral("y, mm");
    if (drawing.isOne) {
        return linesPicture(drawing.lines, x, y);
    }
    return linesPicture({drawing.lines.begin() + 1, drawing.lines.end()}, QString::fromStdString(result.xTitle),
                        QString::fromStdString(result.yTitle));
}

QString titleOf(const ProfileResult& result) {
    const QString record = result.record ? QStringLiteral(", record %1").arg(*result.record) : QString();
    return QStringLiteral("Profile ") + QFileInfo(QString::fromStdString(result.file)).fileName() + record;
}

/// The page of a result without the points: tables alone.
QByteArray makePage(const ProfileResult& result, const PageOrigin& origin) {
    ViewPage page(titleOf(result), {}, {}, origin);
    addFacts(result, page);
    addTables(result, page);
    return page.html();
}

QByteArray makePage(const ProfileResult& result, const Drawing& drawing, const ViewSettings& settings,
                    const PageOrigin& origin, int level) {
    const std::size_t block = blockAtLevel(level);
    ViewPage page(titleOf(result), settings,
                  textList({QStringLiteral("data"), QStringLiteral("words"), QStringLiteral("plot"),
                            QStringLiteral("profileChain"), QStringLiteral("main")}),
                  origin);
    addFacts(result, page);
    std::vector<const Profile*> profiles;
    QStringList names;
    for (const DrawnLine& line : drawing.lines) {
        profiles.push_back(line.profile);
        names.append(line.name);
    }
    LeftOut leftOut;
    page.data()[QStringLiteral("profiles")] = addProfiles(profiles, names, block, settings, page, leftOut);
    page.data()[QStringLiteral("looks")] = drawing.looks;
    page.data()[QStringLiteral("plots")] = plotsOf(result, drawing);
    if (const float gap = drawing.lines.front().gap; std::isfinite(gap)) {
        page.data()[QStringLiteral("gap")] = static_cast<double>(gap);
    }
    tell(leftOut, block, page);
    addTables(result, page);
    page.setPicture(pictureOf(result, drawing), drawing.isOne
                                                    ? QStringLiteral("The profile before and after. Lines join "
                                                                     "neighbouring points.")
                                                    : QStringLiteral("The profile after."));
    return page.html();
}

} // namespace

QByteArray profileReport(const KxInspect::ProfileResult& result, const PageOrigin& origin) {
    if (result.before.points.empty()) {
        return makePage(result, origin);
    }
    constexpr double kFine = 0.0001; // slopes are no lengths
    const Drawing drawing = drawingOf(result);
    ViewSettings settings;
    settings.resolution = drawing.isOne ? settings.resolution : kFine;
    return fittingPage(settings, [&](int level) { return makePage(result, drawing, settings, origin, level); });
}

} // namespace kxreport
