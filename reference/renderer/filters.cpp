#include "reference/renderer/filters.h"

#if PCG_RENDERER_WITH_OPENCV

#include <algorithm>
#include <cmath>
#include <cstring>

#include <opencv2/imgproc.hpp>

#include "platform/parallel_slices.h"

namespace pcg {
namespace renderer {

namespace {

constexpr int kMinRowsPixels = 1 << 16;

cv::Mat LowPass(const cv::Mat& plane, double sigma) {
    cv::Mat out;
    if (sigma <= 8.0) {
        cv::GaussianBlur(plane, out, cv::Size(0, 0), sigma, sigma, cv::BORDER_REFLECT_101);
        return out;
    }
    const double shrink = sigma / 4.0;
    const cv::Size small(std::max(1, static_cast<int>(std::lround(plane.cols / shrink))),
                         std::max(1, static_cast<int>(std::lround(plane.rows / shrink))));
    cv::Mat reduced;
    cv::resize(plane, reduced, small, 0, 0, cv::INTER_AREA);
    const double smallSigma = sigma * small.width / static_cast<double>(plane.cols);
    cv::GaussianBlur(reduced, reduced, cv::Size(0, 0), smallSigma, smallSigma, cv::BORDER_REFLECT_101);
    cv::resize(reduced, out, plane.size(), 0, 0, cv::INTER_LINEAR);
    return out;
}

template <typename T>
cv::Mat LumaOf(const uint8_t* pixels, int width, int height, int stride) {
    cv::Mat luma(height, width, CV_32F);
    platform::ForEachSlice(height, 1 + kMinRowsPixels / width, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            const uint8_t* row = pixels + static_cast<size_t>(y) * static_cast<size_t>(stride);
            float* out = luma.ptr<float>(y);
            for (int x = 0; x < width; ++x) {
                T px[4];
                std::memcpy(px, row + static_cast<size_t>(x) * sizeof(px), sizeof(px));
                out[x] = 0.299f * px[2] + 0.587f * px[1] + 0.114f * px[0];
            }
        }
    });
    return luma;
}

template <typename T>
void AddToColours(uint8_t* pixels, int width, int height, int stride, const cv::Mat& delta, float max) {
    platform::ForEachSlice(height, 1 + kMinRowsPixels / width, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            uint8_t* row = pixels + static_cast<size_t>(y) * static_cast<size_t>(stride);
            const float* d = delta.ptr<float>(y);
            for (int x = 0; x < width; ++x) {
                if (d[x] == 0.0f) continue;
                T px[4];
                std::memcpy(px, row + static_cast<size_t>(x) * sizeof(px), sizeof(px));
                for (int i = 0; i < 3; ++i) {
                    const float v = std::floor(px[i] + d[x] + 0.5f);
                    px[i] = static_cast<T>(!(v >= 0.0f) ? 0.0f : (v > max ? max : v));  // NaN as 0
                }
                std::memcpy(row + static_cast<size_t>(x) * sizeof(px), px, sizeof(px));
            }
        }
    });
}

// Calls f(luma, lowPass, delta) for every pixel of the three planes, with
// the rows split over threads: the shape of every detail filter below.
template <class PerPixel>
void ForEachDetailPixel(const cv::Mat& luma, const cv::Mat& low, cv::Mat& delta, PerPixel f) {
    const int width = luma.cols;
    platform::ForEachSlice(luma.rows, 1 + kMinRowsPixels / width, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            const float* l = luma.ptr<float>(y);
            const float* b = low.ptr<float>(y);
            float* d = delta.ptr<float>(y);
            for (int x = 0; x < width; ++x) f(l[x], b[x], d[x]);
        }
    });
}

double Held(double v, double lo, double hi, double otherwise) {
    return std::isfinite(v) ? std::min(std::max(v, lo), hi) : otherwise;
}

bool GlowActive(const GlobalSettings& s) { return Held(s.dGlowStrength, 0.0, 100.0, 0.0) > 0.0; }
bool EdgeActive(const GlobalSettings& s) { return Held(s.dEdgeStrength, 0.0, 100.0, 0.0) > 0.0; }
bool LumaNoiseActive(const GlobalSettings& s) { return Held(s.dNoiseLumaAmount, 0.0, 100.0, 0.0) > 0.0; }
bool ChromaNoiseActive(const GlobalSettings& s) { return Held(s.dNoiseChromaAmount, 0.0, 100.0, 0.0) > 0.0; }

template <typename T>
void LumaNoise(uint8_t* pixels, int width, int height, int stride, const GlobalSettings& s, float max) {
    const cv::Mat luma = LumaOf<T>(pixels, width, height, stride);
    const cv::Mat smooth = LowPass(luma, 1.5);
    cv::Mat delta(height, width, CV_32F);
    const float amount = static_cast<float>(Held(s.dNoiseLumaAmount, 0.0, 100.0, 0.0) / 100.0);
    const float th = static_cast<float>((1.0 - 0.9 * Held(s.dNoiseLumaDetail, 0.0, 100.0, 50.0) / 100.0) * max / 10.0);
    ForEachDetailPixel(luma, smooth, delta, [&](float l, float m, float& d) {
        const float e = m - l;
        d = amount * e * th * th / (th * th + e * e);
    });
    AddToColours<T>(pixels, width, height, stride, delta, max);
}

template <typename T>
void ChromaNoise(uint8_t* pixels, int width, int height, int stride, const GlobalSettings& s, int type, float max) {
    cv::Mat picture(height, width, type, pixels, static_cast<size_t>(stride));
    cv::Mat wide;
    picture.convertTo(wide, CV_32FC4);
    // Colour offsets from the luma, in the first three planes.
    platform::ForEachSlice(height, 1 + kMinRowsPixels / width, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            float* row = wide.ptr<float>(y);
            for (int x = 0; x < width; ++x) {
                float* c = row + 4 * x;
                const float l = 0.299f * c[2] + 0.587f * c[1] + 0.114f * c[0];
                for (int i = 0; i < 3; ++i) c[i] -= l;
            }
        }
    });
    const double sigma = 3.0 * (1.0 - 0.8 * Held(s.dNoiseChromaDetail, 0.0, 100.0, 50.0) / 100.0);
    const cv::Mat smooth = LowPass(wide, sigma);
    const float amount = static_cast<float>(Held(s.dNoiseChromaAmount, 0.0, 100.0, 0.0) / 100.0);
    platform::ForEachSlice(height, 1 + kMinRowsPixels / width, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            T* row = picture.ptr<T>(y);
            const float* u = wide.ptr<float>(y);
            const float* v = smooth.ptr<float>(y);
            for (int x = 0; x < width; ++x)
                for (int i = 0; i < 3; ++i) {
                    const float out = std::floor(row[4 * x + i] + amount * (v[4 * x + i] - u[4 * x + i]) + 0.5f);
                    row[4 * x + i] = static_cast<T>(!(out >= 0.0f) ? 0.0f : (out > max ? max : out));
                }
        }
    });
}

template <typename T>
void DetailFilters(uint8_t* pixels, int width, int height, int stride, const GlobalSettings& s, float max) {
    const cv::Mat luma = LumaOf<T>(pixels, width, height, stride);
    cv::Mat delta = cv::Mat::zeros(height, width, CV_32F);
    if (GlowActive(s)) {
        const double sigma = 2.0 + Held(s.dGlowRadius, 0.0, 100.0, 0.0) / 100.0 * std::min(width, height) / 20.0;
        const cv::Mat low = LowPass(luma, sigma);
        const float gain = static_cast<float>(Held(s.dGlowStrength, 0.0, 100.0, 0.0) / 100.0 / 2.0);
        const float pivot = static_cast<float>(max * (0.5 + Held(s.dGlowBalance, -100.0, 100.0, 0.0) / 200.0));
        ForEachDetailPixel(luma, low, delta, [&](float, float b, float& d) { d += gain * (pivot - b); });
    }
    if (EdgeActive(s)) {
        const cv::Mat low = LowPass(luma, 1.0 + Held(s.dEdgeRadius, 0.0, 100.0, 0.0) / 10.0);
        const float gain = static_cast<float>(Held(s.dEdgeStrength, 0.0, 100.0, 0.0) / 100.0);
        const float balance = static_cast<float>(Held(s.dEdgeBalance, -100.0, 100.0, 0.0) / 100.0);
        ForEachDetailPixel(luma, low, delta, [&](float l, float b, float& d) {
            d += gain * (l - b) * (1.0f + balance * (2.0f * l / max - 1.0f));
        });
    }
    if (s.dClarity != 0.0) {
        const double sigma = std::max(2.0, std::min(width, height) / 50.0);
        const cv::Mat low = LowPass(luma, sigma);
        const float k = static_cast<float>(s.dClarity / 100.0);
        ForEachDetailPixel(luma, low, delta, [&](float l, float b, float& d) {
            const float centred = 2.0f * l / max - 1.0f;
            d += k * (l - b) * (1.0f - centred * centred);
        });
    }
    if (s.dSharpAmount != 0.0) {
        const double sigma = std::max(0.5, s.dSharpRadius / 2.0);
        const cv::Mat low = LowPass(luma, sigma);
        const float gain = static_cast<float>(2.0 * s.dSharpAmount / 100.0);
        const float threshold = static_cast<float>(std::max(0.0, s.dSharpMask) / 100.0 * max / 10.0);
        ForEachDetailPixel(luma, low, delta, [&](float l, float b, float& d) {
            const float detail = l - b;
            if (std::fabs(detail) >= threshold) d += gain * detail;
        });
    }
    AddToColours<T>(pixels, width, height, stride, delta, max);
}

// On 16-bit codes whatever the depth (8-bit codes times 257 and back,
// rounded), so 8 and 16 bits blur alike.
void Blur(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel, double level) {
    cv::Mat picture(height, width, bytesPerChannel == 1 ? CV_8UC4 : CV_16UC4, pixels, static_cast<size_t>(stride));
    cv::Mat wide;
    if (bytesPerChannel == 1) picture.convertTo(wide, CV_16UC4, 257.0);
    else wide = picture.clone();
    const double sigma = level / 10.0;
    cv::GaussianBlur(wide, wide, cv::Size(0, 0), sigma, sigma, cv::BORDER_REFLECT_101);
    if (bytesPerChannel == 1) wide.convertTo(wide, CV_8UC4, 1.0 / 257.0);
    // Back into the picture, alpha kept.
    const int from[] = {0, 0, 1, 1, 2, 2};
    cv::mixChannels(&wide, 1, &picture, 1, from, 3);
}

bool SharpActive(const GlobalSettings& s) { return s.dSharpAmount != 0.0 && std::isfinite(s.dSharpAmount); }

}  // namespace

bool FiltersAvailable() { return true; }

bool FiltersActive(const GlobalSettings& s) {
    return LumaNoiseActive(s) || ChromaNoiseActive(s) || GlowActive(s) || EdgeActive(s) || (s.dClarity != 0.0 && std::isfinite(s.dClarity)) || SharpActive(s) ||
           (s.dBlurLevel > 0.0 && std::isfinite(s.dBlurLevel));
}

void ApplyFilters(uint8_t* pixels, int width, int height, int stride, int bytesPerChannel, const GlobalSettings& s) {
    GlobalSettings usable = s;
    if (!std::isfinite(usable.dClarity)) usable.dClarity = 0.0;
    usable.dClarity = std::min(std::max(usable.dClarity, -100.0), 100.0);
    usable.dSharpAmount = std::min(std::max(usable.dSharpAmount, -100.0), 100.0);
    if (!SharpActive(usable)) usable.dSharpAmount = 0.0;
    if (!std::isfinite(usable.dSharpRadius)) usable.dSharpRadius = 1.0;
    if (!std::isfinite(usable.dSharpMask)) usable.dSharpMask = 0.0;
    // A radius or a level past its range is held to it: a script's 10^6 must not ask for a kernel of
    // millions of taps.
    usable.dSharpRadius = std::min(std::max(usable.dSharpRadius, 1.0), 15.0);
    const double blur = std::isfinite(usable.dBlurLevel) ? std::min(usable.dBlurLevel, 100.0) : 0.0;
    if (LumaNoiseActive(usable)) {
        if (bytesPerChannel == 1) LumaNoise<uint8_t>(pixels, width, height, stride, usable, 255.0f);
        else LumaNoise<uint16_t>(pixels, width, height, stride, usable, 65535.0f);
    }
    if (ChromaNoiseActive(usable)) {
        if (bytesPerChannel == 1) ChromaNoise<uint8_t>(pixels, width, height, stride, usable, CV_8UC4, 255.0f);
        else ChromaNoise<uint16_t>(pixels, width, height, stride, usable, CV_16UC4, 65535.0f);
    }
    if (usable.dClarity != 0.0 || usable.dSharpAmount != 0.0 || GlowActive(usable) || EdgeActive(usable)) {
        if (bytesPerChannel == 1) DetailFilters<uint8_t>(pixels, width, height, stride, usable, 255.0f);
        else DetailFilters<uint16_t>(pixels, width, height, stride, usable, 65535.0f);
    }
    if (blur > 0.0) {
        Blur(pixels, width, height, stride, bytesPerChannel, blur);
    }
}

}  // namespace renderer
}  // namespace pcg

#else  // no OpenCV in this build

namespace pcg {
namespace renderer {

bool FiltersAvailable() { return false; }
bool FiltersActive(const GlobalSettings&) { return false; }
void ApplyFilters(uint8_t*, int, int, int, int, const GlobalSettings&) {}

}  // namespace renderer
}  // namespace pcg

#endif
