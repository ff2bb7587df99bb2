// Viewer overlay base: drawing primitives in the viewer's image coordinates
// and the two hooks through which the effect draws its handles and receives
// pointer events.
//
// Everything meant in screen pixels (handle size, crosshair arms, hit
// tolerance) is divided by `zoom`, so it stays the same size on screen at any
// viewer zoom. The caller sets up the OpenGL projection before drawing.
#pragma once

// The kind of a pointer event.
enum InterType { kHover = 0, kPress = 1, kDrag = 2, kRelease = 3 };

class CrosshairOverlayQ7;
class LineOverlayQ7;

class OverlayQ7 {
public:
    OverlayQ7() = default;
    virtual ~OverlayQ7() = default;
    virtual void RenderOverlay() {}
    virtual void HandleInteraction(InterType, float, float) {}

    // Primitives (OpenGL immediate mode, two-dimensional vertices).
    void BeginRender() {}
    void EndRender() {}
    // Channels in 0 ... 65535; alpha is ignored (the overlay is opaque).
    void SetColour(int r, int g, int b, int a);
    void DrawPixel(float x, float y);
    void DrawLine(float x0, float y0, float x1, float y1);
    // A filled square of side 10 screen pixels centred on (x, y). The flag
    // is part of the interface but changes nothing.
    void DrawHandle(float x, float y, bool highlighted);
    // The hit tolerance of a handle: its half-size.
    float GrabHandleSize() const;
    // Starts with a gap; dashes and gaps of `dash` units alternate. `dash`
    // must be at least 1.
    void DrawLineDotted(float x0, float y0, float x1, float y1, int dash);
    // Arc from `start` to `end` degrees of the ellipse of full axes w and h,
    // rotated by `rotation` degrees around its centre. Each step covers about
    // `segment` units of outline (at least 1), never more than 36 degrees.
    void DrawEllipse(float cx, float cy, float w, float h, float rotation, int dashed, int segment,
                     float start, float end);
    void DrawCrosshairOverlay(CrosshairOverlayQ7* crosshair);
    void DrawLineOverlay(LineOverlayQ7* line);

    // Geometry, set by the viewer entry point before each redraw.
    int width = 0;      // image area in overlay coordinates
    int height = 0;
    float zoom = 1.0f;  // viewer zoom; 1 until the first redraw, never 0
};
