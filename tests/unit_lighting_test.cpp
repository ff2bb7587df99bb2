// Light factors, the background and copy workers, and the final compositing.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/render_scene.h"

namespace {

struct Lighting : ::testing::Test {
    scene::Scene s{8, 6, 2};
    tagINFO& in = s.in;
    void SetUp() override {
        s.light(3.0f, 2.0f, 40.0f, 1.0f, 0, 0, 0);
        in.background_z = -30.0f;
    }
    void run(void (Paneburst::*worker)(long, long)) { s.fx->MultiProcess(worker, s.h); }
    // The z of the unit vector toward the light, with an exact square root;
    // the effect's normaliser is within 1e-4 of it.
    double toward_light_z(double x, double y, double zp) const {
        const double lx = in.light_x - x, ly = in.light_y - y, lz = in.light_z - zp;
        return lz / std::sqrt(lx * lx + ly * ly + lz * lz);
    }
};

}  // namespace

TEST_F(Lighting, BackgroundAndElementFactors) {
    EXPECT_NEAR(s.fx->add_background_light(&in, 7, 5, 1), toward_light_z(7, 5, -30.0), 1e-4);
    EXPECT_NEAR(s.fx->add_background_light(&in, 0, 0, 0), toward_light_z(0, 0, -192.0), 1e-4);
    // A flat element at the foreground depth is lit exactly like the intact
    // clip; turned over, its back face is lit the same.
    s.tiles(4, 3, 1);
    tagPOLYGON& p = s.place(0, 2, 1);
    float n, f;
    for (float angle_y : {0.0f, 180.0f}) {
        p.angle_y = angle_y;
        s.fx->generate_polygon_vertices(&in, &p, &n, &f);
        for (int i = 0; i < 48; ++i)
            EXPECT_NEAR(s.fx->add_light(&in, &p, i % 8, i / 8), s.fx->add_background_light(&in, i % 8, i / 8, 0),
                        angle_y ? 1e-4 : 0.0) << angle_y << " " << i;
    }
    // A light in the element's plane gives 0, never less; so does one behind
    // or in line with the background plane.
    in.light_z = -192.0f;
    EXPECT_EQ(s.fx->add_light(&in, &p, 1.0f, 1.0f), 0.0f);
    for (float z : {-300.0f, -30.0f}) {
        in.light_z = z;
        EXPECT_EQ(s.fx->add_background_light(&in, 1, 1, 1), 0.0f) << z;
    }
}

TEST_F(Lighting, LitBackgroundAddsTheLightTermAndSaturates) {
    s.light(3.0f, 2.0f, 40.0f, 0.5f, 1000, 0, 32767);
    in.gloss = 3.0f;
    run(&Paneburst::mp_BackLight);
    for (int i = 0; i < s.w * s.h; ++i) {
        const PixelQ7 b = s.back->buffer[i], c = s.canvas->buffer[i];
        const double k = std::pow(toward_light_z(i % s.w, i / s.w, -30.0), 3.0) * 0.5;
        EXPECT_NEAR(c.r, std::min(32767.0, std::trunc(b.r + 1000 * k)), 1.0);
        EXPECT_EQ(c.g, b.g);  // a black light channel changes nothing
        EXPECT_NEAR(c.b, std::min(32767.0, std::trunc(b.b + 32767 * k)), 1.0);
        EXPECT_EQ(c.a, b.a);
        EXPECT_TRUE(scene::same(&c, &s.result->buffer[i]));
    }
    EXPECT_EQ(s.canvas->at(3, 2).b, 32767);  // right under the light: saturated
}

// The copy blends by a shift of 15 bits with weights summing to 32767, so a
// full matte (or an inverted black one) brings every channel above 0 one
// lower, and a black matte takes one off the canvas instead.
TEST_F(Lighting, CopyUnderAMatteLosesOneToTheShift) {
    in.use_matte_3d = 1;
    s.front->at(0, 0) = PixelQ7{0, 1, 32767, 100};
    for (int matte : {32767, -1, 0}) {  // -1: inverted black matte
        if (matte) {
            scene::fill(s.canvas.get(), 0);
            s.canvas->at(1, 1).a = 32767;
        }
        const auto before = scene::pixels(s.canvas.get());
        scene::fill(s.matte3.get(), matte > 0 ? 32767 : 0);
        in.invert_matte_3d = matte < 0;
        run(&Paneburst::mp_copynolight);
        for (int i = 0; i < s.w * s.h; ++i) {
            const PixelQ7 f = s.front->buffer[i], b = before[i], c = s.canvas->buffer[i];
            auto want = [&](int front, int canvas) { return matte ? std::max(front - 1, 0) : (canvas * 32767) >> 15; };
            ASSERT_TRUE(c.r == want(f.r, b.r) && c.g == want(f.g, b.g) && c.b == want(f.b, b.b)) << matte << " " << i;
            // Alpha adds the front's share; (1, 1) clamps.
            ASSERT_EQ(c.a, !matte ? b.a : i == s.w + 1 ? 32767 : (f.a * 32767) >> 15) << matte << " " << i;
        }
    }
}

TEST_F(Lighting, CopyWithLightTakesTheLitFrontAndAddsAlpha) {
    s.front->at(2, 2).a = s.canvas->at(2, 2).a = 30000;
    run(&Paneburst::mp_copywithlight);  // black light: colours unchanged, no matte: alpha added
    for (int i = 0; i < s.w * s.h; ++i) {
        const PixelQ7 f = s.front->buffer[i], c = s.canvas->buffer[i];
        EXPECT_TRUE(c.r == f.r && c.g == f.g && c.b == f.b) << i;
        EXPECT_EQ(c.a, std::min(32767, f.a + s.back->buffer[i].a)) << i;
    }
    // Under a half matte the lit front and the canvas mix.
    scene::fill(s.canvas.get(), 1000);
    scene::fill(s.matte3.get(), 16384);
    in.use_matte_3d = 1;
    in.light_r = in.light_g = in.light_b = 20000;
    run(&Paneburst::mp_copywithlight);
    for (int x = 0; x < s.w; ++x) {
        const PixelQ7 f = s.front->at(x, 3);
        const long lit = std::min(32767L, static_cast<long>(f.r + 20000 * toward_light_z(x, 3, -192.0)));
        EXPECT_NEAR(s.canvas->at(x, 3).r, (1000L * (32767 - 16384) + lit * 16384) >> 15, 1.0);
        EXPECT_EQ(s.canvas->at(x, 3).a, std::min(32767L, ((f.a * 16384L) >> 15) + 1000));
    }
}

TEST_F(Lighting, CompositeCopiesTheCanvasOrMixesThroughTheTwoDMatte) {
    const int n = s.w * s.h;
    run(&Paneburst::mp_compo);  // no matte: the canvas, all four channels
    EXPECT_TRUE(scene::same(s.result->buffer, s.canvas->buffer, n));
    scene::fill_pattern(s.result.get(), 9);
    const auto background = scene::pixels(s.result.get());
    in.use_matte_2d = 1;
    run(&Paneburst::mp_compo);  // black matte: the background exactly
    EXPECT_TRUE(scene::same(s.result->buffer, background.data(), n));
    in.invert_matte_2d = 1;
    run(&Paneburst::mp_compo);  // inverted black matte: the canvas exactly
    EXPECT_TRUE(scene::same(s.result->buffer, s.canvas->buffer, n));

    // A partial matte mixes in proportion.
    std::copy(background.begin(), background.end(), s.result->buffer);
    s.matte2->at(4, 1).r = 10000;
    in.invert_matte_2d = 0;
    run(&Paneburst::mp_compo);
    const PixelQ7 r = background[1 * s.w + 4], c = s.canvas->at(4, 1);
    EXPECT_EQ(s.result->at(4, 1).g, static_cast<int>((r.g * 22767.0 + c.g * 10000.0) / 32767.0));
    EXPECT_EQ(s.result->at(4, 1).a, static_cast<int>((r.a * 22767.0 + c.a * 10000.0) / 32767.0));
}
