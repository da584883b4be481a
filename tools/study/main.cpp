// Prints how repeatable, reproducible and true the values of the commands are, as a table in Markdown; scripts/study puts
// it into docs/accuracy.md. The names of commands as arguments leave out the others.
#include "tools/study/studies.h"

#include <KxInspect/Error.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>

namespace {

constexpr std::pair<const char*, std::vector<kxstudy::StudiedValue> (*)(const kxstudy::Report&)> kStudies[] = {
    {"train", kxstudy::studyTrain},
    {"wheel", [](const kxstudy::Report& report) { return kxstudy::studyWheel(report); }},
    {"conicity", kxstudy::studyConicity},
    {"calibrate", kxstudy::studyCalibrate},
};

} // namespace

int main(int count, char** arguments) {
    const auto report = [](const std::string& what) { std::fprintf(stderr, "%s\n", what.c_str()); };
    const auto isWanted = [&](const std::string& name) {
        return count == 1 || std::find(arguments + 1, arguments + count, name) != arguments + count;
    };
    try {
        std::vector<kxstudy::StudiedValue> all;
        for (const auto& [name, study] : kStudies) {
            if (isWanted(name)) {
                std::vector<kxstudy::StudiedValue> values = study(report);
                std::move(values.begin(), values.end(), std::back_inserter(all));
            }
        }
        std::fputs(accuracyTable(all).c_str(), stdout);
    } catch (const KxInspect::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
