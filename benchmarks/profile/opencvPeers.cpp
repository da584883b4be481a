// The FIR filter of OpenCV.
#include "profile/jobs.h"

#include <opencv2/imgproc.hpp>

#include <span>

namespace kxbench {

namespace {

[[maybe_unused]] const bool isRegistered = [] {
    addOnNumbers(
        "FIR of 20 taps", "peer_opencv_filter2D",
        [](ProfileJob& j) {
            static constexpr float kTaps[20] = {0.0f,    0.0013f, 0.0047f, 0.0117f, 0.0238f, 0.0407f, 0.0612f,
                                                0.0824f, 0.1011f, 0.1139f, 0.1185f, 0.1139f, 0.1011f, 0.0824f,
                                                0.0612f, 0.0407f, 0.0238f, 0.0117f, 0.0047f, 0.0013f};
            float reversed[20];
            std::reverse_copy(kTaps, kTaps + 20, reversed); // it correlates
            const cv::Mat kernel(1, 20, CV_32F, reversed);
            const cv::Mat source(1, kProfilePoints, CV_32F, j.ys.data());
            j.xs.resize(j.ys.size());
            cv::Mat target(1, kProfilePoints, CV_32F, j.xs.data());
            cv::filter2D(source, target, CV_32F, kernel, cv::Point(19, 0));
        },
        [](ProfileJob& j) { return digestWithin(std::span(j.xs).subspan(20), 1e-5); });
    return true;
}();

} // namespace

} // namespace kxbench
