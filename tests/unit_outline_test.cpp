// 3D transforms, the projection and element outlines: corners, depth scaling,
// the nearest-depth rule and its sort keys, and the inverse chain to the tile.
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
    Outline() { info.foreground_z = -192, info.maximum_z = -12, info.tile_width = 60, info.tile_height = 40; }
    // An element at rest on a 60 x 40 tile, at depth z.
    static tagPOLYGON element(int left, int top, float z) {
        tagPOLYGON p{};
        p.src_left = left, p.src_right = left + 60, p.src_top = top, p.src_bottom = top + 40;
        p.x = left + 30.0f, p.y = top + 20.0f, p.z = z, p.drawn = 1;
        return p;
    }
    void outline(tagPOLYGON* p) { fx->generate_polygon_vertices(&info, p, &near_z, &far_z); }
};

bool near3(const float* p, double x, double y, double z, double tol) {
    return std::fabs(p[0] - x) < tol && std::fabs(p[1] - y) < tol && std::fabs(p[2] - z) < tol;
}

}  // namespace

// Quarter turns fix the sign convention of each axis; the inverse turns back.
TEST_F(Outline, QuarterTurnsAboutEachAxisAndBackAndTheProjection) {
    typedef void (Paneburst::*Rotation)(float, float*);
    const struct { Rotation turn, back; float from[3], to[3]; } cases[] = {
        {&Paneburst::rotate_xaxis, &Paneburst::inverse_rotate_xaxis, {0, 1, 0}, {0, 0, 1}},
        {&Paneburst::rotate_yaxis, &Paneburst::inverse_rotate_yaxis, {0, 0, 1}, {1, 0, 0}},
        {&Paneburst::rotate_zaxis, &Paneburst::inverse_rotate_zaxis, {1, 0, 0}, {0, 1, 0}}};
    for (const auto& c : cases) {
        float p[3] = {c.from[0], c.from[1], c.from[2]};
        ((*fx).*c.turn)(90.0f, p);
        EXPECT_TRUE(near3(p, c.to[0], c.to[1], c.to[2], 1e-6)) << &c - cases;
        ((*fx).*c.back)(90.0f, p);
        EXPECT_TRUE(near3(p, c.from[0], c.from[1], c.from[2], 1e-6)) << &c - cases;
    }
    // The foreground plane is kept, twice as far is half the size; the inverse undoes it; tiny values are guarded.
    float p[3] = {10.0f, -7.0f, -192.0f}, q[3] = {10.0f, -6.0f, -384.0f}, r[3] = {13.25f, -40.5f, -200.0f};
    fx->perspective_project(&info, p, -192.0f, -192.0f);  // n = f = z keeps the depth
    EXPECT_TRUE(p[0] == 10.0f && p[1] == -7.0f && std::fabs(p[2] + 192) < 1e-4);
    fx->perspective_project(&info, q, -384.0f, -192.0f);  // z = n maps to n
    EXPECT_TRUE(near3(q, 5, -3, -384, 1e-4)) << q[0] << " " << q[1] << " " << q[2];
    fx->perspective_project(&info, r, -150.0f, -260.0f);
    EXPECT_NEAR(r[2], (-150.0 - 260.0) - 150.0 * 260.0 / -200.0, 1e-3);  // z' = (n + f) - n f / z
    fx->inverse_perspective_project(&info, r, -150.0f, -260.0f);
    EXPECT_TRUE(near3(r, 13.25, -40.5, -200, 1e-3)) << r[0] << " " << r[1] << " " << r[2];
    // With f = 0 the product n f is replaced by 1e-6: w = d ((n + f) - z) / q, the point (x / w, y / w, d / w).
    float s[3] = {2.0f, 1.0f, -50.0f}, t[3] = {3.0f, 4.0f, -2.0f};
    fx->inverse_perspective_project(&info, s, -100.0f, 0.0f);
    const double w = -192.0 * (-100.0 - -50.0) / 1e-6;
    EXPECT_TRUE(std::fabs(s[0] - 2.0 / w) < 1e-12 && std::fabs(s[2] / (-192.0 / w) - 1.0) < 1e-5) << s[0];
    info.foreground_z = -1e-7f;  // |d| below 1e-6 becomes +1e-6 whatever its sign: the picture flips
    fx->perspective_project(&info, t, -2.0f, -2.0f);
    EXPECT_TRUE(std::fabs(t[0] - 3.0 * 1e-6 / -2.0) < 1e-12 && t[1] < 0.0f) << t[0] << " " << t[1];  // x d / z
}

TEST_F(Outline, AtRestOnItsTileHalfSizeTwiceAsDeepNearFarAndTheInverseChain) {
    tagPOLYGON p = element(120, 80, -192.0f);
    outline(&p);
    for (int k = 0; k < 4; ++k)
        EXPECT_TRUE(p.corners[k][0] == kTile[k][0] && p.corners[k][1] == kTile[k][1] && p.corners[k][2] == -192) << k;
    EXPECT_TRUE(p.depth_key == -192 && near_z == -192 && far_z == -192 && p.drawn == 1);
    p.z = -384.0f;  // half the size about the centre (150, 100)
    outline(&p);
    EXPECT_TRUE(p.corners[0][0] == 135 && p.corners[0][1] == 110 && p.corners[2][0] == 165 && p.corners[2][1] == 90);
    p.z = -192.0f, p.angle_y = 30.0f;  // half width 30 turned by 30 degrees about y: corners at z -/+ 15
    outline(&p);
    EXPECT_TRUE(std::fabs(near_z + 177.0f) < 1e-3 && std::fabs(far_z + 207.0f) < 1e-3) << near_z << " " << far_z;
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
        EXPECT_TRUE(near3(q, kTile[k][0], kTile[k][1], 0, 1e-3)) << k << ": " << q[0] << " " << q[1] << " " << q[2];
    }
}

TEST_F(Outline, StackingParksAtMaximumZWithStepKeysAndPopOffHidesAndReturns) {
    tagPOLYGON a = element(0, 0, -5.0f), b = element(60, 0, -2.0f), c = element(120, 80, -4.0f);
    info.z_sort = info.stack_at_max_z = 1;
    a.angle_x = 20.0f;  // tilted: its nearest corner is what is held
    outline(&a);
    const float near_a = near_z;
    outline(&b);
    EXPECT_TRUE(near_a == -12 && near_z == -12 && b.z == -12 && a.parked && b.parked);  // flat b: centre held exactly
    EXPECT_EQ(a.depth_key, static_cast<float>(-12.0 - 0.001));
    b.z = -50.0f;  // keys never change afterwards, even when the element moves on
    outline(&b);
    EXPECT_EQ(b.depth_key, static_cast<float>(-12.0 - 0.002));
    info.stack_at_max_z = 0;  // without stacking the element is held but not parked
    outline(&c);
    EXPECT_TRUE(c.z == -12.0f && c.parked == 0 && info.max_z_count == 2 && c.depth_key == -12.0f);
    tagPOLYGON p = element(120, 80, -5.0f);
    info.z_pop_off = 1;
    outline(&p);
    EXPECT_TRUE(p.drawn == 0 && p.z == -5.0f && near_z == -5.0f);  // nothing is moved
    p.z = -30.0f;
    outline(&p);
    EXPECT_EQ(p.drawn, 1);
}
