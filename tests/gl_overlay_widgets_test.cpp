// Overlay widgets under the pointer, on their own: the open grab square, the
// clamp's order on an inverted range, a diagonal line's ends clamped apart.
#include <gtest/gtest.h>

#include <vector>

#include "framework/overlay.h"
#include "framework/overlay_widgets.h"
#include "sparkhost/host.h"
#include "tests/gl_recorder.h"

namespace {

SparkFloatDesc percent(float value, float minimum = -500.0f, float maximum = 500.0f) {
    SparkFloatDesc d{};
    d.value = value, d.min = minimum, d.max = maximum;
    return d;
}

struct Widgets : ::testing::Test {
    void SetUp() override {
        glrec::reset();
        overlay.width = 200, overlay.height = 100, overlay.zoom = 2.0f;  // tolerance 2.5
        c.id = 36, c.x_control = &xd, c.y_control = &yd, c.overlay = &overlay;
        c.x = 0.25f, c.y = 0.5f;
        overlay.DrawCrosshairOverlay(&c);  // handle at (50, 50)
    }
    sparkhost::Host host;
    OverlayQ7 overlay;
    SparkFloatDesc xd = percent(25.0f), yd = percent(50.0f);
    CrosshairOverlayQ7 c;
};

TEST_F(Widgets, PressExactlyTheToleranceAwayDoesNotGrab) {
    // The square is open: tol away on either axis is outside.
    for (auto p : {std::pair<float, float>{52.5f, 50.0f}, {47.5f, 50.0f}, {50.0f, 47.5f}}) {
        c.HandleInteraction(kPress, p.first, p.second);
        EXPECT_EQ(c.grabbed, 0) << p.first << "," << p.second;
    }
    c.HandleInteraction(kPress, 52.4f, 47.6f);
    EXPECT_EQ(c.grabbed, 1);
}

TEST_F(Widgets, ClampTestsTheMaximumFirst) {
    // An inverted range (minimum 60 % above maximum 40 %): testing the
    // maximum first and then the minimum always ends at the minimum.
    // (100 x 0.6f is not exactly 60 in single precision.)
    xd.min = 60.0f;
    xd.max = 40.0f;
    c.HandleInteraction(kPress, 50.0f, 50.0f);
    for (float px : {180.0f, 10.0f}) {  // 0.9, above both; 0.05, below both
        c.HandleInteraction(kDrag, px, 50.0f);
        EXPECT_FLOAT_EQ(xd.value, 60.0f) << px;
        EXPECT_EQ(c.x, 0.6f) << px;
    }
}

TEST_F(Widgets, DiagonalLineKeepsLengthAndDirectionAndEachEndIsClampedAlone) {
    overlay.zoom = 1.0f;
    SparkFloatDesc x0d = percent(10), y0d = percent(20), x1d = percent(70), y1d = percent(60);
    LineOverlayQ7 line;
    line.id = 65, line.x_control = &x0d, line.y_control = &y0d, line.overlay = &overlay;
    line.id2 = 67, line.x2_control = &x1d, line.y2_control = &y1d;
    line.x0 = 0.1f, line.y0 = 0.2f, line.x1 = 0.7f, line.y1 = 0.6f;
    overlay.DrawLineOverlay(&line);  // (20, 20) to (140, 60): handle at (80, 40)
    line.HandleInteraction(kPress, 84.0f, 44.9f);
    ASSERT_EQ(line.grabbed, 1);

    line.HandleInteraction(kDrag, 120.0f, 70.0f);  // midpoint to (0.6, 0.7)
    const float expected[4] = {30, 50, 90, 90};
    const SparkFloatDesc* written[4] = {&x0d, &y0d, &x1d, &y1d};
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(written[i]->value, expected[i], 1e-4f) << i;
    EXPECT_EQ(host.update_log(), (std::vector<int>{65, 66, 67, 68}));

    x1d.max = 100.0f;                              // the second end may not pass 100 %
    line.HandleInteraction(kDrag, 180.0f, 40.0f);  // midpoint 0.9: ends at 0.6 and 1.2
    EXPECT_NEAR(x0d.value, 60.0f, 1e-4f);
    EXPECT_EQ(x1d.value, 100.0f);
    EXPECT_EQ(line.x1, 1.0f);
}

}  // namespace
