// The effect's overlay as the loaded plug-in draws it through SparkOverlay,
// checked on the recorded GL calls: the viewer set-up, the side view's bars,
// the handles, the wind cone's tips and the element outlines after processed
// frames.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "tests/gl_recorder.h"
#include "tests/viewer_scene.h"

namespace {

using glrec::Primitive;
using glrec::Segment;
using viewer::kTol;
using viewer::set;

constexpr double kPi = 3.14159265358979323846;

bool is_colour(const glrec::Colour& c, int r, int g, int b) {
    return c.r == static_cast<float>(r) / 65535.0f && c.g == static_cast<float>(g) / 65535.0f &&
           c.b == static_cast<float>(b) / 65535.0f;
}

std::vector<Segment> segments_in(int r, int g, int b) {
    std::vector<Segment> out;
    for (const Segment& s : glrec::recording().segments())
        if (is_colour(s.colour, r, g, b)) out.push_back(s);
    return out;
}

std::vector<Primitive> handles_in(int r, int g, int b) {
    std::vector<Primitive> out;
    for (const Primitive& p : glrec::recording().of_mode(GL_POLYGON))
        if (is_colour(p.colour, r, g, b)) out.push_back(p);
    return out;
}

void expect_segment(const Segment& s, double x0, double y0, double x1, double y1, const char* what) {
    EXPECT_NEAR(s.x0, x0, kTol) << what;
    EXPECT_NEAR(s.y0, y0, kTol) << what;
    EXPECT_NEAR(s.x1, x1, kTol) << what;
    EXPECT_NEAR(s.y1, y1, kTol) << what;
}

// A handle is the square of half-size 5 / zoom around its point, corners in
// the order (-, -), (+, -), (+, +), (-, +).
void expect_handle(const Primitive& p, double x, double y, double zoom, const char* what) {
    ASSERT_EQ(p.vertices.size(), 4u) << what;
    const double h = 5.0 / zoom;
    const double dx[4] = {-h, h, h, -h}, dy[4] = {-h, -h, h, h};
    for (int k = 0; k < 4; ++k) {
        EXPECT_NEAR(p.vertices[k].x, x + dx[k], kTol) << what << " corner " << k;
        EXPECT_NEAR(p.vertices[k].y, y + dy[k], kTol) << what << " corner " << k;
    }
}

class ViewerOverlay : public ::testing::Test {
protected:
    void SetUp() override { host = &viewer::start_scene(); }
    // Processes frames first..last; a frame caches the checkboxes that the
    // redraw does not refresh.
    void process(unsigned first, unsigned last) {
        for (unsigned f = first; f <= last; ++f) ASSERT_NE(host->process(f), nullptr) << f;
    }
    void redraw(float zoom = 1.0f) {
        glrec::reset();
        viewer::overlay(*host, zoom);
        EXPECT_EQ(glrec::recording().errors, 0);
    }
    sparkhost::Host* host = nullptr;
};

TEST_F(ViewerOverlay, ViewerTransformFollowsOriginAndEffectiveZoom) {
    host->viewer_origin_x = 7;
    host->viewer_origin_y = -3;
    // Below 1 the host's zoom maps to 1 / (2 - zoom).
    const struct {
        float zoom;
        double effective;
    } cases[] = {{1.0f, 1.0}, {3.0f, 3.0}, {0.5f, 1.0 / 1.5}, {0.25f, 1.0 / 1.75}, {0.0f, 0.5}};
    for (const auto& c : cases) {
        redraw(c.zoom);
        const auto calls = glrec::recording().state_calls();
        ASSERT_EQ(calls.size(), 4u) << c.zoom;
        EXPECT_EQ(calls[0].name, "glLoadIdentity");
        EXPECT_EQ(calls[1].name, "glTranslatef");
        EXPECT_EQ(calls[1].args, (std::vector<float>{7.0f, -3.0f, 0.0f}));
        EXPECT_EQ(calls[2].name, "glScalef");
        EXPECT_NEAR(calls[2].args[0], c.effective, 1e-6) << c.zoom;
        EXPECT_NEAR(calls[2].args[1], c.effective, 1e-6) << c.zoom;
        EXPECT_EQ(calls[2].args[2], 1.0f);
        EXPECT_EQ(glrec::recording().calls.back().name, "glFlush");
    }
}

TEST_F(ViewerOverlay, ClearOverlayDrawsNothing) {
    set(*host, 35, 1);  // Use Light, so that there would be a handle
    process(1, 1);
    set(*host, 28, 1);
    redraw();
    EXPECT_TRUE(glrec::recording().calls.empty());
    set(*host, 28, 0);
    redraw();
    EXPECT_FALSE(glrec::recording().calls.empty());
}

TEST_F(ViewerOverlay, SideViewPlacesEachDepthOnTheAxis) {
    // Values the redraw reads straight from the descriptors.
    set(*host, 8, -400);    // Foreground Z
    set(*host, 9, -100);    // Maximum Z
    set(*host, 47, -0.5);   // Background Z, a fraction of the width
    set(*host, 38, 0.25);   // LightZ, likewise
    for (float ratio : {1.0f, 1.5f}) {
        host->viewer_ratio = ratio;
        redraw();
        const double W = std::trunc(viewer::kFrameW * static_cast<double>(ratio));
        const double H = viewer::kFrameH;
        const double h = 0.5 * H * W / 4000.0;

        const auto magenta = segments_in(65535, 0, 65535);
        ASSERT_EQ(magenta.size(), 1u);
        expect_segment(magenta[0], 400 * W / 4000, -40 - h, 400 * W / 4000, -40 + h, "Foreground Z");

        const auto cyan = segments_in(0, 65535, 65535);
        ASSERT_EQ(cyan.size(), 1u);
        const double bx = (W * -0.5) * W / -4000;
        expect_segment(cyan[0], bx, -40 - h, bx, -40 + h, "background");

        const auto white = segments_in(65535, 65535, 65535);
        ASSERT_GE(white.size(), 11u);
        expect_segment(white[0], 0, -40, W, -40, "axis");
        expect_segment(white[1], W, -20, W, -60, "axis end");
        const double body[4][2] = {{-60, -30}, {-20, -30}, {-20, -60}, {-60, -60}};
        const double lens[4][2] = {{-30, -35}, {0, -35}, {0, -45}, {-30, -45}};
        for (int k = 0; k < 4; ++k) {
            const int n = (k + 1) % 4;
            expect_segment(white[2 + k], body[k][0], body[k][1], body[n][0], body[n][1], "camera body");
            expect_segment(white[6 + k], lens[k][0], lens[k][1], lens[n][0], lens[n][1], "camera lens");
        }
        // Two reels of radius 10, then the Maximum Z bar last.
        for (std::size_t i = 10; i + 1 < white.size(); ++i) {
            const double cx = white[i].x0 < -40 ? -50 : -30;
            EXPECT_NEAR(std::hypot(white[i].x0 - cx, white[i].y0 + 20), 10.0, kTol) << i;
        }
        expect_segment(white.back(), 100 * W / 4000, -40 - h, 100 * W / 4000, -40 + h, "Maximum Z");

        // The light: a circle of radius 4 and the two beam lines to the far end.
        const auto yellow = segments_in(65535, 65535, 0);
        ASSERT_GE(yellow.size(), 3u);
        const double lx = (W * 0.25) * W / -4000;
        for (std::size_t i = 0; i + 2 < yellow.size(); ++i)
            EXPECT_NEAR(std::hypot(yellow[i].x0 - lx, yellow[i].y0 + 40), 4.0, kTol) << i;
        expect_segment(yellow[yellow.size() - 2], lx, -40, W, -40 - h, "beam");
        expect_segment(yellow.back(), lx, -40, W, -40 + h, "beam");
    }
}

TEST_F(ViewerOverlay, LightCrosshairAtItsControlWithDiagonalArms) {
    set(*host, 35, 1);
    process(1, 1);
    set(*host, 36, 25);
    set(*host, 37, 60);
    const float zoom = 2.0f;
    redraw(zoom);
    const double x = 0.25 * viewer::kFrameW, y = 0.6 * viewer::kFrameH;  // (30, 54)
    const auto handles = handles_in(65535, 65535, 0);
    ASSERT_EQ(handles.size(), 1u);
    expect_handle(handles[0], x, y, zoom, "light");

    // Arms from 10 to 25 screen pixels out, the diagonals at half that.
    auto yellow = segments_in(65535, 65535, 0);
    ASSERT_GE(yellow.size(), 8u);
    yellow.erase(yellow.begin(), yellow.end() - 8);
    const double r1 = 10 / zoom, r2 = 25 / zoom, d1 = r1 / 2, d2 = r2 / 2;
    expect_segment(yellow[0], x + r1, y, x + r2, y, "right arm");
    expect_segment(yellow[1], x - r1, y, x - r2, y, "left arm");
    expect_segment(yellow[2], x, y + r1, x, y + r2, "arm");
    expect_segment(yellow[3], x, y - r1, x, y - r2, "arm");
    expect_segment(yellow[4], x + d1, y + d1, x + d2, y + d2, "diagonal");
    expect_segment(yellow[5], x - d1, y + d1, x - d2, y + d2, "diagonal");
    expect_segment(yellow[6], x - d1, y - d1, x - d2, y - d2, "diagonal");
    expect_segment(yellow[7], x + d1, y - d1, x + d2, y - d2, "diagonal");

    // The other crosshairs are off; switching repulsion on adds a red one
    // without diagonals.
    EXPECT_TRUE(handles_in(65535, 0, 0).empty());
    EXPECT_TRUE(handles_in(0, 65535, 0).empty());
    set(*host, 71, 1);
    process(2, 2);
    redraw(1.0f);
    const auto red = handles_in(65535, 0, 0);
    ASSERT_EQ(red.size(), 1u);
    expect_handle(red[0], 0.40 * viewer::kFrameW, 0.30 * viewer::kFrameH, 1.0, "repulsion");
    EXPECT_EQ(segments_in(65535, 0, 0).size(), 4u);

    set(*host, 35, 0);
    process(3, 3);
    redraw();
    EXPECT_TRUE(handles_in(65535, 65535, 0).empty());
}

TEST_F(ViewerOverlay, WindConeTipsLieHalfTheSpreadEachSideAtTheTargetsDistance) {
    set(*host, 64, 1);  // Use Wind; Wind Speed is 5
    process(1, 1);
    set(*host, 65, 25);
    set(*host, 66, 50);
    set(*host, 67, 75);
    set(*host, 68, 20);
    set(*host, 70, 90);
    redraw();
    const double sx = 30, sy = 45, tx = 90, ty = 18;
    const double t = std::atan2(ty - sy, tx - sx), len = std::hypot(tx - sx, ty - sy), p = 45 * kPi / 180;
    const double ax = sx + len * std::cos(t - p), ay = sy + len * std::sin(t - p);
    const double bx = sx + len * std::cos(t + p), by = sy + len * std::sin(t + p);

    // Cyan handles: the line's midpoint, tip 0, tip 1, the source, the target.
    const auto handles = handles_in(0, 65535, 65535);
    ASSERT_EQ(handles.size(), 5u);
    expect_handle(handles[0], (sx + tx) / 2, (sy + ty) / 2, 1.0, "line");
    expect_handle(handles[1], ax, ay, 1.0, "tip 0");
    expect_handle(handles[2], bx, by, 1.0, "tip 1");
    expect_handle(handles[3], sx, sy, 1.0, "source");
    expect_handle(handles[4], tx, ty, 1.0, "target");

    // The edges are dashed from the source: dashes of 10 with a gap first,
    // every dash on its edge.
    const auto cyan = segments_in(0, 65535, 65535);
    const int steps = static_cast<int>(std::ceil(len / 10.0));
    const int dashes = 2 * (steps / 2);  // the odd steps of both edges
    // The background bar, the line, the dashes, the two crosshairs' arms.
    ASSERT_EQ(cyan.size(), 2u + dashes + 8u);
    expect_segment(cyan[1], sx, sy, tx, ty, "wind line");
    for (int i = 0; i < dashes; ++i) {
        const Segment& s = cyan[2 + i];
        const bool first_edge = i < dashes / 2;
        const double ex = first_edge ? ax : bx, ey = first_edge ? ay : by;
        const double cross0 = (s.x0 - sx) * (ey - sy) - (s.y0 - sy) * (ex - sx);
        const double cross1 = (s.x1 - sx) * (ey - sy) - (s.y1 - sy) * (ex - sx);
        EXPECT_NEAR(cross0 / len, 0.0, kTol) << i;
        EXPECT_NEAR(cross1 / len, 0.0, kTol) << i;
        EXPECT_NEAR(std::hypot(s.x1 - s.x0, s.y1 - s.y0), 10.0, kTol) << i;
    }
    EXPECT_NEAR(std::hypot(cyan[2].x0 - sx, cyan[2].y0 - sy), 10.0, kTol);  // a gap first

    // Wind Speed 0 takes every wind widget off the viewer; a NaN speed is
    // "not 0" and keeps them.
    set(*host, 69, 0);
    redraw();
    EXPECT_TRUE(handles_in(0, 65535, 65535).empty());
    EXPECT_EQ(segments_in(0, 65535, 65535).size(), 1u);  // only the background bar
    set(*host, 69, std::nan(""));
    redraw();
    EXPECT_EQ(handles_in(0, 65535, 65535).size(), 5u);
}

// Outline and side-view profile of the element in column c and row r of the
// 12 x 10 grid, moved dx working pixels to the right, at the projected depth
// d of Foreground Z in working units.
struct ElementCheck {
    double s, ratio_r, d;
    void expect(const std::vector<Segment>& outline, const std::vector<Segment>& profile, int index, int c,
                int r, double tile, double y_origin, double dx, double w, double h) const {
        const double L = c * tile + dx, R = L + tile, T = y_origin + r * tile, B = T + tile;
        const double cx[4] = {L, L, R, R}, cy[4] = {B, T, T, B};
        for (int k = 0; k < 4; ++k) {
            const int n = (k + 1) % 4;
            expect_segment(outline[4 * index + k], cx[k] * s * ratio_r, cy[k] * s, cx[n] * s * ratio_r, cy[n] * s,
                           "outline");
            const double o = s * (0.5 * w * s / 4000 * h) + 40;
            const double px = s * (d * s / -4000 * w);
            expect_segment(profile[4 * index + k], px, s * (cy[k] * s / 4000 * h) - o, px,
                           s * (cy[n] * s / 4000 * h) - o, "profile");
        }
    }
};

TEST_F(ViewerOverlay, ElementOutlinesFollowTheProcessedFrames) {
    set(*host, 13, 0.5);  // X Speed: x and y speeds enter twice, one pixel a step
    process(1, 3);        // the rebuild, then two steps
    redraw();
    const auto outline = segments_in(65535, 39321, 65535);
    const auto profile = segments_in(65535, 26214, 39321);
    ASSERT_EQ(outline.size(), 4u * 120u);
    ASSERT_EQ(profile.size(), 4u * 120u);
    const ElementCheck check{1.0, 1.0, -192.0};
    for (int r = 0; r < 10; ++r)
        for (int c = 0; c < 12; ++c) check.expect(outline, profile, r * 12 + c, c, r, 10, -5, 2.0, 120, 90);

    // Unmoved in depth, every element lies on the magenta Foreground Z bar.
    const auto magenta = segments_in(65535, 0, 65535);
    ASSERT_EQ(magenta.size(), 1u);
    EXPECT_NEAR(magenta[0].x0, profile[0].x0, kTol);

    // A second redraw with no frame in between draws exactly the same.
    const auto before = glrec::recording().segments();
    redraw();
    const auto after = glrec::recording().segments();
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(before[i].x0, after[i].x0);
        EXPECT_EQ(before[i].y1, after[i].y1);
    }
}

TEST_F(ViewerOverlay, ReducedPreviewAndViewerRatioScaleTheOutlines) {
    // Half resolution: 60 x 46 working pixels (the reduced size is rounded up
    // to even), 5-pixel tiles, rows from y = -2.
    set(*host, 33, 1);
    set(*host, 13, 0.5);  // a quarter working pixel a term, half a pixel a step
    host->viewer_ratio = 1.5f;
    process(1, 3);
    redraw();
    const auto outline = segments_in(65535, 39321, 65535);
    const auto profile = segments_in(65535, 26214, 39321);
    ASSERT_EQ(outline.size(), 4u * 120u);
    // The viewer's aspect over the image's, with W = 180 and H = 90.
    const ElementCheck check{2.0, (180.0 / 90.0) / (60.0 / 46.0), -96.0};
    for (int r = 0; r < 10; ++r)
        for (int c = 0; c < 12; ++c) check.expect(outline, profile, r * 12 + c, c, r, 5, -2, 1.0, 60, 46);
}

TEST_F(ViewerOverlay, HiddenAndOffFrameElementsHaveNoOutline) {
    // Flown past the frame's right edge: nothing to outline.
    set(*host, 13, 50);
    process(1, 3);
    redraw();
    EXPECT_TRUE(segments_in(65535, 39321, 65535).empty());
    EXPECT_TRUE(segments_in(65535, 26214, 39321).empty());
}

TEST_F(ViewerOverlay, PoppedOffElementsHaveNoOutlineNorProfile) {
    set(*host, 10, 1);    // Z Pop Off
    set(*host, 15, 100);  // toward the viewer, past Maximum Z (-12) in two steps
    process(1, 1);
    redraw();
    EXPECT_EQ(segments_in(65535, 39321, 65535).size(), 4u * 120u);
    process(2, 3);
    redraw();
    EXPECT_TRUE(segments_in(65535, 39321, 65535).empty());
    EXPECT_TRUE(segments_in(65535, 26214, 39321).empty());
}

}  // namespace
