// The element step under the speeds and forces, the swirl's noise, and the vector normaliser.
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
    void SetUp() override { info.width = 720, info.height = 486, info.columns = info.rows = info.element_count = 1; }
    // One step (from a fresh element at (x, y)); its displacement in dx, dy.
    void step_from(float x, float y) { p = tagPOLYGON{}, p.x = x, p.y = y, p.z = -192.0f, step(); }
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
    EXPECT_TRUE(std::fabs(v[0] - 0.59999998) < 3e-8 && std::fabs(v[1] - 0.79999997) < 3e-8 && v[2] == 0.0f);
    float w[3] = {1.0f, 1.0f, 1.0f};  // Newton for sqrt(3) from 1: 2, 1.75, 1.7321429 (exact 1.7320508)
    EXPECT_NEAR(vecnorm(w), 1.7321429, 1e-7);
    EXPECT_NEAR(w[0] * std::sqrt(3.0), 0.99995, 1e-5);  // the result's length
    float tiny[3] = {1e-11f, -5e-11f, 0.0f};
    EXPECT_TRUE(vecnorm(tiny) == 0.0 && tiny[0] == 0.0f && tiny[1] == 0.0f);
}

TEST_F(Motion, SpeedsMoveTwiceInThePlaneOnceInDepthRotationDoesNotWrapGravityActsOneStepLate) {
    info.speed_x = 1.5f, info.speed_y = -2.0f, info.speed_z = 5.0f, info.rot_speed_x = 60.0f;
    step_from(100.0f, 50.0f);
    EXPECT_TRUE(p.x == 103.0f && p.y == 46.0f && p.z == -187.0f) << p.x << " " << p.y << " " << p.z;
    info.omni_z = 1;
    for (int n = 0; n < 9; ++n) step();
    EXPECT_TRUE(p.z == -97.0f && p.angle_x == 600.0f) << p.z << " " << p.angle_x;

    // Gravity (Angle 270) acts one step late: on, on, then off, the stored pull still acts once more.
    info.speed_x = info.speed_y = 0.0f;
    step_from(100.0f, 100.0f);  // rebuilt with gravity off
    info.gravity = 1.0f, info.gravity_cos = 0.0f, info.gravity_sin = -1.0f;
    const struct { int use; float dy; } steps[] = {{1, 0.0f}, {1, -1.0f}, {0, -1.0f}, {0, 0.0f}};
    for (const auto& s : steps) {
        info.use_gravity = s.use;
        step();
        EXPECT_TRUE(dx == 0.0f && dy == s.dy) << s.use << ": " << dx << " " << dy;
    }
}

TEST_F(Motion, AttractionScalesPerAxisRepulsionIsConstantAndAbsentOnThePoint) {
    // d = (300, -400): direction (0.6, -0.8), each axis scaled by its distance over the frame size
    info.use_attraction = 1, info.attraction_strength = 3.0f, info.attraction_x = 600.0f, info.attraction_y = 0.0f;
    step_from(300.0f, 400.0f);
    EXPECT_TRUE(std::fabs(dx - 3.0 * 0.6 * 300 / 720) < 1e-5 && std::fabs(dy + 3.0 * 0.8 * 400 / 486) < 1e-5);
    info.use_attraction = 0, info.use_repulsion = 1, info.repulsion_strength = 3.0f, info.repulsion_x = 100.0f;
    info.repulsion_y = 100.0f;
    for (float distance : {1.0f, 500.0f, 0.0f}) {
        step_from(100.0f, 100.0f - distance);
        EXPECT_TRUE(dx == 0.0f && dy == (distance ? -3.0f : 0.0f)) << distance << ": " << dx << " " << dy;
    }
}

TEST_F(Motion, WindPushesInsideTheConeOnly) {
    info.use_wind = 1, info.wind_dir_x = 1.0f;  // from (0, 0) along +x
    const struct { float x, y, spread_cos, speed, dx; const char* what; } cases[] = {
        {10, 0, 0.6f, 5, 5, "on the axis: the full push"}, {700, 0, 0.6f, 5, 5, "at any distance"},
        {60, 80, 0.6f, 5, 0, "on the edge of the cone"}, {80, 60, 0.6f, 5, 2, "q = (0.8 - 0.6) / 0.4, push 5 q 0.8"},
        {-50, 0, 0.6f, 5, 0, "behind the source"}, {0, 0, 0.6f, 5, 0, "on the source"},
        {100, 0, 1, 5, 0, "zero spread"}, {100, 0, 0.6f, 0.0001f, 0, "wind speed at the threshold is off"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        info.wind_spread_cos = c.spread_cos, info.wind_speed = c.speed;
        step_from(c.x, c.y);
        EXPECT_TRUE(std::fabs(dx - c.dx) < 1e-5 && dy == 0.0f) << dx << " " << dy;
    }
}

// The swirl's x part is magnitude x noise at (density x / W, density y / H,
// density frame / 25); y samples elsewhere; a density of 0.01 or less is off.
TEST_F(Motion, SwirlFollowsTheNoiseWhoseLatticeHashZerosAndCentreWeightsAreFixed) {
    info.use_swirl = 1, info.frame = 7, info.swirl_density = 6.0f, info.swirl_magnitude = 2.0f;
    fx->gradientTabInit(-200);
    float* g = &fx->gradient_table[0][0];
    step_from(333.0f, 222.0f);
    const float nx = fx->gnoise(g, 6 * 333.0f / 720, 6 * 222.0f / 486, 6 * 7.0f / 25);
    EXPECT_TRUE(nx != 0.0f && std::fabs(p.vel_x - 2 * nx) < 1e-6 && p.vel_y != p.vel_x) << nx << " " << p.vel_x;
    info.swirl_density = 0.01f;
    step_from(333.0f, 222.0f);
    EXPECT_TRUE(p.vel_x == 0.0f && p.vel_y == 0.0f);

    for (float x : {0.0f, 3.0f, -2.0f, 17.0f}) EXPECT_EQ(fx->gnoise(g, x, -5.0f, 4.0f), 0.0f) << x;  // on the lattice
    double sum = 0.0;  // at the cell centre every corner weighs 1/8
    for (int i = 0; i < 8; ++i)
        sum += fx->glattice(g, i & 1, i >> 1 & 1, i >> 2, 0.5f - (i & 1), 0.5f - (i >> 1 & 1), 0.5f - (i >> 2));
    EXPECT_NEAR(fx->gnoise(g, 0.5f, 0.5f, 0.5f), sum / 8.0, 1e-6);
    EXPECT_NEAR(fx->gnoise(g, -1.0f - 1e-6f, 0.3f, 0.7f), fx->gnoise(g, -0.999999f, 0.3f, 0.7f), 1e-5);  // floor
    // A table whose entry k is (k, 0, 0) makes glattice return the index: perm[0] = 225,
    // perm[225] = 79, perm[79] = 218; -1 wraps to 255: perm[(255 + 79) mod 256] = perm[78] = 239.
    float table[256][3] = {};
    for (int k = 0; k < 256; ++k) table[k][0] = static_cast<float>(k);
    const struct { int ix, iy, iz; float index; } cases[] = {{0, 0, 0, 218}, {-1, 0, 0, 239}, {256, -256, 512, 218}};
    for (const auto& c : cases) EXPECT_EQ(fx->glattice(&table[0][0], c.ix, c.iy, c.iz, 1, 0, 0), c.index) << c.ix;
}

// The second swirl sample sits at the first plus (3.14, 2.71, 4.35), each sum
// formed in double and rounded once: at px = 0.139999986 that is 3.27999997,
// where a float sum would give 3.28000021 and another noise value.
TEST_F(Motion, SwirlSecondSampleOffsetsAreDoubleSumsRoundedOnce) {
    info.use_swirl = 1, info.frame = 3, info.swirl_density = 1.0f, info.swirl_magnitude = 5.0f;
    fx->gradientTabInit(-7);
    float* g = &fx->gradient_table[0][0];
    const float x = 100.79998779296875f, y = 243.0f;
    const float px = static_cast<float>(1.0 * x / 720), py = static_cast<float>(1.0 * y / 486);
    const float pt = static_cast<float>(1.0 * 3 / 25);
    ASSERT_EQ(px, 0.139999986f);
    ASSERT_EQ(static_cast<float>(px + 3.14), 3.27999997f);
    ASSERT_EQ(px + 3.14f, 3.28000021f);
    const float rounded_once = fx->gnoise(g, 3.27999997f, static_cast<float>(py + 2.71), static_cast<float>(pt + 4.35));
    const float single = fx->gnoise(g, 3.28000021f, py + 2.71f, pt + 4.35f);
    ASSERT_NE(rounded_once, single);
    step_from(x, y);
    EXPECT_EQ(p.vel_y, 5.0f * rounded_once) << p.vel_y << " " << 5.0f * single;
}
