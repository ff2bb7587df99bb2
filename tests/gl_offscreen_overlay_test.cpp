// The overlay drawn for real: Mesa's software renderer draws into an
// off-screen image, and the pixels show the handles and crosshair arms where
// they belong, with the background everywhere else. Runs headless.
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

class OffscreenOverlay : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(gl.create(kW, kH, error)) << error;
    }
    // Clears to black and sets the model-view as the viewer does: a
    // translation, then the zoom. The extra half pixel puts integer overlay
    // coordinates on pixel centres, so that lines light whole pixel rows.
    void begin(float zoom) {
        gl.clear(0.0f, 0.0f, 0.0f);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glTranslatef(0.5f, 0.5f, 0.0f);
        glScalef(zoom, zoom, 1.0f);
        overlay.zoom = zoom;
        overlay.width = static_cast<int>(kW / zoom);
        overlay.height = static_cast<int>(kH / zoom);
    }
    bool lit(int x, int y, int r, int g, int b) const {
        const OffscreenPixel p = gl.pixel(x, y);
        return p.r == r && p.g == g && p.b == b;
    }
    bool dark(int x, int y) const { return lit(x, y, 0, 0, 0); }
    std::vector<OffscreenPixel> snapshot() const {
        std::vector<OffscreenPixel> v;
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x) v.push_back(gl.pixel(x, y));
        return v;
    }
    void draw_yellow_crosshair() {
        CrosshairOverlayQ7 c;
        c.colour[2] = 0;  // yellow
        c.x = 0.5f;
        c.y = 0.5f;
        c.diagonals = 1;
        overlay.DrawCrosshairOverlay(&c);
        gl.finish();
    }
    OffscreenGl gl;
    OverlayQ7 overlay;
};

TEST_F(OffscreenOverlay, CrosshairHandleAndArmsLandOnTheirPixels) {
    begin(1.0f);
    draw_yellow_crosshair();  // centre (60, 40); handle 55 ... 65; arms 10 ... 25 out

    for (int y = 36; y <= 44; ++y)
        for (int x = 56; x <= 64; ++x) EXPECT_TRUE(lit(x, y, 255, 255, 0)) << "handle " << x << "," << y;
    for (int x : {71, 78, 84}) EXPECT_TRUE(lit(x, 40, 255, 255, 0)) << "right arm " << x;
    for (int x : {36, 42, 49}) EXPECT_TRUE(lit(x, 40, 255, 255, 0)) << "left arm " << x;
    for (int y : {51, 58, 64}) EXPECT_TRUE(lit(60, y, 255, 255, 0)) << "upper arm " << y;
    for (int y : {16, 22, 29}) EXPECT_TRUE(lit(60, y, 255, 255, 0)) << "lower arm " << y;
    // Diagonal arms: from 5 to 12.5 out along each diagonal.
    EXPECT_TRUE(lit(68, 48, 255, 255, 0));
    EXPECT_TRUE(lit(52, 48, 255, 255, 0));
    EXPECT_TRUE(lit(52, 32, 255, 255, 0));
    EXPECT_TRUE(lit(68, 32, 255, 255, 0));

    // The open ring between the handle and the arms, off the arms, and past
    // their ends.
    EXPECT_TRUE(dark(67, 40));
    EXPECT_TRUE(dark(53, 40));
    EXPECT_TRUE(dark(60, 47));
    EXPECT_TRUE(dark(78, 45));
    EXPECT_TRUE(dark(45, 35));
    EXPECT_TRUE(dark(88, 40));
    EXPECT_TRUE(dark(60, 68));
    // Nothing at all outside the crosshair's reach.
    int stray = 0;
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
            if ((x < 34 || x > 86 || y < 14 || y > 66) && !dark(x, y)) ++stray;
    EXPECT_EQ(stray, 0);
}

TEST_F(OffscreenOverlay, ZoomedViewerShowsTheSameScreenSizes) {
    // At zoom 2 the overlay is half as large in its own units and the viewer
    // scales it up: handles and arms must come out exactly as at zoom 1.
    begin(1.0f);
    draw_yellow_crosshair();
    const auto at_zoom_1 = snapshot();
    begin(2.0f);
    draw_yellow_crosshair();
    const auto at_zoom_2 = snapshot();
    int differ = 0;
    for (std::size_t i = 0; i < at_zoom_1.size(); ++i)
        if (at_zoom_1[i].r != at_zoom_2[i].r || at_zoom_1[i].g != at_zoom_2[i].g ||
            at_zoom_1[i].b != at_zoom_2[i].b)
            ++differ;
    EXPECT_EQ(differ, 0);
    EXPECT_TRUE(lit(60, 40, 255, 255, 0));
}

TEST_F(OffscreenOverlay, LineWidgetDrawsItsLineAndMidpointHandle) {
    begin(1.0f);
    LineOverlayQ7 line;
    line.colour[0] = 0;  // cyan
    line.x0 = 10.0f / kW;
    line.y0 = 10.0f / kH;
    line.x1 = 110.0f / kW;
    line.y1 = 70.0f / kH;
    overlay.DrawLineOverlay(&line);
    gl.finish();
    for (int y = 37; y <= 43; ++y)
        for (int x = 57; x <= 63; ++x) EXPECT_TRUE(lit(x, y, 0, 255, 255)) << "handle " << x << "," << y;
    EXPECT_TRUE(lit(35, 25, 0, 255, 255));  // a quarter along the line
    EXPECT_TRUE(lit(85, 55, 0, 255, 255));  // three quarters along
    EXPECT_TRUE(dark(35, 40));
    EXPECT_TRUE(dark(85, 25));
}

}  // namespace
