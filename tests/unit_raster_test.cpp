// The polygon rasteriser: edges, sampling and a lit render of hand-placed
// elements. The qualities, Z Sort and the mattes are checked end to end.
#include <gtest/gtest.h>

#include "tests/render_scene.h"

namespace {

tagPOLYGON with_corners(const float (&c)[4][2]) {
    tagPOLYGON p{};
    for (int k = 0; k < 4; ++k) p.corners[k][0] = c[k][0], p.corners[k][1] = c[k][1];
    return p;
}

}  // namespace

TEST(RasterEdges, LineCoefficientsInsideTestAndCoverage) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    tagPOLYGON p = with_corners({{2, 9}, {2, 1}, {10, 3}, {10, 9}});
    fx->find_line_coeffs(&p);
    EXPECT_TRUE(p.edges[0][0] == 1e10f && p.edges[0][1] == static_cast<float>(9.0f - 1e10f * 2.0f));  // vertical
    EXPECT_TRUE(p.edges[1][0] == 0.25f && p.edges[1][1] == 0.5f);
    EXPECT_TRUE(p.edges[3][0] == 0.0f && p.edges[3][1] == 9.0f);  // flat
    // Exactly on an edge counts as its non-negative side: inside on the top
    // edge (the centre lies below it), outside on the bottom one.
    const struct { int x, y, inside; } cases[] = {{6, 6, 1}, {6, 1, 0}, {6, 10, 0}, {11, 6, 0}, {6, 2, 1}, {6, 9, 0}};
    for (const auto& c : cases) EXPECT_EQ(fx->inside_polygon_test(&p, c.x, c.y), c.inside) << c.x << "," << c.y;

    // Anti-aliased coverage ramps in from the nearest edge in High Quality only.
    tagINFO info{};
    p = with_corners({{0.0f, 20.25f}, {0.0f, 0.25f}, {20.0f, 0.25f}, {20.0f, 20.25f}});
    fx->find_line_coeffs(&p);
    const struct { int mode, y; float alpha; } cover[] = {{0, 1, 0.75f * 32767}, {0, 10, 32767}, {0, 0, 0}, {1, 1, 32767}};
    for (const auto& c : cover) {  // 0.75 below the top edge, inside, outside; Med has hard edges
        info.render_mode = c.mode;
        EXPECT_FLOAT_EQ(fx->edge_antialiased_alpha(&info, &p, 10, c.y), c.alpha) << c.mode << " " << c.y;
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
    // The matte variant carries channel 0 in R, G and B.
    const PixelQ7 p = fx->dotval_matte(&img, 4, 3, 1.0f, 0.0f, 3.0f, 2.0f), matte{2550, 2550, 2550, 0};
    EXPECT_TRUE(scene::same(&p, &matte));
}

// Elements at rest under a light: each shows its front pixels plus the light
// term of the intact clip (a black channel adds nothing), alpha is not
// written, and a hidden element leaves the canvas alone.
TEST(RasterRender, LitElementsAtRestAndHiddenElementsLeaveNoMark) {
    scene::Scene s(64, 48);
    s.grid(16, 12);
    s.light(32.0f, 24.0f, 100.0f, 1.0f, 32767, 0, 0);
    s.fx->polygons[5].drawn = 0;  // the tile (16, 12)-(32, 24)
    s.render();
    for (int i = 0; i < s.w * s.h; ++i) {
        const int x = i % s.w, y = i / s.w;
        const PixelQ7 f = s.front->buffer[i], b = s.back->buffer[i], c = s.canvas->buffer[i];
        ASSERT_EQ(c.a, b.a) << i;
        if (x >= 16 && x <= 32 && y >= 12 && y <= 24) {  // the rim may belong to a neighbour
            ASSERT_TRUE(scene::same(&c, &b) || x % 16 == 0 || y % 12 == 0) << i;
            continue;
        }
        const double k = s.fx->add_background_light(&s.in, x, y, 0);
        ASSERT_EQ(c.r, std::min(32767, static_cast<int>(f.r + 32767 * k))) << i;
        ASSERT_TRUE(c.g == f.g && c.b == f.b) << i;
    }
    EXPECT_EQ(s.fx->in_mp, 0);
}
