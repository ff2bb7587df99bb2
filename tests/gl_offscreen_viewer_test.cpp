// The loaded plug-in's overlay drawn for real: SparkOverlay draws through
// Mesa's software renderer into an off-screen image (this executable gets its
// GL from OSMesa, and so does the plug-in, whose GL names resolve in the
// process's global scope first), and the pixels show the light's handle and
// the side view's bars where they belong. Runs headless.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/offscreen_gl.h"
#include "tests/viewer_scene.h"

namespace {

constexpr int kImage = 256;
// Where the viewer puts the overlay's origin in the off-screen image: the
// frame is 160 x 120, the side view hangs about 40 to 60 units below it.
constexpr int kOriginX = 70;
constexpr int kOriginY = 100;

class OffscreenViewer : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(gl.create(kImage, kImage, error)) << error;
        // Shift the projection by half a pixel so that integer overlay
        // coordinates fall on pixel centres and one-unit lines light whole
        // pixel rows and columns.
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-0.5, kImage - 0.5, -0.5, kImage - 0.5, -1.0, 1.0);
        glMatrixMode(GL_MODELVIEW);
        host = &viewer::start_scene(160, 120);
        host->viewer_origin_x = kOriginX;
        host->viewer_origin_y = kOriginY;
    }
    void draw() {
        gl.clear(0.0f, 0.0f, 0.0f);
        viewer::overlay(*host, 1.0f);
        gl.finish();
    }
    // The pixel showing overlay point (x, y).
    OffscreenPixel at(int x, int y) const { return gl.pixel(kOriginX + x, kOriginY + y); }
    bool is(int x, int y, int r, int g, int b) const {
        const OffscreenPixel p = at(x, y);
        return p.r == r && p.g == g && p.b == b;
    }

    OffscreenGl gl;
    sparkhost::Host* host = nullptr;
};

TEST_F(OffscreenViewer, LightHandleAndArmsAroundItsPosition) {
    viewer::set(*host, 35, 1);  // Use Light, cached by a frame
    ASSERT_NE(host->process(1), nullptr);
    viewer::set(*host, 36, 50);
    viewer::set(*host, 37, 50);
    draw();  // the light at (80, 60), handle 75 ... 85, arms 10 ... 25 out

    for (int y = 56; y <= 64; ++y)
        for (int x = 76; x <= 84; ++x) EXPECT_TRUE(is(x, y, 255, 255, 0)) << "handle " << x << "," << y;
    for (int d : {12, 18, 24}) {
        EXPECT_TRUE(is(80 + d, 60, 255, 255, 0)) << "right arm " << d;
        EXPECT_TRUE(is(80 - d, 60, 255, 255, 0)) << "left arm " << d;
        EXPECT_TRUE(is(80, 60 + d, 255, 255, 0)) << "upper arm " << d;
        EXPECT_TRUE(is(80, 60 - d, 255, 255, 0)) << "lower arm " << d;
    }
    EXPECT_TRUE(is(88, 68, 255, 255, 0));  // a diagonal arm, 5 ... 12.5 out
    // The open ring between the handle and the arms, and past the arms' ends.
    for (int d : {7, 28}) {
        EXPECT_FALSE(is(80 + d, 60, 255, 255, 0)) << d;
        EXPECT_FALSE(is(80, 60 - d, 255, 255, 0)) << d;
    }

    viewer::set(*host, 35, 0);
    ASSERT_NE(host->process(2), nullptr);
    draw();
    EXPECT_FALSE(is(80, 60, 255, 255, 0));
}

TEST_F(OffscreenViewer, SideViewShowsTheForegroundBarInMagenta) {
    draw();
    // Foreground Z -192 at x = 192 x 160 / 4000 = 7.68, the bars' half-height
    // 0.5 x 120 x 160 / 4000 = 2.4 around the axis at y = -40.
    for (int y = -42; y <= -38; ++y) EXPECT_TRUE(is(8, y, 255, 0, 255)) << y;
    EXPECT_FALSE(is(8, -45, 255, 0, 255));
    EXPECT_FALSE(is(5, -40, 255, 0, 255));
    EXPECT_FALSE(is(11, -40, 255, 0, 255));
    EXPECT_TRUE(is(130, -40, 255, 255, 255));  // the white axis
    EXPECT_TRUE(is(160, -55, 255, 255, 255));  // its end mark
    EXPECT_TRUE(is(-40, -60, 255, 255, 255));  // the camera's body

    viewer::set(*host, 28, 1);  // Clear Overlay: nothing at all
    draw();
    int lit = 0;
    for (int y = 0; y < kImage; ++y)
        for (int x = 0; x < kImage; ++x) {
            const OffscreenPixel p = gl.pixel(x, y);
            if (p.r || p.g || p.b) ++lit;
        }
    EXPECT_EQ(lit, 0);
}

}  // namespace
