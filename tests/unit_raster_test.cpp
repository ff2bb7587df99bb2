// The polygon rasteriser: edges, sampling, the sort, and whole renders of
// hand-placed elements in each quality.
#include <gtest/gtest.h>

#include "tests/render_scene.h"

namespace {

constexpr int kHigh = 0, kMed = 1, kLow = 2;

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
    EXPECT_EQ(p.edges[0][0], 1e10f);  // 0 -> 1 is vertical
    EXPECT_EQ(p.edges[0][1], static_cast<float>(9.0f - 1e10f * 2.0f));
    EXPECT_EQ(p.edges[1][0], 0.25f);  // 1 -> 2
    EXPECT_EQ(p.edges[1][1], 0.5f);
    EXPECT_EQ(p.edges[3][0], 0.0f);  // 3 -> 0 is flat
    EXPECT_EQ(p.edges[3][1], 9.0f);
    // Exactly on an edge counts as its non-negative side: inside on the top
    // edge (the centre lies below it), outside on the bottom one.
    const struct { int x, y, inside; } cases[] = {{6, 6, 1}, {6, 1, 0}, {6, 10, 0}, {11, 6, 0}, {6, 2, 1}, {6, 9, 0}};
    for (const auto& c : cases) EXPECT_EQ(fx->inside_polygon_test(&p, c.x, c.y), c.inside) << c.x << "," << c.y;

    // Anti-aliased coverage ramps in from the nearest edge in High Quality only.
    tagINFO info{};
    p = with_corners({{0.0f, 20.25f}, {0.0f, 0.25f}, {20.0f, 0.25f}, {20.0f, 20.25f}});
    fx->find_line_coeffs(&p);
    info.render_mode = kHigh;
    EXPECT_FLOAT_EQ(fx->edge_antialiased_alpha(&info, &p, 10, 1), 0.75f * 32767.0f);  // 0.75 below the top edge
    EXPECT_FLOAT_EQ(fx->edge_antialiased_alpha(&info, &p, 10, 10), 32767.0f);
    EXPECT_EQ(fx->edge_antialiased_alpha(&info, &p, 10, 0), 0.0f);  // outside
    info.render_mode = kMed;
    EXPECT_EQ(fx->edge_antialiased_alpha(&info, &p, 10, 1), 32767.0f);
}

TEST(RasterSampling, BoxAverageBilinearAndMirror) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    ImageQ7 img(4, 3);
    for (int i = 0; i < 12; ++i) {
        const std::uint16_t v = static_cast<std::uint16_t>(1000 * (i % 4 + 1) + 100 * (i / 4));
        img.buffer[i] = PixelQ7{v, v, v, 7};
    }
    auto dot = [&](float ua, float va, float ub, float vb) { return fx->dotval(&img, 4, 3, ua, va, ub, vb); };
    // A 2 x 2 box: columns 1-2, rows 0-1; corners in either order.
    PixelQ7 p = dot(1.0f, 0.0f, 3.0f, 2.0f);
    EXPECT_EQ(p.r, static_cast<int>((2000 + 3000 + 2100 + 3100) * (1.0f / 4)));
    EXPECT_EQ(p.a, 7);
    EXPECT_EQ(dot(3.0f, 2.0f, 1.0f, 0.0f).r, p.r);
    // Smaller than a pixel: bilinear at the centre (1.25, 0.5).
    const double top = 2000 + 1000 * 0.25, bottom = 2100 + 1000 * 0.25;
    EXPECT_EQ(dot(1.0f, 0.25f, 1.5f, 0.75f).r, static_cast<int>(top + (bottom - top) * 0.5));
    // Outside the image the mirror image is read: -2.25 reads like 2.25,
    // 4.5 like 2 * 4 - 2 - 4.5 = 1.5.
    EXPECT_EQ(dot(-2.25f, 1.0f, -2.25f, 1.0f).r, dot(2.25f, 1.0f, 2.25f, 1.0f).r);
    EXPECT_EQ(dot(4.5f, 1.0f, 4.5f, 1.0f).r, dot(1.5f, 1.0f, 1.5f, 1.0f).r);
    // The matte variant carries channel 0 in R, G and B.
    p = fx->dotval_matte(&img, 4, 3, 1.0f, 0.0f, 3.0f, 2.0f);
    const PixelQ7 matte{2550, 2550, 2550, 0};
    EXPECT_TRUE(scene::same(&p, &matte));
}

TEST(RasterSort, QuicksortMovesWholeRecordsByKey) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    const float keys[9] = {-5, -100, -7, -5, -300, -1, -5, -42, -8};
    for (int i = 0; i < 9; ++i) {
        fx->polygons[i].depth_key = keys[i];
        fx->polygons[i].src_left = static_cast<int>(keys[i]) * 10;  // travels with its key
    }
    fx->qs(fx->polygons, 0, 8);
    EXPECT_EQ(fx->polygons[0].depth_key, -300.0f);
    for (int i = 0; i < 9; ++i) {
        EXPECT_LE(fx->polygons[i > 0 ? i - 1 : 0].depth_key, fx->polygons[i].depth_key);
        EXPECT_EQ(fx->polygons[i].src_left, static_cast<int>(fx->polygons[i].depth_key) * 10);
    }
}

TEST(RasterRender, MedQualityAtRestShowsOwnFrontPixelsAndHiddenElementsNone) {
    scene::Scene s(64, 48);
    s.grid(16, 12);
    s.render();
    for (int i = 0; i < s.w * s.h; ++i) {
        const PixelQ7 f = s.front->buffer[i], c = s.canvas->buffer[i];
        ASSERT_TRUE(c.r == f.r && c.g == f.g && c.b == f.b) << i;
        ASSERT_EQ(c.a, s.back->buffer[i].a);  // alpha is not written
    }
    EXPECT_EQ(s.fx->in_mp, 0);
    s.copy_back_to_canvas();
    std::fill(s.maps.begin(), s.maps.end(), 0.0f);
    s.fx->polygons[5].drawn = 0;
    s.render();
    EXPECT_EQ(s.canvas->at(24, 18).g, s.back->at(24, 18).g);  // inside element 5's tile
}

// Low Quality shows the front where the element now is, Med its own tile.
TEST(RasterRender, LowQualityIsNotTextureMapped) {
    for (int mode : {kLow, kMed}) {
        scene::Scene s(64, 48);
        s.in.render_mode = mode;
        s.tiles(16, 12, 1);
        tagPOLYGON& p = s.place(0, 0, 0);
        p.x += 20.0f;  // moved: covers columns 20..36, rows 10..22
        p.y += 10.0f;
        s.render();
        const PixelQ7 want = mode == kLow ? s.front->at(28, 16) : s.front->at(8, 6);
        EXPECT_TRUE(s.canvas->at(28, 16).r == want.r && s.canvas->at(28, 16).g == want.g) << mode;
        EXPECT_EQ(s.canvas->at(8, 6).g, s.back->at(8, 6).g);  // its old place shows the background
    }
}

TEST(RasterRender, HighQualityBlendsEdgePixelsMedHasHardEdges) {
    for (int mode : {kHigh, kMed}) {
        scene::Scene s(40, 40);
        scene::fill(s.front.get(), 32767);
        scene::fill(s.canvas.get(), 0);
        s.in.render_mode = mode;
        s.tiles(20, 20, 1);
        s.place(0, 10, 10).angle_z = 10.0f;
        s.render();
        int partial = 0, full = 0;
        for (int i = 0; i < s.w * s.h; ++i) {
            full += s.canvas->buffer[i].r == 32767;
            partial += s.canvas->buffer[i].r > 0 && s.canvas->buffer[i].r < 32767;
        }
        EXPECT_GT(full, 250) << mode;
        EXPECT_EQ(s.canvas->at(20, 20).r, 32767);  // interior: not mixed
        EXPECT_EQ(s.canvas->at(2, 2).r, 0);
        if (mode == kHigh) {
            EXPECT_GT(partial, 40);  // the rim of a rotated 20 x 20 square
        } else {
            EXPECT_EQ(partial, 0);
        }
    }
}

TEST(RasterRender, ZSortPutsTheNearerKeyOnTop) {
    for (int sort = 0; sort < 2; ++sort) {
        scene::Scene s(64, 48);
        s.tiles(16, 12, 2);
        s.in.z_sort = sort;
        tagPOLYGON& nearer = s.place(0, 0, 0);
        nearer.x = 32.0f, nearer.y = 24.0f, nearer.z = -150.0f;
        tagPOLYGON& farther = s.place(1, 40, 30);
        farther.x = 32.0f, farther.y = 24.0f;
        s.render();
        // The shared centre shows the nearer tile with the sort, the later record without it.
        const PixelQ7 c = s.canvas->at(32, 24), want = sort ? s.front->at(8, 6) : s.front->at(48, 36);
        EXPECT_TRUE(c.r == want.r && c.b == want.b) << "z_sort " << sort;
        EXPECT_EQ(s.fx->polygons[1].z, sort ? -150.0f : -192.0f);  // the records moved
    }
}

TEST(RasterRender, BlackThreeDMatteLeavesNoMarkInvertedDrawsFully) {
    scene::Scene s(64, 48);
    s.grid(16, 12);
    scene::fill(s.matte3.get(), 0);
    s.in.use_matte_3d = 1;
    s.render();
    EXPECT_TRUE(scene::same(s.canvas->buffer, s.back->buffer, s.w * s.h));
    s.in.invert_matte_3d = 1;
    s.grid(16, 12);
    s.render();
    for (int i = 0; i < s.w * s.h; ++i) ASSERT_EQ(s.canvas->buffer[i].r, s.front->buffer[i].r) << i;
}

TEST(RasterRender, LightBrightensTheElements) {
    scene::Scene s(64, 48);
    s.grid(16, 12);
    s.light(32.0f, 24.0f, 100.0f, 1.0f, 32767, 0, 0);
    s.render();
    for (int i = 0; i < s.w * s.h; ++i) {
        const double k = s.fx->add_background_light(&s.in, i % s.w, i / s.w, 0);
        ASSERT_EQ(s.canvas->buffer[i].r, std::min(32767, static_cast<int>(s.front->buffer[i].r + 32767 * k)));
        ASSERT_EQ(s.canvas->buffer[i].g, s.front->buffer[i].g);
    }
}

// Med and Low must not depend on the band count. High Quality does (its edge
// rule does not look below a band's last line), so it only has to be
// reproducible at a fixed count.
TEST(RasterRender, BandCountDoesNotChangeMedOrLowAndHighIsReproducible) {
    const struct { int mode; int bands[3]; } cases[] = {{kMed, {1, 2, 7}}, {kLow, {1, 2, 7}}, {kHigh, {2, 2, 2}}};
    for (const auto& c : cases) {
        std::vector<PixelQ7> reference;
        for (int bands : c.bands) {
            scene::Scene s(64, 48, bands);
            s.in.render_mode = c.mode;
            s.in.z_sort = c.mode != kHigh;
            s.grid(16, 12);
            for (int i = 0; i < s.in.element_count; ++i) {  // rotated, moved and scaled: work for every band
                tagPOLYGON& p = s.fx->polygons[i];
                p.angle_x = 7.0f * i, p.angle_y = -11.0f * i + 5.0f, p.angle_z = 13.0f * i;
                p.x += (i % 3) * 4 - 4, p.y += (i % 5) - 2, p.z += (i % 7) * 9 - 30;
            }
            s.render();
            if (reference.empty()) reference = scene::pixels(s.canvas.get());
            ASSERT_TRUE(scene::same(s.canvas->buffer, reference.data(), reference.size()))
                << "mode " << c.mode << " bands " << bands;
        }
    }
}
