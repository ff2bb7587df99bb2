// Overlay drawing primitives, checked vertex by vertex through the recorded
// GL calls: colours, handles, dashed lines, elliptic arcs, and the drawing of
// the crosshair and line widgets.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

#include "framework/overlay.h"
#include "framework/overlay_widgets.h"
#include "tests/gl_recorder.h"

namespace {

using glrec::Segment;

class OverlayDrawing : public ::testing::Test {
protected:
    void SetUp() override {
        glrec::reset();
        overlay.width = 200;
        overlay.height = 100;
        overlay.zoom = 1.0f;
    }
    void TearDown() override { EXPECT_EQ(glrec::recording().errors, 0) << "unbalanced glBegin/glEnd"; }
    static std::vector<Segment> segments() { return glrec::recording().segments(); }
    OverlayQ7 overlay;
};

void expect_segment(const Segment& s, float x0, float y0, float x1, float y1, float tol = 0.0f) {
    if (tol == 0.0f) {
        EXPECT_FLOAT_EQ(s.x0, x0);
        EXPECT_FLOAT_EQ(s.y0, y0);
        EXPECT_FLOAT_EQ(s.x1, x1);
        EXPECT_FLOAT_EQ(s.y1, y1);
    } else {
        EXPECT_NEAR(s.x0, x0, tol);
        EXPECT_NEAR(s.y0, y0, tol);
        EXPECT_NEAR(s.x1, x1, tol);
        EXPECT_NEAR(s.y1, y1, tol);
    }
}

// Segments as sortable tuples, for drawings whose order does not matter.
using SegmentKey = std::tuple<float, float, float, float>;
std::vector<SegmentKey> sorted_keys(const std::vector<Segment>& segs) {
    std::vector<SegmentKey> keys;
    for (const Segment& s : segs) keys.emplace_back(s.x0, s.y0, s.x1, s.y1);
    std::sort(keys.begin(), keys.end());
    return keys;
}

TEST_F(OverlayDrawing, ColourIsScaledTo01AndAlphaIgnored) {
    overlay.SetColour(65535, 32767, 0, 12345);
    const auto& calls = glrec::recording().calls;
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].name, "glColor3f");
    ASSERT_EQ(calls[0].args.size(), 3u);
    EXPECT_EQ(calls[0].args[0], 1.0f);
    EXPECT_FLOAT_EQ(calls[0].args[1], 32767.0f / 65535.0f);
    EXPECT_EQ(calls[0].args[2], 0.0f);
}

TEST_F(OverlayDrawing, HandleIsTenScreenPixelsAtAnyZoom) {
    // zoom 2: side 5 in overlay units (10 on screen), tolerance 2.5.
    overlay.zoom = 2.0f;
    EXPECT_EQ(overlay.GrabHandleSize(), 2.5f);
    overlay.DrawHandle(40.0f, 30.0f, true);
    auto polys = glrec::recording().of_mode(GL_POLYGON);
    ASSERT_EQ(polys.size(), 1u);
    const auto& v = polys[0].vertices;
    ASSERT_EQ(v.size(), 4u);
    const float expected[4][2] = {{37.5f, 27.5f}, {42.5f, 27.5f}, {42.5f, 32.5f}, {37.5f, 32.5f}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(v[i].x, expected[i][0]) << "corner " << i;
        EXPECT_EQ(v[i].y, expected[i][1]) << "corner " << i;
    }
    overlay.zoom = 0.5f;
    EXPECT_EQ(overlay.GrabHandleSize(), 10.0f);
}

TEST_F(OverlayDrawing, PixelIsOnePoint) {
    overlay.DrawPixel(3.5f, 4.5f);
    auto points = glrec::recording().of_mode(GL_POINTS);
    ASSERT_EQ(points.size(), 1u);
    ASSERT_EQ(points[0].vertices.size(), 1u);
    EXPECT_EQ(points[0].vertices[0].x, 3.5f);
    EXPECT_EQ(points[0].vertices[0].y, 4.5f);
}

TEST_F(OverlayDrawing, DashedLineStartsWithAGapAndDrawsOddSteps) {
    // Length 100, dash 10: ten steps, dashes on steps 1, 3, 5, 7, 9.
    overlay.DrawLineDotted(0.0f, 0.0f, 100.0f, 0.0f, 10);
    auto segs = segments();
    ASSERT_EQ(segs.size(), 5u);
    for (int d = 0; d < 5; ++d) expect_segment(segs[d], 10.0f + 20.0f * d, 0.0f, 20.0f + 20.0f * d, 0.0f);

    // The same along a 3-4-5 diagonal: each step is (6, 8).
    glrec::reset();
    overlay.DrawLineDotted(0.0f, 0.0f, 60.0f, 80.0f, 10);
    segs = segments();
    ASSERT_EQ(segs.size(), 5u);
    for (int d = 0; d < 5; ++d) {
        const float i = 2.0f * d + 1.0f;
        expect_segment(segs[d], 6.0f * i, 8.0f * i, 6.0f * (i + 1), 8.0f * (i + 1));
    }
}

TEST_F(OverlayDrawing, DashedLineLastDashStopsAtTheEndInEveryDirection) {
    struct Case {
        float x0, y0, x1, y1;
        Segment dash;
    } cases[] = {
        {0, 0, 15, 0, {10, 0, 15, 0, {}}},          // 1.5 steps: the dash is cut at x = 15
        {100, 50, 85, 50, {90, 50, 85, 50, {}}},    // leftwards
        {0, 0, 0, -15, {0, -10, 0, -15, {}}},       // downwards
        {0, 0, -9, -12, {-6, -8, -9, -12, {}}},     // both coordinates decreasing
        {0, 0, 9, -12, {6, -8, 9, -12, {}}},        // mixed directions
    };
    for (const Case& c : cases) {
        glrec::reset();
        overlay.DrawLineDotted(c.x0, c.y0, c.x1, c.y1, 10);
        auto segs = segments();
        ASSERT_EQ(segs.size(), 1u) << c.x1 << "," << c.y1;
        expect_segment(segs[0], c.dash.x0, c.dash.y0, c.dash.x1, c.dash.y1, 1e-5f);
    }
}

TEST_F(OverlayDrawing, DashedLineDegenerateDrawsNothing) {
    overlay.DrawLineDotted(5.0f, 5.0f, 5.0f, 5.0f, 10);  // coinciding points
    overlay.DrawLineDotted(0.0f, 0.0f, 9.0f, 0.0f, 10);  // shorter than one step: only a gap
    overlay.DrawLineDotted(0.0f, 0.0f, 50.0f, 0.0f, 0);  // no dash length
    EXPECT_TRUE(glrec::recording().primitives.empty());
}

// The point of an unrotated ellipse at `degrees`, in double precision.
void ellipse_point(double cx, double cy, double a, double b, double degrees, double& x, double& y) {
    const double t = degrees * 3.14159265358979323846 / 180.0;
    x = cx + a * std::cos(t);
    y = cy + b * std::sin(t);
}

TEST_F(OverlayDrawing, FullEllipseStepsByTheSegmentLengthAndCloses) {
    // Width 100, segment 10: step 360 / (pi * 10) = 11.459 degrees, points at
    // 0, 11.46, ..., 355.2 (32 of them), each joined to the previous one, the
    // first to itself, and a closing line from the point at 0 to the last.
    const double step = 360.0 / (3.14159265358979323846 * 10.0);
    EXPECT_NEAR(step, 11.4592, 1e-4);
    overlay.DrawEllipse(200.0f, 100.0f, 100.0f, 60.0f, 0.0f, 0, 10, 0.0f, 360.0f);
    auto segs = segments();
    ASSERT_EQ(segs.size(), 33u);
    double px, py, qx, qy;
    ellipse_point(200, 100, 50, 30, 0, px, py);
    expect_segment(segs[0], px, py, px, py, 1e-4f);  // zero length
    for (int i = 1; i < 32; ++i) {
        ellipse_point(200, 100, 50, 30, i * step, px, py);
        ellipse_point(200, 100, 50, 30, (i - 1) * step, qx, qy);
        expect_segment(segs[i], px, py, qx, qy, 1e-3f);
    }
    ellipse_point(200, 100, 50, 30, 0, px, py);
    ellipse_point(200, 100, 50, 30, 31 * step, qx, qy);
    expect_segment(segs[32], px, py, qx, qy, 1e-3f);
}

TEST_F(OverlayDrawing, DashedEllipseDrawsOddStepsAndStillCloses) {
    overlay.DrawEllipse(0.0f, 0.0f, 100.0f, 100.0f, 0.0f, 1, 10, 0.0f, 360.0f);
    auto segs = segments();
    ASSERT_EQ(segs.size(), 17u);  // steps 1, 3, ..., 31 and the closing line
    const double step = 360.0 / (3.14159265358979323846 * 10.0);
    double px, py, qx, qy;
    ellipse_point(0, 0, 50, 50, 1 * step, px, py);
    ellipse_point(0, 0, 50, 50, 0, qx, qy);
    expect_segment(segs[0], px, py, qx, qy, 1e-3f);
    ellipse_point(0, 0, 50, 50, 3 * step, px, py);
    ellipse_point(0, 0, 50, 50, 2 * step, qx, qy);
    expect_segment(segs[1], px, py, qx, qy, 1e-3f);
}

TEST_F(OverlayDrawing, EllipseRotationStepCapAndArcs) {
    // Rotated by 90 degrees: the point at angle 0 lies a = 20 above the centre.
    overlay.DrawEllipse(10.0f, 10.0f, 40.0f, 20.0f, 90.0f, 0, 10, 0.0f, 360.0f);
    auto segs = segments();
    ASSERT_FALSE(segs.empty());
    expect_segment(segs[0], 10.0f, 30.0f, 10.0f, 30.0f, 1e-4f);

    // Small ellipse: 360 / (pi * 10 / 10) = 114.6 degrees, capped at 36:
    // points at 0, 36, ..., 360 (11), plus the closing line.
    glrec::reset();
    overlay.DrawEllipse(0.0f, 0.0f, 10.0f, 10.0f, 0.0f, 0, 10, 0.0f, 360.0f);
    segs = segments();
    ASSERT_EQ(segs.size(), 12u);
    expect_segment(segs[1], 5.0f * std::cos(0.6283185f), 5.0f * std::sin(0.6283185f), 5.0f, 0.0f, 1e-4f);

    // A quarter arc has no closing line. Segment 1 at width 10 steps 11.46
    // degrees: points at 0, 11.46, ..., 80.2, eight of them.
    glrec::reset();
    overlay.DrawEllipse(0.0f, 0.0f, 10.0f, 10.0f, 0.0f, 0, 1, 0.0f, 90.0f);
    EXPECT_EQ(segments().size(), 8u);

    // An arc that ends before it starts draws nothing.
    glrec::reset();
    overlay.DrawEllipse(0.0f, 0.0f, 10.0f, 10.0f, 0.0f, 0, 10, 90.0f, 10.0f);
    EXPECT_TRUE(segments().empty());
}

TEST_F(OverlayDrawing, EllipseBelowFiveUnitsDrawsNothing) {
    overlay.DrawEllipse(0.0f, 0.0f, 4.0f, 100.0f, 0.0f, 0, 10, 0.0f, 360.0f);
    overlay.DrawEllipse(0.0f, 0.0f, 100.0f, 4.9f, 0.0f, 0, 10, 0.0f, 360.0f);
    EXPECT_TRUE(glrec::recording().primitives.empty());
    overlay.DrawEllipse(0.0f, 0.0f, 5.0f, 5.0f, 0.0f, 0, 10, 0.0f, 360.0f);
    EXPECT_FALSE(glrec::recording().primitives.empty());
}

TEST_F(OverlayDrawing, CrosshairArmsHandleAndColour) {
    // zoom 2: arms from r1 = 5 to r2 = 12.5 around (200 * 0.25, 100 * 0.5).
    overlay.zoom = 2.0f;
    CrosshairOverlayQ7 c;
    c.x = 0.25f;
    c.y = 0.5f;
    c.colour[0] = 65535;
    c.colour[1] = 0;
    c.colour[2] = 0;
    overlay.DrawCrosshairOverlay(&c);
    std::vector<Segment> expected = {
        {55, 50, 62.5f, 50, {}}, {45, 50, 37.5f, 50, {}}, {50, 55, 50, 62.5f, {}}, {50, 45, 50, 37.5f, {}}};
    EXPECT_EQ(sorted_keys(segments()), sorted_keys(expected));
    for (const Segment& s : segments()) {
        EXPECT_EQ(s.colour.r, 1.0f);
        EXPECT_EQ(s.colour.g, 0.0f);
    }
    auto polys = glrec::recording().of_mode(GL_POLYGON);
    ASSERT_EQ(polys.size(), 1u);
    EXPECT_EQ(polys[0].vertices[0].x, 47.5f);
    EXPECT_EQ(polys[0].vertices[0].y, 47.5f);
    EXPECT_EQ(polys[0].colour.r, 1.0f);
    EXPECT_EQ(polys[0].colour.b, 0.0f);
    EXPECT_EQ(c.screen_x, 50.0f);
    EXPECT_EQ(c.screen_y, 50.0f);

    // With the diagonals: one more arm per quadrant, from r1/2 to r2/2.
    glrec::reset();
    c.diagonals = 1;
    overlay.DrawCrosshairOverlay(&c);
    const float a = 2.5f, b = 6.25f;
    expected.push_back({50 + a, 50 + a, 50 + b, 50 + b, {}});
    expected.push_back({50 - a, 50 + a, 50 - b, 50 + b, {}});
    expected.push_back({50 - a, 50 - a, 50 - b, 50 - b, {}});
    expected.push_back({50 + a, 50 - a, 50 + b, 50 - b, {}});
    EXPECT_EQ(sorted_keys(segments()), sorted_keys(expected));
}

TEST_F(OverlayDrawing, LineWidgetHandleAtTheMidpoint) {
    LineOverlayQ7 line;
    line.x0 = 0.5f;  // (100, 90)
    line.y0 = 0.9f;
    line.x1 = 0.125f;  // (25, 20)
    line.y1 = 0.2f;
    line.colour[1] = 0;
    overlay.DrawLineOverlay(&line);
    auto segs = segments();
    ASSERT_EQ(segs.size(), 1u);
    expect_segment(segs[0], 100.0f, 90.0f, 25.0f, 20.0f);
    EXPECT_EQ(segs[0].colour.g, 0.0f);
    auto polys = glrec::recording().of_mode(GL_POLYGON);
    ASSERT_EQ(polys.size(), 1u);
    EXPECT_FLOAT_EQ(polys[0].vertices[0].x, 62.5f - 5.0f);
    EXPECT_FLOAT_EQ(polys[0].vertices[0].y, 55.0f - 5.0f);
    EXPECT_FLOAT_EQ(line.handle_x, 62.5f);
    EXPECT_FLOAT_EQ(line.handle_y, 55.0f);
}

}  // namespace
