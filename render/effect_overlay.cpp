// The effect's overlay in the viewer: element outlines, the side view with
// the depth of the viewer, light, background, Foreground Z, Maximum Z and the
// elements, and the handles of the light, the force points and the wind cone.
// Pointer events are routed to the widgets of the forces in use.
#include <cmath>
#include <initializer_list>

#include "effect/paneburst.h"
#include "framework/angles.h"

namespace {

// The side view's depth axis: 0 at x = 0, -4000 at the overlay's width.
constexpr float kSideAxisY = -40.0f;
constexpr float kSideDepth = -4000.0f;

bool checked(CheckboxControlQ7& c) {
    long v = 0;
    c.GetValue(-1.0, v);
    return v != 0;
}

float cached(FloatControlQ7& c) {
    double v = 0.0;
    c.GetValue(-1.0, v);
    return static_cast<float>(v);
}

void place(CrosshairOverlayQ7& crosshair, PositionControlQ7& position) {
    double x = 0.0, y = 0.0;
    position.GetValue(-1.0, x, y);
    crosshair.x = static_cast<float>(x);
    crosshair.y = static_cast<float>(y);
}

}  // namespace

void Paneburst::RenderOverlay() {
    const float W = static_cast<float>(OverlayQ7::width);
    const float H = static_cast<float>(OverlayQ7::height);
    // A NaN speed is "not 0": the wind widgets stay up while the value is bad.
    const bool wind_shown = checked(use_wind_ctl) && cached(wind_speed_ctl) != 0.0f;

    BeginRender();
    if (polygons != nullptr) {
        render_OpenGL_polygons(&info, polygons, 1.0f);

        const float h = 0.5f * H * W / 4000.0f;  // half-height of the side view's bars
        const float top = kSideAxisY - h;
        const float bottom = kSideAxisY + h;

        SetColour(65535, 65535, 65535, 65535);
        DrawLine(0.0f, kSideAxisY, W, kSideAxisY);
        DrawLine(W, -20.0f, W, -60.0f);

        // Background Z and LightZ are fractions of the frame's width.
        SetColour(0, 65535, 65535, 65535);
        const float background_x = (W * cached(background_z_ctl)) * W / kSideDepth;
        DrawLine(background_x, top, background_x, bottom);

        // The viewer: a camera body and lens at the axis' left end, and two reels.
        SetColour(65535, 65535, 65535, 65535);
        const float body[4][2] = {{-60.0f, -30.0f}, {-20.0f, -30.0f}, {-20.0f, -60.0f}, {-60.0f, -60.0f}};
        const float lens[4][2] = {{-30.0f, -35.0f}, {0.0f, -35.0f}, {0.0f, -45.0f}, {-30.0f, -45.0f}};
        for (const auto* rect : {body, lens})
            for (int k = 0; k < 4; ++k)
                DrawLine(rect[k][0], rect[k][1], rect[(k + 1) & 3][0], rect[(k + 1) & 3][1]);
        DrawEllipse(-50.0f, -20.0f, 20.0f, 20.0f, 0.0f, 0, 10, 0.0f, 360.0f);
        DrawEllipse(-30.0f, -20.0f, 20.0f, 20.0f, 0.0f, 0, 10, 0.0f, 360.0f);

        // The light with its beam opening onto the far end of the axis. Its
        // circle is drawn like the reels (solid, segment 10); at diameter 8
        // that gives the coarsest step, a tenth of a turn.
        SetColour(65535, 65535, 0, 65535);
        const float light_x = (W * cached(light_z_ctl)) * W / kSideDepth;
        DrawEllipse(light_x, kSideAxisY, 8.0f, 8.0f, 0.0f, 0, 10, 0.0f, 360.0f);
        DrawLine(light_x, kSideAxisY, W, top);
        DrawLine(light_x, kSideAxisY, W, bottom);

        // Foreground Z and Maximum Z as the controls hold them (full-resolution
        // pixels, not divided by the preview's scale).
        SetColour(65535, 0, 65535, 65535);
        const float foreground_x = cached(foreground_z_ctl) * W / kSideDepth;
        DrawLine(foreground_x, top, foreground_x, bottom);
        SetColour(65535, 65535, 65535, 65535);
        const float maximum_x = cached(maximum_z_ctl) * W / kSideDepth;
        DrawLine(maximum_x, top, maximum_x, bottom);
    }

    if (wind_shown) {
        double sx = 0.0, sy = 0.0, tx = 0.0, ty = 0.0;
        wind_source_ctl.GetValue(-1.0, sx, sy);
        wind_target_ctl.GetValue(-1.0, tx, ty);
        wind_line.x0 = static_cast<float>(sx);
        wind_line.y0 = static_cast<float>(sy);
        wind_line.x1 = static_cast<float>(tx);
        wind_line.y1 = static_cast<float>(ty);
        DrawLineOverlay(&wind_line);
    }
    if (checked(use_repulsion_ctl)) {
        place(repulsion_crosshair, repulsion_ctl);
        DrawCrosshairOverlay(&repulsion_crosshair);
    }
    if (checked(use_attraction_ctl)) {
        place(attraction_crosshair, attraction_ctl);
        DrawCrosshairOverlay(&attraction_crosshair);
    }
    if (checked(use_light_ctl)) {
        light_crosshair.diagonals = 1;
        place(light_crosshair, light_pos_ctl);
        DrawCrosshairOverlay(&light_crosshair);
    }
    if (wind_shown) {
        place(wind_source_crosshair, wind_source_ctl);
        place(wind_target_crosshair, wind_target_ctl);
        const int* c = wind_source_crosshair.colour;
        SetColour(c[0], c[1], c[2], c[3]);
        wind_cone.cone_spread = cached(wind_spread_ctl);
        wind_cone.source_x = wind_source_crosshair.x;
        wind_cone.source_y = wind_source_crosshair.y;
        wind_cone.target_x = wind_target_crosshair.x;
        wind_cone.target_y = wind_target_crosshair.y;
        draw_cone(W * wind_cone.source_x, H * wind_cone.source_y, W * wind_cone.target_x,
                  H * wind_cone.target_y, 0.5f * wind_cone.cone_spread, 0, 1, 1);
        DrawHandle(wind_cone.tip_x[0], wind_cone.tip_y[0], wind_cone.grabbed == 1);
        DrawHandle(wind_cone.tip_x[1], wind_cone.tip_y[1], wind_cone.grabbed == 2);
        DrawCrosshairOverlay(&wind_source_crosshair);
        DrawCrosshairOverlay(&wind_target_crosshair);
    } else {
        // Out of the pointer's reach while the cone is not on screen.
        for (int i = 0; i < 2; ++i) wind_cone.tip_x[i] = wind_cone.tip_y[i] = kHandleNotDrawn;
    }
    EndRender();
}

void Paneburst::draw_cone(float x1, float y1, float x2, float y2, float half_angle, int tip_a, int tip_b,
                          int dotted) {
    const float dx = x2 - x1;
    const float dy = y2 - y1;
    const float t = std::atan2(dy, dx);
    const float p = static_cast<float>(half_angle * kDegreesToRadians);
    const float len = std::sqrt(dx * dx + dy * dy);
    const float ax = x1 + len * std::cos(t - p);
    const float ay = y1 + len * std::sin(t - p);
    const float bx = x1 + len * std::cos(t + p);
    const float by = y1 + len * std::sin(t + p);
    if (dotted) {
        DrawLineDotted(x1, y1, ax, ay, 10);
        DrawLineDotted(x1, y1, bx, by, 10);
    } else {
        DrawLine(x1, y1, ax, ay);
        DrawLine(x1, y1, bx, by);
    }
    wind_cone.tip_x[tip_a] = ax;
    wind_cone.tip_y[tip_a] = ay;
    wind_cone.tip_x[tip_b] = bx;
    wind_cone.tip_y[tip_b] = by;
}

void Paneburst::HandleInteraction(InterType type, float x, float y) {
    // No exclusive grab: every widget in use tests its own handle on every
    // event. Wind widgets listen whenever Use Wind is on, even while a zero
    // Wind Speed keeps them off screen; the cone's tips are parked then.
    if (checked(use_light_ctl)) light_crosshair.HandleInteraction(type, x, y);
    if (checked(use_repulsion_ctl)) repulsion_crosshair.HandleInteraction(type, x, y);
    if (checked(use_attraction_ctl)) attraction_crosshair.HandleInteraction(type, x, y);
    if (checked(use_wind_ctl)) {
        wind_source_crosshair.HandleInteraction(type, x, y);
        wind_target_crosshair.HandleInteraction(type, x, y);
        wind_line.HandleInteraction(type, x, y);
        wind_cone.HandleInteraction(type, x, y);
    }
}
