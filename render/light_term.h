// The light term shared by every lit path: light adds colour, never removes it.
#pragma once

#include <cmath>
#include <cstdint>

#include "effect/records.h"
#include "effect/vecnorm.h"

namespace render {

// k = f ^ gloss x brightness, the power in single precision.
inline float light_strength(const tagINFO* info, float factor) {
    return std::pow(std::fabs(factor), info->gloss) * info->light_brightness;
}

// c + colour x k, clamped to 0..32767 and truncated. The sum is formed in
// double, so a colour of 0 leaves the channel exactly as it was.
inline std::uint16_t lit_channel(unsigned c, int colour, float k) {
    double v = static_cast<double>(c) + static_cast<double>(colour) * k;
    if (v < 0.0) v = 0.0;
    if (!(v < 32767.0)) v = 32767.0;  // also catches NaN
    return static_cast<std::uint16_t>(static_cast<int>(v));
}

inline void light_pixel(const tagINFO* info, float k, std::uint16_t* r, std::uint16_t* g, std::uint16_t* b) {
    *r = lit_channel(*r, info->light_r, k);
    *g = lit_channel(*g, info->light_g, k);
    *b = lit_channel(*b, info->light_b, k);
}

// Light factor of a flat plane facing the viewer at depth zp: the z
// component of the unit vector toward the light, never negative.
inline float background_factor(const tagINFO* info, int x, int y, float zp) {
    float l[3] = {info->light_x - static_cast<float>(x), info->light_y - static_cast<float>(y), info->light_z - zp};
    vecnorm(l);
    return l[2] > 0.0f ? l[2] : 0.0f;
}

}  // namespace render
