// The options of kxmath wheel.
#include "tools/kxmath/wheel/wheelOptions.h"

#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/textOptions.h"
#include "tools/kxmath/wheel/threeSensors.h"

namespace kxtool {

namespace {

using KxInspect::kWheelMeasures;

/// The names of the measures in --min-... and --max-..., in the order of kWheelMeasures.
constexpr const char* kMeasureOptions[kWheelMeasures.size()] = {"height", "thickness", "width",  "excess", "sh",
                                                                "sd",     "qr",        "hollow", "slope",  "rim-width"};

const char* const kDescription =
    "Measures wheel profiles. A level is the distance from the tip of the flange, towards the axle.\n"
    "All measures but the slope are in mm. Those of railways:\n"
    "\n"
    "  flangeHeight      flange height (Sh): from the tape circle, 70 mm from the flange back, to the tip\n"
    "  flangeThickness   flange thickness (Sd): from the flange back to the flank 10 mm above the tape circle\n"
    "  flangeSlope       flange slope (qR): across the wheel, from level 2 to 10 mm above the tape circle\n"
    "  treadHollow       how far the tread rises again towards the field side\n"
    "  treadSlope        slope of the tread at the tape circle, as a ratio\n"
    "  rimWidth          from the flange back to the outer face of the rim\n"
    "\n"
    "Those of the library, from a profile that it smooths:\n"
    "\n"
    "  heightAt70        h: the level of the tape circle\n"
    "  xAtLevel18        flange thickness at level 18: distance of the flank from the flange back\n"
    "  widthLevel2ToH13  width of the flank across the wheel, from level 2 to level h - 13\n"
    "  heightExcess      flange height excess: h - 30 for h of at least 29, otherwise h - 28\n"
    "\n"
    "Each comes with its 95 % confidence interval, from the noise of the points and, where it is told,\n"
    "from the error of the gauge.\n"
    "\n"
    "Files are 2-D cloud sections, profile records, other point files, text columns, or text files of\n"
    "contact profile gauges (.whl, .prw), in mm. x points outwards from the flange back, y points\n"
    "down. Profiles that show another orientation by their shape are turned, and a warning says so;\n"
    "--up, --mirror and --as-is say it instead.\n"
    "A 3-D cloud section holds the cross-section of a rim: y is the height; x and z are turned about\n"
    "--centre until the section lies along x, its outer end at the flange back.\n"
    "\n"
    "Exit codes: 0 done, 1 a wheel has no flange or tread to measure, or none could be judged by the\n"
    "limits that were given, 2 wrong use, 3 a file is unreadable or damaged, 4 an output could not be\n"
    "written, 5 a verdict of --fail-on was given, 6 not enough memory.";

const std::vector<PossibleVerdict> kVerdicts = {
    {Verdict::Out, "a wheel is outside a limit"},
    {Verdict::NotJudged, "a measure with a limit was not found"},
};

QByteArray limitOption(const char* bound, std::size_t measure) {
    return QByteArray(bound) + '-' + kMeasureOptions[measure];
}

KxInspect::WheelLimits limitsOf(const Options& options) {
    constexpr Bounds kLimits{-1000.0, 1000.0};
    KxInspect::WheelLimits limits;
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        KxInspect::Limit& limit = limits.*kWheelMeasures[i].limit;
        limit.min = options.numberIfSet(limitOption("min", i).constData(), kLimits);
        limit.max = options.numberIfSet(limitOption("max", i).constData(), kLimits);
        if (limit.min && limit.max && *limit.min > *limit.max) {
            options.fail(QStringLiteral("--min-%1 is larger than --max-%1").arg(QLatin1String(kMeasureOptions[i])));
        }
    }
    return limits;
}

} // namespace

WheelCommandOptions::WheelCommandOptions() : Options("wheel", "FILE... [options]", QLatin1String(kDescription)) {
    const auto add = [&](const char* name, const char* help, const char* value, const char* byDefault = "") {
        addOption(name, QLatin1String(help), value, QLatin1String(byDefault));
    };
    addArgument("FILE...", QStringLiteral("The wheels to measure."));
    addFlag("up", QStringLiteral("y of the profiles points up."));
    addFlag("mirror", QStringLiteral("x of the profiles points inwards."));
    addTextOptions(*this);
    addFlag("as-is", QStringLiteral("The profiles stand as said above, whatever their shape shows."));
    add("flange-back",
        "x of the flange back in the profiles. Default: 0, or -70 where the tape circle is at 0, or where the profile "
        "begins on a steep back.",
        "mm");
    add("spacing",
        "Resample the profiles linearly at this spacing, 0.01 to 1 mm; 0: measure the points as they are, which makes "
        "flanges of widely spaced points look too thin.",
        "mm", "0.02");
    add("gauge-error",
        "Standard uncertainties of the gauge, which the intervals then contain: of the place of the flange back along "
        "x "
        "in mm, of the turn of the profile in mrad, of all lengths in millionths.",
        "MM,MRAD,PPM", "0,0,0");
    add("centre", "Centre of the wheel in 3-D cloud sections.", "x,z", "0,0");
    add("mark",
        "3-D cloud of a stretch of the wheel from one of three sensors, given three times: ahead, below, behind. The "
        "circle through the point of least x, of least z and of largest x gives the centre instead of --centre.",
        "file");
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        const QByteArray key = kWheelMeasures[i].key;
        const char* const unit = qstrlen(kWheelMeasures[i].unit) > 0 ? kWheelMeasures[i].unit : "ratio";
        add(limitOption("min", i).constData(), ("Smallest allowed " + key + ".").constData(), unit);
        add(limitOption("max", i).constData(), ("Largest allowed " + key + ".").constData(), unit);
    }
    add("json", "Write the measures as JSON; - is the standard output.", "file");
    add("csv", "Write the measures as CSV; - is the standard output.", "file");
    add("report", "Write a report with drawings, one HTML file.", "file");
    FailOn::declare(*this, kVerdicts);
}

std::vector<KxInspect::CrossSection> WheelCommandOptions::wheels() const {
    KxInspect::CrossSection wheel;
    const auto said = [this](const char* flag) {
        return isSet(flag) || isSet("as-is") ? std::optional(isSet(flag)) : std::nullopt;
    };
    wheel.orientation = {said("up"), said("mirror")};
    const QStringList files = arguments("files", 1);
    wheel.text = textOptions(*this, files);
    std::vector<KxInspect::CrossSection> result;
    for (const QString& file : files) {
        wheel.file = toBytes(file);
        result.push_back(wheel);
    }
    return result;
}

KxInspect::WheelOptions WheelCommandOptions::measurement() const {
    const auto ifSet = [this](const char* name, const std::array<double, 2>& range) {
        return numberIfSet(name, {range[0], range[1]});
    };
    KxInspect::WheelOptions result;
    const std::vector<float> centre = numbers("centre", 2);
    result.centre = {centre[0], centre[1]};
    if (const QStringList files = marks(); !files.isEmpty()) {
        const KxMath::KxCircle circle = circleOfMarks(files);
        result.centre = {circle.x, circle.y};
    }
    result.limits = limitsOf(*this);
    result.flangeBack = ifSet("flange-back", KxInspect::kFlangeBacks);
    result.spacing = number("spacing", {0.0, KxInspect::kSpacings[1]});
    const std::vector<float> error =
        numbers("gauge-error", 3, {KxInspect::kGaugeErrors[0], KxInspect::kGaugeErrors[1]});
    result.gaugeError = {error[0], error[1], error[2]};
    return result;
}

QStringList WheelCommandOptions::marks() const {
    constexpr qsizetype kSensors = 3;
    QStringList files = texts("mark");
    if (!files.isEmpty() && files.size() != kSensors) {
        fail(QStringLiteral("--mark is given %1 times, three sensors need 3").arg(files.size()));
    }
    if (!files.isEmpty() && isSet("centre")) {
        fail(QStringLiteral("--mark and --centre exclude each other"));
    }
    return files;
}

FailOn WheelCommandOptions::failOn() const {
    FailOn result(*this, kVerdicts);
    if (result.isSet() && verdictOf({}, limitsOf(*this)) == KxInspect::WheelVerdict::NoLimits) {
        fail(QStringLiteral("--fail-on needs a limit, such as --min-sd"));
    }
    return result;
}

} // namespace kxtool
