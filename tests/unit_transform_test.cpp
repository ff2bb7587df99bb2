// 3D transforms and the perspective projection.
#include <gtest/gtest.h>

#include <memory>

#include "effect/paneburst.h"

namespace {

struct Transforms : ::testing::Test {
    std::unique_ptr<Paneburst> fx{new Paneburst};
    tagINFO info{};
    void SetUp() override { info.foreground_z = -192.0f; }
};

}  // namespace

// Quarter turns fix the sign convention of each axis; the inverse turns back.
TEST_F(Transforms, QuarterTurnsAboutEachAxisAndBack) {
    typedef void (Paneburst::*Rotation)(float, float*);
    const struct { Rotation turn, back; float from[3], to[3]; } cases[] = {
        {&Paneburst::rotate_xaxis, &Paneburst::inverse_rotate_xaxis, {0, 1, 0}, {0, 0, 1}},
        {&Paneburst::rotate_yaxis, &Paneburst::inverse_rotate_yaxis, {0, 0, 1}, {1, 0, 0}},
        {&Paneburst::rotate_zaxis, &Paneburst::inverse_rotate_zaxis, {1, 0, 0}, {0, 1, 0}},
    };
    for (const auto& c : cases) {
        float p[3] = {c.from[0], c.from[1], c.from[2]};
        ((*fx).*c.turn)(90.0f, p);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(p[i], c.to[i], 1e-6) << &c - cases << " " << i;
        ((*fx).*c.back)(90.0f, p);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(p[i], c.from[i], 1e-6) << &c - cases << " " << i;
    }
}

TEST_F(Transforms, ProjectionKeepsTheForegroundPlaneAndHalvesTwiceAsFar) {
    float p[3] = {10.0f, -7.0f, -192.0f};
    fx->perspective_project(&info, p, -192.0f, -192.0f);
    EXPECT_TRUE(p[0] == 10.0f && p[1] == -7.0f);
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
    EXPECT_NEAR(p[2], (n + f) - n * f / -200.0, 1e-3);  // z' = (n + f) - n f / z
    fx->inverse_perspective_project(&info, p, n, f);
    EXPECT_NEAR(p[0], 13.25f, 1e-4);
    EXPECT_NEAR(p[1], -40.5f, 1e-4);
    EXPECT_NEAR(p[2], -200.0f, 1e-3);
}

TEST_F(Transforms, GuardsOnTinyFocalDepthAndNearTimesFar) {
    // |d| below 1e-6 becomes +1e-6 whatever its sign: the picture flips.
    info.foreground_z = -1e-7f;
    float p[3] = {3.0f, 4.0f, -2.0f};
    fx->perspective_project(&info, p, -2.0f, -2.0f);
    EXPECT_NEAR(p[0], 3.0 * 1e-6 / -2.0, 1e-12);  // x d / z
    EXPECT_LT(p[1], 0.0f);

    // With f = 0 the product n f is replaced by 1e-6: then
    // w = d ((n + f) - z) / q and the point is (x / w, y / w, d / w).
    info.foreground_z = -192.0f;
    float q[3] = {2.0f, 1.0f, -50.0f};
    fx->inverse_perspective_project(&info, q, -100.0f, 0.0f);
    const double w = -192.0 * (-100.0 - -50.0) / 1e-6;
    EXPECT_NEAR(q[0], 2.0 / w, 1e-12);
    EXPECT_NEAR(q[2] / (-192.0 / w), 1.0, 1e-5);
}

TEST_F(Transforms, MatrixMultiplyDividesByW) {
    float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 6, 8, 2};  // translation, w = 2
    float p[3] = {2.0f, 2.0f, 2.0f};
    EXPECT_EQ(fx->matrix_multiply(m, p), m);
    EXPECT_TRUE(p[0] == 3.0f && p[1] == 4.0f && p[2] == 5.0f);
}
