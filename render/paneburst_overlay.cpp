// Pointer handling of the wind-cone widget and its write-back to Wind Spread.
#include "render/paneburst_overlay.h"

#include <cmath>

#include "effect/vecnorm.h"
#include "framework/angles.h"

bool PaneburstOverlayQ7::tip_is_under(int i, float x, float y, float tol) const {
    return x - tol < tip_x[i] && tip_x[i] < x + tol && y - tol < tip_y[i] && tip_y[i] < y + tol;
}

int PaneburstOverlayQ7::tip_under(float x, float y, float tol) const {
    for (int i = 0; i < 2; ++i)
        if (tip_is_under(i, x, y, tol)) return i + 1;
    return 0;
}

void PaneburstOverlayQ7::HandleInteraction(InterType type, float x, float y) {
    // Not bound yet: the cone has never been drawn and has no geometry.
    if (overlay == nullptr) return;
    const float tol = overlay->GrabHandleSize();
    switch (type) {
    case kHover:
        highlight = tip_under(x, y, tol);
        HandleInteractionPlat(kHover, x, y);
        break;
    case kPress:
        // Both tips are tested, so when they overlap (a closed cone) the
        // second one wins. A press on neither leaves the fields as they were.
        for (int i = 0; i < 2; ++i)
            if (tip_is_under(i, x, y, tol)) grabbed = highlight = i + 1;
        HandleInteractionPlat(kPress, x, y);
        break;
    case kDrag:
        if (grabbed == 1 || grabbed == 2) {
            // The opening is twice the angle at the source between the
            // pointer and the target; either tip opens the cone symmetrically.
            const float W = static_cast<float>(overlay->width);
            const float H = static_cast<float>(overlay->height);
            const float sx = W * source_x, sy = H * source_y;
            float u[3] = {x - sx, y - sy, 0.0f};
            float v[3] = {W * target_x - sx, H * target_y - sy, 0.0f};
            vecnorm(u);  // a pointer on the source gives u = 0: a right angle
            vecnorm(v);
            float dot = u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
            // vecnorm leaves both vectors at most unit length, but the float
            // rounding of the product may still step just past 1; keep acos
            // defined rather than write a NaN into the control.
            if (dot > 1.0f) dot = 1.0f;
            if (dot < -1.0f) dot = -1.0f;
            cone_spread = static_cast<float>(2.0f * std::acos(dot) / kDegreesToRadians);
        }
        HandleInteractionPlat(kDrag, x, y);
        break;
    case kRelease:
        HandleInteractionPlat(kRelease, x, y);
        grabbed = 0;
        break;
    default:
        break;
    }
}

void PaneburstOverlayQ7::HandleInteractionPlat(InterType type, float, float) {
    if (type != kDrag || (grabbed != 1 && grabbed != 2)) return;
    if (x_control == nullptr) return;  // not bound: nothing to write
    // Not clamped to the control's range: a tip dragged behind the source
    // writes up to 360 although the slider stops at 180.
    x_control->value = cone_spread;
    sparkControlUpdate(id);
}
