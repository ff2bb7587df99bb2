// The loaded plug-in's overlay drawn for real: SparkOverlay draws through
// Mesa's software renderer into an off-screen image (this executable gets its
// GL from OSMesa, and so does the plug-in, whose GL names resolve in the
// process's global scope first), and the pixels show the light's handle and
// the side view's Foreground Z bar where they belong. Runs headless.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/offscreen_gl.h"
#include "tests/viewer_scene.h"

namespace {

TEST(OffscreenViewer, LightHandleAndForegroundBarLandOnTheirPixels) {
    // The frame is 160 x 120; the viewer puts the overlay's origin at (70,
    // 100) of the image, so the side view (40 to 60 units below) fits too.
    constexpr int kImage = 256, kOriginX = 70, kOriginY = 100;
    OffscreenGl gl;
    std::string error;
    ASSERT_TRUE(gl.create(kImage, kImage, error)) << error;
    // Half a pixel off, so that integer overlay coordinates fall on pixel
    // centres and one-unit lines light whole pixel rows and columns.
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-0.5, kImage - 0.5, -0.5, kImage - 0.5, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    sparkhost::Host& host = viewer::start_scene(160, 120);
    host.viewer_origin_x = kOriginX;
    host.viewer_origin_y = kOriginY;
    viewer::set(host, 35, 1);  // Use Light, cached by a frame
    ASSERT_NE(host.process(1), nullptr);
    viewer::set(host, 36, 50);
    viewer::set(host, 37, 50);
    gl.clear(0.0f, 0.0f, 0.0f);
    viewer::overlay(host, 1.0f);
    gl.finish();
    auto is = [&gl](int x, int y, int r, int g, int b) {  // the pixel of overlay point (x, y)
        const OffscreenPixel p = gl.pixel(kOriginX + x, kOriginY + y);
        return p.r == r && p.g == g && p.b == b;
    };

    // The light at (80, 60): handle 75 ... 85, arms 10 ... 25 out.
    for (int y = 56; y <= 64; ++y)
        for (int x = 76; x <= 84; ++x) EXPECT_TRUE(is(x, y, 255, 255, 0)) << "handle " << x << "," << y;
    for (int d : {12, 18, 24}) {
        EXPECT_TRUE(is(80 + d, 60, 255, 255, 0)) << "right arm " << d;
        EXPECT_TRUE(is(80, 60 - d, 255, 255, 0)) << "lower arm " << d;
    }
    EXPECT_TRUE(is(88, 68, 255, 255, 0));  // a diagonal arm, 5 ... 12.5 out
    for (int d : {7, 28}) EXPECT_FALSE(is(80 + d, 60, 255, 255, 0)) << "open ring, past the end " << d;

    // Foreground Z -192 at x = 192 x 160 / 4000 = 7.68, the bars' half-height
    // 0.5 x 120 x 160 / 4000 = 2.4 around the axis at y = -40.
    for (int y = -42; y <= -38; ++y) EXPECT_TRUE(is(8, y, 255, 0, 255)) << y;
    EXPECT_FALSE(is(8, -45, 255, 0, 255));
    EXPECT_FALSE(is(5, -40, 255, 0, 255));
    EXPECT_FALSE(is(11, -40, 255, 0, 255));
    EXPECT_TRUE(is(130, -40, 255, 255, 255));  // the white axis
}

}  // namespace
