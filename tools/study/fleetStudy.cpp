// How well trends, alarms and shifts of sensors tell what happens to a simulated fleet: fleetStudy STORE VEHICLES DAYS SEED
//
// STORE is that of `fleetStore STORE VEHICLES DAYS SEED`. Day by day only what was known then is used: readings up to that
// day, shifts that were named, new lives that three readings show.
#include "fleet/alarms/announcements.h"
#include "fleet/history/history.h"
#include "simulator/fleet/fleetPasses.h"

#include <KxInspect/Error.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

using kxfleet::Alarm;
using kxfleet::Readings;
using kxsim::Crossing;
using kxsim::FleetWheel;

constexpr double kLead = 14.0; // days
constexpr double kEarlyEnough = 28.0; // days of readings that a crossing must have before it
constexpr double kFalseAnnouncement = 60.0; // days in which the limit is not reached

struct Kind {
    const char* measure;
    Crossing what;
    kxfleet::Limits limits;
};

const std::array kKinds = {Kind{"flangeThickness", Crossing::Thickness, {kxsim::kLeastThickness, {}}},
                           Kind{"flangeHeight", Crossing::Height, {{}, kxsim::kMostHeight}},
                           Kind{"treadHollow", Crossing::Hollow, {{}, kxsim::kMostHollow}},
                           Kind{"roundness", Crossing::Flat, {{}, kxsim::kMostOffRound}}};

struct Counts {
    int slow = 0; ///< limits crossed by wear or by a flat that grew for 14 days or more
    int announced = 0; ///< of them, 14 days before
    int sudden = 0; ///< flats that were beyond the limit at once
    int atOnce = 0; ///< of them: alarm at the second bad reading
    int alarms = 0;
    int falseAlarms = 0;
    int announcements = 0;
    int falseAnnouncements = 0;
    std::vector<double> leads; ///< days from announcement to crossing
};

/// The number of a day of the plan, in days since 1970.
double firstDayOf(const kxsim::FleetPlan& plan) {
    using namespace std::chrono;
    return static_cast<double>(sys_days(year(plan.firstYear) / January / 1).time_since_epoch().count());
}

double truthOn(const FleetWheel& wheel, Crossing what, double day) {
    switch (what) {
    case Crossing::Thickness:
        return wheel.valueOn(day, KxInspect::PassMeasure::FlangeThickness);
    case Crossing::Height:
        return wheel.valueOn(day, KxInspect::PassMeasure::FlangeHeight);
    case Crossing::Hollow:
        return wheel.valueOn(day, KxInspect::PassMeasure::TreadHollow);
    case Crossing::Flat:
        break;
    }
    return wheel.offRoundOn(day);
}

/// Whether the law of the life of `day` has the value beyond its limit within some days, turned before or not.
bool reaches(const FleetWheel& wheel, const Kind& kind, double day, double within) {
    FleetWheel unturned = wheel;
    unturned.lives = {wheel.lifeOn(day)};
    unturned.lives.front().until = std::numeric_limits<double>::infinity();
    return !kind.limits.holds(truthOn(unturned, kind.what, day)) ||
           !kind.limits.holds(truthOn(unturned, kind.what, day + within));
}

/// What could be told of a wheel after each of its readings.
struct Told {
    std::vector<double> days; ///< of the readings, from the first one of the plan
    std::vector<Alarm> alarms;
    std::vector<Alarm> announcements;
};

Told follow(const kxfleet::History& history, std::size_t wheel, const Kind& kind, double firstDay) {
    const kxfleet::AnnounceRule rule{.lead = kLead};
    const kxfleet::WheelSeries& series = history.series[wheel];
    const Readings& all = series.readings;
    constexpr std::size_t kShowsLife = 3;
    Told told;
    std::vector<bool> isBad;
    std::vector<bool> isDue;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const double today = all[i].day;
        std::size_t lifeBegins = 0;
        for (const double start : series.lifeStarts) {
            const auto at = std::lower_bound(all.begin(), all.end(), start,
                                             [](const kxfleet::Reading& r, double day) { return r.day < day; });
            const auto first = static_cast<std::size_t>(at - all.begin());
            lifeBegins = first + kShowsLife <= i + 1 ? first : lifeBegins;
        }
        Readings life;
        for (std::size_t r = std::max(lifeBegins, i + 1 - std::min(i + 1, rule.trend.most)); r <= i; ++r) {
            const auto& shifts = history.shifts[static_cast<std::size_t>(all[r].station)];
            life.push_back({all[r].day, withoutShifts(all[r], shifts, today), all[r].station});
        }
        told.days.push_back(today - firstDay);
        isBad.push_back(!kind.limits.holds(life.back().value));
        isDue.push_back(dueAfter(life, kind.limits, rule).has_value());
    }
    told.alarms = kxfleet::alarmsOf(isBad);
    told.announcements = kxfleet::alarmsOf(isDue, rule.again);
    return told;
}

void count(Counts& counts, const Told& told, const FleetWheel& truth, const Kind& kind, double days) {
    for (const Alarm& alarm : told.alarms) {
        ++counts.alarms;
        counts.falseAlarms += reaches(truth, kind, told.days[alarm.opened], kLead) ? 0 : 1;
    }
    for (const Alarm& announcement : told.announcements) {
        ++counts.announcements;
        const double day = told.days[announcement.opened];
        if (!reaches(truth, kind, day, kFalseAnnouncement)) {
            ++counts.falseAnnouncements;
            std::fprintf(stderr, "\nannounced falsely: %s on day %.1f at %.3f, its life from %.1f to %.1f\n",
                         kind.measure, day, truthOn(truth, kind.what, day), truth.lifeOn(day).from,
                         truth.lifeOn(day).until);
        }
    }
    for (const kxsim::CrossingTruth& crossing : truth.crossings()) {
        if (crossing.what != kind.what || crossing.day < kEarlyEnough || crossing.day >= days) {
            continue;
        }
        if (crossing.growing >= kLead) {
            ++counts.slow;
            const double from = truth.lifeOn(crossing.day).from;
            const int before = counts.announced;
            for (const Alarm& a : told.announcements) {
                const double opened = told.days[a.opened];
                const bool isClosed = a.closed && told.days[*a.closed] < crossing.day - kLead;
                if (opened >= from && opened <= crossing.day - kLead && !isClosed) {
                    ++counts.announced;
                    counts.leads.push_back(crossing.day - opened);
                    break;
                }
            }
            if (counts.announced == before) {
                std::fprintf(
                    stderr, "\nnot announced: %s, life from day %.1f, beyond on day %.1f after growing for %.1f days\n",
                    kind.measure, from, crossing.day, crossing.growing);
            }
        } else if (crossing.growing <= 0.0) {
            const auto after = std::lower_bound(told.days.begin(), told.days.end(), crossing.day) - told.days.begin();
            const double until = truth.lifeOn(crossing.day).until;
            constexpr std::ptrdiff_t kSecond = 1;
            if (after + kSecond >= std::ssize(told.days) ||
                told.days[static_cast<std::size_t>(after + kSecond)] >= until) {
                continue; // fewer than two readings
            }
            ++counts.sudden;
            counts.atOnce += std::any_of(told.alarms.begin(), told.alarms.end(), [&](const Alarm& a) {
                return static_cast<std::ptrdiff_t>(a.opened) >= after &&
                       static_cast<std::ptrdiff_t>(a.opened) <= after + kSecond;
            });
        }
    }
}

struct ShiftCounts {
    int shifts = 0;
    int named = 0;
    int invented = 0;
};

ShiftCounts countShifts(const kxsim::Fleet& fleet, const kxfleet::History& history, double firstDay) {
    constexpr double kUntilNamed = 3.0;
    constexpr double kLearning = 30.0; // days until a chart knows its noise
    ShiftCounts counts;
    for (std::size_t place = 0; place < history.places.size(); ++place) {
        const kxfleet::MeasuringPlace& of = history.places[place];
        std::vector<bool> isTrue(history.shifts[place].size(), false);
        for (const kxsim::FleetShift& shift : fleet.shifts()) {
            if (kxsim::Fleet::stationName(shift.station) != of.station ||
                KxInspect::textOf(shift.side) != of.trackSide) {
                continue;
            }
            bool isNamed = false;
            for (std::size_t i = 0; i < isTrue.size(); ++i) {
                const double after = history.shifts[place][i].day - firstDay - std::floor(shift.day);
                isNamed = isNamed || (after >= 0.0 && after <= kUntilNamed);
                const double began = history.shifts[place][i].began - firstDay - std::floor(shift.day);
                isTrue[i] = isTrue[i] || (began >= -1.0 && began <= kUntilNamed); // an early one is named later
            }
            if (shift.day >= kLearning && shift.day + kUntilNamed < fleet.plan().days) {
                ++counts.shifts;
                counts.named += isNamed ? 1 : 0;
                if (!isNamed) {
                    std::fprintf(stderr, "not named: %s %s day %.1f by %.3f\n", of.station.c_str(),
                                 of.trackSide.c_str(), shift.day, shift.size);
                }
            }
        }
        for (std::size_t i = 0; i < isTrue.size(); ++i) {
            counts.invented += isTrue[i] ? 0 : 1;
            if (!isTrue[i]) {
                std::fprintf(stderr, "invented: %s %s day %.1f by %.3f\n", of.station.c_str(), of.trackSide.c_str(),
                             history.shifts[place][i].day - firstDay, history.shifts[place][i].size);
            }
        }
    }
    return counts;
}

double quantile(std::vector<double> values, double part) {
    if (values.empty()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

int study(const char* name, const kxsim::FleetPlan& plan) {
    const kxsim::Fleet fleet(plan);
    const double firstDay = firstDayOf(plan);
    kxfleet::Store store(name, kxfleet::IfMissing::Refuse);
    const kxfleet::HistoryReader reader(store);
    std::map<std::string, int> vehicles; // by their numbers
    for (int vehicle = 0; vehicle < plan.vehicles; ++vehicle) {
        vehicles[kxsim::Fleet::vehicleNumber(vehicle)] = vehicle;
    }
    std::printf(
        "| value | crossed slowly | announced 14 days before | days before, median (5 %% to 95 %%) | sudden | alarm "
        "at the second bad reading | alarms | false | announcements | false |\n"
        "| --- | ---: | ---: | ---: | ---: | ---: | ---: | ---: | ---: | ---: |\n");
    Counts all;
    for (const Kind& kind : kKinds) {
        const kxfleet::History history = reader.read(kind.measure);
        Counts counts;
        std::vector<Told> told(history.wheels.size());
        std::atomic<std::size_t> next = 0;
        const auto followAll = [&] {
            for (std::size_t i = next++; i < told.size(); i = next++) {
                told[i] = follow(history, i, kind, firstDay);
                std::fprintf(stderr, "\r%s: wheel %zu of %zu ", kind.measure, i + 1, told.size());
            }
        };
        {
            const std::jthread other(followAll);
            followAll();
        }
        for (std::size_t i = 0; i < told.size(); ++i) {
            const kxfleet::StoredWheel& wheel = history.wheels[i].wheel;
            const int index = 2 * (static_cast<int>(wheel.axle) - 1) + (wheel.side == "right" ? 1 : 0);
            count(counts, told[i], fleet.wheel(vehicles.at(wheel.vehicle), index), kind, plan.days);
        }
        std::printf("| `%s` | %d | %.1f %% | %.0f (%.0f to %.0f) | %d | %d | %d | %d | %d | %d |\n", kind.measure,
                    counts.slow, 100.0 * counts.announced / std::max(counts.slow, 1), quantile(counts.leads, 0.5),
                    quantile(counts.leads, 0.05), quantile(counts.leads, 0.95), counts.sudden, counts.atOnce,
                    counts.alarms, counts.falseAlarms, counts.announcements, counts.falseAnnouncements);
        all.slow += counts.slow;
        all.announced += counts.announced;
        all.falseAlarms += counts.falseAlarms;
        all.falseAnnouncements += counts.falseAnnouncements;
    }
    const double wheelYears = plan.vehicles * plan.axles * 2.0 * plan.days / 365.25;
    std::printf("\n%.1f %% of %d announced 14 days before; %.2f false alarms and announcements per 1,000 wheels and "
                "year\n",
                100.0 * all.announced / std::max(all.slow, 1), all.slow,
                1000.0 * (all.falseAlarms + all.falseAnnouncements) / wheelYears);
    const ShiftCounts shifts = countShifts(fleet, reader.read("flangeThickness"), firstDay);
    std::printf("%d of %d shifts of sensors named within three days, %d invented\n", shifts.named, shifts.shifts,
                shifts.invented);
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 5) {
        std::fprintf(stderr, "Usage: fleetStudy STORE VEHICLES DAYS SEED\n");
        return 2;
    }
    kxsim::FleetPlan plan;
    const auto number = [&](int i) { return std::strtol(arguments[i], nullptr, 10); };
    plan.vehicles = static_cast<int>(number(2));
    plan.days = static_cast<int>(number(3));
    plan.seed = static_cast<std::uint64_t>(number(4));
    try {
        return study(arguments[1], plan);
    } catch (const KxInspect::Error& error) {
        std::fprintf(stderr, "fleetStudy: %s\n", error.what());
        return 1;
    }
}
