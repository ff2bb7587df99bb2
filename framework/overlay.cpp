// Overlay drawing primitives in OpenGL immediate mode, and the drawing of the
// crosshair and line widgets.
#include "framework/overlay.h"

#include <GL/gl.h>

#include <cmath>

#include "framework/angles.h"
#include "framework/overlay_widgets.h"

namespace {

constexpr float kPi = 3.14159265358979323846f;

// Screen-pixel sizes, divided by the zoom before use.
constexpr float kHandleHalfSize = 5.0f;
constexpr float kArmInner = 10.0f;
constexpr float kArmOuter = 25.0f;

}  // namespace

void OverlayQ7::SetColour(int r, int g, int b, int) {
    glColor3f(static_cast<float>(r) / 65535.0f, static_cast<float>(g) / 65535.0f,
              static_cast<float>(b) / 65535.0f);
}

void OverlayQ7::DrawPixel(float x, float y) {
    glBegin(GL_POINTS);
    glVertex2f(x, y);
    glEnd();
}

void OverlayQ7::DrawLine(float x0, float y0, float x1, float y1) {
    glBegin(GL_LINES);
    glVertex2f(x0, y0);
    glVertex2f(x1, y1);
    glEnd();
}

void OverlayQ7::DrawHandle(float x, float y, bool) {
    const float h = kHandleHalfSize / zoom;
    glBegin(GL_POLYGON);
    glVertex2f(x - h, y - h);
    glVertex2f(x + h, y - h);
    glVertex2f(x + h, y + h);
    glVertex2f(x - h, y + h);
    glEnd();
}

float OverlayQ7::GrabHandleSize() const { return kHandleHalfSize / zoom; }

void OverlayQ7::DrawLineDotted(float x0, float y0, float x1, float y1, int dash) {
    // A dash below 1 would make the step count unbounded; callers pass
    // constants, so such a call draws nothing rather than loop.
    if (dash < 1) return;
    const float dx = x1 - x0;
    const float dy = y1 - y0;
    const float len = std::sqrt(dx * dx + dy * dy);
    const float k = len / static_cast<float>(dash);  // dash-length steps, usually fractional
    if (!(k > 0.0f)) return;                          // coinciding points (or NaN input)
    const float step_x = dx / k;
    const float step_y = dy / k;
    float cx = x0;
    float cy = y0;
    for (int i = 0; static_cast<float>(i) < k; ++i) {
        if (i & 1) {
            // The last dash may hang over the end point: stop it there.
            float ex = cx + step_x;
            float ey = cy + step_y;
            if (dx >= 0.0f ? ex > x1 : ex < x1) ex = x1;
            if (dy >= 0.0f ? ey > y1 : ey < y1) ey = y1;
            DrawLine(cx, cy, ex, ey);
        }
        cx += step_x;
        cy += step_y;
    }
}

void OverlayQ7::DrawEllipse(float cx, float cy, float w, float h, float rotation, int dashed,
                            int segment, float start, float end) {
    if (w < 5.0f || h < 5.0f) return;
    if (segment < 1) return;  // like the dash: a divisor of the step, never below 1
    const float a = w / 2.0f;
    const float b = h / 2.0f;
    float step = 360.0f / (kPi * w / static_cast<float>(segment));
    if (step > 36.0f) step = 36.0f;
    const float r = rotation * kDegreesToRadiansF;
    const float cos_r = std::cos(r);
    const float sin_r = std::sin(r);
    auto point_at = [&](float degrees, float& X, float& Y) {
        const float t = degrees * kDegreesToRadiansF;
        const float px = a * std::cos(t);
        const float py = b * std::sin(t);
        X = cx + px * cos_r - py * sin_r;
        Y = cy + px * sin_r + py * cos_r;
    };

    float last_x = cx;
    float last_y = cy;
    if (end >= start) {
        // Angles as start + i * step rather than a running sum, so that a
        // long arc cannot stall on a step below the angle's precision.
        for (int i = 0;; ++i) {
            const float t = start + static_cast<float>(i) * step;
            if (!(t <= end)) break;
            float X, Y;
            point_at(t, X, Y);
            // The first point is its own predecessor: its segment has zero
            // length and lights no pixel.
            if (i == 0) {
                last_x = X;
                last_y = Y;
            }
            if (dashed == 0 || (i & 1)) DrawLine(X, Y, last_x, last_y);
            last_x = X;
            last_y = Y;
        }
    }
    if (start == 0.0f && end == 360.0f) {
        float X0, Y0;
        point_at(0.0f, X0, Y0);
        DrawLine(X0, Y0, last_x, last_y);
    }
}

void OverlayQ7::DrawCrosshairOverlay(CrosshairOverlayQ7* crosshair) {
    SetColour(crosshair->colour[0], crosshair->colour[1], crosshair->colour[2], crosshair->colour[3]);
    const float px = static_cast<float>(width) * crosshair->x;
    const float py = static_cast<float>(height) * crosshair->y;
    const float r1 = kArmInner / zoom;
    const float r2 = kArmOuter / zoom;
    // The arms leave the centre open so the handle and the image under it
    // stay visible.
    DrawLine(px + r1, py, px + r2, py);
    DrawLine(px - r1, py, px - r2, py);
    DrawLine(px, py + r1, px, py + r2);
    DrawLine(px, py - r1, px, py - r2);
    if (crosshair->diagonals) {
        const float d1 = r1 / 2.0f;
        const float d2 = r2 / 2.0f;
        DrawLine(px + d1, py + d1, px + d2, py + d2);
        DrawLine(px - d1, py + d1, px - d2, py + d2);
        DrawLine(px - d1, py - d1, px - d2, py - d2);
        DrawLine(px + d1, py - d1, px + d2, py - d2);
    }
    DrawHandle(px, py, crosshair->highlight != 0);
    crosshair->screen_x = px;
    crosshair->screen_y = py;
}

void OverlayQ7::DrawLineOverlay(LineOverlayQ7* line) {
    SetColour(line->colour[0], line->colour[1], line->colour[2], line->colour[3]);
    const float ax = static_cast<float>(width) * line->x0;
    const float ay = static_cast<float>(height) * line->y0;
    const float bx = static_cast<float>(width) * line->x1;
    const float by = static_cast<float>(height) * line->y1;
    DrawLine(ax, ay, bx, by);
    const float min_x = std::fmin(ax, bx);
    const float max_x = std::fmax(ax, bx);
    const float min_y = std::fmin(ay, by);
    const float max_y = std::fmax(ay, by);
    const float hx = min_x + (max_x - min_x) * 0.5f;
    const float hy = min_y + (max_y - min_y) * 0.5f;
    DrawHandle(hx, hy, line->highlight != 0);
    line->handle_x = hx;
    line->handle_y = hy;
}
