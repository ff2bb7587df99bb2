// Band workers that paint the canvas before the elements: the lit back clip,
// and the intact front clip on the frame of a grid rebuild.
//
// The copy workers blend with a shift by 15 bits (a division by 32768) while
// the weights sum to 32767, so a full matte brings every non-zero channel in
// one lower than the front clip; the rasteriser divides by 32767 instead.
// That difference is part of the effect's output and is kept.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "effect/paneburst.h"
#include "render/light_term.h"

namespace {

inline std::uint16_t to_channel(long long v) {
    return static_cast<std::uint16_t>(v < 0 ? 0 : (v > kChannelMax ? kChannelMax : v));
}

enum class Matte { Off, On, Inverted };

// The intact front clip onto the canvas, lines first..last. Lit and Mode are
// fixed for the whole frame and resolved before the loops.
template <bool Lit, Matte Mode>
void copy_front(const tagINFO* info, long first, long last) {
    const long width = info->width;
    for (long y = first; y <= last; ++y) {
        const PixelQ7* front = info->front->rows[y];
        PixelQ7* canvas = info->lit_back->rows[y];
        const PixelQ7* matte = Mode == Matte::Off ? nullptr : info->matte_3d->rows[y];
        for (long x = 0; x < width; ++x) {
            const PixelQ7 s = front[x];
            PixelQ7 lit = s;
            if (Lit) {
                const float f = std::fabs(render::background_factor(info, static_cast<int>(x), static_cast<int>(y),
                                                                    info->foreground_z));
                render::light_pixel(info, render::light_strength(info, f), &lit.r, &lit.g, &lit.b);
            }
            PixelQ7& c = canvas[x];
            if (Mode != Matte::Off) {
                long long m = matte[x].r;
                if (Mode == Matte::Inverted) m = 32767 - m;
                c.r = static_cast<std::uint16_t>((c.r * (32767 - m) + lit.r * m) >> 15);
                c.g = static_cast<std::uint16_t>((c.g * (32767 - m) + lit.g * m) >> 15);
                c.b = static_cast<std::uint16_t>((c.b * (32767 - m) + lit.b * m) >> 15);
                long long a = (s.a * m) >> 15;
                if (!Lit) a = std::min<long long>(a, 32767);
                c.a = to_channel(a + c.a);
            } else {
                c.r = lit.r;
                c.g = lit.g;
                c.b = lit.b;
                c.a = to_channel(std::min<long long>(s.a, 32767) + c.a);
            }
        }
    }
}

template <bool Lit>
void copy_front(const tagINFO* info, long first, long last) {
    if (info->use_matte_3d == 0) {
        copy_front<Lit, Matte::Off>(info, first, last);
    } else if (info->invert_matte_3d == 0) {
        copy_front<Lit, Matte::On>(info, first, last);
    } else {
        copy_front<Lit, Matte::Inverted>(info, first, last);
    }
}

}  // namespace

void Paneburst::mp_BackLight(long first, long last) {
    const tagINFO* in = &info;
    const long width = in->width;
    for (long y = first; y <= last; ++y) {
        const PixelQ7* back = in->back->rows[y];
        PixelQ7* canvas = in->lit_back->rows[y];
        PixelQ7* out = in->result->rows[y];
        for (long x = 0; x < width; ++x) {
            PixelQ7 p = back[x];
            const float f =
                std::fabs(render::background_factor(in, static_cast<int>(x), static_cast<int>(y), in->background_z));
            render::light_pixel(in, render::light_strength(in, f), &p.r, &p.g, &p.b);
            p.a = std::min<std::uint16_t>(p.a, kChannelMax);
            canvas[x] = p;
            out[x] = p;
        }
    }
}

void Paneburst::mp_copywithlight(long first, long last) { copy_front<true>(&info, first, last); }

void Paneburst::mp_copynolight(long first, long last) { copy_front<false>(&info, first, last); }

// The plain background: the back clip into the result, and into the canvas
// when the canvas is an image of its own.
void Paneburst::mp_copy_back(long first, long last) {
    const tagINFO* in = &info;
    const std::size_t bytes = sizeof(PixelQ7) * static_cast<std::size_t>(in->width);
    for (long y = first; y <= last; ++y) {
        std::memcpy(in->result->rows[y], in->back->rows[y], bytes);
        if (in->lit_back != in->result) std::memcpy(in->lit_back->rows[y], in->back->rows[y], bytes);
    }
}
