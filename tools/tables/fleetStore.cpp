// Fills a store with the passes of a simulated fleet and tells what that takes: fleetStore STORE [VEHICLES [DAYS [SEED]]]
#include "fleet/store/store.h"
#include "simulator/fleet/fleetPasses.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

int main(int count, char** arguments) {
    if (count < 2) {
        std::fprintf(stderr, "Usage: fleetStore STORE [VEHICLES [DAYS [SEED]]]\n");
        return 2;
    }
    const auto number = [&](int i, long otherwise) {
        return count > i ? std::strtol(arguments[i], nullptr, 10) : otherwise;
    };
    kxsim::FleetPlan plan;
    plan.vehicles = static_cast<int>(number(2, plan.vehicles));
    plan.days = static_cast<int>(number(3, plan.days));
    plan.seed = static_cast<std::uint64_t>(number(4, 1));
    const kxsim::Fleet fleet(plan);
    kxfleet::Store store(arguments[1], kxfleet::IfMissing::Create);
    using Clock = std::chrono::steady_clock;
    Clock::duration adding{};
    std::size_t wheels = 0;
    constexpr std::size_t kTell = 1000;
    for (std::size_t i = 0; i < fleet.passes().size(); ++i) {
        const KxInspect::PassResult pass = fleet.measure(i);
        const auto begin = Clock::now();
        wheels += store.add(pass).wheels;
        adding += Clock::now() - begin;
        if (i % kTell == 0) {
            std::fprintf(stderr, "\rpass %zu of %zu", i, fleet.passes().size());
        }
    }
    const double seconds = std::chrono::duration<double>(adding).count();
    std::printf("\n%zu passes, %zu wheels added in %.1f s: %.0f passes and %.0f wheels a second\n",
                fleet.passes().size(), wheels, seconds, static_cast<double>(fleet.passes().size()) / seconds,
                static_cast<double>(wheels) / seconds);
    return 0;
}
