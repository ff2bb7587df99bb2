// Overlay widgets: small interactive objects drawn in an `OverlayQ7` and
// bound to host position controls. A crosshair sets one x/y control pair; a
// line's two end points are two pairs and it is dragged by its midpoint.
//
// Positions are normalised to 0 ... 1 of the overlay's width and height; the
// host controls hold percentages (100 in a descriptor is 1.0 here).
//
// Life of a widget: idle -> press over its handle -> grabbed (every drag
// moves it and writes its controls) -> release -> idle. `highlight` follows
// the pointer on hover and press; the viewer entry point reads `grabbed` and
// `highlight` to choose the cursor.
#pragma once

#include "framework/overlay.h"
#include "abi/spark_abi.h"

// Where a widget's handle sits before it is first drawn: far outside any
// image, so that no pointer event can grab a handle nobody has seen.
constexpr float kHandleNotDrawn = -10000.0f;

class OverlayControlQ7 {
public:
    OverlayControlQ7() = default;
    virtual ~OverlayControlQ7() = default;
    OverlayControlQ7(const OverlayControlQ7&) = delete;
    OverlayControlQ7& operator=(const OverlayControlQ7&) = delete;

    // The widget's reaction to a pointer event (overlay coordinates).
    virtual void HandleInteraction(InterType, float, float) {}
    // The widget's write-back to its host controls.
    virtual void HandleInteractionPlat(InterType, float, float) {}

    // Bound by the viewer entry point before each redraw.
    int id = 0;  // control number of the x control; the y control is id + 1
    SparkFloatDesc* x_control = nullptr;
    SparkFloatDesc* y_control = nullptr;
    int colour[4] = {65535, 65535, 65535, 65535};  // R, G, B, A in 0 ... 65535
    int grabbed = 0;    // 1 while the user drags this widget
    int highlight = 0;  // 1 while the pointer is over the handle
    OverlayQ7* overlay = nullptr;

protected:
    // The state machine shared by the widgets, around the handle point
    // (hx, hy). The subclass has already applied its drag rule.
    void track_pointer(InterType type, float x, float y, float hx, float hy);
    // Strictly inside the square of half-size GrabHandleSize() around (hx, hy).
    bool over_handle(float x, float y, float hx, float hy) const;
};

class CrosshairOverlayQ7 : public OverlayControlQ7 {
public:
    void HandleInteraction(InterType type, float x, float y) override;
    void HandleInteractionPlat(InterType type, float x, float y) override;

    float x = 0.0f;  // normalised position
    float y = 0.0f;
    float screen_x = kHandleNotDrawn;  // centre as last drawn, overlay coordinates
    float screen_y = kHandleNotDrawn;
    int diagonals = 0;  // also draw the four diagonal arms
};

class LineOverlayQ7 : public OverlayControlQ7 {
public:
    void HandleInteraction(InterType type, float x, float y) override;
    void HandleInteractionPlat(InterType type, float x, float y) override;

    // The second end point's controls (the first end point uses the base's).
    int id2 = 0;
    SparkFloatDesc* x2_control = nullptr;
    SparkFloatDesc* y2_control = nullptr;

    float x0 = 0.0f, y0 = 0.0f;  // normalised end points
    float x1 = 0.0f, y1 = 0.0f;
    float handle_x = kHandleNotDrawn;  // midpoint handle as last drawn
    float handle_y = kHandleNotDrawn;
};
