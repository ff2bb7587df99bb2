// Pointer handling of the overlay widgets and their write-back to the host
// position controls.
#include "framework/overlay_widgets.h"

#include <cmath>

namespace {

// The maximum is tested first: with an inverted range (minimum above
// maximum) the minimum wins.
float clamp_to_range(float v, float minimum, float maximum) {
    if (v > maximum) v = maximum;
    if (v < minimum) v = minimum;
    return v;
}

// Clamps a normalised coordinate into its control's range (percent) and
// writes it back as a percentage.
void write_position(float& v, SparkFloatDesc* control) {
    v = clamp_to_range(v, control->min / 100.0f, control->max / 100.0f);
    control->value = 100.0f * v;
}

}  // namespace

bool OverlayControlQ7::over_handle(float x, float y, float hx, float hy) const {
    const float tol = overlay->GrabHandleSize();
    return std::fabs(x - hx) < tol && std::fabs(y - hy) < tol;
}

void OverlayControlQ7::track_pointer(InterType type, float x, float y, float hx, float hy) {
    switch (type) {
    case kHover:
        highlight = over_handle(x, y, hx, hy) ? 1 : 0;
        HandleInteractionPlat(kHover, x, y);
        break;
    case kPress:
        highlight = grabbed = over_handle(x, y, hx, hy) ? 1 : 0;
        HandleInteractionPlat(kPress, x, y);
        break;
    case kDrag:
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

// A widget not yet bound to an overlay has never been drawn and has no
// geometry to test against: it ignores events.

void CrosshairOverlayQ7::HandleInteraction(InterType type, float px, float py) {
    if (overlay == nullptr) return;
    if (type == kDrag && grabbed) {
        x = px / static_cast<float>(overlay->width);
        y = py / static_cast<float>(overlay->height);
    }
    track_pointer(type, px, py, screen_x, screen_y);
}

void CrosshairOverlayQ7::HandleInteractionPlat(InterType type, float, float) {
    if (type != kDrag || !grabbed) return;
    if (x_control == nullptr || y_control == nullptr) return;  // not bound: nothing to write
    write_position(x, x_control);
    write_position(y, y_control);
    sparkControlUpdate(id);
    sparkControlUpdate(id + 1);
}

void LineOverlayQ7::HandleInteraction(InterType type, float px, float py) {
    if (overlay == nullptr) return;
    if (type == kDrag && grabbed) {
        // The midpoint follows the pointer; the half-vector between the end
        // points keeps the line's length and direction.
        const float dx = (x0 - x1) * 0.5f;
        const float dy = (y0 - y1) * 0.5f;
        const float qx = px / static_cast<float>(overlay->width);
        const float qy = py / static_cast<float>(overlay->height);
        x0 = qx + dx;
        y0 = qy + dy;
        x1 = qx - dx;
        y1 = qy - dy;
    }
    track_pointer(type, px, py, handle_x, handle_y);
}

void LineOverlayQ7::HandleInteractionPlat(InterType type, float, float) {
    if (type != kDrag || !grabbed) return;
    if (x_control == nullptr || y_control == nullptr || x2_control == nullptr ||
        y2_control == nullptr)
        return;
    write_position(x0, x_control);
    write_position(y0, y_control);
    write_position(x1, x2_control);
    write_position(y1, y2_control);
    sparkControlUpdate(id);
    sparkControlUpdate(id + 1);
    sparkControlUpdate(id2);
    sparkControlUpdate(id2 + 1);
}
