// Grid geometry (tile size, origin, counts) and the element rebuild.
#include <gtest/gtest.h>

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
    fx->info.width = width, fx->info.height = height, fx->info.foreground_z = -192.0f, fx->info.speed_var_z = 0.1f;
    fx->info.rot_var_x = fx->info.rot_var_y = fx->info.rot_var_z = 1.0f;
    apply_grid(&fx->info, compute_grid(width, height, x_elements, y_elements));
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
        EXPECT_EQ((std::vector<int>{g.tile_width, g.grid_x0, g.columns, g.tile_height, g.grid_y0, g.rows,
                                    g.element_count, g.clamp_x || g.clamp_y}),
                  (std::vector<int>{c.tile_w, c.x0, c.columns, c.tile_h, c.y0, c.rows, c.columns * c.rows, 0}))
            << c.w << "x" << c.h << " at " << c.nx << "x" << c.ny;
    }
}

TEST(InitialisePolygons, TilesCentresFixedFieldsAndSixTableEntriesPerElement) {
    auto fx = effect_with_grid(720, 486, 100, 9);  // odd tile width 7, 104 columns from -4, rows from -27
    for (int i = 0; i < kRandomTableSize; ++i) fx->random_table[i] = static_cast<float>(i % 997 + 1) / 1024.0f;
    fx->info.speed_var_x = 0.5f, fx->info.speed_var_y = 0.25f, fx->info.speed_var_z = 1.0f;
    fx->info.use_gravity = 1, fx->info.gravity = 2.0f, fx->info.gravity_cos = 0.5f, fx->info.gravity_sin = -1.0f;
    fx->polygons[0].angle_x = 33.0f, fx->polygons[0].parked = 1;
    fx->initialise_polygons(&fx->info, fx->polygons);
    const tagPOLYGON &p = fx->polygons[0], &q = fx->polygons[2 * 104 + 5];  // q: row 2, column 5
    EXPECT_TRUE(p.src_left == -4 && p.src_right == 3 && p.src_top == -27 && p.src_bottom == 27);
    EXPECT_EQ(p.x, -0.5f);  // a part tile's centre can lie left of the image
    EXPECT_TRUE(p.y == 0 && p.z == -192 && p.angle_x == 0 && p.drawn && !p.parked && p.grav_x == 1 && p.grav_y == -2);
    EXPECT_TRUE(q.src_left == -4 + 5 * 7 && q.src_top == -27 + 2 * 54 && q.x == 31.0f + 3.5f && q.y == 81.0f + 27.0f);
    // Element k reads entries 6k+1 ... 6k+6, scaled by the variations (0 gives 0).
    for (int k : {0, 1, 57, fx->info.element_count - 1}) {
        const tagPOLYGON& e = fx->polygons[k];
        const float* t = fx->random_table + 6 * k;
        EXPECT_EQ((std::vector<float>{e.var_x, e.var_y, e.var_z, e.spin_var_x, e.spin_var_y, e.spin_var_z}),
                  (std::vector<float>{(2 * t[1] - 1) * 0.5f, (2 * t[2] - 1) * 0.25f, 2 * t[3] - 2, 2 * t[4] - 2,
                                      2 * t[5] - 2, 2 * t[6] - 2})) << k;
    }
}

// A grid above the usual capacity (17,280 elements) grows the array instead
// of overrunning it: the rebuild and the step grow it themselves.
TEST(ElementArray, GrowsForALargeGrid) {
    sparkhost::Host host;
    auto fx = effect_with_grid(360, 288, 100, 100);
    fx->info.speed_var_z = 0.0f, fx->info.speed_z = 5.0f;
    fx->initialise_polygons(&fx->info, fx->polygons);
    const tagPOLYGON& last = fx->polygons[17279];
    EXPECT_TRUE(last.src_left == 357 && last.src_top == 286 && last.drawn == 1);
    fx->update_polygons(&fx->info, fx->polygons);  // the sanitizer build checks the bounds
    EXPECT_TRUE(fx->polygons[17279].z == -187.0f && host.messages.empty());
}
