// The mask loops on a 3840x2160 frame, the way they run while a user
// paints: a realistic selection (a few large blobs) and a noisy one. Each
// time is also printed as a ratio to memcpy of the same mask bytes, measured
// in this run.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "engine/constants.h"
#include "engine/records/effect_records.h"
#include "engine/records/mask_records.h"
#include "selection/manual_brush.h"
#include "selection/selection_lines.h"
#include "selection/selection_tool.h"

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

const Plane& Source(int which) { return which == 0 ? Blobs() : Noisy(); }
const char* Label(int which) { return which == 0 ? "blobs" : "noisy"; }

void BM_memcpy(benchmark::State& state) {
    Plane src = Source(static_cast<int>(state.range(0))), dst;
    for (auto _ : state) {
        std::memcpy(dst.bytes.data(), src.bytes.data(), kBytes);
        benchmark::ClobberMemory();
    }
    state.SetLabel(Label(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kBytes);
}

void BM_MaskToPoint(benchmark::State& state) {
    Plane mask = Source(static_cast<int>(state.range(0)));
    std::vector<SelectionLine> lines;
    for (auto _ : state) {
        MaskToPoint(mask.View(), lines);
        benchmark::DoNotOptimize(lines.data());
    }
    state.SetLabel(std::string(Label(static_cast<int>(state.range(0)))) + ", " +
                   std::to_string(lines.size()) + " runs");
}

void BM_PointToMask(benchmark::State& state) {
    Plane mask = Source(static_cast<int>(state.range(0)));
    std::vector<SelectionLine> lines;
    MaskToPoint(mask.View(), lines);
    Plane out;
    for (auto _ : state) {
        PointToMask(lines.data(), static_cast<int>(lines.size()), out.View(), false);
        benchmark::ClobberMemory();
    }
    state.SetLabel(Label(static_cast<int>(state.range(0))));
}

void BM_SelectionGetMaskROI(benchmark::State& state) {
    Plane mask = Source(static_cast<int>(state.range(0)));
    CSelectionTool tool;
    ROI roi;
    for (auto _ : state) {
        tool.SelectionGetMaskROI(mask.View(), roi);
        benchmark::DoNotOptimize(roi);
    }
    state.SetLabel(Label(static_cast<int>(state.range(0))));
}

void Combine(benchmark::State& state, int op) {
    Plane a = Source(static_cast<int>(state.range(0))), b = Blobs(), out;
    // The second operand is the blobs shifted, so the two differ everywhere.
    std::memmove(b.bytes.data() + 101, b.bytes.data(), kBytes - 101);
    CSelectionTool tool;
    for (auto _ : state) {
        tool.SelectionMaskOperation(a.View(), b.View(), op, nullptr, out.View());
        benchmark::ClobberMemory();
    }
    state.SetLabel(Label(static_cast<int>(state.range(0))));
}
void BM_Union(benchmark::State& state) { Combine(state, MASK_UNION); }
void BM_Intersect(benchmark::State& state) { Combine(state, MASK_INTERSECT); }

void Crop(benchmark::State& state, float angle) {
    Plane mask = Source(static_cast<int>(state.range(0)));
    CropRotateSetting setting;
    setting.fAngle = angle;
    setting.nLeft = 200;
    setting.nTop = 100;
    setting.nWidth = kWidth - 300;
    setting.nHeight = kHeight - 150;
    std::vector<uint8_t> out(static_cast<size_t>(setting.nWidth) * setting.nHeight);
    BufferData output;
    output.pBuffer = out.data();
    output.nWidth = setting.nWidth;
    output.nHeight = setting.nHeight;
    output.nStride = setting.nWidth;
    CSelectionTool tool;
    for (auto _ : state) {
        tool.SelectionMaskOperation(mask.View(), mask.View(), MASK_CROPROTATE, &setting, output);
        benchmark::ClobberMemory();
    }
    state.SetLabel(Label(static_cast<int>(state.range(0))));
}
void BM_Crop(benchmark::State& state) { Crop(state, 0.0f); }
void BM_CropRotate(benchmark::State& state) { Crop(state, 7.5f); }

void Transform(benchmark::State& state, int distortion, int vertical, int horizontal, int mode) {
    Plane mask = Source(static_cast<int>(state.range(0))), out;
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
    state.SetLabel(Label(static_cast<int>(state.range(0))));
}
void BM_TransformDistortion(benchmark::State& state) { Transform(state, 40, 0, 0, 0); }
void BM_TransformDistortionReverse(benchmark::State& state) { Transform(state, 40, 0, 0, 1); }
void BM_TransformTilt(benchmark::State& state) { Transform(state, 0, 30, -20, 0); }

// One stroke of 60 positions with radius 40 across the frame, painted into
// the mask in place.
void BM_BrushStroke(benchmark::State& state) {
    Plane mask = Source(static_cast<int>(state.range(0)));
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
    state.SetLabel(Label(static_cast<int>(state.range(0))));
}

BENCHMARK(BM_memcpy)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MaskToPoint)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PointToMask)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SelectionGetMaskROI)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Union)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Intersect)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Crop)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CropRotate)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TransformDistortion)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TransformDistortionReverse)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TransformTilt)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BrushStroke)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Prints the usual table, then every time over memcpy's time of this run.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
            m_times.push_back({run.benchmark_name(), run.GetAdjustedRealTime()});
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        double memcpyTime = 0;
        for (const auto& t : m_times)
            if (t.first.rfind("BM_memcpy/", 0) == 0 && (memcpyTime == 0 || t.second < memcpyTime))
                memcpyTime = t.second;
        if (memcpyTime <= 0) return;
        std::printf("\nRatio to memcpy of the %zu mask bytes (%.3f ms in this run):\n", kBytes, memcpyTime);
        for (const auto& t : m_times)
            std::printf("  %-36s %9.3f ms  %8.2f x memcpy\n", t.first.c_str(), t.second, t.second / memcpyTime);
    }

private:
    std::vector<std::pair<std::string, double>> m_times;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
