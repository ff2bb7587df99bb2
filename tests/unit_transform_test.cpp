// 3D transforms and the perspective projection.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "effect/paneburst.h"

namespace {

struct Transforms : ::testing::Test {
    std::unique_ptr<Paneburst> fx{new Paneburst};
    tagINFO info{};
    void SetUp() override { info.foreground_z = -192.0f; }
};

}  // namespace

TEST_F(Transforms, TranslationsAddAndSubtract) {
    float p[3] = {1.5f, -2.0f, -100.0f};
    fx->translate(p, 10.0f, 20.0f, -5.0f);
    EXPECT_EQ(p[0], 11.5f);
    EXPECT_EQ(p[1], 18.0f);
    EXPECT_EQ(p[2], -105.0f);
    fx->inverse_translate(p, 10.0f, 20.0f, -5.0f);
    EXPECT_EQ(p[0], 1.5f);
    EXPECT_EQ(p[1], -2.0f);
    EXPECT_EQ(p[2], -100.0f);
}

TEST_F(Transforms, QuarterTurnAboutZAndBack) {
    float p[3] = {1.0f, 0.0f, 0.0f};
    fx->rotate_zaxis(90.0f, p);
    EXPECT_NEAR(p[0], 0.0f, 1e-6);
    EXPECT_NEAR(p[1], 1.0f, 1e-6);
    EXPECT_EQ(p[2], 0.0f);
    fx->inverse_rotate_zaxis(90.0f, p);
    EXPECT_NEAR(p[0], 1.0f, 1e-6);
    EXPECT_NEAR(p[1], 0.0f, 1e-6);
}

TEST_F(Transforms, RotationsUseTheEffectsDegreeConstantAndFloatSines) {
    // The constant is 3.141592654 / 180, a little above pi / 180.
    const float a = static_cast<float>(33.0f * (3.141592654 / 180.0));
    const double c = std::cos(a), s = std::sin(a);
    const float x = 7.0f, y = -3.0f, z = 11.0f;

    float px[3] = {x, y, z};
    fx->rotate_xaxis(33.0f, px);
    EXPECT_EQ(px[0], x);
    EXPECT_EQ(px[1], static_cast<float>(y * c - z * s));
    EXPECT_EQ(px[2], static_cast<float>(y * s + z * c));

    float py[3] = {x, y, z};
    fx->rotate_yaxis(33.0f, py);
    EXPECT_EQ(py[0], static_cast<float>(x * c + z * s));
    EXPECT_EQ(py[1], y);
    EXPECT_EQ(py[2], static_cast<float>(-x * s + z * c));

    float pz[3] = {x, y, z};
    fx->rotate_zaxis(33.0f, pz);
    EXPECT_EQ(pz[0], static_cast<float>(x * c - y * s));
    EXPECT_EQ(pz[1], static_cast<float>(x * s + y * c));
    EXPECT_EQ(pz[2], z);
}

TEST_F(Transforms, ProjectionKeepsTheForegroundPlaneAndHalvesTwiceAsFar) {
    float p[3] = {10.0f, -7.0f, -192.0f};
    fx->perspective_project(&info, p, -192.0f, -192.0f);
    EXPECT_EQ(p[0], 10.0f);
    EXPECT_EQ(p[1], -7.0f);
    EXPECT_FLOAT_EQ(p[2], -192.0f);  // n = f = z keeps the depth

    float q[3] = {10.0f, -6.0f, -384.0f};
    fx->perspective_project(&info, q, -384.0f, -192.0f);
    EXPECT_FLOAT_EQ(q[0], 5.0f);
    EXPECT_FLOAT_EQ(q[1], -3.0f);
    EXPECT_FLOAT_EQ(q[2], -384.0f);  // z = n maps to n
}

TEST_F(Transforms, InverseProjectionUndoesTheForwardOne) {
    const float n = -150.0f, f = -260.0f;
    float p[3] = {13.25f, -40.5f, -200.0f};
    fx->perspective_project(&info, p, n, f);
    // z' = (n + f) - n f / z
    EXPECT_NEAR(p[2], (n + f) - n * f / -200.0, 1e-3);
    fx->inverse_perspective_project(&info, p, n, f);
    EXPECT_NEAR(p[0], 13.25f, 1e-4);
    EXPECT_NEAR(p[1], -40.5f, 1e-4);
    EXPECT_NEAR(p[2], -200.0f, 1e-3);
}

TEST_F(Transforms, TinyFocalDepthBecomesAPositiveMicroAndFlipsThePicture) {
    info.foreground_z = -1e-7f;
    float p[3] = {3.0f, 4.0f, -2.0f};
    fx->perspective_project(&info, p, -2.0f, -2.0f);
    // x d / z with d = +1e-6
    EXPECT_NEAR(p[0], 3.0 * 1e-6 / -2.0, 1e-12);
    EXPECT_LT(p[0], 0.0f);
    EXPECT_LT(p[1], 0.0f);
}

TEST_F(Transforms, InverseGuardOnNearTimesFar) {
    // With f = 0 the product n f is replaced by 1e-6: then
    // w = d ((n + f) - z) / q and the point is (x / w, y / w, d / w).
    const float n = -100.0f, f = 0.0f, z = -50.0f;
    float p[3] = {2.0f, 1.0f, z};
    fx->inverse_perspective_project(&info, p, n, f);
    const double w = -192.0 * ((n + f) - z) / 1e-6;
    EXPECT_NEAR(p[0], 2.0 / w, 1e-12);
    EXPECT_NEAR(p[2] / (-192.0 / w), 1.0, 1e-5);
}

TEST_F(Transforms, MatrixMultiplyDividesByW) {
    float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 6, 8, 2};  // translation, w = 2
    float p[3] = {2.0f, 2.0f, 2.0f};
    EXPECT_EQ(fx->matrix_multiply(m, p), m);
    EXPECT_EQ(p[0], 3.0f);
    EXPECT_EQ(p[1], 4.0f);
    EXPECT_EQ(p[2], 5.0f);
}
