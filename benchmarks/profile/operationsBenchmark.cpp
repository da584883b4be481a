// Operations on one profile of 1280 points.
#include "family.h"
#include "inputs.h"

#include <array>

namespace {

using KxMath::KxProfile;

struct Job {
    KxProfile profile;
    KxProfile out;
};

template <typename Work>
void addJob(const char* name, Work work, int batch = 100) {
    const QList<KxMath::KxPointXY> points = kxbench::profilePoints();
    kxbench::add<Job>(
        std::string("profile.") + name + "/1280/kx", batch,
        [points](Job& job) {
            job.profile.points = points;
            job.profile.points.detach();
            job.out.points = points;
            job.out.points.detach();
        },
        work);
}

[[maybe_unused]] const bool isRegistered = [] {
    addJob("fitLine", [](Job& j) {
        KxMath::KxLine line;
        j.profile.calcLine(line);
        benchmark::DoNotOptimize(line);
    });
    addJob("fitCircle", [](Job& j) {
        KxMath::KxCircle c;
        j.profile.calcCircle(c);
        benchmark::DoNotOptimize(c);
    });
    addJob("fir", [](Job& j) { j.profile.kihFilter20(j.out, 2.0f); });
    addJob("movingAverage", [](Job& j) { j.profile.wndFilter(20); });
    addJob("medFilt", [](Job& j) { j.profile.medFilt(j.out, 9, 0); });
    addJob("windowedSlope", [](Job& j) { j.profile.diffFilt(j.out, 10); });
    addJob("removeNoise", [](Job& j) { j.profile.removeNoise(10, 3, 0.5f, 0.0f); });
    addJob("removeLineParts", [](Job& j) { j.profile.removeLineParts(10, 0.9f, 0.5f, 5); });
    addJob("levelCut", [](Job& j) { j.profile.removeHighLevel(KxMath::KxLine(0.01f, 30.0f)); });
    addJob("splashFilter", [](Job& j) { j.profile.splashFilter(j.out, 1.0f, 1.0f); });
    addJob("splashFilterPolar", [](Job& j) { j.profile.splashFilterPolar(j.out, 200.0f, 1.0f, 1.0f); });
    addJob("toPolar", [](Job& j) { j.profile.toPolar(); });
    addJob("toEvklid", [](Job& j) { j.profile.toEvklid(); });
    addJob(
        "wndFilterPolar", [](Job& j) { j.profile.wndFilterPolar(j.out, 0.5f, 10, 5); }, 1);
    addJob("polynomFit5", [](Job& j) { j.profile.polynomFit(5); });
    addJob("polynomFit20", [](Job& j) { j.profile.polynomFit(20); });
    addJob("polynomCoeffs5", [](Job& j) {
        std::array<double, 21> c;
        j.profile.calcPolynomCoeffs(5, c.data());
    });
    addJob("polynomCoeffs20", [](Job& j) {
        std::array<double, 21> c;
        j.profile.calcPolynomCoeffs(20, c.data());
    });
    addJob(
        "calcY1e5",
        [](Job& j) {
            float sum = 0;
            for (int i = 0; i < 100000; ++i) {
                sum += j.profile.calcY(-40.0f + 0.0008f * static_cast<float>((i * 7919) % 100000), 1.0f, nullptr);
            }
            benchmark::DoNotOptimize(sum);
        },
        1);
    addJob("integralPlain", [](Job& j) { benchmark::DoNotOptimize(j.profile.integral(0, 1279, true)); });
    addJob(
        "integralRefined", [](Job& j) { benchmark::DoNotOptimize(j.profile.integral(0, 1279, false)); }, 10);
    addJob("akima3840", [](Job& j) {
        KxMath::KxInterpolant akima(j.profile, KxMath::Akima);
        akima.generatePointCloud(j.out, 80.0f / 3840, -40, 40);
    });
    addJob("cutPoints", [](Job& j) {
        QList<int> indices;
        j.profile.detectCutPoints(j.out, indices, 10, 0.8f);
    });
    addJob("interpolate", [](Job& j) { j.profile.interpolate(80.0f / 3840, -40, 40, KxMath::Akima); });
    addJob("derivative", [](Job& j) { benchmark::DoNotOptimize(j.profile.derivative().size()); });
    addJob(
        "calcRect",
        [](Job& j) {
            float w;
            float h;
            float a;
            j.profile.calcRect(&w, &h, &a, 3.0f);
        },
        5);
    addJob("detectCircle", [](Job& j) {
        KxMath::KxCircle c;
        j.profile.detectCircle(c);
    });
    addJob("detectWeld", [](Job& j) {
        KxMath::KxLine l;
        float c;
        j.profile.detectWeld(l, &c);
    });
    addJob("removeDuplicates", [](Job& j) { j.profile.removeDuplicates(); });
    addJob(
        "csvWrite", [](Job& j) { j.profile.writeToCSVFile(QStringLiteral("/dev/shm/kxbench.csv")); }, 10);
    addJob(
        "csvRead", [](Job& j) { j.profile.readFromCSVFile(QStringLiteral("/dev/shm/kxbench.csv"), 0, 1); }, 10);
    return true;
}();

} // namespace
