// The element step under the speeds and forces, and the vector normaliser.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "effect/paneburst.h"
#include "effect/vecnorm.h"

namespace {

std::unique_ptr<Paneburst> make_effect() { return std::unique_ptr<Paneburst>(new Paneburst); }

// A one-element grid on a 720 x 486 frame, every force off.
tagINFO one_element_info() {
    tagINFO info{};
    info.width = 720;
    info.height = 486;
    info.columns = info.rows = 1;
    info.element_count = 1;
    return info;
}

tagPOLYGON element_at(float x, float y) {
    tagPOLYGON p{};
    p.x = x;
    p.y = y;
    p.z = -192.0f;
    return p;
}

// Displacement of one step of element p under info.
void step(Paneburst& fx, tagINFO& info, tagPOLYGON& p, float* dx, float* dy) {
    const float x = p.x, y = p.y;
    fx.update_polygons(&info, &p);
    *dx = p.x - x;
    *dy = p.y - y;
}

}  // namespace

TEST(Vecnorm, ThreeNewtonStepsInsteadOfARoot) {
    float v[3] = {3.0f, 4.0f, 0.0f};
    EXPECT_NEAR(vecnorm(v), 5.0000002, 1e-7);
    EXPECT_NEAR(v[0], 0.59999998, 3e-8);
    EXPECT_NEAR(v[1], 0.79999997, 3e-8);
    EXPECT_EQ(v[2], 0.0f);

    // Newton for sqrt(3) from 1: 2, 1.75, 1.7321429 (exact 1.7320508).
    float w[3] = {1.0f, 1.0f, 1.0f};
    EXPECT_NEAR(vecnorm(w), 1.7321429, 1e-7);
    const double length = std::sqrt(double(w[0]) * w[0] + double(w[1]) * w[1] + double(w[2]) * w[2]);
    EXPECT_NEAR(length, 0.99995, 1e-5);

    // Sign and axis: on an axis the first step is already exact.
    float n[3] = {0.0f, -2.5f, 0.0f};
    EXPECT_EQ(vecnorm(n), 2.5);
    EXPECT_EQ(n[1], -1.0f);
}

TEST(Vecnorm, TinyVectorsBecomeZero) {
    float v[3] = {1e-11f, -5e-11f, 0.0f};
    EXPECT_EQ(vecnorm(v), 0.0);
    EXPECT_EQ(v[0], 0.0f);
    EXPECT_EQ(v[1], 0.0f);
    float zero[3] = {0.0f, 0.0f, 0.0f};
    EXPECT_EQ(vecnorm(zero), 0.0);
}

TEST(Motion, SpeedsAloneMoveTwiceInThePlaneOnceInDepth) {
    auto fx = make_effect();
    tagINFO info = one_element_info();
    info.speed_x = 1.5f;
    info.speed_y = -2.0f;
    info.speed_z = 5.0f;
    tagPOLYGON p = element_at(100.0f, 50.0f);
    fx->update_polygons(&info, &p);
    EXPECT_EQ(p.x, 103.0f);
    EXPECT_EQ(p.y, 46.0f);
    EXPECT_EQ(p.z, -187.0f);
    EXPECT_EQ(p.vel_z, 5.0f);

    info.omni_z = 1;
    fx->update_polygons(&info, &p);
    EXPECT_EQ(p.z, -177.0f);

    // Factors: (2 + var) x speed across, (1 + omni + var) x speed in depth.
    info.omni_z = 0;
    p.var_x = 0.5f;
    p.var_z = -0.2f;
    fx->update_polygons(&info, &p);
    EXPECT_EQ(p.vel_x, 3.75f);
    EXPECT_EQ(p.vel_z, 4.0f);
}

TEST(Motion, RotationAccumulatesWithoutWrapping) {
    auto fx = make_effect();
    tagINFO info = one_element_info();
    info.rot_speed_x = 60.0f;
    info.rot_speed_y = -90.0f;
    info.rot_speed_z = 60.0f;
    tagPOLYGON p = element_at(0.0f, 0.0f);
    p.spin_var_z = -2.0f;  // the far end of the default variation
    for (int n = 0; n < 10; ++n) fx->update_polygons(&info, &p);
    EXPECT_EQ(p.angle_x, 600.0f);
    EXPECT_EQ(p.angle_y, -900.0f);
    EXPECT_EQ(p.angle_z, -600.0f);
    EXPECT_EQ(p.spin_z, -60.0f);
}

TEST(Motion, GravityActsOneStepLate) {
    auto fx = make_effect();
    tagINFO info = one_element_info();
    tagPOLYGON p = element_at(100.0f, 100.0f);  // rebuilt with gravity off
    info.use_gravity = 1;
    info.gravity = 1.0f;
    info.gravity_cos = 0.0f;
    info.gravity_sin = -1.0f;
    float dx, dy;
    step(*fx, info, p, &dx, &dy);
    EXPECT_EQ(dy, 0.0f);
    step(*fx, info, p, &dx, &dy);
    EXPECT_EQ(dx, 0.0f);
    EXPECT_EQ(dy, -1.0f);
    // Switched off: the stored pull still acts once more.
    info.use_gravity = 0;
    step(*fx, info, p, &dx, &dy);
    EXPECT_EQ(dy, -1.0f);
    step(*fx, info, p, &dx, &dy);
    EXPECT_EQ(dy, 0.0f);
}

TEST(Motion, AttractionGrowsWithDistancePerAxis) {
    auto fx = make_effect();
    tagINFO info = one_element_info();
    info.use_attraction = 1;
    info.attraction_strength = 3.0f;
    info.attraction_x = 600.0f;
    info.attraction_y = 100.0f;
    tagPOLYGON p = element_at(240.0f, 100.0f);  // level with the point
    float dx, dy;
    step(*fx, info, p, &dx, &dy);
    EXPECT_FLOAT_EQ(dx, 3.0f * 360.0f / 720.0f);
    EXPECT_EQ(dy, 0.0f);

    // Diagonal: each axis scaled by its own distance over the frame size.
    p = element_at(300.0f, 400.0f);
    info.attraction_x = 600.0f;
    info.attraction_y = 0.0f;  // d = (300, -400): direction (0.6, -0.8)
    step(*fx, info, p, &dx, &dy);
    EXPECT_NEAR(dx, 3.0 * 0.6 * 300.0 / 720.0, 1e-5);
    EXPECT_NEAR(dy, -3.0 * 0.8 * 400.0 / 486.0, 1e-5);
}

TEST(Motion, RepulsionIsConstantAndAbsentOnThePoint) {
    auto fx = make_effect();
    tagINFO info = one_element_info();
    info.use_repulsion = 1;
    info.repulsion_strength = 3.0f;
    info.repulsion_x = 100.0f;
    info.repulsion_y = 100.0f;
    float dx, dy;
    for (float distance : {1.0f, 500.0f}) {
        tagPOLYGON p = element_at(100.0f, 100.0f - distance);
        step(*fx, info, p, &dx, &dy);
        EXPECT_EQ(dx, 0.0f);
        EXPECT_EQ(dy, -3.0f);
    }
    tagPOLYGON on = element_at(100.0f, 100.0f);
    step(*fx, info, on, &dx, &dy);
    EXPECT_EQ(dx, 0.0f);
    EXPECT_EQ(dy, 0.0f);
}

TEST(Motion, WindPushesInsideTheConeOnly) {
    auto fx = make_effect();
    tagINFO info = one_element_info();
    info.use_wind = 1;
    info.wind_speed = 5.0f;
    info.wind_source_x = 0.0f;
    info.wind_source_y = 0.0f;
    info.wind_dir_x = 1.0f;
    info.wind_dir_y = 0.0f;
    info.wind_spread_cos = 0.6f;
    float dx, dy;

    // On the axis, at any distance: the full push.
    for (float x : {10.0f, 700.0f}) {
        tagPOLYGON p = element_at(x, 0.0f);
        step(*fx, info, p, &dx, &dy);
        EXPECT_EQ(dx, 5.0f);
        EXPECT_EQ(dy, 0.0f);
    }
    // On the edge of the cone (cos = 0.6): nothing.
    tagPOLYGON edge = element_at(60.0f, 80.0f);
    step(*fx, info, edge, &dx, &dy);
    EXPECT_EQ(dx, 0.0f);
    // Halfway in cosine: q = (0.8 - 0.6) / 0.4 = 0.5, push 5 x 0.5 x 0.8.
    tagPOLYGON inside = element_at(80.0f, 60.0f);
    step(*fx, info, inside, &dx, &dy);
    EXPECT_NEAR(dx, 2.0, 1e-5);
    EXPECT_EQ(dy, 0.0f);
    // Behind the source, and on it.
    for (float x : {-50.0f, 0.0f}) {
        tagPOLYGON p = element_at(x, 0.0f);
        step(*fx, info, p, &dx, &dy);
        EXPECT_EQ(dx, 0.0f);
    }
    // A zero spread (cos 1) pushes nothing, even on the axis; a wind below
    // 0.0001 is off.
    info.wind_spread_cos = 1.0f;
    tagPOLYGON axis = element_at(100.0f, 0.0f);
    step(*fx, info, axis, &dx, &dy);
    EXPECT_EQ(dx, 0.0f);
    info.wind_spread_cos = 0.6f;
    info.wind_speed = 0.0001f;
    step(*fx, info, axis, &dx, &dy);
    EXPECT_EQ(dx, 0.0f);
}

TEST(Motion, SwirlFollowsTheSeededField) {
    auto fx = make_effect();
    tagINFO info = one_element_info();
    info.use_swirl = 1;
    info.swirl_density = 6.0f;
    info.swirl_magnitude = 2.0f;
    info.frame = 7;

    auto swirl_step = [&](long seed) {
        fx->gradientTabInit(seed);
        tagPOLYGON p = element_at(333.0f, 222.0f);
        fx->update_polygons(&info, &p);
        return std::make_pair(p.vel_x, p.vel_y);
    };
    const auto a = swirl_step(-200);
    EXPECT_EQ(swirl_step(-200), a);
    EXPECT_NE(swirl_step(-217), a);
    EXPECT_NE(a.first, 0.0f);
    EXPECT_NE(a.second, a.first);  // x and y sample different points
    EXPECT_LE(std::fabs(a.first), 2.0f * 1.5f);

    // The x part is magnitude x noise at (density x / W, density y / H,
    // density frame / 25).
    fx->gradientTabInit(-200);
    const float nx = fx->gnoise(&fx->gradient_table[0][0], 6.0f * 333.0f / 720.0f, 6.0f * 222.0f / 486.0f,
                                6.0f * 7.0f / 25.0f);
    EXPECT_NEAR(a.first, 2.0f * nx, 1e-6);

    // Density at or below 0.01 is off.
    info.swirl_density = 0.01f;
    EXPECT_EQ(swirl_step(-200), std::make_pair(0.0f, 0.0f));
}

TEST(Noise, LatticeHashUsesThePermutation) {
    auto fx = make_effect();
    // A table whose entry k is (k, 0, 0) makes glattice return the index.
    float table[256][3] = {};
    for (int k = 0; k < 256; ++k) table[k][0] = static_cast<float>(k);
    // perm[0] = 225, perm[225] = 79, perm[79] = 218.
    EXPECT_EQ(fx->glattice(&table[0][0], 0, 0, 0, 1.0f, 0.0f, 0.0f), 218.0f);
    // -1 wraps to 255: perm[(78) mod 256] = perm[78] = 239.
    EXPECT_EQ(fx->glattice(&table[0][0], -1, 0, 0, 1.0f, 0.0f, 0.0f), 239.0f);
    // 256 wraps to 0 in every coordinate.
    EXPECT_EQ(fx->glattice(&table[0][0], 256, -256, 512, 1.0f, 0.0f, 0.0f), 218.0f);
    // The dot product with the offsets.
    table[218][1] = 2.0f;
    table[218][2] = -1.0f;
    EXPECT_EQ(fx->glattice(&table[0][0], 0, 0, 0, 0.5f, 0.25f, 1.0f), 218.0f * 0.5f + 0.5f - 1.0f);
}

TEST(Noise, ZeroOnTheLatticeAndBlendedBetween) {
    auto fx = make_effect();
    fx->gradientTabInit(-200);
    float* g = &fx->gradient_table[0][0];
    for (float x : {0.0f, 3.0f, -2.0f, 17.0f})
        for (float y : {0.0f, -5.0f, 1.0f}) EXPECT_EQ(fx->gnoise(g, x, y, 4.0f), 0.0f) << x << " " << y;

    // At the cell centre every corner weighs 1/8.
    double sum = 0.0;
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j)
            for (int k = 0; k < 2; ++k) sum += fx->glattice(g, i, j, k, 0.5f - i, 0.5f - j, 0.5f - k);
    EXPECT_NEAR(fx->gnoise(g, 0.5f, 0.5f, 0.5f), sum / 8.0, 1e-6);

    // Negative coordinates use the cell below: continuous across 0 and -1.
    EXPECT_NEAR(fx->gnoise(g, -1e-6f, 0.3f, 0.7f), fx->gnoise(g, 1e-6f, 0.3f, 0.7f), 1e-5);
    EXPECT_NEAR(fx->gnoise(g, -1.0f - 1e-6f, 0.3f, 0.7f), fx->gnoise(g, -1.0f + 1e-6f, 0.3f, 0.7f), 1e-5);
    for (int n = 0; n < 1000; ++n) {
        const float v = fx->gnoise(g, n * 0.137f - 60.0f, n * 0.071f, n * -0.053f);
        ASSERT_LE(std::fabs(v), 1.5f);
    }
}
