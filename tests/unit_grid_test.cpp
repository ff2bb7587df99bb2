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

// An effect with the record the pipeline would pass for a grid: geometry
// plus the parameters the rebuild reads (the default variations).
std::unique_ptr<Paneburst> effect_with_grid(int width, int height, int x_elements, int y_elements) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    fx->info.width = width, fx->info.height = height;
    apply_grid(&fx->info, compute_grid(width, height, x_elements, y_elements));
    fx->info.foreground_z = -192.0f;
    fx->info.speed_var_z = 0.1f;
    fx->info.rot_var_x = fx->info.rot_var_y = fx->info.rot_var_z = 1.0f;
    return fx;
}

}  // namespace

// Tiles are W / n rounded down; with more than one column a tile edge sits on
// the centre (W + 1) / 2, so the origin is the centre minus whole tiles.
TEST(GridGeometry, TileSizeOriginAndCounts) {
    const struct { int w, h, nx, ny, tile_w, x0, columns, tile_h, y0, rows; } cases[] = {
        {720, 486, 12, 9, 60, 0, 12, 54, -27, 10},         // edge on row 243: the first row starts at -27
        {720, 486, 7, 9, 102, -48, 8, 54, -27, 10},        // part tiles at both borders, the last at 666
        {720, 486, 100, 100, 7, -4, 104, 4, -1, 122},      // 360 - 52 x 7; 12,688 elements
        {1920, 1080, 100, 100, 19, -9, 102, 10, 0, 108},   // 960 - 51 x 19
        {360, 288, 100, 100, 3, 0, 120, 2, 0, 144},        // 17,280 elements: above the usual capacity
        {720, 486, 1, 1, 720, 0, 1, 486, 0, 1},            // one element across is one whole column
    };
    for (const auto& c : cases) {
        const GridGeometry g = compute_grid(c.w, c.h, c.nx, c.ny);
        const std::vector<int> got = {g.tile_width, g.grid_x0,  g.columns,       g.tile_height,
                                      g.grid_y0,    g.rows,     g.element_count, g.clamp_x || g.clamp_y};
        EXPECT_EQ(got, (std::vector<int>{c.tile_w, c.x0, c.columns, c.tile_h, c.y0, c.rows, c.columns * c.rows, 0}))
            << c.w << "x" << c.h << " at " << c.nx << "x" << c.ny;
    }
}

TEST(GridGeometry, EveryGridCoversTheFrameWithAnEdgeOnTheCentre) {
    for (int w : {1, 2, 3, 22, 45, 359, 360, 721, 1920}) {
        for (int n : {1, 2, 3, 7, 12, 33, 99, 100}) {
            const GridGeometry g = compute_grid(w, 100, n, 1);
            const int tile = g.tile_width, x0 = g.grid_x0;
            ASSERT_GE(tile, 1);
            // The first tile reaches into the frame, the last starts inside it, the grid covers it.
            EXPECT_TRUE(x0 <= 0 && x0 + tile > 0 && x0 + (g.columns - 1) * tile < w && x0 + g.columns * tile >= w)
                << w << " " << n;
            EXPECT_TRUE(g.columns == 1 || ((w + 1) / 2 - x0) % tile == 0) << w << " " << n;
        }
    }
}

// The restart check compares the requested cell size with the last frame's.
TEST(GridGeometry, RestartOnCellSizeAndOneClampAtAReducedPreview) {
    tagINFO info{};
    info.last_cell_w = info.last_cell_h = -10;
    GridGeometry g = compute_grid(720, 486, 100, 100);  // 720 wide at 100 elements
    EXPECT_TRUE(grid_cells_changed(info, g));           // the first frame always rebuilds
    apply_grid(&info, g);
    EXPECT_EQ(info.last_cell_w, 7);
    EXPECT_FALSE(grid_cells_changed(info, compute_grid(720, 486, 99, 100)));  // 720 / 99 is 7 as well
    EXPECT_TRUE(grid_cells_changed(info, compute_grid(720, 486, 12, 100)));

    g = compute_grid(22, 15, 100, 100);  // its 1/32 preview, 22 wide: clamped to one pixel a tile
    EXPECT_TRUE(g.clamp_x && g.clamp_y);
    EXPECT_TRUE(g.x_elements == 22 && g.y_elements == 15 && g.columns == 22 && g.grid_x0 == 0);
    EXPECT_TRUE(g.tile_width == 1 && g.tile_height == 1);
    EXPECT_TRUE(grid_cells_changed(info, g));  // 22 / 100 = 0 differs from 7: rebuild
    apply_grid(&info, g);
    EXPECT_EQ(info.last_cell_w, 1);
    g = compute_grid(22, 15, 22, 15);  // the next frame reads the clamped control: no clamp, no rebuild
    EXPECT_FALSE(g.clamp_x || g.clamp_y || grid_cells_changed(info, g));
}

TEST(InitialisePolygons, TilesCentresAndFixedFields) {
    auto fx = effect_with_grid(720, 486, 100, 9);  // odd tile width 7, 104 columns from -4, rows from -27
    fx->info.use_gravity = 1;
    fx->info.gravity = 2.0f, fx->info.gravity_cos = 0.5f, fx->info.gravity_sin = -1.0f;
    fx->polygons[0].angle_x = 33.0f;
    fx->polygons[0].parked = 1;
    fx->initialise_polygons(&fx->info, fx->polygons);
    const tagPOLYGON& p = fx->polygons[0];
    EXPECT_TRUE(p.src_left == -4 && p.src_right == 3 && p.src_top == -27 && p.src_bottom == 27);
    EXPECT_EQ(p.x, -0.5f);  // a part tile's centre can lie left of the image
    EXPECT_TRUE(p.y == 0.0f && p.z == -192.0f && p.angle_x == 0.0f && p.drawn == 1 && p.parked == 0);
    EXPECT_TRUE(p.grav_x == 1.0f && p.grav_y == -2.0f);
    const tagPOLYGON& q = fx->polygons[2 * 104 + 5];  // row 2, column 5
    EXPECT_TRUE(q.src_left == -4 + 5 * 7 && q.src_top == -27 + 2 * 54 && q.x == 31.0f + 3.5f && q.y == 81.0f + 27.0f);
}

TEST(InitialisePolygons, ElementKReadsSixSuccessiveTableEntries) {
    auto fx = effect_with_grid(720, 486, 12, 9);
    for (int i = 0; i < kRandomTableSize; ++i) fx->random_table[i] = static_cast<float>(i % 997 + 1) / 1024.0f;
    fx->info.speed_var_x = 0.5f, fx->info.speed_var_y = 0.25f, fx->info.speed_var_z = 1.0f;
    fx->initialise_polygons(&fx->info, fx->polygons);
    for (int k : {0, 1, 57, fx->info.element_count - 1}) {
        const tagPOLYGON& p = fx->polygons[k];
        const float* t = fx->random_table + 6 * k;
        const std::vector<float> got = {p.var_x, p.var_y, p.var_z, p.spin_var_x, p.spin_var_y, p.spin_var_z};
        EXPECT_EQ(got, (std::vector<float>{(2.0f * t[1] - 1.0f) * 0.5f, (2.0f * t[2] - 1.0f) * 0.25f, 2.0f * t[3] - 2.0f,
                                           2.0f * t[4] - 2.0f, 2.0f * t[5] - 2.0f, 2.0f * t[6] - 2.0f}))
            << k;
    }
}

TEST(InitialisePolygons, SameSeedAndGridGiveBitIdenticalElements) {
    auto fx = effect_with_grid(720, 486, 12, 9);
    fx->info.speed_var_x = fx->info.speed_var_y = 0.3f;
    const int n = fx->info.element_count;
    auto rebuild = [&](long seed) {
        fx->build_random_table(seed);
        fx->initialise_polygons(&fx->info, fx->polygons);
    };
    rebuild(-200);
    const std::vector<tagPOLYGON> first(fx->polygons, fx->polygons + n);
    // Another seed in between, then the same Seed again, as the pipeline
    // rebuilds the tables every frame.
    rebuild(-217);
    EXPECT_NE(std::memcmp(first.data(), fx->polygons, n * sizeof(tagPOLYGON)), 0);
    rebuild(-200);
    EXPECT_EQ(std::memcmp(first.data(), fx->polygons, n * sizeof(tagPOLYGON)), 0);

    // Default variations: rotation factors in [-2, 0], z factors in [-0.2, 0].
    for (const tagPOLYGON& p : first) {
        EXPECT_TRUE(p.spin_var_x >= -2.0f && p.spin_var_x <= 0.0f) << p.spin_var_x;
        EXPECT_TRUE(p.var_z >= -0.2f && p.var_z <= 0.0f) << p.var_z;
        EXPECT_LT(std::fabs(p.var_x), 0.3f);
    }

    // Zero variations give zero factors.
    fx->info.speed_var_x = fx->info.speed_var_y = fx->info.speed_var_z = 0.0f;
    fx->info.rot_var_x = fx->info.rot_var_y = fx->info.rot_var_z = 0.0f;
    rebuild(-200);
    for (int k = 0; k < n; ++k) {
        const tagPOLYGON& p = fx->polygons[k];
        for (float v : {p.var_x, p.var_y, p.var_z, p.spin_var_x, p.spin_var_y, p.spin_var_z}) EXPECT_EQ(v, 0.0f) << k;
    }
}

// A grid above the usual capacity grows the array instead of overrunning it.
TEST(ElementArray, GrowsForALargeGridKeepingTheRecords) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    fx->polygons[5].x = 123.0f;
    fx->polygons[kElementCapacity - 1].angle_z = 7.0f;
    tagPOLYGON* grown = fx->ensure_element_capacity(20000);
    EXPECT_TRUE(grown == fx->polygons && fx->element_capacity == 20000);
    EXPECT_TRUE(fx->polygons[5].x == 123.0f && fx->polygons[kElementCapacity - 1].angle_z == 7.0f);
    EXPECT_TRUE(fx->polygons[19999].drawn == 0 && fx->polygons[19999].z == 0.0f);  // the rest is zero
    EXPECT_EQ(fx->ensure_element_capacity(100), grown);  // never shrinks
    EXPECT_EQ(fx->element_capacity, 20000);

    // The rebuild and the step grow it themselves: 17,280 elements, without asking for room first.
    sparkhost::Host host;
    host.echo_messages = false;
    fx = effect_with_grid(360, 288, 100, 100);
    fx->info.speed_var_z = 0.0f;
    fx->info.speed_z = 5.0f;
    ASSERT_EQ(fx->info.element_count, 17280);
    fx->initialise_polygons(&fx->info, fx->polygons);
    EXPECT_GE(fx->element_capacity, 17280);
    const tagPOLYGON& last = fx->polygons[17279];
    EXPECT_TRUE(last.src_left == 357 && last.src_top == 286 && last.drawn == 1);
    fx->update_polygons(&fx->info, fx->polygons);  // the sanitizer build checks the bounds
    fx->update_polygons(&fx->info, fx->polygons);
    EXPECT_EQ(fx->polygons[17279].z, -182.0f);
    EXPECT_TRUE(host.messages.empty());
}
