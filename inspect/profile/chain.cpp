// A profile before and after a chain of operations.
#include "inspect/base/error.h"
#include "inspect/base/points.h"
#include "inspect/profile/findings.h"
#include "inspect/profile/fits.h"
#include "inspect/profile/operations.h"

#include <KxInspect/KxMathTypes.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace KxInspect {

namespace {

using detail::ChainState;
using detail::Form;
using detail::Operation;

[[noreturn]] void failFor(const char* key, const QString& reason) {
    detail::fail(ErrorKind::BadArgument, {{}, {}, key}, reason);
}

/// Steps that were not read from text are checked as those that were.
void checkSteps(const std::vector<ProfileStep>& steps) {
    for (const ProfileStep& step : steps) {
        const std::vector<ProfileStep> read = profileSteps(textOf(step));
        if (read.size() != 1) {
            failFor("do", QStringLiteral("'%1' is not one step").arg(QString::fromStdString(textOf(step))));
        }
    }
}

void check(const ProfileOptions& options) {
    constexpr int kMostWindow = 65535;
    checkSteps(options.steps);
    if (options.polynomial && (*options.polynomial < 0 || *options.polynomial > kMostDegree)) {
        failFor("polynomial",
                QStringLiteral("a degree is from 0 to %1, not %2").arg(kMostDegree).arg(*options.polynomial));
    }
    if (options.cutWindow < 1 || options.cutWindow > kMostWindow) {
        failFor("cutWindow",
                QStringLiteral("a window is from 1 to %1 points, not %2").arg(kMostWindow).arg(options.cutWindow));
    }
    if (!(options.cutThreshold > 0.0f) || !std::isfinite(options.cutThreshold)) {
        failFor("cutThreshold", QStringLiteral("a threshold is above 0"));
    }
}

bool isSame(const QList<KxMath::KxPointXY>& a, const QList<KxMath::KxPointXY>& b) {
    return a.size() == b.size() && std::memcmp(a.constData(), b.constData(),
                                               static_cast<std::size_t>(a.size()) * sizeof(KxMath::KxPointXY)) == 0;
}

const Operation& operationOf(const std::vector<Operation>& all, const ProfileStep& step) {
    return *std::find_if(all.begin(), all.end(),
                         [&](const Operation& o) { return o.description.name == step.operation; });
}

/// Runs one step. @return why it failed, the predicate of a sentence about it; empty when it did not
QString run(const Operation& operation, ChainState& state, StepOutcome& outcome) {
    const QList<KxMath::KxPointXY> before = detail::copyOf(state.profile.points, state.profile.points.size());
    const auto knownBefore = detail::knownPoints(state.profile).size();
    outcome.before = before.size();
    QString reason = operation.apply(state, outcome.step.arguments);
    if (!reason.isEmpty()) {
        return reason;
    }
    const auto known = static_cast<std::int64_t>(detail::knownPoints(state.profile).size());
    if (state.profile.points.isEmpty()) {
        return QStringLiteral("leaves none of %1 points").arg(before.size());
    }
    if (known == 0) {
        return QStringLiteral("leaves no point with both coordinates, of %1 before").arg(knownBefore);
    }
    outcome.after = state.profile.points.size();
    outcome.missing = outcome.after - known;
    outcome.isChanged = !isSame(before, state.profile.points);
    return {};
}

void runAll(ChainState& state, const std::vector<ProfileStep>& steps, ProfileResult& result) {
    const std::vector<Operation> all = detail::allOperations();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        StepOutcome& outcome = result.outcomes.emplace_back();
        outcome.step = steps[i];
        const QString reason = run(operationOf(all, steps[i]), state, outcome);
        if (!reason.isEmpty()) {
            result.failure = QStringLiteral("step %1 of %2, %3, %4")
                                 .arg(i + 1)
                                 .arg(steps.size())
                                 .arg(QString::fromStdString(textOf(steps[i])), reason)
                                 .toStdString();
            return;
        }
    }
}

void setTitles(Form form, ProfileResult& result) {
    switch (form) {
    case Form::Cartesian:
        break;
    case Form::Polar:
        result.xTitle = "radius, mm";
        result.yTitle = "angle, degrees";
        break;
    case Form::Slopes:
        result.yTitle = "slope";
        break;
    case Form::Derivative:
        result.xTitle = "slope";
        result.yTitle = "x of the earlier neighbour, mm";
        break;
    }
}

} // namespace

bool ProfileResult::isWhole() const {
    return failure.empty() &&
           std::all_of(findings.begin(), findings.end(), [](const ProfileFinding& f) { return f.isFound(); });
}

ProfileResult examineProfile(const Profile& profile, const ProfileOptions& options) {
    check(options);
    ProfileResult result;
    result.before = profile;
    result.pointsBefore = static_cast<std::int64_t>(profile.points.size());
    ChainState state;
    state.profile = toKxProfile(profile);
    if (detail::knownPoints(state.profile).empty()) {
        result.failure = "the profile has no point with both coordinates";
        return result;
    }
    runAll(state, options.steps, result);
    if (!result.failure.empty()) {
        return result;
    }
    result.after = fromKxProfile(state.profile);
    result.after.z = profile.z;
    result.pointsAfter = static_cast<std::int64_t>(result.after.points.size());
    setTitles(state.form, result);
    result.findings = state.form == Form::Cartesian
                          ? detail::findingsOf(detail::knownPoints(state.profile), options)
                          : detail::nothingFound(options, "the last step leaves " + result.xTitle + " and " +
                                                              result.yTitle + ", not x and y");
    return result;
}

Profile applied(const Profile& profile, const std::vector<ProfileStep>& steps) {
    ProfileOptions options;
    options.steps = steps;
    const ProfileResult result = examineProfile(profile, options);
    if (!result.failure.empty()) {
        throw Error(ErrorKind::NoResult, {}, result.failure);
    }
    return result.after;
}

} // namespace KxInspect
