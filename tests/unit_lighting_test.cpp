// Light factors, the background and copy workers, and the final compositing.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/render_scene.h"

namespace {

struct Lighting : ::testing::Test {
    scene::Scene s{8, 6, 2};
    tagINFO& in = s.in;
    void SetUp() override { s.light(3.0f, 2.0f, 40.0f, 1.0f, 0, 0, 0), in.background_z = -30.0f; }
    void run(void (Paneburst::*worker)(long, long)) { s.fx->MultiProcess(worker, s.h); }
    // The z of the unit vector toward the light, with an exact square root;
    // the effect's normaliser is within 1e-4 of it.
    double toward_light_z(double x, double y, double zp) const {
        const double lx = in.light_x - x, ly = in.light_y - y, lz = in.light_z - zp;
        return lz / std::sqrt(lx * lx + ly * ly + lz * lz);
    }
};

}  // namespace

TEST_F(Lighting, FactorsOfTheBackgroundAndOfElementsNeverNegative) {
    EXPECT_NEAR(s.fx->add_background_light(&in, 7, 5, 1), toward_light_z(7, 5, -30.0), 1e-4);
    EXPECT_NEAR(s.fx->add_background_light(&in, 0, 0, 0), toward_light_z(0, 0, -192.0), 1e-4);
    // A flat element at the foreground depth (lit like the intact clip, as the
    // renderer's test shows) turned over: its back face is lit the same.
    in.tile_width = 4, in.tile_height = 3;
    tagPOLYGON& p = s.place(0, 2, 1);
    float n, f;
    p.angle_y = 180.0f;
    s.fx->generate_polygon_vertices(&in, &p, &n, &f);
    for (int i = 0; i < 48; ++i)
        EXPECT_NEAR(s.fx->add_light(&in, &p, i % 8, i / 8), s.fx->add_background_light(&in, i % 8, i / 8, 0), 1e-4) << i;
    // A light in the element's plane gives 0; so does one behind or in line with the background plane.
    in.light_z = -192.0f;
    EXPECT_EQ(s.fx->add_light(&in, &p, 1.0f, 1.0f), 0.0f);
    for (float z : {-300.0f, -30.0f}) EXPECT_EQ((in.light_z = z, s.fx->add_background_light(&in, 1, 1, 1)), 0.0f) << z;
}

TEST_F(Lighting, LitBackgroundAddsTheGlossyLightTermAndSaturates) {
    s.light(3.0f, 2.0f, 40.0f, 0.5f, 1000, 0, 32767);
    in.gloss = 3.0f;
    run(&Paneburst::mp_BackLight);
    for (int i = 0; i < s.w * s.h; ++i) {
        const PixelQ7 b = s.back->buffer[i], c = s.canvas->buffer[i];
        const double k = std::pow(toward_light_z(i % s.w, i / s.w, -30.0), 3.0) * 0.5;
        EXPECT_NEAR(c.r, std::min(32767.0, std::trunc(b.r + 1000 * k)), 1.0) << i;
        EXPECT_NEAR(c.b, std::min(32767.0, std::trunc(b.b + 32767 * k)), 1.0) << i;
        EXPECT_TRUE(c.g == b.g && c.a == b.a && scene::same(&c, &s.result->buffer[i])) << i;  // black green: unchanged
    }
    EXPECT_EQ(s.canvas->at(3, 2).b, 32767);  // right under the light: saturated
}
