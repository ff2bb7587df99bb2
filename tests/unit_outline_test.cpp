// Element outlines: corner order, depth scaling, the nearest-depth rule and
// its sort keys, and the inverse chain back to the tile.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "effect/paneburst.h"

namespace {

struct Outline : ::testing::Test {
    std::unique_ptr<Paneburst> fx{new Paneburst};
    tagINFO info{};
    tagPOLYGON poly{};
    float near_z = 0.0f, far_z = 0.0f;

    void SetUp() override {
        info.foreground_z = -192.0f;
        info.maximum_z = -12.0f;
        info.tile_width = 60;
        info.tile_height = 40;
        poly = element(120, 80);
    }
    tagPOLYGON element(int left, int top) {
        tagPOLYGON p;
        std::memset(&p, 0, sizeof p);
        p.src_left = left;
        p.src_right = left + info.tile_width;
        p.src_top = top;
        p.src_bottom = top + info.tile_height;
        p.x = left + 30.0f;
        p.y = top + 20.0f;
        p.z = -192.0f;
        p.drawn = 1;
        return p;
    }
    void outline(tagPOLYGON* p) { fx->generate_polygon_vertices(&info, p, &near_z, &far_z); }
};

}  // namespace

TEST_F(Outline, ElementAtRestSitsOnItsTileCornersInFixedOrder) {
    outline(&poly);
    const float expect[4][2] = {{120, 120}, {120, 80}, {180, 80}, {180, 120}};  // (L,B) (L,T) (R,T) (R,B)
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(poly.corners[k][0], expect[k][0]) << k;
        EXPECT_EQ(poly.corners[k][1], expect[k][1]) << k;
        EXPECT_FLOAT_EQ(poly.corners[k][2], -192.0f) << k;
    }
    EXPECT_FLOAT_EQ(poly.depth_key, -192.0f);
    EXPECT_EQ(near_z, -192.0f);
    EXPECT_EQ(far_z, -192.0f);
    EXPECT_EQ(poly.drawn, 1);
}

TEST_F(Outline, TwiceAsDeepIsHalfTheSizeAboutTheSameCentre) {
    poly.z = -384.0f;
    outline(&poly);
    EXPECT_FLOAT_EQ(poly.corners[0][0], 150.0f - 15.0f);
    EXPECT_FLOAT_EQ(poly.corners[0][1], 100.0f + 10.0f);
    EXPECT_FLOAT_EQ(poly.corners[2][0], 150.0f + 15.0f);
    EXPECT_FLOAT_EQ(poly.corners[2][1], 100.0f - 10.0f);
}

TEST_F(Outline, TiltedElementSpansNearAndFarDepths) {
    poly.angle_y = 30.0f;
    outline(&poly);
    // Half width 30 turned by 30 degrees about y: corners at z -/+ 15.
    EXPECT_NEAR(near_z, -192.0f + 15.0f, 1e-3);
    EXPECT_NEAR(far_z, -192.0f - 15.0f, 1e-3);
}

TEST_F(Outline, ElementsBeyondTheStartDepthKeepNearAtItsStartValue) {
    poly.z = -200000.0f;
    outline(&poly);
    EXPECT_EQ(near_z, -100000.0f);
    EXPECT_EQ(far_z, -200000.0f);
}

TEST_F(Outline, StackingParksElementsAtMaximumZWithStepKeys) {
    info.z_sort = 1;
    info.stack_at_max_z = 1;
    tagPOLYGON a = element(0, 0), b = element(60, 0);
    a.z = -5.0f;
    b.z = -2.0f;
    a.angle_x = 20.0f;  // tilted: its nearest corner is what is held
    outline(&a);
    EXPECT_EQ(near_z, -12.0f);
    outline(&b);
    EXPECT_EQ(near_z, -12.0f);
    EXPECT_EQ(b.z, -12.0f);  // flat: centre held exactly at maximum_z
    EXPECT_EQ(a.parked, 1);
    EXPECT_EQ(b.parked, 1);
    EXPECT_EQ(info.max_z_count, 2);
    EXPECT_EQ(a.depth_key, static_cast<float>(-12.0 - 0.001));
    EXPECT_EQ(b.depth_key, static_cast<float>(-12.0 - 0.002));
    // Keys never change afterwards, even when the element moves on.
    b.z = -50.0f;
    outline(&b);
    EXPECT_EQ(b.depth_key, static_cast<float>(-12.0 - 0.002));
    EXPECT_EQ(info.max_z_count, 2);
}

TEST_F(Outline, HoldingWithoutZSortMovesButDoesNotPark) {
    poly.z = -4.0f;
    outline(&poly);
    EXPECT_EQ(poly.z, -12.0f);
    EXPECT_EQ(poly.parked, 0);
    EXPECT_EQ(info.max_z_count, 0);
    EXPECT_FLOAT_EQ(poly.depth_key, -12.0f);
}

TEST_F(Outline, PopOffHidesAndReturnsTheElement) {
    info.z_pop_off = 1;
    poly.z = -5.0f;
    outline(&poly);
    EXPECT_EQ(poly.drawn, 0);
    EXPECT_EQ(poly.z, -5.0f);  // nothing is moved
    EXPECT_EQ(near_z, -5.0f);
    poly.z = -30.0f;
    outline(&poly);
    EXPECT_EQ(poly.drawn, 1);
}

TEST_F(Outline, InverseChainMapsCornersBackToTheTile) {
    poly.x = 300.0f;
    poly.y = 210.0f;
    poly.z = -260.0f;
    poly.angle_x = 25.0f;
    poly.angle_y = -40.0f;
    poly.angle_z = 75.0f;
    outline(&poly);
    const float tile[4][2] = {{120, 120}, {120, 80}, {180, 80}, {180, 120}};
    for (int k = 0; k < 4; ++k) {
        float p[3] = {poly.corners[k][0], poly.corners[k][1], poly.corners[k][2]};
        fx->inverse_transform_point(&info, &poly, p, near_z, far_z);
        EXPECT_NEAR(p[0], tile[k][0], 1e-3) << k;
        EXPECT_NEAR(p[1], tile[k][1], 1e-3) << k;
        EXPECT_NEAR(p[2], 0.0f, 1e-3) << k;
    }
}
