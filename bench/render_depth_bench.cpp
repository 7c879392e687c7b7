// The shared reference renderer with a full grade on a 3840 x 2160 frame, 8
// and 16 bits per channel, against OpenCV doing the nearest equivalent work
// on the same frame in the same run: convertScaleAbs (8 bits) or convertTo
// (16 bits) for the gains, LUT for the curve (8 bits), GaussianBlur for the
// local contrast. Runs interleave; medians and ratios are printed.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <vector>

#include <opencv2/imgproc.hpp>

#include "reference/renderer/renderer.h"

namespace {

constexpr int kWidth = 3840;
constexpr int kHeight = 2160;
constexpr int kRuns = 5;

double Milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// A picture with real structure: gradients and rings rather than noise.
cv::Mat Frame8() {
    cv::Mat frame(kHeight, kWidth, CV_8UC4);
    for (int y = 0; y < kHeight; ++y) {
        auto* row = frame.ptr<uint8_t>(y);
        for (int x = 0; x < kWidth; ++x) {
            const int ring = ((x - kWidth / 2) * (x - kWidth / 2) + (y - kHeight / 2) * (y - kHeight / 2)) >> 12;
            row[x * 4] = static_cast<uint8_t>(x * 255 / kWidth);
            row[x * 4 + 1] = static_cast<uint8_t>(y * 255 / kHeight);
            row[x * 4 + 2] = static_cast<uint8_t>(ring & 0xFF);
            row[x * 4 + 3] = 255;
        }
    }
    return frame;
}

pcg::renderer::GlobalSettings FullGrade() {
    pcg::renderer::GlobalSettings s;
    s.dExposure = 0.2;
    s.dContrast = 10;
    s.dBlacks = -5;
    s.dTemperature = 5600;
    s.dTint = 5;
    s.dSaturation = 15;
    s.dClarity = 30;
    s.dVignetteAmount = -30;
    s.masterCurve.resize(65536);
    for (int i = 0; i < 65536; ++i) s.masterCurve[i] = std::min(65535, i + i / 10);
    return s;
}

}  // namespace

int main() {
    const cv::Mat frame8 = Frame8();
    cv::Mat frame16;
    frame8.convertTo(frame16, CV_16UC4, 257.0);
    const pcg::renderer::GlobalSettings grade = FullGrade();
    cv::Mat curve(1, 256, CV_8U);
    for (int i = 0; i < 256; ++i) curve.at<uint8_t>(i) = static_cast<uint8_t>(std::min(255, i + i / 10));

    std::vector<double> ours8, ours16, peer8, peer16;
    for (int run = 0; run < kRuns; ++run) {
        cv::Mat work8 = frame8.clone();
        ours8.push_back(Milliseconds([&] {
            pcg::renderer::RenderGlobal(work8.data, kWidth, kHeight, static_cast<int>(work8.step), 1, grade);
        }));
        peer8.push_back(Milliseconds([&] {
            cv::Mat gained, curved, blurred;
            cv::convertScaleAbs(frame8, gained, 1.08, 4);
            cv::LUT(gained, curve, curved);
            cv::GaussianBlur(curved, blurred, cv::Size(0, 0), 8.0);
        }));
        cv::Mat work16 = frame16.clone();
        ours16.push_back(Milliseconds([&] {
            pcg::renderer::RenderGlobal(work16.data, kWidth, kHeight, static_cast<int>(work16.step), 2, grade);
        }));
        peer16.push_back(Milliseconds([&] {
            cv::Mat gained, blurred;
            frame16.convertTo(gained, CV_16UC4, 1.08, 4 * 257.0);
            cv::GaussianBlur(gained, blurred, cv::Size(0, 0), 8.0);
        }));
    }
    std::printf("renderer, full grade, %dx%d, %d runs interleaved, medians in ms\n", kWidth, kHeight, kRuns);
    std::printf("  8 bits:  renderer %8.1f  OpenCV convertScaleAbs+LUT+GaussianBlur %8.1f  ratio %.2f\n",
                Median(ours8), Median(peer8), Median(ours8) / Median(peer8));
    std::printf("  16 bits: renderer %8.1f  OpenCV convertTo+GaussianBlur            %8.1f  ratio %.2f\n",
                Median(ours16), Median(peer16), Median(ours16) / Median(peer16));
    return 0;
}
