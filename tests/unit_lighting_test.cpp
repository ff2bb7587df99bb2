// Light factors, the background and copy workers, and the final compositing.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/render_scene.h"

namespace {

// The unit vector toward the light, with an exact square root; the effect's
// normaliser is within 1e-4 of it.
double toward_light_z(const tagINFO& in, double x, double y, double zp) {
    const double lx = in.light_x - x, ly = in.light_y - y, lz = in.light_z - zp;
    return lz / std::sqrt(lx * lx + ly * ly + lz * lz);
}

struct Lighting : ::testing::Test {
    scene::Scene s{8, 6, 2};
    tagINFO& in = s.fx->info;
    void SetUp() override {
        in.use_light = 1;
        in.light_x = 3.0f;
        in.light_y = 2.0f;
        in.light_z = 40.0f;
        in.light_brightness = 1.0f;
        in.gloss = 1.0f;
        in.background_z = -30.0f;
    }
    void run(void (Paneburst::*worker)(long, long)) { s.fx->MultiProcess(worker, s.h); }
};

}  // namespace

TEST_F(Lighting, BackgroundFactorIsTheZOfTheDirectionToTheLight) {
    EXPECT_NEAR(s.fx->add_background_light(&in, 7, 5, 1), toward_light_z(in, 7, 5, -30.0), 1e-4);
    EXPECT_NEAR(s.fx->add_background_light(&in, 0, 0, 0), toward_light_z(in, 0, 0, -192.0), 1e-4);
    // A light behind the plane, or in line with it, adds nothing.
    in.light_z = -300.0f;
    EXPECT_EQ(s.fx->add_background_light(&in, 1, 1, 1), 0.0f);
    in.light_z = -30.0f;
    EXPECT_EQ(s.fx->add_background_light(&in, 1, 1, 1), 0.0f);
}

TEST_F(Lighting, FlatElementAtForegroundDepthIsLitLikeTheIntactClip) {
    in.tile_width = 4;
    in.tile_height = 3;
    tagPOLYGON& p = s.place(0, 2, 1);
    float n, f;
    s.fx->generate_polygon_vertices(&in, &p, &n, &f);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_EQ(s.fx->add_light(&in, &p, x, y), s.fx->add_background_light(&in, x, y, 0)) << x << "," << y;
}

TEST_F(Lighting, ElementFactorUsesTheScreenSpaceNormalOfEitherFace) {
    in.tile_width = 4;
    in.tile_height = 4;
    tagPOLYGON& p = s.place(0, 0, 0);
    p.angle_y = 180.0f;  // the back face toward the viewer is lit the same
    float n, f;
    s.fx->generate_polygon_vertices(&in, &p, &n, &f);
    EXPECT_NEAR(s.fx->add_light(&in, &p, 1.0f, 1.0f), s.fx->add_background_light(&in, 1, 1, 0), 1e-4);
    // A light exactly in the plane of a flat element gives 0, never less.
    in.light_z = -192.0f;
    EXPECT_EQ(s.fx->add_light(&in, &p, 1.0f, 1.0f), 0.0f);
}

TEST_F(Lighting, LitBackgroundAddsTheLightTermAndSaturates) {
    in.light_r = 1000;
    in.light_g = 0;
    in.light_b = 32767;
    in.gloss = 3.0f;
    in.light_brightness = 0.5f;
    run(&Paneburst::mp_BackLight);
    for (int y = 0; y < s.h; ++y)
        for (int x = 0; x < s.w; ++x) {
            const PixelQ7 b = s.back->at(x, y);
            const PixelQ7 c = s.canvas->at(x, y);
            const double k = std::pow(toward_light_z(in, x, y, -30.0), 3.0) * 0.5;
            EXPECT_NEAR(c.r, std::min(32767.0, std::trunc(b.r + 1000 * k)), 1.0);
            EXPECT_EQ(c.g, b.g);  // a black light channel changes nothing
            EXPECT_NEAR(c.b, std::min(32767.0, std::trunc(b.b + 32767 * k)), 1.0);
            EXPECT_EQ(c.a, b.a);
            EXPECT_TRUE(scene::same(c, s.result->at(x, y)));
        }
    EXPECT_EQ(s.canvas->at(3, 2).b, 32767);  // right under the light: saturated
}

TEST_F(Lighting, CopyUnderAFullMatteArrivesOneLower) {
    scene::fill(s.canvas.get(), 0);
    s.canvas->at(1, 1).a = 32767;
    s.front->at(0, 0) = PixelQ7{0, 1, 32767, 100};
    in.use_matte_3d = 1;
    run(&Paneburst::mp_copynolight);
    for (int y = 0; y < s.h; ++y)
        for (int x = 0; x < s.w; ++x) {
            const PixelQ7 f = s.front->at(x, y);
            const PixelQ7 c = s.canvas->at(x, y);
            EXPECT_EQ(c.r, f.r ? f.r - 1 : 0);
            EXPECT_EQ(c.g, f.g ? f.g - 1 : 0);
            EXPECT_EQ(c.b, f.b ? f.b - 1 : 0);
            if (x == 1 && y == 1) {
                EXPECT_EQ(c.a, 32767);  // clamped
            } else {
                EXPECT_EQ(c.a, (f.a * 32767) >> 15);
            }
        }
}

TEST_F(Lighting, CopyUnderAnInvertedBlackMatteAlsoArrivesOneLower) {
    scene::fill(s.canvas.get(), 0);
    scene::fill(s.matte3.get(), 0);
    in.use_matte_3d = 1;
    in.invert_matte_3d = 1;
    run(&Paneburst::mp_copynolight);
    const PixelQ7 f = s.front->at(5, 4);
    EXPECT_EQ(s.canvas->at(5, 4).g, f.g - 1);
}

TEST_F(Lighting, CopyWithoutMatteTakesTheFrontAndAddsAlpha) {
    s.front->at(2, 2).a = 30000;
    s.canvas->at(2, 2).a = 30000;
    in.light_r = in.light_g = in.light_b = 0;  // black light: colours unchanged
    run(&Paneburst::mp_copywithlight);
    for (int y = 0; y < s.h; ++y)
        for (int x = 0; x < s.w; ++x) {
            const PixelQ7 f = s.front->at(x, y);
            const PixelQ7 c = s.canvas->at(x, y);
            EXPECT_EQ(c.r, f.r);
            EXPECT_EQ(c.g, f.g);
            EXPECT_EQ(c.b, f.b);
            EXPECT_EQ(c.a, std::min(32767, f.a + s.back->at(x, y).a)) << x << "," << y;
        }
}

TEST_F(Lighting, CopyWithLightUnderAMatteBlendsTheLitFront) {
    scene::fill(s.canvas.get(), 1000);
    scene::fill(s.matte3.get(), 16384);
    in.use_matte_3d = 1;
    in.light_r = in.light_g = in.light_b = 20000;
    run(&Paneburst::mp_copywithlight);
    for (int x = 0; x < s.w; ++x) {
        const PixelQ7 f = s.front->at(x, 3);
        const double k = toward_light_z(in, x, 3, -192.0);
        const long lit = std::min(32767L, static_cast<long>(f.r + 20000 * k));
        EXPECT_NEAR(s.canvas->at(x, 3).r, (1000L * (32767 - 16384) + lit * 16384) >> 15, 1.0);
        EXPECT_EQ(s.canvas->at(x, 3).a, std::min(32767L, ((f.a * 16384L) >> 15) + 1000));
    }
}

TEST_F(Lighting, BlackMatteKeepsTheCanvasUpToTheShift) {
    // The canvas weight is 32767 / 32768 as well: the canvas loses one too.
    scene::fill(s.matte3.get(), 0);
    in.use_matte_3d = 1;
    const auto before = s.canvas_pixels();
    run(&Paneburst::mp_copynolight);
    for (size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(s.canvas->buffer[i].r, (before[i].r * 32767) >> 15);
        EXPECT_EQ(s.canvas->buffer[i].b, (before[i].b * 32767) >> 15);
        EXPECT_EQ(s.canvas->buffer[i].a, before[i].a);
    }
}

TEST_F(Lighting, CompositeCopiesTheCanvasWithoutMatte) {
    run(&Paneburst::mp_compo);
    for (int i = 0; i < s.w * s.h; ++i) EXPECT_TRUE(scene::same(s.result->buffer[i], s.canvas->buffer[i]));
}

TEST_F(Lighting, CompositeThroughTheTwoDMatte) {
    scene::fill_pattern(s.result.get(), 9);
    const auto background = std::vector<PixelQ7>(s.result->buffer, s.result->buffer + s.w * s.h);
    // Black matte: the background stays exactly as it was.
    in.use_matte_2d = 1;
    run(&Paneburst::mp_compo);
    for (int i = 0; i < s.w * s.h; ++i) EXPECT_TRUE(scene::same(s.result->buffer[i], background[i]));
    // Inverted black matte: the canvas exactly.
    in.invert_matte_2d = 1;
    run(&Paneburst::mp_compo);
    for (int i = 0; i < s.w * s.h; ++i) EXPECT_TRUE(scene::same(s.result->buffer[i], s.canvas->buffer[i]));
    // A partial matte mixes in proportion.
    std::copy(background.begin(), background.end(), s.result->buffer);
    s.matte2->at(4, 1).r = 10000;
    in.invert_matte_2d = 0;
    run(&Paneburst::mp_compo);
    const PixelQ7 r = background[1 * s.w + 4], c = s.canvas->at(4, 1);
    EXPECT_EQ(s.result->at(4, 1).g, static_cast<int>((r.g * 22767.0 + c.g * 10000.0) / 32767.0));
    EXPECT_EQ(s.result->at(4, 1).a, static_cast<int>((r.a * 22767.0 + c.a * 10000.0) / 32767.0));
}
