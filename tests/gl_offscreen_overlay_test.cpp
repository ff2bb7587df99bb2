// A framework widget drawn for real: Mesa's software renderer draws a
// crosshair into an off-screen image, at zoom 1 and at zoom 2, and the pixels
// show the same screen sizes. Runs headless.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/overlay.h"
#include "framework/overlay_widgets.h"
#include "tests/offscreen_gl.h"

namespace {

constexpr int kW = 120;
constexpr int kH = 80;

// Clears to black, sets the model-view as the viewer does (the extra half
// pixel puts integer overlay coordinates on pixel centres), draws a yellow
// crosshair with diagonals in the middle and returns the image.
std::vector<int> draw_crosshair(OffscreenGl& gl, float zoom) {
    gl.clear(0.0f, 0.0f, 0.0f);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0.5f, 0.5f, 0.0f);
    glScalef(zoom, zoom, 1.0f);
    OverlayQ7 overlay;
    overlay.zoom = zoom;
    overlay.width = static_cast<int>(kW / zoom);
    overlay.height = static_cast<int>(kH / zoom);
    CrosshairOverlayQ7 c;
    c.colour[2] = 0;
    c.x = 0.5f;
    c.y = 0.5f;
    c.diagonals = 1;
    overlay.DrawCrosshairOverlay(&c);
    gl.finish();
    std::vector<int> image;  // 1 for yellow, 0 for black, -1 for anything else
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x) {
            const OffscreenPixel p = gl.pixel(x, y);
            image.push_back(p.r == 255 && p.g == 255 && p.b == 0 ? 1 : (p.r | p.g | p.b) == 0 ? 0 : -1);
        }
    return image;
}

TEST(OffscreenOverlay, CrosshairPixelsAreTheSameOnScreenAtZoomOneAndTwo) {
    OffscreenGl gl;
    std::string error;
    ASSERT_TRUE(gl.create(kW, kH, error)) << error;
    const auto image = draw_crosshair(gl, 1.0f);
    auto at = [&image](int x, int y) { return image[static_cast<std::size_t>(y) * kW + x]; };
    // Centre (60, 40): handle 55 ... 65, arms 10 ... 25 out, diagonals 5 ... 12.5.
    for (int y = 36; y <= 44; ++y)
        for (int x = 56; x <= 64; ++x) EXPECT_EQ(at(x, y), 1) << "handle " << x << "," << y;
    for (int d : {11, 18, 24}) {
        EXPECT_EQ(at(60 + d, 40), 1) << d;
        EXPECT_EQ(at(60 - d, 40), 1) << d;
        EXPECT_EQ(at(60, 40 + d), 1) << d;
        EXPECT_EQ(at(60, 40 - d), 1) << d;
    }
    for (int sx : {-8, 8})
        for (int sy : {-8, 8}) EXPECT_EQ(at(60 + sx, 40 + sy), 1) << "diagonal " << sx << "," << sy;
    // The open ring between the handle and the arms, and past the arms' ends.
    for (auto p : {std::pair<int, int>{67, 40}, {53, 40}, {60, 47}, {78, 45}, {88, 40}, {60, 68}})
        EXPECT_EQ(at(p.first, p.second), 0) << p.first << "," << p.second;
    // Nothing at all outside the crosshair's reach.
    int stray = 0;
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
            if ((x < 34 || x > 86 || y < 14 || y > 66) && at(x, y) != 0) ++stray;
    EXPECT_EQ(stray, 0);

    // At zoom 2 the overlay is half as large in its own units and the viewer
    // scales it up: every pixel comes out as at zoom 1.
    EXPECT_EQ(draw_crosshair(gl, 2.0f), image);
}

}  // namespace
