// Overlay widgets under the pointer: the hover/press/drag/release state
// machine, the grab tolerance, the drag rules and the write-back into the
// host controls (clamping, percentages, update order).
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "framework/overlay.h"
#include "framework/overlay_widgets.h"
#include "sparkhost/host.h"
#include "tests/gl_recorder.h"

namespace {

SparkFloatDesc position_desc(float value, float minimum, float maximum) {
    SparkFloatDesc d{};
    d.value = value;
    d.min = minimum;
    d.max = maximum;
    return d;
}

class CrosshairWidget : public ::testing::Test {
protected:
    void SetUp() override {
        glrec::reset();
        overlay.width = 200;
        overlay.height = 100;
        overlay.zoom = 2.0f;  // tolerance 2.5
        c.id = 36;
        c.x_control = &xd;
        c.y_control = &yd;
        c.overlay = &overlay;
        c.x = 0.25f;
        c.y = 0.5f;
        overlay.DrawCrosshairOverlay(&c);  // handle at (50, 50)
    }
    sparkhost::Host host;
    OverlayQ7 overlay;
    SparkFloatDesc xd = position_desc(25.0f, -500.0f, 500.0f);
    SparkFloatDesc yd = position_desc(50.0f, -500.0f, 500.0f);
    CrosshairOverlayQ7 c;
};

TEST_F(CrosshairWidget, HoverFollowsThePointerWithoutGrabbing) {
    c.HandleInteraction(kHover, 51.0f, 49.0f);
    EXPECT_EQ(c.highlight, 1);
    EXPECT_EQ(c.grabbed, 0);
    c.HandleInteraction(kHover, 60.0f, 50.0f);
    EXPECT_EQ(c.highlight, 0);
    c.HandleInteraction(kDrag, 100.0f, 50.0f);  // a drag never grabbed moves nothing
    EXPECT_EQ(c.x, 0.25f);
    EXPECT_TRUE(host.update_log().empty());
}

TEST_F(CrosshairWidget, PressOnTheSquaresEdgeDoesNotGrab) {
    // Exactly tol away on either axis is outside: the square is open.
    for (float dx : {2.5f, -2.5f}) {
        c.HandleInteraction(kPress, 50.0f + dx, 50.0f);
        EXPECT_EQ(c.grabbed, 0) << dx;
        EXPECT_EQ(c.highlight, 0) << dx;
    }
    c.HandleInteraction(kPress, 50.0f, 47.5f);
    EXPECT_EQ(c.grabbed, 0);
    c.HandleInteraction(kPress, 52.4f, 47.6f);
    EXPECT_EQ(c.grabbed, 1);
    EXPECT_EQ(c.highlight, 1);
    // A later press elsewhere lets go of it again.
    c.HandleInteraction(kPress, 0.0f, 0.0f);
    EXPECT_EQ(c.grabbed, 0);
    EXPECT_EQ(c.highlight, 0);
}

TEST_F(CrosshairWidget, PressDragReleaseMovesAndWritesTheControls) {
    c.HandleInteraction(kPress, 50.0f, 50.0f);
    ASSERT_EQ(c.grabbed, 1);
    EXPECT_TRUE(host.update_log().empty());  // a press writes nothing

    c.HandleInteraction(kDrag, 100.0f, 30.0f);
    EXPECT_EQ(c.x, 0.5f);
    EXPECT_FLOAT_EQ(c.y, 0.3f);
    EXPECT_EQ(xd.value, 50.0f);
    EXPECT_FLOAT_EQ(yd.value, 30.0f);
    EXPECT_EQ(host.update_log(), (std::vector<int>{36, 37}));

    c.HandleInteraction(kDrag, 150.0f, 75.0f);
    EXPECT_EQ(xd.value, 75.0f);
    EXPECT_EQ(yd.value, 75.0f);
    EXPECT_EQ(host.update_log(), (std::vector<int>{36, 37, 36, 37}));

    c.HandleInteraction(kRelease, 150.0f, 75.0f);
    EXPECT_EQ(c.grabbed, 0);
    EXPECT_EQ(host.update_log().size(), 4u);  // release writes nothing
    c.HandleInteraction(kDrag, 10.0f, 10.0f);
    EXPECT_EQ(c.x, 0.75f);
    EXPECT_EQ(host.update_log().size(), 4u);

    // Unknown event kinds change nothing.
    c.HandleInteraction(static_cast<InterType>(7), 150.0f, 75.0f);
    EXPECT_EQ(c.grabbed, 0);
}

TEST_F(CrosshairWidget, DragBeyondTheRangeStopsAtTheEdgeExactly) {
    xd.min = 0.0f;
    xd.max = 100.0f;
    c.HandleInteraction(kPress, 50.0f, 50.0f);
    // x = 2000 / 200 = 10 (past 100 %), y = -900 / 100 = -9 (past -500 %).
    c.HandleInteraction(kDrag, 2000.0f, -900.0f);
    EXPECT_EQ(c.x, 1.0f);
    EXPECT_EQ(c.y, -5.0f);
    EXPECT_EQ(xd.value, 100.0f);
    EXPECT_EQ(yd.value, -500.0f);
    c.HandleInteraction(kDrag, -40.0f, 900.0f);
    EXPECT_EQ(c.x, 0.0f);
    EXPECT_EQ(c.y, 5.0f);
    EXPECT_EQ(xd.value, 0.0f);
    EXPECT_EQ(yd.value, 500.0f);
}

TEST_F(CrosshairWidget, ClampTestsTheMaximumFirst) {
    // An inverted range (minimum 60 % above maximum 40 %): testing the
    // maximum first and then the minimum always ends at the minimum.
    xd.min = 60.0f;
    xd.max = 40.0f;
    c.HandleInteraction(kPress, 50.0f, 50.0f);
    // (100 x 0.6f is not exactly 60 in single precision; the real ranges,
    // +-500 % and 0 ... 100 %, come back exactly, as checked above.)
    c.HandleInteraction(kDrag, 180.0f, 50.0f);  // 0.9: above both
    EXPECT_FLOAT_EQ(xd.value, 60.0f);
    EXPECT_EQ(c.x, 0.6f);
    c.HandleInteraction(kDrag, 10.0f, 50.0f);  // 0.05: below both
    EXPECT_FLOAT_EQ(xd.value, 60.0f);
    EXPECT_EQ(c.x, 0.6f);
}

TEST_F(CrosshairWidget, UnboundWidgetsAreInert) {
    CrosshairOverlayQ7 loose;  // never drawn, no overlay
    loose.HandleInteraction(kPress, kHandleNotDrawn, kHandleNotDrawn);
    EXPECT_EQ(loose.grabbed, 0);
    // Drawn but not bound to any control: it moves and writes nothing.
    c.x_control = nullptr;
    c.HandleInteraction(kPress, 50.0f, 50.0f);
    c.HandleInteraction(kDrag, 100.0f, 50.0f);
    EXPECT_EQ(c.x, 0.5f);
    EXPECT_TRUE(host.update_log().empty());
}

class LineWidget : public ::testing::Test {
protected:
    void SetUp() override {
        glrec::reset();
        overlay.width = 200;
        overlay.height = 100;
        overlay.zoom = 1.0f;
        line.id = 65;
        line.x_control = &x0d;
        line.y_control = &y0d;
        line.id2 = 67;
        line.x2_control = &x1d;
        line.y2_control = &y1d;
        line.overlay = &overlay;
        line.x0 = 0.1f;
        line.y0 = 0.2f;
        line.x1 = 0.7f;
        line.y1 = 0.6f;
        overlay.DrawLineOverlay(&line);  // (20, 20) to (140, 60): handle at (80, 40)
    }
    sparkhost::Host host;
    OverlayQ7 overlay;
    SparkFloatDesc x0d = position_desc(10.0f, -500.0f, 500.0f);
    SparkFloatDesc y0d = position_desc(20.0f, -500.0f, 500.0f);
    SparkFloatDesc x1d = position_desc(70.0f, -500.0f, 500.0f);
    SparkFloatDesc y1d = position_desc(60.0f, -500.0f, 500.0f);
    LineOverlayQ7 line;
};

TEST_F(LineWidget, DragMovesTheMidpointKeepingLengthAndDirection) {
    EXPECT_FLOAT_EQ(line.handle_x, 80.0f);
    EXPECT_FLOAT_EQ(line.handle_y, 40.0f);
    line.HandleInteraction(kHover, 84.0f, 36.0f);
    EXPECT_EQ(line.highlight, 1);
    line.HandleInteraction(kPress, 84.0f, 44.9f);
    ASSERT_EQ(line.grabbed, 1);

    const float dx = line.x1 - line.x0, dy = line.y1 - line.y0;
    line.HandleInteraction(kDrag, 120.0f, 70.0f);  // midpoint to (0.6, 0.7)
    EXPECT_NEAR(line.x1 - line.x0, dx, 1e-6f);
    EXPECT_NEAR(line.y1 - line.y0, dy, 1e-6f);
    EXPECT_NEAR((line.x0 + line.x1) * 0.5f, 0.6f, 1e-6f);
    EXPECT_NEAR((line.y0 + line.y1) * 0.5f, 0.7f, 1e-6f);
    EXPECT_NEAR(x0d.value, 30.0f, 1e-4f);
    EXPECT_NEAR(y0d.value, 50.0f, 1e-4f);
    EXPECT_NEAR(x1d.value, 90.0f, 1e-4f);
    EXPECT_NEAR(y1d.value, 90.0f, 1e-4f);
    EXPECT_EQ(host.update_log(), (std::vector<int>{65, 66, 67, 68}));

    line.HandleInteraction(kRelease, 120.0f, 70.0f);
    EXPECT_EQ(line.grabbed, 0);
}

TEST_F(LineWidget, EachEndPointIsClampedIntoItsOwnControl) {
    x1d.max = 100.0f;  // the second end may not pass 100 %
    line.HandleInteraction(kPress, 80.0f, 40.0f);
    line.HandleInteraction(kDrag, 180.0f, 40.0f);  // midpoint 0.9: ends at 0.6 and 1.2
    EXPECT_NEAR(line.x0, 0.6f, 1e-6f);
    EXPECT_EQ(line.x1, 1.0f);
    EXPECT_EQ(x1d.value, 100.0f);
    EXPECT_NEAR(x0d.value, 60.0f, 1e-4f);
}

TEST_F(LineWidget, PressAwayFromTheMidpointMissesEvenOnTheLine) {
    line.HandleInteraction(kPress, 20.0f, 20.0f);  // on an end point
    EXPECT_EQ(line.grabbed, 0);
    line.HandleInteraction(kDrag, 120.0f, 70.0f);
    EXPECT_EQ(line.x0, 0.1f);
    EXPECT_TRUE(host.update_log().empty());
}

}  // namespace
