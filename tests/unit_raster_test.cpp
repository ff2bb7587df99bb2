// The polygon rasteriser (edges, sampling, a lit render of hand-placed
// elements) and the light factors and background worker, on a hand-built
// scene. The qualities, Z Sort and the mattes are checked end to end.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "effect/paneburst.h"
#include "framework/plugin.h"
#include "render/light_term.h"
#include "effect/vecnorm.h"
#include "sparkhost/host.h"

namespace {

void fill_pattern(ImageQ7* img, int salt) {
    const long w = img->width;
    auto v = [w](long i, int c) { return std::uint16_t((i % w * 977 + i / w * 3119 + c * 7001 + 13) % 32768); };
    for (long i = 0; i < img->width * img->height; ++i)
        img->buffer[i] = {v(i, salt), v(i, salt + 1), v(i, salt + 2), v(i, salt + 3)};
}

bool same(const PixelQ7* a, const PixelQ7* b, size_t n = 1) { return std::memcmp(a, b, n * sizeof *a) == 0; }

// Owns the images and maps of a frame (Med Quality, no mattes, no light) and
// the effect object drawing it; the canvas starts as a copy of the back.
struct Scene {
    sparkhost::Host host;
    std::unique_ptr<Paneburst> fx{new Paneburst};
    tagINFO& in = fx->info;
    std::unique_ptr<ImageQ7> front, back, result, canvas;
    std::vector<float> maps;
    int w, h;
    Scene(int width, int height, int bands = 1) : w(width), h(height) {
        host.settings.bands = DLnumProc = bands;
        for (auto* img : {&front, &back, &result, &canvas}) img->reset(new ImageQ7(w, h));
        fill_pattern(front.get(), 0), fill_pattern(back.get(), 5), fill_pattern(result.get(), 9);
        std::copy(back->buffer, back->buffer + w * h, canvas->buffer);
        maps.assign(3 * static_cast<size_t>(w) * h, 0.0f);
        in.map_u = maps.data(), in.map_v = in.map_u + w * h, in.map_coverage = in.map_v + w * h;
        in.front = front.get(), in.back = back.get(), in.result = result.get(), in.lit_back = canvas.get();
        in.width = fx->image_width = w, in.height = fx->image_height = h;
        in.foreground_z = -192.0f, in.maximum_z = -12.0f, in.render_mode = 1, in.gloss = 1.0f;
    }
    ~Scene() { DLnumProc = 1; }
    void light(float x, float y, float z, float brightness, int r, int g, int b) {
        in.use_light = 1, in.light_x = x, in.light_y = y, in.light_z = z, in.light_brightness = brightness;
        in.light_r = r, in.light_g = g, in.light_b = b;
    }
    // grid() places tw x th elements at rest on their tiles, rows from (0, 0); place() puts one on a tile.
    void grid(int tw, int th) {
        in.tile_width = tw, in.tile_height = th, in.columns = (w + tw - 1) / tw, in.rows = (h + th - 1) / th;
        in.element_count = in.columns * in.rows;
        for (int i = 0; i < in.element_count; ++i) place(i, i % in.columns * tw, i / in.columns * th);
    }
    tagPOLYGON& place(int index, int left, int top) {
        tagPOLYGON& p = fx->polygons[index] = tagPOLYGON{};
        p.src_left = left, p.src_right = left + in.tile_width, p.src_top = top, p.src_bottom = top + in.tile_height;
        p.x = left + 0.5f * in.tile_width, p.y = top + 0.5f * in.tile_height, p.z = in.foreground_z, p.drawn = 1;
        return p;
    }
    void render() { fx->render_polygons(&in, fx->polygons); }
};

tagPOLYGON with_corners(const float (&c)[4][2]) {
    tagPOLYGON p{};
    for (int k = 0; k < 4; ++k) p.corners[k][0] = c[k][0], p.corners[k][1] = c[k][1];
    return p;
}

struct Lighting : ::testing::Test {
    Scene s{8, 6, 2};
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

TEST(RasterEdges, LineCoefficientsInsideTestAndCoverage) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    tagPOLYGON p = with_corners({{2, 9}, {2, 1}, {10, 3}, {10, 9}});
    fx->find_line_coeffs(&p);
    EXPECT_TRUE(p.edges[0][0] == 1e10f && p.edges[0][1] == static_cast<float>(9.0f - 1e10f * 2.0f) &&  // vertical
                p.edges[1][0] == 0.25f && p.edges[1][1] == 0.5f && p.edges[3][0] == 0.0f && p.edges[3][1] == 9.0f);
    // Exactly on an edge counts as its non-negative side: inside on the top
    // edge (the centre lies below it), outside on the bottom one.
    const struct { int x, y, inside; } cases[] = {{6, 6, 1}, {6, 1, 0}, {6, 10, 0}, {11, 6, 0}, {6, 2, 1}, {6, 9, 0}};
    for (const auto& c : cases) EXPECT_EQ(fx->inside_polygon_test(&p, c.x, c.y), c.inside) << c.x << "," << c.y;

    // Anti-aliased coverage ramps in from the nearest edge in High Quality only.
    tagINFO info{};
    p = with_corners({{0.0f, 20.25f}, {0.0f, 0.25f}, {20.0f, 0.25f}, {20.0f, 20.25f}});
    fx->find_line_coeffs(&p);
    const struct { int mode, y; float a; } cover[] = {{0, 1, 0.75f * 32767}, {0, 10, 32767}, {0, 0, 0}, {1, 1, 32767}};
    for (const auto& c : cover) {  // 0.75 below the top edge, inside, outside; Med has hard edges
        info.render_mode = c.mode;
        EXPECT_FLOAT_EQ(fx->edge_antialiased_alpha(&info, &p, 10, c.y), c.a) << c.mode << " " << c.y;
    }
}

TEST(RasterSampling, BoxAverageBilinearMirrorAndMatte) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    ImageQ7 img(4, 3);
    for (std::uint16_t i = 0, v; i < 12; ++i) v = 1000 * (i % 4 + 1) + 100 * (i / 4), img.buffer[i] = {v, v, v, 7};
    auto dot = [&](float ua, float va, float ub, float vb) { return fx->dotval(&img, 4, 3, ua, va, ub, vb).r; };
    // A 2 x 2 box: columns 1-2, rows 0-1; corners in either order.
    EXPECT_EQ(dot(3.0f, 2.0f, 1.0f, 0.0f), static_cast<int>((2000 + 3000 + 2100 + 3100) * (1.0f / 4)));
    // Smaller than a pixel: bilinear at the centre (1.25, 0.5).
    EXPECT_EQ(dot(1.0f, 0.25f, 1.5f, 0.75f), static_cast<int>(2250 + 100 * 0.5));
    // Outside the image the mirror image is read: -2.25 like 2.25, 4.5 like 2 x 4 - 2 - 4.5 = 1.5.
    EXPECT_EQ(dot(-2.25f, 1.0f, -2.25f, 1.0f), dot(2.25f, 1.0f, 2.25f, 1.0f));
    EXPECT_EQ(dot(4.5f, 1.0f, 4.5f, 1.0f), dot(1.5f, 1.0f, 1.5f, 1.0f));
}

// Elements at rest under a light: each shows its front pixels plus the light
// term of the intact clip (a black channel adds nothing), alpha is not
// written, and a hidden element leaves the canvas alone.
TEST(RasterRender, LitElementsAtRestAndHiddenElementsLeaveNoMark) {
    Scene s(64, 48);
    s.grid(16, 12);
    s.light(32.0f, 24.0f, 100.0f, 1.0f, 32767, 0, 0);
    s.fx->polygons[5].drawn = 0;  // the tile (16, 12)-(32, 24)
    s.render();
    for (int i = 0; i < s.w * s.h; ++i) {
        const int x = i % s.w, y = i / s.w;
        const PixelQ7 f = s.front->buffer[i], b = s.back->buffer[i], c = s.canvas->buffer[i];
        ASSERT_EQ(c.a, b.a) << i;
        if (x >= 16 && x <= 32 && y >= 12 && y <= 24) {  // the rim may belong to a neighbour
            ASSERT_TRUE(same(&c, &b) || x % 16 == 0 || y % 12 == 0) << i;
            continue;
        }
        const double k = s.fx->add_background_light(&s.in, x, y, 0);
        ASSERT_EQ(c.r, std::min(32767, static_cast<int>(f.r + 32767 * k))) << i;
        ASSERT_TRUE(c.g == f.g && c.b == f.b) << i;
    }
}

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
        EXPECT_NEAR(s.fx->add_light(&in, &p, i % 8, i / 8), s.fx->add_background_light(&in, i % 8, i / 8, 0), 1e-4)
            << i;
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
        EXPECT_TRUE(c.g == b.g && c.a == b.a && same(&c, &s.result->buffer[i])) << i;  // black green: unchanged
    }
    EXPECT_EQ(s.canvas->at(3, 2).b, 32767);  // right under the light: saturated
}

// A tilted element under a light: every drawn pixel carries the light term
// of the element's factor, whose normal comes from the plane coefficients as
// stored, in single precision. For this element, normals built from the
// unrounded coefficients come out one unit in the last place away, which
// moves a fraction of the pixels by a channel step.
TEST(RasterRender, LitTiltedElementUsesTheNormalOfTheStoredPlane) {
    Scene s(800, 600);
    s.grid(800, 600);
    for (long i = 0; i < 800 * 600; ++i) s.front->buffer[i] = {1000, 1000, 1000, 32767};
    tagPOLYGON& p = s.fx->polygons[0];
    p.angle_x = -80.0f, p.angle_y = -55.0f, p.angle_z = 40.0f;
    s.light(-2e4f, 300.0f, 5e3f, 1.0f, 32767, 0, 0);
    s.render();
    int drawn = 0, wrong = 0;
    for (int i = 0; i < s.w * s.h; ++i) {
        if (s.in.map_coverage[i] != 32767.0f) continue;
        const float k = render::light_strength(&s.in, s.fx->add_light(&s.in, &p, i % s.w, i / s.w));
        wrong += s.canvas->buffer[i].r != render::lit_channel(1000, 32767, k);
        ++drawn;
    }
    EXPECT_GT(drawn, 30000);
    EXPECT_EQ(wrong, 0);
}
