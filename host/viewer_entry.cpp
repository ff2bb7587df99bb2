// The viewer entry points: the overlay redraw and the pointer events.
//
// SparkOverlay sets up the overlay's geometry, refreshes the slider and
// position controls and binds the widgets before the effect draws;
// SparkInteract turns the host's pen pressure into hover, press, drag and
// release, routes them through the effect, chooses the cursor and, when a
// grabbed widget is let go with Auto Preview on, processes the frame again.
#include <GL/gl.h>

#include <cstdint>

#include "effect/paneburst.h"
#include "host/binding.h"
#include "host/descriptors.h"
#include "host/spark_export.h"

extern "C" unsigned long* SparkProcess(HostFrameRecord);

namespace {

// The host's cursor shapes.
constexpr int kCursorDefault = 1;
constexpr int kCursorGrab = 14;
constexpr int kCursorOverHandle = 20;

constexpr int kYellow[4] = {65535, 65535, 0, 65535};
constexpr int kRed[4] = {65535, 0, 0, 65535};
constexpr int kGreen[4] = {0, 65535, 0, 65535};
constexpr int kCyan[4] = {0, 65535, 65535, 65535};

// The value byte of a checkbox descriptor.
bool is_set(const SparkBooleanDesc& checkbox) { return *reinterpret_cast<const unsigned char*>(&checkbox) != 0; }

// The viewer's zoom as the overlay uses it: below 1 the host's zoom runs
// through 0 toward negative values, 0.5 meaning 2/3 and 0 meaning a half.
float effective_zoom(float zoom) { return zoom >= 1.0f ? zoom : 1.0f / (2.0f - zoom); }

// Truncation toward zero of the stretched width. A ratio no host gives (NaN,
// or one that overflows an int) leaves no overlay rather than undefined
// behaviour.
int truncate_width(float w) {
    if (!(w > -2147483648.0f && w < 2147483648.0f)) return 0;
    return static_cast<int>(w);
}

// The redraw's refresh: only the slider and position objects. Checkbox, list
// and colour objects keep what the last frame or callback cached.
void refresh_overlay_controls(PaneburstInfo& info) {
    for (const BindingRow& row : binding_table(info)) {
        switch (row.kind) {
            case BoundKind::Integer:
            case BoundKind::Float:
            case BoundKind::Angle: row.object->Sync(); break;
            case BoundKind::Position: static_cast<PositionControlQ7*>(row.object)->refresh(); break;
            default: break;
        }
    }
}

void bind_widget(OverlayControlQ7& widget, int id, SparkFloatDesc* x, SparkFloatDesc* y, const int (&colour)[4]) {
    widget.id = id;
    widget.x_control = x;
    widget.y_control = y;
    for (int i = 0; i < 4; ++i) widget.colour[i] = colour[i];
    widget.overlay = &Instance;
}

void bind_crosshair(CrosshairOverlayQ7& crosshair, int id, SparkFloatDesc* x, SparkFloatDesc* y,
                    const int (&colour)[4]) {
    bind_widget(crosshair, id, x, y, colour);
    crosshair.diagonals = 0;  // RenderOverlay switches the light's on
}

void bind_widgets(PaneburstInfo& in) {
    bind_crosshair(in.light_crosshair, 36, &SparkFloat36, &SparkFloat37, kYellow);
    bind_crosshair(in.repulsion_crosshair, 72, &SparkFloat72, &SparkFloat73, kRed);
    bind_crosshair(in.attraction_crosshair, 79, &SparkFloat79, &SparkFloat80, kGreen);
    bind_crosshair(in.wind_source_crosshair, 65, &SparkFloat65, &SparkFloat66, kCyan);
    bind_crosshair(in.wind_target_crosshair, 67, &SparkFloat67, &SparkFloat68, kCyan);
    bind_widget(in.wind_line, 65, &SparkFloat65, &SparkFloat66, kCyan);
    in.wind_line.id2 = 67;
    in.wind_line.x2_control = &SparkFloat67;
    in.wind_line.y2_control = &SparkFloat68;
    // The cone has one control, Wind Spread, and no y.
    bind_widget(in.wind_cone, 70, &SparkFloat70, nullptr, kYellow);
}

bool any_widget(PaneburstInfo& in, int OverlayControlQ7::*field) {
    const OverlayControlQ7* widgets[] = {&in.light_crosshair,       &in.repulsion_crosshair, &in.attraction_crosshair,
                                         &in.wind_source_crosshair, &in.wind_target_crosshair, &in.wind_line,
                                         &in.wind_cone};
    for (const OverlayControlQ7* w : widgets)
        if (w->*field != 0) return true;
    return false;
}

// The pressure of the previous event, and whether the last press grabbed a
// widget (kept until the next press).
float lp = 0.0f;
int picked = 0;

}  // namespace

extern "C" {

SPARK_EXPORT void SparkOverlay(HostFrameRecord record, float zoom) {
    if (is_set(SparkBoolean28)) return;  // Clear Overlay: nothing is drawn
    HostGraphRecord graph{};
    sparkGraphSetup(&graph);
    const float ratio = sparkGetViewerRatio();
    const float z = effective_zoom(zoom);

    OverlayQ7& overlay = Instance;
    const std::int32_t frame_width = frame_get<std::int32_t>(record, frame_field::frame_width);
    overlay.width = truncate_width(static_cast<float>(frame_width) * ratio);
    overlay.height = frame_get<std::int32_t>(record, frame_field::frame_height);
    overlay.zoom = z;

    refresh_overlay_controls(Instance);
    bind_widgets(Instance);

    glLoadIdentity();
    glTranslatef(static_cast<float>(frame_get<std::int32_t>(record, frame_field::viewer_origin_x)),
                 static_cast<float>(frame_get<std::int32_t>(record, frame_field::viewer_origin_y)), 0.0f);
    glScalef(z, z, 1.0f);
    overlay.RenderOverlay();
    glFlush();
}

SPARK_EXPORT unsigned long* SparkInteract(HostFrameRecord record, int, int, float pressure, float x, float y) {
    if (frame_get<std::uint8_t>(record, frame_field::mode_flag) == 0) return nullptr;
    HostGraphRecord graph{};
    sparkGraphSetup(&graph);
    const float ratio = sparkGetViewerRatio();
    // While the overlay is cleared the pen state is not followed either.
    if (is_set(SparkBoolean28)) return nullptr;

    // A press is only the step from no pressure to some, a release only the
    // step from some to exactly none; anything else (a negative pressure
    // after a positive one included) is a hover.
    InterType kind = kHover;
    if (lp == 0.0f && pressure > 0.0f)
        kind = kPress;
    else if (lp > 0.0f && pressure > 0.0f)
        kind = kDrag;
    else if (lp > 0.0f && pressure == 0.0f)
        kind = kRelease;
    lp = pressure;

    // The overlay is the frame's width times the viewer ratio wide.
    const float X = x * ratio;
    const float Y = y;
    OverlayQ7& overlay = Instance;
    switch (kind) {
        case kPress:
            picked = 0;
            overlay.HandleInteraction(kPress, X, Y);
            if (any_widget(Instance, &OverlayControlQ7::grabbed)) {
                sparkViewingCursor(kCursorGrab);
                picked = 1;
            } else {
                sparkViewingCursor(kCursorDefault);
            }
            break;
        case kDrag: overlay.HandleInteraction(kDrag, X, Y); break;
        case kRelease:
            overlay.HandleInteraction(kRelease, X, Y);
            sparkViewingCursor(kCursorDefault);
            break;
        default:
            overlay.HandleInteraction(kHover, X, Y);
            sparkViewingCursor(any_widget(Instance, &OverlayControlQ7::highlight) ? kCursorOverHandle
                                                                                 : kCursorDefault);
            break;
    }
    if (kind != kHover) sparkViewingDraw();
    if (kind == kRelease && picked && is_set(SparkBoolean34)) return SparkProcess(record);
    return nullptr;
}

}  // extern "C"
