// Simulated passes measured with the settings of their simulation.
#include "tools/tables/roundnessTrial.h"

#include "simulator/simulation.h"

#include <KxInspect/Train.h>

#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

kxsim::Parameters carWith(const std::string& options, std::uint64_t seed) {
    kxsim::Parameters p;
    p.cars = 1;
    p.seed = seed;
    std::istringstream words(options);
    std::string name;
    double value = 0.0;
    while (words >> name >> value) {
        for (const kxsim::NumberInfo& info : kxsim::allNumbers()) {
            if (name == std::string("--") + info.name) {
                const auto set = [&](auto member) {
                    p.*member = static_cast<std::decay_t<decltype(p.*member)>>(value);
                };
                std::visit(set, info.member);
            }
        }
    }
    return p;
}

KxInspect::PassResult measured(const kxsim::Parameters& parameters) {
    if (const std::string fault = findFault(parameters); !fault.empty()) {
        std::fprintf(stderr, "%s\n", fault.c_str());
        std::exit(1);
    }
    const QTemporaryDir folder;
    kxsim::simulatePass(parameters, folder.path(), {});
    const auto file = [&](const char* name) { return folder.filePath(QLatin1String(name)).toStdString(); };
    KxInspect::PassOptions options;
    options.defects = KxInspect::readDefectSettings(file("defects.ini"));
    return measurePass({file("train_101.bin"), file("train_102.bin")},
                       KxInspect::readStationSettings(file("settings.ini")), options);
}

const KxInspect::PassWheel* wheelOf(const KxInspect::PassResult& pass, int pair, int side) {
    const auto index = static_cast<std::size_t>(pair - 1);
    return index < pass.pairs.size() ? pass.wheelOf(pass.pairs[index], static_cast<std::size_t>(side - 1)) : nullptr;
}

void Tally::add(const KxInspect::PassWheel& wheel) {
    ++wheels;
    out += wheel.roundness && wheel.roundness->isOut ? 1 : 0;
    notCompared += wheel.roundness ? 0 : 1;
    defective += wheel.defects && wheel.defects->isDefective.value_or(false) ? 1 : 0;
    treadsNotJudged += wheel.defects && wheel.defects->isDefective ? 0 : 1;
    if (wheel.roundness) {
        farthest = std::max(farthest, wheel.roundness->largest);
        limit = std::max(limit, wheel.roundness->limit);
    }
}

void Tally::add(const KxInspect::PassResult& pass) {
    for (const KxInspect::PassSide& side : pass.sides) {
        for (const KxInspect::PassWheel& wheel : side.wheels) {
            add(wheel);
        }
    }
}

void Tally::add(const Tally& other) {
    wheels += other.wheels;
    out += other.out;
    notCompared += other.notCompared;
    defective += other.defective;
    treadsNotJudged += other.treadsNotJudged;
    farthest = std::max(farthest, other.farthest);
    limit = std::max(limit, other.limit);
}
