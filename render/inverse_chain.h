// The chain that carries a screen point of an element back onto its tile in
// the front image, as seven prebuilt matrices. Building them once per element
// and applying them per pixel runs the same operations as calling the
// inverse transforms one by one.
#pragma once

#include "effect/records.h"
#include "render/matrix.h"

namespace render {

struct InverseChain {
    float m[7][16];

    // n and f are the element's near and far depths of this frame.
    void build(const tagINFO* info, const tagPOLYGON* poly, float n, float f) {
        float c, s;
        // inverse_translate by (x, y, 0)
        set_translation(m[0], -poly->x, -poly->y, -0.0f);
        set_inverse_perspective(m[1], info->foreground_z, n, f);
        // inverse_translate by (0, 0, z)
        set_translation(m[2], -0.0f, -0.0f, -poly->z);
        angle_cos_sin(-poly->angle_x, &c, &s);
        set_rotation_x(m[3], c, s);
        angle_cos_sin(-poly->angle_y, &c, &s);
        set_rotation_y(m[4], c, s);
        angle_cos_sin(-poly->angle_z, &c, &s);
        set_rotation_z(m[5], c, s);
        // inverse_translate by minus the tile centre, i.e. add the centre back
        const float tx = static_cast<float>(-(poly->src_left + info->tile_width * 0.5));
        const float ty = static_cast<float>(-(poly->src_top + info->tile_height * 0.5));
        set_translation(m[6], -tx, -ty, -0.0f);
    }

    void apply(float* p) const {
        for (int i = 0; i < 7; ++i) apply_matrix(m[i], p);
    }
};

}  // namespace render
