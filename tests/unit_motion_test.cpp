// The element step under the speeds and forces, and the vector normaliser.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "effect/paneburst.h"
#include "effect/vecnorm.h"

namespace {

// A one-element grid on a 720 x 486 frame, every force off.
struct Motion : ::testing::Test {
    std::unique_ptr<Paneburst> fx{new Paneburst};
    tagINFO info{};
    tagPOLYGON p{};
    float dx = 0.0f, dy = 0.0f;

    void SetUp() override {
        info.width = 720, info.height = 486;
        info.columns = info.rows = info.element_count = 1;
    }
    void at(float x, float y) {
        p = tagPOLYGON{};
        p.x = x, p.y = y, p.z = -192.0f;
    }
    // One step; its displacement in dx, dy.
    void step() {
        const float x = p.x, y = p.y;
        fx->update_polygons(&info, &p);
        dx = p.x - x, dy = p.y - y;
    }
};

}  // namespace

TEST(Vecnorm, ThreeNewtonStepsInsteadOfARootAndTinyVectorsBecomeZero) {
    float v[3] = {3.0f, 4.0f, 0.0f};
    EXPECT_NEAR(vecnorm(v), 5.0000002, 1e-7);
    EXPECT_TRUE(std::fabs(v[0] - 0.59999998) < 3e-8 && std::fabs(v[1] - 0.79999997) < 3e-8 && v[2] == 0.0f)
        << v[0] << " " << v[1] << " " << v[2];

    // Newton for sqrt(3) from 1: 2, 1.75, 1.7321429 (exact 1.7320508).
    float w[3] = {1.0f, 1.0f, 1.0f};
    EXPECT_NEAR(vecnorm(w), 1.7321429, 1e-7);
    EXPECT_NEAR(std::sqrt(double(w[0]) * w[0] + double(w[1]) * w[1] + double(w[2]) * w[2]), 0.99995, 1e-5);

    // Sign and axis: on an axis the first step is already exact.
    float n[3] = {0.0f, -2.5f, 0.0f};
    EXPECT_EQ(vecnorm(n), 2.5);
    EXPECT_EQ(n[1], -1.0f);

    float tiny[3] = {1e-11f, -5e-11f, 0.0f};
    EXPECT_EQ(vecnorm(tiny), 0.0);
    EXPECT_TRUE(tiny[0] == 0.0f && tiny[1] == 0.0f);
}

TEST_F(Motion, SpeedsAloneMoveTwiceInThePlaneOnceInDepth) {
    info.speed_x = 1.5f, info.speed_y = -2.0f, info.speed_z = 5.0f;
    at(100.0f, 50.0f);
    step();
    EXPECT_TRUE(p.x == 103.0f && p.y == 46.0f && p.z == -187.0f) << p.x << " " << p.y << " " << p.z;

    info.omni_z = 1;
    step();
    EXPECT_EQ(p.z, -177.0f);

    // Factors: (2 + var) x speed across, (1 + omni + var) x speed in depth.
    info.omni_z = 0;
    p.var_x = 0.5f, p.var_z = -0.2f;
    step();
    EXPECT_TRUE(p.vel_x == 3.75f && p.vel_z == 4.0f) << p.vel_x << " " << p.vel_z;
}

TEST_F(Motion, RotationAccumulatesWithoutWrapping) {
    info.rot_speed_x = 60.0f, info.rot_speed_y = -90.0f, info.rot_speed_z = 60.0f;
    at(0.0f, 0.0f);
    p.spin_var_z = -2.0f;  // the far end of the default variation
    for (int n = 0; n < 10; ++n) step();
    EXPECT_TRUE(p.angle_x == 600.0f && p.angle_y == -900.0f && p.angle_z == -600.0f && p.spin_z == -60.0f)
        << p.angle_x << " " << p.angle_y << " " << p.angle_z << " " << p.spin_z;
}

TEST_F(Motion, GravityActsOneStepLate) {
    at(100.0f, 100.0f);  // rebuilt with gravity off
    info.gravity = 1.0f, info.gravity_cos = 0.0f, info.gravity_sin = -1.0f;  // Gravity Angle 270
    // On, on, then off: the stored pull still acts once more.
    const struct { int use; float dy; } steps[] = {{1, 0.0f}, {1, -1.0f}, {0, -1.0f}, {0, 0.0f}};
    for (const auto& s : steps) {
        info.use_gravity = s.use;
        step();
        EXPECT_TRUE(dx == 0.0f && dy == s.dy) << dx << " " << dy;
    }
}

TEST_F(Motion, AttractionGrowsWithDistancePerAxis) {
    info.use_attraction = 1;
    info.attraction_strength = 3.0f;
    info.attraction_x = 600.0f, info.attraction_y = 100.0f;
    at(240.0f, 100.0f);  // level with the point
    step();
    EXPECT_FLOAT_EQ(dx, 3.0f * 360.0f / 720.0f);
    EXPECT_EQ(dy, 0.0f);

    // Diagonal: each axis scaled by its own distance over the frame size.
    info.attraction_y = 0.0f;  // d = (300, -400): direction (0.6, -0.8)
    at(300.0f, 400.0f);
    step();
    EXPECT_NEAR(dx, 3.0 * 0.6 * 300.0 / 720.0, 1e-5);
    EXPECT_NEAR(dy, -3.0 * 0.8 * 400.0 / 486.0, 1e-5);
}

TEST_F(Motion, RepulsionIsConstantAndAbsentOnThePoint) {
    info.use_repulsion = 1;
    info.repulsion_strength = 3.0f;
    info.repulsion_x = info.repulsion_y = 100.0f;
    for (float distance : {1.0f, 500.0f, 0.0f}) {
        at(100.0f, 100.0f - distance);
        step();
        EXPECT_TRUE(dx == 0.0f && dy == (distance ? -3.0f : 0.0f)) << distance << ": " << dx << " " << dy;
    }
}

TEST_F(Motion, WindPushesInsideTheConeOnly) {
    info.use_wind = 1;
    info.wind_dir_x = 1.0f;  // from (0, 0) along +x
    const struct { float x, y, spread_cos, speed, dx; const char* what; } cases[] = {
        {10.0f, 0.0f, 0.6f, 5.0f, 5.0f, "on the axis: the full push"},
        {700.0f, 0.0f, 0.6f, 5.0f, 5.0f, "at any distance"},
        {60.0f, 80.0f, 0.6f, 5.0f, 0.0f, "on the edge of the cone"},
        {80.0f, 60.0f, 0.6f, 5.0f, 2.0f, "q = (0.8 - 0.6) / 0.4, push 5 x q x 0.8"},
        {-50.0f, 0.0f, 0.6f, 5.0f, 0.0f, "behind the source"},
        {0.0f, 0.0f, 0.6f, 5.0f, 0.0f, "on the source"},
        {100.0f, 0.0f, 1.0f, 5.0f, 0.0f, "zero spread"},
        {100.0f, 0.0f, 0.6f, 0.0001f, 0.0f, "wind speed at the threshold is off"},
    };
    for (const auto& c : cases) {
        info.wind_spread_cos = c.spread_cos;
        info.wind_speed = c.speed;
        at(c.x, c.y);
        step();
        EXPECT_NEAR(dx, c.dx, 1e-5) << c.what;
        EXPECT_EQ(dy, 0.0f) << c.what;
    }
}

TEST_F(Motion, SwirlFollowsTheSeededField) {
    info.use_swirl = 1, info.frame = 7;
    info.swirl_density = 6.0f, info.swirl_magnitude = 2.0f;
    auto swirl_step = [&](long seed) {
        fx->gradientTabInit(seed);
        at(333.0f, 222.0f);
        step();
        return std::make_pair(p.vel_x, p.vel_y);
    };
    const auto a = swirl_step(-200);
    EXPECT_EQ(swirl_step(-200), a);
    EXPECT_NE(swirl_step(-217), a);
    EXPECT_NE(a.second, a.first);  // x and y sample different points

    // The x part is magnitude x noise at (density x / W, density y / H,
    // density frame / 25).
    fx->gradientTabInit(-200);
    const float nx = fx->gnoise(&fx->gradient_table[0][0], 6.0f * 333.0f / 720.0f, 6.0f * 222.0f / 486.0f,
                                6.0f * 7.0f / 25.0f);
    EXPECT_NE(nx, 0.0f);
    EXPECT_NEAR(a.first, 2.0f * nx, 1e-6);

    info.swirl_density = 0.01f;  // at or below 0.01 is off
    EXPECT_EQ(swirl_step(-200), std::make_pair(0.0f, 0.0f));
}

TEST(Noise, LatticeHashUsesThePermutation) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    // A table whose entry k is (k, 0, 0) makes glattice return the index.
    float table[256][3] = {};
    for (int k = 0; k < 256; ++k) table[k][0] = static_cast<float>(k);
    // perm[0] = 225, perm[225] = 79, perm[79] = 218; -1 wraps to 255:
    // perm[(255 + 79) mod 256] = perm[78] = 239; 256 wraps to 0 everywhere.
    const struct { int ix, iy, iz; float index; } cases[] = {{0, 0, 0, 218}, {-1, 0, 0, 239}, {256, -256, 512, 218}};
    for (const auto& c : cases)
        EXPECT_EQ(fx->glattice(&table[0][0], c.ix, c.iy, c.iz, 1.0f, 0.0f, 0.0f), c.index) << c.ix;
    // The dot product with the offsets.
    table[218][1] = 2.0f;
    table[218][2] = -1.0f;
    EXPECT_EQ(fx->glattice(&table[0][0], 0, 0, 0, 0.5f, 0.25f, 1.0f), 218.0f * 0.5f + 0.5f - 1.0f);
}

TEST(Noise, ZeroOnTheLatticeAndBlendedBetween) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
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
    for (int n = 0; n < 1000; ++n) ASSERT_LE(std::fabs(fx->gnoise(g, n * 0.137f - 60.0f, n * 0.071f, n * -0.053f)), 1.5f);
}
