// The polygon rasteriser: edges, sampling, the sort, and whole renders of
// hand-placed elements in each quality.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "tests/render_scene.h"

namespace {

constexpr int kHigh = 0, kMed = 1, kLow = 2;

// A frame of rotated, moved and scaled elements: something for every band.
void tumble(scene::Scene& s) {
    s.grid(16, 12);
    for (int i = 0; i < s.fx->info.element_count; ++i) {
        tagPOLYGON& p = s.fx->polygons[i];
        p.angle_x = 7.0f * i;
        p.angle_y = -11.0f * i + 5.0f;
        p.angle_z = 13.0f * i;
        p.x += static_cast<float>((i % 3) * 4 - 4);
        p.y += static_cast<float>((i % 5) - 2);
        p.z = -192.0f + static_cast<float>((i % 7) * 9 - 30);
    }
}

}  // namespace

TEST(RasterEdges, LineCoefficientsIncludingVerticalEdges) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    tagPOLYGON p{};
    const float c[4][2] = {{2, 9}, {2, 1}, {10, 3}, {10, 9}};
    for (int k = 0; k < 4; ++k) {
        p.corners[k][0] = c[k][0];
        p.corners[k][1] = c[k][1];
    }
    fx->find_line_coeffs(&p);
    EXPECT_EQ(p.edges[0][0], 1e10f);  // 0 -> 1 is vertical
    EXPECT_EQ(p.edges[0][1], static_cast<float>(9.0f - 1e10f * 2.0f));
    EXPECT_EQ(p.edges[1][0], 0.25f);  // 1 -> 2
    EXPECT_EQ(p.edges[1][1], 0.5f);
    EXPECT_EQ(p.edges[3][0], 0.0f);  // 3 -> 0 is flat
    EXPECT_EQ(p.edges[3][1], 9.0f);

    EXPECT_EQ(fx->inside_polygon_test(&p, 6, 6), 1);
    EXPECT_EQ(fx->inside_polygon_test(&p, 6, 1), 0);  // above the slanted edge
    EXPECT_EQ(fx->inside_polygon_test(&p, 6, 10), 0);
    EXPECT_EQ(fx->inside_polygon_test(&p, 11, 6), 0);
    // Exactly on an edge counts as its non-negative side: inside on the top
    // edge (the centre lies below it), outside on the bottom one.
    EXPECT_EQ(fx->inside_polygon_test(&p, 6, 2), 1);
    EXPECT_EQ(fx->inside_polygon_test(&p, 6, 9), 0);
}

TEST(RasterEdges, AntiAliasedCoverageRampsInFromTheNearestEdge) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    tagINFO info{};
    tagPOLYGON p{};
    // A diamond-free, slightly slanted quad: edges 0.25 apart from the pixel grid.
    const float c[4][2] = {{0.0f, 20.25f}, {0.0f, 0.25f}, {20.0f, 0.25f}, {20.0f, 20.25f}};
    for (int k = 0; k < 4; ++k) {
        p.corners[k][0] = c[k][0];
        p.corners[k][1] = c[k][1];
    }
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
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) {
            const std::uint16_t v = static_cast<std::uint16_t>(1000 * (x + 1) + 100 * y);
            img.at(x, y) = PixelQ7{v, static_cast<std::uint16_t>(v + 1), static_cast<std::uint16_t>(v + 2), 7};
        }
    // A 2 x 2 box: columns 1-2, rows 0-1.
    PixelQ7 p = fx->dotval(&img, 4, 3, 1.0f, 0.0f, 3.0f, 2.0f);
    EXPECT_EQ(p.r, static_cast<int>((2000 + 3000 + 2100 + 3100) * (1.0f / 4)));
    EXPECT_EQ(p.a, 7);
    // Corners given in either order span the same box.
    EXPECT_EQ(fx->dotval(&img, 4, 3, 3.0f, 2.0f, 1.0f, 0.0f).g, p.g);
    // Smaller than a pixel: bilinear at the centre (1.25, 0.5).
    p = fx->dotval(&img, 4, 3, 1.0f, 0.25f, 1.5f, 0.75f);
    const double top = 2000 + 1000 * 0.25, bottom = 2100 + 1000 * 0.25;
    EXPECT_EQ(p.r, static_cast<int>(top + (bottom - top) * 0.5));
    // Outside the image the mirror image is read: -2.25 reads like 2.25,
    // 4.5 like 2 * 4 - 2 - 4.5 = 1.5.
    EXPECT_EQ(fx->dotval(&img, 4, 3, -2.25f, 1.0f, -2.25f, 1.0f).r,
              fx->dotval(&img, 4, 3, 2.25f, 1.0f, 2.25f, 1.0f).r);
    EXPECT_EQ(fx->dotval(&img, 4, 3, 4.5f, 1.0f, 4.5f, 1.0f).r, fx->dotval(&img, 4, 3, 1.5f, 1.0f, 1.5f, 1.0f).r);
    // The matte variant carries channel 0 in R, G and B.
    p = fx->dotval_matte(&img, 4, 3, 1.0f, 0.0f, 3.0f, 2.0f);
    EXPECT_EQ(p.r, 2550);
    EXPECT_EQ(p.g, 2550);
    EXPECT_EQ(p.b, 2550);
    EXPECT_EQ(p.a, 0);
    EXPECT_EQ(fx->clamp(-1.0f, 0.0f, 1.0f), 0.0f);
    EXPECT_EQ(fx->clamp(2.0f, 0.0f, 1.0f), 1.0f);
    EXPECT_EQ(fx->clamp(0.5f, 0.0f, 1.0f), 0.5f);
}

TEST(RasterSort, QuicksortMovesWholeRecordsByKey) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    const float keys[9] = {-5, -100, -7, -5, -300, -1, -5, -42, -8};
    for (int i = 0; i < 9; ++i) {
        std::memset(&fx->polygons[i], 0, sizeof(tagPOLYGON));
        fx->polygons[i].depth_key = keys[i];
        fx->polygons[i].src_left = static_cast<int>(keys[i]) * 10;  // travels with its key
        fx->polygons[i].corners[2][1] = keys[i] * 3;
    }
    fx->qs(fx->polygons, 0, 8);
    for (int i = 0; i < 9; ++i) {
        if (i) {
            EXPECT_LE(fx->polygons[i - 1].depth_key, fx->polygons[i].depth_key);
        }
        EXPECT_EQ(fx->polygons[i].src_left, static_cast<int>(fx->polygons[i].depth_key) * 10);
        EXPECT_EQ(fx->polygons[i].corners[2][1], fx->polygons[i].depth_key * 3);
    }
    EXPECT_EQ(fx->polygons[0].depth_key, -300.0f);
}

TEST(RasterRender, MedQualityElementsAtRestShowTheirOwnFrontPixels) {
    scene::Scene s(64, 48);
    s.grid(16, 12);
    s.render();
    for (int y = 0; y < s.h; ++y)
        for (int x = 0; x < s.w; ++x) {
            const PixelQ7 f = s.front->at(x, y), c = s.canvas->at(x, y);
            ASSERT_EQ(c.r, f.r) << x << "," << y;
            ASSERT_EQ(c.g, f.g) << x << "," << y;
            ASSERT_EQ(c.b, f.b) << x << "," << y;
            ASSERT_EQ(c.a, s.back->at(x, y).a);  // alpha is not written
        }
    EXPECT_EQ(s.fx->in_mp, 0);
}

TEST(RasterRender, LowQualityShowsTheFrontWhereTheElementNowIs) {
    scene::Scene s(64, 48);
    s.fx->info.render_mode = kLow;
    s.fx->info.tile_width = 16;
    s.fx->info.tile_height = 12;
    s.fx->info.element_count = 1;
    tagPOLYGON& p = s.place(0, 0, 0);
    p.x += 20.0f;  // moved right: covers columns 20..36
    p.y += 10.0f;
    s.render();
    EXPECT_EQ(s.canvas->at(28, 16).r, s.front->at(28, 16).r);
    EXPECT_EQ(s.canvas->at(28, 16).g, s.front->at(28, 16).g);
    EXPECT_EQ(s.canvas->at(8, 6).g, s.back->at(8, 6).g);  // its old place shows the background
    // Med Quality maps the tile's own picture instead.
    scene::Scene m(64, 48);
    m.fx->info.tile_width = 16;
    m.fx->info.tile_height = 12;
    m.fx->info.element_count = 1;
    tagPOLYGON& q = m.place(0, 0, 0);
    q.x += 20.0f;
    q.y += 10.0f;
    m.render();
    EXPECT_EQ(m.canvas->at(28, 16).g, m.front->at(8, 6).g);
}

TEST(RasterRender, HighQualityBlendsEdgePixelsOnly) {
    scene::Scene s(40, 40);
    scene::fill(s.front.get(), 32767);
    scene::fill(s.back.get(), 0);
    s.copy_back_to_canvas();
    s.fx->info.render_mode = kHigh;
    s.fx->info.tile_width = 20;
    s.fx->info.tile_height = 20;
    s.fx->info.element_count = 1;
    tagPOLYGON& p = s.place(0, 10, 10);
    p.angle_z = 10.0f;
    s.render();
    int partial = 0, full = 0;
    for (int y = 0; y < s.h; ++y)
        for (int x = 0; x < s.w; ++x) {
            const int v = s.canvas->at(x, y).r;
            if (v == 32767) ++full;
            if (v > 0 && v < 32767) ++partial;
        }
    EXPECT_GT(partial, 40);  // the rim of a rotated 20 x 20 square
    EXPECT_GT(full, 250);
    EXPECT_EQ(s.canvas->at(20, 20).r, 32767);  // interior: not mixed
    EXPECT_EQ(s.canvas->at(2, 2).r, 0);
    // Med Quality has hard edges: no partial pixels.
    scene::Scene m(40, 40);
    scene::fill(m.front.get(), 32767);
    scene::fill(m.back.get(), 0);
    m.copy_back_to_canvas();
    m.fx->info.tile_width = 20;
    m.fx->info.tile_height = 20;
    m.fx->info.element_count = 1;
    m.place(0, 10, 10).angle_z = 10.0f;
    m.render();
    for (int i = 0; i < m.w * m.h; ++i) EXPECT_TRUE(m.canvas->buffer[i].r == 0 || m.canvas->buffer[i].r == 32767);
}

TEST(RasterRender, ZSortPutsTheNearerKeyOnTop) {
    for (int sort = 0; sort < 2; ++sort) {
        scene::Scene s(64, 48);
        tagINFO& in = s.fx->info;
        in.tile_width = 16;
        in.tile_height = 12;
        in.element_count = 2;
        in.z_sort = sort;
        tagPOLYGON& nearer = s.place(0, 0, 0);
        nearer.x = 32.0f;
        nearer.y = 24.0f;
        nearer.z = -150.0f;
        tagPOLYGON& farther = s.place(1, 40, 30);
        farther.x = 32.0f;
        farther.y = 24.0f;
        s.render();
        // The shared centre pixel shows the nearer tile's picture with the
        // sort, the later record's picture without it.
        const PixelQ7 c = s.canvas->at(32, 24);
        const PixelQ7 want = sort ? s.front->at(8, 6) : s.front->at(48, 36);
        EXPECT_EQ(c.r, want.r) << "z_sort " << sort;
        EXPECT_EQ(c.b, want.b) << "z_sort " << sort;
        if (sort) {
            EXPECT_EQ(s.fx->polygons[1].z, -150.0f);  // the records moved
        }
    }
}

TEST(RasterRender, HiddenElementsAndBlackMattesLeaveNoMark) {
    scene::Scene s(64, 48);
    s.grid(16, 12);
    s.fx->polygons[5].drawn = 0;
    s.render();
    EXPECT_EQ(s.canvas->at(24, 18).g, s.back->at(24, 18).g);  // inside element 5's tile
    EXPECT_EQ(s.canvas->at(8, 6).g, s.front->at(8, 6).g);

    scene::Scene m(64, 48);
    m.grid(16, 12);
    scene::fill(m.matte3.get(), 0);
    m.fx->info.use_matte_3d = 1;
    const auto before = m.canvas_pixels();
    m.render();
    for (size_t i = 0; i < before.size(); ++i) ASSERT_TRUE(scene::same(m.canvas->buffer[i], before[i])) << i;
    m.fx->info.invert_matte_3d = 1;
    m.grid(16, 12);
    m.render();
    for (int i = 0; i < m.w * m.h; ++i) ASSERT_EQ(m.canvas->buffer[i].r, m.front->buffer[i].r) << i;
}

TEST(RasterRender, LightBrightensTheElements) {
    scene::Scene s(64, 48);
    s.grid(16, 12);
    tagINFO& in = s.fx->info;
    in.use_light = 1;
    in.light_brightness = 1.0f;
    in.light_x = 32.0f;
    in.light_y = 24.0f;
    in.light_z = 100.0f;
    in.light_r = 32767;
    s.render();
    for (int i = 0; i < s.w * s.h; ++i) {
        const int x = i % s.w, y = i / s.w;
        const double k = s.fx->add_background_light(&in, x, y, 0);
        ASSERT_EQ(s.canvas->buffer[i].r, std::min(32767, static_cast<int>(s.front->buffer[i].r + 32767 * k)));
        ASSERT_EQ(s.canvas->buffer[i].g, s.front->buffer[i].g);
    }
}

TEST(RasterRender, BandCountDoesNotChangeMedOrLowQuality) {
    for (int mode : {kMed, kLow}) {
        std::vector<PixelQ7> reference;
        for (int bands : {1, 2, 7}) {
            scene::Scene s(64, 48, bands);
            s.fx->info.render_mode = mode;
            s.fx->info.z_sort = 1;
            tumble(s);
            s.render();
            const auto pixels = s.canvas_pixels();
            if (reference.empty()) {
                reference = pixels;
                continue;
            }
            ASSERT_EQ(0, std::memcmp(pixels.data(), reference.data(), pixels.size() * sizeof(PixelQ7)))
                << "mode " << mode << " bands " << bands;
        }
    }
}

TEST(RasterRender, HighQualityIsDeterministic) {
    std::vector<PixelQ7> first;
    for (int run = 0; run < 2; ++run) {
        scene::Scene s(64, 48, 2);
        s.fx->info.render_mode = kHigh;
        tumble(s);
        s.render();
        const auto pixels = s.canvas_pixels();
        if (run == 0) {
            first = pixels;
        } else {
            EXPECT_EQ(0, std::memcmp(pixels.data(), first.data(), pixels.size() * sizeof(PixelQ7)));
        }
    }
}
