// The seeded generator, the tables and counter draws built on it, and the grid
// they seed. Expected values come from an independent model: Park-Miller states
// by 64-bit modular multiplication, with the Bays-Durham shuffle on top.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "effect/grid.h"
#include "effect/paneburst.h"
#include "framework/ran1f.h"
#include "sparkhost/host.h"

namespace {

std::int64_t park_miller(std::int64_t s) { return s * 16807 % 2147483647; }

// The shuffled generator, on 64-bit integers, with its own table.
struct Model {
    std::int64_t iv[32] = {}, iy = 0;
    float draw(std::int64_t& s) {
        if (s <= 0 || iy == 0) {
            s = std::max<std::int64_t>(-s, 1);
            for (int j = 39; j >= 0; --j)
                if ((s = park_miller(s)), j < 32) iv[j] = s;
            iy = iv[0];
        }
        s = park_miller(s);
        const std::int64_t j = iy / 67108864;  // NDIV = 1 + (2^31 - 2) / 32
        iy = iv[j], iv[j] = s;
        return std::min(static_cast<float>(iy) / 2147483648.0f, 0.99999988f);
    }
};

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

TEST(Ran1f, FollowsTheShuffledMinimalStandardSequenceSeedsAgreeAndCallersShareTheTable) {
    // The model's own check: 16807 first, 1043618065 as the 10,000th state.
    std::int64_t states[41] = {1}, s;
    for (int n = 1; n <= 40; ++n) states[n] = park_miller(states[n - 1]);
    for (int n = (s = states[40], 41); n <= 10000; ++n) s = park_miller(s);
    EXPECT_TRUE(states[1] == 16807 && s == 1043618065) << states[1] << " " << s;
    // After initialisation iv[j] holds state 40 - j and iy state 40: the first draw is iv[state40 / NDIV].
    long state = -1;
    EXPECT_EQ(ran1fQ7(&state), static_cast<float>(states[40 - states[40] / 67108864]) / 2147483648.0f);
    Model model;  // 40 steps fill the table, then one per draw: after 9,960 draws the word is the 10,000th state
    state = s = -1;
    for (int n = 0; n < 9960; ++n) {  // never 0, never above RNMX
        const float v = ran1fQ7(&state);
        ASSERT_TRUE(v == model.draw(s) && v > 0.0f && v <= 0.99999988f) << n << ": " << v;
    }
    EXPECT_EQ(state, 1043618065);

    // Seeds -1 and 0 agree, a positive word continues, and callers share the table.
    long a = -1, b = 0, again = -1;
    float first[20];
    for (float& v : first) v = ran1fQ7(&a);
    for (int n = 0; n < 20; ++n) EXPECT_EQ(ran1fQ7(&b), first[n]) << n;
    for (int n = 0; n < 20; ++n) EXPECT_EQ(ran1fQ7(&again), first[n]) << n;  // the word is positive after a draw
    // Caller A's fourth value with B restarting before it: the model with one table for both agrees.
    Model shared;
    std::int64_t ma = a = -7, mb = b = -9;
    for (int n = 0; n < 3; ++n) ran1fQ7(&a), shared.draw(ma);
    ran1fQ7(&b), shared.draw(mb);
    EXPECT_EQ(ran1fQ7(&a), shared.draw(ma));
}

TEST(RandomTable, SeededAndConstructionTablesFollowTheModelAndCounterDrawsWrapAndCap) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    Model model, g;
    std::int64_t s = -567, gs = -665;  // the constructor's fixed seeds
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(fx->random_table[i], model.draw(s)) << i;
    g.draw(gs);  // gradients after one discarded value: z = 1 - 2 r from the first draw of each pair
    for (int i = 0; i < 256; ++i, g.draw(gs))
        ASSERT_EQ(fx->gradient_table[i][2], static_cast<float>(1.0 - 2.0 * g.draw(gs))) << i;
    fx->build_random_table(s = -200);
    for (int i = 0; i < kRandomTableSize; ++i) ASSERT_EQ(fx->random_table[i], model.draw(s)) << i;
    EXPECT_EQ(fx->table_seed, s);

    // The counter draws read the next entry, wrap, cap, and are reported inside a band run.
    sparkhost::Host host;
    for (int i = 0; i < kRandomTableSize; ++i) fx->random_table[i] = static_cast<float>(i % 1000 + 1) / 1024.0f;
    int counter = 0;
    EXPECT_EQ(fx->part_rand_01(&counter), 2.0f / 1024.0f);  // entry 1
    EXPECT_EQ(fx->part_rand_11(&counter), 2.0f * (3.0f / 1024.0f) - 1.0f);  // entry 2
    counter = kRandomTableSize - 1;  // next is 262,144: entry 0
    EXPECT_EQ(fx->part_rand_01(&counter), 1.0f / 1024.0f);
    counter = 999999999;  // 1,000,000,000 mod 262,144 = 182,784
    EXPECT_EQ(fx->part_rand_01(&counter), static_cast<float>(182784 % 1000 + 1) / 1024.0f);
    EXPECT_EQ(fx->part_rand_01(&counter), 1.0f / 1024.0f);  // 1,000,000,001 is not below the bound: entry 0
    EXPECT_TRUE(counter == 0 && host.messages.empty());  // outside a band run nothing is reported

    fx->random_table[1] = fx->random_table[2] = 0.99999988f;
    fx->in_mp = 1;  // inside one the draw is reported and still made
    EXPECT_EQ(fx->part_rand_01(&counter), 0.99999899f);  // capped at 0.999999
    EXPECT_EQ(fx->part_rand_11(&counter), 0.99999976f);  // 2 x 0.99999988 - 1, unclamped
    ASSERT_EQ(host.messages.size(), 2u);
    EXPECT_EQ(host.messages[0].text + host.messages[1].text,
              "part_rand_01() called with MP region!\npart_rand_11() called with MP region!\n");
}

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
