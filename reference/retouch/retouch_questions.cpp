#include "reference/retouch/retouch_questions.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace pcg {
namespace refretouch {

namespace {

struct Rgb {
    double r, g, b;  // fractions of full scale
};

bool Usable(const PictureView& p) {
    return p.pixels != nullptr && p.width > 0 && p.height > 0 && (p.pixelBytes == 4 || p.pixelBytes == 8);
}

// Channel c (0 blue, 1 green, 2 red) of pixel (x, y), raw.
int Channel(const PictureView& p, int x, int y, int c) {
    const size_t offset = (static_cast<size_t>(y) * p.width + x) * p.pixelBytes;
    if (p.pixelBytes == 4) return p.pixels[offset + c];
    const uint8_t* at = p.pixels + offset + 2 * c;
    return at[0] | (at[1] << 8);
}

double FullScale(const PictureView& p) { return p.pixelBytes == 4 ? 255.0 : 65535.0; }

Rgb PixelAt(const PictureView& p, int x, int y) {
    const double full = FullScale(p);
    return Rgb{Channel(p, x, y, 2) / full, Channel(p, x, y, 1) / full, Channel(p, x, y, 0) / full};
}

int RoundToInt(double v) { return static_cast<int>(std::lround(v)); }

// Band centres in degrees, red closing the circle at 360.
const double kBandCentre[9] = {0, 30, 60, 120, 180, 240, 270, 300, 360};

}  // namespace

bool DropWhiteBalance(const PictureView& picture, int x, int y, int halfSize, int* temperature, int* tint) {
    if (!Usable(picture) || x < 0 || y < 0 || x >= picture.width || y >= picture.height) return false;
    if (halfSize <= 0) halfSize = 2;
    halfSize = std::min(halfSize, 50);
    double sum[3] = {0, 0, 0};
    int count = 0;
    for (int sy = std::max(0, y - halfSize); sy <= std::min(picture.height - 1, y + halfSize); ++sy) {
        for (int sx = std::max(0, x - halfSize); sx <= std::min(picture.width - 1, x + halfSize); ++sx) {
            const Rgb c = PixelAt(picture, sx, sy);
            sum[0] += c.r;
            sum[1] += c.g;
            sum[2] += c.b;
            ++count;
        }
    }
    const double floor = 1.0 / 255.0;
    const double r = std::max(sum[0] / count, floor);
    const double g = std::max(sum[1] / count, floor);
    const double b = std::max(sum[2] / count, floor);
    const double t = std::min(50000.0, std::max(2000.0, 5000.0 * (b / r) * (b / r)));
    const double n = std::min(150.0, std::max(-150.0, 1000.0 * (1.0 - std::sqrt(r * b) / g)));
    *temperature = RoundToInt(t);
    *tint = RoundToInt(n);
    return true;
}

bool ReadPixelInfo(const PictureView& picture, int x, int y, PixelInfo* info) {
    if (info == nullptr || !Usable(picture) || x < 0 || y < 0 || x >= picture.width || y >= picture.height) {
        return false;
    }
    const Rgb c = PixelAt(picture, x, y);
    for (int ch = 0; ch < 3; ++ch) info->RGB[ch] = static_cast<PIXEL>(Channel(picture, x, y, 2 - ch));
    if (info->bGetROMMRGB) {
        for (int ch = 0; ch < 3; ++ch) info->ROMMRGB[ch] = info->RGB[ch];
    }
    const double maxc = std::max({c.r, c.g, c.b});
    const double minc = std::min({c.r, c.g, c.b});
    const double chroma = maxc - minc;
    double hue = 0.0;
    if (chroma > 0.0) {
        if (maxc == c.r) hue = 60.0 * std::fmod((c.g - c.b) / chroma + 6.0, 6.0);
        else if (maxc == c.g) hue = 60.0 * ((c.b - c.r) / chroma + 2.0);
        else hue = 60.0 * ((c.r - c.g) / chroma + 4.0);
        if (hue >= 360.0) hue -= 360.0;
    }
    info->HSV[0] = RoundToInt(hue) % 360;
    info->HSV[1] = maxc > 0.0 ? RoundToInt(255.0 * chroma / maxc) : 0;
    info->HSV[2] = RoundToInt(255.0 * maxc);

    if (chroma > 0.0) {
        int band = 0;
        while (band < 7 && hue >= kBandCentre[band + 1]) ++band;
        const double span = kBandCentre[band + 1] - kBandCentre[band];
        const double fromLow = hue - kBandCentre[band];
        const int low = band;
        const int high = (band + 1) % 8;
        const double lowWeight = 1.0 - fromLow / span;
        if (lowWeight >= 0.5) {
            info->hueColor1 = static_cast<HUE_COLOR_DEF>(low);
            info->hueColor2 = static_cast<HUE_COLOR_DEF>(high);
            info->dWeight1 = lowWeight;
        } else {
            info->hueColor1 = static_cast<HUE_COLOR_DEF>(high);
            info->hueColor2 = static_cast<HUE_COLOR_DEF>(low);
            info->dWeight1 = 1.0 - lowWeight;
        }
        info->dWeight2 = 1.0 - info->dWeight1;
    } else {
        info->hueColor1 = Hue_None;
        info->hueColor2 = Hue_None;
        info->dWeight1 = 0.0;
        info->dWeight2 = 0.0;
    }

    const double luminance = 0.299 * c.r + 0.587 * c.g + 0.114 * c.b;
    for (double& w : info->dToneWeight) w = 0.0;
    const double position = (luminance - 0.125) * 4.0;  // 0 at the first centre, 3 at the last
    if (position <= 0.0) {
        info->dToneWeight[0] = 1.0;
    } else if (position >= 3.0) {
        info->dToneWeight[3] = 1.0;
    } else {
        const int lower = static_cast<int>(position);
        const double upperWeight = position - lower;
        info->dToneWeight[lower] = 1.0 - upperWeight;
        info->dToneWeight[lower + 1] += upperWeight;
    }
    return true;
}

void ToneCurveTable(const ToneCurveRGBSetting& setting, int32_t* table) {
    const int maxValue = std::min(65535, std::max(1, setting.nMaxValue));
    const int count = std::min(std::max(setting.nPivotCount, 0), 20);
    std::vector<std::pair<double, double>> points;
    for (int i = 0; i < count; ++i) {
        double px = setting.fPivotX[i];
        double py = setting.fPivotY[i];
        if (!std::isfinite(px) || !std::isfinite(py)) continue;
        px = std::min(1.0, std::max(0.0, px));
        py = std::min(1.0, std::max(0.0, py));
        auto same = std::find_if(points.begin(), points.end(), [px](const std::pair<double, double>& p) {
            return p.first == px;
        });
        if (same != points.end()) same->second = py;
        else points.emplace_back(px, py);
    }
    std::sort(points.begin(), points.end());
    if (points.empty() || points.front().first > 0.0) points.insert(points.begin(), {0.0, 0.0});
    if (points.back().first < 1.0) points.emplace_back(1.0, 1.0);

    // Fritsch-Carlson: secants, then slopes held so that no segment overshoots.
    const size_t n = points.size();
    std::vector<double> secant(n - 1), slope(n);
    for (size_t i = 0; i + 1 < n; ++i) {
        secant[i] = (points[i + 1].second - points[i].second) / (points[i + 1].first - points[i].first);
    }
    slope[0] = secant[0];
    slope[n - 1] = secant[n - 2];
    for (size_t i = 1; i + 1 < n; ++i) {
        slope[i] = (secant[i - 1] * secant[i] <= 0.0) ? 0.0 : (secant[i - 1] + secant[i]) / 2.0;
    }
    for (size_t i = 0; i + 1 < n; ++i) {
        if (secant[i] == 0.0) {
            slope[i] = 0.0;
            slope[i + 1] = 0.0;
            continue;
        }
        const double a = slope[i] / secant[i];
        const double b = slope[i + 1] / secant[i];
        const double s = a * a + b * b;
        if (s > 9.0) {
            const double tau = 3.0 / std::sqrt(s);
            slope[i] = tau * a * secant[i];
            slope[i + 1] = tau * b * secant[i];
        }
    }

    size_t segment = 0;
    for (int i = 0; i <= maxValue; ++i) {
        const double x = static_cast<double>(i) / maxValue;
        while (segment + 2 < n && x > points[segment + 1].first) ++segment;
        const double x0 = points[segment].first, x1 = points[segment + 1].first;
        const double y0 = points[segment].second, y1 = points[segment + 1].second;
        const double h = x1 - x0;
        const double t = (x - x0) / h;
        const double t2 = t * t, t3 = t2 * t;
        double y = (2 * t3 - 3 * t2 + 1) * y0 + (t3 - 2 * t2 + t) * h * slope[segment] + (-2 * t3 + 3 * t2) * y1 +
                   (t3 - t2) * h * slope[segment + 1];
        // Rounding error must not step outside the segment's own span.
        y = std::min(std::max(y, std::min(y0, y1)), std::max(y0, y1));
        table[i] = static_cast<int32_t>(std::lround(y * maxValue));
    }
}

}  // namespace refretouch
}  // namespace pcg
