// Element outlines: corner order, depth scaling, the nearest-depth rule and
// its sort keys, and the inverse chain back to the tile.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "effect/paneburst.h"

namespace {

// The tile (120, 80)-(180, 120) in corner order (L,B) (L,T) (R,T) (R,B).
const float kTile[4][2] = {{120, 120}, {120, 80}, {180, 80}, {180, 120}};

struct Outline : ::testing::Test {
    std::unique_ptr<Paneburst> fx{new Paneburst};
    tagINFO info{};
    float near_z = 0.0f, far_z = 0.0f;
    void SetUp() override {
        info.foreground_z = -192.0f, info.maximum_z = -12.0f;
        info.tile_width = 60, info.tile_height = 40;
    }
    // An element at rest on a 60 x 40 tile, at depth z.
    static tagPOLYGON element(int left, int top, float z) {
        tagPOLYGON p{};
        p.src_left = left, p.src_right = left + 60, p.src_top = top, p.src_bottom = top + 40;
        p.x = left + 30.0f, p.y = top + 20.0f, p.z = z;
        p.drawn = 1;
        return p;
    }
    void outline(tagPOLYGON* p) { fx->generate_polygon_vertices(&info, p, &near_z, &far_z); }
};

}  // namespace

TEST_F(Outline, AtRestOnItsTileHalfSizeTwiceAsDeepNearFarAndTheInverseChain) {
    tagPOLYGON p = element(120, 80, -192.0f);
    outline(&p);
    for (int k = 0; k < 4; ++k)
        EXPECT_TRUE(p.corners[k][0] == kTile[k][0] && p.corners[k][1] == kTile[k][1] && p.corners[k][2] == -192.0f)
            << k;
    EXPECT_TRUE(p.depth_key == -192.0f && near_z == -192.0f && far_z == -192.0f && p.drawn == 1);
    p.z = -384.0f;  // half the size about the centre (150, 100)
    outline(&p);
    EXPECT_TRUE(p.corners[0][0] == 135.0f && p.corners[0][1] == 110.0f && p.corners[2][0] == 165.0f &&
                p.corners[2][1] == 90.0f);
    p.z = -192.0f;
    p.angle_y = 30.0f;  // half width 30 turned by 30 degrees about y: corners at z -/+ 15
    outline(&p);
    EXPECT_NEAR(near_z, -192.0f + 15.0f, 1e-3);
    EXPECT_NEAR(far_z, -192.0f - 15.0f, 1e-3);
    p = element(120, 80, -200000.0f);  // deeper than near's start value: near keeps it
    outline(&p);
    EXPECT_TRUE(near_z == -100000.0f && far_z == -200000.0f);

    // The inverse chain maps the corners of a moved, turned element back to the tile.
    p = element(120, 80, -260.0f);
    p.x = 300.0f, p.y = 210.0f, p.angle_x = 25.0f, p.angle_y = -40.0f, p.angle_z = 75.0f;
    outline(&p);
    for (int k = 0; k < 4; ++k) {
        float q[3] = {p.corners[k][0], p.corners[k][1], p.corners[k][2]};
        fx->inverse_transform_point(&info, &p, q, near_z, far_z);
        EXPECT_TRUE(std::fabs(q[0] - kTile[k][0]) < 1e-3 && std::fabs(q[1] - kTile[k][1]) < 1e-3 &&
                    std::fabs(q[2]) < 1e-3) << k << ": " << q[0] << " " << q[1] << " " << q[2];
    }
}

TEST_F(Outline, StackingParksElementsAtMaximumZWithStepKeys) {
    tagPOLYGON a = element(0, 0, -5.0f), b = element(60, 0, -2.0f), c = element(120, 80, -4.0f);
    info.z_sort = info.stack_at_max_z = 1;
    a.angle_x = 20.0f;  // tilted: its nearest corner is what is held
    outline(&a);
    const float near_a = near_z;
    outline(&b);
    EXPECT_TRUE(near_a == -12 && near_z == -12 && b.z == -12 && a.parked && b.parked);  // flat b: centre held exactly
    EXPECT_EQ(a.depth_key, static_cast<float>(-12.0 - 0.001));
    EXPECT_EQ(b.depth_key, static_cast<float>(-12.0 - 0.002));
    b.z = -50.0f;  // keys never change afterwards, even when the element moves on
    outline(&b);
    EXPECT_EQ(b.depth_key, static_cast<float>(-12.0 - 0.002));
    // Without stacking the element is held but not parked.
    info.stack_at_max_z = 0;
    outline(&c);
    EXPECT_TRUE(c.z == -12.0f && c.parked == 0 && info.max_z_count == 2 && c.depth_key == -12.0f);
}

TEST_F(Outline, PopOffHidesAndReturnsTheElement) {
    tagPOLYGON p = element(120, 80, -5.0f);
    info.z_pop_off = 1;
    outline(&p);
    EXPECT_TRUE(p.drawn == 0 && p.z == -5.0f && near_z == -5.0f);  // nothing is moved
    p.z = -30.0f;
    outline(&p);
    EXPECT_EQ(p.drawn, 1);
}
