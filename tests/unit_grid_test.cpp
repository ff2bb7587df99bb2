// Grid geometry (tile size, origin, counts, clamping, restart detection) and
// the element rebuild.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "effect/grid.h"
#include "effect/paneburst.h"
#include "sparkhost/host.h"

namespace {

std::unique_ptr<Paneburst> make_effect() { return std::unique_ptr<Paneburst>(new Paneburst); }

// The record the pipeline would pass for a grid: geometry plus the
// parameters the rebuild reads.
void set_grid(Paneburst& fx, int width, int height, int x_elements, int y_elements) {
    const GridGeometry g = compute_grid(width, height, x_elements, y_elements);
    fx.info.width = width;
    fx.info.height = height;
    apply_grid(&fx.info, g);
    fx.info.foreground_z = -192.0f;
    fx.info.speed_var_z = 0.1f;
    fx.info.rot_var_x = fx.info.rot_var_y = fx.info.rot_var_z = 1.0f;
}

}  // namespace

TEST(GridGeometry, TwelveAcross720StartsAtTheLeftEdge) {
    const GridGeometry g = compute_grid(720, 486, 12, 9);
    EXPECT_EQ(g.tile_width, 60);
    EXPECT_EQ(g.grid_x0, 0);
    EXPECT_EQ(g.columns, 12);
    // Down: 54-pixel tiles, an edge at row 243, so the first starts at -27
    // and the tenth at 459.
    EXPECT_EQ(g.tile_height, 54);
    EXPECT_EQ(g.grid_y0, -27);
    EXPECT_EQ(g.rows, 10);
    EXPECT_EQ(g.element_count, 120);
    EXPECT_FALSE(g.clamp_x);
    EXPECT_FALSE(g.clamp_y);
}

TEST(GridGeometry, SevenAcross720HasPartTilesAtBothBorders) {
    const GridGeometry g = compute_grid(720, 486, 7, 9);
    EXPECT_EQ(g.tile_width, 102);
    EXPECT_EQ(g.grid_x0, -48);
    EXPECT_EQ(g.columns, 8);
    EXPECT_EQ(g.grid_x0 + (g.columns - 1) * g.tile_width, 666);
}

TEST(GridGeometry, UsualFramesAtOneHundredElements) {
    GridGeometry g = compute_grid(720, 486, 100, 100);
    EXPECT_EQ(g.tile_width, 7);
    EXPECT_EQ(g.grid_x0, -4);  // 360 - 52 x 7
    EXPECT_EQ(g.columns, 104);
    EXPECT_EQ(g.rows, 122);
    EXPECT_EQ(g.element_count, 12688);
    g = compute_grid(1920, 1080, 100, 100);
    EXPECT_EQ(g.columns * g.rows, 102 * 108);
    g = compute_grid(360, 288, 100, 100);
    EXPECT_EQ(g.columns, 120);
    EXPECT_EQ(g.rows, 144);
    EXPECT_EQ(g.element_count, 17280);
}

TEST(GridGeometry, OneElementAcrossIsOneWholeColumn) {
    const GridGeometry g = compute_grid(720, 486, 1, 1);
    EXPECT_EQ(g.tile_width, 720);
    EXPECT_EQ(g.grid_x0, 0);
    EXPECT_EQ(g.columns, 1);
    EXPECT_EQ(g.rows, 1);
}

TEST(GridGeometry, EveryGridCoversTheFrameWithAnEdgeOnTheCentre) {
    for (int w : {1, 2, 3, 22, 45, 359, 360, 721, 1920}) {
        for (int n : {1, 2, 3, 7, 12, 33, 99, 100}) {
            const GridGeometry g = compute_grid(w, 100, n, 1);
            const int tile = g.tile_width;
            ASSERT_GE(tile, 1);
            EXPECT_LE(g.grid_x0, 0) << w << " " << n;
            EXPECT_GT(g.grid_x0 + tile, 0) << w << " " << n;             // the first tile reaches into the frame
            EXPECT_LT(g.grid_x0 + (g.columns - 1) * tile, w) << w << " " << n;  // the last starts inside
            EXPECT_GE(g.grid_x0 + g.columns * tile, w) << w << " " << n;    // and the grid covers it
            if (g.columns > 1) {
                EXPECT_EQ(((w + 1) / 2 - g.grid_x0) % tile, 0) << w << " " << n;
            }
        }
    }
}

TEST(GridGeometry, TooManyElementsAreClampedOnceAtAReducedPreview) {
    tagINFO info{};
    // A 720-wide frame at 100 elements, then its 1/32 preview, 22 wide.
    GridGeometry g = compute_grid(720, 486, 100, 100);
    info.last_cell_w = info.last_cell_h = -10;
    EXPECT_TRUE(grid_cells_changed(info, g));  // the first frame always rebuilds
    apply_grid(&info, g);
    EXPECT_EQ(info.last_cell_w, 7);

    g = compute_grid(22, 15, 100, 100);
    EXPECT_TRUE(g.clamp_x);
    EXPECT_EQ(g.x_elements, 22);
    EXPECT_TRUE(g.clamp_y);
    EXPECT_EQ(g.y_elements, 15);
    EXPECT_EQ(g.tile_width, 1);
    EXPECT_EQ(g.tile_height, 1);
    EXPECT_EQ(g.columns, 22);
    EXPECT_EQ(g.grid_x0, 0);
    EXPECT_TRUE(grid_cells_changed(info, g));  // 22 / 100 = 0 differs from 7: rebuild
    apply_grid(&info, g);
    EXPECT_EQ(info.last_cell_w, 1);

    // The next frame reads the clamped control: no clamp, no rebuild.
    g = compute_grid(22, 15, 22, 15);
    EXPECT_FALSE(g.clamp_x);
    EXPECT_FALSE(g.clamp_y);
    EXPECT_FALSE(grid_cells_changed(info, g));
}

TEST(GridGeometry, SameCellSizeDoesNotRestart) {
    tagINFO info{};
    apply_grid(&info, compute_grid(720, 486, 99, 9));
    const GridGeometry g = compute_grid(720, 486, 100, 9);
    EXPECT_EQ(g.requested_cell_w, 7);
    EXPECT_FALSE(grid_cells_changed(info, g));
    EXPECT_TRUE(grid_cells_changed(info, compute_grid(720, 486, 12, 9)));
}

TEST(InitialisePolygons, TilesCentresAndFixedFields) {
    auto fx = make_effect();
    set_grid(*fx, 720, 486, 100, 9);  // odd tile width 7
    fx->info.use_gravity = 1;
    fx->info.gravity = 2.0f;
    fx->info.gravity_cos = 0.5f;
    fx->info.gravity_sin = -1.0f;
    fx->polygons[0].angle_x = 33.0f;
    fx->polygons[0].parked = 1;
    fx->initialise_polygons(&fx->info, fx->polygons);

    const tagPOLYGON& first = fx->polygons[0];
    EXPECT_EQ(first.src_left, -4);
    EXPECT_EQ(first.src_right, 3);
    EXPECT_EQ(first.src_top, -27);
    EXPECT_EQ(first.src_bottom, 27);
    EXPECT_EQ(first.x, -0.5f);  // a part tile's centre can lie left of the image
    EXPECT_EQ(first.y, 0.0f);
    EXPECT_EQ(first.z, -192.0f);
    EXPECT_EQ(first.angle_x, 0.0f);
    EXPECT_EQ(first.drawn, 1);
    EXPECT_EQ(first.parked, 0);
    EXPECT_EQ(first.grav_x, 1.0f);
    EXPECT_EQ(first.grav_y, -2.0f);

    // Row 2, column 5 is stored at 2 x columns + 5.
    const tagPOLYGON& p = fx->polygons[2 * 104 + 5];
    EXPECT_EQ(p.src_left, -4 + 5 * 7);
    EXPECT_EQ(p.src_top, -27 + 2 * 54);
    EXPECT_EQ(p.x, 31.0f + 3.5f);
    EXPECT_EQ(p.y, 81.0f + 27.0f);
}

TEST(InitialisePolygons, ElementKReadsSixSuccessiveTableEntries) {
    auto fx = make_effect();
    set_grid(*fx, 720, 486, 12, 9);
    for (int i = 0; i < kRandomTableSize; ++i) fx->random_table[i] = static_cast<float>(i % 997 + 1) / 1024.0f;
    fx->info.speed_var_x = 0.5f;
    fx->info.speed_var_y = 0.25f;
    fx->info.speed_var_z = 1.0f;
    fx->initialise_polygons(&fx->info, fx->polygons);

    auto entry = [&](int i) { return fx->random_table[i]; };
    for (int k : {0, 1, 57, fx->info.element_count - 1}) {
        const tagPOLYGON& p = fx->polygons[k];
        EXPECT_EQ(p.var_x, (2.0f * entry(6 * k + 1) - 1.0f) * 0.5f) << k;
        EXPECT_EQ(p.var_y, (2.0f * entry(6 * k + 2) - 1.0f) * 0.25f) << k;
        EXPECT_EQ(p.var_z, 2.0f * entry(6 * k + 3) - 2.0f) << k;
        EXPECT_EQ(p.spin_var_x, 2.0f * entry(6 * k + 4) - 2.0f) << k;
        EXPECT_EQ(p.spin_var_y, 2.0f * entry(6 * k + 5) - 2.0f) << k;
        EXPECT_EQ(p.spin_var_z, 2.0f * entry(6 * k + 6) - 2.0f) << k;
    }
}

TEST(InitialisePolygons, SameSeedAndGridGiveBitIdenticalElements) {
    auto fx = make_effect();
    set_grid(*fx, 720, 486, 12, 9);
    fx->info.speed_var_x = fx->info.speed_var_y = 0.3f;
    const int n = fx->info.element_count;

    fx->build_random_table(-200);
    fx->initialise_polygons(&fx->info, fx->polygons);
    std::vector<tagPOLYGON> first(fx->polygons, fx->polygons + n);

    // Another seed in between, then the same Seed again, as the pipeline
    // rebuilds the tables every frame.
    fx->build_random_table(-217);
    fx->initialise_polygons(&fx->info, fx->polygons);
    EXPECT_NE(std::memcmp(first.data(), fx->polygons, n * sizeof(tagPOLYGON)), 0);
    fx->build_random_table(-200);
    fx->initialise_polygons(&fx->info, fx->polygons);
    EXPECT_EQ(std::memcmp(first.data(), fx->polygons, n * sizeof(tagPOLYGON)), 0);

    // Default variations: rotation factors in [-2, 0], z factors in [-0.2, 0].
    for (int k = 0; k < n; ++k) {
        EXPECT_GE(first[k].spin_var_x, -2.0f);
        EXPECT_LE(first[k].spin_var_x, 0.0f);
        EXPECT_GE(first[k].var_z, -0.2f);
        EXPECT_LE(first[k].var_z, 0.0f);
        EXPECT_LT(std::fabs(first[k].var_x), 0.3f);
    }
}

TEST(InitialisePolygons, ZeroVariationGivesZeroFactors) {
    auto fx = make_effect();
    set_grid(*fx, 720, 486, 12, 9);
    fx->info.speed_var_z = 0.0f;
    fx->info.rot_var_x = fx->info.rot_var_y = fx->info.rot_var_z = 0.0f;
    fx->initialise_polygons(&fx->info, fx->polygons);
    for (int k = 0; k < fx->info.element_count; ++k) {
        const tagPOLYGON& p = fx->polygons[k];
        EXPECT_EQ(p.var_x, 0.0f);
        EXPECT_EQ(p.var_y, 0.0f);
        EXPECT_EQ(p.var_z, 0.0f);
        EXPECT_EQ(p.spin_var_x, 0.0f);
        EXPECT_EQ(p.spin_var_y, 0.0f);
        EXPECT_EQ(p.spin_var_z, 0.0f);
    }
}

TEST(ElementArray, GrowsForAGridAboveTheUsualCapacity) {
    sparkhost::Host host;
    host.echo_messages = false;
    auto fx = make_effect();
    EXPECT_EQ(fx->element_capacity, kElementCapacity);
    fx->polygons[5].x = 123.0f;
    fx->polygons[kElementCapacity - 1].angle_z = 7.0f;

    // 360 x 288 at 100 x 100: 17,280 elements, without asking for room first.
    set_grid(*fx, 360, 288, 100, 100);
    fx->info.speed_var_z = 0.0f;
    ASSERT_EQ(fx->info.element_count, 17280);
    fx->initialise_polygons(&fx->info, fx->polygons);
    EXPECT_GE(fx->element_capacity, 17280);
    EXPECT_EQ(fx->info.element_count, 17280);
    const tagPOLYGON& last = fx->polygons[17279];
    EXPECT_EQ(last.src_left, 357);
    EXPECT_EQ(last.src_top, 286);
    EXPECT_EQ(last.drawn, 1);

    // Steps run over the whole grid too (the sanitizer build checks bounds).
    fx->info.speed_z = 5.0f;
    fx->update_polygons(&fx->info, fx->polygons);
    fx->update_polygons(&fx->info, fx->polygons);
    EXPECT_EQ(fx->polygons[17279].z, -182.0f);
    EXPECT_TRUE(host.messages.empty());
}

TEST(ElementArray, GrowingKeepsTheRecordsAndZeroesTheRest) {
    auto fx = make_effect();
    fx->polygons[5].x = 123.0f;
    fx->polygons[kElementCapacity - 1].angle_z = 7.0f;
    tagPOLYGON* grown = fx->ensure_element_capacity(20000);
    EXPECT_EQ(grown, fx->polygons);
    EXPECT_EQ(fx->element_capacity, 20000);
    EXPECT_EQ(fx->polygons[5].x, 123.0f);
    EXPECT_EQ(fx->polygons[kElementCapacity - 1].angle_z, 7.0f);
    EXPECT_EQ(fx->polygons[19999].drawn, 0);
    EXPECT_EQ(fx->polygons[19999].z, 0.0f);
    // Never shrinks.
    EXPECT_EQ(fx->ensure_element_capacity(100), grown);
    EXPECT_EQ(fx->element_capacity, 20000);
}
