// The overlay's drawing primitives on their own, on the recorded GL calls:
// the exact geometry of handles, dashed lines and elliptic arcs.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "framework/overlay.h"
#include "tests/gl_recorder.h"

namespace {

using glrec::Segment;

class OverlayDrawing : public ::testing::Test {
protected:
    void SetUp() override { glrec::reset(), overlay.width = 200, overlay.height = 100, overlay.zoom = 1.0f; }
    void TearDown() override { EXPECT_EQ(glrec::recording().errors, 0) << "unbalanced glBegin/glEnd"; }
    static std::vector<Segment> segments() { return glrec::recording().segments(); }
    OverlayQ7 overlay;
};

void expect_segment(const Segment& s, double x0, double y0, double x1, double y1, double tol = 1e-3) {
    for (auto v : {std::pair<double, double>{s.x0, x0}, {s.y0, y0}, {s.x1, x1}, {s.y1, y1}})
        EXPECT_NEAR(v.first, v.second, tol);
}

TEST_F(OverlayDrawing, HandleIsTenScreenPixelsAtAnyZoom) {
    overlay.zoom = 2.0f;  // side 5 in overlay units (10 on screen), tolerance 2.5
    EXPECT_EQ(overlay.GrabHandleSize(), 2.5f);
    overlay.DrawHandle(40.0f, 30.0f, true);
    const auto polys = glrec::recording().of_mode(GL_POLYGON);
    ASSERT_EQ(polys.size(), 1u);
    ASSERT_EQ(polys[0].vertices.size(), 4u);
    const float expected[4][2] = {{37.5f, 27.5f}, {42.5f, 27.5f}, {42.5f, 32.5f}, {37.5f, 32.5f}};
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(polys[0].vertices[i].x == expected[i][0] && polys[0].vertices[i].y == expected[i][1]) << i;
}

TEST_F(OverlayDrawing, DashedLineStartsWithAGapAndCutsTheLastDashAtTheEnd) {
    // The steps of a line are dash-length pieces and the odd ones are drawn,
    // the last cut at the end point.
    const struct Case { float x0, y0, x1, y1; int dash; std::size_t count; Segment first, last; } cases[] = {
        {0, 0, 100, 0, 10, 5, {10, 0, 20, 0, {}}, {90, 0, 100, 0, {}}},        // steps 1, 3, 5, 7, 9
        {0, 0, 60, 80, 10, 5, {6, 8, 12, 16, {}}, {54, 72, 60, 80, {}}},       // a 3-4-5 diagonal
        {0, 0, 15, 0, 10, 1, {10, 0, 15, 0, {}}, {10, 0, 15, 0, {}}},          // 1.5 steps
        {100, 50, 85, 50, 10, 1, {90, 50, 85, 50, {}}, {90, 50, 85, 50, {}}},  // leftwards
        {0, 0, -9, -12, 10, 1, {-6, -8, -9, -12, {}}, {-6, -8, -9, -12, {}}},  // both decreasing
        {5, 5, 5, 5, 10, 0, {}, {}},  // coinciding points
        {0, 0, 9, 0, 10, 0, {}, {}},  // shorter than a step: only the gap
        {0, 0, 50, 0, 0, 0, {}, {}},  // no dash length
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.x0 << "," << c.y0 << " -> " << c.x1 << "," << c.y1);
        glrec::reset();
        overlay.DrawLineDotted(c.x0, c.y0, c.x1, c.y1, c.dash);
        const auto segs = segments();
        ASSERT_EQ(segs.size(), c.count);
        if (c.count == 0) continue;
        expect_segment(segs.front(), c.first.x0, c.first.y0, c.first.x1, c.first.y1, 1e-5);
        expect_segment(segs.back(), c.last.x0, c.last.y0, c.last.x1, c.last.y1, 1e-5);
    }
}

TEST_F(OverlayDrawing, EllipseStepsByTheSegmentLengthAndCloses) {
    // Width 100, segment 10: step 360 / (pi * 10) = 11.459 degrees, points at
    // 0, 11.46, ..., 355.2 (32 of them), each joined to the previous one, the
    // first to itself, and a closing line from the point at 0 to the last.
    const double step = 360.0 / (3.14159265358979323846 * 10.0);
    ASSERT_NEAR(step, 11.4592, 1e-4);
    auto at = [&](double cx, double cy, double a, double b, int i) {
        const double t = i * step * 3.14159265358979323846 / 180.0;
        return std::pair<double, double>{cx + a * std::cos(t), cy + b * std::sin(t)};
    };
    overlay.DrawEllipse(200.0f, 100.0f, 100.0f, 60.0f, 0.0f, 0, 10, 0.0f, 360.0f);
    auto segs = segments();
    ASSERT_EQ(segs.size(), 33u);
    for (int i = 0; i < 33; ++i) {
        const auto p = at(200, 100, 50, 30, i % 32), q = at(200, 100, 50, 30, i == 0 ? 0 : i == 32 ? 31 : i - 1);
        expect_segment(segs[i], p.first, p.second, q.first, q.second);
    }
    // Dashed: only the odd steps 1, 3, ..., 31, and still the closing line.
    glrec::reset();
    overlay.DrawEllipse(0.0f, 0.0f, 100.0f, 100.0f, 0.0f, 1, 10, 0.0f, 360.0f);
    segs = segments();
    ASSERT_EQ(segs.size(), 17u);
    const auto p = at(0, 0, 50, 50, 3), q = at(0, 0, 50, 50, 2);
    expect_segment(segs[1], p.first, p.second, q.first, q.second);
}

TEST_F(OverlayDrawing, EllipseStepCapArcsAndTheSmallestSize) {
    const struct { float w, h; int segment; float start, end; std::size_t count; const char* what; } cases[] = {
        // 360 / (pi * 10 / 10) = 114.6 degrees, capped at 36: 11 points and the closing line.
        {10, 10, 10, 0, 360, 12, "step capped at 36 degrees"},
        // Segment 1 at width 10 steps 11.46 degrees: points 0 ... 80.2, no closing line.
        {10, 10, 1, 0, 90, 8, "quarter arc"},
        {10, 10, 10, 90, 10, 0, "arc ending before it starts"},
        {4, 100, 10, 0, 360, 0, "width 4"},
        {100, 4.9f, 10, 0, 360, 0, "height 4.9"},
        {5, 5, 10, 0, 360, 12, "5 x 5, the smallest drawn"},
    };
    for (const auto& c : cases) {
        glrec::reset();
        overlay.DrawEllipse(0.0f, 0.0f, c.w, c.h, 0.0f, 0, c.segment, c.start, c.end);
        EXPECT_EQ(segments().size(), c.count) << c.what;
    }
}

}  // namespace
