// The inverse mapping of row runs in vector lanes against the one-pixel path
// (the plane's depth, then the seven matrices one after another), bit for
// bit, on every vector unit this processor runs.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "render/matrix.h"
#include "render/row_mapping.h"

namespace {

using render::ElementPlane;
using render::InverseChain;

std::uint32_t bits(float f) {
    std::uint32_t b;
    std::memcpy(&b, &f, sizeof b);
    return b;
}

struct Case {
    const char* name;
    ElementPlane plane;  // A, B, C, C guarded (here C itself), the constant
    float focal, near_z, far_z;  // the inverse perspective
    float angles[3];             // cos of the three rotations (sin from it)
};

InverseChain chain_for(const Case& c) {
    InverseChain ch;
    render::set_translation(ch.m[0], -512.0f, -300.0f, -0.0f);
    render::set_inverse_perspective(ch.m[1], c.focal, c.near_z, c.far_z);
    render::set_translation(ch.m[2], -0.0f, -0.0f, 181.5f);
    float* rot[3] = {ch.m[3], ch.m[4], ch.m[5]};
    for (int i = 0; i < 3; ++i) {
        const float co = c.angles[i], si = std::sqrt(1.0f - co * co);
        if (i == 0) render::set_rotation_x(rot[i], co, si);
        if (i == 1) render::set_rotation_y(rot[i], co, -si);
        if (i == 2) render::set_rotation_z(rot[i], co, si);
    }
    render::set_translation(ch.m[6], 508.5f, 292.0f, -0.0f);
    return ch;
}

TEST(RowMapping, EveryUnitMatchesTheOnePixelPathBitForBit) {
    const float inf = std::numeric_limits<float>::infinity();
    const Case cases[] = {
        {"tilted", {0.31f, -0.27f, 1.9f, 1.9f, -310.25}, -192.0f, -150.0f, -260.0f, {0.8f, 0.6f, 0.28f}},
        {"facing", {0.0f, 0.0f, 1.0f, 1.0f, -192.0}, -192.0f, -192.0f, -192.0f, {1.0f, 1.0f, 1.0f}},
        // Seen edge-on: C guarded to 1e-10 gives huge depths.
        {"edge-on", {3.0f, 2.0f, 1e-10f, 1e-10f, 5.0}, -192.0f, -10.0f, -4000.0f, {0.0f, 0.7f, -0.5f}},
        // A perspective whose w is 0 on part of the row (divisions by zero,
        // infinities and NaN flowing through the later matrices).
        {"w crosses zero", {-1.0f, 0.0f, 1.0f, 1.0f, 0.0}, -1.0f, 1.0f, 1.0f, {0.5f, 0.5f, 0.5f}},
        {"infinite depth", {0.0f, 0.0f, 1e-10f, 1e-10f, inf}, -192.0f, -150.0f, -260.0f, {0.9f, 0.9f, 0.9f}},
    };
    for (const Case& c : cases) {
        const ElementPlane& plane = c.plane;
        const InverseChain chain = chain_for(c);
        for (int unit = 0; unit < render::map_row_unit_count(); ++unit) {
            for (int n = 1; n <= 37; ++n) {
                for (int y : {0, 247, 1079}) {
                    const int x0 = 3 * n - 20;
                    // Guards around the run: nothing beyond it may be written.
                    std::vector<float> u(n + 2, 7.0f), v(n + 2, 7.0f);
                    render::map_row_on(unit, plane, chain, y, x0, n, u.data() + 1, v.data() + 1);
                    for (int i = 0; i < n; ++i) {
                        const float fx = static_cast<float>(x0 + i), fy = static_cast<float>(y);
                        float p[3] = {fx, fy, plane.depth(fx, fy)};
                        chain.apply(p);
                        ASSERT_EQ(bits(u[i + 1]), bits(p[0]))
                            << c.name << " " << render::map_row_unit_name(unit) << " n " << n << " x " << x0 + i;
                        ASSERT_EQ(bits(v[i + 1]), bits(p[1]))
                            << c.name << " " << render::map_row_unit_name(unit) << " n " << n << " x " << x0 + i;
                    }
                    EXPECT_EQ(u[0], 7.0f);
                    EXPECT_EQ(u[n + 1], 7.0f);
                    EXPECT_EQ(v[n + 1], 7.0f);
                }
            }
        }
    }
}

}  // namespace
