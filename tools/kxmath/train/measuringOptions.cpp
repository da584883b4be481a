// How passes are measured, whichever recordings they have: the options that commands share.
#include "tools/kxmath/train/measuringOptions.h"

#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/taskRunner.h"

#include "report/elements/textList.h"
#include "report/train/passWords.h"

#include <KxInspect/Settings.h>

namespace kxtool {

namespace {

using KxInspect::PassResult;

std::vector<PossibleVerdict> possibleVerdicts() {
    return {{Verdict::Out, "a distance is out of tolerance"},
            {Verdict::Defect, "a tread is defective or a wheel out of round"},
            {Verdict::NotJudged, "a distance, a tread or a roundness that was asked for has no verdict"},
            {Verdict::Warning, "a value is beyond its warning limit"},
            {Verdict::Alarm, "a value is beyond its alarm limit"},
            {Verdict::NotMeasured, "a value that has limits has no verdict"}};
}

void addLabelOptions(Options& options) {
    options.addOption("line", QStringLiteral("Name of the line."), "TEXT");
    options.addOption("track", QStringLiteral("Name of the track."), "TEXT");
    options.addOption("direction", QStringLiteral("In which direction the train went."), "TEXT");
}

void addConsistOptions(Options& options) {
    options.addOption("consist",
                      QStringLiteral("CSV file that lists the vehicles with marks, numbers and axle distances. Without "
                                     "it vehicles are found by the gaps between axles."),
                      "FILE");
    options.addOption("consist-order",
                      QStringLiteral("Which end of the list passed first: listed (its first vehicle), turned (its last "
                                     "one), or found, by the axle distances. Default: found."),
                      "ORDER", QStringLiteral("found"));
}

void addLimitsOption(Options& options) {
    options.addOption("limits",
                      QStringLiteral("INI file with warning and alarm limits of measures, also per class of vehicles. "
                                     "There are no limits without it."),
                      "FILE");
}

void addContourOption(Options& options) {
    options.addOption(
        "contour",
        QStringLiteral("Nominal cross-section of the wheels, a profile as kxmath wheel reads it: the page "
                       "draws the wheels over it."),
        "FILE");
}

std::optional<std::array<float, 2>> defectRange(const Options& options) {
    const char* const option = "defect-range";
    if (!options.isSet(option)) {
        return std::nullopt;
    }
    const QStringList fields = options.text(option).split(QLatin1Char(':'));
    std::array<float, 2> range = {};
    std::array<bool, 2> areNumbers = {};
    for (size_t i = 0; i < range.size() && fields.size() == 2; ++i) {
        range[i] = fields[static_cast<qsizetype>(i)].toFloat(&areNumbers[i]); // infinities are bounds, too
    }
    if (!areNumbers[0] || !areNumbers[1] || !(range[0] < range[1])) {
        options.failNeed(QStringLiteral("--defect-range"), QStringLiteral("MIN:MAX"), options.text(option));
    }
    if (options.text("defects").isEmpty()) {
        options.fail(QStringLiteral("--defect-range is for --defects FILE"));
    }
    return range;
}

KxInspect::PassLabels lineLabels(const Options& options) {
    KxInspect::PassLabels labels;
    labels.line = labelOf(options, "line", KxInspect::whyNoLabel);
    labels.track = labelOf(options, "track", KxInspect::whyNoLabel);
    labels.direction = labelOf(options, "direction", KxInspect::whyNoLabel);
    return labels;
}

KxInspect::ConsistOrder consistOrder(const Options& options) {
    using KxInspect::ConsistOrder;
    const QStringList names = kxreport::textList({"found", "listed", "turned"});
    const QString name = options.oneOf("consist-order", names);
    if (options.isSet("consist-order") && options.text("consist").isEmpty()) {
        options.fail(QStringLiteral("--consist-order is for --consist FILE"));
    }
    return name == names[0] ? ConsistOrder::Found : name == names[1] ? ConsistOrder::Listed : ConsistOrder::Turned;
}

KxInspect::PassKeep keepOf(const Options& options) {
    using KxInspect::PassKeep;
    const QStringList names = kxreport::textList({"none", "chosen", "all"});
    const QString name = options.oneOf("keep", names);
    return name == names[0] ? PassKeep::None : name == names[1] ? PassKeep::Chosen : PassKeep::All;
}

FailOn failOn(const Options& options) {
    FailOn result(options, possibleVerdicts());
    if (result.holds(Verdict::Defect) && options.text("defects").isEmpty()) {
        options.fail(QStringLiteral("--fail-on defect is for --defects FILE"));
    }
    for (const Verdict verdict : {Verdict::Warning, Verdict::Alarm, Verdict::NotMeasured}) {
        if (result.holds(verdict) && options.text("limits").isEmpty()) {
            options.fail(QStringLiteral("--fail-on warning, alarm and not-measured are for --limits FILE"));
        }
    }
    return result;
}

QString noResultText(const PassResult& pass) {
    const KxInspect::PassSide& first = pass.sides[0];
    const KxInspect::PassSide& second = pass.sides[1];
    return QStringLiteral("no distance: %1 wheels in '%2', %3 in '%4'%5")
        .arg(QString::number(first.wheels.size()), QString::fromStdString(first.file),
             QString::number(second.wheels.size()), QString::fromStdString(second.file),
             !first.wheels.empty() && !second.wheels.empty()
                 ? QStringLiteral(", none of them with a profile that can be measured")
                 : QString());
}

QString noTreadText(const PassResult& pass, const QString& defects) {
    return QStringLiteral("no tread could be judged with the settings '%1': %2")
        .arg(defects, kxreport::notJudgedTexts(pass, KxInspect::PassQuestion::Tread).value(0));
}

} // namespace

void addMeasuringOptions(Options& options) {
    options.addOption("mode",
                      QStringLiteral("3: straight parts are removed and wheel points lie between a low line and the "
                                     "level line; any other number: below the level line. Default: 0."),
                      "N", QStringLiteral("0"));
    options.addOption("nominal", QStringLiteral("Nominal distance. Default: the base distance calibrLines2."), "MM");
    options.addOption("tolerance",
                      QStringLiteral("Allowed deviation to both sides, the limit included. Default: 3 mm."), "MM",
                      QStringLiteral("3"));
    options.addOption("defects", QStringLiteral("Judges the treads too, with the lines of this INI file."), "FILE");
    options.addOption("defect-range",
                      QStringLiteral("Judges only points with x of the sensor in this range. Default: all between the "
                                     "lines."),
                      "MIN:MAX");
    addLabelOptions(options);
    addConsistOptions(options);
    addLimitsOption(options);
    addContourOption(options);
    options.addOption("keep",
                      QStringLiteral("What the folder of a pass keeps of the profiles beside the result: none; chosen "
                                     "(the chosen profiles and the cross-sections of wheels, in one file); all (the "
                                     "profiles of all wheels too). Default: chosen."),
                      "WHAT", QStringLiteral("chosen"));
    addJobsOption(options);
    FailOn::declare(options, possibleVerdicts());
}

QString nameOf(const Options& options, const char* option, const QString& what) {
    if (options.isSet(option) && options.text(option).isEmpty()) {
        options.failNeed(QStringLiteral("--%1").arg(QLatin1String(option)), what, {});
    }
    return options.text(option);
}

std::optional<std::string> labelOf(const Options& options, const char* option,
                                   std::string (*whyNot)(const std::string&)) {
    if (!options.isSet(option)) {
        return std::nullopt;
    }
    std::string text = toBytes(options.text(option));
    const std::string why = whyNot(text);
    if (!why.empty()) {
        options.fail(QStringLiteral("--%1 %2, got '%3'")
                         .arg(QLatin1String(option), QString::fromStdString(why), options.text(option)));
    }
    return text;
}

MeasuringOptions measuringOptions(const Options& options) {
    const QString file = QStringLiteral("a file");
    // One after the other: of an aggregate whose last value throws, GCC 12 destroys the first ones twice.
    PassFiles files;
    files.defects = nameOf(options, "defects", file);
    files.consist = nameOf(options, "consist", file);
    files.limits = nameOf(options, "limits", file);
    files.contour = nameOf(options, "contour", file);
    files.keep = keepOf(options);
    const int mode = options.wholeNumber("mode");
    const float tolerance = options.number("tolerance", kNotNegative);
    const auto nominal = options.numberIfSet("nominal", {100.0, 10000.0});
    const auto range = defectRange(options);
    const FailOn verdicts = failOn(options);
    const KxInspect::PassLabels labels = lineLabels(options);
    const KxInspect::ConsistOrder order = consistOrder(options);
    return {files, mode, tolerance, nominal, range, verdicts, labels, order, jobsOf(options)};
}

KxInspect::PassOptions passOptions(const MeasuringOptions& options) {
    KxInspect::PassOptions pass;
    pass.mode = options.mode;
    pass.nominal = options.nominal;
    pass.tolerance = options.tolerance;
    pass.labels = options.labels;
    pass.runner = taskRunner(options.jobs);
    if (!options.files.consist.isEmpty()) {
        pass.consist = KxInspect::readConsist(toBytes(options.files.consist));
    }
    pass.consistOrder = options.consistOrder;
    if (!options.files.limits.isEmpty()) {
        pass.limits = KxInspect::readLimits(toBytes(options.files.limits));
    }
    if (!options.files.contour.isEmpty()) {
        pass.contour = KxInspect::CrossSection{toBytes(options.files.contour)};
    }
    if (!options.files.defects.isEmpty()) {
        pass.defects = KxInspect::readDefectSettings(toBytes(options.files.defects));
    }
    if (options.defectRange) {
        pass.defects->limits.fromX = options.defectRange->front();
        pass.defects->limits.toX = options.defectRange->back();
    }
    return pass;
}

std::vector<GivenVerdict> verdicts(const PassResult& pass) {
    using KxInspect::PassQuestion;
    const KxInspect::VerdictCount distances = pass.count(PassQuestion::Distance);
    const KxInspect::VerdictCount treads = pass.count(PassQuestion::Tread);
    const KxInspect::VerdictCount roundness = pass.count(PassQuestion::Roundness);
    const auto count = [](int number) { return static_cast<std::size_t>(number); };
    const auto byLimits = [&](KxInspect::LimitVerdict verdict) {
        return count(pass.assessment ? pass.assessment->count(verdict) : 0);
    };
    return {{Verdict::Warning, byLimits(KxInspect::LimitVerdict::Warning)},
            {Verdict::Alarm, byLimits(KxInspect::LimitVerdict::Alarm)},
            {Verdict::NotMeasured, byLimits(KxInspect::LimitVerdict::NotMeasured)},
            {Verdict::Out, count(distances.bad)},
            {Verdict::Defect, count(treads.bad + roundness.bad)},
            {Verdict::NotJudged, count(distances.notJudged() + treads.notJudged() + roundness.notJudged())}};
}

QString whyNoResult(const PassResult& pass, const MeasuringOptions& options) {
    return pass.distances() == 0 ? noResultText(pass) : noTreadText(pass, options.files.defects);
}

} // namespace kxtool
