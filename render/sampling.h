// Sampling the front clip and the 3D matte at a front-image position or over
// a footprint box. Positions outside the image read the mirror image across
// the border, so tiles that hang over the edge show reflected picture.
#pragma once

#include <cmath>
#include <cstdint>
#include <utility>

#include "framework/image.h"
#include "render/element_geometry.h"

namespace render {

// Reflect once at the borders of a row (or column) of `size` pixels.
inline float reflect(float u, int size) {
    u = std::fabs(u);
    if (u > static_cast<float>(size - 1)) u = static_cast<float>(2 * size - 2) - u;
    return u;
}

// Index of the nearest pixel: reflected, clamped to the image, truncated.
inline int nearest_index(float u, int size) {
    return static_cast<int>(clamp_value(reflect(u, size), 0.0f, static_cast<float>(size - 1)));
}

inline std::uint16_t to_channel(long v) {
    return static_cast<std::uint16_t>(v < 0 ? 0 : (v > kChannelMax ? kChannelMax : v));
}

// Filtered pixel over the box spanned by (ua, va) and (ub, vb): a box
// average when the box covers at least a pixel, else bilinear at its centre.
// With MatteOnly only channel 0 is filtered; it is returned in R, G and B.
template <bool MatteOnly>
inline PixelQ7 filtered_pixel(const ImageQ7* image, int w, int h, float ua, float va, float ub, float vb) {
    ua = reflect(ua, w);
    ub = reflect(ub, w);
    va = reflect(va, h);
    vb = reflect(vb, h);
    if (ua > ub) std::swap(ua, ub);
    if (va > vb) std::swap(va, vb);
    // Upper limits a hair inside the last pixel keep the bilinear
    // neighbours at +1 inside the image.
    const float wl = static_cast<float>(w - 1.0001);
    const float hl = static_cast<float>(h - 1.0001);
    ua = clamp_value(ua, 0.0f, wl);
    va = clamp_value(va, 0.0f, hl);
    ub = ub < wl ? ub : wl;
    ub = ua > ub ? ua : ub;
    vb = vb < hl ? vb : hl;
    vb = va > vb ? va : vb;

    const int xa = static_cast<int>(ua);
    int xb = static_cast<int>(ub + 0.5);
    if (xb >= w) xb = w - 1;
    const int ya = static_cast<int>(va);
    int yb = static_cast<int>(vb + 0.5);
    if (yb >= h) yb = h - 1;
    const float area = static_cast<float>((static_cast<double>(ub) - ua) * (static_cast<double>(vb) - va));

    long out[4] = {0, 0, 0, 0};
    if (xb != xa && yb != ya && area >= 1.0f) {
        // Sums are 32-bit integers; a footprint of more than 65536 pixels
        // wraps them, as it always has.
        std::uint32_t sum[4] = {0, 0, 0, 0};
        for (int y = ya; y < yb; ++y) {
            const PixelQ7* row = image->rows[y];
            for (int x = xa; x < xb; ++x) {
                sum[0] += row[x].r;
                if (!MatteOnly) {
                    sum[1] += row[x].g;
                    sum[2] += row[x].b;
                    sum[3] += row[x].a;
                }
            }
        }
        const float inv = 1.0f / static_cast<float>((xb - xa) * (yb - ya));
        for (int c = 0; c < (MatteOnly ? 1 : 4); ++c) {
            const double v = static_cast<double>(static_cast<std::int32_t>(sum[c])) * inv;
            out[c] = static_cast<long>(v);
        }
    } else {
        const float cu = (ua + ub) / 2.0f;
        const float cv = (va + vb) / 2.0f;
        const int ix = static_cast<int>(cu);
        const int iy = static_cast<int>(cv);
        const float fx = cu - static_cast<float>(ix);
        const float fy = cv - static_cast<float>(iy);
        // Only an image one pixel wide (or high) could put +1 outside it.
        const int ix1 = ix + 1 < w ? ix + 1 : ix;
        const int iy1 = iy + 1 < h ? iy + 1 : iy;
        const PixelQ7* r0 = image->rows[iy];
        const PixelQ7* r1 = image->rows[iy1];
        // A PixelQ7 is four packed 16-bit channels, read here as an array.
        const auto* p00 = reinterpret_cast<const std::uint16_t*>(&r0[ix]);
        const auto* p10 = reinterpret_cast<const std::uint16_t*>(&r0[ix1]);
        const auto* p01 = reinterpret_cast<const std::uint16_t*>(&r1[ix]);
        const auto* p11 = reinterpret_cast<const std::uint16_t*>(&r1[ix1]);
        for (int c = 0; c < (MatteOnly ? 1 : 4); ++c) {
            const double top = p00[c] + static_cast<double>(p10[c] - p00[c]) * fx;
            const double bottom = p01[c] + static_cast<double>(p11[c] - p01[c]) * fx;
            out[c] = static_cast<long>(top + (bottom - top) * fy);
        }
    }
    PixelQ7 p;
    if (MatteOnly) {
        p.r = p.g = p.b = to_channel(out[0]);
        p.a = 0;
    } else {
        p.r = to_channel(out[0]);
        p.g = to_channel(out[1]);
        p.b = to_channel(out[2]);
        p.a = to_channel(out[3]);
    }
    return p;
}

}  // namespace render
