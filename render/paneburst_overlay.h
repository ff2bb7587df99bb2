// The wind-cone widget: the two tips at the ends of the cone's edges. Dragging
// a tip opens or closes the cone, and writes the full opening angle into Wind
// Spread.
//
// `grabbed` and `highlight` hold 0 or the number (1 or 2) of a tip. The tips
// are placed by the effect's RenderOverlay; while the cone is not shown they
// sit at kHandleNotDrawn, out of the pointer's reach.
#pragma once

#include "framework/overlay_widgets.h"

class PaneburstOverlayQ7 : public OverlayControlQ7 {
public:
    void HandleInteraction(InterType type, float x, float y) override;
    void HandleInteractionPlat(InterType type, float x, float y) override;

    float cone_spread = 0.0f;  // full opening angle, degrees
    // Normalised wind source and target, copied from the wind crosshairs at
    // each redraw.
    float source_x = 0.0f, source_y = 0.0f;
    float target_x = 0.0f, target_y = 0.0f;
    // Overlay coordinates of the two tips as last drawn.
    float tip_x[2] = {kHandleNotDrawn, kHandleNotDrawn};
    float tip_y[2] = {kHandleNotDrawn, kHandleNotDrawn};

private:
    // 1 + the number of the first tip strictly inside the grab square around
    // (x, y), 0 when neither is.
    int tip_under(float x, float y, float tol) const;
    bool tip_is_under(int i, float x, float y, float tol) const;
};
