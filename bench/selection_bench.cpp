// The mask loops on a 3840x2160 frame, the way they run while a user
// paints: a realistic selection (a few large blobs) and a noisy one. Beside
// each loop runs its peer, measured in the same run on the same mask: memcpy
// of the mask bytes for every loop, and the OpenCV routine doing the same
// geometric work where there is one. The benchmarks are interleaved at
// random and repeated; the closing table gives each median as a ratio to
// memcpy and to its peer.
#include <benchmark/benchmark.h>

#include <opencv2/calib3d.hpp>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "engine/constants.h"
#include "engine/records/effect_records.h"
#include "engine/records/mask_records.h"
#include "platform/parallel_slices.h"
#include "selection/manual_brush.h"
#include "selection/mask_lens_correct.h"
#include "selection/selection_lines.h"
#include "selection/selection_tool.h"
#include "selection/simd_dispatch.h"

namespace {

constexpr int kWidth = 3840;
constexpr int kHeight = 2160;
constexpr size_t kBytes = static_cast<size_t>(kWidth) * kHeight;

struct Plane {
    std::vector<uint8_t> bytes = std::vector<uint8_t>(kBytes, 0);
    BufferData View() {
        BufferData data;
        data.pBuffer = bytes.data();
        data.nWidth = kWidth;
        data.nHeight = kHeight;
        data.nStride = kWidth;
        return data;
    }
    cv::Mat Mat() { return cv::Mat(kHeight, kWidth, CV_8UC1, bytes.data(), kWidth); }
};

// Five large overlapping ellipses: long runs, a few per row.
const Plane& Blobs() {
    static Plane plane = [] {
        Plane p;
        const double blobs[][4] = {{900, 700, 600, 420}, {1500, 1100, 500, 700}, {2900, 800, 450, 380},
                                   {2600, 1600, 700, 300}, {600, 1700, 300, 260}};
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                for (const auto& b : blobs) {
                    const double dx = (x - b[0]) / b[2], dy = (y - b[1]) / b[3];
                    if (dx * dx + dy * dy < 1) p.bytes[static_cast<size_t>(y) * kWidth + x] = 255;
                }
        return p;
    }();
    return plane;
}

// Salt and pepper at one half: the most runs a frame can have.
const Plane& Noisy() {
    static Plane plane = [] {
        Plane p;
        std::mt19937 rng(7);
        for (uint8_t& b : p.bytes) b = (rng() & 1) ? 255 : 0;
        return p;
    }();
    return plane;
}

const Plane& Source(const benchmark::State& state) { return state.range(0) == 0 ? Blobs() : Noisy(); }
const char* Label(int which) { return which == 0 ? "blobs" : "noisy"; }

// The second operand of union and intersection: the blobs shifted, so the
// two differ everywhere.
const Plane& Shifted() {
    static Plane plane = [] {
        Plane p = Blobs();
        std::memmove(p.bytes.data() + 101, p.bytes.data(), kBytes - 101);
        return p;
    }();
    return plane;
}

// ------------------------------------------------------------------ memcpy

void BM_memcpy(benchmark::State& state) {
    Plane src = Source(state), dst;
    for (auto _ : state) {
        std::memcpy(dst.bytes.data(), src.bytes.data(), kBytes);
        benchmark::ClobberMemory();
    }
}

// --------------------------------------------------------- runs and boxes

void BM_MaskToPoint(benchmark::State& state) {
    Plane mask = Source(state);
    std::vector<SelectionLine> lines;
    for (auto _ : state) {
        MaskToPoint(mask.View(), lines);
        benchmark::DoNotOptimize(lines.data());
    }
    state.counters["runs"] = static_cast<double>(lines.size());
}

void BM_PointToMask(benchmark::State& state) {
    Plane mask = Source(state);
    std::vector<SelectionLine> lines;
    MaskToPoint(mask.View(), lines);
    Plane out;
    for (auto _ : state) {
        PointToMask(lines.data(), static_cast<int>(lines.size()), out.View(), false);
        benchmark::ClobberMemory();
    }
}

void BM_SelectionGetMaskROI(benchmark::State& state) {
    Plane mask = Source(state);
    CSelectionTool tool;
    ROI roi;
    for (auto _ : state) {
        tool.SelectionGetMaskROI(mask.View(), roi);
        benchmark::DoNotOptimize(roi);
    }
}

// ------------------------------------------------------------ mask algebra

void Combine(benchmark::State& state, int op) {
    Plane a = Source(state), b = Shifted(), out;
    CSelectionTool tool;
    for (auto _ : state) {
        tool.SelectionMaskOperation(a.View(), b.View(), op, nullptr, out.View());
        benchmark::ClobberMemory();
    }
}
void BM_Union(benchmark::State& state) { Combine(state, MASK_UNION); }
void BM_Intersect(benchmark::State& state) { Combine(state, MASK_INTERSECT); }

void OpenCvCombine(benchmark::State& state, bool bOr) {
    Plane a = Source(state), b = Shifted(), out;
    cv::Mat ma = a.Mat(), mb = b.Mat(), mo = out.Mat();
    for (auto _ : state) {
        if (bOr) cv::bitwise_or(ma, mb, mo);
        else cv::bitwise_and(ma, mb, mo);
        benchmark::ClobberMemory();
    }
}
void BM_cv_bitwise_or(benchmark::State& state) { OpenCvCombine(state, true); }
void BM_cv_bitwise_and(benchmark::State& state) { OpenCvCombine(state, false); }

// ------------------------------------------------------- crop and rotation

constexpr float kAngle = 7.5f;

CropRotateSetting CropSetting(float angle) {
    CropRotateSetting setting;
    setting.fAngle = angle;
    setting.nLeft = 200;
    setting.nTop = 100;
    setting.nWidth = kWidth - 300;
    setting.nHeight = kHeight - 150;
    return setting;
}

void Crop(benchmark::State& state, float angle) {
    Plane mask = Source(state);
    const CropRotateSetting setting = CropSetting(angle);
    std::vector<uint8_t> out(static_cast<size_t>(setting.nWidth) * setting.nHeight);
    BufferData output;
    output.pBuffer = out.data();
    output.nWidth = setting.nWidth;
    output.nHeight = setting.nHeight;
    output.nStride = setting.nWidth;
    CSelectionTool tool;
    CropRotateSetting copy = setting;
    for (auto _ : state) {
        tool.SelectionMaskOperation(mask.View(), mask.View(), MASK_CROPROTATE, &copy, output);
        benchmark::ClobberMemory();
    }
}
void BM_Crop(benchmark::State& state) { Crop(state, 0.0f); }
void BM_CropRotate(benchmark::State& state) { Crop(state, kAngle); }

// The same rotation about the crop corner, bilinear, edges repeated.
void BM_cv_warpAffine(benchmark::State& state) {
    Plane mask = Source(state);
    const CropRotateSetting setting = CropSetting(kAngle);
    const double a = static_cast<double>(setting.fAngle) * pi / 180.0;
    const double c = std::cos(a), s = std::sin(a);
    // Output (j, i) reads the source at (j c + i s + left, i c - j s + top).
    const cv::Matx23d map(c, s, setting.nLeft, -s, c, setting.nTop);
    cv::Mat src = mask.Mat(), dst(setting.nHeight, setting.nWidth, CV_8UC1);
    for (auto _ : state) {
        cv::warpAffine(src, dst, map, dst.size(), cv::INTER_LINEAR | cv::WARP_INVERSE_MAP,
                       cv::BORDER_REPLICATE);
        benchmark::ClobberMemory();
    }
}

// ------------------------------------------------------- lens correction

constexpr int kDistortion = 40;

void Transform(benchmark::State& state, int distortion, int vertical, int horizontal, int mode) {
    Plane mask = Source(state), out;
    MaskCorrectSetting setting;
    setting.lensCorrectSetting.nDistortion = distortion;
    setting.lensCorrectSetting.nVertical = vertical;
    setting.lensCorrectSetting.nHorizontal = horizontal;
    setting.nMode = mode;
    CSelectionTool tool;
    for (auto _ : state) {
        tool.SelectionMaskOperation(mask.View(), mask.View(), MASK_LENSCORRECT, &setting, out.View());
        benchmark::ClobberMemory();
    }
}
void BM_LensDirect(benchmark::State& state) { Transform(state, kDistortion, 0, 0, 0); }
void BM_LensReverse(benchmark::State& state) { Transform(state, kDistortion, 0, 0, 1); }
void BM_Tilt(benchmark::State& state) { Transform(state, 0, 30, -20, 0); }

// A radial model of the same strength about the same centre: k1 on the
// corner radius as the unit length, nearest sampling, 0 outside.
void UndistortMaps(cv::Mat& map1, cv::Mat& map2) {
    const double cx = (kWidth + 1) * 0.5 - 1.0, cy = (kHeight + 1) * 0.5 - 1.0;
    const double f = std::sqrt(cx * cx + cy * cy);
    const cv::Matx33d camera(f, 0, cx, 0, f, cy, 0, 0, 1);
    const cv::Vec4d coefficients(-kDistortion * 0.0016, 0, 0, 0);
    cv::initUndistortRectifyMap(camera, coefficients, cv::noArray(), camera, cv::Size(kWidth, kHeight),
                                CV_16SC2, map1, map2);
}

void BM_cv_undistort_remap(benchmark::State& state) {
    Plane mask = Source(state), out;
    cv::Mat src = mask.Mat(), dst = out.Mat(), map1, map2;
    for (auto _ : state) {
        UndistortMaps(map1, map2);
        cv::remap(src, dst, map1, map2, cv::INTER_NEAREST, cv::BORDER_CONSTANT, 0);
        benchmark::ClobberMemory();
    }
}

void BM_cv_remap(benchmark::State& state) {
    Plane mask = Source(state), out;
    cv::Mat src = mask.Mat(), dst = out.Mat(), map1, map2;
    UndistortMaps(map1, map2);
    for (auto _ : state) {
        cv::remap(src, dst, map1, map2, cv::INTER_NEAREST, cv::BORDER_CONSTANT, 0);
        benchmark::ClobberMemory();
    }
}

// The tilt's own inverse matrix, nearest sampling, 0 outside.
void BM_cv_warpPerspective(benchmark::State& state) {
    Plane mask = Source(state), out;
    MaskLensCorrect lens;
    lens.ComputePerspective(kWidth, kHeight, 30, -20);
    const cv::Mat inverse(3, 3, CV_64F, lens.m_dInverse);
    cv::Mat src = mask.Mat(), dst = out.Mat();
    for (auto _ : state) {
        cv::warpPerspective(src, dst, inverse, dst.size(), cv::INTER_NEAREST | cv::WARP_INVERSE_MAP,
                            cv::BORDER_CONSTANT, 0);
        benchmark::ClobberMemory();
    }
}

// ------------------------------------------------------------------ brush

// One stroke of 60 positions with radius 40 across the frame, painted into
// the mask in place.
void BM_BrushStroke(benchmark::State& state) {
    Plane mask = Source(state);
    CManualBrush brush;
    brush.Initialize(mask.View());
    for (auto _ : state) {
        for (int i = 0; i < 60; ++i) {
            const int x = 300 + i * 55;
            const int y = 1080 + static_cast<int>(600 * std::sin(i * 0.2));
            brush.UpdateStroke(x, y, 40, i == 0, (i & 8) == 0, mask.View());
        }
        benchmark::ClobberMemory();
    }
}

#define PCG_BENCH(fn) BENCHMARK(fn)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)
PCG_BENCH(BM_memcpy);
PCG_BENCH(BM_MaskToPoint);
PCG_BENCH(BM_PointToMask);
PCG_BENCH(BM_SelectionGetMaskROI);
PCG_BENCH(BM_Union);
PCG_BENCH(BM_cv_bitwise_or);
PCG_BENCH(BM_Intersect);
PCG_BENCH(BM_cv_bitwise_and);
PCG_BENCH(BM_Crop);
PCG_BENCH(BM_CropRotate);
PCG_BENCH(BM_cv_warpAffine);
PCG_BENCH(BM_LensDirect);
PCG_BENCH(BM_LensReverse);
PCG_BENCH(BM_cv_undistort_remap);
PCG_BENCH(BM_cv_remap);
PCG_BENCH(BM_Tilt);
PCG_BENCH(BM_cv_warpPerspective);
PCG_BENCH(BM_BrushStroke);

// One row of the closing table: a loop of ours, its peer (if any) and the
// ratio it should stay within.
struct Row {
    const char* name;
    const char* peer;
    const char* what;
    double targetPeer;     // ratio to the peer to stay within; 0: none
    double targetMemcpy;   // ratio to memcpy to stay within; 0: none
};
const Row kRows[] = {
    {"BM_MaskToPoint", nullptr, "mask to runs", 0, 10.0},
    {"BM_PointToMask", nullptr, "runs to mask", 0, 0},
    {"BM_SelectionGetMaskROI", nullptr, "bounding box", 0, 0},
    {"BM_Union", "BM_cv_bitwise_or", "union", 0, 1.6},
    {"BM_Intersect", "BM_cv_bitwise_and", "intersection", 0, 1.6},
    {"BM_Crop", nullptr, "crop", 0, 0},
    {"BM_CropRotate", "BM_cv_warpAffine", "crop, rotated 7.5 deg", 1.0, 0},
    {"BM_LensDirect", "BM_cv_undistort_remap", "lens, direct", 1.0, 0},
    {"BM_LensReverse", "BM_cv_undistort_remap", "lens, reverse", 1.5, 0},
    {"BM_Tilt", "BM_cv_warpPerspective", "tilt", 0.8, 0},
    {"BM_BrushStroke", nullptr, "brush stroke, 60 x r40", 0, 0},
};
const char* PeerText(const char* peer) {
    if (!peer) return "-";
    if (!std::strcmp(peer, "BM_cv_bitwise_or")) return "bitwise_or";
    if (!std::strcmp(peer, "BM_cv_bitwise_and")) return "bitwise_and";
    if (!std::strcmp(peer, "BM_cv_warpAffine")) return "warpAffine linear";
    if (!std::strcmp(peer, "BM_cv_undistort_remap")) return "initUndistort+remap";
    if (!std::strcmp(peer, "BM_cv_warpPerspective")) return "warpPerspective";
    return peer;
}

// Keeps the median of each benchmark's repetitions and prints one table.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_None) {}
    bool ReportContext(const Context& context) override {
        std::printf("Mask %dx%d (%zu bytes); up to %d threads for the mask loops; medians of the repetitions.\n",
                    kWidth, kHeight, kBytes, pcg::platform::SliceThreadCount());
        return ConsoleReporter::ReportContext(context);
    }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) continue;
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                m_median[run.run_name.str()] = run.GetAdjustedRealTime();
        }
    }
    void Finalize() override {
        for (int which = 0; which < 2; ++which) {
            const std::string suffix = "/" + std::to_string(which);
            const double memcpyTime = Get("BM_memcpy" + suffix);
            if (memcpyTime <= 0) continue;
            std::printf("\n%s mask: memcpy %.2f ms\n", Label(which), memcpyTime);
            std::printf("  %-24s %8s %8s   %-20s %8s %7s   %s\n", "loop", "ms", "/memcpy", "peer", "peer ms",
                        "/peer", "target");
            for (const Row& row : kRows) {
                const double t = Get(row.name + suffix);
                if (t <= 0) continue;
                const double toMemcpy = t / memcpyTime;
                std::printf("  %-24s %8.2f %8.2f", row.what, t, toMemcpy);
                double toPeer = 0;
                if (row.peer) {
                    const double p = Get(row.peer + suffix);
                    toPeer = p > 0 ? t / p : 0;
                    std::printf("   %-20s %8.2f %7.2f", PeerText(row.peer), p, toPeer);
                } else {
                    std::printf("   %-20s %8s %7s", "-", "", "");
                }
                if (row.targetPeer > 0 && toPeer > 0)
                    std::printf("   <= %.1f x peer: %s", row.targetPeer, toPeer <= row.targetPeer ? "met" : "MISSED");
                if (row.targetMemcpy > 0)
                    std::printf("   <= %.1f x memcpy: %s", row.targetMemcpy,
                                toMemcpy <= row.targetMemcpy ? "met" : "MISSED");
                std::printf("\n");
            }
            const double remap = Get("BM_cv_remap" + suffix);
            if (remap > 0) {
                std::printf("  (remap alone with a ready map: %.2f ms; lens direct %.2f x, reverse %.2f x of it)\n",
                            remap, Get("BM_LensDirect" + suffix) / remap, Get("BM_LensReverse" + suffix) / remap);
            }
        }
        ConsoleReporter::Finalize();
    }

private:
    double Get(const std::string& name) const {
        const auto it = m_median.find(name);
        return it == m_median.end() ? 0.0 : it->second;
    }
    std::map<std::string, double> m_median;
};

}  // namespace

int main(int argc, char** argv) {
    // PCG_BENCH_THREADS=n caps the threads of the mask loops (1: serial).
    if (const char* threads = std::getenv("PCG_BENCH_THREADS"))
        pcg::platform::SetSliceThreadLimit(std::atoi(threads));
    // PCG_BENCH_SCALAR=1 keeps the loops off their four-lane forms.
    if (const char* scalar = std::getenv("PCG_BENCH_SCALAR"))
        pcg::selection::SetAvx2Allowed(std::atoi(scalar) == 0);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
