#include "states.h"

#include <algorithm>

namespace faults {

namespace {

/// A set of profiles, a grid with its block means, and what is made of them.
struct GridState {
    bool isShared = false;
    KxProfileZSet set;
    QList<KxProfileZ> copyOfProfiles;
    KxProfileZSet outSet;
    KxMatrixCloud matrix;
    std::unique_ptr<KxMatrixWithHistos> histos;
    QList<QList<HistoCell>> copyOfRows;
    KxPointCloud<KxPointXYZ> cloud;
    QList<KxPointCloud<KxPointXYZ>*> seeds;
    int number = 0;

    ~GridState() { freeSeeds(); }

    void prepare() {
        copyOfProfiles = {};
        set.profiles = {};
        for (int i = 0; i < 6; ++i) {
            KxProfileZ profile(static_cast<float>(i));
            profile.points = wave(20 + i);
            set.profiles.append(profile);
        }
        set.stepZ = 1.0f;
        set.minX = set.maxX = set.minY = set.maxY = set.minZ = set.maxZ = NAN;
        if (isShared) {
            copyOfProfiles = set.profiles;
        }
        outSet.profiles = {};
        matrix.initMatrix(12, 9, 1, 0, 11, 0, 3, 0, 8);
        for (int r = 0; r < matrix.rows; ++r) {
            for (int c = 0; c < matrix.columns; ++c) {
                matrix.cells[r][c] = (r * c) % 11 == 7 ? NAN : (r > 4 && c > 3 ? 3.0f : 1.0f) + 0.01f * float(r + c);
            }
        }
        copyOfRows = {};
        histos = std::make_unique<KxMatrixWithHistos>();
        histos->calcFromMatrixCloud(matrix, 2, 0, nullptr, nullptr);
        if (isShared) {
            copyOfRows = histos->histoRows;
        }
        clear(cloud);
        freeSeeds();
        number = 0;
    }

    void addTo(Digest& digest) const {
        digest.add(set.profiles);
        digest.add(copyOfProfiles);
        digest.add(outSet.profiles);
        for (int r = 0; r < matrix.rows; ++r) {
            std::for_each(matrix.cells[r], matrix.cells[r] + matrix.columns, [&](float v) { digest.add(v); });
        }
        digest.add(histos->histoRows);
        digest.add(copyOfRows);
        digest.add(cloud.points);
        for (const auto* const seed : seeds) {
            digest.add(seed->points);
        }
        digest.add(number);
    }

private:
    void freeSeeds() {
        qDeleteAll(seeds);
        seeds = {};
    }
};

template <typename Act>
Operation on(const char* name, Act act) {
    return operation<GridState>(name, act);
}

} // namespace

std::vector<Operation> gridOperations() {
    using S = GridState;
    return {
        on("SetSetZ", [](S& s) { s.set.setZ(5, 0.5f); }),
        on("SetRange", [](S& s) { s.number = s.set.getRange(1, 3, s.outSet); }),
        on("SetClearEdgeEffect", [](S& s) { s.set.clearEdgeEffect(); }),
        on("SetToCloud", [](S& s) { s.number = s.set.toPointCloud(s.cloud); }),
        // Without memory the two return 0.
        on("SetToMatrix", [](S& s) { return (s.number = s.set.toMatrixCloud(s.matrix, NAN, NAN)) > 0; }),
        on("SetFromCloud",
           [](S& s) {
               s.cloud.points = layers(100, 5);
               return (s.number = s.outSet.calcFromPointCloud(s.cloud, 0.5f)) > 0;
           }),
        on("MatrixInit",
           [](S& s) { return s.matrix.initMatrix(3, 4, 1, 0, 0, 0, 0, 0, 0) && (s.matrix.clear(), true); }),
        on("MatrixToCloud", [](S& s) { s.number = s.matrix.toPointCloud(s.cloud); }),
        on("MatrixExtract", [](S& s) { s.number = s.matrix.extractToPointCloud(s.cloud, 2, 1, 5, 6, false); }),
        on("MatrixClearEdgeEffect", [](S& s) { s.matrix.clearEdgeEffect(); }),
        on("BlocksCalculate",
           [](S& s) {
               s.histos->histoRows = {};
               s.number = s.histos->calcFromMatrixCloud(s.matrix, 3, 0, nullptr, nullptr);
           }),
        on("BlocksToCloud", [](S& s) { s.number = s.histos->toPointCloud(s.cloud, 1); }),
        on("BlocksCutEdges", [](S& s) { s.number = s.histos->cutEdgeEffects(s.matrix, -0.1f); }),
        on("BlocksSeeds",
           [](S& s) { s.number = s.histos->extractSeeds(s.matrix, &s.seeds, 4, 0, 0.25f, 0.3f, 4, 0.5f); }),
        on("BlocksSeed", [](S& s) { s.number = s.histos->gatherSeed(s.matrix, s.cloud, 3, 2, 0.5f, 3, 0.5f); }),
    };
}

} // namespace faults
