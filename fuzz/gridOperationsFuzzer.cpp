// Chains of operations on sets of profiles, height maps and block means with arbitrary arguments.
#include "input.h"

#include <KxMath/KxMatrixCloud.h>
#include <KxMath/KxMatrixWithHistos.h>
#include <KxMath/KxProfileZ.h>

using namespace KxMath;
using kxfuzz::Input;

namespace {

constexpr int kMaxProfiles = 20;
constexpr int kMaxPoints = 30;
constexpr int kMostCells = 20000;
constexpr float kTooMany = 1.1e9f; // columns of a row whose byte count exceeds 32 bits

void fill(KxProfileZSet& set, Input& in) {
    // A regular scan, or one of arbitrary points.
    const bool isScan = in.byte() % 4 != 0;
    for (int profiles = in.byte() % (kMaxProfiles + 1); profiles > 0 && !in.isEmpty(); --profiles) {
        KxProfileZ profile(isScan ? static_cast<float>(set.size()) * 0.5f : in.number());
        if (isScan) {
            for (int i = in.byte() % (kMaxPoints + 1); i > 0; --i) {
                const int level = in.byte() / 16; // many points of one height
                const float height = static_cast<float>(level) / 4.0f;
                profile.points.append(KxPointXY(static_cast<float>(kMaxPoints - i) * 0.5f, height));
            }
        } else {
            kxfuzz::appendPoints(profile.points, in, kMaxPoints, &Input::pointXY);
        }
        set.profiles.append(profile);
    }
    set.setZ(0.0f, 0.5f);
}

void change(KxProfileZSet& set, KxProfileZSet& other, Input& in) {
    KxPointCloud<KxPointXYZ> cloud;
    const float a = in.number();
    const float b = in.number();
    switch (in.byte() % 9) {
    case 0:
        set.setZ(a, b);
        break;
    case 1:
        set.calcRange();
        break;
    case 2:
        set.getRange(a, b, in.yes() ? set : other);
        break;
    case 3:
        if (!set.isEmpty()) {
            const int last = in.byte() % set.size();
            set.toPointCloud(cloud, in.byte() % (last + 2), last);
        }
        break;
    case 4:
        set.calcAverageY();
        break;
    case 5:
        set.toPointCloud(cloud);
        if (!kxfuzz::isLongWalk(kxfuzz::extentOf(cloud.points, &KxPointXYZ::z), b, 100.0f)) {
            other.calcFromPointCloud(cloud, b);
        }
        break;
    case 6:
        if (!set.isEmpty() && !set.profiles.first().isEmpty() && set.profiles.first().size() < 1000) {
            set.clearEdgeEffect(); // makes profiles longer
        }
        break;
    case 7:
        other = set;
        break;
    default:
        set = other;
        break;
    }
}

/// Removes a rectangle from the matrix.
void cutRectangle(KxMatrixCloud& matrix, Input& in) {
    const int column = in.byte() % matrix.columns;
    const int row = in.byte() % matrix.rows;
    const int columns = in.byte() % (matrix.columns - column + 1);
    const int rows = in.byte() % (matrix.rows - row + 1);
    if (in.yes()) {
        KxPointCloud<KxPointXYZ> cloud;
        matrix.extractToPointCloud(cloud, column, row, columns, rows, in.yes());
    } else {
        matrix.trim(column, column + columns - 1, row, row + rows - 1);
    }
}

void findSeeds(KxMatrixCloud& matrix, Input& in) {
    KxPointCloud<KxPointXYZ> cloud;
    KxMatrixWithHistos histos;
    float low = 0.0f;
    float high = 0.0f;
    histos.calcFromMatrixCloud(matrix, in.count(), 0, &low, &high);
    if (in.yes()) {
        histos.cutEdgeEffects(matrix, in.number());
    }
    histos.toPointCloud(cloud, in.number());
    histos.gatherSeed(matrix, cloud, in.byte() % matrix.rows, in.byte() % matrix.columns, in.number(), in.count(),
                      in.number());
    const float start = in.yes() ? high : in.number();
    const float end = in.yes() ? low : in.number();
    const float step = in.number();
    if (!kxfuzz::isLongWalk(start - end, step, 1000.0f)) { // every level visits all cells
        QList<KxPointCloud<KxPointXYZ>*> seeds;
        const int count = histos.extractSeeds(matrix, &seeds, start, end, step, in.number(), in.count(), in.number());
        kxfuzz::require(count == seeds.size());
        kxfuzz::require(KxMatrixWithHistos::freePointCloudList(seeds) == count);
    }
}

/// A matrix of any size that is small or impossible.
void allocate(Input& in) {
    const int columns = in.count();
    const int rows = in.count();
    constexpr int kSmall = 100;
    const auto isLegalButLarge = [](int n) { return n > kSmall && static_cast<float>(n) < kTooMany; };
    if (isLegalButLarge(columns) || isLegalButLarge(rows)) {
        return;
    }
    KxMatrixCloud matrix;
    const bool isMade = matrix.initMatrix(columns, rows, in.number(), 0.0f, 1.0f, 0.0f, 1.0f, 0.0f, 1.0f);
    kxfuzz::require(isMade == (rows == 0 || (columns >= 0 && columns <= kSmall && rows > 0 && rows <= kSmall)));
}

void useMatrix(KxMatrixCloud& matrix, Input& in) {
    matrix.trim(in.count(), in.count(), in.number(), in.number(), in.count(), in.count());
    if (in.yes()) {
        matrix.reflect();
    }
    if (in.yes()) {
        matrix.clearEdgeEffect();
    }
    if (in.yes()) {
        cutRectangle(matrix, in);
    }
    KxPointCloud<KxPointXYZ> cloud;
    kxfuzz::require(matrix.toPointCloud(cloud) == matrix.size());
    findSeeds(matrix, in);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    Input in(data, size);
    KxProfileZSet sets[2];
    fill(sets[0], in);
    fill(sets[1], in);
    allocate(in);
    for (int n = in.byte() % 8; n > 0 && !in.isEmpty(); --n) {
        change(sets[0], sets[1], in);
    }
    sets[0].calcRange();
    const float columns = (sets[0].maxX - sets[0].minX) / sets[0].stepZ;
    if (columns * static_cast<float>(sets[0].size()) > static_cast<float>(kMostCells) && columns < kTooMany) {
        return 0; // legal but slow
    }
    KxMatrixCloud matrix;
    sets[0].toMatrixCloud(matrix, in.number(), in.yes() ? sets[0].stepZ : in.number());
    if (matrix.rows > 0 && matrix.columns > 0) {
        useMatrix(matrix, in);
    }
    return 0;
}
