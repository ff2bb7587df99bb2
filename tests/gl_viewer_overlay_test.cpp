// The effect's overlay as the loaded plug-in draws it through SparkOverlay, on
// the recorded GL calls: viewer set-up, side view, wind cone, element outlines.
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

// Colours as the overlay sets them, 16-bit channels scaled to 0 ... 1.
struct Rgb {
    int r, g, b;
    bool matches(const glrec::Colour& c) const {
        return c.r == r / 65535.0f && c.g == g / 65535.0f && c.b == b / 65535.0f;
    }
};
constexpr Rgb kWhite{65535, 65535, 65535}, kYellow{65535, 65535, 0}, kMagenta{65535, 0, 65535},
    kCyan{0, 65535, 65535}, kOutline{65535, 39321, 65535}, kProfile{65535, 26214, 39321};

template <class T>
std::vector<T> only(Rgb c, const std::vector<T>& all) {
    std::vector<T> out;
    for (const T& p : all)
        if (c.matches(p.colour)) out.push_back(p);
    return out;
}
std::vector<Segment> segments_in(Rgb c) { return only(c, glrec::recording().segments()); }
std::vector<Primitive> handles_in(Rgb c) { return only(c, glrec::recording().of_mode(GL_POLYGON)); }

void expect_segment(const Segment& s, double x0, double y0, double x1, double y1, const char* what) {
    SCOPED_TRACE(what);
    for (auto v : {std::pair<double, double>{s.x0, x0}, {s.y0, y0}, {s.x1, x1}, {s.y1, y1}})
        EXPECT_NEAR(v.first, v.second, kTol);
}

// A handle is the square of half-size 5 around its point (at zoom 1), corners
// in the order (-, -), (+, -), (+, +), (-, +).
void expect_handle(const Primitive& p, double x, double y, const char* what) {
    ASSERT_EQ(p.vertices.size(), 4u) << what;
    const double dx[4] = {-5, 5, 5, -5}, dy[4] = {-5, -5, 5, 5};
    for (int k = 0; k < 4; ++k)
        EXPECT_TRUE(std::abs(p.vertices[k].x - (x + dx[k])) < kTol && std::abs(p.vertices[k].y - (y + dy[k])) < kTol)
            << what << " corner " << k;
}

struct ViewerOverlay : ::testing::Test {
    void SetUp() override { host = &viewer::start_scene(); }
    // Processes frames first..last; a frame caches the checkboxes the redraw reads.
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
    for (auto c : {std::pair<float, double>{1.0f, 1.0}, {3.0f, 3.0}, {0.25f, 1.0 / 1.75}, {0.0f, 0.5}}) {
        SCOPED_TRACE(c.first);
        redraw(c.first);
        const auto calls = glrec::recording().state_calls();
        ASSERT_TRUE(calls.size() == 4u && calls[2].name == "glScalef");
        EXPECT_EQ(calls[1].args, (std::vector<float>{7.0f, -3.0f, 0.0f}));
        EXPECT_NEAR(calls[2].args[0], c.second, 1e-6);
        EXPECT_NEAR(calls[2].args[1], c.second, 1e-6);
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
    EXPECT_EQ(handles_in(kYellow).size(), 1u);
}

TEST_F(ViewerOverlay, SideViewPlacesEachDepthOnTheAxis) {
    set(*host, 8, -400);   // Foreground Z
    set(*host, 9, -100);   // Maximum Z
    set(*host, 47, -0.5);  // Background Z, a fraction of the width
    for (float ratio : {1.0f, 1.5f}) {
        SCOPED_TRACE(ratio);
        host->viewer_ratio = ratio;
        redraw();
        const double W = std::trunc(viewer::kFrameW * static_cast<double>(ratio));
        const double h = 0.5 * viewer::kFrameH * W / 4000.0, bx = (W * -0.5) * W / -4000;
        const auto magenta = segments_in(kMagenta), cyan = segments_in(kCyan), white = segments_in(kWhite);
        ASSERT_TRUE(magenta.size() == 1u && cyan.size() == 1u && white.size() >= 11u);
        expect_segment(magenta[0], 400 * W / 4000, -40 - h, 400 * W / 4000, -40 + h, "Foreground Z");
        expect_segment(cyan[0], bx, -40 - h, bx, -40 + h, "background");
        expect_segment(white.back(), 100 * W / 4000, -40 - h, 100 * W / 4000, -40 + h, "Maximum Z");
    }
}

TEST_F(ViewerOverlay, WindConeTipsLieHalfTheSpreadEachSideAtTheTargetsDistance) {
    set(*host, 64, 1);  // Use Wind; Wind Speed is 5
    process(1, 1);
    for (auto c : {std::pair<int, double>{65, 25}, {66, 50}, {67, 75}, {68, 20}, {70, 90}}) set(*host, c.first, c.second);
    redraw();
    const double sx = 30, sy = 45, tx = 90, ty = 18, p = 3.14159265358979323846 / 4;
    const double t = std::atan2(ty - sy, tx - sx), len = std::hypot(tx - sx, ty - sy);
    // Cyan handles: the line's midpoint, tip 0, tip 1, the source, the target.
    const auto handles = handles_in(kCyan);
    ASSERT_EQ(handles.size(), 5u);
    expect_handle(handles[1], sx + len * std::cos(t - p), sy + len * std::sin(t - p), "tip 0");
    expect_handle(handles[2], sx + len * std::cos(t + p), sy + len * std::sin(t + p), "tip 1");
    // Wind Speed 0 takes every wind widget off; a NaN speed is "not 0".
    set(*host, 69, 0);
    redraw();
    EXPECT_TRUE(handles_in(kCyan).empty());
    EXPECT_EQ(segments_in(kCyan).size(), 1u);  // only the background bar
    set(*host, 69, std::nan(""));
    redraw();
    EXPECT_EQ(handles_in(kCyan).size(), 5u);
}

// The outline and side-view profile of each element of the 12 x 10 grid: tiles from (dx, y_origin), scaled by s
// (and ratio_r across) on screen; d is Foreground Z in working units, w x h the working size.
void expect_elements(double s, double ratio_r, double d, double tile, double y_origin, double dx, double w,
                     double h) {
    const auto outline = segments_in(kOutline), profile = segments_in(kProfile);
    ASSERT_EQ(outline.size(), 4u * 120u);
    ASSERT_EQ(profile.size(), 4u * 120u);
    const double o = s * (0.5 * w * s / 4000 * h) + 40, px = s * (d * s / -4000 * w);
    for (int i = 0; i < 120; ++i) {
        const double L = (i % 12) * tile + dx, R = L + tile, T = y_origin + (i / 12) * tile, B = T + tile;
        const double cx[4] = {L, L, R, R}, cy[4] = {B, T, T, B};
        for (int k = 0; k < 4; ++k) {
            const int n = (k + 1) % 4;
            expect_segment(outline[4 * i + k], cx[k] * s * ratio_r, cy[k] * s, cx[n] * s * ratio_r, cy[n] * s,
                           "outline");
            expect_segment(profile[4 * i + k], px, s * (cy[k] * s / 4000 * h) - o, px, s * (cy[n] * s / 4000 * h) - o,
                           "profile");
        }
    }
}

TEST_F(ViewerOverlay, ElementOutlinesFollowTheProcessedFrames) {
    set(*host, 13, 0.5);  // X Speed: x and y speeds enter twice, one pixel a step
    process(1, 3);        // the rebuild, then two steps
    redraw();
    expect_elements(1.0, 1.0, -192.0, 10, -5, 2.0, 120, 90);
    // Unmoved in depth, every element lies on the magenta Foreground Z bar.
    const auto magenta = segments_in(kMagenta);
    ASSERT_EQ(magenta.size(), 1u);
    EXPECT_NEAR(magenta[0].x0, segments_in(kProfile)[0].x0, kTol);
    // A second redraw with no frame in between draws exactly the same.
    const auto before = glrec::recording().segments();
    redraw();
    const auto after = glrec::recording().segments();
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_TRUE(before[i].x0 == after[i].x0 && before[i].y1 == after[i].y1) << i;
}

TEST_F(ViewerOverlay, ReducedPreviewAndViewerRatioScaleTheOutlines) {
    // Half resolution: 60 x 46 working pixels (rounded up to even), 5-pixel
    // tiles, rows from y = -2, half a pixel a step.
    set(*host, 33, 1);
    set(*host, 13, 0.5);
    host->viewer_ratio = 1.5f;
    process(1, 3);
    redraw();
    // The viewer's aspect over the image's, with W = 180 and H = 90.
    expect_elements(2.0, (180.0 / 90.0) / (60.0 / 46.0), -96.0, 5, -2, 1.0, 60, 46);
}

TEST_F(ViewerOverlay, PoppedOffElementsHaveNoOutlineNorProfile) {
    // Toward the viewer past Maximum Z (-12): all outlined on the rebuild
    // frame, none two steps later.
    set(*host, 10, 1);  // Z Pop Off
    set(*host, 15, 100);
    process(1, 1);
    redraw();
    EXPECT_EQ(segments_in(kOutline).size(), 4u * 120u);
    process(2, 3);
    redraw();
    EXPECT_TRUE(segments_in(kOutline).empty());
    EXPECT_TRUE(segments_in(kProfile).empty());
}

}  // namespace
