// The last colour step of a frame: the canvas into the result, through the
// 2D matte when it is used. The result already holds the frame's background,
// so where the matte is black the flying elements are not seen at all.
#include <cstdint>

#include "effect/paneburst.h"

namespace {

// (result (32767 - m) + canvas m) / 32767, clamped and truncated. Formed in
// double: the products are exact, so a black or white matte reproduces its
// source channel exactly.
inline std::uint16_t mix_channel(unsigned result, unsigned canvas, int m) {
    double v = (static_cast<double>(result) * (32767 - m) + static_cast<double>(canvas) * m) / 32767.0;
    if (v < 0.0) v = 0.0;
    if (!(v < 32767.0)) v = 32767.0;
    return static_cast<std::uint16_t>(static_cast<int>(v));
}

template <bool Invert>
void compo_matte(const tagINFO* info, long first, long last) {
    const long width = info->width;
    for (long y = first; y <= last; ++y) {
        const PixelQ7* canvas = info->lit_back->rows[y];
        const PixelQ7* matte = info->matte_2d->rows[y];
        PixelQ7* out = info->result->rows[y];
        for (long x = 0; x < width; ++x) {
            const int m = Invert ? 32767 - matte[x].r : matte[x].r;
            const PixelQ7 c = canvas[x];
            PixelQ7& r = out[x];
            r.r = mix_channel(r.r, c.r, m);
            r.g = mix_channel(r.g, c.g, m);
            r.b = mix_channel(r.b, c.b, m);
            r.a = mix_channel(r.a, c.a, m);
        }
    }
}

}  // namespace

void Paneburst::mp_compo(long first, long last) {
    const tagINFO* in = &info;
    if (in->use_matte_2d != 0) {
        if (in->invert_matte_2d != 0) {
            compo_matte<true>(in, first, last);
        } else {
            compo_matte<false>(in, first, last);
        }
        return;
    }
    for (long y = first; y <= last; ++y) {
        const PixelQ7* canvas = in->lit_back->rows[y];
        PixelQ7* out = in->result->rows[y];
        for (long x = 0; x < in->width; ++x) out[x] = canvas[x];
    }
}
